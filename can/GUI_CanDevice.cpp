#include "can/GUI_CanDevice.h"

#include "can/GUI_CanDevicePrivate.h"
#include "can/GUI_CanGateWay.h"
#include "capture/CaptureFormat.h"
#include "capture/GUI_CanAdvancedOpearation.h"
#include "capture/GUI_CanSendFile.h"
#include "device/CANCommunication.h"
#include "device/ClockText.h"
#include "widgets/CMessageBox.h"

#include <QSet>
#include <QToolTip>

#include <algorithm>

namespace {
constexpr int ClassicLengthMax = 8;
constexpr int PanelHeight = 155;

/// All frames of a batch share one clock text.
template<typename AdapterFrame>
QVector<CTableViewCAN::DataObject> toRows(const QVector<AdapterFrame> &frames)
{
    const QString systemTime = clockText();
    QVector<CTableViewCAN::DataObject> rows;
    rows.reserve(frames.size());
    for (const AdapterFrame &frame : frames) {
        rows.append(CTableViewCAN::DataObject::received(frame, systemTime));
    }
    return rows;
}

/// A file sender or send list for the tab's channel; a child of the tab.
template<typename Dialog>
Dialog *makeDialog(GUI_CanDevice *tab, CANCommunication &communication, const QString &title)
{
    auto *dialog = new Dialog(tab->channelParam(), communication, tab);
    dialog->setWindowTitle(tab->objectName() + QStringLiteral("  -  ") + title);
    return dialog;
}

void bringUp(QWidget *dialog)
{
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
}

/// A field that cannot be used as it is: its tool tip says what is to be in it.
void complain(QLineEdit *field)
{
    field->setFocus();
    field->selectAll();
    QToolTip::showText(field->mapToGlobal(field->rect().bottomLeft()), field->toolTip(), field);
}
} // namespace

GUI_CanDevice::GUI_CanDevice(const ChannelParam &param, CANCommunication &communication, QWidget *parent)
    : WidgetDeviceBase(param, parent)
    , m_p(std::make_unique<GUI_CanDevicePrivate>(this, communication))
{
    m_p->ui.setupUi(this);
    m_p->prepareForm();
    m_p->connectSignals();
    m_p->openResult = communication.openChannel(param);
    slot_gatewayStateChanged(param.device, communication.isGatewayOn(param.device) != 0);
    slot_changeCANMode(param.isCANFD);
}

GUI_CanDevice::~GUI_CanDevice()
{
    hide(); // while the tab is whole: leaving the field that has the focus calls a slot
    // Likewise: a list that is still running says that it ends.
    delete m_p->sendList;
    delete m_p->sendFile;
    m_p->ui.tableView->realTimeSave(false, QString());
    if (isChannelOpen()) {
        m_p->communication.closeChannel(channelParam().device, channelParam().channel);
    }
}

void GUI_CanDevice::endFiles()
{
    m_p->ui.tableView->endRealTimeSaving();
}

bool GUI_CanDevice::waitForFiles(std::chrono::milliseconds time)
{
    return m_p->ui.tableView->waitForFiles(time);
}

CANError GUI_CanDevice::openResult() const
{
    return m_p->openResult;
}

void GUI_CanDevice::slot_readResultCallback(quint8 devInd, quint8 canInd, const QVector<VCI_CAN_OBJ> &obj)
{
    if (m_p->isThisChannel(devInd, canInd) && !m_p->ui.btn_pauseReceiving->isChecked()) {
        m_p->ui.tableView->append(toRows(obj), true);
    }
}

void GUI_CanDevice::slot_readResultCallbackCANFD(quint8 devInd, quint8 canInd, const QVector<VCI_CANFD_OBJ> &obj)
{
    if (m_p->isThisChannel(devInd, canInd) && !m_p->ui.btn_pauseReceiving->isChecked()) {
        m_p->ui.tableView->append(toRows(obj), true);
    }
}

void GUI_CanDevice::slot_updateRate(int rateT, int rateR)
{
    m_p->ui.lbx_rateT->setText(QStringLiteral("%1 p/s").arg(rateT));
    m_p->ui.lbx_rateR->setText(QStringLiteral("%1 p/s").arg(rateR));
}

void GUI_CanDevice::slot_addTableItem(const CTableViewCAN::DataObject &obj, bool filter)
{
    m_p->ui.tableView->append(obj, filter);
}

void GUI_CanDevice::slot_addTableItems(const QVector<CTableViewCAN::DataObject> &objs, bool filter)
{
    m_p->ui.tableView->append(objs, filter);
}

void GUI_CanDevice::slot_gatewayStateChanged(quint8 devInd, bool state)
{
    if (devInd == channelParam().device) {
        m_p->ui.btn_gatewaySwitch->setText(state ? tr("Close") : tr("Open"));
    }
}

void GUI_CanDevice::slot_changeBtnState(bool enabled)
{
    const Ui::GUI_CanDevice &ui = m_p->ui;
    const std::initializer_list<QWidget *> controls{ui.lbx_data, ui.btn_sendData, ui.btn_sendFile,
                                                    ui.btn_advancedOperation, ui.btn_reset};
    for (QWidget *control : controls) {
        control->setEnabled(enabled);
    }
    emit sig_btnStateChanged(enabled);
}

void GUI_CanDevice::slot_changeCANMode(bool isCANFD)
{
    m_p->ui.cbx_frameFormat->setEnabled(!isCANFD);
    m_p->ui.cbx_protocol->setEnabled(isCANFD);
    m_p->fillLengths(isCANFD && m_p->ui.cbx_protocol->currentData().toInt() != 0);
    m_p->ui.cbx_length->setCurrentIndex(m_p->ui.cbx_length->findData(ClassicLengthMax));
    slot_candataLengthChanged();
}

void GUI_CanDevice::slot_changeCANProtocol(bool isCANFD)
{
    m_p->fillLengths(isCANFD);
    slot_candataLengthChanged();
}

void GUI_CanDevice::slot_candataLengthChanged()
{
    m_p->ui.lbx_data->setLength(m_p->ui.cbx_length->currentData().toInt());
}

void GUI_CanDevice::slot_frameIDTextEdited(const QString &text)
{
    const QString corrected = correctedFrameIdText(text, m_p->isExtended());
    if (corrected != text) {
        m_p->ui.lbx_frameID->setText(corrected);
    }
}

void GUI_CanDevice::slot_sendBtnClicked()
{
    if (!m_p->takeEntry()) {
        m_p->showMessage(tr("Frame ID error, Standard frame valid range: 0x0-0x7FF, Extend frame valid range: "
                            "0x0-0x1FFFFFFF"),
                         MessageCritical);
        return;
    }
    slot_send();
    if (m_p->framesLeft > 1) {
        m_p->lockForSending(true);
        m_p->sendTimer.start(std::max(intFromText(m_p->ui.lbx_sendingCycle->text(), 1), 1));
    }
}

void GUI_CanDevice::slot_sendTimeout()
{
    CanFrameInput &frame = m_p->frame;
    if (m_p->isIdIncreasing) {
        frame.id = incrementedFrameId(frame.id, frame.extended);
    }
    if (m_p->isDataIncreasing) {
        frame.data = incrementedPayload(frame.data);
    }
    slot_send();
    if (--m_p->framesLeft <= 1) {
        m_p->sendTimer.stop();
        m_p->lockForSending(false);
    }
}

/// Sends one frame and lists it, unless listing of sent frames is paused.
void GUI_CanDevice::slot_send()
{
    const auto sent = [this](auto transmit, const auto &record) {
        const ChannelParam &channel = channelParam();
        const CANError error = (m_p->communication.*transmit)(channel.device, channel.channel, &record, 1);
        return CTableViewCAN::DataObject::sent(record, error == CAN_OK, clockText());
    };
    const CTableViewCAN::DataObject row = channelParam().isCANFD
                                              ? sent(&CANCommunication::transmitCANFD, toFdFrame(m_p->frame))
                                              : sent(&CANCommunication::transmit, toClassicFrame(m_p->frame));
    if (!m_p->ui.btn_pause->isChecked()) {
        slot_addTableItem(row, false);
    }
}

void GUI_CanDevice::slot_stopSendBtnClicked()
{
    if (m_p->sendTimer.isActive()) {
        m_p->sendTimer.stop();
        m_p->lockForSending(false);
        m_p->showNotice(tr("Send stopped"), CNotice::Done);
    }
}

void GUI_CanDevice::slot_foldBtnClicked(bool checked)
{
    m_p->foldAnimation.stop();
    m_p->ui.widget_content->show();
    m_p->foldAnimation.setStartValue(m_p->ui.widget_content->height());
    m_p->foldAnimation.setEndValue(checked ? 0 : PanelHeight);
    m_p->foldAnimation.start();
}

void GUI_CanDevice::slot_resetBtnClicked()
{
    if (m_p->communication.reconfigureChannel(channelParam()) == CAN_OK) {
        m_p->showMessage(tr("Device reset"), MessageSuccess);
    } else {
        m_p->showMessage(tr("Device reset failure"), MessageCritical);
    }
}

void GUI_CanDevice::slot_saveBtnClicked()
{
    const int wanted = intFromText(m_p->ui.lbx_frameOfSaved->text(), 0);
    if (wanted == 0) {
        complain(m_p->ui.lbx_frameOfSaved);
        return;
    }
    const QString path = askSavePath(captureSaveFilters());
    if (path.isEmpty()) {
        return;
    }
    const int rows = m_p->ui.tableView->rowCount();
    const int count = std::min(rows, wanted);
    if (m_p->ui.tableView->saveRange(path, rows - count, count)) {
        m_p->showNotice(tr("File saved successfully!"), CNotice::Done);
    } else {
        m_p->showNotice(tr("File saving failure!"), CNotice::Failure);
    }
}

void GUI_CanDevice::slot_realTimeSaveBtnClicked()
{
    CTableViewCAN *table = m_p->ui.tableView;
    if (table->isRealTimeSaving()) {
        table->realTimeSave(false, QString());
        m_p->showRealTimeSaving();
        return;
    }
    const QString path = askSavePath(captureRealTimeFilters());
    if (path.isEmpty()) {
        return;
    }
    if (!CTableViewCAN::isRealTimePath(path)) {
        m_p->showNotice(tr("File saving failure!") + QLatin1Char('\n') +
                            tr("Only .txt and .csv files can be saved in real time."),
                        CNotice::Failure);
    } else if (!table->realTimeSave(true, path)) {
        m_p->showNotice(tr("File saving failure!"), CNotice::Failure);
    }
    m_p->showRealTimeSaving();
}

void GUI_CanDevice::slot_clearBtnClicked()
{
    m_p->ui.tableView->clear();
    m_p->clearErrors();
}

void GUI_CanDevice::slot_setFilterBtnClicked()
{
    QLineEdit *field = m_p->ui.lbx_setFilter;
    if (!m_p->ui.rbtn_enable->isChecked() || field->text().isEmpty()) {
        return;
    }
    m_p->ui.tableView->clearFilterIds();
    if (const auto id = frameIdFromText(field->text(), true)) {
        m_p->ui.tableView->addFilterId(*id);
        return;
    }
    field->setFocus();
    field->selectAll();
    m_p->showMessage(tr("There is no such frame ID, the highest one is 0x1FFFFFFF. No frames are hidden now."),
                     MessageCritical);
}

void GUI_CanDevice::slot_setFilterDisableBtnClicked()
{
    m_p->ui.tableView->clearFilterIds();
}

void GUI_CanDevice::slot_pauseBtnSendClicked(bool checked)
{
    m_p->showNotice(checked ? tr("Suspend CAN sending") : tr("Resume CAN sending"), CNotice::Done);
}

void GUI_CanDevice::slot_pauseBtnReceiveClicked(bool checked)
{
    m_p->showNotice(checked ? tr("Suspend CAN receiving") : tr("Resume CAN receiving"), CNotice::Done);
}

void GUI_CanDevice::slot_cacheLbxEditingFinished()
{
    QLineEdit *field = m_p->ui.lbx_cache;
    if (!field->isModified() && field->text() == m_p->cacheText) {
        return; // passed through, and the table has a size of its own at first
    }
    m_p->applyCacheSize();
}

void GUI_CanDevice::slot_canSendFileBtnClicked()
{
    if (m_p->sendFile == nullptr) {
        m_p->sendFile = makeDialog<GUI_CanSendFile>(this, m_p->communication, tr("Send File"));
        connect(m_p->sendFile, &GUI_CanSendFile::sig_showNotice, this, &GUI_CanDevice::sig_showNotice);
        connect(m_p->sendFile, &GUI_CanSendFile::sig_showMessageBox, this, &GUI_CanDevice::sig_showMessageBox);
    }
    bringUp(m_p->sendFile);
}

void GUI_CanDevice::slot_advancedOperationBtnClicked()
{
    using List = GUI_CanAdvancedOpearation;
    if (m_p->sendList == nullptr) {
        m_p->sendList = makeDialog<List>(this, m_p->communication, tr("List send"));
        connect(m_p->sendList, &List::sig_sendStateChanged, this, &GUI_CanDevice::slot_changeBtnState);
        connect(m_p->sendList, &List::sig_addTableItem, this, &GUI_CanDevice::slot_addTableItem);
        connect(m_p->sendList, &List::sig_addTableItems, this,
                [this](const QVector<CTableViewCAN::DataObject> &rows) { slot_addTableItems(rows); });
    }
    bringUp(m_p->sendList);
}

void GUI_CanDevice::slot_canGateWaySwitchBtnClicked()
{
    const quint8 device = channelParam().device;
    if (m_p->communication.isGatewayOn(device) != 0) {
        m_p->communication.closeGateway(device);
    } else if (m_p->communication.openGateway(device) != CAN_OK) {
        m_p->showMessage(tr("The gateway function fails to be enabled!"), MessageCritical);
    }
}

void GUI_CanDevice::slot_canGateWayFilterBtnClicked()
{
    const auto report = [this](CANError error) {
        if (error == CAN_OK) {
            m_p->showMessage(tr("Successful setting!"), MessageSuccess);
        } else {
            m_p->showMessage(tr("Setup failure, Please check whether the gateway function is enabled!"),
                             MessageCritical);
        }
    };
    const ChannelParam &channel = channelParam();
    QSet<quint32> entries;
    const CANError error = m_p->communication.getGatewayIDFilter(channel.device, channel.channel, entries);
    if (error != CAN_OK) {
        report(error); // an empty list shown instead would replace the one in the adapter
        return;
    }
    auto *dialog = new GUI_CanGateWay(entries, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &GUI_CanGateWay::sig_showMessageBox, this, &GUI_CanDevice::sig_showMessageBox);
    connect(dialog, &QDialog::accepted, this, [this, dialog, report] {
        const ChannelParam &written = channelParam();
        report(m_p->communication.setGatewayIDFilter(written.device, written.channel, dialog->entries()));
    });
    dialog->open();
}
