#include "exchange/DeviceTimes.h"

#include "tests/support/TestProgram.h"

#include <QtTest>

namespace {

constexpr qint64 Ms = 1000000;

BusFrame frame(qint64 ms, qint64 deviceMs, quint16 channel = 0)
{
    BusFrame made;
    made.time = ms * Ms;
    made.deviceTime = deviceMs < 0 ? BusFrame::NoTime : deviceMs * Ms;
    made.channel = channel;
    return made;
}

} // namespace

class tst_DeviceTimes : public QObject
{
    Q_OBJECT

private slots:
    static void times();
};

void tst_DeviceTimes::times()
{
    DeviceTimes times;
    const auto applied = [&times](BusFrame made) {
        times.apply(made);
        return made.time / Ms;
    };
    QCOMPARE(applied(frame(1000, 50)), 1000);
    QCOMPARE(applied(frame(1000, 53)), 1003);
    QCOMPARE(applied(frame(1001, -1)), 1001);
    QCOMPARE(applied(frame(1250, 240)), 1190);
    QCOMPARE(applied(frame(5000, 10, 1)), 5000);
    QCOMPARE(applied(frame(5000, 12, 1)), 5002);
    // Started anew: an hour later, the stamps begin again.
    QCOMPARE(applied(frame(3601000, 5)), 3601000);
    QCOMPARE(applied(frame(3601000, 7)), 3601002);
    BusFrame noTime = frame(0, 5);
    noTime.time = BusFrame::NoTime;
    times.apply(noTime);
    QCOMPARE(noTime.time, BusFrame::NoTime);
}

X9_PLAIN_TEST(tst_DeviceTimes)
#include "tst_DeviceTimes.moc"
