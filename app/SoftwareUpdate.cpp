#include "app/SoftwareUpdate.h"

#include "app/FileDownload.h"
#include "app/GUI_Update.h"
#include "app/HttpServer.h"
#include "app/ServiceAddress.h"
#include "widgets/CMessageBox.h"

#include <QApplication>
#include <QDir>
#include <QEvent>
#include <QPointer>
#include <QProcess>
#include <QProgressBar>
#include <QProgressDialog>
#include <QStandardPaths>
#include <QTimer>
#include <QUrl>

#include <utility>

namespace {
constexpr qint64 LargestPackage = Q_INT64_C(1024) * 1024 * 1024; ///< bytes
constexpr int ProgressRange = 200;
constexpr int ProgressStepMs = 50;
constexpr int ProgressWidth = 380; ///< pixels, at least
constexpr int LongestVersion = 32; ///< characters of a published version that are shown

QString versionLine(const Release &release)
{
    QString line = SoftwareUpdate::tr("Current version") + QStringLiteral(" V") + programVersion();
    if (!isNewerThanProgram(release)) {
        return line;
    }
    return line + QStringLiteral(" \u2192 V") + release.versionNo.left(LongestVersion);
}

/// Modal for the whole program: the window that asked for it may itself be a dialog beside this one.
void showModal(QDialog *dialog)
{
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(Qt::ApplicationModal);
    dialog->show();
}
} // namespace

class SoftwareUpdatePrivate
{
public:
    SoftwareUpdatePrivate(SoftwareUpdate *owner, QWidget *window, SoftwareUpdate::Setup setup);
    ~SoftwareUpdatePrivate();
    Q_DISABLE_COPY_MOVE(SoftwareUpdatePrivate)

    void takeStartAnswer(bool ok, const Release &release);
    void takeAnswer(bool ok, const Release &release);
    void offerFound();
    void offer(GUI_Update::State state, const Release &release);
    void download(const QString &url);
    void openProgress();
    void closeProgress();
    void cancelDownload();
    void takeDownload(bool ok, const QString &errorText);
    void install();
    void tell(const QString &text);
    void keep(QDialog *dialog);
    QString packagePath() const;

    SoftwareUpdate *const m_owner;
    QWidget *const m_window;
    const SoftwareUpdate::Setup m_setup;
    HttpServer m_startSearch;
    HttpServer m_search;
    FileDownload m_download;
    Release m_found;                      ///< by the search at the start; without a version: nothing newer
    bool m_isOfferDue = false;            ///< of what was found; waits until no dialog is open
    QPointer<QDialog> m_dialog;           ///< the offer or the message that is open
    QPointer<QProgressDialog> m_progress; ///< open while the download runs
};

SoftwareUpdatePrivate::SoftwareUpdatePrivate(SoftwareUpdate *owner, QWidget *window, SoftwareUpdate::Setup setup)
    : m_owner(owner)
    , m_window(window)
    , m_setup(std::move(setup))
    , m_startSearch(m_setup.baseUrl)
    , m_search(m_setup.baseUrl)
    , m_download(m_setup.baseUrl)
{
    m_download.setStallLimit(m_setup.stallLimitMs);
    QObject::connect(&m_startSearch, &HttpServer::sig_finished, m_owner,
                     [this](bool ok, const Release &release) { takeStartAnswer(ok, release); });
    QObject::connect(&m_search, &HttpServer::sig_finished, m_owner,
                     [this](bool ok, const Release &release) { takeAnswer(ok, release); });
    QObject::connect(&m_download, &FileDownload::sig_finished, m_owner,
                     [this](bool ok, const QString &errorText) { takeDownload(ok, errorText); });
}

SoftwareUpdatePrivate::~SoftwareUpdatePrivate()
{
    delete m_dialog; // where the window has not done so yet
    delete m_progress;
}

void SoftwareUpdatePrivate::takeStartAnswer(bool ok, const Release &release)
{
    const bool isNewer = ok && isNewerThanProgram(release);
    m_found = isNewer ? release : Release();
    emit m_owner->sig_startChecked(isNewer);
}

void SoftwareUpdatePrivate::takeAnswer(bool ok, const Release &release)
{
    emit m_owner->sig_searching(false);
    const auto outcome = isNewerThanProgram(release) ? GUI_Update::NewVersion : GUI_Update::UpToDate;
    offer(ok ? outcome : GUI_Update::CheckFailed, release);
}

/// Nobody has asked for it just now, so it does not take the focus of a dialog.
void SoftwareUpdatePrivate::offerFound()
{
    m_isOfferDue = QApplication::activeModalWidget() != nullptr;
    if (!m_isOfferDue) {
        offer(GUI_Update::NewVersion, m_found);
    }
}

void SoftwareUpdatePrivate::offer(GUI_Update::State state, const Release &release)
{
    m_isOfferDue = false; // this one is as good
    auto *dialog = new GUI_Update(m_window);
    dialog->setVersionLine(versionLine(release));
    dialog->setSummary(release.summary);
    dialog->setState(state);
    QObject::connect(dialog, &GUI_Update::sig_update, m_owner, [this, dialog, url = release.url] {
        dialog->accept();
        download(url);
    });
    keep(dialog);
}

void SoftwareUpdatePrivate::download(const QString &url)
{
    if (m_download.isRunning()) {
        return;
    }
    openProgress();
    m_download.start(QUrl(url), packagePath(), LargestPackage);
}

void SoftwareUpdatePrivate::openProgress()
{
    m_progress = new QProgressDialog(m_window);
    m_progress->setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    m_progress->setWindowTitle(SoftwareUpdate::tr("Please wait"));
    m_progress->setLabelText(SoftwareUpdate::tr("Downloading a new version of the program") + QStringLiteral("..."));
    m_progress->setCancelButtonText(SoftwareUpdate::tr("Cancel"));
    m_progress->setMinimumWidth(ProgressWidth);
    auto *bar = new QProgressBar;
    bar->setTextVisible(false); // it shows that something happens, not how far it has come
    m_progress->setBar(bar);
    m_progress->setRange(0, ProgressRange);
    auto *step = new QTimer(m_progress);
    step->setObjectName(QStringLiteral("step"));
    // The bar's own value: the dialog's would process events.
    QObject::connect(step, &QTimer::timeout, bar, [bar] { bar->setValue((bar->value() + 1) % (ProgressRange + 1)); });
    step->start(ProgressStepMs);
    QObject::connect(m_progress, &QProgressDialog::canceled, m_owner, [this] { cancelDownload(); });
    showModal(m_progress);
}

void SoftwareUpdatePrivate::closeProgress()
{
    if (m_progress != nullptr) {
        m_progress->hide();
        m_progress->deleteLater(); // it may be what calls
        m_progress = nullptr;
    }
}

void SoftwareUpdatePrivate::cancelDownload()
{
    m_download.cancel();
    closeProgress();
}

void SoftwareUpdatePrivate::takeDownload(bool ok, const QString &errorText)
{
    closeProgress();
    if (ok) {
        install();
    } else {
        tell(SoftwareUpdate::tr("The new version could not be downloaded.") + QLatin1Char('\n') + errorText);
    }
}

void SoftwareUpdatePrivate::install()
{
    const QString program = m_setup.applicationDir + QStringLiteral("/Update/Update.exe");
    if (QProcess::startDetached(program, {packagePath()})) {
        emit m_owner->sig_closeProgram();
        return;
    }
    tell(SoftwareUpdate::tr("The program that installs the new version cannot be started. The new version lies in:") +
         QLatin1Char('\n') + QDir::toNativeSeparators(packagePath()));
}

void SoftwareUpdatePrivate::tell(const QString &text)
{
    keep(new CMessageBox(CMessageBox::Critical, SoftwareUpdate::tr("Tips"), text, CMessageBox::Ok, m_window));
}

/// Shows a dialog, which takes the place of one that is still open.
void SoftwareUpdatePrivate::keep(QDialog *dialog)
{
    if (m_dialog != nullptr) {
        m_dialog->close();
    }
    m_dialog = dialog;
    QObject::connect(dialog, &QDialog::finished, m_owner, [this, dialog] {
        if (m_dialog == dialog) {
            m_dialog = nullptr;
        }
    });
    showModal(dialog);
}

QString SoftwareUpdatePrivate::packagePath() const
{
    return QDir(m_setup.packageFolder).absoluteFilePath(QStringLiteral("X9CAN_Install/Install.zip"));
}

SoftwareUpdate::Setup SoftwareUpdate::Setup::ofProgram()
{
    Setup setup;
    setup.baseUrl = updateServer();
    setup.applicationDir = QCoreApplication::applicationDirPath();
    setup.packageFolder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return setup;
}

SoftwareUpdate::SoftwareUpdate(QWidget *window, Setup setup)
    : QObject(window)
    , m_p(std::make_unique<SoftwareUpdatePrivate>(this, window, std::move(setup)))
{
    window->installEventFilter(this);
}

SoftwareUpdate::~SoftwareUpdate() = default;

void SoftwareUpdate::checkAtStart()
{
    m_p->m_startSearch.start(programProductCode(), m_p->m_setup.startLimitMs);
}

void SoftwareUpdate::request(bool first)
{
    if (isBusy()) {
        return;
    }
    if (first && !m_p->m_found.versionNo.isEmpty()) {
        m_p->offerFound();
        return;
    }
    m_p->m_search.start(programProductCode(), m_p->m_setup.requestLimitMs);
    emit sig_searching(true);
}

void SoftwareUpdate::cancelRequest()
{
    if (m_p->m_search.isRunning()) {
        m_p->m_search.abort();
        emit sig_searching(false);
    }
}

void SoftwareUpdate::update(const QString &url)
{
    m_p->download(url);
}

bool SoftwareUpdate::isBusy() const
{
    return m_p->m_search.isRunning() || m_p->m_download.isRunning() || m_p->m_dialog != nullptr;
}

bool SoftwareUpdate::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::WindowUnblocked && m_p->m_isOfferDue) {
        // Later: the dialog that closes may be followed by another one.
        QTimer::singleShot(0, this, [this] {
            if (m_p->m_isOfferDue && !isBusy()) {
                m_p->offerFound();
            }
        });
    }
    return QObject::eventFilter(watched, event);
}
