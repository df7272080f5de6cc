#pragma once

/// Seconds of processor time this process has used: not disturbed by what else runs on the machine. On Windows, which
/// counts it in steps of 15 ms, the seconds that have passed.
double cpuSeconds();

/// Seconds of processor time the calling thread has used; on Windows as above.
double threadCpuSeconds();

/// Bytes of this process that are held in RAM.
double residentBytes();

/// Bytes that are allocated; on Windows, that it has committed.
double allocatedBytes();

/// Gives the system back what is free, so that the next run meets fresh memory.
void releaseFreeMemory();
