#pragma once

#include <QWidget>

#include <array>
#include <optional>

/// What lies above a pane's picture: two cursors, the section that is being chosen, a frame for the keyboard's focus.
/// The mouse goes through it.
class PlotCursors : public QWidget
{
    Q_OBJECT

public:
    explicit PlotCursors(QWidget &canvas);

    /// Pixels, from the left.
    void setLines(const std::array<std::optional<int>, 2> &lines);
    void setBand(int from, int to);
    void clearBand();
    /// A frame tells that keys go to this pane.
    void setFocused(bool isFocused);

protected:
    void paintEvent(QPaintEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    std::array<std::optional<int>, 2> m_lines;
    std::optional<std::array<int, 2>> m_band;
    bool m_isFocused = false;
};
