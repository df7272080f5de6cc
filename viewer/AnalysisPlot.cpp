#include "viewer/AnalysisPlot.h"

#include <QApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include <qwt_plot_canvas.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_marker.h>
#include <qwt_scale_map.h>
#include <qwt_scale_widget.h>

#include <algorithm>
#include <array>

namespace {

constexpr double ZoomStep = 0.8;
constexpr double MoveStep = 0.1;
/// Of what there is, so much is shown at least.
constexpr double LeastShare = 1e-9;

} // namespace

AnalysisPlot::AnalysisPlot(QWidget *parent)
    : QwtPlot(parent)
    , m_grid(new QwtPlotGrid)
    , m_cursor(new QwtPlotMarker)
{
    setFocusPolicy(Qt::StrongFocus);
    auto *ground = new QwtPlotCanvas;
    ground->setFrameStyle(QFrame::NoFrame);
    ground->setPaintAttribute(QwtPlotCanvas::BackingStore, false); // its last column is not always drawn
    ground->installEventFilter(this);
    setCanvas(ground);
    m_grid->attach(this);
    m_cursor->setLineStyle(QwtPlotMarker::VLine);
    m_cursor->setVisible(false);
    m_cursor->attach(this);
    applyLook();
}

AnalysisPlot::~AnalysisPlot() = default;

QColor AnalysisPlot::lineColor(int number)
{
    static const std::array<QColor, 8> Colors{QColor(48, 140, 220),  QColor(235, 130, 20), QColor(50, 165, 70),
                                              QColor(160, 105, 210), QColor(30, 170, 180), QColor(215, 95, 165),
                                              QColor(150, 140, 40),  QColor(130, 130, 140)};
    return Colors[static_cast<std::size_t>(number) % Colors.size()];
}

void AnalysisPlot::applyLook()
{
    canvas()->setPalette(palette());
    canvas()->setCursor(Qt::ArrowCursor);
    setCanvasBackground(palette().base());
    QColor line = palette().color(QPalette::Text);
    line.setAlpha(40);
    m_grid->setPen(line, 0);
    m_cursor->setLinePen(palette().color(QPalette::Highlight), 2);
    QFont letters = QApplication::font();
    for (int axis = 0; axis < QwtPlot::axisCnt; ++axis) {
        setAxisFont(axis, letters);
        QwtText title = axisTitle(axis);
        title.setFont(letters);
        setAxisTitle(axis, title);
    }
    replot();
}

void AnalysisPlot::changeEvent(QEvent *event)
{
    QwtPlot::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
        applyLook();
        emit sig_paletteChanged();
    }
}

void AnalysisPlot::setExtent(double least, double greatest)
{
    const bool isAll = m_shownLeast <= m_least && m_shownGreatest >= m_greatest;
    m_least = least;
    m_greatest = std::max(greatest, least + 1e-9);
    if (isAll) {
        showAll();
    } else {
        show(m_shownLeast, m_shownGreatest);
    }
}

void AnalysisPlot::showAll()
{
    show(m_least, m_greatest);
}

void AnalysisPlot::show(double least, double greatest)
{
    const double all = m_greatest - m_least;
    const double width = std::max(all * LeastShare, std::min(all, greatest - least));
    m_shownLeast = std::max(m_least, std::min(least, m_greatest - width));
    m_shownGreatest = m_shownLeast + width;
    setAxisScale(QwtPlot::xBottom, m_shownLeast, m_shownGreatest);
    replot();
}

void AnalysisPlot::zoom(double factor, double around)
{
    show(around - (around - m_shownLeast) * factor, around + (m_shownGreatest - around) * factor);
}

void AnalysisPlot::move(double distance)
{
    show(m_shownLeast + distance, m_shownGreatest + distance);
}

bool AnalysisPlot::handleMouse(QMouseEvent &event)
{
    switch (event.type()) {
    case QEvent::MouseButtonPress:
        m_isPressed = event.button() == Qt::LeftButton;
        m_isDragged = false;
        m_pressed = event.pos();
        m_draggedTo = event.pos().x();
        setFocus();
        return m_isPressed;
    case QEvent::MouseMove:
        m_isDragged = m_isDragged || (event.pos() - m_pressed).manhattanLength() >= QApplication::startDragDistance();
        if (m_isPressed && m_isDragged) {
            move(invTransform(QwtPlot::xBottom, m_draggedTo) - invTransform(QwtPlot::xBottom, event.pos().x()));
            m_draggedTo = event.pos().x();
        }
        return m_isPressed;
    case QEvent::MouseButtonRelease:
        if (m_isPressed && !m_isDragged) {
            emit sig_clicked(
                {invTransform(QwtPlot::xBottom, event.pos().x()), invTransform(QwtPlot::yLeft, event.pos().y())});
        }
        m_isPressed = false;
        return true;
    case QEvent::MouseButtonDblClick:
        showAll();
        return true;
    default:
        return false;
    }
}

bool AnalysisPlot::eventFilter(QObject *object, QEvent *event)
{
    if (object == canvas()) {
        if (event->type() == QEvent::Wheel) {
            const auto *wheel = static_cast<QWheelEvent *>(event);
            const int steps = wheel->angleDelta().y();
            if (steps != 0) {
                zoom(steps > 0 ? ZoomStep : 1 / ZoomStep,
                     invTransform(QwtPlot::xBottom, qRound(wheel->position().x())));
            }
            return true;
        }
        if (event->type() >= QEvent::MouseButtonPress && event->type() <= QEvent::MouseMove) {
            return handleMouse(*static_cast<QMouseEvent *>(event));
        }
    }
    return QwtPlot::eventFilter(object, event);
}

/// It begins in the middle, and what is shown goes along with it.
void AnalysisPlot::moveCursor(int steps)
{
    const double width = m_shownGreatest - m_shownLeast;
    const double step = m_cursorStep > 0 ? m_cursorStep : width / 100;
    const bool isThere = m_cursor->isVisible();
    const double begin = isThere ? m_cursor->xValue() : m_shownLeast + width / 2;
    const double place = std::max(m_least, std::min(begin + (isThere ? steps * step : 0), m_greatest));
    m_cursor->setXValue(place);
    m_cursor->setVisible(true);
    if (place < m_shownLeast || place > m_shownGreatest) {
        move(place - (place < m_shownLeast ? m_shownLeast : m_shownGreatest));
    } else {
        replot();
    }
}

bool AnalysisPlot::handleCursorKey(const QKeyEvent &event)
{
    const bool isMoved = (event.modifiers() & Qt::ControlModifier) != 0;
    if (isMoved && (event.key() == Qt::Key_Left || event.key() == Qt::Key_Right)) {
        moveCursor(event.key() == Qt::Key_Left ? -1 : 1);
        return true;
    }
    if ((event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter) && m_cursor->isVisible()) {
        emit sig_clicked({m_cursor->xValue(), 0});
        return true;
    }
    return false;
}

void AnalysisPlot::keyPressEvent(QKeyEvent *event)
{
    if (handleCursorKey(*event)) {
        return;
    }
    const double width = m_shownGreatest - m_shownLeast;
    const double middle = m_shownLeast + width / 2;
    switch (event->key()) {
    case Qt::Key_Plus:
        zoom(ZoomStep, middle);
        break;
    case Qt::Key_Minus:
        zoom(1 / ZoomStep, middle);
        break;
    case Qt::Key_Left:
        move(-width * MoveStep);
        break;
    case Qt::Key_Right:
        move(width * MoveStep);
        break;
    case Qt::Key_Home:
        showAll();
        break;
    default:
        QwtPlot::keyPressEvent(event);
    }
}

bool AnalysisPlot::savePicture(const QString &path)
{
    return grab().save(path, "PNG");
}
