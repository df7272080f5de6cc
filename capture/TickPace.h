#pragma once

#include <QtGlobal>

/// Tells which ticks of a repeating timer count, so that something happens at a steady interval on average: a tick that
/// comes late shifts none of those after it, and ticks that were held up count as one. Plain arithmetic; times are
/// nanoseconds of one monotonic clock.
class TickPace
{
public:
    /// Before the first tick; intervalNs above 0.
    void start(qint64 nowNs, qint64 intervalNs);
    /// Whether the tick that comes now counts. It does not when it is more than half an interval before its time: then
    /// it was queued behind a late one.
    bool accept(qint64 nowNs);

private:
    qint64 m_interval = 1;
    qint64 m_due = 0;
};
