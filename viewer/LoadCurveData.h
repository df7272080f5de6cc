#pragma once

#include "viewer/core/Series.h"

#include <qwt_series_data.h>

#include <memory>
#include <optional>

/// A series for a curve over seconds since start: of the section that is drawn as many points as a picture has columns.
class LoadCurveData : public QwtSeriesData<QPointF>
{
public:
    /// above: only the points that are greater.
    LoadCurveData(std::shared_ptr<const Series> series, qint64 start, std::optional<double> above = std::nullopt);
    ~LoadCurveData() override;

    std::size_t size() const override { return m_points.size(); }
    QPointF sample(std::size_t index) const override { return m_points[index]; }
    QRectF boundingRect() const override;
    void setRectOfInterest(const QRectF &rect) override;

private:
    std::shared_ptr<const Series> m_series;
    qint64 m_start;
    std::optional<double> m_above;
    std::vector<QPointF> m_points;
};
