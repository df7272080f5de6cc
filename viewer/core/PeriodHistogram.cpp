#include "viewer/core/PeriodHistogram.h"

#include "viewer/core/FrameTimes.h"

#include <algorithm>

namespace {

/// Calls function(row, period) for each period that ends in rows [first, last] of the identifier, until it returns
/// false.
template<typename Function>
void forEachPeriod(const BusFrameStore &store, FrameKey key, quint16 channel, qint64 first, qint64 last,
                   Function function)
{
    qint64 lastTime = BusFrame::NoTime;
    for (qint64 row = first; row <= last;) {
        const BusFrameStore::Block &block = store.block(BusFrameStore::blockOf(row));
        const qint64 blockEnd = (BusFrameStore::blockOf(row) + 1) << BusFrameStore::BlockShift;
        for (const qint64 end = std::min(last + 1, blockEnd); row < end; ++row) {
            const auto at = static_cast<std::size_t>(BusFrameStore::indexInBlock(row));
            if (block.channel[at] != channel || frameKey(block.identifier[at], block.flags[at]) != key ||
                block.time[at] == BusFrame::NoTime) {
                continue;
            }
            const qint64 period = periodBetween(lastTime, block.time[at]);
            lastTime = block.time[at];
            if (period >= 0 && !function(row, period)) {
                return;
            }
        }
    }
}

} // namespace

void PeriodHistogram::add(qint64 period)
{
    const qint64 bin = period < low ? -1 : (period - low) / width;
    if (bin < 0) {
        ++below;
    } else if (bin < static_cast<qint64>(counts.size())) {
        ++counts[static_cast<std::size_t>(bin)];
    } else {
        ++above;
    }
}

PeriodHistogram periodHistogram(const BusFrameStore &store, const IdentifierStatistics &identifier, qint64 low,
                                qint64 high, int bins, const std::atomic<bool> &stop)
{
    PeriodHistogram histogram;
    const qint64 range = std::max<qint64>(0, periodBetween(low, high)); // between the two ends
    histogram.low = low;
    histogram.width = range / std::max(bins, 1) + 1;
    histogram.counts.resize(static_cast<std::size_t>(range / histogram.width + 1));
    forEachPeriod(store, identifier.key, identifier.channel, identifier.firstRow, identifier.lastRow,
                  [&histogram, &stop](qint64 /*row*/, qint64 period) {
                      histogram.add(period);
                      return !stop;
                  });
    return histogram;
}

std::optional<qint64> findPeriod(const BusFrameStore &store, FrameKey key, quint16 channel, qint64 low, qint64 high,
                                 qint64 after, const std::atomic<bool> &stop)
{
    std::optional<qint64> first;
    std::optional<qint64> found;
    forEachPeriod(store, key, channel, 0, store.size() - 1, [&](qint64 row, qint64 period) {
        if (period >= low && period < high) {
            if (row > after) {
                found = row;
                return false;
            }
            first = first.value_or(row);
        }
        return !stop;
    });
    return found ? found : first;
}
