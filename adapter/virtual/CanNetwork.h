#pragma once

#include "adapter/GatewayList.h"
#include "adapter/virtual/AdapterConfig.h"
#include "adapter/virtual/CanBus.h"
#include "adapter/virtual/CanChannel.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace va {

/// Number of a channel over all devices: device index x ChannelsPerDevice + channel index.
using ChannelNumber = std::size_t;

/// All CAN buses, the devices' channels on them, and the gateways between the two channels of a device. Time moves only
/// by catchUp(); not thread-safe.
class CanNetwork
{
public:
    /// Frames computed by one catchUp() at most; what is due beyond that passes unheard and is counted as overflow.
    static constexpr std::uint64_t MaxFramesPerCatchUp = 4000000;

    /// config must outlive the network.
    CanNetwork(const AdapterConfig &config, std::uint64_t startNs);

    /// Computes everything that happened up to nowNs on the bus of this channel (with a gateway on: on every bus).
    /// To be called with the current time before every other operation.
    void catchUp(ChannelNumber channel, std::uint64_t nowNs);
    void catchUpAll(std::uint64_t nowNs);
    /// Frames of nodes computed one by one so far; those that passed unheard are not among them.
    std::uint64_t computedFrames() const { return m_computedFrames; }

    const CanChannel &channel(ChannelNumber channel) const { return m_channels[channel]; }
    void init(ChannelNumber channel, const VCI_INIT_CONFIG &config);
    bool start(ChannelNumber channel, std::uint64_t nowNs);
    void stop(ChannelNumber channel);
    /// Stops both channels and forgets their settings, the gateway's too.
    void closeDevice(std::size_t device);
    void clear(ChannelNumber channel);
    /// Puts a frame on the channel's bus; false when the channel may not.
    bool send(ChannelNumber channel, const CanFrame &frame, std::uint64_t nowNs);
    /// Hands up to maxCount waiting frames to take(WaitingFrame), oldest first; answers how many.
    template<class Take>
    std::size_t receive(ChannelNumber channel, std::size_t maxCount, Take &&take);

    /// Switches a device's gateway; false when it should go on and not both channels are started.
    bool switchGateway(std::size_t device, bool on);
    bool isGatewayOn(std::size_t device) const { return m_gateways[device].isOn; }
    /// The list that frames received by the channel must pass to be forwarded. False as in GatewayList::set().
    bool setGatewayList(ChannelNumber channel, const std::uint32_t *words, std::uint32_t count);
    const GatewayList &gatewayList(ChannelNumber channel) const;

private:
    struct Gateway
    {
        bool isOn = false;
        std::array<GatewayList, ChannelsPerDevice> lists;
    };
    struct BusState
    {
        CanBus bus;
        std::vector<ChannelNumber> channels;
        std::uint64_t checkedAt = 0; ///< value of m_changes when the nodes were last asked who hears them
    };
    static constexpr ChannelNumber NoChannel = SIZE_MAX;
    static constexpr std::size_t NoBus = SIZE_MAX;

    void catchUpBuses(std::size_t first, std::size_t last, std::uint64_t nowNs);
    std::size_t earliestBus(std::size_t first, std::size_t last, std::uint64_t nowNs);
    void passUnheard(std::size_t bus, std::uint64_t nowNs);
    void chooseHeard(BusState &state, std::size_t bus);
    bool isHeard(std::size_t bus, const CanFrame &frame, bool isReply);
    void deliver(std::size_t bus, ChannelNumber sender, const CanFrame &frame, std::uint64_t timeNs, bool isReply);
    template<class Accepts, class Visit, class Reach>
    void walk(std::size_t bus, ChannelNumber sender, const CanFrame &frame, std::uint64_t &visited,
              const Accepts &accepts, const Visit &visit, const Reach &reach);
    std::size_t forwardTarget(ChannelNumber from, const CanFrame &frame, std::uint64_t visited) const;
    void gatewayMayHaveChanged(std::size_t device);

    const AdapterConfig &m_config;
    std::vector<BusState> m_buses;
    std::vector<CanChannel> m_channels;
    std::vector<std::size_t> m_channelBus; ///< NoBus: connected to nothing
    std::vector<Gateway> m_gateways;
    std::size_t m_gatewaysOn = 0;
    std::uint64_t m_computedFrames = 0;
    std::uint64_t m_changes = 1; ///< counts whatever may change who hears whom, a buffer filling up included
};

template<class Take>
std::size_t CanNetwork::receive(ChannelNumber channel, std::size_t maxCount, Take &&take)
{
    FrameQueue &queue = m_channels[channel].queue();
    m_changes += queue.isFull() ? 1U : 0U;
    std::size_t count = 0;
    for (; count < maxCount && queue.size() > 0; ++count) {
        take(queue.front());
        queue.pop();
    }
    return count;
}

} // namespace va
