#include "viewer/core/FilterRun.h"

#include <QThread>

#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

/// One run from a first row to the end of what was there when it began. Its threads share it.
struct FilterRun::Job
{
    Job(std::shared_ptr<const BusFrameStore> rows, Filter test, std::function<void()> announce, qint64 firstRow)
        : store(std::move(rows))
        , filter(std::move(test))
        , hasMore(std::move(announce))
        , first(firstRow)
        , end(store->size())
        , parts(static_cast<std::size_t>(partCount()))
        , isReady(parts.size(), false)
    {
    }

    /// Parts end where the numbers of rows divide by PartRows, so none is in two blocks.
    qint64 partCount() const { return end > first ? (end - 1) / PartRows - first / PartRows + 1 : 0; }
    void run();
    void finish(std::size_t number, RowSet::Part part);

    const std::shared_ptr<const BusFrameStore> store;
    const Filter filter;
    const std::function<void()> hasMore;
    const qint64 first;
    const qint64 end;
    std::atomic<std::size_t> nextPart{0};
    std::atomic<bool> isStopped{false};
    std::mutex mutex; ///< guards what is below
    std::vector<RowSet::Part> parts;
    std::vector<bool> isReady;
    std::size_t taken = 0;
    bool isAnnounced = false;
};

void FilterRun::Job::run()
{
    for (;;) {
        const std::size_t number = nextPart++;
        if (isStopped || number >= parts.size()) {
            return;
        }
        const qint64 begin = (first / PartRows + static_cast<qint64>(number)) * PartRows;
        RowSet::Part part;
        part.first = std::max(first, begin);
        part.count = static_cast<int>(std::min(end, begin + PartRows) - part.first);
        filter.passing(*store, part.first, part.count, part.indices);
        finish(number, std::move(part));
    }
}

void FilterRun::Job::finish(std::size_t number, RowSet::Part part)
{
    {
        const std::lock_guard<std::mutex> lock(mutex);
        parts[number] = std::move(part);
        isReady[number] = true;
        if (isAnnounced || !isReady[taken] || isStopped) {
            return;
        }
        isAnnounced = true;
    }
    hasMore();
}

FilterRun::FilterRun(std::shared_ptr<const BusFrameStore> store, std::function<void()> hasMore)
    : m_store(std::move(store))
    , m_hasMore(std::move(hasMore))
{
    m_pool.setMaxThreadCount(std::max(1, QThread::idealThreadCount()));
}

FilterRun::~FilterRun()
{
    cancel();
    m_pool.clear();
    m_pool.waitForDone();
}

void FilterRun::start(const Filter &filter)
{
    cancel();
    m_filter = filter;
    m_isCancelled = false;
    begin(0);
}

void FilterRun::extend()
{
    if (!m_isCancelled && !isRunning() && m_store->size() > m_covered) {
        begin(m_covered);
    }
}

void FilterRun::begin(qint64 first)
{
    m_covered = first;
    m_job = std::make_shared<Job>(m_store, m_filter, m_hasMore, first);
    const auto count = std::min<qint64>(m_pool.maxThreadCount(), m_job->partCount());
    for (qint64 i = 0; i < count; ++i) {
        m_pool.start([job = m_job] { job->run(); });
    }
}

void FilterRun::cancel()
{
    m_isCancelled = true;
    if (m_job) {
        m_job->isStopped = true;
        m_job = nullptr;
    }
}

bool FilterRun::isRunning() const
{
    return m_job && m_covered < m_job->end;
}

void FilterRun::take(RowSet &rows)
{
    if (!m_job) {
        return;
    }
    std::vector<RowSet::Part> ready;
    {
        const std::lock_guard<std::mutex> lock(m_job->mutex);
        while (m_job->taken < m_job->parts.size() && m_job->isReady[m_job->taken]) {
            ready.push_back(std::move(m_job->parts[m_job->taken]));
            ++m_job->taken;
        }
        m_job->isAnnounced = false;
    }
    for (RowSet::Part &part : ready) {
        m_covered = part.first + part.count;
        rows.append(std::move(part));
    }
}

std::optional<qint64> findRow(const BusFrameStore &store, const Filter &filter, qint64 row, bool isBackward,
                              const std::atomic<bool> &stop)
{
    const qint64 size = store.size();
    qint64 next = isBackward ? std::min(row, size - 1) : std::max<qint64>(row, 0);
    while (next >= 0 && next < size && !stop) {
        const qint64 block = BusFrameStore::blockOf(next) << BusFrameStore::BlockShift;
        const qint64 first = isBackward ? block : next;
        const qint64 end = isBackward ? next + 1 : std::min(size, block + BusFrameStore::BlockRows);
        if (const auto found = filter.firstPassing(store, first, static_cast<int>(end - first), isBackward)) {
            return found;
        }
        next = isBackward ? first - 1 : end;
    }
    return std::nullopt;
}
