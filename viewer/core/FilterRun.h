#pragma once

#include "viewer/core/Filter.h"
#include "viewer/core/RowSet.h"
#include "viewer/core/StoreRun.h"

#include <atomic>
#include <optional>

/// Runs a filter over a store on all cores; see StoreRun.
class FilterRun : public StoreRun<RowSet::Part>
{
public:
    using StoreRun::StoreRun;

    void start(const Filter &filter);
    /// Adds what is new to rows, in the rows' order; rows are those that the results of this run were added to before,
    /// or empty after start().
    void takeTo(RowSet &rows);
};

/// Looks for a row that passes, from row on towards the end, or with isBackward towards the beginning; row itself
/// counts. Nothing when there is none, or when stop is set.
std::optional<qint64> findRow(const BusFrameStore &store, const Filter &filter, qint64 row, bool isBackward,
                              const std::atomic<bool> &stop);
