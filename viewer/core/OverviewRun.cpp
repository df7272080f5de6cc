#include "viewer/core/OverviewRun.h"

#include <algorithm>
#include <thread>
#include <utility>

OverviewRun::OverviewRun(std::shared_ptr<const BusFrameStore> store, std::function<void()> hasMore, bool tellsChannels)
    : m_store(std::move(store))
    , m_hasMore(std::move(hasMore))
    , m_overview(tellsChannels)
    , m_thread(1)
{
}

OverviewRun::~OverviewRun()
{
    m_isStopped = true;
}

void OverviewRun::extend()
{
    if (!m_isRunning && m_store->size() > covered()) {
        m_isRunning = true;
        m_thread.start([this] { run(); });
    }
}

void OverviewRun::run()
{
    bool isMore = true;
    while (isMore && !m_isStopped) {
        while (m_waiting > 0 && !m_isStopped) {
            std::this_thread::yield();
        }
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            isMore = m_overview.add(*m_store, SliceRows) == SliceRows;
        }
        if (!isMore) {
            m_isRunning = false;
        }
        if (!m_isAnnounced.exchange(true)) {
            m_hasMore();
        }
    }
}

std::vector<IdentifierStatistics> OverviewRun::statistics()
{
    m_isAnnounced = false;
    const Access access(*this);
    return m_overview.identifiers();
}

std::vector<Overview::LastRows> OverviewRun::lastRows(qint64 row) const
{
    const Access access(*this);
    const qint64 last = std::min(row, m_overview.covered() - 1);
    return last >= 0 ? m_overview.lastRows(*m_store, last) : std::vector<Overview::LastRows>();
}

std::optional<qint64> OverviewRun::previousRow(qint64 row) const
{
    const Access access(*this);
    if (row >= m_overview.covered()) {
        return std::nullopt;
    }
    return m_overview.previousRow(*m_store, row);
}

qint64 OverviewRun::covered() const
{
    const Access access(*this);
    return m_overview.covered();
}
