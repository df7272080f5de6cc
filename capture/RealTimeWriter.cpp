#include "capture/RealTimeWriter.h"

#include "capture/PlatformFile.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <system_error>
#include <utility>

namespace {
struct Batch
{
    std::vector<FrameRecord> rows;
    quint64 firstNumber = 0;
    std::size_t bytes = 0;
};

/// What the rows take, the bookkeeping for their payloads included.
std::size_t bytesOf(const std::vector<FrameRecord> &rows)
{
    constexpr std::size_t PayloadOverhead = sizeof(QByteArrayData) + 2 * sizeof(void *);
    std::size_t bytes = rows.capacity() * sizeof(FrameRecord);
    for (const FrameRecord &row : rows) {
        bytes += PayloadOverhead + static_cast<std::size_t>(row.data.size());
    }
    return bytes;
}
} // namespace

/// Belongs to the writer and to its thread, so either may go first. The functions are the thread's.
struct RealTimeWriter::Job
{
    using Clock = std::chrono::steady_clock;
    enum class Step : quint8 { Write, Sync, End };

    const Limits limits;
    std::unique_ptr<RealTimeTarget> target;
    std::optional<Clock::time_point> notSynced; ///< since when rows wait for a sync

    std::mutex mutex; ///< guards everything below
    std::condition_variable changed;
    std::deque<Batch> waiting;
    std::size_t waitingBytes = 0; ///< of the batch that is being written, too
    bool isFinishing = false;
    bool hasFailed = false;
    bool hasEnded = false;

    Job(std::unique_ptr<RealTimeTarget> rowsTarget, Limits jobLimits)
        : limits(jobLimits)
        , target(std::move(rowsTarget))
    {
    }

    void run();
    Step nextStep();
    bool writeNext();
    void end(bool good);
};

void RealTimeWriter::Job::run()
{
    lowerThreadPriority();
    bool good = true;
    for (Step step = nextStep(); step != Step::End; step = good ? nextStep() : Step::End) {
        if (step == Step::Write) {
            good = writeNext();
        } else {
            notSynced.reset();
            good = target->sync();
        }
    }
    target.reset();
    end(good);
}

/// What waits is written before a sync only as long as nothing written earlier has waited for one too long.
RealTimeWriter::Job::Step RealTimeWriter::Job::nextStep()
{
    std::unique_lock<std::mutex> lock(mutex);
    const auto hasWork = [this] {
        return isFinishing || !waiting.empty();
    };
    if (notSynced) {
        const Clock::time_point due = *notSynced + limits.syncAfter;
        if (!changed.wait_until(lock, due, hasWork) || Clock::now() >= due) {
            return Step::Sync;
        }
    } else {
        changed.wait(lock, hasWork);
    }
    if (!waiting.empty()) {
        return Step::Write;
    }
    return notSynced ? Step::Sync : Step::End;
}

bool RealTimeWriter::Job::writeNext()
{
    Batch batch;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        batch = std::move(waiting.front());
        waiting.pop_front();
    }
    if (!notSynced) {
        notSynced = Clock::now();
    }
    const bool good = target->append(batch.rows, batch.firstNumber);
    batch.rows = {};
    const std::lock_guard<std::mutex> lock(mutex);
    waitingBytes -= batch.bytes;
    return good;
}

void RealTimeWriter::Job::end(bool good)
{
    std::deque<Batch> dropped; // given back without the lock
    const std::lock_guard<std::mutex> lock(mutex);
    dropped.swap(waiting);
    hasFailed = !good;
    hasEnded = true;
    changed.notify_all();
}

RealTimeWriter::RealTimeWriter(QString path, std::unique_ptr<RealTimeTarget> target, Limits limits)
    : m_path(std::move(path))
    , m_job(std::make_shared<Job>(std::move(target), limits))
{
    try {
        m_thread = std::thread([job = m_job] { job->run(); });
    } catch (const std::system_error &) { // no more threads to be had
        m_job->end(false);
    }
}

RealTimeWriter::~RealTimeWriter()
{
    finish();
    if (waitFinished(std::chrono::milliseconds(0)) && m_thread.joinable()) {
        m_thread.join();
    } else if (m_thread.joinable()) {
        m_thread.detach();
    }
}

bool RealTimeWriter::append(std::vector<FrameRecord> rows, quint64 firstNumber)
{
    const std::size_t bytes = bytesOf(rows);
    const std::lock_guard<std::mutex> lock(m_job->mutex);
    if (m_job->hasFailed || (m_job->waitingBytes > 0 && m_job->waitingBytes + bytes > m_job->limits.waitingBytes)) {
        return false;
    }
    m_job->waiting.push_back({std::move(rows), firstNumber, bytes});
    m_job->waitingBytes += bytes;
    m_job->changed.notify_all();
    return true;
}

bool RealTimeWriter::hasFailed() const
{
    const std::lock_guard<std::mutex> lock(m_job->mutex);
    return m_job->hasFailed;
}

void RealTimeWriter::finish()
{
    const std::lock_guard<std::mutex> lock(m_job->mutex);
    m_job->isFinishing = true;
    m_job->changed.notify_all();
}

bool RealTimeWriter::waitFinished(std::chrono::milliseconds time)
{
    std::unique_lock<std::mutex> lock(m_job->mutex);
    return m_job->changed.wait_for(lock, time, [this] { return m_job->hasEnded; });
}
