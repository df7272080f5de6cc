#include "device/TickTimer.h"
#include "tests/support/TestProgram.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QPair>
#include <QTimer>
#include <QtTest>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

class tst_TickTimer : public QObject
{
    Q_OBJECT

private slots:
    void ticksUntilItIsStopped();
    void stopsWithinATick();
    void startsAnewWithAnotherInterval();
    static void makesUpForADelay();
    static void dropsWhatASlowTickHeldUp();
    static void waitsAfterEachTick();
    void ticksWithoutADescriptor();

private:
    static constexpr int HoldUps = 5;
    static constexpr int TicksBetween = 10;
    static constexpr int TicksBesides = HoldUps * TicksBetween + TicksBetween;

    static QPair<int, int> tickBesides(bool isMakingUp);
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

/// Two timers of one interval on an event loop that is held up for several of them, again and again. The one that makes
/// up for that gets ahead of the other one by about as many ticks each time. Of one kind, they would differ by one each
/// time. When the ticks come in between is TickPace's, and tested there.
void tst_TickTimer::makesUpForADelay()
{
    const auto counts = tickBesides(true);
    QCOMPARE(counts.first, TicksBesides);
    QVERIFY2(counts.second <= TicksBesides - 2 * HoldUps, qPrintable(QString::number(counts.second)));
}

/// The other way round: of the ticks that are held up, one comes at once, the others never.
void tst_TickTimer::dropsWhatASlowTickHeldUp()
{
    const auto counts = tickBesides(false);
    QCOMPARE(counts.first, TicksBesides);
    QVERIFY2(counts.second >= TicksBesides + 2 * HoldUps, qPrintable(QString::number(counts.second)));
}

/// The ticks of a timer, TicksBesides of them, and those of one beside it, which does not make up for a delay where the
/// timer does and the other way round. The timer's ticks are what takes so long.
QPair<int, int> tst_TickTimer::tickBesides(bool isMakingUp)
{
    constexpr int IntervalMs = 1;
    constexpr int SlowMs = 5 * IntervalMs;
    TickTimer timer;
    TickTimer other;
    timer.setMakingUp(isMakingUp);
    other.setMakingUp(!isMakingUp);
    int ticks = 0;
    int others = 0;
    QEventLoop loop; // runs on without the pauses of the test's own waiting
    connect(&other, &TickTimer::sig_tick, &loop, [&others] { ++others; });
    connect(&timer, &TickTimer::sig_tick, &loop, [&] {
        ++ticks;
        QElapsedTimer clock;
        clock.start();
        while (ticks <= HoldUps * TicksBetween && ticks % TicksBetween == 1 && clock.elapsed() < SlowMs) {
        }
        if (ticks == TicksBesides) {
            loop.quit();
        }
    });
    QTimer::singleShot(10000, &loop, &QEventLoop::quit);
    timer.start(IntervalMs);
    other.start(IntervalMs);
    loop.exec();
    return {ticks, others};
}

/// Started anew within each tick, it keeps every wait whole: none makes up for the one before, however slow the ticks.
void tst_TickTimer::waitsAfterEachTick()
{
    constexpr int Ticks = 20;
    constexpr int WaitMs = 3;
    constexpr qint64 WaitNs = WaitMs * Q_INT64_C(1000000);
    TickTimer timer;
    QElapsedTimer sinceTick;
    int ticks = 0;
    int tooShort = 0;
    QEventLoop loop; // runs on without the pauses of the test's own waiting
    connect(&timer, &TickTimer::sig_tick, &loop, [&] {
        tooShort += sinceTick.nsecsElapsed() < WaitNs ? 1 : 0;
        QElapsedTimer clock;
        clock.start();
        while (ticks % 2 == 0 && clock.nsecsElapsed() < 2 * WaitNs) {
        }
        if (++ticks == Ticks) {
            loop.quit();
        }
        sinceTick.start();
        timer.start(WaitMs);
    });
    QTimer::singleShot(10000, &loop, &QEventLoop::quit);
    sinceTick.start();
    timer.start(WaitMs);
    loop.exec();
    QCOMPARE(ticks, Ticks);
    QCOMPARE(tooShort, 0);
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
