#pragma once

#include "can/WidgetDeviceBase.h"
#include "capture/CTableViewCAN.h"
#include "device/AdapterRecords.h"

#include <QVector>

#include <memory>

class CANCommunication;
class GUI_CanDevicePrivate;

/// The tab of one CAN channel: opens it, lists what it receives, sends single frames, saves what is listed. Closes the
/// channel when it is destroyed.
class GUI_CanDevice : public WidgetDeviceBase
{
    Q_OBJECT

public:
    /// communication must outlive the tab.
    GUI_CanDevice(const ChannelParam &param, CANCommunication &communication, QWidget *parent = nullptr);
    ~GUI_CanDevice() override;

    /// Whether the channel was opened; a tab without its channel is of no use.
    bool isChannelOpen() const;

public slots:
    void slot_readResultCallback(quint8 devInd, quint8 canInd, const QVector<VCI_CAN_OBJ> &obj);
    void slot_readResultCallbackCANFD(quint8 devInd, quint8 canInd, const QVector<VCI_CANFD_OBJ> &obj);
    void slot_updateRate(int rateT, int rateR);

private slots:
    void slot_changeCANProtocol();
    void slot_candataLengthChanged();
    void slot_frameIDTextEdited(const QString &text);
    void slot_sendBtnClicked();
    void slot_saveBtnClicked();
    void slot_realTimeSaveBtnClicked();
    void slot_realTimeSaveFailed();
    void slot_setFilterBtnClicked();
    void slot_setFilterDisableBtnClicked();
    void slot_pauseBtnSendClicked(bool checked);
    void slot_pauseBtnReceiveClicked(bool checked);
    void slot_cacheLbxEditingFinished();
    void slot_canSendFileBtnClicked();

private:
    friend class GUI_CanDevicePrivate;
    std::unique_ptr<GUI_CanDevicePrivate> m_p;
};
