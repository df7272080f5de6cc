#include "capture/CTableViewCAN.h"

#include "capture/CaptureWriter.h"
#include "capture/FrameRows.h"
#include "device/FrameIdentifier.h"

#include <QFileInfo>
#include <QSet>
#include <QTimer>
#include <QWheelEvent>

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

namespace {

constexpr int RefreshMs = 500;
constexpr int DefaultCacheSize = 1000000;
/// Memory of dropped rows given back at each refresh: a few milliseconds' work.
constexpr std::size_t ReleasePerRefresh = std::size_t{64} << 20U;
/// A queue that grew beyond this is given back after a refresh.
constexpr std::size_t QueueKept = 65536;

} // namespace

class CTableViewCANPrivate
{
public:
    explicit CTableViewCANPrivate(CTableViewCAN *owner)
        : rows(owner, store)
        , saving([owner](const QString &path) { emit owner->sig_realTimeSaveFailed(path); })
        , timer(new QTimer(owner))
    {
    }

    int room() const;
    void countQueue();
    void moveQueueToStore();
    void handOverQueue(quint64 firstNumber);

    FrameStore store;
    FrameRows rows;
    std::vector<FrameRecord> queue;
    QSet<quint32> hiddenIds;
    RealTimeSaving saving;
    QTimer *timer;
    quint64 numberAhead = 0; ///< how far the real-time file's numbers are ahead of the rows
    int cacheSize = DefaultCacheSize;
    bool autoScroll = false;
    bool phase = false; ///< flips at every refresh; the rates go out when it falls
    int transmitted = 0;
    int received = 0;
    quint64 unlisted = 0;     ///< since the last clear()
    quint64 unlistedTold = 0; ///< as it was when it was last told
};

/// How many frames may still be queued.
int CTableViewCANPrivate::room() const
{
    if (saving.isOn()) {
        return std::numeric_limits<int>::max();
    }
    return std::max(cacheSize - store.size() - static_cast<int>(queue.size()), 0);
}

void CTableViewCANPrivate::countQueue()
{
    const auto in = static_cast<int>(
        std::count_if(queue.begin(), queue.end(), [](const FrameRecord &frame) { return frame.isReceived(); }));
    received += in;
    transmitted += static_cast<int>(queue.size()) - in;
}

void CTableViewCANPrivate::moveQueueToStore()
{
    if (queue.empty()) {
        return;
    }
    const quint64 firstNumber = static_cast<quint64>(store.size()) + 1 + numberAhead;
    auto listed = queue.size();
    if (saving.isOn()) {
        listed = std::min(listed, static_cast<std::size_t>(std::max(cacheSize - store.size(), 0)));
        numberAhead += queue.size() - listed;
        unlisted += queue.size() - listed;
    }
    for (std::size_t i = 0; i < listed; ++i) {
        store.append(queue[i]);
    }
    if (listed > 0) {
        rows.update(autoScroll);
    }
    if (saving.isOn()) {
        handOverQueue(firstNumber);
    } else if (queue.capacity() > QueueKept) {
        std::vector<FrameRecord>().swap(queue);
    } else {
        queue.clear();
    }
}

/// The thread gives the rows' memory back as well.
void CTableViewCANPrivate::handOverQueue(quint64 firstNumber)
{
    std::vector<FrameRecord> next;
    next.reserve(std::min(queue.size(), QueueKept));
    saving.append(std::exchange(queue, std::move(next)), firstNumber);
}

CTableViewCAN::CTableViewCAN(QWidget *parent)
    : QWidget(parent)
    , m_p(std::make_unique<CTableViewCANPrivate>(this))
{
    connect(m_p->timer, &QTimer::timeout, this, &CTableViewCAN::refresh);
    m_p->timer->setTimerType(Qt::PreciseTimer); // the rates are counts per second
    m_p->timer->start(RefreshMs);
}

/// Rows that are still queued are gone; those handed over before are written.
CTableViewCAN::~CTableViewCAN() = default;

bool CTableViewCAN::isRealTimeSaving() const
{
    return m_p->saving.isOn();
}

bool CTableViewCAN::isRealTimePath(const QString &path)
{
    const CaptureFormat *format = captureFormat(path);
    return format != nullptr && format->realTimeFilter != nullptr;
}

void CTableViewCAN::setCacheSize(int count)
{
    m_p->cacheSize = std::max(count, 0);
    if (m_p->store.size() > m_p->cacheSize) {
        m_p->store.truncate(m_p->cacheSize);
        m_p->rows.update(true);
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
    m_p->hiddenIds.insert(id & MaxExtendedFrameId);
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

void CTableViewCAN::setTargetWrapper(RealTimeSaving::TargetWrapper wrapper)
{
    m_p->saving.setTargetWrapper(std::move(wrapper));
}

void CTableViewCAN::append(const DataObject &obj, bool filter)
{
    if (filter && m_p->hiddenIds.contains(obj.id)) {
        return;
    }
    if (m_p->room() > 0) {
        m_p->queue.push_back(obj);
    } else {
        ++m_p->unlisted;
    }
}

void CTableViewCAN::append(const QVector<DataObject> &objs, bool filter)
{
    if (filter && !m_p->hiddenIds.isEmpty()) {
        for (const DataObject &obj : objs) {
            append(obj, true);
        }
        return;
    }
    const int taken = std::min(m_p->room(), objs.size());
    m_p->queue.insert(m_p->queue.end(), objs.begin(), objs.begin() + taken);
    m_p->unlisted += static_cast<quint64>(objs.size() - taken);
}

void CTableViewCAN::clear()
{
    m_p->store.clear();
    m_p->rows.update(true);
    m_p->numberAhead = 0;
    m_p->unlisted = 0;
    m_p->unlistedTold = 0;
}

bool CTableViewCAN::save(const QString &path, int count)
{
    return saveRange(path, 0, count);
}

bool CTableViewCAN::saveRange(const QString &path, int first, int count)
{
    first = std::clamp(first, 0, rowCount());
    if (count < 0 || count > rowCount() - first) {
        count = rowCount() - first;
    }
    // The file is replaced by a new one: real-time saving to the same path has to go on in that.
    const QString realTimePath = m_p->saving.path();
    const bool isSameFile = isRealTimeSaving() && QFileInfo(path) == QFileInfo(realTimePath);
    if (isSameFile) {
        if (!m_p->saving.endAndWait()) {
            return false;
        }
        m_p->numberAhead = 0;
    }
    const FrameLabels &labels = m_p->rows.labels();
    const bool isSaved = saveCapture(path, m_p->store, first, count, labels);
    if (isSameFile && !m_p->saving.start(realTimePath, labels)) {
        emit sig_realTimeSaveFailed(realTimePath);
    }
    return isSaved;
}

bool CTableViewCAN::realTimeSave(bool enabled, const QString &path)
{
    if (!enabled) {
        if (isRealTimeSaving()) {
            endRealTimeSaving();
            waitForFiles(StopWait);
        }
        return false;
    }
    if (isRealTimeSaving()) {
        return false;
    }
    m_p->numberAhead = 0;
    return isRealTimePath(path) && save(path) && m_p->saving.start(path, m_p->rows.labels());
}

/// Rows that wait for the next refresh belong into the file as well.
void CTableViewCAN::endRealTimeSaving()
{
    if (isRealTimeSaving()) {
        m_p->countQueue();
        m_p->moveQueueToStore();
    }
    m_p->saving.end();
}

bool CTableViewCAN::waitForFiles(std::chrono::milliseconds time)
{
    return m_p->saving.waitForEnded(time);
}

void CTableViewCAN::refresh()
{
    m_p->phase = !m_p->phase;
    m_p->countQueue();
    if (!m_p->phase) {
        emit updateRate(std::exchange(m_p->transmitted, 0), std::exchange(m_p->received, 0));
    }
    m_p->moveQueueToStore();
    m_p->saving.reportFailures();
    m_p->store.releaseDropped(ReleasePerRefresh);
    if (std::exchange(m_p->unlistedTold, m_p->unlisted) != m_p->unlisted) {
        emit sig_unlistedChanged();
    }
}

bool CTableViewCAN::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Wheel) {
        m_p->rows.scrollByWheel(*static_cast<QWheelEvent *>(event));
        event->accept();
        return true;
    }
    if (event->type() == QEvent::Resize && watched == m_p->rows.place()) {
        m_p->rows.resize(); // the columns' scroll bar came or went
    }
    return QWidget::eventFilter(watched, event);
}

void CTableViewCAN::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    m_p->rows.resize();
}
