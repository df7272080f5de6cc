#pragma once

#include "capture/CANFile.h"
#include "capture/CaptureLoader.h"
#include "device/ChannelParam.h"
#include "device/TickTimer.h"

#include <QDialog>

#include <memory>
#include <optional>

class CANCommunication;

namespace Ui {
class GUI_CanSendFile;
}

/// Plays a capture file on one CAN channel: the whole file a chosen number of times, one frame per interval. Closing
/// the dialog in whatever way ends the playback; when it is shown again, it is ready to send with the same settings.
class GUI_CanSendFile : public QDialog
{
    Q_OBJECT

public:
    /// communication must outlive the dialog. Frames are sent as classic ones unless the channel is a CAN FD one.
    GUI_CanSendFile(const ChannelParam &channel, CANCommunication &communication, QWidget *parent = nullptr);
    /// Takes as long as CaptureLoader's destructor at most.
    ~GUI_CanSendFile() override;

signals:
    /// Asks for a notice that goes away by itself. Types: 0 done, 1 warning, 2 question, 3 failure, 4 about.
    void sig_showNotice(const QString &text, int type, int delayms);
    /// Asks for a modal message. Modes: 1 success, 2 question, 3 warning, 4 critical, any other information.
    void sig_showMessageBox(const QString &text, int type);

protected:
    void hideEvent(QHideEvent *event) override;

private slots:
    void slot_browseBtnClicked();
    void slot_sendBtnClicked();
    void slot_frameTypeChanged();

private:
    enum class State { Idle, Loading, Sending };

    void fillCombos();
    void connectSignals();
    void setState(State newState);
    void load();
    void startSending(std::optional<CaptureContent> content);
    void sendNext();
    void stop();
    void showProgress();
    void showFailure(const QString &text);

    const ChannelParam m_channel;
    CANCommunication &m_communication;
    std::unique_ptr<Ui::GUI_CanSendFile> m_ui;
    State m_state = State::Idle;
    CANFile m_file;
    CaptureLoader m_loader;
    TickTimer m_timer;
    qint64 m_total = 0; ///< frames of the playback; more than int holds when a large file is sent often
    qint64 m_left = 0;  ///< of which so many are still to be sent
};
