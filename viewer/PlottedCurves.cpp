#include "viewer/PlottedCurves.h"

#include "viewer/core/FrameTimes.h"
#include "viewer/core/PhysicalMemory.h"

#include <qwt_text.h>

#include <algorithm>
#include <utility>

namespace {

constexpr int FillMs = 8;          ///< of the GUI thread in one go
constexpr int FillPictureMs = 100; ///< between pictures of curves that are being filled
constexpr int BytesOfPoint = 17;

/// The points that all curves may have: a quarter of the memory, and a fixed part of what a 32-bit program has.
qint64 mostPoints()
{
    constexpr qint64 SmallLimit = qint64{400} << 20U;
    const qint64 memory = physicalMemory() > 0 ? physicalMemory() / 4 : 4 * SmallLimit;
    return (sizeof(void *) > 4 ? memory : std::min(memory, SmallLimit)) / BytesOfPoint;
}

} // namespace

PlottedCurve::PlottedCurve(PlotEntry wanted, std::shared_ptr<const BusFrameStore> store, std::function<void()> hasMore)
    : entry(std::move(wanted))
    , curve(std::move(store), std::move(hasMore))
    , item(curve)
{
    item.setTitle(QwtText(entry.text, QwtText::PlainText));
    item.setVisible(entry.isShown);
}

PlottedCurves::PlottedCurves(OpenCapture &capture, QObject *parent)
    : QObject(parent)
    , m_capture(capture)
{
    m_nextRound.setSingleShot(true);
    connect(&m_nextRound, &QTimer::timeout, this, &PlottedCurves::slot_fill);
    connect(&capture, &OpenCapture::sig_progressChanged, this, &PlottedCurves::extend);
}

int PlottedCurves::indexOf(const QString &text) const
{
    const auto found = std::find_if(m_curves.begin(), m_curves.end(),
                                    [&text](const auto &plotted) { return plotted->entry.text == text; });
    return found != m_curves.end() ? static_cast<int>(found - m_curves.begin()) : -1;
}

PlottedCurve &PlottedCurves::add(const PlotEntry &entry)
{
    int number = 0;
    while (std::any_of(m_curves.begin(), m_curves.end(),
                       [number](const auto &plotted) { return plotted->number == number; })) {
        ++number;
    }
    m_curves.push_back(
        std::make_unique<PlottedCurve>(entry, m_capture.sharedStore(), m_calls.poster([this] { slot_found(); })));
    m_curves.back()->number = number;
    return *m_curves.back();
}

std::unique_ptr<PlottedCurve> PlottedCurves::take(int index)
{
    std::unique_ptr<PlottedCurve> taken = std::move(m_curves[static_cast<std::size_t>(index)]);
    m_curves.erase(m_curves.begin() + index);
    return taken;
}

std::vector<PlotEntry> PlottedCurves::entries() const
{
    std::vector<PlotEntry> all;
    for (const auto &plotted : m_curves) {
        if (!plotted->isGiven) {
            all.push_back(plotted->entry);
        }
    }
    return all;
}

void PlottedCurves::start(PlottedCurve &plotted)
{
    if (!plotted.isGiven) {
        plotted.curve.start(plotted.entry.text, m_capture.signalSource());
    }
}

void PlottedCurves::startAll()
{
    for (const auto &plotted : m_curves) {
        start(*plotted);
    }
}

bool PlottedCurves::isFilling() const
{
    return std::any_of(m_curves.begin(), m_curves.end(),
                       [](const auto &plotted) { return plotted->curve.isFilling(); });
}

void PlottedCurves::hold(bool isHeld)
{
    m_isHeld = isHeld;
    if (!isHeld) {
        slot_fill();
    }
}

void PlottedCurves::extend()
{
    for (const auto &plotted : m_curves) {
        plotted->curve.extend();
    }
}

void PlottedCurves::limitMemory()
{
    static const qint64 most = mostPoints();
    qint64 all = 0;
    for (const auto &plotted : m_curves) {
        all += static_cast<qint64>(plotted->curve.series()->size());
    }
    if (all <= most) {
        return;
    }
    for (const auto &plotted : m_curves) {
        if (plotted->curve.isFilling()) {
            plotted->curve.stop(tr("Memory is full; not all of it is drawn."));
        }
    }
    emit sig_problemChanged();
}

/// Not at once: threads tell so often that nothing else would have its turn.
void PlottedCurves::slot_found()
{
    if (!m_nextRound.isActive()) {
        m_nextRound.start(0);
    }
}

void PlottedCurves::slot_fill()
{
    if (m_isHeld || m_curves.empty()) {
        return;
    }
    bool isMore = false;
    for (const auto &plotted : m_curves) {
        isMore = plotted->curve.append(QDeadlineTimer(std::max(1, FillMs / count()))) || isMore;
        plotted->curve.extend(); // what came while it ran
    }
    limitMemory();
    if (isMore) {
        m_nextRound.start(0);
    }
    if (!isMore || !m_sinceFilled.isValid() || m_sinceFilled.elapsed() > FillPictureMs) {
        m_sinceFilled.start();
        emit sig_filled();
    }
}

std::optional<TimeSection> PlottedCurves::whole() const
{
    const BusFrameStore &store = m_capture.store();
    std::optional<TimeSection> all;
    const auto reach = [&all, origin = store.start()](qint64 time) {
        if (time != BusFrame::NoTime) {
            const qint64 far = time < origin ? -TimeViews::Farthest : TimeViews::Farthest;
            const qint64 since = timeDistance(origin, time).value_or(far);
            all = all ? TimeSection{std::min(all->begin, since), std::max(all->end, since)} : TimeSection{since, since};
        }
    };
    if (store.size() > 0) {
        reach(store.time(0));
        reach(store.greatestTime(BusFrameStore::blockOf(store.size() - 1)));
    }
    for (const auto &plotted : m_curves) {
        const Series &series = *plotted->curve.series();
        if (!series.isEmpty()) {
            reach(series.at(0).time);
            reach(series.at(series.size() - 1).time);
        }
    }
    return all;
}
