#include "viewer/core/FrameTimes.h"

#include <QDateTime>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace {

constexpr qint64 NanosecondsPerSecond = 1000000000;
constexpr qint64 NanosecondsPerMillisecond = 1000000;

std::optional<qint64> sum(qint64 a, qint64 b)
{
    const bool fits = b > 0 ? a <= std::numeric_limits<qint64>::max() - b : a >= std::numeric_limits<qint64>::min() - b;
    return fits ? std::make_optional(a + b) : std::nullopt;
}

/// What has to be added to the frames' times for the time since 1970; nothing where the capture has no date.
std::optional<qint64> epochOffset(const CaptureInfo &info)
{
    if (info.timeBase == CaptureInfo::Absolute) {
        return 0;
    }
    return info.start != 0 ? std::make_optional(info.start) : std::nullopt;
}

std::optional<qint64> sinceRow(const BusFrameStore &store, qint64 reference, qint64 time)
{
    return reference >= 0 ? timeDistance(store.time(reference), time) : std::nullopt;
}

/// Seconds with a unit; nothing for another text.
std::optional<double> secondsOf(const QString &text)
{
    static const QRegularExpression pattern(QStringLiteral("^(-?\\d+(?:\\.\\d+)?)\\s*(s|ms|us|ns|min)?$"));
    const QRegularExpressionMatch match = pattern.match(text);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    const QString unit = match.captured(2);
    const double factor = unit == QLatin1String("ms")    ? 1e-3
                          : unit == QLatin1String("us")  ? 1e-6
                          : unit == QLatin1String("ns")  ? 1e-9
                          : unit == QLatin1String("min") ? 60
                                                         : 1;
    return match.captured(1).toDouble() * factor;
}

/// A clock time, from the given day on or with a day of its own, as nanoseconds since 1970.
std::optional<qint64> clockTime(const QString &text, qint64 start)
{
    static const QRegularExpression pattern(
        QStringLiteral("^(?:(\\d{4}-\\d{2}-\\d{2})[ T])?(\\d{1,2}:\\d{2}(?::\\d{2})?)(\\.\\d{1,9})?$"));
    const QRegularExpressionMatch match = pattern.match(text);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    const QDateTime first = QDateTime::fromMSecsSinceEpoch(start / NanosecondsPerMillisecond);
    const bool hasDay = !match.captured(1).isEmpty();
    const QDate day = hasDay ? QDate::fromString(match.captured(1), Qt::ISODate) : first.date();
    const bool isShort = match.captured(2).at(1) == QLatin1Char(':');
    const QString clock = (isShort ? QStringLiteral("0") : QString()) + match.captured(2);
    const QTime time =
        QTime::fromString(clock, clock.size() == 5 ? QStringLiteral("hh:mm") : QStringLiteral("hh:mm:ss"));
    if (!day.isValid() || !time.isValid()) {
        return std::nullopt;
    }
    const auto fraction = std::llround((QStringLiteral("0") + match.captured(3)).toDouble() * NanosecondsPerSecond);
    const auto moment = [fraction, &time](const QDate &date) {
        return QDateTime(date, time).toMSecsSinceEpoch() * NanosecondsPerMillisecond + fraction;
    };
    const qint64 found = moment(day);
    return hasDay || found >= start ? found : moment(day.addDays(1));
}

} // namespace

std::optional<qint64> timeDistance(qint64 from, qint64 to)
{
    const qint64 forward = periodBetween(from, to);
    if (forward >= 0) {
        return forward;
    }
    const qint64 backward = periodBetween(to, from);
    return backward >= 0 ? std::make_optional(-backward) : std::nullopt;
}

std::optional<qint64> timeOfCell(TimeColumn column, const BusFrameStore &store, const CaptureInfo &info, qint64 row,
                                 const TimeReferences &references)
{
    const qint64 time = store.time(row);
    if (time == BusFrame::NoTime) {
        return std::nullopt;
    }
    switch (column) {
    case TimeColumn::Absolute: {
        const std::optional<qint64> offset = epochOffset(info);
        return offset ? sum(time, *offset) : std::nullopt;
    }
    case TimeColumn::SinceStart:
        return timeDistance(store.start(), time);
    case TimeColumn::SinceShown:
        return sinceRow(store, references.shown, time);
    case TimeColumn::SinceIdentifier:
        return sinceRow(store, references.identifier, time);
    case TimeColumn::SinceMark:
        return sinceRow(store, references.mark, time);
    }
    return std::nullopt;
}

QString absoluteTimeText(qint64 nanoseconds)
{
    qint64 seconds = nanoseconds / NanosecondsPerSecond;
    qint64 rest = nanoseconds % NanosecondsPerSecond;
    if (rest < 0) {
        --seconds;
        rest += NanosecondsPerSecond;
    }
    return QDateTime::fromSecsSinceEpoch(seconds).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")) +
           QStringLiteral(".%1").arg(rest, 9, 10, QLatin1Char('0'));
}

QString durationText(qint64 nanoseconds)
{
    const bool isNegative = nanoseconds < 0;
    const quint64 size = isNegative ? ~static_cast<quint64>(nanoseconds) + 1 : static_cast<quint64>(nanoseconds);
    return (isNegative ? QStringLiteral("-%1.%2") : QStringLiteral("%1.%2"))
        .arg(size / NanosecondsPerSecond)
        .arg(size % NanosecondsPerSecond, 9, 10, QLatin1Char('0'));
}

std::optional<qint64> timeOfText(const QString &text, const BusFrameStore &store, const CaptureInfo &info)
{
    const QString wanted = text.trimmed();
    if (const std::optional<double> seconds = secondsOf(wanted)) {
        const double nanoseconds = *seconds * static_cast<double>(NanosecondsPerSecond);
        constexpr double Most = 9e18;
        return std::abs(nanoseconds) < Most ? sum(store.start(), std::llround(nanoseconds)) : std::nullopt;
    }
    const std::optional<qint64> offset = epochOffset(info);
    const std::optional<qint64> moment = offset ? clockTime(wanted, store.start() + *offset) : std::optional<qint64>();
    return moment ? timeDistance(*offset, *moment) : std::nullopt;
}

qint64 rowOfText(const QString &text, const BusFrameStore &store, const CaptureInfo &info)
{
    const qint64 rows = store.size();
    const QString wanted = text.trimmed();
    bool isNumber = false;
    const qint64 number = wanted.toLongLong(&isNumber);
    if (isNumber || rows == 0) {
        return number >= 1 && number <= rows ? number - 1 : -1;
    }
    const std::optional<qint64> time = timeOfText(wanted, store, info);
    return time ? std::min(store.firstRowAt(*time), rows - 1) : -1;
}
