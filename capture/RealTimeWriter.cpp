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

/// Belongs to the writer and to its thread, so either may go first.
class RealTimeWriter::Job
{
public:
    Job(std::unique_ptr<RealTimeTarget> target, Limits limits)
        : m_limits(limits)
        , m_target(std::move(target))
    {
    }

    bool append(std::vector<FrameRecord> rows, quint64 firstNumber);
    bool hasFailed();
    void finish();
    bool waitEnded(std::chrono::milliseconds time);
    /// The thread.
    void run();
    void end(bool good);

private:
    using Clock = std::chrono::steady_clock;

    enum class Step : quint8 { Write, Sync, End };

    Step nextStep();
    bool writeNext();
    bool sync();

    const Limits m_limits;
    std::unique_ptr<RealTimeTarget> m_target;     ///< the thread's alone
    std::optional<Clock::time_point> m_notSynced; ///< the thread's alone: since when rows wait for a sync

    std::mutex m_mutex; ///< guards everything below
    std::condition_variable m_changed;
    std::deque<Batch> m_waiting;
    std::size_t m_waitingBytes = 0; ///< of the batch that is being written, too
    bool m_isFinishing = false;
    bool m_hasFailed = false;
    bool m_hasEnded = false;
};

bool RealTimeWriter::Job::append(std::vector<FrameRecord> rows, quint64 firstNumber)
{
    const std::size_t bytes = bytesOf(rows);
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_hasFailed || (m_waitingBytes > 0 && m_waitingBytes + bytes > m_limits.waitingBytes)) {
        return false;
    }
    m_waiting.push_back({std::move(rows), firstNumber, bytes});
    m_waitingBytes += bytes;
    m_changed.notify_all();
    return true;
}

bool RealTimeWriter::Job::hasFailed()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_hasFailed;
}

void RealTimeWriter::Job::finish()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_isFinishing = true;
    m_changed.notify_all();
}

bool RealTimeWriter::Job::waitEnded(std::chrono::milliseconds time)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_changed.wait_for(lock, time, [this] { return m_hasEnded; });
}

void RealTimeWriter::Job::run()
{
    lowerThreadPriority();
    bool good = true;
    for (Step step = nextStep(); step != Step::End; step = good ? nextStep() : Step::End) {
        good = step == Step::Write ? writeNext() : sync();
    }
    m_target.reset();
    end(good);
}

/// What waits is written before a sync only as long as nothing written earlier has waited for one too long.
RealTimeWriter::Job::Step RealTimeWriter::Job::nextStep()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    const auto hasWork = [this] {
        return m_isFinishing || !m_waiting.empty();
    };
    if (m_notSynced) {
        const Clock::time_point due = *m_notSynced + m_limits.syncAfter;
        if (!m_changed.wait_until(lock, due, hasWork) || Clock::now() >= due) {
            return Step::Sync;
        }
    } else {
        m_changed.wait(lock, hasWork);
    }
    if (!m_waiting.empty()) {
        return Step::Write;
    }
    return m_notSynced ? Step::Sync : Step::End;
}

bool RealTimeWriter::Job::writeNext()
{
    Batch batch;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        batch = std::move(m_waiting.front());
        m_waiting.pop_front();
    }
    if (!m_notSynced) {
        m_notSynced = Clock::now();
    }
    const bool good = m_target->append(batch.rows, batch.firstNumber);
    batch.rows = {};
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_waitingBytes -= batch.bytes;
    return good;
}

bool RealTimeWriter::Job::sync()
{
    m_notSynced.reset();
    return m_target->sync();
}

void RealTimeWriter::Job::end(bool good)
{
    std::deque<Batch> dropped; // given back without the lock
    const std::lock_guard<std::mutex> lock(m_mutex);
    dropped.swap(m_waiting);
    m_hasFailed = !good;
    m_hasEnded = true;
    m_changed.notify_all();
}

RealTimeWriter::RealTimeWriter(QString path, std::unique_ptr<RealTimeTarget> target)
    : RealTimeWriter(std::move(path), std::move(target), Limits())
{
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
    return m_job->append(std::move(rows), firstNumber);
}

bool RealTimeWriter::hasFailed() const
{
    return m_job->hasFailed();
}

void RealTimeWriter::finish()
{
    m_job->finish();
}

bool RealTimeWriter::waitFinished(std::chrono::milliseconds time)
{
    return m_job->waitEnded(time);
}
