#pragma once

#include "lin/CTableViewLIN.h"
#include "lin/LINModePage.h"

#include <memory>

class GUI_LINModeMonitorPrivate;

/// Lists the frames seen on the bus, all or those of up to twelve identifiers, until it is stopped.
class GUI_LINModeMonitor : public LINModePage
{
    Q_OBJECT

public:
    /// communication must outlive the page.
    GUI_LINModeMonitor(const ChannelParam &param, CANCommunication &communication, QWidget *parent = nullptr);
    ~GUI_LINModeMonitor() override;

public slots:
    void slot_changeBtnEnableState(uint8_t mode, bool newState) override;
    /// isStaticMode: the frame takes the place of the one with its identifier.
    void slot_addRowItem(const CTableViewLIN::DataObject &frame, bool isStaticMode);

private slots:
    void slot_startBtnClicked();
    void slot_stopBtnClicked();
    void slot_saveBtnClicked();
    void slot_clearBtnClicked();
    void slot_sendTimeoutEvent();

private:
    friend class GUI_LINModeMonitorPrivate;
    std::unique_ptr<GUI_LINModeMonitorPrivate> m_p;
};
