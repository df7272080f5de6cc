#include "viewer/PlotPanel.h"

#include "viewer/core/FrameColumns.h"
#include "viewer/core/FrameTimes.h"
#include "viewer/PlotArea.h"
#include "viewer/PlotColors.h"
#include "viewer/PlotCurveList.h"
#include "viewer/PlotPane.h"
#include "viewer/PlotTools.h"
#include "viewer/ValueEdit.h"

#include <QAction>
#include <QApplication>
#include <QColorDialog>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QSplitter>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace {

constexpr int KeepMs = 500;
constexpr int AutomaticPanes = 4; ///< up to which a new curve has a new pane

} // namespace

PlotPanel::PlotPanel(OpenCapture &capture, QString folder, QWidget *parent)
    : QWidget(parent)
    , m_capture(capture)
    , m_folder(std::move(folder))
    , m_curves(capture)
    , m_content(new QWidget)
    , m_layout(new QVBoxLayout(this))
    , m_placeholder(new QLabel(tr("The plots are in a window of their own.")))
{
    setObjectName(QStringLiteral("plots"));
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_placeholder->setAlignment(Qt::AlignCenter);
    m_placeholder->hide();
    m_layout->addWidget(m_placeholder);
    m_layout->addWidget(m_content);
    m_area = new PlotArea;
    m_tools = new PlotTools(*m_area);
    m_tools->value().setSource(m_capture.signalSource());
    m_list = new PlotCurveList;
    auto *splitter = new QSplitter;
    splitter->addWidget(m_area);
    splitter->addWidget(m_list);
    splitter->setStretchFactor(0, 1);
    splitter->setSizes({1000, 1}); // the list is as narrow as it can be
    auto *layout = new QVBoxLayout(m_content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_tools);
    layout->addWidget(splitter, 1);
    layout->addWidget(makeStatusLine());
    connectAll();
    for (const PlotEntry &entry : PlotEntries::load(m_folder, m_capture.path())) {
        m_curves.start(m_curves.add(entry));
    }
    arrange();
}

void PlotPanel::connectAll()
{
    connect(m_area, &PlotArea::sig_cursorWanted, this, &PlotPanel::slot_cursorWanted);
    connect(m_area, &PlotArea::sig_secondCursorChanged, this, &PlotPanel::fillValues);
    connect(m_area, &PlotArea::sig_drawn, this, &PlotPanel::slot_drawn);
    connect(m_list, &PlotCurveList::sig_shownChanged, this, &PlotPanel::setShown);
    connect(m_list, &PlotCurveList::sig_removeWanted, this, &PlotPanel::removeCurve);
    connect(m_list, &PlotCurveList::sig_paneWanted, this, &PlotPanel::moveCurve);
    connect(m_list, &PlotCurveList::sig_colorWanted, this, &PlotPanel::slot_chooseColor);
    connect(&m_export, &PlotExport::sig_finished, this, &PlotPanel::slot_exported);
    connect(&m_capture, &OpenCapture::sig_progressChanged, this, &PlotPanel::updateWhole);
    connect(&m_capture, &OpenCapture::sig_signalSourceChanged, this, &PlotPanel::slot_sourceChanged);
    m_keepTimer.setSingleShot(true);
    m_keepTimer.setInterval(KeepMs);
    connect(&m_keepTimer, &QTimer::timeout, this, &PlotPanel::keep);
    connect(&m_curves, &PlottedCurves::sig_filled, this, &PlotPanel::slot_filled);
    connect(&m_curves, &PlottedCurves::sig_problemChanged, this, &PlotPanel::fillList);
    connect(m_tools, &PlotTools::sig_saveWanted, this, &PlotPanel::slot_chooseFile);
    connect(&m_tools->clock(), &QAction::toggled, this, &PlotPanel::updateWhole);
    connect(&m_tools->ownWindow(), &QAction::triggered, this, &PlotPanel::setDetached);
    connect(&m_tools->value(), &ValueEdit::sig_valueTaken, this, &PlotPanel::addExpression);
    connect(&m_tools->value(), &FilterEdit::sig_problemChanged, m_message, &QLabel::setText);
}

PlotPanel::~PlotPanel()
{
    if (m_keepTimer.isActive()) {
        keep();
    }
    for (int i = 0; i < m_area->paneCount(); ++i) {
        m_area->pane(i).setItems({});
    }
}

QWidget *PlotPanel::makeStatusLine()
{
    auto *line = new QWidget;
    auto *layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    m_cursorText = new QLabel;
    m_cursorText->setObjectName(QStringLiteral("cursorText"));
    m_cursorText->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_message = new QLabel;
    m_message->setObjectName(QStringLiteral("message"));
    layout->addWidget(m_cursorText);
    layout->addWidget(m_message, 1, Qt::AlignRight);
    return line;
}

int PlotPanel::nextPane() const
{
    return m_curves.count() == 0 ? 0 : std::min(m_area->paneCount(), AutomaticPanes - 1);
}

void PlotPanel::addExpression(const QString &text)
{
    const QString wanted = text.trimmed();
    FilterError error{};
    if (!PlotExpression::parse(wanted, m_capture.signalSource(), error)) {
        m_message->setText(QStringLiteral("%1: %2").arg(wanted, error.text));
        return;
    }
    if (m_curves.indexOf(wanted) < 0) {
        if (m_curves.count() >= PlotEntries::MaxCount || wanted.size() > PlotEntries::MaxText) {
            m_message->setText(tr("These are as many curves as there can be."));
            return;
        }
        m_curves.start(m_curves.add({wanted, nextPane(), 0, true}));
        slot_changed();
    }
    m_message->clear();
    m_list->setCurrentItem(m_list->topLevelItem(m_curves.indexOf(wanted)));
}

void PlotPanel::addSeries(const QString &title, const QString &unit, Series series)
{
    const int index = m_curves.indexOf(title);
    PlottedCurve &plotted = index < 0 ? m_curves.add({title, nextPane(), 0, true}) : m_curves.at(index);
    plotted.isGiven = true;
    plotted.curve.setSeries(std::move(series), unit);
    arrange();
}

void PlotPanel::removeCurve(int index)
{
    const std::unique_ptr<PlottedCurve> gone = m_curves.take(index); // until its pane has let it go
    slot_changed();
}

void PlotPanel::moveCurve(int index, int step)
{
    PlotEntry &entry = m_curves.at(index).entry;
    const bool isAlone = std::count_if(m_curves.begin(), m_curves.end(), [&entry](const auto &plotted) {
                             return plotted->entry.pane == entry.pane;
                         }) == 1;
    const int last = isAlone ? m_area->paneCount() - 1 : std::min(m_area->paneCount(), PlotEntries::MaxPanes - 1);
    entry.pane = std::min(std::max(entry.pane + step, 0), last);
    slot_changed();
}

void PlotPanel::setColor(int index, const QColor &color)
{
    m_curves.at(index).entry.color = color.rgb();
    slot_changed();
}

void PlotPanel::setShown(int index, bool isShown)
{
    PlottedCurve &plotted = m_curves.at(index);
    plotted.entry.isShown = isShown;
    plotted.item.setVisible(isShown);
    slot_changed();
}

void PlotPanel::slot_chooseColor(int index)
{
    auto *dialog = new QColorDialog(m_curves.at(index).item.color(), m_list);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    const QString text = m_curves.at(index).entry.text;
    connect(dialog, &QColorDialog::colorSelected, this, [this, text](const QColor &color) {
        if (m_curves.indexOf(text) >= 0) {
            setColor(m_curves.indexOf(text), color);
        }
    });
    dialog->open();
}

void PlotPanel::slot_changed()
{
    arrange();
    m_keepTimer.start();
}

/// Panes without a curve go, and each has its curves.
void PlotPanel::arrange()
{
    std::vector<int> panes;
    for (const auto &plotted : m_curves) {
        panes.push_back(plotted->entry.pane);
    }
    std::sort(panes.begin(), panes.end());
    panes.erase(std::unique(panes.begin(), panes.end()), panes.end());
    m_area->setPaneCount(std::max(1, static_cast<int>(panes.size())));
    std::vector<std::vector<PlotCurveItem *>> items(static_cast<std::size_t>(m_area->paneCount()));
    std::vector<QStringList> units(items.size());
    for (const auto &plotted : m_curves) {
        PlotEntry &entry = plotted->entry;
        entry.pane = static_cast<int>(std::lower_bound(panes.begin(), panes.end(), entry.pane) - panes.begin());
        const auto pane = static_cast<std::size_t>(entry.pane);
        items[pane].push_back(&plotted->item);
        if (entry.isShown && !units[pane].contains(plotted->curve.unit())) {
            units[pane].append(plotted->curve.unit());
        }
    }
    const bool hasUnit = std::any_of(units.begin(), units.end(), [](const QStringList &ofPane) {
        return ofPane.size() == 1 && !ofPane.front().isEmpty();
    });
    const QString none = hasUnit ? QStringLiteral(" ") : QString(); // takes the same room, so that times stay in line
    for (std::size_t i = 0; i < items.size(); ++i) {
        PlotPane &pane = m_area->pane(static_cast<int>(i));
        pane.setItems(items[i]);
        pane.setUnit(units[i].size() == 1 && !units[i].front().isEmpty() ? units[i].front() : none);
    }
    applyColors();
    fillList();
    updateWhole();
    m_area->drawSoon();
}

void PlotPanel::applyColors()
{
    for (const auto &plotted : m_curves) {
        const PlotEntry &entry = plotted->entry;
        plotted->item.setColor(entry.color != 0 ? QColor::fromRgb(entry.color)
                                                : plotColor(plotted->number, palette().color(QPalette::Base)));
    }
}

void PlotPanel::fillList()
{
    QVector<PlotCurveList::Row> rows;
    for (const auto &plotted : m_curves) {
        const PlotEntry &entry = plotted->entry;
        rows.append({entry.text, plotted->curve.problem(), plotted->item.color(), entry.pane, entry.isShown});
    }
    m_list->setRows(rows);
    fillValues();
}

void PlotPanel::fillValues()
{
    const qint64 origin = m_area->origin();
    const std::optional<qint64> cursor = m_area->cursor();
    const std::optional<qint64> second = m_area->secondCursor();
    m_list->setSecondShown(second.has_value());
    for (int i = 0; i < m_curves.count(); ++i) {
        const PlotCurve &shown = m_curves.at(i).curve;
        const auto at = [&](const std::optional<qint64> &time) {
            return time ? shown.valueAt(boundedSum(origin, *time)) : std::nullopt;
        };
        const std::optional<double> first = at(cursor);
        const std::optional<double> other = at(second);
        const bool hasDifference = first && other && !shown.isState();
        m_list->setValues(i, {first ? shown.valueText(*first) : shown.problem(),
                              other ? shown.valueText(*other) : QString(),
                              hasDifference ? shown.valueText(*other - *first) : QString()});
    }
    const double perPixel = m_area->perPixel();
    QStringList texts;
    if (cursor) {
        texts.append(tr("Cursor: %1").arg(timeText(*cursor, perPixel, m_area->clock())));
    }
    if (second) {
        texts.append(tr("Second: %1").arg(timeText(*second, perPixel, m_area->clock())));
    }
    if (cursor && second) {
        texts.append(tr("Difference: %1").arg(distanceText(*second - *cursor)));
    }
    m_cursorText->setText(texts.join(QStringLiteral("   ")));
}

void PlotPanel::slot_drawn()
{
    m_tools->updateViews();
    fillValues();
}

void PlotPanel::slot_sourceChanged()
{
    m_tools->value().setSource(m_capture.signalSource());
    m_curves.startAll();
    arrange();
}

void PlotPanel::slot_filled()
{
    updateWhole();
    m_area->drawSoon();
}

void PlotPanel::updateWhole()
{
    const qint64 origin = m_capture.store().start();
    const CaptureInfo info = m_capture.info();
    const bool isAbsolute = info.timeBase == CaptureInfo::Absolute;
    QAction &clock = m_tools->clock();
    clock.setEnabled(isAbsolute || info.start != 0);
    const qint64 start = isAbsolute ? origin : boundedSum(info.start, origin);
    m_area->setOrigin(origin);
    m_area->setClock(clock.isEnabled() && clock.isChecked() ? std::make_optional(start) : std::nullopt);
    if (const std::optional<TimeSection> whole = m_curves.whole()) {
        constexpr qint64 Least = 1000; // a single frame has no width
        m_area->setWhole({whole->begin, std::max(whole->end, whole->begin + Least)});
    }
}

void PlotPanel::showRow(qint64 row)
{
    if (m_isAsking || row < 0 || row >= m_capture.store().size()) {
        return;
    }
    const std::optional<qint64> since = timeDistance(m_area->origin(), m_capture.store().time(row));
    if (since) {
        m_area->setCursor(*since);
        fillValues();
    }
}

/// The row whose time is nearest; where that is the cursor's, the next one in the direction of time.
qint64 PlotPanel::rowAt(qint64 time) const
{
    const BusFrameStore &store = m_capture.store();
    const qint64 origin = m_area->origin();
    const qint64 row = nearestRow(boundedSum(origin, time));
    if (!m_area->cursor() || time == *m_area->cursor()) {
        return row;
    }
    const qint64 cursor = boundedSum(origin, *m_area->cursor());
    if (time < *m_area->cursor()) {
        return store.time(row) < cursor ? row : std::max<qint64>(0, store.firstRowAt(cursor) - 1);
    }
    return store.time(row) > cursor ? row : std::min(store.firstRowAt(boundedSum(cursor, 1)), store.size() - 1);
}

qint64 PlotPanel::nearestRow(qint64 moment) const
{
    const BusFrameStore &store = m_capture.store();
    const qint64 row = std::min(store.firstRowAt(moment), store.size() - 1);
    const qint64 behind = timeDistance(moment, store.time(row)).value_or(0);
    const qint64 before = row > 0 ? timeDistance(store.time(row - 1), moment).value_or(-1) : -1;
    return before >= 0 && before < behind ? row - 1 : row;
}

/// The table goes to the frame, or where the filter does not pass it to another one; the cursor does not.
void PlotPanel::slot_cursorWanted(qint64 time)
{
    if (m_capture.store().size() == 0) {
        m_area->setCursor(time);
        return;
    }
    const qint64 row = rowAt(time);
    m_area->setCursor(timeDistance(m_area->origin(), m_capture.store().time(row)).value_or(time));
    fillValues();
    QWidget *focus = QApplication::focusWidget();
    m_isAsking = true;
    emit sig_rowWanted(row);
    m_isAsking = false;
    if (focus != nullptr && m_content->isAncestorOf(focus)) {
        focus->setFocus(); // keys go on here
    }
}

void PlotPanel::slot_chooseFile(bool isWhole)
{
    auto *dialog = new QFileDialog(m_content, tr("Save the plots"), QFileInfo(m_capture.path()).path());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    const QStringList filters{tr("Picture (*.png)"), tr("Document (*.pdf)"), tr("Table (*.csv)")};
    dialog->setNameFilters(filters);
    dialog->setDefaultSuffix(QStringLiteral("png"));
    connect(dialog, &QFileDialog::filterSelected, dialog, [dialog, filters](const QString &filter) {
        const QStringList suffixes{QStringLiteral("png"), QStringLiteral("pdf"), QStringLiteral("csv")};
        dialog->setDefaultSuffix(suffixes.value(filters.indexOf(filter)));
    });
    connect(dialog, &QFileDialog::fileSelected, this,
            [this, isWhole](const QString &path) { exportTo(path, isWhole); });
    dialog->open();
}

void PlotPanel::exportTo(const QString &path, bool isWhole)
{
    m_message->setText(tr("Saving %1").arg(QFileInfo(path).fileName()));
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == QLatin1String("png")) {
        m_export.savePng(*m_area, path, isWhole);
    } else if (suffix == QLatin1String("pdf")) {
        m_export.savePdf(*m_area, path, isWhole);
    } else {
        std::vector<PlotExport::Curve> columns;
        for (const auto &plotted : m_curves) {
            if (plotted->entry.isShown) {
                columns.push_back({plotted->entry.text, plotted->curve.series()});
            }
        }
        const qint64 origin = m_area->origin();
        const TimeSection section = m_area->views().section();
        SeriesCsvSection written{origin};
        if (!isWhole) {
            written.begin = boundedSum(origin, section.begin);
            written.end = boundedSum(origin, section.end);
        }
        m_curves.hold(true); // what is being written must not change
        m_export.saveCsv(std::move(columns), path, written);
    }
}

void PlotPanel::slot_exported(const QString &path, const QString &error)
{
    m_message->setText(error.isEmpty() ? tr("%1 was saved.").arg(QFileInfo(path).fileName())
                                       : tr("%1 was not saved: %2").arg(QFileInfo(path).fileName(), error));
    m_curves.hold(m_export.isRunning());
    emit sig_exported(path, error);
}

void PlotPanel::addActions(QMenu *menu, qint64 row)
{
    if (row < 0 || row >= m_capture.store().size()) {
        return;
    }
    const BusFrame frame = m_capture.store().frame(row);
    const QString same = FrameColumns::sameCell(FrameColumn::Identifier, m_capture.store(), row, {});
    QMenu *plot = menu->addMenu(tr("Plot"));
    const auto add = [this, plot, &same](const QString &text, const QString &value) {
        plot->addAction(text, this,
                        [this, expression = value + QStringLiteral(" of ") + same] { addExpression(expression); });
    };
    add(tr("Frames a second"), QStringLiteral("rate"));
    const bool hasData = (frame.flags & BusFrame::Remote) == 0;
    for (int byte = 0; hasData && byte < frame.length; ++byte) {
        add(tr("Byte %1").arg(byte), QStringLiteral("data[%1]").arg(byte));
    }
}

void PlotPanel::setDetached(bool isDetached)
{
    if (isDetached == (m_window != nullptr)) {
        return;
    }
    m_tools->ownWindow().setChecked(isDetached);
    m_placeholder->setVisible(isDetached);
    if (!isDetached) {
        m_layout->addWidget(m_content);
        m_content->show();
        m_window.release()->deleteLater(); // it may be closing right now
        return;
    }
    const QSize size = m_content->size().expandedTo(QSize(1000, 600));
    m_window = std::make_unique<QWidget>();
    m_window->setObjectName(QStringLiteral("plotWindow"));
    m_window->setWindowTitle(QFileInfo(m_capture.path()).fileName() + QStringLiteral(" - ") + tr("Plots"));
    auto *layout = new QVBoxLayout(m_window.get());
    layout->addWidget(m_content);
    m_window->installEventFilter(this);
    m_window->resize(size);
    m_window->show();
}

bool PlotPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_window.get() && event->type() == QEvent::Close) {
        setDetached(false);
    }
    return QWidget::eventFilter(watched, event);
}

void PlotPanel::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_list != nullptr) {
        applyColors();
        fillList();
        m_area->drawSoon();
    }
}

void PlotPanel::keep()
{
    m_keepTimer.stop();
    if (!PlotEntries::save(m_curves.entries(), m_folder, m_capture.path())) {
        m_message->setText(tr("The curves cannot be kept for the next time."));
    }
}
