#pragma once

#include "exchange/BusFrame.h"

#include <QString>

#include <vector>

/// Frames for tests: of each kind, from a fixed seed.
namespace RandomFrames {

enum Kind { Classic, Remote, Fd, Error, Lin, LinErrors, Mixed };

/// Times rise by up to 2 s, are multiples of tick nanoseconds and begin with first.
std::vector<BusFrame> make(Kind kind, int count, qint64 first, qint64 tick, quint32 seed = 1);

/// Empty when both are the same; otherwise what differs first. Times may differ by slack nanoseconds.
QString difference(const std::vector<BusFrame> &actual, const std::vector<BusFrame> &expected, qint64 slack = 0);

} // namespace RandomFrames
