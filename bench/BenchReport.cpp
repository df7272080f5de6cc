#include "bench/BenchReport.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cstdio>

void BenchReport::add(const QString &name, double value, const QString &unit, Target target, double limit)
{
    QJsonObject figure{
        {QStringLiteral("name"), name}, {QStringLiteral("value"), value}, {QStringLiteral("unit"), unit}};
    if (target != Target::None) {
        const bool atLeast = target == Target::AtLeast;
        figure[QStringLiteral("target")] = atLeast ? QStringLiteral("at least") : QStringLiteral("at most");
        figure[QStringLiteral("limit")] = limit;
        figure[QStringLiteral("met")] = atLeast ? value >= limit : value <= limit;
    }
    m_figures.append(figure);
}

void BenchReport::print() const
{
    for (const QJsonValue &value : m_figures) {
        const QJsonObject figure = value.toObject();
        std::printf("%-58s %14.3f %-14s", qPrintable(figure[QStringLiteral("name")].toString()),
                    figure[QStringLiteral("value")].toDouble(), qPrintable(figure[QStringLiteral("unit")].toString()));
        if (figure.contains(QStringLiteral("target"))) {
            std::printf(" %s %g: %s", qPrintable(figure[QStringLiteral("target")].toString()),
                        figure[QStringLiteral("limit")].toDouble(),
                        figure[QStringLiteral("met")].toBool() ? "met" : "MISSED");
        }
        std::printf("\n");
    }
}

bool BenchReport::writeJson(const QString &path) const
{
    if (path.isEmpty()) {
        return true;
    }
    QFile file(path);
    const QByteArray json = QJsonDocument(QJsonObject{{QStringLiteral("figures"), m_figures}}).toJson();
    return file.open(QIODevice::WriteOnly) && file.write(json) == json.size() && file.flush();
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}
