#pragma once

#include "exchange/CaptureInfo.h"
#include "viewer/core/BusFrameStore.h"

#include <QString>

#include <optional>

/// Nanoseconds from earlier to later; -1 where one is missing, where later is the earlier one, and where a 64-bit
/// number does not hold it.
constexpr qint64 periodBetween(qint64 earlier, qint64 later)
{
    if (earlier == BusFrame::NoTime || later == BusFrame::NoTime || later < earlier) {
        return -1;
    }
    const quint64 period = static_cast<quint64>(later) - static_cast<quint64>(earlier);
    return period <= static_cast<quint64>(std::numeric_limits<qint64>::max()) ? static_cast<qint64>(period) : -1;
}

/// Nanoseconds from one time to another, negative where to is the earlier one; nothing where one is missing or a 64-bit
/// number does not hold it.
std::optional<qint64> timeDistance(qint64 from, qint64 to);

/// What a column of times shows.
enum class TimeColumn {
    Absolute,        ///< date and clock time
    SinceStart,      ///< of the capture
    SinceShown,      ///< since the frame that is shown before
    SinceIdentifier, ///< since the last frame of the same identifier and channel
    SinceMark        ///< since the marked frame, negative before it
};

/// The rows that a row's times refer to; -1: there is none.
struct TimeReferences
{
    qint64 shown = -1;
    qint64 identifier = -1;
    qint64 mark = -1;
};

/// What a cell shows: nanoseconds from 1970-01-01 00:00 UTC with TimeColumn::Absolute, otherwise from what it refers
/// to, negative where times jump back. Nothing where a time or a reference is missing.
std::optional<qint64> timeOfCell(TimeColumn column, const BusFrameStore &store, const CaptureInfo &info, qint64 row,
                                 const TimeReferences &references);

/// "2024-05-17 13:45:06.123456789", in the computer's time zone.
QString absoluteTimeText(qint64 nanoseconds);
/// Seconds with 9 digits behind the point: "-0.000001000".
QString durationText(qint64 nanoseconds);

/// The time that text names, in the frames' time base; nothing where it names none: "12.5", "12.5s", "300 ms" and "5
/// min" since the start; "13:45:06.5", the first such clock time from the capture's start on; "2024-05-17 13:45:06".
std::optional<qint64> timeOfText(const QString &text, const BusFrameStore &store, const CaptureInfo &info);
/// The row that text names, -1 where it names none: a whole number is a frame's number, from 1; anything
/// else a time, as timeOfText() reads it. Of a time it is the first row that has reached it, or the last of all.
qint64 rowOfText(const QString &text, const BusFrameStore &store, const CaptureInfo &info);
