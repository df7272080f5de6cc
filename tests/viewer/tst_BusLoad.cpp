#include "tests/support/TestProgram.h"
#include "tests/viewer/ViewerFrames.h"
#include "viewer/core/BusLoad.h"

#include <QtTest>

#include <numeric>

class tst_BusLoad : public QObject
{
    Q_OBJECT

private slots:
    static void busTimeOfFrames_data();
    static void busTimeOfFrames();
    static void loadOverTime();
    static void wildTimes();
};

void tst_BusLoad::busTimeOfFrames_data()
{
    QTest::addColumn<int>("flags");
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("stuffing");
    QTest::addColumn<double>("microseconds"); // at 1 Mbit/s, data 4 Mbit/s, LIN 10 kbit/s
    const auto row = [](const char *name, int flags, int length, BitStuffing stuffing, double microseconds) {
        QTest::newRow(name) << flags << length << int(stuffing) << microseconds;
    };
    // The lengths that are known of classical frames: 47 + 8 n and 67 + 8 n bits, at most 135 and 160 with 8 bytes.
    row("empty", 0, 0, BitStuffing::None, 47);
    row("8 bytes", 0, 8, BitStuffing::None, 111);
    row("8 bytes, most", 0, 8, BitStuffing::Most, 135);
    row("8 bytes, random", 0, 8, BitStuffing::Random, 111 + 98.0 / 31);
    row("extended", BusFrame::Extended, 8, BitStuffing::None, 131);
    row("extended, most", BusFrame::Extended, 8, BitStuffing::Most, 160);
    row("remote", BusFrame::Remote, 8, BitStuffing::None, 47);
    row("error", BusFrame::Error, 8, BitStuffing::None, 20);
    row("FD without switch", BusFrame::Fd, 8, BitStuffing::None, 30 + 69 + 27);
    row("FD", BusFrame::Fd | BusFrame::BitRateSwitch, 16, BitStuffing::None, 30 + (133 + 27) / 4.0);
    row("FD, long", BusFrame::Fd | BusFrame::BitRateSwitch, 64, BitStuffing::None, 30 + (517 + 32) / 4.0);
    row("FD, extended, most", BusFrame::Fd | BusFrame::Extended | BusFrame::BitRateSwitch, 64, BitStuffing::Most,
        49 + 8 + (517 + 129 + 32) / 4.0);
    row("LIN", BusFrame::Lin, 8, BitStuffing::Most, 12400);
}

void tst_BusLoad::busTimeOfFrames()
{
    QFETCH(const int, flags);
    QFETCH(const int, length);
    QFETCH(const int, stuffing);
    QFETCH(const double, microseconds);
    const BusBitRates rates{1000000, 4000000, 10000};
    QCOMPARE(busTime(static_cast<quint16>(flags), length, rates, static_cast<BitStuffing>(stuffing)),
             microseconds * 1000);
}

void tst_BusLoad::loadOverTime()
{
    constexpr qint64 Ms = 1000000;
    const BusBitRates rates{470000, 470000, 0};
    std::vector<BusFrame> frames; // each takes 100 us
    frames.reserve(9);
    for (int i = 0; i < 5; ++i) {
        frames.push_back(canFrame(100 * Ms + i * Ms / 10, 1));
    }
    frames.push_back(canFrame(BusFrame::NoTime, 1));
    frames.push_back(canFrame(102 * Ms, 1));
    frames.push_back(canFrame(101 * Ms, 1)); // jumped back
    frames.push_back(canFrame(0, 1));
    frames.back().channel = 1;
    BusFrameStore store;
    fill(store, frames);
    const std::atomic<bool> stop{false};
    const BusLoad load = busLoad(store, 0, Ms, rates, BitStuffing::None, stop);
    QCOMPARE(load.start, 100 * Ms);
    QCOMPARE(load.width, Ms);
    QCOMPARE(load.load.size(), std::size_t(3));
    QCOMPARE(load.load[0], 0.5);
    QCOMPARE(load.load[1], 0.1);
    QCOMPARE(load.load[2], 0.1);
    QVERIFY(busLoad(store, 2, Ms, rates, BitStuffing::None, stop).load.empty());
}

void tst_BusLoad::wildTimes()
{
    constexpr qint64 Most = std::numeric_limits<qint64>::max();
    BusFrameStore store;
    fill(store, {canFrame(-Most, 1), canFrame(Most, 1)});
    const std::atomic<bool> stop{false};
    const BusLoad load = busLoad(store, 0, 1, {}, BitStuffing::None, stop);
    QVERIFY(load.load.size() <= std::size_t(MaxBusLoadValues) + 1);
    QVERIFY(load.load.front() > 0 && load.load.back() > 0);
    QVERIFY(load.width > 0);
}

X9_PLAIN_TEST(tst_BusLoad)
#include "tst_BusLoad.moc"
