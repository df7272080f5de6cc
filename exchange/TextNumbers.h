#pragma once

#include <QtGlobal>

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
    number = 0;
    while (at != end && hexDigit(*at) != NoDigit && at - begin < 8) {
        number = number << 4U | static_cast<quint32>(hexDigit(*at++));
    }
    return at != begin;
}

/// size bytes of two digits each, which begin step characters apart; all of them must be there.
inline bool hexBytes(const char *at, int size, int step, uchar *bytes)
{
    int bad = 0;
    for (int i = 0; i < size; ++i, at += step) {
        const int high = hexDigit(at[0]);
        const int low = hexDigit(at[1]);
        bad |= high | low;
        bytes[i] = static_cast<uchar>(static_cast<unsigned>(high) << 4U | static_cast<unsigned>(low));
    }
    return bad >= 0;
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
