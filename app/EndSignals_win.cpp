#include "app/EndSignals.h"

#include <QCoreApplication>

#include <windows.h>

namespace {
/// On a thread of the system's. When it returns from the end of a console or a session, the process is ended.
BOOL WINAPI endProgram(DWORD event)
{
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) {
        Sleep(INFINITE);
    }
    return TRUE;
}
} // namespace

EndSignals::EndSignals()
{
    if (SetConsoleCtrlHandler(&endProgram, TRUE) == 0) {
        qWarning("The end of a console ends the program at once");
    }
}

EndSignals::~EndSignals()
{
    SetConsoleCtrlHandler(&endProgram, FALSE);
}
