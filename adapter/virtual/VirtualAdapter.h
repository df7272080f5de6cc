#pragma once

#include "adapter/Adapter.h"
#include "adapter/virtual/AdapterClock.h"
#include "adapter/virtual/AdapterConfig.h"
#include "adapter/virtual/CanNetwork.h"
#include "adapter/virtual/LinNetwork.h"
#include "device/AdapterRecords.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string_view>
#include <vector>

namespace va {

/// The adapter with simulated buses. docs/virtual-adapter.md gives the rules.
class VirtualAdapter final : public Adapter
{
public:
    /// The buses start now. The clock must outlive the adapter.
    VirtualAdapter(AdapterConfig config, AdapterClock &clock);

    u32 openDevice(u32 type, u8 dev) override;
    u32 closeDevice(u32 type, u8 dev) override;
    u32 readInfo(u32 type, u8 dev, char *serial, char *model, char *firmware, char *hardware) override;

    u32 initCan(u32 type, u8 dev, u8 ch, const VCI_INIT_CONFIG *config) override;
    u32 startCan(u32 type, u8 dev, u8 ch) override;
    u32 resetCan(u32 type, u8 dev, u8 ch) override;
    u32 clearBuffer(u32 type, u8 dev, u8 ch) override;
    u32 receiveNumCan(u32 type, u8 dev, u8 ch) override { return receiveNum<VCI_CAN_OBJ>(type, dev, ch); }
    u32 receiveNumCanFd(u32 type, u8 dev, u8 ch) override { return receiveNum<VCI_CANFD_OBJ>(type, dev, ch); }
    u32 transmitCan(u32 type, u8 dev, u8 ch, const VCI_CAN_OBJ *frames, u32 count) override
    {
        return transmit(type, dev, ch, frames, count);
    }
    u32 transmitCanFd(u32 type, u8 dev, u8 ch, const VCI_CANFD_OBJ *frames, u32 count) override
    {
        return transmit(type, dev, ch, frames, count);
    }
    u32 receiveCan(u32 type, u8 dev, u8 ch, VCI_CAN_OBJ *frames, u32 capacity) override
    {
        return receive(type, dev, ch, frames, capacity);
    }
    u32 receiveCanFd(u32 type, u8 dev, u8 ch, VCI_CANFD_OBJ *frames, u32 capacity) override
    {
        return receive(type, dev, ch, frames, capacity);
    }
    // Of classic CAN with VCI_CAN_OBJ, of CAN FD with VCI_CANFD_OBJ.
    template<class Record = VCI_CAN_OBJ>
    u32 receiveNum(u32 type, u8 dev, u8 ch);
    template<class Record>
    u32 transmit(u32 type, u8 dev, u8 ch, const Record *frames, u32 count);
    template<class Record>
    u32 receive(u32 type, u8 dev, u8 ch, Record *frames, u32 capacity);
    u32 overflowNum(u32 type, u8 dev, u8 ch) override;

    u32 switchGateway(u32 type, u8 dev, u8 operation, u32 *state) override;
    u32 setGatewayFilter(u32 type, u8 dev, u8 ch, const u32 *ids, u32 count) override;
    u32 gatewayFilter(u32 type, u8 dev, u8 ch, u32 *ids, u32 *count) override;

    u32 openLin(u32 type, u8 dev, u8 ch, u16 baudRate, u8 checksum) override;
    u32 closeLin(u32 type, u8 dev, u8 ch) override;
    u32 changeLinMode(u32 type, u8 dev, u8 ch, u8 mode) override;
    u32 transmitLin(u32 type, u8 dev, u8 ch, const VCI_LIN_OBJ &frame) override;
    u32 receiveLin(u32 type, u8 dev, u8 ch, VCI_LIN_OBJ *frame) override;
    u32 receiveLinBySlave(u32 type, u8 dev, u8 ch, VCI_LIN_OBJ *frame) override;
    u32 transmitLinBySlave(u32 type, u8 dev, u8 ch, const VCI_LIN_OBJ &frame) override;

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
