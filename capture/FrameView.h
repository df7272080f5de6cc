#pragma once

#include "capture/FrameRecord.h"

#include <algorithm>

/// One frame looked at in place: what the cells and the files are made of. Valid as long as the record or the store row
/// it was made from stays where it is.
struct FrameView
{
    const QString *systemTime; ///< never null
    const uchar *data;         ///< payload, size bytes
    int size;                  ///< 0..65535
    quint32 id;                ///< 29 bits
    quint32 timeStamp;         ///< milliseconds
    quint8 direction;          ///< FrameRecord::Direction or any other value
    quint8 sendType;
    quint8 protocol; ///< FrameRecord::Protocol
    bool timeFlag;
    bool remote;
    bool extended;

    bool isReceived() const { return direction == FrameRecord::Received; }
};

/// What a store would show of the record: at most so many payload bytes, and no protocol that there is not.
inline FrameView viewOf(const FrameRecord &record, int maxPayload)
{
    FrameView view;
    view.systemTime = &record.systemTime;
    view.data = reinterpret_cast<const uchar *>(record.data.constData());
    view.size = std::min(record.data.size(), maxPayload);
    view.id = record.id;
    view.timeStamp = record.timeStamp;
    view.direction = record.direction;
    view.sendType = record.sendType;
    view.protocol = std::min<quint8>(record.protocol, FrameRecord::CANFDSpeed);
    view.timeFlag = record.timeFlag;
    view.remote = record.remote;
    view.extended = record.extended;
    return view;
}
