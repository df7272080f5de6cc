#pragma once

#include <QJsonArray>
#include <QString>

#include <ctime>
#include <vector>

/// Collects figures, prints them as a table and writes them as JSON.
class BenchReport
{
public:
    enum class Target { None, AtLeast, AtMost };

    void add(const QString &name, double value, const QString &unit, Target target = Target::None, double limit = 0);
    void print() const;
    /// False when the file cannot be written. An empty path writes nothing.
    bool writeJson(const QString &path) const;

private:
    QJsonArray m_figures;
};

/// Seconds of processor time this process has used: not disturbed by what else runs on the machine.
inline double cpuSeconds()
{
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

double median(std::vector<double> values);
