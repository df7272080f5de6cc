#pragma once

#include <QtGlobal>

/// The times of the ticks of a repeating timer, so that something happens at a steady interval on average. Each tick is
/// due one interval after the one before was due, so one that comes late shifts none of those after it. What ticks owe
/// by being late is made up for at twice the pace at most, and never more than MaxOwedNs at a time: that covers the
/// painting of a table. Of what is owed beyond, nothing comes later; the interval counts on from the late tick less
/// MaxOwedNs. Without making up, a tick that comes late by more than half an interval is followed by the next one a
/// whole interval later. Plain arithmetic; times are nanoseconds of one monotonic clock.
class TickPace
{
public:
    static constexpr qint64 MaxOwedNs = 5'000'000;
    /// A timer that counts whole milliseconds wakes so much early at most.
    static constexpr qint64 EarlyNs = 500'000;

    /// On at first; takes effect with the next tick.
    void setMakingUp(bool enabled) { m_isMakingUp = enabled; }
    /// Before the first tick, which does not come before next(); intervalNs above 0.
    void start(qint64 nowNs, qint64 intervalNs);
    /// Whether a tick comes now. A later one than the first does from EarlyNs before next() on.
    bool accept(qint64 nowNs);
    /// When to come for the next tick.
    qint64 next() const { return m_next; }

private:
    qint64 m_interval = 1;
    qint64 m_due = 0;  ///< when the next tick should come,
    qint64 m_next = 0; ///< and when it may
    qint64 m_early = 0;
    bool m_isMakingUp = true;
};
