#include "viewer/core/FilterRun.h"

#include <algorithm>
#include <utility>

void FilterRun::start(const Filter &filter)
{
    StoreRun::start([filter](const BusFrameStore &store, qint64 first, int count) {
        RowSet::Part part{first, count, {}};
        filter.passing(store, first, count, part.indices);
        return part;
    });
}

void FilterRun::takeTo(RowSet &rows)
{
    for (RowSet::Part &part : take()) {
        rows.append(std::move(part));
    }
}

std::optional<qint64> findRow(const BusFrameStore &store, const Filter &filter, qint64 row, bool isBackward,
                              const std::atomic<bool> &stop)
{
    const qint64 size = store.size();
    qint64 next = isBackward ? std::min(row, size - 1) : std::max<qint64>(row, 0);
    while (next >= 0 && next < size && !stop) {
        const qint64 block = BusFrameStore::blockOf(next) << BusFrameStore::BlockShift;
        const qint64 first = isBackward ? block : next;
        const qint64 end = isBackward ? next + 1 : std::min(size, block + BusFrameStore::BlockRows);
        if (const auto found = filter.firstPassing(store, first, static_cast<int>(end - first), isBackward)) {
            return found;
        }
        next = isBackward ? first - 1 : end;
    }
    return std::nullopt;
}
