#include "widgets/ProcessStart.h"

#include <QtGlobal>

void prepareProcess()
{
    for (const char *name : {"QT_PLUGIN_PATH", "QT_QPA_PLATFORM_PLUGIN_PATH"}) {
        qunsetenv(name);
    }
}
