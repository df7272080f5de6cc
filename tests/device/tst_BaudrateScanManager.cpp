#include "device/CANCommunication.h"
#include "tests/support/ScriptedAdapter.h"
#include "tests/support/TestProgram.h"

#include <QSignalSpy>
#include <QTimer>
#include <QtTest>

#include <memory>

namespace {

constexpr int StepCount = 54;

QString entry(const char *text)
{
    return QString::fromLatin1(text);
}

QStringList calls(const char *text)
{
    return QString::fromLatin1(text).split(QStringLiteral("; "), Qt::SkipEmptyParts);
}

ChannelParam canParam(quint8 device, quint8 channel)
{
    ChannelParam param;
    param.device = device;
    param.channel = channel;
    param.Timing1 = 0x1C;
    param.AccMask = 0xFFFFFFFFU;
    return param;
}

/// The reports of some steps that all say the same of the channels.
QStringList reports(const char *channels, int firstStep, int endStep)
{
    QStringList list;
    for (int step = firstStep; step < endStep; ++step) {
        list.append(QStringLiteral("%1 %2 %3").arg(entry(channels)).arg(step % 9 + 1).arg(step / 9));
    }
    return list;
}

} // namespace

/// The scan of the manager, against a scripted table. The tests tick by hand instead of waiting for the scan's timer.
class tst_BaudrateScanManager : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void idleAtFirst();
    void ticksEveryTenMilliseconds();
    void initialisesBothChannels();
    void triesEveryTiming();
    void looksAtEveryTick();
    void noTraffic();
    void findsBoth();
    void findsWithDataRate();
    void foundChannelIsLeftAlone();
    void vanishedDeviceIsNothingFound();
    static void refusedStepIsNothingFound_data();
    void refusedStepIsNothingFound();
    void modelWithoutCANFD();
    static void missingEntries_data();
    void missingEntries();

    void openDeviceStaysOpen();
    static void oneChannelInUse_data();
    void oneChannelInUse();
    void bothChannelsInUse();
    void deviceRefused();
    void secondScanIsRefused();
    void scansAgain();

    void stops();
    void stopsWithinAReport();
    void startsAnewWithinAReport();
    void stopWithoutAScan();
    void channelOpenedMeanwhile();
    void bothChannelsOpenedMeanwhile();
    void linOpenedMeanwhileKeepsTheDevice();
    void reopenedChannelIsLeftAlone();
    static void deviceClosedMeanwhile_data();
    void deviceClosedMeanwhile();
    void otherDeviceClosedMeanwhile();
    void deviceClosedAndOpenedAgain();
    static void managerDestroyedMeanwhile_data();
    void managerDestroyedMeanwhile();

private:
    void start(const QStringList &without = {});
    QTimer *timer() const;
    /// So many ticks of the scan, at once.
    void tick(int count);
    /// As many ticks as a scan has at most.
    bool tickToTheEnd();
    /// What has been signalled since the last time: "can1 can2 index dataRate", "finish".
    QStringList takeSignals() { return std::exchange(m_signals, {}); }
    QStringList takeInits() { return m_adapter->takeCalls().filter(entry("VCI_InitCAN")); }

    std::unique_ptr<ScriptedAdapter> m_adapter;
    std::unique_ptr<CANCommunication> m_manager;
    QStringList m_signals;
};

void tst_BaudrateScanManager::init()
{
    m_adapter = std::make_unique<ScriptedAdapter>();
    start();
}

void tst_BaudrateScanManager::start(const QStringList &without)
{
    m_manager = std::make_unique<CANCommunication>(m_adapter->table(without));
    m_signals.clear();
    connect(m_manager.get(), &CANCommunication::sig_scanResultCallback, this,
            [this](quint8 can1, quint8 can2, quint8 index, quint8 dataRate) {
                m_signals.append(QStringLiteral("%1 %2 %3 %4").arg(can1).arg(can2).arg(index).arg(dataRate));
            });
    connect(m_manager.get(), &CANCommunication::sig_scanFinish, this, [this] { m_signals.append(entry("finish")); });
}

void tst_BaudrateScanManager::cleanup()
{
    if (m_manager) {
        m_manager->stopScan();
        for (quint8 device = 0; device < 2; ++device) {
            for (quint8 channel = 0; channel < 2; ++channel) {
                m_manager->closeLIN(device, channel);
                m_manager->closeChannel(device, channel);
            }
        }
    }
    m_manager.reset();
    m_adapter.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QTimer *tst_BaudrateScanManager::timer() const
{
    return m_manager->findChild<QTimer *>(QStringLiteral("scanTimer"));
}

void tst_BaudrateScanManager::tick(int count)
{
    for (int i = 0; i < count; ++i) {
        QMetaObject::invokeMethod(timer(), "timeout");
    }
}

bool tst_BaudrateScanManager::tickToTheEnd()
{
    tick(StepCount * 16);
    return !m_manager->isScanning();
}

void tst_BaudrateScanManager::idleAtFirst()
{
    QVERIFY(!m_manager->isScanning());
    QVERIFY(!timer()->isActive());
}

void tst_BaudrateScanManager::ticksEveryTenMilliseconds()
{
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    QVERIFY(m_manager->isScanning());
    QVERIFY(timer()->isActive());
    QVERIFY(!timer()->isSingleShot());
    QCOMPARE(timer()->interval(), 10);
    QCOMPARE(timer()->timerType(), Qt::PreciseTimer);
    // It is this timer that drives the scan.
    QTRY_VERIFY(!m_signals.isEmpty());
    QCOMPARE(m_signals.first(), entry("2 2 1 0"));
}

void tst_BaudrateScanManager::initialisesBothChannels()
{
    QCOMPARE(m_manager->slot_scanCANBaudrate(3, 7), CAN_OK);
    QCOMPARE(m_adapter->takeCalls(), calls("VCI_OpenDevice 4 3 0"));
    QVERIFY(m_manager->isDeviceOpen(3));
    tick(1);
    QCOMPARE(m_adapter->takeCalls(),
             calls("VCI_InitCAN 4 3 0 {0 4294967295 0 0 0 20 2}; VCI_StartCAN 4 3 0; VCI_ClearBuffer 4 3 0; "
                   "VCI_InitCAN 4 3 1 {0 4294967295 0 0 0 20 2}; VCI_StartCAN 4 3 1; VCI_ClearBuffer 4 3 1"));
    tick(15);
    QCOMPARE(m_adapter->takeCalls(), QStringList());
    QCOMPARE(takeSignals(), QStringList(entry("2 2 1 0")));
}

void tst_BaudrateScanManager::triesEveryTiming()
{
    // Timing 0, timing 1 in decimal, and the mode: data rate × 4 + 2.
    const QStringList timings = calls("0 20; 0 22; 0 28; 1 28; 3 28; 4 28; 9 28; 24 28; 49 28"); // 1000k to 10k
    QStringList expected;
    for (int dataRate = 0; dataRate <= 5; ++dataRate) {
        for (const QString &timing : timings) {
            for (int channel = 0; channel < 2; ++channel) {
                expected.append(QStringLiteral("VCI_InitCAN 4 0 %1 {0 4294967295 0 0 %2 %3}")
                                    .arg(QString::number(channel), timing, QString::number(dataRate * 4 + 2)));
            }
        }
    }
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    tick(StepCount * 16);
    QCOMPARE(takeInits(), expected);
}

void tst_BaudrateScanManager::looksAtEveryTick()
{
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    tick(9 * 16);
    const QStringList classic = m_adapter->takePolls();
    QCOMPARE(classic.size(), 9 * 16 * 2);
    QCOMPARE(classic.count(entry("VCI_GetReceiveNum 4 0 0")), 9 * 16);
    QCOMPARE(classic.count(entry("VCI_GetReceiveNum 4 0 1")), 9 * 16);
    tick(45 * 16);
    const QStringList canFD = m_adapter->takePolls();
    QCOMPARE(canFD.size(), 45 * 16 * 2);
    QCOMPARE(canFD.count(entry("KQ_GetReceiveNumCANFD 4 0 0")), 45 * 16);
    QCOMPARE(canFD.count(entry("KQ_GetReceiveNumCANFD 4 0 1")), 45 * 16);
}

void tst_BaudrateScanManager::noTraffic()
{
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    bool wasScanning = true;
    bool wasOpen = true;
    connect(m_manager.get(), &CANCommunication::sig_scanFinish, this, [&] {
        wasScanning = m_manager->isScanning();
        wasOpen = m_manager->isDeviceOpen(0);
    });
    QVERIFY(tickToTheEnd());
    QCOMPARE(takeSignals(), reports("2 2", 0, StepCount) << entry("finish"));
    QVERIFY(!wasScanning);
    QVERIFY(!wasOpen);
    QCOMPARE(m_adapter->takeCalls().last(), entry("VCI_CloseDevice 4 0"));
    QVERIFY(!timer()->isActive());
}

void tst_BaudrateScanManager::findsBoth()
{
    m_adapter->announce(false, 0, 1, 0);
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    tick(2 * 16 + 3);
    m_adapter->announce(false, 1, 5, 0);
    tick(1);
    QCOMPARE(takeSignals(), calls("1 2 1 0; 0 2 2 0; 0 1 3 0; finish"));
    QVERIFY(!m_manager->isScanning());
    QVERIFY(!timer()->isActive());
    QVERIFY(!m_manager->isDeviceOpen(0));
}

void tst_BaudrateScanManager::findsWithDataRate()
{
    m_adapter->announce(true, 0, 1, 0);
    m_adapter->announce(true, 1, 1, 0);
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    QVERIFY(tickToTheEnd());
    QCOMPARE(takeSignals(), reports("2 2", 0, 9) << entry("1 1 1 1") << entry("finish"));
}

void tst_BaudrateScanManager::foundChannelIsLeftAlone()
{
    m_adapter->announce(false, 1, 1, 0);
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    tick(1);
    m_adapter->takeCalls();
    m_adapter->takePolls();
    tick(StepCount * 16 - 1);
    QCOMPARE(takeInits().filter(entry("VCI_InitCAN 4 0 1")), QStringList());
    for (const QString &poll : m_adapter->takePolls()) {
        QVERIFY2(poll.endsWith(QLatin1String("4 0 0")), qPrintable(poll));
    }
    QCOMPARE(takeSignals(), reports("2 1", 0, 1) + reports("2 0", 1, StepCount) << entry("finish"));
}

void tst_BaudrateScanManager::vanishedDeviceIsNothingFound()
{
    for (const bool isCANFD : {false, true}) {
        m_adapter->announce(isCANFD, 0, AdapterReceiveError, 0);
        m_adapter->announce(isCANFD, 1, AdapterReceiveError, 0);
    }
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    QVERIFY(tickToTheEnd());
    QCOMPARE(takeSignals(), reports("2 2", 0, StepCount) << entry("finish"));
}

void tst_BaudrateScanManager::refusedStepIsNothingFound_data()
{
    QTest::addColumn<QString>("refused");
    QTest::addColumn<int>("startsPerStep");
    QTest::newRow("init") << entry("VCI_InitCAN") << 1;
    QTest::newRow("start") << entry("VCI_StartCAN") << 2;
}

void tst_BaudrateScanManager::refusedStepIsNothingFound()
{
    // What waits on a channel that could not be set to the step's rate came at another rate.
    QFETCH(QString, refused);
    QFETCH(int, startsPerStep);
    m_adapter->answerChannel(refused.toLatin1().constData(), 0, 0);
    m_adapter->announce(false, 0, 1, 0);
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    tick(16);
    const QStringList made = m_adapter->takeCalls();
    QCOMPARE(made.filter(entry("VCI_InitCAN")).size(), 2);
    QCOMPARE(made.filter(entry("VCI_StartCAN")).size(), startsPerStep);
    QCOMPARE(made.filter(entry("VCI_ClearBuffer")), calls("VCI_ClearBuffer 4 0 1"));
    QCOMPARE(takeSignals(), QStringList(entry("2 2 1 0")));
    // The next step tries it anew.
    m_adapter->answerChannel(refused.toLatin1().constData(), 0, AdapterSuccess);
    tick(16);
    QCOMPARE(takeSignals(), QStringList(entry("1 2 2 0")));
}

void tst_BaudrateScanManager::modelWithoutCANFD()
{
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    tick(9 * 16);
    m_adapter->answer("VCI_InitCAN", 0);
    m_adapter->takeCalls();
    QVERIFY(tickToTheEnd());
    QCOMPARE(takeInits().size(), 45 * 2);
    QCOMPARE(takeSignals(), reports("2 2", 0, StepCount) << entry("finish"));
}

void tst_BaudrateScanManager::missingEntries_data()
{
    QTest::addColumn<QStringList>("missing");
    QTest::addColumn<QStringList>("expected");
    const QStringList nothing = reports("2 2", 0, StepCount) << entry("finish");
    QTest::newRow("init") << calls("VCI_InitCAN") << nothing;
    QTest::newRow("start") << calls("VCI_StartCAN") << nothing;
    QTest::newRow("counts") << calls("VCI_GetReceiveNum; KQ_GetReceiveNumCANFD") << nothing;
    QTest::newRow("classic count") << calls("VCI_GetReceiveNum")
                                   << (reports("2 2", 0, 9) + reports("1 1", 9, 10) << entry("finish"));
    QTest::newRow("clear") << calls("VCI_ClearBuffer") << calls("1 1 1 0; finish");
}

void tst_BaudrateScanManager::missingEntries()
{
    QFETCH(QStringList, missing);
    QFETCH(QStringList, expected);
    start(missing);
    for (const bool isCANFD : {false, true}) {
        m_adapter->announce(isCANFD, 0, 1, 0);
        m_adapter->announce(isCANFD, 1, 1, 0);
    }
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    QVERIFY(tickToTheEnd());
    QCOMPARE(takeSignals(), expected);
}

void tst_BaudrateScanManager::openDeviceStaysOpen()
{
    QCOMPARE(m_manager->openLIN(canParam(0, 0)), CAN_OK);
    m_adapter->takeCalls();
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    QVERIFY(tickToTheEnd());
    QCOMPARE(takeSignals().size(), StepCount + 1);
    QVERIFY(m_manager->isDeviceOpen(0));
    const QStringList made = m_adapter->takeCalls();
    QCOMPARE(made.filter(entry("Device")), QStringList());
    QCOMPARE(made.filter(entry("VCI_ResetCAN")), QStringList());
    // What the scan has started is not open.
    QCOMPARE(m_manager->openChannel(canParam(0, 1)), CAN_OK);

    QCOMPARE(m_manager->closeChannel(0, 1), CAN_OK);
    QCOMPARE(m_manager->openDevice(1), CAN_OK); // without any channel
    QCOMPARE(m_manager->slot_scanCANBaudrate(1, 0), CAN_OK);
    m_manager->stopScan();
    QVERIFY(m_manager->isDeviceOpen(1));
    QCOMPARE(m_manager->closeDevice(1), CAN_OK);
}

void tst_BaudrateScanManager::oneChannelInUse_data()
{
    QTest::addColumn<int>("channel");
    QTest::newRow("channel 0") << 0;
    QTest::newRow("channel 1") << 1;
}

void tst_BaudrateScanManager::oneChannelInUse()
{
    QFETCH(int, channel);
    const auto used = static_cast<quint8>(channel);
    const auto free = static_cast<quint8>(1 - channel);
    QCOMPARE(m_manager->openChannel(canParam(0, used)), CAN_OK);
    m_adapter->takeCalls();
    m_adapter->announce(false, free, 1, 0);
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    QVERIFY(tickToTheEnd());
    QCOMPARE(takeSignals(),
             reports(channel == 0 ? "2 1" : "1 2", 0, 1) + reports(channel == 0 ? "2 0" : "0 2", 1, StepCount)
                 << entry("finish"));
    // The channel in use is not touched, and still polled by its worker.
    for (const QString &call : m_adapter->takeCalls()) {
        QVERIFY2(call.contains(QStringLiteral(" 4 0 %1").arg(free)), qPrintable(call));
    }
    QVERIFY(m_manager->isDeviceOpen(0));
    const QString poll = QStringLiteral("VCI_GetReceiveNum 4 0 %1").arg(used);
    m_adapter->takePolls();
    QVERIFY(QTest::qWaitFor([&] { return m_adapter->takePolls().contains(poll); }));
}

void tst_BaudrateScanManager::bothChannelsInUse()
{
    QCOMPARE(m_manager->openChannel(canParam(0, 0)), CAN_OK);
    QCOMPARE(m_manager->openChannel(canParam(0, 1)), CAN_OK);
    m_adapter->takeCalls();
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_DeviceOpenFailed);
    QVERIFY(!m_manager->isScanning());
    QVERIFY(!timer()->isActive());
    QCOMPARE(m_adapter->takeCalls(), QStringList());
    QCOMPARE(takeSignals(), QStringList());
    QVERIFY(m_manager->isDeviceOpen(0));
}

void tst_BaudrateScanManager::deviceRefused()
{
    m_adapter->answer("VCI_OpenDevice", 0);
    bool wasScanning = false;
    m_adapter->onCall("VCI_OpenDevice", [&] { wasScanning = m_manager->isScanning(); });
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_DeviceOpenFailed);
    QVERIFY(wasScanning); // the flag keeps others away from the device already while it is being opened
    QVERIFY(!m_manager->isScanning());
    QVERIFY(!timer()->isActive());
    QCOMPARE(takeSignals(), QStringList());

    start({entry("VCI_OpenDevice")});
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_DeviceOpenFailed);
    QVERIFY(!m_manager->isScanning());
}

void tst_BaudrateScanManager::secondScanIsRefused()
{
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    tick(20);
    m_adapter->takeCalls();
    for (const quint8 device : {quint8(0), quint8(1)}) {
        QCOMPARE(m_manager->slot_scanCANBaudrate(device, 0), CAN_DeviceExists);
    }
    QCOMPARE(m_adapter->takeCalls(), QStringList());
    QVERIFY(m_manager->isScanning());
    // The first one goes on as if nothing had been.
    QVERIFY(tickToTheEnd());
    QCOMPARE(takeSignals(), reports("2 2", 0, StepCount) << entry("finish"));
}

void tst_BaudrateScanManager::scansAgain()
{
    m_adapter->announce(false, 0, 1, 0);
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    tick(40);
    m_manager->stopScan();
    QCOMPARE(takeSignals(), calls("1 2 1 0; 0 2 2 0; finish"));
    m_adapter->announce(false, 0, 0, 0);
    QCOMPARE(m_manager->slot_scanCANBaudrate(1, 0), CAN_OK);
    QVERIFY(tickToTheEnd());
    QCOMPARE(takeSignals(), reports("2 2", 0, StepCount) << entry("finish"));
}

void tst_BaudrateScanManager::stops()
{
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    tick(20);
    bool wasScanning = true;
    connect(m_manager.get(), &CANCommunication::sig_scanFinish, this, [&] { wasScanning = m_manager->isScanning(); });
    m_manager->stopScan();
    QCOMPARE(takeSignals(), calls("2 2 1 0; finish"));
    QVERIFY(!wasScanning);
    QVERIFY(!m_manager->isScanning());
    QVERIFY(!timer()->isActive());
    QVERIFY(!m_manager->isDeviceOpen(0));
    QCOMPARE(m_adapter->takeCalls().last(), entry("VCI_CloseDevice 4 0"));
    tick(40); // a tick that was already on its way
    QCOMPARE(takeSignals(), QStringList());
    QCOMPARE(m_adapter->takeCalls(), QStringList());
}

void tst_BaudrateScanManager::stopsWithinAReport()
{
    m_adapter->announce(false, 0, 1, 0);
    m_adapter->announce(false, 1, 1, 0);
    connect(m_manager.get(), &CANCommunication::sig_scanResultCallback, this, [this] { m_manager->stopScan(); });
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    tick(16);
    QCOMPARE(takeSignals(), calls("1 1 1 0; finish"));
}

void tst_BaudrateScanManager::startsAnewWithinAReport()
{
    m_adapter->announce(false, 0, 1, 0);
    m_adapter->announce(false, 1, 1, 0);
    const auto restart = connect(m_manager.get(), &CANCommunication::sig_scanResultCallback, this, [this] {
        m_adapter->announce(false, 0, 0, 0);
        m_manager->stopScan();
        QCOMPARE(m_manager->slot_scanCANBaudrate(1, 0), CAN_OK);
    });
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    tick(1);
    disconnect(restart);
    QCOMPARE(takeSignals(), calls("1 1 1 0; finish"));
    QVERIFY(m_manager->isScanning());
    QVERIFY(!m_manager->isDeviceOpen(0));
    QVERIFY(m_manager->isDeviceOpen(1));
    tick(16);
    QCOMPARE(takeSignals(), calls("2 1 1 0"));
}

void tst_BaudrateScanManager::stopWithoutAScan()
{
    QCOMPARE(m_manager->openDevice(0), CAN_OK);
    m_adapter->takeCalls();
    m_manager->stopScan();
    QCOMPARE(takeSignals(), QStringList());
    QCOMPARE(m_adapter->takeCalls(), QStringList());
    QVERIFY(m_manager->isDeviceOpen(0));
    QCOMPARE(m_manager->closeDevice(0), CAN_OK);
}

void tst_BaudrateScanManager::channelOpenedMeanwhile()
{
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    tick(20);
    QCOMPARE(m_manager->openChannel(canParam(0, 1)), CAN_OK);
    m_adapter->announce(false, 1, 1, 1);
    m_adapter->takeCalls();
    QVERIFY(tickToTheEnd());
    for (const QString &call : m_adapter->takeCalls()) {
        QVERIFY2(call.contains(QLatin1String(" 4 0 0")), qPrintable(call));
    }
    QCOMPARE(takeSignals(), reports("2 2", 0, StepCount) << entry("finish"));
    QVERIFY(m_manager->isDeviceOpen(0)); // though the scan has opened it
    QCOMPARE(m_manager->openChannel(canParam(0, 1)), CAN_ChannelExists);
    QCOMPARE(m_manager->closeChannel(0, 1), CAN_OK);
    QVERIFY(!m_manager->isDeviceOpen(0));
}

void tst_BaudrateScanManager::bothChannelsOpenedMeanwhile()
{
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    QCOMPARE(m_manager->openChannel(canParam(0, 0)), CAN_OK);
    QCOMPARE(m_manager->openChannel(canParam(0, 1)), CAN_OK);
    m_adapter->takeCalls();
    QVERIFY(m_manager->isScanning());
    tick(1);
    QCOMPARE(takeSignals(), QStringList(entry("finish")));
    QVERIFY(!m_manager->isScanning());
    QVERIFY(m_manager->isDeviceOpen(0));
    QCOMPARE(m_adapter->takeCalls(), QStringList());
}

void tst_BaudrateScanManager::linOpenedMeanwhileKeepsTheDevice()
{
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    QCOMPARE(m_manager->openLIN(canParam(0, 0)), CAN_OK);
    QVERIFY(tickToTheEnd());
    QCOMPARE(takeSignals().size(), StepCount + 1);
    QVERIFY(m_manager->isDeviceOpen(0));
}

void tst_BaudrateScanManager::reopenedChannelIsLeftAlone()
{
    QCOMPARE(m_manager->openChannel(canParam(0, 0)), CAN_OK);
    QCOMPARE(m_manager->reconfigureChannel(canParam(0, 0)), CAN_OK);
    QVERIFY(!m_manager->isDeviceOpen(0));
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    timer()->stop(); // the scan goes on by hand
    tick(1);
    m_adapter->takeCalls();
    const auto isReopened = [this] {
        return m_adapter->takeCalls().contains(entry("VCI_ClearBuffer 4 0 0"));
    };
    QVERIFY(QTest::qWaitFor(isReopened));
    tick(StepCount * 16 - 1);
    QCOMPARE(takeInits().filter(entry("VCI_InitCAN 4 0 0")), QStringList());
    QCOMPARE(takeSignals(), reports("2 2", 0, StepCount) << entry("finish"));
    QCOMPARE(m_manager->openChannel(canParam(0, 0)), CAN_ChannelExists);
}

void tst_BaudrateScanManager::deviceClosedMeanwhile_data()
{
    QTest::addColumn<bool>("wasOpen");
    QTest::newRow("opened by the scan") << false;
    QTest::newRow("open before, closed with its channel") << true;
}

void tst_BaudrateScanManager::deviceClosedMeanwhile()
{
    QFETCH(bool, wasOpen);
    if (wasOpen) {
        QCOMPARE(m_manager->openChannel(canParam(0, 0)), CAN_OK);
    }
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    tick(20);
    m_adapter->takeCalls();
    QCOMPARE(wasOpen ? m_manager->closeChannel(0, 0) : m_manager->closeDevice(0), CAN_OK);
    QCOMPARE(takeSignals(), calls("2 2 1 0; finish"));
    QVERIFY(!m_manager->isScanning());
    QVERIFY(!timer()->isActive());
    QVERIFY(!m_manager->isDeviceOpen(0));
    QCOMPARE(m_adapter->takeCalls().filter(entry("Device")), calls("VCI_CloseDevice 4 0"));
}

void tst_BaudrateScanManager::otherDeviceClosedMeanwhile()
{
    QCOMPARE(m_manager->openDevice(1), CAN_OK);
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    QCOMPARE(m_manager->closeDevice(1), CAN_OK);
    QVERIFY(m_manager->isScanning());
    tick(16);
    QCOMPARE(takeSignals(), QStringList(entry("2 2 1 0")));
}

void tst_BaudrateScanManager::deviceClosedAndOpenedAgain()
{
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    tick(1);
    QCOMPARE(m_manager->closeDevice(0), CAN_OK);
    QCOMPARE(m_manager->openDevice(0), CAN_OK);
    m_adapter->takeCalls();
    tick(20);
    QCOMPARE(takeSignals(), QStringList(entry("finish")));
    QCOMPARE(m_adapter->takeCalls(), QStringList());
    QVERIFY(m_manager->isDeviceOpen(0)); // no longer the scan's
    QCOMPARE(m_manager->closeDevice(0), CAN_OK);
}

void tst_BaudrateScanManager::managerDestroyedMeanwhile_data()
{
    QTest::addColumn<bool>("wasOpen");
    QTest::newRow("opened by the scan") << false;
    QTest::newRow("a channel is open") << true;
}

void tst_BaudrateScanManager::managerDestroyedMeanwhile()
{
    QFETCH(bool, wasOpen);
    QCOMPARE(m_manager->slot_scanCANBaudrate(1, 0), CAN_OK);
    tick(3);
    if (wasOpen) {
        QCOMPARE(m_manager->openChannel(canParam(1, 0)), CAN_OK);
        QCOMPARE(m_manager->closeChannel(1, 0), CAN_OK);
        QCOMPARE(m_manager->slot_scanCANBaudrate(1, 0), CAN_OK);
        takeSignals();
    }
    m_adapter->takeCalls();
    m_manager.reset();
    QCOMPARE(m_adapter->takeCalls(), calls("VCI_CloseDevice 4 1"));
    QCOMPARE(takeSignals(), QStringList()); // nobody is called by half an object
}

X9_CORE_TEST(tst_BaudrateScanManager)
#include "tst_BaudrateScanManager.moc"
