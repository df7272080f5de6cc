#include "device/CANCommunication.h"

#include "device/AdapterCalls.h"
#include "device/OpenDevices.h"
#include "device/ScanDriver.h"

#include <QMetaType>
#include <QTimer>

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <numeric>
#include <optional>
#include <utility>

namespace {

constexpr quint8 DeviceCount = 8;
constexpr int ReopenDelayMs = 800;

/// Nothing for a failed call, otherwise the gateway's state after the operation.
std::optional<quint32> gateway(const CANAPI &api, quint8 dev, quint8 operation)
{
    quint32 state = 0;
    return succeeds(api.KQ_OpenCANGateWay, dev, operation, &state) ? std::optional<quint32>(state) : std::nullopt;
}

bool openLINChannel(const CANAPI &api, const ChannelParam &param)
{
    return succeeds(api.KQ_OpenLIN, param.device, param.channel, param.linBaudRate, param.linChecksum);
}

} // namespace

class CANCommunicationPrivate
{
public:
    using ChannelKey = std::pair<quint8, quint8>;
    struct RunningScan
    {
        quint8 device = 0;
        bool wasOpen = false; ///< the device was open before the scan
    };

    CANCommunicationPrivate(std::unique_ptr<CANAPI> table, CANCommunication *manager);

    bool offersCANFD(quint8 dev);
    /// Calls one of the two entries.
    CANError receiveLIN(AdapterEntry::ReceiveLIN receive, quint8 dev, quint8 ch, VCI_LIN_OBJ *frame);

    const std::shared_ptr<CANAPI> api;
    OpenDevices devices;
    std::map<ChannelKey, quint32> reopenings; ///< channels waiting to be re-opened: number of the latest request
    quint32 lastReopening = 0;
    std::optional<RunningScan> scan;
    ScanDriver *const scanDriver;                     ///< child of the manager
    std::unique_ptr<FirmwareMonitor> firmwareMonitor; ///< its thread uses api and the scan's flag
};

CANCommunicationPrivate::CANCommunicationPrivate(std::unique_ptr<CANAPI> table, CANCommunication *manager)
    : api(table ? std::move(table) : std::make_unique<CANAPI>(QString()))
    , devices(api)
    , scanDriver(new ScanDriver(*api, manager))
{
}

bool CANCommunicationPrivate::offersCANFD(quint8 dev)
{
    const std::optional<DeviceInfo> info = devices.readTexts(dev);
    return info && info->model.startsWith(QLatin1String("X9FC")) && api->KQ_GetReceiveNumCANFD != nullptr &&
           api->KQ_TransmitCANFD != nullptr && api->KQ_ReceiveCANFD != nullptr;
}

CANError CANCommunicationPrivate::receiveLIN(AdapterEntry::ReceiveLIN receive, quint8 dev, quint8 ch,
                                             VCI_LIN_OBJ *frame)
{
    if (!succeeds(receive, dev, ch, frame)) {
        return CAN_ReadFailed;
    }
    const OpenDevice *entry = devices.find(dev);
    if (entry != nullptr && frame->DataLen != 0) {
        entry->reader->noteFrame(); // the worker does not see it
    }
    return CAN_OK;
}

CANCommunication::CANCommunication(FirmwareQuery firmwareQuery, QObject *parent)
    : CANCommunication(std::make_unique<CANAPI>(CANAPI::defaultLibraryPath()), std::move(firmwareQuery), parent)
{
    watchDevices();
}

CANCommunication::CANCommunication(std::unique_ptr<CANAPI> api, FirmwareQuery firmwareQuery, QObject *parent,
                                   std::chrono::milliseconds firmwareInterval)
    : QObject(parent)
    , m_p(std::make_unique<CANCommunicationPrivate>(std::move(api), this))
{
    qRegisterMetaType<QVector<VCI_CAN_OBJ>>("QVector<VCI_CAN_OBJ>");
    qRegisterMetaType<QVector<VCI_CANFD_OBJ>>("QVector<VCI_CANFD_OBJ>");
    qRegisterMetaType<CANAPI *>("CANAPI*");
    connect(m_p->scanDriver, &ScanDriver::sig_report, this, &CANCommunication::sig_scanResultCallback);
    connect(m_p->scanDriver, &ScanDriver::sig_over, this, &CANCommunication::stopScan);
    const auto announce = [this] {
        QMetaObject::invokeMethod(this, &CANCommunication::sig_showFrimwareUpgrade, Qt::QueuedConnection);
    };
    m_p->firmwareMonitor = std::make_unique<FirmwareMonitor>(*m_p->api, m_p->devices.scanning(),
                                                             std::move(firmwareQuery), announce, firmwareInterval);
}

CANCommunication::~CANCommunication()
{
    m_p->firmwareMonitor.reset(); // first: its thread uses this object, the table and the scan's flag
    endScan();
}

const CANAPI &CANCommunication::api() const
{
    return *m_p->api;
}

void CANCommunication::watchDevices(std::chrono::milliseconds silence)
{
    m_p->devices.watch(silence);
}

bool CANCommunication::isDeviceOpen(quint8 dev) const
{
    return m_p->devices.find(dev) != nullptr;
}

ChannelProblem CANCommunication::channelProblem(quint8 dev, quint8 ch) const
{
    return readChannelProblem(*m_p->api, dev, ch);
}

QVector<DevicePresence> CANCommunication::presentDevices()
{
    QVector<quint8> channels(ChannelsPerDevice);
    std::iota(channels.begin(), channels.end(), quint8(0));
    QVector<DevicePresence> present;
    for (quint8 dev = 0; dev < DeviceCount; ++dev) {
        std::optional<DeviceInfo> info;
        if (m_p->devices.readTextsOfAny(dev, info) == CAN_OK) {
            present.append({dev, info.value_or(DeviceInfo()).model, channels, channels, isDeviceOpen(dev)});
        }
    }
    return present;
}

CANError CANCommunication::openDevice(quint8 dev)
{
    return m_p->devices.open(dev, [this](const OpenDevice &device) { connectReader(device); });
}

/// What the worker sends is queued to this object's thread.
void CANCommunication::connectReader(const OpenDevice &entry)
{
    const CANReadHandle *reader = entry.reader.get();
    // NOLINTBEGIN(performance-unnecessary-value-param)
    // The batch is held for a moment instead of passed by: its reference count orders the worker's writing before the
    // reading here also for a race checker that cannot see the lock of Qt's event queue.
    connect(reader, &CANReadHandle::sig_readResultCallback, this,
            [this](quint8 devInd, quint8 canInd, QVector<VCI_CAN_OBJ> obj) {
                emit sig_readResultCallback(devInd, canInd, obj);
            });
    connect(reader, &CANReadHandle::sig_readResultCallbackCANFD, this,
            [this](quint8 devInd, quint8 canInd, QVector<VCI_CANFD_OBJ> obj) {
                emit sig_readResultCallbackCANFD(devInd, canInd, obj);
            });
    // NOLINTEND(performance-unnecessary-value-param)
    connect(reader, &CANReadHandle::sig_deviceLost, this, [this, opening = entry.opening](quint8 devInd) {
        // It may have been closed, and even opened again, since its worker has seen it.
        const OpenDevice *lost = m_p->devices.find(devInd);
        if (lost != nullptr && lost->opening == opening) {
            emit sig_deviceLost(devInd);
        }
    });
    connect(reader, &CANReadHandle::sig_readFailed, this, &CANCommunication::sig_readFailed);
}

CANError CANCommunication::closeDevice(quint8 dev)
{
    const CANError closed = m_p->devices.close(dev);
    if (closed == CAN_OK && m_p->scan && m_p->scan->device == dev) {
        stopScan();
    }
    return closed;
}

CANError CANCommunication::openOn(const ChannelParam &param, std::bitset<ChannelsPerDevice> OpenDevice::*isOpen,
                                  const std::function<CANError()> &open)
{
    if (param.channel >= ChannelsPerDevice) {
        return CAN_ChannelOpenFailed;
    }
    if (openDevice(param.device) == CAN_DeviceOpenFailed) {
        return CAN_DeviceOpenFailed;
    }
    OpenDevice &entry = *m_p->devices.find(param.device); // open now
    if ((entry.*isOpen)[param.channel]) {
        return CAN_ChannelExists;
    }
    const CANError opened = open();
    if (opened == CAN_OK) {
        (entry.*isOpen).set(param.channel);
    } else {
        closeDevice(param.device); // refuses, as is wanted here, while another channel is open
    }
    return opened;
}

CANError CANCommunication::openChannel(const ChannelParam &param)
{
    const CANError opened = openOn(param, &OpenDevice::canOpen, [this, &param] {
        if (param.isCANFD && !m_p->offersCANFD(param.device)) {
            return CAN_DeviceNotSupport;
        }
        return startCAN(*m_p->api, param) ? CAN_OK : CAN_ChannelOpenFailed;
    });
    if (opened != CAN_OK) {
        return opened;
    }
    const OpenDevice &entry = *m_p->devices.find(param.device);
    if (param.isCANFD) {
        entry.reader->setFlagCANFD(param.channel, true);
    } else {
        entry.reader->setFlagCAN(param.channel, true);
    }
    if (entry.canOpen.all() && gateway(*m_p->api, param.device, AdapterGatewayQuery) == 1U) {
        setGatewayOn(param.device, true);
    }
    return CAN_OK;
}

CANError CANCommunication::reconfigureChannel(const ChannelParam &param)
{
    const CANError closed = stopChannel(param.device, param.channel);
    if (closed != CAN_OK) {
        return closed;
    }
    const CANCommunicationPrivate::ChannelKey key(param.device, param.channel);
    const quint32 request = ++m_p->lastReopening;
    m_p->reopenings[key] = request;
    QTimer::singleShot(ReopenDelayMs, this, [this, param, key, request] {
        const auto waiting = m_p->reopenings.find(key);
        if (waiting != m_p->reopenings.end() && waiting->second == request) {
            m_p->reopenings.erase(waiting);
            openChannel(param);
        }
    });
    return CAN_OK;
}

CANError CANCommunication::closeChannel(quint8 dev, quint8 ch)
{
    // Otherwise the channel of a closed tab would come back, with nobody left to close it.
    m_p->reopenings.erase({dev, ch});
    return stopChannel(dev, ch);
}

CANError CANCommunication::stopChannel(quint8 dev, quint8 ch)
{
    OpenDevice *entry = m_p->devices.find(dev);
    if (entry == nullptr) {
        return CAN_DeviceNotExists;
    }
    if (ch >= ChannelsPerDevice) {
        return CAN_ChannelNotExists;
    }
    succeeds(m_p->api->VCI_ResetCAN, dev, ch);
    entry->canOpen.reset(ch);
    entry->reader->setFlagCAN(ch, false);
    entry->reader->setFlagCANFD(ch, false);
    if (entry->canOpen.none()) {
        closeDevice(dev);
    } else {
        setGatewayOn(dev, false);
    }
    return CAN_OK;
}

CANError CANCommunication::transmit(quint8 dev, quint8 ch, const VCI_CAN_OBJ *frames, quint32 count)
{
    const auto send = m_p->api->VCI_Transmit;
    return answerToSending(dev, ch, send == nullptr ? 0 : send(AdapterDeviceType, dev, ch, frames, count), count);
}

CANError CANCommunication::transmitCANFD(quint8 dev, quint8 ch, const VCI_CANFD_OBJ *frames, quint32 count)
{
    const auto send = m_p->api->KQ_TransmitCANFD;
    return answerToSending(dev, ch, send == nullptr ? 0 : send(AdapterDeviceType, dev, ch, frames, count), count);
}

/// An adapter that claims to have taken more than it was given has taken nothing that can be relied on.
CANError CANCommunication::answerToSending(quint8 dev, quint8 ch, quint32 accepted, quint32 count)
{
    if (accepted == count) {
        return CAN_OK;
    }
    emit sig_sendRefused(dev, ch, accepted < count ? count - accepted : count);
    return CAN_SendFailed;
}

void CANCommunication::setGatewayOn(quint8 dev, bool isOn)
{
    m_p->devices.find(dev)->gatewayOn = isOn;
    emit sig_gatewayStateChanged(dev, isOn);
}

CANError CANCommunication::openGateway(quint8 dev)
{
    const OpenDevice *entry = m_p->devices.find(dev);
    if (entry == nullptr || !entry->canOpen.all()) {
        return CAN_ChannelNotExists;
    }
    const std::optional<quint32> state = gateway(*m_p->api, dev, AdapterGatewayQuery);
    if (!state || (state == 0U && gateway(*m_p->api, dev, AdapterGatewayOn) != 1U)) {
        return CAN_GatewayOperationFailed;
    }
    setGatewayOn(dev, true);
    return CAN_OK;
}

CANError CANCommunication::closeGateway(quint8 dev)
{
    if (!isDeviceOpen(dev) || gateway(*m_p->api, dev, AdapterGatewayOff) != 0U) {
        return CAN_GatewayOperationFailed;
    }
    setGatewayOn(dev, false);
    return CAN_OK;
}

quint8 CANCommunication::isGatewayOn(quint8 dev) const
{
    const OpenDevice *entry = m_p->devices.find(dev);
    return entry != nullptr && entry->gatewayOn ? 1 : 0;
}

CANError CANCommunication::setGatewayIDFilter(quint8 dev, quint8 ch, const QSet<quint32> &ids)
{
    if (isGatewayOn(dev) == 0 || ids.size() > static_cast<int>(AdapterGatewayMaxIds)) {
        return CAN_GatewayOperationFailed;
    }
    std::array<quint32, AdapterGatewayMaxIds> words{};
    auto *const end = std::copy(ids.begin(), ids.end(), words.begin());
    std::sort(words.begin(), end); // the set has no order of its own
    const auto count = static_cast<quint32>(ids.size());
    const quint32 *first = words.data();
    return succeeds(m_p->api->KQ_SetCANGateWayIDFilter, dev, ch, first, count) ? CAN_OK : CAN_GatewayOperationFailed;
}

CANError CANCommunication::getGatewayIDFilter(quint8 dev, quint8 ch, QSet<quint32> &ids)
{
    std::array<quint32, AdapterGatewayMaxIds> words{};
    quint32 count = 0;
    if (!succeeds(m_p->api->KQ_GetCANGateWayIDFilter, dev, ch, words.data(), &count)) {
        return CAN_GatewayOperationFailed;
    }
    ids = QSet<quint32>(words.begin(), words.begin() + std::min(count, AdapterGatewayMaxIds));
    return CAN_OK;
}

CANError CANCommunication::readDeviceInfo(quint8 dev, QString &serial, QString &model, QString &firmware)
{
    std::optional<DeviceInfo> info;
    const CANError asked = m_p->devices.readTextsOfAny(dev, info);
    if (asked != CAN_OK) {
        return asked;
    }
    if (!info) {
        return CAN_DeviceNotSupport;
    }
    serial = info->serial;
    model = info->model;
    firmware = info->firmware;
    return CAN_OK;
}

CANError CANCommunication::openLIN(const ChannelParam &param)
{
    return openOn(param, &OpenDevice::linOpen,
                  [this, &param] { return openLINChannel(*m_p->api, param) ? CAN_OK : CAN_ChannelOpenFailed; });
}

CANError CANCommunication::changeLINParam(const ChannelParam &param)
{
    OpenDevice *entry = m_p->devices.find(param.device);
    if (entry == nullptr) {
        return CAN_DeviceNotExists;
    }
    if (param.channel >= ChannelsPerDevice) {
        return CAN_ChannelOpenFailed;
    }
    if (!entry->linRefused[param.channel] && !succeeds(m_p->api->KQ_CloseLIN, param.device, param.channel)) {
        return CAN_Unknown;
    }
    const bool isOpen = openLINChannel(*m_p->api, param);
    entry->linRefused.set(param.channel, !isOpen);
    return isOpen ? CAN_OK : CAN_ChannelOpenFailed;
}

CANError CANCommunication::closeLIN(quint8 dev, quint8 ch)
{
    OpenDevice *entry = m_p->devices.find(dev);
    if (entry == nullptr) {
        return CAN_DeviceNotExists;
    }
    if (ch >= ChannelsPerDevice) {
        return CAN_ChannelNotExists;
    }
    succeeds(m_p->api->KQ_CloseLIN, dev, ch);
    entry->linOpen.reset(ch);
    entry->linRefused.reset(ch);
    if (entry->linOpen.none()) {
        closeDevice(dev);
    }
    return CAN_OK;
}

CANError CANCommunication::changeLINMode(quint8 dev, quint8 ch, quint8 mode)
{
    return succeeds(m_p->api->KQ_ChangeLINMode, dev, ch, mode) ? CAN_OK : CAN_SendFailed;
}

CANError CANCommunication::transmitLIN(quint8 dev, quint8 ch, const VCI_LIN_OBJ &frame)
{
    return succeeds(m_p->api->KQ_TransmitLIN, dev, ch, frame) ? CAN_OK : CAN_SendFailed;
}

CANError CANCommunication::receiveLIN(quint8 dev, quint8 ch, VCI_LIN_OBJ *frame)
{
    return m_p->receiveLIN(m_p->api->KQ_ReceiveLIN, dev, ch, frame);
}

CANError CANCommunication::receiveLINBySlave(quint8 dev, quint8 ch, VCI_LIN_OBJ *frame)
{
    return m_p->receiveLIN(m_p->api->KQ_ReceiveLINBySlave, dev, ch, frame);
}

bool CANCommunication::isScanning() const
{
    return m_p->devices.scanning();
}

CANError CANCommunication::slot_scanCANBaudrate(quint8 dev, quint8 /*second*/)
{
    if (m_p->devices.scanning().exchange(true)) {
        return CAN_DeviceExists;
    }
    const bool wasOpen = isDeviceOpen(dev);
    openDevice(dev);
    const OpenDevice *entry = m_p->devices.find(dev);
    if (entry == nullptr || entry->canOpen.all()) {
        m_p->devices.scanning() = false;
        return CAN_DeviceOpenFailed;
    }
    m_p->scan = {dev, wasOpen};
    m_p->scanDriver->start(dev, [this, dev] { return m_p->devices.find(dev)->canOpen; }); // closeDevice() ends the scan
    return CAN_OK;
}

void CANCommunication::stopScan()
{
    if (endScan()) {
        emit sig_scanFinish();
    }
}

bool CANCommunication::endScan()
{
    const auto ended = std::exchange(m_p->scan, std::nullopt);
    if (!ended) {
        return false;
    }
    m_p->scanDriver->stop();
    if (!ended->wasOpen) {
        closeDevice(ended->device); // refuses, as is wanted here, when a channel was opened meanwhile
    }
    m_p->devices.scanning() = false;
    return true;
}
