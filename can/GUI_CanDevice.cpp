#include "can/GUI_CanDevice.h"

#include "can/CanFrameInput.h"
#include "capture/GUI_CanSendFile.h"
#include "device/CANCommunication.h"
#include "ui_GUI_CanDevice.h"
#include "widgets/CNotice.h"

#include <QSignalBlocker>
#include <QTime>

#include <algorithm>
#include <limits>

namespace {
constexpr int NoticeMs = 1500;
constexpr int MessageCritical = 4;

QString clockText()
{
    return QTime::currentTime().toString(QStringLiteral("hh:mm:ss.zzz"));
}

/// A count typed by the user; above the range of int it is the highest int, nothing typed is 0.
int countFromText(const QString &text)
{
    bool isNumber = false;
    const qulonglong count = text.toULongLong(&isNumber);
    if (!isNumber) {
        return text.isEmpty() ? 0 : std::numeric_limits<int>::max();
    }
    return static_cast<int>(std::min<qulonglong>(count, std::numeric_limits<int>::max()));
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
    }

    void openChannel();
    void fillCombos();
    void fillLengths(bool isFdProtocol);
    void connectSignals();
    bool isThisChannel(quint8 devInd, quint8 canInd) const;
    bool isExtended() const { return ui.cbx_frameType->currentData().toInt() != 0; }
    bool checkFrameId();
    CanFrameInput input() const;
    void send(const CanFrameInput &frame);
    void showNotice(const QString &text, int type) const { emit q->sig_showNotice(text, type, NoticeMs); }

    GUI_CanDevice *q;
    CANCommunication &communication;
    Ui::GUI_CanDevice ui;
    GUI_CanSendFile *sendFile = nullptr; ///< a child of the tab, made when it is first asked for
    bool isOpen = false;
};

void GUI_CanDevicePrivate::openChannel()
{
    isOpen = communication.openChannel(q->channelParam()) == CAN_OK;
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
    const bool isCANFD = q->channelParam().isCANFD;
    ui.cbx_frameFormat->setEnabled(!isCANFD);
    ui.cbx_protocol->setEnabled(isCANFD);
    fillLengths(false);
    ui.cbx_length->setCurrentIndex(ui.cbx_length->count() - 1);
    q->slot_candataLengthChanged();
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

void GUI_CanDevicePrivate::connectSignals()
{
    using Tab = GUI_CanDevice;
    using Table = CTableViewCAN;
    QObject::connect(&communication, &CANCommunication::sig_readResultCallback, q, &Tab::slot_readResultCallback);
    QObject::connect(&communication, &CANCommunication::sig_readResultCallbackCANFD, q,
                     &Tab::slot_readResultCallbackCANFD);
    QObject::connect(ui.tableView, &Table::updateRate, q, &Tab::slot_updateRate);
    QObject::connect(ui.tableView, &Table::sig_realTimeSaveFailed, q, &Tab::slot_realTimeSaveFailed);
    QObject::connect(ui.cbx_protocol, QOverload<int>::of(&QComboBox::currentIndexChanged), q,
                     &Tab::slot_changeCANProtocol);
    QObject::connect(ui.cbx_length, QOverload<int>::of(&QComboBox::currentIndexChanged), q,
                     &Tab::slot_candataLengthChanged);
    QObject::connect(ui.lbx_frameID, &QLineEdit::textEdited, q, &Tab::slot_frameIDTextEdited);
    QObject::connect(ui.lbx_cache, &QLineEdit::editingFinished, q, &Tab::slot_cacheLbxEditingFinished);
    QObject::connect(ui.btn_sendData, &QPushButton::clicked, q, &Tab::slot_sendBtnClicked);
    QObject::connect(ui.btn_save, &QPushButton::clicked, q, &Tab::slot_saveBtnClicked);
    QObject::connect(ui.btn_realTimeSaving, &QPushButton::clicked, q, &Tab::slot_realTimeSaveBtnClicked);
    QObject::connect(ui.btn_clear, &QPushButton::clicked, ui.tableView, &Table::clear);
    QObject::connect(ui.btn_pause, &QPushButton::clicked, q, &Tab::slot_pauseBtnSendClicked);
    QObject::connect(ui.btn_pauseReceiving, &QPushButton::clicked, q, &Tab::slot_pauseBtnReceiveClicked);
    QObject::connect(ui.btn_setFilter, &QPushButton::clicked, q, &Tab::slot_setFilterBtnClicked);
    QObject::connect(ui.btn_sendFile, &QPushButton::clicked, q, &Tab::slot_canSendFileBtnClicked);
    QObject::connect(ui.rbtn_disable, &QRadioButton::clicked, q, &Tab::slot_setFilterDisableBtnClicked);
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

CanFrameInput GUI_CanDevicePrivate::input() const
{
    CanFrameInput frame;
    frame.extended = isExtended();
    frame.id = frameIdFromText(ui.lbx_frameID->text(), frame.extended).value_or(0);
    frame.remote = ui.cbx_frameFormat->currentData().toInt() != 0;
    frame.protocol = static_cast<quint8>(ui.cbx_protocol->currentData().toInt());
    frame.data = ui.lbx_data->payload();
    return frame;
}

/// Sends one frame and lists it, unless listing of sent frames is paused.
void GUI_CanDevicePrivate::send(const CanFrameInput &frame)
{
    const ChannelParam &channel = q->channelParam();
    CTableViewCAN::DataObject row;
    if (channel.isCANFD) {
        const VCI_CANFD_OBJ record = toFdFrame(frame);
        const bool accepted = communication.transmitCANFD(channel.device, channel.channel, &record, 1) == CAN_OK;
        row = CTableViewCAN::DataObject::sent(record, accepted, clockText());
    } else {
        const VCI_CAN_OBJ record = toClassicFrame(frame);
        const bool accepted = communication.transmit(channel.device, channel.channel, &record, 1) == CAN_OK;
        row = CTableViewCAN::DataObject::sent(record, accepted, clockText());
    }
    if (!ui.btn_pause->isChecked()) {
        ui.tableView->append(row);
    }
}

GUI_CanDevice::GUI_CanDevice(const ChannelParam &param, CANCommunication &communication, QWidget *parent)
    : WidgetDeviceBase(param, parent)
    , m_p(std::make_unique<GUI_CanDevicePrivate>(this, communication))
{
    m_p->ui.setupUi(this);
    m_p->ui.lbx_frameID->setValidator(hexBlankValidator());
    m_p->ui.lbx_setFilter->setValidator(hexBlankValidator());
    m_p->ui.lbx_frameOfSaved->setValidator(decimalValidator());
    m_p->ui.lbx_cache->setValidator(decimalValidator());
    m_p->ui.tableView->setAutoScroll(true);
    m_p->fillCombos();
    m_p->connectSignals();
    m_p->openChannel();
}

GUI_CanDevice::~GUI_CanDevice()
{
    if (m_p->isOpen) {
        m_p->communication.closeChannel(channelParam().device, channelParam().channel);
    }
}

bool GUI_CanDevice::isChannelOpen() const
{
    return m_p->isOpen;
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

void GUI_CanDevice::slot_changeCANProtocol()
{
    m_p->fillLengths(m_p->ui.cbx_protocol->currentData().toInt() != 0);
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
    if (m_p->checkFrameId()) {
        m_p->send(m_p->input());
    }
}

void GUI_CanDevice::slot_saveBtnClicked()
{
    const QString path = askSavePath(tr("CAN File(*.can);;CANFD File(*.canfd);;Csv File(*.csv);;Text File(*.txt)"));
    if (path.isEmpty()) {
        return;
    }
    const int rows = m_p->ui.tableView->rowCount();
    const int count = std::min(rows, countFromText(m_p->ui.lbx_frameOfSaved->text()));
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
    const QString path = askSavePath(tr("Text File(*.txt);;CSV File(*.csv)"));
    if (path.isEmpty()) {
        return;
    }
    if (table->realTimeSave(true, path)) {
        m_p->ui.btn_realTimeSaving->setText(tr("Stop"));
    } else {
        m_p->showNotice(tr("File saving failure!"), CNotice::Failure);
    }
}

void GUI_CanDevice::slot_realTimeSaveFailed()
{
    m_p->ui.btn_realTimeSaving->setText(tr("Real time saving"));
    m_p->showNotice(tr("File saving failure!"), CNotice::Failure);
}

void GUI_CanDevice::slot_setFilterBtnClicked()
{
    const auto id = frameIdFromText(m_p->ui.lbx_setFilter->text(), true);
    if (!m_p->ui.rbtn_enable->isChecked() || !id) {
        return;
    }
    m_p->ui.tableView->clearFilterIds();
    m_p->ui.tableView->addFilterId(*id);
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
    const int count = countFromText(m_p->ui.lbx_cache->text());
    // Leaving an emptied field must not cost the frames on screen.
    if (m_p->ui.lbx_cache->isModified() && count > 0) {
        m_p->ui.tableView->setCacheSize(count);
    }
    m_p->ui.lbx_cache->setModified(false);
}

void GUI_CanDevice::slot_canSendFileBtnClicked()
{
    if (m_p->sendFile == nullptr) {
        const ChannelParam &channel = channelParam();
        m_p->sendFile = new GUI_CanSendFile(m_p->communication, channel.device, channel.channel, channel.isCANFD, this);
        m_p->sendFile->setWindowTitle(objectName() + QStringLiteral("  -  ") + tr("Send File"));
        connect(m_p->sendFile, &GUI_CanSendFile::sig_showNotice, this, &GUI_CanDevice::sig_showNotice);
        connect(m_p->sendFile, &GUI_CanSendFile::sig_showMessageBox, this, &GUI_CanDevice::sig_showMessageBox);
    }
    m_p->sendFile->show();
    m_p->sendFile->raise();
    m_p->sendFile->activateWindow();
}
