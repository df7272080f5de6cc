#include "lin/LINModePage.h"

#include "device/CANCommunication.h"
#include "lin/LINRecords.h"
#include "widgets/CMessageBox.h"

#include <QPushButton>

LINModePage::LINModePage(LINMode mode, const ChannelParam &param, CANCommunication &communication, QWidget *parent)
    : WidgetDeviceBase(param, parent)
    , m_communication(communication)
    , m_mode(mode)
{
    qRegisterMetaType<uint8_t>("uint8_t"); // as the signal names it, for queued connections
    m_timer.setMakingUp(false);
    connect(&m_timer, &TickTimer::sig_tick, this, &LINModePage::slot_sendTimeoutEvent);
}

void LINModePage::connectRun(QPushButton *start, QPushButton *stop)
{
    m_stop = stop;
    connect(start, &QPushButton::clicked, this, &LINModePage::slot_startBtnClicked);
    connect(stop, &QPushButton::clicked, this, &LINModePage::slot_stopBtnClicked);
}

void LINModePage::slot_changeBtnEnableState(uint8_t mode, bool newState)
{
    enableStartControls(newState);
    if (mode != m_mode) {
        m_stop->setEnabled(newState);
    }
}

bool LINModePage::startRunning()
{
    const ChannelParam &channel = channelParam();
    if (m_communication.changeLINMode(channel.device, channel.channel, m_mode) != CAN_OK) {
        emit sig_showMessageBox(tr("Communication error"), MessageCritical);
        return false;
    }
    m_isRunning = true;
    emit sig_changeBtnEnableState(m_mode, false);
    return true;
}

void LINModePage::stopRunning()
{
    m_timer.stop();
    if (m_isRunning) {
        m_isRunning = false;
        emit sig_changeBtnEnableState(m_mode, true);
    }
}

void LINModePage::transmit(quint8 id, const QByteArray &payload) const
{
    m_communication.transmitLIN(channelParam().device, channelParam().channel, linRecord(id, payload));
}

std::optional<VCI_LIN_OBJ> LINModePage::request(quint8 id) const
{
    VCI_LIN_OBJ record = linRecord(id, {});
    const CANError error = m_communication.receiveLIN(channelParam().device, channelParam().channel, &record);
    return error == CAN_OK && record.DataLen != 0 ? std::optional(record) : std::nullopt;
}
