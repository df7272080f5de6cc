#pragma once

#include <QtGlobal>

#include <sys/resource.h>

/// The most memory that this process ever had, in bytes. Linux only.
inline qint64 peakMemory()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return qint64(usage.ru_maxrss) * 1024;
}
