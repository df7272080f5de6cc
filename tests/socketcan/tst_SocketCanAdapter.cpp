#include "adapter/socketcan/SocketCanAdapter.h"
#include "tests/socketcan/CanTestFrames.h"
#include "tests/socketcan/StandInKernel.h"
#include "tests/support/TestProgram.h"

#include <linux/can/netlink.h>

#include <QtTest>

#include <array>

using socketcan::Batch;
using socketcan::SocketCanAdapter;

namespace {

constexpr std::uint32_t Type = AdapterDeviceType;

StandInLink canLink(const char *name, const char *kind = "vcan", std::uint32_t supportedModes = 0)
{
    StandInLink result;
    result.name = name;
    result.kind = kind;
    result.isUp = true;
    result.mtu = 72;
    result.bitrate = result.kind == "can" ? 500000 : 0;
    result.supportedModes = supportedModes;
    if (result.kind == "can") {
        result.mtu = 16;
    }
    return result;
}

using Texts = std::array<std::array<char, AdapterInfoSize>, 4>;

struct Bench
{
    explicit Bench(const QList<StandInLink> &links, std::optional<socketcan::InterfaceMap> map = {})
    {
        for (const StandInLink &each : links) {
            system.kernel.plugIn(each);
        }
        adapter = std::make_unique<SocketCanAdapter>(system, std::move(map));
    }
    bool start(std::uint8_t dev, std::uint8_t ch, const VCI_INIT_CONFIG &config = settingsOf()) const
    {
        adapter->openDevice(Type, dev);
        return adapter->initCan(Type, dev, ch, &config) == 1 && adapter->startCan(Type, dev, ch) == 1;
    }
    void arrive(const char *interface, const QByteArray &frame) { system.far(interface)->write(frameOf(frame)); }
    /// What went out through the interface so far.
    QList<QByteArray> sent(const char *interface)
    {
        Batch batch;
        QList<QByteArray> &frames = allSent[interface];
        while (system.far(interface)->read(batch) == 0) {
            for (std::size_t i = 0; i < batch.size; ++i) {
                frames.append(textOf(batch.arrivals[i].frame));
            }
        }
        return frames;
    }
    QString text(int which, std::uint8_t dev = 0) const
    {
        Texts texts{};
        const bool isRead =
            adapter->readInfo(Type, dev, texts[0].data(), texts[1].data(), texts[2].data(), texts[3].data()) == 1;
        return isRead ? QString::fromLatin1(texts.at(static_cast<std::size_t>(which)).data()) : QString();
    }
    VCI_ERR_INFO errors(std::uint8_t dev, std::uint8_t ch) const
    {
        VCI_ERR_INFO info{};
        adapter->readErrInfo(Type, dev, ch, &info);
        return info;
    }
    AdapterProblemCode problem(std::uint8_t dev, std::uint8_t ch) const
    {
        return static_cast<AdapterProblemCode>(errors(dev, ch).ErrCode);
    }

    StandInSystem system;
    QHash<QByteArray, QList<QByteArray>> allSent;
    std::unique_ptr<SocketCanAdapter> adapter;
};

} // namespace

/// The adapter on a stand-in for the kernel: its entries, its receiving thread.
class tst_SocketCanAdapter : public QObject
{
    Q_OBJECT

private slots:
    static void devices();
    static void mappedDevices();
    static void interfacesComeAndGo();
    static void openDevicesKeepTheirInterfaces();
    static void information();
    static void receivesAndSends();
    static void canFd();
    static void kindsDoNotMix();
    static void badRecordsStopTheCall();
    static void listenOnlySendsNothing();
    static void gateway();
    static void gatewayWaitsForRoom();
    static void gatewayLists();
    static void stoppingDropsWhatWaits();
    static void refusedInitTellsWhy();
    static void ratesThatCannotBe_data();
    static void ratesThatCannotBe();
    static void portThatDoesNotOpen();
    static void pulledOut();
    static void noLin();
    static void unusualArguments();
    static void manyStartsAndStops();
};

void tst_SocketCanAdapter::devices()
{
    Bench bench({canLink("can10"), canLink("can2"), canLink("can1")});
    QCOMPARE(bench.adapter->openDevice(Type, 0), 1U);
    QCOMPARE(bench.adapter->openDevice(Type, 0), 0U);
    QCOMPARE(bench.adapter->openDevice(Type, 1), 1U);
    QCOMPARE(bench.adapter->openDevice(Type, 2), 0U);
    QCOMPARE(bench.text(0), QStringLiteral("can1 (vcan), can2 (vcan)"));
    QCOMPARE(bench.text(0, 1), QStringLiteral("can10 (vcan)"));
    QVERIFY(!bench.start(1, 1));
    QCOMPARE(bench.problem(1, 1), AdapterProblemCode::NoInterface);
    QCOMPARE(bench.adapter->closeDevice(Type, 0), 1U);
    QCOMPARE(bench.adapter->closeDevice(Type, 0), 0U);
    QVERIFY(!Bench({}).adapter->openDevice(Type, 0));
}

void tst_SocketCanAdapter::mappedDevices()
{
    socketcan::InterfaceMap map;
    map[2] = {"", "can0"};
    map[3] = {"can9", ""};
    Bench bench({canLink("can0"), canLink("can1")}, map);
    QCOMPARE(bench.adapter->openDevice(Type, 0), 0U);
    QCOMPARE(bench.adapter->openDevice(Type, 3), 0U); // not there
    QVERIFY(bench.start(2, 1));
    QVERIFY(!bench.start(2, 0));
}

void tst_SocketCanAdapter::interfacesComeAndGo()
{
    Bench bench({});
    QCOMPARE(bench.adapter->openDevice(Type, 0), 0U);
    bench.system.kernel.plugIn(canLink("can0"));
    QCOMPARE(bench.adapter->openDevice(Type, 0), 1U);
    QCOMPARE(bench.adapter->closeDevice(Type, 0), 1U);
    bench.system.kernel.pullOut("can0");
    QCOMPARE(bench.adapter->openDevice(Type, 0), 0U);
}

/// While a device is open, the others stay where they are as well.
void tst_SocketCanAdapter::openDevicesKeepTheirInterfaces()
{
    Bench bench({canLink("can0"), canLink("can1"), canLink("can2")});
    QVERIFY(bench.start(0, 0));
    bench.system.pullOut("can0");
    QCOMPARE(bench.adapter->openDevice(Type, 1), 1U);
    QCOMPARE(bench.text(0, 1), QStringLiteral("can2 (vcan)"));
    bench.adapter->closeDevice(Type, 1);
    bench.adapter->closeDevice(Type, 0);
    QCOMPARE(bench.adapter->openDevice(Type, 0), 1U);
    QCOMPARE(bench.text(0), QStringLiteral("can1 (vcan), can2 (vcan)"));
}

void tst_SocketCanAdapter::information()
{
    Bench bench({canLink("can0", "can"), canLink("can1", "can"), canLink("can2", "can", CAN_CTRLMODE_FD)});
    bench.adapter->openDevice(Type, 0);
    bench.adapter->openDevice(Type, 1);
    QCOMPARE(bench.text(0), QStringLiteral("can0 (gs_usb), can1 (gs_usb)"));
    QVERIFY(bench.text(1).startsWith(QLatin1String("X9EC")));
    QVERIFY(bench.text(1, 1).startsWith(QLatin1String("X9FC")));
    QCOMPARE(bench.text(2), QStringLiteral("Linux 6.1.0-56-amd64"));
    QCOMPARE(bench.text(3), QStringLiteral("SocketCAN"));
    QVERIFY(bench.text(1, 2).isEmpty()); // not open
}

void tst_SocketCanAdapter::receivesAndSends()
{
    Bench bench({canLink("can0"), canLink("can1")});
    QVERIFY(bench.start(0, 0));
    const QList<QByteArray> frames{"123#1122", "12345678#", "7FF#R8"};
    for (const QByteArray &frame : frames) {
        bench.arrive("can0", frame);
    }
    QTRY_COMPARE(bench.adapter->receiveNumCan(Type, 0, 0), 3U);
    std::array<VCI_CAN_OBJ, 5> records{};
    QCOMPARE(bench.adapter->receiveCan(Type, 0, 0, records.data(), 2), 2U);
    QCOMPARE(bench.adapter->receiveCan(Type, 0, 0, records.data() + 2, 3), 1U);
    QCOMPARE(bench.adapter->receiveCan(Type, 0, 0, records.data(), 5), 0U);
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(textOf(records.at(static_cast<std::size_t>(i))), frames.at(i));
    }
    std::vector<VCI_CAN_OBJ> out;
    for (const QByteArray &frame : frames) {
        out.push_back(recordOf<VCI_CAN_OBJ>(frame));
    }
    QCOMPARE(bench.adapter->transmitCan(Type, 0, 0, out.data(), 3), 3U);
    QCOMPARE(bench.sent("can0"), frames);
    QCOMPARE(bench.adapter->receiveNumCan(Type, 0, 0), 0U); // not its own
}

void tst_SocketCanAdapter::canFd()
{
    Bench bench({canLink("can0")});
    QVERIFY(bench.start(0, 0, settingsOf(2)));
    QVERIFY(bench.system.lastSettings.isFd);
    const QList<QByteArray> frames{"123##0112233", "12345678##1" + QByteArray(128, 'A'), "001#55"};
    for (const QByteArray &frame : frames) {
        bench.arrive("can0", frame);
    }
    QTRY_COMPARE(bench.adapter->receiveNumCanFd(Type, 0, 0), 3U);
    std::array<VCI_CANFD_OBJ, 3> records{};
    QCOMPARE(bench.adapter->receiveCanFd(Type, 0, 0, records.data(), 3), 3U);
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(textOf(records.at(static_cast<std::size_t>(i))), frames.at(i));
        const auto record = recordOf<VCI_CANFD_OBJ>(frames.at(i));
        QCOMPARE(bench.adapter->transmitCanFd(Type, 0, 0, &record, 1), 1U);
    }
    QCOMPARE(bench.sent("can0"), frames);
}

void tst_SocketCanAdapter::kindsDoNotMix()
{
    Bench bench({canLink("can0")});
    QVERIFY(bench.start(0, 0));
    bench.arrive("can0", "123#");
    QTRY_COMPARE(bench.adapter->receiveNumCan(Type, 0, 0), 1U);
    QCOMPARE(bench.adapter->receiveNumCanFd(Type, 0, 0), 0U);
    auto record = recordOf<VCI_CANFD_OBJ>("123#");
    QCOMPARE(bench.adapter->receiveCanFd(Type, 0, 0, &record, 1), 0U);
    QCOMPARE(bench.adapter->transmitCanFd(Type, 0, 0, &record, 1), 0U);
}

/// In order: behind a frame that cannot be, none is sent.
void tst_SocketCanAdapter::badRecordsStopTheCall()
{
    Bench bench({canLink("can0")});
    QVERIFY(bench.start(0, 0));
    std::array<VCI_CAN_OBJ, 3> records = {recordOf<VCI_CAN_OBJ>("001#"), recordOf<VCI_CAN_OBJ>("002#"),
                                          recordOf<VCI_CAN_OBJ>("003#")};
    records[1].DataLen = 9;
    QCOMPARE(bench.adapter->transmitCan(Type, 0, 0, records.data(), 3), 1U);
    QCOMPARE(bench.sent("can0"), QList<QByteArray>({"001#"}));
}

void tst_SocketCanAdapter::listenOnlySendsNothing()
{
    Bench bench({canLink("can0")});
    QVERIFY(bench.start(0, 0, settingsOf(0, true)));
    const auto record = recordOf<VCI_CAN_OBJ>("001#");
    QCOMPARE(bench.adapter->transmitCan(Type, 0, 0, &record, 1), 0U);
    QCOMPARE(bench.errors(0, 0).Refused, 1U);
    bench.arrive("can0", "123#");
    QTRY_COMPARE(bench.adapter->receiveNumCan(Type, 0, 0), 1U);
}

void tst_SocketCanAdapter::gateway()
{
    Bench bench({canLink("can0"), canLink("can1")});
    std::uint32_t state = 7;
    QVERIFY(bench.start(0, 0));
    QCOMPARE(bench.adapter->switchGateway(Type, 0, AdapterGatewayOn, &state), 0U); // one channel only
    QVERIFY(bench.start(0, 1));
    QCOMPARE(bench.adapter->switchGateway(Type, 0, AdapterGatewayQuery, &state), 1U);
    QCOMPARE(state, 0U);
    QCOMPARE(bench.adapter->switchGateway(Type, 0, AdapterGatewayOn, &state), 1U);
    QCOMPARE(state, 1U);
    bench.arrive("can0", "001#11");
    QTRY_COMPARE(bench.adapter->receiveNumCan(Type, 0, 0), 1U);
    QTRY_COMPARE(bench.sent("can1"), QList<QByteArray>({"001#11"}));
    bench.arrive("can1", "002#22");
    QTRY_COMPARE(bench.sent("can0"), QList<QByteArray>({"002#22"}));
    QCOMPARE(bench.adapter->switchGateway(Type, 0, 9, &state), 0U);
    bench.adapter->resetCan(Type, 0, 1);
    QCOMPARE(bench.adapter->switchGateway(Type, 0, AdapterGatewayQuery, &state), 1U);
    QCOMPARE(state, 0U);
}

/// The other side takes nothing for a while: what was forwarded comes then, all of it and in order.
void tst_SocketCanAdapter::gatewayWaitsForRoom()
{
    Bench bench({canLink("can0"), canLink("can1")});
    QVERIFY(bench.start(0, 0) && bench.start(0, 1));
    std::uint32_t state = 0;
    QCOMPARE(bench.adapter->switchGateway(Type, 0, AdapterGatewayOn, &state), 1U);
    QList<QByteArray> wanted;
    for (int i = 0; i < 1500; ++i) {
        const QByteArray frame = QByteArray::number(i, 16).toUpper().rightJustified(3, '0') + "#11";
        while (bench.system.far("can0")->write(frameOf(frame)) != 0) {
            QThread::msleep(1);
        }
        wanted.append(frame);
    }
    QTRY_COMPARE(bench.adapter->receiveNumCan(Type, 0, 0), 1500U);
    QTRY_COMPARE(bench.sent("can1").size(), 1500);
    QCOMPARE(bench.sent("can1"), wanted);
    QCOMPARE(bench.errors(0, 1).GatewayLost, 0U);
}

void tst_SocketCanAdapter::gatewayLists()
{
    Bench bench({canLink("can0"), canLink("can1")});
    bench.adapter->openDevice(Type, 0);
    std::array<std::uint32_t, AdapterGatewayMaxIds + 1> words{};
    words[0] = 0x123U * 8 + 1;
    words[1] = 0xFFFFFFFFU; // of no form, kept all the same
    QCOMPARE(bench.adapter->setGatewayFilter(Type, 0, 0, words.data(), AdapterGatewayMaxIds + 1), 0U);
    QCOMPARE(bench.adapter->setGatewayFilter(Type, 0, 0, words.data(), 2), 1U);
    std::uint32_t count = 0;
    std::array<std::uint32_t, AdapterGatewayMaxIds> read{};
    QCOMPARE(bench.adapter->gatewayFilter(Type, 0, 0, read.data(), &count), 1U);
    QCOMPARE(count, 2U);
    QCOMPARE(read[1], 0xFFFFFFFFU);
    std::uint32_t state = 0;
    QVERIFY(bench.start(0, 0) && bench.start(0, 1));
    QCOMPARE(bench.adapter->switchGateway(Type, 0, AdapterGatewayOn, &state), 1U);
    bench.arrive("can0", "124#");
    bench.arrive("can0", "123#"); // its list was set before it was started
    QTRY_COMPARE(bench.sent("can1"), QList<QByteArray>({"123#"}));
    QCOMPARE(bench.adapter->setGatewayFilter(Type, 0, 0, nullptr, 0), 1U);
    bench.arrive("can0", "125#");
    QTRY_COMPARE(bench.sent("can1"), QList<QByteArray>({"123#", "125#"}));
    bench.adapter->closeDevice(Type, 0);
    bench.adapter->openDevice(Type, 0);
    QCOMPARE(bench.adapter->gatewayFilter(Type, 0, 0, read.data(), &count), 1U);
    QCOMPARE(count, 0U);
}

void tst_SocketCanAdapter::stoppingDropsWhatWaits()
{
    Bench bench({canLink("can0")});
    QVERIFY(bench.start(0, 0));
    bench.arrive("can0", "123#");
    QTRY_COMPARE(bench.adapter->receiveNumCan(Type, 0, 0), 1U);
    QCOMPARE(bench.adapter->resetCan(Type, 0, 0), 1U);
    QCOMPARE(bench.adapter->receiveNumCan(Type, 0, 0), 0U);
    QCOMPARE(bench.adapter->startCan(Type, 0, 0), 1U); // the settings stay
    QCOMPARE(bench.adapter->receiveNumCan(Type, 0, 0), 0U);
    bench.arrive("can0", "124#");
    QTRY_COMPARE(bench.adapter->receiveNumCan(Type, 0, 0), 1U);
    QCOMPARE(bench.adapter->clearBuffer(Type, 0, 0), 1U);
    QCOMPARE(bench.adapter->receiveNumCan(Type, 0, 0), 0U);
    bench.adapter->closeDevice(Type, 0);
    bench.adapter->openDevice(Type, 0);
    QCOMPARE(bench.adapter->startCan(Type, 0, 0), 0U); // not initialised
}

void tst_SocketCanAdapter::refusedInitTellsWhy()
{
    Bench bench({canLink("can0", "can")});
    bench.system.kernel.mayChange = false;
    bench.system.kernel.link("can0").bitrate = 250000;
    QVERIFY(!bench.start(0, 0));
    bench.adapter->closeDevice(Type, 0);
    const VCI_ERR_INFO info = bench.errors(0, 0); // of a closed device, too
    QCOMPARE(info.ErrCode, static_cast<std::uint32_t>(AdapterProblemCode::WrongBitRate));
    QCOMPARE(QByteArray(info.Text),
             QByteArray("can0 runs at 250000 bit/s, and changing it was refused: Operation not permitted"));
    QCOMPARE(QByteArray(info.Remedy), QByteArray("ip link set can0 down; ip link set can0 up type can bitrate 500000"));
    QCOMPARE(bench.system.complaints.size(), std::size_t{1});
    QVERIFY(bench.system.complaints.front().find("ip link set can0 down") != std::string::npos);
    bench.system.kernel.mayChange = true;
    QVERIFY(bench.start(0, 0));
    QCOMPARE(bench.problem(0, 0), AdapterProblemCode::None);
}

void tst_SocketCanAdapter::ratesThatCannotBe_data()
{
    QTest::addColumn<int>("timing0");
    QTest::addColumn<int>("timing1");
    QTest::addColumn<int>("dataRate");
    QTest::newRow("no whole rate") << 0x02 << 0x00 << 0;
    QTest::newRow("too fast") << 0x00 << 0x01 << 0;
    QTest::newRow("data rate without a meaning") << 0x00 << 0x1C << 5;
}

void tst_SocketCanAdapter::ratesThatCannotBe()
{
    QFETCH(int, timing0);
    QFETCH(int, timing1);
    QFETCH(int, dataRate);
    Bench bench({canLink("can0")});
    VCI_INIT_CONFIG config = settingsOf(static_cast<std::uint8_t>(dataRate));
    config.Timing0 = static_cast<std::uint8_t>(timing0);
    config.Timing1 = static_cast<std::uint8_t>(timing1);
    QVERIFY(!bench.start(0, 0, config));
    QCOMPARE(bench.problem(0, 0), AdapterProblemCode::NoSuchBitRate);
    QCOMPARE(bench.system.kernel.changes, 0);
}

void tst_SocketCanAdapter::portThatDoesNotOpen()
{
    Bench bench({canLink("can0")});
    bench.system.openError = EMFILE;
    QVERIFY(!bench.start(0, 0));
    QCOMPARE(bench.problem(0, 0), AdapterProblemCode::System);
    QVERIFY(QByteArray(bench.errors(0, 0).Text).contains("Too many open files"));
}

/// A device whose interface is pulled out is gone until it is closed and opened again; the other device goes on.
void tst_SocketCanAdapter::pulledOut()
{
    Bench bench({canLink("can0"), canLink("can1"), canLink("can2")});
    QVERIFY(bench.start(0, 0) && bench.start(1, 0));
    bench.system.pullOut("can0");
    bench.system.pullOut("can1");
    QVERIFY(bench.text(0).isEmpty());
    const auto record = recordOf<VCI_CAN_OBJ>("001#");
    QCOMPARE(bench.adapter->transmitCan(Type, 0, 0, &record, 1), 0U);
    bench.arrive("can2", "123#");
    QTRY_COMPARE(bench.adapter->receiveNumCan(Type, 1, 0), 1U);
    QVERIFY(!bench.text(1, 1).isEmpty());
    QCOMPARE(bench.adapter->closeDevice(Type, 0), 1U);
}

void tst_SocketCanAdapter::noLin()
{
    Bench bench({canLink("can0")});
    bench.adapter->openDevice(Type, 0);
    QCOMPARE(bench.adapter->openLin(Type, 0, 0, 19200, 1), 0U);
    QCOMPARE(bench.problem(0, 0), AdapterProblemCode::NoLin);
    VCI_LIN_OBJ frame{};
    QCOMPARE(bench.adapter->closeLin(Type, 0, 0), 0U);
    QCOMPARE(bench.adapter->changeLinMode(Type, 0, 0, 1), 0U);
    QCOMPARE(bench.adapter->transmitLin(Type, 0, 0, frame), 0U);
    QCOMPARE(bench.adapter->receiveLin(Type, 0, 0, &frame), 0U);
    QCOMPARE(bench.adapter->receiveLinBySlave(Type, 0, 0, &frame), 0U);
    QCOMPARE(bench.adapter->transmitLinBySlave(Type, 0, 0, frame), 0U);
}

void tst_SocketCanAdapter::unusualArguments()
{
    Bench bench({canLink("can0"), canLink("can1")});
    QCOMPARE(bench.adapter->openDevice(3, 0), 0U);
    const VCI_INIT_CONFIG config = settingsOf();
    auto record = recordOf<VCI_CAN_OBJ>("001#");
    QCOMPARE(bench.adapter->initCan(Type, 0, 0, &config), 0U); // not open
    QVERIFY(bench.start(0, 0));
    QCOMPARE(bench.adapter->startCan(Type, 0, 0), 1U); // again: changes nothing
    QCOMPARE(bench.adapter->initCan(Type, 0, 2, &config), 0U);
    QCOMPARE(bench.adapter->initCan(Type, 0, 1, nullptr), 0U);
    QCOMPARE(bench.adapter->startCan(Type, 0, 1), 0U); // not initialised
    QCOMPARE(bench.adapter->transmitCan(Type, 0, 0, nullptr, 1), 0U);
    QCOMPARE(bench.adapter->transmitCan(Type, 0, 0, &record, 1000001), 0U);
    QCOMPARE(bench.adapter->transmitCan(3, 0, 0, &record, 1), 0U);
    QCOMPARE(bench.adapter->transmitCan(Type, 0, 1, &record, 1), 0U);
    QCOMPARE(bench.adapter->receiveCan(Type, 0, 0, nullptr, 1), 0U);
    QCOMPARE(bench.adapter->receiveNumCan(Type, 7, 0), 0U);
    QCOMPARE(bench.adapter->clearBuffer(Type, 0, 2), 0U);
    QCOMPARE(bench.adapter->readErrInfo(Type, 0, 0, nullptr), 0U);
    QCOMPARE(bench.adapter->readErrInfo(Type, 0, 2, nullptr), 0U);
    QCOMPARE(bench.adapter->overflowNum(Type, 0, 0), 0U);
    QCOMPARE(bench.adapter->switchGateway(Type, 0, AdapterGatewayOff, nullptr), 0U);
    QCOMPARE(bench.adapter->gatewayFilter(Type, 0, 0, nullptr, nullptr), 0U);
}

/// While frames arrive and the gateway forwards them.
void tst_SocketCanAdapter::manyStartsAndStops()
{
    Bench bench({canLink("can0"), canLink("can1")});
    std::uint32_t state = 0;
    for (int round = 0; round < 50; ++round) {
        QVERIFY(bench.start(0, 0) && bench.start(0, 1));
        QCOMPARE(bench.adapter->switchGateway(Type, 0, AdapterGatewayOn, &state), 1U);
        for (int i = 0; i < 20; ++i) {
            bench.arrive("can0", "123#11");
            bench.arrive("can1", "124#22");
        }
        bench.adapter->resetCan(Type, 0, static_cast<std::uint8_t>(round % 2));
        QCOMPARE(bench.adapter->closeDevice(Type, 0), 1U);
    }
}

X9_CORE_TEST(tst_SocketCanAdapter)
#include "tst_SocketCanAdapter.moc"
