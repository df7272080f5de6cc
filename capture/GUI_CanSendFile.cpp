#include "capture/GUI_CanSendFile.h"

#include "capture/CaptureFormat.h"
#include "device/CANCommunication.h"
#include "device/FrameIdentifier.h"
#include "ui_GUI_CanSendFile.h"
#include "widgets/CNotice.h"
#include "widgets/NumberEntry.h"

#include <QFileDialog>
#include <QHideEvent>
#include <QStandardPaths>

#include <limits>
#include <utility>

namespace {
enum FrameType { StandardFrame, ExtendedFrame };

/// How many frames one step of the progress bar stands for, so that the range of int holds them all.
qint64 framesPerStep(qint64 frames)
{
    return frames / (qint64(std::numeric_limits<int>::max()) + 1) + 1;
}
} // namespace

GUI_CanSendFile::GUI_CanSendFile(const ChannelParam &channel, CANCommunication &communication, QWidget *parent)
    : QDialog(parent)
    , m_channel(channel)
    , m_communication(communication)
    , m_ui(std::make_unique<Ui::GUI_CanSendFile>())
{
    m_ui->setupUi(this);
    cleanSpinBoxes(this);
    QSizePolicy policy = m_ui->progressBar->sizePolicy();
    policy.setRetainSizeWhenHidden(true); // nothing moves when it appears
    m_ui->progressBar->setSizePolicy(policy);
    fillCombos();
    connectSignals();
    setState(State::Idle);
}

GUI_CanSendFile::~GUI_CanSendFile() = default;

void GUI_CanSendFile::fillCombos()
{
    // The texts are the filters of the file dialog, too.
    for (const CaptureFormat &format : captureFormats()) {
        m_ui->cbx_fileType->addItem(captureFilter(format.sendFilter), format.type);
    }
    m_ui->cbx_frameType->addItem(tr("Standard"), StandardFrame);
    m_ui->cbx_frameType->addItem(tr("Extend"), ExtendedFrame);
    m_ui->cbx_sendFormat->addItem(tr("Normal"), 0);
}

void GUI_CanSendFile::connectSignals()
{
    using Dialog = GUI_CanSendFile;
    connect(m_ui->btn_browse, &QPushButton::clicked, this, &Dialog::slot_browseBtnClicked);
    connect(m_ui->btn_send, &QPushButton::clicked, this, &Dialog::slot_sendBtnClicked);
    connect(m_ui->cbx_frameType, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &Dialog::slot_frameTypeChanged);
    connect(&m_timer, &TickTimer::sig_tick, this, [this] { sendNext(); });
}

void GUI_CanSendFile::setState(State newState)
{
    m_state = newState;
    const bool isIdle = m_state == State::Idle;
    m_ui->groupFile->setEnabled(isIdle);
    m_ui->groupParameter->setEnabled(isIdle);
    m_ui->progressBar->setVisible(m_state == State::Sending);
    m_ui->btn_send->setText(isIdle ? tr("Send") : tr("Stop"));
}

void GUI_CanSendFile::showProgress()
{
    m_ui->progressBar->setValue(static_cast<int>((m_total - m_left) / framesPerStep(m_total)));
}

void GUI_CanSendFile::showFailure(const QString &text)
{
    emit sig_showNotice(text, CNotice::Failure, CNotice::WindowMs);
}

void GUI_CanSendFile::load()
{
    const QString path = m_ui->lbx_fileName->text();
    if (path.isEmpty()) {
        return;
    }
    if (!m_channel.isCANFD && m_ui->cbx_fileType->currentData().toInt() == CANFile::CANFD) {
        showFailure(tr("CANFD file not supported"));
        return;
    }
    const auto done = [this](std::optional<CaptureContent> content) {
        startSending(std::move(content));
    };
    if (m_loader.start(path, done)) {
        setState(State::Loading);
    } else {
        showFailure(tr("File read failure"));
    }
}

void GUI_CanSendFile::startSending(std::optional<CaptureContent> content)
{
    m_file.setFrames(content ? std::move(content->frames) : CaptureFrames());
    if (m_file.frames().isEmpty()) {
        setState(State::Idle);
        showFailure(tr("File read failure"));
        return;
    }
    m_total = m_file.frames().size() * m_ui->sbx_count->value();
    m_left = m_total;
    m_ui->progressBar->setRange(0, static_cast<int>(m_total / framesPerStep(m_total)));
    showProgress();
    setState(State::Sending);
    m_timer.start(m_ui->sbx_interval->value());
}

/// What the adapter answers is of no consequence: playing goes on when it refuses a frame or is gone.
void GUI_CanSendFile::sendNext()
{
    const CaptureFrame frame = m_file.next();
    if (m_channel.isCANFD) {
        const VCI_CANFD_OBJ record = toCanFdRecord(frame);
        m_communication.transmitCANFD(m_channel.device, m_channel.channel, &record, 1);
    } else {
        const VCI_CAN_OBJ record = toCanRecord(frame);
        m_communication.transmit(m_channel.device, m_channel.channel, &record, 1);
    }
    --m_left;
    showProgress();
    if (m_left == 0) {
        stop();
    }
}

void GUI_CanSendFile::stop()
{
    m_timer.stop();
    m_loader.stop();
    setState(State::Idle);
}

/// Every way of closing ends here. The window system hiding the window, as when it is minimised, does not.
void GUI_CanSendFile::hideEvent(QHideEvent *event)
{
    if (!event->spontaneous()) {
        stop();
    }
    QDialog::hideEvent(event);
}

void GUI_CanSendFile::slot_browseBtnClicked()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
    auto *dialog = new QFileDialog(this, tr("Open File"), folder, m_ui->cbx_fileType->currentText());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, m_ui->lbx_fileName, &QLineEdit::setText);
    dialog->open();
}

void GUI_CanSendFile::slot_sendBtnClicked()
{
    if (m_state == GUI_CanSendFile::State::Idle) {
        load();
    } else {
        stop();
    }
}

void GUI_CanSendFile::slot_frameTypeChanged()
{
    const bool isExtended = m_ui->cbx_frameType->currentData().toInt() == ExtendedFrame;
    m_ui->sbx_ID->setMaximum(isExtended ? MaxSenderExtendedId : MaxSenderStandardId);
}
