#pragma once

#include "app/Driver.h"
#include "app/HttpServer.h"
#include "app/Settings.h"
#include "app/SignedDownload.h"
#include "app/UpdateKey.h"
#include "app/WindowMessages.h"

#include <QCoreApplication>
#include <QDialog>
#include <QString>
#include <QTimer>

#include <functional>
#include <memory>

class UpgradeProcess;

namespace Ui {
class GUI_DeviceInfo;
}

/// What GUI_DeviceInfo works with: the program's own folder, server and driver unless said otherwise.
struct DeviceInfoSetup
{
    /// Holds "UpgradeCAN.exe", "UpCode" and "Migration".
    QString applicationDir = QCoreApplication::applicationDirPath();
    /// The base URL of the update server.
    QString updateServer = ::updateServer();
    /// That firmware must be signed with; empty: it needs no signature.
    QByteArray updateKey = ::updateKey();
    /// An answer that takes longer, in milliseconds, is a failed query.
    int queryLimitMs = HttpServer::LimitMs;
    /// From the end of the download to the start of the upgrade program, in milliseconds.
    int startDelayMs = 2000;
    std::function<bool()> isDeviceUnregistered = ::isDeviceUnregistered;
    std::function<bool()> installMigrationDriver = ::installMigrationDriver;
};

/// Shows which adapter is connected, brings its firmware up to date, and hosts the migration of older adapters.
///
/// A query or download that runs ends with the dialog. While an upgrade program runs, whoever started it, the dialog
/// cannot be closed and starts no other; destroying it leaves the program running.
class GUI_DeviceInfo : public QDialog
{
    Q_OBJECT

public:
    /// process starts all upgrade programs and must outlive the dialog.
    explicit GUI_DeviceInfo(UpgradeProcess &process, DeviceInfoSetup setup = {}, QWidget *parent = nullptr);
    ~GUI_DeviceInfo() override;

    /// The texts as the adapter gives them; all empty, as at first, when there is none.
    void setDevice(const QString &serial, const QString &model, const QString &firmware);

public slots:
    /// Shows the migration page, after starting the installation of its driver where the adapter needs it; not during
    /// an upgrade.
    void slot_migrationBtnClicked();
    /// Every way of closing ends here. Ends what runs; while an upgrade program does, says so and changes nothing.
    void done(int result) override;

signals:
    /// "Check updates" was clicked. What setDevice() is told in a slot that is called directly counts for this check.
    void sig_updataBtnClicked();
    /// The user has agreed to an upgrade; the download comes next.
    void sig_updateRequest();
    /// An upgrade has run for its time; its program may run on. Does not come when a download or the start of the
    /// upgrade program fails, or when the program crashes before.
    void sig_updateFinish();

private:
    void connectSignals();
    void setUpdating(bool isUpdating);

    void ask();
    void takeAnswer(bool ok, const Release &answer);
    QString question(const QString &version) const;
    void download();
    void takeDownload(bool ok, const QString &errorText);
    void startUpgrade();
    void tick();
    void endUpgrade(int exitCode);
    void takeCrash(const QString &reason);
    void failUpgrade(const QString &text);
    void stop();

    const std::unique_ptr<Ui::GUI_DeviceInfo> m_ui;
    UpgradeProcess &m_process;
    const DeviceInfoSetup m_setup;
    WindowMessages m_messages;
    QString m_model;
    QString m_firmware;
    HttpServer m_server;
    Release m_release; ///< the last answer of the server
    SignedDownload m_download;
    QString m_file; ///< the firmware downloaded last
    QTimer m_startDelay;
    QTimer m_timer;            ///< of the progress bar
    bool m_isOwn = false;      ///< the upgrade program that runs is the one of this dialog's upgrade
    bool m_hasStarted = false; ///< and it has started
};
