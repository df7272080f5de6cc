#include "device/TickPace.h"

#include <algorithm>

void TickPace::start(qint64 nowNs, qint64 intervalNs)
{
    m_interval = intervalNs;
    m_due = nowNs + intervalNs;
    m_next = m_due;
    m_early = 0;
}

bool TickPace::accept(qint64 nowNs)
{
    if (nowNs < m_next - m_early) {
        return false;
    }
    const qint64 late = nowNs - m_due;
    const qint64 soonest = nowNs + m_interval / 2;
    const qint64 owed = m_isMakingUp ? std::min(late, MaxOwedNs) : (late > m_interval / 2 ? 0 : late);
    m_due = nowNs - owed + m_interval;
    m_next = std::max(m_due, soonest);
    m_early = EarlyNs;
    return true;
}
