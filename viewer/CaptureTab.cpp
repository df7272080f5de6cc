#include "viewer/CaptureTab.h"

#include "exchange/FindingLines.h"
#include "viewer/BookmarkPanel.h"
#include "viewer/CaptureSignals.h"
#include "viewer/core/FrameTimes.h"
#include "viewer/core/TimeTicks.h"
#include "viewer/EndButton.h"
#include "viewer/LoadNotice.h"
#include "viewer/OverviewActions.h"
#include "viewer/PeriodWindow.h"
#include "viewer/PlotPanel.h"
#include "viewer/TableLook.h"
#include "viewer/TableText.h"

#include <QCheckBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QInputDialog>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QSortFilterProxyModel>
#include <QSplitter>
#include <QTableView>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {

constexpr int OverviewMs = 500;
constexpr int PermilleSteps = 1000;
constexpr int PanelLines = 8;

QString counted(qint64 number)
{
    return QLocale().toString(number);
}

} // namespace

CaptureTab::CaptureTab(const QString &path, const StoreLoader::Open &open, const QString &bookmarkFolder,
                       QWidget *parent)
    : QWidget(parent)
    , m_capture(path, open, true)
    , m_search(m_capture)
    , m_bookmarkFolder(bookmarkFolder)
    , m_frames(m_capture)
    , m_identifiers(m_capture)
{
    m_capture.bookmarks() = Bookmarks::load(bookmarkFolder, path);
    m_table = new FrameTableView(m_frames);
    auto *splitter = new QSplitter(Qt::Vertical);
    splitter->addWidget(m_table);
    m_panels = new QTabWidget;
    m_panels->setObjectName(QStringLiteral("panels"));
    m_panels->setDocumentMode(true);
    addPanels();
    splitter->addWidget(m_panels);
    // The frames come first, however much room a panel would like.
    m_panels->setMinimumHeight(PanelLines * fontMetrics().lineSpacing());
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 2);
    splitter->setSizes({300, 200});
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    auto *notice = new LoadNotice(m_capture);
    connect(notice, &LoadNotice::sig_loadAgainWanted, this, &CaptureTab::sig_loadAgainWanted);
    layout->addWidget(notice);
    layout->addWidget(makeFilterLine());
    layout->addWidget(splitter, 1);
    layout->addWidget(makeStatusLine());
    connectTable();
    connectCapture();
    slot_progress();
}

CaptureTab::~CaptureTab()
{
    delete m_plots; // before the capture, which it uses to the end
}

void CaptureTab::connectTable()
{
    connect(m_table, &FrameTableView::sig_filterWanted, this, &CaptureTab::slot_filterWanted);
    connect(m_table, &FrameTableView::sig_findWanted, this, &CaptureTab::slot_findWanted);
    connect(m_table, &FrameTableView::sig_told, this, &CaptureTab::tell);
    connect(m_table, &FrameTableView::sig_markWanted, this, &CaptureTab::slot_markWanted);
    connect(m_table, &FrameTableView::sig_bookmarkWanted, this, &CaptureTab::slot_bookmarkWanted);
    connect(m_table, &FrameTableView::sig_currentChanged, this, &CaptureTab::sig_currentRowChanged);
    connect(m_table, &FrameTableView::sig_currentChanged, &m_search, &CaptureSearch::setRow);
    connect(m_table, &FrameTableView::sig_currentChanged, this, [this] {
        if (m_atRow->isChecked()) {
            slot_updateOverview();
        }
    });
}

void CaptureTab::connectCapture()
{
    connect(&m_capture, &OpenCapture::sig_progressChanged, this, &CaptureTab::slot_progress);
    connect(&m_capture, &OpenCapture::sig_signalSourceChanged, this, &CaptureTab::slot_sourceChanged);
    connect(&m_search, &CaptureSearch::sig_found, this, &CaptureTab::showRow);
    connect(&m_search, &CaptureSearch::sig_told, this, &CaptureTab::tell);
    connect(&m_search, &CaptureSearch::sig_countChanged, this, [this] { m_found->setText(m_search.countText()); });
    m_overviewTimer.setSingleShot(true);
    m_overviewTimer.setInterval(OverviewMs);
    connect(&m_overviewTimer, &QTimer::timeout, this, &CaptureTab::slot_updateOverview);
    connect(&m_capture, &OpenCapture::sig_overviewChanged, &m_overviewTimer, [this] {
        if (!m_overviewTimer.isActive()) {
            m_overviewTimer.start();
        }
    });
}

QWidget *CaptureTab::makeFilterLine()
{
    auto *line = new QWidget;
    auto *layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    m_filter = new FilterEdit;
    auto *label = new QLabel(tr("&Filter:"));
    label->setBuddy(m_filter);
    m_find = new FilterEdit;
    m_find->setObjectName(QStringLiteral("find"));
    m_find->setPlaceholderText(tr("Find, in the same language"));
    auto *findLabel = new QLabel(tr("F&ind:"));
    findLabel->setBuddy(m_find);
    layout->addWidget(label);
    layout->addWidget(m_filter, 2);
    layout->addWidget(findLabel);
    layout->addWidget(m_find, 1);
    m_found = new QLabel;
    m_found->setObjectName(QStringLiteral("found"));
    layout->addWidget(m_found);
    connect(m_filter, &FilterEdit::sig_filterTaken, this, &CaptureTab::slot_filterTaken);
    connect(m_filter, &FilterEdit::sig_filterRenewed, this, [this] { m_capture.setFilter(m_filter->filter()); });
    connect(m_find, &FilterEdit::sig_filterRenewed, this, [this] { m_search.setFilter(m_find->filter()); });
    connect(m_find, &FilterEdit::sig_filterTaken, this, [this] {
        m_search.setFilter(m_find->filter());
        findNext(false);
    });
    for (FilterEdit *edit : {m_filter, m_find}) {
        edit->setAcceptDrops(false); // files that are dropped go to the window
        connect(edit, &FilterEdit::sig_problemChanged, this, &CaptureTab::slot_problemChanged);
    }
    return line;
}

QWidget *CaptureTab::makeStatusLine()
{
    auto *line = new QWidget;
    auto *layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    m_state = new QLabel;
    m_state->setObjectName(QStringLiteral("state"));
    m_problem = new QLabel;
    m_problem->setObjectName(QStringLiteral("problem"));
    m_progress = new QProgressBar;
    m_progress->setRange(0, PermilleSteps);
    m_progress->setMaximumWidth(200);
    m_cancel = new QPushButton;
    m_cancel->setObjectName(QStringLiteral("cancel"));
    m_findings = new QPushButton;
    m_findings->setObjectName(QStringLiteral("findings"));
    layout->addWidget(m_state);
    layout->addSpacing(2 * fontMetrics().averageCharWidth());
    layout->addWidget(m_problem, 1);
    layout->addWidget(m_progress);
    layout->addWidget(new EndButton(*m_table, m_capture));
    layout->addWidget(m_cancel);
    layout->addWidget(m_findings);
    connect(m_cancel, &QPushButton::clicked, this, [this] { m_capture.loader().cancel(); });
    connect(m_findings, &QPushButton::clicked, this, &CaptureTab::slot_showFindings);
    return line;
}

QWidget *CaptureTab::makeOverview()
{
    auto *part = new QWidget;
    auto *layout = new QVBoxLayout(part);
    layout->setContentsMargins(0, 0, 0, 0);
    m_atRow = new QCheckBox(tr("Last data at the &selected frame instead of at the end"));
    m_atRow->setObjectName(QStringLiteral("atRow"));
    m_sorted = new QSortFilterProxyModel(this);
    m_sorted->setSourceModel(&m_identifiers);
    m_sorted->setSortRole(OverviewModel::SortRole);
    m_overview = new QTableView;
    m_overview->setObjectName(QStringLiteral("overview"));
    m_overview->setModel(m_sorted);
    setUpIdentifierTable(*m_overview);
    m_overview->sortByColumn(OverviewModel::Identifier, Qt::AscendingOrder);
    for (int column = 0; column < OverviewModel::ColumnCount; ++column) {
        m_overview->setColumnWidth(column, OverviewModel::widthInCharacters(column) *
                                               m_overview->fontMetrics().horizontalAdvance(QLatin1Char('0')));
    }
    layout->addWidget(m_atRow);
    layout->addWidget(m_overview);
    connect(m_atRow, &QCheckBox::toggled, this, &CaptureTab::slot_updateOverview);
    connect(m_overview, &QTableView::activated, this, &CaptureTab::slot_overviewActivated);
    auto *actions = new OverviewActions(*m_overview, m_identifiers);
    connect(actions, &OverviewActions::sig_filterWanted, this, &CaptureTab::slot_filterWanted);
    connect(actions, &OverviewActions::sig_histogramWanted, this,
            [this](FrameKey key, quint16 channel) { PeriodWindow::open(*this, key, channel); });
    return part;
}

void CaptureTab::addPanels()
{
    m_panels->addTab(makeOverview(), tr("Overview"));
    m_signals = std::make_unique<CaptureSignals>(*this);
    connect(m_signals.get(), &CaptureSignals::sig_plotWanted, this, &CaptureTab::plot);
    connect(m_signals.get(), &CaptureSignals::sig_told, this, &CaptureTab::tell);
    m_plots = new PlotPanel(m_capture, m_bookmarkFolder);
    m_panels->addTab(m_plots, tr("Plots"));
    m_panels->addTab(new BookmarkPanel(*this), tr("Bookmarks"));
    connect(this, &CaptureTab::sig_currentRowChanged, m_plots, &PlotPanel::showRow);
    connect(m_plots, &PlotPanel::sig_rowWanted, this, &CaptureTab::showRow);
    connect(m_table, &FrameTableView::sig_menuWanted, m_plots, &PlotPanel::addActions);
}

void CaptureTab::plot(const QString &expression)
{
    m_plots->addExpression(expression);
    m_panels->setCurrentWidget(m_plots);
}

void CaptureTab::showPanels(bool isShown)
{
    m_panels->setVisible(isShown);
}

void CaptureTab::editFilter()
{
    m_filter->setFocus(Qt::ShortcutFocusReason);
    m_filter->selectAll();
}

void CaptureTab::editFind()
{
    m_find->setFocus(Qt::ShortcutFocusReason);
    m_find->selectAll();
}

void CaptureTab::tell(const QString &text)
{
    m_problem->setText(text);
}

void CaptureTab::slot_problemChanged(const QString &text)
{
    tell(text);
}

void CaptureTab::slot_filterTaken()
{
    m_capture.setFilter(m_filter->filter());
    m_table->setFocus();
}

void CaptureTab::findNext(bool isBackward)
{
    if (!m_find->isTaken() && m_find->problem().isEmpty()) {
        slot_findWanted(m_find->text(), isBackward);
        return;
    }
    if (m_search.isEmpty()) {
        editFind();
        return;
    }
    tell({});
    m_search.next(isBackward);
}

void CaptureTab::slot_findWanted(const QString &filter, bool isBackward)
{
    m_find->edit(filter);
    FilterError error{};
    m_search.setFilter(Filter::parse(filter, m_capture.signalSource(), error).value_or(Filter()));
    findNext(isBackward);
}

void CaptureTab::slot_sourceChanged()
{
    m_filter->setSource(m_capture.signalSource());
    m_find->setSource(m_capture.signalSource());
}

void CaptureTab::setSettings(TableSettings &settings)
{
    m_look = new TableLook(settings, *m_table, m_frames);
    m_filter->setSettings(settings);
    m_find->setSettings(settings);
}

void CaptureTab::showRow(qint64 row)
{
    const qint64 place = m_capture.placeOf(row);
    if (place >= m_capture.rowCount()) {
        tell(tr("Frame %1 is not among those that are shown.").arg(counted(row + 1)));
        return;
    }
    if (m_capture.rowAt(place) != row) {
        tell(tr("Frame %1 does not pass the filter; this is the next one that does.").arg(counted(row + 1)));
    }
    const qint64 first = m_table->firstVisible();
    if (place < first || place >= first + m_table->visibleRows()) {
        constexpr int Before = 3; // a third of what is seen is in front of it
        m_table->verticalScrollBar()->setValue(static_cast<int>(place) - m_table->visibleRows() / Before);
    }
    m_table->setCurrentPlace(static_cast<int>(place));
    m_table->setFocus();
}

void CaptureTab::goTo()
{
    bool isTaken = false;
    const QString text = QInputDialog::getText(
        this, tr("Go to"), tr("Number of a frame, seconds (12.5, 300 ms) or clock time (13:45:06):"), QLineEdit::Normal,
        {}, &isTaken);
    if (!isTaken) {
        return;
    }
    const qint64 row = rowOfText(text, m_capture.store(), m_capture.info());
    if (row < 0) {
        tell(tr("There is no frame “%1”.").arg(text));
        return;
    }
    tell({});
    showRow(row);
}

void CaptureTab::slot_filterWanted(const QString &filter, bool isNegated)
{
    const QString wanted = isNegated ? QStringLiteral("not (%1)").arg(filter) : filter;
    const QString now = m_filter->text().trimmed();
    const bool isAlone = now.isEmpty() || !m_filter->problem().isEmpty();
    m_filter->take(isAlone ? wanted : QStringLiteral("(%1) and %2").arg(now, wanted));
}

void CaptureTab::toggleMark()
{
    slot_markWanted(m_table->currentRow());
}

void CaptureTab::slot_markWanted(qint64 row)
{
    m_capture.setMark(m_capture.mark() == row ? -1 : row);
    m_table->header().setSectionHidden(static_cast<int>(FrameColumn::SinceMark), m_capture.mark() < 0);
    m_frames.refresh();
}

void CaptureTab::editBookmark()
{
    slot_bookmarkWanted(m_table->currentRow());
}

void CaptureTab::slot_bookmarkWanted(qint64 row)
{
    if (row < 0) {
        return;
    }
    bool isTaken = false;
    const QString note = QInputDialog::getText(this, tr("Bookmark"),
                                               tr("Note for frame %1; without a note the bookmark goes:").arg(row + 1),
                                               QLineEdit::Normal, m_capture.bookmarks().note(row), &isTaken);
    if (!isTaken) {
        return;
    }
    setBookmark(row, note);
}

void CaptureTab::setBookmark(qint64 row, const QString &note)
{
    Bookmarks &bookmarks = m_capture.bookmarks();
    if (note.isEmpty()) {
        bookmarks.remove(row);
    } else if (!bookmarks.set(row, note)) {
        tell(tr("There are %1 bookmarks already.").arg(counted(Bookmarks::MaxCount)));
    }
    if (!bookmarks.save(m_bookmarkFolder, m_capture.path())) {
        tell(tr("The bookmarks cannot be saved."));
    }
    m_frames.refresh();
    emit sig_bookmarksChanged();
}

void CaptureTab::goToBookmark(bool isBackward)
{
    const qint64 row = m_table->currentRow();
    const qint64 found = isBackward ? m_capture.bookmarks().previous(row) : m_capture.bookmarks().next(row);
    if (found < 0 || found >= m_capture.store().size()) {
        tell(tr("There is no further bookmark."));
        return;
    }
    tell({});
    showRow(found);
    tell(m_capture.bookmarks().note(found));
}

void CaptureTab::filterBy(const QString &filter)
{
    m_filter->take(filter);
}

void CaptureTab::slot_overviewActivated(const QModelIndex &index)
{
    m_filter->take(m_identifiers.filterOf(m_sorted->mapToSource(index).row()));
}

void CaptureTab::slot_updateOverview()
{
    m_identifiers.setRow(m_atRow->isChecked() ? m_table->currentRow() : -1);
}

QString CaptureTab::progressText(const LoadProgress &progress) const
{
    switch (progress.state) {
    case LoadProgress::State::Loading: {
        const int seconds = m_capture.secondsLeft();
        return seconds < 0 ? tr("loading") : tr("loading, %1 s left").arg(seconds);
    }
    case LoadProgress::State::Following:
        return tr("following the file");
    case LoadProgress::State::Finished:
        return tr("complete");
    case LoadProgress::State::Cancelled:
        return tr("loading was stopped");
    case LoadProgress::State::Failed:
        return m_capture.loader().error();
    case LoadProgress::State::MemoryFull:
        return tr("memory is full; the rest was not loaded");
    }
    return {};
}

/// "1,234 frames over 12.5 s".
QString CaptureTab::framesText() const
{
    const BusFrameStore &store = m_capture.store();
    const qint64 count = store.size();
    const QString frames = m_capture.isFiltered()
                               ? tr("%1 of %2 frames").arg(counted(m_capture.rowCount()), counted(count))
                               : tr("%1 frames").arg(counted(count));
    const qint64 last = count > 0 ? store.greatestTime(BusFrameStore::blockOf(count - 1)) : BusFrame::NoTime;
    const qint64 duration = periodBetween(store.start(), last);
    constexpr double Exactness = 1e6; // nanoseconds
    return duration > 0 ? tr("%1 over %2").arg(frames, timeText(duration, Exactness, std::nullopt)) : frames;
}

void CaptureTab::slot_progress()
{
    const LoadProgress progress = m_capture.loader().progress();
    m_state->setText(tr("%1, %2").arg(framesText(), progressText(progress)));
    const bool isLoading = progress.state == LoadProgress::State::Loading;
    m_progress->setVisible(isLoading && m_capture.secondsLeft() >= 0);
    if (progress.size > 0) {
        m_progress->setValue(
            static_cast<int>(static_cast<double>(progress.bytes) / static_cast<double>(progress.size) * PermilleSteps));
    }
    m_cancel->setVisible(progress.isRunning());
    m_cancel->setText(isLoading ? tr("Stop loading") : tr("Stop following"));
    const qint64 findings = m_capture.loader().findingCount();
    m_findings->setVisible(findings > 0);
    m_findings->setText(tr("Findings: %1...").arg(counted(findings)));
}

void CaptureTab::slot_showFindings()
{
    const StoreLoader &loader = m_capture.loader();
    const QStringList lines = findingLines(loader.findings(), loader.findingCount());
    auto *dialog = new QDialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(tr("Findings"));
    auto *layout = new QVBoxLayout(dialog);
    auto *text = new QPlainTextEdit(lines.join(QLatin1Char('\n')));
    text->setObjectName(QStringLiteral("findingLines"));
    text->setReadOnly(true);
    text->setLineWrapMode(QPlainTextEdit::NoWrap);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    layout->addWidget(text);
    layout->addWidget(buttons);
    dialog->resize(700, 400);
    dialog->open();
}
