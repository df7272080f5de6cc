#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace va {

/// The library's entry points, in the order in which the program looks them up.
enum class Entry : unsigned {
    OpenDevice,
    CloseDevice,
    InitCAN,
    ReadBoardInfo,
    ReadErrInfo,
    ReadCANStatus,
    GetReference,
    SetReference,
    StartCAN,
    ResetCAN,
    GetReceiveNum,
    ClearBuffer,
    Transmit,
    Receive,
    OpenCANGateWay,
    SetCANGateWayIDFilter,
    GetCANGateWayIDFilter,
    ReadInfo,
    OpenLIN,
    CloseLIN,
    TransmitLIN,
    ReceiveLIN,
    ChangeLINMode,
    TransmitLINBySlave,
    ReceiveLINBySlave,
    GetReceiveNumCANFD,
    TransmitCANFD,
    ReceiveCANFD,
};

constexpr std::size_t EntryCount = 28;

/// Exported names, indexed by Entry. The last three are missing in the build without CAN FD.
constexpr std::array<std::string_view, EntryCount> EntryNames = {
    "VCI_OpenDevice",
    "VCI_CloseDevice",
    "VCI_InitCAN",
    "VCI_ReadBoardInfo",
    "VCI_ReadErrInfo",
    "VCI_ReadCANStatus",
    "VCI_GetReference",
    "VCI_SetReference",
    "VCI_StartCAN",
    "VCI_ResetCAN",
    "VCI_GetReceiveNum",
    "VCI_ClearBuffer",
    "VCI_Transmit",
    "VCI_Receive",
    "KQ_OpenCANGateWay",
    "KQ_SetCANGateWayIDFilter",
    "KQ_GetCANGateWayIDFilter",
    "KQ_ReadInfo",
    "KQ_OpenLIN",
    "KQ_CloseLIN",
    "KQ_TransmitLIN",
    "KQ_ReceiveLIN",
    "KQ_ChangeLINMode",
    "KQ_TransmitLINBySlave",
    "KQ_ReceiveLINBySlave",
    "KQ_GetReceiveNumCANFD",
    "KQ_TransmitCANFD",
    "KQ_ReceiveCANFD",
};

constexpr std::size_t indexOf(Entry entry)
{
    return static_cast<std::size_t>(entry);
}

static_assert(EntryNames[indexOf(Entry::ReceiveCANFD)] == "KQ_ReceiveCANFD");

} // namespace va
