#include "adapter/virtual/CanNetwork.h"

#include <algorithm>
#include <utility>

namespace va {

namespace {

constexpr std::uint64_t bitOf(std::size_t bus)
{
    return std::uint64_t{1} << bus; // a configuration has at most 64 buses
}

} // namespace

CanNetwork::CanNetwork(const AdapterConfig &config, std::uint64_t startNs)
    : m_config(config)
    , m_gateways(config.devices.size())
{
    for (const CanBusConfig &bus : config.buses) {
        m_buses.push_back({CanBus(bus, startNs), {}});
    }
    for (const DeviceConfig &device : config.devices) {
        for (const CanChannelConfig &channel : device.can) {
            const CanBusConfig *bus = channel.bus ? &config.buses[*channel.bus] : nullptr;
            if (channel.bus) {
                m_buses[*channel.bus].channels.push_back(m_channels.size());
            }
            m_channelBus.push_back(channel.bus.value_or(NoBus));
            m_channels.emplace_back(bus, config.receiveBufferFrames);
        }
    }
}

void CanNetwork::catchUp(ChannelNumber channel, std::uint64_t nowNs)
{
    const std::size_t bus = m_channelBus[channel];
    if (m_gatewaysOn > 0) {
        catchUpAll(nowNs);
    } else if (bus != NoBus) {
        catchUpBuses(bus, bus + 1, nowNs);
    }
}

void CanNetwork::catchUpAll(std::uint64_t nowNs)
{
    catchUpBuses(0, m_buses.size(), nowNs);
}

void CanNetwork::catchUpBuses(std::size_t first, std::size_t last, std::uint64_t nowNs)
{
    std::uint64_t left = MaxFramesPerCatchUp;
    for (std::size_t bus = earliestBus(first, last, nowNs); bus != NoBus; bus = earliestBus(first, last, nowNs)) {
        if (left-- == 0) {
            std::for_each(m_buses.begin() + static_cast<std::ptrdiff_t>(first),
                          m_buses.begin() + static_cast<std::ptrdiff_t>(last),
                          [](BusState &state) { state.bus.setAllAside(); });
            ++m_changes;
            break;
        }
        const CanBus::Event event = m_buses[bus].bus.takeNext();
        ++m_computedFrames;
        deliver(bus, NoChannel, *event.frame, event.timeNs, event.isReply);
    }
    for (std::size_t bus = first; bus < last; ++bus) {
        passUnheard(bus, nowNs);
    }
}

/// The bus whose next frame is due first, and not after nowNs.
std::size_t CanNetwork::earliestBus(std::size_t first, std::size_t last, std::uint64_t nowNs)
{
    std::size_t earliest = NoBus;
    std::uint64_t earliestNs = nowNs;
    for (std::size_t bus = first; bus < last; ++bus) {
        BusState &state = m_buses[bus];
        if (state.checkedAt != m_changes) {
            chooseHeard(state, bus);
        }
        const std::uint64_t dueNs = state.bus.nextDueNs();
        if (dueNs < earliestNs || (dueNs == earliestNs && earliest == NoBus)) {
            earliest = bus;
            earliestNs = dueNs;
        }
    }
    return earliest;
}

void CanNetwork::chooseHeard(BusState &state, std::size_t bus)
{
    state.checkedAt = m_changes;
    state.bus.chooseHeard([this, bus](const CanFrame &frame) { return isHeard(bus, frame, false); });
}

/// Whether a frame like this one, or a reply to it, would reach a buffer with room.
bool CanNetwork::isHeard(std::size_t bus, const CanFrame &frame, bool isReply)
{
    bool hasRoom = false;
    std::uint64_t visited = 0;
    walk(
        bus, NoChannel, frame, visited,
        [&frame](const CanChannel &channel) { return channel.receivesIdentifier(frame); },
        [&hasRoom](const CanChannel &channel) { hasRoom = hasRoom || !channel.isFull(); },
        [this, &hasRoom, &frame, isReply](std::size_t reached) {
            const auto isReplyHeard = [this, reached](const CanFrame &reply) {
                return isHeard(reached, reply, true);
            };
            hasRoom = hasRoom || (!isReply && m_buses[reached].bus.hasReply(frame, isReplyHeard));
        });
    return hasRoom;
}

void CanNetwork::passUnheard(std::size_t bus, std::uint64_t nowNs)
{
    m_buses[bus].bus.passUnheard(nowNs, [this, bus](const CanFrame &frame, std::uint64_t count) {
        std::uint64_t visited = 0;
        walk(
            bus, NoChannel, frame, visited,
            [&frame](const CanChannel &channel) { return channel.receivesIdentifier(frame); },
            [count](CanChannel &channel) { channel.countOverflow(count); }, [](std::size_t) {});
    });
}

void CanNetwork::deliver(std::size_t bus, ChannelNumber sender, const CanFrame &frame, std::uint64_t timeNs,
                         bool isReply)
{
    std::uint64_t visited = 0;
    walk(
        bus, sender, frame, visited, [&frame](const CanChannel &channel) { return channel.receives(frame); },
        [this, &frame, timeNs](CanChannel &channel) {
            const bool wasFull = channel.isFull();
            channel.store(frame, timeNs);
            m_changes += channel.isFull() && !wasFull ? 1U : 0U;
        },
        [this, &frame, timeNs, isReply](std::size_t reached) {
            // A reply is never taken for a request: two nodes cannot keep each other busy for ever.
            if (!isReply && m_buses[reached].bus.hasResponders()) {
                m_buses[reached].bus.request(frame, timeNs);
            }
        });
}

/// Takes a frame to every channel that accepts it, on its bus and through gateways. A frame reaches each bus once, so
/// gateways cannot send it round in circles.
template<class Accepts, class Visit, class Reach>
void CanNetwork::walk(std::size_t bus, ChannelNumber sender, const CanFrame &frame, std::uint64_t &visited,
                      const Accepts &accepts, const Visit &visit, const Reach &reach)
{
    visited |= bitOf(bus);
    reach(bus);
    for (const ChannelNumber number : m_buses[bus].channels) {
        if (number == sender || !accepts(m_channels[number])) {
            continue;
        }
        visit(m_channels[number]);
        const std::size_t target = m_gatewaysOn == 0 ? NoBus : forwardTarget(number, frame, visited);
        if (target != NoBus) {
            walk(target, number ^ 1U, frame, visited, accepts, visit, reach);
        }
    }
}

/// The bus on which the gateway repeats a frame that this channel received, NoBus when it does not.
std::size_t CanNetwork::forwardTarget(ChannelNumber from, const CanFrame &frame, std::uint64_t visited) const
{
    const ChannelNumber peer = from ^ 1U;
    const std::size_t target = m_channelBus[peer];
    if (!isGatewayOn(from / ChannelsPerDevice) || target == NoBus || (visited & bitOf(target)) != 0 ||
        !m_channels[peer].canSend(frame)) {
        return NoBus;
    }
    return gatewayList(from).passes(frame) ? target : NoBus;
}

void CanNetwork::init(ChannelNumber channel, const VCI_INIT_CONFIG &config)
{
    m_channels[channel].init(config);
    gatewayMayHaveChanged(channel / ChannelsPerDevice);
}

bool CanNetwork::start(ChannelNumber channel, std::uint64_t nowNs)
{
    const bool started = m_channels[channel].start(nowNs);
    gatewayMayHaveChanged(channel / ChannelsPerDevice);
    const std::size_t device = channel / ChannelsPerDevice;
    if (started && m_config.devices[device].gatewayOn) {
        switchGateway(device, true);
    }
    return started;
}

void CanNetwork::stop(ChannelNumber channel)
{
    m_channels[channel].stop();
    gatewayMayHaveChanged(channel / ChannelsPerDevice);
}

void CanNetwork::closeDevice(std::size_t device)
{
    for (std::size_t channel = 0; channel < ChannelsPerDevice; ++channel) {
        m_channels[device * ChannelsPerDevice + channel].close();
        m_gateways[device].lists[channel].clear();
    }
    gatewayMayHaveChanged(device);
}

void CanNetwork::clear(ChannelNumber channel)
{
    m_channels[channel].queue().clear();
    ++m_changes;
}

bool CanNetwork::send(ChannelNumber channel, const CanFrame &frame, std::uint64_t nowNs)
{
    if (!m_channels[channel].canSend(frame)) {
        return false;
    }
    deliver(m_channelBus[channel], channel, frame, nowNs, false);
    return true;
}

bool CanNetwork::switchGateway(std::size_t device, bool on)
{
    const ChannelNumber first = device * ChannelsPerDevice;
    if (on && !(m_channels[first].isStarted() && m_channels[first + 1].isStarted())) {
        return false;
    }
    Gateway &gateway = m_gateways[device];
    if (gateway.isOn != on) {
        gateway.isOn = on;
        m_gatewaysOn += on ? 1U : 0U;
        m_gatewaysOn -= on ? 0U : 1U;
        ++m_changes;
    }
    return true;
}

bool CanNetwork::setGatewayList(ChannelNumber channel, const std::uint32_t *words, std::uint32_t count)
{
    ++m_changes;
    return m_gateways[channel / ChannelsPerDevice].lists[channel % ChannelsPerDevice].set(words, count);
}

const GatewayList &CanNetwork::gatewayList(ChannelNumber channel) const
{
    return m_gateways[channel / ChannelsPerDevice].lists[channel % ChannelsPerDevice];
}

/// A gateway works between two started channels only: it goes off when one of them stops.
void CanNetwork::gatewayMayHaveChanged(std::size_t device)
{
    ++m_changes;
    const ChannelNumber first = device * ChannelsPerDevice;
    if (!m_channels[first].isStarted() || !m_channels[first + 1].isStarted()) {
        switchGateway(device, false);
    }
}

} // namespace va
