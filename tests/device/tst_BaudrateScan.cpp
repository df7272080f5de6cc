#include "device/BaudrateScan.h"

#include "device/CANBaudrate.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

#include <algorithm>

namespace {

/// When a channel begins to receive.
struct Heard
{
    int step = -1; ///< 0 to 53, -1: never
    int tick = 0;  ///< 0 to 15
};

struct Run
{
    QStringList reports; ///< "can1 can2 index dataRate"
    int ticks = 0;
};

QString text(const BaudrateScanReport &report)
{
    return QStringLiteral("%1 %2 %3 %4").arg(report.can1).arg(report.can2).arg(report.index).arg(report.dataRate);
}

/// A whole scan of which channel 0 and 1 hear something at the given times.
Run scanned(BaudrateScan scan, Heard first, Heard second)
{
    const Heard heard[] = {first, second};
    Run run;
    for (bool isEnd = false; !isEnd && run.ticks < 1000; ++run.ticks) {
        const int step = scan.dataRate() * BaudrateScan::BitRateCount + scan.index() - 1;
        for (quint8 ch = 0; ch < ChannelsPerDevice; ++ch) {
            if (scan.isToBeTried(ch) && step == heard[ch].step && run.ticks % 16 >= heard[ch].tick) {
                scan.setFound(ch);
            }
        }
        const BaudrateScan::Outcome outcome = scan.endTick();
        if (outcome.report) {
            run.reports.append(text(*outcome.report));
        }
        isEnd = outcome.isEnd;
    }
    return run;
}

/// The report of a step with what is said of the two channels: "2 2" at step 10 is "2 2 2 1".
QString report(const char *channels, int step)
{
    return QStringLiteral("%1 %2 %3").arg(QString::fromLatin1(channels)).arg(step % 9 + 1).arg(step / 9);
}

QStringList reports(const char *channels, int firstStep, int endStep)
{
    QStringList list;
    for (int step = firstStep; step < endStep; ++step) {
        list.append(report(channels, step));
    }
    return list;
}

} // namespace

Q_DECLARE_METATYPE(Heard)

class tst_BaudrateScan : public QObject
{
    Q_OBJECT

private slots:
    static void triesTheRatesFrom1000kTo10k();
    static void stepsHaveSixteenTicks();
    static void findsNothing();
    static void findsBothAtOnce_data();
    static void findsBothAtOnce();
    static void findsOneAfterTheOther_data();
    static void findsOneAfterTheOther();
    static void findsOnlyOne_data();
    static void findsOnlyOne();
    static void channelInUseIsNotTried_data();
    static void channelInUseIsNotTried();
    static void channelTakenMeanwhile();
    static void refusedChannelIsTriedAtTheNextStep();
};

void tst_BaudrateScan::triesTheRatesFrom1000kTo10k()
{
    QCOMPARE(canBaudrates().at(BaudrateScan().index()).name, QStringLiteral("1000k bps"));
    QCOMPARE(canBaudrates().at(BaudrateScan::BitRateCount).name, QStringLiteral("10k bps"));
}

void tst_BaudrateScan::stepsHaveSixteenTicks()
{
    BaudrateScan scan;
    for (int tick = 0; tick < 16; ++tick) {
        QCOMPARE(scan.isFirstTick(), tick == 0);
        QCOMPARE(int(scan.index()), 1);
        const BaudrateScan::Outcome outcome = scan.endTick();
        QCOMPARE(outcome.report.has_value(), tick == 15);
        QVERIFY(!outcome.isEnd);
    }
    QVERIFY(scan.isFirstTick());
    QCOMPARE(int(scan.index()), 2);
    QCOMPARE(int(scan.dataRate()), 0);
}

void tst_BaudrateScan::findsNothing()
{
    const Run run = scanned(BaudrateScan(), {}, {});
    QCOMPARE(run.reports.size(), 54);
    QCOMPARE(run.reports, reports("2 2", 0, 54));
    QCOMPARE(run.reports.first(), QStringLiteral("2 2 1 0"));
    QCOMPARE(run.reports.at(8), QStringLiteral("2 2 9 0"));
    QCOMPARE(run.reports.at(9), QStringLiteral("2 2 1 1"));
    QCOMPARE(run.reports.last(), QStringLiteral("2 2 9 5"));
    QCOMPARE(run.ticks, 54 * 16);
}

void tst_BaudrateScan::findsBothAtOnce_data()
{
    QTest::addColumn<int>("step");
    QTest::addColumn<int>("tick");
    for (const int step : {0, 1, 8, 9, 26, 53}) {
        for (const int tick : {0, 1, 14, 15}) {
            QTest::addRow("step %d, tick %d", step, tick) << step << tick;
        }
    }
}

void tst_BaudrateScan::findsBothAtOnce()
{
    QFETCH(int, step);
    QFETCH(int, tick);
    const Run run = scanned(BaudrateScan(), {step, tick}, {step, tick});
    QCOMPARE(run.reports, reports("2 2", 0, step) + reports("1 1", step, step + 1));
    QCOMPARE(run.ticks, step * 16 + tick + 1);
}

void tst_BaudrateScan::findsOneAfterTheOther_data()
{
    QTest::addColumn<Heard>("first");
    QTest::addColumn<Heard>("second");
    QTest::addColumn<QStringList>("expected");
    const QStringList upToStep3 = reports("2 2", 0, 3);
    QTest::newRow("within a step") << Heard{3, 0} << Heard{3, 15} << upToStep3 + reports("1 1", 3, 4);
    QTest::newRow("at the next step") << Heard{3, 5} << Heard{4, 2}
                                      << upToStep3 + reports("1 2", 3, 4) + reports("0 1", 4, 5);
    QTest::newRow("channel 1 before") << Heard{4, 2} << Heard{3, 15}
                                      << upToStep3 + reports("2 1", 3, 4) + reports("1 0", 4, 5);
    QTest::newRow("several steps later") << Heard{3, 0} << Heard{20, 15}
                                         << upToStep3 + reports("1 2", 3, 4) + reports("0 2", 4, 20) +
                                                reports("0 1", 20, 21);
}

void tst_BaudrateScan::findsOneAfterTheOther()
{
    QFETCH(Heard, first);
    QFETCH(Heard, second);
    QFETCH(QStringList, expected);
    const Run run = scanned(BaudrateScan(), first, second);
    QCOMPARE(run.reports, expected);
    const Heard last =
        std::max(first, second, [](Heard a, Heard b) { return a.step * 16 + a.tick < b.step * 16 + b.tick; });
    QCOMPARE(run.ticks, last.step * 16 + last.tick + 1);
}

void tst_BaudrateScan::findsOnlyOne_data()
{
    QTest::addColumn<int>("channel");
    QTest::addColumn<int>("step");
    QTest::newRow("channel 0 at once") << 0 << 0;
    QTest::newRow("channel 1 at the last step") << 1 << 53;
    QTest::newRow("channel 1 with a data rate") << 1 << 30;
}

void tst_BaudrateScan::findsOnlyOne()
{
    QFETCH(int, channel);
    QFETCH(int, step);
    const Heard heard{step, 7};
    const Run run = scanned(BaudrateScan(), channel == 0 ? heard : Heard(), channel == 1 ? heard : Heard());
    const char *now = channel == 0 ? "1 2" : "2 1";
    const char *before = channel == 0 ? "0 2" : "2 0";
    QCOMPARE(run.reports, reports("2 2", 0, step) + reports(now, step, step + 1) + reports(before, step + 1, 54));
    QCOMPARE(run.ticks, 54 * 16);
}

void tst_BaudrateScan::channelInUseIsNotTried_data()
{
    QTest::addColumn<int>("channel");
    QTest::newRow("channel 0") << 0;
    QTest::newRow("channel 1") << 1;
}

void tst_BaudrateScan::channelInUseIsNotTried()
{
    QFETCH(int, channel);
    BaudrateScan scan;
    scan.setInUse(channel == 0 ? 0b01 : 0b10);
    QCOMPARE(scan.isToBeTried(0), channel != 0);
    QCOMPARE(scan.isToBeTried(1), channel != 1);
    QVERIFY(!scan.areAllInUse());
    const Run run = scanned(scan, {2, 0}, {2, 0});
    QCOMPARE(run.reports, reports("2 2", 0, 2) + reports(channel == 0 ? "2 1" : "1 2", 2, 3) +
                              reports(channel == 0 ? "2 0" : "0 2", 3, 54));
}

void tst_BaudrateScan::channelTakenMeanwhile()
{
    BaudrateScan scan;
    scan.endTick();
    scan.setInUse(0b10);
    QVERIFY(scan.isToBeTried(0) && !scan.isToBeTried(1));
    QVERIFY(!scan.areAllInUse());
    scan.setInUse(0b01);
    QVERIFY(!scan.isToBeTried(0));
    QVERIFY(scan.areAllInUse());
}

void tst_BaudrateScan::refusedChannelIsTriedAtTheNextStep()
{
    BaudrateScan scan;
    scan.setRefused(0);
    for (int tick = 0; tick < 16; ++tick) {
        QVERIFY(!scan.isToBeTried(0));
        QVERIFY(scan.isToBeTried(1));
        const BaudrateScan::Outcome outcome = scan.endTick();
        QCOMPARE(outcome.report ? text(*outcome.report) : QString(), tick < 15 ? QString() : QStringLiteral("2 2 1 0"));
    }
    QVERIFY(scan.isToBeTried(0));
}

X9_PLAIN_TEST(tst_BaudrateScan)
#include "tst_BaudrateScan.moc"
