#pragma once

#include "app/HttpServer.h"
#include "app/Settings.h"
#include "app/SignedDownload.h"
#include "app/UpdateKey.h"

#include <QCoreApplication>
#include <QObject>
#include <QPointer>
#include <QStandardPaths>
#include <QString>

class QDialog;
class QProgressDialog;
class QWidget;

/// What SoftwareUpdate works with: what is this program's and this user's unless said otherwise.
struct SoftwareUpdateSetup
{
    /// The base URL of the update server; empty: every search fails at once.
    QString baseUrl = ::updateServer();
    /// Holds "Update/Update.exe".
    QString applicationDir = QCoreApplication::applicationDirPath();
    /// The package is stored below it as "X9CAN_Install/Install.zip". By default the system's place for a user's
    /// own data: AppData/Local on Windows, ~/.local/share on Linux.
    QString packageFolder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    QByteArray updateKey = ::updateKey();          ///< that packages must be signed with; empty: they need no signature
    int startLimitMs = 3000;                       ///< of the search at the start
    int requestLimitMs = HttpServer::LimitMs;      ///< of a search that the user asked for
    int stallLimitMs = FileDownload::StallLimitMs; ///< of a download without a byte
};

/// Searches for a newer release of this program, offers it, downloads it and starts the program that installs it.
/// All its dialogs are children of the window, and none has an event loop of its own. It may be deleted at any time,
/// before the window or with it, without anything waiting for the network or the disk.
class SoftwareUpdate : public QObject
{
    Q_OBJECT

public:
    /// window: the parent of every dialog; owns this object unless something else does.
    explicit SoftwareUpdate(QWidget *window, SoftwareUpdateSetup setup = {});
    ~SoftwareUpdate() override;

    /// Searches once, when the program starts; sig_startChecked tells the outcome, never from within this call.
    void checkAtStart();
    /// first: offers the release that the search at the start found, as soon as no other dialog is open. Otherwise, or
    /// when there is none, searches and shows the outcome. Returns at once; does nothing while an earlier one is not
    /// over, dialogs included.
    void request(bool first);
    /// Ends the search of a request: its outcome is not shown.
    void cancelRequest();
    /// Downloads a package and hands it to the program that installs it. Returns at once; does nothing while a download
    /// runs. version: which one was offered; with a key, a package of another one is refused, unless it is empty.
    void update(const QString &url, const QString &version = {});
    /// Whether a request or an update is under way, dialogs included.
    bool isBusy() const;

    /// Hears of the dialogs over the window.
    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    /// Once per checkAtStart(). A search that fails, or has no answer in time, found nothing newer.
    void sig_startChecked(bool isNewer);
    /// The search of a request has begun, or is over.
    void sig_searching(bool isSearching);
    /// The program that installs the new version has been started; this one is to end.
    void sig_closeProgram();

private:
    void takeAnswer(bool ok, const Release &release);
    void takeDownload(bool ok, const QString &errorText);
    void offer(int state, const Release &release);
    void offerFound();
    void openProgress();
    void closeProgress();
    void install();
    void tell(const QString &text);
    void keep(QDialog *dialog);
    QString packagePath() const;

    QWidget *const m_window;
    const SoftwareUpdateSetup m_setup;
    HttpServer m_startSearch;
    HttpServer m_search;
    SignedDownload m_download;
    Release m_found;                      ///< by the search at the start; without a version: nothing newer
    bool m_isOfferDue = false;            ///< of what was found; waits until no dialog is open
    QPointer<QDialog> m_dialog;           ///< the offer or the message that is open
    QPointer<QProgressDialog> m_progress; ///< open while the download runs
};
