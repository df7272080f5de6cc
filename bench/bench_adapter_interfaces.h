#pragma once

#include "bench/BenchReport.h"

#include <QString>

/// What the SocketCAN library takes to receive, where there is one. Over a socket pair; with an interface's name on
/// that interface, as root, and beside candump.
void addInterfaceFigures(BenchReport &report, const QString &interface, int seconds);
