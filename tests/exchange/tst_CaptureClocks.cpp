#include "exchange/CaptureClocks.h"

#include "tests/support/TestProgram.h"

#include <QBuffer>
#include <QtTest>

namespace {

constexpr int Hour = 3600000;

QByteArray lines(const QList<int> &hours)
{
    QByteArray text = "Vantora CAN Data\nNo.,System Time\n";
    int number = 0;
    for (const int hour : hours) {
        text += QByteArray::number(++number) + "," +
                QTime(hour, 0).toString(QStringLiteral("hh:mm:ss.zzz")).toLatin1() +
                ",None,Revice,0x1,CAN,Data,Standard,0x0,\n";
    }
    return text;
}

QByteArray textOf(ClockText &clock, qint64 time)
{
    std::array<char, ClockText::MaxSize> text;
    return {text.data(), static_cast<int>(clock.put(text.data(), time) - text.data())};
}

} // namespace

class tst_CaptureClocks : public QObject
{
    Q_OBJECT

private slots:
    static void daysGoOnOverMidnight();
    static void clocksAreLocalTimes();
    static void aSmallJumpBackIsNoMidnight();
    static void clockTexts_data();
    static void clockTexts();
    static void stampsGoOnBehindTheir32Bits();
    static void clocksHaveAnEnd();
    static void stampsOfADayGoOn();
    static void linesWithAClock_data();
    static void linesWithAClock();
    static void firstDays_data();
    static void firstDays();
    static void aLargeFileIsSampled();
};

void tst_CaptureClocks::daysGoOnOverMidnight()
{
    DayClock clock;
    QCOMPARE(clock.at(23 * Hour), qint64{23} * Hour * NanosecondsPerMs);
    QCOMPARE(clock.at(Hour), qint64{25} * Hour * NanosecondsPerMs);
    QCOMPARE(clock.at(14 * Hour), qint64{38} * Hour * NanosecondsPerMs);
    QCOMPARE(clock.at(0), qint64{48} * Hour * NanosecondsPerMs);
}

void tst_CaptureClocks::clocksAreLocalTimes()
{
    const QDate day(2026, 2, 28);
    DayClock clock(day);
    const auto expected = [](const QDate &date, const QTime &time) {
        return QDateTime(date, time).toMSecsSinceEpoch() * NanosecondsPerMs;
    };
    QCOMPARE(clock.at(QTime(10, 20, 30, 400).msecsSinceStartOfDay()), expected(day, QTime(10, 20, 30, 400)));
    QCOMPARE(clock.at(QTime(23, 59, 59, 999).msecsSinceStartOfDay()), expected(day, QTime(23, 59, 59, 999)));
    QCOMPARE(clock.at(5), expected(QDate(2026, 3, 1), QTime(0, 0, 0, 5)));
    ClockText text(true);
    QCOMPARE(textOf(text, expected(day, QTime(1, 2, 3, 4))), QByteArray("01:02:03.004"));
}

void tst_CaptureClocks::aSmallJumpBackIsNoMidnight()
{
    DayClock clock;
    clock.at(10 * Hour);
    QCOMPARE(clock.at(9 * Hour), qint64{9} * Hour * NanosecondsPerMs);
    StampClock stamps;
    stamps.at(500000);
    QCOMPARE(stamps.at(10), qint64{10} * NanosecondsPerMs);
}

void tst_CaptureClocks::clockTexts_data()
{
    QTest::addColumn<qint64>("time");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("midnight") << qint64{0} << QByteArray("00:00:00.000");
    QTest::newRow("part of a millisecond") << qint64{37230049} * 100000 << QByteArray("01:02:03.004");
    QTest::newRow("the last of the day") << qint64{86399999} * NanosecondsPerMs << QByteArray("23:59:59.999");
    QTest::newRow("the next day") << qint64{86400001} * NanosecondsPerMs << QByteArray("00:00:00.001");
    QTest::newRow("before") << qint64{-1} << QByteArray("23:59:59.999");
}

void tst_CaptureClocks::clockTexts()
{
    QFETCH(qint64, time);
    QFETCH(QByteArray, text);
    ClockText clock(false);
    QCOMPARE(textOf(clock, time), text);
}

void tst_CaptureClocks::stampsGoOnBehindTheir32Bits()
{
    StampClock clock;
    QCOMPARE(clock.at(0xFFFFFFFFU), qint64{0xFFFFFFFFU} * NanosecondsPerMs);
    QCOMPARE(clock.at(4), ((qint64{1} << 32) + 4) * NanosecondsPerMs);
    clock.at(0x80000000U);
    QCOMPARE(clock.at(0xFFFFFFF0U), ((qint64{1} << 32) + 0xFFFFFFF0U) * NanosecondsPerMs);
    QCOMPARE(clock.at(1), ((qint64{2} << 32) + 1) * NanosecondsPerMs);
}

/// Made-up captures begin again without end: no time leaves the range of its type.
void tst_CaptureClocks::clocksHaveAnEnd()
{
    constexpr int Times = 200000;
    StampClock stamps;
    DayStampClock dayStamps;
    DayClock day(QDate(2026, 3, 31));
    DayClock old(QDate(1, 1, 1));
    for (int i = 0; i < Times; ++i) {
        QVERIFY(stamps.at(0xFFFFFFFFU) > 0 && stamps.at(0) >= 0);
        QVERIFY(dayStamps.at(23 * Hour, 0) > 0 && dayStamps.at(0, 0) >= 0);
        QVERIFY(day.at(23 * Hour) > 0 && day.at(0) > 0);
        QVERIFY(old.at(23 * Hour) < 0 && old.at(0) < 0);
    }
}

void tst_CaptureClocks::stampsOfADayGoOn()
{
    DayStampClock day;
    QCOMPARE(day.at(23 * Hour, 0), qint64{23} * Hour * NanosecondsPerMs);
    QCOMPARE(day.at(Hour, qint64{2} * Hour * NanosecondsPerMs), qint64{25} * Hour * NanosecondsPerMs);
    // 2^32 ms are 49 days, 17:02:47.296; then it is 0 again.
    const int before = QTime(17, 2, 47, 295).msecsSinceStartOfDay();
    DayStampClock full;
    const qint64 first = full.at(before, 1000 * NanosecondsPerMs);
    QCOMPARE(full.at(9, 1010 * NanosecondsPerMs) - first, 10 * NanosecondsPerMs);
    // The same stamps seven hours apart: a day has passed.
    DayStampClock passed;
    const qint64 start = passed.at(before, 0);
    QCOMPARE(passed.at(9, qint64{25032714} * NanosecondsPerMs) - start,
             qint64{86400000 - before + 9} * NanosecondsPerMs);
}

void tst_CaptureClocks::linesWithAClock_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<int>("expected");
    QTest::newRow("commas") << QByteArray("1,10:20:30.400,1:2:3.4,Revice") << 37230400;
    QTest::newRow("blanks") << QByteArray("12     00:00:00.001     None") << 1;
    QTest::newRow("titles") << QByteArray("No.,System Time") << -1;
    QTest::newRow("hour 24") << QByteArray("1,24:00:00.000,") << -1;
    QTest::newRow("cut") << QByteArray("1,10:20:30") << -1;
    QTest::newRow("nothing") << QByteArray() << -1;
}

void tst_CaptureClocks::linesWithAClock()
{
    QFETCH(QByteArray, line);
    QFETCH(int, expected);
    QCOMPARE(clockOfLine({line.constData(), static_cast<std::size_t>(line.size())}).value_or(-1), expected);
}

void tst_CaptureClocks::firstDays_data()
{
    QTest::addColumn<QList<int>>("hours");
    QTest::addColumn<QDateTime>("fileDate");
    QTest::addColumn<QDate>("expected");
    const QDate day(2026, 5, 10);
    const QDateTime noon(day, QTime(12, 0));
    QTest::newRow("one day") << QList<int>{8, 9, 11} << noon << day;
    QTest::newRow("over a midnight") << QList<int>{22, 23, 1, 11} << noon << day.addDays(-1);
    QTest::newRow("over two") << QList<int>{22, 1, 23, 0} << noon << day.addDays(-2);
    QTest::newRow("changed after the midnight behind the last frame")
        << QList<int>{22, 23} << QDateTime(day, QTime(0, 0, 1)) << day.addDays(-1);
    QTest::newRow("no frame") << QList<int>{} << noon << day;
    QTest::newRow("no date") << QList<int>{8, 9} << QDateTime() << QDate();
}

void tst_CaptureClocks::firstDays()
{
    QFETCH(QList<int>, hours);
    QFETCH(QDateTime, fileDate);
    QFETCH(QDate, expected);
    QBuffer buffer;
    buffer.setData(lines(hours));
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QVERIFY(buffer.seek(5));
    QCOMPARE(firstDay(buffer, fileDate), expected);
    QCOMPARE(buffer.pos(), qint64{5});
}

void tst_CaptureClocks::aLargeFileIsSampled()
{
    QByteArray text;
    QList<int> hours;
    for (int day = 0; day < 3; ++day) {
        for (int hour = 0; hour < 24; ++hour) {
            for (int i = 0; i < 6000; ++i) {
                hours.append(hour);
            }
        }
    }
    text = lines(hours);
    QVERIFY(text.size() > 17 << 20);
    QBuffer buffer;
    buffer.setData(text);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    const QDate day(2026, 5, 10);
    QCOMPARE(firstDay(buffer, QDateTime(day, QTime(23, 30))), day.addDays(-2));
}

X9_PLAIN_TEST(tst_CaptureClocks)
#include "tst_CaptureClocks.moc"
