#include "capture/GUI_CanSendFile.h"

#include "capture/CANFile.h"
#include "capture/CaptureFormat.h"
#include "capture/CaptureLoader.h"
#include "device/CANCommunication.h"
#include "device/FrameIdentifier.h"
#include "device/TickTimer.h"
#include "ui_GUI_CanSendFile.h"
#include "widgets/CNotice.h"
#include "widgets/NumberEntry.h"

#include <QFileDialog>
#include <QHideEvent>
#include <QStandardPaths>

#include <limits>
#include <optional>
#include <utility>

namespace {
constexpr int NoticeMs = 1500;

enum FrameType { StandardFrame, ExtendedFrame };

/// How many frames one step of the progress bar stands for, so that the range of int holds them all.
qint64 framesPerStep(qint64 frames)
{
    return frames / (qint64(std::numeric_limits<int>::max()) + 1) + 1;
}
} // namespace

class GUI_CanSendFilePrivate
{
public:
    enum class State { Idle, Loading, Sending };

    GUI_CanSendFilePrivate(GUI_CanSendFile *dialog, CANCommunication &communication, quint8 devInd, quint8 canInd,
                           bool isCANFD)
        : m_q(dialog)
        , m_communication(communication)
        , m_devInd(devInd)
        , m_canInd(canInd)
        , m_isCANFD(isCANFD)
    {
    }

    void fillCombos();
    void connectSignals();
    void setState(State newState);
    void load();
    void startSending(std::optional<CaptureContent> content);
    void sendNext();
    void stop();
    void showProgress() { m_ui.progressBar->setValue(static_cast<int>((m_total - m_left) / framesPerStep(m_total))); }
    void showFailure(const QString &text) const { emit m_q->sig_showNotice(text, CNotice::Failure, NoticeMs); }

    GUI_CanSendFile *m_q;
    CANCommunication &m_communication;
    const quint8 m_devInd;
    const quint8 m_canInd;
    const bool m_isCANFD;
    Ui::GUI_CanSendFile m_ui;
    State m_state = State::Idle;
    CANFile m_file;
    CaptureLoader m_loader;
    TickTimer m_timer;
    qint64 m_total = 0; ///< frames of the playback; more than int holds when a large file is sent often
    qint64 m_left = 0;  ///< of which so many are still to be sent
};

void GUI_CanSendFilePrivate::fillCombos()
{
    // The texts are the filters of the file dialog, too.
    for (const CaptureFormat &format : captureFormats()) {
        m_ui.cbx_fileType->addItem(captureFilter(format.sendFilter), format.type);
    }
    m_ui.cbx_frameType->addItem(GUI_CanSendFile::tr("Standard"), StandardFrame);
    m_ui.cbx_frameType->addItem(GUI_CanSendFile::tr("Extend"), ExtendedFrame);
    m_ui.cbx_sendFormat->addItem(GUI_CanSendFile::tr("Normal"), 0);
}

void GUI_CanSendFilePrivate::connectSignals()
{
    using Dialog = GUI_CanSendFile;
    QObject::connect(m_ui.btn_browse, &QPushButton::clicked, m_q, &Dialog::slot_browseBtnClicked);
    QObject::connect(m_ui.btn_send, &QPushButton::clicked, m_q, &Dialog::slot_sendBtnClicked);
    QObject::connect(m_ui.cbx_frameType, QOverload<int>::of(&QComboBox::currentIndexChanged), m_q,
                     &Dialog::slot_frameTypeChanged);
    QObject::connect(&m_timer, &TickTimer::sig_tick, m_q, [this] { sendNext(); });
}

void GUI_CanSendFilePrivate::setState(State newState)
{
    m_state = newState;
    const bool isIdle = m_state == State::Idle;
    m_ui.groupFile->setEnabled(isIdle);
    m_ui.groupParameter->setEnabled(isIdle);
    m_ui.progressBar->setVisible(m_state == State::Sending);
    m_ui.btn_send->setText(isIdle ? GUI_CanSendFile::tr("Send") : GUI_CanSendFile::tr("Stop"));
}

void GUI_CanSendFilePrivate::load()
{
    const QString path = m_ui.lbx_fileName->text();
    if (path.isEmpty()) {
        return;
    }
    if (!m_isCANFD && m_ui.cbx_fileType->currentData().toInt() == CANFile::CANFD) {
        showFailure(GUI_CanSendFile::tr("CANFD file not supported"));
        return;
    }
    const auto done = [this](std::optional<CaptureContent> content) {
        startSending(std::move(content));
    };
    if (m_loader.start(path, done)) {
        setState(State::Loading);
    } else {
        showFailure(GUI_CanSendFile::tr("File read failure"));
    }
}

void GUI_CanSendFilePrivate::startSending(std::optional<CaptureContent> content)
{
    m_file.setFrames(content ? std::move(content->frames) : CaptureFrames());
    if (m_file.frames().isEmpty()) {
        setState(State::Idle);
        showFailure(GUI_CanSendFile::tr("File read failure"));
        return;
    }
    m_total = m_file.frames().size() * m_ui.sbx_count->value();
    m_left = m_total;
    m_ui.progressBar->setRange(0, static_cast<int>(m_total / framesPerStep(m_total)));
    showProgress();
    setState(State::Sending);
    m_timer.start(m_ui.sbx_interval->value());
}

/// What the adapter answers is of no consequence: playing goes on when it refuses a frame or is gone.
void GUI_CanSendFilePrivate::sendNext()
{
    const CaptureFrame frame = m_file.next();
    if (m_isCANFD) {
        const VCI_CANFD_OBJ record = toCanFdRecord(frame);
        m_communication.transmitCANFD(m_devInd, m_canInd, &record, 1);
    } else {
        const VCI_CAN_OBJ record = toCanRecord(frame);
        m_communication.transmit(m_devInd, m_canInd, &record, 1);
    }
    --m_left;
    showProgress();
    if (m_left == 0) {
        stop();
    }
}

void GUI_CanSendFilePrivate::stop()
{
    m_timer.stop();
    m_loader.stop();
    setState(State::Idle);
}

GUI_CanSendFile::GUI_CanSendFile(CANCommunication &communication, quint8 devInd, quint8 canInd, bool isCANFD,
                                 QWidget *parent)
    : QDialog(parent)
    , m_p(std::make_unique<GUI_CanSendFilePrivate>(this, communication, devInd, canInd, isCANFD))
{
    m_p->m_ui.setupUi(this);
    cleanSpinBoxes(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    QSizePolicy policy = m_p->m_ui.progressBar->sizePolicy();
    policy.setRetainSizeWhenHidden(true); // nothing moves when it appears
    m_p->m_ui.progressBar->setSizePolicy(policy);
    m_p->fillCombos();
    m_p->connectSignals();
    m_p->setState(GUI_CanSendFilePrivate::State::Idle);
}

GUI_CanSendFile::~GUI_CanSendFile() = default;

/// Every way of closing ends here. The window system hiding the window, as when it is minimised, does not.
void GUI_CanSendFile::hideEvent(QHideEvent *event)
{
    if (!event->spontaneous()) {
        m_p->stop();
    }
    QDialog::hideEvent(event);
}

void GUI_CanSendFile::slot_browseBtnClicked()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
    auto *dialog = new QFileDialog(this, tr("Open File"), folder, m_p->m_ui.cbx_fileType->currentText());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, m_p->m_ui.lbx_fileName, &QLineEdit::setText);
    dialog->open();
}

void GUI_CanSendFile::slot_sendBtnClicked()
{
    if (m_p->m_state == GUI_CanSendFilePrivate::State::Idle) {
        m_p->load();
    } else {
        m_p->stop();
    }
}

void GUI_CanSendFile::slot_frameTypeChanged()
{
    const bool isExtended = m_p->m_ui.cbx_frameType->currentData().toInt() == ExtendedFrame;
    m_p->m_ui.sbx_ID->setMaximum(isExtended ? MaxSenderExtendedId : MaxSenderStandardId);
}
