#pragma once

#include "viewer/core/Filter.h"
#include "viewer/core/RowSet.h"

#include <QThreadPool>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

/// Runs a filter over a store on all cores, part by part, and goes on where it ended when the store has grown. All
/// functions are for the thread that made it, and none waits, except the destructor, for one part of each thread.
class FilterRun
{
public:
    /// Rows that a thread looks at in one go: a millisecond or two.
    static constexpr int PartRows = BusFrameStore::BlockRows / 2;

    /// hasMore: called from any thread when take() has something new, once until take() is called.
    FilterRun(std::shared_ptr<const BusFrameStore> store, std::function<void()> hasMore);
    ~FilterRun();
    FilterRun(const FilterRun &) = delete;
    FilterRun &operator=(const FilterRun &) = delete;

    /// Threads to run on; as many as there are processors by default.
    void setThreadCount(int count) { m_pool.setMaxThreadCount(count); }

    /// Looks at all rows anew with another filter; results of the one before are not handed out any more.
    void start(const Filter &filter);
    /// Looks at the rows that were added. Nothing happens while a run is going on, nor after cancel().
    void extend();
    /// What was found so far stays; start() begins anew.
    void cancel();
    bool isRunning() const;

    /// Adds what is new to rows, in the rows' order; rows are those that the results of this run were added to before,
    /// or empty after start().
    void take(RowSet &rows);

private:
    struct Job;

    void begin(qint64 first);

    std::shared_ptr<const BusFrameStore> m_store;
    std::function<void()> m_hasMore;
    Filter m_filter;
    std::shared_ptr<Job> m_job;
    qint64 m_covered = 0; ///< rows that were handed out
    bool m_isCancelled = true;
    QThreadPool m_pool;
};

/// Looks for a row that passes, from row on towards the end, or with isBackward towards the beginning; row itself
/// counts. Nothing when there is none, or when stop is set.
std::optional<qint64> findRow(const BusFrameStore &store, const Filter &filter, qint64 row, bool isBackward,
                              const std::atomic<bool> &stop);
