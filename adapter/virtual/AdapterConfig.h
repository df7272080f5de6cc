#pragma once

#include "adapter/CanFrame.h"
#include "adapter/virtual/CyclicSchedule.h"
#include "adapter/virtual/Payload.h"
#include "device/AdapterRecords.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

// What virtual-adapter.json says, checked and with every default filled in. docs/virtual-adapter.md describes the keys.

namespace va {

/// A node that sends on its own.
struct CyclicConfig
{
    Period period;
    std::uint64_t phaseNs = 0;
};

/// A node that answers a request.
struct ReplyConfig
{
    std::uint32_t requestId = 0;
    bool requestExtended = false;
    std::uint64_t delayNs = 1000000;
};

/// One simulated node of a CAN bus; exactly one of cyclic and reply is set.
struct NodeConfig
{
    CanFrame frame; ///< what it sends; the data of a constant payload
    PayloadKind payload = PayloadKind::Counting;
    std::uint32_t seed = 1;
    std::optional<CyclicConfig> cyclic;
    std::optional<ReplyConfig> reply;
};

struct CanBusConfig
{
    std::string name;
    std::uint8_t timing0 = 0x00; ///< 500 kbit/s
    std::uint8_t timing1 = 0x1C;
    std::uint8_t dataRate = 0; ///< data-rate index 0..15; 0 carries classic frames only
    std::vector<NodeConfig> nodes;
};

struct LinData
{
    std::array<std::uint8_t, 8> bytes{};
    std::uint8_t size = 0; ///< 1..8
    bool counting = false; ///< the bytes count up instead
};

enum class LinChecksum {
    Classic,
    Enhanced,
};

struct LinSlaveConfig
{
    std::uint8_t id = 0;
    LinData data;
    LinChecksum checksum = LinChecksum::Enhanced;
    bool wrongChecksum = false;
    bool present = true;
};

/// A frame slot in the schedule of the simulated LIN master.
struct LinTrafficConfig
{
    std::uint8_t id = 0;
    Period period;
    std::optional<LinData> data; ///< sent by the master itself; without it the slave of this identifier answers
    LinChecksum checksum = LinChecksum::Enhanced;
    bool wrongParity = false;
};

struct LinBusConfig
{
    std::string name;
    std::uint16_t baudRate = 19200;
    std::vector<LinSlaveConfig> slaves;
    std::vector<LinTrafficConfig> traffic;
};

struct CanFaults
{
    bool initRefused = false;
    bool startRefused = false;
    std::uint32_t receiveErrorEvery = 0;         ///< every n-th receive call fails; 0: none
    std::optional<std::uint32_t> transmitAccept; ///< most frames accepted by one call
};

struct LinFaults
{
    bool openRefused = false;
    bool closeRefused = false;
    bool transmitRefused = false;
    bool receiveRefused = false;
    std::vector<std::uint8_t> modeRefused;
};

/// By the exported name of the entry point.
using CallDelays = std::map<std::string, std::uint32_t, std::less<>>;

struct DeviceFaults
{
    bool openRefused = false;
    bool infoRefused = false;
    bool gatewayRefused = false;
    std::optional<std::uint64_t> vanishAfterNs; ///< counted from the first successful open
    std::optional<std::uint64_t> returnAfterNs; ///< counted from the vanishing
    CallDelays callDelayMs;
};

/// A CAN or LIN channel and the bus it sits on; without a bus it is connected to nothing.
struct CanChannelConfig
{
    std::optional<std::size_t> bus; ///< index into AdapterConfig::buses
    CanFaults faults;
};

struct LinChannelConfig
{
    std::optional<std::size_t> bus; ///< index into AdapterConfig::linBuses
    LinFaults faults;
};

struct DeviceConfig
{
    std::string serial = "X9-000001";
    std::string model;
    std::string firmware = "V2.05";
    std::string hardware = "V1.00";
    bool gatewayOn = false; ///< the gateway switches itself on whenever both CAN channels have started
    std::array<CanChannelConfig, ChannelsPerDevice> can;
    std::array<LinChannelConfig, ChannelsPerDevice> lin;
    DeviceFaults faults;

    /// Models of this family have CAN FD.
    bool hasCanFd() const { return model.compare(0, 4, "X9FC") == 0; }
};

struct AdapterConfig
{
    std::uint32_t receiveBufferFrames = 200000; ///< most frames waiting per channel
    std::vector<CanBusConfig> buses;
    std::vector<LinBusConfig> linBuses;
    std::vector<DeviceConfig> devices; ///< the position is the device index
};

} // namespace va
