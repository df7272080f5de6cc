#include "lin/GUI_LINModeDeveloper.h"

#include "device/LINFrame.h"
#include "lin/LINHexPairs.h"
#include "lin/LINIdPairs.h"
#include "lin/LINRecords.h"
#include "ui_GUI_LINModeDeveloper.h"
#include "widgets/CMessageBox.h"
#include "widgets/HexEntry.h"
#include "widgets/NumberEntry.h"

#include <QDir>
#include <QFileDialog>

namespace {
constexpr int ScanMs = 50;
constexpr int MaskedIds = 3;
} // namespace

GUI_LINModeDeveloper::GUI_LINModeDeveloper(const ChannelParam &param, CANCommunication &communication, QWidget *parent)
    : LINModePage(LINModeDeveloper, param, communication, parent)
    , m_ui(std::make_unique<Ui::GUI_LINModeDeveloper>())
{
    m_ui->setupUi(this);
    m_masks = std::make_unique<LINIdPairs>(*m_ui->maskLayout, MaskedIds, MaskedIds);
    m_masks->setTabOrderAfter(m_ui->sbx_count);
    m_ui->lbx_data->setValidator(validator(HexBlank));
    cleanEntry(m_ui->lbx_data, NumberEntry::HexBytes);
    showCycle();
    connectSignals();
}

GUI_LINModeDeveloper::~GUI_LINModeDeveloper() = default;

void GUI_LINModeDeveloper::connectSignals()
{
    using Page = GUI_LINModeDeveloper;
    connect(m_ui->btn_calculate, &QPushButton::clicked, this, &Page::slot_calculateBtnClicked);
    connect(m_ui->btn_scanID, &QPushButton::clicked, this, &Page::slot_scanIDBtnClicked);
    connect(m_ui->btn_importData, &QPushButton::clicked, this, &Page::slot_importDataBtnClicked);
    connectRun(m_ui->btn_start, m_ui->btn_stop);
    connect(&m_reader, &LINCaptureReader::sig_finished, this, &Page::slot_imported);
}

void GUI_LINModeDeveloper::import(const QString &path)
{
    if (m_reader.start(path) && m_reader.isReading()) {
        setFrames({});
        enableControls();
    }
}

void GUI_LINModeDeveloper::setFrames(const QVector<CTableViewLIN::DataObject> &newFrames)
{
    m_frames = newFrames;
    m_ui->lbl_allCount->setNum(m_frames.size());
}

void GUI_LINModeDeveloper::showCycle()
{
    m_ui->lbl_cycle->setText(QString::number(m_playback.passes()) + tr("Cycle"));
}

/// While a file is read there is nothing to play yet, and a scan would mix its results into the frames.
void GUI_LINModeDeveloper::enableControls()
{
    const bool canStart = m_isFree && !m_reader.isReading();
    m_ui->btn_scanID->setEnabled(canStart);
    m_ui->btn_importData->setEnabled(canStart);
    m_ui->btn_start->setEnabled(canStart);
    m_ui->sbx_interval->setEnabled(m_isFree);
    m_ui->sbx_count->setEnabled(m_isFree);
    m_masks->setEnabled(m_isFree);
}

void GUI_LINModeDeveloper::scanNext()
{
    const quint8 id = m_scan.id();
    const auto answer = request(id);
    m_scan.step(answer.has_value());
    m_ui->progressBar->setValue(m_scan.progress());
    if (answer) {
        m_frames.append(answeredLINFrame(id, *answer, clockText()));
    }
    if (m_scan.isFinished()) {
        m_ui->btn_stop->setEnabled(true);
        m_ui->lbl_allCount->setNum(m_frames.size());
        emit sig_addRowItems(m_frames);
        stopRunning();
    }
}

void GUI_LINModeDeveloper::playNext()
{
    const CTableViewLIN::DataObject &frame = m_frames.at(m_playback.position());
    if (!m_playback.isMasked(frame.ID)) {
        transmit(frame.ID, frame.data);
    }
    m_playback.advance();
    showCycle();
    m_ui->lbl_currentCount->setNum(m_playback.isFinished() ? 0 : m_playback.position() + 1);
    if (m_playback.isFinished()) {
        stopRunning();
    }
}

void GUI_LINModeDeveloper::enableStartControls(bool enabled)
{
    m_isFree = enabled;
    enableControls();
}

void GUI_LINModeDeveloper::slot_calculateBtnClicked()
{
    const quint8 id = m_ui->sbx_ID->id();
    const int length = m_ui->sbx_length->value();
    const QString text = m_ui->lbx_data->text();
    if (!hasHexPairs(text, length)) {
        emit sig_showMessageBox(tr("The data is not valid") + QLatin1Char('!'), MessageCritical);
        return;
    }
    const bool isEnhanced = channelParam().linChecksum == LINChecksumEnhanced;
    m_ui->lbx_PID->setText(hexNumber(calcPID(id), 2));
    m_ui->lbx_checksum->setText(hexNumber(calcChecksum(id, isEnhanced, bytesOfHexPairs(text, length)), 2));
}

void GUI_LINModeDeveloper::slot_scanIDBtnClicked()
{
    if (isRunning() || !startRunning()) {
        return;
    }
    m_isScanning = true;
    m_scan.start();
    setFrames({});
    m_ui->progressBar->setValue(0);
    m_ui->btn_stop->setEnabled(false);
    timer().start(ScanMs);
}

void GUI_LINModeDeveloper::slot_importDataBtnClicked()
{
    auto *dialog = new QFileDialog(this, tr("Open CSV File"), QDir::currentPath(), tr("CSV files (*.csv)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &path) { import(path); });
    dialog->open();
}

void GUI_LINModeDeveloper::slot_startBtnClicked()
{
    if (m_frames.isEmpty()) {
        emit sig_showMessageBox(tr("Please import data first"), MessageCritical);
        return;
    }
    if (isRunning() || !startRunning()) {
        return;
    }
    m_isScanning = false;
    m_playback.start(m_frames.size(), m_ui->sbx_count->value());
    for (const quint8 id : m_masks->checkedIds()) {
        m_playback.mask(id);
    }
    m_ui->lbl_currentCount->setNum(0);
    showCycle();
    timer().start(m_ui->sbx_interval->value());
}

void GUI_LINModeDeveloper::slot_stopBtnClicked()
{
    if (m_reader.isReading()) {
        m_reader.cancel();
        enableControls();
    }
    stopRunning();
}

void GUI_LINModeDeveloper::slot_sendTimeoutEvent()
{
    if (m_isScanning) {
        scanNext();
    } else {
        playNext();
    }
}

void GUI_LINModeDeveloper::slot_imported(const QVector<CTableViewLIN::DataObject> &frames, bool isCapture)
{
    setFrames(frames);
    enableControls();
    if (!isCapture) {
        emit sig_showMessageBox(tr("Import failure") + QLatin1Char('!'), MessageCritical);
    }
}
