#include "capture/TickPace.h"

void TickPace::start(qint64 nowNs, qint64 intervalNs)
{
    m_interval = intervalNs;
    m_due = nowNs + intervalNs;
}

bool TickPace::accept(qint64 nowNs)
{
    if (nowNs < m_due - m_interval / 2) {
        return false;
    }
    m_due += m_interval;
    if (m_due <= nowNs) {
        m_due = nowNs + m_interval; // at least one tick was missed: missed ones are not made up for
    }
    return true;
}
