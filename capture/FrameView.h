#pragma once

#include "capture/FrameRecord.h"

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
