#pragma once

#include "lin/LINTablePage.h"

#include <memory>

class GUI_LINModeListPrivate;

/// The page that works off a schedule: up to twenty frames, each sent or requested from a slave, in turn and each with
/// an interval of its own.
class GUI_LINModeList : public LINTablePage
{
    Q_OBJECT

public:
    /// communication must outlive the page.
    GUI_LINModeList(const ChannelParam &param, CANCommunication &communication, QWidget *parent = nullptr);
    ~GUI_LINModeList() override;

protected:
    void enableStartControls(bool enabled) override;
    void slot_startBtnClicked() override;
    /// Serves the frame whose turn it is.
    void slot_sendTimeoutEvent() override;

private:
    friend class GUI_LINModeListPrivate;
    std::unique_ptr<GUI_LINModeListPrivate> m_p;
};
