#pragma once

#include "can/WidgetDeviceBase.h"
#include "device/CANError.h"
#include "lin/CTableViewLIN.h"

#include <array>
#include <cstdint>
#include <memory>

class CANCommunication;
class GUI_LINModeDeveloper;
class GUI_LINModeList;
class LINModePage;

namespace Ui {
class GUI_LINDevice;
}

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
    CANError openResult() const { return m_openResult; }
    bool isChannelOpen() const { return openResult() == CAN_OK; }

signals:
    /// From whichever page started (newState false) or stopped (true) its mode: 1 list, 3 monitor, 4 developer.
    void sig_changeBtnEnableState(uint8_t mode, bool newState);

private slots:
    void slot_changeBtnEnableState(uint8_t mode, bool newState);
    void slot_setBtnClicked();
    void slot_addRowItems(const QVector<CTableViewLIN::DataObject> &datas);

private:
    void fillSettings();
    void showRateInForce();
    void addPages();
    void connectSignals();
    void store(const ChannelParam &param);

    CANCommunication &m_communication;
    std::unique_ptr<Ui::GUI_LINDevice> m_ui;
    GUI_LINModeList *m_list = nullptr;
    GUI_LINModeDeveloper *m_developer = nullptr;
    std::array<LINModePage *, 3> m_pages{}; ///< all, in the order of widget_content
    CANError m_openResult = CAN_Unknown;
};
