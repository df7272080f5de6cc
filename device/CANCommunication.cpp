#include "device/CANCommunication.h"

#include "device/BaudrateScan.h"
#include "device/CANBaudrate.h"
#include "device/CANReadHandle.h"
#include "device/DeviceInfo.h"

#include <QMap>
#include <QMetaType>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <array>
#include <atomic>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace {

constexpr quint8 DeviceCount = 8;
constexpr quint8 ChannelCount = 2;
constexpr int ReopenDelayMs = 800;
constexpr int ScanTickMs = 10;

using ChannelFlags = std::array<quint8, ChannelCount>;

/// An open device.
struct DeviceEntry
{
    ChannelFlags canOpen{};
    ChannelFlags linOpen{};
    ChannelFlags linRefused{}; ///< held open by a tab, but the adapter has refused its new settings after closing it
    quint8 gatewayOn = 0;
    quint32 opening = 0;             ///< tells one opening from the next
    CANReadHandle *reader = nullptr; ///< lives on thread, goes with it
    QThread *thread = nullptr;       ///< goes by itself when it has finished
};

struct RunningScan
{
    quint32 number = 0; ///< tells one scan from the next
    quint8 device = 0;
    bool wasOpen = false; ///< the device was open before the scan
    BaudrateScan steps;
};

bool isAnySet(const ChannelFlags &flags)
{
    return std::any_of(flags.begin(), flags.end(), [](quint8 flag) { return flag != 0; });
}

bool areAllSet(const ChannelFlags &flags)
{
    return std::all_of(flags.begin(), flags.end(), [](quint8 flag) { return flag != 0; });
}

/// Calls an entry that answers AdapterSuccess; a missing entry counts as refused.
template<class Entry, class... Arguments>
bool succeeds(Entry entry, Arguments... arguments)
{
    return entry != nullptr && entry(AdapterDeviceType, arguments...) == AdapterSuccess;
}

VCI_INIT_CONFIG initConfig(const ChannelParam &param)
{
    VCI_INIT_CONFIG config{};
    config.AccCode = param.AccCode;
    config.AccMask = param.AccMask;
    config.Filter = param.Filter;
    config.Timing0 = param.Timing0;
    config.Timing1 = param.Timing1;
    config.Mode = static_cast<quint8>((param.dataRateCANFD & AdapterModeDataRateMask) << AdapterModeDataRateShift |
                                      (param.listenOnly & AdapterModeListenOnly) | AdapterModeAlways);
    return config;
}

} // namespace

class CANCommunicationPrivate
{
public:
    using ChannelKey = std::pair<quint8, quint8>;

    explicit CANCommunicationPrivate(std::unique_ptr<CANAPI> table);

    /// Null for a device that is not open.
    DeviceEntry *device(quint8 dev);
    bool openInLibrary(quint8 dev) const;
    void closeInLibrary(quint8 dev) const;
    /// What a device tells of itself, which also says whether it can be expected to answer.
    std::optional<DeviceInfo> readTexts(quint8 dev);
    bool offersCANFD(quint8 dev);
    /// Calls one of the two entries.
    CANError receiveLIN(AdapterEntry::ReceiveLIN receive, quint8 dev, quint8 ch, VCI_LIN_OBJ *frame);
    bool startCAN(const ChannelParam &param) const;
    /// Starts a free channel for the scan's current step if it is a new one, and looks whether frames arrive.
    void tryChannel(BaudrateScan &steps, quint8 dev, quint8 ch) const;
    /// The gateway's state after the operation; nothing when the call failed.
    std::optional<quint32> gateway(quint8 dev, quint8 operation) const;

    std::unique_ptr<CANAPI> api;
    std::map<quint8, DeviceEntry> devices; ///< by device index; holds a device exactly while it is open
    QMap<ChannelKey, quint32> reopenings;  ///< channels waiting to be re-opened: number of the latest request
    quint32 lastReopening = 0;
    quint32 lastOpening = 0;
    /// Read by any thread; set from before the scan opens until it has closed. Shared with the workers, which may be
    /// left behind.
    std::shared_ptr<std::atomic<bool>> scanning = std::make_shared<std::atomic<bool>>(false);
    std::optional<RunningScan> scan; ///< what the timer goes on with
    quint32 lastScan = 0;
    QTimer *scanTimer = nullptr;                      ///< child of the manager
    std::unique_ptr<FirmwareMonitor> firmwareMonitor; ///< its thread uses api and scanning
    std::optional<std::chrono::milliseconds> silence; ///< after which a worker asks its device; none: never
    std::set<quint8> answering;                       ///< devices that told their texts when last asked here
};

CANCommunicationPrivate::CANCommunicationPrivate(std::unique_ptr<CANAPI> table)
    : api(std::move(table))
{
    if (!api) {
        api = std::make_unique<CANAPI>(QString());
    }
}

DeviceEntry *CANCommunicationPrivate::device(quint8 dev)
{
    const auto found = devices.find(dev);
    return found == devices.end() ? nullptr : &found->second;
}

bool CANCommunicationPrivate::openInLibrary(quint8 dev) const
{
    // A device that cannot be closed again is not opened.
    return api->VCI_CloseDevice != nullptr && succeeds(api->VCI_OpenDevice, dev, quint32(0));
}

void CANCommunicationPrivate::closeInLibrary(quint8 dev) const
{
    api->VCI_CloseDevice(AdapterDeviceType, dev); // openInLibrary() has seen that it is there
}

std::optional<DeviceInfo> CANCommunicationPrivate::readTexts(quint8 dev)
{
    std::optional<DeviceInfo> info = readInfo(*api, dev);
    if (!info) {
        answering.erase(dev);
        return info;
    }
    answering.insert(dev);
    if (const DeviceEntry *entry = device(dev)) {
        entry->reader->noteTexts();
    }
    return info;
}

CANError CANCommunicationPrivate::receiveLIN(AdapterEntry::ReceiveLIN receive, quint8 dev, quint8 ch,
                                             VCI_LIN_OBJ *frame)
{
    if (!succeeds(receive, dev, ch, frame)) {
        return CAN_ReadFailed;
    }
    const DeviceEntry *entry = device(dev);
    if (entry != nullptr && frame->DataLen != 0) {
        entry->reader->noteFrame(); // the worker does not see it
    }
    return CAN_OK;
}

bool CANCommunicationPrivate::offersCANFD(quint8 dev)
{
    const std::optional<DeviceInfo> info = readTexts(dev);
    return info && info->model.startsWith(QLatin1String("X9FC")) && api->KQ_GetReceiveNumCANFD != nullptr &&
           api->KQ_TransmitCANFD != nullptr && api->KQ_ReceiveCANFD != nullptr;
}

bool CANCommunicationPrivate::startCAN(const ChannelParam &param) const
{
    const VCI_INIT_CONFIG config = initConfig(param);
    return succeeds(api->VCI_InitCAN, param.device, param.channel, &config) &&
           succeeds(api->VCI_StartCAN, param.device, param.channel);
}

void CANCommunicationPrivate::tryChannel(BaudrateScan &steps, quint8 dev, quint8 ch) const
{
    if (steps.isFirstTick()) {
        const CANBaudrate &rate = canBaudrates().at(steps.index());
        ChannelParam param;
        param.device = dev;
        param.channel = ch;
        param.Timing0 = rate.timing0();
        param.Timing1 = rate.timing1();
        param.AccMask = 0xFFFFFFFFU;
        param.dataRateCANFD = steps.dataRate();
        if (!startCAN(param)) {
            steps.setRefused(ch);
            return;
        }
        succeeds(api->VCI_ClearBuffer, dev, ch);
    }
    const auto waiting = steps.dataRate() == 0 ? api->VCI_GetReceiveNum : api->KQ_GetReceiveNumCANFD;
    const quint32 count = waiting == nullptr ? 0 : waiting(AdapterDeviceType, dev, ch);
    if (count != 0 && count != AdapterReceiveError) {
        steps.setFound(ch);
    }
}

std::optional<quint32> CANCommunicationPrivate::gateway(quint8 dev, quint8 operation) const
{
    quint32 state = 0;
    return succeeds(api->KQ_OpenCANGateWay, dev, operation, &state) ? std::optional<quint32>(state) : std::nullopt;
}

CANCommunication::CANCommunication(FirmwareQuery firmwareQuery, QObject *parent)
    : CANCommunication(std::make_unique<CANAPI>(CANAPI::defaultLibraryPath()), std::move(firmwareQuery), parent)
{
    watchDevices();
}

CANCommunication::CANCommunication(std::unique_ptr<CANAPI> api, FirmwareQuery firmwareQuery, QObject *parent,
                                   std::chrono::milliseconds firmwareInterval)
    : QObject(parent)
    , m_p(std::make_unique<CANCommunicationPrivate>(std::move(api)))
{
    qRegisterMetaType<QVector<VCI_CAN_OBJ>>("QVector<VCI_CAN_OBJ>");
    qRegisterMetaType<QVector<VCI_CANFD_OBJ>>("QVector<VCI_CANFD_OBJ>");
    qRegisterMetaType<CANAPI *>("CANAPI*");
    m_p->scanTimer = new QTimer(this);
    m_p->scanTimer->setObjectName(QStringLiteral("scanTimer"));
    m_p->scanTimer->setTimerType(Qt::PreciseTimer);
    connect(m_p->scanTimer, &QTimer::timeout, this, &CANCommunication::slot_scanTick);
    const auto announce = [this] {
        QMetaObject::invokeMethod(this, &CANCommunication::sig_showFrimwareUpgrade, Qt::QueuedConnection);
    };
    m_p->firmwareMonitor = std::make_unique<FirmwareMonitor>(*m_p->api, *m_p->scanning, std::move(firmwareQuery),
                                                             announce, firmwareInterval);
}

CANCommunication::~CANCommunication()
{
    m_p->firmwareMonitor.reset(); // first: its thread uses this object, the table and the scan's flag
    endScan();
    if (!m_p->devices.empty()) {
        qWarning("CANCommunication destroyed with %u open device(s)", static_cast<unsigned>(m_p->devices.size()));
        *m_p->scanning = true; // nobody is left to be told what a device answers
        // The workers still call through the table, so it is kept until the process is gone.
        // NOLINTNEXTLINE(bugprone-unhandled-exception-at-new): without memory for this there is nothing left to save
        static auto &leftBehind = *new std::vector<std::unique_ptr<const CANAPI>>;
        leftBehind.push_back(std::move(m_p->api));
    }
}

const CANAPI &CANCommunication::api() const
{
    return *m_p->api;
}

void CANCommunication::watchDevices(std::chrono::milliseconds silence)
{
    m_p->silence = silence;
}

void CANCommunication::tellDeviceLost(quint8 dev, quint32 opening)
{
    // It may have been closed, and even opened again, since its worker has seen it.
    const DeviceEntry *entry = m_p->device(dev);
    if (entry != nullptr && entry->opening == opening) {
        emit sig_deviceLost(dev);
    }
}

bool CANCommunication::isDeviceOpen(quint8 dev) const
{
    return m_p->device(dev) != nullptr;
}

QVector<DevicePresence> CANCommunication::presentDevices()
{
    QVector<DevicePresence> present;
    for (quint8 dev = 0; dev < DeviceCount; ++dev) {
        const bool isOpen = isDeviceOpen(dev);
        if (!isOpen && !m_p->openInLibrary(dev)) {
            continue;
        }
        const DeviceInfo info = m_p->readTexts(dev).value_or(DeviceInfo());
        if (!isOpen) {
            m_p->closeInLibrary(dev);
        }
        present.append({dev, info.model, {0, 1}, {0, 1}, isOpen});
    }
    return present;
}

CANError CANCommunication::openDevice(quint8 dev)
{
    if (isDeviceOpen(dev)) {
        return CAN_DeviceExists;
    }
    if (!m_p->openInLibrary(dev)) {
        return CAN_DeviceOpenFailed;
    }
    DeviceEntry &entry = m_p->devices[dev];
    entry.opening = ++m_p->lastOpening;
    entry.thread = new QThread;
    entry.reader = new CANReadHandle;
    entry.reader->moveToThread(entry.thread);
    entry.reader->setFlagRead(true);
    if (m_p->silence) {
        entry.reader->watchDevice(m_p->scanning, *m_p->silence);
        if (m_p->answering.count(dev) != 0) {
            entry.reader->noteTexts();
        }
    }
    connect(entry.thread, &QThread::finished, entry.reader, &QObject::deleteLater);
    connect(entry.thread, &QThread::finished, entry.thread, &QObject::deleteLater);
    // NOLINTBEGIN(performance-unnecessary-value-param)
    // Queued to this object's thread. The batch is held for a moment instead of passed by: its reference count orders
    // the worker's writing before the reading here also for a race checker that cannot see the lock of Qt's event
    // queue.
    connect(entry.reader, &CANReadHandle::sig_readResultCallback, this,
            [this](quint8 devInd, quint8 canInd, QVector<VCI_CAN_OBJ> obj) {
                emit sig_readResultCallback(devInd, canInd, obj);
            });
    connect(entry.reader, &CANReadHandle::sig_readResultCallbackCANFD, this,
            [this](quint8 devInd, quint8 canInd, QVector<VCI_CANFD_OBJ> obj) {
                emit sig_readResultCallbackCANFD(devInd, canInd, obj);
            });
    // NOLINTEND(performance-unnecessary-value-param)
    connect(entry.reader, &CANReadHandle::sig_deviceLost, this,
            [this, opening = entry.opening](quint8 devInd) { tellDeviceLost(devInd, opening); });
    connect(entry.reader, &CANReadHandle::sig_readFailed, this, &CANCommunication::sig_readFailed);
    QMetaObject::invokeMethod(entry.reader, "readHandle", Qt::QueuedConnection, Q_ARG(quint8, dev),
                              Q_ARG(CANAPI *, m_p->api.get()));
    entry.thread->start(); // after everything that the thread has to find in place
    return CAN_OK;
}

CANError CANCommunication::closeDevice(quint8 dev)
{
    const DeviceEntry *entry = m_p->device(dev);
    if (entry == nullptr) {
        return CAN_DeviceNotExists;
    }
    if (isAnySet(entry->canOpen) || isAnySet(entry->linOpen)) {
        return CAN_ChannelExists;
    }
    entry->reader->setFlagRead(false);
    entry->thread->quit();
    entry->thread->wait();
    m_p->closeInLibrary(dev);
    m_p->devices.erase(dev);
    if (m_p->scan && m_p->scan->device == dev) {
        stopScan();
    }
    return CAN_OK;
}

CANError CANCommunication::openChannel(const ChannelParam &param)
{
    if (param.channel >= ChannelCount) {
        return CAN_ChannelOpenFailed;
    }
    if (openDevice(param.device) == CAN_DeviceOpenFailed) {
        return CAN_DeviceOpenFailed;
    }
    DeviceEntry &entry = m_p->devices.at(param.device); // open now
    if (entry.canOpen[param.channel] != 0) {
        return CAN_ChannelExists;
    }
    // closeDevice() refuses, as is wanted here, while another channel is open.
    if (param.isCANFD && !m_p->offersCANFD(param.device)) {
        closeDevice(param.device);
        return CAN_DeviceNotSupport;
    }
    if (!m_p->startCAN(param)) {
        closeDevice(param.device);
        return CAN_ChannelOpenFailed;
    }
    succeeds(m_p->api->VCI_ClearBuffer, param.device, param.channel);
    entry.canOpen[param.channel] = 1;
    if (param.isCANFD) {
        entry.reader->setFlagCANFD(param.channel, true);
    } else {
        entry.reader->setFlagCAN(param.channel, true);
    }
    if (areAllSet(entry.canOpen) && m_p->gateway(param.device, AdapterGatewayQuery) == 1U) {
        entry.gatewayOn = 1;
        emit sig_gatewayStateChanged(param.device, true);
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
        if (m_p->reopenings.value(key) == request) {
            m_p->reopenings.remove(key);
            openChannel(param);
        }
    });
    return CAN_OK;
}

CANError CANCommunication::closeChannel(quint8 dev, quint8 ch)
{
    // Otherwise the channel of a closed tab would come back, with nobody left to close it.
    m_p->reopenings.remove({dev, ch});
    return stopChannel(dev, ch);
}

CANError CANCommunication::stopChannel(quint8 dev, quint8 ch)
{
    DeviceEntry *entry = m_p->device(dev);
    if (entry == nullptr) {
        return CAN_DeviceNotExists;
    }
    if (ch >= ChannelCount) {
        return CAN_ChannelNotExists;
    }
    succeeds(m_p->api->VCI_ResetCAN, dev, ch);
    entry->canOpen[ch] = 0;
    entry->reader->setFlagCAN(ch, false);
    entry->reader->setFlagCANFD(ch, false);
    if (!isAnySet(entry->canOpen)) {
        closeDevice(dev);
    } else {
        entry->gatewayOn = 0;
        emit sig_gatewayStateChanged(dev, false);
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

CANError CANCommunication::openGateway(quint8 dev)
{
    DeviceEntry *entry = m_p->device(dev);
    if (entry == nullptr || !areAllSet(entry->canOpen)) {
        return CAN_ChannelNotExists;
    }
    std::optional<quint32> state = m_p->gateway(dev, AdapterGatewayQuery);
    if (state == 0U) {
        state = m_p->gateway(dev, AdapterGatewayOn);
        if (state != 1U) {
            return CAN_GatewayOperationFailed;
        }
    }
    if (!state) {
        return CAN_GatewayOperationFailed;
    }
    entry->gatewayOn = 1;
    emit sig_gatewayStateChanged(dev, true);
    return CAN_OK;
}

CANError CANCommunication::closeGateway(quint8 dev)
{
    DeviceEntry *entry = m_p->device(dev);
    if (entry == nullptr || m_p->gateway(dev, AdapterGatewayOff) != 0U) {
        return CAN_GatewayOperationFailed;
    }
    entry->gatewayOn = 0;
    emit sig_gatewayStateChanged(dev, false);
    return CAN_OK;
}

quint8 CANCommunication::isGatewayOn(quint8 dev) const
{
    const DeviceEntry *entry = m_p->device(dev);
    return entry == nullptr ? 0 : entry->gatewayOn;
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
    const bool isOpen = isDeviceOpen(dev);
    if (!isOpen && !m_p->openInLibrary(dev)) {
        return CAN_DeviceOpenFailed;
    }
    const std::optional<DeviceInfo> info = m_p->readTexts(dev);
    if (!isOpen) {
        m_p->closeInLibrary(dev);
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
    if (param.channel >= ChannelCount) {
        return CAN_ChannelOpenFailed;
    }
    if (openDevice(param.device) == CAN_DeviceOpenFailed) {
        return CAN_DeviceOpenFailed;
    }
    DeviceEntry &entry = m_p->devices.at(param.device); // open now
    if (entry.linOpen[param.channel] != 0) {
        return CAN_ChannelExists;
    }
    if (!succeeds(m_p->api->KQ_OpenLIN, param.device, param.channel, param.linBaudRate, param.linChecksum)) {
        closeDevice(param.device); // refuses, as is wanted here, while another channel is open
        return CAN_ChannelOpenFailed;
    }
    entry.linOpen[param.channel] = 1;
    return CAN_OK;
}

CANError CANCommunication::changeLINParam(const ChannelParam &param)
{
    DeviceEntry *entry = m_p->device(param.device);
    if (entry == nullptr) {
        return CAN_DeviceNotExists;
    }
    if (param.channel >= ChannelCount) {
        return CAN_ChannelOpenFailed;
    }
    quint8 &isRefused = entry->linRefused[param.channel];
    if (isRefused == 0 && !succeeds(m_p->api->KQ_CloseLIN, param.device, param.channel)) {
        return CAN_Unknown;
    }
    const bool isOpen =
        succeeds(m_p->api->KQ_OpenLIN, param.device, param.channel, param.linBaudRate, param.linChecksum);
    isRefused = isOpen ? 0 : 1;
    return isOpen ? CAN_OK : CAN_ChannelOpenFailed;
}

CANError CANCommunication::closeLIN(quint8 dev, quint8 ch)
{
    DeviceEntry *entry = m_p->device(dev);
    if (entry == nullptr) {
        return CAN_DeviceNotExists;
    }
    if (ch >= ChannelCount) {
        return CAN_ChannelNotExists;
    }
    succeeds(m_p->api->KQ_CloseLIN, dev, ch);
    entry->linOpen[ch] = 0;
    entry->linRefused[ch] = 0;
    if (!isAnySet(entry->linOpen)) {
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
    return *m_p->scanning;
}

CANError CANCommunication::slot_scanCANBaudrate(quint8 dev, quint8 /*second*/)
{
    if (m_p->scanning->exchange(true)) {
        return CAN_DeviceExists;
    }
    const CANError opened = openDevice(dev);
    const bool isOpen = opened == CAN_OK || opened == CAN_DeviceExists;
    const ChannelFlags canOpen = isOpen ? m_p->devices.at(dev).canOpen : ChannelFlags{};
    if (!isOpen || areAllSet(canOpen)) {
        *m_p->scanning = false;
        return CAN_DeviceOpenFailed;
    }
    const BaudrateScan::ChannelFlags inUse{canOpen[0] != 0, canOpen[1] != 0};
    m_p->scan = RunningScan{++m_p->lastScan, dev, opened == CAN_DeviceExists, BaudrateScan(inUse)};
    m_p->scanTimer->start(ScanTickMs);
    return CAN_OK;
}

void CANCommunication::slot_scanTick()
{
    if (!m_p->scan) {
        return;
    }
    const quint8 dev = m_p->scan->device;
    const ChannelFlags canOpen = m_p->devices.at(dev).canOpen; // closeDevice() ends the scan
    BaudrateScan &steps = m_p->scan->steps;
    for (quint8 ch = 0; ch < ChannelCount; ++ch) {
        if (canOpen[ch] != 0) {
            steps.setInUse(ch); // for good: it may have been opened meanwhile
        }
        if (steps.isToBeTried(ch)) {
            m_p->tryChannel(steps, dev, ch);
        }
    }
    if (steps.areAllInUse()) {
        stopScan();
        return;
    }
    const BaudrateScan::Outcome outcome = steps.endTick();
    const quint32 number = m_p->scan->number;
    if (const auto &report = outcome.report) {
        emit sig_scanResultCallback(report->can1, report->can2, report->index, report->dataRate);
    }
    // Whoever heard of the report may have stopped the scan, or even started another one.
    if (outcome.isEnd && m_p->scan && m_p->scan->number == number) {
        stopScan();
    }
}

void CANCommunication::stopScan()
{
    if (endScan()) {
        emit sig_scanFinish();
    }
}

bool CANCommunication::endScan()
{
    const std::optional<RunningScan> ended = std::exchange(m_p->scan, std::nullopt);
    if (!ended) {
        return false;
    }
    m_p->scanTimer->stop();
    if (!ended->wasOpen) {
        closeDevice(ended->device); // refuses, as is wanted here, when a channel was opened meanwhile
    }
    *m_p->scanning = false;
    return true;
}
