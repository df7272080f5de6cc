#include "tests/adapter/AdapterBench.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

#include <algorithm>
#include <cstring>

namespace {

constexpr std::uint32_t Type = AdapterDeviceType;

/// Three devices on one bus: two with CAN FD, one classic; nodes are put in for %1, bus keys for %2.
QByteArray oneBus(const QByteArray &nodes, const QByteArray &busKeys = {}, const QByteArray &rootKeys = {})
{
    return "{" + rootKeys + "'buses': [{'name': 'b', " + busKeys + " 'nodes': [" + nodes +
           "]}], 'devices': [{'model': 'X9FC-1', 'can': [{'bus': 'b'}, {'bus': 'b'}]},"
           "{'model': 'X9FC-2', 'can': [{'bus': 'b'}, {}]}, {'model': 'X9EC-3', 'can': [{'bus': 'b'}]}]}";
}

template<class Record>
std::vector<std::uint32_t> idsOf(const std::vector<Record> &frames)
{
    std::vector<std::uint32_t> ids;
    std::transform(frames.begin(), frames.end(), std::back_inserter(ids), [](const Record &f) { return f.ID; });
    return ids;
}

bool sameBytes(const std::vector<VCI_CAN_OBJ> &a, const std::vector<VCI_CAN_OBJ> &b)
{
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(VCI_CAN_OBJ)) == 0;
}

} // namespace

class tst_VirtualAdapterCan : public QObject
{
    Q_OBJECT

private slots:
    static void exactNumberOfFramesInTime_data();
    static void exactNumberOfFramesInTime();
    static void countersAreGapless();
    static void framesOfAllNodesComeInTheOrderOfTime();
    static void everyChannelGetsTheSameOrder();
    static void nodeFieldsArrive();
    static void fdNodeFieldsArrive();
    static void timeStampsCountFromStart();
    static void olderTrafficIsNotDelivered();
    static void startNeedsInit();
    static void startAgainChangesNothing();
    static void initStopsAndClears();
    static void resetStopsAndClears();
    static void clearBufferDropsWhatWaits();
    static void wrongTimingSeesAndSendsNothing_data();
    static void wrongTimingSeesAndSendsNothing();
    static void unconnectedChannelSeesNothing();
    static void classicChannelOnFdBusSeesClassicFramesOnly();
    static void fdChannelSeesBothKinds();
    static void fdOnlyBusIsSilentForClassicChannels();
    static void classicModelRefusesFd();
    static void entriesOfTheOtherKindAnswerNothing();
    static void acceptanceFilterIsApplied();
    static void listenOnlySendsNothing();
    static void sentFramesReachEveryOtherChannel();
    static void sentFdFramesReachFdChannelsOnly();
    static void sendingOrderIsKeptBetweenCyclicFrames();
    static void impossibleFramesEndTheBatch_data();
    static void impossibleFramesEndTheBatch();
    static void impossibleFdFramesAreRefused_data();
    static void impossibleFdFramesAreRefused();
    static void requestIsAnsweredAfterTheDelay();
    static void requestMatchesTheIdentifierType();
    static void cyclicFramesAreAnsweredToo();
    static void repliesComeAfterCyclicFramesOfTheSameTime();
    static void repliesToRequestsThatNobodyHears();
    static void repliesAreNotTakenForRequests();
    static void tooManyRepliesAreDropped();
    static void receiveTakesNoMoreThanAsked();
    static void fullBufferKeepsTheOldestAndCounts();
    static void fullBufferTakesFramesAgainAfterReading();
    static void overflowIsCountedPerChannel();
    static void nobodyReadsForYears();
    static void dataFilterCannotMakeACallEndless();
    static void badArgumentsAreRefused();
    static void openAndClose();
    static void readInfoNeedsAnOpenDevice();
};

void tst_VirtualAdapterCan::exactNumberOfFramesInTime_data()
{
    QTest::addColumn<QByteArray>("node");
    QTest::addColumn<int>("milliseconds");
    QTest::addColumn<int>("frames");
    QTest::newRow("10 ms for 1 s") << QByteArray("'period_us': 10000") << 1000 << 100;
    QTest::newRow("37 us for 1 s") << QByteArray("'period_us': 37") << 1000 << 27027;
    QTest::newRow("27000 Hz for 1 s") << QByteArray("'rate_hz': 27000") << 1000 << 27000;
    QTest::newRow("27000 Hz for 7 s") << QByteArray("'rate_hz': 27000") << 7000 << 189000;
    QTest::newRow("1 us for 0.1 s") << QByteArray("'period_us': 1") << 100 << 100000;
    QTest::newRow("one period short") << QByteArray("'period_us': 1001") << 1 << 0;
    QTest::newRow("phase") << QByteArray("'period_us': 10000, 'phase_us': 5001") << 1000 << 99;
    QTest::newRow("hour") << QByteArray("'period_us': 3600000000") << 3600000 << 1;
}

void tst_VirtualAdapterCan::exactNumberOfFramesInTime()
{
    QFETCH(QByteArray, node);
    QFETCH(int, milliseconds);
    QFETCH(int, frames);
    AdapterBench whole(oneBus("{'id': 1, " + node + "}"));
    QVERIFY(whole.start(0, 0));
    whole.clock().advanceMs(static_cast<std::uint64_t>(milliseconds));
    QCOMPARE(whole.waiting(0, 0), static_cast<std::uint32_t>(frames));

    // The same when it is read in pieces.
    AdapterBench pieces(oneBus("{'id': 1, " + node + "}"));
    QVERIFY(pieces.start(0, 0));
    std::size_t count = 0;
    for (int i = 0; i < 100; ++i) {
        pieces.clock().advanceUs(static_cast<std::uint64_t>(milliseconds) * 10);
        count += pieces.receive(0, 0).size();
    }
    QCOMPARE(count, static_cast<std::size_t>(frames));
}

void tst_VirtualAdapterCan::countersAreGapless()
{
    AdapterBench bench(oneBus("{'id': 1, 'period_us': 37, 'payload': 'counting'}, {'id': 2, 'rate_hz': 9001}"));
    QVERIFY(bench.start(0, 0));
    std::array<std::uint64_t, 3> next{};
    for (int i = 0; i < 500; ++i) {
        bench.clock().advanceUs(static_cast<std::uint64_t>(i) * 7 + 1);
        for (const VCI_CAN_OBJ &frame : bench.receive(0, 0)) {
            QCOMPARE(counterOf(frame), next[frame.ID]++);
        }
    }
    const std::uint64_t elapsedUs = 7U * 499 * 500 / 2 + 500;
    QCOMPARE(next[1], elapsedUs / 37);
    QCOMPARE(next[2], elapsedUs * 9001 / 1000000);
}

void tst_VirtualAdapterCan::framesOfAllNodesComeInTheOrderOfTime()
{
    AdapterBench bench(oneBus("{'id': 3, 'period_us': 3000}, {'id': 2, 'period_us': 2000},"
                              "{'id': 5, 'period_us': 5000, 'phase_us': 1}, {'id': 6, 'period_us': 6000}"));
    QVERIFY(bench.start(0, 0));
    bench.clock().advanceMs(12);
    // due at (ms): 2 2 | 3 3 | 4 2 | 5.001 5 | 6 3,2,6 | 8 2 | 9 3 | 10 2 | 10.001 5 | 12 3,2,6
    const std::vector<std::uint32_t> expected = {2, 3, 2, 5, 3, 2, 6, 2, 3, 2, 5, 3, 2, 6};
    QCOMPARE(idsOf(bench.receive(0, 0)), expected);
}

void tst_VirtualAdapterCan::everyChannelGetsTheSameOrder()
{
    AdapterBench bench(oneBus("{'id': 3, 'period_us': 301}, {'id': 2, 'period_us': 200}, {'id': 7, 'period_us': 77}"));
    for (const auto &[dev, ch] : {std::pair<std::uint8_t, std::uint8_t>{0, 0}, {0, 1}, {1, 0}, {2, 0}}) {
        QVERIFY(bench.start(dev, ch));
    }
    std::vector<VCI_CAN_OBJ> received;
    for (int i = 0; i < 20; ++i) {
        bench.clock().advanceMs(1);
        const std::vector<VCI_CAN_OBJ> part = bench.receive(0, 0); // one reader goes ahead of the others
        received.insert(received.end(), part.begin(), part.end());
    }
    QVERIFY(received.size() > 400);
    QVERIFY(sameBytes(bench.receive(0, 1), received));
    QVERIFY(sameBytes(bench.receive(1, 0), received));
    QVERIFY(sameBytes(bench.receive(2, 0), received));
}

void tst_VirtualAdapterCan::nodeFieldsArrive()
{
    AdapterBench bench(
        oneBus("{'id': '0x7FF', 'period_us': 1000, 'data': '01 a2 FF'},"
               "{'id': '0x1FFFFFFF', 'extended': true, 'remote': true, 'length': 5, 'period_us': 2000}"));
    QVERIFY(bench.start(0, 0));
    bench.clock().advanceMs(2);
    const std::vector<VCI_CAN_OBJ> frames = bench.receive(0, 0);
    QCOMPARE(frames.size(), std::size_t{3});
    VCI_CAN_OBJ data{};
    data.ID = 0x7FF;
    data.TimeStamp = 1;
    data.TimeFlag = 1;
    data.DataLen = 3;
    data.Data[0] = 0x01;
    data.Data[1] = 0xA2;
    data.Data[2] = 0xFF;
    QCOMPARE(std::memcmp(frames.data(), &data, sizeof data), 0);
    VCI_CAN_OBJ remote{};
    remote.ID = 0x1FFFFFFF;
    remote.TimeStamp = 2;
    remote.TimeFlag = 1;
    remote.RemoteFlag = 1;
    remote.ExternFlag = 1;
    remote.DataLen = 5;
    QCOMPARE(std::memcmp(&frames[2], &remote, sizeof remote), 0);
}

void tst_VirtualAdapterCan::fdNodeFieldsArrive()
{
    AdapterBench bench(oneBus("{'id': 1, 'period_us': 1000, 'format': 'fd', 'length': 12},"
                              "{'id': 2, 'period_us': 1000, 'format': 'fd-brs', 'length': 64, 'extended': true},"
                              "{'id': 3, 'period_us': 1000, 'remote': true, 'length': 2}",
                              "'data_rate': 2,"));
    QVERIFY(bench.start(0, 0, AdapterBench::settings(2)));
    bench.clock().advanceMs(1);
    const std::vector<VCI_CANFD_OBJ> frames = bench.receiveFd(0, 0);
    QCOMPARE(frames.size(), std::size_t{3});
    QCOMPARE(int{frames[0].FDFlag}, 1);
    QCOMPARE(int{frames[0].DataLen}, 12);
    QCOMPARE(int{frames[0].Data[11]}, 11);
    QCOMPARE(int{frames[0].Data[12]}, 0);
    QCOMPARE(int{frames[1].FDFlag}, 2);
    QCOMPARE(int{frames[1].ExternFlag}, 1);
    QCOMPARE(int{frames[1].DataLen}, 64);
    QCOMPARE(int{frames[1].Data[63]}, 63);
    QCOMPARE(int{frames[1].TimeFlag}, 1);
    QCOMPARE(int{frames[2].FDFlag}, 0);
    QCOMPARE(int{frames[2].RemoteFlag}, 1);
    QCOMPARE(int{frames[2].DataLen}, 2);
}

void tst_VirtualAdapterCan::timeStampsCountFromStart()
{
    AdapterBench bench(oneBus("{'id': 1, 'period_us': 1500}"));
    bench.clock().advanceUs(750);
    QVERIFY(bench.start(0, 0));
    bench.clock().advanceMs(10);
    QVERIFY(bench.start(0, 1));
    bench.clock().advanceMs(10);
    std::vector<std::uint32_t> first;
    for (const VCI_CAN_OBJ &frame : bench.receive(0, 0)) {
        first.push_back(frame.TimeStamp);
    }
    // due at 1.5, 3.0, 4.5 ... ms on the bus, the channel started at 0.75
    const std::vector<std::uint32_t> expected = {0, 2, 3, 5, 6, 8, 9, 11, 12, 14, 15, 17, 18};
    QCOMPARE(first, expected);
    const std::vector<VCI_CAN_OBJ> second = bench.receive(0, 1); // started at 10.75: from 12.0 on
    QCOMPARE(second.size(), std::size_t{6});
    QCOMPARE(second.front().TimeStamp, 1U);
    QCOMPARE(second.back().TimeStamp, 8U);
}

void tst_VirtualAdapterCan::olderTrafficIsNotDelivered()
{
    AdapterBench bench(oneBus("{'id': 1, 'period_us': 1000}"));
    bench.clock().advanceMs(100);
    QVERIFY(bench.start(0, 0));
    QCOMPARE(bench.waiting(0, 0), 0U);
    bench.clock().advanceMs(1);
    const std::vector<VCI_CAN_OBJ> frames = bench.receive(0, 0);
    QCOMPARE(frames.size(), std::size_t{1});
    QCOMPARE(counterOf(frames[0]), std::uint64_t{100}); // the node has been counting all the time
    QCOMPARE(frames[0].TimeStamp, 1U);
}

void tst_VirtualAdapterCan::startNeedsInit()
{
    AdapterBench bench(oneBus({}));
    QCOMPARE(bench->openDevice(Type, 0), 1U);
    QCOMPARE(bench->startCan(Type, 0, 0), 0U);
    const VCI_INIT_CONFIG config = AdapterBench::settings();
    QCOMPARE(bench->initCan(Type, 0, 0, &config), 1U);
    QCOMPARE(bench->startCan(Type, 0, 0), 1U);
    QCOMPARE(bench->closeDevice(Type, 0), 1U);
    QCOMPARE(bench->openDevice(Type, 0), 1U);
    QCOMPARE(bench->startCan(Type, 0, 0), 0U); // closing forgets the settings
}

void tst_VirtualAdapterCan::startAgainChangesNothing()
{
    AdapterBench bench(oneBus("{'id': 1, 'period_us': 1000}"));
    QVERIFY(bench.start(0, 0));
    bench.clock().advanceMs(5);
    QCOMPARE(bench->startCan(Type, 0, 0), 1U);
    bench.clock().advanceMs(1);
    QCOMPARE(bench.receive(0, 0).back().TimeStamp, 6U);
}

void tst_VirtualAdapterCan::initStopsAndClears()
{
    AdapterBench bench(oneBus("{'id': 1, 'period_us': 1000}"));
    QVERIFY(bench.start(0, 0));
    bench.clock().advanceMs(5);
    const VCI_INIT_CONFIG config = AdapterBench::settings();
    QCOMPARE(bench->initCan(Type, 0, 0, &config), 1U);
    QCOMPARE(bench.waiting(0, 0), 0U);
    bench.clock().advanceMs(5);
    QCOMPARE(bench.waiting(0, 0), 0U);
    QCOMPARE(bench->startCan(Type, 0, 0), 1U);
    bench.clock().advanceMs(5);
    const std::vector<VCI_CAN_OBJ> frames = bench.receive(0, 0);
    QCOMPARE(frames.size(), std::size_t{5});
    QCOMPARE(frames[0].TimeStamp, 1U);
}

void tst_VirtualAdapterCan::resetStopsAndClears()
{
    AdapterBench bench(oneBus("{'id': 1, 'period_us': 1000}"));
    QVERIFY(bench.start(0, 0));
    bench.clock().advanceMs(5);
    QCOMPARE(bench->resetCan(Type, 0, 0), 1U);
    bench.clock().advanceMs(5);
    QCOMPARE(bench.waiting(0, 0), 0U);
    QCOMPARE(bench.send(0, 0, classicFrame(1)), 0U);
    QCOMPARE(bench->startCan(Type, 0, 0), 1U); // the settings stay
    bench.clock().advanceMs(5);
    QCOMPARE(bench.waiting(0, 0), 5U);
}

void tst_VirtualAdapterCan::clearBufferDropsWhatWaits()
{
    AdapterBench bench(oneBus("{'id': 1, 'period_us': 1000}"));
    QVERIFY(bench.start(0, 0));
    bench.clock().advanceMs(5);
    QCOMPARE(bench->clearBuffer(Type, 0, 0), 1U);
    QCOMPARE(bench.waiting(0, 0), 0U);
    bench.clock().advanceMs(2);
    const std::vector<VCI_CAN_OBJ> frames = bench.receive(0, 0);
    QCOMPARE(frames.size(), std::size_t{2});
    QCOMPARE(counterOf(frames[0]), std::uint64_t{5});
}

void tst_VirtualAdapterCan::wrongTimingSeesAndSendsNothing_data()
{
    QTest::addColumn<int>("timing0");
    QTest::addColumn<int>("timing1");
    QTest::addColumn<int>("dataRate");
    QTest::addColumn<bool>("matches");
    QTest::newRow("same, classic") << 0x03 << 0x1C << 0 << true;
    QTest::newRow("same, data rate") << 0x03 << 0x1C << 3 << true;
    QTest::newRow("other timing0") << 0x01 << 0x1C << 0 << false;
    QTest::newRow("other timing1") << 0x03 << 0x14 << 0 << false;
    QTest::newRow("other timing, same data rate") << 0x01 << 0x1C << 3 << false;
    QTest::newRow("other data rate") << 0x03 << 0x1C << 2 << false;
}

void tst_VirtualAdapterCan::wrongTimingSeesAndSendsNothing()
{
    QFETCH(int, timing0);
    QFETCH(int, timing1);
    QFETCH(int, dataRate);
    QFETCH(bool, matches);
    AdapterBench bench(oneBus("{'id': 1, 'period_us': 1000}", "'bitrate': '125k', 'data_rate': 3,"));
    VCI_INIT_CONFIG config = AdapterBench::settings(static_cast<std::uint8_t>(dataRate));
    config.Timing0 = static_cast<std::uint8_t>(timing0);
    config.Timing1 = static_cast<std::uint8_t>(timing1);
    QVERIFY(bench.start(0, 0, config)); // the adapter cannot know that the timing is wrong
    bench.clock().advanceMs(10);
    const std::uint32_t expected = matches ? 10 : 0;
    QCOMPARE(dataRate == 0 ? bench.waiting(0, 0) : bench->receiveNum<VCI_CANFD_OBJ>(Type, 0, 0), expected);
    const std::uint32_t sent = dataRate == 0 ? bench.send(0, 0, classicFrame(9)) : bench.sendFd(0, 0, fdFrame(9, 8, 0));
    QCOMPARE(sent, matches ? 1U : 0U);
}

void tst_VirtualAdapterCan::unconnectedChannelSeesNothing()
{
    AdapterBench bench(oneBus("{'id': 1, 'period_us': 1000}"));
    QVERIFY(bench.start(1, 1));
    QVERIFY(bench.start(2, 1));
    bench.clock().advanceMs(10);
    QCOMPARE(bench.waiting(1, 1), 0U);
    QCOMPARE(bench.waiting(2, 1), 0U);
    QCOMPARE(bench.send(1, 1, classicFrame(1)), 0U);
}

void tst_VirtualAdapterCan::classicChannelOnFdBusSeesClassicFramesOnly()
{
    AdapterBench bench(oneBus("{'id': 1, 'period_us': 1000}, {'id': 2, 'period_us': 1000, 'format': 'fd'},"
                              "{'id': 3, 'period_us': 1000, 'format': 'fd-brs'}",
                              "'data_rate': 2,"));
    QVERIFY(bench.start(0, 0));
    bench.clock().advanceMs(3);
    QCOMPARE(idsOf(bench.receive(0, 0)), std::vector<std::uint32_t>({1, 1, 1}));
}

void tst_VirtualAdapterCan::fdChannelSeesBothKinds()
{
    AdapterBench bench(oneBus("{'id': 1, 'period_us': 1000}, {'id': 2, 'period_us': 1000, 'format': 'fd'},"
                              "{'id': 3, 'period_us': 1000, 'format': 'fd-brs'}",
                              "'data_rate': 2,"));
    QVERIFY(bench.start(0, 0, AdapterBench::settings(2)));
    bench.clock().advanceMs(2);
    QCOMPARE(idsOf(bench.receiveFd(0, 0)), std::vector<std::uint32_t>({1, 2, 3, 1, 2, 3}));
}

void tst_VirtualAdapterCan::fdOnlyBusIsSilentForClassicChannels()
{
    AdapterBench bench(oneBus("{'id': 2, 'period_us': 1000, 'format': 'fd'}", "'data_rate': 4,"));
    QVERIFY(bench.start(0, 0));
    QVERIFY(bench.start(0, 1, AdapterBench::settings(4)));
    bench.clock().advanceMs(5);
    QCOMPARE(bench.waiting(0, 0), 0U);
    QCOMPARE(bench->receiveNum<VCI_CANFD_OBJ>(Type, 0, 1), 5U);
}

void tst_VirtualAdapterCan::classicModelRefusesFd()
{
    AdapterBench bench(oneBus({}, "'data_rate': 2,"));
    QVERIFY(!bench.start(2, 0, AdapterBench::settings(2)));
    QVERIFY(bench.start(2, 0));
}

void tst_VirtualAdapterCan::entriesOfTheOtherKindAnswerNothing()
{
    AdapterBench bench(oneBus("{'id': 1, 'period_us': 1000}", "'data_rate': 2,"));
    QVERIFY(bench.start(0, 0));
    QVERIFY(bench.start(0, 1, AdapterBench::settings(2)));
    bench.clock().advanceMs(5);
    QCOMPARE(bench->receiveNum<VCI_CANFD_OBJ>(Type, 0, 0), 0U);
    QCOMPARE(bench->receiveNum(Type, 0, 1), 0U);
    std::array<VCI_CAN_OBJ, 10> classic{};
    std::array<VCI_CANFD_OBJ, 10> fd{};
    QCOMPARE(bench->receive(Type, 0, 1, classic.data(), 10), 0U);
    QCOMPARE(bench->receive(Type, 0, 0, fd.data(), 10), 0U);
    QCOMPARE(bench->transmit(Type, 0, 1, classic.data(), 1), 0U);
    QCOMPARE(bench->transmit(Type, 0, 0, fd.data(), 1), 0U);
    QCOMPARE(bench->receive(Type, 0, 0, classic.data(), 10), 5U);
    QCOMPARE(bench->receive(Type, 0, 1, fd.data(), 10), 5U);
}

void tst_VirtualAdapterCan::acceptanceFilterIsApplied()
{
    AdapterBench bench(oneBus("{'id': '0x123', 'period_us': 1000}, {'id': '0x124', 'period_us': 1000},"
                              "{'id': '0x123', 'extended': true, 'period_us': 1000}"));
    VCI_INIT_CONFIG config = AdapterBench::settings();
    config.AccCode = 0x123U << 21U;
    config.AccMask = 0x001FFFFFU;
    QVERIFY(bench.start(0, 0, config));
    QVERIFY(bench.start(0, 1));
    bench.clock().advanceMs(1);
    QCOMPARE(bench.send(0, 1, classicFrame(0x123)), 1U);
    QCOMPARE(bench.send(0, 1, classicFrame(0x125)), 1U);
    const std::vector<VCI_CAN_OBJ> frames = bench.receive(0, 0);
    QCOMPARE(idsOf(frames), std::vector<std::uint32_t>({0x123, 0x123}));
    QCOMPARE(int{frames[0].ExternFlag}, 0);
    QCOMPARE(bench.send(0, 0, classicFrame(0x125)), 1U); // the filter is for receiving only
}

void tst_VirtualAdapterCan::listenOnlySendsNothing()
{
    AdapterBench bench(oneBus("{'id': 1, 'period_us': 1000}", "'data_rate': 2,"));
    QVERIFY(bench.start(0, 0, AdapterBench::settings(0, true)));
    QVERIFY(bench.start(0, 1, AdapterBench::settings(2, true)));
    QVERIFY(bench.start(1, 0));
    bench.clock().advanceMs(2);
    QCOMPARE(bench.send(0, 0, classicFrame(5)), 0U);
    QCOMPARE(bench.sendFd(0, 1, fdFrame(5, 8, 1)), 0U);
    QCOMPARE(idsOf(bench.receive(1, 0)), std::vector<std::uint32_t>({1, 1}));
    QCOMPARE(bench.waiting(0, 0), 2U); // it does receive
    QCOMPARE(bench->receiveNum<VCI_CANFD_OBJ>(Type, 0, 1), 2U);
}

void tst_VirtualAdapterCan::sentFramesReachEveryOtherChannel()
{
    AdapterBench bench(oneBus({}, "'data_rate': 2,"));
    QVERIFY(bench.start(0, 0));
    QVERIFY(bench.start(0, 1));
    bench.clock().advanceMs(7);
    QVERIFY(bench.start(1, 0, AdapterBench::settings(2)));
    bench.clock().advanceMs(3);
    QCOMPARE(bench.send(0, 0, classicFrame(0x1ABCDEF0, 3, true)), 1U);
    QCOMPARE(bench.send(0, 0, classicFrame(0x77, 4, false, true)), 1U);
    QCOMPARE(bench.waiting(0, 0), 0U); // nothing comes back
    const std::vector<VCI_CAN_OBJ> classic = bench.receive(0, 1);
    QCOMPARE(classic.size(), std::size_t{2});
    QCOMPARE(classic[0].ID, 0x1ABCDEF0U);
    QCOMPARE(int{classic[0].ExternFlag}, 1);
    QCOMPARE(int{classic[0].DataLen}, 3);
    QCOMPARE(int{classic[0].Data[2]}, 0xA2);
    QCOMPARE(int{classic[0].Data[3]}, 0);
    QCOMPARE(classic[0].TimeStamp, 10U);
    QCOMPARE(int{classic[1].RemoteFlag}, 1);
    QCOMPARE(int{classic[1].DataLen}, 4);
    QCOMPARE(int{classic[1].Data[0]}, 0);
    const std::vector<VCI_CANFD_OBJ> fd = bench.receiveFd(1, 0);
    QCOMPARE(fd.size(), std::size_t{2});
    QCOMPARE(int{fd[0].FDFlag}, 0);
    QCOMPARE(fd[0].TimeStamp, 3U); // of the receiving channel's own start
}

void tst_VirtualAdapterCan::sentFdFramesReachFdChannelsOnly()
{
    AdapterBench bench(oneBus({}, "'data_rate': 2,"));
    QVERIFY(bench.start(0, 0, AdapterBench::settings(2)));
    QVERIFY(bench.start(0, 1, AdapterBench::settings(2)));
    QVERIFY(bench.start(1, 0));
    QCOMPARE(bench.sendFd(0, 0, fdFrame(0x10, 64, 2)), 1U);
    QCOMPARE(bench.sendFd(0, 0, fdFrame(0x11, 8, 0)), 1U);
    const std::vector<VCI_CANFD_OBJ> fd = bench.receiveFd(0, 1);
    QCOMPARE(idsOf(fd), std::vector<std::uint32_t>({0x10, 0x11}));
    VCI_CANFD_OBJ expected = fdFrame(0x10, 64, 2);
    expected.TimeFlag = 1;
    QCOMPARE(std::memcmp(fd.data(), &expected, sizeof expected), 0);
    QCOMPARE(idsOf(bench.receive(1, 0)), std::vector<std::uint32_t>({0x11}));
}

void tst_VirtualAdapterCan::sendingOrderIsKeptBetweenCyclicFrames()
{
    AdapterBench bench(oneBus("{'id': 1, 'period_us': 1000}"));
    QVERIFY(bench.start(0, 0));
    QVERIFY(bench.start(0, 1));
    bench.clock().advanceUs(2500);
    const std::vector<VCI_CAN_OBJ> batch = {classicFrame(0x20), classicFrame(0x21), classicFrame(0x22)};
    QCOMPARE(bench->transmit(Type, 0, 0, batch.data(), 3), 3U);
    bench.clock().advanceUs(1000);
    QCOMPARE(idsOf(bench.receive(0, 1)), std::vector<std::uint32_t>({1, 1, 0x20, 0x21, 0x22, 1}));
}

void tst_VirtualAdapterCan::impossibleFramesEndTheBatch_data()
{
    QTest::addColumn<quint32>("id");
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("externFlag");
    QTest::addColumn<int>("remoteFlag");
    QTest::addColumn<bool>("possible");
    QTest::newRow("largest standard") << 0x7FFU << 8 << 0 << 0 << true;
    QTest::newRow("standard too large") << 0x800U << 8 << 0 << 0 << false;
    QTest::newRow("largest extended") << 0x1FFFFFFFU << 0 << 1 << 1 << true;
    QTest::newRow("extended too large") << 0x20000000U << 8 << 1 << 0 << false;
    QTest::newRow("nine bytes") << 1U << 9 << 0 << 0 << false;
    QTest::newRow("255 bytes") << 1U << 255 << 0 << 0 << false;
    QTest::newRow("extern flag 2") << 1U << 8 << 2 << 0 << false;
    QTest::newRow("remote flag 2") << 1U << 8 << 0 << 2 << false;
}

void tst_VirtualAdapterCan::impossibleFramesEndTheBatch()
{
    QFETCH(quint32, id);
    QFETCH(int, length);
    QFETCH(int, externFlag);
    QFETCH(int, remoteFlag);
    QFETCH(bool, possible);
    AdapterBench bench(oneBus({}));
    QVERIFY(bench.start(0, 0));
    QVERIFY(bench.start(0, 1));
    std::vector<VCI_CAN_OBJ> batch = {classicFrame(0x20), classicFrame(0x21), classicFrame(0x22)};
    batch[1].ID = id;
    batch[1].DataLen = static_cast<std::uint8_t>(length);
    batch[1].ExternFlag = static_cast<std::uint8_t>(externFlag);
    batch[1].RemoteFlag = static_cast<std::uint8_t>(remoteFlag);
    QCOMPARE(bench->transmit(Type, 0, 0, batch.data(), 3), possible ? 3U : 1U);
    QCOMPARE(bench.waiting(0, 1), possible ? 3U : 1U);
}

void tst_VirtualAdapterCan::impossibleFdFramesAreRefused_data()
{
    QTest::addColumn<int>("fdFlag");
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("remoteFlag");
    QTest::addColumn<bool>("possible");
    QTest::newRow("fd 64") << 1 << 64 << 0 << true;
    QTest::newRow("fd 65") << 1 << 65 << 0 << false;
    QTest::newRow("brs 0") << 2 << 0 << 0 << true;
    QTest::newRow("flag 3") << 3 << 8 << 0 << false;
    QTest::newRow("classic 8") << 0 << 8 << 0 << true;
    QTest::newRow("classic 9") << 0 << 9 << 0 << false;
    QTest::newRow("classic remote") << 0 << 8 << 1 << true;
    QTest::newRow("fd remote") << 1 << 8 << 1 << false;
    QTest::newRow("any length in between") << 1 << 33 << 0 << true;
}

void tst_VirtualAdapterCan::impossibleFdFramesAreRefused()
{
    QFETCH(int, fdFlag);
    QFETCH(int, length);
    QFETCH(int, remoteFlag);
    QFETCH(bool, possible);
    AdapterBench bench(oneBus({}, "'data_rate': 15,"));
    QVERIFY(bench.start(0, 0, AdapterBench::settings(15)));
    QVERIFY(bench.start(0, 1, AdapterBench::settings(15)));
    VCI_CANFD_OBJ frame = fdFrame(1, static_cast<std::uint8_t>(length), static_cast<std::uint8_t>(fdFlag));
    frame.RemoteFlag = static_cast<std::uint8_t>(remoteFlag);
    QCOMPARE(bench.sendFd(0, 0, frame), possible ? 1U : 0U);
    const std::vector<VCI_CANFD_OBJ> received = bench.receiveFd(0, 1);
    QCOMPARE(received.size(), std::size_t{possible ? 1U : 0U});
    if (possible) {
        QCOMPARE(int{received[0].DataLen}, length);
    }
}

void tst_VirtualAdapterCan::requestIsAnsweredAfterTheDelay()
{
    AdapterBench bench(oneBus("{'id': '0x7E8', 'request_id': '0x7E0', 'delay_us': 2000, 'length': 8},"
                              "{'id': '0x7E9', 'request_id': '0x7E0', 'delay_us': 0, 'data': '0102'}"));
    QVERIFY(bench.start(0, 0));
    QVERIFY(bench.start(0, 1));
    QCOMPARE(bench.send(0, 0, classicFrame(0x7E0)), 1U);
    QCOMPARE(idsOf(bench.receive(0, 0)), std::vector<std::uint32_t>({0x7E9}));
    bench.clock().advanceUs(1999);
    QCOMPARE(bench.waiting(0, 0), 0U);
    bench.clock().advanceUs(1);
    const std::vector<VCI_CAN_OBJ> replies = bench.receive(0, 0);
    QCOMPARE(idsOf(replies), std::vector<std::uint32_t>({0x7E8}));
    QCOMPARE(counterOf(replies[0]), std::uint64_t{0});
    QCOMPARE(replies[0].TimeStamp, 2U);
    QCOMPARE(idsOf(bench.receive(0, 1)), std::vector<std::uint32_t>({0x7E0, 0x7E9, 0x7E8}));
    bench.send(0, 0, classicFrame(0x7E0));
    bench.clock().advanceMs(5);
    QCOMPARE(counterOf(bench.receive(0, 0).back()), std::uint64_t{1}); // the next reply of this node
}

void tst_VirtualAdapterCan::requestMatchesTheIdentifierType()
{
    AdapterBench bench(oneBus("{'id': 1, 'request_id': '0x100', 'delay_us': 0},"
                              "{'id': 2, 'request_id': '0x100', 'request_extended': true, 'delay_us': 0}"));
    QVERIFY(bench.start(0, 0));
    bench.send(0, 0, classicFrame(0x100));
    QCOMPARE(idsOf(bench.receive(0, 0)), std::vector<std::uint32_t>({1}));
    bench.send(0, 0, classicFrame(0x100, 0, true, true));
    QCOMPARE(idsOf(bench.receive(0, 0)), std::vector<std::uint32_t>({2}));
    bench.send(0, 0, classicFrame(0x101));
    QCOMPARE(bench.waiting(0, 0), 0U);
}

void tst_VirtualAdapterCan::cyclicFramesAreAnsweredToo()
{
    AdapterBench bench(oneBus("{'id': 1, 'period_us': 1000}, {'id': 2, 'request_id': 1, 'delay_us': 500}"));
    QVERIFY(bench.start(0, 0));
    bench.clock().advanceMs(3);
    QCOMPARE(idsOf(bench.receive(0, 0)), std::vector<std::uint32_t>({1, 2, 1, 2, 1}));
}

void tst_VirtualAdapterCan::repliesComeAfterCyclicFramesOfTheSameTime()
{
    AdapterBench bench(oneBus("{'id': 2, 'request_id': 1, 'delay_us': 1000}, {'id': 1, 'period_us': 1000}"));
    QVERIFY(bench.start(0, 0));
    bench.clock().advanceMs(3);
    QCOMPARE(idsOf(bench.receive(0, 0)), std::vector<std::uint32_t>({1, 1, 2, 1, 2}));
}

void tst_VirtualAdapterCan::repliesToRequestsThatNobodyHears()
{
    AdapterBench bench(oneBus("{'id': 1, 'period_us': 1000}, {'id': 2, 'request_id': 1, 'delay_us': 500}"));
    VCI_INIT_CONFIG config = AdapterBench::settings();
    config.AccCode = 2U << 21U; // the reply passes, the request does not
    config.AccMask = 0x001FFFFFU;
    QVERIFY(bench.start(0, 0, config));
    bench.clock().advanceMs(3);
    QCOMPARE(idsOf(bench.receive(0, 0)), std::vector<std::uint32_t>({2, 2}));
}

void tst_VirtualAdapterCan::repliesAreNotTakenForRequests()
{
    AdapterBench bench(oneBus("{'id': 1, 'request_id': 2, 'delay_us': 0}, {'id': 2, 'request_id': 1, 'delay_us': 0}"));
    QVERIFY(bench.start(0, 0));
    bench.send(0, 0, classicFrame(1));
    bench.clock().advanceMs(100);
    QCOMPARE(idsOf(bench.receive(0, 0)), std::vector<std::uint32_t>({2}));
}

void tst_VirtualAdapterCan::tooManyRepliesAreDropped()
{
    AdapterBench bench(oneBus("{'id': 2, 'request_id': 1, 'delay_us': 60000000}"));
    QVERIFY(bench.start(0, 0));
    const std::vector<VCI_CAN_OBJ> batch(va::CanBus::MaxPendingReplies + 10, classicFrame(1));
    QCOMPARE(bench->transmit(Type, 0, 0, batch.data(), static_cast<std::uint32_t>(batch.size())), batch.size());
    bench.clock().advanceMs(60000);
    QCOMPARE(bench.waiting(0, 0), static_cast<std::uint32_t>(va::CanBus::MaxPendingReplies));
}

void tst_VirtualAdapterCan::receiveTakesNoMoreThanAsked()
{
    AdapterBench bench(oneBus("{'id': 1, 'period_us': 1000}"));
    QVERIFY(bench.start(0, 0));
    bench.clock().advanceMs(10);
    std::array<VCI_CAN_OBJ, 4> frames{};
    frames[3].ID = 0xDEAD;
    QCOMPARE(bench->receive(Type, 0, 0, frames.data(), 3), 3U);
    QCOMPARE(frames[3].ID, 0xDEADU);
    QCOMPARE(counterOf(frames[2]), std::uint64_t{2});
    QCOMPARE(bench->receive(Type, 0, 0, frames.data(), 0), 0U);
    QCOMPARE(counterOf(bench.receive(0, 0).front()), std::uint64_t{3});
}

void tst_VirtualAdapterCan::fullBufferKeepsTheOldestAndCounts()
{
    AdapterBench bench(
        oneBus("{'id': 1, 'period_us': 1000}, {'id': 2, 'period_us': 10000}", {}, "'receive_buffer_frames': 100, "));
    QVERIFY(bench.start(0, 0));
    bench.clock().advanceMs(1000); // 1000 + 100 frames
    QCOMPARE(bench.waiting(0, 0), 100U);
    QCOMPARE(bench->overflowNum(Type, 0, 0), 1000U);
    const std::vector<VCI_CAN_OBJ> frames = bench.receive(0, 0);
    QCOMPARE(counterOf(frames.front()), std::uint64_t{0});
    QCOMPARE(frames.back().TimeStamp, 91U); // 91 of the first, 9 of the second
    // Sent frames find no room either.
    QVERIFY(bench.start(0, 1));
    bench.clock().advanceMs(200);
    const std::uint32_t before = bench->overflowNum(Type, 0, 0);
    bench.send(0, 1, classicFrame(0x33));
    QCOMPARE(bench->overflowNum(Type, 0, 0), before + 1);
    bench->resetCan(Type, 0, 0);
    bench->startCan(Type, 0, 0);
    QCOMPARE(bench->overflowNum(Type, 0, 0), 0U);
}

void tst_VirtualAdapterCan::fullBufferTakesFramesAgainAfterReading()
{
    AdapterBench bench(oneBus("{'id': 1, 'period_us': 1000}", {}, "'receive_buffer_frames': 10, "));
    QVERIFY(bench.start(0, 0));
    bench.clock().advanceMs(50);
    QCOMPARE(bench.receive(0, 0, 4).size(), std::size_t{4});
    bench.clock().advanceMs(50);
    const std::vector<VCI_CAN_OBJ> frames = bench.receive(0, 0);
    QCOMPARE(frames.size(), std::size_t{10});
    QCOMPARE(counterOf(frames[5]), std::uint64_t{9});
    QCOMPARE(counterOf(frames[6]), std::uint64_t{50}); // those in between are lost
    QCOMPARE(bench->overflowNum(Type, 0, 0), 40U + 46U);
    bench->clearBuffer(Type, 0, 0);
    bench.clock().advanceMs(3);
    QCOMPARE(bench.waiting(0, 0), 3U);
}

void tst_VirtualAdapterCan::overflowIsCountedPerChannel()
{
    AdapterBench bench(
        oneBus("{'id': 1, 'period_us': 1000}, {'id': 2, 'period_us': 1000}", {}, "'receive_buffer_frames': 10, "));
    VCI_INIT_CONFIG onlyOne = AdapterBench::settings();
    onlyOne.AccCode = 1U << 21U;
    onlyOne.AccMask = 0x001FFFFFU;
    QVERIFY(bench.start(0, 0, onlyOne));
    QVERIFY(bench.start(0, 1));
    for (int i = 0; i < 20; ++i) {
        bench.clock().advanceMs(1);
        QCOMPARE(bench.receive(0, 0).size(), std::size_t{1}); // unhindered by the full neighbour
    }
    QCOMPARE(bench->overflowNum(Type, 0, 0), 0U);
    QCOMPARE(bench->overflowNum(Type, 0, 1), 30U);
}

void tst_VirtualAdapterCan::nobodyReadsForYears()
{
    AdapterBench bench(oneBus("{'id': 1, 'period_us': 1}, {'id': 2, 'rate_hz': 1000000, 'payload': 'random'}"));
    QVERIFY(bench.start(0, 0));
    constexpr std::uint64_t yearMs = std::uint64_t{365} * 86400 * 1000;
    bench.clock().advanceMs(5 * yearMs);
    QCOMPARE(bench.waiting(0, 0), 200000U);
    QCOMPARE(bench->overflowNum(Type, 0, 0), 0xFFFFFFFFU); // as far as the number reaches
    const std::vector<VCI_CAN_OBJ> frames = bench.receive(0, 0);
    QCOMPARE(counterOf(frames[199998]), std::uint64_t{99999});
    bench.clock().advanceUs(10);
    const std::vector<VCI_CAN_OBJ> next = bench.receive(0, 0);
    QCOMPARE(next.size(), std::size_t{20});
    QCOMPARE(counterOf(next[0]), 5 * yearMs * 1000);
}

void tst_VirtualAdapterCan::dataFilterCannotMakeACallEndless()
{
    AdapterBench bench(oneBus("{'id': 1, 'period_us': 1, 'data': '00 00'}"));
    VCI_INIT_CONFIG config = AdapterBench::settings();
    config.AccCode = 0x0000FFFFU; // the two data bytes never match, the identifier always does
    config.AccMask = 0xFFFF0000U;
    QVERIFY(bench.start(0, 0, config));
    bench.clock().advanceMs(std::uint64_t{86400} * 1000);
    QCOMPARE(bench.waiting(0, 0), 0U);
    QVERIFY(bench.start(0, 1));
    bench.clock().advanceMs(1);
    QCOMPARE(bench.waiting(0, 1), 1000U);
}

void tst_VirtualAdapterCan::badArgumentsAreRefused()
{
    AdapterBench bench(oneBus("{'id': 1, 'period_us': 1000}"));
    QVERIFY(bench.start(0, 0));
    bench.clock().advanceMs(5);
    const VCI_INIT_CONFIG config = AdapterBench::settings();
    VCI_CAN_OBJ frame = classicFrame(1);
    VCI_CANFD_OBJ fd = fdFrame(1, 8, 0);
    // null pointers
    QCOMPARE(bench->initCan(Type, 0, 0, nullptr), 0U);
    QCOMPARE(bench->transmit<VCI_CAN_OBJ>(Type, 0, 0, nullptr, 1), 0U);
    QCOMPARE(bench->transmit<VCI_CANFD_OBJ>(Type, 0, 0, nullptr, 1), 0U);
    QCOMPARE(bench->receive<VCI_CAN_OBJ>(Type, 0, 0, nullptr, 5), 0U);
    QCOMPARE(bench->receive<VCI_CANFD_OBJ>(Type, 0, 0, nullptr, 5), 0U);
    // counts
    QCOMPARE(bench->transmit(Type, 0, 0, &frame, 0), 0U);
    QCOMPARE(bench->transmit(Type, 0, 0, &frame, 0xFFFFFFFFU), 0U);
    // type, device, channel
    for (const auto &[type, dev, ch] : {std::tuple<std::uint32_t, std::uint8_t, std::uint8_t>{3, 0, 0},
                                        {4, 3, 0},
                                        {4, 255, 0},
                                        {4, 0, 2},
                                        {4, 0, 255}}) {
        QCOMPARE(bench->initCan(type, dev, ch, &config), 0U);
        QCOMPARE(bench->startCan(type, dev, ch), 0U);
        QCOMPARE(bench->resetCan(type, dev, ch), 0U);
        QCOMPARE(bench->clearBuffer(type, dev, ch), 0U);
        QCOMPARE(bench->receiveNum(type, dev, ch), 0U);
        QCOMPARE(bench->receiveNum<VCI_CANFD_OBJ>(type, dev, ch), 0U);
        QCOMPARE(bench->transmit(type, dev, ch, &frame, 1), 0U);
        QCOMPARE(bench->transmit(type, dev, ch, &fd, 1), 0U);
        QCOMPARE(bench->receive(type, dev, ch, &frame, 1), 0U);
        QCOMPARE(bench->receive(type, dev, ch, &fd, 1), 0U);
        QCOMPARE(bench->overflowNum(type, dev, ch), 0U);
    }
    QCOMPARE(bench.waiting(0, 0), 5U);
}

void tst_VirtualAdapterCan::openAndClose()
{
    AdapterBench bench(oneBus("{'id': 1, 'period_us': 1000}"));
    const VCI_INIT_CONFIG config = AdapterBench::settings();
    QCOMPARE(bench->initCan(Type, 0, 0, &config), 0U); // not open yet
    QCOMPARE(bench->closeDevice(Type, 0), 0U);
    QCOMPARE(bench->openDevice(5, 0), 0U);
    QCOMPARE(bench->openDevice(Type, 3), 0U);
    QCOMPARE(bench->openDevice(Type, 0), 1U);
    QCOMPARE(bench->openDevice(Type, 0), 0U); // in use
    QVERIFY(bench.start(0, 0));
    QVERIFY(bench.start(1, 0));
    bench.clock().advanceMs(3);
    QCOMPARE(bench->closeDevice(Type, 0), 1U);
    QCOMPARE(bench.waiting(0, 0), 0U);
    QCOMPARE(bench.waiting(1, 0), 3U); // the others go on
    QCOMPARE(bench->openDevice(Type, 0), 1U);
    QCOMPARE(bench.waiting(0, 0), 0U);
    QVERIFY(bench.start(0, 0));
    bench.clock().advanceMs(3);
    QCOMPARE(bench.waiting(0, 0), 3U);
}

void tst_VirtualAdapterCan::readInfoNeedsAnOpenDevice()
{
    AdapterBench bench("{'devices': [{'serial': 'S-1', 'model': 'X9EC-7', 'firmware': 'V9.99', 'hardware': '" +
                       QByteArray(79, 'h') + "'}]}");
    std::array<std::array<char, 80>, 4> info{};
    for (auto &buffer : info) {
        buffer.fill('#');
    }
    const auto read = [&] {
        return bench->readInfo(Type, 0, info[0].data(), info[1].data(), info[2].data(), info[3].data());
    };
    QCOMPARE(read(), 0U);
    QCOMPARE(info[0][0], '#');
    bench->openDevice(Type, 0);
    QCOMPARE(bench->readInfo(Type, 0, nullptr, info[1].data(), info[2].data(), info[3].data()), 0U);
    QCOMPARE(read(), 1U);
    QCOMPARE(QByteArray(info[0].data()), QByteArray("S-1"));
    QCOMPARE(QByteArray(info[1].data()), QByteArray("X9EC-7"));
    QCOMPARE(QByteArray(info[2].data()), QByteArray("V9.99"));
    QCOMPARE(QByteArray(info[3].data()), QByteArray(79, 'h'));
    QVERIFY(std::all_of(info[0].begin() + 3, info[0].end(), [](char c) { return c == '\0'; }));
}

X9_PLAIN_TEST(tst_VirtualAdapterCan)
#include "tst_VirtualAdapterCan.moc"
