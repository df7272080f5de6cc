#include "capture/SendList.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace {
std::vector<int> sendCounts(const std::vector<DataModel> &rows)
{
    std::vector<int> counts;
    counts.reserve(rows.size());
    std::transform(rows.cbegin(), rows.cend(), std::back_inserter(counts),
                   [](const DataModel &row) { return row.sendCount; });
    return counts;
}
} // namespace

void SendList::start(std::vector<DataModel> rows, int repeat, int listInterval, Mode mode)
{
    m_rows = std::move(rows);
    m_left = sendCounts(m_rows);
    m_current = 0;
    m_repeat = repeat;
    m_listInterval = listInterval;
    m_mode = mode;
}

void SendList::stop()
{
    m_rows.clear();
    m_left.clear();
    m_current = 0;
}

std::optional<int> SendList::advance()
{
    int wait = current().interval;
    --m_left.at(m_current);
    const bool goesOn = m_mode == Mode::Parallel ? moveInParallel() : moveInOrder(wait);
    if (!goesOn) {
        stop();
        return std::nullopt;
    }
    return wait;
}

/// To the next row that has sends left, behind the current one or from the first on.
bool SendList::moveInParallel()
{
    const auto hasSends = [](int left) {
        return left > 0;
    };
    const auto behind = std::next(m_left.cbegin(), static_cast<std::ptrdiff_t>(m_current) + 1);
    auto next = std::find_if(behind, m_left.cend(), hasSends);
    if (next == m_left.cend()) {
        next = std::find_if(m_left.cbegin(), behind, hasSends);
        if (next == behind) {
            return false;
        }
    }
    m_current = static_cast<std::size_t>(std::distance(m_left.cbegin(), next));
    return true;
}

bool SendList::moveInOrder(int &wait)
{
    if (m_left.at(m_current) > 0) {
        return true;
    }
    ++m_current;
    if (m_current < m_rows.size()) {
        return true;
    }
    --m_repeat;
    m_left = sendCounts(m_rows);
    m_current = 0;
    wait = m_listInterval;
    return m_repeat > 0;
}
