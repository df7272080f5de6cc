#include "device/TickPace.h"
#include "tests/support/TestProgram.h"

#include <QtTest>
#include <QVector>

#include <random>

namespace {
constexpr qint64 Ms = 1000000;
constexpr qint64 Hour = Q_INT64_C(3600) * 1000 * Ms;
} // namespace

using Times = QVector<qint64>;
Q_DECLARE_METATYPE(Times)

class tst_TickPace : public QObject
{
    Q_OBJECT

private slots:
    static void schedules_data();
    static void schedules();
    static void refusesWhatIsEarly();
    static void averagesSmallDelays();
    static void keepsTheAverageUnderJitter();
    static void makesUpForHeldUpTicks_data();
    static void makesUpForHeldUpTicks();
    static void withoutMakingUp_data();
    static void withoutMakingUp();
    static void startsAnew();
};

/// Each tick comes at the time in "ticks"; after it, the next one is to come at the time in "next".
void tst_TickPace::schedules_data()
{
    QTest::addColumn<qint64>("interval");
    QTest::addColumn<Times>("ticks");
    QTest::addColumn<Times>("next");

    QTest::newRow("on time") << 10 * Ms << Times{10 * Ms, 20 * Ms, 30 * Ms} << Times{20 * Ms, 30 * Ms, 40 * Ms};
    QTest::newRow("one late tick does not shift the next")
        << 10 * Ms << Times{14 * Ms, 20 * Ms} << Times{20 * Ms, 30 * Ms};
    QTest::newRow("half an interval lies between two ticks")
        << 8 * Ms << Times{13 * Ms, 17 * Ms, 24 * Ms} << Times{17 * Ms, 24 * Ms, 32 * Ms};
    QTest::newRow("early by the rounding of a timer")
        << Ms << Times{Ms, Ms + Ms / 2, 2 * Ms + Ms / 2} << Times{2 * Ms, 3 * Ms, 4 * Ms};
    QTest::newRow("made up for at twice the pace") << 2 * Ms << Times{7 * Ms, 8 * Ms, 9 * Ms, 10 * Ms, 11 * Ms, 12 * Ms}
                                                   << Times{8 * Ms, 9 * Ms, 10 * Ms, 11 * Ms, 12 * Ms, 14 * Ms};
    QTest::newRow("as late as can be made up for") << 20 * Ms << Times{25 * Ms, 40 * Ms} << Times{40 * Ms, 60 * Ms};
    QTest::newRow("later") << 20 * Ms << Times{32 * Ms, 47 * Ms} << Times{47 * Ms, 67 * Ms};
    QTest::newRow("90 ms late: no more than 5 ms are made up for")
        << 20 * Ms << Times{20 * Ms, 130 * Ms, 145 * Ms, 165 * Ms} << Times{40 * Ms, 145 * Ms, 165 * Ms, 185 * Ms};
    QTest::newRow("late again before it is made up for: still no more")
        << 2 * Ms << Times{12 * Ms, 20 * Ms, 21 * Ms, 22 * Ms, 23 * Ms, 24 * Ms, 25 * Ms}
        << Times{13 * Ms, 21 * Ms, 22 * Ms, 23 * Ms, 24 * Ms, 25 * Ms, 27 * Ms};
    QTest::newRow("an hour asleep") << 10 * Ms << Times{10 * Ms, Hour, Hour + 5 * Ms}
                                    << Times{20 * Ms, Hour + 5 * Ms, Hour + 15 * Ms};
    QTest::newRow("65535 ms") << 65535 * Ms << Times{65535 * Ms, 131071 * Ms} << Times{131070 * Ms, 196605 * Ms};
}

void tst_TickPace::schedules()
{
    QFETCH(qint64, interval);
    QFETCH(Times, ticks);
    constexpr qint64 Start = 7 * Hour;
    TickPace pace;
    pace.start(Start, interval);
    QCOMPARE(pace.next(), Start + interval);
    Times next;
    for (const qint64 tick : std::as_const(ticks)) {
        QVERIFY(pace.accept(Start + tick));
        next.append(pace.next() - Start);
    }
    QTEST(next, "next");
}

/// The first tick of all never comes before its time, however the timer rounds.
void tst_TickPace::refusesWhatIsEarly()
{
    TickPace pace;
    pace.start(0, 10 * Ms);
    QVERIFY(!pace.accept(10 * Ms - 1));
    QVERIFY(pace.accept(10 * Ms));
    QVERIFY(!pace.accept(20 * Ms - TickPace::EarlyNs - 1));
    QCOMPARE(pace.next(), 20 * Ms);
    QVERIFY(pace.accept(20 * Ms - TickPace::EarlyNs));
    QCOMPARE(pace.next(), 30 * Ms);
    QVERIFY(!pace.accept(21 * Ms));
}

/// What is owed does not add up: each tick comes late, and the pace holds all the same.
void tst_TickPace::averagesSmallDelays()
{
    constexpr int Ticks = 100;
    TickPace pace;
    pace.start(0, 20 * Ms);
    for (int tick = 1; tick <= Ticks; ++tick) {
        QCOMPARE(pace.next(), tick * (20 * Ms));
        QVERIFY(pace.accept(pace.next() + 3 * Ms));
    }
}

void tst_TickPace::keepsTheAverageUnderJitter()
{
    constexpr int Ticks = 10000;
    std::mt19937 random(1);
    std::uniform_int_distribution<qint64> delay(0, 5 * Ms / 2);
    TickPace pace;
    pace.start(0, 4 * Ms);
    for (int tick = 0; tick < Ticks; ++tick) {
        QVERIFY(pace.accept(pace.next() + delay(random)));
    }
    QVERIFY(pace.next() - qint64(Ticks + 1) * 4 * Ms < 8 * Ms);
}

void tst_TickPace::makesUpForHeldUpTicks_data()
{
    QTest::addColumn<qint64>("heldUp");
    QTest::addColumn<int>("dropped");
    QTest::newRow("3 ms") << 3 * Ms << 0;
    QTest::newRow("5 ms") << 5 * Ms << 0;
    QTest::newRow("6 ms") << 6 * Ms << 1;
    QTest::newRow("90 ms") << 90 * Ms << 85;
}

/// One tick of 1000 at 1 ms is held up.
void tst_TickPace::makesUpForHeldUpTicks()
{
    QFETCH(qint64, heldUp);
    TickPace pace;
    pace.start(0, Ms);
    int ticks = 0;
    while (pace.next() <= 1000 * Ms) {
        const bool isHeldUp = ticks == 99;
        QVERIFY(pace.accept(pace.next() + (isHeldUp ? heldUp : 0)));
        ++ticks;
    }
    QTEST(1000 - ticks, "dropped");
}

/// As schedules(), with ticks that are not made up for.
void tst_TickPace::withoutMakingUp_data()
{
    QTest::addColumn<Times>("ticks");
    QTest::addColumn<Times>("next");

    QTest::newRow("on time") << Times{10 * Ms, 20 * Ms} << Times{20 * Ms, 30 * Ms};
    QTest::newRow("late by half an interval: the next is on time")
        << Times{15 * Ms, 20 * Ms, 30 * Ms} << Times{20 * Ms, 30 * Ms, 40 * Ms};
    QTest::newRow("later: a whole interval follows")
        << Times{15 * Ms + 2, 25 * Ms + 2} << Times{25 * Ms + 2, 35 * Ms + 2};
    QTest::newRow("missed ticks are dropped")
        << Times{10 * Ms, 72 * Ms, 82 * Ms, 92 * Ms} << Times{20 * Ms, 82 * Ms, 92 * Ms, 102 * Ms};
    QTest::newRow("each held up by a call of 12 ms")
        << Times{10 * Ms, 22 * Ms, 34 * Ms, 46 * Ms} << Times{20 * Ms, 30 * Ms, 40 * Ms, 56 * Ms};
}

void tst_TickPace::withoutMakingUp()
{
    QFETCH(Times, ticks);
    TickPace pace;
    pace.setMakingUp(false);
    pace.start(0, 10 * Ms);
    Times next;
    for (const qint64 tick : std::as_const(ticks)) {
        QVERIFY(pace.accept(tick));
        next.append(pace.next());
    }
    QTEST(next, "next");
}

void tst_TickPace::startsAnew()
{
    TickPace pace;
    pace.start(0, Ms);
    QVERIFY(pace.accept(Ms));
    pace.start(Ms + 1, 5 * Ms);
    QCOMPARE(pace.next(), 6 * Ms + 1);
    QVERIFY(!pace.accept(2 * Ms));
    QVERIFY(pace.accept(6 * Ms + 1));
}

X9_PLAIN_TEST(tst_TickPace)
#include "tst_TickPace.moc"
