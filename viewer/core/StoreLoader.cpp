#include "viewer/core/StoreLoader.h"

#include <QCoreApplication>
#include <QThread>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <new>
#include <utility>
#include <vector>

/// One loading: belongs to its thread and to the loader, so either may go first.
struct StoreLoader::Load
{
    static constexpr int BatchSize = 4096;

    Load(std::shared_ptr<BusFrameStore> target, Open function, bool follow)
        : store(std::move(target))
        , open(std::move(function))
        , isFollowed(follow)
    {
    }

    void run();
    LoadProgress::State readAll(CaptureStream &stream);
    bool readToEnd(CaptureStream &stream, LoadProgress::State &failure);
    bool isStillThere(const CaptureStream &stream);
    void waitForMore();
    void begin(FrameReader &reader, const BusFrame &first);
    void publish(const CaptureStream &stream);
    void setState(LoadProgress::State state);

    std::shared_ptr<BusFrameStore> store;
    Open open;
    Findings reported; ///< the thread's own
    std::vector<BusFrame> batch = std::vector<BusFrame>(BatchSize);
    qint64 published = 0; ///< of reported

    std::atomic<bool> isStopped{false};
    std::atomic<bool> isFollowed;
    mutable std::mutex mutex; ///< guards what is below
    std::condition_variable wake;
    LoadProgress progress;
    CaptureInfo info;
    QString error;
    QVector<Finding> findings;
    qint64 findingCount = 0;
};

void StoreLoader::Load::setState(LoadProgress::State state)
{
    const std::lock_guard<std::mutex> lock(mutex);
    progress.state = state;
}

void StoreLoader::Load::publish(const CaptureStream &stream)
{
    const std::lock_guard<std::mutex> lock(mutex);
    progress.frames = store->size();
    progress.bytes = stream.position();
    progress.size = stream.size();
    if (reported.count() != published) {
        published = reported.count();
        findings = reported.kept();
        findingCount = published;
    }
}

void StoreLoader::Load::begin(FrameReader &reader, const BusFrame &first)
{
    const CaptureInfo &read = reader.info();
    if (read.timeBase == CaptureInfo::Absolute) {
        store->setStart(read.start != 0 || first.time == BusFrame::NoTime ? read.start : first.time);
    }
    const std::lock_guard<std::mutex> lock(mutex);
    info = read;
}

/// False when loading has come to its end, with the reason in failure.
bool StoreLoader::Load::readToEnd(CaptureStream &stream, LoadProgress::State &failure)
{
    while (!isStopped) {
        const int count = stream.reader().read(batch.data(), BatchSize);
        if (count > 0 && store->size() == 0) {
            begin(stream.reader(), batch.front());
        }
        const int taken = store->append(batch.data(), count);
        publish(stream);
        if (taken < count) {
            failure = LoadProgress::State::MemoryFull;
            return false;
        }
        if (count == 0) {
            return true;
        }
    }
    failure = LoadProgress::State::Cancelled;
    return false;
}

void StoreLoader::Load::waitForMore()
{
    std::unique_lock<std::mutex> lock(mutex);
    progress.state = LoadProgress::State::Following;
    wake.wait_for(lock, std::chrono::milliseconds(FollowMs), [this] { return isStopped || !isFollowed; });
}

/// False, with the error, when the file that is followed is not what it was.
bool StoreLoader::Load::isStillThere(const CaptureStream &stream)
{
    const bool isShorter = stream.size() > 0 && stream.size() < stream.position();
    if (!isShorter && stream.isInPlace()) {
        return true;
    }
    const std::lock_guard<std::mutex> lock(mutex);
    error = isShorter
                ? QCoreApplication::translate("StoreLoader", "The file has become shorter while it was followed.")
                : QCoreApplication::translate("StoreLoader", "The file was deleted, moved away, replaced or emptied "
                                                             "while it was followed. What was read before is here.");
    return false;
}

LoadProgress::State StoreLoader::Load::readAll(CaptureStream &stream)
{
    LoadProgress::State failure = LoadProgress::State::Failed;
    bool isMore = true;
    while (isMore) {
        // At the last time the end is the capture's own.
        const bool isLast = !isFollowed;
        stream.setGrowing(!isLast);
        if (!readToEnd(stream, failure)) {
            return failure;
        }
        if (stream.isBroken()) {
            const std::lock_guard<std::mutex> lock(mutex);
            error = QCoreApplication::translate("StoreLoader", "Reading failed before the end of the file.");
            return LoadProgress::State::Failed;
        }
        if (!isLast && !isStillThere(stream)) {
            return LoadProgress::State::Failed;
        }
        isMore = !isLast;
        if (isMore) {
            waitForMore();
        }
    }
    return LoadProgress::State::Finished;
}

void StoreLoader::Load::run()
{
    QString message;
    const std::unique_ptr<CaptureStream> stream = open(reported, message);
    if (!stream) {
        const std::lock_guard<std::mutex> lock(mutex);
        error = message;
        progress.state = LoadProgress::State::Failed;
        return;
    }
    publish(*stream);
    try {
        setState(readAll(*stream));
    } catch (const std::bad_alloc &) { // of the reader
        setState(LoadProgress::State::MemoryFull);
    }
}

StoreLoader::StoreLoader(std::shared_ptr<BusFrameStore> store, Open open, bool follow)
    : m_load(std::make_shared<Load>(std::move(store), std::move(open), follow))
    , m_thread(QThread::create([load = m_load] { load->run(); }))
{
    // That of a thread that was left to itself, too.
    QObject::connect(m_thread, &QThread::finished, m_thread, &QObject::deleteLater);
    m_thread->start();
}

StoreLoader::~StoreLoader()
{
    cancel();
    if (m_thread != nullptr && m_thread->wait(StopWaitMs)) {
        delete m_thread.data();
    }
}

void StoreLoader::cancel()
{
    {
        const std::lock_guard<std::mutex> lock(m_load->mutex);
        m_load->isStopped = true;
    }
    m_load->wake.notify_all();
}

void StoreLoader::setFollowing(bool follow)
{
    {
        const std::lock_guard<std::mutex> lock(m_load->mutex);
        m_load->isFollowed = follow;
    }
    m_load->wake.notify_all();
}

LoadProgress StoreLoader::progress() const
{
    const std::lock_guard<std::mutex> lock(m_load->mutex);
    return m_load->progress;
}

QString StoreLoader::error() const
{
    const std::lock_guard<std::mutex> lock(m_load->mutex);
    return m_load->error;
}

CaptureInfo StoreLoader::info() const
{
    const std::lock_guard<std::mutex> lock(m_load->mutex);
    return m_load->info;
}

QVector<Finding> StoreLoader::findings() const
{
    const std::lock_guard<std::mutex> lock(m_load->mutex);
    return m_load->findings;
}

qint64 StoreLoader::findingCount() const
{
    const std::lock_guard<std::mutex> lock(m_load->mutex);
    return m_load->findingCount;
}
