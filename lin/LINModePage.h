#pragma once

#include "can/WidgetDeviceBase.h"
#include "device/AdapterRecords.h"
#include "device/TickTimer.h"

#include <cstdint>
#include <optional>

class CANCommunication;
class QPushButton;

/// Modes as sig_changeBtnEnableState names them.
enum LINMode : uint8_t { LINModeList = 1, LINModeMonitor = 3, LINModeDeveloper = 4 };

/// What the pages of the LIN tab have in common: the adapter and the running state.
class LINModePage : public WidgetDeviceBase
{
    Q_OBJECT

public:
    /// communication must outlive the page. mode is what this page names in sig_changeBtnEnableState() and what it puts
    /// the adapter into.
    LINModePage(LINMode mode, const ChannelParam &param, CANCommunication &communication, QWidget *parent = nullptr);

    bool isRunning() const { return m_isRunning; }

signals:
    /// newState false: mode has started to run; true: it has stopped. One mode runs at a time.
    void sig_changeBtnEnableState(uint8_t mode, bool newState);

public slots:
    /// Enables or disables this page's own start controls; called for every mode, this page's own among them.
    void slot_changeBtnEnableState(uint8_t mode, bool newState);

protected slots:
    virtual void slot_startBtnClicked() = 0;
    virtual void slot_stopBtnClicked() { stopRunning(); }
    /// A tick of timer().
    virtual void slot_sendTimeoutEvent() = 0;

protected:
    /// To be called once. stop stays enabled while this page's own mode runs.
    void connectRun(QPushButton *start, QPushButton *stop);
    /// The controls that are of no use while a mode runs; that of connectRun() is not among them.
    virtual void enableStartControls(bool enabled) = 0;

    CANCommunication &communication() const { return m_communication; }
    /// The pace of the mode; makes up for nothing.
    TickTimer &timer() { return m_timer; }

    /// Puts the adapter into this page's mode and announces that it runs. When the adapter refuses, says so and nothing
    /// else happens: false.
    bool startRunning();
    /// Stops the timer and announces that the mode has stopped; no announcement when it does not run. To be called
    /// however a run ends.
    void stopRunning();

    /// Sends a frame; whether the adapter takes it is of no interest.
    void transmit(quint8 id, const QByteArray &payload) const;
    /// Asks the slaves for a frame. Nothing when none answers, or the adapter fails.
    std::optional<VCI_LIN_OBJ> request(quint8 id) const;

private:
    CANCommunication &m_communication;
    const LINMode m_mode;
    QPushButton *m_stop = nullptr;
    TickTimer m_timer;
    bool m_isRunning = false;
};
