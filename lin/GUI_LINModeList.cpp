#include "lin/GUI_LINModeList.h"

#include "ui_GUI_LINModeList.h"

class GUI_LINModeListPrivate
{
public:
    Ui::GUI_LINModeList ui;
};

GUI_LINModeList::GUI_LINModeList(const ChannelParam &param, CANCommunication &communication, QWidget *parent)
    : LINModePage(LINModeList, param, communication, parent)
    , m_p(std::make_unique<GUI_LINModeListPrivate>())
{
    m_p->ui.setupUi(this);
}

GUI_LINModeList::~GUI_LINModeList() = default;

void GUI_LINModeList::slot_changeBtnEnableState(uint8_t /*mode*/, bool /*newState*/) {}

void GUI_LINModeList::slot_addRowItem(const CTableViewLIN::DataObject & /*data*/, bool /*isStaticMode*/) {}

void GUI_LINModeList::slot_addRowItems(const QVector<CTableViewLIN::DataObject> & /*datas*/) {}
