#pragma once

#include <QByteArray>
#include <QMetaType>
#include <QString>
#include <QVector>

namespace CTableViewLIN {

/// One LIN frame as it is listed.
struct DataObject
{
    enum Direction : quint8 { Sent = 0, Received = 1 };

    QString time;         ///< wall-clock time of the transfer, "hh:mm:ss.zzz"
    quint8 direction = 0; ///< a Direction
    quint8 ID = 0;        ///< 0..0x3F
    quint8 PID = 0;       ///< protected identifier, computed or as seen on the bus
    QByteArray data;      ///< 0 to 8 bytes
    quint32 checksum = 0; ///< one byte, received or computed
};

} // namespace CTableViewLIN

Q_DECLARE_TYPEINFO(CTableViewLIN::DataObject, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(CTableViewLIN::DataObject)
