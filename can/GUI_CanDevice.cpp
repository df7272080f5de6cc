#include "can/GUI_CanDevice.h"

#include "can/CanFrameInput.h"
#include "can/CanTabErrors.h"
#include "can/FrameIncrement.h"
#include "can/GUI_CanGateWay.h"
#include "capture/CaptureFormat.h"
#include "capture/GUI_CanAdvancedOpearation.h"
#include "capture/GUI_CanSendFile.h"
#include "device/CANCommunication.h"
#include "device/ClockText.h"
#include "device/TickTimer.h"
#include "ui_GUI_CanDevice.h"
#include "widgets/CNotice.h"
#include "widgets/NumberEntry.h"

#include <QPropertyAnimation>
#include <QSet>
#include <QSignalBlocker>
#include <QToolTip>

#include <algorithm>
#include <limits>

namespace {
constexpr int NoticeMs = 1500;
constexpr int MessageSuccess = 1;
constexpr int MessageCritical = 4;
constexpr int FoldMs = 500;
constexpr int PanelHeight = 155;
constexpr int ClassicLengthMax = 8;

/// At most the highest int.
int toInt(quint32 count)
{
    return static_cast<int>(std::min<quint32>(count, std::numeric_limits<int>::max()));
}

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
} // namespace

class GUI_CanDevicePrivate
{
public:
    GUI_CanDevicePrivate(GUI_CanDevice *tab, CANCommunication &manager)
        : q(tab)
        , communication(manager)
    {
        foldAnimation.setPropertyName("maximumHeight");
        foldAnimation.setDuration(FoldMs);
    }

    void openChannel();
    void fillCombos();
    void fillLengths(bool isFdProtocol);
    void setValidators() const;
    void connectSignals();
    void connectErrors();
    void connectSending();
    void connectFunctions();
    bool isThisChannel(quint8 devInd, quint8 canInd) const;
    bool isExtended() const { return ui.cbx_frameType->currentData().toInt() != 0; }
    bool checkFrameId();
    void readInput();
    void applyCacheSize();
    void showCacheLimit() const;
    void showErrors() const;
    void startTimedSending(quint32 cycleMs);
    void endTimedSending();
    void prepareDialog(QWidget *dialog, const QString &title) const;
    static void bringUp(QWidget *dialog);
    static void complain(QLineEdit *field);
    void createSendList();
    void writeGatewayFilter(const QSet<quint32> &entries);
    void showGatewayFilterFailure() const;
    void showNotice(const QString &text, int type) const { emit q->sig_showNotice(text, type, NoticeMs); }
    void showMessage(const QString &text, int mode) const { emit q->sig_showMessageBox(text, mode); }

    GUI_CanDevice *q;
    CANCommunication &communication;
    Ui::GUI_CanDevice ui;
    QPropertyAnimation foldAnimation;
    CANError openResult = CAN_DeviceNotExists;
    QString cacheText; ///< as the field showed it before the user edited it
    CanTabErrors errors;

    CanFrameInput frame;    ///< sent at the next tick
    quint32 framesLeft = 0; ///< of the timed sending, the one sent last counted
    bool isIdIncreasing = false;
    bool isDataIncreasing = false;
    TickTimer sendTimer;

    // Children of the tab, made when they are first asked for.
    GUI_CanSendFile *sendFile = nullptr;
    GUI_CanAdvancedOpearation *sendList = nullptr;
};

void GUI_CanDevicePrivate::openChannel()
{
    openResult = communication.openChannel(q->channelParam());
}

void GUI_CanDevicePrivate::fillCombos()
{
    ui.cbx_frameType->addItem(GUI_CanDevice::tr("Standard"), 0);
    ui.cbx_frameType->addItem(GUI_CanDevice::tr("Extend"), 1);
    ui.cbx_frameFormat->addItem(GUI_CanDevice::tr("Data"), 0);
    ui.cbx_frameFormat->addItem(GUI_CanDevice::tr("Remote"), 1);
    ui.cbx_protocol->addItem(GUI_CanDevice::tr("CAN"), 0);
    ui.cbx_protocol->addItem(GUI_CanDevice::tr("CANFD"), 1);
    ui.cbx_protocol->addItem(GUI_CanDevice::tr("CANFD Speed"), 2);
}

void GUI_CanDevicePrivate::fillLengths(bool isFdProtocol)
{
    // The lengths on the way, 0 and 1 among them, would cut the payload.
    const QSignalBlocker blocker(ui.cbx_length);
    const int index = ui.cbx_length->currentIndex();
    ui.cbx_length->clear();
    const QVector<int> lengths = payloadLengths(isFdProtocol);
    for (int length : lengths) {
        ui.cbx_length->addItem(QString::number(length), length);
    }
    ui.cbx_length->setCurrentIndex(std::min(index, ui.cbx_length->count() - 1));
}

void GUI_CanDevicePrivate::setValidators() const
{
    for (QLineEdit *field : {ui.lbx_frameID, ui.lbx_setFilter}) {
        field->setValidator(q->hexBlankValidator());
        cleanEntry(field, NumberEntry::Hex);
    }
    for (QLineEdit *field : {ui.lbx_frameOfSend, ui.lbx_sendingCycle, ui.lbx_frameOfSaved, ui.lbx_cache}) {
        field->setValidator(q->decimalValidator());
        cleanEntry(field, NumberEntry::Decimal);
    }
}

void GUI_CanDevicePrivate::connectSignals()
{
    using Tab = GUI_CanDevice;
    using Table = CTableViewCAN;
    QObject::connect(&communication, &CANCommunication::sig_readResultCallback, q, &Tab::slot_readResultCallback);
    QObject::connect(&communication, &CANCommunication::sig_readResultCallbackCANFD, q,
                     &Tab::slot_readResultCallbackCANFD);
    QObject::connect(&communication, &CANCommunication::sig_gatewayStateChanged, q, &Tab::slot_gatewayStateChanged);
    QObject::connect(ui.tableView, &Table::updateRate, q, &Tab::slot_updateRate);
    QObject::connect(ui.tableView, &Table::sig_realTimeSaveFailed, q, &Tab::slot_realTimeSaveFailed);
    connectErrors();
    connectSending();
    connectFunctions();
}

void GUI_CanDevicePrivate::connectErrors()
{
    QObject::connect(ui.tableView, &CTableViewCAN::sig_unlistedChanged, q, [this] { showErrors(); });
    QObject::connect(&communication, &CANCommunication::sig_sendRefused, q,
                     [this](quint8 devInd, quint8 canInd, quint32 frames) {
                         if (isThisChannel(devInd, canInd)) {
                             errors.refused += frames;
                             showErrors();
                         }
                     });
    QObject::connect(&communication, &CANCommunication::sig_readFailed, q, [this](quint8 devInd, quint8 canInd) {
        if (isThisChannel(devInd, canInd)) {
            ++errors.receiving;
            showErrors();
        }
    });
}

void GUI_CanDevicePrivate::connectSending()
{
    using Tab = GUI_CanDevice;
    const auto indexChanged = QOverload<int>::of(&QComboBox::currentIndexChanged);
    QObject::connect(ui.cbx_protocol, indexChanged, q,
                     [this] { q->slot_changeCANProtocol(ui.cbx_protocol->currentData().toInt() != 0); });
    QObject::connect(ui.cbx_length, indexChanged, q, &Tab::slot_candataLengthChanged);
    QObject::connect(ui.lbx_frameID, &QLineEdit::textEdited, q, &Tab::slot_frameIDTextEdited);
    QObject::connect(ui.lbx_cache, &QLineEdit::editingFinished, q, &Tab::slot_cacheLbxEditingFinished);
    QObject::connect(ui.lbx_cache, &QLineEdit::returnPressed, q, &Tab::slot_cacheLbxReturnPressed);
    QObject::connect(ui.btn_sendData, &QPushButton::clicked, q, &Tab::slot_sendBtnClicked);
    QObject::connect(&sendTimer, &TickTimer::sig_tick, q, &Tab::slot_sendTimeout);
    QObject::connect(ui.btn_stopSending, &QPushButton::clicked, q, &Tab::slot_stopSendBtnClicked);
}

void GUI_CanDevicePrivate::connectFunctions()
{
    using Tab = GUI_CanDevice;
    const auto onClick = [this](QAbstractButton *button, auto slot) {
        QObject::connect(button, &QAbstractButton::clicked, q, slot);
    };
    onClick(ui.btn_fold, &Tab::slot_foldBtnClicked);
    onClick(ui.btn_reset, &Tab::slot_resetBtnClicked);
    onClick(ui.btn_save, &Tab::slot_saveBtnClicked);
    onClick(ui.btn_realTimeSaving, &Tab::slot_realTimeSaveBtnClicked);
    onClick(ui.btn_pause, &Tab::slot_pauseBtnSendClicked);
    onClick(ui.btn_pauseReceiving, &Tab::slot_pauseBtnReceiveClicked);
    onClick(ui.btn_setFilter, &Tab::slot_setFilterBtnClicked);
    onClick(ui.rbtn_disable, &Tab::slot_setFilterDisableBtnClicked);
    onClick(ui.btn_sendFile, &Tab::slot_canSendFileBtnClicked);
    onClick(ui.btn_advancedOperation, &Tab::slot_advancedOperationBtnClicked);
    onClick(ui.btn_gatewaySwitch, &Tab::slot_canGateWaySwitchBtnClicked);
    onClick(ui.btn_gatewayFilter, &Tab::slot_canGateWayFilterBtnClicked);
    onClick(ui.btn_clear, &Tab::slot_clearBtnClicked);
}

bool GUI_CanDevicePrivate::isThisChannel(quint8 devInd, quint8 canInd) const
{
    return devInd == q->channelParam().device && canInd == q->channelParam().channel;
}

/// Completes an empty identifier; takes the last edit back and says why when it is out of range.
bool GUI_CanDevicePrivate::checkFrameId()
{
    if (ui.lbx_frameID->text().isEmpty()) {
        ui.lbx_frameID->setText(QStringLiteral("1"));
    }
    if (frameIdFromText(ui.lbx_frameID->text(), isExtended())) {
        return true;
    }
    ui.lbx_frameID->undo();
    emit q->sig_showMessageBox(GUI_CanDevice::tr("Frame ID error, Standard frame valid range: 0x0-0x7FF, Extend frame "
                                                 "valid range: 0x0-0x1FFFFFFF"),
                               MessageCritical);
    return false;
}

/// Takes over the frame and how it changes from one to the next.
void GUI_CanDevicePrivate::readInput()
{
    frame.extended = isExtended();
    frame.id = frameIdFromText(ui.lbx_frameID->text(), frame.extended).value_or(0);
    frame.remote = ui.cbx_frameFormat->currentData().toInt() != 0;
    frame.protocol = static_cast<quint8>(ui.cbx_protocol->currentData().toInt());
    frame.data = ui.lbx_data->payload();
    isIdIncreasing = ui.chbx_idIncrease->isChecked();
    isDataIncreasing = ui.chbx_dataIncrease->isChecked();
}

/// The number in the field, unless there is none above 0; the field shows the limit in force then.
void GUI_CanDevicePrivate::applyCacheSize()
{
    const quint32 count = countFromText(ui.lbx_cache->text()).value_or(0);
    if (count > 0) {
        ui.tableView->setCacheSize(toInt(count));
    }
    cacheText = QString::number(ui.tableView->cacheSize());
    ui.lbx_cache->setText(cacheText);
    showCacheLimit();
}

/// At first the table takes more than the field shows.
void GUI_CanDevicePrivate::showCacheLimit() const
{
    const QString limit = q->locale().toString(ui.tableView->cacheSize());
    ui.lbx_cache->setToolTip(GUI_CanDevice::tr("The table holds at most %1 frames.\nType a number and press Enter to "
                                               "change it.")
                                 .arg(limit));
}

void GUI_CanDevicePrivate::showErrors() const
{
    CanTabErrors all = errors;
    all.unlisted = ui.tableView->unlistedCount();
    ui.lbx_crc->setText(errorText(all));
    ui.lbx_crc->setCursorPosition(0);
    ui.lbx_crc->setToolTip(errorToolTip(all));
}

void GUI_CanDevicePrivate::startTimedSending(quint32 cycleMs)
{
    if (sendList != nullptr) {
        sendList->btnStateChanged(false);
    }
    q->slot_changeBtnState(false);
    sendTimer.start(std::max(toInt(cycleMs), 1));
}

void GUI_CanDevicePrivate::endTimedSending()
{
    sendTimer.stop();
    q->slot_changeBtnState(true);
    if (sendList != nullptr) {
        sendList->btnStateChanged(true);
    }
}

/// What the file sender and the send list have in common.
void GUI_CanDevicePrivate::prepareDialog(QWidget *dialog, const QString &title) const
{
    dialog->setWindowTitle(q->objectName() + QStringLiteral("  -  ") + title);
}

void GUI_CanDevicePrivate::bringUp(QWidget *dialog)
{
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
}

/// A field that cannot be used as it is: its tool tip says what is to be in it.
void GUI_CanDevicePrivate::complain(QLineEdit *field)
{
    field->setFocus();
    field->selectAll();
    QToolTip::showText(field->mapToGlobal(field->rect().bottomLeft()), field->toolTip(), field);
}

void GUI_CanDevicePrivate::createSendList()
{
    using List = GUI_CanAdvancedOpearation;
    const ChannelParam &channel = q->channelParam();
    sendList = new List(communication, channel.device, channel.channel, channel.isCANFD, q);
    prepareDialog(sendList, GUI_CanDevice::tr("List send"));
    QObject::connect(sendList, &List::sig_sendStateChanged, q, &GUI_CanDevice::slot_changeBtnState);
    QObject::connect(sendList, &List::sig_addTableItem, q, &GUI_CanDevice::slot_addTableItem);
    QObject::connect(sendList, &List::sig_addTableItems, q,
                     [this](const QVector<CTableViewCAN::DataObject> &rows) { q->slot_addTableItems(rows); });
}

void GUI_CanDevicePrivate::showGatewayFilterFailure() const
{
    showMessage(GUI_CanDevice::tr("Setup failure, Please check whether the gateway function is enabled!"),
                MessageCritical);
}

void GUI_CanDevicePrivate::writeGatewayFilter(const QSet<quint32> &entries)
{
    const ChannelParam &channel = q->channelParam();
    if (communication.setGatewayIDFilter(channel.device, channel.channel, entries) == CAN_OK) {
        showMessage(GUI_CanDevice::tr("Successful setting!"), MessageSuccess);
    } else {
        showGatewayFilterFailure();
    }
}

GUI_CanDevice::GUI_CanDevice(const ChannelParam &param, CANCommunication &communication, QWidget *parent)
    : WidgetDeviceBase(param, parent)
    , m_p(std::make_unique<GUI_CanDevicePrivate>(this, communication))
{
    m_p->ui.setupUi(this);
    m_p->foldAnimation.setTargetObject(m_p->ui.widget_content);
    // A folded panel is out of Tab's way; the table does not jump when it goes.
    QSizePolicy panelPolicy = m_p->ui.widget_content->sizePolicy();
    panelPolicy.setRetainSizeWhenHidden(true);
    m_p->ui.widget_content->setSizePolicy(panelPolicy);
    connect(&m_p->foldAnimation, &QPropertyAnimation::finished, this,
            [this] { m_p->ui.widget_content->setVisible(m_p->ui.widget_content->maximumHeight() > 0); });
    m_p->cacheText = m_p->ui.lbx_cache->text();
    m_p->showCacheLimit();
    m_p->ui.tableView->setAutoScroll(true);
    m_p->setValidators();
    m_p->fillCombos();
    m_p->connectSignals();
    m_p->openChannel();
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
    if (!m_p->checkFrameId()) {
        return;
    }
    for (QLineEdit *field : {m_p->ui.lbx_frameOfSend, m_p->ui.lbx_sendingCycle}) {
        if (field->text().isEmpty()) {
            field->setText(QStringLiteral("1"));
        }
    }
    m_p->framesLeft = countFromText(m_p->ui.lbx_frameOfSend->text()).value_or(1);
    m_p->readInput();
    slot_send();
    if (m_p->framesLeft > 1) {
        m_p->startTimedSending(countFromText(m_p->ui.lbx_sendingCycle->text()).value_or(1));
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
        m_p->endTimedSending();
    }
}

/// Sends one frame and lists it, unless listing of sent frames is paused.
void GUI_CanDevice::slot_send()
{
    const ChannelParam &channel = channelParam();
    CTableViewCAN::DataObject row;
    if (channel.isCANFD) {
        const VCI_CANFD_OBJ record = toFdFrame(m_p->frame);
        const CANError error = m_p->communication.transmitCANFD(channel.device, channel.channel, &record, 1);
        row = CTableViewCAN::DataObject::sent(record, error == CAN_OK, clockText());
    } else {
        const VCI_CAN_OBJ record = toClassicFrame(m_p->frame);
        const CANError error = m_p->communication.transmit(channel.device, channel.channel, &record, 1);
        row = CTableViewCAN::DataObject::sent(record, error == CAN_OK, clockText());
    }
    if (!m_p->ui.btn_pause->isChecked()) {
        slot_addTableItem(row, false);
    }
}

void GUI_CanDevice::slot_stopSendBtnClicked()
{
    if (m_p->sendTimer.isActive()) {
        m_p->endTimedSending();
        m_p->showNotice(tr("Send stopped"), CNotice::Done);
    }
}

void GUI_CanDevice::slot_foldBtnClicked(bool checked)
{
    QPropertyAnimation &animation = m_p->foldAnimation;
    animation.stop();
    m_p->ui.widget_content->show();
    animation.setStartValue(m_p->ui.widget_content->height());
    animation.setEndValue(checked ? 0 : PanelHeight);
    animation.start();
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
    const quint32 wanted = countFromText(m_p->ui.lbx_frameOfSaved->text()).value_or(0);
    if (wanted == 0) {
        GUI_CanDevicePrivate::complain(m_p->ui.lbx_frameOfSaved);
        return;
    }
    const QString path = askSavePath(captureSaveFilters());
    if (path.isEmpty()) {
        return;
    }
    const int rows = m_p->ui.tableView->rowCount();
    const int count = std::min(rows, toInt(wanted));
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
        m_p->ui.btn_realTimeSaving->setText(tr("Real time saving"));
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
    } else if (table->realTimeSave(true, path)) {
        m_p->ui.btn_realTimeSaving->setText(tr("Stop"));
    } else {
        m_p->showNotice(tr("File saving failure!"), CNotice::Failure);
    }
}

/// The file may be one whose saving was ended before, and another one is being saved by now.
void GUI_CanDevice::slot_realTimeSaveFailed()
{
    if (!m_p->ui.tableView->isRealTimeSaving()) {
        m_p->ui.btn_realTimeSaving->setText(tr("Real time saving"));
    }
    m_p->showNotice(tr("File saving failure!"), CNotice::Failure);
}

void GUI_CanDevice::slot_clearBtnClicked()
{
    m_p->ui.tableView->clear();
    m_p->errors = {};
    m_p->showErrors();
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

/// Comes before the end of the editing; also when the number shown was not touched.
void GUI_CanDevice::slot_cacheLbxReturnPressed()
{
    m_p->applyCacheSize();
}

void GUI_CanDevice::slot_canSendFileBtnClicked()
{
    if (m_p->sendFile == nullptr) {
        const ChannelParam &channel = channelParam();
        m_p->sendFile = new GUI_CanSendFile(m_p->communication, channel.device, channel.channel, channel.isCANFD, this);
        m_p->prepareDialog(m_p->sendFile, tr("Send File"));
        connect(m_p->sendFile, &GUI_CanSendFile::sig_showNotice, this, &GUI_CanDevice::sig_showNotice);
        connect(m_p->sendFile, &GUI_CanSendFile::sig_showMessageBox, this, &GUI_CanDevice::sig_showMessageBox);
    }
    m_p->bringUp(m_p->sendFile);
}

void GUI_CanDevice::slot_advancedOperationBtnClicked()
{
    if (m_p->sendList == nullptr) {
        m_p->createSendList();
    }
    m_p->bringUp(m_p->sendList);
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
    QSet<quint32> entries;
    if (m_p->communication.getGatewayIDFilter(channelParam().device, channelParam().channel, entries) != CAN_OK) {
        m_p->showGatewayFilterFailure(); // an empty list shown instead would replace the one in the adapter
        return;
    }
    auto *dialog = new GUI_CanGateWay(entries, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &GUI_CanGateWay::sig_showMessageBox, this, &GUI_CanDevice::sig_showMessageBox);
    connect(dialog, &QDialog::accepted, this, [this, dialog] { m_p->writeGatewayFilter(dialog->entries()); });
    dialog->open();
}
