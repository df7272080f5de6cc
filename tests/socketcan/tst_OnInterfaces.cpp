#include "adapter/socketcan/FileDescriptor.h"
#include "adapter/socketcan/SocketPort.h"
#include "device/CANAPI.h"
#include "tests/socketcan/CanTestFrames.h"
#include "tests/support/TestProgram.h"

#include <linux/can.h>
#include <linux/can/raw.h>
#include <net/if.h>
#include <sys/socket.h>

#include <QElapsedTimer>
#include <QProcess>
#include <QtTest>

#include <atomic>
#include <cerrno>
#include <poll.h>
#include <thread>

using socketcan::FileDescriptor;

namespace {

constexpr std::uint32_t Type = AdapterDeviceType;
constexpr int Flood = 100000;

/// Runs a command of the system; whether it succeeded.
bool command(const QString &line)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(QStringLiteral("sh"), {QStringLiteral("-c"), line});
    return process.waitForFinished(30000) && process.exitCode() == 0;
}

/// Another program's socket on an interface.
class RawSocket
{
public:
    explicit RawSocket(const char *interface)
        : m_fd(::socket(PF_CAN, SOCK_RAW, CAN_RAW))
    {
        const int on = 1;
        setsockopt(m_fd.get(), SOL_CAN_RAW, CAN_RAW_FD_FRAMES, &on, sizeof on);
        const int large = 256 * 1024 * 1024;
        setsockopt(m_fd.get(), SOL_SOCKET, SO_RCVBUFFORCE, &large, sizeof large);
        sockaddr_can address{};
        address.can_family = AF_CAN;
        address.can_ifindex = static_cast<int>(if_nametoindex(interface));
        m_isBound = bind(m_fd.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
        m_port = std::make_unique<socketcan::SocketPort>(FileDescriptor(dup(m_fd.get())));
    }
    bool isBound() const { return m_isBound; }
    bool send(const va::CanFrame &frame)
    {
        int error = 0;
        while ((error = m_port->write(frame)) == ENOBUFS || error == EAGAIN) {
        }
        return error == 0;
    }
    bool send(const QByteArray &frame) { return send(frameOf(frame)); }
    /// What arrives until so many are there, or for a second nothing.
    QList<va::CanFrame> receive(int most)
    {
        QList<va::CanFrame> frames;
        pollfd waiting{m_fd.get(), POLLIN, 0};
        while (frames.size() < most && poll(&waiting, 1, 1000) > 0 && m_port->read(*m_batch) == 0) {
            for (std::size_t i = 0; i < m_batch->size; ++i) {
                frames.append(m_batch->arrivals[i].frame);
            }
        }
        return frames;
    }
    QList<QByteArray> texts(int most)
    {
        QList<QByteArray> list;
        for (const va::CanFrame &frame : receive(most)) {
            list.append(textOf(frame));
        }
        return list;
    }

private:
    FileDescriptor m_fd;
    bool m_isBound = false;
    std::unique_ptr<socketcan::CanPort> m_port;
    const std::unique_ptr<socketcan::Batch> m_batch = std::make_unique<socketcan::Batch>();
};

va::CanFrame numbered(std::uint32_t number)
{
    va::CanFrame frame;
    frame.extended = true;
    frame.id = number;
    frame.length = 8;
    std::memcpy(frame.data.data(), &number, sizeof number);
    return frame;
}

QList<QByteArray> everyKind()
{
    return {"000#",
            "123#1122",
            "7FF#1122334455667788",
            "00000123#AA",
            "1FFFFFFF#1122334455667788",
            "123#R0",
            "12345678#R8",
            "123##0",
            "124##011",
            "12345678##1" + QByteArray(128, 'C'),
            "1FFFFFFF##0" + QByteArray(24, 'D')};
}

} // namespace

/// The library on the virtual interfaces vcan0 and vcan1 of a real kernel, as root; to be started by
/// tools/socketcan/test.sh.
class tst_OnInterfaces : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase();
    void init();
    void cleanup();
    static void everyKindBothWays_data();
    void everyKindBothWays();
    void classicChannelsSeeNoFd();
    void resetAndStartedAgain();
    void ownFramesAreNotReceived();
    void otherProgramsSeeWhatIsSent();
    static void filters_data();
    void filters();
    void gatewayBothWays();
    void floodReceived();
    void floodSent();
    void floodThroughTheGateway();
    void stampsAreTheKernels();
    void kernelDropsAreCounted();
    void fullTransmitQueue();
    void takenDownUnderLoad();
    void pulledOut();
    void firstLookBringsItUp();
    static void withoutRights();
    static void withTheOneRightThatItNeeds();
    void twoProgramsOnOneInterface();
    void vxcan();

private:
    bool start(std::uint8_t ch, VCI_INIT_CONFIG config = settingsOf());
    std::vector<VCI_CANFD_OBJ> receive(std::uint8_t ch, std::size_t count);
    std::vector<VCI_CAN_OBJ> receiveClassic(std::uint8_t ch, std::size_t count);
    VCI_ERR_INFO errors(std::uint8_t ch) const;

    std::unique_ptr<CANAPI> m_api;
};

void tst_OnInterfaces::initTestCase()
{
    QVERIFY(RawSocket("vcan0").isBound() && RawSocket("vcan1").isBound());
}

void tst_OnInterfaces::init()
{
    m_api = std::make_unique<CANAPI>(QStringLiteral(X9_SOCKETCAN_ADAPTER));
    QCOMPARE(m_api->state(), AdapterLibraryState::Loaded);
    QCOMPARE(m_api->VCI_OpenDevice(Type, 0, 0), 1U);
}

void tst_OnInterfaces::cleanup()
{
    m_api->VCI_CloseDevice(Type, 0);
    m_api.reset();
}

bool tst_OnInterfaces::start(std::uint8_t ch, VCI_INIT_CONFIG config)
{
    return m_api->VCI_InitCAN(Type, 0, ch, &config) == 1 && m_api->VCI_StartCAN(Type, 0, ch) == 1;
}

/// Reads until so many are there, or for a second nothing.
std::vector<VCI_CANFD_OBJ> tst_OnInterfaces::receive(std::uint8_t ch, std::size_t count)
{
    std::vector<VCI_CANFD_OBJ> frames;
    QElapsedTimer silence;
    silence.start();
    while (frames.size() < count && silence.elapsed() < 1000) {
        std::vector<VCI_CANFD_OBJ> some(m_api->KQ_GetReceiveNumCANFD(Type, 0, ch));
        if (some.empty()) {
            QThread::msleep(1);
            continue;
        }
        silence.restart();
        some.resize(m_api->KQ_ReceiveCANFD(Type, 0, ch, some.data(), static_cast<quint32>(some.size()), 0));
        frames.insert(frames.end(), some.begin(), some.end());
    }
    return frames;
}

std::vector<VCI_CAN_OBJ> tst_OnInterfaces::receiveClassic(std::uint8_t ch, std::size_t count)
{
    std::vector<VCI_CAN_OBJ> frames;
    QElapsedTimer silence;
    silence.start();
    while (frames.size() < count && silence.elapsed() < 1000) {
        std::vector<VCI_CAN_OBJ> some(m_api->VCI_GetReceiveNum(Type, 0, ch));
        if (some.empty()) {
            QThread::msleep(1);
            continue;
        }
        silence.restart();
        some.resize(m_api->VCI_Receive(Type, 0, ch, some.data(), static_cast<quint32>(some.size()), 0));
        frames.insert(frames.end(), some.begin(), some.end());
    }
    return frames;
}

VCI_ERR_INFO tst_OnInterfaces::errors(std::uint8_t ch) const
{
    VCI_ERR_INFO info{};
    m_api->VCI_ReadErrInfo(Type, 0, ch, &info);
    return info;
}

void tst_OnInterfaces::everyKindBothWays_data()
{
    QTest::addColumn<QByteArray>("frame");
    for (const QByteArray &frame : everyKind()) {
        QTest::newRow(frame.left(20).constData()) << frame;
    }
}

void tst_OnInterfaces::everyKindBothWays()
{
    QFETCH(QByteArray, frame);
    QVERIFY(start(0, settingsOf(2)));
    RawSocket other("vcan0");
    QVERIFY(other.send(frame));
    const auto received = receive(0, 1);
    QCOMPARE(received.size(), std::size_t{1});
    QCOMPARE(textOf(received.front()), frame);
    const auto record = recordOf<VCI_CANFD_OBJ>(frame);
    QCOMPARE(m_api->KQ_TransmitCANFD(Type, 0, 0, &record, 1), 1U);
    QCOMPARE(other.texts(1), QList<QByteArray>({frame}));
}

void tst_OnInterfaces::classicChannelsSeeNoFd()
{
    QVERIFY(start(0));
    RawSocket other("vcan0");
    QVERIFY(other.send("001##1AA") && other.send("002#BB"));
    const auto received = receiveClassic(0, 2);
    QCOMPARE(received.size(), std::size_t{1});
    QCOMPARE(textOf(received.front()), QByteArray("002#BB"));
}

void tst_OnInterfaces::resetAndStartedAgain()
{
    RawSocket other("vcan0");
    for (int round = 0; round < 3; ++round) {
        QVERIFY(start(0));
        QVERIFY(other.send("123#11"));
        QTRY_COMPARE(m_api->VCI_GetReceiveNum(Type, 0, 0), 1U);
        QCOMPARE(m_api->VCI_ResetCAN(Type, 0, 0), 1U);
        QVERIFY(other.send("124#"));
        QCOMPARE(m_api->VCI_GetReceiveNum(Type, 0, 0), 0U);
    }
}

void tst_OnInterfaces::ownFramesAreNotReceived()
{
    QVERIFY(start(0));
    const auto record = recordOf<VCI_CAN_OBJ>("123#11");
    QCOMPARE(m_api->VCI_Transmit(Type, 0, 0, &record, 1), 1U);
    RawSocket("vcan0").send("124#");
    const auto received = receiveClassic(0, 1);
    QCOMPARE(received.size(), std::size_t{1});
    QCOMPARE(textOf(received.front()), QByteArray("124#"));
}

void tst_OnInterfaces::otherProgramsSeeWhatIsSent()
{
    QVERIFY(start(0));
    QProcess candump;
    candump.start(QStringLiteral("candump"), {QStringLiteral("-L"), QStringLiteral("-n"), QStringLiteral("2"),
                                              QStringLiteral("-T"), QStringLiteral("15000"), QStringLiteral("vcan0")});
    QVERIFY(candump.waitForStarted());
    QThread::msleep(1500); // it says nothing before it listens
    const std::array<VCI_CAN_OBJ, 2> records = {recordOf<VCI_CAN_OBJ>("123#DEADBEEF"),
                                                recordOf<VCI_CAN_OBJ>("12345678#R4")};
    QCOMPARE(m_api->VCI_Transmit(Type, 0, 0, records.data(), 2), 2U);
    QVERIFY(candump.waitForFinished(20000));
    const QByteArray seen = candump.readAll();
    QVERIFY2(seen.contains("vcan0 123#DEADBEEF"), seen.constData());
    QVERIFY2(seen.contains("vcan0 12345678#R4"), seen.constData());
    QVERIFY(command(QStringLiteral("cansend vcan0 321#0102030405060708 && cansend vcan0 00000321#R")));
    const auto received = receiveClassic(0, 2);
    QCOMPARE(received.size(), std::size_t{2});
    QCOMPARE(textOf(received[0]), QByteArray("321#0102030405060708"));
    QCOMPARE(textOf(received[1]), QByteArray("00000321#R0"));
}

void tst_OnInterfaces::filters_data()
{
    QTest::addColumn<quint32>("code");
    QTest::addColumn<quint32>("mask");
    QTest::addColumn<QString>("passing");
    QTest::newRow("everything") << 0U << 0xFFFFFFFFU << "123#1122 123#3322 124# 123#R2 00000123#11 12345678#";
    QTest::newRow("one standard identifier") << (0x123U << 21U) << 0x001FFFFFU << "123#1122 123#3322 123#R2";
    QTest::newRow("first data byte too") << ((0x123U << 21U) | 0x1100U) << 0x001F00FFU << "123#1122 123#R2";
    QTest::newRow("remote frames") << 0x00100000U << 0xFFEFFFFFU << "123#R2";
}

/// The third by the library, the others by the kernel alone.
void tst_OnInterfaces::filters()
{
    QFETCH(quint32, code);
    QFETCH(quint32, mask);
    QFETCH(QString, passing);
    VCI_INIT_CONFIG config = settingsOf();
    config.AccCode = code;
    config.AccMask = mask;
    QVERIFY(start(0, config));
    RawSocket other("vcan0");
    for (const char *frame : {"123#1122", "123#3322", "124#", "123#R2", "00000123#11", "12345678#"}) {
        QVERIFY(other.send(QByteArray(frame)));
    }
    QStringList received;
    for (const VCI_CAN_OBJ &record : receiveClassic(0, 7)) {
        received.append(QString::fromLatin1(textOf(record)));
    }
    QCOMPARE(received.join(QLatin1Char(' ')), passing);
}

void tst_OnInterfaces::gatewayBothWays()
{
    QVERIFY(start(0, settingsOf(2)) && start(1, settingsOf(2)));
    quint32 state = 0;
    QCOMPARE(m_api->KQ_OpenCANGateWay(Type, 0, AdapterGatewayOn, &state), 1U);
    RawSocket first("vcan0");
    RawSocket second("vcan1");
    for (const QByteArray &frame : everyKind()) {
        QVERIFY(first.send(frame));
    }
    QCOMPARE(second.texts(everyKind().size()), everyKind());
    const quint32 word = 0x123U * 8 + 1;
    QCOMPARE(m_api->KQ_SetCANGateWayIDFilter(Type, 0, 1, &word, 1), 1U);
    QVERIFY(second.send("124#") && second.send("00000123#") && second.send("123#AA"));
    QCOMPARE(first.texts(2), QList<QByteArray>({"123#AA"}));
    receive(0, 100);
    QCOMPARE(m_api->KQ_OpenCANGateWay(Type, 0, AdapterGatewayOff, &state), 1U);
    QVERIFY(first.send("321#"));
    QVERIFY(second.texts(1).isEmpty());
}

/// Every frame once and in order, while it arrives as fast as another program can send.
void tst_OnInterfaces::floodReceived()
{
    QVERIFY(start(0));
    RawSocket other("vcan0");
    std::atomic<bool> isSent{true};
    std::thread sender([&] {
        for (std::uint32_t i = 0; i < Flood; ++i) {
            isSent = other.send(numbered(i)) && isSent;
        }
    });
    const auto received = receiveClassic(0, Flood);
    sender.join();
    QVERIFY(isSent);
    QCOMPARE(received.size(), std::size_t{Flood});
    std::uint32_t lastStamp = 0;
    for (std::uint32_t i = 0; i < Flood; ++i) {
        QCOMPARE(received[i].ID, i);
        QVERIFY(received[i].TimeStamp >= lastStamp);
        lastStamp = received[i].TimeStamp;
    }
    QCOMPARE(errors(0).SystemLost, 0U);
    QCOMPARE(errors(0).BufferLost, 0U);
}

void tst_OnInterfaces::floodSent()
{
    QVERIFY(start(0));
    RawSocket other("vcan0");
    std::uint32_t sent = 0;
    while (sent < Flood) {
        std::vector<VCI_CAN_OBJ> some;
        for (std::uint32_t i = sent; i < sent + 1000; ++i) {
            VCI_CAN_OBJ record{};
            record.ID = i;
            record.ExternFlag = 1;
            record.DataLen = 8;
            some.push_back(record);
        }
        QCOMPARE(m_api->VCI_Transmit(Type, 0, 0, some.data(), 1000), 1000U);
        sent += 1000;
    }
    const QList<va::CanFrame> received = other.receive(Flood);
    QCOMPARE(received.size(), Flood);
    for (int i = 0; i < Flood; ++i) {
        QCOMPARE(received.at(i).id, static_cast<std::uint32_t>(i));
    }
}

void tst_OnInterfaces::floodThroughTheGateway()
{
    constexpr int Count = Flood / 4;
    QVERIFY(start(0) && start(1));
    quint32 state = 0;
    QCOMPARE(m_api->KQ_OpenCANGateWay(Type, 0, AdapterGatewayOn, &state), 1U);
    RawSocket first("vcan0");
    RawSocket second("vcan1");
    for (std::uint32_t i = 0; i < Count; ++i) {
        QVERIFY(first.send(numbered(i)));
    }
    const QList<va::CanFrame> received = second.receive(Count);
    QCOMPARE(received.size(), Count);
    for (int i = 0; i < Count; ++i) {
        QCOMPARE(received.at(i).id, static_cast<std::uint32_t>(i));
    }
    QCOMPARE(errors(1).GatewayLost, 0U);
}

/// The stamp is when the frame arrived, not when it was read.
void tst_OnInterfaces::stampsAreTheKernels()
{
    QVERIFY(start(0));
    RawSocket other("vcan0");
    QElapsedTimer clock;
    clock.start();
    std::vector<qint64> sentAt;
    for (int i = 0; i < 5; ++i) {
        QThread::msleep(200);
        sentAt.push_back(clock.elapsed());
        QVERIFY(other.send("123#"));
    }
    const auto received = receiveClassic(0, 5);
    QCOMPARE(received.size(), std::size_t{5});
    for (std::size_t i = 1; i < 5; ++i) {
        const qint64 apart = qint64(received[i].TimeStamp) - qint64(received[0].TimeStamp);
        QVERIFY2(qAbs(apart - (sentAt[i] - sentAt[0])) <= 50, qPrintable(QString::number(apart)));
    }
}

/// More than the kernel holds and the buffer takes: what is missing is counted to the last frame.
void tst_OnInterfaces::kernelDropsAreCounted()
{
    QVERIFY(start(0));
    constexpr std::uint32_t Count = 1100000; // the buffer takes 1,000,000
    RawSocket other("vcan0");
    for (std::uint32_t i = 0; i < Count; ++i) {
        QVERIFY(other.send(numbered(i)));
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_api->VCI_GetReceiveNum(Type, 0, 0) + errors(0).BufferLost + errors(0).SystemLost, Count,
                              60000);
    QCOMPARE(m_api->VCI_GetReceiveNum(Type, 0, 0), 1000000U);
    const auto received = receiveClassic(0, 1000000);
    QCOMPARE(received.back().ID, 999999U); // the oldest are kept
}

/// A slow interface with a short queue: as many are taken as it has room for in the 10 ms, and none is lost.
void tst_OnInterfaces::fullTransmitQueue()
{
    QVERIFY2(command(QStringLiteral("tc qdisc add dev vcan0 root netem delay 200ms limit 20")),
             "no tc with netem here");
    QVERIFY(start(0));
    RawSocket other("vcan0");
    std::vector<VCI_CAN_OBJ> records(200, recordOf<VCI_CAN_OBJ>("123#11"));
    const quint32 taken = m_api->VCI_Transmit(Type, 0, 0, records.data(), 200);
    const QList<va::CanFrame> seen = other.receive(200);
    const quint32 refused = errors(0).Refused;
    QVERIFY(command(QStringLiteral("tc qdisc del dev vcan0 root")));
    QVERIFY2(taken >= 10 && taken < 200, qPrintable(QString::number(taken)));
    QCOMPARE(refused, 200 - taken);
    QCOMPARE(seen.size(), int(taken));
}

void tst_OnInterfaces::takenDownUnderLoad()
{
    QVERIFY(start(0));
    std::atomic<bool> isOver{false};
    std::thread sender([&isOver] {
        RawSocket other("vcan0");
        std::uint32_t number = 0;
        while (!isOver) {
            number += other.send(numbered(number)) ? 1U : 0U;
        }
    });
    QTRY_VERIFY(m_api->VCI_GetReceiveNum(Type, 0, 0) > 1000);
    QVERIFY(command(QStringLiteral("ip link set vcan0 down")));
    const auto record = recordOf<VCI_CAN_OBJ>("123#11");
    QCOMPARE(m_api->VCI_Transmit(Type, 0, 0, &record, 1), 0U);
    std::array<std::array<char, AdapterInfoSize>, 4> texts{};
    QCOMPARE(m_api->KQ_ReadInfo(Type, 0, texts[0].data(), texts[1].data(), texts[2].data(), texts[3].data()), 1U);
    QVERIFY(command(QStringLiteral("ip link set vcan0 up")));
    m_api->VCI_ClearBuffer(Type, 0, 0);
    QTRY_VERIFY(m_api->VCI_GetReceiveNum(Type, 0, 0) > 1000); // it goes on
    isOver = true;
    sender.join();
    std::uint32_t last = 0;
    for (const VCI_CAN_OBJ &frame : receiveClassic(0, 1000000)) {
        QVERIFY(frame.ID > last || last == 0);
        last = frame.ID;
    }
}

void tst_OnInterfaces::pulledOut()
{
    QVERIFY(command(QStringLiteral("ip link add dev vcan2 type vcan && ip link set vcan2 up")));
    QCOMPARE(m_api->VCI_OpenDevice(Type, 1, 0), 1U);
    const VCI_INIT_CONFIG config = settingsOf();
    QCOMPARE(m_api->VCI_InitCAN(Type, 1, 0, &config), 1U);
    QCOMPARE(m_api->VCI_StartCAN(Type, 1, 0), 1U);
    std::array<std::array<char, AdapterInfoSize>, 4> texts{};
    const auto answers = [&] {
        return m_api->KQ_ReadInfo(Type, 1, texts[0].data(), texts[1].data(), texts[2].data(), texts[3].data()) == 1;
    };
    QVERIFY(answers());
    QCOMPARE(QByteArray(texts[0].data()), QByteArray("vcan2 (vcan)"));
    QVERIFY(command(QStringLiteral("ip link del vcan2")));
    QTRY_VERIFY(!answers());
    VCI_CAN_OBJ record{};
    QTRY_COMPARE(m_api->VCI_Receive(Type, 1, 0, &record, 1, 0), AdapterReceiveError);
    // Plugged in again, under the same name: it has to be opened again.
    QVERIFY(command(QStringLiteral("ip link add dev vcan2 type vcan && ip link set vcan2 up")));
    QVERIFY(!answers());
    QCOMPARE(m_api->VCI_CloseDevice(Type, 1), 1U);
    QCOMPARE(m_api->VCI_OpenDevice(Type, 1, 0), 1U);
    QVERIFY(answers());
    m_api->VCI_CloseDevice(Type, 1);
    QVERIFY(command(QStringLiteral("ip link del vcan2")));
}

/// As root: an interface that is down, and too small for CAN FD.
void tst_OnInterfaces::firstLookBringsItUp()
{
    QVERIFY(command(QStringLiteral("ip link set vcan1 down && ip link set vcan1 mtu 16")));
    QVERIFY(start(1, settingsOf(2)));
    QVERIFY(RawSocket("vcan1").send("123##1AA"));
    QCOMPARE(receive(1, 1).size(), std::size_t{1});
}

namespace {

struct Outcome
{
    int code = -1;
    QByteArray said;
};

/// This program again, on another test, as a user who is not root.
Outcome asNobody(const char *rights, const char *test)
{
    QProcess other;
    other.setProcessChannelMode(QProcess::MergedChannels);
    other.start(QStringLiteral("sh"),
                {QStringLiteral("-c"),
                 QStringLiteral("exec setpriv --reuid=65534 --clear-groups %1 '%2' %3")
                     .arg(QLatin1String(rights), QCoreApplication::applicationFilePath(), QLatin1String(test))});
    other.waitForFinished(30000);
    return {other.exitCode(), other.readAll()};
}

} // namespace

void tst_OnInterfaces::withoutRights()
{
    QVERIFY(command(QStringLiteral("ip link set vcan1 down")));
    const Outcome other = asNobody("--inh-caps=-all", "tst_WithoutRights");
    QVERIFY(command(QStringLiteral("ip link set vcan1 up")));
    QVERIFY2(other.code == 0, other.said.constData());
    QVERIFY2(other.said.contains("vcan1 is down, and bringing it up was refused: Operation not permitted; try: "
                                 "ip link set vcan1 up"),
             other.said.constData());
}

void tst_OnInterfaces::withTheOneRightThatItNeeds()
{
    QVERIFY(command(QStringLiteral("ip link set vcan1 down")));
    const Outcome other = asNobody("--inh-caps=-all,+net_admin --ambient-caps=+net_admin", "tst_WithNetworkRights");
    QVERIFY(command(QStringLiteral("ip link set vcan1 up")));
    QVERIFY2(other.code == 0, other.said.constData());
}

void tst_OnInterfaces::twoProgramsOnOneInterface()
{
    QVERIFY(start(0));
    QTemporaryDir folder;
    const QString copy = folder.filePath(QStringLiteral("libControlCAN.so"));
    QVERIFY(QFile::copy(QStringLiteral(X9_SOCKETCAN_ADAPTER), copy));
    const CANAPI second(copy); // another library in memory, with state of its own
    QCOMPARE(second.VCI_OpenDevice(Type, 0, 0), 1U);
    const VCI_INIT_CONFIG config = settingsOf();
    QCOMPARE(second.VCI_InitCAN(Type, 0, 0, &config), 1U);
    QCOMPARE(second.VCI_StartCAN(Type, 0, 0), 1U);
    const auto record = recordOf<VCI_CAN_OBJ>("123#11");
    QCOMPARE(second.VCI_Transmit(Type, 0, 0, &record, 1), 1U);
    QCOMPARE(receiveClassic(0, 1).size(), std::size_t{1});
    QCOMPARE(m_api->VCI_Transmit(Type, 0, 0, &record, 1), 1U);
    QTRY_COMPARE(second.VCI_GetReceiveNum(Type, 0, 0), 1U);
    second.VCI_CloseDevice(Type, 0);
}

/// A pair of interfaces, one the other end of the other.
void tst_OnInterfaces::vxcan()
{
    QVERIFY(command(QStringLiteral("ip link add dev vxcan0 type vxcan peer name vxcan1 && "
                                   "ip link set vxcan0 up && ip link set vxcan1 up")));
    QCOMPARE(m_api->VCI_OpenDevice(Type, 1, 0), 1U);
    const VCI_INIT_CONFIG config = settingsOf(2); // their frames have to become larger
    for (const std::uint8_t ch : {std::uint8_t{0}, std::uint8_t{1}}) {
        QCOMPARE(m_api->VCI_InitCAN(Type, 1, ch, &config), 1U);
        QCOMPARE(m_api->VCI_StartCAN(Type, 1, ch), 1U);
    }
    const auto record = recordOf<VCI_CANFD_OBJ>("123##1AABBCC");
    QCOMPARE(m_api->KQ_TransmitCANFD(Type, 1, 0, &record, 1), 1U);
    QTRY_COMPARE(m_api->KQ_GetReceiveNumCANFD(Type, 1, 1), 1U);
    m_api->VCI_CloseDevice(Type, 1);
    QVERIFY(command(QStringLiteral("ip link del vxcan0")));
}

/// What a user without rights finds: vcan0 up and taken as it is, vcan1 down and refused.
class tst_WithoutRights : public QObject
{
    Q_OBJECT

private slots:
    static void takesWhatIsUp();
};

void tst_WithoutRights::takesWhatIsUp()
{
    const CANAPI api(QStringLiteral(X9_SOCKETCAN_ADAPTER));
    QCOMPARE(api.VCI_OpenDevice(Type, 0, 0), 1U);
    const VCI_INIT_CONFIG config = settingsOf();
    QCOMPARE(api.VCI_InitCAN(Type, 0, 0, &config), 1U);
    QCOMPARE(api.VCI_StartCAN(Type, 0, 0), 1U);
    QCOMPARE(api.VCI_InitCAN(Type, 0, 1, &config), 0U);
    VCI_ERR_INFO info{};
    QCOMPARE(api.VCI_ReadErrInfo(Type, 0, 1, &info), 1U);
    QCOMPARE(info.ErrCode, static_cast<std::uint32_t>(AdapterProblemCode::IsDown));
    RawSocket other("vcan0");
    QVERIFY(other.send("123#"));
    QTRY_COMPARE(api.VCI_GetReceiveNum(Type, 0, 0), 1U);
    // Its receive buffer is small: what does not fit is counted, which the kernel tells with the next frame.
    for (std::uint32_t i = 0; i < Flood; ++i) {
        QVERIFY(other.send(numbered(i)));
    }
    QThread::msleep(1000);
    QVERIFY(other.send("123#"));
    QTRY_VERIFY(api.VCI_ReadErrInfo(Type, 0, 0, &info) == 1 &&
                api.VCI_GetReceiveNum(Type, 0, 0) + info.SystemLost == Flood + 2U);
    qInfo("of %d frames the kernel has dropped %u", Flood, info.SystemLost);
    api.VCI_CloseDevice(Type, 0);
}

/// vcan1 is down, and brought up.
class tst_WithNetworkRights : public QObject
{
    Q_OBJECT

private slots:
    static void bringsUpWhatIsDown();
};

void tst_WithNetworkRights::bringsUpWhatIsDown()
{
    const CANAPI api(QStringLiteral(X9_SOCKETCAN_ADAPTER));
    QCOMPARE(api.VCI_OpenDevice(Type, 0, 0), 1U);
    const VCI_INIT_CONFIG config = settingsOf();
    QCOMPARE(api.VCI_InitCAN(Type, 0, 1, &config), 1U);
    QCOMPARE(api.VCI_StartCAN(Type, 0, 1), 1U);
    RawSocket("vcan1").send("123#");
    QTRY_COMPARE(api.VCI_GetReceiveNum(Type, 0, 1), 1U);
    api.VCI_CloseDevice(Type, 0);
}

X9_CORE_TEST(tst_OnInterfaces)
X9_CORE_TEST(tst_WithNetworkRights)
X9_CORE_TEST(tst_WithoutRights)
#include "tst_OnInterfaces.moc"
