#include "exchange/TextLine.h"

#include <algorithm>
#include <charconv>
#include <cstring>

namespace {

constexpr char HexDigits[] = "0123456789ABCDEF";

constexpr quint64 powerOfTen(int exponent)
{
    quint64 power = 1;
    for (int i = 0; i < exponent; ++i) {
        power *= 10;
    }
    return power;
}

} // namespace

void TextLine::add(char c)
{
    add(std::string_view(&c, 1));
}

void TextLine::add(std::string_view text)
{
    const std::size_t size = std::min(text.size(), m_text.size() - m_size);
    std::memcpy(m_text.data() + m_size, text.data(), size);
    m_size += size;
}

void TextLine::addDigits(std::string_view digits, int width, char fill)
{
    for (auto size = static_cast<int>(digits.size()); size < width; ++size) {
        add(fill);
    }
    add(digits);
}

void TextLine::addDecimal(quint64 number, int width, char fill)
{
    std::array<char, 24> digits;
    const char *end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    addDigits({digits.data(), static_cast<std::size_t>(end - digits.data())}, width, fill);
}

void TextLine::addHex(quint32 number, int width, char fill)
{
    std::array<char, 8> digits;
    std::size_t at = digits.size();
    do {
        digits[--at] = HexDigits[number % 16];
        number /= 16;
    } while (number != 0);
    addDigits({digits.data() + at, digits.size() - at}, width, fill);
}

void TextLine::addTime(qint64 nanoseconds, int unitDigits, int fractionDigits, int width)
{
    const quint64 number = static_cast<quint64>(nanoseconds) / powerOfTen(unitDigits - fractionDigits);
    addDecimal(number / powerOfTen(fractionDigits), width - fractionDigits - 1);
    add('.');
    addDecimal(number % powerOfTen(fractionDigits), fractionDigits, '0');
}

void TextLine::padTo(std::size_t size)
{
    while (m_size < std::min(size, m_text.size())) {
        add(' ');
    }
}

void TextLine::addBytes(const BusFrame &frame)
{
    for (int i = 0; i < frame.length; ++i) {
        const uchar byte = frame.data[static_cast<std::size_t>(i)];
        add({std::array<char, 3>{' ', HexDigits[byte / 16U], HexDigits[byte % 16U]}.data(), 3});
    }
}
