#include "exchange/database/BitField.h"

#include "exchange/BusFrame.h"

#include <algorithm>

BitField::BitField(const DatabaseSignal &signal)
    : m_mask(signal.length < 64 ? (quint64(1) << signal.length) - 1 : ~quint64(0))
    , m_bytes(static_cast<quint8>(bytesNeeded(signal)))
    , m_isBigEndian(signal.byteOrder == DatabaseSignal::BigEndian)
{
    Q_ASSERT(m_bytes <= BusFrame::MaxLength);
    const int byte = signal.startBit / 8;
    const int at = std::min(byte, BusFrame::MaxLength - 8);
    // From the beginning of the load, in the order of the signal's bits.
    const int first = (byte - at) * 8 + (m_isBigEndian ? 7 - signal.startBit % 8 : signal.startBit % 8);
    const int further = std::max(0, first + signal.length - 64);
    m_at = static_cast<quint8>(at);
    m_further = static_cast<quint8>(further);
    m_shift = static_cast<quint8>(m_isBigEndian ? std::max(0, 64 - first - signal.length) : first);
}
