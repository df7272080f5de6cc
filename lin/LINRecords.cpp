#include "lin/LINRecords.h"

#include "device/LINFrame.h"

#include <algorithm>

namespace {

constexpr unsigned IdMask = 0x3F; // the other two bits are parity

CTableViewLIN::DataObject receivedFrame(quint8 id, quint8 pid, const VCI_LIN_OBJ &record, const QString &time)
{
    const int length = std::min<int>(record.DataLen, sizeof record.Data);
    const QByteArray data(reinterpret_cast<const char *>(record.Data), length);
    return {time, CTableViewLIN::DataObject::Received, id, pid, data, record.Checksum};
}

} // namespace

CTableViewLIN::DataObject monitoredLINFrame(const VCI_LIN_OBJ &record, const QString &time)
{
    return receivedFrame(static_cast<quint8>(record.ID & IdMask), record.ID, record, time);
}

CTableViewLIN::DataObject answeredLINFrame(quint8 id, const VCI_LIN_OBJ &record, const QString &time)
{
    return receivedFrame(id, calcPID(id), record, time);
}

CTableViewLIN::DataObject sentLINFrame(quint8 id, const QByteArray &data, bool enhanced, const QString &time)
{
    return {time, CTableViewLIN::DataObject::Sent, id, calcPID(id), data, calcChecksum(id, enhanced, data)};
}

VCI_LIN_OBJ linRecord(quint8 id, const QByteArray &data)
{
    VCI_LIN_OBJ record{};
    const int length = std::min<int>(data.size(), sizeof record.Data);
    record.ID = id;
    record.DataLen = static_cast<quint8>(length);
    std::copy_n(data.begin(), length, record.Data);
    return record;
}
