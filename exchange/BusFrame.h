#pragma once

#include <QtGlobal>

#include <array>
#include <limits>

/// One frame of a CAN or LIN bus as a capture of any kind holds it. A plain value; numbers that a file does not give
/// are 0.
struct BusFrame
{
    enum Direction : quint8 {
        Received,
        Sent,
        Refused ///< the program tried to send it and the adapter did not take it
    };
    enum Flag : quint16 {
        Extended = 1U << 0U,      ///< 29-bit identifier
        Remote = 1U << 1U,        ///< remote frame: has a length and no data
        Error = 1U << 2U,         ///< error frame; errorWord and data as in Linux's can/error.h, where they are known
        Fd = 1U << 3U,            ///< CAN FD frame
        BitRateSwitch = 1U << 4U, ///< CAN FD: data phase at the data bit rate
        ErrorStateIndicator = 1U << 5U, ///< CAN FD: the sender is error passive
        Lin = 1U << 6U                  ///< LIN frame; otherwise CAN
    };
    enum LinState : quint8 { NoLinState, ChecksumV1, ChecksumV2, WrongChecksumV1, WrongChecksumV2, LinError };

    static constexpr int MaxLength = 64;
    static constexpr qint64 NoTime = std::numeric_limits<qint64>::min();

    qint64 time = NoTime;       ///< nanoseconds in the capture's time base, see CaptureInfo
    qint64 deviceTime = NoTime; ///< nanoseconds since the adapter's channel was started
    quint32 identifier = 0;     ///< CAN: 11 or 29 bits; LIN: 0 to 63; of an error frame its error class bits
    quint16 channel = 0;        ///< from 0
    quint16 flags = 0;          ///< Flag
    Direction direction = Received;
    quint8 length = 0;   ///< bytes of data, 0 to 64; of a remote frame 0 to 8, and data is zeros
    quint8 checksum = 0; ///< LIN
    LinState linState = NoLinState;
    alignas(8) std::array<uchar, MaxLength> data{}; ///< zeros behind length; aligned, so that it is cleared at once

    bool is(Flag flag) const { return (flags & flag) != 0; }
    void set(Flag flag, bool on = true)
    {
        flags = static_cast<quint16>(on ? flags | flag : flags & ~static_cast<unsigned>(flag));
    }
};
