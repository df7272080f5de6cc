#pragma once

#include "exchange/Findings.h"
#include "exchange/FrameLosses.h"
#include "exchange/FrameWriter.h"
#include "exchange/TimeOrigin.h"

/// A writer of captures that begin with their start: it begins with the first frame, or at the end where there is none.
class TimedFrameWriter : public FrameWriter
{
public:
    void write(const BusFrame *frames, int count) final;
    void finish() final;

protected:
    /// holds: of the format's row in the table; startTick: nanoseconds between the times that the start can be.
    TimedFrameWriter(const CaptureInfo &info, quint32 holds, qint64 startTick, Findings &findings);

    /// What stands before the frames. The start is settled.
    virtual void begin() = 0;
    virtual void put(const BusFrame &frame) = 0;
    /// What stands behind the frames.
    virtual void end() {}

    /// Nanoseconds from 1970-01-01 00:00 UTC to the start; 0 when nobody knows.
    qint64 start() const { return m_origin.start(); }
    // For put(), of its frame:
    qint64 sinceStart(const BusFrame &frame) { return m_origin.sinceStart(frame, m_number); }
    qint64 absoluteTime(const BusFrame &frame) { return m_origin.absolute(frame, m_number); }
    void report(const QString &text) { m_findings.add(Finding::Frame, m_number, text); }

    Findings &m_findings;

private:
    void beginWith(const BusFrame &first);

    FrameLosses m_losses;
    TimeOrigin m_origin;
    qint64 m_number = 0; ///< of the frame, from 1
    bool m_hasBegun = false;
};
