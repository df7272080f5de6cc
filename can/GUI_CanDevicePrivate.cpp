#include "can/GUI_CanDevicePrivate.h"

#include "capture/GUI_CanAdvancedOpearation.h"
#include "device/CANCommunication.h"
#include "widgets/NumberEntry.h"

#include <QSignalBlocker>

#include <algorithm>

namespace {
constexpr int FoldMs = 500;

/// The item data are the places in the list.
void addItems(QComboBox *combo, const QStringList &texts)
{
    for (const QString &text : texts) {
        combo->addItem(text, combo->count());
    }
}
} // namespace

void GUI_CanDevicePrivate::prepareForm()
{
    prepareFolding();
    cacheText = ui.lbx_cache->text();
    showCacheLimit();
    ui.tableView->setAutoScroll(true);
    setValidators();
    addItems(ui.cbx_frameType, {tr("Standard"), tr("Extend")});
    addItems(ui.cbx_frameFormat, {tr("Data"), tr("Remote")});
    addItems(ui.cbx_protocol, {tr("CAN"), tr("CANFD"), tr("CANFD Speed")});
}

void GUI_CanDevicePrivate::connectSignals()
{
    using Tab = GUI_CanDevice;
    using Manager = CANCommunication;
    QObject::connect(&communication, &Manager::sig_readResultCallback, q, &Tab::slot_readResultCallback);
    QObject::connect(&communication, &Manager::sig_readResultCallbackCANFD, q, &Tab::slot_readResultCallbackCANFD);
    QObject::connect(&communication, &Manager::sig_gatewayStateChanged, q, &Tab::slot_gatewayStateChanged);
    connectErrors();
    connectSending();
    connectFunctions();
}

/// A folded panel is out of Tab's way; the table does not jump when it goes.
void GUI_CanDevicePrivate::prepareFolding()
{
    QSizePolicy policy = ui.widget_content->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    ui.widget_content->setSizePolicy(policy);
    foldAnimation.setTargetObject(ui.widget_content);
    foldAnimation.setPropertyName("maximumHeight");
    foldAnimation.setDuration(FoldMs);
    QObject::connect(&foldAnimation, &QPropertyAnimation::finished, q,
                     [this] { ui.widget_content->setVisible(ui.widget_content->maximumHeight() > 0); });
}

void GUI_CanDevicePrivate::setValidators() const
{
    for (QLineEdit *field : {ui.lbx_frameID, ui.lbx_setFilter}) {
        field->setValidator(q->validator(GUI_CanDevice::HexBlank));
        cleanEntry(field, NumberEntry::Hex);
    }
    for (QLineEdit *field : {ui.lbx_frameOfSend, ui.lbx_sendingCycle, ui.lbx_frameOfSaved, ui.lbx_cache}) {
        field->setValidator(q->validator(GUI_CanDevice::Decimal));
        cleanEntry(field, NumberEntry::Decimal);
    }
}

void GUI_CanDevicePrivate::connectErrors()
{
    QObject::connect(ui.tableView, &CTableViewCAN::sig_unlistedChanged, q, [this] { showErrors(); });
    QObject::connect(&communication, &CANCommunication::sig_sendRefused, q,
                     [this](quint8 devInd, quint8 canInd, quint32 frames) {
                         if (isThisChannel(devInd, canInd)) {
                             m_errors.refused += frames;
                             showErrors();
                         }
                     });
    QObject::connect(&communication, &CANCommunication::sig_readFailed, q, [this](quint8 devInd, quint8 canInd) {
        if (isThisChannel(devInd, canInd)) {
            ++m_errors.receiving;
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
    QObject::connect(&sendTimer, &TickTimer::sig_tick, q, &Tab::slot_sendTimeout);
}

void GUI_CanDevicePrivate::connectFunctions()
{
    using Tab = GUI_CanDevice;
    using Table = CTableViewCAN;
    const auto onClick = [this](QAbstractButton *button, auto slot) {
        QObject::connect(button, &QAbstractButton::clicked, q, slot);
    };
    onClick(ui.btn_sendData, &Tab::slot_sendBtnClicked);
    onClick(ui.btn_stopSending, &Tab::slot_stopSendBtnClicked);
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
    QObject::connect(ui.lbx_cache, &QLineEdit::editingFinished, q, &Tab::slot_cacheLbxEditingFinished);
    // Comes before the end of the editing; also when the number shown was not touched.
    QObject::connect(ui.lbx_cache, &QLineEdit::returnPressed, q, [this] { applyCacheSize(); });
    QObject::connect(ui.tableView, &Table::updateRate, q, &Tab::slot_updateRate);
    // The file may be one whose saving was ended before, and another one is being saved by now.
    QObject::connect(ui.tableView, &Table::sig_realTimeSaveFailed, q, [this] {
        showRealTimeSaving();
        showNotice(tr("File saving failure!"), CNotice::Failure);
    });
}

bool GUI_CanDevicePrivate::isThisChannel(quint8 devInd, quint8 canInd) const
{
    return devInd == q->channelParam().device && canInd == q->channelParam().channel;
}

void GUI_CanDevicePrivate::fillLengths(bool isFdProtocol) const
{
    // The lengths on the way, 0 and 1 among them, would cut the payload.
    const QSignalBlocker blocker(ui.cbx_length);
    const int index = ui.cbx_length->currentIndex();
    ui.cbx_length->clear();
    const QVector<int> lengths = payloadLengths(isFdProtocol);
    for (const int length : lengths) {
        ui.cbx_length->addItem(QString::number(length), length);
    }
    ui.cbx_length->setCurrentIndex(std::min(index, ui.cbx_length->count() - 1));
}

bool GUI_CanDevicePrivate::takeEntry()
{
    const auto complete = [](QLineEdit *field) {
        if (field->text().isEmpty()) {
            field->setText(QStringLiteral("1"));
        }
    };
    complete(ui.lbx_frameID);
    const std::optional<quint32> id = frameIdFromText(ui.lbx_frameID->text(), isExtended());
    if (!id) {
        ui.lbx_frameID->undo();
        return false;
    }
    complete(ui.lbx_frameOfSend);
    complete(ui.lbx_sendingCycle);
    const bool isRemote = ui.cbx_frameFormat->currentData().toInt() != 0;
    const auto protocol = static_cast<quint8>(ui.cbx_protocol->currentData().toInt());
    frame = {*id, isExtended(), isRemote, protocol, ui.lbx_data->payload()};
    isIdIncreasing = ui.chbx_idIncrease->isChecked();
    isDataIncreasing = ui.chbx_dataIncrease->isChecked();
    framesLeft = countFromText(ui.lbx_frameOfSend->text()).value_or(1);
    return true;
}

void GUI_CanDevicePrivate::lockForSending(bool isSending) const
{
    if (sendList != nullptr) {
        sendList->btnStateChanged(!isSending);
    }
    q->slot_changeBtnState(!isSending);
}

void GUI_CanDevicePrivate::clearErrors()
{
    m_errors = {};
    showErrors();
}

void GUI_CanDevicePrivate::applyCacheSize()
{
    const int count = intFromText(ui.lbx_cache->text(), 0);
    if (count > 0) {
        ui.tableView->setCacheSize(count);
    }
    cacheText = QString::number(ui.tableView->cacheSize());
    ui.lbx_cache->setText(cacheText);
    showCacheLimit();
}

/// At first the table takes more than the field shows.
void GUI_CanDevicePrivate::showCacheLimit() const
{
    const QString limit = q->locale().toString(ui.tableView->cacheSize());
    ui.lbx_cache->setToolTip(tr("The table holds at most %1 frames.\nType a number and press Enter to "
                                "change it.")
                                 .arg(limit));
}

void GUI_CanDevicePrivate::showErrors() const
{
    CanTabErrors all = m_errors;
    all.unlisted = ui.tableView->unlistedCount();
    ui.lbx_crc->setText(errorText(all));
    ui.lbx_crc->setCursorPosition(0);
    ui.lbx_crc->setToolTip(errorToolTip(all));
}

void GUI_CanDevicePrivate::showRealTimeSaving() const
{
    ui.btn_realTimeSaving->setText(ui.tableView->isRealTimeSaving() ? tr("Stop") : tr("Real time saving"));
}
