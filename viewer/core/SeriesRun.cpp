#include "viewer/core/SeriesRun.h"

#include "viewer/core/FrameTimes.h"

#include <cmath>

namespace {

constexpr double NanosecondsPerSecond = 1e9;

void addEmptySteps(Series &series, qint64 first, qint64 end, qint64 start, qint64 width)
{
    const bool isLong = end - first > MaxEmptySteps;
    for (qint64 step = first; step < end; ++step) {
        if (!isLong || step == first || step == end - 1) {
            series.append(start + step * width + width / 2, 0);
        }
        if (isLong && step == first) {
            step = end - 2;
        }
    }
}

} // namespace

void SeriesRun::start(const FrameValue &value, const Filter &filter)
{
    StoreRun::start([value, filter](const BusFrameStore &store, qint64 first, int count) {
        std::vector<FrameValue::Sample> samples;
        value.samples(store, filter, first, count, samples);
        const BusFrameStore::Block &block = store.block(BusFrameStore::blockOf(first));
        std::vector<Series::Point> points;
        points.reserve(samples.size());
        for (const FrameValue::Sample &sample : samples) {
            const qint64 time = block.time[sample.index];
            if (time != BusFrame::NoTime && std::isfinite(sample.value)) {
                points.push_back({time, sample.value});
            }
        }
        return points;
    });
}

void SeriesRun::takeTo(Series &series)
{
    for (const std::vector<Series::Point> &points : take()) {
        series.append(points);
    }
}

Series rateSeries(const BusFrameStore &store, const RowSet &rows, qint64 width)
{
    Series series;
    qint64 step = -1;
    qint64 count = 0;
    const auto finish = [&] {
        if (step >= 0) {
            series.append(store.start() + step * width + width / 2,
                          static_cast<double>(count) * NanosecondsPerSecond / static_cast<double>(width));
        }
    };
    for (qint64 place = 0; place < rows.size(); ++place) {
        const qint64 since = periodBetween(store.start(), store.time(rows.at(place)));
        if (since < 0) {
            continue;
        }
        const qint64 next = since / width;
        if (next > step) { // a time that jumped back counts where the greatest time before it does
            finish();
            addEmptySteps(series, step < 0 ? next : step + 1, next, store.start(), width);
            step = next;
            count = 0;
        }
        ++count;
    }
    finish();
    return series;
}
