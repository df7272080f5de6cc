#include "can/GUI_CanScanBaudrate.h"

#include "device/AdapterRecords.h"
#include "device/BaudrateScan.h"
#include "device/CANBaudrate.h"
#include "device/CANCommunication.h"
#include "ui_GUI_CanScanBaudrate.h"
#include "widgets/CNotice.h"

#include <QColor>
#include <QHeaderView>
#include <QHideEvent>
#include <QStandardItemModel>
#include <QVector>

#include <algorithm>
#include <iterator>

namespace {
constexpr int NoticeMs = 1000;
constexpr int HeaderHeight = 27; ///< leaves room for 12 whole rows
constexpr int RateWidth = 100;
constexpr int ChannelWidth = 200;
constexpr QRgb EffectiveColour = 0xFF55B155;

/// Of a step, by channel: a BaudrateScanReport::Channel.
using Results = QVector<quint8>;

/// Empty for a channel whose rate was found before.
QStandardItem *channelItem(quint8 result)
{
    auto *item = new QStandardItem;
    if (result == BaudrateScanReport::FoundNow) {
        item->setText(GUI_CanScanBaudrate::tr("Effective baudrate"));
        item->setForeground(QColor(EffectiveColour));
    } else if (result != BaudrateScanReport::FoundBefore) {
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
    void showResult(const Results &results, quint8 index, quint8 dataRate);
    void noteFound(const Results &results, quint8 index, quint8 dataRate);
    void finish();
    void showFound(bool isThrough) const;
    bool isAnyFound() const { return found.count(QString()) < found.size(); }
    bool areAllFound() const { return !found.contains(QString()); }
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
    QVector<QString> found = QVector<QString>(ChannelsPerDevice); ///< the rates of each channel; empty: none yet
    int foundRow = 0;                                             ///< of the rate found last
};

void GUI_CanScanBaudratePrivate::prepareTable()
{
    QStringList titles{GUI_CanScanBaudrate::tr("Baudrate")};
    for (int channel = 0; channel < ChannelsPerDevice; ++channel) {
        titles.append(channelName(channel));
    }
    model.setHorizontalHeaderLabels(titles);
    ui.tableview->setModel(&model);
    for (int column = 0; column < titles.size(); ++column) {
        ui.tableview->setColumnWidth(column, column == 0 ? RateWidth : ChannelWidth);
    }
    ui.tableview->horizontalHeader()->setFixedHeight(HeaderHeight);
    ui.tableview->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    ui.tableview->horizontalHeader()->setSectionsClickable(false);
    ui.tableview->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
}

void GUI_CanScanBaudratePrivate::connectSignals()
{
    using Manager = CANCommunication;
    QObject::connect(ui.btn_start, &QPushButton::clicked, q, [this] { start(); });
    QObject::connect(ui.btn_stop, &QPushButton::clicked, q, [this] { stop(); });
    QObject::connect(ui.btn_apply, &QPushButton::clicked, q, &QDialog::accept);
    QObject::connect(&communication, &Manager::sig_scanResultCallback, q,
                     [this](quint8 can1, quint8 can2, quint8 index, quint8 dataRate) {
                         if (isScanning && index < canBaudrates().size()) {
                             showResult({can1, can2}, index, dataRate);
                         }
                     });
    QObject::connect(&communication, &Manager::sig_scanFinish, q, [this] { finish(); });
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

/// A row for the rates tried, and what comes after them; past the last ones the end does.
void GUI_CanScanBaudratePrivate::showResult(const Results &results, quint8 index, quint8 dataRate)
{
    QList<QStandardItem *> row{new QStandardItem(canBaudrates().at(index).name)};
    std::transform(results.begin(), results.end(), std::back_inserter(row), channelItem);
    for (QStandardItem *item : qAsConst(row)) {
        item->setToolTip(dataRate == 0 ? QString()
                                       : GUI_CanScanBaudrate::tr("CANFD baudrate: %1").arg(dataRateName(dataRate)));
        item->setTextAlignment(Qt::AlignCenter);
    }
    model.appendRow(row);
    ui.tableview->scrollToBottom();
    ui.progressBar->setValue(model.rowCount());
    if (index < BaudrateScan::BitRateCount) {
        showTried(index + 1, dataRate);
    } else if (dataRate + 1 < BaudrateScan::DataRateCount) {
        showTried(1, dataRate + 1);
    }
    noteFound(results, index, dataRate);
}

void GUI_CanScanBaudratePrivate::noteFound(const Results &results, quint8 index, quint8 dataRate)
{
    for (int channel = 0; channel < results.size(); ++channel) {
        if (results.at(channel) == BaudrateScanReport::FoundNow) {
            found[channel] = rateText(index, dataRate);
        }
    }
    if (results.contains(BaudrateScanReport::FoundNow)) {
        foundRow = model.rowCount() - 1;
        emit q->sig_rateFound(index, dataRate);
    }
}

void GUI_CanScanBaudratePrivate::finish()
{
    if (!isScanning) {
        return;
    }
    const bool isThrough = model.rowCount() == BaudrateScan::StepCount || areAllFound();
    if (isThrough) {
        ui.progressBar->setValue(BaudrateScan::StepCount);
    } else if (!isStopping) {
        notice->setMesseage(GUI_CanScanBaudrate::tr("The scan was interrupted"), CNotice::Warning, NoticeMs);
    }
    showFound(isThrough);
    setScanning(false);
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
    for (int channel = 0; channel < found.size(); ++channel) {
        if (!found.at(channel).isEmpty()) {
            channels.append(channelName(channel) + QLatin1Char(' ') + found.at(channel));
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
    found.fill(QString());
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
