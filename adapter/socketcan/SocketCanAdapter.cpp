#include "adapter/socketcan/SocketCanAdapter.h"

#include "adapter/AdapterAnswers.h"
#include "adapter/BusTiming.h"
#include "adapter/FrameRecords.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <limits>
#include <set>
#include <system_error>

namespace socketcan {

namespace {

using u32 = SocketCanAdapter::u32;
using va::AdapterRefused;
using va::answer;

u32 cut(std::uint64_t count)
{
    return static_cast<u32>(std::min<std::uint64_t>(count, std::numeric_limits<u32>::max()));
}

void copyText(char (&buffer)[AdapterProblemSize], const std::string &text)
{
    text.copy(buffer, AdapterProblemSize - 1); // the record was zero
}

std::string described(const VCI_INIT_CONFIG &config)
{
    constexpr const char *digits = "0123456789ABCDEF";
    std::string text = "BTR0/1 ";
    for (const std::uint8_t byte : {config.Timing0, config.Timing1}) {
        text += {digits[byte >> 4U], digits[byte & 0x0FU], ' '};
    }
    return text;
}

/// The settings that the registers and the mode byte ask for.
std::variant<LinkSettings, Problem> linkSettings(const VCI_INIT_CONFIG &config)
{
    const std::optional<va::NominalTiming> timing = va::nominalTiming(config.Timing0, config.Timing1);
    if (!timing) {
        return Problem{
            AdapterProblemCode::NoSuchBitRate, described(config) + "give no whole bit rate up to 1000000 bit/s", {}};
    }
    LinkSettings settings{timing->bitrate, timing->samplePoint, 0, va::isListenOnly(config)};
    const std::uint8_t dataRate = va::dataRateIndex(config);
    if (dataRate != 0) {
        const std::optional<std::uint32_t> rate = va::dataBitrate(dataRate);
        if (!rate) {
            return Problem{AdapterProblemCode::NoSuchBitRate,
                           "the data-rate index " + std::to_string(dataRate) + " stands for no bit rate",
                           {}};
        }
        settings.dataBitrate = *rate;
    }
    return settings;
}

} // namespace

SocketCanAdapter::SocketCanAdapter(System &system, std::optional<InterfaceMap> map)
    : m_system(system)
    , m_map(std::move(map))
    , m_links(system.links())
    , m_receiver([this](const Link &link) { m_links.restart(link); })
{
}

SocketCanAdapter::~SocketCanAdapter()
{
    for (auto &[dev, device] : m_devices) {
        for (Channel &channel : device.channels) {
            stop(device, channel);
        }
    }
}

/// Which interface is which channel now. Interfaces of open devices keep their places while they are open, also when
/// they are pulled out.
InterfaceMap SocketCanAdapter::currentMap(const std::vector<Link> &links) const
{
    if (m_map) {
        return *m_map;
    }
    std::vector<std::string> names;
    names.reserve(links.size());
    for (const Link &link : links) {
        names.push_back(link.name);
    }
    for (const auto &[dev, device] : m_devices) {
        for (const Channel &channel : device.channels) {
            if (!channel.interface.empty() && std::find(names.begin(), names.end(), channel.interface) == names.end()) {
                names.push_back(channel.interface);
            }
        }
    }
    std::sort(names.begin(), names.end(), comesBefore);
    return inOrder(names);
}

SocketCanAdapter::Device *SocketCanAdapter::find(u32 type, u8 dev)
{
    const auto found = m_devices.find(dev);
    return type != AdapterDeviceType || found == m_devices.end() ? nullptr : &found->second;
}

SocketCanAdapter::Channel *SocketCanAdapter::find(u32 type, u8 dev, u8 ch)
{
    Device *device = find(type, dev);
    return device == nullptr || ch >= ChannelsPerDevice ? nullptr : &device->channels.at(ch);
}

std::shared_ptr<RunningChannel> SocketCanAdapter::runningChannel(u32 type, u8 dev, u8 ch)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Channel *channel = find(type, dev, ch);
    return channel == nullptr ? nullptr : channel->running;
}

void SocketCanAdapter::note(u8 dev, u8 ch, Problem problem)
{
    m_system.complain("socketcan: device " + std::to_string(dev) + ", channel " + std::to_string(ch) + ": " +
                      problem.text + (problem.remedy.empty() ? "" : "; try: " + problem.remedy));
    m_problems[{dev, ch}] = std::move(problem);
}

u32 SocketCanAdapter::openDevice(u32 type, u8 dev)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (type != AdapterDeviceType || find(type, dev) != nullptr) {
        return AdapterRefused;
    }
    const std::vector<Link> links = m_links.list();
    const InterfaceMap map = currentMap(links);
    const auto mapped = map.find(dev);
    if (mapped == map.end()) {
        return AdapterRefused;
    }
    Device device;
    bool isAnyThere = false;
    for (std::size_t ch = 0; ch < ChannelsPerDevice; ++ch) {
        device.channels.at(ch).interface = mapped->second.at(ch);
        isAnyThere = isAnyThere || std::any_of(links.begin(), links.end(),
                                               [&](const Link &link) { return link.name == mapped->second.at(ch); });
    }
    if (!isAnyThere) {
        return AdapterRefused;
    }
    m_devices.emplace(dev, std::move(device));
    return AdapterSuccess;
}

u32 SocketCanAdapter::closeDevice(u32 type, u8 dev)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Device *device = find(type, dev);
    if (device == nullptr) {
        return AdapterRefused;
    }
    for (Channel &channel : device->channels) {
        stop(*device, channel);
    }
    m_devices.erase(dev);
    return AdapterSuccess;
}

/// A device is gone with the first interface of its that is pulled out while it is used, or with the last one.
bool SocketCanAdapter::isAlive(const Device &device, std::vector<Link> &present) const
{
    present = m_links.list();
    const auto isOfDevice = [&device](const Link &link) {
        return std::any_of(device.channels.begin(), device.channels.end(),
                           [&link](const Channel &channel) { return channel.interface == link.name; });
    };
    present.erase(std::remove_if(present.begin(), present.end(), [&](const Link &link) { return !isOfDevice(link); }),
                  present.end());
    return !present.empty() && std::none_of(device.channels.begin(), device.channels.end(), [](const Channel &channel) {
        return channel.running && channel.running->isLost();
    });
}

u32 SocketCanAdapter::readInfo(u32 type, u8 dev, char *serial, char *model, char *firmware, char *hardware)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Device *device = find(type, dev);
    std::vector<Link> links;
    if (serial == nullptr || model == nullptr || firmware == nullptr || hardware == nullptr || device == nullptr ||
        !isAlive(*device, links)) {
        return AdapterRefused;
    }
    std::string names;
    for (const Link &link : links) {
        names += (names.empty() ? "" : ", ") + link.name + " (" + m_system.driverOf(link) + ")";
    }
    const bool isFd = std::any_of(links.begin(), links.end(), [](const Link &link) { return link.canFd; });
    va::copyInfo(serial, names);
    va::copyInfo(model, std::string(isFd ? "X9FC " : "X9EC ") + AdapterForeignModel);
    // What follows the first letter is no number, so it is never older than a published version.
    va::copyInfo(firmware, "Linux " + m_system.release());
    va::copyInfo(hardware, "SocketCAN");
    return AdapterSuccess;
}

u32 SocketCanAdapter::readErrInfo(u32 type, u8 dev, u8 ch, VCI_ERR_INFO *info)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (type != AdapterDeviceType || info == nullptr || ch >= ChannelsPerDevice) {
        return AdapterRefused;
    }
    *info = VCI_ERR_INFO{};
    const auto problem = m_problems.find({dev, ch});
    if (problem != m_problems.end()) {
        info->ErrCode = static_cast<u32>(problem->second.code);
        copyText(info->Text, problem->second.text);
        copyText(info->Remedy, problem->second.remedy);
    }
    const Channel *channel = find(type, dev, ch);
    if (channel != nullptr && channel->running) {
        const ChannelCounts counts = channel->running->counts();
        info->SystemLost = cut(counts.systemLost);
        info->BufferLost = cut(counts.bufferLost);
        info->Refused = cut(counts.refused);
        info->GatewayLost = cut(counts.gatewayLost);
        info->ErrorFrames = cut(counts.errorFrames);
        info->BusOff = cut(counts.busOff);
        info->Restarts = cut(counts.restarts);
    }
    return AdapterSuccess;
}

std::variant<Links::Ready, Problem> SocketCanAdapter::prepare(const std::string &interface,
                                                              const VCI_INIT_CONFIG &config)
{
    const std::variant<LinkSettings, Problem> settings = linkSettings(config);
    if (const auto *problem = std::get_if<Problem>(&settings)) {
        return *problem;
    }
    if (interface.empty()) {
        return Problem{AdapterProblemCode::NoInterface, "there is no CAN interface for this channel", {}};
    }
    return m_links.makeReady(interface, std::get<LinkSettings>(settings));
}

u32 SocketCanAdapter::initCan(u32 type, u8 dev, u8 ch, const VCI_INIT_CONFIG *config)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Channel *channel = find(type, dev, ch);
    if (channel == nullptr || config == nullptr) {
        return AdapterRefused;
    }
    stop(*find(type, dev), *channel);
    channel->settings.reset();
    m_problems.erase({dev, ch});
    std::variant<Links::Ready, Problem> prepared = prepare(channel->interface, *config);
    if (auto *problem = std::get_if<Problem>(&prepared)) {
        note(dev, ch, std::move(*problem));
        return AdapterRefused;
    }
    auto &ready = std::get<Links::Ready>(prepared);
    if (!ready.note.empty()) {
        m_system.complain("socketcan: " + ready.note);
    }
    channel->settings = RunningChannel::Settings{std::move(ready.link),
                                                 {config->AccCode, config->AccMask},
                                                 va::dataRateIndex(*config) != 0,
                                                 va::isListenOnly(*config)};
    return AdapterSuccess;
}

u32 SocketCanAdapter::startCan(u32 type, u8 dev, u8 ch)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Channel *channel = find(type, dev, ch);
    if (channel == nullptr || !channel->settings) {
        return AdapterRefused;
    }
    if (channel->running) {
        return AdapterSuccess;
    }
    const RunningChannel::Settings &settings = *channel->settings;
    const Moment start = Moment::now();
    auto opened = m_system.openPort(settings.link, {settings.filter, settings.isFd});
    if (const int *error = std::get_if<int>(&opened)) {
        note(dev, ch,
             {AdapterProblemCode::System,
              settings.link.name + " cannot be opened: " + std::generic_category().message(*error),
              {}});
        return AdapterRefused;
    }
    auto port = std::get<std::unique_ptr<CanPort>>(std::move(opened));
    const auto running = std::make_shared<RunningChannel>(settings, std::move(port), start);
    running->setGatewayList(channel->list);
    if (!m_receiver.add(running)) {
        note(dev, ch, {AdapterProblemCode::System, "the system has no thread left to receive with", {}});
        return AdapterRefused;
    }
    channel->running = running;
    return AdapterSuccess;
}

/// The gateway works between two running channels only.
void SocketCanAdapter::stop(Device &device, Channel &channel)
{
    if (channel.running) {
        setGateway(device, false);
        m_receiver.remove(channel.running);
        channel.running.reset();
    }
}

u32 SocketCanAdapter::resetCan(u32 type, u8 dev, u8 ch)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Channel *channel = find(type, dev, ch);
    if (channel == nullptr) {
        return AdapterRefused;
    }
    stop(*find(type, dev), *channel);
    return AdapterSuccess;
}

u32 SocketCanAdapter::clearBuffer(u32 type, u8 dev, u8 ch)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Channel *channel = find(type, dev, ch);
    if (channel != nullptr && channel->running) {
        channel->running->clear();
    }
    return answer(channel != nullptr);
}

template<class Record>
u32 SocketCanAdapter::receiveNum(u32 type, u8 dev, u8 ch)
{
    const std::shared_ptr<RunningChannel> channel = runningChannel(type, dev, ch);
    return channel && channel->isFd() == va::isFdRecord<Record> ? cut(channel->waiting()) : 0;
}

u32 SocketCanAdapter::receiveNumCan(u32 type, u8 dev, u8 ch)
{
    return receiveNum<VCI_CAN_OBJ>(type, dev, ch);
}

u32 SocketCanAdapter::receiveNumCanFd(u32 type, u8 dev, u8 ch)
{
    return receiveNum<VCI_CANFD_OBJ>(type, dev, ch);
}

/// Frames stay in order: behind one that is refused none is sent.
template<class Record>
u32 SocketCanAdapter::transmit(u32 type, u8 dev, u8 ch, const Record *frames, u32 count)
{
    const std::shared_ptr<RunningChannel> channel = runningChannel(type, dev, ch);
    if (!channel || frames == nullptr || count > va::MaxTransmitCount || channel->isFd() != va::isFdRecord<Record>) {
        return 0;
    }
    const auto deadline = std::chrono::steady_clock::now() + RunningChannel::SendPatience;
    va::CanFrame frame;
    u32 accepted = 0;
    while (accepted < count && va::readRecord(frames[accepted], frame) && channel->send(frame, deadline)) {
        ++accepted;
    }
    if (count - accepted > 1) {
        channel->countRefused(count - accepted - 1); // send() has counted the first
    }
    return accepted;
}

u32 SocketCanAdapter::transmitCan(u32 type, u8 dev, u8 ch, const VCI_CAN_OBJ *frames, u32 count)
{
    return transmit(type, dev, ch, frames, count);
}

u32 SocketCanAdapter::transmitCanFd(u32 type, u8 dev, u8 ch, const VCI_CANFD_OBJ *frames, u32 count)
{
    return transmit(type, dev, ch, frames, count);
}

template<class Record>
u32 SocketCanAdapter::receive(u32 type, u8 dev, u8 ch, Record *frames, u32 capacity)
{
    const std::shared_ptr<RunningChannel> channel = runningChannel(type, dev, ch);
    if (!channel || frames == nullptr || channel->isFd() != va::isFdRecord<Record>) {
        return 0;
    }
    const std::size_t count =
        channel->receive(capacity, [&frames](const va::WaitingFrame &frame) { va::writeRecord(frame, *frames++); });
    return count == 0 && channel->isLost() ? AdapterReceiveError : static_cast<u32>(count);
}

u32 SocketCanAdapter::receiveCan(u32 type, u8 dev, u8 ch, VCI_CAN_OBJ *frames, u32 capacity)
{
    return receive(type, dev, ch, frames, capacity);
}

u32 SocketCanAdapter::receiveCanFd(u32 type, u8 dev, u8 ch, VCI_CANFD_OBJ *frames, u32 capacity)
{
    return receive(type, dev, ch, frames, capacity);
}

u32 SocketCanAdapter::overflowNum(u32 type, u8 dev, u8 ch)
{
    const std::shared_ptr<RunningChannel> channel = runningChannel(type, dev, ch);
    if (!channel) {
        return 0;
    }
    const ChannelCounts counts = channel->counts();
    return cut(counts.systemLost + counts.bufferLost);
}

void SocketCanAdapter::setGateway(Device &device, bool isOn)
{
    device.isGatewayOn = isOn;
    for (std::size_t ch = 0; ch < ChannelsPerDevice; ++ch) {
        if (device.channels.at(ch).running) {
            device.channels.at(ch).running->setForwarding(isOn ? device.channels.at(1 - ch).running : nullptr);
        }
    }
}

u32 SocketCanAdapter::switchGateway(u32 type, u8 dev, u8 operation, u32 *state)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Device *device = find(type, dev);
    const std::optional<va::GatewayOperation> asked = va::gatewayOperation(operation);
    if (device == nullptr || state == nullptr || !asked) {
        return AdapterRefused;
    }
    const bool areBothRunning = std::all_of(device->channels.begin(), device->channels.end(),
                                            [](const Channel &channel) { return channel.running != nullptr; });
    if (asked == va::GatewayOperation::On && !areBothRunning) {
        return AdapterRefused;
    }
    if (asked != va::GatewayOperation::Query) {
        setGateway(*device, asked == va::GatewayOperation::On);
    }
    *state = device->isGatewayOn ? 1 : 0;
    return AdapterSuccess;
}

u32 SocketCanAdapter::setGatewayFilter(u32 type, u8 dev, u8 ch, const u32 *ids, u32 count)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Channel *channel = find(type, dev, ch);
    if (channel == nullptr || !channel->list.set(ids, count)) {
        return AdapterRefused;
    }
    if (channel->running) {
        channel->running->setGatewayList(channel->list);
    }
    return AdapterSuccess;
}

u32 SocketCanAdapter::gatewayFilter(u32 type, u8 dev, u8 ch, u32 *ids, u32 *count)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Channel *channel = find(type, dev, ch);
    return answer(channel != nullptr && channel->list.get(ids, count));
}

u32 SocketCanAdapter::openLin(u32 type, u8 dev, u8 ch, u16 /*baudRate*/, u8 /*checksum*/)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (find(type, dev, ch) != nullptr) {
        note(dev, ch, {AdapterProblemCode::NoLin, "this adapter has no LIN", {}});
    }
    return AdapterRefused;
}

} // namespace socketcan
