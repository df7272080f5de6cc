#include "adapter/virtual/CyclicSchedule.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

using va::CyclicSchedule;
using va::Period;

class tst_CyclicSchedule : public QObject
{
    Q_OBJECT

private slots:
    static void firstFrameIsOnePeriodAfterStartAndPhase();
    static void rateHasNoDrift();
    static void skippingEqualsStepping_data();
    static void skippingEqualsStepping();
    static void skippingNeverGoesBack();
    static void skipsYearsAtOnce();
};

void tst_CyclicSchedule::firstFrameIsOnePeriodAfterStartAndPhase()
{
    CyclicSchedule schedule(Period::everyUs(37), 1000, 500);
    QCOMPARE(schedule.index(), std::uint64_t{0});
    QCOMPARE(schedule.dueNs(), std::uint64_t{1500 + 37000});
    schedule.step();
    QCOMPARE(schedule.index(), std::uint64_t{1});
    QCOMPARE(schedule.dueNs(), std::uint64_t{1500 + 2 * 37000});
}

void tst_CyclicSchedule::rateHasNoDrift()
{
    CyclicSchedule schedule(Period::perSecond(27000), 0, 0);
    QCOMPARE(schedule.dueNs(), std::uint64_t{37037}); // 37037.037 rounded down
    for (int i = 0; i < 26999; ++i) {
        schedule.step();
    }
    QCOMPARE(schedule.dueNs(), std::uint64_t{1000000000}); // frame 27,000 exactly at the end of the second
}

void tst_CyclicSchedule::skippingEqualsStepping_data()
{
    QTest::addColumn<quint64>("numeratorNs");
    QTest::addColumn<quint64>("denominator");
    QTest::newRow("1 us") << quint64{1000} << quint64{1};
    QTest::newRow("37 us") << quint64{37000} << quint64{1};
    QTest::newRow("27000 Hz") << quint64{1000000000} << quint64{27000};
    QTest::newRow("999999 Hz") << quint64{1000000000} << quint64{999999};
    QTest::newRow("7 Hz") << quint64{1000000000} << quint64{7};
}

void tst_CyclicSchedule::skippingEqualsStepping()
{
    QFETCH(quint64, numeratorNs);
    QFETCH(quint64, denominator);
    const Period period{numeratorNs, denominator};
    CyclicSchedule stepped(period, 123, 77);
    CyclicSchedule skipped(period, 123, 77);
    const std::uint64_t stride = numeratorNs / denominator * 13 / 5;
    for (std::uint64_t timeNs = 0; timeNs < 400 * stride; timeNs += stride) {
        std::uint64_t steps = 0;
        for (; stepped.dueNs() <= timeNs; ++steps) {
            stepped.step();
        }
        QCOMPARE(skipped.skipTo(timeNs), steps);
        QCOMPARE(skipped.index(), stepped.index());
        QCOMPARE(skipped.dueNs(), stepped.dueNs());
        // Exactly on the due time the frame is passed, one nanosecond before it is not.
        CyclicSchedule edge = skipped;
        QCOMPARE(edge.skipTo(edge.dueNs() - 1), std::uint64_t{0});
        QCOMPARE(edge.skipTo(edge.dueNs()), std::uint64_t{1});
        edge.step();
        CyclicSchedule other = skipped;
        other.step();
        other.step();
        QCOMPARE(edge.dueNs(), other.dueNs());
    }
}

void tst_CyclicSchedule::skippingNeverGoesBack()
{
    CyclicSchedule schedule(Period::everyUs(10), 1000000, 0);
    QCOMPARE(schedule.skipTo(0), std::uint64_t{0});
    QCOMPARE(schedule.skipTo(1000000), std::uint64_t{0});
    QCOMPARE(schedule.skipTo(1100000), std::uint64_t{10});
    QCOMPARE(schedule.skipTo(1050000), std::uint64_t{0});
    QCOMPARE(schedule.index(), std::uint64_t{10});
}

void tst_CyclicSchedule::skipsYearsAtOnce()
{
    constexpr std::uint64_t tenYearsNs = std::uint64_t{10} * 365 * 86400 * 1000000000;
    CyclicSchedule fast(Period::perSecond(999999), 0, 0);
    QCOMPARE(fast.skipTo(tenYearsNs), std::uint64_t{10} * 365 * 86400 * 999999);
    CyclicSchedule microsecond(Period::everyUs(1), 0, 0);
    QCOMPARE(microsecond.skipTo(tenYearsNs), tenYearsNs / 1000);
}

X9_PLAIN_TEST(tst_CyclicSchedule)
#include "tst_CyclicSchedule.moc"
