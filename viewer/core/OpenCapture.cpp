#include "viewer/core/OpenCapture.h"

#include "viewer/core/PhysicalMemory.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace {

constexpr int LookMs = 50;

/// What the frames of one capture may take, so that there is room for all the rest: three quarters of the memory, and
/// of the 2 GB that a 32-bit program has, half.
qint64 memoryLimit()
{
    constexpr qint64 SmallLimit = qint64{1} << 30U;
    const qint64 memory = physicalMemory();
    const qint64 limit = memory > 0 ? memory / 4 * 3 : std::numeric_limits<qint64>::max();
    return sizeof(void *) > 4 ? limit : std::min(limit, SmallLimit);
}

std::shared_ptr<BusFrameStore> limitedStore()
{
    auto store = std::make_shared<BusFrameStore>();
    store->setMemoryLimit(memoryLimit());
    return store;
}

} // namespace

OpenCapture::OpenCapture(QString path, const StoreLoader::Open &open, bool follow, QObject *parent)
    : QObject(parent)
    , m_path(std::move(path))
    , m_store(limitedStore())
    , m_loader(std::make_unique<StoreLoader>(m_store, open, follow))
    , m_filterRun(std::make_unique<FilterRun>(m_store, m_calls.poster([this] { takeRows(); })))
    , m_overview(std::make_unique<OverviewRun>(m_store, m_calls.poster([this] { emit sig_overviewChanged(); })))
    , m_findThread(1)
{
    m_sinceBegin.start();
    connect(&m_timer, &QTimer::timeout, this, &OpenCapture::slot_look);
    m_timer.start(LookMs);
}

OpenCapture::~OpenCapture()
{
    if (m_stopFinding) {
        *m_stopFinding = true;
    }
}

qint64 OpenCapture::placeOf(qint64 row) const
{
    return isFiltered() ? m_rows.lowerBound(row) : std::min(row, m_rowCount);
}

void OpenCapture::setFilter(const Filter &filter)
{
    m_filter = filter;
    m_rows.clear();
    m_rowCount = 0;
    if (isFiltered()) {
        m_filterRun->start(filter);
    } else {
        m_filterRun->cancel();
        m_rowCount = m_store->size();
    }
    m_timer.start(LookMs);
    emit sig_rowsReset();
}

void OpenCapture::setSignalSource(std::shared_ptr<const SignalSource> source)
{
    m_signalSource = std::move(source);
    emit sig_signalSourceChanged();
}

/// Takes what the filter has found and what was loaded meanwhile.
void OpenCapture::takeRows()
{
    const qint64 before = m_rowCount;
    if (isFiltered()) {
        m_filterRun->takeTo(m_rows);
        m_filterRun->extend();
        m_rowCount = m_rows.size();
    } else {
        m_rowCount = m_store->size();
    }
    if (m_rowCount > before) {
        emit sig_rowsAdded(before);
    }
}

void OpenCapture::slot_look()
{
    takeRows();
    m_overview->extend();
    emit sig_progressChanged();
    if (!m_loader->progress().isRunning() && !isFiltering() && m_overview->covered() >= m_store->size()) {
        m_timer.stop(); // nothing comes any more by itself
    }
}

void OpenCapture::find(const Filter &filter, qint64 row, bool isBackward)
{
    if (m_stopFinding) {
        *m_stopFinding = true;
    }
    m_stopFinding = std::make_shared<std::atomic<bool>>(false);
    m_findThread.start([this, store = m_store, stop = m_stopFinding, filter, row, isBackward] {
        const qint64 found = findRow(*store, filter, row, isBackward, *stop).value_or(-1);
        m_calls.post([this, stop, found] {
            if (!*stop) {
                emit sig_found(found);
            }
        });
    });
}

int OpenCapture::secondsLeft() const
{
    const LoadProgress progress = m_loader->progress();
    constexpr int EarliestMs = 1000;
    if (m_sinceBegin.elapsed() < EarliestMs || progress.size <= 0 || progress.bytes <= 0 ||
        progress.bytes > progress.size) {
        return -1;
    }
    const double passed = static_cast<double>(m_sinceBegin.elapsed()) / 1000;
    const double left =
        passed * static_cast<double>(progress.size - progress.bytes) / static_cast<double>(progress.bytes);
    return static_cast<int>(std::min(left, 1e9)) + 1;
}
