#pragma once

#include "viewer/core/TimeViews.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QVector>
#include <QWidget>

#include <optional>

class PlotPane;
class QSplitter;

/// Panes one above the other over the same section of time, with cursors through all of them. Times are nanoseconds
/// since the capture's start.
///
/// Mouse: the wheel zooms time around the pointer, with Ctrl or beside the picture the values; dragging moves; a click
/// sets the cursor, with Shift the second one; dragging with Shift chooses a section. Keys: Left, Right, Home, End
/// move;
/// + and - zoom, with Ctrl the values; Up, Down move the values; A makes them automatic; W shows the whole capture;
/// Alt+Left, Alt+Right and Backspace go through the views; Shift+Left, Shift+Right move the cursor; S is for the second
/// one. The pane that has the focus is the one whose values are meant.
class PlotArea : public QWidget
{
    Q_OBJECT

public:
    explicit PlotArea(QWidget *parent = nullptr);
    ~PlotArea() override;

    /// count: 1 or more.
    void setPaneCount(int count);
    int paneCount() const { return m_panes.size(); }
    PlotPane &pane(int index) { return *m_panes[index]; }
    /// The one that has, or last had, the focus.
    int currentPane() const { return m_currentPane; }

    /// The start, in the frames' time base.
    void setOrigin(qint64 time) { m_origin = time; }
    qint64 origin() const { return m_origin; }
    /// The start in nanoseconds since 1970 for times as the clock shows them; nothing: since the start.
    void setClock(const std::optional<qint64> &clock);
    const std::optional<qint64> &clock() const { return m_clock; }
    /// The whole of the capture.
    void setWhole(const TimeSection &whole);
    const TimeViews &views() const { return m_views; }
    double perPixel() const; ///< nanoseconds

    const std::optional<qint64> &cursor() const { return m_cursor; }
    const std::optional<qint64> &secondCursor() const { return m_second; }
    /// Also brings it into view.
    void setCursor(const std::optional<qint64> &time);
    void setSecondCursor(const std::optional<qint64> &time);

    /// Soon, and at most once for each picture of the screen.
    void drawSoon();
    /// Now.
    void draw();
    /// The panes one above the other, of the section in view or of the whole, with the curves' names above each.
    void render(QPainter &painter, const QRectF &area, bool isWhole);

public slots:
    void showWhole();
    void zoom(double factor);
    void goBack();
    void goForward();
    void setValuesAutomatic();

signals:
    /// The user puts the cursor there; setCursor() does it.
    void sig_cursorWanted(qint64 time);
    void sig_secondCursorChanged();
    void sig_viewChanged();
    void sig_drawn();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    PlotPane *makePane();
    void show(const TimeSection &section);
    void changeView();
    void prepare(const TimeSection &section);
    void placeCursor(qint64 time, bool isSecond);
    void moveCursor(int pixels);
    bool handleViewKey(int key);
    bool handleValueKey(int key, bool isControl);
    void renderPane(QPainter &painter, PlotPane &pane, const QRectF &area) const;
    void renderNames(QPainter &painter, const PlotPane &pane, const QRectF &line) const;
    double axisHeight() const;

    QVector<PlotPane *> m_panes;
    QSplitter *m_splitter;
    TimeViews m_views;
    QTimer m_settle; ///< the end of a row of keys or wheel steps
    QTimer m_drawTimer;
    QElapsedTimer m_sinceDrawn;
    qint64 m_origin = 0;
    std::optional<qint64> m_clock;
    std::optional<qint64> m_cursor;
    std::optional<qint64> m_second;
    int m_currentPane = 0;
};
