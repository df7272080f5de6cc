#include "lin/GUI_LINDevice.h"

#include "device/CANCommunication.h"
#include "lin/GUI_LINModeDeveloper.h"
#include "lin/GUI_LINModeList.h"
#include "lin/GUI_LINModeMonitor.h"
#include "ui_GUI_LINDevice.h"
#include "widgets/CMessageBox.h"
#include "widgets/NumberEntry.h"

#include <array>

class GUI_LINDevicePrivate
{
public:
    GUI_LINDevicePrivate(GUI_LINDevice *tab, CANCommunication &manager)
        : q(tab)
        , communication(manager)
    {
    }

    void fillSettings();
    void showRateInForce();
    void addPages();
    void connectSignals();
    void store(const ChannelParam &param);

    GUI_LINDevice *q;
    CANCommunication &communication;
    Ui::GUI_LINDevice ui;
    GUI_LINModeList *list = nullptr;
    GUI_LINModeDeveloper *developer = nullptr;
    std::array<LINModePage *, 3> pages{}; ///< all, in the order of widget_content
    CANError openResult = CAN_Unknown;
};

void GUI_LINDevicePrivate::fillSettings()
{
    ui.cbx_checksum->addItem(GUI_LINDevice::tr("Standard checksum"), 0);
    ui.cbx_checksum->addItem(GUI_LINDevice::tr("Enhanced checksum"), 1);
    ui.cbx_checksum->setCurrentIndex(ui.cbx_checksum->findData(q->channelParam().linChecksum));
    // A box that wraps would show the opposite bound for a rate beyond one.
    ui.spx_baudrate->setValue(
        qBound(ui.spx_baudrate->minimum(), int(q->channelParam().linBaudRate), ui.spx_baudrate->maximum()));
    showRateInForce();
}

void GUI_LINDevicePrivate::showRateInForce()
{
    ui.spx_baudrate->setToolTip(GUI_LINDevice::tr("Baudrate in force: %1").arg(q->channelParam().linBaudRate));
}

void GUI_LINDevicePrivate::addPages()
{
    const ChannelParam &param = q->channelParam();
    list = new GUI_LINModeList(param, communication, ui.widget_content);
    developer = new GUI_LINModeDeveloper(param, communication, ui.widget_content);
    pages = {list, new GUI_LINModeMonitor(param, communication, ui.widget_content), developer};
    for (LINModePage *page : pages) {
        ui.widget_content->addWidget(page);
    }
}

void GUI_LINDevicePrivate::connectSignals()
{
    using Tab = GUI_LINDevice;
    for (const LINModePage *page : pages) {
        QObject::connect(page, &LINModePage::sig_showMessageBox, q, &Tab::sig_showMessageBox);
        QObject::connect(page, &LINModePage::sig_showNotice, q, &Tab::sig_showNotice);
        QObject::connect(page, &LINModePage::sig_changeBtnEnableState, q, &Tab::sig_changeBtnEnableState);
    }
    QObject::connect(q, &Tab::sig_changeBtnEnableState, q, &Tab::slot_changeBtnEnableState);
    QObject::connect(developer, &GUI_LINModeDeveloper::sig_addRowItems, q, &Tab::slot_addRowItems);
    int index = 0;
    for (const QPushButton *button : {ui.btn_modeList, ui.btn_modeMonitor, ui.btn_modeDeveloper}) {
        QObject::connect(button, &QPushButton::clicked, q,
                         [this, index] { ui.widget_content->setCurrentIndex(index); });
        ++index;
    }
    QObject::connect(ui.btn_set, &QPushButton::clicked, q, &Tab::slot_setBtnClicked);
}

void GUI_LINDevicePrivate::store(const ChannelParam &param)
{
    for (LINModePage *page : pages) {
        page->setChannelParam(param);
    }
    q->setChannelParam(param);
    showRateInForce();
}

GUI_LINDevice::GUI_LINDevice(const ChannelParam &param, CANCommunication &communication, QWidget *parent)
    : WidgetDeviceBase(param, parent)
    , m_p(std::make_unique<GUI_LINDevicePrivate>(this, communication))
{
    qRegisterMetaType<QVector<CTableViewLIN::DataObject>>();
    m_p->ui.setupUi(this);
    m_p->fillSettings();
    m_p->addPages();
    cleanSpinBoxes(this);
    m_p->connectSignals();
    m_p->openResult = communication.openLIN(param);
}

GUI_LINDevice::~GUI_LINDevice()
{
    for (LINModePage *page : m_p->pages) {
        page->disconnect(this); // a page that ends its run when it is destroyed would find no tab any more
    }
    if (isChannelOpen()) {
        m_p->communication.closeLIN(channelParam().device, channelParam().channel);
    }
}

CANError GUI_LINDevice::openResult() const
{
    return m_p->openResult;
}

void GUI_LINDevice::slot_changeBtnEnableState(uint8_t mode, bool newState)
{
    for (LINModePage *page : m_p->pages) {
        page->slot_changeBtnEnableState(mode, newState);
    }
    m_p->ui.btn_set->setEnabled(newState);
    m_p->ui.spx_baudrate->setEnabled(newState);
    m_p->ui.cbx_checksum->setEnabled(newState);
}

void GUI_LINDevice::slot_setBtnClicked()
{
    ChannelParam param = channelParam();
    param.linChecksum = static_cast<quint8>(m_p->ui.cbx_checksum->currentData().toInt());
    param.linBaudRate = static_cast<quint16>(m_p->ui.spx_baudrate->value());
    const CANError result = m_p->communication.changeLINParam(param);
    if (result != CAN_OK) {
        if (result == CAN_ChannelOpenFailed) { // the channel is closed now
            m_p->ui.spx_baudrate->setToolTip(QString());
        }
        emit sig_showMessageBox(tr("Switchover failure"), MessageCritical);
        return;
    }
    m_p->store(param);
    emit sig_showMessageBox(tr("Switchover successful"), MessageSuccess);
}

void GUI_LINDevice::slot_addRowItems(const QVector<CTableViewLIN::DataObject> &datas)
{
    m_p->list->slot_addRowItems(datas);
    m_p->ui.btn_modeList->setChecked(true);
    m_p->ui.widget_content->setCurrentWidget(m_p->list);
}
