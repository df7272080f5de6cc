#pragma once

#include "viewer/core/Overview.h"

#include <atomic>
#include <optional>
#include <vector>

/// How often the periods of an identifier have which length. Bin i is [low + i * width, low + (i + 1) * width).
struct PeriodHistogram
{
    qint64 low = 0;   ///< nanoseconds
    qint64 width = 1; ///< nanoseconds, at least 1
    std::vector<qint64> counts;
    qint64 below = 0;
    qint64 above = 0;

    /// Takes a period, 0 or more.
    void add(qint64 period);
};

/// Of the rows that identifier was made of, or as many of them as there are until stop is set. low to high, both
/// included, is spread over at most bins bins; identifier's least and greatest period show all.
PeriodHistogram periodHistogram(const BusFrameStore &store, const IdentifierStatistics &identifier, qint64 low,
                                qint64 high, int bins, const std::atomic<bool> &stop);

/// The row behind after that ends a period in [low, high) of the identifier and channel, or when there is none, the
/// first such row of all; nothing when there is none at all, or when stop is set.
std::optional<qint64> findPeriod(const BusFrameStore &store, FrameKey key, quint16 channel, qint64 low, qint64 high,
                                 qint64 after, const std::atomic<bool> &stop);
