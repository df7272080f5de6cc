#include "viewer/core/Series.h"

#include <algorithm>

namespace {

/// Calls function(begin, end), indices in times, for each part of [first, last) that falls into one of columns of the
/// section from begin to end.
template<typename Function>
void forEachColumn(const std::vector<qint64> &times, std::size_t first, std::size_t last, qint64 begin, qint64 end,
                   int columns, Function function)
{
    const double width = (static_cast<double>(end) - static_cast<double>(begin)) / columns;
    const auto at = [&times](std::size_t index) {
        return times.begin() + static_cast<std::ptrdiff_t>(index);
    };
    std::size_t next = first;
    for (int column = 0; column < columns && next < last; ++column) {
        const double offset = width * (column + 1);
        const auto border =
            column + 1 == columns
                ? at(last)
                : std::lower_bound(at(next), at(last), offset, [begin](qint64 time, double value) {
                      return static_cast<double>(static_cast<quint64>(time) - static_cast<quint64>(begin)) < value;
                  });
        const auto behind = static_cast<std::size_t>(border - times.begin());
        if (behind > next) {
            function(next, behind);
        }
        next = behind;
    }
}

} // namespace

void Series::reserve(std::size_t points)
{
    m_times.reserve(points);
    m_values.reserve(points);
}

void Series::widen(Range &range, const Range &other)
{
    range.least = std::min(range.least, other.least);
    range.greatest = std::max(range.greatest, other.greatest);
}

void Series::append(qint64 time, double value)
{
    m_times.push_back(m_times.empty() ? time : std::max(time, m_times.back()));
    m_values.push_back(value);
    if (m_values.size() % FirstPart == 0) {
        completeParts();
    }
}

void Series::completeParts()
{
    const auto last = m_values.end() - static_cast<std::ptrdiff_t>(FirstPart);
    const auto [least, greatest] = std::minmax_element(last, m_values.end());
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
    Range range{m_values[begin], m_values[begin]};
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
        widen(range, part != nullptr ? *part : Range{m_values[next], m_values[next]});
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
    return static_cast<std::size_t>(std::lower_bound(m_times.begin(), m_times.end(), time) - m_times.begin());
}

std::size_t Series::indexAt(qint64 time) const
{
    const auto behind = std::upper_bound(m_times.begin(), m_times.end(), time);
    return behind == m_times.begin() ? size() : static_cast<std::size_t>(behind - m_times.begin()) - 1;
}

void Series::decimate(qint64 begin, qint64 end, int columns, std::vector<Point> &points) const
{
    points.clear();
    const std::size_t first = firstFrom(begin);
    const std::size_t last = end < begin ? first : firstFrom(end);
    if (first > 0) {
        points.push_back(at(first - 1));
    }
    forEachColumn(m_times, first, last, begin, end, columns, [this, &points](std::size_t from, std::size_t to) {
        if (to - from <= FewPoints) {
            for (std::size_t i = from; i < to; ++i) {
                points.push_back(at(i));
            }
            return;
        }
        const Range range = rangeOf(from, to);
        const qint64 middle = m_times[from + (to - from) / 2];
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
    while (!steps.empty() && !steps.back().isMixed && m_values[change] == steps.back().value) {
        ++change;
    }
    const bool isOne = isOf(rangeOf(change, end), m_values[change]);
    if (isOne || steps.empty() || !steps.back().isMixed) {
        steps.push_back({m_times[change], 0, m_values[end - 1], !isOne});
    } else {
        steps.back().value = m_values[end - 1];
    }
}

void Series::decimateSteps(qint64 begin, qint64 end, int columns, std::vector<Step> &steps) const
{
    steps.clear();
    const std::size_t before = indexAt(begin);
    const std::size_t first = before < size() ? before : firstFrom(begin);
    const std::size_t last = end < begin ? first : firstFrom(end);
    if (first < last) {
        steps.push_back({std::max(begin, m_times[first]), 0, m_values[first], false});
        if (last - first <= static_cast<std::size_t>(columns)) {
            for (std::size_t i = first + 1; i < last; ++i) {
                addStep(i, i + 1, steps);
            }
        } else {
            forEachColumn(m_times, first + 1, last, begin, end, columns,
                          [this, &steps](std::size_t from, std::size_t to) { addStep(from, to, steps); });
        }
    }
    for (std::size_t i = 0; i < steps.size(); ++i) {
        const bool isLast = i + 1 == steps.size();
        steps[i].end = !isLast ? steps[i + 1].begin : last < size() ? std::min(end, m_times[last]) : m_times.back();
    }
}
