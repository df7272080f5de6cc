#pragma once

#include "viewer/core/Filter.h"
#include "viewer/core/RowSet.h"
#include "viewer/core/Series.h"
#include "viewer/core/StoreRun.h"

#include <vector>

/// Fills a series with the values of a store's frames on all cores; see StoreRun.
class SeriesRun : public StoreRun<std::vector<Series::Point>>
{
public:
    using StoreRun::StoreRun;

    /// Of the frames that pass filter, have a value and a time.
    void start(const FrameValue &value, const Filter &filter = {});
    /// Adds what is new to series; that is the one that the results of this run were added to before, or an empty one
    /// after start().
    void takeTo(Series &series);
};

/// Frames a second: of rows, whose times count in steps of width nanoseconds (more than 0) from the store's start on. A
/// point stands at the middle of its step; steps in which no frame is have 0, but of more than MaxEmptySteps that
/// follow each other the first and the last only.
Series rateSeries(const BusFrameStore &store, const RowSet &rows, qint64 width);

constexpr int MaxEmptySteps = 1000;
