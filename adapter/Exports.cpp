// The library's entry points. What they answer is written in docs/virtual-adapter.md.

#include "adapter/AdapterClock.h"
#include "adapter/ConfigFile.h"
#include "adapter/VirtualAdapter.h"
#include "device/AdapterRecords.h"

#include <cstdint>
#include <cstdio>
#include <type_traits>
#include <utility>

#if defined(_WIN32)
#define X9_ADAPTER_EXPORT extern "C" __declspec(dllexport)
#else
#define X9_ADAPTER_EXPORT extern "C" __attribute__((visibility("default")))
#endif

namespace {

using u8 = std::uint8_t;
using u16 = std::uint16_t;
using u32 = std::uint32_t;
using i32 = std::int32_t;

va::AdapterConfig configFromWorkingDirectory()
{
    va::LoadedConfig loaded = va::loadConfig(va::ConfigFileName);
    if (!loaded.complaint.empty()) {
        std::fprintf(stderr, "%s\n", loaded.complaint.c_str());
    }
    return std::move(loaded.config);
}

/// The configuration is read, and the buses start, with the first call after the library was loaded.
va::VirtualAdapter &adapter()
{
    static va::SteadyClock clock;
    static va::VirtualAdapter instance(configFromWorkingDirectory(), clock);
    return instance;
}

/// No exception (memory running out) may leave the library: the call is refused instead.
template<class Operation>
u32 guarded(Operation operation) noexcept
{
    try {
        return operation(adapter());
    } catch (...) {
        return 0;
    }
}

} // namespace

X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL VCI_OpenDevice(u32 type, u8 dev, u32 /*reserved*/)
{
    return guarded([=](va::VirtualAdapter &a) { return a.openDevice(type, dev); });
}
static_assert(std::is_same_v<decltype(&VCI_OpenDevice), AdapterEntry::OpenDevice>);

X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL VCI_CloseDevice(u32 type, u8 dev)
{
    return guarded([=](va::VirtualAdapter &a) { return a.closeDevice(type, dev); });
}
static_assert(std::is_same_v<decltype(&VCI_CloseDevice), AdapterEntry::CloseDevice>);

X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL VCI_InitCAN(u32 type, u8 dev, u8 ch, const VCI_INIT_CONFIG *config)
{
    return guarded([=](va::VirtualAdapter &a) { return a.initCan(type, dev, ch, config); });
}
static_assert(std::is_same_v<decltype(&VCI_InitCAN), AdapterEntry::InitCAN>);

// Not supported: these answer 0 and touch nothing.
X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL VCI_ReadBoardInfo()
{
    return 0;
}
static_assert(std::is_same_v<decltype(&VCI_ReadBoardInfo), AdapterEntry::Unused>);

X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL VCI_ReadErrInfo()
{
    return 0;
}
static_assert(std::is_same_v<decltype(&VCI_ReadErrInfo), AdapterEntry::Unused>);

X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL VCI_ReadCANStatus()
{
    return 0;
}
static_assert(std::is_same_v<decltype(&VCI_ReadCANStatus), AdapterEntry::Unused>);

X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL VCI_GetReference()
{
    return 0;
}
static_assert(std::is_same_v<decltype(&VCI_GetReference), AdapterEntry::Unused>);

X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL VCI_SetReference()
{
    return 0;
}
static_assert(std::is_same_v<decltype(&VCI_SetReference), AdapterEntry::Unused>);

X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL VCI_StartCAN(u32 type, u8 dev, u8 ch)
{
    return guarded([=](va::VirtualAdapter &a) { return a.startCan(type, dev, ch); });
}
static_assert(std::is_same_v<decltype(&VCI_StartCAN), AdapterEntry::Channel>);

X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL VCI_ResetCAN(u32 type, u8 dev, u8 ch)
{
    return guarded([=](va::VirtualAdapter &a) { return a.resetCan(type, dev, ch); });
}
static_assert(std::is_same_v<decltype(&VCI_ResetCAN), AdapterEntry::Channel>);

X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL VCI_GetReceiveNum(u32 type, u8 dev, u8 ch)
{
    return guarded([=](va::VirtualAdapter &a) { return a.receiveNum(type, dev, ch); });
}
static_assert(std::is_same_v<decltype(&VCI_GetReceiveNum), AdapterEntry::Channel>);

X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL VCI_ClearBuffer(u32 type, u8 dev, u8 ch)
{
    return guarded([=](va::VirtualAdapter &a) { return a.clearBuffer(type, dev, ch); });
}
static_assert(std::is_same_v<decltype(&VCI_ClearBuffer), AdapterEntry::Channel>);

X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL VCI_Transmit(u32 type, u8 dev, u8 ch, const VCI_CAN_OBJ *frames, u32 count)
{
    return guarded([=](va::VirtualAdapter &a) { return a.transmit(type, dev, ch, frames, count); });
}
static_assert(std::is_same_v<decltype(&VCI_Transmit), AdapterEntry::Transmit>);

X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL VCI_Receive(u32 type, u8 dev, u8 ch, VCI_CAN_OBJ *frames, u32 capacity,
                                                  i32 /*waitMs*/)
{
    return guarded([=](va::VirtualAdapter &a) { return a.receive(type, dev, ch, frames, capacity); });
}
static_assert(std::is_same_v<decltype(&VCI_Receive), AdapterEntry::Receive>);

X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL KQ_ReadInfo(u32 type, u8 dev, char *serial, char *model, char *firmware,
                                                  char *hardware)
{
    return guarded([=](va::VirtualAdapter &a) { return a.readInfo(type, dev, serial, model, firmware, hardware); });
}
static_assert(std::is_same_v<decltype(&KQ_ReadInfo), AdapterEntry::ReadInfo>);

X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL KQ_OpenCANGateWay(u32 type, u8 dev, u8 operation, u32 *state)
{
    return guarded([=](va::VirtualAdapter &a) { return a.switchGateway(type, dev, operation, state); });
}
static_assert(std::is_same_v<decltype(&KQ_OpenCANGateWay), AdapterEntry::OpenCANGateWay>);

X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL KQ_SetCANGateWayIDFilter(u32 type, u8 dev, u8 ch, const u32 *ids, u32 count)
{
    return guarded([=](va::VirtualAdapter &a) { return a.setGatewayFilter(type, dev, ch, ids, count); });
}
static_assert(std::is_same_v<decltype(&KQ_SetCANGateWayIDFilter), AdapterEntry::SetCANGateWayIDFilter>);

X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL KQ_GetCANGateWayIDFilter(u32 type, u8 dev, u8 ch, u32 *ids, u32 *count)
{
    return guarded([=](va::VirtualAdapter &a) { return a.gatewayFilter(type, dev, ch, ids, count); });
}
static_assert(std::is_same_v<decltype(&KQ_GetCANGateWayIDFilter), AdapterEntry::GetCANGateWayIDFilter>);

X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL KQ_OpenLIN(u32 type, u8 dev, u8 ch, u16 baudRate, u8 checksum)
{
    return guarded([=](va::VirtualAdapter &a) { return a.openLin(type, dev, ch, baudRate, checksum); });
}
static_assert(std::is_same_v<decltype(&KQ_OpenLIN), AdapterEntry::OpenLIN>);

X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL KQ_CloseLIN(u32 type, u8 dev, u8 ch)
{
    return guarded([=](va::VirtualAdapter &a) { return a.closeLin(type, dev, ch); });
}
static_assert(std::is_same_v<decltype(&KQ_CloseLIN), AdapterEntry::Channel>);

X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL KQ_TransmitLIN(u32 type, u8 dev, u8 ch, VCI_LIN_OBJ frame)
{
    return guarded([=](va::VirtualAdapter &a) { return a.transmitLin(type, dev, ch, frame); });
}
static_assert(std::is_same_v<decltype(&KQ_TransmitLIN), AdapterEntry::TransmitLIN>);

X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL KQ_ReceiveLIN(u32 type, u8 dev, u8 ch, VCI_LIN_OBJ *frame)
{
    return guarded([=](va::VirtualAdapter &a) { return a.receiveLin(type, dev, ch, frame); });
}
static_assert(std::is_same_v<decltype(&KQ_ReceiveLIN), AdapterEntry::ReceiveLIN>);

X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL KQ_ChangeLINMode(u32 type, u8 dev, u8 ch, u8 mode)
{
    return guarded([=](va::VirtualAdapter &a) { return a.changeLinMode(type, dev, ch, mode); });
}
static_assert(std::is_same_v<decltype(&KQ_ChangeLINMode), AdapterEntry::ChangeLINMode>);

X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL KQ_TransmitLINBySlave(u32 type, u8 dev, u8 ch, VCI_LIN_OBJ frame)
{
    return guarded([=](va::VirtualAdapter &a) { return a.transmitLinBySlave(type, dev, ch, frame); });
}
static_assert(std::is_same_v<decltype(&KQ_TransmitLINBySlave), AdapterEntry::TransmitLIN>);

X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL KQ_ReceiveLINBySlave(u32 type, u8 dev, u8 ch, VCI_LIN_OBJ *frame)
{
    return guarded([=](va::VirtualAdapter &a) { return a.receiveLinBySlave(type, dev, ch, frame); });
}
static_assert(std::is_same_v<decltype(&KQ_ReceiveLINBySlave), AdapterEntry::ReceiveLIN>);

// An addition of this adapter for measurements: the program does not know it.
X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL X9_GetOverflowNum(u32 type, u8 dev, u8 ch)
{
    return guarded([=](va::VirtualAdapter &a) { return a.overflowNum(type, dev, ch); });
}
static_assert(std::is_same_v<decltype(&X9_GetOverflowNum), AdapterEntry::Channel>);

#if !defined(X9_ADAPTER_WITHOUT_CANFD)
X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL KQ_GetReceiveNumCANFD(u32 type, u8 dev, u8 ch)
{
    return guarded([=](va::VirtualAdapter &a) { return a.receiveNumFd(type, dev, ch); });
}
static_assert(std::is_same_v<decltype(&KQ_GetReceiveNumCANFD), AdapterEntry::Channel>);

X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL KQ_TransmitCANFD(u32 type, u8 dev, u8 ch, const VCI_CANFD_OBJ *frames, u32 count)
{
    return guarded([=](va::VirtualAdapter &a) { return a.transmitFd(type, dev, ch, frames, count); });
}
static_assert(std::is_same_v<decltype(&KQ_TransmitCANFD), AdapterEntry::TransmitCANFD>);

X9_ADAPTER_EXPORT u32 X9_ADAPTER_CALL KQ_ReceiveCANFD(u32 type, u8 dev, u8 ch, VCI_CANFD_OBJ *frames, u32 capacity,
                                                      i32 /*waitMs*/)
{
    return guarded([=](va::VirtualAdapter &a) { return a.receiveFd(type, dev, ch, frames, capacity); });
}
static_assert(std::is_same_v<decltype(&KQ_ReceiveCANFD), AdapterEntry::ReceiveCANFD>);
#endif
