#include "device/CANCommunication.h"
#include "tests/support/TestProgram.h"

#include <QMap>
#include <QtEndian>
#include <QtTest>

#include <algorithm>
#include <memory>
#include <random>

namespace {

constexpr quint32 CountingId = 0x100;
constexpr quint32 CountingExtendedId = 0x1ABCDE00;
constexpr quint8 DataRate = 2;

/// Two devices on one bus each, with nodes that send counting payloads; device 1 takes the given faults.
QByteArray configuration(const char *deviceFaults = "{}", const char *channelFaults = "{}")
{
    const QString text = QStringLiteral(R"({
        "buses": [
            {"name": "first", "bitrate": "500k", "data_rate": 2, "nodes": [
                {"id": "0x100", "length": 8, "rate_hz": 8000, "payload": "counting"},
                {"id": "0x1ABCDE00", "extended": true, "length": 8, "rate_hz": 3000, "payload": "counting"}]},
            {"name": "second", "bitrate": "500k", "data_rate": 2, "nodes": [
                {"id": "0x100", "length": 8, "rate_hz": 8000, "payload": "counting"},
                {"id": "0x1ABCDE00", "extended": true, "format": "fd-brs", "length": 64, "rate_hz": 3000,
                 "payload": "counting"}]},
            {"name": "quiet", "bitrate": "500k"}],
        "devices": [
            {"model": "X9FC-2", "can": [{"bus": "first"}, {"bus": "second"}]},
            {"model": "X9FC-2", "can": [{"bus": "first", "faults": %2}, {"bus": "second", "faults": %2}],
             "faults": %1},
            {"model": "X9EC-2", "can": [{"bus": "quiet"}, {"bus": "quiet"}]}]
        })");
    return text.arg(QString::fromLatin1(deviceFaults), QString::fromLatin1(channelFaults)).toUtf8();
}

ChannelParam channel(quint8 device, quint8 index, bool isCANFD = false)
{
    ChannelParam param;
    param.device = device;
    param.channel = index;
    param.Timing1 = 0x1C; // 500 kbit/s
    param.AccMask = 0xFFFFFFFFU;
    param.isCANFD = isCANFD;
    param.dataRateCANFD = isCANFD ? DataRate : 0;
    return param;
}

/// Follows the counters in the payloads. The first frame of a source may carry any number, every further one the next.
class Counters
{
public:
    template<class Frame>
    void take(quint8 device, quint8 index, const QVector<Frame> &frames)
    {
        ++m_batches[device * 2 + index];
        for (const Frame &frame : frames) {
            const quint64 source = quint64(device * 2 + index) << 32 | frame.ID;
            const auto number = qFromLittleEndian<quint64>(frame.Data);
            const auto last = m_last.constFind(source);
            if (last != m_last.constEnd() && number != *last + 1) {
                ++m_errors;
            }
            m_last[source] = number;
            ++m_frames[source];
        }
    }
    /// A channel is opened anew: its sources may go on with a later number, never with an earlier one.
    void expectGap() { m_last.clear(); }
    int batches(quint8 device, quint8 index) const { return m_batches.value(device * 2 + index); }
    int frames(quint8 device, quint8 index, quint32 id) const
    {
        return m_frames.value(quint64(device * 2 + index) << 32 | id);
    }
    /// Frames that were lost, doubled or out of order.
    int errors() const { return m_errors; }

private:
    QMap<int, int> m_batches;
    QMap<quint64, int> m_frames;
    QMap<quint64, quint64> m_last;
    int m_errors = 0;
};

} // namespace

/// The manager with its worker threads against the virtual adapter. Signals are taken from the manager, on the test's
/// own thread.
class tst_DeviceThreads : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void allChannelsOfTwoDevices();
    void openReceiveCloseStorm();
    void openCloseStormWithoutReceiving();
    void reconfigureWhileReceiving();
    void otherOperationsWhileReceiving();
    void sentFramesArriveInOrder();
    void failingReceives();
    void vanishingDevice();
    void slowCalls();
    void closingEndsTheSignals();
    void libraryWithoutCANFD();

private:
    void start(const QByteArray &json = configuration(), const QString &library = QStringLiteral(X9_VIRTUAL_ADAPTER));
    void closeAll();
    bool haveAllReceived(std::initializer_list<QPair<int, int>> channels, int batches) const;

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<CANCommunication> m_manager;
    Counters m_counters;
    QString m_before;
};

void tst_DeviceThreads::init()
{
    m_before = QDir::currentPath();
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    QVERIFY(QDir::setCurrent(m_dir->path()));
}

void tst_DeviceThreads::start(const QByteArray &json, const QString &library)
{
    QFile file(QStringLiteral("virtual-adapter.json"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(json), qint64(json.size()));
    file.close();
    m_counters = {};
    m_manager = std::make_unique<CANCommunication>(std::make_unique<CANAPI>(library));
    QVERIFY(m_manager->api().VCI_OpenDevice != nullptr);
    connect(m_manager.get(), &CANCommunication::sig_readResultCallback, this,
            [this](quint8 device, quint8 index, const QVector<VCI_CAN_OBJ> &frames) {
                m_counters.take(device, index, frames);
            });
    connect(m_manager.get(), &CANCommunication::sig_readResultCallbackCANFD, this,
            [this](quint8 device, quint8 index, const QVector<VCI_CANFD_OBJ> &frames) {
                m_counters.take(device, index, frames);
            });
}

void tst_DeviceThreads::closeAll()
{
    for (quint8 device = 0; device < 3; ++device) {
        for (quint8 index = 0; index < 2; ++index) {
            m_manager->closeChannel(device, index);
        }
        QVERIFY(!m_manager->isDeviceOpen(device));
    }
}

void tst_DeviceThreads::cleanup()
{
    if (m_manager) {
        closeAll();
        m_manager.reset();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(QDir::setCurrent(m_before));
}

bool tst_DeviceThreads::haveAllReceived(std::initializer_list<QPair<int, int>> channels, int batches) const
{
    return std::all_of(channels.begin(), channels.end(), [&](const QPair<int, int> &channel) {
        return m_counters.batches(quint8(channel.first), quint8(channel.second)) >= batches;
    });
}

void tst_DeviceThreads::allChannelsOfTwoDevices()
{
    start();
    QCOMPARE(m_manager->openChannel(channel(0, 0)), CAN_OK);
    QCOMPARE(m_manager->openChannel(channel(0, 1, true)), CAN_OK);
    QCOMPARE(m_manager->openChannel(channel(1, 0)), CAN_OK);
    QCOMPARE(m_manager->openChannel(channel(1, 1, true)), CAN_OK);
    QTRY_VERIFY_WITH_TIMEOUT(haveAllReceived({{0, 0}, {0, 1}, {1, 0}, {1, 1}}, 6), 30000);
    QCOMPARE(m_counters.errors(), 0);
    for (const quint8 device : {quint8(0), quint8(1)}) {
        for (const quint8 index : {quint8(0), quint8(1)}) {
            QVERIFY(m_counters.frames(device, index, CountingId) > 0);
            QVERIFY(m_counters.frames(device, index, CountingExtendedId) > 0);
        }
    }
}

void tst_DeviceThreads::openReceiveCloseStorm()
{
    start();
    for (int round = 1; round <= 6; ++round) {
        const int before = m_counters.batches(0, 0);
        const int beforeOther = m_counters.batches(1, 1);
        QCOMPARE(m_manager->openChannel(channel(0, 0)), CAN_OK);
        QCOMPARE(m_manager->openChannel(channel(1, 1, true)), CAN_OK);
        QTRY_VERIFY(m_counters.batches(0, 0) > before && m_counters.batches(1, 1) > beforeOther);
        closeAll();
        QCoreApplication::processEvents(); // what the workers had handed over before they ended
        QCOMPARE(m_counters.errors(), 0);
        m_counters.expectGap();
    }
}

void tst_DeviceThreads::openCloseStormWithoutReceiving()
{
    start();
    std::mt19937 random(20240607);
    for (int step = 0; step < 400; ++step) {
        const auto device = quint8(random() % 2);
        const auto index = quint8(random() % 2);
        const bool isCANFD = random() % 2 != 0;
        switch (random() % 3) {
        case 0: {
            const CANError opened = m_manager->openChannel(channel(device, index, isCANFD));
            QVERIFY(opened == CAN_OK || opened == CAN_ChannelExists);
            break;
        }
        case 1: {
            const CANError closed = m_manager->closeChannel(device, index);
            QVERIFY(closed == CAN_OK || closed == CAN_DeviceNotExists);
            break;
        }
        case 2:
            QCoreApplication::processEvents();
            break;
        }
    }
    closeAll();
}

void tst_DeviceThreads::reconfigureWhileReceiving()
{
    start();
    QCOMPARE(m_manager->openChannel(channel(0, 0)), CAN_OK);
    QCOMPARE(m_manager->openChannel(channel(0, 1)), CAN_OK);
    QTRY_VERIFY(haveAllReceived({{0, 0}, {0, 1}}, 1));
    QCOMPARE(m_manager->reconfigureChannel(channel(0, 1, true)), CAN_OK);
    QCoreApplication::processEvents();
    // FD frames come only after the re-opening, and the other channel misses nothing meanwhile.
    QCOMPARE(m_counters.errors(), 0);
    const int before = m_counters.frames(0, 1, CountingExtendedId);
    QCOMPARE(before, 0);
    QTRY_VERIFY(m_counters.frames(0, 1, CountingExtendedId) > 0);
    const int errors = m_counters.errors();
    QVERIFY(errors <= 1); // the re-opened channel's own gap
    const int batches = m_counters.batches(0, 0);
    QTRY_VERIFY(m_counters.batches(0, 0) > batches + 1);
    QCOMPARE(m_counters.errors(), errors);
}

void tst_DeviceThreads::otherOperationsWhileReceiving()
{
    start();
    QCOMPARE(m_manager->openChannel(channel(0, 0)), CAN_OK);
    QCOMPARE(m_manager->openChannel(channel(0, 1, true)), CAN_OK);
    QString serial;
    QString model;
    QString firmware;
    for (int batches = 1; batches <= 4; ++batches) {
        const QVector<DevicePresence> present = m_manager->presentDevices();
        QCOMPARE(present.size(), 3);
        QVERIFY(present[0].isOpen && !present[1].isOpen && !present[2].isOpen);
        QCOMPARE(present[2].model, QStringLiteral("X9EC-2"));
        QCOMPARE(m_manager->readDeviceInfo(0, serial, model, firmware), CAN_OK);
        QCOMPARE(m_manager->readDeviceInfo(1, serial, model, firmware), CAN_OK);
        QCOMPARE(model, QStringLiteral("X9FC-2"));
        QTRY_VERIFY(haveAllReceived({{0, 0}, {0, 1}}, batches));
    }
    QCOMPARE(m_counters.errors(), 0);
}

void tst_DeviceThreads::sentFramesArriveInOrder()
{
    start();
    QCOMPARE(m_manager->openChannel(channel(2, 0)), CAN_OK);
    QCOMPARE(m_manager->openChannel(channel(2, 1)), CAN_OK);
    constexpr int total = 20000;
    constexpr int burst = 50;
    quint64 number = 0;
    for (int sent = 0; sent < total; sent += burst) {
        QVector<VCI_CAN_OBJ> frames(burst);
        for (VCI_CAN_OBJ &frame : frames) {
            frame.ID = 0x55;
            frame.DataLen = 8;
            qToLittleEndian(++number, frame.Data);
        }
        QCOMPARE(m_manager->transmit(2, 0, frames.constData(), burst), CAN_OK);
    }
    QTRY_COMPARE(m_counters.frames(2, 1, 0x55), total);
    QCOMPARE(m_counters.errors(), 0);
}

void tst_DeviceThreads::failingReceives()
{
    // Every second receive of a channel fails; the frames stay in the adapter until the next one.
    start(configuration("{}", R"({"receive_error_every": 2})"));
    QCOMPARE(m_manager->openChannel(channel(1, 0)), CAN_OK);
    QCOMPARE(m_manager->openChannel(channel(1, 1, true)), CAN_OK);
    QTRY_VERIFY_WITH_TIMEOUT(haveAllReceived({{1, 0}, {1, 1}}, 3), 30000);
    QCOMPARE(m_counters.errors(), 0);
}

void tst_DeviceThreads::vanishingDevice()
{
    start(configuration(R"({"vanish_after_ms": 1500, "return_after_ms": 1500})"));
    const VCI_CAN_OBJ frame{};
    QCOMPARE(m_manager->openChannel(channel(0, 0)), CAN_OK);
    QCOMPARE(m_manager->openChannel(channel(1, 0)), CAN_OK);
    QTRY_VERIFY(haveAllReceived({{1, 0}}, 1));
    QString text;
    QTRY_COMPARE(m_manager->readDeviceInfo(1, text, text, text), CAN_DeviceNotSupport);
    // It is gone: sending fails, what belongs to it can be closed, and it cannot be opened.
    QCOMPARE(m_manager->transmit(1, 0, &frame, 1), CAN_SendFailed);
    QCOMPARE(m_manager->closeChannel(1, 0), CAN_OK);
    QVERIFY(!m_manager->isDeviceOpen(1));
    QCOMPARE(m_manager->openChannel(channel(1, 0)), CAN_DeviceOpenFailed);
    QCoreApplication::processEvents();
    const int before = m_counters.batches(1, 0);
    QCOMPARE(m_counters.errors(), 0);
    // It comes back; the other device has missed nothing.
    QTRY_VERIFY(m_manager->openDevice(1) != CAN_DeviceOpenFailed);
    QVERIFY(m_manager->isDeviceOpen(1));
    QCOMPARE(m_counters.errors(), 0);
    const int otherBefore = m_counters.batches(0, 0);
    QVERIFY(otherBefore > 0);
    m_counters.expectGap();
    QCOMPARE(m_manager->openChannel(channel(1, 0)), CAN_OK);
    QTRY_VERIFY(m_counters.batches(1, 0) > before + 1 && m_counters.batches(0, 0) > otherBefore);
    QCOMPARE(m_counters.errors(), 0);
}

void tst_DeviceThreads::slowCalls()
{
    start(configuration(R"({"call_delay_ms": {"VCI_GetReceiveNum": 60, "VCI_Receive": 150, "KQ_ReceiveCANFD": 150}})"));
    for (int round = 0; round < 4; ++round) {
        QCOMPARE(m_manager->openChannel(channel(1, 0)), CAN_OK);
        QCOMPARE(m_manager->openChannel(channel(1, 1, true)), CAN_OK);
        if (round % 2 == 0) {
            const int before = m_counters.batches(1, 0);
            QTRY_VERIFY(m_counters.batches(1, 0) > before);
        }
        closeAll(); // wherever the worker is; it returns when the worker has ended
        QCoreApplication::processEvents();
        QCOMPARE(m_counters.errors(), 0);
        m_counters.expectGap();
    }
    QVERIFY(m_counters.batches(1, 0) >= 2);
}

void tst_DeviceThreads::closingEndsTheSignals()
{
    start();
    QCOMPARE(m_manager->openChannel(channel(0, 0)), CAN_OK);
    QTRY_VERIFY(haveAllReceived({{0, 0}}, 1));
    QCOMPARE(m_manager->closeChannel(0, 0), CAN_OK);
    QCoreApplication::processEvents();
    const int before = m_counters.batches(0, 0);
    // Another device's worker shows that time has passed.
    QCOMPARE(m_manager->openChannel(channel(1, 0)), CAN_OK);
    QTRY_VERIFY(haveAllReceived({{1, 0}}, 3));
    QCOMPARE(m_counters.batches(0, 0), before);
}

void tst_DeviceThreads::libraryWithoutCANFD()
{
    start(configuration(), QStringLiteral(X9_VIRTUAL_ADAPTER_CLASSIC));
    QCOMPARE(m_manager->openChannel(channel(0, 0, true)), CAN_DeviceNotSupport);
    QVERIFY(!m_manager->isDeviceOpen(0));
    QCOMPARE(m_manager->openChannel(channel(0, 0)), CAN_OK);
    const VCI_CANFD_OBJ frame{};
    QCOMPARE(m_manager->transmitCANFD(0, 0, &frame, 1), CAN_SendFailed);
    QTRY_VERIFY(haveAllReceived({{0, 0}}, 2));
    QCOMPARE(m_counters.errors(), 0);
}

X9_CORE_TEST(tst_DeviceThreads)
#include "tst_DeviceThreads.moc"
