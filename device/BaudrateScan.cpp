#include "device/BaudrateScan.h"

#include <utility>

BaudrateScan::BaudrateScan(const ChannelFlags &inUse)
    : m_inUse(inUse)
{
}

bool BaudrateScan::isToBeTried(int channel) const
{
    const auto ch = static_cast<std::size_t>(channel);
    return !m_inUse.at(ch) && !m_refused.at(ch) && !m_found.at(ch);
}

BaudrateScan::Outcome BaudrateScan::endTick()
{
    if (m_found[0] && m_found[1]) {
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
    std::array<quint8, ChannelCount> channels{};
    for (std::size_t ch = 0; ch < channels.size(); ++ch) {
        channels[ch] = BaudrateScanReport::NotFound;
        if (m_found[ch]) {
            const bool wasReported = std::exchange(m_reported[ch], true);
            channels[ch] = wasReported ? BaudrateScanReport::FoundBefore : BaudrateScanReport::FoundNow;
        }
    }
    return {channels[0], channels[1], index(), dataRate()};
}

bool BaudrateScan::nextStep()
{
    m_tick = 0;
    m_refused = {};
    if (++m_step == BitRateCount) {
        m_step = 0;
        ++m_dataRate;
    }
    return m_dataRate < DataRateCount;
}
