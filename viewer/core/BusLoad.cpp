#include "viewer/core/BusLoad.h"

#include <algorithm>

namespace {

constexpr double NanosecondsPerSecond = 1e9;
constexpr int UnstuffedBits = 13; // delimiters and acknowledge 3, end of frame 7, intermission 3
constexpr int ErrorFrameBits = 20;
constexpr int RandomBitsPerStuffBit = 31;

double stuffBits(int bits, BitStuffing stuffing)
{
    switch (stuffing) {
    case BitStuffing::None:
        return 0;
    case BitStuffing::Random:
        return static_cast<double>(bits) / RandomBitsPerStuffBit;
    case BitStuffing::Most:
        return (bits - 1) / 4; // NOLINT(bugprone-integer-division): whole bits
    }
    return 0;
}

double classicBits(bool isExtended, int dataBits, BitStuffing stuffing)
{
    const int stuffed = (isExtended ? 54 : 34) + dataBits;
    return stuffed + stuffBits(stuffed, stuffing) + UnstuffedBits;
}

/// Calls function(block, index) for each row until stop is set.
template<typename Function>
void forEachRow(const BusFrameStore &store, qint64 rows, const std::atomic<bool> &stop, Function function)
{
    for (qint64 row = 0; row < rows && !stop;) {
        const BusFrameStore::Block &block = store.block(BusFrameStore::blockOf(row));
        const qint64 count = std::min<qint64>(rows - row, BusFrameStore::BlockRows);
        for (std::size_t at = 0; at < static_cast<std::size_t>(count); ++at) {
            function(block, at);
        }
        row += count;
    }
}

} // namespace

double busTime(quint16 flags, int length, const BusBitRates &rates, BitStuffing stuffing)
{
    const int dataBits = 8 * length;
    const bool isExtended = (flags & BusFrame::Extended) != 0;
    if ((flags & BusFrame::Lin) != 0) {
        return (34 + 10 * (length + 1)) * NanosecondsPerSecond / rates.lin;
    }
    if ((flags & BusFrame::Error) != 0) {
        return ErrorFrameBits * NanosecondsPerSecond / rates.nominal;
    }
    if ((flags & BusFrame::Fd) == 0) {
        const bool isRemote = (flags & BusFrame::Remote) != 0;
        return classicBits(isExtended, isRemote ? 0 : dataBits, stuffing) * NanosecondsPerSecond / rates.nominal;
    }
    const int nominal = isExtended ? 36 : 17;
    const int data = 5 + dataBits;
    const int check = length > 16 ? 4 + 21 + 7 : 4 + 17 + 6;
    const double dataRate = (flags & BusFrame::BitRateSwitch) != 0 ? rates.data : rates.nominal;
    return (nominal + stuffBits(nominal, stuffing) + UnstuffedBits) * NanosecondsPerSecond / rates.nominal +
           (data + stuffBits(data, stuffing) + check) * NanosecondsPerSecond / dataRate;
}

BusLoad busLoad(const BusFrameStore &store, quint16 channel, qint64 width, const BusBitRates &rates,
                BitStuffing stuffing, const std::atomic<bool> &stop)
{
    const qint64 rows = store.size();
    qint64 first = std::numeric_limits<qint64>::max();
    qint64 last = std::numeric_limits<qint64>::min();
    const auto isMeant = [channel](const BusFrameStore::Block &block, std::size_t at) {
        return block.channel[at] == channel && block.time[at] != BusFrame::NoTime;
    };
    forEachRow(store, rows, stop, [&](const BusFrameStore::Block &block, std::size_t at) {
        if (isMeant(block, at)) {
            first = std::min(first, block.time[at]);
            last = std::max(last, block.time[at]);
        }
    });
    BusLoad result;
    if (last < first) {
        return result;
    }
    // As unsigned numbers: a hostile capture may reach over all times that there are.
    const quint64 range = static_cast<quint64>(last) - static_cast<quint64>(first);
    const quint64 least = range / MaxBusLoadValues + 1;
    const quint64 wide = std::max(least, static_cast<quint64>(std::max<qint64>(width, 1)));
    result.start = first;
    result.width = static_cast<qint64>(wide);
    result.load.resize(static_cast<std::size_t>(range / wide) + 1);
    forEachRow(store, rows, stop, [&](const BusFrameStore::Block &block, std::size_t at) {
        if (isMeant(block, at)) {
            const quint64 since = static_cast<quint64>(block.time[at]) - static_cast<quint64>(first);
            result.load[static_cast<std::size_t>(since / wide)] +=
                busTime(block.flags[at], block.length[at], rates, stuffing);
        }
    });
    for (double &value : result.load) {
        value /= static_cast<double>(wide);
    }
    return result;
}
