#include "exchange/database/SignalDecoder.h"

#include <cmath>
#include <cstring>
#include <limits>

namespace {

constexpr double MaxWhole = 9e18; ///< floats from here on stand for no text

template<typename To, typename From>
To sameBits(From from)
{
    static_assert(sizeof(To) == sizeof(From));
    To to;
    std::memcpy(&to, &from, sizeof to);
    return to;
}

float toFloat(quint64 bits)
{
    return sameBits<float>(static_cast<quint32>(bits));
}

/// Of two digits in each byte; nothing where one is none.
std::optional<quint64> fromBcd(quint64 bits)
{
    quint64 value = 0;
    for (int shift = 60; shift >= 0; shift -= 4) {
        const quint64 digit = bits >> static_cast<unsigned>(shift) & 0x0FU;
        if (digit > 9) {
            return std::nullopt;
        }
        value = value * 10 + digit;
    }
    return value;
}

quint64 toBcd(quint64 value)
{
    quint64 bits = 0;
    for (unsigned shift = 0; shift < 64; shift += 4, value /= 10) {
        bits |= value % 10 << shift;
    }
    return bits;
}

/// The nearest whole number of 64 bits.
quint64 toUnsigned(double value)
{
    constexpr double Limit = 18446744073709551616.0; // 2^64
    return value <= 0 ? 0 : value >= Limit ? ~quint64(0) : static_cast<quint64>(std::round(value));
}

qint64 toSigned(double value)
{
    constexpr double Limit = 9223372036854775808.0; // 2^63
    return value >= Limit    ? std::numeric_limits<qint64>::max()
           : value <= -Limit ? std::numeric_limits<qint64>::min()
                             : static_cast<qint64>(std::round(value));
}

/// No value is further from 0: of whole numbers as their length says.
double boundOf(const DatabaseSignal &signal)
{
    return std::ldexp(1.0, signal.length - (signal.type == DatabaseSignal::Signed ? 1 : 0));
}

} // namespace

SignalDecoder::SignalDecoder(const DatabaseSignal &signal, int number, std::shared_ptr<const ValueTexts> texts)
    : m_field(signal)
    , m_type(signal.type)
    , m_length(static_cast<quint8>(signal.length))
    , m_number(number)
    , m_signBit(quint64(1) << (signal.length - 1U))
    , m_texts(std::move(texts))
{
    for (const SignalScale &scale : signal.scales) {
        if (isNumber()) {
            m_scales.emplace_back(scale, boundOf(signal));
        }
    }
    // Without a word about it, a number is its own physical value, unless it only stands for texts.
    if (isNumber() && m_scales.empty() && (signal.texts.isEmpty() || m_type == DatabaseSignal::Bcd)) {
        m_scales.emplace_back(SignalScale(), boundOf(signal));
    }
    m_isForAll = m_scales.size() == 1 && m_scales.front().contains(0) && m_scales.front().contains(~quint64(0)) &&
                 m_type != DatabaseSignal::Bcd;
}

quint64 SignalDecoder::textMask(const DatabaseSignal &signal)
{
    return signal.type == DatabaseSignal::Float ? ~quint64(0) : BitField(signal).mask();
}

const ValueScale *SignalDecoder::scaleAmong(quint64 bits) const
{
    if (m_type == DatabaseSignal::Bcd && !fromBcd(bits)) {
        return nullptr;
    }
    for (const ValueScale &scale : m_scales) {
        if (scale.contains(bits)) {
            return &scale;
        }
    }
    return nullptr;
}

double SignalDecoder::real(quint64 bits) const
{
    return m_length == 32 ? static_cast<double>(toFloat(bits)) : sameBits<double>(bits);
}

std::optional<double> SignalDecoder::physical(quint64 bits) const
{
    const ValueScale *used = scale(bits);
    if (used == nullptr) {
        return std::nullopt;
    }
    switch (m_type) {
    case DatabaseSignal::Signed:
        return used->physical(static_cast<qint64>(bits));
    case DatabaseSignal::Float:
        return used->physical(real(bits));
    case DatabaseSignal::Bcd:
        return used->physical(fromBcd(bits).value_or(0));
    case DatabaseSignal::Unsigned:
    case DatabaseSignal::Bytes:
    case DatabaseSignal::Ascii:
        break;
    }
    return used->physical(bits);
}

std::optional<double> SignalDecoder::number(quint64 bits) const
{
    if (!m_scales.empty() || !isNumber()) {
        return physical(bits);
    }
    switch (m_type) {
    case DatabaseSignal::Signed:
        return static_cast<double>(static_cast<qint64>(bits));
    case DatabaseSignal::Float:
        return real(bits);
    case DatabaseSignal::Unsigned:
    case DatabaseSignal::Bcd:
    case DatabaseSignal::Bytes:
    case DatabaseSignal::Ascii:
        break;
    }
    return static_cast<double>(bits);
}

/// Of the raw value that is nearest to raw, which is a number.
quint64 SignalDecoder::nearestBits(double raw) const
{
    switch (m_type) {
    case DatabaseSignal::Signed:
        return static_cast<quint64>(toSigned(raw));
    case DatabaseSignal::Float:
        return m_length == 32 ? sameBits<quint32>(static_cast<float>(raw)) : sameBits<quint64>(raw);
    case DatabaseSignal::Bcd:
        return toBcd(toUnsigned(raw));
    case DatabaseSignal::Unsigned:
    case DatabaseSignal::Bytes:
    case DatabaseSignal::Ascii:
        break;
    }
    return toUnsigned(raw);
}

std::optional<double> SignalDecoder::numberOfText(quint64 textValue) const
{
    if (m_type == DatabaseSignal::Float) {
        return number(nearestBits(static_cast<double>(static_cast<qint64>(textValue))));
    }
    const quint64 field = textValue & m_field.mask();
    return number(m_type == DatabaseSignal::Signed ? (field ^ m_signBit) - m_signBit : field);
}

std::optional<quint64> SignalDecoder::bitsOf(double value) const
{
    const auto matching = [this, value](double raw) -> std::optional<quint64> {
        if (!std::isfinite(raw)) {
            return std::nullopt;
        }
        const quint64 bits = nearestBits(raw);
        const quint64 field = bits & m_field.mask();
        const quint64 read = m_type == DatabaseSignal::Signed ? (field ^ m_signBit) - m_signBit : field;
        return read == bits && number(bits) == value ? std::optional(bits) : std::nullopt;
    };
    if (m_scales.empty()) {
        return matching(value);
    }
    for (const ValueScale &scale : m_scales) {
        if (const std::optional<quint64> bits = matching(scale.raw(value))) {
            return bits;
        }
    }
    return std::nullopt;
}

char *SignalDecoder::putRaw(char *to, quint64 bits) const
{
    switch (m_type) {
    case DatabaseSignal::Signed:
        return putSigned(to, static_cast<qint64>(bits));
    case DatabaseSignal::Float:
        return m_length == 32 ? putReal(to, toFloat(bits)) : putReal(to, real(bits));
    case DatabaseSignal::Bytes:
    case DatabaseSignal::Ascii: {
        uchar bytes[8];
        qToLittleEndian(bits, bytes); // an array may begin within a byte
        return putBytes(to, bytes, m_length / 8);
    }
    case DatabaseSignal::Unsigned:
    case DatabaseSignal::Bcd:
        break;
    }
    return putUnsigned(to, bits);
}

char *SignalDecoder::putPhysical(char *to, quint64 bits, const ValueScale &scale) const
{
    switch (m_type) {
    case DatabaseSignal::Signed:
        return scale.put(to, static_cast<qint64>(bits));
    case DatabaseSignal::Float:
        return m_length == 32 ? scale.put(to, toFloat(bits)) : scale.put(to, real(bits));
    case DatabaseSignal::Bcd:
        return scale.put(to, fromBcd(bits).value_or(0));
    case DatabaseSignal::Unsigned:
    case DatabaseSignal::Bytes:
    case DatabaseSignal::Ascii:
        break;
    }
    return scale.put(to, bits);
}

std::string_view SignalDecoder::text(quint64 bits, char *room) const
{
    if (m_type == DatabaseSignal::Ascii) {
        const int count = m_length / 8;
        int size = 0;
        for (; size < count && (bits >> (8U * static_cast<unsigned>(size)) & 0xFFU) != 0; ++size) {
            const auto c = static_cast<char>(bits >> (8U * static_cast<unsigned>(size)) & 0xFFU);
            room[size] = c >= ' ' && c <= '~' ? c : '?';
        }
        return {room, static_cast<std::size_t>(size)};
    }
    if (m_texts == nullptr) {
        return {};
    }
    if (m_type == DatabaseSignal::Float) {
        const double value = real(bits);
        if (!(std::fabs(value) < MaxWhole) || std::trunc(value) != value) {
            return {};
        }
        bits = static_cast<quint64>(static_cast<qint64>(value));
    }
    const QByteArray *found = m_texts->find(bits);
    return found != nullptr ? std::string_view(found->constData(), static_cast<std::size_t>(found->size()))
                            : std::string_view();
}

SignalValue SignalDecoder::value(const uchar *data) const
{
    SignalValue value;
    value.bits = bits(data);
    char room[MaxNumberText];
    value.raw = QString::fromLatin1(room, static_cast<int>(putRaw(room, value.bits) - room));
    if (const ValueScale *used = scale(value.bits)) {
        value.physical = physical(value.bits);
        value.unit = QString::fromUtf8(used->unit());
    }
    const std::string_view found = text(value.bits, room);
    value.text = QString::fromUtf8(found.data(), static_cast<int>(found.size()));
    return value;
}
