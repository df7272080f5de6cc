#include "exchange/CaptureClocks.h"

#include "exchange/ByteInput.h"
#include "exchange/TextNumbers.h"

#include <QIODevice>

#include <cstdlib>

namespace {

constexpr int MsPerHour = 3600000;
constexpr qint64 SecondsPerHour = 3600;
constexpr qint64 SecondsPerDay = 86400;
/// What is left of 2^32 milliseconds behind their whole days.
constexpr int StampRest = static_cast<int>((qint64{1} << 32U) % MsPerDay);

constexpr qint64 ReadWholeUpTo = 16 << 20U;
constexpr qint64 SampleEvery = 64 << 10U;
constexpr qint64 SampleSize = 4096;
/// A file's last change may be told in steps of two seconds.
constexpr int FileTimeSlack = 2000;

qint64 floorDivided(qint64 number, qint64 by)
{
    return number / by - (number % by < 0 ? 1 : 0);
}

void putTwoDigits(char *to, qint64 number)
{
    to[0] = static_cast<char>('0' + number / 10);
    to[1] = static_cast<char>('0' + number % 10);
}

/// Counts midnights between times of day, given in their order.
struct MidnightCount
{
    int midnights = 0;
    std::optional<int> last;

    void add(const std::optional<int> &clock)
    {
        if (clock) {
            midnights += last && *last - *clock > MsPerDay / 2 ? 1 : 0;
            last = clock;
        }
    }
};

void addLines(QIODevice &device, MidnightCount &count)
{
    ByteInput in(device);
    while (const std::optional<std::string_view> line = in.line()) {
        count.add(clockOfLine(*line));
    }
}

/// The first whole line behind each place that is a multiple of SampleEvery, and all at the end.
void addSamples(QIODevice &device, MidnightCount &count)
{
    const qint64 end = device.size() - SampleEvery;
    for (qint64 place = 0; place < end && device.seek(place); place += SampleEvery) {
        const QByteArray bytes = device.read(SampleSize);
        const std::string_view text(bytes.constData(), static_cast<std::size_t>(bytes.size()));
        std::size_t begin = text.find('\n');
        std::optional<int> clock;
        while (begin != std::string_view::npos && !clock) {
            const std::size_t lineEnd = text.find('\n', begin + 1);
            clock = lineEnd != std::string_view::npos ? clockOfLine(text.substr(begin + 1, lineEnd - begin - 1))
                                                      : std::nullopt;
            begin = lineEnd;
        }
        count.add(clock);
    }
    if (device.seek(end)) {
        addLines(device, count);
    }
}

} // namespace

void DayClock::nextDay()
{
    ++m_daysPassed;
    m_hourEnd = m_hourBegin; // no hour is known
}

void DayClock::findHour(int msOfDay)
{
    const int hour = msOfDay / MsPerHour;
    m_hourBegin = hour * MsPerHour;
    m_hourEnd = m_hourBegin + MsPerHour;
    if (m_day.isValid()) {
        m_base = QDateTime(m_day.addDays(m_daysPassed), QTime(hour, 0)).toMSecsSinceEpoch() - m_hourBegin;
    } else {
        m_base = qint64{m_daysPassed} * MsPerDay;
    }
    m_base = qBound(-MaxClockBase, m_base, MaxClockBase);
}

void ClockText::findSecond(qint64 nanoseconds)
{
    const qint64 second = floorDivided(nanoseconds, NanosecondsPerMs * 1000);
    const qint64 hour = floorDivided(second, SecondsPerHour);
    m_begin = second * NanosecondsPerMs * 1000;
    if (m_isLocal && hour != m_hour) {
        m_hour = hour;
        m_offset = QDateTime::fromMSecsSinceEpoch(hour * MsPerHour).offsetFromUtc();
    }
    const qint64 local = second + m_offset;
    const qint64 ofDay = local - floorDivided(local, SecondsPerDay) * SecondsPerDay;
    putTwoDigits(m_text, ofDay / SecondsPerHour);
    putTwoDigits(m_text + 3, ofDay / 60 % 60);
    putTwoDigits(m_text + 6, ofDay % 60);
}

int DayStampClock::beginsAgainAfter(int msOfDay, qint64 systemTime) const
{
    const qint64 passed = (systemTime - m_lastSystemTime) / NanosecondsPerMs;
    const auto error = [&](int after) {
        return std::abs(after - m_last + msOfDay - passed);
    };
    return m_last < StampRest && error(StampRest) < error(MsPerDay) ? StampRest : MsPerDay;
}

std::optional<int> clockOfLine(std::string_view line)
{
    const char *at = line.data();
    const char *end = at + line.size();
    qint64 number = 0;
    int milliseconds = 0;
    if (!TextNumbers::decimal(at, end, number) || at == end || (*at != ',' && *at != ' ')) {
        return std::nullopt;
    }
    while (at != end && (*at == ',' || *at == ' ')) {
        ++at;
    }
    return TextNumbers::clock(at, end, milliseconds) ? std::optional(milliseconds) : std::nullopt;
}

QDate firstDay(QIODevice &device, const QDateTime &fileDate)
{
    const QDateTime local = fileDate.toLocalTime();
    if (!fileDate.isValid() || device.isSequential()) {
        return local.date();
    }
    const qint64 place = device.pos();
    MidnightCount count;
    if (device.seek(0)) {
        if (device.size() <= ReadWholeUpTo) {
            addLines(device, count);
        } else {
            addSamples(device, count);
        }
    }
    device.seek(place);
    // A last frame later than the file's own time of day was there before the midnight that the file has seen.
    const bool isOfDayBefore = count.last.value_or(0) > local.time().msecsSinceStartOfDay() + FileTimeSlack;
    return local.date().addDays(-count.midnights - (isOfDayBefore ? 1 : 0));
}
