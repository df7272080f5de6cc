#include "adapter/virtual/LinNetwork.h"

#include "adapter/virtual/LinProtocol.h"
#include "adapter/virtual/Payload.h"

#include <algorithm>

namespace va {

namespace {

constexpr std::uint8_t MaxId = 0x3F;
constexpr std::uint8_t ParityBit0 = 0x40;
constexpr std::size_t NoSender = SIZE_MAX;

bool isPossible(const VCI_LIN_OBJ &frame)
{
    return frame.ID <= MaxId && frame.DataLen <= sizeof frame.Data;
}

/// The diagnostic identifiers carry the classic checksum whatever the channel is set to.
bool isEnhanced(std::uint8_t id, bool channelSetting)
{
    return channelSetting && id != 0x3C && id != 0x3D;
}

VCI_LIN_OBJ frameOf(std::uint8_t id, const LinData &data, LinChecksum checksum, std::uint64_t index)
{
    VCI_LIN_OBJ frame{};
    frame.ID = id;
    frame.DataLen = data.size;
    std::copy(data.bytes.begin(), data.bytes.end(), frame.Data);
    if (data.counting) {
        fillCounting(frame.Data, data.size, index);
    }
    frame.Checksum = linChecksum(id, checksum == LinChecksum::Enhanced, frame.Data, frame.DataLen);
    return frame;
}

VCI_LIN_OBJ answerOf(const LinSlaveConfig &slave, std::uint64_t index)
{
    VCI_LIN_OBJ frame = frameOf(slave.id, slave.data, slave.checksum, index);
    if (slave.wrongChecksum) {
        frame.Checksum = static_cast<std::uint8_t>(frame.Checksum ^ 0x5AU);
    }
    return frame;
}

/// As a monitor reports it: with the protected identifier.
VCI_LIN_OBJ onBus(VCI_LIN_OBJ frame, bool wrongParity)
{
    frame.ID = protectedId(frame.ID);
    if (wrongParity) {
        frame.ID = static_cast<std::uint8_t>(frame.ID ^ ParityBit0);
    }
    return frame;
}

} // namespace

LinNetwork::LinNetwork(const AdapterConfig &config, std::uint64_t startNs)
    : m_buses(config.linBuses.size())
{
    for (std::size_t i = 0; i < m_buses.size(); ++i) {
        const LinBusConfig &bus = config.linBuses[i];
        m_buses[i].baudRate = bus.baudRate;
        for (const LinSlaveConfig &slave : bus.slaves) {
            m_buses[i].slaves[slave.id] = Slave{slave};
        }
        for (const LinTrafficConfig &traffic : bus.traffic) {
            m_buses[i].traffic.push_back({traffic, CyclicSchedule(traffic.period, startNs, 0)});
        }
    }
    for (const DeviceConfig &device : config.devices) {
        for (const LinChannelConfig &channel : device.lin) {
            Channel added;
            if (channel.bus) {
                added.bus = &m_buses[*channel.bus];
                added.bus->channels.push_back(m_channels.size());
            }
            m_channels.push_back(std::move(added));
        }
    }
}

void LinNetwork::catchUp(std::size_t channel, std::uint64_t nowNs)
{
    Bus *bus = m_channels[channel].bus;
    if (bus == nullptr || bus->traffic.empty()) {
        return;
    }
    const auto isEarlier = [](const Traffic &a, const Traffic &b) {
        return a.schedule.dueNs() < b.schedule.dueNs();
    };
    while (hasListener(*bus)) {
        const auto next = std::min_element(bus->traffic.begin(), bus->traffic.end(), isEarlier);
        if (next->schedule.dueNs() > nowNs) {
            return;
        }
        run(*bus, *next);
    }
    for (Traffic &traffic : bus->traffic) {
        pass(*bus, traffic, nowNs);
    }
}

/// Somebody monitors this bus and has room for a frame.
bool LinNetwork::hasListener(const Bus &bus) const
{
    return std::any_of(bus.channels.begin(), bus.channels.end(), [this](std::size_t number) {
        const Channel &channel = m_channels[number];
        return channel.isMonitoring() && channel.hasRoom();
    });
}

/// One frame slot of the simulated master's schedule.
void LinNetwork::run(Bus &bus, Traffic &traffic)
{
    const LinTrafficConfig &config = traffic.config;
    const std::uint64_t index = traffic.schedule.index();
    traffic.schedule.step();
    std::optional<Slave> &slave = bus.slaves[config.id];
    if (config.data) {
        show(bus, onBus(frameOf(config.id, *config.data, config.checksum, index), config.wrongParity), NoSender);
    } else if (slave && slave->config.present) {
        show(bus, onBus(answerOf(slave->config, slave->answers++), config.wrongParity), NoSender);
    }
}

/// All frame slots up to nowNs at once, when no monitor has room for them.
void LinNetwork::pass(Bus &bus, Traffic &traffic, std::uint64_t nowNs)
{
    const std::uint64_t passed = traffic.schedule.skipTo(nowNs);
    std::optional<Slave> &slave = bus.slaves[traffic.config.id];
    if (!traffic.config.data && slave && slave->config.present) {
        slave->answers += passed;
    }
}

void LinNetwork::show(const Bus &bus, const VCI_LIN_OBJ &frame, std::size_t sender)
{
    for (const std::size_t number : bus.channels) {
        Channel &channel = m_channels[number];
        if (number != sender && channel.isMonitoring() && channel.hasRoom()) {
            channel.waiting.push_back(frame);
        }
    }
}

bool LinNetwork::open(std::size_t channel, std::uint16_t baudRate, std::uint8_t checksum)
{
    Channel &opened = m_channels[channel];
    if (opened.isOpen || checksum > 1) {
        return false;
    }
    opened.isOpen = true;
    opened.baudRate = baudRate;
    opened.enhanced = checksum == 1;
    opened.mode = LinModeMaster;
    return true;
}

bool LinNetwork::close(std::size_t channel)
{
    Channel &closed = m_channels[channel];
    const bool wasOpen = closed.isOpen;
    closed.isOpen = false;
    closed.waiting.clear();
    return wasOpen;
}

bool LinNetwork::changeMode(std::size_t channel, std::uint8_t mode)
{
    Channel &changed = m_channels[channel];
    const bool isKnown = mode == LinModeMaster || mode == LinModeMonitor || mode == LinModeDeveloper;
    if (!changed.isOpen || !isKnown) {
        return false;
    }
    changed.mode = mode;
    changed.waiting.clear();
    return true;
}

bool LinNetwork::transmit(std::size_t channel, const VCI_LIN_OBJ &frame)
{
    const Channel &master = m_channels[channel];
    if (!master.isMaster() || !isPossible(frame)) {
        return false;
    }
    if (master.hearsBus() && frame.DataLen > 0) {
        VCI_LIN_OBJ sent = frame;
        sent.Checksum = linChecksum(frame.ID, isEnhanced(frame.ID, master.enhanced), frame.Data, frame.DataLen);
        show(*master.bus, onBus(sent, false), channel);
    }
    return true;
}

bool LinNetwork::request(std::size_t channel, VCI_LIN_OBJ &frame)
{
    Channel &master = m_channels[channel];
    if (!master.isMaster() || frame.ID > MaxId) {
        return false;
    }
    const std::uint8_t id = frame.ID;
    frame = VCI_LIN_OBJ{};
    frame.ID = id;
    if (!master.hearsBus()) {
        return true;
    }
    std::optional<Slave> &slave = master.bus->slaves[id];
    if (slave && slave->config.present) {
        frame = answerOf(slave->config, slave->answers++);
        show(*master.bus, onBus(frame, false), channel);
    }
    return true;
}

bool LinNetwork::takeMonitored(std::size_t channel, VCI_LIN_OBJ &frame)
{
    Channel &monitor = m_channels[channel];
    if (!monitor.isOpen || monitor.mode != LinModeMonitor) {
        return false;
    }
    frame = VCI_LIN_OBJ{};
    if (!monitor.waiting.empty()) {
        frame = monitor.waiting.front();
        monitor.waiting.pop_front();
    }
    return true;
}

bool LinNetwork::setSlaveData(std::size_t channel, const VCI_LIN_OBJ &frame)
{
    const Channel &node = m_channels[channel];
    if (!node.hearsBus() || !isPossible(frame)) {
        return false;
    }
    Slave slave;
    slave.config.id = frame.ID;
    slave.config.data.size = frame.DataLen;
    std::copy(std::begin(frame.Data), std::end(frame.Data), slave.config.data.bytes.begin());
    slave.config.checksum = isEnhanced(frame.ID, node.enhanced) ? LinChecksum::Enhanced : LinChecksum::Classic;
    slave.config.present = frame.DataLen > 0;
    node.bus->slaves[frame.ID] = slave;
    return true;
}

} // namespace va
