#pragma once

#include "exchange/DeviceTimes.h"
#include "exchange/ExchangeFormat.h"
#include "exchange/Findings.h"

#include <memory>

/// Frames on their way into a capture of one kind: which of their times it gets, what it cannot hold, and the time that
/// its file has at the end.
class CaptureTarget
{
public:
    /// out must outlive this; the format has a writer. usesDeviceTimes: frames get the adapter's times.
    CaptureTarget(ByteOutput &out, const ExchangeFormat &format, const WriteOptions &options, bool usesDeviceTimes);

    /// Changes the frames' times where it uses the adapter's.
    void write(BusFrame *frames, int count);
    /// Nothing may be written behind it. The output is not flushed.
    void finish();

    qint64 frames() const { return m_frames; } ///< that were handed over, also those that the kind does not hold
    /// What got lost; complete after finish().
    const Findings &findings() const { return m_findings; }
    /// Milliseconds since 1970 that the file is to have as its time, because its times are told by it; -1: any.
    qint64 fileTime() const;

private:
    const ExchangeFormat &m_format;
    const bool m_isAbsolute;
    const bool m_usesDeviceTimes;
    DeviceTimes m_times;
    Findings m_findings;
    std::unique_ptr<FrameWriter> m_writer;
    qint64 m_frames = 0;
    qint64 m_lastTime = BusFrame::NoTime;
};
