#include "app/GUI_DeviceInfo.h"

#include "app/DownloadFileName.h"
#include "app/FileDownload.h"
#include "app/HttpServer.h"
#include "app/MigrationWidget.h"
#include "app/PopupWidget.h"
#include "app/UpgradeProcess.h"
#include "app/WindowMessages.h"
#include "ui_GUI_DeviceInfo.h"
#include "widgets/CMessageBox.h"

#include <QDir>
#include <QIcon>
#include <QTimer>
#include <QUrl>

#include <utility>

namespace {
constexpr int LogoSize = 64; ///< device-independent pixels
constexpr int PopupWidth = 500;
constexpr int PopupHeight = 400;
constexpr int TickMs = 10;
constexpr qint64 MaximumFirmware = Q_INT64_C(64) * 1024 * 1024; ///< bytes
constexpr int LongestVersion = 64;                              ///< characters that are shown of a published version

/// Whether the network can be reached at all. The query that follows finds out better than any test before it.
bool isNetworkAvailable()
{
    return true;
}

QString shownText(const QString &text)
{
    return text.isEmpty() ? QStringLiteral("-") : text;
}

/// Markup: the version comes from the network.
QString offerText(const QString &version)
{
    return GUI_DeviceInfo::tr("New version detected") + QStringLiteral(" V") +
           version.left(LongestVersion).toHtmlEscaped() + QStringLiteral("<br>") +
           GUI_DeviceInfo::tr("Do you wish to update it now?");
}
} // namespace

QString firmwareProductCode(const QString &model)
{
    if (model.startsWith(QLatin1String("X9EC"))) {
        return QStringLiteral("X9CANFirmWare");
    }
    if (model.startsWith(QLatin1String("X9FC"))) {
        return QStringLiteral("X9770CANFirmWare");
    }
    return {};
}

class GUI_DeviceInfoPrivate
{
public:
    GUI_DeviceInfoPrivate(GUI_DeviceInfo *dialog, UpgradeProcess &upgradeProcess, DeviceInfoSetup dialogSetup)
        : q(dialog)
        , process(upgradeProcess)
        , setup(std::move(dialogSetup))
        , server(setup.updateServer)
        , fileDownload(setup.updateServer)
        , startDelay(new QTimer(dialog))
    {
    }

    void build();
    void connectSignals();
    void showDevice();
    void showIdle();
    void showUpdating();
    CMessageBox *showMessage(CMessageBox::Icon icon, const QString &text,
                             CMessageBox::StandardButtons buttons = CMessageBox::Ok) const;
    bool isRefused() const;

    void ask();
    void takeAnswer(bool ok, const Release &answer);
    void offer();
    void download();
    void takeDownload(bool ok, const QString &errorText);
    void startUpgrade();
    void tick();
    void endUpgrade(int exitCode);
    void endUpgrade(const QString &reason);
    void failUpgrade(const QString &text);
    void stop();

    GUI_DeviceInfo *q;
    UpgradeProcess &process;
    Ui::GUI_DeviceInfo ui;
    const DeviceInfoSetup setup;
    QString serial;
    QString model;
    QString firmware;
    HttpServer server;
    Release release; ///< the last answer of the server
    FileDownload fileDownload;
    QString file;            ///< the firmware downloaded last
    QTimer *startDelay;      ///< a child of the dialog
    QTimer timer;            ///< of the progress bar
    bool isOwn = false;      ///< the upgrade program that runs is the one of this dialog's upgrade
    bool hasStarted = false; ///< and it has started
};

void GUI_DeviceInfoPrivate::build()
{
    ui.setupUi(q);
    q->setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    ui.lbl_icon->setPixmap(QIcon(QStringLiteral(":/Logo/Logo16x16.ico")).pixmap(QSize(LogoSize, LogoSize)));
    startDelay->setObjectName(QStringLiteral("startDelay"));
    startDelay->setSingleShot(true);
    startDelay->setTimerType(Qt::PreciseTimer);
    startDelay->setInterval(setup.startDelayMs);
    timer.setInterval(TickMs);
    showDevice();
    showIdle();
}

void GUI_DeviceInfoPrivate::connectSignals()
{
    using Dialog = GUI_DeviceInfo;
    QObject::connect(ui.btn_update, &QPushButton::clicked, q, &Dialog::slot_updateBtnClicked);
    QObject::connect(ui.btn_migration, &QPushButton::clicked, q, &Dialog::slot_migrationBtnClicked);
    QObject::connect(&server, &HttpServer::sig_finished, q,
                     [this](bool ok, const Release &answer) { takeAnswer(ok, answer); });
    QObject::connect(&fileDownload, &FileDownload::sig_finished, q,
                     [this](bool ok, const QString &errorText) { takeDownload(ok, errorText); });
    QObject::connect(startDelay, &QTimer::timeout, q, [this] { startUpgrade(); });
    QObject::connect(&timer, &QTimer::timeout, q, [this] { tick(); });
    QObject::connect(&process, &UpgradeProcess::sig_started, q, [this] { hasStarted = isOwn; });
    QObject::connect(&process, &UpgradeProcess::sig_finished, q, [this](int exitCode) { endUpgrade(exitCode); });
    QObject::connect(&process, &UpgradeProcess::sig_failed, q, [this](const QString &reason) { endUpgrade(reason); });
}

void GUI_DeviceInfoPrivate::showDevice()
{
    ui.lbl_productSN->setText(shownText(serial));
    ui.lbl_firmware->setText(shownText(firmware));
}

void GUI_DeviceInfoPrivate::showIdle()
{
    ui.btn_update->setEnabled(true);
    ui.btn_migration->setEnabled(true);
    ui.frame_updating->hide();
    ui.frame_update->show();
}

/// No migration meanwhile: two programs would write to adapters at the same time.
void GUI_DeviceInfoPrivate::showUpdating()
{
    ui.progressBar->setRange(0, 1000);
    ui.progressBar->setValue(0);
    ui.btn_update->setEnabled(false);
    ui.btn_migration->setEnabled(false);
    ui.frame_update->hide();
    ui.frame_updating->show();
}

CMessageBox *GUI_DeviceInfoPrivate::showMessage(CMessageBox::Icon icon, const QString &text,
                                                CMessageBox::StandardButtons buttons) const
{
    auto *box = new CMessageBox(icon, GUI_DeviceInfo::tr("Tips"), text, buttons, q);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
    return box;
}

/// Whether an upgrade program runs, which the user is told then.
bool GUI_DeviceInfoPrivate::isRefused() const
{
    if (process.isRunning()) {
        WindowMessages(*q).show(UpgradeProcess::runningText(), CMessageBox::Warning);
    }
    return process.isRunning();
}

void GUI_DeviceInfoPrivate::ask()
{
    if (isRefused()) {
        return;
    }
    if (model.isEmpty()) {
        showMessage(CMessageBox::Warning,
                    GUI_DeviceInfo::tr("No device was found. Connect it and open this window again."));
        return;
    }
    const QString productCode = firmwareProductCode(model);
    if (productCode.isEmpty()) {
        showMessage(CMessageBox::Information, GUI_DeviceInfo::tr("No firmware is published for this device."));
        return;
    }
    if (!isNetworkAvailable()) {
        showMessage(CMessageBox::Critical, GUI_DeviceInfo::tr("Network connection exception!"));
        return;
    }
    ui.btn_update->setEnabled(false);
    server.start(productCode, setup.queryLimitMs);
}

/// An answer without a version tells of no release.
void GUI_DeviceInfoPrivate::takeAnswer(bool ok, const Release &answer)
{
    release = answer;
    ui.btn_update->setEnabled(true);
    ui.btn_update->setFocus();
    if (!ok || release.versionNo.isEmpty()) {
        showMessage(CMessageBox::Critical, GUI_DeviceInfo::tr("Server request failed!"));
    } else if (release.versionNo == firmware.mid(1)) {
        showMessage(CMessageBox::Information, GUI_DeviceInfo::tr("Congratulations, This is the latest version!"));
    } else {
        offer(); // an older one too
    }
}

void GUI_DeviceInfoPrivate::offer()
{
    CMessageBox *box =
        showMessage(CMessageBox::Question, offerText(release.versionNo), {CMessageBox::Yes | CMessageBox::No});
    box->setTextFormat(Qt::RichText);
    QObject::connect(box, &QDialog::finished, q, [this](int button) {
        if (button == CMessageBox::Yes && !isRefused()) {
            emit q->sig_updateRequest();
            download();
        }
    });
}

void GUI_DeviceInfoPrivate::download()
{
    const QUrl url(release.url, QUrl::StrictMode);
    const QString name = downloadFileName(url);
    if (name.isEmpty()) {
        showMessage(CMessageBox::Critical,
                    GUI_DeviceInfo::tr("The firmware cannot be downloaded: its address names no file."));
        return;
    }
    file = setup.applicationDir + QStringLiteral("/UpCode/") + name;
    showUpdating();
    fileDownload.start(url, file, MaximumFirmware);
}

void GUI_DeviceInfoPrivate::takeDownload(bool ok, const QString &errorText)
{
    if (!ok) {
        failUpgrade(GUI_DeviceInfo::tr("The firmware could not be downloaded.") + QLatin1Char('\n') + errorText);
        return;
    }
    startDelay->start();
    timer.start();
}

void GUI_DeviceInfoPrivate::startUpgrade()
{
    if (isRefused()) {
        stop();
        return;
    }
    isOwn = true;
    hasStarted = false;
    process.start(setup.applicationDir + QStringLiteral("/UpgradeCAN.exe"), {file});
}

void GUI_DeviceInfoPrivate::tick()
{
    ui.progressBar->setValue(ui.progressBar->value() + 1);
    if (ui.progressBar->value() == ui.progressBar->maximum()) {
        stop();
        emit q->sig_updateFinish();
    }
}

/// The bar runs on to its end.
void GUI_DeviceInfoPrivate::endUpgrade(int exitCode)
{
    if (std::exchange(isOwn, false) && exitCode != 0) {
        showMessage(CMessageBox::Critical, UpgradeProcess::resultText(exitCode));
    }
}

void GUI_DeviceInfoPrivate::endUpgrade(const QString &reason)
{
    if (std::exchange(isOwn, false)) {
        failUpgrade((hasStarted ? GUI_DeviceInfo::tr("The upgrade program has crashed.")
                                : GUI_DeviceInfo::tr("The upgrade program cannot be started.")) +
                    QLatin1Char('\n') + reason);
    }
}

void GUI_DeviceInfoPrivate::failUpgrade(const QString &text)
{
    stop();
    showMessage(CMessageBox::Critical, text);
}

void GUI_DeviceInfoPrivate::stop()
{
    server.abort();
    fileDownload.cancel();
    startDelay->stop();
    timer.stop();
    showIdle();
}

GUI_DeviceInfo::GUI_DeviceInfo(UpgradeProcess &process, DeviceInfoSetup setup, QWidget *parent)
    : QDialog(parent)
    , m_p(std::make_unique<GUI_DeviceInfoPrivate>(this, process, std::move(setup)))
{
    m_p->build();
    m_p->connectSignals();
}

GUI_DeviceInfo::~GUI_DeviceInfo() = default;

void GUI_DeviceInfo::setDevice(const QString &serial, const QString &model, const QString &firmware)
{
    m_p->serial = serial;
    m_p->model = model;
    m_p->firmware = firmware;
    m_p->showDevice();
}

void GUI_DeviceInfo::slot_migrationBtnClicked()
{
    const bool isUpdating = !m_p->ui.frame_updating->isHidden();
    if (findChild<PopupWidget *>() != nullptr || isUpdating || m_p->isRefused()) {
        return;
    }
    if (m_p->setup.isDeviceUnregistered()) {
        m_p->setup.installMigrationDriver();
    }
    auto *popup = new PopupWidget(this);
    auto *migration = new MigrationWidget(m_p->process, migrationProgram(m_p->setup.applicationDir),
                                          migrationImage(m_p->setup.applicationDir), this);
    popup->setAttribute(Qt::WA_DeleteOnClose);
    popup->setWidget(migration);
    connect(migration, &MigrationWidget::started, popup, [popup] { popup->enabledCloseButton(false); });
    connect(migration, &MigrationWidget::stopped, popup, [popup] { popup->enabledCloseButton(true); });
    // From the click on, not only from the program's start, and for every other upgrade program as well.
    connect(&m_p->process, &UpgradeProcess::sig_runningChanged, popup,
            [popup](bool isRunning) { popup->enabledCloseButton(!isRunning); });
    popup->setFixedSize(PopupWidth, PopupHeight);
    popup->show();
}

void GUI_DeviceInfo::done(int result)
{
    if (!m_p->isRefused()) {
        m_p->stop();
        QDialog::done(result);
    }
}

void GUI_DeviceInfo::slot_updateBtnClicked()
{
    emit sig_updataBtnClicked();
    m_p->ask();
}
