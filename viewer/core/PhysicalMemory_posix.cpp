#include "viewer/core/PhysicalMemory.h"

#include <unistd.h>

qint64 physicalMemory()
{
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long size = sysconf(_SC_PAGESIZE);
    return pages > 0 && size > 0 ? qint64{pages} * size : 0;
}
