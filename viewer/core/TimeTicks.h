#pragma once

#include "viewer/core/TimeViews.h"

#include <QString>

#include <optional>
#include <vector>

/// A mark on an axis of time.
struct TimeTick
{
    qint64 time; ///< nanoseconds since the capture's start
    QString text;
};

/// Marks at round times of section, as close as their texts allow in a picture of so many pixels. characterWidth:
/// pixels, more than 0. Texts count from the capture's start ("120 ns", "1.5 s", "2:05:00", "1 d 06:00"), or with clock
/// (the start, in nanoseconds since 1970-01-01 00:00 UTC) tell the time in the computer's zone: "13:45:06.25",
/// at midnight the day.
std::vector<TimeTick> timeTicks(const TimeSection &section, int pixels, int characterWidth,
                                const std::optional<qint64> &clock);

/// A time since the start as exactly as a picture shows it in which a pixel is perPixel nanoseconds wide, and to a
/// millisecond at least; with clock as above.
QString timeText(qint64 time, double perPixel, const std::optional<qint64> &clock);
/// "-12.5 ms", with at most nine digits that count.
QString distanceText(qint64 nanoseconds);
