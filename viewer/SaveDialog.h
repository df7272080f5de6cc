#pragma once

#include "device/CallQueue.h"
#include "viewer/core/CaptureSaver.h"
#include "viewer/core/OpenCapture.h"

#include <QDialog>
#include <QTimer>

#include <utility>

class QBoxLayout;
class QButtonGroup;
class QCheckBox;
class QComboBox;
class QDialogButtonBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;

/// Saves frames of a capture as a file of any kind: those that are shown, the selected ones, those of a time, or all.
/// Tells before and after what that kind cannot hold.
class SaveDialog : public QDialog
{
    Q_OBJECT

public:
    enum Frames { Shown, Selected, Time, All };

    /// What the window knows.
    struct Context
    {
        std::pair<int, int> selectedPlaces{-1, -1}; ///< as FrameTableView::selectedPlaces()
        QStringList openFiles;                      ///< that must not be written over
        bool isChinese = false;                     ///< words of text captures
    };

    /// capture must outlive this.
    SaveDialog(OpenCapture &capture, Context context, QWidget *parent = nullptr);
    ~SaveDialog() override;

    void done(int result) override;

private slots:
    void slot_frames();
    void slot_kind();
    void slot_path();
    void slot_browse();
    void slot_save();
    void slot_tryOut();
    void slot_progress();
    void slot_ended();

private:
    QFormLayout *makeForm();
    QLayout *makeFrames();
    QLayout *makeTimes();
    void makeOutcome(QBoxLayout &layout);
    void makeButtons(QBoxLayout &layout);
    const ExchangeFormat &kind() const;
    int frames() const;
    /// Nothing, with the reason in problem, where what was entered does not do.
    bool order(SaveOrder &order, QString &problem) const;
    bool timeOrder(SaveOrder &order, QString &problem) const;
    bool isOpenFile(const QString &path) const;
    void setSaving(bool isSaving);
    void tell(const QString &title, const SaveResult &result);

    OpenCapture &m_capture;
    const Context m_context;
    CallQueue m_calls;    ///< from the threads below
    CaptureSaver m_saver; ///< of trials, too: one goes on at a time
    bool m_isSaving = false;
    bool m_isRunning = false; ///< the saver has not told its result yet
    QTimer m_tryTimer;
    QTimer m_progressTimer;
    QButtonGroup *m_frames = nullptr;
    QLineEdit *m_from = nullptr;
    QLineEdit *m_to = nullptr;
    QComboBox *m_kind = nullptr;
    QCheckBox *m_deviceTimes = nullptr;
    QLineEdit *m_path = nullptr;
    QPushButton *m_browse = nullptr;
    QLabel *m_summary = nullptr;
    QPlainTextEdit *m_losses = nullptr;
    QProgressBar *m_progress = nullptr;
    QPushButton *m_save = nullptr;
    QPushButton *m_close = nullptr;
};
