#include "viewer/PlotArea.h"

#include "viewer/PlotCurveItem.h"
#include "viewer/PlotPane.h"

#include <QKeyEvent>
#include <QPainter>
#include <QSplitter>
#include <QVBoxLayout>

#include <qwt_plot_marker.h>
#include <qwt_plot_renderer.h>
#include <qwt_scale_widget.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr int PictureMs = 16;
constexpr int SettleMs = 700;
constexpr double ZoomStep = 0.7;
constexpr int MoveParts = 10; ///< of the section that a key moves by one of

} // namespace

PlotArea::PlotArea(QWidget *parent)
    : QWidget(parent)
    , m_splitter(new QSplitter(Qt::Vertical))
{
    setObjectName(QStringLiteral("area"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_splitter);
    m_splitter->setChildrenCollapsible(false);
    m_settle.setSingleShot(true);
    m_settle.setInterval(SettleMs);
    connect(&m_settle, &QTimer::timeout, this, [this] { m_views.settle(); });
    m_drawTimer.setSingleShot(true);
    connect(&m_drawTimer, &QTimer::timeout, this, &PlotArea::draw);
    m_sinceDrawn.start();
    setPaneCount(1);
}

PlotArea::~PlotArea() = default;

PlotPane *PlotArea::makePane()
{
    auto *pane = new PlotPane;
    connect(pane, &PlotPane::sig_changed, this, &PlotArea::drawSoon);
    connect(pane, &PlotPane::sig_settled, this, [this] { m_views.settle(); });
    connect(pane, &PlotPane::sig_zoomWanted, this, [this](double factor, qint64 around) {
        m_views.zoom(factor, around);
        changeView();
    });
    connect(pane, &PlotPane::sig_moveWanted, this, [this](qint64 distance) {
        m_views.move(distance);
        changeView();
    });
    connect(pane, &PlotPane::sig_sectionWanted, this, [this](qint64 begin, qint64 end) { show({begin, end}); });
    connect(pane, &PlotPane::sig_cursorWanted, this, [this, pane](qint64 time, bool isSecond) {
        pane->setFocus(Qt::MouseFocusReason);
        placeCursor(time, isSecond);
    });
    pane->installEventFilter(this);
    return pane;
}

bool PlotArea::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn) {
        m_currentPane = std::max(0, static_cast<int>(m_panes.indexOf(qobject_cast<PlotPane *>(watched))));
    }
    return QWidget::eventFilter(watched, event);
}

void PlotArea::setPaneCount(int count)
{
    const bool isOther = m_panes.size() != count;
    while (m_panes.size() > count) {
        delete m_panes.takeLast();
    }
    while (m_panes.size() < count) {
        m_panes.append(makePane());
        m_splitter->addWidget(m_panes.last());
        m_splitter->setStretchFactor(m_panes.size() - 1, 1);
    }
    for (int i = 0; i < count; ++i) {
        m_panes[i]->setTimesShown(i + 1 == count);
    }
    m_currentPane = std::min(m_currentPane, count - 1);
    if (isOther) {
        const int times = static_cast<int>(axisHeight());
        QVector<int> sizes(count, std::max(1, (height() - times) / count));
        sizes.last() += times; // the pictures above them are of one height
        m_splitter->setSizes(sizes.toList());
    }
    drawSoon();
}

void PlotArea::setClock(const std::optional<qint64> &clock)
{
    if (m_clock != clock) {
        m_clock = clock;
        drawSoon();
    }
}

void PlotArea::setWhole(const TimeSection &whole)
{
    const TimeSection before = m_views.section();
    const TimeSection wholeBefore = m_views.whole();
    m_views.setWhole(whole);
    if (m_views.section() != before || m_views.whole() != wholeBefore) {
        emit sig_viewChanged();
        drawSoon();
    }
}

double PlotArea::perPixel() const
{
    return static_cast<double>(m_views.section().width()) / std::max(1, m_panes.front()->canvas()->width());
}

void PlotArea::setCursor(const std::optional<qint64> &time)
{
    m_cursor = time;
    if (time) {
        const TimeSection before = m_views.section();
        m_views.reach(*time);
        if (m_views.section() != before) {
            changeView();
        }
    }
    for (PlotPane *pane : qAsConst(m_panes)) {
        pane->setCursors(m_cursor, m_second);
    }
}

void PlotArea::setSecondCursor(const std::optional<qint64> &time)
{
    m_second = time;
    for (PlotPane *pane : qAsConst(m_panes)) {
        pane->setCursors(m_cursor, m_second);
    }
    emit sig_secondCursorChanged();
}

void PlotArea::placeCursor(qint64 time, bool isSecond)
{
    const TimeSection &whole = m_views.whole();
    const qint64 inside = std::min(std::max(time, whole.begin), whole.end);
    if (isSecond) {
        setSecondCursor(inside);
    } else {
        emit sig_cursorWanted(inside);
    }
}

void PlotArea::moveCursor(int pixels)
{
    const TimeSection &section = m_views.section();
    const qint64 from = m_cursor.value_or(section.begin + section.width() / 2);
    const double step = std::max(1.0, perPixel());
    placeCursor(from + static_cast<qint64>(std::llround(step * pixels)), false);
}

void PlotArea::changeView()
{
    m_settle.start();
    for (PlotPane *pane : qAsConst(m_panes)) { // the mouse's next step counts from there
        pane->setSection(m_views.section(), m_origin, m_clock);
    }
    emit sig_viewChanged();
    drawSoon();
}

void PlotArea::show(const TimeSection &section)
{
    m_views.settle();
    m_views.show(section);
    m_views.settle();
    changeView();
}

void PlotArea::showWhole()
{
    show(m_views.whole());
}

void PlotArea::zoom(double factor)
{
    const TimeSection &section = m_views.section();
    const bool isCursorSeen = m_cursor && *m_cursor >= section.begin && *m_cursor <= section.end;
    m_views.zoom(factor, isCursorSeen ? *m_cursor : section.begin + section.width() / 2);
    changeView();
}

void PlotArea::goBack()
{
    m_views.goBack();
    changeView();
}

void PlotArea::goForward()
{
    m_views.goForward();
    changeView();
}

void PlotArea::setValuesAutomatic()
{
    for (PlotPane *pane : qAsConst(m_panes)) {
        pane->setAutomatic();
    }
}

void PlotArea::drawSoon()
{
    if (!m_drawTimer.isActive()) {
        m_drawTimer.start(static_cast<int>(std::max<qint64>(0, PictureMs - m_sinceDrawn.elapsed())));
    }
}

/// Scales of one width, so that times stand one above the other.
void PlotArea::prepare(const TimeSection &section)
{
    double extent = 0;
    for (PlotPane *pane : qAsConst(m_panes)) {
        pane->setSection(section, m_origin, m_clock);
        pane->fitValues();
        pane->updateAxes();
        extent = std::max(extent, pane->valueExtent());
    }
    const double character = fontMetrics().averageCharWidth();
    extent = std::ceil(extent / character) * character; // so that it does not twitch
    for (PlotPane *pane : qAsConst(m_panes)) {
        pane->setValueExtent(extent);
    }
}

void PlotArea::draw()
{
    m_drawTimer.stop();
    prepare(m_views.section());
    for (PlotPane *pane : qAsConst(m_panes)) {
        pane->replot();
        pane->setCursors(m_cursor, m_second);
    }
    m_sinceDrawn.restart();
    emit sig_drawn();
}

void PlotArea::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    drawSoon();
}

bool PlotArea::handleViewKey(int key)
{
    const TimeSection whole = m_views.whole();
    const qint64 width = m_views.section().width();
    switch (key) {
    case Qt::Key_Left:
        m_views.move(-width / MoveParts);
        break;
    case Qt::Key_Right:
        m_views.move(width / MoveParts);
        break;
    case Qt::Key_Home:
        m_views.show({whole.begin, whole.begin + width});
        break;
    case Qt::Key_End:
        m_views.show({whole.end - width, whole.end});
        break;
    case Qt::Key_W:
        showWhole();
        return true;
    case Qt::Key_Backspace:
        goBack();
        return true;
    default:
        return false;
    }
    changeView();
    return true;
}

bool PlotArea::handleValueKey(int key, bool isControl)
{
    PlotPane &current = *m_panes[m_currentPane];
    switch (key) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
    case Qt::Key_Minus: {
        const double factor = key == Qt::Key_Minus ? 1 / ZoomStep : ZoomStep;
        if (isControl) {
            current.zoomValues(factor, current.middleValue());
        } else {
            zoom(factor);
        }
        return true;
    }
    case Qt::Key_Up:
    case Qt::Key_Down:
        current.moveValues((key == Qt::Key_Up ? 1.0 : -1.0) / MoveParts);
        return true;
    case Qt::Key_A:
        setValuesAutomatic();
        return true;
    case Qt::Key_S:
        setSecondCursor(m_second ? std::nullopt : m_cursor);
        return true;
    default:
        return false;
    }
}

void PlotArea::keyPressEvent(QKeyEvent *event)
{
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const bool isArrow = event->key() == Qt::Key_Left || event->key() == Qt::Key_Right;
    const int side = event->key() == Qt::Key_Left ? -1 : 1;
    if (isArrow && modifiers == Qt::AltModifier) {
        if (side < 0) {
            goBack();
        } else {
            goForward();
        }
    } else if (isArrow && (modifiers & Qt::ShiftModifier) != 0) {
        moveCursor(side * ((modifiers & Qt::ControlModifier) != 0 ? MoveParts : 1));
    } else if (!handleViewKey(event->key()) && !handleValueKey(event->key(), (modifiers & Qt::ControlModifier) != 0)) {
        QWidget::keyPressEvent(event);
    }
}

/// Cursors lie above the panes on the screen, and in a picture as marks in them.
void PlotArea::renderPane(QPainter &painter, PlotPane &pane, const QRectF &area) const
{
    std::array<QwtPlotMarker, 2> marks;
    const std::array<std::optional<qint64>, 2> cursors{m_cursor, m_second};
    for (std::size_t i = 0; i < marks.size(); ++i) {
        const Qt::PenStyle style = i == 0 ? Qt::SolidLine : Qt::DashLine;
        marks[i].setLineStyle(QwtPlotMarker::VLine);
        marks[i].setLinePen(palette().color(QPalette::Text), 1, style);
        if (cursors[i]) {
            marks[i].setXValue(static_cast<double>(*cursors[i] - pane.section().begin));
            marks[i].attach(&pane);
        }
    }
    QwtPlotRenderer renderer;
    renderer.setDiscardFlag(QwtPlotRenderer::DiscardBackground);
    renderer.setDiscardFlag(QwtPlotRenderer::DiscardCanvasFrame);
    renderer.render(&pane, &painter, area);
    for (QwtPlotMarker &mark : marks) {
        mark.detach();
    }
}

void PlotArea::renderNames(QPainter &painter, const PlotPane &pane, const QRectF &line) const
{
    const double blank = painter.fontMetrics().averageCharWidth();
    double left = line.left() + blank;
    for (const PlotCurveItem *item : pane.items()) {
        const double room = line.right() - left - 3 * blank;
        if (item->isVisible() && room > 3 * blank) {
            const QString name =
                painter.fontMetrics().elidedText(item->title().text(), Qt::ElideRight, static_cast<int>(room));
            painter.fillRect(QRectF(left, line.center().y() - blank / 4, 2 * blank, blank / 2), item->color());
            painter.setPen(palette().color(QPalette::Text));
            painter.drawText(QRectF(left + 3 * blank, line.top(), room, line.height()), Qt::AlignVCenter, name);
            left += painter.fontMetrics().horizontalAdvance(name) + 5 * blank;
        }
    }
}

void PlotArea::render(QPainter &painter, const QRectF &area, bool isWhole)
{
    prepare(isWhole ? m_views.whole() : m_views.section());
    const double names = painter.fontMetrics().lineSpacing() * 1.3;
    const double times = axisHeight() * painter.device()->logicalDpiY() / static_cast<double>(logicalDpiY());
    const double height = (area.height() - times - names * m_panes.size()) / m_panes.size();
    double top = area.top();
    for (PlotPane *pane : qAsConst(m_panes)) {
        renderNames(painter, *pane, {area.left(), top, area.width(), names});
        const double below = pane == m_panes.last() ? times : 0;
        renderPane(painter, *pane, {area.left(), top + names, area.width(), height + below});
        top += names + height;
    }
    draw();
}

double PlotArea::axisHeight() const
{
    return m_panes.last()->axisWidget(QwtPlot::xBottom)->sizeHint().height();
}
