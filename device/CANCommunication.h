#pragma once

#include "device/AdapterRecords.h"
#include "device/CANAPI.h"
#include "device/CANError.h"
#include "device/ChannelParam.h"
#include "device/DeviceWatch.h"
#include "device/FirmwareMonitor.h"
#include "device/FirmwareQuery.h"

#include <QObject>
#include <QSet>
#include <QString>
#include <QVector>

#include <bitset>
#include <chrono>
#include <functional>
#include <memory>

class CANCommunicationPrivate;
struct ChannelProblem;
struct OpenDevice;

/// A device that answered, with the channels it offers.
struct DevicePresence
{
    quint8 device = 0;           ///< device index 0..7
    QString model;               ///< model text, empty when it could not be read
    QVector<quint8> canChannels; ///< CAN channel indices
    QVector<quint8> linChannels; ///< LIN channel indices
    bool isOpen = false;         ///< open through this manager
};

/// The one object through which the windows reach the adapter: opens and closes devices and channels, transmits,
/// switches the gateway. Every operation runs on the GUI thread and answers a CANError; received frames arrive by
/// signal from one worker thread per open device. Devices must be closed before this object is destroyed; a running
/// scan ends with it. With a firmware query it watches for a newer firmware of device 0 (FirmwareMonitor), from its
/// construction on.
///
/// A missing library or entry answers like a library that refuses the call. CAN and LIN channel indices are 0 and 1.
class CANCommunication : public QObject
{
    Q_OBJECT

public:
    /// Loads CANAPI::defaultLibraryPath() and watches the devices as watchDevices() does.
    explicit CANCommunication(FirmwareQuery firmwareQuery = {}, QObject *parent = nullptr);
    /// Uses the given table instead (another library path, or entries filled by hand). firmwareInterval is the
    /// monitor's sleep between two checks. The devices are not watched until watchDevices() is called.
    explicit CANCommunication(std::unique_ptr<CANAPI> api, FirmwareQuery firmwareQuery = {}, QObject *parent = nullptr,
                              std::chrono::milliseconds firmwareInterval = FirmwareMonitor::Interval);
    /// Ends the firmware monitor before anything else: within the time that FirmwareMonitor::stop() gives. Closes
    /// nothing. If a device is still open, its worker keeps polling, so the library stays loaded for it.
    ~CANCommunication() override;

    /// The library's table, for its state and the reason why it is unusable.
    const CANAPI &api() const;
    /// Watches every device that is opened from now on until it is closed, for sig_deviceLost. Its worker asks it, when
    /// no frame has come from it for so long (DeviceWatch).
    void watchDevices(std::chrono::milliseconds silence = DeviceWatch::Silence);
    bool isDeviceOpen(quint8 dev) const;
    /// Why the channel did not open last, as far as the library tells.
    ChannelProblem channelProblem(quint8 dev, quint8 ch) const;
    /// Devices 0 to 7 that are there. A closed one is opened and closed again for it; an open one is not touched.
    QVector<DevicePresence> presentDevices();

    /// Opens the device and starts its worker. CAN_DeviceExists, CAN_DeviceOpenFailed.
    CANError openDevice(quint8 dev);
    /// Joins the worker, which takes until the adapter call it is in returns (3000 ms for a receive), and closes the
    /// device. CAN_DeviceNotExists; CAN_ChannelExists while a CAN or LIN channel is open.
    CANError closeDevice(quint8 dev);
    /// Opens the device if need be, then a CAN channel of it; after a failure the device is closed again unless another
    /// channel is open. CAN_DeviceOpenFailed; CAN_ChannelExists; CAN_DeviceNotSupport when CAN FD is asked of a device
    /// or a library without it; CAN_ChannelOpenFailed, also for a channel index above 1.
    CANError openChannel(const ChannelParam &param);
    /// Closes the channel and re-opens it 800 ms later; the later result is not reported. Errors of closeChannel().
    CANError reconfigureChannel(const ChannelParam &param);
    /// Closes a CAN channel, and the device with its last one; a re-opening under way is called off.
    /// CAN_DeviceNotExists; CAN_ChannelNotExists for a channel index above 1.
    CANError closeChannel(quint8 dev, quint8 ch);
    /// Sends count frames. CAN_SendFailed when the adapter accepts fewer.
    CANError transmit(quint8 dev, quint8 ch, const VCI_CAN_OBJ *frames, quint32 count);
    CANError transmitCANFD(quint8 dev, quint8 ch, const VCI_CANFD_OBJ *frames, quint32 count);

    /// Forwards between the device's two CAN channels. CAN_ChannelNotExists unless both are open;
    /// CAN_GatewayOperationFailed.
    CANError openGateway(quint8 dev);
    /// CAN_GatewayOperationFailed, also when the device is not open.
    CANError closeGateway(quint8 dev);
    /// 1 while the gateway forwards, 0 otherwise and for a device that is not open.
    quint8 isGatewayOn(quint8 dev) const;
    /// Identifier words that a channel forwards, 64 at most. CAN_GatewayOperationFailed, also while the gateway is off.
    CANError setGatewayIDFilter(quint8 dev, quint8 ch, const QSet<quint32> &ids);
    /// Replaces ids by the words that the adapter holds. CAN_GatewayOperationFailed leaves ids as they are.
    CANError getGatewayIDFilter(quint8 dev, quint8 ch, QSet<quint32> &ids);
    /// Texts that the device tells of itself, at most 80 characters each; a closed device is opened and closed again
    /// for it. CAN_DeviceOpenFailed, CAN_DeviceNotSupport when they cannot be read; both leave the texts as they are.
    CANError readDeviceInfo(quint8 dev, QString &serial, QString &model, QString &firmware);

    /// Opens the device if need be, then a LIN channel of it; after a failure the device is closed again unless another
    /// channel is open. CAN_DeviceOpenFailed; CAN_ChannelExists; CAN_ChannelOpenFailed, also for a channel index above
    /// 1.
    CANError openLIN(const ChannelParam &param);
    /// Closes and re-opens a LIN channel; one whose last settings were refused is closed already and only opened.
    /// CAN_DeviceNotExists; CAN_Unknown when it cannot be closed; CAN_ChannelOpenFailed, also for a channel index above
    /// 1.
    CANError changeLINParam(const ChannelParam &param);
    /// Closes a LIN channel, and the device with its last one. CAN_DeviceNotExists; CAN_ChannelNotExists for a channel
    /// index above 1.
    CANError closeLIN(quint8 dev, quint8 ch);
    /// CAN_SendFailed.
    CANError changeLINMode(quint8 dev, quint8 ch, quint8 mode);
    /// CAN_SendFailed.
    CANError transmitLIN(quint8 dev, quint8 ch, const VCI_LIN_OBJ &frame);
    /// Asks for the identifier in frame, zero otherwise, and lets the adapter fill it; DataLen 0 means that nothing was
    /// received. CAN_ReadFailed.
    CANError receiveLIN(quint8 dev, quint8 ch, VCI_LIN_OBJ *frame);
    /// The next frame seen on the bus; frame must be zero before. DataLen 0 means that there was none. CAN_ReadFailed.
    CANError receiveLINBySlave(quint8 dev, quint8 ch, VCI_LIN_OBJ *frame);

    /// Whether a scan for bit rates runs. From any thread.
    bool isScanning() const;
    /// Ends the scan as if it were through: the device closed if the scan opened it, sig_scanFinish. Nothing while
    /// there is no scan.
    void stopScan();

public slots:
    /// Searches for the bit rates of the device's two buses: each free channel is initialised with one rate after the
    /// other until frames arrive. Takes 8.6 s at most. Every step sends sig_scanResultCallback, the end sig_scanFinish.
    /// A closed device is opened for it. A channel that is opened meanwhile is left alone from then on; when both are,
    /// or when the device is closed, the scan ends. second has no meaning.
    /// CAN_DeviceExists while a scan runs; CAN_DeviceOpenFailed, also when both channels are open.
    CANError slot_scanCANBaudrate(quint8 dev, quint8 second);

signals:
    /// An open device does not answer any more, as after it was pulled out. Once per opening, and only while that
    /// opening lasts; the device stays open until somebody closes it. Needs watchDevices().
    void sig_deviceLost(quint8 devInd);
    void sig_showMessageBox(const QString &text, int mode);
    /// A newer firmware than that of device 0 is published; once per run.
    void sig_showFrimwareUpgrade();
    void sig_showSoftwareUpgrade();
    void sig_gatewayStateChanged(quint8 devInd, bool state);
    void sig_readResultCallback(quint8 devInd, quint8 canInd, const QVector<VCI_CAN_OBJ> &obj);
    void sig_readResultCallbackCANFD(quint8 devInd, quint8 canInd, const QVector<VCI_CANFD_OBJ> &obj);
    /// One step of a scan. can1, can2: 1 found, 0 found at an earlier step, 2 not found; index in canBaudrates(), 1 to
    /// 9; indexCANFDFre: CAN FD data-rate index, 0 to 5.
    void sig_scanResultCallback(quint8 can1, quint8 can2, quint8 index, quint8 indexCANFDFre);
    void sig_scanFinish();
    /// The adapter refused so many of the CAN frames that were to be sent.
    void sig_sendRefused(quint8 devInd, quint8 canInd, quint32 frames);
    /// The adapter reported an error instead of how many CAN frames wait, or instead of delivering them.
    void sig_readFailed(quint8 devInd, quint8 canInd);

private:
    /// Opens the device if need be, and a channel of it by open(); after a failure the device is closed again unless
    /// another channel is open. isOpen: the device's flags of such channels.
    CANError openOn(const ChannelParam &param, std::bitset<ChannelsPerDevice> OpenDevice::*isOpen,
                    const std::function<CANError()> &open);
    void connectReader(const OpenDevice &entry);
    CANError stopChannel(quint8 dev, quint8 ch);
    CANError answerToSending(quint8 dev, quint8 ch, quint32 accepted, quint32 count);
    void setGatewayOn(quint8 dev, bool isOn);
    /// Ends the scan without a word. False when there is none.
    bool endScan();

    std::unique_ptr<CANCommunicationPrivate> m_p;
};
