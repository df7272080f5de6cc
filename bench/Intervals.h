#pragma once

#include "bench/BenchReport.h"

#include <QElapsedTimer>
#include <QString>

#include <functional>
#include <vector>

/// The times between one event and the next, in milliseconds.
class Intervals
{
public:
    Intervals() { m_clock.start(); }

    void note();
    double average() const;
    /// share: 0..1; 1 is the longest. There must be one interval at least.
    double percentile(double share);
    int count() const { return static_cast<int>(m_values.size()); }

private:
    QElapsedTimer m_clock;
    double m_last = -1;
    std::vector<double> m_values;
};

/// Average, its deviation from wishMs, which is to be 1 % at most if hasGoal, 50th and 99th percentile and worst.
void addIntervals(BenchReport &report, const QString &name, Intervals &intervals, int wishMs, bool hasGoal);

/// Runs the event loop until condition holds; looked at seldom, so that looking does not disturb.
void runUntil(const std::function<bool()> &condition);
