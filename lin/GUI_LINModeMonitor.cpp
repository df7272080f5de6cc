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

class GUI_LINModeMonitorPrivate
{
public:
    void fillForm();
    bool isMonitored(quint8 id) const;

    Ui::GUI_LINModeMonitor ui;
    std::unique_ptr<LINIdPairs> fixedIds;
};

void GUI_LINModeMonitorPrivate::fillForm()
{
    ui.cbx_mode->addItem(GUI_LINModeMonitor::tr("Fixed ID"), FixedIdMode);
    ui.cbx_mode->addItem(GUI_LINModeMonitor::tr("Bus monitoring"), BusMode);
    ui.cbx_modeDisplay->addItem(GUI_LINModeMonitor::tr("Dynamic display"), 0);
    ui.cbx_modeDisplay->addItem(GUI_LINModeMonitor::tr("Static display"), 1);
    fixedIds = std::make_unique<LINIdPairs>(*ui.fixedIdLayout, FixedIds, FixedIdsPerRow);
    fixedIds->setWrapping(true);
    fixedIds->setTabOrderAfter(ui.cbx_modeDisplay);
}

bool GUI_LINModeMonitorPrivate::isMonitored(quint8 id) const
{
    return ui.cbx_mode->currentData().toInt() == BusMode || fixedIds->checkedIds().contains(id);
}

GUI_LINModeMonitor::GUI_LINModeMonitor(const ChannelParam &param, CANCommunication &communication, QWidget *parent)
    : LINTablePage(LINModeMonitor, param, communication, parent)
    , m_p(std::make_unique<GUI_LINModeMonitorPrivate>())
{
    const Ui::GUI_LINModeMonitor &ui = m_p->ui;
    m_p->ui.setupUi(this);
    m_p->fillForm();
    connectRun(ui.btn_start, ui.btn_stop);
    connectTable(ui.tableView, ui.btn_save, ui.btn_clear);
}

GUI_LINModeMonitor::~GUI_LINModeMonitor() = default;

void GUI_LINModeMonitor::enableStartControls(bool enabled)
{
    m_p->ui.btn_start->setEnabled(enabled);
    m_p->ui.btn_save->setEnabled(enabled);
    m_p->ui.cbx_mode->setEnabled(enabled);
    m_p->fixedIds->setEnabled(enabled);
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
    if (m_p->isMonitored(frame.ID)) {
        slot_addRowItem(frame, m_p->ui.cbx_modeDisplay->currentIndex() != 0);
    }
}
