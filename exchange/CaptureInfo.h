#pragma once

#include <QString>
#include <QStringList>

/// What a capture says of itself beside its frames.
struct CaptureInfo
{
    enum TimeBase {
        SinceStart, ///< BusFrame::time counts from the capture's start
        Absolute    ///< BusFrame::time counts from 1970-01-01 00:00 UTC
    };

    QString format; ///< name of the row in the table of formats
    TimeBase timeBase = SinceStart;
    qint64 start = 0;         ///< nanoseconds from 1970-01-01 00:00 UTC to the capture's start; 0: not known
    QStringList channelNames; ///< by channel number; shorter or empty where there are none
};
