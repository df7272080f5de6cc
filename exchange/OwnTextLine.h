#pragma once

#include "exchange/BusFrame.h"
#include "exchange/CaptureClocks.h"

#include <QString>

#include <array>
#include <optional>
#include <string_view>
#include <vector>

class Findings;

/// Reads the lines of the program's text captures, one after the other, whole: what stands in each of the ten cells.
/// Either separator is understood in every line, with or without one behind the last cell, and words in either language
/// and encoding. A line as the program writes it is read on a fast way, any other one cell by cell; both give the same.
class OwnTextLine
{
public:
    /// firstDay: see DayClock. findings: gets what is wrong with a line.
    OwnTextLine(const QDate &firstDay, Findings &findings)
        : m_clock(firstDay)
        , m_findings(findings)
    {
    }

    /// False when the line holds no frame, which is reported unless the line is empty. lineNumber: from 1.
    bool read(std::string_view line, qint64 lineNumber, BusFrame &frame);
    /// The same on the way that understands every line; for comparing.
    bool readSlowly(std::string_view line, qint64 lineNumber, BusFrame &frame);

private:
    static constexpr std::size_t SpaceCount = 5;
    static constexpr std::size_t CellCount = 10;
    static constexpr std::size_t ClockSize = 12;
    using Cells = std::array<std::string_view, CellCount>;

    /// Cells with the separators behind them, as they stood in an earlier line, and what they say.
    struct Known
    {
        std::array<char, 64> bytes;
        std::size_t size;
        quint16 value;
    };
    class KnownCells
    {
    public:
        /// What stands at the place; null when that is not known. Moves the place behind it.
        const Known *at(const char *&place, const char *end) const;
        void add(std::string_view bytes, quint16 value);

    private:
        static constexpr std::size_t MaxKnown = 16;
        std::vector<Known> m_known;
    };

    template<std::size_t Separator>
    bool readFast(std::string_view line, BusFrame &frame);
    bool clockFast(const char *&at, const char *end, int &milliseconds) const;
    bool readSlowly(std::string_view line, BusFrame &frame);
    bool split(std::string_view line, Cells &cells);
    bool readKind(const Cells &cells, BusFrame &frame);
    bool readIdentifier(std::string_view cell, BusFrame &frame);
    bool readPayload(std::string_view lengthCell, std::string_view cell, BusFrame &frame);
    void readNumber(std::string_view cell);
    void readTimes(const Cells &cells, BusFrame &frame);
    void checkNumber(qint64 number);
    bool refuse(const QString &text);
    void report(const QString &text);

    DayClock m_clock;
    DayStampClock m_stamps;
    Findings &m_findings;
    qint64 m_lineNumber = 0;
    qint64 m_number = 0; ///< of the frame before; 0: there was none
    bool m_isCommaLast = true;
    KnownCells m_directions;
    KnownCells m_kinds;
    KnownCells m_noStamps;
    std::array<char, ClockSize> m_clockText{}; ///< the time of day of the last frame...
    qint64 m_time = 0;                         ///< ...and what was made of it
};
