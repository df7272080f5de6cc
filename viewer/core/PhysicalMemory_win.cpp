#include "viewer/core/PhysicalMemory.h"

#include <windows.h>

qint64 physicalMemory()
{
    MEMORYSTATUSEX status{};
    status.dwLength = sizeof(status);
    return GlobalMemoryStatusEx(&status) != 0 ? static_cast<qint64>(status.ullTotalPhys) : 0;
}
