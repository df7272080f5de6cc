#include "lin/LINModePage.h"

#include "device/CANCommunication.h"
#include "lin/LINCapture.h"
#include "widgets/CMessageBox.h"

LINModePage::LINModePage(LINMode mode, const ChannelParam &param, CANCommunication &communication, QWidget *parent)
    : WidgetDeviceBase(param, parent)
    , m_communication(communication)
    , m_mode(mode)
{
    qRegisterMetaType<uint8_t>("uint8_t"); // as the signal names it, for queued connections
}

LINModePage::~LINModePage() = default;

bool LINModePage::isRunning() const
{
    return m_isRunning;
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
    if (m_isRunning) {
        m_isRunning = false;
        emit sig_changeBtnEnableState(m_mode, true);
    }
}

void LINModePage::saveTable(const LINFrameModel &frames)
{
    const QString path = askSavePath(tr("Csv File(*.csv)"));
    if (path.isEmpty()) {
        return;
    }
    if (saveLINCapture(path, frames)) {
        emit sig_showMessageBox(tr("Save successfully"), MessageSuccess);
    } else {
        emit sig_showMessageBox(tr("Save failure"), MessageCritical);
    }
}
