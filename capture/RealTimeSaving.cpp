#include "capture/RealTimeSaving.h"

#include "capture/RealTimeFile.h"

#include <QDeadlineTimer>

#include <algorithm>
#include <iterator>
#include <utility>

RealTimeSaving::RealTimeSaving(std::function<void(const QString &path)> failed)
    : m_failed(std::move(failed))
{
}

RealTimeSaving::~RealTimeSaving()
{
    if (m_writer) {
        m_writer->finish();
        m_writer->waitFinished(StopWait);
    }
}

bool RealTimeSaving::start(const QString &path, const FrameLabels &labels)
{
    auto file = std::make_unique<RealTimeFile>();
    if (!file->open(path, labels)) {
        return false;
    }
    std::unique_ptr<RealTimeTarget> target = std::move(file);
    if (m_wrapper) {
        target = m_wrapper(std::move(target));
    }
    m_writer = std::make_unique<RealTimeWriter>(path, std::move(target));
    return true;
}

void RealTimeSaving::append(std::vector<FrameRecord> rows, quint64 firstNumber)
{
    if (!m_writer->append(std::move(rows), firstNumber)) {
        fail();
    }
}

void RealTimeSaving::end()
{
    if (m_writer) {
        m_writer->finish();
        m_ended.push_back(std::move(m_writer));
    }
}

bool RealTimeSaving::endAndWait()
{
    m_writer->finish();
    if (!m_writer->waitFinished(StopWait) || m_writer->hasFailed()) {
        fail();
        return false;
    }
    m_writer.reset();
    return true;
}

bool RealTimeSaving::waitForEnded(std::chrono::milliseconds time)
{
    const QDeadlineTimer deadline(time);
    bool areComplete = true;
    for (const auto &writer : m_ended) {
        const std::chrono::milliseconds left(deadline.remainingTime());
        areComplete &= writer->waitFinished(left) && !writer->hasFailed();
    }
    reportFailures();
    return areComplete;
}

void RealTimeSaving::reportFailures()
{
    if (m_writer && m_writer->hasFailed()) {
        fail();
    }
    const auto firstGone = std::partition(m_ended.begin(), m_ended.end(), [](const auto &writer) {
        return !writer->waitFinished(std::chrono::milliseconds(0));
    });
    const std::vector<std::unique_ptr<RealTimeWriter>> gone(std::make_move_iterator(firstGone),
                                                            std::make_move_iterator(m_ended.end()));
    m_ended.erase(firstGone, m_ended.end());
    for (const auto &writer : gone) {
        if (writer->hasFailed()) {
            m_failed(writer->path());
        }
    }
}

/// What was handed over is still written, if the file ever moves on; that it failed is said here and only here.
void RealTimeSaving::fail()
{
    m_failed(std::exchange(m_writer, nullptr)->path());
}
