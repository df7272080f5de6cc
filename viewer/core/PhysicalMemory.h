#pragma once

#include <QtGlobal>

/// Bytes of memory that the computer has; 0 where the system does not tell.
qint64 physicalMemory();
