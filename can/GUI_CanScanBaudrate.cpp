#include "can/GUI_CanScanBaudrate.h"

#include "device/BaudrateScan.h"
#include "device/CANBaudrate.h"
#include "device/CANCommunication.h"
#include "ui_GUI_CanScanBaudrate.h"
#include "widgets/CNotice.h"

#include <QColor>
#include <QHeaderView>
#include <QHideEvent>
#include <QStandardItemModel>

#include <array>

namespace {
constexpr int NoticeMs = 1000;
constexpr int RowHeight = 20;
constexpr int HeaderHeight = 27; ///< leaves room for 12 whole rows
constexpr std::array<int, 1 + BaudrateScan::ChannelCount> ColumnWidths{100, 200, 200};
constexpr QRgb EffectiveColour = 0xFF55B155;

bool isFound(quint8 result)
{
    return result == BaudrateScanReport::FoundNow || result == BaudrateScanReport::FoundBefore;
}

QStandardItem *channelItem(quint8 result)
{
    auto *item = new QStandardItem;
    if (result == BaudrateScanReport::FoundNow) {
        item->setText(GUI_CanScanBaudrate::tr("Effective baudrate"));
        item->setForeground(QColor(EffectiveColour));
    } else if (!isFound(result)) {
        item->setText(GUI_CanScanBaudrate::tr("Invalid baudrate"));
    }
    return item;
}

/// The scan tries more data rates than are on offer.
QString dataRateName(int dataRate)
{
    return dataRate < canFDDataRates().size() ? canFDDataRates().at(dataRate).name
                                              : QStringLiteral("#%1").arg(dataRate);
}

/// For the tool tip; nothing for classic CAN.
QString dataRateText(int dataRate)
{
    return dataRate == 0 ? QString() : GUI_CanScanBaudrate::tr("CANFD baudrate: %1").arg(dataRateName(dataRate));
}

QString rateText(int index, int dataRate)
{
    const QString name = canBaudrates().at(index).name;
    return dataRate == 0 ? name : GUI_CanScanBaudrate::tr("%1, CANFD %2").arg(name, dataRateName(dataRate));
}

QString channelName(int channel)
{
    return GUI_CanScanBaudrate::tr("Channel") + QString::number(channel);
}
} // namespace

class GUI_CanScanBaudratePrivate
{
public:
    GUI_CanScanBaudratePrivate(GUI_CanScanBaudrate *dialog, CANCommunication &manager, std::optional<quint8> dev)
        : q(dialog)
        , communication(manager)
        , device(dev)
    {
    }

    void prepareTable();
    void connectSignals();
    void setScanning(bool isOn);
    void showTried(int index, int dataRate) const;
    void showNextTried(int index, int dataRate) const;
    void noteFound(std::size_t channel, quint8 result, int index, int dataRate);
    void showFound(bool isThrough) const;
    bool isAnyFound() const { return !found[0].isEmpty() || !found[1].isEmpty(); }
    void start();
    void stop();
    QString refusal(CANError error) const;

    GUI_CanScanBaudrate *q;
    CANCommunication &communication;
    const std::optional<quint8> device;
    Ui::GUI_CanScanBaudrate ui;
    QStandardItemModel model;
    CNotice *notice = nullptr;
    bool isScanning = false; ///< this dialog's scan runs; there may be scans of others
    bool isStopping = false;
    std::array<QString, BaudrateScan::ChannelCount> found; ///< the rates of each channel; empty: none yet
    int foundRow = 0;                                      ///< of the rate found last
};

void GUI_CanScanBaudratePrivate::prepareTable()
{
    model.setHorizontalHeaderLabels({GUI_CanScanBaudrate::tr("Baudrate"), channelName(0), channelName(1)});
    ui.tableview->setModel(&model);
    for (std::size_t column = 0; column < ColumnWidths.size(); ++column) {
        ui.tableview->setColumnWidth(static_cast<int>(column), ColumnWidths[column]);
    }
    QHeaderView *columns = ui.tableview->horizontalHeader();
    columns->setFixedHeight(HeaderHeight);
    columns->setSectionResizeMode(QHeaderView::Fixed);
    columns->setSectionsClickable(false);
    columns->setHighlightSections(false);
    QHeaderView *rows = ui.tableview->verticalHeader();
    rows->hide();
    rows->setMinimumSectionSize(RowHeight);
    rows->setDefaultSectionSize(RowHeight);
    rows->setSectionResizeMode(QHeaderView::Fixed);
}

void GUI_CanScanBaudratePrivate::connectSignals()
{
    using Dialog = GUI_CanScanBaudrate;
    QObject::connect(ui.btn_start, &QPushButton::clicked, q, &Dialog::slot_startBtnClicked);
    QObject::connect(ui.btn_stop, &QPushButton::clicked, q, [this] { stop(); });
    QObject::connect(ui.btn_apply, &QPushButton::clicked, q, &Dialog::accept);
    QObject::connect(&communication, &CANCommunication::sig_scanResultCallback, q, &Dialog::slot_scanResultCallback);
    QObject::connect(&communication, &CANCommunication::sig_scanFinish, q, &Dialog::slot_scanFinish);
}

void GUI_CanScanBaudratePrivate::setScanning(bool isOn)
{
    isScanning = isOn;
    const bool hadStopFocus = ui.btn_stop->hasFocus();
    ui.btn_stop->setEnabled(isOn); // first: the focus goes on to it from the button that is disabled next
    ui.btn_start->setEnabled(!isOn);
    if (!isOn && hadStopFocus) {
        (isAnyFound() ? ui.btn_apply : ui.btn_start)->setFocus();
    }
}

void GUI_CanScanBaudratePrivate::showTried(int index, int dataRate) const
{
    ui.lbl_state->setText(GUI_CanScanBaudrate::tr("Trying %1").arg(rateText(index, dataRate)));
}

/// What comes after these rates; past the last ones the end does.
void GUI_CanScanBaudratePrivate::showNextTried(int index, int dataRate) const
{
    if (index < BaudrateScan::BitRateCount) {
        showTried(index + 1, dataRate);
    } else if (dataRate + 1 < BaudrateScan::DataRateCount) {
        showTried(1, dataRate + 1);
    }
}

void GUI_CanScanBaudratePrivate::noteFound(std::size_t channel, quint8 result, int index, int dataRate)
{
    if (result == BaudrateScanReport::FoundNow) {
        found.at(channel) = rateText(index, dataRate);
        foundRow = model.rowCount() - 1;
    }
}

/// At the end: by then the rows have gone on, past the one that matters.
void GUI_CanScanBaudratePrivate::showFound(bool isThrough) const
{
    if (!isAnyFound()) {
        ui.lbl_state->setText(isThrough ? GUI_CanScanBaudrate::tr("No baudrate found")
                                        : GUI_CanScanBaudrate::tr("Not all baudrates tried, none found"));
        return;
    }
    QStringList channels;
    for (int channel = 0; channel < BaudrateScan::ChannelCount; ++channel) {
        const QString &rates = found.at(static_cast<std::size_t>(channel));
        if (!rates.isEmpty()) {
            channels.append(channelName(channel) + QLatin1Char(' ') + rates);
        }
    }
    ui.lbl_state->setText(GUI_CanScanBaudrate::tr("Found: %1").arg(channels.join(QStringLiteral("; "))));
    ui.tableview->scrollTo(model.index(foundRow, 0));
}

void GUI_CanScanBaudratePrivate::start()
{
    if (!device) {
        notice->setMesseage(GUI_CanScanBaudrate::tr("No devices"), CNotice::Failure, NoticeMs);
        return;
    }
    const CANError error = communication.slot_scanCANBaudrate(*device, 0);
    if (error != CAN_OK) {
        notice->setMesseage(refusal(error), CNotice::Failure, NoticeMs);
        return;
    }
    model.removeRows(0, model.rowCount());
    ui.progressBar->setValue(0);
    found = {};
    showTried(1, 0);
    setScanning(true);
}

void GUI_CanScanBaudratePrivate::stop()
{
    if (isScanning) {
        isStopping = true;
        communication.stopScan();
        isStopping = false;
    }
}

QString GUI_CanScanBaudratePrivate::refusal(CANError error) const
{
    if (error == CAN_DeviceExists) {
        return GUI_CanScanBaudrate::tr("Another scan is running");
    }
    // An open device is refused only for its channels.
    return communication.isDeviceOpen(*device) ? GUI_CanScanBaudrate::tr("Both CAN channels are in use")
                                               : GUI_CanScanBaudrate::tr("Device open failed");
}

GUI_CanScanBaudrate::GUI_CanScanBaudrate(CANCommunication &communication, std::optional<quint8> device, QWidget *parent)
    : QDialog(parent)
    , m_p(std::make_unique<GUI_CanScanBaudratePrivate>(this, communication, device))
{
    m_p->ui.setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    m_p->ui.progressBar->setRange(0, BaudrateScan::StepCount);
    m_p->notice = new CNotice(this);
    m_p->prepareTable();
    m_p->connectSignals();
    m_p->setScanning(false);
    if (parent != nullptr) {
        parent->window()->installEventFilter(this);
    }
}

GUI_CanScanBaudrate::~GUI_CanScanBaudrate()
{
    m_p->stop();
}

/// A dialog stays on screen when the window it belongs to is closed; this one is of no use then.
bool GUI_CanScanBaudrate::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Hide && !event->spontaneous()) {
        reject();
    }
    return QDialog::eventFilter(watched, event);
}

/// Every way of closing ends here. The window system hiding the window, as when it is minimised, does not.
void GUI_CanScanBaudrate::hideEvent(QHideEvent *event)
{
    if (!event->spontaneous()) {
        m_p->stop();
    }
    QDialog::hideEvent(event);
}

void GUI_CanScanBaudrate::slot_startBtnClicked()
{
    m_p->start();
}

void GUI_CanScanBaudrate::slot_scanResultCallback(quint8 can1, quint8 can2, quint8 index, quint8 indexCANFDFre)
{
    if (!m_p->isScanning || index >= canBaudrates().size()) {
        return;
    }
    const QList<QStandardItem *> row{new QStandardItem(canBaudrates().at(index).name), channelItem(can1),
                                     channelItem(can2)};
    const QString dataRate = dataRateText(indexCANFDFre);
    for (QStandardItem *item : row) {
        item->setToolTip(dataRate);
        item->setTextAlignment(Qt::AlignCenter);
    }
    m_p->model.appendRow(row);
    m_p->ui.tableview->scrollToBottom();
    m_p->ui.progressBar->setValue(m_p->model.rowCount());
    m_p->noteFound(0, can1, index, indexCANFDFre);
    m_p->noteFound(1, can2, index, indexCANFDFre);
    m_p->showNextTried(index, indexCANFDFre);
    if (can1 == BaudrateScanReport::FoundNow || can2 == BaudrateScanReport::FoundNow) {
        emit sig_rateFound(index, indexCANFDFre);
    }
}

void GUI_CanScanBaudrate::slot_scanFinish()
{
    if (!m_p->isScanning) {
        return;
    }
    const bool isThrough =
        m_p->model.rowCount() == BaudrateScan::StepCount || (!m_p->found[0].isEmpty() && !m_p->found[1].isEmpty());
    if (isThrough) {
        m_p->ui.progressBar->setValue(BaudrateScan::StepCount);
    } else if (!m_p->isStopping) {
        m_p->notice->setMesseage(tr("The scan was interrupted"), CNotice::Warning, NoticeMs);
    }
    m_p->showFound(isThrough);
    m_p->setScanning(false);
}
