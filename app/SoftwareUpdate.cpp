#include "app/SoftwareUpdate.h"

#include "app/GUI_Update.h"
#include "widgets/CMessageBox.h"

#include <QApplication>
#include <QDir>
#include <QEvent>
#include <QProcess>
#include <QProgressBar>
#include <QProgressDialog>
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
    const QString current = SoftwareUpdate::tr("Current version") + QStringLiteral(" V") + programVersion();
    const QString next = QStringLiteral(" \u2192 V") + release.versionNo.left(LongestVersion);
    return isNewerThanProgram(release) ? current + next : current;
}

/// Modal for the whole program: the window that asked for it may itself be a dialog beside this one.
void showModal(QDialog *dialog)
{
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(Qt::ApplicationModal);
    dialog->show();
}
} // namespace

SoftwareUpdate::SoftwareUpdate(QWidget *window, SoftwareUpdateSetup setup)
    : QObject(window)
    , m_window(window)
    , m_setup(std::move(setup))
    , m_startSearch(m_setup.baseUrl)
    , m_search(m_setup.baseUrl)
    , m_download(m_setup.baseUrl, m_setup.updateKey)
{
    m_download.setStallLimit(m_setup.stallLimitMs);
    connect(&m_startSearch, &HttpServer::sig_finished, this, [this](bool ok, const Release &release) {
        const bool isNewer = ok && isNewerThanProgram(release);
        m_found = isNewer ? release : Release();
        emit sig_startChecked(isNewer);
    });
    connect(&m_search, &HttpServer::sig_finished, this, &SoftwareUpdate::takeAnswer);
    connect(&m_download, &SignedDownload::sig_finished, this, &SoftwareUpdate::takeDownload);
    connect(&m_download, &SignedDownload::sig_refused, this, [this](const QString &reason) {
        closeProgress();
        tell(tr("The new version was refused and not installed.") + QLatin1Char('\n') + reason);
    });
    window->installEventFilter(this);
}

SoftwareUpdate::~SoftwareUpdate()
{
    delete m_dialog; // where the window has not done so yet
    delete m_progress;
}

void SoftwareUpdate::checkAtStart()
{
    m_startSearch.start(programProductCode(), m_setup.startLimitMs);
}

void SoftwareUpdate::request(bool first)
{
    if (isBusy()) {
        return;
    }
    if (first && !m_found.versionNo.isEmpty()) {
        offerFound();
        return;
    }
    m_search.start(programProductCode(), m_setup.requestLimitMs);
    emit sig_searching(true);
}

void SoftwareUpdate::cancelRequest()
{
    if (m_search.isRunning()) {
        m_search.abort();
        emit sig_searching(false);
    }
}

void SoftwareUpdate::update(const QString &url, const QString &version)
{
    if (!m_download.isRunning()) {
        openProgress();
        m_download.start(QUrl(url), packagePath(), LargestPackage, {{}, version});
    }
}

bool SoftwareUpdate::isBusy() const
{
    return m_search.isRunning() || m_download.isRunning() || m_dialog != nullptr;
}

bool SoftwareUpdate::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::WindowUnblocked && m_isOfferDue) {
        // Later: the dialog that closes may be followed by another one.
        QTimer::singleShot(0, this, [this] {
            if (m_isOfferDue && !isBusy()) {
                offerFound();
            }
        });
    }
    return QObject::eventFilter(watched, event);
}

void SoftwareUpdate::takeAnswer(bool ok, const Release &release)
{
    emit sig_searching(false);
    const auto outcome = isNewerThanProgram(release) ? GUI_Update::NewVersion : GUI_Update::UpToDate;
    offer(ok ? outcome : GUI_Update::CheckFailed, release);
}

/// Nobody has asked for it just now, so it does not take the focus of a dialog.
void SoftwareUpdate::offerFound()
{
    m_isOfferDue = QApplication::activeModalWidget() != nullptr;
    if (!m_isOfferDue) {
        offer(GUI_Update::NewVersion, m_found);
    }
}

void SoftwareUpdate::offer(int state, const Release &release)
{
    m_isOfferDue = false; // this one is as good
    auto *dialog = new GUI_Update(m_window);
    dialog->setVersionLine(versionLine(release));
    dialog->setSummary(release.summary);
    dialog->setState(state);
    connect(dialog, &GUI_Update::sig_update, this, [this, dialog, release] {
        dialog->accept();
        update(release.url, release.versionNo);
    });
    keep(dialog);
}

void SoftwareUpdate::openProgress()
{
    m_progress = new QProgressDialog(tr("Downloading a new version of the program") + QStringLiteral("..."),
                                     tr("Cancel"), 0, ProgressRange, m_window);
    m_progress->setWindowTitle(tr("Please wait"));
    m_progress->setMinimumWidth(ProgressWidth);
    auto *bar = new QProgressBar;
    bar->setTextVisible(false); // it shows that something happens, not how far it has come
    bar->setRange(0, ProgressRange);
    m_progress->setBar(bar);
    auto *step = new QTimer(m_progress);
    step->setObjectName(QStringLiteral("step"));
    // The bar's own value: the dialog's would process events.
    connect(step, &QTimer::timeout, bar, [bar] { bar->setValue((bar->value() + 1) % (ProgressRange + 1)); });
    step->start(ProgressStepMs);
    connect(m_progress, &QProgressDialog::canceled, this, [this] {
        m_download.cancel();
        closeProgress();
    });
    showModal(m_progress);
}

void SoftwareUpdate::closeProgress()
{
    if (m_progress != nullptr) {
        m_progress->hide();
        m_progress->deleteLater(); // it may be what calls
        m_progress = nullptr;
    }
}

void SoftwareUpdate::takeDownload(bool ok, const QString &errorText)
{
    closeProgress();
    if (ok) {
        install();
    } else {
        tell(tr("The new version could not be downloaded.") + QLatin1Char('\n') + errorText);
    }
}

void SoftwareUpdate::install()
{
    const QString program = m_setup.applicationDir + QStringLiteral("/Update/Update.exe");
    if (QProcess::startDetached(program, {packagePath()})) {
        emit sig_closeProgram();
        return;
    }
    tell(tr("The program that installs the new version cannot be started. The new version lies in:") +
         QLatin1Char('\n') + QDir::toNativeSeparators(packagePath()));
}

void SoftwareUpdate::tell(const QString &text)
{
    keep(new CMessageBox(CMessageBox::Critical, tr("Tips"), text, CMessageBox::Ok, m_window));
}

/// Shows a dialog, which takes the place of one that is still open.
void SoftwareUpdate::keep(QDialog *dialog)
{
    if (m_dialog != nullptr) {
        m_dialog->close();
    }
    m_dialog = dialog;
    connect(dialog, &QDialog::finished, this, [this, dialog] {
        if (m_dialog == dialog) {
            m_dialog = nullptr;
        }
    });
    showModal(dialog);
}

QString SoftwareUpdate::packagePath() const
{
    return QDir(m_setup.packageFolder).absoluteFilePath(QStringLiteral("X9CAN_Install/Install.zip"));
}
