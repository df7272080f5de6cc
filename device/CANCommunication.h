#pragma once

#include "device/AdapterRecords.h"
#include "device/CANAPI.h"
#include "device/CANError.h"
#include "device/ChannelParam.h"
#include "device/FirmwareQuery.h"

#include <QObject>
#include <QSet>
#include <QString>
#include <QVector>

#include <memory>

class CANCommunicationPrivate;

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
/// signal from one worker thread per open device. Devices must be closed before this object is destroyed.
class CANCommunication : public QObject
{
    Q_OBJECT

public:
    /// Loads CANAPI::defaultLibraryPath().
    explicit CANCommunication(FirmwareQuery firmwareQuery = {}, QObject *parent = nullptr);
    /// Uses the given table instead (another library path, or entries filled by hand).
    explicit CANCommunication(std::unique_ptr<CANAPI> api, FirmwareQuery firmwareQuery = {}, QObject *parent = nullptr);
    ~CANCommunication() override;

    /// The library's table, for its state and the reason why it is unusable.
    const CANAPI &api() const;
    bool isDeviceOpen(quint8 dev) const;
    /// Devices 0 to 7 that are there. A closed one is opened and closed again for it; an open one is not touched.
    QVector<DevicePresence> presentDevices();

    CANError openDevice(quint8 dev);
    CANError closeDevice(quint8 dev);
    CANError openChannel(const ChannelParam &param);
    /// Closes the channel and re-opens it 800 ms later; the later result is not reported.
    CANError reconfigureChannel(const ChannelParam &param);
    CANError closeChannel(quint8 dev, quint8 ch);
    CANError transmit(quint8 dev, quint8 ch, const VCI_CAN_OBJ *frames, quint32 count);
    CANError transmitCANFD(quint8 dev, quint8 ch, const VCI_CANFD_OBJ *frames, quint32 count);

    CANError openGateway(quint8 dev);
    CANError closeGateway(quint8 dev);
    quint8 isGatewayOn(quint8 dev) const;
    CANError setGatewayIDFilter(quint8 dev, quint8 ch, const QSet<quint32> &ids);
    CANError getGatewayIDFilter(quint8 dev, quint8 ch, QSet<quint32> &ids);
    CANError readDeviceInfo(quint8 dev, QString &serial, QString &model, QString &firmware);

    CANError openLIN(const ChannelParam &param);
    CANError changeLINParam(const ChannelParam &param);
    CANError closeLIN(quint8 dev, quint8 ch);
    CANError changeLINMode(quint8 dev, quint8 ch, quint8 mode);
    CANError transmitLIN(quint8 dev, quint8 ch, const VCI_LIN_OBJ &frame);
    CANError receiveLIN(quint8 dev, quint8 ch, VCI_LIN_OBJ *frame);
    CANError receiveLINBySlave(quint8 dev, quint8 ch, VCI_LIN_OBJ *frame);

signals:
    void sig_showMessageBox(const QString &text, int mode);
    void sig_showFrimwareUpgrade();
    void sig_showSoftwareUpgrade();
    void sig_gatewayStateChanged(quint8 devInd, bool state);
    void sig_readResultCallback(quint8 devInd, quint8 canInd, const QVector<VCI_CAN_OBJ> &obj);
    void sig_readResultCallbackCANFD(quint8 devInd, quint8 canInd, const QVector<VCI_CANFD_OBJ> &obj);
    void sig_scanResultCallback(quint8 can1, quint8 can2, quint8 index, quint8 indexCANFDFre);
    void sig_scanFinish();

private:
    std::unique_ptr<CANCommunicationPrivate> m_p;
};
