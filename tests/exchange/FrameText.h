#pragma once

#include "exchange/BusFrame.h"

#include <QByteArray>

#include <vector>

/// Frames as lines of text: nanoseconds, channel, rx or tx, identifier (hexadecimal), flags (hexadecimal), length, data
/// (hexadecimal, or - without).
namespace FrameText {

QByteArray text(const std::vector<BusFrame> &frames);
std::vector<BusFrame> frames(const QByteArray &text);

} // namespace FrameText
