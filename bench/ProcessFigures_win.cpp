#include "bench/ProcessFigures.h"

#include <chrono>

#include <malloc.h>
#include <windows.h>

#include <psapi.h>

namespace {
PROCESS_MEMORY_COUNTERS_EX memoryCounters()
{
    PROCESS_MEMORY_COUNTERS_EX counters{};
    counters.cb = sizeof(counters);
    GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS *>(&counters), sizeof(counters));
    return counters;
}
} // namespace

double cpuSeconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

double threadCpuSeconds()
{
    return cpuSeconds();
}

double residentBytes()
{
    return static_cast<double>(memoryCounters().WorkingSetSize);
}

double allocatedBytes()
{
    return static_cast<double>(memoryCounters().PagefileUsage);
}

void releaseFreeMemory()
{
    _heapmin();
}
