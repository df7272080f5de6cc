#pragma once

#include "viewer/core/Overview.h"
#include "viewer/core/WorkerThreads.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

/// Keeps an overview of a store on a thread, slice by slice, and goes on when the store has grown. All functions are
/// for the thread that made it; those that look wait for a slice of a few milliseconds at most.
class OverviewRun
{
public:
    /// hasMore: called from the thread when the overview has more, once until statistics() is called.
    OverviewRun(std::shared_ptr<const BusFrameStore> store, std::function<void()> hasMore, bool tellsChannels = true);
    /// Waits for a slice at most.
    ~OverviewRun();
    OverviewRun(const OverviewRun &) = delete;
    OverviewRun &operator=(const OverviewRun &) = delete;

    /// Takes the rows that were added.
    void extend();
    bool isRunning() const { return m_isRunning; }

    std::vector<IdentifierStatistics> statistics();
    /// Of the rows that are covered; for a row beyond them, of all that are.
    std::vector<Overview::LastRows> lastRows(qint64 row) const;
    /// The row before row with the same identifier and channel; -1 when there is none, nothing when row is not covered.
    std::optional<qint64> previousRow(qint64 row) const;
    qint64 covered() const;

private:
    static constexpr qint64 SliceRows = BusFrameStore::BlockRows / 2;

    /// Takes the lock in turn with the thread, which would otherwise have it back before anybody else wakes up.
    class Access
    {
    public:
        explicit Access(const OverviewRun &run)
            : m_run(run)
        {
            ++m_run.m_waiting;
            m_lock = std::unique_lock<std::mutex>(m_run.m_mutex);
            --m_run.m_waiting;
        }

    private:
        const OverviewRun &m_run;
        std::unique_lock<std::mutex> m_lock;
    };

    void run();

    std::shared_ptr<const BusFrameStore> m_store;
    std::function<void()> m_hasMore;
    mutable std::mutex m_mutex; ///< guards m_overview
    Overview m_overview;
    mutable std::atomic<int> m_waiting{0};
    std::atomic<bool> m_isRunning{false};
    std::atomic<bool> m_isStopped{false};
    std::atomic<bool> m_isAnnounced{false};
    WorkerThreads m_thread; ///< the last member: it ends before the others go
};
