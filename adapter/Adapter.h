#pragma once

#include "device/AdapterRecords.h"

#include <cstdint>

namespace va {

/// What stands behind a library's entry points: one operation per entry, with the entry's arguments and answers. Any
/// thread may call any operation at any time; none may wait longer than its document says. What an adapter has not got
/// keeps the answer here: refused.
class Adapter
{
public:
    using u8 = std::uint8_t;
    using u16 = std::uint16_t;
    using u32 = std::uint32_t;

    Adapter() = default;
    Adapter(const Adapter &) = delete;
    Adapter &operator=(const Adapter &) = delete;
    virtual ~Adapter() = default;

    virtual u32 openDevice(u32 type, u8 dev) = 0;
    virtual u32 closeDevice(u32 type, u8 dev) = 0;
    virtual u32 readInfo(u32 type, u8 dev, char *serial, char *model, char *firmware, char *hardware) = 0;
    virtual u32 readErrInfo(u32 /*type*/, u8 /*dev*/, u8 /*ch*/, VCI_ERR_INFO * /*info*/) { return 0; }

    virtual u32 initCan(u32 type, u8 dev, u8 ch, const VCI_INIT_CONFIG *config) = 0;
    virtual u32 startCan(u32 type, u8 dev, u8 ch) = 0;
    virtual u32 resetCan(u32 type, u8 dev, u8 ch) = 0;
    virtual u32 clearBuffer(u32 type, u8 dev, u8 ch) = 0;
    virtual u32 receiveNumCan(u32 type, u8 dev, u8 ch) = 0;
    virtual u32 receiveNumCanFd(u32 type, u8 dev, u8 ch) = 0;
    virtual u32 transmitCan(u32 type, u8 dev, u8 ch, const VCI_CAN_OBJ *frames, u32 count) = 0;
    virtual u32 transmitCanFd(u32 type, u8 dev, u8 ch, const VCI_CANFD_OBJ *frames, u32 count) = 0;
    virtual u32 receiveCan(u32 type, u8 dev, u8 ch, VCI_CAN_OBJ *frames, u32 capacity) = 0;
    virtual u32 receiveCanFd(u32 type, u8 dev, u8 ch, VCI_CANFD_OBJ *frames, u32 capacity) = 0;
    /// Frames that the channel lost to a full buffer since it was started, at most 0xFFFFFFFF.
    virtual u32 overflowNum(u32 type, u8 dev, u8 ch) = 0;

    virtual u32 switchGateway(u32 type, u8 dev, u8 operation, u32 *state) = 0;
    virtual u32 setGatewayFilter(u32 type, u8 dev, u8 ch, const u32 *ids, u32 count) = 0;
    virtual u32 gatewayFilter(u32 type, u8 dev, u8 ch, u32 *ids, u32 *count) = 0;

    virtual u32 openLin(u32 /*type*/, u8 /*dev*/, u8 /*ch*/, u16 /*baudRate*/, u8 /*checksum*/) { return 0; }
    virtual u32 closeLin(u32 /*type*/, u8 /*dev*/, u8 /*ch*/) { return 0; }
    virtual u32 changeLinMode(u32 /*type*/, u8 /*dev*/, u8 /*ch*/, u8 /*mode*/) { return 0; }
    virtual u32 transmitLin(u32 /*type*/, u8 /*dev*/, u8 /*ch*/, const VCI_LIN_OBJ & /*frame*/) { return 0; }
    virtual u32 receiveLin(u32 /*type*/, u8 /*dev*/, u8 /*ch*/, VCI_LIN_OBJ * /*frame*/) { return 0; }
    virtual u32 receiveLinBySlave(u32 /*type*/, u8 /*dev*/, u8 /*ch*/, VCI_LIN_OBJ * /*frame*/) { return 0; }
    virtual u32 transmitLinBySlave(u32 /*type*/, u8 /*dev*/, u8 /*ch*/, const VCI_LIN_OBJ & /*frame*/) { return 0; }
};

/// The adapter of this library, made with the first call of an entry. Each library has its own definition. May throw.
Adapter &libraryAdapter();

} // namespace va
