#include "viewer/LoadCurveData.h"

#include <algorithm>
#include <utility>

namespace {

constexpr int Columns = 2000;
constexpr double NanosecondsPerSecond = 1e9;
constexpr double MostNanoseconds = 9e18;

} // namespace

LoadCurveData::LoadCurveData(std::shared_ptr<const Series> series, qint64 start, std::optional<double> above)
    : m_series(std::move(series))
    , m_start(start)
    , m_above(above)
{
}

LoadCurveData::~LoadCurveData() = default;

QRectF LoadCurveData::boundingRect() const
{
    return {0, 0, -1, -1}; // the axes are set by who draws
}

void LoadCurveData::setRectOfInterest(const QRectF &rect)
{
    const auto timeOf = [this](double seconds) {
        const double since = std::max(-MostNanoseconds, std::min(seconds * NanosecondsPerSecond, MostNanoseconds));
        return static_cast<qint64>(static_cast<quint64>(m_start) + static_cast<quint64>(static_cast<qint64>(since)));
    };
    m_points.clear();
    const qint64 begin = timeOf(rect.left());
    const qint64 end = timeOf(rect.right());
    if (m_series->isEmpty() || begin >= end) {
        return;
    }
    std::vector<Series::Point> points;
    m_series->decimate(begin, end, Columns, points);
    for (const Series::Point &point : points) {
        if (!m_above || point.value > *m_above) {
            const auto since = static_cast<qint64>(static_cast<quint64>(point.time) - static_cast<quint64>(m_start));
            m_points.emplace_back(static_cast<double>(since) / NanosecondsPerSecond, point.value);
        }
    }
}
