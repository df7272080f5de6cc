#include "adapter/ConfigReader.h"

#include "adapter/BuiltInConfig.h"
#include "adapter/BusTiming.h"
#include "adapter/ConfigSection.h"
#include "adapter/JsonTree.h"

#include <algorithm>

namespace va {

namespace {

constexpr std::uint64_t NsPerUs = 1000;
constexpr std::uint64_t NsPerMs = 1000000;
constexpr std::uint64_t HourUs = 3600000000;
constexpr std::uint64_t HourMs = 3600000;
constexpr std::uint64_t DayMs = 86400000;
constexpr std::uint64_t MinuteMs = 60000;
constexpr Range BusNameLength{1, 32};
constexpr Range InfoTextLength{0, 79};
constexpr Range Count{0, 0xFFFFFFFF};

template<class Bus>
std::optional<std::size_t> busNamed(const std::vector<Bus> &buses, const ConfigSection &section)
{
    if (!section.has("bus")) {
        return std::nullopt;
    }
    const std::string name = section.text("bus", BusNameLength);
    const auto found = std::find_if(buses.begin(), buses.end(), [&name](const Bus &bus) { return bus.name == name; });
    if (found == buses.end()) {
        section.fail("bus", "no bus of this name");
    }
    return static_cast<std::size_t>(found - buses.begin());
}

template<class Bus>
std::string newBusName(const std::vector<Bus> &buses, const ConfigSection &section)
{
    std::string name = section.text("name", BusNameLength);
    if (std::any_of(buses.begin(), buses.end(), [&name](const Bus &bus) { return bus.name == name; })) {
        section.fail("name", "another bus has this name");
    }
    return name;
}

void refuseUnless(const ConfigSection &section, bool allowed, std::initializer_list<const char *> keys,
                  const char *problem)
{
    for (const char *key : keys) {
        if (!allowed && section.has(key)) {
            section.fail(key, problem);
        }
    }
}

void readFrame(const ConfigSection &section, std::uint8_t busDataRate, CanFrame &frame)
{
    frame.extended = section.flag("extended", false);
    frame.id = static_cast<std::uint32_t>(section.integer("id", {0, frame.extended ? MaxExtendedId : MaxStandardId}));
    frame.format = static_cast<FrameFormat>(section.choice("format", {"classic", "fd", "fd-brs"}, 0));
    if (frame.isFd() && busDataRate == 0) {
        section.fail("format", "a bus with data_rate 0 carries classic frames only");
    }
    frame.remote = section.flag("remote", false);
    if (frame.remote && frame.isFd()) {
        section.fail("remote", "FD frames are always data frames");
    }
}

void readPayload(const ConfigSection &section, NodeConfig &node)
{
    CanFrame &frame = node.frame;
    const std::uint64_t maxLength = frame.isFd() ? MaxFdLength : MaxClassicLength;
    const std::size_t fallback = section.has("data") ? 2 : 0;
    const std::size_t payload = section.choice("payload", {"counting", "random", "constant"}, fallback);
    constexpr std::array<PayloadKind, 3> kinds = {PayloadKind::Counting, PayloadKind::Random, PayloadKind::Constant};
    node.payload = kinds[payload];
    refuseUnless(section, !frame.remote, {"payload", "data", "seed"}, "a remote frame carries no data");
    refuseUnless(section, node.payload == PayloadKind::Constant, {"data"}, "belongs to the payload \"constant\"");
    refuseUnless(section, node.payload == PayloadKind::Random, {"seed"}, "belongs to the payload \"random\"");
    node.seed = static_cast<std::uint32_t>(section.integer("seed", Count, 1));
    frame.length = static_cast<std::uint8_t>(section.integer("length", {0, maxLength}, MaxClassicLength));
    if (!section.has("data")) {
        return;
    }
    const Range size = section.has("length") ? Range{frame.length, frame.length} : Range{0, maxLength};
    const std::vector<std::uint8_t> data = section.bytes("data", size);
    frame.length = static_cast<std::uint8_t>(data.size());
    std::copy(data.begin(), data.end(), frame.data.begin());
}

Period readPeriod(const ConfigSection &section)
{
    if (section.has("rate_hz")) {
        return Period::perSecond(section.integer("rate_hz", {1, 1000000}));
    }
    return Period::everyUs(section.integer("period_us", {1, HourUs}));
}

void readOccasion(const ConfigSection &section, NodeConfig &node)
{
    const bool isReply = section.has("request_id");
    if (section.has("period_us") && section.has("rate_hz")) {
        section.fail("rate_hz", "give either period_us or rate_hz");
    }
    refuseUnless(section, !isReply, {"period_us", "rate_hz", "phase_us"}, "a node either sends cyclically or replies");
    refuseUnless(section, isReply, {"request_extended", "delay_us"}, "belongs to a node with request_id");
    if (isReply) {
        ReplyConfig reply;
        reply.requestExtended = section.flag("request_extended", false);
        const std::uint64_t maxId = reply.requestExtended ? MaxExtendedId : MaxStandardId;
        reply.requestId = static_cast<std::uint32_t>(section.integer("request_id", {0, maxId}));
        reply.delayNs = section.integer("delay_us", {0, MinuteMs * 1000}, 1000) * NsPerUs;
        node.reply = reply;
        return;
    }
    CyclicConfig cyclic;
    cyclic.period = readPeriod(section);
    cyclic.phaseNs = section.integer("phase_us", {0, HourUs}, 0) * NsPerUs;
    node.cyclic = cyclic;
}

NodeConfig readNode(const JsonValue &value, const std::string &path, std::uint8_t busDataRate)
{
    const ConfigSection section(value, path,
                                {"id", "extended", "remote", "format", "length", "payload", "data", "seed", "period_us",
                                 "rate_hz", "phase_us", "request_id", "request_extended", "delay_us"});
    NodeConfig node;
    readFrame(section, busDataRate, node.frame);
    readPayload(section, node);
    readOccasion(section, node);
    return node;
}

void readTiming(const ConfigSection &section, CanBusConfig &bus)
{
    if (section.has("timing0") || section.has("timing1")) {
        refuseUnless(section, false, {"bitrate"}, "give either bitrate or timing0 and timing1");
        bus.timing0 = static_cast<std::uint8_t>(section.integer("timing0", {0, 0xFF}));
        bus.timing1 = static_cast<std::uint8_t>(section.integer("timing1", {0, 0xFF}));
        return;
    }
    const std::string name = section.text("bitrate", BusNameLength, "500k");
    const auto *found =
        std::find_if(BusTimings.begin(), BusTimings.end(), [&name](const BusTiming &t) { return t.name == name; });
    if (found == BusTimings.end()) {
        section.fail("bitrate", "must be 1000k, 800k, 500k, 250k, 125k, 100k, 50k, 25k, 10k or 5k");
    }
    bus.timing0 = found->timing0;
    bus.timing1 = found->timing1;
}

CanBusConfig readBus(const JsonValue &value, const std::string &path, const AdapterConfig &config)
{
    const ConfigSection section(value, path, {"name", "bitrate", "timing0", "timing1", "data_rate", "nodes"});
    CanBusConfig bus;
    bus.name = newBusName(config.buses, section);
    readTiming(section, bus);
    bus.dataRate = static_cast<std::uint8_t>(section.integer("data_rate", {0, 15}, 0));
    for (const auto &[node, nodePath] : section.items("nodes", {0, 1024})) {
        bus.nodes.push_back(readNode(*node, nodePath, bus.dataRate));
    }
    return bus;
}

LinData readLinData(const ConfigSection &section)
{
    LinData data;
    data.counting = section.flag("counting", false);
    const std::vector<std::uint8_t> bytes = section.bytes("data", {1, 8});
    std::copy(bytes.begin(), bytes.end(), data.bytes.begin());
    data.size = static_cast<std::uint8_t>(bytes.size());
    return data;
}

/// The diagnostic identifiers always carry the classic checksum in LIN 2.x.
LinChecksum readChecksum(const ConfigSection &section, std::uint8_t id)
{
    const bool isDiagnostic = id == 0x3C || id == 0x3D;
    const std::size_t chosen = section.choice("checksum", {"classic", "enhanced"}, isDiagnostic ? 0 : 1);
    return chosen == 0 ? LinChecksum::Classic : LinChecksum::Enhanced;
}

LinSlaveConfig readSlave(const JsonValue &value, const std::string &path, const LinBusConfig &bus)
{
    const ConfigSection section(value, path, {"id", "data", "counting", "checksum", "wrong_checksum", "present"});
    LinSlaveConfig slave;
    slave.id = static_cast<std::uint8_t>(section.integer("id", {0, 0x3F}));
    const auto isSame = [&slave](const LinSlaveConfig &other) {
        return other.id == slave.id;
    };
    if (std::any_of(bus.slaves.begin(), bus.slaves.end(), isSame)) {
        section.fail("id", "another slave answers this identifier");
    }
    slave.data = readLinData(section);
    slave.checksum = readChecksum(section, slave.id);
    slave.wrongChecksum = section.flag("wrong_checksum", false);
    slave.present = section.flag("present", true);
    return slave;
}

LinTrafficConfig readTraffic(const JsonValue &value, const std::string &path)
{
    const ConfigSection section(value, path, {"id", "period_ms", "data", "counting", "checksum", "wrong_parity"});
    LinTrafficConfig traffic;
    traffic.id = static_cast<std::uint8_t>(section.integer("id", {0, 0x3F}));
    traffic.period = Period::everyUs(section.integer("period_ms", {1, HourMs}) * 1000);
    refuseUnless(section, section.has("data"), {"counting", "checksum"}, "belongs to a frame with data");
    if (section.has("data")) {
        traffic.data = readLinData(section);
    }
    traffic.checksum = readChecksum(section, traffic.id);
    traffic.wrongParity = section.flag("wrong_parity", false);
    return traffic;
}

LinBusConfig readLinBus(const JsonValue &value, const std::string &path, const AdapterConfig &config)
{
    const ConfigSection section(value, path, {"name", "baud_rate", "slaves", "traffic"});
    LinBusConfig bus;
    bus.name = newBusName(config.linBuses, section);
    bus.baudRate = static_cast<std::uint16_t>(section.integer("baud_rate", {1, 0xFFFF}, 19200));
    for (const auto &[slave, slavePath] : section.items("slaves", {0, 64})) {
        bus.slaves.push_back(readSlave(*slave, slavePath, bus));
    }
    for (const auto &[traffic, trafficPath] : section.items("traffic", {0, 64})) {
        bus.traffic.push_back(readTraffic(*traffic, trafficPath));
    }
    return bus;
}

CanFaults readCanFaults(const ConfigSection &parent)
{
    CanFaults faults;
    if (parent.has("faults")) {
        const ConfigSection section(parent.value("faults"), parent.pathOf("faults"),
                                    {"init_refused", "start_refused", "receive_error_every", "transmit_accept"});
        faults.initRefused = section.flag("init_refused", false);
        faults.startRefused = section.flag("start_refused", false);
        faults.receiveErrorEvery = static_cast<std::uint32_t>(section.integer("receive_error_every", Count, 0));
        if (section.has("transmit_accept")) {
            faults.transmitAccept = static_cast<std::uint32_t>(section.integer("transmit_accept", Count));
        }
    }
    return faults;
}

LinFaults readLinFaults(const ConfigSection &parent)
{
    LinFaults faults;
    if (parent.has("faults")) {
        const ConfigSection section(
            parent.value("faults"), parent.pathOf("faults"),
            {"open_refused", "close_refused", "mode_refused", "transmit_refused", "receive_refused"});
        faults.openRefused = section.flag("open_refused", false);
        faults.closeRefused = section.flag("close_refused", false);
        faults.transmitRefused = section.flag("transmit_refused", false);
        faults.receiveRefused = section.flag("receive_refused", false);
        for (const std::uint64_t mode : section.integers("mode_refused", {0, 256}, {0, 0xFF})) {
            faults.modeRefused.push_back(static_cast<std::uint8_t>(mode));
        }
    }
    return faults;
}

void readCallDelay(const ConfigSection &faults, DeviceFaults &result)
{
    if (!faults.has("call_delay_ms")) {
        return;
    }
    if (!std::holds_alternative<JsonValue::Object>(faults.value("call_delay_ms").value)) {
        result.callDelayMs.fill(static_cast<std::uint32_t>(faults.integer("call_delay_ms", {0, MinuteMs})));
        return;
    }
    const ConfigSection section(faults.value("call_delay_ms"), faults.pathOf("call_delay_ms"),
                                {"VCI_OpenDevice",
                                 "VCI_CloseDevice",
                                 "VCI_InitCAN",
                                 "VCI_StartCAN",
                                 "VCI_ResetCAN",
                                 "VCI_GetReceiveNum",
                                 "VCI_ClearBuffer",
                                 "VCI_Transmit",
                                 "VCI_Receive",
                                 "KQ_ReadInfo",
                                 "KQ_OpenCANGateWay",
                                 "KQ_SetCANGateWayIDFilter",
                                 "KQ_GetCANGateWayIDFilter",
                                 "KQ_OpenLIN",
                                 "KQ_CloseLIN",
                                 "KQ_TransmitLIN",
                                 "KQ_ReceiveLIN",
                                 "KQ_ChangeLINMode",
                                 "KQ_TransmitLINBySlave",
                                 "KQ_ReceiveLINBySlave",
                                 "KQ_GetReceiveNumCANFD",
                                 "KQ_TransmitCANFD",
                                 "KQ_ReceiveCANFD"});
    for (std::size_t i = 0; i < EntryCount; ++i) {
        const std::string name(EntryNames[i]);
        result.callDelayMs[i] = static_cast<std::uint32_t>(section.integer(name.c_str(), {0, MinuteMs}, 0));
    }
}

DeviceFaults readDeviceFaults(const ConfigSection &parent)
{
    DeviceFaults faults;
    if (!parent.has("faults")) {
        return faults;
    }
    const ConfigSection section(
        parent.value("faults"), parent.pathOf("faults"),
        {"open_refused", "info_refused", "gateway_refused", "vanish_after_ms", "return_after_ms", "call_delay_ms"});
    faults.openRefused = section.flag("open_refused", false);
    faults.infoRefused = section.flag("info_refused", false);
    faults.gatewayRefused = section.flag("gateway_refused", false);
    refuseUnless(section, section.has("vanish_after_ms"), {"return_after_ms"}, "needs vanish_after_ms");
    if (section.has("vanish_after_ms")) {
        faults.vanishAfterNs = section.integer("vanish_after_ms", {0, DayMs}) * NsPerMs;
    }
    if (section.has("return_after_ms")) {
        faults.returnAfterNs = section.integer("return_after_ms", {0, DayMs}) * NsPerMs;
    }
    readCallDelay(section, faults);
    return faults;
}

void readChannels(const ConfigSection &section, const AdapterConfig &config, DeviceConfig &device)
{
    std::size_t index = 0;
    for (const auto &[channel, path] : section.items("can", {0, ChannelsPerDevice})) {
        const ConfigSection channelSection(*channel, path, {"bus", "faults"});
        device.can[index++] = {busNamed(config.buses, channelSection), readCanFaults(channelSection)};
    }
    index = 0;
    for (const auto &[channel, path] : section.items("lin", {0, ChannelsPerDevice})) {
        const ConfigSection channelSection(*channel, path, {"bus", "faults"});
        device.lin[index++] = {busNamed(config.linBuses, channelSection), readLinFaults(channelSection)};
    }
}

DeviceConfig readDevice(const JsonValue &value, const std::string &path, const AdapterConfig &config)
{
    const ConfigSection section(value, path,
                                {"serial", "model", "firmware", "hardware", "gateway_on", "can", "lin", "faults"});
    DeviceConfig device;
    device.serial = section.text("serial", InfoTextLength, "X9-000001");
    device.model = section.text("model", InfoTextLength);
    device.firmware = section.text("firmware", InfoTextLength, "V2.05");
    device.hardware = section.text("hardware", InfoTextLength, "V1.00");
    device.gatewayOn = section.flag("gateway_on", false);
    readChannels(section, config, device);
    device.faults = readDeviceFaults(section);
    return device;
}

AdapterConfig readAdapter(const JsonValue &root)
{
    const ConfigSection section(root, {}, {"receive_buffer_frames", "buses", "lin_buses", "devices"});
    AdapterConfig config;
    config.receiveBufferFrames =
        static_cast<std::uint32_t>(section.integer("receive_buffer_frames", {1, 1000000}, config.receiveBufferFrames));
    for (const auto &[bus, path] : section.items("buses", {0, 64})) {
        config.buses.push_back(readBus(*bus, path, config));
    }
    for (const auto &[bus, path] : section.items("lin_buses", {0, 64})) {
        config.linBuses.push_back(readLinBus(*bus, path, config));
    }
    section.value("devices");
    for (const auto &[device, path] : section.items("devices", {0, 256})) {
        config.devices.push_back(readDevice(*device, path, config));
    }
    return config;
}

} // namespace

std::variant<AdapterConfig, ConfigError> readConfig(const std::string &text)
{
    std::variant<JsonValue, ConfigError> parsed = parseJson(text);
    if (auto *error = std::get_if<ConfigError>(&parsed)) {
        return std::move(*error);
    }
    try {
        return readAdapter(std::get<JsonValue>(parsed));
    } catch (const ConfigFailure &failure) {
        return failure.error;
    }
}

AdapterConfig builtInConfig()
{
    std::variant<AdapterConfig, ConfigError> result = readConfig(builtInConfigText());
    auto *config = std::get_if<AdapterConfig>(&result);
    return config == nullptr ? AdapterConfig{} : std::move(*config); // a test keeps the built-in text valid
}

const std::string &builtInConfigText()
{
    static const std::string text(BuiltInConfigJson);
    return text;
}

} // namespace va
