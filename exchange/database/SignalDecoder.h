#pragma once

#include "exchange/database/BitField.h"
#include "exchange/database/ValueScale.h"
#include "exchange/database/ValueTexts.h"

#include <memory>

/// What a signal says in one frame.
struct SignalValue
{
    quint64 bits = 0; ///< the raw value: of a negative number the two's complement, of a float its bits
    QString raw;      ///< as a number; of bytes, hexadecimal
    std::optional<double> physical;
    QString unit;
    QString text; ///< that the value stands for; empty where it stands for none
};

/// One signal, prepared for taking its value out of many frames. data are BusFrame::MaxLength bytes, of a frame that
/// has at least bytes() of them.
class SignalDecoder
{
public:
    /// signal: must need at most BusFrame::MaxLength bytes. texts: those of the signal; null for none.
    SignalDecoder(const DatabaseSignal &signal, int number, std::shared_ptr<const ValueTexts> texts);

    /// The bits that texts of the signal's values are told apart by.
    static quint64 textMask(const DatabaseSignal &signal);

    int number() const { return m_number; } ///< of the signal in its message
    int bytes() const { return m_field.bytes(); }

    /// The raw value, see SignalValue::bits.
    quint64 bits(const uchar *data) const
    {
        const quint64 value = m_field.read(data);
        return m_type == DatabaseSignal::Signed ? (value ^ m_signBit) - m_signBit : value;
    }
    /// How bits become a physical value; null where they are none.
    const ValueScale *scale(quint64 bits) const
    {
        return m_scales.size() == 1 && m_isForAll ? m_scales.data() : scaleAmong(bits);
    }
    std::optional<double> physical(quint64 bits) const;
    /// The physical value, or of a signal that only stands for texts the raw one: what comparisons and pictures work
    /// with. Nothing of bytes, and where a signal with physical values has none.
    std::optional<double> number(quint64 bits) const;
    /// The number() of a value that a text of the signal is for; nothing where there is none.
    std::optional<double> numberOfText(quint64 textValue) const;
    /// The bits whose number() is value; nothing where there are none.
    std::optional<quint64> bitsOf(double value) const;
    SignalValue value(const uchar *data) const;

    /// Text behind each other, see NumberText.h.
    char *putRaw(char *to, quint64 bits) const;
    char *putPhysical(char *to, quint64 bits, const ValueScale &scale) const;
    /// What the value stands for, UTF-8; empty for nothing. room: for eight characters, which may be what is returned.
    std::string_view text(quint64 bits, char *room) const;

private:
    const ValueScale *scaleAmong(quint64 bits) const;
    double real(quint64 bits) const;
    bool isNumber() const { return m_type != DatabaseSignal::Bytes && m_type != DatabaseSignal::Ascii; }
    quint64 nearestBits(double raw) const;

    BitField m_field;
    DatabaseSignal::Type m_type;
    quint8 m_length;
    bool m_isForAll;
    int m_number;
    quint64 m_signBit;
    std::vector<ValueScale> m_scales;
    std::shared_ptr<const ValueTexts> m_texts;
};
