#include "app/MigrationWidget.h"

#include "app/UpgradeProcess.h"
#include "ui_MigrationWidget.h"

#include <utility>

namespace {
constexpr int TickMs = 10;
constexpr int NoExitCode = -1; ///< of a program that crashed or could not be started

QString descriptionText()
{
    return QStringLiteral("%1\r\n1. %2 V2.00 \r\n2. %3\r\n3. %4\r\n")
        .arg(MigrationWidget::tr("Device migration operation description"),
             MigrationWidget::tr("Firmware version less than"),
             MigrationWidget::tr("Do not power off during the upgrade"),
             MigrationWidget::tr("If the operation fails, remove and reinsert the device and try again"));
}
} // namespace

QString migrationProgram(const QString &applicationDir)
{
    return applicationDir + QStringLiteral("/Migration/UpgradeCAN.exe");
}

QString migrationImage(const QString &applicationDir)
{
    return applicationDir + QStringLiteral("/Migration/UpCode/X9CANFirmWareMigrate.bin");
}

MigrationWidget::MigrationWidget(UpgradeProcess &process, QString applicationDir, QWidget *parent)
    : QWidget(parent)
    , m_process(process)
    , m_applicationDir(std::move(applicationDir))
    , m_ui(std::make_unique<Ui::MigrationWidget>())
{
    m_ui->setupUi(this);
    m_ui->lbl_description->setText(descriptionText());
    QSizePolicy policy = m_ui->progressBar->sizePolicy();
    policy.setRetainSizeWhenHidden(true); // nothing moves when it comes and goes
    m_ui->progressBar->setSizePolicy(policy);
    m_ui->progressBar->hide();
    m_timer.setInterval(TickMs);
    connect(m_ui->btn_migration, &QPushButton::clicked, this, &MigrationWidget::migrationBtnClicked);
    connect(m_ui->btn_clear, &QPushButton::clicked, m_ui->tbx_result, &QTextEdit::clear);
    connect(m_ui->btn_clear, &QPushButton::clicked, this, [this] { m_runs = 0; });
    connect(&m_timer, &QTimer::timeout, this, [this] { m_ui->progressBar->setValue(m_ui->progressBar->value() + 1); });
    connect(&m_process, &UpgradeProcess::sig_started, this, &MigrationWidget::showRunning);
    connect(&m_process, &UpgradeProcess::sig_finished, this, &MigrationWidget::end);
    connect(&m_process, &UpgradeProcess::sig_failed, this, [this] { end(NoExitCode); });
}

MigrationWidget::~MigrationWidget() = default;

void MigrationWidget::migrationBtnClicked()
{
    if (!m_process.isRefused(*window())) {
        m_isOwn = true;
        m_process.start(migrationProgram(m_applicationDir), {migrationImage(m_applicationDir)});
    }
}

void MigrationWidget::showRunning()
{
    if (!m_isOwn) {
        return;
    }
    emit started();
    m_ui->btn_migration->setEnabled(false);
    m_ui->progressBar->setValue(0);
    m_ui->progressBar->show();
    m_timer.start();
}

void MigrationWidget::end(int exitCode)
{
    if (!std::exchange(m_isOwn, false)) {
        return;
    }
    const QString format = exitCode == 0 ? QStringLiteral("<font color = green>%1. %2</font>")
                                         : QStringLiteral("<font color = red>%1. %2</font>");
    m_ui->tbx_result->append(format.arg(++m_runs).arg(UpgradeProcess::resultText(exitCode)));
    if (m_timer.isActive()) { // else the program could not be started
        m_timer.stop();
        m_ui->progressBar->hide();
        m_ui->btn_migration->setEnabled(true);
        emit stopped();
    }
}
