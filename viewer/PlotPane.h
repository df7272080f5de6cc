#pragma once

#include "viewer/core/TimeTicks.h"

#include <qwt_plot.h>

#include <optional>
#include <vector>

class PlotCurveItem;
class PlotCursors;
class PlotTimeScale;
class QwtPlotGrid;

/// One of the pictures that stand one above the other: a scale of values, and curves over time. Times are nanoseconds
/// since the capture's start. It asks for another section with its signals; its scale of values it zooms by itself.
class PlotPane : public QwtPlot
{
    Q_OBJECT

public:
    explicit PlotPane(QWidget *parent = nullptr);
    ~PlotPane() override;

    /// The curves, which must stay as long as they are here.
    void setItems(const std::vector<PlotCurveItem *> &items);
    const std::vector<PlotCurveItem *> &items() const { return m_items; }
    /// Of those that are shown; empty when they have none or several.
    void setUnit(const QString &unit);
    /// Whether the times are written below the picture.
    void setTimesShown(bool isShown);
    /// origin: the capture's start. Not drawn before the next replot().
    void setSection(const TimeSection &section, qint64 origin, const std::optional<qint64> &clock);
    const TimeSection &section() const { return m_section; }
    void setCursors(const std::optional<qint64> &first, const std::optional<qint64> &second);

    /// Brings the values' scale to the values in view while it is automatic.
    void fitValues();
    bool isAutomatic() const { return m_isAutomatic; }
    void setAutomatic();
    /// Also makes the scale a fixed one. factor: of its width; around stays where it is in the picture.
    void zoomValues(double factor, double around);
    /// share: of the scale's width.
    void moveValues(double share);
    double middleValue() const;

    /// The pixels that the texts of the values' scale need, and those that they get at least.
    double valueExtent() const;
    void setValueExtent(double pixels);

    /// Small, so that many panes have room.
    QSize minimumSizeHint() const override;
    QSize sizeHint() const override { return minimumSizeHint(); }

    /// At a pixel of the canvas, and back.
    qint64 timeAt(int x) const;
    int xOf(qint64 time) const;

signals:
    /// A factor for the section's width; around stays where it is.
    void sig_zoomWanted(double factor, qint64 around);
    void sig_moveWanted(qint64 distance);
    void sig_sectionWanted(qint64 begin, qint64 end);
    void sig_cursorWanted(qint64 time, bool isSecond);
    /// The mouse was pressed or let go.
    void sig_settled();
    /// What is drawn has to be drawn anew.
    void sig_changed();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void changeEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    /// What the mouse does since it was pressed.
    struct Drag
    {
        QPoint from; ///< on the canvas
        qint64 time;
        double value;
        bool isMoving; ///< further than a click
        bool isBand;   ///< chooses a section
    };

    void applyLook();
    double perPixel() const;
    double valueAt(int y) const;

    TimeSection m_section;
    std::vector<PlotCurveItem *> m_items;
    QwtPlotGrid *m_grid;
    PlotTimeScale *m_times;
    PlotCursors *m_cursors;
    std::optional<Drag> m_drag;
    bool m_isAutomatic = true;
};
