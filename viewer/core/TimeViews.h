#pragma once

#include <QtGlobal>

#include <limits>
#include <vector>

/// a + b, or the least or greatest 64-bit number where they do not hold it.
constexpr qint64 boundedSum(qint64 a, qint64 b)
{
    constexpr qint64 Least = std::numeric_limits<qint64>::min();
    constexpr qint64 Greatest = std::numeric_limits<qint64>::max();
    return b >= 0 ? (a > Greatest - b ? Greatest : a + b) : (a < Least - b ? Least : a + b);
}

/// From a time to a later one: nanoseconds since the capture's start.
struct TimeSection
{
    qint64 begin = 0;
    qint64 end = 1;

    qint64 width() const { return end - begin; }
    bool operator==(const TimeSection &other) const { return begin == other.begin && end == other.end; }
    bool operator!=(const TimeSection &other) const { return !(*this == other); }
};

/// The section of a capture that is looked at, within the whole of it, and the ones that were looked at before. A plain
/// value.
class TimeViews
{
public:
    static constexpr qint64 LeastWidth = 20; ///< ns
    /// Greatest distance of a time from the start; what is further away is taken for it.
    static constexpr qint64 Farthest = qint64{1} << 61U;
    static constexpr int MaxKept = 100;

    /// A section that is the whole, or that ends where it ends, goes along with it.
    void setWhole(const TimeSection &whole);
    const TimeSection &whole() const { return m_whole; }
    const TimeSection &section() const { return m_section; }
    bool isWhole() const { return m_section == m_whole; }

    /// Cut to the whole, and no narrower than LeastWidth.
    void show(const TimeSection &section);
    void showWhole() { show(m_whole); }
    /// factor: of the width, such as 0.5 for half of it. around stays where it is in the picture.
    void zoom(double factor, qint64 around);
    void move(qint64 distance);
    /// As little as it takes to have time in the section.
    void reach(qint64 time);
    /// What follows is another view to go back from; until then, changes are one.
    void settle() { m_isSettled = true; }

    bool canGoBack() const { return !m_before.empty(); }
    bool canGoForward() const { return !m_behind.empty(); }
    void goBack();
    void goForward();

private:
    TimeSection cut(TimeSection section) const;
    void remember();
    void swapWith(std::vector<TimeSection> &from, std::vector<TimeSection> &to);

    TimeSection m_whole;
    TimeSection m_section;
    std::vector<TimeSection> m_before;
    std::vector<TimeSection> m_behind;
    bool m_isSettled = true;
};
