#pragma once

#include <cstdint>

namespace socketcan {

/// What went wrong on a channel since it was started.
struct ChannelCounts
{
    std::uint64_t systemLost = 0;  ///< dropped by the kernel, or by the controller for lack of room
    std::uint64_t bufferLost = 0;  ///< the channel's own buffer was full
    std::uint64_t refused = 0;     ///< to be sent and not taken
    std::uint64_t gatewayLost = 0; ///< to be forwarded and not taken
    std::uint64_t errorFrames = 0;
    std::uint64_t busOff = 0;
    std::uint64_t restarts = 0;
};

} // namespace socketcan
