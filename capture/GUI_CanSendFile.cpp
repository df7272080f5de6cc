#include "capture/GUI_CanSendFile.h"

#include "capture/CANFile.h"
#include "capture/CaptureLoader.h"
#include "capture/PlaybackRecord.h"
#include "device/CANCommunication.h"
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
constexpr int MaxStandardId = 0x3FFF;
constexpr int MaxExtendedId = 0x1FFFFFF;

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

    GUI_CanSendFilePrivate(GUI_CanSendFile *dialog, CANCommunication &manager, quint8 dev, quint8 ch, bool isFdDevice)
        : q(dialog)
        , communication(manager)
        , devInd(dev)
        , canInd(ch)
        , isCANFD(isFdDevice)
    {
    }

    void fillCombos();
    void connectSignals();
    void setState(State newState);
    void load();
    void startSending(std::optional<CaptureContent> content);
    void sendNext();
    void stop();
    void showProgress() { ui.progressBar->setValue(static_cast<int>((total - left) / framesPerStep(total))); }
    void showFailure(const QString &text) const { emit q->sig_showNotice(text, CNotice::Failure, NoticeMs); }

    GUI_CanSendFile *q;
    CANCommunication &communication;
    const quint8 devInd;
    const quint8 canInd;
    const bool isCANFD;
    Ui::GUI_CanSendFile ui;
    State state = State::Idle;
    CANFile file;
    CaptureLoader loader;
    TickTimer timer;
    qint64 total = 0; ///< frames of the playback; more than int holds when a large file is sent often
    qint64 left = 0;  ///< of which so many are still to be sent
};

void GUI_CanSendFilePrivate::fillCombos()
{
    // The texts are the filters of the file dialog, too.
    ui.cbx_fileType->addItem(GUI_CanSendFile::tr("CAN(*.can)"), CANFile::CAN);
    ui.cbx_fileType->addItem(GUI_CanSendFile::tr("CANFD(*.canfd)"), CANFile::CANFD);
    ui.cbx_fileType->addItem(GUI_CanSendFile::tr("Csv(*.csv)"), CANFile::CSV);
    ui.cbx_fileType->addItem(GUI_CanSendFile::tr("Text(*.txt)"), CANFile::Text);
    ui.cbx_frameType->addItem(GUI_CanSendFile::tr("Standard"), StandardFrame);
    ui.cbx_frameType->addItem(GUI_CanSendFile::tr("Extend"), ExtendedFrame);
    ui.cbx_sendFormat->addItem(GUI_CanSendFile::tr("Normal"), 0);
}

void GUI_CanSendFilePrivate::connectSignals()
{
    using Dialog = GUI_CanSendFile;
    QObject::connect(ui.btn_browse, &QPushButton::clicked, q, &Dialog::slot_browseBtnClicked);
    QObject::connect(ui.btn_send, &QPushButton::clicked, q, &Dialog::slot_sendBtnClicked);
    QObject::connect(ui.cbx_frameType, QOverload<int>::of(&QComboBox::currentIndexChanged), q,
                     &Dialog::slot_frameTypeChanged);
    QObject::connect(&timer, &TickTimer::sig_tick, q, [this] { sendNext(); });
}

void GUI_CanSendFilePrivate::setState(State newState)
{
    state = newState;
    const bool isIdle = state == State::Idle;
    ui.groupFile->setEnabled(isIdle);
    ui.groupParameter->setEnabled(isIdle);
    ui.progressBar->setVisible(state == State::Sending);
    ui.btn_send->setText(isIdle ? GUI_CanSendFile::tr("Send") : GUI_CanSendFile::tr("Stop"));
}

void GUI_CanSendFilePrivate::load()
{
    const QString path = ui.lbx_fileName->text();
    if (path.isEmpty()) {
        return;
    }
    if (!isCANFD && ui.cbx_fileType->currentData().toInt() == CANFile::CANFD) {
        showFailure(GUI_CanSendFile::tr("CANFD file not supported"));
        return;
    }
    const auto done = [this](std::optional<CaptureContent> content) {
        startSending(std::move(content));
    };
    if (loader.start(path, done)) {
        setState(State::Loading);
    } else {
        showFailure(GUI_CanSendFile::tr("File read failure"));
    }
}

void GUI_CanSendFilePrivate::startSending(std::optional<CaptureContent> content)
{
    file.setFrames(content ? std::move(content->frames) : CaptureFrames());
    if (file.frames().isEmpty()) {
        setState(State::Idle);
        showFailure(GUI_CanSendFile::tr("File read failure"));
        return;
    }
    total = file.frames().size() * ui.sbx_count->value();
    left = total;
    ui.progressBar->setRange(0, static_cast<int>(total / framesPerStep(total)));
    showProgress();
    setState(State::Sending);
    timer.start(ui.sbx_interval->value());
}

/// What the adapter answers is of no consequence: playing goes on when it refuses a frame or is gone.
void GUI_CanSendFilePrivate::sendNext()
{
    const CaptureFrame frame = file.next();
    if (isCANFD) {
        const VCI_CANFD_OBJ record = toCanFdRecord(frame);
        communication.transmitCANFD(devInd, canInd, &record, 1);
    } else {
        const VCI_CAN_OBJ record = toCanRecord(frame);
        communication.transmit(devInd, canInd, &record, 1);
    }
    --left;
    showProgress();
    if (left == 0) {
        stop();
    }
}

void GUI_CanSendFilePrivate::stop()
{
    timer.stop();
    loader.stop();
    setState(State::Idle);
}

GUI_CanSendFile::GUI_CanSendFile(CANCommunication &communication, quint8 devInd, quint8 canInd, bool isCANFD,
                                 QWidget *parent)
    : QDialog(parent)
    , m_p(std::make_unique<GUI_CanSendFilePrivate>(this, communication, devInd, canInd, isCANFD))
{
    m_p->ui.setupUi(this);
    cleanSpinBoxes(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    QSizePolicy policy = m_p->ui.progressBar->sizePolicy();
    policy.setRetainSizeWhenHidden(true); // nothing moves when it appears
    m_p->ui.progressBar->setSizePolicy(policy);
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
    auto *dialog = new QFileDialog(this, tr("Open File"), folder, m_p->ui.cbx_fileType->currentText());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, m_p->ui.lbx_fileName, &QLineEdit::setText);
    dialog->open();
}

void GUI_CanSendFile::slot_sendBtnClicked()
{
    if (m_p->state == GUI_CanSendFilePrivate::State::Idle) {
        m_p->load();
    } else {
        m_p->stop();
    }
}

void GUI_CanSendFile::slot_frameTypeChanged()
{
    const bool isExtended = m_p->ui.cbx_frameType->currentData().toInt() == ExtendedFrame;
    m_p->ui.sbx_ID->setMaximum(isExtended ? MaxExtendedId : MaxStandardId);
}
