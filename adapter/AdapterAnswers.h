#pragma once

#include "device/AdapterRecords.h"

#include <cstring>
#include <string>
#include <type_traits>

// What the operations of every adapter answer with.

namespace va {

constexpr std::uint32_t AdapterRefused = 0;
/// More frames in one transmit call than any caller means are refused.
constexpr std::uint32_t MaxTransmitCount = 1000000;

/// Whether the records of an entry are those of a channel that was initialised for CAN FD.
template<class Record>
constexpr bool isFdRecord = std::is_same_v<Record, VCI_CANFD_OBJ>;

constexpr std::uint32_t answer(bool done)
{
    return done ? AdapterSuccess : AdapterRefused;
}

/// A text of KQ_ReadInfo, cut to its buffer; all of the buffer is written.
inline void copyInfo(char *buffer, const std::string &text)
{
    std::memset(buffer, 0, AdapterInfoSize);
    text.copy(buffer, AdapterInfoSize - 1);
}

/// The data-rate index that a channel is initialised with; 0 for classic CAN.
constexpr std::uint8_t dataRateIndex(const VCI_INIT_CONFIG &config)
{
    return static_cast<std::uint8_t>((config.Mode >> AdapterModeDataRateShift) & AdapterModeDataRateMask);
}

constexpr bool isListenOnly(const VCI_INIT_CONFIG &config)
{
    return (config.Mode & AdapterModeListenOnly) != 0;
}

} // namespace va
