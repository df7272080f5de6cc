#include "viewer/core/TimeViews.h"

#include <algorithm>
#include <cmath>

TimeSection TimeViews::cut(TimeSection section) const
{
    const qint64 least = std::min(LeastWidth, m_whole.width());
    const qint64 width = std::min(m_whole.width(), std::max(least, section.width()));
    section.begin = std::min(std::max(section.begin, m_whole.begin), m_whole.end - width);
    section.end = section.begin + width;
    return section;
}

void TimeViews::setWhole(const TimeSection &whole)
{
    const bool wasWhole = isWhole();
    const bool wasAtEnd = m_section.end == m_whole.end;
    m_whole.begin = std::min(std::max(whole.begin, -Farthest), Farthest - 1);
    m_whole.end = std::min(std::max(whole.end, m_whole.begin + 1), Farthest);
    if (wasWhole) {
        m_section = m_whole;
    } else {
        const qint64 width = m_section.width();
        m_section = cut(wasAtEnd ? TimeSection{m_whole.end - width, m_whole.end} : m_section);
    }
}

void TimeViews::remember()
{
    if (m_isSettled) {
        if (m_before.size() >= MaxKept) {
            m_before.erase(m_before.begin());
        }
        m_before.push_back(m_section);
        m_isSettled = false;
    }
    m_behind.clear();
}

void TimeViews::show(const TimeSection &section)
{
    const TimeSection wanted = cut(section);
    if (wanted != m_section) {
        remember();
        m_section = wanted;
    }
}

void TimeViews::zoom(double factor, qint64 around)
{
    const auto width = static_cast<double>(m_section.width());
    const double share = static_cast<double>(around - m_section.begin) / width;
    const double wide =
        std::min(std::max(width * factor, static_cast<double>(LeastWidth)), static_cast<double>(m_whole.width()));
    const qint64 begin = around - static_cast<qint64>(std::llround(share * wide));
    show({begin, begin + static_cast<qint64>(std::llround(wide))});
}

void TimeViews::move(qint64 distance)
{
    const qint64 far = std::min(std::max(distance, -m_whole.width()), m_whole.width());
    const qint64 begin = std::min(std::max(m_section.begin + far, m_whole.begin), m_whole.end - m_section.width());
    show({begin, begin + m_section.width()});
}

void TimeViews::reach(qint64 time)
{
    const qint64 inside = std::min(std::max(time, m_whole.begin), m_whole.end);
    if (inside < m_section.begin || inside > m_section.end) {
        const qint64 begin = inside - m_section.width() / 2;
        show({begin, begin + m_section.width()});
    }
}

void TimeViews::swapWith(std::vector<TimeSection> &from, std::vector<TimeSection> &to)
{
    if (!from.empty()) {
        to.push_back(m_section);
        m_section = cut(from.back());
        from.pop_back();
        m_isSettled = true;
    }
}

void TimeViews::goBack()
{
    swapWith(m_before, m_behind);
}

void TimeViews::goForward()
{
    swapWith(m_behind, m_before);
}
