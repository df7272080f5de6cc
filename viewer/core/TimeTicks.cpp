#include "viewer/core/TimeTicks.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QStringList>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr qint64 Microsecond = 1000;
constexpr qint64 Millisecond = 1000 * Microsecond;
constexpr qint64 Second = 1000 * Millisecond;
constexpr qint64 Minute = 60 * Second;
constexpr qint64 Hour = 60 * Minute;
constexpr qint64 Day = 24 * Hour;
constexpr int MaxTicks = 200;
constexpr int GapCharacters = 3;
constexpr int DayCharacters = 10;

/// What is behind seconds; from a day on, 1, 2 and 5 times a power of ten again.
constexpr std::array<qint64, 17> LongSteps{Second, 2 * Second, 5 * Second, 10 * Second, 15 * Second, 30 * Second,
                                           Minute, 2 * Minute, 5 * Minute, 10 * Minute, 15 * Minute, 30 * Minute,
                                           Hour,   2 * Hour,   3 * Hour,   6 * Hour,    12 * Hour};

qint64 decimalStepFrom(qint64 unit, double least)
{
    qint64 step = unit;
    for (int place = 0; static_cast<double>(step) < least && step < TimeViews::Farthest / 3; place = (place + 1) % 3) {
        step = place == 1 ? step / 2 * 5 : step * 2; // 1, 2, 5, 10
    }
    return step;
}

/// The first round step that is not shorter.
qint64 stepFrom(double least)
{
    const qint64 small = decimalStepFrom(1, least);
    if (small < Second) {
        return small;
    }
    const auto *const found = std::find_if(LongSteps.begin(), LongSteps.end(),
                                           [least](qint64 step) { return static_cast<double>(step) >= least; });
    return found != LongSteps.end() ? *found : decimalStepFrom(Day, least);
}

quint64 sizeOf(qint64 time)
{
    return time < 0 ? ~static_cast<quint64>(time) + 1 : static_cast<quint64>(time);
}

QString padded(quint64 number, int digits)
{
    return QString::number(number).rightJustified(digits, QLatin1Char('0'));
}

/// Digits behind the point with which multiples of step differ, in units.
int decimalsOf(qint64 step, qint64 unit)
{
    int decimals = 0;
    for (qint64 rest = unit; rest > 1 && step % rest != 0; rest /= 10) {
        ++decimals;
    }
    return decimals;
}

QString decimalText(quint64 size, qint64 unit, int decimals)
{
    QString text = QString::number(size / static_cast<quint64>(unit));
    if (decimals > 0) {
        const int all = static_cast<int>(std::lround(std::log10(static_cast<double>(unit))));
        text += QLatin1Char('.') + padded(size % static_cast<quint64>(unit), all).left(decimals);
    }
    return text;
}

struct Unit
{
    qint64 size;
    const char *name;
};

/// The greatest of ns, us, ms and s that is not greater than size.
Unit unitFor(quint64 size)
{
    return size >= static_cast<quint64>(Second)        ? Unit{Second, "s"}
           : size >= static_cast<quint64>(Millisecond) ? Unit{Millisecond, "ms"}
           : size >= static_cast<quint64>(Microsecond) ? Unit{Microsecond, "\u00b5s"}
                                                       : Unit{1, "ns"};
}

/// greatest: of all texts that stand beside this one.
QString sinceStartText(qint64 time, qint64 step, quint64 greatest)
{
    constexpr quint64 LongSeconds = 600 * static_cast<quint64>(Second);
    const quint64 size = sizeOf(time);
    const QString sign = time < 0 ? QStringLiteral("-") : QString();
    if (step < Second || greatest < LongSeconds) {
        const Unit unit = unitFor(greatest);
        return sign + decimalText(size, unit.size, decimalsOf(step, unit.size)) + QLatin1Char(' ') +
               QString::fromUtf8(unit.name);
    }
    const quint64 seconds = size / static_cast<quint64>(Second);
    const quint64 days = seconds / 86400;
    const quint64 hours = seconds / 3600 % 24;
    const QString minutes = padded(seconds / 60 % 60, 2);
    const QString rest = step < Minute ? QLatin1Char(':') + padded(seconds % 60, 2) : QString();
    if (greatest >= static_cast<quint64>(Day)) {
        const QString day = QCoreApplication::translate("TimeTicks", "%1 d").arg(days);
        const bool isDay = step >= Day;
        return sign + day +
               (isDay ? QString() : QLatin1Char(' ') + padded(hours, 2) + QLatin1Char(':') + minutes + rest);
    }
    return sign + QString::number(hours) + QLatin1Char(':') + minutes + QLatin1Char(':') + padded(seconds % 60, 2);
}

/// moment: nanoseconds since 1970.
QString clockText(qint64 moment, qint64 step)
{
    qint64 seconds = moment / Second;
    qint64 rest = moment % Second;
    if (rest < 0) {
        --seconds;
        rest += Second;
    }
    const QDateTime time = QDateTime::fromSecsSinceEpoch(seconds);
    if (step >= Day || (rest == 0 && step >= Second && time.time() == QTime(0, 0))) {
        return time.toString(QStringLiteral("yyyy-MM-dd"));
    }
    const QString text = time.toString(step >= Minute ? QStringLiteral("HH:mm") : QStringLiteral("HH:mm:ss"));
    const int decimals = decimalsOf(step, Second);
    return decimals == 0 ? text : text + QLatin1Char('.') + padded(static_cast<quint64>(rest), 9).left(decimals);
}

qint64 positiveRest(qint64 number, qint64 divisor)
{
    return (number % divisor + divisor) % divisor;
}

bool fitsClock(qint64 time, qint64 clock)
{
    constexpr qint64 Limit = qint64{1} << 62U;
    return clock > -Limit && clock < Limit && time > -Limit && time < Limit;
}

QString textOf(qint64 time, qint64 step, quint64 greatest, const std::optional<qint64> &clock)
{
    return clock ? clockText(*clock + time, step) : sinceStartText(time, step, greatest);
}

} // namespace

std::vector<TimeTick> timeTicks(const TimeSection &section, int pixels, int characterWidth,
                                const std::optional<qint64> &clock)
{
    const quint64 greatest = std::max(sizeOf(section.begin), sizeOf(section.end));
    const std::optional<qint64> base = clock && fitsClock(section.end, *clock) ? clock : std::nullopt;
    // Round in the computer's zone.
    const qint64 offset =
        base ? *base % Day + QDateTime::fromSecsSinceEpoch((*base + section.begin) / Second).offsetFromUtc() * Second
             : 0;
    const bool hasMidnight =
        base && section.end + offset - positiveRest(section.end + offset, Day) > section.begin + offset;
    const auto fits = [&](qint64 step) {
        const int longest =
            std::max({textOf(section.begin / step * step, step, greatest, base).size(),
                      textOf(section.end / step * step, step, greatest, base).size(), hasMidnight ? DayCharacters : 0});
        const double room = static_cast<double>(step) / static_cast<double>(section.width()) * pixels;
        return room >= characterWidth * (longest + GapCharacters);
    };
    qint64 step = stepFrom(static_cast<double>(section.width()) / MaxTicks);
    while (!fits(step)) {
        const qint64 longer = stepFrom(static_cast<double>(step) * 1.5);
        if (longer <= step) {
            return {};
        }
        step = longer;
    }
    const qint64 into = positiveRest(section.begin + offset, step);
    std::vector<TimeTick> ticks;
    for (qint64 time = section.begin + (into == 0 ? 0 : step - into); time <= section.end; time += step) {
        ticks.push_back({time, textOf(time, step, greatest, base)});
    }
    return ticks;
}

QString timeText(qint64 time, double perPixel, const std::optional<qint64> &clock)
{
    qint64 step = 1;
    while (static_cast<double>(step) * 10 <= perPixel && step < Millisecond) {
        step *= 10;
    }
    const bool isClock = clock && fitsClock(time, *clock);
    return isClock ? clockText(*clock + time, step) : sinceStartText(time / step * step, step, sizeOf(time));
}

QString distanceText(qint64 nanoseconds)
{
    constexpr int Digits = 9;
    const quint64 size = sizeOf(nanoseconds);
    const Unit unit = unitFor(size);
    return (nanoseconds < 0 ? QStringLiteral("-") : QString()) +
           QString::number(static_cast<double>(size) / static_cast<double>(unit.size), 'g', Digits) + QLatin1Char(' ') +
           QString::fromUtf8(unit.name);
}
