#pragma once

#include "viewer/core/DatabaseSignals.h"
#include "viewer/core/Overview.h"
#include "viewer/core/WorkerThreads.h"

#include <atomic>
#include <functional>
#include <mutex>

/// Finds the last frame that has each signal, on a thread. A frame of its message need not have it: multiplexed signals
/// take turns, and a frame may be short or damaged; then it is looked for further back. All functions are for the
/// thread that made it, and none waits, except the destructor, for a few thousand rows.
class LastSignals
{
public:
    /// Rows; -1: there is none up to row.
    struct Rows
    {
        std::shared_ptr<const DatabaseSignals> source;
        qint64 row = -1;
        std::vector<qint64> ofMessages;
        std::vector<qint64> ofSignals;
        bool isComplete = false; ///< otherwise some may still be found
    };

    /// store must outlive this. hasMore: called from the thread when take() has something new.
    LastSignals(const BusFrameStore &store, std::function<void()> hasMore);
    ~LastSignals();
    LastSignals(const LastSignals &) = delete;
    LastSignals &operator=(const LastSignals &) = delete;

    /// lastRows: of the overview up to row. A search that is going on ends.
    void find(std::shared_ptr<const DatabaseSignals> source, qint64 row,
              const std::vector<Overview::LastRows> &lastRows);
    /// What was found last.
    Rows take();

private:
    using Stop = std::shared_ptr<std::atomic<bool>>;
    class Search;

    void publish(const Rows &rows, const Stop &stop);

    const BusFrameStore &m_store;
    std::function<void()> m_hasMore;
    std::mutex m_mutex; ///< guards m_found
    Rows m_found;
    Stop m_stop;
    WorkerThreads m_thread; ///< the last member: it ends before the others go
};
