#pragma once

#include <QDialog>

#include <memory>

class CANCommunication;
class GUI_CanSendFilePrivate;

/// Plays a capture file on one CAN channel: the whole file a chosen number of times, one frame per interval. Closing
/// the dialog in whatever way ends the playback; when it is shown again, it is ready to send with the same settings.
class GUI_CanSendFile : public QDialog
{
    Q_OBJECT

public:
    /// communication must outlive the dialog. Frames are sent as classic ones unless isCANFD.
    GUI_CanSendFile(CANCommunication &communication, quint8 devInd, quint8 canInd, bool isCANFD,
                    QWidget *parent = nullptr);
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
    friend class GUI_CanSendFilePrivate;
    std::unique_ptr<GUI_CanSendFilePrivate> m_p;
};
