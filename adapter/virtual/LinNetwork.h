#pragma once

#include "adapter/virtual/AdapterConfig.h"
#include "adapter/virtual/CyclicSchedule.h"
#include "device/AdapterRecords.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

namespace va {

/// What a LIN channel does, as KQ_ChangeLINMode numbers it.
constexpr std::uint8_t LinModeMaster = 1;
constexpr std::uint8_t LinModeMonitor = 3;
constexpr std::uint8_t LinModeDeveloper = 4;

/// All LIN buses with their slaves, the schedule of their simulated master, and the devices' channels on them. Channels
/// are numbered as in CanNetwork. Time moves only by catchUp(); not thread-safe.
class LinNetwork
{
public:
    /// Frames waiting in a monitoring channel at most; the oldest are kept.
    static constexpr std::size_t MaxWaitingFrames = 1000;

    /// config must outlive the network.
    LinNetwork(const AdapterConfig &config, std::uint64_t startNs);

    /// Computes what happened on the channel's bus up to nowNs. To be called before every other operation.
    void catchUp(std::size_t channel, std::uint64_t nowNs);

    /// Opens as master. False when it is open, or when the checksum type is neither 0 nor 1.
    bool open(std::size_t channel, std::uint16_t baudRate, std::uint8_t checksum);
    /// False when it is not open.
    bool close(std::size_t channel);
    /// Modes 1, 3 and 4; drops what waits. False for any other, and when the channel is not open.
    bool changeMode(std::size_t channel, std::uint8_t mode);
    /// Sends header and data as master. False in monitor mode and for an impossible frame.
    bool transmit(std::size_t channel, const VCI_LIN_OBJ &frame);
    /// Requests frame.ID as master and takes the slave's answer; DataLen 0 when there is none.
    bool request(std::size_t channel, VCI_LIN_OBJ &frame);
    /// The oldest frame seen while monitoring; DataLen 0 when there is none. False in the other modes.
    bool takeMonitored(std::size_t channel, VCI_LIN_OBJ &frame);
    /// Sets what the slave of this identifier answers from now on; the slave is added if there is none. False for an
    /// impossible frame, and when the channel does not run at the bus's baud rate.
    bool setSlaveData(std::size_t channel, const VCI_LIN_OBJ &frame);

private:
    struct Slave
    {
        LinSlaveConfig config;
        std::uint64_t answers = 0;
    };
    struct Traffic
    {
        LinTrafficConfig config;
        CyclicSchedule schedule;
    };
    struct Bus
    {
        std::uint16_t baudRate = 0;
        std::array<std::optional<Slave>, 64> slaves;
        std::vector<Traffic> traffic;
        std::vector<std::size_t> channels;
    };
    struct Channel
    {
        Bus *bus = nullptr;
        bool isOpen = false;
        std::uint16_t baudRate = 0;
        bool enhanced = false;
        std::uint8_t mode = LinModeMaster;
        std::deque<VCI_LIN_OBJ> waiting;

        bool isMaster() const { return isOpen && mode != LinModeMonitor; }
        bool hearsBus() const { return isOpen && bus != nullptr && bus->baudRate == baudRate; }
        bool isMonitoring() const { return hearsBus() && mode == LinModeMonitor; }
        bool hasRoom() const { return waiting.size() < MaxWaitingFrames; }
    };

    bool hasListener(const Bus &bus) const;
    void show(const Bus &bus, const VCI_LIN_OBJ &frame, std::size_t sender);
    void run(Bus &bus, Traffic &traffic);
    static void pass(Bus &bus, Traffic &traffic, std::uint64_t nowNs);

    std::vector<Bus> m_buses;
    std::vector<Channel> m_channels;
};

} // namespace va
