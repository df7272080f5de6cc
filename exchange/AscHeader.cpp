#include "exchange/AscHeader.h"

#include "exchange/TextFields.h"
#include "exchange/TextLine.h"
#include "exchange/TimeOrigin.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::array<std::string_view, 12> Months = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                     "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr std::array<std::string_view, 7> Weekdays = {"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"};

/// German months that begin otherwise than the English ones; the umlaut in Latin-1 and in UTF-8.
struct GermanMonth
{
    std::string_view begin;
    int month;
};
constexpr GermanMonth GermanMonths[] = {{"M\xE4r", 3}, {"M\xC3\xA4r", 3}, {"Mrz", 3},
                                        {"Mai", 5},    {"Okt", 10},       {"Dez", 12}};

/// From 1; 0 for any other word.
int monthOf(std::string_view word)
{
    const auto *const english =
        std::find_if(Months.begin(), Months.end(), [word](std::string_view name) { return beginsWith(word, name); });
    if (english != Months.end()) {
        return static_cast<int>(english - Months.begin()) + 1;
    }
    const auto *const german = std::find_if(std::begin(GermanMonths), std::end(GermanMonths),
                                            [word](const GermanMonth &row) { return beginsWith(word, row.begin); });
    return german != std::end(GermanMonths) ? german->month : 0;
}

/// "08:53:21.5" and "08:53:21"; no time for any other text.
QTime timeOfDay(std::string_view text)
{
    constexpr qint64 NsPerMs = 1000000;
    const std::size_t first = text.find(':');
    const std::size_t second = first != std::string_view::npos ? text.find(':', first + 1) : first;
    if (second == std::string_view::npos) {
        return {};
    }
    const auto hours = wholeNumber<int>(text.substr(0, first));
    const auto minutes = wholeNumber<int>(text.substr(first + 1, second - first - 1));
    const auto seconds = scaledDecimal(text.substr(second + 1), 9);
    if (!hours || !minutes || !seconds || *seconds >= 60000 * NsPerMs) {
        return {};
    }
    const auto milliseconds = static_cast<int>(*seconds / NsPerMs);
    return {*hours, *minutes, milliseconds / 1000, milliseconds % 1000};
}

bool isAfternoon(std::string_view word)
{
    return isSameWord(word, "pm") || beginsWith(word, "nachm");
}

bool isMorning(std::string_view word)
{
    return isSameWord(word, "am") || beginsWith(word, "vorm");
}

} // namespace

qint64 timeOfAscDate(std::string_view text)
{
    TextFields fields(text);
    fields.next(); // the day of the week, in any language
    int year = 0;
    int month = 0;
    int day = 0;
    QTime time;
    int halfDay = 0; // 1: am, 2: pm
    for (std::string_view field = fields.next(); !field.empty(); field = fields.next()) {
        if (field.find(':') != std::string_view::npos) {
            time = timeOfDay(field);
        } else if (isMorning(field) || isAfternoon(field)) {
            halfDay = isAfternoon(field) ? 2 : 1;
        } else if (const auto number = wholeNumber<int>(field.substr(0, field.find('.')))) {
            (*number > 31 ? year : day) = *number;
        } else if (month == 0) {
            month = monthOf(field);
        }
    }
    if (halfDay != 0 && time.isValid()) {
        time = QTime(time.hour() % 12 + (halfDay == 2 ? 12 : 0), time.minute(), time.second(), time.msec());
    }
    return nanosecondsOfLocalTime(QDate(year, month, day), time);
}

void addAscDate(TextLine &line, qint64 nanoseconds)
{
    const QDateTime local = localTime(nanoseconds);
    const QDate date = local.date();
    const QTime time = local.time();
    line.add(Weekdays[static_cast<std::size_t>(date.dayOfWeek() - 1)]);
    line.add(' ');
    line.add(Months[static_cast<std::size_t>(date.month() - 1)]);
    line.add(' ');
    line.addDecimal(static_cast<quint64>(date.day()), 2, '0');
    line.add(' ');
    line.addDecimal(static_cast<quint64>((time.hour() + 11) % 12 + 1), 2, '0');
    line.add(':');
    line.addDecimal(static_cast<quint64>(time.minute()), 2, '0');
    line.add(':');
    line.addDecimal(static_cast<quint64>(time.second()), 2, '0');
    line.add('.');
    line.addDecimal(static_cast<quint64>(time.msec()), 3, '0');
    line.add(time.hour() < 12 ? " AM " : " PM ");
    line.addDecimal(static_cast<quint64>(date.year()), 4, '0');
}
