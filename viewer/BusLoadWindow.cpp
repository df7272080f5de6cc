#include "viewer/BusLoadWindow.h"

#include "viewer/AnalysisPlot.h"
#include "viewer/CaptureTab.h"
#include "viewer/core/SeriesCsv.h"
#include "viewer/LoadCurveData.h"
#include "viewer/TableText.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QSaveFile>
#include <QSplitter>
#include <QTableWidget>
#include <QVBoxLayout>

#include <qwt_plot_curve.h>
#include <qwt_plot_marker.h>
#include <qwt_symbol.h>

#include <algorithm>
#include <atomic>
#include <limits>

namespace {

constexpr int LookMs = 500;
constexpr qint64 Millisecond = 1000000;
constexpr double NanosecondsPerSecond = 1e9;
constexpr qint64 Before = std::numeric_limits<qint64>::min();
constexpr qint64 Widths[] = {Millisecond,        10 * Millisecond,    20 * Millisecond,   50 * Millisecond,
                             100 * Millisecond,  200 * Millisecond,   500 * Millisecond,  1000 * Millisecond,
                             5000 * Millisecond, 10000 * Millisecond, 60000 * Millisecond};

QString widthText(qint64 width)
{
    return width % (1000 * Millisecond) == 0 ? BusLoadWindow::tr("%1 s").arg(width / (1000 * Millisecond))
                                             : BusLoadWindow::tr("%1 ms").arg(static_cast<double>(width) / Millisecond);
}

QString percentText(double value)
{
    return QLocale().toString(value, 'f', 2);
}

} // namespace

BusLoadWindow::BusLoadWindow(CaptureTab &tab, const BusLoadMemory &memory)
    : QWidget(&tab, Qt::Window)
    , m_tab(tab)
    , m_memory(memory)
    , m_settings(memory.load(tab.capture().path()))
    , m_lastAbove(Before)
    , m_run(m_calls.poster([this] { slot_hasResult(); }))
{
    setObjectName(QStringLiteral("busLoad"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Bus load - %1").arg(QFileInfo(tab.capture().path()).fileName()));
    m_plot = new AnalysisPlot;
    m_plot->setObjectName(QStringLiteral("plot"));
    m_plot->setAxisTitle(QwtPlot::xBottom, tr("Time since the start [s]"));
    m_plot->setAxisTitle(QwtPlot::yLeft, tr("Bus load [%]"));
    m_limitLine = new QwtPlotMarker;
    m_limitLine->setLineStyle(QwtPlotMarker::HLine);
    m_limitLine->attach(m_plot);
    m_place = new QwtPlotMarker;
    m_place->setLineStyle(QwtPlotMarker::VLine);
    m_place->setVisible(false);
    m_place->attach(m_plot);
    makeTable();
    auto *splitter = new QSplitter(Qt::Vertical);
    splitter->addWidget(m_plot);
    splitter->addWidget(m_table);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 1);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(makeChoices());
    layout->addWidget(splitter, 1);
    layout->addWidget(makeButtons());
    connect(m_plot, &AnalysisPlot::sig_clicked, this, &BusLoadWindow::slot_clicked);
    connect(m_plot, &AnalysisPlot::sig_paletteChanged, this, &BusLoadWindow::slot_draw);
    connect(&tab, &CaptureTab::sig_currentRowChanged, this, [this](qint64 row) {
        const qint64 time = row >= 0 ? m_tab.capture().store().time(row) : BusFrame::NoTime;
        m_place->setVisible(time != BusFrame::NoTime);
        m_place->setXValue(secondsOf(time));
        m_plot->replot();
    });
    connect(&m_timer, &QTimer::timeout, this, &BusLoadWindow::slot_look);
    m_timer.start(LookMs);
    const int letter = fontMetrics().averageCharWidth();
    resize(130 * letter, 75 * letter);
    restart();
}

BusLoadWindow::~BusLoadWindow() = default;

BusLoadWindow *BusLoadWindow::open(CaptureTab &tab, const BusLoadMemory &memory)
{
    auto *window = tab.findChild<BusLoadWindow *>();
    if (window == nullptr) {
        window = new BusLoadWindow(tab, memory);
    }
    window->show();
    window->raise();
    window->activateWindow();
    return window;
}

QWidget *BusLoadWindow::makeChoices()
{
    auto *line = new QWidget;
    auto *layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    m_width = new QComboBox;
    m_width->setObjectName(QStringLiteral("width"));
    for (const qint64 width : Widths) {
        m_width->addItem(widthText(width), width);
    }
    if (m_width->findData(m_settings.width) < 0) {
        m_width->addItem(widthText(m_settings.width), m_settings.width);
    }
    m_width->setCurrentIndex(m_width->findData(m_settings.width));
    m_limit = new QDoubleSpinBox;
    m_limit->setObjectName(QStringLiteral("limit"));
    m_limit->setRange(0, 1000);
    m_limit->setDecimals(1);
    m_limit->setSuffix(QStringLiteral(" %"));
    m_limit->setValue(m_settings.limit);
    m_limit->setKeyboardTracking(false);
    for (const auto &[text, widget] :
         {std::make_pair(tr("&Steps of:"), static_cast<QWidget *>(m_width)), {tr("&Limit:"), m_limit}}) {
        auto *label = new QLabel(text);
        label->setBuddy(widget);
        layout->addWidget(label);
        layout->addWidget(widget);
    }
    m_state = new QLabel;
    m_state->setObjectName(QStringLiteral("state"));
    layout->addWidget(m_state, 1);
    connect(m_width, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &BusLoadWindow::slot_settingsChanged);
    connect(m_limit, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, &BusLoadWindow::slot_settingsChanged);
    return line;
}

QWidget *BusLoadWindow::makeButtons()
{
    auto *line = new QWidget;
    auto *layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(
        new QLabel(tr("Bit rates are set in the table (500k, 2M). A click shows the frame at that time.")), 1);
    const auto add = [layout](const QString &text, const char *name) {
        auto *button = new QPushButton(text);
        button->setObjectName(QLatin1String(name));
        layout->addWidget(button);
        return button;
    };
    connect(add(tr("&Next above the limit"), "nextAbove"), &QPushButton::clicked, this, &BusLoadWindow::showNextAbove);
    connect(add(tr("Save &picture..."), "savePicture"), &QPushButton::clicked, this, [this] {
        saveAs(this, tr("Save picture"), QStringLiteral("png"),
               [this](const QString &path) { return m_plot->savePicture(path); });
    });
    connect(add(tr("Save &CSV..."), "saveCsv"), &QPushButton::clicked, this, [this] {
        saveAs(this, tr("Save CSV"), QStringLiteral("csv"), [this](const QString &path) { return saveCsv(path); });
    });
    return line;
}

void BusLoadWindow::makeTable()
{
    m_table = new QTableWidget(0, ColumnCount);
    m_table->setObjectName(QStringLiteral("channels"));
    m_table->setHorizontalHeaderLabels({tr("Channel"), tr("Bit rate [bit/s]"), tr("Data [bit/s]"), tr("LIN [bit/s]"),
                                        tr("Frames"), tr("Least [%]"), tr("Mean [%]"), tr("Greatest [%]"),
                                        tr("Steps above")});
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setDefaultSectionSize(m_table->fontMetrics().height() + 8);
    m_table->setTabKeyNavigation(false);
    m_table->setAlternatingRowColors(true);
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_table->horizontalHeader()->setHighlightSections(false);
    connect(m_table, &QTableWidget::itemChanged, this, &BusLoadWindow::slot_itemChanged);
}

void BusLoadWindow::restart()
{
    m_lastAbove = Before;
    m_state->setText(tr("adding up..."));
    m_run.start(std::make_unique<BusLoadWork>(m_tab.capture().sharedStore(), m_settings));
}

void BusLoadWindow::slot_look()
{
    m_run.extend();
}

void BusLoadWindow::slot_settingsChanged()
{
    m_settings.width = m_width->currentData().toLongLong();
    m_settings.limit = m_limit->value();
    m_memory.save(m_tab.capture().path(), m_settings);
    restart();
}

/// A channel that is shown or not, or one of its bit rates; what is not a bit rate goes back to what it was.
void BusLoadWindow::slot_itemChanged(QTableWidgetItem *item)
{
    const auto row = static_cast<std::size_t>(item->row());
    if (m_isFilling || !m_loads || row >= m_loads->channels.size()) {
        return;
    }
    const quint16 channel = m_loads->channels[row].channel;
    if (item->column() == Channel) {
        if (item->checkState() == Qt::Checked) {
            m_hidden.remove(channel);
        } else {
            m_hidden.insert(channel);
        }
        slot_draw();
        return;
    }
    const std::optional<qint64> rate = parseBitRate(item->text());
    if (rate) {
        BusLoad::Rates rates = m_settings.ratesOf(channel);
        qint64 &changed = item->column() == Nominal ? rates.bitRate
                          : item->column() == Data  ? rates.dataBitRate
                                                    : rates.linBitRate;
        changed = *rate;
        m_settings.rates[channel] = rates;
        m_memory.save(m_tab.capture().path(), m_settings);
        restart();
    }
    fillTable();
    if (!rate) {
        m_state->setText(tr("That is no bit rate: write 500000, 500k or 2M."));
    }
}

void BusLoadWindow::slot_hasResult()
{
    m_loads = m_run.result();
    slot_draw();
}

void BusLoadWindow::setCell(int row, Column column, const QString &text, bool isEditable)
{
    QTableWidgetItem *item = m_table->item(row, column);
    if (item == nullptr) {
        item = new QTableWidgetItem;
        m_table->setItem(row, column, item);
    }
    item->setText(text);
    item->setTextAlignment(static_cast<int>(Qt::AlignVCenter | (column == Channel ? Qt::AlignLeft : Qt::AlignRight)));
    item->setFlags(isEditable ? item->flags() | Qt::ItemIsEditable : item->flags() & ~Qt::ItemIsEditable);
}

void BusLoadWindow::fillTable()
{
    m_isFilling = true;
    const bool isEditing = m_table->isPersistentEditorOpen(m_table->currentItem());
    m_table->setRowCount(static_cast<int>(m_loads->channels.size()));
    for (int row = 0; row < m_table->rowCount(); ++row) {
        const ChannelLoad &load = m_loads->channels[static_cast<std::size_t>(row)];
        const BusLoad::Rates rates = m_settings.ratesOf(load.channel);
        setCell(row, Channel, QString::number(load.channel + 1), false);
        QTableWidgetItem &channel = *m_table->item(row, Channel);
        channel.setCheckState(isShown(load.channel) ? Qt::Checked : Qt::Unchecked);
        QPixmap patch(m_table->fontMetrics().height(), m_table->fontMetrics().height() / 3);
        patch.fill(AnalysisPlot::lineColor(row));
        channel.setData(Qt::DecorationRole, patch);
        if (!isEditing) {
            setCell(row, Nominal, load.hasCan ? bitRateText(rates.bitRate) : QString(), load.hasCan);
            setCell(row, Data, load.hasSwitched ? bitRateText(rates.dataBitRate) : QString(), load.hasSwitched);
            setCell(row, Lin, load.hasLin ? bitRateText(rates.linBitRate) : QString(), load.hasLin);
        }
        setCell(row, Frames, QLocale().toString(load.frames), false);
        setCell(row, Least, percentText(load.least), false);
        setCell(row, Mean, percentText(load.mean), false);
        setCell(row, Greatest, percentText(load.greatest), false);
        setCell(row, Above, QLocale().toString(load.stepsAbove), false);
    }
    m_isFilling = false;
}

double BusLoadWindow::secondsOf(qint64 time) const
{
    const std::optional<qint64> since = timeDistance(m_tab.capture().store().start(), time);
    return static_cast<double>(since.value_or(0)) / NanosecondsPerSecond;
}

void BusLoadWindow::drawCurve(std::size_t number)
{
    const ChannelLoad &load = m_loads->channels[number];
    if (number == m_curves.size()) {
        m_curves.push_back({new QwtPlotCurve, new QwtPlotCurve});
        m_curves[number].above->setStyle(QwtPlotCurve::NoCurve);
        for (QwtPlotCurve *curve : {m_curves[number].line, m_curves[number].above}) {
            curve->attach(m_plot);
        }
    }
    const Curves &curves = m_curves[number];
    const qint64 start = m_tab.capture().store().start();
    curves.line->setSamples(new LoadCurveData(load.series, start));
    curves.line->setPen(AnalysisPlot::lineColor(static_cast<int>(number)), 0);
    curves.line->setVisible(isShown(load.channel));
    curves.above->setSamples(new LoadCurveData(load.series, start, m_settings.limit));
    const int size = std::max(4, fontMetrics().height() / 3);
    curves.above->setSymbol(
        new QwtSymbol(QwtSymbol::Ellipse, QBrush(QColor(225, 50, 60)), Qt::NoPen, QSize(size, size)));
    curves.above->setVisible(isShown(load.channel));
}

void BusLoadWindow::slot_draw()
{
    if (!m_loads) {
        return;
    }
    fillTable();
    double greatest = 0;
    double begin = std::numeric_limits<double>::max();
    double end = std::numeric_limits<double>::lowest();
    for (std::size_t i = 0; i < m_loads->channels.size(); ++i) {
        const ChannelLoad &load = m_loads->channels[i];
        drawCurve(i);
        greatest = isShown(load.channel) ? std::max(greatest, load.series->greatest()) : greatest;
        begin = std::min(begin, secondsOf(load.series->at(0).time));
        end = std::max(end, secondsOf(load.series->at(load.series->size() - 1).time));
    }
    for (std::size_t i = m_loads->channels.size(); i < m_curves.size(); ++i) {
        m_curves[i].line->setVisible(false);
        m_curves[i].above->setVisible(false);
    }
    m_limitLine->setYValue(m_settings.limit);
    m_limitLine->setLinePen(QColor(225, 50, 60), 1, Qt::DashLine);
    m_place->setLinePen(palette().color(QPalette::Text), 0, Qt::DotLine);
    constexpr double Room = 1.1;
    m_plot->setAxisScale(QwtPlot::yLeft, 0, std::max({greatest * Room, m_settings.limit * Room, 1.0}));
    if (begin <= end) {
        m_plot->setExtent(begin, end);
    } else {
        m_plot->replot();
    }
    const bool isAll = m_loads->covered >= m_tab.capture().store().size();
    QString state = isAll ? QString() : tr("adding up...");
    if (m_loads->width > m_settings.width) {
        state = tr("Steps of %1, because there are too many.").arg(widthText(m_loads->width));
    }
    m_state->setText(m_loads->channels.empty() && isAll ? tr("There are no frames that have a time.") : state);
}

void BusLoadWindow::slot_clicked(const QPointF &place)
{
    const OpenCapture &capture = m_tab.capture();
    const double since = std::max(-9e18, std::min(place.x() * NanosecondsPerSecond, 9e18));
    const auto time = static_cast<qint64>(static_cast<quint64>(capture.store().start()) +
                                          static_cast<quint64>(static_cast<qint64>(since)));
    const qint64 row = capture.store().firstRowAt(time);
    if (row < capture.store().size()) {
        m_tab.showRow(row);
    }
}

/// The next step above the limit of any channel that is shown; behind the last one the first again.
void BusLoadWindow::showNextAbove()
{
    if (!m_loads) {
        return;
    }
    constexpr qint64 None = std::numeric_limits<qint64>::max();
    qint64 next = None;
    for (const ChannelLoad &load : m_loads->channels) {
        const std::size_t first = isShown(load.channel) ? load.series->firstFrom(m_lastAbove + 1) : load.series->size();
        for (std::size_t i = first; i < load.series->size(); ++i) {
            if (load.series->at(i).value > m_settings.limit) {
                next = std::min(next, load.series->at(i).time);
                break;
            }
        }
    }
    if (next == None) {
        m_state->setText(m_lastAbove == Before ? tr("No step is above the limit.")
                                               : tr("That was the last one; next comes the first again."));
        m_lastAbove = Before;
        return;
    }
    m_lastAbove = next;
    m_state->clear();
    const qint64 row = m_tab.capture().store().firstRowAt(next - m_loads->width / 2);
    if (row < m_tab.capture().store().size()) {
        m_tab.showRow(row);
    }
}

bool BusLoadWindow::saveCsv(const QString &path) const
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    std::vector<NamedSeries> columns;
    if (m_loads) {
        for (const ChannelLoad &load : m_loads->channels) {
            columns.push_back({tr("channel %1 [%]").arg(load.channel + 1), load.series.get()});
        }
    }
    const std::atomic<bool> stop{false};
    return writeSeriesCsv(file, columns, {m_tab.capture().store().start()}, stop) && file.commit();
}
