#include "device/CANCommunication.h"
#include "tests/support/AdapterFolder.h"
#include "tests/support/FirmwarePublisher.h"
#include "tests/support/TestProgram.h"
#include "tests/support/Ticks.h"

#include <QElapsedTimer>
#include <QMap>
#include <QtEndian>
#include <QThread>
#include <QtTest>

#include <atomic>
#include <chrono>
#include <memory>

using namespace std::chrono_literals;

namespace {

constexpr int Rounds = 5;
constexpr int QuietTicks = 20;
constexpr int StopBoundMs = 2000;
constexpr quint8 ScanIndex = 4; ///< of the bus's bit rate: reached with the scan's fourth step

/// Device 0 with both channels on a bus of counting frames.
QByteArray configuration(const char *model, const char *firmware, const char *faults = "{}")
{
    return QStringLiteral(R"({
        "buses": [{"name": "bus", "bitrate": "250k", "data_rate": 2, "nodes": [
            {"id": 1, "rate_hz": 2000, "payload": "counting"}]}],
        "devices": [{"model": "%1", "firmware": "%2", "faults": %3, "can": [{"bus": "bus"}, {"bus": "bus"}]}]
        })")
        .arg(QLatin1String(model), QLatin1String(firmware), QLatin1String(faults))
        .toUtf8();
}

ChannelParam channelParam(quint8 index, bool isCANFD)
{
    ChannelParam param;
    param.channel = index;
    param.Timing0 = 0x01;
    param.Timing1 = 0x1C;
    param.AccMask = 0xFFFFFFFFU;
    param.isCANFD = isCANFD;
    param.dataRateCANFD = isCANFD ? 2 : 0;
    return param;
}

/// The library's own entry behind one that counts the calls. Entry points carry no context.
AdapterEntry::ReadInfo libraryReadInfo = nullptr;
std::atomic<int> readsBegun{0};
std::atomic<int> readsDone{0};

quint32 X9_ADAPTER_CALL countedReadInfo(quint32 type, quint8 dev, char *serial, char *model, char *firmware,
                                        char *hardware)
{
    ++readsBegun;
    const quint32 result = libraryReadInfo(type, dev, serial, model, firmware, hardware);
    ++readsDone;
    return result;
}

} // namespace

/// The manager with its firmware monitor against the virtual adapter.
class tst_FirmwareMonitorAdapter : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    static void oldFirmware_data();
    void oldFirmware();
    void newFirmware();
    void otherModel();
    void closedDevice();
    void noDevice();
    void refusedTexts();
    void vanishingDevice();
    void promptsOnceARun();
    void deviceInUse();
    void scanOfAnOpenDevice();
    void scanOfAClosedDevice();

    void endsAsleep();
    void endsWhileAsking();
    void endsWhileReading();

private:
    void start(const QByteArray &json, std::chrono::milliseconds interval = 1ms);
    template<class Frame>
    void count(quint8 index, const QVector<Frame> &frames);
    static bool readsAgain(int count);
    bool asksAgain(int count);
    int asked() const { return m_publisher->asked().size(); }

    std::unique_ptr<FirmwarePublisher> m_publisher;
    std::unique_ptr<AdapterFolder> m_folder;
    std::unique_ptr<CANCommunication> m_manager;
    int m_prompts = 0;
    std::atomic<bool> m_isPromptOnGuiThread{false};
    std::atomic<bool> m_wasCancelled{false}; ///< the query that is under way has seen it
    QMap<int, int> m_frames;                 ///< received, by channel
    QMap<int, quint64> m_last;
    int m_lost = 0;
    int m_readsAtReport = 0; ///< reads begun at the scan's last report
    int m_scanReports = 0;
};

void tst_FirmwareMonitorAdapter::init()
{
    m_publisher = std::make_unique<FirmwarePublisher>();
    m_prompts = 0;
    m_isPromptOnGuiThread = false;
    m_wasCancelled = false;
    m_frames.clear();
    m_last.clear();
    m_lost = 0;
    m_scanReports = 0;
    readsBegun = 0;
    readsDone = 0;
}

void tst_FirmwareMonitorAdapter::cleanup()
{
    if (m_manager) {
        m_manager->closeChannel(0, 0);
        m_manager->closeChannel(0, 1);
        m_manager->closeDevice(0);
        m_manager.reset();
    }
    m_folder.reset();
    m_publisher.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void tst_FirmwareMonitorAdapter::start(const QByteArray &json, std::chrono::milliseconds interval)
{
    m_folder = std::make_unique<AdapterFolder>(json);
    auto api = std::make_unique<CANAPI>(QStringLiteral(X9_VIRTUAL_ADAPTER));
    QVERIFY(api->KQ_ReadInfo != nullptr);
    libraryReadInfo = std::exchange(api->KQ_ReadInfo, countedReadInfo);
    m_manager = std::make_unique<CANCommunication>(std::move(api), m_publisher->query(), nullptr, interval);
    using Manager = CANCommunication;
    // Direct: on the thread that the manager emits on.
    connect(
        m_manager.get(), &Manager::sig_showFrimwareUpgrade, m_manager.get(),
        [this] { m_isPromptOnGuiThread = QThread::currentThread() == QCoreApplication::instance()->thread(); },
        Qt::DirectConnection);
    connect(m_manager.get(), &Manager::sig_showFrimwareUpgrade, this, [this] { ++m_prompts; });
    connect(m_manager.get(), &Manager::sig_readResultCallback, this,
            [this](quint8, quint8 index, const QVector<VCI_CAN_OBJ> &obj) { count(index, obj); });
    connect(m_manager.get(), &Manager::sig_readResultCallbackCANFD, this,
            [this](quint8, quint8 index, const QVector<VCI_CANFD_OBJ> &obj) { count(index, obj); });
    connect(m_manager.get(), &Manager::sig_scanResultCallback, this, [this] {
        ++m_scanReports;
        m_readsAtReport = readsBegun;
    });
}

template<class Frame>
void tst_FirmwareMonitorAdapter::count(quint8 index, const QVector<Frame> &frames)
{
    for (const Frame &frame : frames) {
        const auto number = qFromLittleEndian<quint64>(frame.Data);
        m_lost += m_last.contains(index) && number != m_last.value(index) + 1 ? 1 : 0;
        m_last[index] = number;
    }
    m_frames[index] += frames.size();
}

bool tst_FirmwareMonitorAdapter::readsAgain(int count)
{
    const int wanted = readsDone + count;
    return QTest::qWaitFor([wanted] { return readsDone >= wanted; });
}

bool tst_FirmwareMonitorAdapter::asksAgain(int count)
{
    const int wanted = asked() + count;
    return QTest::qWaitFor([this, wanted] { return asked() >= wanted; });
}

void tst_FirmwareMonitorAdapter::oldFirmware_data()
{
    QTest::addColumn<QByteArray>("model");
    QTest::addColumn<QString>("product");
    QTest::newRow("CAN FD model") << QByteArray("X9FC-200 CANFD") << QStringLiteral("X9770CANFirmWare");
    QTest::newRow("classic model") << QByteArray("X9EC-200 CAN") << QStringLiteral("X9CANFirmWare");
}

void tst_FirmwareMonitorAdapter::oldFirmware()
{
    QFETCH(QByteArray, model);
    QFETCH(QString, product);
    m_publisher->publish(QStringLiteral("2.06"));
    start(configuration(model.constData(), "V2.05"));
    QCOMPARE(m_manager->openDevice(0), CAN_OK);
    QTRY_COMPARE(m_prompts, 1);
    QVERIFY(m_isPromptOnGuiThread);
    QCOMPARE(m_publisher->asked(), QStringList(product));
}

void tst_FirmwareMonitorAdapter::newFirmware()
{
    m_publisher->publish(QStringLiteral("2.06"));
    start(configuration("X9FC-200", "V2.06"));
    QCOMPARE(m_manager->openDevice(0), CAN_OK);
    QVERIFY(asksAgain(Rounds));
    QCOMPARE(m_prompts, 0);
}

void tst_FirmwareMonitorAdapter::otherModel()
{
    m_publisher->publish(QStringLiteral("2.06"));
    start(configuration("X9LC-200", "V2.05"));
    QCOMPARE(m_manager->openDevice(0), CAN_OK);
    QVERIFY(readsAgain(Rounds));
    QCOMPARE(asked(), 0);
    QCOMPARE(m_prompts, 0);
}

void tst_FirmwareMonitorAdapter::closedDevice()
{
    // The adapter tells nothing of a device that nobody has opened, and the monitor does not open it.
    m_publisher->publish(QStringLiteral("2.06"));
    start(configuration("X9FC-200", "V2.05"));
    QVERIFY(readsAgain(Rounds));
    QCOMPARE(asked(), 0);
    QCOMPARE(m_prompts, 0);
    QCOMPARE(m_manager->openDevice(0), CAN_OK);
    QTRY_COMPARE(m_prompts, 1);
}

void tst_FirmwareMonitorAdapter::noDevice()
{
    m_publisher->publish(QStringLiteral("2.06"));
    start(R"({"devices": []})");
    QCOMPARE(m_manager->openDevice(0), CAN_DeviceOpenFailed);
    QVERIFY(readsAgain(Rounds));
    QCOMPARE(asked(), 0);
    QCOMPARE(m_prompts, 0);
}

void tst_FirmwareMonitorAdapter::refusedTexts()
{
    m_publisher->publish(QStringLiteral("2.06"));
    start(configuration("X9FC-200", "V2.05", R"({"info_refused": true})"));
    QCOMPARE(m_manager->openDevice(0), CAN_OK);
    QVERIFY(readsAgain(Rounds));
    QCOMPARE(asked(), 0);
    QCOMPARE(m_prompts, 0);
}

void tst_FirmwareMonitorAdapter::vanishingDevice()
{
    m_publisher->publish(QStringLiteral("2.05"));
    start(configuration("X9FC-200", "V2.05", R"({"vanish_after_ms": 300})"));
    QCOMPARE(m_manager->openDevice(0), CAN_OK);
    QVERIFY(asksAgain(1));
    // It is gone when the monitor reads without asking.
    QTRY_VERIFY([this] {
        const int before = asked();
        return readsAgain(Rounds) && asked() == before;
    }());
    m_publisher->publish(QStringLiteral("2.06"));
    QVERIFY(readsAgain(Rounds));
    QCOMPARE(m_prompts, 0);
}

void tst_FirmwareMonitorAdapter::promptsOnceARun()
{
    m_publisher->publish(QStringLiteral("2.06"));
    start(configuration("X9FC-200", "V2.05"));
    QCOMPARE(m_manager->openDevice(0), CAN_OK);
    QTRY_COMPARE(m_prompts, 1);
    const int reads = readsBegun;
    m_publisher->publish(QStringLiteral("2.07"));
    QCOMPARE(m_manager->closeDevice(0), CAN_OK);
    QCOMPARE(m_manager->openDevice(0), CAN_OK);
    letTicksPass(QuietTicks);
    QCOMPARE(m_prompts, 1);
    QCOMPARE(asked(), 1);
    QCOMPARE(readsBegun.load(), reads);
}

void tst_FirmwareMonitorAdapter::deviceInUse()
{
    m_publisher->publish(QStringLiteral("2.05"));
    start(configuration("X9FC-200", "V2.05"));
    QCOMPARE(m_manager->openChannel(channelParam(0, false)), CAN_OK);
    QCOMPARE(m_manager->openChannel(channelParam(1, true)), CAN_OK);
    const auto haveReceived = [this](int frames) {
        return m_frames.value(0) > frames && m_frames.value(1) > frames;
    };
    const int before = asked();
    QTRY_VERIFY(haveReceived(2000));
    QVERIFY(asked() > before + Rounds);
    QCOMPARE(m_prompts, 0);
    // The manager reads the same device on the GUI thread.
    QString serial;
    QString model;
    QString firmware;
    for (int i = 0; i < 50; ++i) {
        QCOMPARE(m_manager->readDeviceInfo(0, serial, model, firmware), CAN_OK);
        QCOMPARE(firmware, QStringLiteral("V2.05"));
        QCOMPARE(m_manager->presentDevices().size(), 1);
    }
    m_publisher->publish(QStringLiteral("2.06"));
    QTRY_COMPARE(m_prompts, 1);
    const int frames = std::max(m_frames.value(0), m_frames.value(1));
    QTRY_VERIFY(haveReceived(frames));
    QCOMPARE(m_lost, 0);
}

void tst_FirmwareMonitorAdapter::scanOfAnOpenDevice()
{
    start(configuration("X9FC-200", "V2.05"));
    QCOMPARE(m_manager->openDevice(0), CAN_OK);
    QVERIFY(asksAgain(1));
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    const int before = readsBegun;
    QTRY_VERIFY(!m_manager->isScanning());
    QCOMPARE(m_scanReports, int(ScanIndex));
    QVERIFY(m_readsAtReport <= before + 1); // one may have been under way
    QVERIFY(readsAgain(Rounds));
    QVERIFY(asksAgain(Rounds));
}

void tst_FirmwareMonitorAdapter::scanOfAClosedDevice()
{
    // Only the scan has the device open, so a question would come of reading beside it.
    start(configuration("X9FC-200", "V2.05"));
    QVERIFY(readsAgain(1));
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    QTRY_VERIFY(!m_manager->isScanning());
    QCOMPARE(m_scanReports, int(ScanIndex));
    QVERIFY(!m_manager->isDeviceOpen(0));
    QVERIFY(readsAgain(Rounds));
    QVERIFY(asked() <= 1); // by a read under way
}

void tst_FirmwareMonitorAdapter::endsAsleep()
{
    start(configuration("X9FC-200", "V2.05"), 1h);
    QTRY_COMPARE(readsDone.load(), 1);
    letTicksPass(QuietTicks);
    QElapsedTimer clock;
    clock.start();
    m_manager.reset();
    QVERIFY(clock.elapsed() < StopBoundMs);
    QCOMPARE(readsBegun.load(), 1);
}

void tst_FirmwareMonitorAdapter::endsWhileAsking()
{
    m_publisher->publish(QStringLiteral("2.06"));
    m_publisher->onQuery([this](const std::atomic<bool> &isCancelled) {
        waitFor(isCancelled);
        m_wasCancelled = isCancelled.load();
    });
    start(configuration("X9FC-200", "V2.05"));
    QCOMPARE(m_manager->openDevice(0), CAN_OK);
    QTRY_COMPARE(asked(), 1);
    QCOMPARE(m_manager->closeDevice(0), CAN_OK);
    QVERIFY(!m_wasCancelled);
    QElapsedTimer clock;
    clock.start();
    m_manager.reset();
    QVERIFY(m_wasCancelled);
    QVERIFY(clock.elapsed() < StopBoundMs);
    QCoreApplication::processEvents();
    QCOMPARE(m_prompts, 0);
}

void tst_FirmwareMonitorAdapter::endsWhileReading()
{
    start(configuration("X9FC-200", "V2.05", R"({"call_delay_ms": {"KQ_ReadInfo": 1000}})"));
    QTRY_COMPARE(readsBegun.load(), 1);
    QCOMPARE(readsDone.load(), 0);
    QElapsedTimer clock;
    clock.start();
    m_manager.reset();
    QCOMPARE(readsDone.load(), 1);
    QVERIFY(clock.elapsed() < StopBoundMs);
    QCOMPARE(readsBegun.load(), 1);
}

X9_CORE_TEST(tst_FirmwareMonitorAdapter)
#include "tst_FirmwareMonitorAdapter.moc"
