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

#include <algorithm>
#include <iterator>

namespace {
constexpr int HeaderHeight = 27; ///< leaves room for 12 whole rows
constexpr int RateWidth = 100;
constexpr int ChannelWidth = 200;
constexpr QRgb EffectiveColour = 0xFF55B155;

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

GUI_CanScanBaudrate::GUI_CanScanBaudrate(CANCommunication &communication, std::optional<quint8> device, QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::GUI_CanScanBaudrate>())
    , m_communication(communication)
    , m_device(device)
    , m_found(ChannelsPerDevice)
{
    m_ui->setupUi(this);
    m_ui->progressBar->setRange(0, BaudrateScan::StepCount);
    m_notice = new CNotice(this);
    prepareTable();
    connectSignals();
    setScanning(false);
    if (parent != nullptr) {
        parent->window()->installEventFilter(this);
    }
}

GUI_CanScanBaudrate::~GUI_CanScanBaudrate()
{
    stop();
}

void GUI_CanScanBaudrate::prepareTable()
{
    QStringList titles{tr("Baudrate")};
    for (int channel = 0; channel < ChannelsPerDevice; ++channel) {
        titles.append(channelName(channel));
    }
    m_model.setHorizontalHeaderLabels(titles);
    m_ui->tableview->setModel(&m_model);
    for (int column = 0; column < titles.size(); ++column) {
        m_ui->tableview->setColumnWidth(column, column == 0 ? RateWidth : ChannelWidth);
    }
    m_ui->tableview->horizontalHeader()->setFixedHeight(HeaderHeight);
    m_ui->tableview->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_ui->tableview->horizontalHeader()->setSectionsClickable(false);
    m_ui->tableview->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
}

void GUI_CanScanBaudrate::connectSignals()
{
    using Manager = CANCommunication;
    connect(m_ui->btn_start, &QPushButton::clicked, this, [this] { start(); });
    connect(m_ui->btn_stop, &QPushButton::clicked, this, [this] { stop(); });
    connect(&m_communication, &Manager::sig_scanResultCallback, this,
            [this](quint8 can1, quint8 can2, quint8 index, quint8 dataRate) {
                if (m_isScanning && index < canBaudrates().size()) {
                    showResult({can1, can2}, index, dataRate);
                }
            });
    connect(&m_communication, &Manager::sig_scanFinish, this, [this] { finish(); });
}

void GUI_CanScanBaudrate::setScanning(bool isOn)
{
    m_isScanning = isOn;
    const bool hadStopFocus = m_ui->btn_stop->hasFocus();
    m_ui->btn_stop->setEnabled(isOn); // first: the focus goes on to it from the button that is disabled next
    m_ui->btn_start->setEnabled(!isOn);
    if (!isOn && hadStopFocus) {
        (isAnyFound() ? m_ui->btn_apply : m_ui->btn_start)->setFocus();
    }
}

void GUI_CanScanBaudrate::showTried(int index, int dataRate)
{
    m_ui->lbl_state->setText(tr("Trying %1").arg(rateText(index, dataRate)));
}

/// A row for the rates tried, and what comes after them; past the last ones the end does.
void GUI_CanScanBaudrate::showResult(const Results &results, quint8 index, quint8 dataRate)
{
    QList<QStandardItem *> row{new QStandardItem(canBaudrates().at(index).name)};
    std::transform(results.begin(), results.end(), std::back_inserter(row), channelItem);
    for (QStandardItem *item : qAsConst(row)) {
        item->setToolTip(dataRate == 0 ? QString() : tr("CANFD baudrate: %1").arg(dataRateName(dataRate)));
        item->setTextAlignment(Qt::AlignCenter);
    }
    m_model.appendRow(row);
    m_ui->tableview->scrollToBottom();
    m_ui->progressBar->setValue(m_model.rowCount());
    if (index < BaudrateScan::BitRateCount) {
        showTried(index + 1, dataRate);
    } else if (dataRate + 1 < BaudrateScan::DataRateCount) {
        showTried(1, dataRate + 1);
    }
    noteFound(results, index, dataRate);
}

void GUI_CanScanBaudrate::noteFound(const Results &results, quint8 index, quint8 dataRate)
{
    for (int channel = 0; channel < results.size(); ++channel) {
        if (results.at(channel) == BaudrateScanReport::FoundNow) {
            m_found[channel] = rateText(index, dataRate);
        }
    }
    if (results.contains(BaudrateScanReport::FoundNow)) {
        m_foundRow = m_model.rowCount() - 1;
        emit sig_rateFound(index, dataRate);
    }
}

void GUI_CanScanBaudrate::finish()
{
    if (!m_isScanning) {
        return;
    }
    const bool isThrough = m_model.rowCount() == BaudrateScan::StepCount || !m_found.contains(QString());
    if (isThrough) {
        m_ui->progressBar->setValue(BaudrateScan::StepCount);
    } else if (!m_isStopping) {
        m_notice->setMesseage(tr("The scan was interrupted"), CNotice::Warning, CNotice::DialogMs);
    }
    showFound(isThrough);
    setScanning(false);
}

/// At the end: by then the rows have gone on, past the one that matters.
void GUI_CanScanBaudrate::showFound(bool isThrough)
{
    if (!isAnyFound()) {
        m_ui->lbl_state->setText(isThrough ? tr("No baudrate found") : tr("Not all baudrates tried, none found"));
        return;
    }
    QStringList channels;
    for (int channel = 0; channel < m_found.size(); ++channel) {
        if (!m_found.at(channel).isEmpty()) {
            channels.append(channelName(channel) + QLatin1Char(' ') + m_found.at(channel));
        }
    }
    m_ui->lbl_state->setText(tr("Found: %1").arg(channels.join(QStringLiteral("; "))));
    m_ui->tableview->scrollTo(m_model.index(m_foundRow, 0));
}

void GUI_CanScanBaudrate::start()
{
    if (!m_device) {
        m_notice->setMesseage(tr("No devices"), CNotice::Failure, CNotice::DialogMs);
        return;
    }
    const CANError error = m_communication.slot_scanCANBaudrate(*m_device, 0);
    if (error != CAN_OK) {
        m_notice->setMesseage(refusal(error), CNotice::Failure, CNotice::DialogMs);
        return;
    }
    m_model.removeRows(0, m_model.rowCount());
    m_ui->progressBar->setValue(0);
    m_found.fill(QString());
    showTried(1, 0);
    setScanning(true);
}

void GUI_CanScanBaudrate::stop()
{
    if (m_isScanning) {
        m_isStopping = true;
        m_communication.stopScan();
        m_isStopping = false;
    }
}

QString GUI_CanScanBaudrate::refusal(CANError error) const
{
    if (error == CAN_DeviceExists) {
        return tr("Another scan is running");
    }
    // An open device is refused only for its channels.
    return m_communication.isDeviceOpen(*m_device) ? tr("Both CAN channels are in use") : tr("Device open failed");
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
        stop();
    }
    QDialog::hideEvent(event);
}
