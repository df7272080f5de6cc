#pragma once

#include "capture/FrameRecord.h"

#include <QString>

#include <chrono>
#include <memory>
#include <thread>
#include <vector>

/// What takes the rows that real-time saving writes. Used by one thread at a time, which may be kept waiting.
class RealTimeTarget
{
public:
    RealTimeTarget() = default;
    virtual ~RealTimeTarget() = default;
    RealTimeTarget(const RealTimeTarget &) = delete;
    RealTimeTarget &operator=(const RealTimeTarget &) = delete;

    /// Writes the rows, numbered from firstNumber on. After false nothing more is written.
    virtual bool append(const std::vector<FrameRecord> &rows, quint64 firstNumber) = 0;
    /// Returns when everything appended is safe from a power cut; false when it is lost.
    virtual bool sync() = 0;
};

struct RealTimeLimits
{
    /// Most memory that rows may take while they wait, in bytes. A single batch is taken whatever its size.
    std::size_t waitingBytes = 64'000'000;
    /// A row is synced so long after it was written, and the time the sync itself takes.
    std::chrono::milliseconds syncAfter{4000};
};

/// Writes rows to a target on a thread of its own and syncs them, so that whoever hands them over is never kept waiting
/// by a target that stands still. The functions are called by one thread, the owner's.
class RealTimeWriter
{
public:
    using Limits = RealTimeLimits;

    /// path names the target for the owner.
    RealTimeWriter(QString path, std::unique_ptr<RealTimeTarget> target, Limits limits = {});
    /// Waits for nothing: a thread that has not ended is left to itself with all it needs. It ends when it has written
    /// and synced what was handed over, or when the target fails.
    ~RealTimeWriter();
    RealTimeWriter(const RealTimeWriter &) = delete;
    RealTimeWriter &operator=(const RealTimeWriter &) = delete;

    const QString &path() const { return m_path; }
    /// Hands rows over in order, numbered from firstNumber on. False, and the rows are dropped, when the target has
    /// failed or too much waits.
    bool append(std::vector<FrameRecord> rows, quint64 firstNumber);
    /// The target did not take everything. What it took before ends with a whole row.
    bool hasFailed() const;
    /// Nothing more will be handed over: the thread writes and syncs what waits, lets the target go, and ends.
    void finish();
    /// After finish(). True when the thread has ended within that time.
    bool waitFinished(std::chrono::milliseconds time);

private:
    struct Job;

    QString m_path;
    std::shared_ptr<Job> m_job; ///< the thread's, too
    std::thread m_thread;
};
