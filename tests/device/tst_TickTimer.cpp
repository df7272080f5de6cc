#include "device/TickTimer.h"
#include "tests/support/TestProgram.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <QtTest>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>
#include <vector>

class tst_TickTimer : public QObject
{
    Q_OBJECT

private slots:
    void ticksUntilItIsStopped();
    void stopsWithinATick();
    void startsAnewWithAnotherInterval();
    void makesUpForADelay();
    void dropsWhatASlowTickHeldUp();
    void changesTheIntervalWithinATick();
    void takesAShorterIntervalAtOnce();
    void ticksWithoutADescriptor();
};

void tst_TickTimer::ticksUntilItIsStopped()
{
    TickTimer timer;
    int ticks = 0;
    connect(&timer, &TickTimer::sig_tick, this, [&ticks] { ++ticks; });
    QVERIFY(!timer.isActive());
    timer.start(1);
    QVERIFY(timer.isActive());
    QTRY_VERIFY(ticks >= 10);
    timer.stop();
    QVERIFY(!timer.isActive());
    const int before = ticks;
    TickTimer other; // has ticked meanwhile
    int otherTicks = 0;
    connect(&other, &TickTimer::sig_tick, this, [&otherTicks] { ++otherTicks; });
    other.start(1);
    QTRY_VERIFY(otherTicks >= 10);
    QCOMPARE(ticks, before);
}

void tst_TickTimer::stopsWithinATick()
{
    TickTimer timer;
    int ticks = 0;
    connect(&timer, &TickTimer::sig_tick, this, [&] {
        ++ticks;
        timer.stop();
    });
    timer.start(1);
    QTRY_COMPARE(ticks, 1);
    timer.start(1);
    QTRY_COMPARE(ticks, 2);
    QVERIFY(!timer.isActive());
}

void tst_TickTimer::startsAnewWithAnotherInterval()
{
    TickTimer timer;
    TickTimer reference;
    int ticks = 0;
    int references = 0;
    connect(&timer, &TickTimer::sig_tick, this, [&ticks] { ++ticks; });
    connect(&reference, &TickTimer::sig_tick, this, [&references] { ++references; });
    timer.start(65535);
    reference.start(1);
    QTRY_VERIFY(references >= 5);
    QCOMPARE(ticks, 0);
    timer.start(1);
    QTRY_VERIFY(ticks >= 5);
    timer.start(65535);
    const int before = ticks;
    references = 0;
    QTRY_VERIFY(references >= 5);
    QCOMPARE(ticks, before);
}

/// The event loop is held up from the first tick (20 ms) until just before the fourth (80 ms): the second and third
/// come late, one by one, and the sixth comes at its time.
void tst_TickTimer::makesUpForADelay()
{
    constexpr int IntervalMs = 20;
    TickTimer timer;
    QElapsedTimer clock;
    std::vector<qint64> ticks;
    connect(&timer, &TickTimer::sig_tick, this, [&] {
        ticks.push_back(clock.elapsed());
        while (ticks.size() == 1 && clock.elapsed() < 4 * IntervalMs - 2) {
        }
    });
    QEventLoop loop; // runs on without the pauses of the test's own waiting
    connect(&timer, &TickTimer::sig_tick, &loop, [&] {
        if (ticks.size() == 50) {
            loop.quit();
        }
    });
    QTimer::singleShot(10000, &loop, &QEventLoop::quit);
    clock.start();
    timer.start(IntervalMs);
    loop.exec();
    QCOMPARE(ticks.size(), std::size_t(50));
    QVERIFY(ticks.at(1) >= 4 * IntervalMs - 2);
    QVERIFY2(ticks.at(2) - ticks.at(1) >= IntervalMs / 4, qPrintable(QString::number(ticks.at(2) - ticks.at(1))));
    // None is missing: without making up, two would be.
    QVERIFY2(ticks.back() < 51 * IntervalMs + IntervalMs / 2, qPrintable(QString::number(ticks.back())));
}

/// Not made up for: of the ticks that the first one holds up, one comes at once, the others never.
void tst_TickTimer::dropsWhatASlowTickHeldUp()
{
    constexpr int IntervalMs = 10;
    constexpr int SlowMs = 95;
    TickTimer timer;
    timer.setMakingUp(false);
    QElapsedTimer clock;
    std::vector<qint64> ticks;
    QEventLoop loop;
    connect(&timer, &TickTimer::sig_tick, this, [&] {
        const qint64 begin = clock.elapsed();
        ticks.push_back(begin);
        while (ticks.size() == 1 && clock.elapsed() - begin < SlowMs) {
        }
        if (ticks.size() == 5) {
            loop.quit();
        }
    });
    QTimer::singleShot(10000, &loop, &QEventLoop::quit);
    clock.start();
    timer.start(IntervalMs);
    loop.exec();
    QCOMPARE(ticks.size(), std::size_t(5));
    // Three whole intervals; made up for, they would be halves.
    QVERIFY2(ticks.back() - ticks.at(1) >= 3 * IntervalMs - IntervalMs / 2,
             qPrintable(QString::number(ticks.back() - ticks.at(1))));
}

/// 1, 2, 1, 2... ms: the delays of the ticks do not add up.
void tst_TickTimer::changesTheIntervalWithinATick()
{
    constexpr int Ticks = 200;
    TickTimer timer;
    TickTimer reference;
    int ticks = 0;
    int references = 0;
    QEventLoop loop;
    connect(&reference, &TickTimer::sig_tick, this, [&references] { ++references; });
    connect(&timer, &TickTimer::sig_tick, this, [&] {
        ++ticks;
        timer.setInterval(ticks % 2 == 0 ? 1 : 2);
        if (ticks == Ticks) {
            timer.stop();
            timer.setInterval(1); // changes nothing in a stopped timer
            loop.quit();
        }
    });
    QTimer::singleShot(10000, &loop, &QEventLoop::quit);
    timer.start(1);
    reference.start(3);
    loop.exec();
    QCOMPARE(ticks, Ticks);
    QVERIFY(!timer.isActive());
    QVERIFY2(std::abs(references - Ticks / 2) <= 2, qPrintable(QString::number(references)));
    QTRY_VERIFY(references >= Ticks / 2 + 5);
    QCOMPARE(ticks, Ticks);
}

void tst_TickTimer::takesAShorterIntervalAtOnce()
{
    TickTimer timer;
    int ticks = 0;
    connect(&timer, &TickTimer::sig_tick, this, [&ticks] { ++ticks; });
    timer.start(60000);
    timer.setInterval(1);
    QTRY_VERIFY(ticks >= 5);
}

void tst_TickTimer::ticksWithoutADescriptor()
{
    rlimit limit{};
    QCOMPARE(getrlimit(RLIMIT_NOFILE, &limit), 0);
    const rlimit none{1, limit.rlim_max};
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &none), 0);
    TickTimer timer;
    const int descriptor = open("/dev/null", O_RDONLY | O_CLOEXEC);
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &limit), 0);
    QCOMPARE(descriptor, -1); // there was none to be had

    int ticks = 0;
    connect(&timer, &TickTimer::sig_tick, this, [&ticks] { ++ticks; });
    timer.start(1);
    QTRY_VERIFY(ticks >= 5);
    timer.stop();
    const int before = ticks;
    TickTimer other;
    int otherTicks = 0;
    connect(&other, &TickTimer::sig_tick, this, [&otherTicks] { ++otherTicks; });
    other.start(1);
    QTRY_VERIFY(otherTicks >= 5);
    QCOMPARE(ticks, before);
}

X9_CORE_TEST(tst_TickTimer)
#include "tst_TickTimer.moc"
