#pragma once

#include <QString>

// What each system does in its own way with processes.

/// The name of the program that a process runs, as the system cuts it; empty when there is no such process or the
/// system does not tell.
QString processName(qint64 processId);

/// Ends the process at once with exitCode: no destructors, no functions of std::atexit, and nothing of the libraries
/// that are loaded either, which may be in the middle of a call. What was written to files must be flushed before.
[[noreturn]] void endProcessNow(int exitCode);
