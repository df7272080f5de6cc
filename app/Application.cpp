#include "app/Application.h"

#include "app/ApplicationSetup.h"
#include "app/Driver.h"
#include "app/EndSignals.h"
#include "app/ExitDeadline.h"
#include "app/GUI_CanView.h"
#include "app/HttpServer.h"
#include "app/ProcessStart.h"
#include "app/ServiceAddress.h"
#include "app/Settings.h"
#include "app/SingleInstance.h"
#include "device/CANCommunication.h"
#include "widgets/CMessageBox.h"

#include <QApplication>
#include <QProcess>

#include <chrono>
#include <memory>

namespace {
/// For closing the adapter, after the files have been finished.
constexpr std::chrono::milliseconds CloseLimit{1700};
constexpr int BlockedExitCode = 1;

/// Lets another instance start, and starts it when that is what the event loop ended for.
void leave(SingleInstance &instance, int exitCode)
{
    instance.release();
    if (exitCode == RestartExitCode) {
        QProcess::startDetached(QApplication::applicationFilePath(), {});
    }
}

int runWindow(SingleInstance &instance)
{
    auto window = std::make_unique<GUI_CanView>(std::make_unique<CANCommunication>(firmwareQuery(updateServer())));
    // Also at the end of a Windows session, after which the process is heard of no more.
    QObject::connect(qApp, &QApplication::aboutToQuit, window.get(), &GUI_CanView::finishFiles);
    const EndSignals endSignals;
    window->show();
    const int exitCode = QApplication::exec();
    QApplication::closeAllWindows();
    const ExitDeadline deadline(CloseLimit, exitCode, [&instance, exitCode] { leave(instance, exitCode); });
    window.reset();
    return exitCode;
}

/// Whoever started the program learns why nothing comes.
int tellProblem(const QString &problem)
{
    CMessageBox(CMessageBox::Critical, SingleInstance::tr("Tips"), problem, CMessageBox::Ok).exec();
    return BlockedExitCode;
}
} // namespace

int runApplication(int &argc, char **argv)
{
    prepareProcess();
    SingleInstance instance;
    if (instance.state() == SingleInstance::State::Running) {
        return 0;
    }
    if (!instance.isHeld()) {
        qCritical("%s", qPrintable(instance.problem())); // before there is a display, or none
    }
    setApplicationAttributes();
    QApplication application(argc, argv);
    applyApplicationLook(application);
    if (instance.isHeld()) {
        installDriver();
    }
    Translators translators;
    installLanguage(translators, getLanguage());
    if (!instance.isHeld()) {
        return tellProblem(instance.problem());
    }
    const int exitCode = runWindow(instance);
    leave(instance, exitCode);
    return exitCode;
}
