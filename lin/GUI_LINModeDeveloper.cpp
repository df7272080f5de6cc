#include "lin/GUI_LINModeDeveloper.h"

#include "device/LINFrame.h"
#include "lin/LINCaptureReader.h"
#include "lin/LINHexPairs.h"
#include "lin/LINIdPairs.h"
#include "lin/LINPlayback.h"
#include "lin/LINRecords.h"
#include "lin/LINSlaveScan.h"
#include "ui_GUI_LINModeDeveloper.h"
#include "widgets/CMessageBox.h"
#include "widgets/NumberEntry.h"

#include <QDir>
#include <QFileDialog>

namespace {
constexpr int ScanMs = 50;
constexpr int MaskedIds = 3;
} // namespace

class GUI_LINModeDeveloperPrivate
{
public:
    explicit GUI_LINModeDeveloperPrivate(GUI_LINModeDeveloper *page)
        : q(page)
    {
    }

    void prepareForm();
    void connectSignals();
    void import(const QString &path);
    void setFrames(const QVector<CTableViewLIN::DataObject> &newFrames);
    void enableControls();
    void showCycle() { ui.lbl_cycle->setText(QString::number(playback.passes()) + GUI_LINModeDeveloper::tr("Cycle")); }
    void scanNext();
    void playNext();

    GUI_LINModeDeveloper *q;
    Ui::GUI_LINModeDeveloper ui;
    std::unique_ptr<LINIdPairs> masks;
    LINCaptureReader reader;
    QVector<CTableViewLIN::DataObject> frames; ///< imported, or found by the scan
    LINSlaveScan scan;
    LINPlayback playback;
    bool isScanning = false; ///< the timer strikes for the scan, otherwise for the playback
    bool isFree = true;      ///< no mode runs
};

void GUI_LINModeDeveloperPrivate::prepareForm()
{
    masks = std::make_unique<LINIdPairs>(*ui.maskLayout, MaskedIds, MaskedIds);
    masks->setTabOrderAfter(ui.sbx_count);
    ui.lbx_data->setValidator(q->hexBlankValidator());
    cleanEntry(ui.lbx_data, NumberEntry::HexBytes);
    showCycle();
}

void GUI_LINModeDeveloperPrivate::connectSignals()
{
    using Page = GUI_LINModeDeveloper;
    QObject::connect(ui.btn_calculate, &QPushButton::clicked, q, &Page::slot_calculateBtnClicked);
    QObject::connect(ui.btn_scanID, &QPushButton::clicked, q, &Page::slot_scanIDBtnClicked);
    QObject::connect(ui.btn_importData, &QPushButton::clicked, q, &Page::slot_importDataBtnClicked);
    q->connectRun(ui.btn_start, ui.btn_stop);
    QObject::connect(&reader, &LINCaptureReader::sig_finished, q, &Page::slot_imported);
}

void GUI_LINModeDeveloperPrivate::import(const QString &path)
{
    if (reader.start(path) && reader.isReading()) {
        setFrames({});
        enableControls();
    }
}

void GUI_LINModeDeveloperPrivate::setFrames(const QVector<CTableViewLIN::DataObject> &newFrames)
{
    frames = newFrames;
    ui.lbl_allCount->setNum(frames.size());
}

/// While a file is read there is nothing to play yet, and a scan would mix its results into the frames.
void GUI_LINModeDeveloperPrivate::enableControls()
{
    const bool canStart = isFree && !reader.isReading();
    ui.btn_scanID->setEnabled(canStart);
    ui.btn_importData->setEnabled(canStart);
    ui.btn_start->setEnabled(canStart);
    ui.sbx_interval->setEnabled(isFree);
    ui.sbx_count->setEnabled(isFree);
    masks->setEnabled(isFree);
}

void GUI_LINModeDeveloperPrivate::scanNext()
{
    const quint8 id = scan.id();
    const auto answer = q->request(id);
    scan.step(answer.has_value());
    ui.progressBar->setValue(scan.progress());
    if (answer) {
        frames.append(answeredLINFrame(id, *answer, clockText()));
    }
    if (scan.isFinished()) {
        ui.btn_stop->setEnabled(true);
        ui.lbl_allCount->setNum(frames.size());
        emit q->sig_addRowItems(frames);
        q->stopRunning();
    }
}

void GUI_LINModeDeveloperPrivate::playNext()
{
    const CTableViewLIN::DataObject &frame = frames.at(playback.position());
    if (!playback.isMasked(frame.ID)) {
        q->transmit(frame.ID, frame.data);
    }
    playback.advance();
    showCycle();
    ui.lbl_currentCount->setNum(playback.isFinished() ? 0 : playback.position() + 1);
    if (playback.isFinished()) {
        q->stopRunning();
    }
}

GUI_LINModeDeveloper::GUI_LINModeDeveloper(const ChannelParam &param, CANCommunication &communication, QWidget *parent)
    : LINModePage(LINModeDeveloper, param, communication, parent)
    , m_p(std::make_unique<GUI_LINModeDeveloperPrivate>(this))
{
    m_p->ui.setupUi(this);
    m_p->prepareForm();
    m_p->connectSignals();
}

GUI_LINModeDeveloper::~GUI_LINModeDeveloper() = default;

void GUI_LINModeDeveloper::enableStartControls(bool enabled)
{
    m_p->isFree = enabled;
    m_p->enableControls();
}

void GUI_LINModeDeveloper::slot_calculateBtnClicked()
{
    const quint8 id = m_p->ui.sbx_ID->id();
    const int length = m_p->ui.sbx_length->value();
    const QString text = m_p->ui.lbx_data->text();
    if (!hasHexPairs(text, length)) {
        emit sig_showMessageBox(tr("The data is not valid") + QLatin1Char('!'), MessageCritical);
        return;
    }
    const bool isEnhanced = channelParam().linChecksum == LINChecksumEnhanced;
    m_p->ui.lbx_PID->setText(hexPair(calcPID(id)));
    m_p->ui.lbx_checksum->setText(hexPair(calcChecksum(id, isEnhanced, bytesOfHexPairs(text, length))));
}

void GUI_LINModeDeveloper::slot_scanIDBtnClicked()
{
    if (isRunning() || !startRunning()) {
        return;
    }
    m_p->isScanning = true;
    m_p->scan.start();
    m_p->setFrames({});
    m_p->ui.progressBar->setValue(0);
    m_p->ui.btn_stop->setEnabled(false);
    timer().start(ScanMs);
}

void GUI_LINModeDeveloper::slot_importDataBtnClicked()
{
    auto *dialog = new QFileDialog(this, tr("Open CSV File"), QDir::currentPath(), tr("CSV files (*.csv)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &path) { m_p->import(path); });
    dialog->open();
}

void GUI_LINModeDeveloper::slot_startBtnClicked()
{
    if (m_p->frames.isEmpty()) {
        emit sig_showMessageBox(tr("Please import data first"), MessageCritical);
        return;
    }
    if (isRunning() || !startRunning()) {
        return;
    }
    m_p->isScanning = false;
    m_p->playback.start(m_p->frames.size(), m_p->ui.sbx_count->value());
    for (const quint8 id : m_p->masks->checkedIds()) {
        m_p->playback.mask(id);
    }
    m_p->ui.lbl_currentCount->setNum(0);
    m_p->showCycle();
    timer().start(m_p->ui.sbx_interval->value());
}

void GUI_LINModeDeveloper::slot_stopBtnClicked()
{
    if (m_p->reader.isReading()) {
        m_p->reader.cancel();
        m_p->enableControls();
    }
    stopRunning();
}

void GUI_LINModeDeveloper::slot_sendTimeoutEvent()
{
    if (m_p->isScanning) {
        m_p->scanNext();
    } else {
        m_p->playNext();
    }
}

void GUI_LINModeDeveloper::slot_imported(const QVector<CTableViewLIN::DataObject> &frames, bool isCapture)
{
    m_p->setFrames(frames);
    m_p->enableControls();
    if (!isCapture) {
        emit sig_showMessageBox(tr("Import failure") + QLatin1Char('!'), MessageCritical);
    }
}
