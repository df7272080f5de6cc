#pragma once

#include "lin/LINTablePage.h"

#include <memory>

class LINIdPairs;

namespace Ui {
class GUI_LINModeMonitor;
}

/// Lists the frames seen on the bus, all or those of up to twelve identifiers, until it is stopped.
class GUI_LINModeMonitor : public LINTablePage
{
    Q_OBJECT

public:
    /// communication must outlive the page.
    GUI_LINModeMonitor(const ChannelParam &param, CANCommunication &communication, QWidget *parent = nullptr);
    ~GUI_LINModeMonitor() override;

protected:
    void enableStartControls(bool enabled) override;
    void slot_startBtnClicked() override;
    /// Asks the adapter for a frame.
    void slot_sendTimeoutEvent() override;

private:
    bool isMonitored(quint8 id) const;

    std::unique_ptr<Ui::GUI_LINModeMonitor> m_ui;
    std::unique_ptr<LINIdPairs> m_fixedIds;
};
