#pragma once

// The binary contract with the adapter library: records, entry points and their calling convention. Plain C++ without
// Qt, because the virtual adapter implements the other side of it. All numbers are little-endian, all records packed.

#include <cstddef>
#include <cstdint>
#include <type_traits>

constexpr int ChannelsPerDevice = 2; ///< CAN channels, and LIN channels

/// Calling convention of every entry point: the platform's convention for library entry points. The only place where
/// it is chosen; it makes a difference on 32-bit Windows alone.
#if defined(_WIN32)
#define X9_ADAPTER_CALL __stdcall
#else
#define X9_ADAPTER_CALL
#endif

/// First argument of every adapter call.
constexpr std::uint32_t AdapterDeviceType = 4;
/// What an entry point answers on success (transmit and receive answer a count instead).
constexpr std::uint32_t AdapterSuccess = 1;
/// What the receive entries answer instead of a count when the adapter fails.
constexpr std::uint32_t AdapterReceiveError = 0xFFFFFFFFU;
/// Wait time handed to the receive entries, in milliseconds.
constexpr std::int32_t AdapterReceiveWaitMs = 3000;
/// Size of each of the four text buffers of KQ_ReadInfo, in bytes.
constexpr std::size_t AdapterInfoSize = 80;
/// What the model text ends with when the adapter is one of Linux's own CAN interfaces, of any maker: there is no
/// firmware for it.
constexpr const char *AdapterForeignModel = "SocketCAN";
/// Size of each of the two texts of VCI_ERR_INFO, in bytes.
constexpr std::size_t AdapterProblemSize = 160;
/// KQ_OpenCANGateWay: what to do.
constexpr std::uint8_t AdapterGatewayOff = 0;
constexpr std::uint8_t AdapterGatewayOn = 1;
constexpr std::uint8_t AdapterGatewayQuery = 0xFF;
/// Most identifiers in one channel's gateway list.
constexpr std::uint32_t AdapterGatewayMaxIds = 64;

#pragma pack(push, 1)

/// One classic CAN frame.
struct VCI_CAN_OBJ
{
    std::uint32_t ID;        ///< identifier, 11 or 29 bits, right-aligned
    std::uint32_t TimeStamp; ///< milliseconds since VCI_StartCAN on receive, 0 on transmit
    std::uint8_t TimeFlag;   ///< 1 when TimeStamp is valid
    std::uint8_t SendType;   ///< 0: normal transmission
    std::uint8_t RemoteFlag; ///< 0 data frame, 1 remote frame
    std::uint8_t ExternFlag; ///< 0 standard (11 bit), 1 extended (29 bit) identifier
    std::uint8_t DataLen;    ///< 0..8 bytes
    std::uint8_t Data[8];
    std::uint8_t Reserved[3]; ///< 0
};

/// One frame of a channel that was started for CAN FD. FD frames are always data frames.
struct VCI_CANFD_OBJ
{
    std::uint32_t ID;        ///< identifier, 11 or 29 bits, right-aligned
    std::uint32_t TimeStamp; ///< milliseconds since VCI_StartCAN on receive, 0 on transmit
    std::uint8_t TimeFlag;   ///< 1 when TimeStamp is valid
    std::uint8_t SendType;   ///< 0: normal transmission
    std::uint8_t RemoteFlag; ///< 0
    std::uint8_t ExternFlag; ///< 0 standard (11 bit), 1 extended (29 bit) identifier
    std::uint8_t FDFlag;     ///< 0 classic CAN, 1 CAN FD, 2 CAN FD with bit rate switch
    std::uint8_t DataLen;    ///< 0..64 bytes
    std::uint8_t Data[64];
    std::uint8_t Reserved[2]; ///< 0
};

/// How a CAN channel is initialised; timing and acceptance registers as in the SJA1000.
struct VCI_INIT_CONFIG
{
    std::uint32_t AccCode;  ///< acceptance code
    std::uint32_t AccMask;  ///< acceptance mask, bit 1 = don't care
    std::uint32_t Reserved; ///< 0
    std::uint8_t Filter;    ///< filter mode
    std::uint8_t Timing0;   ///< bus timing register 0
    std::uint8_t Timing1;   ///< bus timing register 1
    std::uint8_t Mode;      ///< bit 0 listen only, bit 1 always set, bits 2..5 CAN FD data-rate index (0 = classic CAN)
};

/// One LIN frame.
struct VCI_LIN_OBJ
{
    std::uint8_t DataLen; ///< 0..8 bytes; 0 in a received record: no frame
    std::uint8_t ID;      ///< frame identifier 0..0x3F, or the protected identifier seen on the bus while monitoring
    std::uint8_t Data[8];
    std::uint8_t Checksum; ///< as received; 0 on transmit
};

/// What a channel tells of its errors, in libraries that export X9_ErrInfoSize. The counts are those since the channel
/// was started.
struct VCI_ERR_INFO
{
    std::uint32_t ErrCode;           ///< an AdapterProblemCode: why the channel did not open last
    std::uint32_t SystemLost;        ///< received frames that the system dropped before the library read them
    std::uint32_t BufferLost;        ///< received frames that found the channel's buffer full
    std::uint32_t Refused;           ///< frames to be sent that were not taken
    std::uint32_t GatewayLost;       ///< frames that the gateway could not send on
    std::uint32_t ErrorFrames;       ///< reports of the controller: bus errors, error states
    std::uint32_t BusOff;            ///< how often the controller went off the bus
    std::uint32_t Restarts;          ///< how often it came back
    char Text[AdapterProblemSize];   ///< about ErrCode, in English, zero-terminated: what stands in the way
    char Remedy[AdapterProblemSize]; ///< a command that would help, zero-terminated; empty when there is none
};

#pragma pack(pop)

/// Values of VCI_ERR_INFO::ErrCode.
enum class AdapterProblemCode : std::uint32_t {
    None = 0,
    NoInterface = 1,   ///< there is no interface for the channel
    WrongBitRate = 2,  ///< the interface runs at another bit rate, which may not be changed
    WrongMode = 3,     ///< the interface listens only, or is not in CAN FD mode, which may not be changed
    IsDown = 4,        ///< the interface is down and may not be brought up
    NoCanFd = 5,       ///< the interface has no CAN FD
    NoSuchBitRate = 6, ///< the bit rate asked for cannot be expressed
    NoLin = 7,         ///< the adapter has no LIN
    System = 8,        ///< the system refused; the text says what it said
};

// The same bytes whatever the word size: no gaps, and no alignment, so that arrays have none either.
static_assert(sizeof(VCI_CAN_OBJ) == 24 && offsetof(VCI_CAN_OBJ, TimeFlag) == 8 && offsetof(VCI_CAN_OBJ, Data) == 13);
static_assert(sizeof(VCI_CANFD_OBJ) == 80 && offsetof(VCI_CANFD_OBJ, FDFlag) == 12 &&
              offsetof(VCI_CANFD_OBJ, Data) == 14);
static_assert(sizeof(VCI_INIT_CONFIG) == 16 && offsetof(VCI_INIT_CONFIG, Filter) == 12 &&
              offsetof(VCI_INIT_CONFIG, Mode) == 15);
static_assert(sizeof(VCI_LIN_OBJ) == 11 && offsetof(VCI_LIN_OBJ, Data) == 2 && offsetof(VCI_LIN_OBJ, Checksum) == 10);
template<class Record>
constexpr bool isPlainRecord()
{
    return alignof(Record) == 1 && std::is_trivially_copyable_v<Record> && std::is_standard_layout_v<Record>;
}
static_assert(isPlainRecord<VCI_CAN_OBJ>() && isPlainRecord<VCI_CANFD_OBJ>() && isPlainRecord<VCI_INIT_CONFIG>() &&
              isPlainRecord<VCI_LIN_OBJ>() && isPlainRecord<VCI_ERR_INFO>() && sizeof(VCI_ERR_INFO) == 352);

/// Bits of VCI_INIT_CONFIG::Mode.
constexpr std::uint8_t AdapterModeListenOnly = 0x01;
constexpr std::uint8_t AdapterModeAlways = 0x02;
constexpr unsigned AdapterModeDataRateShift = 2;
constexpr std::uint8_t AdapterModeDataRateMask = 0x0F;

/// Types of the library's entry points. The arguments type, dev and ch are the device type, the device index and the
/// channel index throughout.
namespace AdapterEntry {
using u8 = std::uint8_t;
using u16 = std::uint16_t;
using u32 = std::uint32_t;
using i32 = std::int32_t;

using OpenDevice = u32(X9_ADAPTER_CALL *)(u32 type, u8 dev, u32 reserved);
using CloseDevice = u32(X9_ADAPTER_CALL *)(u32 type, u8 dev);
using InitCAN = u32(X9_ADAPTER_CALL *)(u32 type, u8 dev, u8 ch, const VCI_INIT_CONFIG *config);
/// Entries that are looked up and never called.
using Unused = u32(X9_ADAPTER_CALL *)();
/// Of libraries that export X9_ErrInfoSize only, which answers the size of the record; a maker's own is never called.
using ReadErrInfo = u32(X9_ADAPTER_CALL *)(u32 type, u8 dev, u8 ch, VCI_ERR_INFO *info);
/// VCI_StartCAN, VCI_ResetCAN, VCI_ClearBuffer; VCI_GetReceiveNum, KQ_GetReceiveNumCANFD (a frame count); KQ_CloseLIN.
using Channel = u32(X9_ADAPTER_CALL *)(u32 type, u8 dev, u8 ch);
using Transmit = u32(X9_ADAPTER_CALL *)(u32 type, u8 dev, u8 ch, const VCI_CAN_OBJ *frames, u32 count);
using Receive = u32(X9_ADAPTER_CALL *)(u32 type, u8 dev, u8 ch, VCI_CAN_OBJ *frames, u32 capacity, i32 waitMs);
using TransmitCANFD = u32(X9_ADAPTER_CALL *)(u32 type, u8 dev, u8 ch, const VCI_CANFD_OBJ *frames, u32 count);
using ReceiveCANFD = u32(X9_ADAPTER_CALL *)(u32 type, u8 dev, u8 ch, VCI_CANFD_OBJ *frames, u32 capacity, i32 waitMs);
/// Four buffers of AdapterInfoSize bytes, zero-terminated local 8-bit text: serial, model, firmware, hardware.
using ReadInfo = u32(X9_ADAPTER_CALL *)(u32 type, u8 dev, char *serial, char *model, char *firmware, char *hardware);
using OpenCANGateWay = u32(X9_ADAPTER_CALL *)(u32 type, u8 dev, u8 operation, u32 *state);
using SetCANGateWayIDFilter = u32(X9_ADAPTER_CALL *)(u32 type, u8 dev, u8 ch, const u32 *ids, u32 count);
/// ids holds AdapterGatewayMaxIds words; count receives how many were written.
using GetCANGateWayIDFilter = u32(X9_ADAPTER_CALL *)(u32 type, u8 dev, u8 ch, u32 *ids, u32 *count);
/// baudRate in bits per second; checksum 0 standard (classic), 1 enhanced.
using OpenLIN = u32(X9_ADAPTER_CALL *)(u32 type, u8 dev, u8 ch, u16 baudRate, u8 checksum);
using TransmitLIN = u32(X9_ADAPTER_CALL *)(u32 type, u8 dev, u8 ch, VCI_LIN_OBJ frame);
using ReceiveLIN = u32(X9_ADAPTER_CALL *)(u32 type, u8 dev, u8 ch, VCI_LIN_OBJ *frame);
using ChangeLINMode = u32(X9_ADAPTER_CALL *)(u32 type, u8 dev, u8 ch, u8 mode);

#if defined(_WIN32) && !defined(_WIN64)
// Of the conventions of 32-bit Windows it is the one in which the library takes the arguments off the stack: with the
// other one each call would leave the stack shifted.
static_assert(std::is_same_v<CloseDevice, u32(__stdcall *)(u32, u8)> && !std::is_same_v<CloseDevice, u32 (*)(u32, u8)>);
#endif
} // namespace AdapterEntry
