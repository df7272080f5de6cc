#pragma once

#include <QJsonArray>
#include <QString>

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

double median(std::vector<double> values);
