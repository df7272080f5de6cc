#include "can/GUI_CanDeviceParam.h"

#include "can/GUI_CanFilterTool.h"
#include "can/GUI_CanScanBaudrate.h"
#include "device/CANBaudrate.h"
#include "device/CANCommunication.h"
#include "ui_GUI_CanDeviceParam.h"
#include "widgets/NumberEntry.h"

#include <QApplication>
#include <QMetaProperty>
#include <QRegularExpressionValidator>
#include <QShowEvent>
#include <QSignalBlocker>

#include <algorithm>
#include <set>
#include <tuple>

namespace {
using Mode = GUI_CanDeviceParam::Mode;

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

class GUI_CanDeviceParamPrivate
{
public:
    /// The controls that are on both pages.
    struct Page
    {
        QComboBox *device;
        QComboBox *channel;
        QCheckBox *openAll;
        QLabel *noDevice;
    };

    GUI_CanDeviceParamPrivate(GUI_CanDeviceParam *dialog, CANCommunication &manager)
        : q(dialog)
        , communication(manager)
    {
    }

    void fillCombos();
    void setValidators() const;
    void connectSignals();
    Page page(Mode mode) const;
    void showPage(Mode mode);
    QVector<quint8> freeChannels(Mode mode, const DevicePresence &device) const;
    void fillDevices(Mode mode) const;
    void fillChannels(Mode mode) const;
    void refillLists() const;
    void lookForDevices();
    void startAtFirstField() const;
    QVector<quint8> chosenChannels() const;
    std::optional<quint8> scanDevice() const;
    void showTiming() const;
    void openFilterTool();
    void openScan() const;
    void chooseRate(int index, int dataRate) const;
    CanDeviceParam readEntries() const;
    void completeEntries() const;
    QVector<QWidget *> entryWidgets() const;
    QVariantList entries() const;
    void setEntries(const QVariantList &values) const;

    GUI_CanDeviceParam *q;
    CANCommunication &communication;
    Ui::GUI_CanDeviceParam ui;
    QVector<DevicePresence> present;                  ///< when the dialog was shown last
    std::set<std::tuple<Mode, quint8, quint8>> taken; ///< kind, device, channel
    QVector<CanIdRange> filterIds;                    ///< list of the filter tool
    Mode shownMode = Mode::CAN;                       ///< whose page is shown
    CanDeviceParam param;                             ///< what was last accepted, also:
    QVariantList acceptedEntries;                     ///< as in the controls
    Mode acceptedMode = Mode::CAN;
};

void GUI_CanDeviceParamPrivate::fillCombos()
{
    for (const CANBaudrate &rate : canBaudrates()) {
        ui.cbx_baudrate->addItem(displayName(rate), QVariant::fromValue(rate));
    }
    for (const CANBaudrate &rate : canFDDataRates()) {
        ui.cbx_baudrateCANFD->addItem(displayName(rate), ui.cbx_baudrateCANFD->count());
    }
    ui.cbx_operatingMode->addItem(GUI_CanDeviceParam::tr("Normal"), 0);
    ui.cbx_operatingMode->addItem(GUI_CanDeviceParam::tr("Listen"), 1);
    ui.cbx_filterMode->addItem(GUI_CanDeviceParam::tr("Receive all"), 1);
    ui.cbx_checksumLIN->addItem(GUI_CanDeviceParam::tr("Standard checksum"), 0);
    ui.cbx_checksumLIN->addItem(GUI_CanDeviceParam::tr("Enhanced checksum"), 1);
}

void GUI_CanDeviceParamPrivate::setValidators() const
{
    const auto restrict = [](QLineEdit *field, const QString &pattern, NumberEntry kind) {
        field->setValidator(new QRegularExpressionValidator(QRegularExpression(pattern), field));
        cleanEntry(field, kind);
    };
    for (QLineEdit *field : {ui.lbx_accCode, ui.lbx_accMask}) {
        restrict(field, hexNumberPattern(), NumberEntry::PrefixedHex);
    }
    for (QLineEdit *field : {ui.lbx_time0, ui.lbx_time1}) {
        restrict(field, QStringLiteral("[A-Fa-f0-9]{1,2}"), NumberEntry::Hex);
    }
    restrict(ui.lbx_baudrateLIN, QStringLiteral("[0-9]*"), NumberEntry::Decimal);
}

void GUI_CanDeviceParamPrivate::connectSignals()
{
    const auto indexChanged = QOverload<int>::of(&QComboBox::currentIndexChanged);
    QObject::connect(ui.cbx_index, indexChanged, q, [this] { fillChannels(Mode::CAN); });
    QObject::connect(ui.cbx_indexLIN, indexChanged, q, [this] { fillChannels(Mode::LIN); });
    QObject::connect(ui.cbx_baudrate, indexChanged, q, [this] { showTiming(); });
    for (const QLineEdit *field : {ui.lbx_accCode, ui.lbx_accMask, ui.lbx_baudrateLIN}) {
        QObject::connect(field, &QLineEdit::editingFinished, q, [this] { completeEntries(); });
    }
    QObject::connect(ui.btn_setup, &QPushButton::clicked, q,
                     [this] { showPage(shownMode == Mode::CAN ? Mode::LIN : Mode::CAN); });
    QObject::connect(ui.btn_filterTool, &QPushButton::clicked, q, [this] { openFilterTool(); });
    QObject::connect(ui.btn_scan, &QPushButton::clicked, q, [this] { openScan(); });
    QObject::connect(ui.btn_ok, &QPushButton::clicked, q, &QDialog::accept);
    QObject::connect(ui.btn_cancel, &QPushButton::clicked, q, &QDialog::reject);
}

GUI_CanDeviceParamPrivate::Page GUI_CanDeviceParamPrivate::page(Mode mode) const
{
    if (mode == Mode::LIN) {
        return {ui.cbx_indexLIN, ui.cbx_channelLIN, ui.chbx_openAllChannelLIN, ui.lbl_noDeviceLIN};
    }
    return {ui.cbx_index, ui.cbx_channel, ui.chbx_openAllChannel, ui.lbl_noDevice};
}

/// The caption of the button is written "LIN Setup" before the first switch and "LIN setup" after it.
void GUI_CanDeviceParamPrivate::showPage(Mode mode)
{
    shownMode = mode;
    ui.widget_CAN->setVisible(mode == Mode::CAN);
    ui.widget_LIN->setVisible(mode == Mode::LIN);
    ui.btn_setup->setText(mode == Mode::LIN ? GUI_CanDeviceParam::tr("CAN setup")
                                            : GUI_CanDeviceParam::tr("LIN setup"));
}

QVector<quint8> GUI_CanDeviceParamPrivate::freeChannels(Mode mode, const DevicePresence &device) const
{
    QVector<quint8> channels = mode == Mode::LIN ? device.linChannels : device.canChannels;
    const auto isTaken = [&](quint8 channel) {
        return taken.count({mode, device.device, channel}) != 0;
    };
    channels.erase(std::remove_if(channels.begin(), channels.end(), isTaken), channels.end());
    return channels;
}

/// Offers the devices with a free channel, or says why there is none.
void GUI_CanDeviceParamPrivate::fillDevices(Mode mode) const
{
    const Page shown = page(mode);
    {
        const QSignalBlocker blocker(shown.device);
        shown.device->clear();
        for (const DevicePresence &device : present) {
            if (!freeChannels(mode, device).isEmpty()) {
                shown.device->addItem(GUI_CanDeviceParam::tr("Device") + QString::number(device.device), device.device);
            }
        }
    }
    fillChannels(mode);
    const bool isAnyFree = shown.device->count() > 0;
    shown.device->setEnabled(isAnyFree);
    shown.channel->setEnabled(isAnyFree);
    shown.noDevice->setVisible(!isAnyFree);
    if (present.isEmpty()) {
        shown.noDevice->setText(GUI_CanDeviceParam::tr("No adapter found. Connect one and open this dialog again."));
    } else {
        shown.noDevice->setText(mode == Mode::LIN ? GUI_CanDeviceParam::tr("All LIN channels are open already.")
                                                  : GUI_CanDeviceParam::tr("All CAN channels are open already."));
    }
}

void GUI_CanDeviceParamPrivate::fillChannels(Mode mode) const
{
    const Page shown = page(mode);
    shown.channel->clear();
    for (const DevicePresence &device : present) {
        if (shown.device->count() == 0 || device.device != dataOf(shown.device)) {
            continue;
        }
        for (const quint8 channel : freeChannels(mode, device)) {
            shown.channel->addItem(GUI_CanDeviceParam::tr("Channel") + QString::number(channel), channel);
        }
    }
}

/// What is chosen stays chosen as long as it is offered.
void GUI_CanDeviceParamPrivate::refillLists() const
{
    const QVariantList kept = entries();
    fillDevices(Mode::CAN);
    fillDevices(Mode::LIN);
    setEntries(kept);
}

/// Takes as long as the adapters take to answer.
void GUI_CanDeviceParamPrivate::lookForDevices()
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    present = communication.presentDevices();
    QApplication::restoreOverrideCursor();
}

/// Where the focus was when the dialog was closed, and which button that made the default one, is of no use any more.
void GUI_CanDeviceParamPrivate::startAtFirstField() const
{
    for (QWidget *field : entryWidgets()) {
        if (field->isVisibleTo(q) && field->isEnabled()) {
            field->setFocus();
            break;
        }
    }
    ui.btn_ok->setDefault(true);
}

QVector<quint8> GUI_CanDeviceParamPrivate::chosenChannels() const
{
    const Page shown = page(shownMode);
    QVector<quint8> channels;
    for (int i = 0; i < shown.channel->count(); ++i) {
        if (shown.openAll->isChecked() || i == shown.channel->currentIndex()) {
            channels.append(static_cast<quint8>(shown.channel->itemData(i).toUInt()));
        }
    }
    return channels;
}

/// The device chosen. When all channels are open none can be, and the scan of any device says what is the matter.
std::optional<quint8> GUI_CanDeviceParamPrivate::scanDevice() const
{
    if (ui.cbx_index->count() > 0) {
        return dataOf(ui.cbx_index);
    }
    return present.isEmpty() ? std::nullopt : std::optional<quint8>(present.constFirst().device);
}

void GUI_CanDeviceParamPrivate::showTiming() const
{
    const bool isCustom = ui.cbx_baudrate->currentIndex() == BaudrateCustom;
    ui.lbx_time0->setEnabled(isCustom);
    ui.lbx_time1->setEnabled(isCustom);
    if (!isCustom) {
        const auto rate = ui.cbx_baudrate->currentData().value<CANBaudrate>();
        ui.lbx_time0->setText(timingText(rate.timing0()));
        ui.lbx_time1->setText(timingText(rate.timing1()));
    }
}

void GUI_CanDeviceParamPrivate::openFilterTool()
{
    auto *tool = new GUI_CanFilterTool(filterIds, q);
    tool->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(tool, &QDialog::accepted, q, [this, tool] {
        filterIds = tool->ids();
        ui.lbx_accCode->setText(acceptanceText(tool->filter().code));
        ui.lbx_accMask->setText(acceptanceText(tool->filter().mask));
    });
    tool->open();
}

void GUI_CanDeviceParamPrivate::openScan() const
{
    auto *scan = new GUI_CanScanBaudrate(communication, scanDevice(), q);
    scan->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(scan, &GUI_CanScanBaudrate::sig_rateFound, q,
                     [this](int index, int dataRate) { chooseRate(index, dataRate); });
    scan->open();
}

/// A rate that is not on offer leaves what is chosen.
void GUI_CanDeviceParamPrivate::chooseRate(int index, int dataRate) const
{
    if (index >= 0 && index < ui.cbx_baudrate->count()) {
        ui.cbx_baudrate->setCurrentIndex(index);
    }
    const int entry = ui.cbx_baudrateCANFD->findData(dataRate);
    if (entry >= 0) {
        ui.cbx_baudrateCANFD->setCurrentIndex(entry);
    }
}

CanDeviceParam GUI_CanDeviceParamPrivate::readEntries() const
{
    CanDeviceParam chosen;
    chosen.operatingMode = dataOf(ui.cbx_operatingMode);
    chosen.filterMode = dataOf(ui.cbx_filterMode);
    chosen.timing0 = static_cast<quint8>(numberFromHex(ui.lbx_time0->text()).value_or(0));
    chosen.timing1 = static_cast<quint8>(numberFromHex(ui.lbx_time1->text()).value_or(0));
    chosen.accCode = numberFromHex(ui.lbx_accCode->text()).value_or(CanAcceptanceFilter().code);
    chosen.accMask = numberFromHex(ui.lbx_accMask->text()).value_or(CanAcceptanceFilter().mask);
    chosen.dataRateCANFD = dataOf(ui.cbx_baudrateCANFD);
    chosen.linChecksum = dataOf(ui.cbx_checksumLIN);
    chosen.linBaudRate = linBaudRateFromText(ui.lbx_baudrateLIN->text());
    chosen.device = dataOf(page(shownMode).device);
    chosen.isLIN = shownMode == Mode::LIN ? 1 : 0;
    chosen.channels = chosenChannels();
    return chosen;
}

/// What is no number becomes the number it counts as, so that the user sees it.
void GUI_CanDeviceParamPrivate::completeEntries() const
{
    const CanDeviceParam counted = readEntries();
    const auto complete = [](QLineEdit *field, const QString &text) {
        if (!numberFromHex(field->text())) {
            field->setText(text);
        }
    };
    complete(ui.lbx_accCode, acceptanceText(counted.accCode));
    complete(ui.lbx_accMask, acceptanceText(counted.accMask));
    complete(ui.lbx_time0, timingText(counted.timing0));
    complete(ui.lbx_time1, timingText(counted.timing1));
    ui.lbx_baudrateLIN->setText(QString::number(counted.linBaudRate));
}

/// In an order in which they can be set: a device brings its channels.
QVector<QWidget *> GUI_CanDeviceParamPrivate::entryWidgets() const
{
    return {ui.cbx_index,      ui.cbx_channel,       ui.lbx_accCode,         ui.lbx_accMask,
            ui.cbx_filterMode, ui.cbx_operatingMode, ui.cbx_baudrate,        ui.lbx_time0,
            ui.lbx_time1,      ui.cbx_baudrateCANFD, ui.chbx_openAllChannel, ui.cbx_indexLIN,
            ui.cbx_channelLIN, ui.cbx_checksumLIN,   ui.lbx_baudrateLIN,     ui.chbx_openAllChannelLIN};
}

/// What the user sees in each entry widget: its text or its check mark.
QVariantList GUI_CanDeviceParamPrivate::entries() const
{
    QVariantList values;
    for (const QWidget *widget : entryWidgets()) {
        values.append(widget->metaObject()->userProperty().read(widget));
    }
    return values;
}

/// A device or channel that is not offered any more leaves the first one chosen.
void GUI_CanDeviceParamPrivate::setEntries(const QVariantList &values) const
{
    const QVector<QWidget *> widgets = entryWidgets();
    for (int i = 0; i < widgets.size(); ++i) {
        widgets.at(i)->metaObject()->userProperty().write(widgets.at(i), values.at(i));
    }
}

GUI_CanDeviceParam::GUI_CanDeviceParam(CANCommunication &communication, QWidget *parent)
    : QDialog(parent)
    , m_p(std::make_unique<GUI_CanDeviceParamPrivate>(this, communication))
{
    m_p->ui.setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setFixedSize(size());
    m_p->ui.widget_LIN->hide();
    m_p->setValidators();
    m_p->fillCombos();
    m_p->connectSignals();
    m_p->ui.cbx_baudrate->setCurrentIndex(BaudrateFirst);
    m_p->acceptedEntries = m_p->entries();
}

GUI_CanDeviceParam::~GUI_CanDeviceParam()
{
    // Leaving the field that has the focus calls a slot, for which everything must still be there.
    hide();
}

const CanDeviceParam &GUI_CanDeviceParam::deviceParam() const
{
    return m_p->param;
}

void GUI_CanDeviceParam::append(Mode mode, uint8_t id, uint8_t ch)
{
    m_p->taken.insert({mode, id, ch});
    m_p->refillLists();
}

void GUI_CanDeviceParam::remove(Mode mode, uint8_t id, uint8_t ch)
{
    m_p->taken.erase({mode, id, ch});
    m_p->refillLists();
}

/// Once for each time it is shown: a further click may still be on its way when the dialog has closed.
void GUI_CanDeviceParam::accept()
{
    if (!isVisible()) {
        return;
    }
    m_p->completeEntries();
    m_p->param = m_p->readEntries();
    m_p->acceptedEntries = m_p->entries();
    m_p->acceptedMode = m_p->shownMode;
    QDialog::accept();
}

void GUI_CanDeviceParam::showEvent(QShowEvent *event)
{
    // A window that comes back from the task bar goes on where it was.
    if (!event->spontaneous()) {
        m_p->lookForDevices();
        m_p->refillLists();
        m_p->setEntries(m_p->acceptedEntries);
        if (m_p->shownMode != m_p->acceptedMode) {
            m_p->showPage(m_p->acceptedMode);
        }
        m_p->startAtFirstField();
    }
    QDialog::showEvent(event);
}
