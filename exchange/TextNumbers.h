#pragma once

#include <QtEndian>

#include <algorithm>
#include <array>
#include <string_view>

/// Numbers as they stand in text captures, read character by character. Each function takes the place where to read and
/// the end of the text, moves the place behind what it has read and says whether there was something.
namespace TextNumbers {

constexpr signed char NoDigit = -1;

/// Value of each byte as a hexadecimal digit, or NoDigit.
constexpr auto HexDigits = [] {
    std::array<signed char, 256> digits{};
    for (std::size_t i = 0; i < digits.size(); ++i) {
        const auto c = static_cast<int>(i);
        const int value = c >= '0' && c <= '9'   ? c - '0'
                          : c >= 'A' && c <= 'F' ? c - 'A' + 10
                          : c >= 'a' && c <= 'f' ? c - 'a' + 10
                                                 : NoDigit;
        digits[i] = static_cast<signed char>(value);
    }
    return digits;
}();

inline int hexDigit(char c)
{
    return HexDigits[static_cast<uchar>(c)];
}

inline bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// At most 18 digits.
inline bool decimal(const char *&at, const char *end, qint64 &number)
{
    const char *begin = at;
    number = 0;
    while (at != end && isDigit(*at) && at - begin < 18) {
        number = number * 10 + (*at++ - '0');
    }
    return at != begin;
}

/// At most 8 digits.
inline bool hexadecimal(const char *&at, const char *end, quint32 &number)
{
    const char *begin = at;
    end = begin + std::min<std::ptrdiff_t>(end - begin, 8);
    number = 0;
    for (int digit = 0; at != end && (digit = hexDigit(*at)) != NoDigit; ++at) {
        number = number << 4U | static_cast<quint32>(digit);
    }
    return at != begin;
}

/// Each of eight bytes the same.
constexpr quint64 eightTimes(quint64 byte)
{
    return byte * 0x0101010101010101U;
}

/// Exactly six decimal digits, of which the first is at + 2, all at once: each has a byte of a word. The two characters
/// before them are read.
inline bool sixDigitsBehindTwo(const char *at, int &number)
{
    const quint64 text = (qFromBigEndian<quint64>(at) & 0x0000FFFFFFFFFFFFU) | 0x3030000000000000U;
    quint64 digits = text ^ eightTimes(0x30);
    const quint64 wrong = ((digits + eightTimes(6)) | digits) & eightTimes(0xF0);
    digits = (digits & 0x000F000F000F000FU) + (digits >> 8U & 0x000F000F000F000FU) * 10;
    digits = (digits & 0x000000FF000000FFU) + (digits >> 16U & 0x000000FF000000FFU) * 100;
    number = static_cast<int>((digits & 0xFFFFU) + (digits >> 32U) * 10000);
    return wrong == 0;
}

/// What each character stands for as the first (shifted) or second digit of a byte; BadPair where it is none.
constexpr quint16 BadPair = 0x8000;
struct HexPairValues
{
    std::array<quint16, 256> high;
    std::array<quint16, 256> low;
};
constexpr auto HexPairs = [] {
    HexPairValues values{};
    for (std::size_t i = 0; i < 256; ++i) {
        const bool isDigit = HexDigits[i] != NoDigit;
        values.high[i] = static_cast<quint16>(isDigit ? HexDigits[i] * 16 : BadPair);
        values.low[i] = static_cast<quint16>(isDigit ? HexDigits[i] : BadPair);
    }
    return values;
}();

/// size bytes of two digits each, which begin step characters apart; all of them must be there.
inline bool hexBytes(const char *at, int size, int step, uchar *bytes)
{
    unsigned all = 0;
    for (uchar *end = bytes + size; bytes != end; ++bytes, at += step) {
        const unsigned pair =
            HexPairs.high[static_cast<uchar>(at[0])] | unsigned{HexPairs.low[static_cast<uchar>(at[1])]};
        all |= pair;
        *bytes = static_cast<uchar>(pair);
    }
    return (all & BadPair) == 0;
}

inline bool character(const char *&at, const char *end, char c)
{
    if (at == end || *at != c) {
        return false;
    }
    ++at;
    return true;
}

/// "10:20:30.400", each of the numbers with or without leading zeros: milliseconds of the day.
inline bool clock(const char *&at, const char *end, int &milliseconds)
{
    qint64 parts[4];
    constexpr std::string_view Behind = "::.";
    constexpr qint64 Limits[] = {24, 60, 60, 1000};
    for (std::size_t i = 0; i < 4; ++i) {
        if (!decimal(at, end, parts[i]) || parts[i] >= Limits[i] || (i < 3 && !character(at, end, Behind[i]))) {
            return false;
        }
    }
    milliseconds = static_cast<int>(((parts[0] * 60 + parts[1]) * 60 + parts[2]) * 1000 + parts[3]);
    return true;
}

} // namespace TextNumbers
