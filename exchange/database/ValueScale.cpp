#include "exchange/database/ValueScale.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string>

namespace {

constexpr int MaxDigits = 18;
/// Every number of so many digits with a decimal point somewhere is one double, and back.
constexpr double MaxDecimal = 1e15;
/// Below 2^63, with room for what the computation of the bound loses.
constexpr double MaxWhole = 9e18;

/// A number as digits * 10^exponent.
struct DecimalNumber
{
    qint64 digits = 0;
    int exponent = 0;
};

/// The shortest decimal number that is this double: the one that was written, if it was of up to 15 digits.
DecimalNumber decimal(double value)
{
    char text[MaxNumberText];
    const char *end = std::to_chars(text, text + sizeof text, value, std::chars_format::scientific).ptr;
    DecimalNumber number;
    std::string digits;
    const char *at = text;
    bool isFraction = false;
    for (; at < end && *at != 'e'; ++at) {
        if (*at == '.') {
            isFraction = true;
            continue;
        }
        digits += *at;
        number.exponent -= isFraction ? 1 : 0;
    }
    std::from_chars(digits.data(), digits.data() + digits.size(), number.digits);
    number.exponent += std::atoi(std::string(at + 1, end).c_str());
    return number;
}

/// number * 10^digits; something too large where that is no whole number within reason.
double shifted(const DecimalNumber &number, int digits)
{
    return number.digits == 0 ? 0 : static_cast<double>(number.digits) * std::pow(10.0, number.exponent + digits);
}

} // namespace

ValueScale::ValueScale(const SignalScale &scale, double bound)
    : m_raw(scale.raw)
    , m_factor(scale.factor)
    , m_offset(scale.offset)
    , m_unit(scale.unit.toUtf8())
{
    if (m_factor == 1 && m_offset == 0) {
        m_kind = Same;
        return;
    }
    const DecimalNumber factor = decimal(m_factor);
    const DecimalNumber offset = decimal(m_offset);
    const int digits = std::max({0, -factor.exponent, offset.digits == 0 ? 0 : -offset.exponent});
    if (digits > MaxDigits) {
        return;
    }
    const double wholeFactor = shifted(factor, digits);
    const double wholeOffset = shifted(offset, digits);
    const double largest = std::fabs(wholeFactor) * bound + std::fabs(wholeOffset);
    if (largest < (digits > 0 ? MaxDecimal : MaxWhole) && std::fabs(wholeFactor) < MaxDecimal &&
        std::fabs(wholeOffset) < MaxDecimal) {
        m_kind = Decimal;
        m_digits = static_cast<quint8>(digits);
        m_wholeFactor = std::llround(wholeFactor);
        m_wholeOffset = std::llround(wholeOffset);
        m_power = static_cast<double>(powerOfTen(digits));
    }
}

double ValueScale::fromWhole(double real, qint64 raw) const
{
    return m_kind == Decimal ? static_cast<double>(raw * m_wholeFactor + m_wholeOffset) / m_power
                             : real * m_factor + m_offset;
}
