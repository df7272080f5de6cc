#pragma once

#include <QString>

/// The name of the program that a process runs, as the system cuts it; empty when there is no such process or the
/// system does not tell.
QString processName(qint64 processId);
