#pragma once

#include "capture/FrameCells.h"
#include "capture/RealTimeWriter.h"

#include <functional>

/// Which file is written in real time, and those whose saving has ended, but not their writing.
class RealTimeSaving
{
public:
    using TargetWrapper = std::function<std::unique_ptr<RealTimeTarget>(std::unique_ptr<RealTimeTarget>)>;

    /// Longest time that the destructor waits for a file that stands still. What is left is written later, if the file
    /// ever moves on.
    static constexpr std::chrono::milliseconds StopWait{1000};

    /// failed is called with the path of a file that could not be written, once for each.
    explicit RealTimeSaving(std::function<void(const QString &path)> failed);
    /// Waits for the file that is written, and says nothing about it.
    ~RealTimeSaving();
    RealTimeSaving(const RealTimeSaving &) = delete;
    RealTimeSaving &operator=(const RealTimeSaving &) = delete;

    bool isOn() const { return m_writer != nullptr; }
    /// Of the file that is written; empty when none is.
    QString path() const { return isOn() ? m_writer->path() : QString(); }
    /// What comes between saving and its file from the next start on.
    void setTargetWrapper(TargetWrapper wrapper) { m_wrapper = std::move(wrapper); }

    /// Only while it is off. False when path cannot be opened for appending.
    bool start(const QString &path, const FrameLabels &labels);
    /// Only while it is on. Hands rows over; fails when the file does not take them.
    void append(std::vector<FrameRecord> rows, quint64 firstNumber);
    /// Ends saving; what was handed over is still written. Nothing when it is off.
    void end();
    /// Only while it is on. Ends saving and waits StopWait at most until all is on the disk. Otherwise it has failed,
    /// and false.
    bool endAndWait();
    /// Waits at most so long for files whose saving has ended. True when they are complete and on the disk.
    bool waitForEnded(std::chrono::milliseconds time);
    /// Looks which files have failed since the last time.
    void reportFailures();

private:
    void fail();

    std::function<void(const QString &path)> m_failed;
    TargetWrapper m_wrapper;
    std::unique_ptr<RealTimeWriter> m_writer; ///< null: off
    std::vector<std::unique_ptr<RealTimeWriter>> m_ended;
};
