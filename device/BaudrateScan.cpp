#include "device/BaudrateScan.h"

#include <array>

BaudrateScan::Outcome BaudrateScan::endTick()
{
    if (m_found.all()) {
        return {takeReport(), true};
    }
    if (++m_tick < TicksPerStep) {
        return {};
    }
    const BaudrateScanReport report = takeReport();
    return {report, !nextStep()};
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

bool BaudrateScan::nextStep()
{
    m_tick = 0;
    m_refused.reset();
    if (++m_step == BitRateCount) {
        m_step = 0;
        ++m_dataRate;
    }
    return m_dataRate < DataRateCount;
}
