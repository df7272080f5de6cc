#pragma once

#include "exchange/BusFrame.h"
#include "exchange/CaptureInfo.h"

#include <QDateTime>

#include <limits>

class Findings;

/// The times of a capture for a writer: since 1970 or since a start, whichever its kind of file has.
class TimeOrigin
{
public:
    /// tick: the start is one of the times that are a multiple of it, in nanoseconds. findings must outlive this.
    TimeOrigin(const CaptureInfo &info, qint64 tick, Findings &findings);

    /// Nanoseconds from 1970-01-01 00:00 UTC to the start; 0 when nobody knows. Settled by the first frame.
    qint64 start() const { return m_start; }
    /// Settles the start. To be called with the first frame, before anything else.
    void begin(const BusFrame &first);
    /// Nanoseconds since the start(), never negative. A frame without a time gets that of the one before, one from
    /// before the start the start; number, from 1, is where that is reported.
    qint64 sinceStart(const BusFrame &frame, qint64 number)
    {
        const bool isThere = frame.time >= m_earliest && frame.time <= m_latest;
        m_last = isThere ? frame.time + m_shift : reported(frame.time, number);
        return m_last;
    }
    /// Nanoseconds since 1970-01-01 00:00 UTC, or since the start where nobody knows that; never negative.
    qint64 absolute(const BusFrame &frame, qint64 number) { return m_start + sinceStart(frame, number); }

private:
    qint64 reported(qint64 time, qint64 number);

    CaptureInfo::TimeBase m_base;
    qint64 m_infoStart;
    qint64 m_tick;
    Findings &m_findings;
    qint64 m_start = 0;
    qint64 m_shift = 0;    ///< added to a frame's time it gives that since the start
    qint64 m_earliest = 0; ///< of the frames' times: the start
    qint64 m_latest = std::numeric_limits<qint64>::max();
    qint64 m_last = 0;
};

/// Nanoseconds from 1970-01-01 00:00 UTC of a clock on the wall here; 0 when it is no time between 1970 and 2261.
qint64 nanosecondsOfLocalTime(const QDate &date, const QTime &time);
/// What a clock on the wall here shows, with milliseconds.
QDateTime localTime(qint64 nanoseconds);
