#include "bench/Intervals.h"

#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {
constexpr double AverageGoalPercent = 1.0;
constexpr int LookEveryMs = 50;
} // namespace

void Intervals::note()
{
    const double now = static_cast<double>(m_clock.nsecsElapsed()) / 1e6;
    if (m_last >= 0) {
        m_values.push_back(now - m_last);
    }
    m_last = now;
}

double Intervals::average() const
{
    return std::accumulate(m_values.cbegin(), m_values.cend(), 0.0) / static_cast<double>(m_values.size());
}

double Intervals::percentile(double share)
{
    std::sort(m_values.begin(), m_values.end());
    return m_values.at(static_cast<std::size_t>(share * static_cast<double>(m_values.size() - 1)));
}

void addIntervals(BenchReport &report, const QString &name, Intervals &intervals, int wishMs, bool hasGoal)
{
    const QString ms = QStringLiteral("ms");
    const double deviation = std::abs(intervals.average() - wishMs) / wishMs * 100;
    report.add(name + QStringLiteral(", average"), intervals.average(), ms);
    report.add(name + QStringLiteral(", average off by"), deviation, QStringLiteral("%"),
               hasGoal ? BenchReport::Target::AtMost : BenchReport::Target::None, AverageGoalPercent);
    report.add(name + QStringLiteral(", 50th percentile"), intervals.percentile(0.5), ms);
    report.add(name + QStringLiteral(", 99th percentile"), intervals.percentile(0.99), ms);
    report.add(name + QStringLiteral(", worst"), intervals.percentile(1), ms);
}

void runUntil(const std::function<bool()> &condition)
{
    QEventLoop loop;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
        if (condition()) {
            loop.quit();
        }
    });
    timer.start(LookEveryMs);
    loop.exec();
}
