#include "lin/GUI_LINDevice.h"

#include "device/CANCommunication.h"
#include "lin/GUI_LINModeDeveloper.h"
#include "lin/GUI_LINModeList.h"
#include "lin/GUI_LINModeMonitor.h"
#include "ui_GUI_LINDevice.h"
#include "widgets/CMessageBox.h"
#include "widgets/NumberEntry.h"

GUI_LINDevice::GUI_LINDevice(const ChannelParam &param, CANCommunication &communication, QWidget *parent)
    : WidgetDeviceBase(param, parent)
    , m_communication(communication)
    , m_ui(std::make_unique<Ui::GUI_LINDevice>())
{
    qRegisterMetaType<QVector<CTableViewLIN::DataObject>>();
    m_ui->setupUi(this);
    fillSettings();
    addPages();
    cleanSpinBoxes(this);
    connectSignals();
    m_openResult = communication.openLIN(param);
}

GUI_LINDevice::~GUI_LINDevice()
{
    for (LINModePage *page : m_pages) {
        page->disconnect(this); // a page that ends its run when it is destroyed would find no tab any more
    }
    if (isChannelOpen()) {
        m_communication.closeLIN(channelParam().device, channelParam().channel);
    }
}

void GUI_LINDevice::fillSettings()
{
    m_ui->cbx_checksum->addItem(tr("Standard checksum"), 0);
    m_ui->cbx_checksum->addItem(tr("Enhanced checksum"), 1);
    m_ui->cbx_checksum->setCurrentIndex(m_ui->cbx_checksum->findData(channelParam().linChecksum));
    // A box that wraps would show the opposite bound for a rate beyond one.
    m_ui->spx_baudrate->setValue(
        qBound(m_ui->spx_baudrate->minimum(), int(channelParam().linBaudRate), m_ui->spx_baudrate->maximum()));
    showRateInForce();
}

void GUI_LINDevice::showRateInForce()
{
    m_ui->spx_baudrate->setToolTip(tr("Baudrate in force: %1").arg(channelParam().linBaudRate));
}

void GUI_LINDevice::addPages()
{
    const ChannelParam &param = channelParam();
    m_list = new GUI_LINModeList(param, m_communication, m_ui->widget_content);
    m_developer = new GUI_LINModeDeveloper(param, m_communication, m_ui->widget_content);
    m_pages = {m_list, new GUI_LINModeMonitor(param, m_communication, m_ui->widget_content), m_developer};
    for (LINModePage *page : m_pages) {
        m_ui->widget_content->addWidget(page);
    }
}

void GUI_LINDevice::connectSignals()
{
    using Tab = GUI_LINDevice;
    for (const LINModePage *page : m_pages) {
        connect(page, &LINModePage::sig_showMessageBox, this, &Tab::sig_showMessageBox);
        connect(page, &LINModePage::sig_showNotice, this, &Tab::sig_showNotice);
        connect(page, &LINModePage::sig_changeBtnEnableState, this, &Tab::sig_changeBtnEnableState);
    }
    connect(this, &Tab::sig_changeBtnEnableState, this, &Tab::slot_changeBtnEnableState);
    connect(m_developer, &GUI_LINModeDeveloper::sig_addRowItems, this, &Tab::slot_addRowItems);
    int index = 0;
    for (const QPushButton *button : {m_ui->btn_modeList, m_ui->btn_modeMonitor, m_ui->btn_modeDeveloper}) {
        connect(button, &QPushButton::clicked, this, [this, index] { m_ui->widget_content->setCurrentIndex(index); });
        ++index;
    }
    connect(m_ui->btn_set, &QPushButton::clicked, this, &Tab::slot_setBtnClicked);
}

void GUI_LINDevice::store(const ChannelParam &param)
{
    for (LINModePage *page : m_pages) {
        page->setChannelParam(param);
    }
    setChannelParam(param);
    showRateInForce();
}

void GUI_LINDevice::slot_changeBtnEnableState(uint8_t mode, bool newState)
{
    for (LINModePage *page : m_pages) {
        page->slot_changeBtnEnableState(mode, newState);
    }
    m_ui->btn_set->setEnabled(newState);
    m_ui->spx_baudrate->setEnabled(newState);
    m_ui->cbx_checksum->setEnabled(newState);
}

void GUI_LINDevice::slot_setBtnClicked()
{
    ChannelParam param = channelParam();
    param.linChecksum = static_cast<quint8>(m_ui->cbx_checksum->currentData().toInt());
    param.linBaudRate = static_cast<quint16>(m_ui->spx_baudrate->value());
    const CANError result = m_communication.changeLINParam(param);
    if (result != CAN_OK) {
        if (result == CAN_ChannelOpenFailed) { // the channel is closed now
            m_ui->spx_baudrate->setToolTip(QString());
        }
        emit sig_showMessageBox(tr("Switchover failure"), MessageCritical);
        return;
    }
    store(param);
    emit sig_showMessageBox(tr("Switchover successful"), MessageSuccess);
}

void GUI_LINDevice::slot_addRowItems(const QVector<CTableViewLIN::DataObject> &datas)
{
    m_list->slot_addRowItems(datas);
    m_ui->btn_modeList->setChecked(true);
    m_ui->widget_content->setCurrentWidget(m_list);
}
