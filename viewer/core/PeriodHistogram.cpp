#include "viewer/core/PeriodHistogram.h"

#include "viewer/core/FrameTimes.h"

#include <algorithm>

PeriodHistogram periodHistogram(const BusFrameStore &store, const IdentifierStatistics &identifier, qint64 low,
                                qint64 high, int bins, const std::atomic<bool> &stop)
{
    PeriodHistogram histogram;
    const qint64 range = std::max<qint64>(0, periodBetween(low, high)); // between the two ends
    histogram.low = low;
    histogram.width = range / std::max(bins, 1) + 1;
    histogram.counts.resize(static_cast<std::size_t>(range / histogram.width + 1));
    qint64 last = BusFrame::NoTime;
    const auto add = [&histogram, &last](qint64 time) {
        const qint64 period = periodBetween(last, time);
        last = time;
        if (period < 0) {
            return;
        }
        const qint64 bin = period < histogram.low ? -1 : (period - histogram.low) / histogram.width;
        if (bin < 0) {
            ++histogram.below;
        } else if (bin < static_cast<qint64>(histogram.counts.size())) {
            ++histogram.counts[static_cast<std::size_t>(bin)];
        } else {
            ++histogram.above;
        }
    };
    for (qint64 row = identifier.firstRow; row <= identifier.lastRow && !stop;) {
        const BusFrameStore::Block &block = store.block(BusFrameStore::blockOf(row));
        const qint64 blockEnd = (BusFrameStore::blockOf(row) + 1) << BusFrameStore::BlockShift;
        for (const qint64 end = std::min(identifier.lastRow + 1, blockEnd); row < end; ++row) {
            const auto at = static_cast<std::size_t>(BusFrameStore::indexInBlock(row));
            if (frameKey(block.identifier[at], block.flags[at]) == identifier.key &&
                block.channel[at] == identifier.channel && block.time[at] != BusFrame::NoTime) {
                add(block.time[at]);
            }
        }
    }
    return histogram;
}
