#pragma once

#include "viewer/core/BusFrameStore.h"
#include "viewer/core/WorkerThreads.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

/// Works through a store on all cores, part by part, hands the results out in the rows' order, and goes on where it
/// ended when the store has grown. All functions are for the thread that made it, and none waits, except the
/// destructor, for one part of each thread.
template<typename Result>
class StoreRun
{
public:
    /// Of count rows from first on, which are in one block. Called from several threads at a time.
    using Work = std::function<Result(const BusFrameStore &store, qint64 first, int count)>;

    /// Rows that a thread looks at in one go: a millisecond or two.
    static constexpr int PartRows = BusFrameStore::BlockRows / 2;

    /// hasMore: called from any thread when take() has something new, once until take() is called.
    StoreRun(std::shared_ptr<const BusFrameStore> store, std::function<void()> hasMore)
        : m_store(std::move(store))
        , m_hasMore(std::move(hasMore))
        , m_threads(WorkerThreads::processors())
    {
    }
    ~StoreRun() { cancel(); }
    StoreRun(const StoreRun &) = delete;
    StoreRun &operator=(const StoreRun &) = delete;

    /// Threads to run on, before the first start(); as many as there are processors by default.
    void setThreadCount(int count) { m_threads.setCount(count); }

    /// Looks at all rows anew; results of the work before are not handed out any more.
    void start(Work work)
    {
        cancel();
        m_work = std::move(work);
        m_isCancelled = false;
        begin(0);
    }
    /// Looks at the rows that were added. Nothing happens while a run is going on, nor after cancel().
    void extend()
    {
        if (!m_isCancelled && !isRunning() && m_store->size() > m_covered) {
            begin(m_covered);
        }
    }
    /// start() begins anew.
    void cancel()
    {
        m_isCancelled = true;
        if (m_job) {
            m_job->isStopped = true;
            m_job = nullptr;
        }
    }
    bool isRunning() const { return m_job && m_covered < m_job->end; }
    /// The rows whose results were handed out.
    qint64 covered() const { return m_covered; }

    /// What is new, in the rows' order.
    std::vector<Result> take()
    {
        std::vector<Result> ready;
        if (!m_job) {
            return ready;
        }
        const std::lock_guard<std::mutex> lock(m_job->mutex);
        while (m_job->taken < m_job->results.size() && m_job->isReady[m_job->taken]) {
            ready.push_back(std::move(m_job->results[m_job->taken]));
            ++m_job->taken;
        }
        m_covered = std::max(m_covered, std::min(m_job->end, m_job->beginOf(m_job->taken)));
        m_job->isAnnounced = false;
        return ready;
    }

private:
    /// One run from a first row to the end of what was there when it began. Its threads share it.
    struct Job
    {
        Job(const StoreRun &run, qint64 firstRow)
            : store(run.m_store)
            , work(run.m_work)
            , hasMore(run.m_hasMore)
            , first(firstRow)
            , end(store->size())
            , results(static_cast<std::size_t>(end > first ? (end - 1) / PartRows - first / PartRows + 1 : 0))
            , isReady(results.size(), false)
        {
        }

        /// Parts begin where the numbers of rows divide by PartRows, so none is in two blocks.
        qint64 beginOf(std::size_t part) const
        {
            return std::max(first, (first / PartRows + static_cast<qint64>(part)) * PartRows);
        }
        void run()
        {
            for (std::size_t part = nextPart++; part < results.size() && !isStopped; part = nextPart++) {
                const qint64 begin = beginOf(part);
                const auto count = static_cast<int>(std::min(end, beginOf(part + 1)) - begin);
                if (finish(part, work(*store, begin, count))) {
                    hasMore();
                }
            }
        }
        /// True when that has to be announced.
        bool finish(std::size_t part, Result result)
        {
            const std::lock_guard<std::mutex> lock(mutex);
            results[part] = std::move(result);
            isReady[part] = true;
            const bool isNews = !isAnnounced && isReady[taken] && !isStopped;
            isAnnounced = isAnnounced || isNews;
            return isNews;
        }

        const std::shared_ptr<const BusFrameStore> store;
        const Work work;
        const std::function<void()> hasMore;
        const qint64 first;
        const qint64 end;
        std::atomic<std::size_t> nextPart{0};
        std::atomic<bool> isStopped{false};
        std::mutex mutex; ///< guards what is below
        std::vector<Result> results;
        std::vector<bool> isReady;
        std::size_t taken = 0;
        bool isAnnounced = false;
    };

    void begin(qint64 first)
    {
        m_covered = first;
        m_job = std::make_shared<Job>(*this, first);
        const auto count = std::min(static_cast<std::size_t>(m_threads.count()), m_job->results.size());
        for (std::size_t i = 0; i < count; ++i) {
            m_threads.start([job = m_job] { job->run(); });
        }
    }

    std::shared_ptr<const BusFrameStore> m_store;
    std::function<void()> m_hasMore;
    Work m_work;
    std::shared_ptr<Job> m_job;
    qint64 m_covered = 0;
    bool m_isCancelled = true;
    WorkerThreads m_threads; ///< the last member: they end before the others go
};
