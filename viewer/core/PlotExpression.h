#pragma once

#include "viewer/core/Filter.h"

#include <optional>

/// What a curve shows: "Speed", "data[0] << 8 | data[1] of id == 0x123", "rate of error", "rate 100ms of Speed > 50".
/// In front of the word "of" is a number of each frame or the word "rate", with a step of time or without; behind it a
/// filter. Does not change.
struct PlotExpression
{
    static constexpr qint64 DefaultStep = 1000000000; ///< ns

    std::optional<FrameValue> value; ///< nothing: the rate
    Filter filter;
    qint64 step = DefaultStep; ///< of a rate: nanoseconds, more than 0
    int signal = -1;           ///< the source's number when the value is a signal by itself

    bool isRate() const { return !value; }

    /// source may be null. Nothing, with error, where text is wrong.
    static std::optional<PlotExpression> parse(const QString &text, const std::shared_ptr<const SignalSource> &source,
                                               FilterError &error);
    /// cursor: number of characters before the place.
    static FilterCompletion complete(const QString &text, int cursor, const SignalSource *source);
};
