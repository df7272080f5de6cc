#include "app/Application.h"

#include "app/ApplicationSetup.h"
#include "app/Driver.h"
#include "app/ExitDeadline.h"
#include "app/GUI_CanView.h"
#include "app/HttpServer.h"
#include "app/ServiceAddress.h"
#include "app/Settings.h"
#include "app/SingleInstance.h"
#include "device/CANCommunication.h"

#include <QApplication>
#include <QProcess>

#include <chrono>
#include <memory>

namespace {
/// For closing the adapter, after the files have been finished.
constexpr std::chrono::milliseconds CloseLimit{1700};

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
    window->show();
    const int exitCode = QApplication::exec();
    QApplication::closeAllWindows();
    window->finishFiles();
    const ExitDeadline deadline(CloseLimit, exitCode, [&instance, exitCode] { leave(instance, exitCode); });
    window.reset();
    return exitCode;
}
} // namespace

int runApplication(int &argc, char **argv)
{
    SingleInstance instance;
    if (!instance.isHeld()) {
        return 0;
    }
    setApplicationAttributes();
    QApplication application(argc, argv);
    applyApplicationLook(application);
    installDriver();
    Translators translators;
    installLanguage(translators, getLanguage());
    const int exitCode = runWindow(instance);
    leave(instance, exitCode);
    return exitCode;
}
