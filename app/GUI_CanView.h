#pragma once

#include "app/WindowMessages.h"

#include <QMainWindow>
#include <QPointer>

#include <functional>
#include <memory>

class CANCommunication;
class CNotice;
class GUI_CanDeviceParam;
class GUI_DeviceInfo;
class QAction;
class QActionGroup;
class QMenu;
class SoftwareUpdate;
class UpgradeProcess;
struct ChannelParam;

namespace Ui {
class GUI_CanView;
}

/// The main window: toolbar and one tab per open channel. Owns the device manager, and what runs the upgrade programs.
///
/// Closing it, and the restart for another language, ask when an upgrade program runs. Leaving the event loop otherwise
/// and destroying the window do not. The upgrade program runs on in any case.
class GUI_CanView : public QMainWindow
{
    Q_OBJECT

public:
    explicit GUI_CanView(std::unique_ptr<CANCommunication> communication, QWidget *parent = nullptr);
    /// Closes the tabs, with them their channels and devices, before the manager goes.
    ~GUI_CanView() override;

    /// Writes what was received so far into the files that are saved in real time, and ends them. Takes five seconds at
    /// most, for files that stand still.
    void finishFiles();

public slots:
    /// Asks which channels to open, and how; each one that opens gets a tab. Does not wait for the answer.
    void slot_openCanDevice();
    void slot_closeCanDevice();
    void slot_closeTabRequest(int index);
    /// Opens a message and returns at once. Types: 1 success, 2 question with Yes and No, 3 warning, 4 critical, any
    /// other information. A text that is already on screen with this type is not shown again; beyond five open
    /// messages, further ones are only counted, and the newest open message says how many they are.
    void slot_showMessageBox(const QString &text, int type);
    /// Types: 0 done, 1 warning, 2 question, 3 failure, 4 about, any other shows nothing. delayms as in CNotice.
    void slot_showNotice(const QString &text, int type, int delayms);
    /// Asks whether to go to the device information, where the firmware can be updated.
    void slot_showFrimwareUpgrade();
    void slot_showSoftwareInfo();
    /// Brings the one that is open to the front.
    void slot_showDeviceInfo();
    /// first: offers the release that the search at the start has found; otherwise searches and shows the outcome.
    void slot_updateRuquest(bool first);
    /// Downloads a package of this program and hands it to the program that installs it, which ends this one.
    void slot_update(const QString &urlStr);

protected:
    /// While an upgrade program runs, the user is asked first.
    void closeEvent(QCloseEvent *event) override;

private slots:
    void slot_openChosenChannels();
    void slot_languageTriggered(QAction *action);

private:
    void buildToolBar();
    QMenu *addMenu(const char *name, const QString &text, const QString &toolTip);
    void checkStoredLanguage() const;
    void prepareTabs();
    void connectUpdate();
    template<typename Tab>
    bool openTab(const ChannelParam &param, const QString &protocol);
    void showDevice(GUI_DeviceInfo &dialog);
    void endProgram(const std::function<void()> &end);

    const std::unique_ptr<Ui::GUI_CanView> m_ui;
    WindowMessages m_messages;
    const std::unique_ptr<CANCommunication> m_communication;
    QActionGroup *m_languages = nullptr; ///< in the order of their numbers
    CNotice *m_notice = nullptr;
    UpgradeProcess *m_upgrade = nullptr; ///< the only one, for all dialogs
    SoftwareUpdate *m_update = nullptr;
    GUI_CanDeviceParam *m_deviceParam = nullptr; ///< keeps what was chosen last
    QPointer<GUI_DeviceInfo> m_deviceInfo;       ///< there is never a second one
};
