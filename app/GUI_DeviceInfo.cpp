#include "app/GUI_DeviceInfo.h"

#include "app/MigrationWidget.h"
#include "app/PopupWidget.h"
#include "app/UpgradeProcess.h"
#include "device/FirmwareMonitor.h"
#include "device/Version.h"
#include "ui_GUI_DeviceInfo.h"

#include <QIcon>
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

GUI_DeviceInfo::GUI_DeviceInfo(UpgradeProcess &process, DeviceInfoSetup setup, QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::GUI_DeviceInfo>())
    , m_process(process)
    , m_setup(std::move(setup))
    , m_messages(*this)
    , m_server(m_setup.updateServer)
    , m_download(m_setup.updateServer, m_setup.updateKey)
    , m_startDelay(this)
{
    m_ui->setupUi(this);
    m_ui->lbl_icon->setPixmap(QIcon(QStringLiteral(":/Logo/Logo16x16.ico")).pixmap(QSize(LogoSize, LogoSize)));
    m_startDelay.setObjectName(QStringLiteral("startDelay"));
    m_startDelay.setSingleShot(true);
    m_startDelay.setTimerType(Qt::PreciseTimer);
    setDevice({}, {}, {});
    setUpdating(false);
    connectSignals();
}

GUI_DeviceInfo::~GUI_DeviceInfo() = default;

void GUI_DeviceInfo::setDevice(const QString &serial, const QString &model, const QString &firmware)
{
    m_model = model;
    m_firmware = firmware;
    showText(m_ui->lbl_productSN, serial);
    showText(m_ui->lbl_firmware, firmware);
}

void GUI_DeviceInfo::connectSignals()
{
    connect(m_ui->btn_update, &QPushButton::clicked, this, &GUI_DeviceInfo::ask);
    connect(m_ui->btn_migration, &QPushButton::clicked, this, &GUI_DeviceInfo::slot_migrationBtnClicked);
    connect(&m_server, &HttpServer::sig_finished, this, &GUI_DeviceInfo::takeAnswer);
    connect(&m_download, &SignedDownload::sig_finished, this, &GUI_DeviceInfo::takeDownload);
    connect(&m_download, &SignedDownload::sig_refused, this, [this](const QString &reason) {
        failUpgrade(tr("The firmware was refused and not installed.") + QLatin1Char('\n') + reason);
    });
    connect(&m_startDelay, &QTimer::timeout, this, &GUI_DeviceInfo::startUpgrade);
    connect(&m_timer, &QTimer::timeout, this, &GUI_DeviceInfo::tick);
    connect(&m_process, &UpgradeProcess::sig_started, this, [this] { m_hasStarted = m_isOwn; });
    connect(&m_process, &UpgradeProcess::sig_finished, this, &GUI_DeviceInfo::endUpgrade);
    connect(&m_process, &UpgradeProcess::sig_failed, this, &GUI_DeviceInfo::takeCrash);
}

/// No migration meanwhile: two programs would write to adapters at the same time.
void GUI_DeviceInfo::setUpdating(bool isUpdating)
{
    m_ui->btn_update->setEnabled(!isUpdating);
    m_ui->btn_migration->setEnabled(!isUpdating);
    m_ui->frame_update->setHidden(isUpdating);
    m_ui->frame_updating->setVisible(isUpdating);
}

void GUI_DeviceInfo::ask()
{
    emit sig_updataBtnClicked();
    if (m_process.isRefused(*this)) {
        return;
    }
    const QString productCode = firmwareProductCode(m_model);
    if (m_model.isEmpty()) {
        m_messages.show(tr("No device was found. Connect it and open this window again."), CMessageBox::Warning);
    } else if (productCode.isEmpty()) {
        m_messages.show(tr("No firmware is published for this device."), CMessageBox::Information);
    } else {
        m_ui->btn_update->setEnabled(false);
        m_server.start(productCode, m_setup.queryLimitMs);
    }
}

/// An answer without a version tells of no release; an older one than the device's is offered, too.
void GUI_DeviceInfo::takeAnswer(bool ok, const Release &answer)
{
    m_release = answer;
    m_ui->btn_update->setEnabled(true);
    m_ui->btn_update->setFocus();
    if (!ok || answer.versionNo.isEmpty()) {
        m_messages.show(tr("Server request failed!"), CMessageBox::Critical);
    } else if (answer.versionNo == m_firmware.mid(1)) {
        m_messages.show(tr("Congratulations, This is the latest version!"), CMessageBox::Information);
    } else {
        m_messages.ask(question(answer.versionNo), [this] {
            if (!m_process.isRefused(*this)) {
                emit sig_updateRequest();
                download();
            }
        });
    }
}

/// Markup. That a firmware is older is told where its signature makes sure that it is the version it is said to be.
QString GUI_DeviceInfo::question(const QString &version) const
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

void GUI_DeviceInfo::download()
{
    const QUrl url(m_release.url, QUrl::StrictMode);
    const QString name = downloadFileName(url);
    if (name.isEmpty()) {
        m_messages.show(tr("The firmware cannot be downloaded: its address names no file."), CMessageBox::Critical);
        return;
    }
    m_file = m_setup.applicationDir + QStringLiteral("/UpCode/") + name;
    m_ui->progressBar->setValue(0);
    setUpdating(true);
    m_download.start(url, m_file, MaximumFirmware, {firmwareProductCode(m_model), m_release.versionNo});
}

void GUI_DeviceInfo::takeDownload(bool ok, const QString &errorText)
{
    if (ok) {
        m_startDelay.start(m_setup.startDelayMs);
        m_timer.start(TickMs);
    } else {
        failUpgrade(tr("The firmware could not be downloaded.") + QLatin1Char('\n') + errorText);
    }
}

void GUI_DeviceInfo::startUpgrade()
{
    if (m_process.isRefused(*this)) {
        stop();
        return;
    }
    m_isOwn = true;
    m_hasStarted = false;
    m_process.start(m_setup.applicationDir + QStringLiteral("/UpgradeCAN.exe"), {m_file});
}

void GUI_DeviceInfo::tick()
{
    m_ui->progressBar->setValue(m_ui->progressBar->value() + 1);
    if (m_ui->progressBar->value() == m_ui->progressBar->maximum()) {
        stop();
        emit sig_updateFinish();
    }
}

/// The bar runs on to its end.
void GUI_DeviceInfo::endUpgrade(int exitCode)
{
    if (std::exchange(m_isOwn, false) && exitCode != 0) {
        m_messages.show(UpgradeProcess::resultText(exitCode), CMessageBox::Critical);
    }
}

void GUI_DeviceInfo::takeCrash(const QString &reason)
{
    if (std::exchange(m_isOwn, false)) {
        const QString problem =
            m_hasStarted ? tr("The upgrade program has crashed.") : tr("The upgrade program cannot be started.");
        failUpgrade(problem + QLatin1Char('\n') + reason);
    }
}

void GUI_DeviceInfo::failUpgrade(const QString &text)
{
    stop();
    m_messages.show(text, CMessageBox::Critical);
}

void GUI_DeviceInfo::stop()
{
    m_server.abort();
    m_download.cancel();
    m_startDelay.stop();
    m_timer.stop();
    setUpdating(false);
}

void GUI_DeviceInfo::slot_migrationBtnClicked()
{
    const bool isUpdating = !m_ui->frame_updating->isHidden();
    if (findChild<PopupWidget *>() != nullptr || isUpdating || m_process.isRefused(*this)) {
        return;
    }
    if (m_setup.isDeviceUnregistered()) {
        m_setup.installMigrationDriver();
    }
    auto *popup = new PopupWidget(this);
    auto *migration = new MigrationWidget(m_process, m_setup.applicationDir, this);
    popup->setAttribute(Qt::WA_DeleteOnClose);
    popup->setWidget(migration);
    connect(migration, &MigrationWidget::started, popup, [popup] { popup->enabledCloseButton(false); });
    connect(migration, &MigrationWidget::stopped, popup, [popup] { popup->enabledCloseButton(true); });
    // From the click on, not only from the program's start, and for every other upgrade program as well.
    connect(&m_process, &UpgradeProcess::sig_runningChanged, popup,
            [popup](bool isRunning) { popup->enabledCloseButton(!isRunning); });
    popup->setFixedSize(PopupWidth, PopupHeight);
    popup->show();
}

void GUI_DeviceInfo::done(int result)
{
    if (!m_process.isRefused(*this)) {
        stop();
        QDialog::done(result);
    }
}
