#include "tests/adapter/AdapterBench.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

namespace {

constexpr std::uint32_t Type = AdapterDeviceType;
constexpr std::uint8_t Master = 1;
constexpr std::uint8_t Monitor = 3;
constexpr std::uint8_t Developer = 4;

QByteArray oneBus(const QByteArray &slaves, const QByteArray &traffic = {}, const QByteArray &faults = "{}")
{
    return "{'lin_buses': [{'name': 'l', 'baud_rate': 9600, 'slaves': [" + slaves + "], 'traffic': [" + traffic +
           "]}], 'devices': [{'model': 'X9FC', 'lin': [{'bus': 'l', 'faults': " + faults +
           "}, {'bus': 'l'}]},"
           "{'model': 'X9EC', 'lin': [{}]}]}";
}

bool openLin(AdapterBench &bench, std::uint8_t ch, std::uint8_t mode, std::uint16_t baudRate = 9600,
             std::uint8_t checksum = 1)
{
    bench->openDevice(Type, 0);
    return bench->openLin(Type, 0, ch, baudRate, checksum) == 1 && bench->changeLinMode(Type, 0, ch, mode) == 1;
}

/// What a request for this identifier brings: "length id checksum data", all hexadecimal, or "failed".
QByteArray request(AdapterBench &bench, std::uint8_t ch, std::uint8_t id)
{
    VCI_LIN_OBJ frame{};
    frame.ID = id;
    if (bench->receiveLin(Type, 0, ch, &frame) != 1) {
        return "failed";
    }
    const std::array<char, 3> head = {static_cast<char>(frame.DataLen), static_cast<char>(frame.ID),
                                      static_cast<char>(frame.Checksum)};
    return QByteArray(head.data(), 3).toHex(' ') + ' ' +
           QByteArray(reinterpret_cast<const char *>(frame.Data), 8).toHex();
}

/// The next frame seen while monitoring, as above; empty when there is none.
QByteArray monitored(AdapterBench &bench, std::uint8_t ch)
{
    VCI_LIN_OBJ frame{};
    frame.ID = 0x55;
    if (bench->receiveLinBySlave(Type, 0, ch, &frame) != 1) {
        return "failed";
    }
    if (frame.DataLen == 0) {
        return {};
    }
    const std::array<char, 3> head = {static_cast<char>(frame.DataLen), static_cast<char>(frame.ID),
                                      static_cast<char>(frame.Checksum)};
    return QByteArray(head.data(), 3).toHex(' ') + ' ' +
           QByteArray(reinterpret_cast<const char *>(frame.Data), frame.DataLen).toHex();
}

QList<QByteArray> allMonitored(AdapterBench &bench, std::uint8_t ch)
{
    QList<QByteArray> frames;
    for (QByteArray frame = monitored(bench, ch); !frame.isEmpty() && frame != "failed"; frame = monitored(bench, ch)) {
        frames.append(frame);
    }
    return frames;
}

VCI_LIN_OBJ linFrame(std::uint8_t id, const QByteArray &data)
{
    VCI_LIN_OBJ frame{};
    frame.ID = id;
    frame.DataLen = static_cast<std::uint8_t>(data.size());
    std::copy(data.begin(), data.end(), frame.Data);
    return frame;
}

} // namespace

class tst_VirtualAdapterLin : public QObject
{
    Q_OBJECT

private slots:
    static void slavesAnswer_data();
    static void slavesAnswer();
    static void checksumsOfSlaves();
    static void everyIdentifierCanAnswer();
    static void countingSlaveCounts();
    static void wrongBaudRateIsSilence();
    static void unconnectedChannelIsSilence();
    static void modes_data();
    static void modes();
    static void modesDecideWhatWorks();
    static void monitorSeesTheSchedule();
    static void monitorSeesNothingFromBefore();
    static void monitorSeesNothingAtAnotherBaudRate();
    static void silentSlavesAreNotSeen();
    static void wrongParityAndChecksumAreSeen();
    static void monitorSeesTheOtherChannel();
    static void transmitChecksumFollowsTheChannel_data();
    static void transmitChecksumFollowsTheChannel();
    static void monitorBufferIsBounded();
    static void nobodyMonitorsForYears();
    static void modeChangeDropsWhatWaits();
    static void slaveDataCanBeSet();
    static void openAndClose();
    static void closingTheDeviceClosesLin();
    static void badArgumentsAreRefused();
    static void faults_data();
    static void faults();
    static void refusedModes();
};

void tst_VirtualAdapterLin::slavesAnswer_data()
{
    QTest::addColumn<int>("mode");
    QTest::newRow("master") << int{Master};
    QTest::newRow("developer") << int{Developer};
}

void tst_VirtualAdapterLin::slavesAnswer()
{
    QFETCH(int, mode);
    AdapterBench bench(oneBus("{'id': '0x10', 'data': '01 02 03'}, {'id': '0x11', 'data': '04', 'present': false}"));
    QVERIFY(openLin(bench, 0, static_cast<std::uint8_t>(mode)));
    // PID 50 + 01 + 02 + 03 = 56
    QCOMPARE(request(bench, 0, 0x10), QByteArray("03 10 a9 0102030000000000"));
    QCOMPARE(request(bench, 0, 0x11), QByteArray("00 11 00 0000000000000000"));
    QCOMPARE(request(bench, 0, 0x12), QByteArray("00 12 00 0000000000000000"));
}

void tst_VirtualAdapterLin::checksumsOfSlaves()
{
    AdapterBench bench(oneBus("{'id': '0x10', 'data': '01 02 03', 'checksum': 'classic'},"
                              "{'id': '0x11', 'data': 'FF FF 01', 'checksum': 'classic'},"
                              "{'id': '0x3C', 'data': '00 00 00 00 00 00 00 00'},"
                              "{'id': '0x3D', 'data': '00', 'checksum': 'enhanced'},"
                              "{'id': '0x12', 'data': '00', 'checksum': 'classic', 'wrong_checksum': true}"));
    QVERIFY(openLin(bench, 0, Master, 9600, 0)); // the slave decides, not the channel
    QCOMPARE(request(bench, 0, 0x10), QByteArray("03 10 f9 0102030000000000"));
    QCOMPARE(request(bench, 0, 0x11), QByteArray("03 11 fe ffff010000000000"));
    QCOMPARE(request(bench, 0, 0x3C), QByteArray("08 3c ff 0000000000000000"));
    QCOMPARE(request(bench, 0, 0x3D), QByteArray("01 3d 82 0000000000000000")); // PID 7D
    QCOMPARE(request(bench, 0, 0x12), QByteArray("01 12 a5 0000000000000000"));
}

void tst_VirtualAdapterLin::everyIdentifierCanAnswer()
{
    QByteArray slaves;
    for (int id = 0; id < 64; ++id) {
        slaves += (id == 0 ? "" : ",") + QByteArray("{'id': ") + QByteArray::number(id) + ", 'data': [" +
                  QByteArray::number(id) + "]}";
    }
    AdapterBench bench(oneBus(slaves));
    QVERIFY(openLin(bench, 0, Developer));
    for (std::uint8_t id = 0; id < 64; ++id) {
        const QByteArray answer = request(bench, 0, id);
        QCOMPARE(answer.left(5), "01 " + QByteArray(1, static_cast<char>(id)).toHex());
    }
    QCOMPARE(request(bench, 0, 64), QByteArray("failed"));
}

void tst_VirtualAdapterLin::countingSlaveCounts()
{
    AdapterBench bench(oneBus("{'id': 1, 'data': '00 00', 'counting': true, 'checksum': 'classic'}"));
    QVERIFY(openLin(bench, 0, Master));
    QCOMPARE(request(bench, 0, 1), QByteArray("02 01 ff 0000000000000000"));
    QCOMPARE(request(bench, 0, 1), QByteArray("02 01 fe 0100000000000000"));
}

void tst_VirtualAdapterLin::wrongBaudRateIsSilence()
{
    AdapterBench bench(oneBus("{'id': 1, 'data': '01'}"));
    QVERIFY(openLin(bench, 0, Master, 9601));
    QCOMPARE(request(bench, 0, 1), QByteArray("00 01 00 0000000000000000"));
    QCOMPARE(bench->transmitLin(Type, 0, 0, linFrame(1, "x")), 1U); // a master cannot notice
    QCOMPARE(bench->closeLin(Type, 0, 0), 1U);
    QVERIFY(openLin(bench, 0, Master, 9600));
    QCOMPARE(request(bench, 0, 1).left(2), QByteArray("01"));
}

void tst_VirtualAdapterLin::unconnectedChannelIsSilence()
{
    AdapterBench bench(oneBus("{'id': 1, 'data': '01'}"));
    bench->openDevice(Type, 1);
    QCOMPARE(bench->openLin(Type, 1, 0, 9600, 0), 1U);
    VCI_LIN_OBJ frame = linFrame(1, "abc");
    QCOMPARE(bench->receiveLin(Type, 1, 0, &frame), 1U);
    QCOMPARE(int{frame.DataLen}, 0);
    QCOMPARE(bench->transmitLin(Type, 1, 0, linFrame(1, "x")), 1U);
    QCOMPARE(bench->changeLinMode(Type, 1, 0, Monitor), 1U);
    bench.clock().advanceMs(100);
    QCOMPARE(bench->receiveLinBySlave(Type, 1, 0, &frame), 1U);
    QCOMPARE(int{frame.DataLen}, 0);
}

void tst_VirtualAdapterLin::modes_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("known");
    QTest::newRow("0") << 0 << false;
    QTest::newRow("1") << 1 << true;
    QTest::newRow("2") << 2 << false;
    QTest::newRow("3") << 3 << true;
    QTest::newRow("4") << 4 << true;
    QTest::newRow("5") << 5 << false;
    QTest::newRow("255") << 255 << false;
}

void tst_VirtualAdapterLin::modes()
{
    QFETCH(int, mode);
    QFETCH(bool, known);
    AdapterBench bench(oneBus({}));
    bench->openDevice(Type, 0);
    QCOMPARE(bench->changeLinMode(Type, 0, 0, static_cast<std::uint8_t>(mode)), 0U); // not open
    QCOMPARE(bench->openLin(Type, 0, 0, 9600, 0), 1U);
    QCOMPARE(bench->changeLinMode(Type, 0, 0, static_cast<std::uint8_t>(mode)), known ? 1U : 0U);
}

void tst_VirtualAdapterLin::modesDecideWhatWorks()
{
    AdapterBench bench(oneBus("{'id': 1, 'data': '01'}"));
    VCI_LIN_OBJ frame = linFrame(1, {});
    bench->openDevice(Type, 0);
    QCOMPARE(request(bench, 0, 1), QByteArray("failed")); // not open
    QCOMPARE(bench->openLin(Type, 0, 0, 9600, 0), 1U);
    for (const std::uint8_t mode : {Master, Developer}) {
        bench->changeLinMode(Type, 0, 0, mode);
        QCOMPARE(bench->transmitLin(Type, 0, 0, frame), 1U);
        QCOMPARE(bench->receiveLin(Type, 0, 0, &frame), 1U);
        QCOMPARE(bench->receiveLinBySlave(Type, 0, 0, &frame), 0U);
    }
    bench->changeLinMode(Type, 0, 0, Monitor);
    QCOMPARE(bench->transmitLin(Type, 0, 0, frame), 0U);
    QCOMPARE(bench->receiveLin(Type, 0, 0, &frame), 0U);
    QCOMPARE(bench->receiveLinBySlave(Type, 0, 0, &frame), 1U);
}

void tst_VirtualAdapterLin::monitorSeesTheSchedule()
{
    AdapterBench bench(
        oneBus("{'id': '0x10', 'data': '01 02 03'}",
               "{'id': '0x10', 'period_ms': 20},"
               "{'id': '0x01', 'period_ms': 30, 'data': '00 00', 'counting': true, 'checksum': 'classic'}"));
    QVERIFY(openLin(bench, 0, Monitor));
    QCOMPARE(monitored(bench, 0), QByteArray());
    bench.clock().advanceMs(60);
    const QByteArray slave = "03 50 a9 010203"; // the protected identifier of 0x10
    const QList<QByteArray> expected = {slave, "02 c1 ff 0000", slave, slave, "02 c1 fe 0100"};
    QCOMPARE(allMonitored(bench, 0), expected);
    QCOMPARE(monitored(bench, 0), QByteArray());
}

void tst_VirtualAdapterLin::monitorSeesNothingFromBefore()
{
    AdapterBench bench(oneBus({}, "{'id': 1, 'period_ms': 10, 'data': '00', 'counting': true, 'checksum': 'classic'}"));
    bench->openDevice(Type, 0);
    bench->openLin(Type, 0, 0, 9600, 0);
    bench.clock().advanceMs(95);
    QCOMPARE(bench->changeLinMode(Type, 0, 0, Monitor), 1U);
    QCOMPARE(monitored(bench, 0), QByteArray());
    bench.clock().advanceMs(10);
    QCOMPARE(monitored(bench, 0), QByteArray("01 c1 f6 09")); // the tenth frame
}

void tst_VirtualAdapterLin::monitorSeesNothingAtAnotherBaudRate()
{
    AdapterBench bench(oneBus({}, "{'id': 1, 'period_ms': 10, 'data': '00'}"));
    QVERIFY(openLin(bench, 0, Monitor, 19200));
    bench.clock().advanceMs(100);
    QCOMPARE(monitored(bench, 0), QByteArray());
}

void tst_VirtualAdapterLin::silentSlavesAreNotSeen()
{
    AdapterBench bench(
        oneBus("{'id': 1, 'data': '01', 'present': false}", "{'id': 1, 'period_ms': 10}, {'id': 2, 'period_ms': 10}"));
    QVERIFY(openLin(bench, 0, Monitor));
    bench.clock().advanceMs(100);
    QCOMPARE(monitored(bench, 0), QByteArray());
}

void tst_VirtualAdapterLin::wrongParityAndChecksumAreSeen()
{
    AdapterBench bench(oneBus("{'id': 1, 'data': '00', 'checksum': 'classic', 'wrong_checksum': true}",
                              "{'id': 1, 'period_ms': 10}, {'id': 2, 'period_ms': 10, 'data': '00', "
                              "'checksum': 'classic', 'wrong_parity': true}"));
    QVERIFY(openLin(bench, 0, Monitor));
    bench.clock().advanceMs(10);
    const QList<QByteArray> expected = {"01 c1 a5 00", "01 02 ff 00"}; // the right identifier byte is 42
    QCOMPARE(allMonitored(bench, 0), expected);
}

void tst_VirtualAdapterLin::monitorSeesTheOtherChannel()
{
    AdapterBench bench(oneBus("{'id': '0x10', 'data': '01 02 03'}"));
    QVERIFY(openLin(bench, 0, Master));
    QVERIFY(openLin(bench, 1, Monitor));
    request(bench, 0, 0x10);
    request(bench, 0, 0x11); // no answer, nothing to see
    QCOMPARE(bench->transmitLin(Type, 0, 0, linFrame(0x01, QByteArray::fromHex("0203"))), 1U);
    const QList<QByteArray> expected = {"03 50 a9 010203", "02 c1 39 0203"};
    QCOMPARE(allMonitored(bench, 1), expected);
}

void tst_VirtualAdapterLin::transmitChecksumFollowsTheChannel_data()
{
    QTest::addColumn<int>("checksum");
    QTest::addColumn<int>("id");
    QTest::addColumn<QByteArray>("seen");
    QTest::newRow("classic") << 0 << 0x01 << QByteArray("02 c1 fa 0203");
    QTest::newRow("enhanced") << 1 << 0x01 << QByteArray("02 c1 39 0203");
    QTest::newRow("diagnostic request is always classic") << 1 << 0x3C << QByteArray("02 3c fa 0203");
    QTest::newRow("diagnostic response too") << 1 << 0x3D << QByteArray("02 7d fa 0203");
}

void tst_VirtualAdapterLin::transmitChecksumFollowsTheChannel()
{
    QFETCH(int, checksum);
    QFETCH(int, id);
    AdapterBench bench(oneBus({}));
    QVERIFY(openLin(bench, 0, Developer, 9600, static_cast<std::uint8_t>(checksum)));
    QVERIFY(openLin(bench, 1, Monitor));
    VCI_LIN_OBJ frame = linFrame(static_cast<std::uint8_t>(id), QByteArray::fromHex("0203"));
    frame.Checksum = 0x77; // the adapter computes it
    QCOMPARE(bench->transmitLin(Type, 0, 0, frame), 1U);
    QTEST(monitored(bench, 1), "seen");
}

void tst_VirtualAdapterLin::monitorBufferIsBounded()
{
    AdapterBench bench(oneBus({}, "{'id': 1, 'period_ms': 1, 'data': '00 00', 'counting': true}"));
    QVERIFY(openLin(bench, 0, Monitor));
    bench.clock().advanceMs(1500);
    const QList<QByteArray> frames = allMonitored(bench, 0);
    QCOMPARE(frames.size(), static_cast<int>(va::LinNetwork::MaxWaitingFrames));
    QVERIFY(frames.first().endsWith(" 0000")); // the oldest are kept
    QVERIFY(frames.last().endsWith(" e703"));
    bench.clock().advanceMs(1);
    QVERIFY(monitored(bench, 0).endsWith(" dc05")); // and the count goes on at 1500
}

void tst_VirtualAdapterLin::nobodyMonitorsForYears()
{
    AdapterBench bench(oneBus("{'id': 2, 'data': '00 00', 'counting': true}",
                              "{'id': 1, 'period_ms': 1, 'data': '00'}, {'id': 2, 'period_ms': 1}"));
    QVERIFY(openLin(bench, 0, Monitor));
    bench.clock().advanceMs(std::uint64_t{365} * 86400 * 1000);
    QCOMPARE(allMonitored(bench, 0).size(), static_cast<int>(va::LinNetwork::MaxWaitingFrames));
    bench->changeLinMode(Type, 0, 0, Master);
    bench.clock().advanceMs(std::uint64_t{365} * 86400 * 1000);
    // The slave has answered the whole time, seen or not.
    VCI_LIN_OBJ frame = linFrame(2, {});
    QCOMPARE(bench->receiveLin(Type, 0, 0, &frame), 1U);
    QCOMPARE(counterOf(frame), std::uint64_t{2} * 365 * 86400 * 1000 % 65536);
}

void tst_VirtualAdapterLin::modeChangeDropsWhatWaits()
{
    AdapterBench bench(oneBus({}, "{'id': 1, 'period_ms': 10, 'data': '00'}"));
    QVERIFY(openLin(bench, 0, Monitor));
    bench.clock().advanceMs(50);
    QCOMPARE(bench->changeLinMode(Type, 0, 0, Monitor), 1U);
    QCOMPARE(monitored(bench, 0), QByteArray());
}

void tst_VirtualAdapterLin::slaveDataCanBeSet()
{
    AdapterBench bench(oneBus("{'id': 1, 'data': '01'}"));
    QVERIFY(openLin(bench, 0, Master, 9600, 0));
    QCOMPARE(bench->transmitLinBySlave(Type, 0, 0, linFrame(1, QByteArray::fromHex("0203"))), 1U);
    QCOMPARE(bench->transmitLinBySlave(Type, 0, 0, linFrame(0x3F, QByteArray::fromHex("00"))), 1U); // a new slave
    QCOMPARE(request(bench, 0, 1), QByteArray("02 01 fa 0203000000000000"));
    QCOMPARE(request(bench, 0, 0x3F), QByteArray("01 3f ff 0000000000000000"));
    QCOMPARE(bench->transmitLinBySlave(Type, 0, 0, linFrame(1, {})), 1U); // without data it falls silent
    QCOMPARE(request(bench, 0, 1), QByteArray("00 01 00 0000000000000000"));
    QVERIFY(openLin(bench, 1, Master, 19200));
    QCOMPARE(bench->transmitLinBySlave(Type, 0, 1, linFrame(1, "x")), 0U); // does not reach the bus
}

void tst_VirtualAdapterLin::openAndClose()
{
    AdapterBench bench(oneBus({}));
    QCOMPARE(bench->openLin(Type, 0, 0, 9600, 0), 0U); // device closed
    bench->openDevice(Type, 0);
    QCOMPARE(bench->closeLin(Type, 0, 0), 0U);
    QCOMPARE(bench->openLin(Type, 0, 0, 9600, 2), 0U); // no such checksum type
    QCOMPARE(bench->openLin(Type, 0, 0, 9600, 0), 1U);
    QCOMPARE(bench->openLin(Type, 0, 0, 9600, 0), 0U);
    QCOMPARE(bench->openLin(Type, 0, 1, 20000, 1), 1U);
    QCOMPARE(bench->closeLin(Type, 0, 0), 1U);
    QCOMPARE(bench->closeLin(Type, 0, 0), 0U);
}

void tst_VirtualAdapterLin::closingTheDeviceClosesLin()
{
    AdapterBench bench(oneBus({}));
    QVERIFY(openLin(bench, 0, Master));
    bench->closeDevice(Type, 0);
    bench->openDevice(Type, 0);
    QCOMPARE(bench->closeLin(Type, 0, 0), 0U);
    QCOMPARE(bench->openLin(Type, 0, 0, 9600, 0), 1U);
}

void tst_VirtualAdapterLin::badArgumentsAreRefused()
{
    AdapterBench bench(oneBus("{'id': 1, 'data': '01'}"));
    QVERIFY(openLin(bench, 0, Master));
    QCOMPARE(bench->receiveLin(Type, 0, 0, nullptr), 0U);
    QCOMPARE(bench->transmitLin(Type, 0, 0, linFrame(0x40, "x")), 0U);
    VCI_LIN_OBJ tooLong = linFrame(1, "x");
    tooLong.DataLen = 9;
    QCOMPARE(bench->transmitLin(Type, 0, 0, tooLong), 0U);
    QCOMPARE(bench->transmitLinBySlave(Type, 0, 0, tooLong), 0U);
    VCI_LIN_OBJ frame = linFrame(1, {});
    for (const auto &[type, dev, ch] :
         {std::tuple<std::uint32_t, std::uint8_t, std::uint8_t>{3, 0, 0}, {4, 7, 0}, {4, 0, 2}, {4, 0, 255}}) {
        QCOMPARE(bench->openLin(type, dev, ch, 9600, 0), 0U);
        QCOMPARE(bench->closeLin(type, dev, ch), 0U);
        QCOMPARE(bench->changeLinMode(type, dev, ch, Master), 0U);
        QCOMPARE(bench->transmitLin(type, dev, ch, frame), 0U);
        QCOMPARE(bench->receiveLin(type, dev, ch, &frame), 0U);
        QCOMPARE(bench->receiveLinBySlave(type, dev, ch, &frame), 0U);
        QCOMPARE(bench->transmitLinBySlave(type, dev, ch, frame), 0U);
    }
    bench->changeLinMode(Type, 0, 0, Monitor);
    QCOMPARE(bench->receiveLinBySlave(Type, 0, 0, nullptr), 0U);
}

void tst_VirtualAdapterLin::faults_data()
{
    QTest::addColumn<QByteArray>("fault");
    QTest::addColumn<int>("open");
    QTest::addColumn<int>("transmit");
    QTest::addColumn<int>("receive");
    QTest::addColumn<int>("close");
    QTest::newRow("none") << QByteArray("{}") << 1 << 1 << 1 << 1;
    QTest::newRow("open") << QByteArray("{'open_refused': true}") << 0 << 0 << 0 << 0;
    QTest::newRow("transmit") << QByteArray("{'transmit_refused': true}") << 1 << 0 << 1 << 1;
    QTest::newRow("receive") << QByteArray("{'receive_refused': true}") << 1 << 1 << 0 << 1;
    QTest::newRow("close") << QByteArray("{'close_refused': true}") << 1 << 1 << 1 << 0;
}

void tst_VirtualAdapterLin::faults()
{
    QFETCH(QByteArray, fault);
    QFETCH(int, open);
    QFETCH(int, transmit);
    QFETCH(int, receive);
    QFETCH(int, close);
    AdapterBench bench(oneBus({}, {}, fault));
    bench->openDevice(Type, 0);
    VCI_LIN_OBJ frame = linFrame(1, "x");
    QCOMPARE(static_cast<int>(bench->openLin(Type, 0, 0, 9600, 0)), open);
    QCOMPARE(static_cast<int>(bench->transmitLin(Type, 0, 0, frame)), transmit);
    QCOMPARE(static_cast<int>(bench->receiveLin(Type, 0, 0, &frame)), receive);
    if (open == 1) {
        bench->changeLinMode(Type, 0, 0, Monitor);
    }
    QCOMPARE(static_cast<int>(bench->receiveLinBySlave(Type, 0, 0, &frame)), receive);
    QCOMPARE(static_cast<int>(bench->closeLin(Type, 0, 0)), close);
    QCOMPARE(bench->openLin(Type, 0, 1, 9600, 0), 1U); // the other channel is fine
}

void tst_VirtualAdapterLin::refusedModes()
{
    AdapterBench bench(oneBus({}, {}, "{'mode_refused': [3, 4]}"));
    bench->openDevice(Type, 0);
    bench->openLin(Type, 0, 0, 9600, 0);
    QCOMPARE(bench->changeLinMode(Type, 0, 0, Monitor), 0U);
    QCOMPARE(bench->changeLinMode(Type, 0, 0, Developer), 0U);
    QCOMPARE(bench->changeLinMode(Type, 0, 0, Master), 1U);
}

X9_PLAIN_TEST(tst_VirtualAdapterLin)
#include "tst_VirtualAdapterLin.moc"
