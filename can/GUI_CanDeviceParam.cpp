#include "can/GUI_CanDeviceParam.h"

#include "can/CanFrameInput.h"
#include "can/GUI_CanFilterTool.h"
#include "can/GUI_CanScanBaudrate.h"
#include "device/CANBaudrate.h"
#include "device/CANCommunication.h"
#include "ui_GUI_CanDeviceParam.h"
#include "widgets/HexEntry.h"
#include "widgets/NumberEntry.h"

#include <QApplication>
#include <QMetaProperty>
#include <QShowEvent>
#include <QSignalBlocker>

#include <algorithm>

namespace {
constexpr int BaudrateCustom = 0;
constexpr int BaudrateFirst = 3; // 500k bps

/// Entries of the rate tables that are words; the others are shown as they are.
[[maybe_unused]] constexpr const char *RateNames[] = {QT_TRANSLATE_NOOP("GUI_CanDeviceParam", "Custom"),
                                                      QT_TRANSLATE_NOOP("GUI_CanDeviceParam", "None")};

QString displayName(const CANBaudrate &rate)
{
    return GUI_CanDeviceParam::tr(rate.name.toUtf8().constData());
}

quint8 dataOf(const QComboBox *combo)
{
    return static_cast<quint8>(combo->currentData().toUInt());
}
} // namespace

GUI_CanDeviceParam::GUI_CanDeviceParam(CANCommunication &communication, QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::GUI_CanDeviceParam>())
    , m_communication(communication)
{
    m_ui->setupUi(this);
    setFixedSize(size());
    setValidators();
    fillCombos();
    connectSignals();
    m_ui->cbx_baudrate->setCurrentIndex(BaudrateFirst);
    m_acceptedEntries = entries();
}

GUI_CanDeviceParam::~GUI_CanDeviceParam()
{
    // Leaving the field that has the focus calls a slot, for which everything must still be there.
    hide();
}

void GUI_CanDeviceParam::fillCombos()
{
    for (const CANBaudrate &rate : canBaudrates()) {
        m_ui->cbx_baudrate->addItem(displayName(rate), QVariant::fromValue(rate));
    }
    for (const CANBaudrate &rate : canFDDataRates()) {
        m_ui->cbx_baudrateCANFD->addItem(displayName(rate), m_ui->cbx_baudrateCANFD->count());
    }
    m_ui->cbx_operatingMode->addItem(tr("Normal"), 0);
    m_ui->cbx_operatingMode->addItem(tr("Listen"), 1);
    m_ui->cbx_filterMode->addItem(tr("Receive all"), 1);
    m_ui->cbx_checksumLIN->addItem(tr("Standard checksum"), 0);
    m_ui->cbx_checksumLIN->addItem(tr("Enhanced checksum"), 1);
}

void GUI_CanDeviceParam::setValidators()
{
    for (QLineEdit *field : {m_ui->lbx_accCode, m_ui->lbx_accMask}) {
        restrictEntry(field, NumberEntry::PrefixedHex, hexNumberPattern());
    }
    for (QLineEdit *field : {m_ui->lbx_time0, m_ui->lbx_time1}) {
        restrictEntry(field, NumberEntry::Hex, QStringLiteral("[A-Fa-f0-9]{1,2}"));
    }
    restrictEntry(m_ui->lbx_baudrateLIN, NumberEntry::Decimal, QStringLiteral("[0-9]*"));
}

void GUI_CanDeviceParam::connectSignals()
{
    const auto indexChanged = QOverload<int>::of(&QComboBox::currentIndexChanged);
    connect(m_ui->cbx_index, indexChanged, this, [this] { fillChannels(Mode::CAN); });
    connect(m_ui->cbx_indexLIN, indexChanged, this, [this] { fillChannels(Mode::LIN); });
    connect(m_ui->cbx_baudrate, indexChanged, this, [this] { showTiming(); });
    for (const QLineEdit *field : {m_ui->lbx_accCode, m_ui->lbx_accMask, m_ui->lbx_baudrateLIN}) {
        connect(field, &QLineEdit::editingFinished, this, [this] { completeEntries(); });
    }
    connect(m_ui->btn_setup, &QPushButton::clicked, this,
            [this] { showPage(m_shownMode == Mode::CAN ? Mode::LIN : Mode::CAN); });
    connect(m_ui->btn_filterTool, &QPushButton::clicked, this, [this] { openFilterTool(); });
    connect(m_ui->btn_scan, &QPushButton::clicked, this, [this] { openScan(); });
}

GUI_CanDeviceParam::Page GUI_CanDeviceParam::page(Mode mode) const
{
    if (mode == Mode::LIN) {
        return {m_ui->cbx_indexLIN, m_ui->cbx_channelLIN, m_ui->chbx_openAllChannelLIN, m_ui->lbl_noDeviceLIN};
    }
    return {m_ui->cbx_index, m_ui->cbx_channel, m_ui->chbx_openAllChannel, m_ui->lbl_noDevice};
}

/// The caption of the button is written "LIN Setup" before the first switch and "LIN setup" after it.
void GUI_CanDeviceParam::showPage(Mode mode)
{
    m_shownMode = mode;
    m_ui->widget_CAN->setVisible(mode == Mode::CAN);
    m_ui->widget_LIN->setVisible(mode == Mode::LIN);
    m_ui->btn_setup->setText(mode == Mode::LIN ? tr("CAN setup") : tr("LIN setup"));
}

QVector<quint8> GUI_CanDeviceParam::freeChannels(Mode mode, const DevicePresence &device) const
{
    QVector<quint8> channels = mode == Mode::LIN ? device.linChannels : device.canChannels;
    const auto isTaken = [&](quint8 channel) {
        return m_taken.count({mode, device.device, channel}) != 0;
    };
    channels.erase(std::remove_if(channels.begin(), channels.end(), isTaken), channels.end());
    return channels;
}

/// Offers the devices with a free channel, or says why there is none.
void GUI_CanDeviceParam::fillDevices(Mode mode)
{
    const Page shown = page(mode);
    {
        const QSignalBlocker blocker(shown.device);
        shown.device->clear();
        for (const DevicePresence &device : m_present) {
            if (!freeChannels(mode, device).isEmpty()) {
                shown.device->addItem(tr("Device") + QString::number(device.device), device.device);
            }
        }
    }
    fillChannels(mode);
    const bool isAnyFree = shown.device->count() > 0;
    shown.device->setEnabled(isAnyFree);
    shown.channel->setEnabled(isAnyFree);
    shown.noDevice->setVisible(!isAnyFree);
    if (m_present.isEmpty()) {
        shown.noDevice->setText(tr("No adapter found. Connect one and open this dialog again."));
    } else {
        shown.noDevice->setText(mode == Mode::LIN ? tr("All LIN channels are open already.")
                                                  : tr("All CAN channels are open already."));
    }
}

void GUI_CanDeviceParam::fillChannels(Mode mode)
{
    const Page shown = page(mode);
    shown.channel->clear();
    for (const DevicePresence &device : m_present) {
        if (shown.device->count() == 0 || device.device != dataOf(shown.device)) {
            continue;
        }
        for (const quint8 channel : freeChannels(mode, device)) {
            shown.channel->addItem(tr("Channel") + QString::number(channel), channel);
        }
    }
}

/// What is chosen stays chosen as long as it is offered.
void GUI_CanDeviceParam::refillLists()
{
    const QVariantList kept = entries();
    fillDevices(Mode::CAN);
    fillDevices(Mode::LIN);
    setEntries(kept);
}

/// Takes as long as the adapters take to answer.
void GUI_CanDeviceParam::lookForDevices()
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    m_present = m_communication.presentDevices();
    QApplication::restoreOverrideCursor();
}

/// Where the focus was when the dialog was closed, and which button that made the default one, is of no use any more.
void GUI_CanDeviceParam::startAtFirstField()
{
    for (QWidget *field : entryWidgets()) {
        if (field->isVisibleTo(this) && field->isEnabled()) {
            field->setFocus();
            break;
        }
    }
    m_ui->btn_ok->setDefault(true);
}

QVector<quint8> GUI_CanDeviceParam::chosenChannels() const
{
    const Page shown = page(m_shownMode);
    QVector<quint8> channels;
    for (int i = 0; i < shown.channel->count(); ++i) {
        if (shown.openAll->isChecked() || i == shown.channel->currentIndex()) {
            channels.append(static_cast<quint8>(shown.channel->itemData(i).toUInt()));
        }
    }
    return channels;
}

/// The device chosen. When all channels are open none can be, and the scan of any device says what is the matter.
std::optional<quint8> GUI_CanDeviceParam::scanDevice() const
{
    if (m_ui->cbx_index->count() > 0) {
        return dataOf(m_ui->cbx_index);
    }
    return m_present.isEmpty() ? std::nullopt : std::optional<quint8>(m_present.constFirst().device);
}

void GUI_CanDeviceParam::showTiming()
{
    const bool isCustom = m_ui->cbx_baudrate->currentIndex() == BaudrateCustom;
    m_ui->lbx_time0->setEnabled(isCustom);
    m_ui->lbx_time1->setEnabled(isCustom);
    if (!isCustom) {
        const auto rate = m_ui->cbx_baudrate->currentData().value<CANBaudrate>();
        m_ui->lbx_time0->setText(hexNumber(rate.timing0(), 2));
        m_ui->lbx_time1->setText(hexNumber(rate.timing1(), 2));
    }
}

void GUI_CanDeviceParam::openFilterTool()
{
    auto *tool = new GUI_CanFilterTool(m_filterIds, this);
    tool->setAttribute(Qt::WA_DeleteOnClose);
    connect(tool, &QDialog::accepted, this, [this, tool] {
        m_filterIds = tool->ids();
        m_ui->lbx_accCode->setText(acceptanceText(tool->filter().code));
        m_ui->lbx_accMask->setText(acceptanceText(tool->filter().mask));
    });
    tool->open();
}

void GUI_CanDeviceParam::openScan()
{
    auto *scan = new GUI_CanScanBaudrate(m_communication, scanDevice(), this);
    scan->setAttribute(Qt::WA_DeleteOnClose);
    connect(scan, &GUI_CanScanBaudrate::sig_rateFound, this,
            [this](int index, int dataRate) { chooseRate(index, dataRate); });
    scan->open();
}

/// A rate that is not on offer leaves what is chosen.
void GUI_CanDeviceParam::chooseRate(int index, int dataRate)
{
    if (index >= 0 && index < m_ui->cbx_baudrate->count()) {
        m_ui->cbx_baudrate->setCurrentIndex(index);
    }
    const int entry = m_ui->cbx_baudrateCANFD->findData(dataRate);
    if (entry >= 0) {
        m_ui->cbx_baudrateCANFD->setCurrentIndex(entry);
    }
}

CanDeviceParam GUI_CanDeviceParam::readEntries() const
{
    CanDeviceParam chosen;
    chosen.operatingMode = dataOf(m_ui->cbx_operatingMode);
    chosen.filterMode = dataOf(m_ui->cbx_filterMode);
    chosen.timing0 = static_cast<quint8>(numberFromHex(m_ui->lbx_time0->text()).value_or(0));
    chosen.timing1 = static_cast<quint8>(numberFromHex(m_ui->lbx_time1->text()).value_or(0));
    chosen.accCode = numberFromHex(m_ui->lbx_accCode->text()).value_or(CanAcceptanceFilter().code);
    chosen.accMask = numberFromHex(m_ui->lbx_accMask->text()).value_or(CanAcceptanceFilter().mask);
    chosen.dataRateCANFD = dataOf(m_ui->cbx_baudrateCANFD);
    chosen.linChecksum = dataOf(m_ui->cbx_checksumLIN);
    chosen.linBaudRate = linBaudRateFromText(m_ui->lbx_baudrateLIN->text());
    chosen.device = dataOf(page(m_shownMode).device);
    chosen.isLIN = m_shownMode == Mode::LIN ? 1 : 0;
    chosen.channels = chosenChannels();
    return chosen;
}

/// What is no number becomes the number it counts as, so that the user sees it.
void GUI_CanDeviceParam::completeEntries()
{
    const CanDeviceParam counted = readEntries();
    const auto complete = [](QLineEdit *field, const QString &text) {
        if (!numberFromHex(field->text())) {
            field->setText(text);
        }
    };
    complete(m_ui->lbx_accCode, acceptanceText(counted.accCode));
    complete(m_ui->lbx_accMask, acceptanceText(counted.accMask));
    complete(m_ui->lbx_time0, hexNumber(counted.timing0, 2));
    complete(m_ui->lbx_time1, hexNumber(counted.timing1, 2));
    m_ui->lbx_baudrateLIN->setText(QString::number(counted.linBaudRate));
}

/// In an order in which they can be set: a device brings its channels.
QVector<QWidget *> GUI_CanDeviceParam::entryWidgets() const
{
    return {m_ui->cbx_index,      m_ui->cbx_channel,       m_ui->lbx_accCode,         m_ui->lbx_accMask,
            m_ui->cbx_filterMode, m_ui->cbx_operatingMode, m_ui->cbx_baudrate,        m_ui->lbx_time0,
            m_ui->lbx_time1,      m_ui->cbx_baudrateCANFD, m_ui->chbx_openAllChannel, m_ui->cbx_indexLIN,
            m_ui->cbx_channelLIN, m_ui->cbx_checksumLIN,   m_ui->lbx_baudrateLIN,     m_ui->chbx_openAllChannelLIN};
}

/// What the user sees in each entry widget: its text or its check mark.
QVariantList GUI_CanDeviceParam::entries() const
{
    QVariantList values;
    for (const QWidget *widget : entryWidgets()) {
        values.append(widget->metaObject()->userProperty().read(widget));
    }
    return values;
}

/// A device or channel that is not offered any more leaves the first one chosen.
void GUI_CanDeviceParam::setEntries(const QVariantList &values)
{
    const QVector<QWidget *> widgets = entryWidgets();
    for (int i = 0; i < widgets.size(); ++i) {
        widgets.at(i)->metaObject()->userProperty().write(widgets.at(i), values.at(i));
    }
}

void GUI_CanDeviceParam::append(Mode mode, uint8_t id, uint8_t ch)
{
    m_taken.insert({mode, id, ch});
    refillLists();
}

void GUI_CanDeviceParam::remove(Mode mode, uint8_t id, uint8_t ch)
{
    m_taken.erase({mode, id, ch});
    refillLists();
}

/// Once for each time it is shown: a further click may still be on its way when the dialog has closed.
void GUI_CanDeviceParam::accept()
{
    if (!isVisible()) {
        return;
    }
    completeEntries();
    m_param = readEntries();
    m_acceptedEntries = entries();
    m_acceptedMode = m_shownMode;
    QDialog::accept();
}

void GUI_CanDeviceParam::showEvent(QShowEvent *event)
{
    // A window that comes back from the task bar goes on where it was.
    if (!event->spontaneous()) {
        lookForDevices();
        refillLists();
        setEntries(m_acceptedEntries);
        if (m_shownMode != m_acceptedMode) {
            showPage(m_acceptedMode);
        }
        startAtFirstField();
    }
    QDialog::showEvent(event);
}
