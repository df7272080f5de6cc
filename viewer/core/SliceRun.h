#pragma once

#include "viewer/core/WorkerThreads.h"

#include <QElapsedTimer>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

/// What is worked out of stores that may grow, slice by slice, in the rows' order. For one thread at a time.
template<typename Result>
class SliceWork
{
public:
    SliceWork() = default;
    virtual ~SliceWork() = default;
    SliceWork(const SliceWork &) = delete;
    SliceWork &operator=(const SliceWork &) = delete;

    /// Takes some milliseconds' worth. False when there was nothing to take.
    virtual bool work() = 0;
    /// Of what was taken so far.
    virtual Result result() const = 0;
};

/// Works on a thread, and has a result to look at while it goes on: after the first slice, then a few times a second,
/// and at the end. All functions are for the thread that made it, and none waits, except the destructor, for a slice
/// and a result.
template<typename Result>
class SliceRun
{
public:
    static constexpr int ResultMs = 250;

    /// hasResult: called from the thread when result() is another one, once until result() is called.
    explicit SliceRun(std::function<void()> hasResult)
        : m_hasResult(std::move(hasResult))
        , m_thread(1)
    {
    }
    ~SliceRun() { cancel(); }
    SliceRun(const SliceRun &) = delete;
    SliceRun &operator=(const SliceRun &) = delete;

    /// Instead of the work before, whose results are not handed out any more.
    void start(std::unique_ptr<SliceWork<Result>> work)
    {
        cancel();
        m_job = std::make_shared<Job>(std::move(work), m_hasResult);
        begin();
    }
    /// Goes on where it ended, in case there is more now. Nothing happens while it runs, nor after cancel().
    void extend()
    {
        if (m_job && !m_job->isRunning) {
            begin();
        }
    }
    void cancel()
    {
        if (m_job) {
            m_job->isStopped = true;
            m_job = nullptr;
        }
    }
    bool isRunning() const { return m_job && m_job->isRunning; }
    /// The latest; null before the first.
    std::shared_ptr<const Result> result() const
    {
        if (!m_job) {
            return nullptr;
        }
        const std::lock_guard<std::mutex> lock(m_job->mutex);
        m_job->isAnnounced = false;
        return m_job->latest;
    }

private:
    struct Job
    {
        Job(std::unique_ptr<SliceWork<Result>> itsWork, std::function<void()> itsHasResult)
            : work(std::move(itsWork))
            , hasResult(std::move(itsHasResult))
        {
        }

        void run()
        {
            QElapsedTimer sinceResult;
            sinceResult.start();
            bool isNew = latest == nullptr;
            bool isMore = true;
            while (isMore && !isStopped) {
                isMore = work->work();
                isNew = isNew || isMore;
                if (!isMore) {
                    isRunning = false;
                }
                if (isNew && (!isMore || latest == nullptr || sinceResult.elapsed() > ResultMs)) {
                    publish();
                    isNew = false;
                    sinceResult.start();
                }
            }
        }
        void publish()
        {
            auto result = std::make_shared<const Result>(work->result());
            bool isNews = false;
            {
                const std::lock_guard<std::mutex> lock(mutex);
                latest = std::move(result);
                isNews = !isAnnounced && !isStopped;
                isAnnounced = true;
            }
            if (isNews) {
                hasResult();
            }
        }

        const std::unique_ptr<SliceWork<Result>> work;
        const std::function<void()> hasResult;
        std::atomic<bool> isRunning{false};
        std::atomic<bool> isStopped{false};
        std::mutex mutex; ///< guards what is below; only the thread writes latest
        std::shared_ptr<const Result> latest;
        bool isAnnounced = false;
    };

    void begin()
    {
        m_job->isRunning = true;
        m_thread.start([job = m_job] { job->run(); });
    }

    std::function<void()> m_hasResult;
    std::shared_ptr<Job> m_job;
    WorkerThreads m_thread; ///< the last member: it ends before the others go
};
