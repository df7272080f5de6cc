#pragma once

#include <cstdint>

namespace va {

/// How often a node sends: every numeratorNs / denominator nanoseconds, exactly, without drift.
struct Period
{
    std::uint64_t numeratorNs = 1000000000; ///< 1 us to 1 h
    std::uint64_t denominator = 1;          ///< 1 to 1,000,000

    static Period everyUs(std::uint64_t microseconds) { return {microseconds * 1000U, 1}; }
    static Period everyMs(std::uint64_t milliseconds) { return everyUs(milliseconds * 1000U); }
    static Period perSecond(std::uint64_t frames) { return {1000000000U, frames}; }
};

/// When a node's frames are due. Frame n (from 0) is due at start + phase + (n + 1) periods, rounded down to the
/// nanosecond; times are those of the adapter's clock.
class CyclicSchedule
{
public:
    CyclicSchedule(Period period, std::uint64_t startNs, std::uint64_t phaseNs);

    /// When the next frame is due.
    std::uint64_t dueNs() const { return m_dueNs; }
    /// Number of the next frame: how many were passed so far.
    std::uint64_t index() const { return m_index; }
    /// Goes on to the frame after the next one.
    void step();
    /// Passes every frame due at or before timeNs, in constant time; answers how many those were.
    std::uint64_t skipTo(std::uint64_t timeNs);

private:
    void place(std::uint64_t index);

    Period m_period;
    std::uint64_t m_originNs; ///< one period before the first frame
    std::uint64_t m_index = 0;
    std::uint64_t m_dueNs = 0;
    std::uint64_t m_remainder = 0; ///< fraction of a nanosecond lost in m_dueNs, in units of 1 / denominator
};

} // namespace va
