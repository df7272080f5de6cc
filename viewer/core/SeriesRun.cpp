#include "viewer/core/SeriesRun.h"

#include "viewer/core/FrameTimes.h"

#include <cmath>

namespace {

constexpr double NanosecondsPerSecond = 1e9;

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

RateCounter::RateCounter(Series &series, qint64 start, qint64 width)
    : m_series(series)
    , m_start(start)
    , m_width(width)
{
}

void RateCounter::addStep(qint64 step, qint64 frames)
{
    m_series.append(m_start + step * m_width + m_width / 2,
                    static_cast<double>(frames) * NanosecondsPerSecond / static_cast<double>(m_width));
}

void RateCounter::add(qint64 time)
{
    const qint64 since = periodBetween(m_start, time);
    if (since < 0) {
        return;
    }
    const qint64 next = since / m_width;
    if (next > m_step) {
        const qint64 empty = m_step < 0 ? next : m_step + 1;
        finish();
        if (empty < next) {
            addStep(empty, 0);
        }
        if (empty + 1 < next) {
            addStep(next - 1, 0);
        }
        m_step = next;
        m_count = 0;
    }
    ++m_count;
}

void RateCounter::finish()
{
    if (m_step >= 0) {
        addStep(m_step, m_count);
    }
}

Series rateSeries(const BusFrameStore &store, const RowSet &rows, qint64 width)
{
    Series series;
    RateCounter counter(series, store.start(), width);
    for (qint64 place = 0; place < rows.size(); ++place) {
        counter.add(store.time(rows.at(place)));
    }
    counter.finish();
    return series;
}
