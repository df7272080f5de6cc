#include "exchange/TrcStart.h"

#include "exchange/TextFields.h"
#include "exchange/TextLine.h"
#include "exchange/TimeOrigin.h"

#include <QLocale>

#include <algorithm>
#include <cmath>
#include <string>

namespace {

constexpr qint64 NsPerUs = 1000;
constexpr qint64 MsPerDay = 86400000;
constexpr int DayDigits = 11; ///< that tell the milliseconds of a day apart

QDate firstDay()
{
    return {1899, 12, 30};
}

} // namespace

qint64 timeOfTrcDays(std::string_view text)
{
    constexpr int Digits = 12;
    const std::size_t point = std::min(text.find('.'), text.size());
    const auto days = wholeNumber<qint64>(text.substr(0, point));
    const auto fraction = scaledDecimal(point < text.size() ? "0" + std::string(text.substr(point)) : "0", Digits);
    if (!days || *days < 0 || *days > 200000 || !fraction) {
        return 0;
    }
    const double part = static_cast<double>(*fraction) / std::pow(10.0, Digits);
    const auto microseconds = static_cast<qint64>(std::llround(part * static_cast<double>(MsPerDay) * 1000.0));
    const QTime time = QTime::fromMSecsSinceStartOfDay(static_cast<int>(std::min(microseconds / 1000, MsPerDay - 1)));
    const qint64 start = nanosecondsOfLocalTime(firstDay().addDays(*days), time);
    return start != 0 ? start + microseconds % 1000 * NsPerUs : 0;
}

void addTrcDays(TextLine &line, qint64 nanoseconds)
{
    const QDateTime local = localTime(nanoseconds);
    const auto milliseconds = static_cast<quint64>(local.time().msecsSinceStartOfDay());
    constexpr quint64 Scale = 100000000000; // DayDigits
    line.addDecimal(static_cast<quint64>(firstDay().daysTo(local.date())));
    line.add('.');
    line.addDecimal((milliseconds * Scale + MsPerDay / 2) / quint64(MsPerDay), DayDigits, '0');
}

qint64 timeOfTrcDate(std::string_view text)
{
    TextFields fields(text);
    const auto next = [&fields](int size) {
        const std::string_view field = fields.next().substr(0, static_cast<std::size_t>(size));
        return QString::fromLatin1(field.data(), static_cast<int>(field.size()));
    };
    const QDate date = QDate::fromString(next(10), QStringLiteral("dd.MM.yyyy"));
    const QString time = next(12);
    const bool hasMilliseconds = time.size() == 12;
    return nanosecondsOfLocalTime(
        date, QTime::fromString(time, hasMilliseconds ? QStringLiteral("HH:mm:ss.zzz") : QStringLiteral("HH:mm:ss")));
}

void addTrcDate(TextLine &line, qint64 nanoseconds)
{
    const QString text = QLocale::c().toString(localTime(nanoseconds), QStringLiteral("dd.MM.yyyy HH:mm:ss.zzz"));
    const QByteArray bytes = text.toLatin1();
    line.add({bytes.constData(), static_cast<std::size_t>(bytes.size())});
}
