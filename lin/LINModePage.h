#pragma once

#include "can/WidgetDeviceBase.h"

#include <cstdint>

class CANCommunication;
class LINFrameModel;

/// Modes as sig_changeBtnEnableState names them.
enum LINMode : uint8_t { LINModeList = 1, LINModeMonitor = 3, LINModeDeveloper = 4 };

/// What the pages of the LIN tab have in common: the adapter, the running state and the table's way into a file.
class LINModePage : public WidgetDeviceBase
{
    Q_OBJECT

public:
    /// communication must outlive the page. mode is what this page names in sig_changeBtnEnableState() and what it puts
    /// the adapter into.
    LINModePage(LINMode mode, const ChannelParam &param, CANCommunication &communication, QWidget *parent = nullptr);
    ~LINModePage() override;

    bool isRunning() const;

signals:
    /// newState false: mode has started to run; true: it has stopped. One mode runs at a time.
    void sig_changeBtnEnableState(uint8_t mode, bool newState);

public slots:
    /// Enables or disables this page's own start controls; called for every mode, this page's own among them.
    virtual void slot_changeBtnEnableState(uint8_t mode, bool newState) = 0;

protected:
    CANCommunication &communication() const { return m_communication; }

    /// Puts the adapter into this page's mode and announces that it runs. When the adapter refuses, says so and nothing
    /// else happens: false.
    bool startRunning();
    /// Announces that the mode has stopped; nothing when it does not run. To be called however a run ends.
    void stopRunning();
    /// Asks for a file, writes the table to it and tells how it went. Nothing when the user cancels.
    void saveTable(const LINFrameModel &frames);

private:
    CANCommunication &m_communication;
    const LINMode m_mode;
    bool m_isRunning = false;
};
