#pragma once

#include "exchange/ExchangeFormat.h"
#include "exchange/Findings.h"
#include "viewer/core/Filter.h"

#include <QPointer>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QThread;

/// Which frames of a capture become a file, and of which kind.
struct SaveOrder
{
    std::shared_ptr<const BusFrameStore> store;
    Filter filter;
    qint64 firstRow = 0; ///< rows [firstRow, endRow) that pass the filter
    qint64 endRow = 0;   ///< at most the store's size
    CaptureInfo info;
    const ExchangeFormat *format = nullptr; ///< that has a writer
    bool isChinese = false;                 ///< words of text captures
    bool usesDeviceTimes = false;           ///< the adapter's times instead of the computer's
    QString path;                           ///< empty: nothing is written, to see what would be
};

struct SaveResult
{
    enum class End { Done, Cancelled, Failed };

    End end = End::Done;
    QString error;           ///< of Failed
    qint64 frames = 0;       ///< that were handed to the kind's writer
    qint64 bytes = 0;        ///< of the file
    QVector<Finding> losses; ///< what the kind does not hold
    qint64 lossCount = 0;
};

/// Writes a part of a capture on a thread of its own. A file appears, or takes the place of another one, when it is
/// whole; what is cancelled or fails leaves everything as it was. All functions are for the thread that made it, and
/// none waits for the disk.
class CaptureSaver
{
public:
    /// Longest time the destructor waits for the thread.
    static constexpr int StopWaitMs = 1000;

    /// hasEnded: called from any thread when result() has something, unless it was cancelled before.
    explicit CaptureSaver(std::function<void()> hasEnded);
    /// Cancels; a thread that hangs in a call of the system is left to itself.
    ~CaptureSaver();
    CaptureSaver(const CaptureSaver &) = delete;
    CaptureSaver &operator=(const CaptureSaver &) = delete;

    /// What was started before is cancelled, and its result is not handed out.
    void start(const SaveOrder &order);
    /// result() tells when it has come to its end.
    void cancel();
    bool isRunning() const;
    /// 0 to 1 of the rows.
    double progress() const;
    /// Nothing before the end.
    std::optional<SaveResult> result() const;

private:
    struct Run;

    void letGo();

    std::function<void()> m_hasEnded;
    std::shared_ptr<Run> m_run;               ///< the thread's, too
    std::vector<QPointer<QThread>> m_threads; ///< of this run, and of earlier ones that have not ended yet
};
