#pragma once

#include "exchange/BusFrame.h"
#include "exchange/CaptureClocks.h"

#include <string_view>

class ByteInput;
class ByteOutput;
class Findings;

/// What the readers and writers of the program's binary captures share.
namespace OwnRecords {

/// An identifier that a frame of its kind can have.
bool isIdentifier(quint32 identifier, bool isExtended);

/// Passes the header, of which only the text counts. Nothing while too few bytes are there of an input that grows.
enum class Header : quint8 { Passed, NotYet, Missing };
Header passHeader(ByteInput &in, std::string_view text, std::size_t size);
void putHeader(ByteOutput &out, std::string_view text);

/// What stands behind the last whole record; reported once the input has ended.
void reportRest(ByteInput &in, Findings &findings);

/// Gives frames the times of their records: a sent frame without one of its own, as the program saves them, has that of
/// the frame before it.
class RecordTimes
{
public:
    void set(BusFrame &frame, bool isReceived, quint32 stamp)
    {
        if (isReceived || stamp != 0) {
            m_last = m_clock.at(stamp);
            frame.deviceTime = m_last;
        }
        frame.direction = isReceived ? BusFrame::Received : BusFrame::Sent;
        frame.time = m_last;
    }

private:
    StampClock m_clock;
    qint64 m_last = 0;
};

/// The other way: the stamp of a record. Without an adapter's time it is the time since the first frame.
class RecordStamps
{
public:
    /// timesSinceStart: BusFrame::time counts from the start already.
    explicit RecordStamps(bool timesSinceStart)
        : m_hasStart(timesSinceStart)
    {
    }

    /// For each frame, in their order.
    quint32 of(const BusFrame &frame)
    {
        const qint64 time = frame.time != BusFrame::NoTime ? frame.time : m_start;
        if (!m_hasStart) {
            m_hasStart = true;
            m_start = time;
        }
        const bool hasStamp = frame.deviceTime != BusFrame::NoTime;
        if (!hasStamp && frame.direction != BusFrame::Received) {
            return 0;
        }
        const qint64 stamp = hasStamp ? frame.deviceTime : time - m_start;
        return static_cast<quint32>(stamp / NanosecondsPerMs);
    }

private:
    bool m_hasStart;
    qint64 m_start = 0;
};

} // namespace OwnRecords
