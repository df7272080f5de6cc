#pragma once

#include <QtAlgorithms>

#include <array>
#include <charconv>
#include <cstring>

/// The parts of cells as ASCII. Each writes to `to` and returns the place behind; none writes an ending zero. In the
/// header, because a line of a text capture is made of ten of them.
namespace FrameBytes {

constexpr std::size_t MaxDecimal = 20;
constexpr std::size_t MaxHexNumber = 10;
constexpr std::size_t MaxTimeStamp = 12;

/// Every byte as two upper-case digits and a blank, each in four characters so that one copy of a fixed size writes it.
inline constexpr std::array<char, 1024> HexPairs = [] {
    constexpr char Digits[] = "0123456789ABCDEF";
    std::array<char, 1024> pairs{};
    for (std::size_t i = 0; i < 256; ++i) {
        pairs[4 * i] = Digits[i >> 4U];
        pairs[4 * i + 1] = Digits[i & 15U];
        pairs[4 * i + 2] = ' ';
        pairs[4 * i + 3] = ' ';
    }
    return pairs;
}();

/// "000" to "999", in four characters for the same reason.
inline constexpr std::array<char, 4000> Thousand = [] {
    std::array<char, 4000> texts{};
    for (std::size_t i = 0; i < 1000; ++i) {
        texts[4 * i] = static_cast<char>('0' + i / 100);
        texts[4 * i + 1] = static_cast<char>('0' + i / 10 % 10);
        texts[4 * i + 2] = static_cast<char>('0' + i % 10);
        texts[4 * i + 3] = ' ';
    }
    return texts;
}();

/// Decimal without leading zeros.
inline char *putDecimal(char *to, quint64 number)
{
    return std::to_chars(to, to + MaxDecimal, number).ptr;
}

/// Three digits of a number from 0 to 999; takes four bytes.
inline char *putThreeDigits(char *to, std::size_t number)
{
    std::memcpy(to, &Thousand[4 * number], 4);
    return to + 3;
}

/// "0x" and upper-case hexadecimal digits without leading zeros; takes MaxHexNumber bytes.
inline char *putHexNumber(char *to, quint32 number)
{
    constexpr int Digits = 8;
    const int count = Digits - static_cast<int>(qCountLeadingZeroBits(number | 1U)) / 4;
    const quint32 leftmost = number << static_cast<unsigned>(4 * (Digits - count));
    const auto pair = [leftmost](unsigned shift) {
        return &HexPairs[4 * std::size_t{leftmost >> shift & 0xFFU}];
    };
    to[0] = '0';
    to[1] = 'x';
    std::memcpy(to + 2, pair(24), 2); // and so on, also behind the number: always as many copies
    std::memcpy(to + 4, pair(16), 2);
    std::memcpy(to + 6, pair(8), 2);
    std::memcpy(to + 8, pair(0), 2);
    return to + 2 + count;
}

/// milliseconds as hours (modulo 24), minutes, seconds, milliseconds: "1:2:3.4", without leading zeros.
inline char *putTimeStamp(char *to, quint32 milliseconds)
{
    to = putDecimal(to, milliseconds / 3600000 % 24);
    *to++ = ':';
    to = putDecimal(to, milliseconds / 60000 % 60);
    *to++ = ':';
    to = putDecimal(to, milliseconds / 1000 % 60);
    *to++ = '.';
    return putDecimal(to, milliseconds % 1000);
}

/// Two upper-case hexadecimal digits and a blank for each byte; takes size * 3 bytes and one byte of slack behind.
inline char *putPayload(char *to, const uchar *data, int size)
{
    for (int i = 0; i < size; ++i) {
        std::memcpy(to, &HexPairs[4 * std::size_t{data[i]}], 4);
        to += 3;
    }
    return to;
}

} // namespace FrameBytes
