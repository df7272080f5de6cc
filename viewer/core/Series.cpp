#include "viewer/core/Series.h"

#include <algorithm>

template<typename Predicate>
std::size_t Series::partition(std::size_t begin, std::size_t end, Predicate isBefore) const
{
    while (begin < end) {
        const std::size_t middle = begin + (end - begin) / 2;
        if (isBefore(timeAt(middle))) {
            begin = middle + 1;
        } else {
            end = middle;
        }
    }
    return begin;
}

/// Calls function(begin, end) for each part of the points [first, last) that falls into one of columns of the section
/// from begin to end.
template<typename Function>
void Series::forEachColumn(std::size_t first, std::size_t last, qint64 begin, qint64 end, int columns,
                           Function function) const
{
    const double width = (static_cast<double>(end) - static_cast<double>(begin)) / columns;
    std::size_t next = first;
    for (int column = 0; column < columns && next < last; ++column) {
        const double offset = width * (column + 1);
        const auto isBefore = [begin, offset](qint64 time) {
            return static_cast<double>(static_cast<quint64>(time) - static_cast<quint64>(begin)) < offset;
        };
        // Times lie about as close in all columns, so the end of a column is not far from its beginning.
        std::size_t far = std::min(last, next + 1);
        for (std::size_t step = 1; far < last && isBefore(timeAt(far)); step *= 2) {
            far = std::min(last, far + step);
        }
        const std::size_t behind = column + 1 == columns ? last : partition(next, far, isBefore);
        if (behind > next) {
            function(next, behind);
        }
        next = behind;
    }
}

void Series::widen(Range &range, const Range &other)
{
    range.least = std::min(range.least, other.least);
    range.greatest = std::max(range.greatest, other.greatest);
}

void Series::append(qint64 time, double value)
{
    const std::size_t place = m_size % ChunkSize;
    if (place == 0) {
        m_chunks.emplace_back(new Chunk); // NOLINT(modernize-make-unique): not to be filled
    }
    Chunk &chunk = *m_chunks.back();
    chunk.times[place] = m_size == 0 ? time : std::max(time, timeAt(m_size - 1));
    chunk.values[place] = value;
    ++m_size;
    if (m_size % FirstPart == 0) {
        completeParts();
    }
}

void Series::append(const std::vector<Point> &points)
{
    for (const Point &point : points) {
        append(point.time, point.value);
    }
}

void Series::completeParts()
{
    const double *last = m_chunks.back()->values.data() + (m_size - FirstPart) % ChunkSize;
    const auto [least, greatest] = std::minmax_element(last, last + FirstPart);
    Range part{*least, *greatest};
    for (std::size_t level = 0;; ++level) {
        if (level == m_levels.size()) {
            m_levels.emplace_back();
        }
        std::vector<Range> &parts = m_levels[level];
        parts.push_back(part);
        if (parts.size() % PartsOfPart != 0) {
            return;
        }
        part = parts.back();
        std::for_each(parts.end() - static_cast<std::ptrdiff_t>(PartsOfPart), parts.end(),
                      [&part](const Range &other) { widen(part, other); });
    }
}

Series::Range Series::rangeOf(std::size_t begin, std::size_t end) const
{
    Range range{valueAt(begin), valueAt(begin)};
    for (std::size_t next = begin; next < end;) {
        std::size_t size = 1;
        const Range *part = nullptr;
        std::size_t partSize = FirstPart;
        for (const std::vector<Range> &parts : m_levels) {
            if (next % partSize != 0 || end - next < partSize || next / partSize >= parts.size()) {
                break;
            }
            part = &parts[next / partSize];
            size = partSize;
            partSize *= PartsOfPart;
        }
        widen(range, part != nullptr ? *part : Range{valueAt(next), valueAt(next)});
        next += size;
    }
    return range;
}

void Series::range(std::size_t begin, std::size_t end, double &least, double &greatest) const
{
    const Range found = rangeOf(begin, end);
    least = found.least;
    greatest = found.greatest;
}

double Series::least() const
{
    return isEmpty() ? 0 : rangeOf(0, size()).least;
}

double Series::greatest() const
{
    return isEmpty() ? 0 : rangeOf(0, size()).greatest;
}

std::size_t Series::firstFrom(qint64 time) const
{
    return partition(0, m_size, [time](qint64 other) { return other < time; });
}

std::size_t Series::indexAt(qint64 time) const
{
    const std::size_t behind = partition(0, m_size, [time](qint64 other) { return other <= time; });
    return behind == 0 ? m_size : behind - 1;
}

void Series::decimate(qint64 begin, qint64 end, int columns, std::vector<Point> &points) const
{
    points.clear();
    const std::size_t first = firstFrom(begin);
    const std::size_t last = end < begin ? first : firstFrom(end);
    if (first > 0) {
        points.push_back(at(first - 1));
    }
    forEachColumn(first, last, begin, end, columns, [this, &points](std::size_t from, std::size_t to) {
        if (to - from <= FewPoints) {
            for (std::size_t i = from; i < to; ++i) {
                points.push_back(at(i));
            }
            return;
        }
        const Range range = rangeOf(from, to);
        const qint64 middle = timeAt(from + (to - from) / 2);
        points.push_back(at(from));
        points.push_back({middle, range.least});
        points.push_back({middle, range.greatest});
        points.push_back(at(to - 1));
    });
    if (last < size()) {
        points.push_back(at(last));
    }
}

/// Goes on from the last step with the points of a column, which are not all of its state.
void Series::addStep(std::size_t begin, std::size_t end, std::vector<Step> &steps) const
{
    const Range range = rangeOf(begin, end);
    const auto isOf = [](const Range &all, double value) {
        return all.least == value && all.greatest == value;
    };
    if (!steps.empty() && !steps.back().isMixed && isOf(range, steps.back().value)) {
        return;
    }
    std::size_t change = begin;
    while (!steps.empty() && !steps.back().isMixed && valueAt(change) == steps.back().value) {
        ++change;
    }
    const bool isOne = isOf(rangeOf(change, end), valueAt(change));
    if (isOne || steps.empty() || !steps.back().isMixed) {
        steps.push_back({timeAt(change), 0, valueAt(end - 1), !isOne});
    } else {
        steps.back().value = valueAt(end - 1);
    }
}

void Series::decimateSteps(qint64 begin, qint64 end, int columns, std::vector<Step> &steps) const
{
    steps.clear();
    const std::size_t before = indexAt(begin);
    const std::size_t first = before < size() ? before : firstFrom(begin);
    const std::size_t last = end < begin ? first : firstFrom(end);
    if (first < last) {
        steps.push_back({std::max(begin, timeAt(first)), 0, valueAt(first), false});
        if (last - first <= static_cast<std::size_t>(columns)) {
            for (std::size_t i = first + 1; i < last; ++i) {
                addStep(i, i + 1, steps);
            }
        } else {
            forEachColumn(first + 1, last, begin, end, columns,
                          [this, &steps](std::size_t from, std::size_t to) { addStep(from, to, steps); });
        }
    }
    for (std::size_t i = 0; i < steps.size(); ++i) {
        const bool isLast = i + 1 == steps.size();
        steps[i].end = !isLast ? steps[i + 1].begin : last < size() ? std::min(end, timeAt(last)) : timeAt(m_size - 1);
    }
}
