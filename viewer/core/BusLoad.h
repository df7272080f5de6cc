#pragma once

#include "viewer/core/BusFrameStore.h"

#include <atomic>
#include <vector>

/// Bits a second.
struct BusBitRates
{
    double nominal = 500000;
    double data = 2000000; ///< of CAN FD frames with bit rate switch
    double lin = 19200;
};

/// How many bits are stuffed into a frame where the standard's fixed stuff bits do not say.
enum class BitStuffing {
    None,   ///< the least that there can be
    Random, ///< as many as random bits have: one for each 31
    Most    ///< the most that there can be: one for the first 5, then for each 4
};

/// Nanoseconds for which a frame keeps the bus, with the three bits of the intermission.
///
/// Classical CAN (ISO 11898-1): of 34 + 8 n bits with an 11-bit identifier, 54 + 8 n with one of 29 (from the start of
/// frame to the end of the CRC), bits are stuffed; 13 follow that are not (delimiters, acknowledge, end of frame,
/// intermission). CAN FD: 17 or 36 bits in the nominal bit rate, up to the bit rate switch, and 5 + 8 n in the data bit
/// rate, up to the end of the data, are stuffed; in the data bit rate follow the stuff count, the CRC of 17 or (n > 16)
/// 21 bits and 6 or 7 fixed stuff bits; the last 13 bits are nominal again. An error frame: 20 bits, between the least
/// and the most of flag, delimiter and intermission. LIN 2.x: 34 bits of header and 10 for each byte and the checksum,
/// without the pauses that are allowed between them.
double busTime(quint16 flags, int length, const BusBitRates &rates, BitStuffing stuffing);

/// The load of one channel over time. Frames without a time are left out.
struct BusLoad
{
    qint64 start = 0;         ///< nanoseconds, in the frames' time base
    qint64 width = 1;         ///< nanoseconds of each value
    std::vector<double> load; ///< 0 to 1, above that when a bit rate is wrong
};

constexpr int MaxBusLoadValues = 1000000;

/// channel: from 0. A width that would give more than MaxBusLoadValues is widened. Ends early when stop is set.
BusLoad busLoad(const BusFrameStore &store, quint16 channel, qint64 width, const BusBitRates &rates,
                BitStuffing stuffing, const std::atomic<bool> &stop);
