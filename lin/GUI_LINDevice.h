#pragma once

#include "can/WidgetDeviceBase.h"
#include "device/CANError.h"
#include "lin/CTableViewLIN.h"

#include <cstdint>
#include <memory>

class CANCommunication;
class GUI_LINDevicePrivate;

/// The tab of one LIN channel: opens it, applies the bus settings and holds the pages of the three modes, of which one
/// runs at a time. Closes the channel when it is destroyed.
class GUI_LINDevice : public WidgetDeviceBase
{
    Q_OBJECT

public:
    /// communication must outlive the tab.
    GUI_LINDevice(const ChannelParam &param, CANCommunication &communication, QWidget *parent = nullptr);
    ~GUI_LINDevice() override;

    /// What opening the channel answered; a tab without its channel is of no use.
    CANError openResult() const;
    bool isChannelOpen() const { return openResult() == CAN_OK; }

signals:
    /// From whichever page started (newState false) or stopped (true) its mode: 1 list, 3 monitor, 4 developer.
    void sig_changeBtnEnableState(uint8_t mode, bool newState);

private slots:
    void slot_changeBtnEnableState(uint8_t mode, bool newState);
    void slot_setBtnClicked();
    void slot_addRowItems(const QVector<CTableViewLIN::DataObject> &datas);

private:
    friend class GUI_LINDevicePrivate;
    std::unique_ptr<GUI_LINDevicePrivate> m_p;
};
