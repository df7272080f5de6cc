#pragma once

#include "exchange/BusFrame.h"

/// How long frames keep a bus busy (ISO 11898-1, LIN 2.x), to the bit: with the stuff bits of their very contents and
/// with the three bits that at least follow a CAN frame.
class BusLoad
{
public:
    struct Rates
    {
        qint64 bitRate = 500000;      ///< bit/s, more than 0
        qint64 dataBitRate = 2000000; ///< of the data phase of CAN FD frames with bit-rate switch
        qint64 linBitRate = 19200;
    };
    struct Bits
    {
        int nominal = 0;
        int data = 0; ///< in the data phase of a frame with bit-rate switch
    };

    explicit BusLoad(const Rates &rates)
        : m_rates(rates)
    {
    }

    /// Nanoseconds; 0 for error frames, whose length no capture tells, and for frames that the adapter refused.
    qint64 busy(const BusFrame &frame) const;
    static Bits canBits(const BusFrame &frame);
    /// Header, data and checksum without pauses; without data, of a header that nobody answered.
    static int linBits(const BusFrame &frame);

private:
    const Rates m_rates;
};
