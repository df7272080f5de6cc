#pragma once

#include <QtGlobal>

#include <string_view>

class TextLine;

/// The flags of a CANFD event.
namespace AscFlags {
constexpr quint32 Remote = 0x10;
constexpr quint32 Fd = 0x1000;
constexpr quint32 BitRateSwitch = 0x2000;
constexpr quint32 ErrorStateIndicator = 0x4000;
} // namespace AscFlags

/// The point in time that a line of an ASC file names behind its first word, as "Thu Oct 09 08:53:21.500 AM 2025":
/// English or German, 12 or 24 hours, of the clock on the wall here. Nanoseconds from 1970-01-01 00:00 UTC; 0 for any
/// other text.
qint64 timeOfAscDate(std::string_view text);
/// The same in English with 12 hours and milliseconds.
void addAscDate(TextLine &line, qint64 nanoseconds);
