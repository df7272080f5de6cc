#pragma once

#include "viewer/core/PlotCurve.h"

#include <QColor>

#include <qwt_plot_item.h>

/// Draws a curve's part that is in view: a line without losing a peak, or states as steps with their texts. The
/// horizontal scale counts nanoseconds from the section's begin.
class PlotCurveItem : public QwtPlotItem
{
public:
    /// curve must outlive this.
    explicit PlotCurveItem(const PlotCurve &curve);

    void setColor(const QColor &color) { m_color = color; }
    const QColor &color() const { return m_color; }
    bool isState() const { return m_curve.isState(); }
    /// Nanoseconds, in the frames' time base.
    void setSection(qint64 begin, qint64 end);

    /// Of the values in view. False when there are none.
    bool range(double &least, double &greatest) const;

    void draw(QPainter *painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap, const QRectF &canvas) const override;

private:
    double xOf(const QwtScaleMap &xMap, qint64 time) const;
    void drawLine(QPainter &painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap, int columns) const;
    void drawSteps(QPainter &painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap, const QRectF &canvas) const;

    const PlotCurve &m_curve;
    QColor m_color;
    qint64 m_begin = 0;
    qint64 m_end = 1;
};
