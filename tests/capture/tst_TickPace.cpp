#include "capture/TickPace.h"

#include <QtTest>
#include <QVector>

#include <random>

namespace {
constexpr qint64 Ms = 1000000;
constexpr qint64 Hour = 3600 * 1000 * Ms;
} // namespace

Q_DECLARE_METATYPE(QVector<bool>)

class tst_TickPace : public QObject
{
    Q_OBJECT

private slots:
    void accepts_data();
    void accepts();
    void keepsTheAverageUnderJitter();
    void keepsTheAverageOfAFastTimer();
    void startsAnew();
};

void tst_TickPace::accepts_data()
{
    QTest::addColumn<qint64>("interval");
    QTest::addColumn<QVector<qint64>>("ticks");
    QTest::addColumn<QVector<bool>>("accepted");

    using Ticks = QVector<qint64>;
    using Answers = QVector<bool>;
    QTest::newRow("on time") << 10 * Ms << Ticks{10 * Ms, 20 * Ms, 30 * Ms} << Answers{true, true, true};
    QTest::newRow("jitter in both directions")
        << 10 * Ms << Ticks{6 * Ms, 24 * Ms, 27 * Ms, 44 * Ms} << Answers{true, true, true, true};
    QTest::newRow("half an interval early counts") << 10 * Ms << Ticks{5 * Ms} << Answers{true};
    QTest::newRow("earlier does not") << 10 * Ms << Ticks{5 * Ms - 1, 10 * Ms} << Answers{false, true};
    QTest::newRow("one late tick does not shift the next")
        << 10 * Ms << Ticks{10 * Ms, 29 * Ms, 30 * Ms, 40 * Ms} << Answers{true, true, true, true};
    QTest::newRow("late by a whole interval, and one queued behind")
        << 10 * Ms << Ticks{10 * Ms, 30 * Ms, 30 * Ms, 40 * Ms} << Answers{true, true, false, true};
    QTest::newRow("ten ticks at once") << 10 * Ms
                                       << Ticks{10 * Ms,  115 * Ms, 115 * Ms, 115 * Ms, 115 * Ms, 115 * Ms, 115 * Ms,
                                                115 * Ms, 115 * Ms, 115 * Ms, 115 * Ms, 125 * Ms, 135 * Ms}
                                       << Answers{true,  true,  false, false, false, false, false,
                                                  false, false, false, false, true,  true};
    QTest::newRow("a timer that keeps its own schedule after a delay")
        << 10 * Ms << Ticks{79 * Ms, 80 * Ms, 90 * Ms, 100 * Ms} << Answers{true, false, true, true};
    QTest::newRow("an hour asleep") << 10 * Ms << Ticks{10 * Ms, Hour, Hour, Hour + 10 * Ms, Hour + 20 * Ms}
                                    << Answers{true, true, false, true, true};
    QTest::newRow("1 ms") << Ms << Ticks{Ms, 2 * Ms, 2 * Ms + Ms / 4, 3 * Ms} << Answers{true, true, false, true};
    QTest::newRow("65535 ms") << 65535 * Ms << Ticks{65535 * Ms, 65536 * Ms, 131070 * Ms, 24 * Hour, 24 * Hour}
                              << Answers{true, false, true, true, false};
}

void tst_TickPace::accepts()
{
    QFETCH(qint64, interval);
    QFETCH(QVector<qint64>, ticks);
    constexpr qint64 Start = 7 * Hour;
    TickPace pace;
    pace.start(Start, interval);
    QVector<bool> accepted;
    for (const qint64 tick : std::as_const(ticks)) {
        accepted.append(pace.accept(Start + tick));
    }
    QTEST(accepted, "accepted");
}

void tst_TickPace::keepsTheAverageUnderJitter()
{
    constexpr int Ticks = 10000;
    std::mt19937 random(1);
    std::uniform_int_distribution<qint64> jitter(0, Ms - 1);
    TickPace pace;
    pace.start(0, Ms);
    int accepted = 0;
    for (qint64 tick = 1; tick <= Ticks; ++tick) {
        accepted += pace.accept(tick * Ms + jitter(random)) ? 1 : 0;
    }
    QCOMPARE(accepted, Ticks); // one for each interval, so the average is the interval
    QVERIFY(!pace.accept((Ticks + 1) * Ms - Ms / 2 - 1));
    QVERIFY(pace.accept((Ticks + 1) * Ms - Ms / 2));
}

/// A timer whose clock runs fast by a tenth of a percent: what comes too much is left out.
void tst_TickPace::keepsTheAverageOfAFastTimer()
{
    constexpr int Ticks = 10010;
    TickPace pace;
    pace.start(0, Ms);
    int accepted = 0;
    for (qint64 tick = 1; tick <= Ticks; ++tick) {
        accepted += pace.accept(tick * (Ms - Ms / 1000)) ? 1 : 0;
    }
    QCOMPARE(accepted, 10000);
}

void tst_TickPace::startsAnew()
{
    TickPace pace;
    pace.start(0, Ms);
    QVERIFY(pace.accept(Ms));
    pace.start(Ms + 1, 5 * Ms);
    QVERIFY(!pace.accept(2 * Ms));
    QVERIFY(pace.accept(6 * Ms));
}

QTEST_APPLESS_MAIN(tst_TickPace)
#include "tst_TickPace.moc"
