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

/// Makes frames a second of the frames' times, which count in steps of width nanoseconds (more than 0) from start on. A
/// point stands at the middle of its step; steps in which no frame is have 0, of those that follow each other the first
/// and the last.
class RateCounter
{
public:
    /// series, which is empty, must outlive this.
    RateCounter(Series &series, qint64 start, qint64 width);

    /// A frame; one without a time, or before start, does not count, and one whose time jumped back counts where the
    /// greatest time before it does.
    void add(qint64 time);
    /// Takes the last step for complete; the end.
    void finish();

private:
    void addStep(qint64 step, qint64 frames);

    Series &m_series;
    qint64 m_start;
    qint64 m_width;
    qint64 m_step = -1;
    qint64 m_count = 0;
};

/// Frames a second of rows; see RateCounter.
Series rateSeries(const BusFrameStore &store, const RowSet &rows, qint64 width);
