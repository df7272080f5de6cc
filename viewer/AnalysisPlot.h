#pragma once

#include <qwt_plot.h>

class QwtPlotGrid;
class QwtPlotMarker;

/// A plot with the window's colours and letters. The wheel and + and - zoom along the horizontal axis, dragging and the
/// arrow keys move, a double click and Home show all again. With Ctrl the arrow keys move a line, and Enter does what a
/// click there does.
class AnalysisPlot : public QwtPlot
{
    Q_OBJECT

public:
    explicit AnalysisPlot(QWidget *parent = nullptr);
    ~AnalysisPlot() override;

    /// What there is on the horizontal axis. What is shown stays, unless it was all.
    void setExtent(double least, double greatest);
    /// Zoomed by factor around a place of the axis.
    void zoom(double factor, double around);
    void showAll();
    /// Of the line that keys move, in the axis' values; 0: a hundredth of what is shown.
    void setCursorStep(double step) { m_cursorStep = step; }
    bool savePicture(const QString &path);
    /// The colours of lines one beside the other, on dark and on light ground.
    static QColor lineColor(int number);

signals:
    /// In the axes' values.
    void sig_clicked(const QPointF &place);
    void sig_paletteChanged();

protected:
    bool eventFilter(QObject *object, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void applyLook();
    void show(double least, double greatest);
    void move(double distance);
    void moveCursor(int steps);
    bool handleCursorKey(const QKeyEvent &event);
    bool handleMouse(QMouseEvent &event);

    QwtPlotGrid *m_grid;
    QwtPlotMarker *m_cursor;
    double m_cursorStep = 0;
    double m_least = 0;
    double m_greatest = 1;
    double m_shownLeast = 0;
    double m_shownGreatest = 1;
    QPoint m_pressed;
    int m_draggedTo = 0;
    bool m_isPressed = false;
    bool m_isDragged = false;
};
