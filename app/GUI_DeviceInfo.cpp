#include "app/GUI_DeviceInfo.h"

#include "app/HttpServer.h"
#include "app/MigrationWidget.h"
#include "app/PopupWidget.h"
#include "app/SignedDownload.h"
#include "app/UpgradeProcess.h"
#include "app/WindowMessages.h"
#include "device/FirmwareMonitor.h"
#include "device/Version.h"
#include "ui_GUI_DeviceInfo.h"

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

/// Of a test of the network before the query. There is none, as the query finds out better.
[[maybe_unused]] constexpr const char *NoNetwork = QT_TRANSLATE_NOOP("GUI_DeviceInfo", "Network connection exception!");

void showText(QLabel *label, const QString &text)
{
    label->setText(text.isEmpty() ? QStringLiteral("-") : text);
}
} // namespace

class GUI_DeviceInfoPrivate
{
    Q_DECLARE_TR_FUNCTIONS(GUI_DeviceInfo)

public:
    GUI_DeviceInfoPrivate(GUI_DeviceInfo *dialog, UpgradeProcess &process, DeviceInfoSetup setup)
        : q(dialog)
        , m_process(process)
        , m_setup(std::move(setup))
        , m_messages(*dialog)
        , m_server(m_setup.updateServer)
        , m_download(m_setup.updateServer, m_setup.updateKey)
        , m_startDelay(new QTimer(dialog))
    {
    }

    void build();
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
    void failUpgrade(const QString &text);
    void stop();
    void migrate();

    GUI_DeviceInfo *q;
    Ui::GUI_DeviceInfo ui;
    UpgradeProcess &m_process;
    const DeviceInfoSetup m_setup;
    WindowMessages m_messages;
    QString m_model;
    QString m_firmware;
    HttpServer m_server;
    Release m_release; ///< the last answer of the server
    SignedDownload m_download;
    QString m_file;            ///< the firmware downloaded last
    QTimer *m_startDelay;      ///< a child of the dialog
    QTimer m_timer;            ///< of the progress bar
    bool m_isOwn = false;      ///< the upgrade program that runs is the one of this dialog's upgrade
    bool m_hasStarted = false; ///< and it has started
};

void GUI_DeviceInfoPrivate::build()
{
    ui.setupUi(q);
    ui.lbl_icon->setPixmap(QIcon(QStringLiteral(":/Logo/Logo16x16.ico")).pixmap(QSize(LogoSize, LogoSize)));
    m_startDelay->setObjectName(QStringLiteral("startDelay"));
    m_startDelay->setSingleShot(true);
    m_startDelay->setTimerType(Qt::PreciseTimer);
    m_startDelay->setInterval(m_setup.startDelayMs);
    m_timer.setInterval(TickMs);
    q->setDevice({}, {}, {});
    setUpdating(false);
}

void GUI_DeviceInfoPrivate::connectSignals()
{
    QObject::connect(ui.btn_update, &QPushButton::clicked, q, [this] {
        emit q->sig_updataBtnClicked();
        ask();
    });
    QObject::connect(ui.btn_migration, &QPushButton::clicked, q, &GUI_DeviceInfo::slot_migrationBtnClicked);
    QObject::connect(&m_server, &HttpServer::sig_finished, q,
                     [this](bool ok, const Release &answer) { takeAnswer(ok, answer); });
    QObject::connect(&m_download, &SignedDownload::sig_finished, q,
                     [this](bool ok, const QString &errorText) { takeDownload(ok, errorText); });
    QObject::connect(&m_download, &SignedDownload::sig_refused, q, [this](const QString &reason) {
        failUpgrade(tr("The firmware was refused and not installed.") + QLatin1Char('\n') + reason);
    });
    QObject::connect(m_startDelay, &QTimer::timeout, q, [this] { startUpgrade(); });
    QObject::connect(&m_timer, &QTimer::timeout, q, [this] { tick(); });
    QObject::connect(&m_process, &UpgradeProcess::sig_started, q, [this] { m_hasStarted = m_isOwn; });
    QObject::connect(&m_process, &UpgradeProcess::sig_finished, q, [this](int exitCode) { endUpgrade(exitCode); });
    QObject::connect(&m_process, &UpgradeProcess::sig_failed, q, [this](const QString &reason) {
        if (std::exchange(m_isOwn, false)) {
            failUpgrade(
                (m_hasStarted ? tr("The upgrade program has crashed.") : tr("The upgrade program cannot be started.")) +
                QLatin1Char('\n') + reason);
        }
    });
}

/// No migration meanwhile: two programs would write to adapters at the same time.
void GUI_DeviceInfoPrivate::setUpdating(bool isUpdating)
{
    ui.btn_update->setEnabled(!isUpdating);
    ui.btn_migration->setEnabled(!isUpdating);
    ui.frame_update->setHidden(isUpdating);
    ui.frame_updating->setVisible(isUpdating);
}

void GUI_DeviceInfoPrivate::ask()
{
    if (m_process.isRefused(*q)) {
        return;
    }
    const QString productCode = firmwareProductCode(m_model);
    if (m_model.isEmpty()) {
        m_messages.show(tr("No device was found. Connect it and open this window again."), CMessageBox::Warning);
    } else if (productCode.isEmpty()) {
        m_messages.show(tr("No firmware is published for this device."), CMessageBox::Information);
    } else {
        ui.btn_update->setEnabled(false);
        m_server.start(productCode, m_setup.queryLimitMs);
    }
}

/// An answer without a version tells of no release; an older one than the device's is offered, too.
void GUI_DeviceInfoPrivate::takeAnswer(bool ok, const Release &answer)
{
    m_release = answer;
    ui.btn_update->setEnabled(true);
    ui.btn_update->setFocus();
    if (!ok || answer.versionNo.isEmpty()) {
        m_messages.show(tr("Server request failed!"), CMessageBox::Critical);
    } else if (answer.versionNo == m_firmware.mid(1)) {
        m_messages.show(tr("Congratulations, This is the latest version!"), CMessageBox::Information);
    } else {
        m_messages.ask(question(answer.versionNo), [this] {
            if (!m_process.isRefused(*q)) {
                emit q->sig_updateRequest();
                download();
            }
        });
    }
}

/// Markup. That a firmware is older is told where its signature makes sure that it is the version it is said to be.
QString GUI_DeviceInfoPrivate::question(const QString &version) const
{
    const QString line = QStringLiteral("<br>");
    const auto shown = [](const QString &text) {
        return text.left(LongestVersion).toHtmlEscaped();
    };
    QString text = tr("New version detected") + QStringLiteral(" V") + shown(version) + line;
    const QString ofDevice = m_firmware.mid(1);
    if (!m_setup.updateKey.isEmpty() && compareVersion(version, ofDevice) == -1) {
        text += tr("It is older than V%1, which the device has.").arg(shown(ofDevice)) + line;
    }
    return text + tr("Do you wish to update it now?");
}

void GUI_DeviceInfoPrivate::download()
{
    const QUrl url(m_release.url, QUrl::StrictMode);
    const QString name = downloadFileName(url);
    if (name.isEmpty()) {
        m_messages.show(tr("The firmware cannot be downloaded: its address names no file."), CMessageBox::Critical);
        return;
    }
    m_file = m_setup.applicationDir + QStringLiteral("/UpCode/") + name;
    ui.progressBar->setValue(0);
    setUpdating(true);
    m_download.start(url, m_file, MaximumFirmware, {firmwareProductCode(m_model), m_release.versionNo});
}

void GUI_DeviceInfoPrivate::takeDownload(bool ok, const QString &errorText)
{
    if (!ok) {
        failUpgrade(tr("The firmware could not be downloaded.") + QLatin1Char('\n') + errorText);
        return;
    }
    m_startDelay->start();
    m_timer.start();
}

void GUI_DeviceInfoPrivate::startUpgrade()
{
    if (m_process.isRefused(*q)) {
        stop();
        return;
    }
    m_isOwn = true;
    m_hasStarted = false;
    m_process.start(m_setup.applicationDir + QStringLiteral("/UpgradeCAN.exe"), {m_file});
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
    if (std::exchange(m_isOwn, false) && exitCode != 0) {
        m_messages.show(UpgradeProcess::resultText(exitCode), CMessageBox::Critical);
    }
}

void GUI_DeviceInfoPrivate::failUpgrade(const QString &text)
{
    stop();
    m_messages.show(text, CMessageBox::Critical);
}

void GUI_DeviceInfoPrivate::stop()
{
    m_server.abort();
    m_download.cancel();
    m_startDelay->stop();
    m_timer.stop();
    setUpdating(false);
}

void GUI_DeviceInfoPrivate::migrate()
{
    if (m_setup.isDeviceUnregistered()) {
        m_setup.installMigrationDriver();
    }
    auto *popup = new PopupWidget(q);
    auto *migration = new MigrationWidget(m_process, m_setup.applicationDir, q);
    popup->setAttribute(Qt::WA_DeleteOnClose);
    popup->setWidget(migration);
    QObject::connect(migration, &MigrationWidget::started, popup, [popup] { popup->enabledCloseButton(false); });
    QObject::connect(migration, &MigrationWidget::stopped, popup, [popup] { popup->enabledCloseButton(true); });
    // From the click on, not only from the program's start, and for every other upgrade program as well.
    QObject::connect(&m_process, &UpgradeProcess::sig_runningChanged, popup,
                     [popup](bool isRunning) { popup->enabledCloseButton(!isRunning); });
    popup->setFixedSize(PopupWidth, PopupHeight);
    popup->show();
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
    m_p->m_model = model;
    m_p->m_firmware = firmware;
    showText(m_p->ui.lbl_productSN, serial);
    showText(m_p->ui.lbl_firmware, firmware);
}

void GUI_DeviceInfo::slot_migrationBtnClicked()
{
    const bool isUpdating = !m_p->ui.frame_updating->isHidden();
    if (findChild<PopupWidget *>() == nullptr && !isUpdating && !m_p->m_process.isRefused(*this)) {
        m_p->migrate();
    }
}

void GUI_DeviceInfo::done(int result)
{
    if (!m_p->m_process.isRefused(*this)) {
        m_p->stop();
        QDialog::done(result);
    }
}
