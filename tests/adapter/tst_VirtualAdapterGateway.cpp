#include "tests/adapter/AdapterBench.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

namespace {

constexpr std::uint32_t Type = AdapterDeviceType;

/// Device 0 joins the buses a and b, device 1 listens on both, device 2 joins b and a the other way round.
QByteArray twoBuses(const QByteArray &nodesA = {}, const QByteArray &nodesB = {}, const QByteArray &deviceKeys = {})
{
    return "{'buses': [{'name': 'a', 'data_rate': 2, 'nodes': [" + nodesA +
           "]}, {'name': 'b', 'data_rate': 2, "
           "'nodes': [" +
           nodesB +
           "]}], 'devices': ["
           "{'model': 'X9FC', " +
           deviceKeys +
           " 'can': [{'bus': 'a'}, {'bus': 'b'}]},"
           "{'model': 'X9FC', 'can': [{'bus': 'a'}, {'bus': 'b'}]},"
           "{'model': 'X9FC', 'can': [{'bus': 'b'}, {'bus': 'a'}]}]}";
}

std::uint32_t entry(std::uint32_t id, bool extended)
{
    return id * 8 + (extended ? 2U : 0U) + 1;
}

std::uint32_t gateway(AdapterBench &bench, std::uint8_t dev, std::uint8_t operation)
{
    std::uint32_t state = 77;
    return bench->switchGateway(Type, dev, operation, &state) == 1 ? state : 99;
}

constexpr std::uint32_t Failed = 99;

std::vector<std::uint32_t> idsSeen(AdapterBench &bench, std::uint8_t dev, std::uint8_t ch)
{
    std::vector<std::uint32_t> ids;
    for (const VCI_CAN_OBJ &frame : bench.receive(dev, ch)) {
        ids.push_back(frame.ID);
    }
    return ids;
}

using Ids = std::vector<std::uint32_t>;

} // namespace

class tst_VirtualAdapterGateway : public QObject
{
    Q_OBJECT

private slots:
    static void needsBothChannels();
    static void stateIsQueried();
    static void goesOffWhenAChannelStops_data();
    static void goesOffWhenAChannelStops();
    static void rememberedGatewayComesBack();
    static void forwardsBothWays();
    static void keepsTheOrderOfTimeAcrossBuses();
    static void ownFramesAreNotForwarded();
    static void honoursTheListOfTheReceivingChannel();
    static void typesAreDistinguished();
    static void listIsReadBack();
    static void listIsBounded();
    static void fdFramesNeedAnFdChannelOnTheOtherSide();
    static void listenOnlyChannelForwardsNothing();
    static void acceptanceFilterComesFirst();
    static void requestsAndRepliesPass();
    static void circlesEnd();
    static void oneBusOnBothSides();
    static void fullBuffersDoNotStopIt();
    static void nobodyReadsForYears();
    static void badArgumentsAreRefused();
    static void faultRefusesEverything();
};

void tst_VirtualAdapterGateway::needsBothChannels()
{
    AdapterBench bench(twoBuses());
    QCOMPARE(gateway(bench, 0, AdapterGatewayQuery), Failed); // not open
    QVERIFY(bench.start(0, 0));
    QCOMPARE(gateway(bench, 0, AdapterGatewayOn), Failed);
    QCOMPARE(gateway(bench, 0, AdapterGatewayQuery), 0U);
    QCOMPARE(gateway(bench, 0, AdapterGatewayOff), 0U);
    QVERIFY(bench.start(0, 1));
    QCOMPARE(gateway(bench, 0, AdapterGatewayOn), 1U);
}

void tst_VirtualAdapterGateway::stateIsQueried()
{
    AdapterBench bench(twoBuses());
    QVERIFY(bench.start(0, 0) && bench.start(0, 1));
    QCOMPARE(gateway(bench, 0, AdapterGatewayQuery), 0U);
    QCOMPARE(gateway(bench, 0, AdapterGatewayOn), 1U);
    QCOMPARE(gateway(bench, 0, AdapterGatewayOn), 1U);
    QCOMPARE(gateway(bench, 0, AdapterGatewayQuery), 1U);
    QCOMPARE(gateway(bench, 0, AdapterGatewayOff), 0U);
    QCOMPARE(gateway(bench, 0, AdapterGatewayOff), 0U);
    QCOMPARE(gateway(bench, 0, AdapterGatewayQuery), 0U);
}

void tst_VirtualAdapterGateway::goesOffWhenAChannelStops_data()
{
    QTest::addColumn<int>("how");
    QTest::newRow("reset") << 0;
    QTest::newRow("init") << 1;
    QTest::newRow("close") << 2;
}

void tst_VirtualAdapterGateway::goesOffWhenAChannelStops()
{
    QFETCH(int, how);
    AdapterBench bench(twoBuses("{'id': 1, 'period_us': 1000}"));
    QVERIFY(bench.start(0, 0) && bench.start(0, 1));
    QVERIFY(bench.start(1, 1));
    QCOMPARE(gateway(bench, 0, AdapterGatewayOn), 1U);
    bench.clock().advanceMs(2);
    if (how == 0) {
        bench->resetCan(Type, 0, 1);
    } else if (how == 1) {
        const VCI_INIT_CONFIG config = AdapterBench::settings();
        bench->initCan(Type, 0, 1, &config);
    } else {
        bench->closeDevice(Type, 0);
    }
    bench.clock().advanceMs(2);
    QCOMPARE(bench.waiting(1, 1), 2U);
    bench.start(0, 0);
    bench.start(0, 1);
    QCOMPARE(gateway(bench, 0, AdapterGatewayQuery), 0U);
    bench.clock().advanceMs(2);
    QCOMPARE(bench.waiting(1, 1), 2U);
}

void tst_VirtualAdapterGateway::rememberedGatewayComesBack()
{
    AdapterBench bench(twoBuses({}, {}, "'gateway_on': true,"));
    QVERIFY(bench.start(0, 0));
    QCOMPARE(gateway(bench, 0, AdapterGatewayQuery), 0U);
    QVERIFY(bench.start(0, 1));
    QCOMPARE(gateway(bench, 0, AdapterGatewayQuery), 1U);
    bench->resetCan(Type, 0, 0);
    QCOMPARE(gateway(bench, 0, AdapterGatewayQuery), 0U);
    bench->startCan(Type, 0, 0);
    QCOMPARE(gateway(bench, 0, AdapterGatewayQuery), 1U);
}

void tst_VirtualAdapterGateway::forwardsBothWays()
{
    AdapterBench bench(twoBuses("{'id': 1, 'period_us': 1000}", "{'id': 2, 'period_us': 1000}"));
    QVERIFY(bench.start(0, 0) && bench.start(0, 1) && bench.start(1, 0) && bench.start(1, 1));
    bench.clock().advanceMs(1);
    QCOMPARE(gateway(bench, 0, AdapterGatewayOn), 1U);
    bench.clock().advanceMs(1);
    QCOMPARE(gateway(bench, 0, AdapterGatewayOff), 0U);
    bench.clock().advanceMs(1);
    QCOMPARE(idsSeen(bench, 1, 0), Ids({1, 1, 2, 1}));
    QCOMPARE(idsSeen(bench, 1, 1), Ids({2, 1, 2, 2}));
    // The device itself receives its own buses only: what it forwards it does not hear again.
    QCOMPARE(idsSeen(bench, 0, 0), Ids({1, 1, 1}));
    QCOMPARE(idsSeen(bench, 0, 1), Ids({2, 2, 2}));
}

void tst_VirtualAdapterGateway::keepsTheOrderOfTimeAcrossBuses()
{
    AdapterBench bench(twoBuses("{'id': 1, 'period_us': 700}", "{'id': 2, 'period_us': 1000}"));
    QVERIFY(bench.start(0, 0) && bench.start(0, 1) && bench.start(1, 1));
    QCOMPARE(gateway(bench, 0, AdapterGatewayOn), 1U);
    bench.clock().advanceMs(3);
    QCOMPARE(idsSeen(bench, 1, 1), Ids({1, 2, 1, 2, 1, 1, 2})); // 0.7 1.0 1.4 2.0 2.1 2.8 3.0
}

void tst_VirtualAdapterGateway::ownFramesAreNotForwarded()
{
    AdapterBench bench(twoBuses());
    QVERIFY(bench.start(0, 0) && bench.start(0, 1) && bench.start(1, 0) && bench.start(1, 1));
    QCOMPARE(gateway(bench, 0, AdapterGatewayOn), 1U);
    bench.send(0, 0, classicFrame(0x10)); // sent by the gateway's own channel, not received by it
    QCOMPARE(idsSeen(bench, 1, 0), Ids({0x10}));
    QCOMPARE(idsSeen(bench, 1, 1), Ids());
    bench.send(1, 0, classicFrame(0x11));
    QCOMPARE(idsSeen(bench, 0, 0), Ids({0x11}));
    QCOMPARE(idsSeen(bench, 1, 1), Ids({0x11}));
}

void tst_VirtualAdapterGateway::honoursTheListOfTheReceivingChannel()
{
    AdapterBench bench(twoBuses("{'id': 1, 'period_us': 1000}, {'id': 2, 'period_us': 1000}",
                                "{'id': 3, 'period_us': 1000}, {'id': 4, 'period_us': 1000}"));
    QVERIFY(bench.start(0, 0) && bench.start(0, 1) && bench.start(1, 0) && bench.start(1, 1));
    QCOMPARE(gateway(bench, 0, AdapterGatewayOn), 1U);
    const Ids onlyTwo = {entry(2, false)};
    QCOMPARE(bench->setGatewayFilter(Type, 0, 0, onlyTwo.data(), 1), 1U);
    bench.clock().advanceMs(1);
    QCOMPARE(idsSeen(bench, 1, 0), Ids({1, 2, 3, 4}));
    QCOMPARE(idsSeen(bench, 1, 1), Ids({2, 3, 4}));
    QCOMPARE(bench->setGatewayFilter(Type, 0, 0, nullptr, 0), 1U); // an empty list forwards all again
    bench.clock().advanceMs(1);
    QCOMPARE(idsSeen(bench, 1, 1), Ids({1, 2, 3, 4}));
}

void tst_VirtualAdapterGateway::typesAreDistinguished()
{
    AdapterBench bench(twoBuses());
    QVERIFY(bench.start(0, 0) && bench.start(0, 1) && bench.start(1, 0) && bench.start(1, 1));
    QCOMPARE(gateway(bench, 0, AdapterGatewayOn), 1U);
    const Ids list = {entry(0x123, true), entry(0x124, false)};
    QCOMPARE(bench->setGatewayFilter(Type, 0, 0, list.data(), 2), 1U);
    bench.send(1, 0, classicFrame(0x123, 8, false));
    bench.send(1, 0, classicFrame(0x123, 8, true));
    bench.send(1, 0, classicFrame(0x124, 8, false));
    bench.send(1, 0, classicFrame(0x124, 8, true));
    bench.send(1, 0, classicFrame(0x124, 8, false, true)); // remote or data makes no difference
    QCOMPARE(idsSeen(bench, 1, 1), Ids({0x123, 0x124, 0x124}));
}

void tst_VirtualAdapterGateway::listIsReadBack()
{
    AdapterBench bench(twoBuses());
    bench->openDevice(Type, 0);
    Ids words(AdapterGatewayMaxIds + 1, 0xEEEEEEEEU);
    std::uint32_t count = 55;
    QCOMPARE(bench->gatewayFilter(Type, 0, 1, words.data(), &count), 1U);
    QCOMPARE(count, 0U);
    const Ids list = {entry(0x1FFF, false), entry(0x1FFFFFFF, true), entry(0, false)};
    QCOMPARE(bench->setGatewayFilter(Type, 0, 1, list.data(), 3), 1U);
    QCOMPARE(bench->gatewayFilter(Type, 0, 1, words.data(), &count), 1U);
    QCOMPARE(count, 3U);
    QCOMPARE(Ids(words.begin(), words.begin() + 3), list);
    QCOMPARE(words[3], 0xEEEEEEEEU);
    QCOMPARE(bench->gatewayFilter(Type, 0, 0, words.data(), &count), 1U); // the other channel has its own
    QCOMPARE(count, 0U);
    bench->closeDevice(Type, 0);
    bench->openDevice(Type, 0);
    QCOMPARE(bench->gatewayFilter(Type, 0, 1, words.data(), &count), 1U);
    QCOMPARE(count, 0U); // closing forgets it
}

void tst_VirtualAdapterGateway::listIsBounded()
{
    AdapterBench bench(twoBuses());
    bench->openDevice(Type, 0);
    Ids list;
    for (std::uint32_t i = 0; i <= AdapterGatewayMaxIds; ++i) {
        list.push_back(entry(i, false));
    }
    QCOMPARE(bench->setGatewayFilter(Type, 0, 0, list.data(), AdapterGatewayMaxIds), 1U);
    QCOMPARE(bench->setGatewayFilter(Type, 0, 0, list.data(), AdapterGatewayMaxIds + 1), 0U);
    Ids words(AdapterGatewayMaxIds);
    std::uint32_t count = 0;
    QCOMPARE(bench->gatewayFilter(Type, 0, 0, words.data(), &count), 1U);
    QCOMPARE(count, AdapterGatewayMaxIds); // the refused list changed nothing
}

void tst_VirtualAdapterGateway::fdFramesNeedAnFdChannelOnTheOtherSide()
{
    AdapterBench bench(twoBuses());
    QVERIFY(bench.start(0, 0, AdapterBench::settings(2)) && bench.start(0, 1));
    QVERIFY(bench.start(1, 0, AdapterBench::settings(2)) && bench.start(1, 1, AdapterBench::settings(2)));
    QCOMPARE(gateway(bench, 0, AdapterGatewayOn), 1U);
    bench.sendFd(1, 0, fdFrame(1, 32, 2));
    bench.sendFd(1, 0, fdFrame(2, 8, 0));
    QCOMPARE(bench->receiveNum<VCI_CANFD_OBJ>(Type, 0, 0), 2U);
    const std::vector<VCI_CANFD_OBJ> frames = bench.receiveFd(1, 1);
    QCOMPARE(frames.size(), std::size_t{1});
    QCOMPARE(frames[0].ID, 2U);
    QVERIFY(bench.start(0, 1, AdapterBench::settings(2)));
    QCOMPARE(gateway(bench, 0, AdapterGatewayOn), 1U);
    bench.sendFd(1, 0, fdFrame(3, 32, 2));
    const std::vector<VCI_CANFD_OBJ> more = bench.receiveFd(1, 1);
    QCOMPARE(more.size(), std::size_t{1});
    QCOMPARE(int{more[0].FDFlag}, 2);
    QCOMPARE(int{more[0].DataLen}, 32);
    QCOMPARE(int{more[0].Data[31]}, 0x80 + 31);
}

void tst_VirtualAdapterGateway::listenOnlyChannelForwardsNothing()
{
    AdapterBench bench(twoBuses());
    QVERIFY(bench.start(0, 0) && bench.start(0, 1, AdapterBench::settings(0, true)));
    QVERIFY(bench.start(1, 0) && bench.start(1, 1));
    QCOMPARE(gateway(bench, 0, AdapterGatewayOn), 1U);
    bench.send(1, 0, classicFrame(1));
    QCOMPARE(idsSeen(bench, 1, 1), Ids());
    bench.send(1, 1, classicFrame(2)); // towards the channel that may send
    QCOMPARE(idsSeen(bench, 1, 0), Ids({2}));
}

void tst_VirtualAdapterGateway::acceptanceFilterComesFirst()
{
    AdapterBench bench(twoBuses());
    VCI_INIT_CONFIG config = AdapterBench::settings();
    config.AccCode = 0x10U << 21U;
    config.AccMask = 0x001FFFFFU;
    QVERIFY(bench.start(0, 0, config) && bench.start(0, 1) && bench.start(1, 0) && bench.start(1, 1));
    QCOMPARE(gateway(bench, 0, AdapterGatewayOn), 1U);
    bench.send(1, 0, classicFrame(0x10));
    bench.send(1, 0, classicFrame(0x11));
    QCOMPARE(idsSeen(bench, 1, 1), Ids({0x10}));
}

void tst_VirtualAdapterGateway::requestsAndRepliesPass()
{
    AdapterBench bench(twoBuses({}, "{'id': '0x7E8', 'request_id': '0x7E0', 'delay_us': 1000}"));
    QVERIFY(bench.start(0, 0) && bench.start(0, 1) && bench.start(1, 0));
    QCOMPARE(gateway(bench, 0, AdapterGatewayOn), 1U);
    bench.send(1, 0, classicFrame(0x7E0));
    bench.clock().advanceMs(2);
    QCOMPARE(idsSeen(bench, 1, 0), Ids({0x7E8}));
    QCOMPARE(idsSeen(bench, 0, 1), Ids({0x7E8}));
}

void tst_VirtualAdapterGateway::circlesEnd()
{
    // Two gateways join the same two buses, each forwarding everything.
    AdapterBench bench(twoBuses("{'id': 1, 'period_us': 1000}"));
    for (std::uint8_t dev = 0; dev < 3; ++dev) {
        QVERIFY(bench.start(dev, 0) && bench.start(dev, 1));
    }
    QCOMPARE(gateway(bench, 0, AdapterGatewayOn), 1U);
    QCOMPARE(gateway(bench, 2, AdapterGatewayOn), 1U);
    bench.clock().advanceMs(2);
    QCOMPARE(idsSeen(bench, 1, 0), Ids({1, 1}));
    QCOMPARE(idsSeen(bench, 1, 1), Ids({1, 1})); // a frame reaches each bus once
}

void tst_VirtualAdapterGateway::oneBusOnBothSides()
{
    AdapterBench bench("{'buses': [{'name': 'a', 'nodes': [{'id': 1, 'period_us': 1000}]}],"
                       "'devices': [{'model': 'X9FC', 'can': [{'bus': 'a'}, {'bus': 'a'}]}]}");
    QVERIFY(bench.start(0, 0) && bench.start(0, 1));
    QCOMPARE(gateway(bench, 0, AdapterGatewayOn), 1U);
    bench.clock().advanceMs(2);
    QCOMPARE(idsSeen(bench, 0, 0), Ids({1, 1}));
    QCOMPARE(idsSeen(bench, 0, 1), Ids({1, 1}));
}

void tst_VirtualAdapterGateway::fullBuffersDoNotStopIt()
{
    QByteArray config = twoBuses("{'id': 1, 'period_us': 1000}");
    AdapterBench bench(config.replace("{'buses'", "{'receive_buffer_frames': 10, 'buses'"));
    QVERIFY(bench.start(0, 0) && bench.start(0, 1) && bench.start(1, 1));
    QCOMPARE(gateway(bench, 0, AdapterGatewayOn), 1U);
    std::size_t seen = 0;
    for (int i = 0; i < 20; ++i) {
        bench.clock().advanceMs(2);
        seen += bench.receive(1, 1).size();
    }
    QCOMPARE(seen, std::size_t{40});
    QCOMPARE(bench.waiting(0, 0), 10U);
    QCOMPARE(bench->overflowNum(Type, 0, 0), 30U);
}

void tst_VirtualAdapterGateway::nobodyReadsForYears()
{
    AdapterBench bench(twoBuses("{'id': 1, 'period_us': 10}", "{'id': 2, 'period_us': 10}"));
    QVERIFY(bench.start(0, 0) && bench.start(0, 1) && bench.start(1, 1));
    QCOMPARE(gateway(bench, 0, AdapterGatewayOn), 1U);
    bench.clock().advanceMs(std::uint64_t{365} * 86400 * 1000);
    QCOMPARE(bench.waiting(1, 1), 200000U);
    QCOMPARE(bench.waiting(0, 0), 200000U);
    QCOMPARE(bench->overflowNum(Type, 1, 1), 0xFFFFFFFFU);
}

void tst_VirtualAdapterGateway::badArgumentsAreRefused()
{
    AdapterBench bench(twoBuses());
    QVERIFY(bench.start(0, 0) && bench.start(0, 1));
    std::uint32_t state = 5;
    Ids words(AdapterGatewayMaxIds);
    std::uint32_t count = 0;
    QCOMPARE(bench->switchGateway(Type, 0, AdapterGatewayOn, nullptr), 0U);
    QCOMPARE(bench->switchGateway(Type, 0, 2, &state), 0U);
    QCOMPARE(bench->switchGateway(3, 0, AdapterGatewayOn, &state), 0U);
    QCOMPARE(bench->switchGateway(Type, 9, AdapterGatewayOn, &state), 0U);
    QCOMPARE(state, 5U);
    QCOMPARE(bench->setGatewayFilter(Type, 0, 2, words.data(), 1), 0U);
    QCOMPARE(bench->setGatewayFilter(Type, 0, 0, nullptr, 1), 0U);
    QCOMPARE(bench->gatewayFilter(Type, 0, 2, words.data(), &count), 0U);
    QCOMPARE(bench->gatewayFilter(Type, 0, 0, nullptr, &count), 0U);
    QCOMPARE(bench->gatewayFilter(Type, 0, 0, words.data(), nullptr), 0U);
    QCOMPARE(bench->gatewayFilter(Type, 1, 0, words.data(), &count), 0U); // not open
}

void tst_VirtualAdapterGateway::faultRefusesEverything()
{
    AdapterBench bench(twoBuses({}, {}, "'faults': {'gateway_refused': true},"));
    QVERIFY(bench.start(0, 0) && bench.start(0, 1));
    Ids words(AdapterGatewayMaxIds);
    std::uint32_t count = 0;
    QCOMPARE(gateway(bench, 0, AdapterGatewayOn), Failed);
    QCOMPARE(gateway(bench, 0, AdapterGatewayQuery), Failed);
    QCOMPARE(bench->setGatewayFilter(Type, 0, 0, words.data(), 1), 0U);
    QCOMPARE(bench->gatewayFilter(Type, 0, 0, words.data(), &count), 0U);
}

X9_PLAIN_TEST(tst_VirtualAdapterGateway)
#include "tst_VirtualAdapterGateway.moc"
