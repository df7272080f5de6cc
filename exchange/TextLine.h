#pragma once

#include "exchange/BusFrame.h"

#include <array>
#include <string_view>

/// One line of a text capture while it is written; what does not fit any more is left out. No allocation.
class TextLine
{
public:
    void clear() { m_size = 0; }
    void add(char c);
    void add(std::string_view text);
    void addDecimal(quint64 number, int width = 0, char fill = ' ');
    /// Upper-case digits.
    void addHex(quint32 number, int width = 0, char fill = ' ');
    /// A time in nanoseconds in a unit of 10^unitDigits of them, with as many digits behind the point as are asked for.
    void addTime(qint64 nanoseconds, int unitDigits, int fractionDigits, int width);
    /// Fills up with blanks.
    void padTo(std::size_t size);
    /// Each byte of the frame's data as a blank and two upper-case digits.
    void addBytes(const BusFrame &frame);

    std::string_view text() const { return {m_text.data(), m_size}; }
    std::size_t size() const { return m_size; }

private:
    void addDigits(std::string_view digits, int width, char fill);

    std::array<char, 1024> m_text;
    std::size_t m_size = 0;
};
