#include "lin/GUI_LINModeMonitor.h"

#include "device/CANCommunication.h"
#include "device/TickTimer.h"
#include "lin/LINFrameModel.h"
#include "lin/LINIdPairs.h"
#include "lin/LINMonitorFilter.h"
#include "lin/LINRecords.h"
#include "ui_GUI_LINModeMonitor.h"

namespace {
constexpr int PollMs = 5;
constexpr int FixedIds = 12;
constexpr int FixedIdsPerRow = 4;

int itemData(LINMonitorMode mode)
{
    return static_cast<int>(mode);
}
} // namespace

class GUI_LINModeMonitorPrivate
{
public:
    explicit GUI_LINModeMonitorPrivate(GUI_LINModeMonitor *page)
        : q(page)
    {
    }

    void fillCombos();
    void addFixedIds();
    void connectSignals();
    LINMonitorMode mode() const { return static_cast<LINMonitorMode>(ui.cbx_mode->currentData().toInt()); }

    GUI_LINModeMonitor *q;
    Ui::GUI_LINModeMonitor ui;
    std::unique_ptr<LINIdPairs> fixedIds;
    TickTimer timer;
};

void GUI_LINModeMonitorPrivate::fillCombos()
{
    ui.cbx_mode->addItem(GUI_LINModeMonitor::tr("Fixed ID"), itemData(LINMonitorMode::FixedId));
    ui.cbx_mode->addItem(GUI_LINModeMonitor::tr("Bus monitoring"), itemData(LINMonitorMode::Bus));
    ui.cbx_modeDisplay->addItem(GUI_LINModeMonitor::tr("Dynamic display"), 0);
    ui.cbx_modeDisplay->addItem(GUI_LINModeMonitor::tr("Static display"), 1);
}

void GUI_LINModeMonitorPrivate::addFixedIds()
{
    fixedIds = std::make_unique<LINIdPairs>(*ui.fixedIdLayout, FixedIds, FixedIdsPerRow);
    fixedIds->setWrapping(true);
    fixedIds->setTabOrderAfter(ui.cbx_modeDisplay);
}

void GUI_LINModeMonitorPrivate::connectSignals()
{
    using Page = GUI_LINModeMonitor;
    QObject::connect(ui.btn_start, &QPushButton::clicked, q, &Page::slot_startBtnClicked);
    QObject::connect(ui.btn_stop, &QPushButton::clicked, q, &Page::slot_stopBtnClicked);
    QObject::connect(ui.btn_save, &QPushButton::clicked, q, &Page::slot_saveBtnClicked);
    QObject::connect(ui.btn_clear, &QPushButton::clicked, q, &Page::slot_clearBtnClicked);
    QObject::connect(&timer, &TickTimer::sig_tick, q, &Page::slot_sendTimeoutEvent);
}

GUI_LINModeMonitor::GUI_LINModeMonitor(const ChannelParam &param, CANCommunication &communication, QWidget *parent)
    : LINModePage(LINModeMonitor, param, communication, parent)
    , m_p(std::make_unique<GUI_LINModeMonitorPrivate>(this))
{
    m_p->ui.setupUi(this);
    m_p->fillCombos();
    m_p->addFixedIds();
    m_p->connectSignals();
    m_p->timer.setMakingUp(false);
}

GUI_LINModeMonitor::~GUI_LINModeMonitor() = default;

void GUI_LINModeMonitor::slot_changeBtnEnableState(uint8_t mode, bool newState)
{
    m_p->ui.btn_start->setEnabled(newState);
    m_p->ui.btn_save->setEnabled(newState);
    m_p->ui.cbx_mode->setEnabled(newState);
    m_p->fixedIds->setEnabled(newState);
    if (mode != LINModeMonitor) {
        m_p->ui.btn_stop->setEnabled(newState);
    }
}

void GUI_LINModeMonitor::slot_addRowItem(const CTableViewLIN::DataObject &frame, bool isStaticMode)
{
    m_p->ui.tableView->addRow(frame, isStaticMode, channelParam().linChecksum);
}

void GUI_LINModeMonitor::slot_startBtnClicked()
{
    if (!isRunning() && startRunning()) {
        m_p->ui.tableView->clearRows();
        m_p->timer.start(PollMs);
    }
}

void GUI_LINModeMonitor::slot_stopBtnClicked()
{
    m_p->timer.stop();
    stopRunning();
}

void GUI_LINModeMonitor::slot_saveBtnClicked()
{
    saveTable(m_p->ui.tableView->frames());
}

void GUI_LINModeMonitor::slot_clearBtnClicked()
{
    m_p->ui.tableView->clearRows();
}

void GUI_LINModeMonitor::slot_sendTimeoutEvent()
{
    VCI_LIN_OBJ record{};
    const ChannelParam &channel = channelParam();
    if (communication().receiveLINBySlave(channel.device, channel.channel, &record) != CAN_OK || record.DataLen == 0) {
        return;
    }
    const CTableViewLIN::DataObject frame = monitoredLINFrame(record, clockText());
    if (isLINFrameMonitored(m_p->mode(), m_p->fixedIds->checkedIds(), frame.ID)) {
        slot_addRowItem(frame, m_p->ui.cbx_modeDisplay->currentIndex() != 0);
    }
}
