#pragma once

#include "exchange/database/Database.h"

#include <QtEndian>

/// The bits of a signal, prepared to be taken out of a frame's data with one load and a shift, or, of a signal that
/// lies in nine bytes, two loads.
class BitField
{
public:
    /// A signal that needs at most BusFrame::MaxLength bytes.
    explicit BitField(const DatabaseSignal &signal);

    /// data: BusFrame::MaxLength bytes, whatever the frame's length.
    quint64 read(const uchar *data) const
    {
        const uchar *from = data + m_at;
        if (!m_isBigEndian) {
            const quint64 low = qFromLittleEndian<quint64>(from) >> m_shift;
            return (m_further == 0 ? low : low | quint64(from[8]) << (64U - m_shift)) & m_mask;
        }
        const auto word = qFromBigEndian<quint64>(from);
        return (m_further == 0 ? word >> m_shift : word << m_further | from[8] >> (8U - m_further)) & m_mask;
    }
    /// Bytes that the frame must have.
    int bytes() const { return m_bytes; }
    quint64 mask() const { return m_mask; }
    int at() const { return m_at; }

private:
    quint64 m_mask;
    quint8 m_at;      ///< byte at which the load begins
    quint8 m_shift;   ///< to the right
    quint8 m_further; ///< bits in a ninth byte
    quint8 m_bytes;
    bool m_isBigEndian;
};
