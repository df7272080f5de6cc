#include "viewer/PeriodWindow.h"

#include "viewer/AnalysisPlot.h"
#include "viewer/CaptureTab.h"
#include "viewer/IdentifierNames.h"
#include "viewer/TableText.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

#include <qwt_plot_histogram.h>
#include <qwt_plot_marker.h>
#include <qwt_scale_engine.h>

#include <algorithm>

namespace {

constexpr int LookMs = 500;
constexpr double Millisecond = 1e6; ///< in nanoseconds
constexpr double LeastLogarithmic = 0.5;

enum Marker { Least, Below, Mean, Above, Greatest };

/// Of an item of the list of identifiers.
QVariant itemOf(FrameKey key, quint16 channel)
{
    return quint64{channel} << 32U | key;
}

QString milliseconds(double nanoseconds)
{
    return QLocale().toString(nanoseconds / Millisecond, 'f', 6);
}

} // namespace

PeriodWindow::PeriodWindow(CaptureTab &tab)
    : QWidget(&tab, Qt::Window)
    , m_tab(tab)
    , m_run(m_calls.poster([this] { slot_hasResult(); }))
    , m_findThread(1)
{
    setObjectName(QStringLiteral("periods"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Periods - %1").arg(QFileInfo(tab.capture().path()).fileName()));
    m_plot = new AnalysisPlot;
    m_plot->setObjectName(QStringLiteral("plot"));
    m_plot->setAxisTitle(QwtPlot::xBottom, tr("Period [ms]"));
    m_plot->setAxisTitle(QwtPlot::yLeft, tr("Count"));
    m_bars = new QwtPlotHistogram;
    m_bars->attach(m_plot);
    addMarkers();
    m_figures = new QLabel;
    m_figures->setObjectName(QStringLiteral("figures"));
    m_figures->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_figures->setWordWrap(true);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(makeChoices());
    layout->addWidget(m_plot, 1);
    layout->addWidget(m_figures);
    layout->addWidget(makeButtons());
    connect(m_plot, &AnalysisPlot::sig_clicked, this, &PeriodWindow::slot_clicked);
    connect(m_plot, &AnalysisPlot::sig_paletteChanged, this, &PeriodWindow::slot_draw);
    connect(&m_timer, &QTimer::timeout, this, &PeriodWindow::slot_look);
    m_timer.start(LookMs);
    const int letter = fontMetrics().averageCharWidth();
    resize(110 * letter, 60 * letter);
    fillIdentifiers();
    slot_restart();
}

PeriodWindow::~PeriodWindow()
{
    if (m_stopFinding) {
        *m_stopFinding = true;
    }
}

PeriodWindow *PeriodWindow::open(CaptureTab &tab, FrameKey key, quint16 channel)
{
    auto *window = new PeriodWindow(tab);
    window->setIdentifier(key, channel);
    window->show();
    return window;
}

QWidget *PeriodWindow::makeChoices()
{
    auto *line = new QWidget;
    auto *layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    const auto add = [layout](const QString &text, QWidget *widget, const char *name) {
        auto *label = new QLabel(text);
        label->setBuddy(widget);
        widget->setObjectName(QLatin1String(name));
        layout->addWidget(label);
        layout->addWidget(widget);
    };
    m_identifier = new QComboBox;
    m_identifier->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    m_identifier->setMinimumContentsLength(18);
    m_range = new QComboBox;
    m_range->addItems({tr("without outliers"), tr("all periods")});
    m_width = new QDoubleSpinBox;
    m_width->setRange(0, 1e6);
    m_width->setDecimals(6);
    m_width->setStepType(QAbstractSpinBox::AdaptiveDecimalStepType);
    m_width->setSpecialValueText(tr("automatic"));
    m_width->setSuffix(tr(" ms"));
    m_width->setKeyboardTracking(false);
    m_isLogarithmic = new QCheckBox(tr("&Logarithmic counts"));
    m_isLogarithmic->setObjectName(QStringLiteral("logarithmic"));
    add(tr("&Identifier:"), m_identifier, "identifier");
    add(tr("&Shown:"), m_range, "range");
    add(tr("&Bin width:"), m_width, "width");
    layout->addWidget(m_isLogarithmic);
    layout->addStretch(1);
    const auto changed = QOverload<int>::of(&QComboBox::currentIndexChanged);
    connect(m_identifier, changed, this, &PeriodWindow::slot_restart);
    connect(m_range, changed, this, &PeriodWindow::slot_restart);
    connect(m_width, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, &PeriodWindow::slot_restart);
    connect(m_isLogarithmic, &QCheckBox::toggled, this, &PeriodWindow::slot_draw);
    return line;
}

QWidget *PeriodWindow::makeButtons()
{
    auto *line = new QWidget;
    auto *layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new QLabel(tr("A click on a bar shows a frame with such a period, the next click the next one.")),
                      1);
    auto *picture = new QPushButton(tr("Save &picture..."));
    picture->setObjectName(QStringLiteral("savePicture"));
    auto *csv = new QPushButton(tr("Save &CSV..."));
    csv->setObjectName(QStringLiteral("saveCsv"));
    layout->addWidget(picture);
    layout->addWidget(csv);
    connect(picture, &QPushButton::clicked, this, [this] {
        saveAs(this, tr("Save picture"), QStringLiteral("png"),
               [this](const QString &path) { return m_plot->savePicture(path); });
    });
    connect(csv, &QPushButton::clicked, this, [this] {
        saveAs(this, tr("Save CSV"), QStringLiteral("csv"), [this](const QString &path) { return saveCsv(path); });
    });
    return line;
}

void PeriodWindow::addMarkers()
{
    const QStringList names{tr("least"), QStringLiteral("-σ"), tr("mean"), QStringLiteral("+σ"), tr("greatest")};
    for (const QString &name : names) {
        auto *marker = new QwtPlotMarker;
        marker->setLineStyle(QwtPlotMarker::VLine);
        marker->setLabel(name);
        const bool isAtTheLeft = m_markers.size() == Greatest || m_markers.size() == Below;
        marker->setLabelAlignment((isAtTheLeft ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignTop);
        marker->attach(m_plot);
        m_markers.append(marker);
    }
}

void PeriodWindow::fillIdentifiers()
{
    std::vector<IdentifierStatistics> identifiers = m_tab.capture().overview().statistics();
    if (identifiers.size() == m_known) {
        return;
    }
    m_known = identifiers.size();
    std::sort(identifiers.begin(), identifiers.end(), [](const auto &a, const auto &b) {
        return std::make_pair(a.channel, a.key) < std::make_pair(b.channel, b.key);
    });
    const FrameNames names(m_tab.capture().signalSource().get());
    const QVariant current = m_identifier->currentData();
    const QSignalBlocker blocker(m_identifier);
    m_identifier->clear();
    for (const IdentifierStatistics &identifier : identifiers) {
        m_identifier->addItem(identifierLabel(identifier.key, identifier.channel, names),
                              itemOf(identifier.key, identifier.channel));
    }
    m_identifier->setCurrentIndex(std::max(0, m_identifier->findData(current)));
}

void PeriodWindow::setIdentifier(FrameKey key, quint16 channel)
{
    const int index = m_identifier->findData(itemOf(key, channel));
    if (index >= 0) {
        m_identifier->setCurrentIndex(index);
    }
}

void PeriodWindow::slot_look()
{
    fillIdentifiers();
    if (!m_run.isRunning()) {
        slot_restart();
    }
    m_run.extend();
}

void PeriodWindow::slot_restart()
{
    if (m_identifier->currentIndex() < 0) {
        return;
    }
    const quint64 item = m_identifier->currentData().toULongLong();
    PeriodChoice choice;
    choice.key = static_cast<FrameKey>(item);
    choice.channel = static_cast<quint16>(item >> 32U);
    choice.width = qRound64(m_width->value() * Millisecond);
    choice.leavesOutOutliers = m_range->currentIndex() == 0;
    if (m_periods && choice == m_choice) {
        return;
    }
    m_choice = choice;
    m_periods = nullptr;
    m_shownBin = -1;
    m_run.start(std::make_unique<PeriodWork>(m_tab.capture().sharedStore(), choice));
}

void PeriodWindow::slot_hasResult()
{
    m_periods = m_run.result();
    slot_draw();
}

void PeriodWindow::slot_draw()
{
    if (!m_periods) {
        return;
    }
    m_figures->setText(figures());
    drawBars();
    drawMarkers();
    m_plot->replot();
}

void PeriodWindow::drawBars()
{
    const PeriodHistogram &histogram = m_periods->histogram;
    const bool isLogarithmic = m_isLogarithmic->isChecked();
    QVector<QwtIntervalSample> samples;
    qint64 most = 1;
    for (std::size_t i = 0; i < histogram.counts.size(); ++i) {
        const auto begin = static_cast<double>(histogram.low + static_cast<qint64>(i) * histogram.width);
        most = std::max(most, histogram.counts[i]);
        if (histogram.counts[i] > 0) {
            samples.append({static_cast<double>(histogram.counts[i]), begin / Millisecond,
                            (begin + static_cast<double>(histogram.width)) / Millisecond});
        }
    }
    m_bars->setSamples(samples);
    m_bars->setBaseline(isLogarithmic ? LeastLogarithmic : 0);
    const QColor color = AnalysisPlot::lineColor(0);
    m_bars->setBrush(color);
    m_bars->setPen(color.darker(130), 0);
    if (isLogarithmic) {
        m_plot->setAxisScaleEngine(QwtPlot::yLeft, new QwtLogScaleEngine);
    } else {
        m_plot->setAxisScaleEngine(QwtPlot::yLeft, new QwtLinearScaleEngine);
    }
    constexpr double Room = 1.15; // for the names of the lines
    m_plot->setAxisScale(QwtPlot::yLeft, isLogarithmic ? LeastLogarithmic : 0,
                         isLogarithmic ? static_cast<double>(most) * 3 : static_cast<double>(most) * Room);
    if (!histogram.counts.empty()) {
        const auto width = static_cast<double>(histogram.width) / Millisecond;
        const auto low = static_cast<double>(histogram.low) / Millisecond;
        m_plot->setCursorStep(width);
        m_plot->setExtent(low - width, low + width * static_cast<double>(histogram.counts.size() + 1));
    }
}

void PeriodWindow::drawMarkers()
{
    const IdentifierStatistics &figures = m_periods->figures;
    const double mean = figures.meanPeriod;
    const double deviation = figures.periodDeviation();
    const QVector<double> places{static_cast<double>(figures.leastPeriod), mean - deviation, mean, mean + deviation,
                                 static_cast<double>(figures.greatestPeriod)};
    for (int i = 0; i < places.size(); ++i) {
        QwtPlotMarker &marker = *m_markers.at(i);
        const bool isDeviation = i == Below || i == Above;
        marker.setXValue(places.at(i) / Millisecond);
        marker.setVisible(figures.periodCount > 0 && (!isDeviation || deviation > 0));
        const QColor color = i == Mean ? AnalysisPlot::lineColor(1) : palette().color(QPalette::Text);
        marker.setLinePen(color, i == Mean ? 2 : 0, isDeviation ? Qt::DashLine : Qt::SolidLine);
        QwtText label = marker.label();
        label.setColor(color);
        label.setFont(font());
        marker.setLabel(label);
    }
}

QString PeriodWindow::figures() const
{
    const IdentifierStatistics &figures = m_periods->figures;
    if (figures.periodCount == 0) {
        return tr("There are no periods: fewer than two frames that have a time.");
    }
    const PeriodHistogram &histogram = m_periods->histogram;
    QString text =
        tr("%1 periods: least %2 ms, mean %3 ms, greatest %4 ms, standard deviation %5 ms; %6 frames a second; bins of "
           "%7 ms")
            .arg(QLocale().toString(figures.periodCount), milliseconds(static_cast<double>(figures.leastPeriod)),
                 milliseconds(figures.meanPeriod), milliseconds(static_cast<double>(figures.greatestPeriod)),
                 milliseconds(figures.periodDeviation()), QLocale().toString(figures.rate(), 'f', 3),
                 milliseconds(static_cast<double>(histogram.width)));
    if (histogram.below + histogram.above > 0) {
        text += tr("; %1 shorter and %2 longer ones are not shown")
                    .arg(QLocale().toString(histogram.below), QLocale().toString(histogram.above));
    }
    return text;
}

void PeriodWindow::slot_clicked(const QPointF &place)
{
    if (!m_periods || m_periods->histogram.counts.empty()) {
        return;
    }
    const PeriodHistogram &histogram = m_periods->histogram;
    const qint64 period = qRound64(std::max(0.0, std::min(place.x() * Millisecond, 9e18)));
    const qint64 bin = period < histogram.low ? -1 : (period - histogram.low) / histogram.width;
    if (bin < 0 || bin >= static_cast<qint64>(histogram.counts.size())) {
        return;
    }
    const qint64 after = bin == m_shownBin ? m_shownRow : -1;
    m_shownBin = bin;
    if (m_stopFinding) {
        *m_stopFinding = true;
    }
    m_stopFinding = std::make_shared<std::atomic<bool>>(false);
    const qint64 low = histogram.low + bin * histogram.width;
    const qint64 high = low + histogram.width;
    m_findThread.start(
        [this, store = m_tab.capture().sharedStore(), choice = m_choice, low, high, after, stop = m_stopFinding] {
            const qint64 row = findPeriod(*store, choice.key, choice.channel, low, high, after, *stop).value_or(-1);
            m_calls.post([this, stop, row] {
                if (!*stop && row >= 0) {
                    goTo(row);
                }
            });
        });
}

void PeriodWindow::goTo(qint64 row)
{
    m_shownRow = row;
    m_tab.showRow(row);
}

bool PeriodWindow::saveCsv(const QString &path) const
{
    QString text = QStringLiteral("from [ms],to [ms],count\r\n");
    if (m_periods) {
        const PeriodHistogram &histogram = m_periods->histogram;
        const auto edge = [&histogram](std::size_t bin) {
            return QString::number(
                static_cast<double>(histogram.low + static_cast<qint64>(bin) * histogram.width) / Millisecond, 'f', 6);
        };
        for (std::size_t i = 0; i < histogram.counts.size(); ++i) {
            text += QStringLiteral("%1,%2,%3\r\n").arg(edge(i), edge(i + 1)).arg(histogram.counts[i]);
        }
    }
    return saveText(path, text);
}
