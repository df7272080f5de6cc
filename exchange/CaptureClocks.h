#pragma once

#include "capture/FrameBytes.h"

#include <QDate>
#include <QDateTime>

#include <algorithm>
#include <cstring>
#include <limits>
#include <optional>
#include <string_view>

class QIODevice;

/// Times that captures give in part only, made whole. A stamp that jumps back by more than half of the time after which
/// it begins again has begun again; any other jump back is left as it is.

constexpr qint64 NanosecondsPerMs = 1000000;
/// What clocks that begin again add up to at most, in milliseconds: nearly three centuries. Behind that, which only
/// made-up captures come to, times go back.
constexpr qint64 MaxClockBase = std::numeric_limits<qint64>::max() / NanosecondsPerMs - (qint64{1} << 33U);
constexpr int MsPerDay = 86400000;

/// Times of day without a date.
class DayClock
{
public:
    /// day: of the first time, invalid when it is not known; times then count from that day's midnight.
    explicit DayClock(const QDate &day = QDate())
        : m_day(day)
    {
    }

    /// msOfDay: 0 to MsPerDay - 1, of the computer's clock. Nanoseconds from 1970-01-01 00:00 UTC, or from midnight.
    qint64 at(int msOfDay)
    {
        if (msOfDay < m_last && m_last - msOfDay > MsPerDay / 2) {
            nextDay();
        }
        m_last = msOfDay;
        if (msOfDay < m_hourBegin || msOfDay >= m_hourEnd) {
            findHour(msOfDay);
        }
        return (m_base + msOfDay) * NanosecondsPerMs;
    }

private:
    void nextDay();
    void findHour(int msOfDay);

    QDate m_day;
    int m_daysPassed = 0;
    int m_last = 0;
    qint64 m_base = 0; ///< milliseconds to the midnight that the hour counts from; summer time may change it
    int m_hourBegin = 0;
    int m_hourEnd = 0;
};

/// The other way: the time of day of the computer's clock as text.
class ClockText
{
public:
    static constexpr std::size_t Size = 12;
    static constexpr std::size_t MaxSize = 16; ///< that put() takes, so that copies have a fixed size

    /// isLocal: times count from 1970-01-01 00:00 UTC, otherwise from a midnight.
    explicit ClockText(bool isLocal)
        : m_isLocal(isLocal)
    {
    }
    /// "10:20:30.400", Size characters; takes MaxSize bytes and returns the place behind the characters.
    char *put(char *to, qint64 nanoseconds)
    {
        if (nanoseconds < m_begin || nanoseconds >= m_begin + NanosecondsPerMs * 1000) {
            findSecond(nanoseconds);
        }
        std::memcpy(to, m_text, MaxSize);
        const auto ms = static_cast<quint64>(nanoseconds - m_begin) / quint64{NanosecondsPerMs};
        return FrameBytes::putThreeDigits(to + Size - 3, static_cast<std::size_t>(std::min<quint64>(ms, 999)));
    }

private:
    void findSecond(qint64 nanoseconds);

    const bool m_isLocal;
    qint64 m_begin = std::numeric_limits<qint64>::min(); ///< of the second that the text is of
    qint64 m_hour = std::numeric_limits<qint64>::min();
    qint64 m_offset = 0; ///< seconds from UTC in that hour
    char m_text[MaxSize] = "00:00:00.";
};

/// An adapter's time in milliseconds, of 32 bits.
class StampClock
{
public:
    /// Nanoseconds.
    qint64 at(quint32 ms)
    {
        if (ms < m_last && m_last - ms > 1U << 31U && m_base < MaxClockBase) {
            m_base += qint64{1} << 32U;
        }
        m_last = ms;
        return (m_base + ms) * NanosecondsPerMs;
    }

private:
    quint32 m_last = 0;
    qint64 m_base = 0;
};

/// The same, of which only the time of day is known.
class DayStampClock
{
public:
    /// msOfDay: 0 to MsPerDay - 1. systemTime: in nanoseconds; tells by how much the time went on when the stamp begins
    /// again, after a day or because its 32 bits are full.
    qint64 at(int msOfDay, qint64 systemTime)
    {
        if (msOfDay < m_last && m_last - msOfDay > MsPerDay / 2 && m_base < MaxClockBase) {
            m_base += beginsAgainAfter(msOfDay, systemTime);
        }
        m_last = msOfDay;
        m_lastSystemTime = systemTime;
        return (m_base + msOfDay) * NanosecondsPerMs;
    }

private:
    int beginsAgainAfter(int msOfDay, qint64 systemTime) const;

    int m_last = 0;
    qint64 m_lastSystemTime = 0;
    qint64 m_base = 0;
};

/// The time of day in the second cell of a line of the program's text captures, in milliseconds.
std::optional<int> clockOfLine(std::string_view line);

/// The day of the first line of such a capture, where the file's last change tells the day of the last one: every
/// midnight between them is counted. A large file is looked at every 64 KiB. From a device that cannot go back only
/// the date itself is known. Invalid when fileDate is. The device's position is as it was.
QDate firstDay(QIODevice &device, const QDateTime &fileDate);
