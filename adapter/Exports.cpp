// The entry points of every adapter library. What they answer is written in docs/virtual-adapter.md and
// docs/socketcan.md.

#include "adapter/Adapter.h"
#include "device/AdapterRecords.h"

#include <type_traits>

#if defined(_WIN32)
#define X9_ADAPTER_EXPORT __declspec(dllexport)
#else
#define X9_ADAPTER_EXPORT __attribute__((visibility("default")))
#endif

namespace {

template<class Entry>
using Function = std::remove_pointer_t<Entry>;

} // namespace

// What leaves the library, with the types that the program calls through: a definition of another type does not
// compile.
extern "C" {
X9_ADAPTER_EXPORT Function<AdapterEntry::OpenDevice> VCI_OpenDevice;
X9_ADAPTER_EXPORT Function<AdapterEntry::CloseDevice> VCI_CloseDevice;
X9_ADAPTER_EXPORT Function<AdapterEntry::InitCAN> VCI_InitCAN;
X9_ADAPTER_EXPORT Function<AdapterEntry::Unused> VCI_ReadBoardInfo, VCI_ReadCANStatus, VCI_GetReference,
    VCI_SetReference, X9_ErrInfoSize;
X9_ADAPTER_EXPORT Function<AdapterEntry::ReadErrInfo> VCI_ReadErrInfo;
X9_ADAPTER_EXPORT Function<AdapterEntry::Channel> VCI_StartCAN, VCI_ResetCAN, VCI_GetReceiveNum, VCI_ClearBuffer,
    KQ_CloseLIN, KQ_GetReceiveNumCANFD, X9_GetOverflowNum;
X9_ADAPTER_EXPORT Function<AdapterEntry::Transmit> VCI_Transmit;
X9_ADAPTER_EXPORT Function<AdapterEntry::Receive> VCI_Receive;
X9_ADAPTER_EXPORT Function<AdapterEntry::ReadInfo> KQ_ReadInfo;
X9_ADAPTER_EXPORT Function<AdapterEntry::OpenCANGateWay> KQ_OpenCANGateWay;
X9_ADAPTER_EXPORT Function<AdapterEntry::SetCANGateWayIDFilter> KQ_SetCANGateWayIDFilter;
X9_ADAPTER_EXPORT Function<AdapterEntry::GetCANGateWayIDFilter> KQ_GetCANGateWayIDFilter;
X9_ADAPTER_EXPORT Function<AdapterEntry::OpenLIN> KQ_OpenLIN;
X9_ADAPTER_EXPORT Function<AdapterEntry::TransmitLIN> KQ_TransmitLIN, KQ_TransmitLINBySlave;
X9_ADAPTER_EXPORT Function<AdapterEntry::ReceiveLIN> KQ_ReceiveLIN, KQ_ReceiveLINBySlave;
X9_ADAPTER_EXPORT Function<AdapterEntry::ChangeLINMode> KQ_ChangeLINMode;
X9_ADAPTER_EXPORT Function<AdapterEntry::TransmitCANFD> KQ_TransmitCANFD;
X9_ADAPTER_EXPORT Function<AdapterEntry::ReceiveCANFD> KQ_ReceiveCANFD;
}

namespace {

using AdapterEntry::i32;
using AdapterEntry::u16;
using AdapterEntry::u32;
using AdapterEntry::u8;

/// No exception (memory running out) may leave the library: the call is refused instead.
template<class Operation>
u32 guarded(Operation operation) noexcept
{
    try {
        return operation(va::libraryAdapter());
    } catch (...) {
        return 0;
    }
}

} // namespace

u32 X9_ADAPTER_CALL VCI_OpenDevice(u32 type, u8 dev, u32 /*reserved*/)
{
    return guarded([=](va::Adapter &a) { return a.openDevice(type, dev); });
}

u32 X9_ADAPTER_CALL VCI_CloseDevice(u32 type, u8 dev)
{
    return guarded([=](va::Adapter &a) { return a.closeDevice(type, dev); });
}

u32 X9_ADAPTER_CALL VCI_InitCAN(u32 type, u8 dev, u8 ch, const VCI_INIT_CONFIG *config)
{
    return guarded([=](va::Adapter &a) { return a.initCan(type, dev, ch, config); });
}

u32 X9_ADAPTER_CALL VCI_ReadErrInfo(u32 type, u8 dev, u8 ch, VCI_ERR_INFO *info)
{
    return guarded([=](va::Adapter &a) { return a.readErrInfo(type, dev, ch, info); });
}

// By this entry the program knows that VCI_ReadErrInfo has the record that it knows.
u32 X9_ADAPTER_CALL X9_ErrInfoSize()
{
    return sizeof(VCI_ERR_INFO);
}

// Not supported: these answer 0 and touch nothing.
u32 X9_ADAPTER_CALL VCI_ReadBoardInfo()
{
    return 0;
}

u32 X9_ADAPTER_CALL VCI_ReadCANStatus()
{
    return 0;
}

u32 X9_ADAPTER_CALL VCI_GetReference()
{
    return 0;
}

u32 X9_ADAPTER_CALL VCI_SetReference()
{
    return 0;
}

u32 X9_ADAPTER_CALL VCI_StartCAN(u32 type, u8 dev, u8 ch)
{
    return guarded([=](va::Adapter &a) { return a.startCan(type, dev, ch); });
}

u32 X9_ADAPTER_CALL VCI_ResetCAN(u32 type, u8 dev, u8 ch)
{
    return guarded([=](va::Adapter &a) { return a.resetCan(type, dev, ch); });
}

u32 X9_ADAPTER_CALL VCI_GetReceiveNum(u32 type, u8 dev, u8 ch)
{
    return guarded([=](va::Adapter &a) { return a.receiveNumCan(type, dev, ch); });
}

u32 X9_ADAPTER_CALL VCI_ClearBuffer(u32 type, u8 dev, u8 ch)
{
    return guarded([=](va::Adapter &a) { return a.clearBuffer(type, dev, ch); });
}

u32 X9_ADAPTER_CALL VCI_Transmit(u32 type, u8 dev, u8 ch, const VCI_CAN_OBJ *frames, u32 count)
{
    return guarded([=](va::Adapter &a) { return a.transmitCan(type, dev, ch, frames, count); });
}

u32 X9_ADAPTER_CALL VCI_Receive(u32 type, u8 dev, u8 ch, VCI_CAN_OBJ *frames, u32 capacity, i32 /*waitMs*/)
{
    return guarded([=](va::Adapter &a) { return a.receiveCan(type, dev, ch, frames, capacity); });
}

u32 X9_ADAPTER_CALL KQ_ReadInfo(u32 type, u8 dev, char *serial, char *model, char *firmware, char *hardware)
{
    return guarded([=](va::Adapter &a) { return a.readInfo(type, dev, serial, model, firmware, hardware); });
}

u32 X9_ADAPTER_CALL KQ_OpenCANGateWay(u32 type, u8 dev, u8 operation, u32 *state)
{
    return guarded([=](va::Adapter &a) { return a.switchGateway(type, dev, operation, state); });
}

u32 X9_ADAPTER_CALL KQ_SetCANGateWayIDFilter(u32 type, u8 dev, u8 ch, const u32 *ids, u32 count)
{
    return guarded([=](va::Adapter &a) { return a.setGatewayFilter(type, dev, ch, ids, count); });
}

u32 X9_ADAPTER_CALL KQ_GetCANGateWayIDFilter(u32 type, u8 dev, u8 ch, u32 *ids, u32 *count)
{
    return guarded([=](va::Adapter &a) { return a.gatewayFilter(type, dev, ch, ids, count); });
}

u32 X9_ADAPTER_CALL KQ_OpenLIN(u32 type, u8 dev, u8 ch, u16 baudRate, u8 checksum)
{
    return guarded([=](va::Adapter &a) { return a.openLin(type, dev, ch, baudRate, checksum); });
}

u32 X9_ADAPTER_CALL KQ_CloseLIN(u32 type, u8 dev, u8 ch)
{
    return guarded([=](va::Adapter &a) { return a.closeLin(type, dev, ch); });
}

u32 X9_ADAPTER_CALL KQ_TransmitLIN(u32 type, u8 dev, u8 ch, VCI_LIN_OBJ frame)
{
    return guarded([=](va::Adapter &a) { return a.transmitLin(type, dev, ch, frame); });
}

u32 X9_ADAPTER_CALL KQ_ReceiveLIN(u32 type, u8 dev, u8 ch, VCI_LIN_OBJ *frame)
{
    return guarded([=](va::Adapter &a) { return a.receiveLin(type, dev, ch, frame); });
}

u32 X9_ADAPTER_CALL KQ_ChangeLINMode(u32 type, u8 dev, u8 ch, u8 mode)
{
    return guarded([=](va::Adapter &a) { return a.changeLinMode(type, dev, ch, mode); });
}

u32 X9_ADAPTER_CALL KQ_TransmitLINBySlave(u32 type, u8 dev, u8 ch, VCI_LIN_OBJ frame)
{
    return guarded([=](va::Adapter &a) { return a.transmitLinBySlave(type, dev, ch, frame); });
}

u32 X9_ADAPTER_CALL KQ_ReceiveLINBySlave(u32 type, u8 dev, u8 ch, VCI_LIN_OBJ *frame)
{
    return guarded([=](va::Adapter &a) { return a.receiveLinBySlave(type, dev, ch, frame); });
}

// An addition for measurements: the program does not know it.
u32 X9_ADAPTER_CALL X9_GetOverflowNum(u32 type, u8 dev, u8 ch)
{
    return guarded([=](va::Adapter &a) { return a.overflowNum(type, dev, ch); });
}

#if !defined(X9_ADAPTER_WITHOUT_CANFD)
u32 X9_ADAPTER_CALL KQ_GetReceiveNumCANFD(u32 type, u8 dev, u8 ch)
{
    return guarded([=](va::Adapter &a) { return a.receiveNumCanFd(type, dev, ch); });
}

u32 X9_ADAPTER_CALL KQ_TransmitCANFD(u32 type, u8 dev, u8 ch, const VCI_CANFD_OBJ *frames, u32 count)
{
    return guarded([=](va::Adapter &a) { return a.transmitCanFd(type, dev, ch, frames, count); });
}

u32 X9_ADAPTER_CALL KQ_ReceiveCANFD(u32 type, u8 dev, u8 ch, VCI_CANFD_OBJ *frames, u32 capacity, i32 /*waitMs*/)
{
    return guarded([=](va::Adapter &a) { return a.receiveCanFd(type, dev, ch, frames, capacity); });
}
#endif
