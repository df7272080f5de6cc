#include "viewer/PlotCursors.h"

#include <QEvent>
#include <QPainter>

PlotCursors::PlotCursors(QWidget &canvas)
    : QWidget(&canvas)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    canvas.installEventFilter(this);
    resize(canvas.size());
}

bool PlotCursors::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize) {
        resize(parentWidget()->size());
    }
    return QWidget::eventFilter(watched, event);
}

void PlotCursors::setLines(const std::array<std::optional<int>, 2> &lines)
{
    if (m_lines != lines) {
        m_lines = lines;
        update();
    }
}

void PlotCursors::setBand(int from, int to)
{
    m_band = {from, to};
    update();
}

void PlotCursors::clearBand()
{
    m_band.reset();
    update();
}

void PlotCursors::setFocused(bool isFocused)
{
    m_isFocused = isFocused;
    update();
}

void PlotCursors::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
        if (m_lines[i]) {
            painter.setPen(QPen(palette().color(QPalette::Text), 1, i == 0 ? Qt::SolidLine : Qt::DashLine));
            painter.drawLine(*m_lines[i], 0, *m_lines[i], height());
        }
    }
    if (m_band) {
        QColor color = palette().color(QPalette::Highlight);
        constexpr int Alpha = 80;
        color.setAlpha(Alpha);
        const QRect band = QRect(m_band->front(), 0, m_band->back() - m_band->front(), height()).normalized();
        painter.fillRect(band, color);
    }
    if (m_isFocused) {
        painter.setPen(palette().color(QPalette::Highlight));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}
