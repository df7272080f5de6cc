#pragma once

#include "lin/CTableViewLIN.h"
#include "lin/LINModePage.h"

#include <memory>

class GUI_LINModeMonitorPrivate;

class GUI_LINModeMonitor : public LINModePage
{
    Q_OBJECT

public:
    /// communication must outlive the page.
    GUI_LINModeMonitor(const ChannelParam &param, CANCommunication &communication, QWidget *parent = nullptr);
    ~GUI_LINModeMonitor() override;

public slots:
    void slot_changeBtnEnableState(uint8_t mode, bool newState) override;
    void slot_addRowItem(const CTableViewLIN::DataObject &data, bool isStaticMode);

private:
    std::unique_ptr<GUI_LINModeMonitorPrivate> m_p;
};
