#pragma once

#include "device/AdapterRecords.h"
#include "device/ClockText.h"
#include "lin/CTableViewLIN.h"

/// From and into the adapter's records. time is the text that the frame is listed with; a received record's length is
/// cut to the 8 bytes that it holds.

/// What a monitor has seen: the record's identifier byte is kept as PID, whether its parity is right or not.
CTableViewLIN::DataObject monitoredLINFrame(const VCI_LIN_OBJ &record, const QString &time);
/// A slave's answer to the request of id, 0 to 0x3F.
CTableViewLIN::DataObject answeredLINFrame(quint8 id, const VCI_LIN_OBJ &record, const QString &time);
/// As the adapter sends it, with the checksum of the type chosen.
CTableViewLIN::DataObject sentLINFrame(quint8 id, const QByteArray &data, bool enhanced, const QString &time);
/// For sending; the adapter adds the checksum. Of data, 8 bytes at most are taken.
VCI_LIN_OBJ linRecord(quint8 id, const QByteArray &data);
