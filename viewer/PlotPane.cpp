#include "viewer/PlotPane.h"

#include "viewer/PlotCursors.h"
#include "viewer/PlotCurveItem.h"
#include "viewer/PlotLayout.h"
#include "viewer/PlotTimeScale.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWheelEvent>

#include <qwt_plot_canvas.h>
#include <qwt_plot_grid.h>
#include <qwt_scale_map.h>
#include <qwt_scale_widget.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr int MostMarks = 6; ///< of a scale of values
constexpr double WheelFactor = 0.8;
constexpr double WheelStep = 120; ///< eighths of a degree: one notch
constexpr double Margin = 0.05;   ///< of the values' range, above and below it

/// With something around it when it is a single value.
QwtInterval widened(double least, double greatest)
{
    const double size = greatest - least;
    const double margin = size > 0 ? size * Margin : std::max(1.0, std::abs(least) * Margin);
    return {least - margin, greatest + margin};
}

bool isSound(const QwtInterval &interval)
{
    constexpr double LeastShare = 1e-12;
    constexpr double Greatest = 1e300;
    const double size = std::max(std::abs(interval.minValue()), std::abs(interval.maxValue()));
    return interval.width() > size * LeastShare && interval.width() > 1 / Greatest && size < Greatest;
}

} // namespace

PlotPane::PlotPane(QWidget *parent)
    : QwtPlot(parent)
    , m_grid(new QwtPlotGrid)
    , m_times(new PlotTimeScale)
{
    setObjectName(QStringLiteral("pane"));
    setAccessibleName(tr("Plot"));
    setFocusPolicy(Qt::StrongFocus);
    setAutoReplot(false);
    setAutoDelete(false);
    auto *area = new QwtPlotCanvas;
    area->setFrameStyle(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    area->setCursor(Qt::ArrowCursor);
    setCanvas(area);
    m_cursors = new PlotCursors(*area);
    alignToScales(*this);
    setAxisScaleDraw(QwtPlot::xBottom, m_times);
    setAxisMaxMinor(QwtPlot::yLeft, 0);
    m_grid->attach(this);
    applyLook();
}

PlotPane::~PlotPane()
{
    setItems({});
    m_grid->detach();
    delete m_grid;
}

void PlotPane::applyLook()
{
    const QPalette colors = palette();
    setCanvasBackground(colors.brush(QPalette::Base));
    QColor line = colors.color(QPalette::Text);
    constexpr int Alpha = 40;
    line.setAlpha(Alpha);
    m_grid->setPen(line, 0, Qt::SolidLine);
    for (const int axis : {QwtPlot::xBottom, QwtPlot::yLeft}) {
        axisWidget(axis)->setPalette(colors);
        setAxisFont(axis, font());
        axisWidget(axis)->setMargin(0);
    }
}

void PlotPane::changeEvent(QEvent *event)
{
    QwtPlot::changeEvent(event);
    const bool isLook = event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange;
    if (isLook && axisWidget(QwtPlot::yLeft)->palette() != palette()) {
        applyLook();
        emit sig_changed();
    }
}

void PlotPane::setItems(const std::vector<PlotCurveItem *> &items)
{
    for (PlotCurveItem *item : m_items) {
        if (item->plot() == this) { // another pane may have it by now
            item->detach();
        }
    }
    m_items = items;
    for (PlotCurveItem *item : items) {
        item->attach(this);
    }
}

void PlotPane::setUnit(const QString &unit)
{
    QwtText title(unit, QwtText::PlainText);
    title.setFont(font());
    setAxisTitle(QwtPlot::yLeft, title);
}

void PlotPane::setTimesShown(bool isShown)
{
    enableAxis(QwtPlot::xBottom, isShown);
}

void PlotPane::setSection(const TimeSection &section, qint64 origin, const std::optional<qint64> &clock)
{
    m_section = section;
    for (PlotCurveItem *item : m_items) {
        item->setSection(boundedSum(origin, section.begin), boundedSum(origin, section.end));
    }
    setAxisScaleDiv(QwtPlot::xBottom,
                    m_times->setTicks(section, canvas()->width(), fontMetrics().averageCharWidth() + 1, clock));
}

void PlotPane::setCursors(const std::optional<qint64> &first, const std::optional<qint64> &second)
{
    const auto pixel = [this](const std::optional<qint64> &time) {
        return time && *time >= m_section.begin && *time <= m_section.end ? std::make_optional(xOf(*time))
                                                                          : std::nullopt;
    };
    m_cursors->setLines({pixel(first), pixel(second)});
}

void PlotPane::fitValues()
{
    const int room = canvas()->height() * 2 / (3 * fontMetrics().height());
    setAxisMaxMajor(QwtPlot::yLeft, std::min(std::max(room, 2), MostMarks));
    if (!m_isAutomatic) {
        return;
    }
    std::optional<QwtInterval> all;
    bool areStates = true;
    for (const PlotCurveItem *item : m_items) {
        double least = 0;
        double greatest = 0;
        if (item->isVisible() && item->range(least, greatest)) {
            const QwtInterval one(least, greatest);
            all = all ? all->unite(one) : one;
            areStates = areStates && item->isState();
        }
    }
    const QwtInterval scale = all ? widened(all->minValue(), all->maxValue()) : QwtInterval(0, 1);
    if (isSound(scale)) {
        const bool isCounted = areStates && scale.width() < MostMarks;
        setAxisScale(QwtPlot::yLeft, scale.minValue(), scale.maxValue(), isCounted ? 1 : 0);
    }
}

void PlotPane::setAutomatic()
{
    m_isAutomatic = true;
    emit sig_changed();
}

void PlotPane::zoomValues(double factor, double around)
{
    const QwtInterval now = axisInterval(QwtPlot::yLeft);
    const QwtInterval wanted(around + (now.minValue() - around) * factor, around + (now.maxValue() - around) * factor);
    if (isSound(wanted)) {
        m_isAutomatic = false;
        setAxisScale(QwtPlot::yLeft, wanted.minValue(), wanted.maxValue());
        emit sig_changed();
    }
}

void PlotPane::moveValues(double share)
{
    const QwtInterval now = axisInterval(QwtPlot::yLeft);
    const double distance = now.width() * share;
    const QwtInterval wanted(now.minValue() + distance, now.maxValue() + distance);
    if (isSound(wanted)) {
        m_isAutomatic = false;
        setAxisScale(QwtPlot::yLeft, wanted.minValue(), wanted.maxValue());
        emit sig_changed();
    }
}

double PlotPane::middleValue() const
{
    const QwtInterval now = axisInterval(QwtPlot::yLeft);
    return now.minValue() + now.width() / 2;
}

double PlotPane::valueExtent() const
{
    QwtScaleDraw texts;
    texts.setAlignment(QwtScaleDraw::LeftScale);
    texts.setScaleDiv(axisScaleDiv(QwtPlot::yLeft));
    return texts.extent(axisFont(QwtPlot::yLeft));
}

void PlotPane::setValueExtent(double pixels)
{
    if (std::abs(axisScaleDraw(QwtPlot::yLeft)->minimumExtent() - pixels) > 0) {
        axisScaleDraw(QwtPlot::yLeft)->setMinimumExtent(pixels);
        updateLayout();
    }
}

QSize PlotPane::minimumSizeHint() const
{
    constexpr int Characters = 20;
    constexpr int Lines = 3;
    return {Characters * fontMetrics().averageCharWidth(), Lines * fontMetrics().height()};
}

double PlotPane::perPixel() const
{
    return static_cast<double>(m_section.width()) / std::max(1, canvas()->width());
}

qint64 PlotPane::timeAt(int x) const
{
    return m_section.begin + std::llround(perPixel() * x);
}

int PlotPane::xOf(qint64 time) const
{
    return static_cast<int>(std::lround(static_cast<double>(time - m_section.begin) / perPixel()));
}

double PlotPane::valueAt(int y) const
{
    return invTransform(QwtPlot::yLeft, y);
}

void PlotPane::mousePressEvent(QMouseEvent *event)
{
    const QPoint place = canvas()->mapFrom(this, event->pos());
    if (event->button() == Qt::LeftButton && canvas()->rect().contains(place)) {
        emit sig_settled(); // what the mouse does is a view of its own
        const bool isBand = (event->modifiers() & Qt::ShiftModifier) != 0;
        m_drag = Drag{place, timeAt(place.x()), valueAt(place.y()), false, isBand};
    }
}

void PlotPane::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_drag) {
        return;
    }
    const QPoint place = canvas()->mapFrom(this, event->pos());
    if (!m_drag->isMoving && (place - m_drag->from).manhattanLength() < QApplication::startDragDistance()) {
        return;
    }
    m_drag->isMoving = true;
    if (m_drag->isBand) {
        m_cursors->setBand(m_drag->from.x(), place.x());
        return;
    }
    emit sig_moveWanted(m_drag->time - timeAt(place.x()));
    if (!m_isAutomatic) {
        const double width = axisInterval(QwtPlot::yLeft).width();
        moveValues((m_drag->value - valueAt(place.y())) / width);
        updateAxes(); // what the next move counts from
    }
}

void PlotPane::mouseReleaseEvent(QMouseEvent *event)
{
    if (!m_drag || event->button() != Qt::LeftButton) {
        return;
    }
    const Drag drag = *m_drag;
    m_drag.reset();
    m_cursors->clearBand();
    const qint64 time = timeAt(canvas()->mapFrom(this, event->pos()).x());
    if (!drag.isMoving) {
        emit sig_cursorWanted(drag.time, drag.isBand);
    } else if (drag.isBand && time != drag.time) {
        emit sig_sectionWanted(std::min(time, drag.time), std::max(time, drag.time));
    }
    emit sig_settled();
}

void PlotPane::wheelEvent(QWheelEvent *event)
{
    const QPoint place = canvas()->mapFrom(this, event->position().toPoint());
    const QPoint angle = event->angleDelta();
    // The system turns the wheel aside with Alt.
    const double notches = (angle.y() != 0 ? angle.y() : angle.x()) / WheelStep;
    const bool isSideways = std::abs(angle.x()) > std::abs(angle.y()) && (event->modifiers() & Qt::AltModifier) == 0;
    const bool isOfValues = (event->modifiers() & Qt::ControlModifier) != 0 || place.x() < 0;
    if (isSideways || (!isOfValues && (event->modifiers() & Qt::ShiftModifier) != 0)) {
        constexpr double Share = 0.1; // of the section, for a notch
        emit sig_moveWanted(static_cast<qint64>(-notches * Share * static_cast<double>(m_section.width())));
    } else if (isOfValues) {
        zoomValues(std::pow(WheelFactor, notches), valueAt(place.y()));
    } else {
        emit sig_zoomWanted(std::pow(WheelFactor, notches), timeAt(place.x()));
    }
    event->accept();
}

void PlotPane::focusInEvent(QFocusEvent *event)
{
    QwtPlot::focusInEvent(event);
    m_cursors->setFocused(true);
}

void PlotPane::focusOutEvent(QFocusEvent *event)
{
    QwtPlot::focusOutEvent(event);
    m_cursors->setFocused(false);
}
