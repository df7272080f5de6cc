#pragma once

#include "exchange/BusFrame.h"

#include <string_view>

/// A line of candump: of a log ("(1.500000) can0 123#11223344"), or of what it shows on a screen
/// ("(1.500000)  can0  123   [4]  11 22 33 44").
class CandumpLine
{
public:
    qint64 time = 0;       ///< nanoseconds; 0 where the line has none
    std::string_view name; ///< of the interface

    /// False when the line holds no frame. frame gets all but time and channel. The name is a part of line.
    bool read(std::string_view line, BusFrame &frame);

private:
    bool readLog(std::string_view line, BusFrame &frame);
    bool readLogTime(const char *&at, const char *end);
    bool readScreen(std::string_view line, BusFrame &frame);

    // What most lines have like the line before: up to the point of the time.
    std::array<char, 12> m_seconds{};
    qint64 m_secondsTime = 0;
};

/// The longest line of a log that put() makes, with its end.
constexpr std::size_t MaxCandumpLine = 32 + 2 + 8 + 3 + 2 * BusFrame::MaxLength + 3;

/// Writes identifier, data and direction as a log has them, with the end of the line, and returns the place behind.
/// Takes MaxCandumpLine bytes at most.
char *putCandumpFrame(char *to, const BusFrame &frame);
