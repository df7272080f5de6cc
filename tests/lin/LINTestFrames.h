#pragma once

#include "device/LINFrame.h"
#include "lin/CTableViewLIN.h"

/// A received frame with its own protected identifier and a classic checksum.
inline CTableViewLIN::DataObject linFrame(quint8 id, const QByteArray &hexData)
{
    CTableViewLIN::DataObject frame;
    frame.time = QStringLiteral("12:34:56.789");
    frame.direction = CTableViewLIN::DataObject::Received;
    frame.ID = id;
    frame.PID = calcPID(id);
    frame.data = QByteArray::fromHex(hexData);
    frame.checksum = calcChecksum(id, false, frame.data);
    return frame;
}
