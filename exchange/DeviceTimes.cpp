#include "exchange/DeviceTimes.h"

#include <cstdlib>

namespace {

constexpr qint64 LargestDifference = qint64{60} * 1000000000;

} // namespace

void DeviceTimes::apply(BusFrame &frame)
{
    if (frame.time == BusFrame::NoTime || frame.deviceTime == BusFrame::NoTime) {
        return;
    }
    if (frame.channel >= m_channels.size()) {
        m_channels.resize(std::size_t{frame.channel} + 1);
    }
    Channel &channel = m_channels[frame.channel];
    const qint64 offset = frame.time - frame.deviceTime;
    if (!channel.isSet || std::abs(offset - channel.offset) > LargestDifference) {
        channel = {true, offset};
    }
    frame.time = channel.offset + frame.deviceTime;
}
