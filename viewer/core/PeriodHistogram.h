#pragma once

#include "viewer/core/Overview.h"

#include <atomic>
#include <vector>

/// How often the periods of an identifier have which length. Bin i is [low + i * width, low + (i + 1) * width).
struct PeriodHistogram
{
    qint64 low = 0;   ///< nanoseconds
    qint64 width = 1; ///< nanoseconds, at least 1
    std::vector<qint64> counts;
    qint64 below = 0;
    qint64 above = 0;
};

/// Of the rows that identifier was made of, or as many of them as there are until stop is set. low to high, both
/// included, is spread over at most bins bins; identifier's least and greatest period show all.
PeriodHistogram periodHistogram(const BusFrameStore &store, const IdentifierStatistics &identifier, qint64 low,
                                qint64 high, int bins, const std::atomic<bool> &stop);
