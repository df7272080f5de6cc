#include "app/UpgradeProcess.h"

#include "app/WindowMessages.h"

#include <QCoreApplication>
#include <QProcess>

#include <iterator>
#include <utility>

namespace {
/// By exit code.
constexpr const char *ResultTexts[] = {
    QT_TRANSLATE_NOOP("UpgradeProcess", "Device upgrade succeeded"),
    QT_TRANSLATE_NOOP("UpgradeProcess", "File cannot be accessed"),
    QT_TRANSLATE_NOOP("UpgradeProcess", "Hardware version does not match"),
    QT_TRANSLATE_NOOP("UpgradeProcess", "No old device was found"),
    QT_TRANSLATE_NOOP("UpgradeProcess", "Enter BootLoader failed"),
    QT_TRANSLATE_NOOP("UpgradeProcess", "Version read failed"),
    QT_TRANSLATE_NOOP("UpgradeProcess", "Flash erasing failed"),
    QT_TRANSLATE_NOOP("UpgradeProcess", "Data send failed"),
};
constexpr int ResultCount = static_cast<int>(std::size(ResultTexts));
} // namespace

/// Can be deleted without harm to its program, which the base class would kill.
class UpgradeProcess::Process : public QProcess
{
public:
    using QProcess::QProcess;
    ~Process() override { setProcessState(NotRunning); }
};

UpgradeProcess::~UpgradeProcess()
{
    release();
}

QString UpgradeProcess::resultText(int exitCode)
{
    const bool isKnown = exitCode >= 0 && exitCode < ResultCount;
    return isKnown ? tr(ResultTexts[exitCode]) : tr("Unknown error");
}

QString UpgradeProcess::runningText()
{
    return tr(
        "The upgrade program is still running. Wait until it has ended, and do not unplug the adapter meanwhile.");
}

void UpgradeProcess::start(const QString &program, const QStringList &arguments)
{
    if (isRunning()) {
        return;
    }
    m_process = new Process(this);
    // Not to a pipe: it would be full, or broken, once nobody reads it any more.
    m_process->setStandardOutputFile(QProcess::nullDevice());
    m_process->setStandardErrorFile(QProcess::nullDevice());
    connect(m_process, &QProcess::started, this, &UpgradeProcess::sig_started);
    connect(m_process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            [this](int exitCode, QProcess::ExitStatus status) { end(status == QProcess::NormalExit, exitCode); });
    connect(m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) { // a crash is told by finished() as well
            end(false, 0);
        }
    });
    emit sig_runningChanged(true);
    m_process->start(program, arguments, QIODevice::ReadWrite);
}

void UpgradeProcess::release()
{
    if (!isRunning()) {
        return;
    }
    Process *process = std::exchange(m_process, nullptr);
    process->disconnect(this);
    // From now on it ends with its program, so that the system can forget that one, or else with the application.
    process->setParent(QCoreApplication::instance());
    connect(process, &QProcess::stateChanged, process, [process](QProcess::ProcessState state) {
        if (state == QProcess::NotRunning) {
            process->deleteLater();
        }
    });
}

bool UpgradeProcess::isRefused(QWidget &window) const
{
    if (isRunning()) {
        WindowMessages(window).show(runningText(), CMessageBox::Warning);
    }
    return isRunning();
}

void UpgradeProcess::end(bool isByItself, int exitCode)
{
    QProcess *process = std::exchange(m_process, nullptr);
    process->deleteLater();
    const QString reason = process->errorString();
    if (!isByItself) {
        qWarning("Upgrade program %s: %s", qUtf8Printable(process->program()), qUtf8Printable(reason));
    }
    emit sig_runningChanged(false);
    if (isByItself) {
        emit sig_finished(exitCode);
    } else {
        emit sig_failed(reason);
    }
}
