#include "device/BaudrateScan.h"

#include <array>

BaudrateScan::Outcome BaudrateScan::endTick()
{
    if (m_found.all()) {
        return {takeReport(), true};
    }
    Outcome outcome;
    if ((m_tick + 1) % TicksPerStep == 0) {
        outcome.report = takeReport();
        m_refused.reset();
    }
    outcome.isEnd = ++m_tick == StepCount * TicksPerStep;
    return outcome;
}

BaudrateScanReport BaudrateScan::takeReport()
{
    std::array<quint8, ChannelsPerDevice> channels{};
    for (std::size_t ch = 0; ch < channels.size(); ++ch) {
        const auto found = m_reported[ch] ? BaudrateScanReport::FoundBefore : BaudrateScanReport::FoundNow;
        channels[ch] = m_found[ch] ? found : BaudrateScanReport::NotFound;
    }
    m_reported = m_found;
    return {channels[0], channels[1], index(), dataRate()};
}
