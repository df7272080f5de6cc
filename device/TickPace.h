#pragma once

#include <QtGlobal>

/// The times of the ticks of a repeating timer, so that something happens at a steady interval on average. Each tick is
/// due one interval after the one before was due, so one that comes late shifts none of those after it. Ticks that were
/// held up are made up for, at twice the pace at most; beyond MaxBehindNs they are dropped and the interval counts from
/// the late tick. Without making up, a tick that comes late by more than half an interval is followed by the next one a
/// whole interval later, and what was missed is dropped. Plain arithmetic; times are nanoseconds of one monotonic
/// clock.
class TickPace
{
public:
    static constexpr qint64 MaxBehindNs = 100'000'000;
    /// A timer that counts whole milliseconds wakes so much early at most.
    static constexpr qint64 EarlyNs = 500'000;

    /// On at first; takes effect with the next tick.
    void setMakingUp(bool enabled) { m_isMakingUp = enabled; }
    /// Before the first tick; intervalNs above 0.
    void start(qint64 nowNs, qint64 intervalNs);
    /// From the tick accepted last on; intervalNs above 0.
    void setInterval(qint64 intervalNs);
    /// Whether a tick comes now. It does not when it is earlier than next() by more than EarlyNs.
    bool accept(qint64 nowNs);
    /// When to come for the next tick.
    qint64 next() const { return m_next; }

private:
    void schedule();

    qint64 m_interval = 1;
    qint64 m_lastDue = 0;  ///< when the last tick should have come,
    qint64 m_lastTick = 0; ///< and when it came
    qint64 m_due = 0;
    qint64 m_next = 0;
    bool m_isMakingUp = true;
};
