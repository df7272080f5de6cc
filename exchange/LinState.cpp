#include "exchange/LinState.h"

#include "device/LINFrame.h"

BusFrame::LinState linStateOfChecksum(const BusFrame &frame)
{
    const QByteArray data(reinterpret_cast<const char *>(frame.data.data()), frame.length);
    switch (checkChecksum(static_cast<quint8>(frame.identifier), frame.checksum, data)) {
    case LINChecksumClassic:
        return BusFrame::ChecksumV1;
    case LINChecksumEnhanced:
        return BusFrame::ChecksumV2;
    default:
        return BusFrame::NoLinState;
    }
}
