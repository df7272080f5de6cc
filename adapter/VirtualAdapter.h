#pragma once

#include "adapter/AdapterClock.h"
#include "adapter/AdapterConfig.h"
#include "adapter/CanNetwork.h"
#include "adapter/LinNetwork.h"
#include "device/AdapterRecords.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string_view>
#include <vector>

namespace va {

/// The adapter behind the library's entry points: one operation per entry, with the entry's arguments and answers.
/// Any thread may call any operation at any time. docs/virtual-adapter.md gives the rules.
class VirtualAdapter
{
public:
    using u8 = std::uint8_t;
    using u16 = std::uint16_t;
    using u32 = std::uint32_t;

    /// The buses start now. The clock must outlive the adapter.
    VirtualAdapter(AdapterConfig config, AdapterClock &clock);
    VirtualAdapter(const VirtualAdapter &) = delete;
    VirtualAdapter &operator=(const VirtualAdapter &) = delete;

    u32 openDevice(u32 type, u8 dev);
    u32 closeDevice(u32 type, u8 dev);
    u32 readInfo(u32 type, u8 dev, char *serial, char *model, char *firmware, char *hardware);

    u32 initCan(u32 type, u8 dev, u8 ch, const VCI_INIT_CONFIG *config);
    u32 startCan(u32 type, u8 dev, u8 ch);
    u32 resetCan(u32 type, u8 dev, u8 ch);
    u32 clearBuffer(u32 type, u8 dev, u8 ch);
    // Of classic CAN with VCI_CAN_OBJ, of CAN FD with VCI_CANFD_OBJ.
    template<class Record = VCI_CAN_OBJ>
    u32 receiveNum(u32 type, u8 dev, u8 ch);
    template<class Record>
    u32 transmit(u32 type, u8 dev, u8 ch, const Record *frames, u32 count);
    template<class Record>
    u32 receive(u32 type, u8 dev, u8 ch, Record *frames, u32 capacity);
    /// Frames that the channel lost to a full buffer since it was started, at most 0xFFFFFFFF.
    u32 overflowNum(u32 type, u8 dev, u8 ch);

    u32 switchGateway(u32 type, u8 dev, u8 operation, u32 *state);
    u32 setGatewayFilter(u32 type, u8 dev, u8 ch, const u32 *ids, u32 count);
    u32 gatewayFilter(u32 type, u8 dev, u8 ch, u32 *ids, u32 *count);

    u32 openLin(u32 type, u8 dev, u8 ch, u16 baudRate, u8 checksum);
    u32 closeLin(u32 type, u8 dev, u8 ch);
    u32 changeLinMode(u32 type, u8 dev, u8 ch, u8 mode);
    u32 transmitLin(u32 type, u8 dev, u8 ch, const VCI_LIN_OBJ &frame);
    u32 receiveLin(u32 type, u8 dev, u8 ch, VCI_LIN_OBJ *frame);
    u32 receiveLinBySlave(u32 type, u8 dev, u8 ch, VCI_LIN_OBJ *frame);
    u32 transmitLinBySlave(u32 type, u8 dev, u8 ch, const VCI_LIN_OBJ &frame);

private:
    class Call;
    static constexpr std::uint64_t Never = UINT64_MAX;
    struct Device
    {
        bool isOpen = false;
        bool hasVanished = false;
        std::uint64_t goneNs = Never; ///< when the device vanishes: known from its first opening on
        std::uint64_t backNs = Never; ///< when it has come back
        std::array<u32, ChannelsPerDevice> receiveCalls{};
    };

    u32 doOnCan(std::string_view entry, u32 type, u8 dev, u8 ch, void (CanNetwork::*operation)(ChannelNumber));
    void closeVanished(std::uint64_t nowNs);
    void shutDevice(std::size_t dev, std::uint64_t nowNs);

    const AdapterConfig m_config;
    AdapterClock &m_clock;
    std::mutex m_mutex; ///< guards everything below
    std::vector<Device> m_devices;
    CanNetwork m_can;
    LinNetwork m_lin;
};

} // namespace va
