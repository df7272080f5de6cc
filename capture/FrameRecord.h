#pragma once

#include "device/AdapterRecords.h"

#include <QByteArray>
#include <QString>
#include <QVector>

#include <algorithm>

/// What is known of a frame beside its texts, the same in a record, in a row of the store and in a view.
struct FrameHead
{
    enum Direction : quint8 {
        SendFailure = 0, ///< the program tried to send it and the adapter refused
        SendSuccess = 1,
        Received = 2,
    };
    enum Protocol : quint8 { CAN = 0, CANFD = 1, CANFDSpeed = 2 };

    // The bytes first: behind the words they would be copied together with half of one, and whoever reads that word
    // next would wait for it.
    quint8 direction = SendFailure; ///< a Direction; any other value is shown as sent successfully
    quint8 sendType = 0;            ///< SendType of the adapter record; kept, never shown or saved
    quint8 protocol = CAN;          ///< a Protocol
    quint32 timeStamp = 0;          ///< adapter time of a received frame in milliseconds; 0 for sent frames
    quint32 id : 29;                ///< frame identifier
    quint32 timeFlag : 1;           ///< bit 0 of the adapter record's TimeFlag
    quint32 remote : 1;             ///< remote frame
    quint32 extended : 1;           ///< 29-bit identifier

    FrameHead()
        : id(0)
        , timeFlag(0)
        , remote(0)
        , extended(0)
    {
    }

    bool isReceived() const { return direction == Received; }
};

/// One CAN or CAN FD frame as it is displayed and saved: a plain value whose two texts are implicitly shared.
struct FrameRecord : FrameHead
{
    QString systemTime; ///< PC clock (clockText()) when the frame was handed to the table; shared by a batch
    QByteArray data;    ///< payload, 0 to 64 bytes

    // Of a VCI_CAN_OBJ or a VCI_CANFD_OBJ.
    /// A received frame; at most 8 (CAN FD: 64) payload bytes are taken whatever the record's length says.
    template<typename AdapterFrame>
    static FrameRecord received(const AdapterFrame &frame, const QString &systemTime);
    /// A frame the program sent; accepted tells whether the adapter took it.
    template<typename AdapterFrame>
    static FrameRecord sent(const AdapterFrame &frame, bool accepted, const QString &systemTime);
};

Q_DECLARE_TYPEINFO(FrameRecord, Q_MOVABLE_TYPE);

/// One frame looked at in place: what the cells and the files are made of. Valid as long as the record or the store row
/// it was made from stays where it is.
struct FrameView : FrameHead
{
    /// Longest payload shown; what is beyond it in a record is left out.
    static constexpr int MaxPayload = 0xFFFF;

    const QString *systemTime; ///< never null
    const uchar *data;         ///< payload, size bytes; never null
    int size;                  ///< 0 to MaxPayload

    /// A protocol that there is not is shown as the fastest one.
    FrameView(const FrameHead &head, const QString &time, const uchar *payload, int payloadSize)
        : FrameHead(head)
        , systemTime(&time)
        , data(payload)
        , size(payloadSize)
    {
        protocol = std::min<quint8>(protocol, CANFDSpeed);
    }
    explicit FrameView(const FrameRecord &record)
        : FrameView(record, record.systemTime, reinterpret_cast<const uchar *>(record.data.constData()),
                    std::min(record.data.size(), MaxPayload))
    {
    }
};
