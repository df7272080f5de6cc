#include "capture/CTableViewCAN.h"

#include "capture/CaptureWriter.h"
#include "capture/FrameDelegate.h"
#include "capture/FrameStore.h"
#include "capture/RealTimeFile.h"
#include "capture/RealTimeWriter.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QScrollBar>
#include <QSet>
#include <QSignalBlocker>
#include <QStandardItemModel>
#include <QTableView>
#include <QTimer>
#include <QWheelEvent>

#include <algorithm>
#include <array>
#include <iterator>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

namespace {

constexpr int RefreshMs = 500;
constexpr int RowHeight = 25;
constexpr int DefaultCacheSize = 1000000;
constexpr std::array<int, FrameColumnCount> ColumnWidths = {70, 90, 90, 120, 80, 80, 80, 80, 80, 200};
constexpr quint32 IdMask = 0x1FFFFFFF;
/// Memory of dropped rows given back at each refresh: a few milliseconds' work.
constexpr std::size_t ReleasePerRefresh = std::size_t{64} << 20U;
/// A queue that grew beyond this is given back after a refresh.
constexpr std::size_t QueueKept = 65536;

} // namespace

class CTableViewCANPrivate
{
public:
    explicit CTableViewCANPrivate(CTableViewCAN *owner);

    void append(const FrameRecord &frame, bool filter);
    void append(const QVector<FrameRecord> &frames, bool filter);
    void countQueue();
    void moveQueueToStore();
    void resize();
    void scrollTo(int row);
    void scrollByWheel(const QWheelEvent &event) const;
    void cutStore(int size);
    void clear();
    bool save(const QString &path, int first, int count);
    bool startRealTime(const QString &path);
    void endRealTime();
    bool waitForFiles(std::chrono::milliseconds time);
    void reportFailures();

    CTableViewCAN *q;
    QTableView *view;
    QScrollBar *bar;
    QStandardItemModel *model;
    QTimer *timer;

    std::unique_ptr<RealTimeWriter> realTime; ///< null: nothing is saved in real time
    CTableViewCAN::TargetWrapper targetWrapper;
    int cacheSize = DefaultCacheSize;
    bool autoScroll = false;
    bool phase = false; ///< flips at every refresh; the rates go out when it falls
    int transmitted = 0;
    int received = 0;
    quint64 unlisted = 0;     ///< since the last clear()
    quint64 unlistedTold = 0; ///< as it was when it was last told
    QSet<quint32> hiddenIds;
    FrameStore store;

private:
    static FrameLabels translatedLabels();
    void createView();
    void createScrollBar() const;
    int headerHeight() const;
    int rowsHeight() const;
    int room() const;
    bool openRealTime(const QString &path);
    void handOver(quint64 firstNumber);
    void failRealTime();
    bool isHidden(const FrameRecord &frame) const { return hiddenIds.contains(frame.id); }
    void updateScrollRange();
    void scrollToBottom();
    void updateShownRows();
    void setModelRows(int rows);
    bool setRow(int row, int index) const;
    bool setCell(int row, int column, const QString &text) const;

    const FrameLabels m_labels = translatedLabels();
    const QFont m_font{QStringLiteral("Microsoft Yahei"), 9};
    std::vector<FrameRecord> m_queue;
    /// Files whose saving has ended, but not their writing.
    std::vector<std::unique_ptr<RealTimeWriter>> m_finishing;
    quint64 m_numberAhead = 0; ///< how far the real-time file's numbers are ahead of the rows
    int m_visibleRows = 0;
    int m_firstRow = -1;
};

CTableViewCANPrivate::CTableViewCANPrivate(CTableViewCAN *owner)
    : q(owner)
    , view(new QTableView(owner))
    , bar(new QScrollBar(Qt::Vertical, owner))
    , model(new QStandardItemModel(0, FrameColumnCount, owner))
    , timer(new QTimer(owner))
{
    createView();
    createScrollBar();
    auto *layout = new QHBoxLayout(owner);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(view);
    layout->addWidget(bar);
}

FrameLabels CTableViewCANPrivate::translatedLabels()
{
    FrameLabels labels;
    labels.titles = {QStringLiteral("No."),          CTableViewCAN::tr("System Time"), CTableViewCAN::tr("Time Stamp"),
                     CTableViewCAN::tr("Direction"), CTableViewCAN::tr("ID"),          CTableViewCAN::tr("Protocol"),
                     CTableViewCAN::tr("Format"),    CTableViewCAN::tr("Type"),        CTableViewCAN::tr("Length"),
                     CTableViewCAN::tr("Data")};
    const auto set = [&labels](FrameLabel label, const QString &word) {
        labels.words[static_cast<std::size_t>(label)] = word;
    };
    set(FrameLabel::None, CTableViewCAN::tr("None"));
    set(FrameLabel::Received, CTableViewCAN::tr("Revice"));
    set(FrameLabel::SendSuccess, CTableViewCAN::tr("Send successfully"));
    set(FrameLabel::SendFailure, CTableViewCAN::tr("Send failure"));
    set(FrameLabel::Can, QStringLiteral("CAN"));
    set(FrameLabel::CanFd, QStringLiteral("CANFD"));
    set(FrameLabel::CanFdSpeed, CTableViewCAN::tr("CANFD Speed"));
    set(FrameLabel::Data, CTableViewCAN::tr("Data", "frame format"));
    set(FrameLabel::Remote, CTableViewCAN::tr("Remote"));
    set(FrameLabel::Standard, CTableViewCAN::tr("Standard"));
    set(FrameLabel::Extend, CTableViewCAN::tr("Extend"));
    return labels;
}

void CTableViewCANPrivate::createView()
{
    view->setObjectName(QStringLiteral("frameView"));
    for (int column = 0; column < FrameColumnCount; ++column) {
        model->setHorizontalHeaderItem(column, new QStandardItem(m_labels.titles[static_cast<std::size_t>(column)]));
    }
    view->setModel(model);
    view->setItemDelegate(new FrameDelegate(m_font, view));
    view->setSelectionMode(QAbstractItemView::NoSelection);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->setAlternatingRowColors(true);
    view->setWordWrap(false);
    view->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    view->setAutoScroll(false);
    view->setTabKeyNavigation(false); // Tab goes on
    QHeaderView *rows = view->verticalHeader();
    rows->hide();
    rows->setSectionResizeMode(QHeaderView::Fixed);
    rows->setMinimumSectionSize(RowHeight);
    rows->setDefaultSectionSize(RowHeight);
    for (int column = 0; column < FrameColumnCount; ++column) {
        view->setColumnWidth(column, ColumnWidths[static_cast<std::size_t>(column)]);
    }
    view->installEventFilter(q);
    view->viewport()->installEventFilter(q); // where the wheel's events arrive first, and the size of the rows' place
}

void CTableViewCANPrivate::createScrollBar() const
{
    bar->setObjectName(QStringLiteral("frameScrollBar"));
    bar->setSingleStep(1);
    bar->setPageStep(1);
    bar->setRange(0, 0);
    bar->hide();
    bar->installEventFilter(q);
}

/// Until it is shown, the header has not got its height yet.
int CTableViewCANPrivate::headerHeight() const
{
    const QHeaderView *header = view->horizontalHeader();
    return header->isVisible() ? header->height() : header->sizeHint().height();
}

/// What there is for rows: less when the columns have a scroll bar below them.
int CTableViewCANPrivate::rowsHeight() const
{
    const int height = q->height() - headerHeight();
    return view->horizontalScrollBar()->isVisible() ? std::min(height, view->viewport()->height()) : height;
}

/// How many frames may still be queued.
int CTableViewCANPrivate::room() const
{
    if (realTime) {
        return std::numeric_limits<int>::max();
    }
    return std::max(cacheSize - store.size() - static_cast<int>(m_queue.size()), 0);
}

void CTableViewCANPrivate::append(const FrameRecord &frame, bool filter)
{
    if (filter && isHidden(frame)) {
        return;
    }
    if (room() > 0) {
        m_queue.push_back(frame);
    } else {
        ++unlisted;
    }
}

void CTableViewCANPrivate::append(const QVector<FrameRecord> &frames, bool filter)
{
    if (filter && !hiddenIds.isEmpty()) {
        for (const FrameRecord &frame : frames) {
            append(frame, true);
        }
        return;
    }
    const int taken = std::min(room(), frames.size());
    m_queue.insert(m_queue.end(), frames.begin(), frames.begin() + taken);
    unlisted += static_cast<quint64>(frames.size() - taken);
}

void CTableViewCANPrivate::countQueue()
{
    const auto count = static_cast<int>(m_queue.size());
    const auto in = static_cast<int>(std::count_if(m_queue.begin(), m_queue.end(), [](const FrameRecord &frame) {
        return frame.direction == FrameRecord::Received;
    }));
    received += in;
    transmitted += count - in;
}

/// Rows that wait for the next refresh belong into the file as well.
void CTableViewCANPrivate::endRealTime()
{
    if (realTime) {
        countQueue();
        moveQueueToStore();
    }
    if (realTime) {
        realTime->finish();
        m_finishing.push_back(std::move(realTime));
    }
}

bool CTableViewCANPrivate::waitForFiles(std::chrono::milliseconds time)
{
    const auto deadline = std::chrono::steady_clock::now() + time;
    bool areComplete = true;
    for (const auto &writer : m_finishing) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        areComplete &= writer->waitFinished(std::max(left, std::chrono::milliseconds(0))) && !writer->hasFailed();
    }
    reportFailures();
    return areComplete;
}

/// Says of which files the writing has failed since the last time.
void CTableViewCANPrivate::reportFailures()
{
    if (realTime && realTime->hasFailed()) {
        failRealTime();
    }
    const auto firstEnded = std::partition(m_finishing.begin(), m_finishing.end(), [](const auto &writer) {
        return !writer->waitFinished(std::chrono::milliseconds(0));
    });
    const std::vector<std::unique_ptr<RealTimeWriter>> ended(std::make_move_iterator(firstEnded),
                                                             std::make_move_iterator(m_finishing.end()));
    m_finishing.erase(firstEnded, m_finishing.end());
    for (const auto &writer : ended) {
        if (writer->hasFailed()) {
            emit q->sig_realTimeSaveFailed(writer->path());
        }
    }
}

/// What was handed over is still written, if the file ever moves on; that it failed is said here and only here.
void CTableViewCANPrivate::failRealTime()
{
    emit q->sig_realTimeSaveFailed(std::exchange(realTime, nullptr)->path());
}

void CTableViewCANPrivate::moveQueueToStore()
{
    if (m_queue.empty()) {
        return;
    }
    const quint64 firstNumber = static_cast<quint64>(store.size()) + 1 + m_numberAhead;
    auto listed = m_queue.size();
    if (realTime) {
        listed = std::min(listed, static_cast<std::size_t>(std::max(cacheSize - store.size(), 0)));
        m_numberAhead += m_queue.size() - listed;
        unlisted += m_queue.size() - listed;
    }
    for (std::size_t i = 0; i < listed; ++i) {
        store.append(m_queue[i]);
    }
    if (listed > 0) {
        updateScrollRange();
        if (autoScroll) {
            scrollToBottom();
        }
        updateShownRows();
    }
    if (realTime) {
        handOver(firstNumber);
    } else if (m_queue.capacity() > QueueKept) {
        std::vector<FrameRecord>().swap(m_queue);
    } else {
        m_queue.clear();
    }
}

/// The thread gives the rows' memory back as well.
void CTableViewCANPrivate::handOver(quint64 firstNumber)
{
    std::vector<FrameRecord> next;
    next.reserve(std::min(m_queue.size(), QueueKept));
    if (!realTime->append(std::exchange(m_queue, std::move(next)), firstNumber)) {
        failRealTime();
    }
}

/// The caller brings the shown rows up to date, so the bar's own signal is held back.
void CTableViewCANPrivate::updateScrollRange()
{
    const QSignalBlocker blocker(bar);
    const int hidden = store.size() - m_visibleRows;
    const int before = bar->value();
    bar->setRange(0, std::max(hidden, 0));
    bar->setVisible(hidden > 0);
    if (bar->value() != before) {
        m_firstRow = bar->value();
    }
}

void CTableViewCANPrivate::scrollToBottom()
{
    const QSignalBlocker blocker(bar);
    m_firstRow = store.size() - m_visibleRows;
    bar->setValue(m_firstRow);
}

void CTableViewCANPrivate::scrollTo(int row)
{
    m_firstRow = row;
    updateShownRows();
}

/// What shows the end goes on showing it.
void CTableViewCANPrivate::resize()
{
    m_visibleRows = std::max(0, rowsHeight()) / RowHeight;
    if (m_visibleRows == 0 || store.isEmpty()) {
        return;
    }
    const bool isAtEnd = bar->value() == bar->maximum();
    updateScrollRange();
    if (isAtEnd) {
        scrollToBottom();
    }
    updateShownRows();
}

/// One row per event, whatever its size; what goes sideways is for the columns.
void CTableViewCANPrivate::scrollByWheel(const QWheelEvent &event) const
{
    const QPoint delta = event.angleDelta();
    if (delta.x() != 0) {
        QWheelEvent sideways(event.position(), event.globalPosition(), QPoint(event.pixelDelta().x(), 0),
                             QPoint(delta.x(), 0), event.buttons(), event.modifiers(), event.phase(), event.inverted(),
                             event.source());
        QCoreApplication::sendEvent(view->horizontalScrollBar(), &sideways);
    }
    // A trackpad begins and ends a movement with events that have no delta.
    const bool hasNone = delta.isNull() && event.phase() == Qt::NoScrollPhase;
    if (delta.y() != 0 || hasNone) {
        bar->setValue(bar->value() + (delta.y() < 1 ? 1 : -1));
    }
}

void CTableViewCANPrivate::cutStore(int size)
{
    store.truncate(size);
    updateScrollRange();
    scrollToBottom();
    updateShownRows();
}

void CTableViewCANPrivate::clear()
{
    store.clear();
    m_numberAhead = 0;
    unlisted = 0;
    unlistedTold = 0;
    setModelRows(0);
    const QSignalBlocker blocker(bar);
    bar->setRange(0, 0);
    bar->hide();
    m_firstRow = 0;
}

void CTableViewCANPrivate::updateShownRows()
{
    view->clearSelection();
    m_firstRow = std::clamp(m_firstRow, 0, std::max(store.size() - 1, 0));
    const int rows = std::min(m_visibleRows, store.size() - m_firstRow);
    setModelRows(rows);
    bool changed = false;
    {
        // One signal for all cells: the view would find the place of every single one.
        const QSignalBlocker blocker(model);
        for (int row = 0; row < rows; ++row) {
            changed |= setRow(row, m_firstRow + row);
        }
    }
    if (changed) {
        emit model->dataChanged(model->index(0, 0), model->index(rows - 1, FrameColumnCount - 1), {Qt::DisplayRole});
    }
}

void CTableViewCANPrivate::setModelRows(int rows)
{
    const int present = model->rowCount();
    if (present > rows) {
        model->removeRows(rows, present - rows);
    }
    for (int row = present; row < rows; ++row) {
        QList<QStandardItem *> items;
        for (int column = 0; column < FrameColumnCount; ++column) {
            items.append(new QStandardItem);
            items.last()->setSizeHint(QSize(0, RowHeight));
            items.last()->setFont(m_font);
        }
        model->appendRow(items);
    }
}

bool CTableViewCANPrivate::setRow(int row, int index) const
{
    const FrameView frame = store.at(index);
    bool changed = setCell(row, 0, frameNumber(index));
    for (int column = 1; column < FrameColumnCount; ++column) {
        changed |= setCell(row, column, frameCell(frame, static_cast<FrameColumn>(column), m_labels));
    }
    return changed;
}

bool CTableViewCANPrivate::setCell(int row, int column, const QString &text) const
{
    QStandardItem *item = model->item(row, column);
    if (item->text() == text) {
        return false;
    }
    item->setText(text);
    return true;
}

bool CTableViewCANPrivate::save(const QString &path, int first, int count)
{
    first = std::clamp(first, 0, store.size());
    if (count < 0 || count > store.size() - first) {
        count = store.size() - first;
    }
    // The file is replaced by a new one: real-time saving to the same path has to go on in that.
    const QString realTimePath = realTime ? realTime->path() : QString();
    const bool sameFile = realTime && QFileInfo(path) == QFileInfo(realTimePath);
    if (sameFile) {
        realTime->finish();
        if (!realTime->waitFinished(CTableViewCAN::StopWait) || realTime->hasFailed()) {
            failRealTime();
            return false;
        }
        realTime.reset();
        m_numberAhead = 0;
    }
    const bool saved = saveCapture(path, store, first, count, m_labels);
    if (sameFile && !openRealTime(realTimePath)) {
        emit q->sig_realTimeSaveFailed(realTimePath);
    }
    return saved;
}

bool CTableViewCANPrivate::openRealTime(const QString &path)
{
    auto file = std::make_unique<RealTimeFile>();
    if (!file->open(path, m_labels)) {
        return false;
    }
    std::unique_ptr<RealTimeTarget> target = std::move(file);
    if (targetWrapper) {
        target = targetWrapper(std::move(target));
    }
    realTime = std::make_unique<RealTimeWriter>(path, std::move(target));
    return true;
}

bool CTableViewCANPrivate::startRealTime(const QString &path)
{
    m_numberAhead = 0;
    return CTableViewCAN::isRealTimePath(path) && save(path, 0, -1) && openRealTime(path);
}

CTableViewCAN::CTableViewCAN(QWidget *parent)
    : QWidget(parent)
    , m_p(std::make_unique<CTableViewCANPrivate>(this))
{
    connect(m_p->bar, &QScrollBar::valueChanged, this, [this](int value) { m_p->scrollTo(value); });
    connect(m_p->timer, &QTimer::timeout, this, &CTableViewCAN::refresh);
    m_p->timer->setTimerType(Qt::PreciseTimer); // the rates are counts per second
    m_p->timer->start(RefreshMs);
}

/// Rows that are still queued are gone; those handed over before are written.
CTableViewCAN::~CTableViewCAN()
{
    if (m_p->realTime) {
        m_p->realTime->finish();
        m_p->realTime->waitFinished(StopWait);
    }
}

bool CTableViewCAN::isRealTimeSaving() const
{
    return m_p->realTime != nullptr;
}

bool CTableViewCAN::isRealTimePath(const QString &path)
{
    const std::optional<CaptureFormat> format = captureFormat(path);
    return format == CaptureFormat::Csv || format == CaptureFormat::Text;
}

void CTableViewCAN::setCacheSize(int count)
{
    m_p->cacheSize = std::max(count, 0);
    if (m_p->store.size() > m_p->cacheSize) {
        m_p->cutStore(m_p->cacheSize);
    }
}

int CTableViewCAN::cacheSize() const
{
    return m_p->cacheSize;
}

void CTableViewCAN::setAutoScroll(bool enabled)
{
    m_p->autoScroll = enabled;
}

void CTableViewCAN::addFilterId(unsigned int id)
{
    m_p->hiddenIds.insert(id & IdMask);
}

void CTableViewCAN::clearFilterIds()
{
    m_p->hiddenIds.clear();
}

int CTableViewCAN::rowCount() const
{
    return m_p->store.size();
}

quint64 CTableViewCAN::unlistedCount() const
{
    return m_p->unlisted;
}

void CTableViewCAN::endRealTimeSaving()
{
    m_p->endRealTime();
}

bool CTableViewCAN::waitForFiles(std::chrono::milliseconds time)
{
    return m_p->waitForFiles(time);
}

void CTableViewCAN::setTargetWrapper(TargetWrapper wrapper)
{
    m_p->targetWrapper = std::move(wrapper);
}

bool CTableViewCAN::saveRange(const QString &path, int first, int count)
{
    return m_p->save(path, first, count);
}

void CTableViewCAN::append(const DataObject &obj, bool filter)
{
    m_p->append(obj, filter);
}

void CTableViewCAN::append(const QVector<DataObject> &objs, bool filter)
{
    m_p->append(objs, filter);
}

void CTableViewCAN::clear()
{
    m_p->clear();
}

bool CTableViewCAN::save(const QString &path, int count)
{
    return m_p->save(path, 0, count);
}

bool CTableViewCAN::realTimeSave(bool enabled, const QString &path)
{
    if (!enabled) {
        if (isRealTimeSaving()) {
            m_p->endRealTime();
            m_p->waitForFiles(StopWait);
        }
        return false;
    }
    return !isRealTimeSaving() && m_p->startRealTime(path);
}

void CTableViewCAN::refresh()
{
    m_p->phase = !m_p->phase;
    m_p->countQueue();
    if (!m_p->phase) {
        emit updateRate(std::exchange(m_p->transmitted, 0), std::exchange(m_p->received, 0));
    }
    m_p->moveQueueToStore();
    m_p->reportFailures();
    m_p->store.releaseDropped(ReleasePerRefresh);
    if (std::exchange(m_p->unlistedTold, m_p->unlisted) != m_p->unlisted) {
        emit sig_unlistedChanged();
    }
}

bool CTableViewCAN::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Wheel) {
        m_p->scrollByWheel(*static_cast<QWheelEvent *>(event));
        event->accept();
        return true;
    }
    if (event->type() == QEvent::Resize && watched == m_p->view->viewport()) {
        m_p->resize(); // the columns' scroll bar came or went
    }
    return QWidget::eventFilter(watched, event);
}

void CTableViewCAN::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    m_p->resize();
}
