#include "viewer/core/CaptureSaver.h"

#include "exchange/CaptureSink.h"
#include "exchange/CaptureTarget.h"

#include <QCoreApplication>
#include <QThread>

#include <algorithm>
#include <mutex>
#include <new>
#include <utility>
#include <vector>

namespace {

/// Takes bytes and keeps none.
class NoDevice : public QIODevice
{
public:
    qint64 size() const override { return m_size; }

protected:
    qint64 readData(char * /*data*/, qint64 /*size*/) override { return -1; }
    qint64 writeData(const char * /*data*/, qint64 size) override
    {
        m_size = std::max(m_size, pos() + size);
        return size;
    }

private:
    qint64 m_size = 0;
};

} // namespace

/// One run: belongs to its thread and to the saver, so either may go first.
struct CaptureSaver::Run
{
    static constexpr int PartRows = 8192;

    Run(SaveOrder what, std::function<void()> function)
        : order(std::move(what))
        , hasEnded(std::move(function))
    {
    }

    void run();
    void save(SaveResult &made);
    void tryOut(SaveResult &made);
    bool writeAll(CaptureTarget &target, const std::function<bool()> &flush);
    static void note(SaveResult &made, const CaptureTarget &target);

    const SaveOrder order;
    const std::function<void()> hasEnded;
    std::atomic<bool> isStopped{false};
    std::atomic<bool> isForgotten{false};
    std::atomic<qint64> next{0}; ///< row
    mutable std::mutex mutex;    ///< guards what is below
    std::optional<SaveResult> result;
};

/// False when it was stopped or what was written did not get through.
bool CaptureSaver::Run::writeAll(CaptureTarget &target, const std::function<bool()> &flush)
{
    std::vector<quint16> indices;
    std::vector<BusFrame> frames;
    for (qint64 row = order.firstRow; row < order.endRow; row = next) {
        const qint64 block = BusFrameStore::blockOf(row);
        const qint64 blockEnd = (block + 1) * BusFrameStore::BlockRows;
        const qint64 end = std::min({order.endRow, blockEnd, row + PartRows});
        indices.clear();
        frames.clear();
        if (order.filter.passesAll()) {
            for (qint64 taken = row; taken < end; ++taken) {
                frames.push_back(order.store->frame(taken));
            }
        } else {
            order.filter.passing(*order.store, row, static_cast<int>(end - row), indices);
            for (const quint16 index : indices) {
                frames.push_back(order.store->block(block).frame(index));
            }
        }
        target.write(frames.data(), static_cast<int>(frames.size()));
        next = end;
        if (isStopped || !flush()) {
            return false;
        }
    }
    target.finish();
    return true;
}

void CaptureSaver::Run::note(SaveResult &made, const CaptureTarget &target)
{
    made.frames = target.frames();
    made.losses = target.findings().kept();
    made.lossCount = target.findings().count();
}

void CaptureSaver::Run::tryOut(SaveResult &made)
{
    NoDevice device;
    device.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    ByteOutput out(device);
    CaptureTarget target(out, *order.format, {order.info, order.isChinese, nullptr}, order.usesDeviceTimes);
    made.end = writeAll(target, [] { return true; }) ? SaveResult::End::Done : SaveResult::End::Cancelled;
    out.flush();
    note(made, target);
    made.bytes = device.size();
}

void CaptureSaver::Run::save(SaveResult &made)
{
    const auto sink = CaptureSink::open(order.path, CaptureSink::Way::Whole, made.error);
    if (sink == nullptr) {
        made.end = SaveResult::End::Failed;
        return;
    }
    CaptureTarget target(sink->bytes(), *order.format, {order.info, order.isChinese, nullptr}, order.usesDeviceTimes);
    const bool isWhole = writeAll(target, [&sink] { return sink->flush(); });
    note(made, target);
    made.bytes = sink->bytes().offset();
    if (!isWhole && isStopped) {
        made.end = SaveResult::End::Cancelled;
    } else if (!sink->commit(target.fileTime(), made.error)) {
        made.end = SaveResult::End::Failed;
    }
}

void CaptureSaver::Run::run()
{
    SaveResult made;
    try {
        if (order.path.isEmpty()) {
            tryOut(made);
        } else {
            save(made);
        }
    } catch (const std::bad_alloc &) {
        made.end = SaveResult::End::Failed;
        made.error = QCoreApplication::translate("CaptureSaver", "There is not enough memory.");
    }
    {
        const std::lock_guard<std::mutex> lock(mutex);
        result = std::move(made);
    }
    if (!isForgotten) {
        hasEnded();
    }
}

CaptureSaver::CaptureSaver(std::function<void()> hasEnded)
    : m_hasEnded(std::move(hasEnded))
{
}

CaptureSaver::~CaptureSaver()
{
    letGo();
    for (const QPointer<QThread> &thread : m_threads) {
        if (thread && thread->wait(StopWaitMs)) {
            delete thread.data();
        }
    }
}

/// The run goes on to its next stop by itself.
void CaptureSaver::letGo()
{
    if (m_run) {
        m_run->isForgotten = true;
        m_run->isStopped = true;
    }
    m_run.reset();
}

void CaptureSaver::start(const SaveOrder &order)
{
    letGo();
    m_run = std::make_shared<Run>(order, m_hasEnded);
    m_run->next = order.firstRow;
    m_threads.erase(std::remove_if(m_threads.begin(), m_threads.end(),
                                   [](const QPointer<QThread> &thread) {
                                       const bool isOver = thread->isFinished();
                                       if (isOver) {
                                           delete thread.data();
                                       }
                                       return isOver;
                                   }),
                    m_threads.end());
    m_threads.emplace_back(QThread::create([run = m_run] { run->run(); }));
    m_threads.back()->start();
}

void CaptureSaver::cancel()
{
    if (m_run) {
        m_run->isStopped = true;
    }
}

bool CaptureSaver::isRunning() const
{
    return m_run && !result();
}

double CaptureSaver::progress() const
{
    if (!m_run || m_run->order.endRow <= m_run->order.firstRow) {
        return 1;
    }
    return static_cast<double>(m_run->next - m_run->order.firstRow) /
           static_cast<double>(m_run->order.endRow - m_run->order.firstRow);
}

std::optional<SaveResult> CaptureSaver::result() const
{
    if (!m_run) {
        return std::nullopt;
    }
    const std::lock_guard<std::mutex> lock(m_run->mutex);
    return m_run->result;
}
