#include "adapter/virtual/VirtualAdapter.h"

#include "adapter/AdapterAnswers.h"
#include "adapter/FrameRecords.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace va {

using AdapterEntry::u32;

/// One call of the entry point of this name: waits out a configured delay, then holds the lock until the call is done.
class VirtualAdapter::Call
{
public:
    Call(VirtualAdapter &adapter, std::string_view entry, u32 type, u8 dev)
        : m_adapter(adapter)
        , m_dev(dev)
        , m_isKnown(type == AdapterDeviceType && dev < adapter.m_config.devices.size())
    {
        if (m_isKnown) {
            waitOut(config().faults.callDelayMs, entry);
        }
        m_lock = std::unique_lock<std::mutex>(m_adapter.m_mutex);
        m_nowNs = m_adapter.m_clock.nowNs();
        m_adapter.closeVanished(m_nowNs);
        m_isAbsent = m_isKnown && device().goneNs <= m_nowNs && m_nowNs < device().backNs;
    }

    std::uint64_t nowNs() const { return m_nowNs; }
    const DeviceConfig &config() const { return m_adapter.m_config.devices[m_dev]; }
    Device &device() const { return m_adapter.m_devices[m_dev]; }
    /// The device exists in the configuration and has not vanished.
    bool isPresent() const { return m_isKnown && !m_isAbsent; }
    /// The device exists in the configuration but has vanished.
    bool hasVanished() const { return m_isAbsent; }
    bool isOpen() const { return isPresent() && device().isOpen; }

    /// The device is open and has this channel; its bus is then up to date.
    bool reachesCan(u8 ch) const { return reaches(m_adapter.m_can, ch); }
    bool reachesLin(u8 ch) const { return reaches(m_adapter.m_lin, ch); }
    std::size_t channel(u8 ch) const { return m_dev * ChannelsPerDevice + ch; }

private:
    void waitOut(const CallDelays &delays, std::string_view entry)
    {
        const auto delay = delays.find(entry);
        if (delay != delays.end() && delay->second > 0) {
            m_adapter.m_clock.sleepMs(delay->second);
        }
    }
    template<class Network>
    bool reaches(Network &network, u8 ch) const
    {
        if (!isOpen() || ch >= ChannelsPerDevice) {
            return false;
        }
        network.catchUp(channel(ch), m_nowNs);
        return true;
    }

    VirtualAdapter &m_adapter;
    std::size_t m_dev;
    bool m_isKnown;
    bool m_isAbsent = false;
    std::uint64_t m_nowNs = 0;
    std::unique_lock<std::mutex> m_lock;
};

VirtualAdapter::VirtualAdapter(AdapterConfig config, AdapterClock &clock)
    : m_config(std::move(config))
    , m_clock(clock)
    , m_devices(m_config.devices.size())
    , m_can(m_config, clock.nowNs())
    , m_lin(m_config, clock.nowNs())
{
}

/// Vanishing closes a device: it must be opened again when it has come back.
void VirtualAdapter::closeVanished(std::uint64_t nowNs)
{
    for (std::size_t dev = 0; dev < m_devices.size(); ++dev) {
        if (m_devices[dev].goneNs <= nowNs && !m_devices[dev].hasVanished) {
            m_devices[dev].hasVanished = true;
            shutDevice(dev, nowNs);
        }
    }
}

void VirtualAdapter::shutDevice(std::size_t dev, std::uint64_t nowNs)
{
    m_can.catchUpAll(nowNs);
    m_can.closeDevice(dev);
    for (std::size_t ch = 0; ch < ChannelsPerDevice; ++ch) {
        m_lin.close(dev * ChannelsPerDevice + ch);
    }
    m_devices[dev].isOpen = false;
}

u32 VirtualAdapter::openDevice(u32 type, u8 dev)
{
    const Call call(*this, "VCI_OpenDevice", type, dev);
    if (!call.isPresent() || call.isOpen() || call.config().faults.openRefused) {
        return AdapterRefused;
    }
    Device &device = call.device();
    const DeviceFaults &faults = call.config().faults;
    device.isOpen = true;
    if (faults.vanishAfterNs && device.goneNs == Never) {
        device.goneNs = call.nowNs() + *faults.vanishAfterNs;
        device.backNs = faults.returnAfterNs ? device.goneNs + *faults.returnAfterNs : Never;
    }
    return AdapterSuccess;
}

u32 VirtualAdapter::closeDevice(u32 type, u8 dev)
{
    const Call call(*this, "VCI_CloseDevice", type, dev);
    if (!call.isOpen()) {
        return AdapterRefused;
    }
    shutDevice(dev, call.nowNs());
    return AdapterSuccess;
}

u32 VirtualAdapter::readInfo(u32 type, u8 dev, char *serial, char *model, char *firmware, char *hardware)
{
    const Call call(*this, "KQ_ReadInfo", type, dev);
    const bool hasBuffers = serial != nullptr && model != nullptr && firmware != nullptr && hardware != nullptr;
    if (!call.isOpen() || !hasBuffers || call.config().faults.infoRefused) {
        return AdapterRefused;
    }
    copyInfo(serial, call.config().serial);
    copyInfo(model, call.config().model);
    copyInfo(firmware, call.config().firmware);
    copyInfo(hardware, call.config().hardware);
    return AdapterSuccess;
}

u32 VirtualAdapter::initCan(u32 type, u8 dev, u8 ch, const VCI_INIT_CONFIG *config)
{
    const Call call(*this, "VCI_InitCAN", type, dev);
    if (config == nullptr || !call.reachesCan(ch) || call.config().can[ch].faults.initRefused) {
        return AdapterRefused;
    }
    if (dataRateIndex(*config) != 0 && !call.config().hasCanFd()) {
        return AdapterRefused;
    }
    m_can.init(call.channel(ch), *config);
    return AdapterSuccess;
}

u32 VirtualAdapter::startCan(u32 type, u8 dev, u8 ch)
{
    const Call call(*this, "VCI_StartCAN", type, dev);
    if (!call.reachesCan(ch) || call.config().can[ch].faults.startRefused) {
        return AdapterRefused;
    }
    // Starting a second channel may switch a gateway on: every bus has to stand at the same time then.
    m_can.catchUpAll(call.nowNs());
    return answer(m_can.start(call.channel(ch), call.nowNs()));
}

/// An operation that a reached channel never refuses.
u32 VirtualAdapter::doOnCan(std::string_view entry, u32 type, u8 dev, u8 ch,
                            void (CanNetwork::*operation)(ChannelNumber))
{
    const Call call(*this, entry, type, dev);
    const bool isReached = call.reachesCan(ch);
    if (isReached) {
        (m_can.*operation)(call.channel(ch));
    }
    return answer(isReached);
}

u32 VirtualAdapter::resetCan(u32 type, u8 dev, u8 ch)
{
    return doOnCan("VCI_ResetCAN", type, dev, ch, &CanNetwork::stop);
}

u32 VirtualAdapter::clearBuffer(u32 type, u8 dev, u8 ch)
{
    return doOnCan("VCI_ClearBuffer", type, dev, ch, &CanNetwork::clear);
}

template<class Record>
u32 VirtualAdapter::receiveNum(u32 type, u8 dev, u8 ch)
{
    const Call call(*this, isFdRecord<Record> ? "KQ_GetReceiveNumCANFD" : "VCI_GetReceiveNum", type, dev);
    if (!call.reachesCan(ch)) {
        return 0;
    }
    const CanChannel &channel = m_can.channel(call.channel(ch));
    return channel.isFd() == isFdRecord<Record> ? static_cast<u32>(channel.queue().size()) : 0;
}
template u32 VirtualAdapter::receiveNum<VCI_CAN_OBJ>(u32, u8, u8);
template u32 VirtualAdapter::receiveNum<VCI_CANFD_OBJ>(u32, u8, u8);

template<class Record>
u32 VirtualAdapter::transmit(u32 type, u8 dev, u8 ch, const Record *frames, u32 count)
{
    const Call call(*this, isFdRecord<Record> ? "KQ_TransmitCANFD" : "VCI_Transmit", type, dev);
    const ChannelNumber channel = call.channel(ch);
    if (frames == nullptr || count > MaxTransmitCount || !call.reachesCan(ch) ||
        m_can.channel(channel).isFd() != isFdRecord<Record>) {
        return 0;
    }
    const u32 most = std::min(count, call.config().can[ch].faults.transmitAccept.value_or(count));
    CanFrame frame;
    u32 accepted = 0;
    while (accepted < most && readRecord(frames[accepted], frame) && m_can.send(channel, frame, call.nowNs())) {
        ++accepted;
    }
    return accepted;
}
template u32 VirtualAdapter::transmit(u32, u8, u8, const VCI_CAN_OBJ *, u32);
template u32 VirtualAdapter::transmit(u32, u8, u8, const VCI_CANFD_OBJ *, u32);

template<class Record>
u32 VirtualAdapter::receive(u32 type, u8 dev, u8 ch, Record *frames, u32 capacity)
{
    const Call call(*this, isFdRecord<Record> ? "KQ_ReceiveCANFD" : "VCI_Receive", type, dev);
    if (call.hasVanished() && ch < ChannelsPerDevice) {
        return AdapterReceiveError;
    }
    if (frames == nullptr || !call.reachesCan(ch) || m_can.channel(call.channel(ch)).isFd() != isFdRecord<Record>) {
        return 0;
    }
    const u32 failEvery = call.config().can[ch].faults.receiveErrorEvery;
    if (failEvery != 0 && ++call.device().receiveCalls[ch] % failEvery == 0) {
        return AdapterReceiveError;
    }
    const auto write = [&frames](const WaitingFrame &frame) {
        writeRecord(frame, *frames++);
    };
    return static_cast<u32>(m_can.receive(call.channel(ch), capacity, write));
}
template u32 VirtualAdapter::receive(u32, u8, u8, VCI_CAN_OBJ *, u32);
template u32 VirtualAdapter::receive(u32, u8, u8, VCI_CANFD_OBJ *, u32);

u32 VirtualAdapter::overflowNum(u32 type, u8 dev, u8 ch)
{
    const Call call(*this, "VCI_GetReceiveNum", type, dev);
    if (!call.reachesCan(ch)) {
        return 0;
    }
    return static_cast<u32>(std::min<std::uint64_t>(m_can.channel(call.channel(ch)).overflow(), 0xFFFFFFFFU));
}

u32 VirtualAdapter::switchGateway(u32 type, u8 dev, u8 operation, u32 *state)
{
    const Call call(*this, "KQ_OpenCANGateWay", type, dev);
    const std::optional<GatewayOperation> asked = gatewayOperation(operation);
    if (state == nullptr || !asked || !call.isOpen() || call.config().faults.gatewayRefused) {
        return AdapterRefused;
    }
    m_can.catchUpAll(call.nowNs());
    if (asked != GatewayOperation::Query && !m_can.switchGateway(dev, asked == GatewayOperation::On)) {
        return AdapterRefused;
    }
    *state = m_can.isGatewayOn(dev) ? 1 : 0;
    return AdapterSuccess;
}

u32 VirtualAdapter::setGatewayFilter(u32 type, u8 dev, u8 ch, const u32 *ids, u32 count)
{
    const Call call(*this, "KQ_SetCANGateWayIDFilter", type, dev);
    return answer(call.reachesCan(ch) && !call.config().faults.gatewayRefused &&
                  m_can.setGatewayList(call.channel(ch), ids, count));
}

u32 VirtualAdapter::gatewayFilter(u32 type, u8 dev, u8 ch, u32 *ids, u32 *count)
{
    const Call call(*this, "KQ_GetCANGateWayIDFilter", type, dev);
    return answer(call.reachesCan(ch) && !call.config().faults.gatewayRefused &&
                  m_can.gatewayList(call.channel(ch)).get(ids, count));
}

u32 VirtualAdapter::openLin(u32 type, u8 dev, u8 ch, u16 baudRate, u8 checksum)
{
    const Call call(*this, "KQ_OpenLIN", type, dev);
    return answer(call.reachesLin(ch) && !call.config().lin[ch].faults.openRefused &&
                  m_lin.open(call.channel(ch), baudRate, checksum));
}

u32 VirtualAdapter::closeLin(u32 type, u8 dev, u8 ch)
{
    const Call call(*this, "KQ_CloseLIN", type, dev);
    return answer(call.reachesLin(ch) && !call.config().lin[ch].faults.closeRefused && m_lin.close(call.channel(ch)));
}

u32 VirtualAdapter::changeLinMode(u32 type, u8 dev, u8 ch, u8 mode)
{
    const Call call(*this, "KQ_ChangeLINMode", type, dev);
    if (!call.reachesLin(ch)) {
        return AdapterRefused;
    }
    const std::vector<u8> &refused = call.config().lin[ch].faults.modeRefused;
    const bool isAllowed = std::find(refused.begin(), refused.end(), mode) == refused.end();
    return answer(isAllowed && m_lin.changeMode(call.channel(ch), mode));
}

u32 VirtualAdapter::transmitLin(u32 type, u8 dev, u8 ch, const VCI_LIN_OBJ &frame)
{
    const Call call(*this, "KQ_TransmitLIN", type, dev);
    return answer(call.reachesLin(ch) && !call.config().lin[ch].faults.transmitRefused &&
                  m_lin.transmit(call.channel(ch), frame));
}

u32 VirtualAdapter::receiveLin(u32 type, u8 dev, u8 ch, VCI_LIN_OBJ *frame)
{
    const Call call(*this, "KQ_ReceiveLIN", type, dev);
    return answer(frame != nullptr && call.reachesLin(ch) && !call.config().lin[ch].faults.receiveRefused &&
                  m_lin.request(call.channel(ch), *frame));
}

u32 VirtualAdapter::receiveLinBySlave(u32 type, u8 dev, u8 ch, VCI_LIN_OBJ *frame)
{
    const Call call(*this, "KQ_ReceiveLINBySlave", type, dev);
    return answer(frame != nullptr && call.reachesLin(ch) && !call.config().lin[ch].faults.receiveRefused &&
                  m_lin.takeMonitored(call.channel(ch), *frame));
}

u32 VirtualAdapter::transmitLinBySlave(u32 type, u8 dev, u8 ch, const VCI_LIN_OBJ &frame)
{
    const Call call(*this, "KQ_TransmitLINBySlave", type, dev);
    return answer(call.reachesLin(ch) && !call.config().lin[ch].faults.transmitRefused &&
                  m_lin.setSlaveData(call.channel(ch), frame));
}

} // namespace va
