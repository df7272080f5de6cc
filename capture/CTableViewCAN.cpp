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
        : m_rows(owner, m_store)
        , m_saving([owner](const QString &path) { emit owner->sig_realTimeSaveFailed(path); })
        , m_timer(new QTimer(owner))
    {
    }

    int room() const;
    void countQueue();
    void moveQueueToStore();
    void handOverQueue(quint64 firstNumber);

    FrameStore m_store;
    FrameRows m_rows;
    std::vector<FrameRecord> m_queue;
    QSet<quint32> m_hiddenIds;
    RealTimeSaving m_saving;
    QTimer *m_timer;
    quint64 m_numberAhead = 0; ///< how far the real-time file's numbers are ahead of the rows
    int m_cacheSize = DefaultCacheSize;
    bool m_autoScroll = false;
    bool m_phase = false; ///< flips at every refresh; the rates go out when it falls
    int m_transmitted = 0;
    int m_received = 0;
    quint64 m_unlisted = 0;     ///< since the last clear()
    quint64 m_unlistedTold = 0; ///< as it was when it was last told
};

/// How many frames may still be queued.
int CTableViewCANPrivate::room() const
{
    if (m_saving.isOn()) {
        return std::numeric_limits<int>::max();
    }
    return std::max(m_cacheSize - m_store.size() - static_cast<int>(m_queue.size()), 0);
}

void CTableViewCANPrivate::countQueue()
{
    const auto in = static_cast<int>(
        std::count_if(m_queue.begin(), m_queue.end(), [](const FrameRecord &frame) { return frame.isReceived(); }));
    m_received += in;
    m_transmitted += static_cast<int>(m_queue.size()) - in;
}

void CTableViewCANPrivate::moveQueueToStore()
{
    if (m_queue.empty()) {
        return;
    }
    const quint64 firstNumber = static_cast<quint64>(m_store.size()) + 1 + m_numberAhead;
    auto listed = m_queue.size();
    if (m_saving.isOn()) {
        listed = std::min(listed, static_cast<std::size_t>(std::max(m_cacheSize - m_store.size(), 0)));
        m_numberAhead += m_queue.size() - listed;
        m_unlisted += m_queue.size() - listed;
    }
    for (std::size_t i = 0; i < listed; ++i) {
        m_store.append(m_queue[i]);
    }
    if (listed > 0) {
        m_rows.update(m_autoScroll);
    }
    if (m_saving.isOn()) {
        handOverQueue(firstNumber);
    } else if (m_queue.capacity() > QueueKept) {
        std::vector<FrameRecord>().swap(m_queue);
    } else {
        m_queue.clear();
    }
}

/// The thread gives the rows' memory back as well.
void CTableViewCANPrivate::handOverQueue(quint64 firstNumber)
{
    std::vector<FrameRecord> next;
    next.reserve(std::min(m_queue.size(), QueueKept));
    m_saving.append(std::exchange(m_queue, std::move(next)), firstNumber);
}

CTableViewCAN::CTableViewCAN(QWidget *parent)
    : QWidget(parent)
    , m_p(std::make_unique<CTableViewCANPrivate>(this))
{
    connect(m_p->m_timer, &QTimer::timeout, this, &CTableViewCAN::refresh);
    m_p->m_timer->setTimerType(Qt::PreciseTimer); // the rates are counts per second
    m_p->m_timer->start(RefreshMs);
}

/// Rows that are still queued are gone; those handed over before are written.
CTableViewCAN::~CTableViewCAN() = default;

bool CTableViewCAN::isRealTimeSaving() const
{
    return m_p->m_saving.isOn();
}

bool CTableViewCAN::isRealTimePath(const QString &path)
{
    const CaptureFormat *format = captureFormat(path);
    return format != nullptr && format->realTimeFilter != nullptr;
}

void CTableViewCAN::setCacheSize(int count)
{
    m_p->m_cacheSize = std::max(count, 0);
    if (m_p->m_store.size() > m_p->m_cacheSize) {
        m_p->m_store.truncate(m_p->m_cacheSize);
        m_p->m_rows.update(true);
    }
}

int CTableViewCAN::cacheSize() const
{
    return m_p->m_cacheSize;
}

void CTableViewCAN::setAutoScroll(bool enabled)
{
    m_p->m_autoScroll = enabled;
}

void CTableViewCAN::addFilterId(unsigned int id)
{
    m_p->m_hiddenIds.insert(id & MaxExtendedFrameId);
}

void CTableViewCAN::clearFilterIds()
{
    m_p->m_hiddenIds.clear();
}

int CTableViewCAN::rowCount() const
{
    return m_p->m_store.size();
}

quint64 CTableViewCAN::unlistedCount() const
{
    return m_p->m_unlisted;
}

void CTableViewCAN::setTargetWrapper(RealTimeSaving::TargetWrapper wrapper)
{
    m_p->m_saving.setTargetWrapper(std::move(wrapper));
}

void CTableViewCAN::append(const DataObject &obj, bool filter)
{
    if (filter && m_p->m_hiddenIds.contains(obj.id)) {
        return;
    }
    if (m_p->room() > 0) {
        m_p->m_queue.push_back(obj);
    } else {
        ++m_p->m_unlisted;
    }
}

void CTableViewCAN::append(const QVector<DataObject> &objs, bool filter)
{
    if (filter && !m_p->m_hiddenIds.isEmpty()) {
        for (const DataObject &obj : objs) {
            append(obj, true);
        }
        return;
    }
    const int taken = std::min(m_p->room(), objs.size());
    m_p->m_queue.insert(m_p->m_queue.end(), objs.begin(), objs.begin() + taken);
    m_p->m_unlisted += static_cast<quint64>(objs.size() - taken);
}

void CTableViewCAN::clear()
{
    m_p->m_store.clear();
    m_p->m_rows.update(true);
    m_p->m_numberAhead = 0;
    m_p->m_unlisted = 0;
    m_p->m_unlistedTold = 0;
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
    const QString realTimePath = m_p->m_saving.path();
    const bool isSameFile = isRealTimeSaving() && QFileInfo(path) == QFileInfo(realTimePath);
    if (isSameFile) {
        if (!m_p->m_saving.endAndWait()) {
            return false;
        }
        m_p->m_numberAhead = 0;
    }
    const FrameLabels &labels = m_p->m_rows.labels();
    const bool isSaved = saveCapture(path, m_p->m_store, first, count, labels);
    if (isSameFile && !m_p->m_saving.start(realTimePath, labels)) {
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
    m_p->m_numberAhead = 0;
    return isRealTimePath(path) && save(path) && m_p->m_saving.start(path, m_p->m_rows.labels());
}

/// Rows that wait for the next refresh belong into the file as well.
void CTableViewCAN::endRealTimeSaving()
{
    if (isRealTimeSaving()) {
        m_p->countQueue();
        m_p->moveQueueToStore();
    }
    m_p->m_saving.end();
}

bool CTableViewCAN::waitForFiles(std::chrono::milliseconds time)
{
    return m_p->m_saving.waitForEnded(time);
}

void CTableViewCAN::refresh()
{
    m_p->m_phase = !m_p->m_phase;
    m_p->countQueue();
    if (!m_p->m_phase) {
        emit updateRate(std::exchange(m_p->m_transmitted, 0), std::exchange(m_p->m_received, 0));
    }
    m_p->moveQueueToStore();
    m_p->m_saving.reportFailures();
    m_p->m_store.releaseDropped(ReleasePerRefresh);
    if (std::exchange(m_p->m_unlistedTold, m_p->m_unlisted) != m_p->m_unlisted) {
        emit sig_unlistedChanged();
    }
}

bool CTableViewCAN::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Wheel) {
        m_p->m_rows.scrollByWheel(*static_cast<QWheelEvent *>(event));
        event->accept();
        return true;
    }
    if (event->type() == QEvent::Resize && watched == m_p->m_rows.place()) {
        m_p->m_rows.resize(); // the columns' scroll bar came or went
    }
    return QWidget::eventFilter(watched, event);
}

void CTableViewCAN::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    m_p->m_rows.resize();
}
