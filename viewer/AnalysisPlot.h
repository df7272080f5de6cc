#pragma once

#include <qwt_plot.h>

class QwtPlotGrid;

/// A plot with the window's colours and letters. The wheel and + and - zoom along the horizontal axis, dragging and the
/// arrow keys move, a double click and Home show all again.
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
    bool handleMouse(QMouseEvent &event);

    QwtPlotGrid *m_grid;
    double m_least = 0;
    double m_greatest = 1;
    double m_shownLeast = 0;
    double m_shownGreatest = 1;
    QPoint m_pressed;
    int m_draggedTo = 0;
    bool m_isPressed = false;
    bool m_isDragged = false;
};
