#include "device/TickPace.h"

#include <algorithm>

void TickPace::start(qint64 nowNs, qint64 intervalNs)
{
    m_lastDue = nowNs;
    m_lastTick = nowNs;
    setInterval(intervalNs);
}

void TickPace::setInterval(qint64 intervalNs)
{
    m_interval = intervalNs;
    schedule();
}

bool TickPace::accept(qint64 nowNs)
{
    if (nowNs < m_next - EarlyNs) {
        return false;
    }
    m_lastDue = m_due;
    m_lastTick = nowNs;
    schedule();
    return true;
}

void TickPace::schedule()
{
    m_due = m_lastDue + m_interval;
    const qint64 soonest = m_lastTick + m_interval / 2;
    if (m_isMakingUp ? m_lastTick - m_due > MaxBehindNs : soonest > m_due) {
        m_due = m_lastTick + m_interval;
    }
    m_next = std::max(m_due, soonest);
}
