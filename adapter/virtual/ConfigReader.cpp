#include "adapter/virtual/ConfigReader.h"

#include "adapter/BusTiming.h"
#include "adapter/ConfigText.h"
#include "adapter/ConfigValue.h"
#include "adapter/virtual/BuiltInConfig.h"

#include <algorithm>
#include <utility>

namespace va {

namespace {

constexpr std::uint64_t NsPerUs = 1000;
constexpr std::uint64_t NsPerMs = 1000000;
constexpr std::uint64_t HourUs = 3600000000;
constexpr std::uint64_t HourMs = 3600000;
constexpr std::uint64_t DayMs = 86400000;
constexpr std::uint64_t MinuteUs = 60000000;
constexpr std::uint64_t MinuteMs = 60000;
constexpr Range BusNameLength{1, 32};
constexpr Range InfoTextLength{0, 79};
constexpr Range Count{0, 0xFFFFFFFF};
constexpr Range Byte{0, 0xFF};

// What a row reads beside plain members. Only rows further up have been read then.

template<class Bus>
auto findBus(const std::vector<Bus> &buses, const std::string &name)
{
    return std::find_if(buses.begin(), buses.end(), [&name](const Bus &bus) { return bus.name == name; });
}

template<class Bus>
auto busInto(std::optional<std::size_t> &index, const std::vector<Bus> &buses)
{
    return [&](const ConfigValue &value) {
        const auto found = findBus(buses, value.text(BusNameLength));
        value.failIf(found == buses.end(), "no bus of this name");
        index = static_cast<std::size_t>(found - buses.begin());
    };
}

template<class Bus>
auto newNameInto(std::string &name, const std::vector<Bus> &buses)
{
    return [&](const ConfigValue &value) {
        name = value.text(BusNameLength);
        value.failIf(findBus(buses, name) != buses.end(), "another bus has this name");
    };
}

auto bitrateInto(CanBusConfig &bus)
{
    return [&bus](const ConfigValue &value) {
        const std::string name = value.text(BusNameLength);
        const auto *found =
            std::find_if(BusTimings.begin(), BusTimings.end(), [&name](const BusTiming &t) { return t.name == name; });
        value.failIf(found == BusTimings.end(), "must be 1000k, 800k, 500k, 250k, 125k, 100k, 50k, 25k, 10k or 5k");
        bus.timing0 = found->timing0;
        bus.timing1 = found->timing1;
    };
}

auto identifierInto(std::uint32_t &id, const bool &isExtended)
{
    return [&](const ConfigValue &value) {
        into(id, {0, isExtended ? MaxExtendedId : MaxStandardId})(value);
    };
}

auto lengthInto(CanFrame &frame)
{
    return [&frame](const ConfigValue &value) {
        into(frame.length, {0, frame.maxLength()})(value);
    };
}

/// As many bytes as the length says, if that is given.
auto dataInto(CanFrame &frame, bool hasLength)
{
    return [&frame, hasLength](const ConfigValue &value) {
        const Range size = hasLength ? Range{frame.length, frame.length} : Range{0, frame.maxLength()};
        const std::vector<std::uint8_t> bytes = value.bytes(size);
        frame.length = static_cast<std::uint8_t>(bytes.size());
        std::copy(bytes.begin(), bytes.end(), frame.data.begin());
    };
}

auto periodInto(Period &period, Range range, Period (*make)(std::uint64_t))
{
    return [&period, range, make](const ConfigValue &value) {
        period = make(value.integer(range));
    };
}

auto linDataInto(LinData &data)
{
    return [&data](const ConfigValue &value) {
        const std::vector<std::uint8_t> bytes = value.bytes({1, 8});
        std::copy(bytes.begin(), bytes.end(), data.bytes.begin());
        data.size = static_cast<std::uint8_t>(bytes.size());
    };
}

/// The identifier, and the checksum that is usual with it: the diagnostic identifiers always carry the classic one in
/// LIN 2.x.
template<class Frame>
auto idInto(Frame &frame)
{
    return [&frame](const ConfigValue &value) {
        frame.id = static_cast<std::uint8_t>(value.integer({0, 0x3F}));
        frame.checksum = frame.id == 0x3C || frame.id == 0x3D ? LinChecksum::Classic : LinChecksum::Enhanced;
    };
}

auto checksumInto(LinChecksum &checksum)
{
    return choiceInto(checksum, {"classic", "enhanced"});
}

NodeConfig readNode(const ConfigValue &value, std::uint8_t busDataRate)
{
    NodeConfig node;
    CyclicConfig cyclic;
    ReplyConfig reply;
    CanFrame &frame = node.frame;
    frame.length = MaxClassicLength;
    const bool isReply = value.has("request_id");
    node.payload = value.has("data") ? PayloadKind::Constant : PayloadKind::Counting;
    const auto failIfRemote = failIf([&] { return frame.remote; }, "a remote frame carries no data");
    const auto failIfReply = failIf([&] { return isReply; }, "a node either sends cyclically or replies");
    const auto failUnlessReply = failIf([&] { return !isReply; }, "belongs to a node with request_id");
    value.read({
        {"extended", into(frame.extended)},
        {"id", identifierInto(frame.id, frame.extended), Required},
        {"format", choiceInto(frame.format, {"classic", "fd", "fd-brs"})},
        {"format", failIf([&] { return frame.isFd() && busDataRate == 0; },
                          "a bus with data_rate 0 carries classic frames only")},
        {"remote", into(frame.remote)},
        {"remote", failIf([&] { return frame.remote && frame.isFd(); }, "FD frames are always data frames")},
        {"payload", choiceInto(node.payload, {"counting", "random", "constant"})},
        {"payload", failIfRemote},
        {"data", failIfRemote},
        {"seed", failIfRemote},
        {"data", failIf([&] { return node.payload != PayloadKind::Constant; }, R"(belongs to the payload "constant")")},
        {"seed", failIf([&] { return node.payload != PayloadKind::Random; }, R"(belongs to the payload "random")")},
        {"seed", into(node.seed, Count)},
        {"length", lengthInto(frame)},
        {"data", dataInto(frame, value.has("length"))},
        {"rate_hz", failIf([&] { return value.has("period_us"); }, "give either period_us or rate_hz")},
        {"period_us", failIfReply},
        {"rate_hz", failIfReply},
        {"phase_us", failIfReply},
        {"request_extended", failUnlessReply},
        {"delay_us", failUnlessReply},
        {"request_extended", into(reply.requestExtended)},
        {"request_id", identifierInto(reply.requestId, reply.requestExtended)},
        {"delay_us", into(reply.delayNs, {0, MinuteUs}, NsPerUs)},
        {"rate_hz", periodInto(cyclic.period, {1, 1000000}, Period::perSecond)},
        {"period_us", periodInto(cyclic.period, {1, HourUs}, Period::everyUs), !isReply && !value.has("rate_hz")},
        {"phase_us", into(cyclic.phaseNs, {0, HourUs}, NsPerUs)},
    });
    if (isReply) {
        node.reply = reply;
    } else {
        node.cyclic = cyclic;
    }
    return node;
}

CanBusConfig readBus(const ConfigValue &value, const AdapterConfig &config)
{
    CanBusConfig bus;
    const bool hasTiming = value.has("timing0") || value.has("timing1");
    const auto readItem = [&](const ConfigValue &node) {
        return readNode(node, bus.dataRate);
    };
    value.read({
        {"name", newNameInto(bus.name, config.buses), Required},
        {"bitrate", failIf([&] { return hasTiming; }, "give either bitrate or timing0 and timing1")},
        {"bitrate", bitrateInto(bus)},
        {"timing0", into(bus.timing0, Byte), hasTiming},
        {"timing1", into(bus.timing1, Byte), hasTiming},
        {"data_rate", into(bus.dataRate, {0, 15})},
        {"nodes", itemsInto(bus.nodes, {0, 1024}, readItem)},
    });
    return bus;
}

LinSlaveConfig readSlave(const ConfigValue &value, const LinBusConfig &bus)
{
    LinSlaveConfig slave;
    const auto isSame = [&](const LinSlaveConfig &other) {
        return other.id == slave.id;
    };
    const auto isTaken = [&] {
        return std::any_of(bus.slaves.begin(), bus.slaves.end(), isSame);
    };
    value.read({
        {"id", idInto(slave), Required},
        {"id", failIf(isTaken, "another slave answers this identifier")},
        {"counting", into(slave.data.counting)},
        {"data", linDataInto(slave.data), Required},
        {"checksum", checksumInto(slave.checksum)},
        {"wrong_checksum", into(slave.wrongChecksum)},
        {"present", into(slave.present)},
    });
    return slave;
}

LinTrafficConfig readTraffic(const ConfigValue &value)
{
    LinTrafficConfig traffic;
    LinData data;
    const bool hasData = value.has("data");
    const auto failWithoutData = failIf([&] { return !hasData; }, "belongs to a frame with data");
    value.read({
        {"id", idInto(traffic), Required},
        {"period_ms", periodInto(traffic.period, {1, HourMs}, Period::everyMs), Required},
        {"counting", failWithoutData},
        {"checksum", failWithoutData},
        {"counting", into(data.counting)},
        {"data", linDataInto(data)},
        {"checksum", checksumInto(traffic.checksum)},
        {"wrong_parity", into(traffic.wrongParity)},
    });
    if (hasData) {
        traffic.data = data;
    }
    return traffic;
}

LinBusConfig readLinBus(const ConfigValue &value, const AdapterConfig &config)
{
    LinBusConfig bus;
    value.read({
        {"name", newNameInto(bus.name, config.linBuses), Required},
        {"baud_rate", into(bus.baudRate, {1, 0xFFFF})},
        {"slaves", itemsInto(bus.slaves, {0, 64}, [&](const ConfigValue &slave) { return readSlave(slave, bus); })},
        {"traffic", itemsInto(bus.traffic, {0, 64}, readTraffic)},
    });
    return bus;
}

void readFaults(const ConfigValue &value, CanFaults &faults)
{
    value.read({
        {"init_refused", into(faults.initRefused)},
        {"start_refused", into(faults.startRefused)},
        {"receive_error_every", into(faults.receiveErrorEvery, Count)},
        {"transmit_accept", into(faults.transmitAccept, Count)},
    });
}

void readFaults(const ConfigValue &value, LinFaults &faults)
{
    const auto readMode = [](const ConfigValue &mode) {
        return static_cast<std::uint8_t>(mode.integer(Byte));
    };
    value.read({
        {"open_refused", into(faults.openRefused)},
        {"close_refused", into(faults.closeRefused)},
        {"transmit_refused", into(faults.transmitRefused)},
        {"receive_refused", into(faults.receiveRefused)},
        {"mode_refused", itemsInto(faults.modeRefused, {0, 256}, readMode)},
    });
}

/// One delay for all entry points, or each with its own.
void readCallDelay(const ConfigValue &value, DeviceFaults &faults)
{
    constexpr std::array<const char *, 23> entries = {
        "VCI_OpenDevice",
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
        "KQ_ReceiveCANFD",
    };
    std::vector<ConfigKey> keys;
    keys.reserve(entries.size());
    for (const char *entry : entries) {
        keys.push_back({entry, into(faults.callDelayMs[entry], {0, MinuteMs})});
    }
    if (value.isObject()) {
        value.read(keys);
        return;
    }
    for (const ConfigKey &key : keys) {
        key.read(value);
    }
}

void readFaults(const ConfigValue &value, DeviceFaults &faults)
{
    value.read({
        {"open_refused", into(faults.openRefused)},
        {"info_refused", into(faults.infoRefused)},
        {"gateway_refused", into(faults.gatewayRefused)},
        {"vanish_after_ms", into(faults.vanishAfterNs, {0, DayMs}, NsPerMs)},
        {"return_after_ms", failIf([&] { return !faults.vanishAfterNs; }, "needs vanish_after_ms")},
        {"return_after_ms", into(faults.returnAfterNs, {0, DayMs}, NsPerMs)},
        {"call_delay_ms",
         [&](const ConfigValue &delay) {
             readCallDelay(delay, faults);
         }},
    });
}

template<class Faults>
auto faultsInto(Faults &faults)
{
    return [&faults](const ConfigValue &value) {
        readFaults(value, faults);
    };
}

/// The channels of one kind, CAN or LIN, on the buses of that kind.
template<class Channel, class Bus>
auto channelsInto(std::array<Channel, ChannelsPerDevice> &channels, const std::vector<Bus> &buses)
{
    return [&](const ConfigValue &value) {
        auto *channel = channels.data();
        for (const ConfigValue &item : value.items({0, ChannelsPerDevice})) {
            item.read({{"bus", busInto(channel->bus, buses)}, {"faults", faultsInto(channel->faults)}});
            ++channel;
        }
    };
}

DeviceConfig readDevice(const ConfigValue &value, const AdapterConfig &config)
{
    DeviceConfig device;
    value.read({
        {"serial", into(device.serial, InfoTextLength)},
        {"model", into(device.model, InfoTextLength), Required},
        {"firmware", into(device.firmware, InfoTextLength)},
        {"hardware", into(device.hardware, InfoTextLength)},
        {"gateway_on", into(device.gatewayOn)},
        {"can", channelsInto(device.can, config.buses)},
        {"lin", channelsInto(device.lin, config.linBuses)},
        {"faults", faultsInto(device.faults)},
    });
    return device;
}

AdapterConfig readAdapter(const ConfigValue &value)
{
    AdapterConfig config;
    value.read({
        {"receive_buffer_frames", into(config.receiveBufferFrames, {1, 1000000})},
        {"buses", itemsInto(config.buses, {0, 64}, [&](const ConfigValue &bus) { return readBus(bus, config); })},
        {"lin_buses",
         itemsInto(config.linBuses, {0, 64}, [&](const ConfigValue &bus) { return readLinBus(bus, config); })},
        {"devices",
         itemsInto(config.devices, {0, 256}, [&](const ConfigValue &device) { return readDevice(device, config); }),
         Required},
    });
    return config;
}

constexpr const char *Consequence = "; the built-in configuration is used";

LoadedConfig refused(const std::string &path, const ConfigError &error)
{
    return {builtInConfig(), "virtual adapter: " + error.message(path) + Consequence};
}

} // namespace

std::variant<AdapterConfig, ConfigError> readConfig(const std::string &text)
{
    try {
        const JsonValue root = parseJson(text);
        return readAdapter(ConfigValue(root, {}));
    } catch (const ConfigError &error) {
        return error;
    }
}

LoadedConfig loadConfig(const std::string &path)
{
    const ConfigText text = readConfigText(path);
    if (const auto *problem = std::get_if<ConfigError>(&text)) {
        return refused(path, *problem);
    }
    if (std::holds_alternative<NoConfigFile>(text)) {
        return {builtInConfig(), {}};
    }
    std::variant<AdapterConfig, ConfigError> result = readConfig(std::get<std::string>(text));
    if (const auto *error = std::get_if<ConfigError>(&result)) {
        return refused(path, *error);
    }
    return {std::get<AdapterConfig>(std::move(result)), {}};
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
