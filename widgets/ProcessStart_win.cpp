#include "widgets/ProcessStart.h"

#include <QtGlobal>

#include <windows.h>

void prepareProcess()
{
    SetDllDirectoryW(L"");
    for (const char *name : {"QT_PLUGIN_PATH", "QT_QPA_PLATFORM_PLUGIN_PATH"}) {
        qunsetenv(name);
    }
}
