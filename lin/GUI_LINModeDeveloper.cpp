#include "lin/GUI_LINModeDeveloper.h"

#include "ui_GUI_LINModeDeveloper.h"

class GUI_LINModeDeveloperPrivate
{
public:
    Ui::GUI_LINModeDeveloper ui;
};

GUI_LINModeDeveloper::GUI_LINModeDeveloper(const ChannelParam &param, CANCommunication &communication, QWidget *parent)
    : LINModePage(LINModeDeveloper, param, communication, parent)
    , m_p(std::make_unique<GUI_LINModeDeveloperPrivate>())
{
    m_p->ui.setupUi(this);
}

GUI_LINModeDeveloper::~GUI_LINModeDeveloper() = default;

void GUI_LINModeDeveloper::slot_changeBtnEnableState(uint8_t /*mode*/, bool /*newState*/) {}
