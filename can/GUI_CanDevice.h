#pragma once

#include "can/WidgetDeviceBase.h"
#include "capture/CTableViewCAN.h"
#include "device/AdapterRecords.h"
#include "device/CANError.h"

#include <QVector>

#include <chrono>
#include <memory>

class CANCommunication;
class GUI_CanDevicePrivate;

/// The tab of one CAN channel: opens it, lists what it receives, sends frames once or at a cycle, saves what is listed,
/// switches the device's gateway, and opens the send list, the file sender and the gateway filter. Closes the channel
/// when it is destroyed.
class GUI_CanDevice : public WidgetDeviceBase
{
    Q_OBJECT

public:
    /// communication must outlive the tab.
    GUI_CanDevice(const ChannelParam &param, CANCommunication &communication, QWidget *parent = nullptr);
    ~GUI_CanDevice() override;

    /// What opening the channel answered; a tab without its channel is of no use.
    CANError openResult() const;
    bool isChannelOpen() const { return openResult() == CAN_OK; }
    /// Ends saving in real time: what was received so far is on its way into the file. Destroying the tab does it as
    /// well.
    void endFiles();
    /// Waits at most so long for the files that were ended. True when they are complete and on the disk.
    bool waitForFiles(std::chrono::milliseconds time);

signals:
    /// False when a timed send or a list starts, true when it ends.
    void sig_btnStateChanged(bool enabled);

public slots:
    void slot_readResultCallback(quint8 devInd, quint8 canInd, const QVector<VCI_CAN_OBJ> &obj);
    void slot_readResultCallbackCANFD(quint8 devInd, quint8 canInd, const QVector<VCI_CANFD_OBJ> &obj);
    /// List frames that a dialog has sent; filter as in CTableViewCAN::append().
    void slot_addTableItem(const CTableViewCAN::DataObject &obj, bool filter = false);
    void slot_addTableItems(const QVector<CTableViewCAN::DataObject> &objs, bool filter = false);
    void slot_updateRate(int rateT, int rateR);
    void slot_gatewayStateChanged(quint8 devInd, bool state);
    /// Enables or disables what must not be used while frames are being sent.
    void slot_changeBtnState(bool enabled);

private slots:
    void slot_changeCANMode(bool isCANFD);
    void slot_changeCANProtocol(bool isCANFD);
    void slot_candataLengthChanged();
    void slot_frameIDTextEdited(const QString &text);
    void slot_sendBtnClicked();
    void slot_sendTimeout();
    void slot_send();
    void slot_stopSendBtnClicked();
    void slot_foldBtnClicked(bool checked);
    void slot_resetBtnClicked();
    void slot_saveBtnClicked();
    void slot_realTimeSaveBtnClicked();
    void slot_clearBtnClicked();
    void slot_setFilterBtnClicked();
    void slot_setFilterDisableBtnClicked();
    void slot_pauseBtnSendClicked(bool checked);
    void slot_pauseBtnReceiveClicked(bool checked);
    void slot_cacheLbxEditingFinished();
    void slot_canSendFileBtnClicked();
    void slot_advancedOperationBtnClicked();
    void slot_canGateWaySwitchBtnClicked();
    void slot_canGateWayFilterBtnClicked();

private:
    friend class GUI_CanDevicePrivate;
    std::unique_ptr<GUI_CanDevicePrivate> m_p;
};
