#include "lin/GUI_LINModeMonitor.h"

#include "ui_GUI_LINModeMonitor.h"

class GUI_LINModeMonitorPrivate
{
public:
    Ui::GUI_LINModeMonitor ui;
};

GUI_LINModeMonitor::GUI_LINModeMonitor(const ChannelParam &param, CANCommunication &communication, QWidget *parent)
    : LINModePage(LINModeMonitor, param, communication, parent)
    , m_p(std::make_unique<GUI_LINModeMonitorPrivate>())
{
    m_p->ui.setupUi(this);
}

GUI_LINModeMonitor::~GUI_LINModeMonitor() = default;

void GUI_LINModeMonitor::slot_changeBtnEnableState(uint8_t /*mode*/, bool /*newState*/) {}

void GUI_LINModeMonitor::slot_addRowItem(const CTableViewLIN::DataObject & /*data*/, bool /*isStaticMode*/) {}
