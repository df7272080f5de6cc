#include "app/MigrationWidget.h"

#include "app/UpgradeProcess.h"
#include "app/WindowMessages.h"
#include "ui_MigrationWidget.h"

#include <QTimer>

#include <utility>

namespace {
constexpr int TickMs = 10;

constexpr int Success = 0;
constexpr int NoExitCode = -1; ///< of a program that crashed or could not be started

QString descriptionText()
{
    return MigrationWidget::tr("Device migration operation description") + QStringLiteral("\r\n") +
           QStringLiteral("1. ") + MigrationWidget::tr("Firmware version less than") + QStringLiteral(" V2.00 \r\n") +
           QStringLiteral("2. ") + MigrationWidget::tr("Do not power off during the upgrade") + QStringLiteral("\r\n") +
           QStringLiteral("3. ") +
           MigrationWidget::tr("If the operation fails, remove and reinsert the device and try again") +
           QStringLiteral("\r\n");
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

class MigrationWidgetPrivate
{
public:
    MigrationWidgetPrivate(MigrationWidget *widget, UpgradeProcess &upgradeProcess, QString programPath,
                           QString imagePath)
        : q(widget)
        , process(upgradeProcess)
        , program(std::move(programPath))
        , image(std::move(imagePath))
    {
    }

    void build();
    void connectSignals();
    void start();
    void showRunning();
    void showIdle();
    void end(int exitCode);
    void showResult(int exitCode);
    void clear();

    MigrationWidget *q;
    UpgradeProcess &process;
    Ui::MigrationWidget ui;
    const QString program;
    const QString image;
    QTimer timer;
    bool isOwn = false; ///< the program that runs is the one started here
    int runs = 0;       ///< since the results were cleared
};

void MigrationWidgetPrivate::build()
{
    ui.setupUi(q);
    ui.lbl_description->setText(descriptionText());
    QSizePolicy policy = ui.progressBar->sizePolicy();
    policy.setRetainSizeWhenHidden(true); // nothing moves when it comes and goes
    ui.progressBar->setSizePolicy(policy);
    ui.progressBar->hide();
    timer.setInterval(TickMs);
}

void MigrationWidgetPrivate::connectSignals()
{
    QObject::connect(ui.btn_migration, &QPushButton::clicked, q, &MigrationWidget::migrationBtnClicked);
    QObject::connect(ui.btn_clear, &QPushButton::clicked, q, [this] { clear(); });
    QObject::connect(&timer, &QTimer::timeout, q, [this] { ui.progressBar->setValue(ui.progressBar->value() + 1); });
    QObject::connect(&process, &UpgradeProcess::sig_started, q, [this] {
        if (isOwn) {
            showRunning();
        }
    });
    QObject::connect(&process, &UpgradeProcess::sig_finished, q, [this](int exitCode) { end(exitCode); });
    QObject::connect(&process, &UpgradeProcess::sig_failed, q, [this] { end(NoExitCode); });
}

void MigrationWidgetPrivate::start()
{
    if (process.isRunning()) {
        WindowMessages(*q->window()).show(UpgradeProcess::runningText(), CMessageBox::Warning);
        return;
    }
    isOwn = true;
    process.start(program, {image});
}

void MigrationWidgetPrivate::showRunning()
{
    emit q->started();
    ui.btn_migration->setEnabled(false);
    ui.progressBar->setValue(0);
    ui.progressBar->show();
    timer.start();
}

void MigrationWidgetPrivate::showIdle()
{
    timer.stop();
    ui.progressBar->hide();
    ui.btn_migration->setEnabled(true);
    emit q->stopped();
}

void MigrationWidgetPrivate::end(int exitCode)
{
    if (!std::exchange(isOwn, false)) {
        return;
    }
    showResult(exitCode);
    if (timer.isActive()) { // else the program could not be started
        showIdle();
    }
}

void MigrationWidgetPrivate::showResult(int exitCode)
{
    ++runs;
    const QString line = QStringLiteral("%1. %2").arg(runs).arg(UpgradeProcess::resultText(exitCode));
    const QString format = exitCode == Success ? QStringLiteral("<font color = green>%1</font>")
                                               : QStringLiteral("<font color = red>%1</font>");
    ui.tbx_result->append(format.arg(line));
}

void MigrationWidgetPrivate::clear()
{
    ui.tbx_result->clear();
    runs = 0;
}

MigrationWidget::MigrationWidget(UpgradeProcess &process, QString program, QString image, QWidget *parent)
    : QWidget(parent)
    , m_p(std::make_unique<MigrationWidgetPrivate>(this, process, std::move(program), std::move(image)))
{
    m_p->build();
    m_p->connectSignals();
}

MigrationWidget::~MigrationWidget() = default;

void MigrationWidget::migrationBtnClicked()
{
    m_p->start();
}
