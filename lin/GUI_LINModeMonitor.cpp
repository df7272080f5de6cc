#include "lin/GUI_LINModeMonitor.h"

#include "device/CANCommunication.h"
#include "lin/LINIdPairs.h"
#include "lin/LINRecords.h"
#include "ui_GUI_LINModeMonitor.h"

namespace {
constexpr int PollMs = 5;
constexpr int FixedIds = 12;
constexpr int FixedIdsPerRow = 4;

/// Which frames are listed; item data.
enum MonitorMode { FixedIdMode, BusMode };
} // namespace

GUI_LINModeMonitor::GUI_LINModeMonitor(const ChannelParam &param, CANCommunication &communication, QWidget *parent)
    : LINTablePage(LINModeMonitor, param, communication, parent)
    , m_ui(std::make_unique<Ui::GUI_LINModeMonitor>())
{
    m_ui->setupUi(this);
    m_ui->cbx_mode->addItem(tr("Fixed ID"), FixedIdMode);
    m_ui->cbx_mode->addItem(tr("Bus monitoring"), BusMode);
    m_ui->cbx_modeDisplay->addItem(tr("Dynamic display"), 0);
    m_ui->cbx_modeDisplay->addItem(tr("Static display"), 1);
    m_fixedIds = std::make_unique<LINIdPairs>(*m_ui->fixedIdLayout, FixedIds, FixedIdsPerRow);
    m_fixedIds->setWrapping(true);
    m_fixedIds->setTabOrderAfter(m_ui->cbx_modeDisplay);
    connectRun(m_ui->btn_start, m_ui->btn_stop);
    connectTable(m_ui->tableView, m_ui->btn_save, m_ui->btn_clear);
}

GUI_LINModeMonitor::~GUI_LINModeMonitor() = default;

bool GUI_LINModeMonitor::isMonitored(quint8 id) const
{
    return m_ui->cbx_mode->currentData().toInt() == BusMode || m_fixedIds->checkedIds().contains(id);
}

void GUI_LINModeMonitor::enableStartControls(bool enabled)
{
    m_ui->btn_start->setEnabled(enabled);
    m_ui->btn_save->setEnabled(enabled);
    m_ui->cbx_mode->setEnabled(enabled);
    m_fixedIds->setEnabled(enabled);
}

void GUI_LINModeMonitor::slot_startBtnClicked()
{
    if (!isRunning() && startRunning()) {
        slot_clearBtnClicked();
        timer().start(PollMs);
    }
}

void GUI_LINModeMonitor::slot_sendTimeoutEvent()
{
    VCI_LIN_OBJ record{};
    const ChannelParam &channel = channelParam();
    if (communication().receiveLINBySlave(channel.device, channel.channel, &record) != CAN_OK || record.DataLen == 0) {
        return;
    }
    const CTableViewLIN::DataObject frame = monitoredLINFrame(record, clockText());
    if (isMonitored(frame.ID)) {
        slot_addRowItem(frame, m_ui->cbx_modeDisplay->currentIndex() != 0);
    }
}
