#pragma once

#include "device/AdapterRecords.h"

#include <cstdint>
#include <optional>
#include <string>

namespace socketcan {

/// A CAN interface as the kernel describes it.
struct Link
{
    int index = 0; ///< changes when the interface is pulled out and plugged in again
    std::string name;
    std::string kind; ///< "can" for controllers, "vcan", "vxcan"
    bool isUp = false;
    bool hasFdMtu = false;         ///< lets FD frames through now
    bool hasBitTiming = false;     ///< a controller: has a bit rate, which need not be set yet
    std::uint32_t bitrate = 0;     ///< bit/s, 0: not set
    std::uint32_t dataBitrate = 0; ///< bit/s, 0: not set
    std::uint32_t modes = 0;       ///< CAN_CTRLMODE_* that are on
    std::uint32_t restartMs = 0;   ///< after bus-off, 0: the controller stays off
    bool canFd = false;            ///< can be used for CAN FD, if need be after a change
};

/// How an interface is to be used.
struct LinkSettings
{
    std::uint32_t bitrate = 0;     ///< bit/s
    std::uint32_t samplePoint = 0; ///< tenths of a percent
    std::uint32_t dataBitrate = 0; ///< bit/s; 0: classic CAN
    bool listenOnly = false;

    bool isFd() const { return dataBitrate != 0; }
};

/// Why something could not be done, and what would help.
struct Problem
{
    AdapterProblemCode code = AdapterProblemCode::None;
    std::string text;   ///< in English, without a full stop
    std::string remedy; ///< a command; empty when there is none
};

} // namespace socketcan
