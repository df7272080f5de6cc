#include "tests/adapter/AdapterBench.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

namespace {

constexpr std::uint32_t Type = AdapterDeviceType;

/// Device 0 with the faults, device 1 without, both on one bus.
QByteArray faulty(const QByteArray &deviceFaults, const QByteArray &channelFaults = "{}")
{
    return "{'buses': [{'name': 'b', 'data_rate': 2, 'nodes': [{'id': 1, 'period_us': 1000}]}],"
           "'lin_buses': [{'name': 'l', 'slaves': [{'id': 1, 'data': '01'}]}], 'devices': ["
           "{'model': 'X9FC', 'can': [{'bus': 'b', 'faults': " +
           channelFaults +
           "}, {'bus': 'b'}],"
           "'lin': [{'bus': 'l'}], 'faults': " +
           deviceFaults +
           "},"
           "{'model': 'X9FC', 'can': [{'bus': 'b'}, {}]}]}";
}

std::uint32_t readInfo(AdapterBench &bench, std::uint8_t dev)
{
    std::array<std::array<char, AdapterInfoSize>, 4> info{};
    return bench->readInfo(Type, dev, info[0].data(), info[1].data(), info[2].data(), info[3].data());
}

void callEachOnce(AdapterBench &bench)
{
    VCI_INIT_CONFIG config{};
    VCI_CAN_OBJ frame{};
    VCI_CANFD_OBJ fd{};
    VCI_LIN_OBJ lin{};
    std::uint32_t word = 0;
    bench->openDevice(Type, 0);
    bench->initCan(Type, 0, 0, &config);
    bench->startCan(Type, 0, 0);
    bench->clearBuffer(Type, 0, 0);
    bench->receiveNum<VCI_CAN_OBJ>(Type, 0, 0);
    bench->receiveNum<VCI_CANFD_OBJ>(Type, 0, 0);
    bench->transmit(Type, 0, 0, &frame, 1);
    bench->transmit(Type, 0, 0, &fd, 1);
    bench->receive(Type, 0, 0, &frame, 1);
    bench->receive(Type, 0, 0, &fd, 1);
    bench->resetCan(Type, 0, 0);
    readInfo(bench, 0);
    bench->switchGateway(Type, 0, AdapterGatewayQuery, &word);
    bench->setGatewayFilter(Type, 0, 0, &word, 1);
    bench->gatewayFilter(Type, 0, 0, &word, &word);
    bench->openLin(Type, 0, 0, 19200, 0);
    bench->changeLinMode(Type, 0, 0, 1);
    bench->transmitLin(Type, 0, 0, lin);
    bench->transmitLinBySlave(Type, 0, 0, lin);
    bench->receiveLin(Type, 0, 0, &lin);
    bench->receiveLinBySlave(Type, 0, 0, &lin);
    bench->closeLin(Type, 0, 0);
    bench->closeDevice(Type, 0);
}

} // namespace

class tst_VirtualAdapterFaults : public QObject
{
    Q_OBJECT

private slots:
    static void openRefused();
    static void infoRefused();
    static void initRefused();
    static void startRefused();
    static void receiveFailsNowAndThen();
    static void receiveFailsAlways();
    static void transmitAcceptsSome();
    static void callsTakeTime();
    static void oneCallTakesTime();
    static void everyCallCanTakeTime();
    static void vanishingIsCountedFromTheFirstOpen();
    static void vanishedDeviceFailsEveryCall();
    static void vanishedForGood();
    static void returnedDeviceMustBeOpenedAgain();
    static void othersGoOnWhenOneVanishes();
    static void vanishedGatewayForwardsNothing();
};

void tst_VirtualAdapterFaults::openRefused()
{
    AdapterBench bench(faulty("{'open_refused': true}"));
    QCOMPARE(bench->openDevice(Type, 0), 0U);
    QCOMPARE(bench->openDevice(Type, 1), 1U);
}

void tst_VirtualAdapterFaults::infoRefused()
{
    AdapterBench bench(faulty("{'info_refused': true}"));
    QCOMPARE(bench->openDevice(Type, 0), 1U);
    QCOMPARE(readInfo(bench, 0), 0U);
    QCOMPARE(bench->openDevice(Type, 1), 1U);
    QCOMPARE(readInfo(bench, 1), 1U);
}

void tst_VirtualAdapterFaults::initRefused()
{
    AdapterBench bench(faulty("{}", "{'init_refused': true}"));
    const VCI_INIT_CONFIG config = AdapterBench::settings();
    bench->openDevice(Type, 0);
    QCOMPARE(bench->initCan(Type, 0, 0, &config), 0U);
    QCOMPARE(bench->startCan(Type, 0, 0), 0U);
    QVERIFY(bench.start(0, 1));
}

void tst_VirtualAdapterFaults::startRefused()
{
    AdapterBench bench(faulty("{}", "{'start_refused': true}"));
    const VCI_INIT_CONFIG config = AdapterBench::settings();
    bench->openDevice(Type, 0);
    QCOMPARE(bench->initCan(Type, 0, 0, &config), 1U);
    QCOMPARE(bench->startCan(Type, 0, 0), 0U);
    bench.clock().advanceMs(5);
    QCOMPARE(bench.waiting(0, 0), 0U);
    QVERIFY(bench.start(0, 1));
}

void tst_VirtualAdapterFaults::receiveFailsNowAndThen()
{
    AdapterBench bench(faulty("{}", "{'receive_error_every': 3}"));
    QVERIFY(bench.start(0, 0) && bench.start(0, 1));
    bench.clock().advanceMs(10);
    VCI_CAN_OBJ frame{};
    std::vector<std::uint32_t> answers;
    std::vector<std::uint64_t> counters;
    for (int i = 0; i < 7; ++i) {
        answers.push_back(bench->receive(Type, 0, 0, &frame, 1));
        if (answers.back() == 1) {
            counters.push_back(counterOf(frame));
        }
    }
    QCOMPARE(answers, std::vector<std::uint32_t>({1, 1, AdapterReceiveError, 1, 1, AdapterReceiveError, 1}));
    QCOMPARE(counters, std::vector<std::uint64_t>({0, 1, 2, 3, 4})); // a failed call loses nothing
    QCOMPARE(bench.receive(0, 1).size(), std::size_t{10});
    // The CAN FD entry fails the same way and counts on.
    QVERIFY(bench.start(0, 0, AdapterBench::settings(2)));
    VCI_CANFD_OBJ fd{};
    bench.clock().advanceMs(3);
    QCOMPARE(bench->receive(Type, 0, 0, &fd, 1), 1U);
    QCOMPARE(bench->receive(Type, 0, 0, &fd, 1), AdapterReceiveError);
}

void tst_VirtualAdapterFaults::receiveFailsAlways()
{
    AdapterBench bench(faulty("{}", "{'receive_error_every': 1}"));
    QVERIFY(bench.start(0, 0));
    bench.clock().advanceMs(2);
    VCI_CAN_OBJ frame{};
    QCOMPARE(bench.waiting(0, 0), 2U);
    QCOMPARE(bench->receive(Type, 0, 0, &frame, 1), AdapterReceiveError);
    QCOMPARE(bench->receive(Type, 0, 0, &frame, 1), AdapterReceiveError);
    QCOMPARE(bench.waiting(0, 0), 2U);
}

void tst_VirtualAdapterFaults::transmitAcceptsSome()
{
    AdapterBench bench(faulty("{}", "{'transmit_accept': 2}"));
    QVERIFY(bench.start(0, 0) && bench.start(0, 1));
    const std::vector<VCI_CAN_OBJ> batch(5, classicFrame(9));
    QCOMPARE(bench->transmit(Type, 0, 0, batch.data(), 5), 2U);
    QCOMPARE(bench->transmit(Type, 0, 0, batch.data(), 1), 1U);
    QCOMPARE(bench.waiting(0, 1), 3U);
    QCOMPARE(bench->transmit(Type, 0, 1, batch.data(), 5), 5U);
    AdapterBench none(faulty("{}", "{'transmit_accept': 0}"));
    QVERIFY(none.start(0, 0, AdapterBench::settings(2)));
    QCOMPARE(none.sendFd(0, 0, fdFrame(1, 8, 1)), 0U);
}

void tst_VirtualAdapterFaults::callsTakeTime()
{
    AdapterBench bench(faulty("{'call_delay_ms': 7}"));
    bench->openDevice(Type, 0);
    QCOMPARE(bench.clock().sleptMs(), std::uint64_t{7});
    readInfo(bench, 0);
    bench.waiting(0, 0);
    QCOMPARE(bench.clock().sleptMs(), std::uint64_t{21});
    bench->openDevice(Type, 1);
    bench->openDevice(Type, 9);
    bench->openDevice(3, 0);
    QCOMPARE(bench.clock().sleptMs(), std::uint64_t{21});
}

void tst_VirtualAdapterFaults::oneCallTakesTime()
{
    AdapterBench bench(faulty("{'call_delay_ms': {'VCI_Receive': 100, 'KQ_ReceiveCANFD': 1000}}"));
    QVERIFY(bench.start(0, 0));
    QCOMPARE(bench.clock().sleptMs(), std::uint64_t{0});
    VCI_CAN_OBJ frame{};
    QCOMPARE(bench->receive(Type, 0, 0, &frame, 1), 1U); // the frames of those 100 ms are there
    QCOMPARE(bench.clock().sleptMs(), std::uint64_t{100});
    VCI_CANFD_OBJ fd{};
    bench->receive(Type, 0, 0, &fd, 1);
    QCOMPARE(bench.clock().sleptMs(), std::uint64_t{1100});
}

void tst_VirtualAdapterFaults::everyCallCanTakeTime()
{
    const QByteArray entries = "VCI_OpenDevice VCI_CloseDevice VCI_InitCAN VCI_StartCAN VCI_ResetCAN VCI_GetReceiveNum "
                               "VCI_ClearBuffer VCI_Transmit VCI_Receive KQ_ReadInfo KQ_OpenCANGateWay "
                               "KQ_SetCANGateWayIDFilter KQ_GetCANGateWayIDFilter KQ_OpenLIN KQ_CloseLIN "
                               "KQ_TransmitLIN KQ_ReceiveLIN KQ_ChangeLINMode KQ_TransmitLINBySlave "
                               "KQ_ReceiveLINBySlave KQ_GetReceiveNumCANFD KQ_TransmitCANFD KQ_ReceiveCANFD";
    for (const QByteArray &slow : entries.split(' ')) {
        AdapterBench bench(faulty("{'call_delay_ms': {'" + slow + "': 3}}"));
        callEachOnce(bench);
        QVERIFY2(bench.clock().sleptMs() == 3, slow.constData());
    }
}

void tst_VirtualAdapterFaults::vanishingIsCountedFromTheFirstOpen()
{
    AdapterBench bench(faulty("{'vanish_after_ms': 100}"));
    bench.clock().advanceMs(1000);
    QCOMPARE(bench->openDevice(Type, 0), 1U);
    bench.clock().advanceMs(60);
    QCOMPARE(bench->closeDevice(Type, 0), 1U);
    QCOMPARE(bench->openDevice(Type, 0), 1U); // the count goes on
    bench.clock().advanceMs(39);
    QCOMPARE(readInfo(bench, 0), 1U);
    bench.clock().advanceMs(1);
    QCOMPARE(readInfo(bench, 0), 0U);
}

void tst_VirtualAdapterFaults::vanishedDeviceFailsEveryCall()
{
    AdapterBench bench(faulty("{'vanish_after_ms': 100}"));
    QVERIFY(bench.start(0, 0) && bench.start(0, 1, AdapterBench::settings(2)));
    QCOMPARE(bench->openLin(Type, 0, 0, 19200, 0), 1U);
    bench.clock().advanceMs(50);
    QCOMPARE(bench.waiting(0, 0), 50U);
    bench.clock().advanceMs(50);
    const VCI_INIT_CONFIG config = AdapterBench::settings();
    VCI_CAN_OBJ frame = classicFrame(1);
    VCI_CANFD_OBJ fd = fdFrame(1, 8, 1);
    VCI_LIN_OBJ lin{};
    std::uint32_t state = 0;
    QCOMPARE(bench->receive(Type, 0, 0, &frame, 1), AdapterReceiveError);
    QCOMPARE(bench->receive(Type, 0, 1, &fd, 1), AdapterReceiveError);
    QCOMPARE(bench->receiveNum(Type, 0, 0), 0U);
    QCOMPARE(bench->receiveNum<VCI_CANFD_OBJ>(Type, 0, 1), 0U);
    QCOMPARE(bench->transmit(Type, 0, 0, &frame, 1), 0U);
    QCOMPARE(bench->transmit(Type, 0, 1, &fd, 1), 0U);
    QCOMPARE(bench->initCan(Type, 0, 0, &config), 0U);
    QCOMPARE(bench->startCan(Type, 0, 0), 0U);
    QCOMPARE(bench->resetCan(Type, 0, 0), 0U);
    QCOMPARE(bench->clearBuffer(Type, 0, 0), 0U);
    QCOMPARE(readInfo(bench, 0), 0U);
    QCOMPARE(bench->switchGateway(Type, 0, AdapterGatewayQuery, &state), 0U);
    QCOMPARE(bench->setGatewayFilter(Type, 0, 0, nullptr, 0), 0U);
    QCOMPARE(bench->openLin(Type, 0, 0, 19200, 0), 0U);
    QCOMPARE(bench->closeLin(Type, 0, 0), 0U);
    QCOMPARE(bench->changeLinMode(Type, 0, 0, 1), 0U);
    QCOMPARE(bench->transmitLin(Type, 0, 0, lin), 0U);
    QCOMPARE(bench->receiveLin(Type, 0, 0, &lin), 0U);
    QCOMPARE(bench->closeDevice(Type, 0), 0U);
    QCOMPARE(bench->openDevice(Type, 0), 0U);
}

void tst_VirtualAdapterFaults::vanishedForGood()
{
    AdapterBench bench(faulty("{'vanish_after_ms': 0}"));
    QCOMPARE(bench->openDevice(Type, 0), 1U);
    QCOMPARE(readInfo(bench, 0), 0U);
    bench.clock().advanceMs(std::uint64_t{86400} * 1000 * 365);
    QCOMPARE(bench->openDevice(Type, 0), 0U);
}

void tst_VirtualAdapterFaults::returnedDeviceMustBeOpenedAgain()
{
    AdapterBench bench(faulty("{'vanish_after_ms': 100, 'return_after_ms': 50}"));
    QVERIFY(bench.start(0, 0));
    bench.clock().advanceMs(100);
    QCOMPARE(bench->openDevice(Type, 0), 0U);
    bench.clock().advanceMs(49);
    QCOMPARE(bench->openDevice(Type, 0), 0U);
    bench.clock().advanceMs(1);
    VCI_CAN_OBJ frame{};
    QCOMPARE(bench->receive(Type, 0, 0, &frame, 1), 0U); // there again, but closed
    QCOMPARE(bench.waiting(0, 0), 0U);
    QCOMPARE(bench->closeDevice(Type, 0), 0U);
    QVERIFY(bench.start(0, 0));
    bench.clock().advanceMs(10);
    QCOMPARE(bench.receive(0, 0).size(), std::size_t{10});
    bench.clock().advanceMs(1000); // it vanishes only once
    QCOMPARE(readInfo(bench, 0), 1U);
    // A device that nobody asked anything while it was away is closed as well.
    AdapterBench unasked(faulty("{'vanish_after_ms': 100, 'return_after_ms': 50}"));
    QVERIFY(unasked.start(0, 0));
    unasked.clock().advanceMs(500);
    QCOMPARE(unasked.waiting(0, 0), 0U);
    QCOMPARE(unasked->openDevice(Type, 0), 1U);
}

void tst_VirtualAdapterFaults::othersGoOnWhenOneVanishes()
{
    AdapterBench bench(faulty("{'vanish_after_ms': 100}"));
    QVERIFY(bench.start(0, 0) && bench.start(1, 0));
    bench.clock().advanceMs(200);
    QCOMPARE(bench.waiting(0, 0), 0U);
    QCOMPARE(bench.waiting(1, 0), 200U);
}

void tst_VirtualAdapterFaults::vanishedGatewayForwardsNothing()
{
    AdapterBench bench("{'buses': [{'name': 'a', 'nodes': [{'id': 1, 'period_us': 1000}]}, {'name': 'b'}],"
                       "'devices': [{'model': 'X9FC', 'gateway_on': true, 'can': [{'bus': 'a'}, {'bus': 'b'}],"
                       "'faults': {'vanish_after_ms': 10}}, {'model': 'X9EC', 'can': [{'bus': 'b'}]}]}");
    QVERIFY(bench.start(0, 0) && bench.start(0, 1) && bench.start(1, 0));
    bench.clock().advanceMs(10);
    QCOMPARE(bench.receive(1, 0).size(), std::size_t{10});
    bench.clock().advanceMs(10);
    QCOMPARE(bench.receive(1, 0).size(), std::size_t{0}); // nobody asked the vanished device itself
}

X9_PLAIN_TEST(tst_VirtualAdapterFaults)
#include "tst_VirtualAdapterFaults.moc"
