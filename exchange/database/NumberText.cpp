#include "exchange/database/NumberText.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace {

constexpr quint64 powers[] = {1,
                              10,
                              100,
                              1000,
                              10000,
                              100000,
                              1000000,
                              10000000,
                              100000000,
                              1000000000,
                              10000000000,
                              100000000000,
                              1000000000000,
                              10000000000000,
                              100000000000000,
                              1000000000000000,
                              10000000000000000,
                              100000000000000000,
                              1000000000000000000};

template<typename Real>
char *putShortest(char *to, Real value)
{
    if (std::isnan(value)) { // whose sign says nothing
        static constexpr std::string_view text = "nan";
        return std::copy(text.begin(), text.end(), to);
    }
    return std::to_chars(to, to + MaxNumberText, value).ptr;
}

/// The digits of a fraction, with zeros before them.
char *putFraction(char *to, quint64 fraction, int digits)
{
    *to++ = '.';
    for (int i = digits - 1; i >= 0; --i) {
        to[i] = static_cast<char>('0' + fraction % 10);
        fraction /= 10;
    }
    return to + digits;
}

} // namespace

quint64 powerOfTen(int digits)
{
    return powers[digits];
}

char *putUnsigned(char *to, quint64 value)
{
    return std::to_chars(to, to + MaxNumberText, value).ptr;
}

char *putSigned(char *to, qint64 value)
{
    return std::to_chars(to, to + MaxNumberText, value).ptr;
}

char *putFixed(char *to, qint64 value, int digits)
{
    if (value < 0) {
        *to++ = '-';
    }
    const quint64 size = value < 0 ? 0 - static_cast<quint64>(value) : static_cast<quint64>(value);
    to = putUnsigned(to, size / powers[digits]);
    return digits > 0 ? putFraction(to, size % powers[digits], digits) : to;
}

char *putDecimal(char *to, qint64 value, int digits)
{
    char *end = putFixed(to, value, digits);
    if (digits > 0) {
        while (end[-1] == '0') {
            --end;
        }
        end -= end[-1] == '.' ? 1 : 0;
    }
    return end;
}

char *putReal(char *to, double value)
{
    return putShortest(to, value);
}

char *putReal(char *to, float value)
{
    return putShortest(to, value);
}

char *putBytes(char *to, const uchar *bytes, int count)
{
    static constexpr char digits[] = "0123456789ABCDEF";
    for (int i = 0; i < count; ++i) {
        *to++ = digits[bytes[i] >> 4U];
        *to++ = digits[bytes[i] & 0x0FU];
    }
    return to;
}

char *putCell(char *to, std::string_view utf8)
{
    const bool isPlain =
        std::none_of(utf8.begin(), utf8.end(), [](char c) { return c == ',' || c == '"' || c == '\n' || c == '\r'; });
    if (isPlain) {
        return std::copy(utf8.begin(), utf8.end(), to);
    }
    *to++ = '"';
    for (const char c : utf8) {
        if (c == '"') {
            *to++ = '"';
        }
        *to++ = c;
    }
    *to++ = '"';
    return to;
}
