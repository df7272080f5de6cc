#include "viewer/PlotCurveItem.h"

#include <QFontInfo>
#include <QPainter>

#include <qwt_plot.h>
#include <qwt_scale_map.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr int MixedAlpha = 70;
constexpr std::size_t PixelsOfDot = 12; // dots closer than that would hide the line
constexpr double DotRadius = 2;

/// A peak that is far out of a zoomed picture; painters take no greater numbers.
double cut(double pixel)
{
    constexpr double Far = 1e5;
    return std::min(std::max(pixel, -Far), Far);
}

} // namespace

PlotCurveItem::PlotCurveItem(const PlotCurve &curve)
    : m_curve(curve)
{
    constexpr double AboveTheGrid = 20;
    setZ(AboveTheGrid);
}

void PlotCurveItem::setSection(qint64 begin, qint64 end)
{
    m_begin = begin;
    m_end = end;
}

bool PlotCurveItem::range(double &least, double &greatest) const
{
    const Series &series = *m_curve.series();
    const std::size_t at = series.indexAt(m_begin);
    const std::size_t first = at < series.size() ? at : series.firstFrom(m_begin);
    const std::size_t end = std::min(series.size(), series.firstFrom(m_end) + 1);
    if (first >= end || series.at(first).time > m_end) {
        return false;
    }
    series.range(first, end, least, greatest);
    return true;
}

double PlotCurveItem::xOf(const QwtScaleMap &xMap, qint64 time) const
{
    return cut(xMap.transform(static_cast<double>(time) - static_cast<double>(m_begin)));
}

void PlotCurveItem::draw(QPainter *painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap,
                         const QRectF &canvas) const
{
    painter->save();
    painter->setClipRect(canvas, Qt::IntersectClip);
    painter->setRenderHint(QPainter::Antialiasing, false);
    painter->setPen(QPen(m_color, 1));
    if (m_curve.isState()) {
        drawSteps(*painter, xMap, yMap, canvas);
    } else {
        const double scale = std::abs(painter->transform().m11());
        drawLine(*painter, xMap, yMap, std::max(1, static_cast<int>(canvas.width() * std::max(1.0, scale))));
    }
    painter->restore();
}

void PlotCurveItem::drawLine(QPainter &painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap, int columns) const
{
    std::vector<Series::Point> points;
    m_curve.series()->decimate(m_begin, m_end, columns, points);
    QPolygonF line;
    line.reserve(static_cast<int>(points.size()));
    for (const Series::Point &point : points) {
        line.append({xOf(xMap, point.time), cut(yMap.transform(point.value))});
    }
    painter.drawPolyline(line);
    if (points.size() * PixelsOfDot < static_cast<std::size_t>(columns)) {
        painter.setBrush(m_color);
        for (const QPointF &point : qAsConst(line)) {
            painter.drawEllipse(point, DotRadius, DotRadius);
        }
    }
}

void PlotCurveItem::drawSteps(QPainter &painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap,
                              const QRectF &canvas) const
{
    std::vector<Series::Step> steps;
    const Series &series = *m_curve.series();
    series.decimateSteps(m_begin, m_end, std::max(1, static_cast<int>(canvas.width())), steps);
    const double bottom = cut(yMap.transform(series.least()));
    const double top = cut(yMap.transform(series.greatest()));
    QFont font = plot()->font();
    font.setPixelSize(QFontInfo(font).pixelSize()); // that of the screen: on paper the painter scales it
    painter.setFont(font);
    const QFontMetricsF metrics(font);
    const double blank = metrics.averageCharWidth();
    QColor mixed = m_color;
    mixed.setAlpha(MixedAlpha);
    QPolygonF line;
    for (const Series::Step &step : steps) {
        const double left = xOf(xMap, step.begin);
        const double right = xOf(xMap, step.end);
        const double y = cut(yMap.transform(step.value));
        if (step.isMixed) {
            painter.fillRect(QRectF(left, top, std::max(1.0, right - left), bottom - top), mixed);
        }
        line << QPointF(left, y) << QPointF(right, y);
        const double begin = std::max(left, canvas.left()) + blank / 2;
        const double room = std::min(right, canvas.right()) - begin - blank / 2;
        if (room > 3 * blank && !step.isMixed) {
            const QString text = metrics.elidedText(m_curve.valueText(step.value), Qt::ElideRight, room);
            const bool hasRoomAbove = y - metrics.height() >= canvas.top();
            painter.drawText(QPointF(begin, hasRoomAbove ? y - metrics.descent() : y + metrics.ascent()), text);
        }
    }
    painter.drawPolyline(line);
}
