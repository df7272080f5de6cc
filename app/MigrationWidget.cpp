#include "app/MigrationWidget.h"

#include "app/UpgradeProcess.h"
#include "ui_MigrationWidget.h"

#include <QTimer>

#include <utility>

namespace {
constexpr int TickMs = 10;

/// By exit code.
constexpr const char *ResultTexts[] = {
    QT_TRANSLATE_NOOP("MigrationWidget", "Device upgrade succeeded"),
    QT_TRANSLATE_NOOP("MigrationWidget", "File cannot be accessed"),
    QT_TRANSLATE_NOOP("MigrationWidget", "Hardware version does not match"),
    QT_TRANSLATE_NOOP("MigrationWidget", "No old device was found"),
    QT_TRANSLATE_NOOP("MigrationWidget", "Enter BootLoader failed"),
    QT_TRANSLATE_NOOP("MigrationWidget", "Version read failed"),
    QT_TRANSLATE_NOOP("MigrationWidget", "Flash erasing failed"),
    QT_TRANSLATE_NOOP("MigrationWidget", "Data send failed"),
};
constexpr int ResultCount = sizeof(ResultTexts) / sizeof(ResultTexts[0]);
constexpr int Success = 0;
constexpr int NoExitCode = -1; ///< of a program that crashed or could not be started

QString resultText(int exitCode)
{
    const bool isKnown = exitCode >= 0 && exitCode < ResultCount;
    return isKnown ? MigrationWidget::tr(ResultTexts[exitCode]) : MigrationWidget::tr("Unknown error");
}

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
    MigrationWidgetPrivate(MigrationWidget *widget, QString programPath, QString imagePath)
        : q(widget)
        , program(std::move(programPath))
        , image(std::move(imagePath))
    {
    }

    void build();
    void connectSignals();
    void showRunning();
    void showIdle();
    void showResult(int exitCode);
    void clear();

    MigrationWidget *q;
    Ui::MigrationWidget ui;
    const QString program;
    const QString image;
    UpgradeProcess process;
    QTimer timer;
    int runs = 0; ///< since the results were cleared
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
    QObject::connect(&process, &UpgradeProcess::sig_started, q, [this] { showRunning(); });
    QObject::connect(&process, &UpgradeProcess::sig_finished, q, [this](int exitCode) { showResult(exitCode); });
    QObject::connect(&process, &UpgradeProcess::sig_failed, q, [this] { showResult(NoExitCode); });
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

void MigrationWidgetPrivate::showResult(int exitCode)
{
    ++runs;
    const QString line = QStringLiteral("%1. %2").arg(runs).arg(resultText(exitCode));
    const QString format = exitCode == Success ? QStringLiteral("<font color = green>%1</font>")
                                               : QStringLiteral("<font color = red>%1</font>");
    ui.tbx_result->append(format.arg(line));
    if (timer.isActive()) { // else the program could not be started
        showIdle();
    }
}

void MigrationWidgetPrivate::clear()
{
    ui.tbx_result->clear();
    runs = 0;
}

MigrationWidget::MigrationWidget(QString program, QString image, QWidget *parent)
    : QWidget(parent)
    , m_p(std::make_unique<MigrationWidgetPrivate>(this, std::move(program), std::move(image)))
{
    m_p->build();
    m_p->connectSignals();
}

MigrationWidget::~MigrationWidget() = default;

void MigrationWidget::migrationBtnClicked()
{
    m_p->process.start(m_p->program, {m_p->image});
}
