#pragma once

#include "exchange/database/Database.h"
#include "exchange/database/NumberText.h"

#include <QByteArray>

/// A SignalScale, prepared. Where factor and offset are decimal numbers of few digits, as they are written, values are
/// computed in whole numbers, so that 127 * 0.1 is 12.7.
class ValueScale
{
public:
    /// bound: no raw value is larger than this, or smaller than -bound.
    ValueScale(const SignalScale &scale, double bound);

    bool contains(quint64 raw) const { return raw >= m_raw.first && raw <= m_raw.last; }
    const QByteArray &unit() const { return m_unit; } ///< UTF-8

    double physical(quint64 raw) const { return fromWhole(static_cast<double>(raw), static_cast<qint64>(raw)); }
    double physical(qint64 raw) const { return fromWhole(static_cast<double>(raw), raw); }
    double physical(double raw) const { return m_kind == Same ? raw : raw * m_factor + m_offset; }

    /// What physical() made of it, before rounding; infinite or no number where the factor is 0.
    double raw(double physical) const { return (physical - m_offset) / m_factor; }

    char *put(char *to, quint64 raw) const
    {
        return m_kind == Same ? putUnsigned(to, raw) : putWhole(to, static_cast<double>(raw), static_cast<qint64>(raw));
    }
    char *put(char *to, qint64 raw) const
    {
        return m_kind == Same ? putSigned(to, raw) : putWhole(to, static_cast<double>(raw), raw);
    }
    char *put(char *to, double raw) const { return putReal(to, physical(raw)); }
    char *put(char *to, float raw) const
    {
        return m_kind == Same ? putReal(to, raw) : putReal(to, physical(static_cast<double>(raw)));
    }

private:
    enum Kind : quint8 {
        Same,    ///< factor 1, offset 0
        Decimal, ///< (raw * m_wholeFactor + m_wholeOffset) / 10^m_digits
        Real
    };

    double fromWhole(double real, qint64 raw) const;
    char *putWhole(char *to, double real, qint64 raw) const
    {
        return m_kind == Decimal ? putDecimal(to, raw * m_wholeFactor + m_wholeOffset, m_digits)
                                 : putReal(to, real * m_factor + m_offset);
    }

    RawRange m_raw;
    double m_factor;
    double m_offset;
    qint64 m_wholeFactor = 0;
    qint64 m_wholeOffset = 0;
    Kind m_kind = Real;
    quint8 m_digits = 0;
    double m_power = 1; ///< 10^m_digits
    QByteArray m_unit;
};
