#include "device/CANCommunication.h"
#include "device/CANReadHandle.h"
#include "tests/support/AdapterFolder.h"
#include "tests/support/ScriptedAdapter.h"
#include "tests/support/TestProgram.h"

#include <QElapsedTimer>
#include <QFile>
#include <QSemaphore>
#include <QThread>
#include <QTimer>
#include <QtTest>

#include <array>
#include <atomic>
#include <chrono>
#include <memory>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr int Rounds = 4; ///< of polls, enough to see that what does not happen is no accident
constexpr int AlwaysAnswers = 1'000'000;
/// Far more than the rounds of a test, so that nothing waits for more.
constexpr int WaitMs = 10000;

/// What KQ_ReadInfo answers, device by device: so many times, then no more. Static, because entry points carry no
/// context.
struct Texts
{
    static quint32 X9_ADAPTER_CALL read(quint32 /*type*/, quint8 dev, char * /*serial*/, char *model,
                                        char * /*firmware*/, char * /*hardware*/)
    {
        thread = QThread::currentThread();
        ++reads.at(dev);
        if (isSlow) {
            QThread::msleep(SlowMs); // a call of the adapter that nothing can cut short
            isSlow = false;
        }
        qstrncpy(model, "X9FC-2", 10);
        return answersLeft.at(dev)-- > 0 ? AdapterSuccess : 0;
    }
    static void restart()
    {
        for (std::size_t dev = 0; dev < reads.size(); ++dev) {
            reads.at(dev) = 0;
            answersLeft.at(dev) = AlwaysAnswers;
        }
        isSlow = false;
        thread = nullptr;
    }

    static constexpr unsigned long SlowMs = 300;
    static inline std::array<std::atomic<int>, 8> reads{};
    static inline std::array<std::atomic<int>, 8> answersLeft{};
    static inline std::atomic<bool> isSlow{false};
    static inline std::atomic<QThread *> thread{nullptr};
};

ChannelParam channel(quint8 dev, quint8 ch = 0)
{
    ChannelParam param;
    param.device = dev;
    param.channel = ch;
    param.Timing1 = 0x1C;
    param.AccMask = 0xFFFFFFFFU;
    param.linBaudRate = 19200;
    return param;
}

} // namespace

/// The manager with its workers, which ask silent devices, against a scripted table and the virtual adapter.
class tst_DeviceLost : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void tells();
    void tellsOfADeviceWithLINAlone();
    void LINFramesHoldItOff();
    void asksOnTheWorkersThread();
    void asksNothingByItself();
    void doesNotTellOfADeviceThatNeverAnswers();
    static void closedBeforeItIsTold_data();
    void closedBeforeItIsTold();
    void tellsEveryOpening();
    void closesAfterTheCallUnderWay();
    void asksNothingDuringAScan();

    void adapterPulledOutOfABusyBus();
    void adapterByDefault();

private:
    void start(std::chrono::milliseconds silence = 0ms);
    /// The device has told its texts before, as when the user chose it.
    void startKnowing(quint8 dev);
    void noteLost(quint8 dev) { m_lost.append(dev); }
    /// Delivers no events until so many polls more have begun.
    bool waitForPolls(int count) { return m_polls.tryAcquire(count, WaitMs); }
    static int reads(quint8 dev) { return Texts::reads.at(dev); }

    std::unique_ptr<ScriptedAdapter> m_adapter;
    std::unique_ptr<AdapterFolder> m_folder;
    std::unique_ptr<CANCommunication> m_manager;
    QSemaphore m_polls;
    QVector<int> m_lost; ///< devices that the manager told of
};

void tst_DeviceLost::init()
{
    Texts::restart();
    m_lost.clear();
    m_polls.acquire(m_polls.available());
    m_adapter = std::make_unique<ScriptedAdapter>();
    m_adapter->onCall("VCI_GetReceiveNum", [this] { m_polls.release(); });
}

void tst_DeviceLost::cleanup()
{
    for (quint8 dev = 0; dev < 8; ++dev) {
        for (const quint8 ch : {quint8(0), quint8(1)}) {
            m_manager->closeChannel(dev, ch);
            m_manager->closeLIN(dev, ch);
        }
        m_manager->closeDevice(dev);
    }
    m_manager.reset();
    m_folder.reset();
    m_adapter.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void tst_DeviceLost::start(std::chrono::milliseconds silence)
{
    auto api = m_adapter->table();
    api->KQ_ReadInfo = Texts::read;
    m_manager = std::make_unique<CANCommunication>(std::move(api));
    connect(m_manager.get(), &CANCommunication::sig_deviceLost, this, &tst_DeviceLost::noteLost);
    m_manager->watchDevices(silence);
}

void tst_DeviceLost::startKnowing(quint8 dev)
{
    start();
    QString text;
    QCOMPARE(m_manager->readDeviceInfo(dev, text, text, text), CAN_OK);
    Texts::reads.at(dev) = 0;
}

/// One of two, once, on the GUI thread; it stays open.
void tst_DeviceLost::tells()
{
    start();
    bool isToldOnGuiThread = false;
    connect(
        m_manager.get(), &CANCommunication::sig_deviceLost, m_manager.get(),
        [&] { isToldOnGuiThread = QThread::currentThread() == thread(); },
        Qt::DirectConnection); // on the thread that the manager emits on
    Texts::answersLeft.at(1) = 1;
    QCOMPARE(m_manager->openChannel(channel(0)), CAN_OK);
    QCOMPARE(m_manager->openChannel(channel(1)), CAN_OK);
    QTRY_COMPARE(m_lost, QVector<int>({1}));
    QVERIFY(isToldOnGuiThread);
    QVERIFY(m_manager->isDeviceOpen(1));
    const int before = reads(0);
    QTRY_VERIFY(reads(0) >= before + Rounds);
    QCOMPARE(m_lost, QVector<int>({1}));
    QCOMPARE(reads(1), 3); // not asked any more
}

/// Nothing is polled there; the worker asks all the same.
void tst_DeviceLost::tellsOfADeviceWithLINAlone()
{
    startKnowing(2);
    Texts::answersLeft.at(2) = 0;
    QCOMPARE(m_manager->openLIN(channel(2)), CAN_OK);
    QTRY_COMPARE(m_lost, QVector<int>({2}));
    QCOMPARE(reads(2), 2);
}

void tst_DeviceLost::LINFramesHoldItOff()
{
    constexpr int SilenceMs = 1000;
    start(std::chrono::milliseconds(SilenceMs));
    VCI_LIN_OBJ received{};
    received.DataLen = 1;
    m_adapter->setLINFrame(received);
    QCOMPARE(m_manager->openLIN(channel(0)), CAN_OK);
    QElapsedTimer clock;
    clock.start();
    QTimer monitor; // as the modes of LIN do
    connect(&monitor, &QTimer::timeout, this, [this] {
        VCI_LIN_OBJ frame{};
        m_manager->receiveLIN(0, 0, &frame);
        m_manager->receiveLINBySlave(0, 0, &frame);
    });
    monitor.start(5);
    QTRY_VERIFY(clock.elapsed() > SilenceMs + 2 * CANReadHandle::PollPeriodMs); // asked by then if it were silent
    QCOMPARE(reads(0), 0);
    // An answer without a frame is none.
    m_adapter->setLINFrame({});
    QTRY_VERIFY(reads(0) > 0);
}

void tst_DeviceLost::asksOnTheWorkersThread()
{
    start();
    std::atomic<QThread *> pollThread{nullptr};
    m_adapter->onCall("VCI_GetReceiveNum", [&pollThread] { pollThread = QThread::currentThread(); });
    QCOMPARE(m_manager->openChannel(channel(0)), CAN_OK);
    QTRY_VERIFY(pollThread != nullptr && reads(0) > 0);
    QCOMPARE(Texts::thread.load(), pollThread.load());
    QVERIFY(pollThread != thread());
}

/// Without watchDevices().
void tst_DeviceLost::asksNothingByItself()
{
    start();
    m_manager = std::make_unique<CANCommunication>(m_adapter->table());
    QCOMPARE(m_manager->openChannel(channel(0)), CAN_OK);
    QVERIFY(waitForPolls(Rounds));
    QCOMPARE(m_adapter->takeCalls().filter(QStringLiteral("KQ_ReadInfo")), QStringList());
}

void tst_DeviceLost::doesNotTellOfADeviceThatNeverAnswers()
{
    start();
    Texts::answersLeft.at(0) = 0;
    QCOMPARE(m_manager->openChannel(channel(0)), CAN_OK);
    QTRY_VERIFY(reads(0) >= Rounds);
    QCOMPARE(m_lost, QVector<int>());
}

void tst_DeviceLost::tellsEveryOpening()
{
    startKnowing(0);
    for (int opening = 1; opening <= 2; ++opening) {
        Texts::answersLeft.at(0) = 0;
        QCOMPARE(m_manager->openDevice(0), CAN_OK);
        QTRY_COMPARE(m_lost, QVector<int>(opening, 0));
        QCOMPARE(m_manager->closeDevice(0), CAN_OK);
    }
}

void tst_DeviceLost::closedBeforeItIsTold_data()
{
    QTest::addColumn<bool>("isOpenedAgain");
    QTest::newRow("closed") << false;
    QTest::newRow("opened again") << true;
}

void tst_DeviceLost::closedBeforeItIsTold()
{
    QFETCH(bool, isOpenedAgain);
    startKnowing(0);
    Texts::answersLeft.at(0) = 0;
    QCOMPARE(m_manager->openChannel(channel(0)), CAN_OK);
    QVERIFY(waitForPolls(5)); // two failures and the poll that tells; no event is delivered here
    QCOMPARE(reads(0), 2);
    QCOMPARE(m_manager->closeChannel(0, 0), CAN_OK);
    QVERIFY(!m_manager->isDeviceOpen(0));
    if (isOpenedAgain) {
        Texts::answersLeft.at(0) = AlwaysAnswers;
        QCOMPARE(m_manager->openDevice(0), CAN_OK);
    }
    QCoreApplication::processEvents();
    QCOMPARE(m_lost, QVector<int>());
}

/// The adapter is never closed while it is asked.
void tst_DeviceLost::closesAfterTheCallUnderWay()
{
    start();
    bool isDoneAtClose = false;
    m_adapter->onCall("VCI_CloseDevice", [&] { isDoneAtClose = !Texts::isSlow; });
    Texts::isSlow = true;
    QCOMPARE(m_manager->openDevice(0), CAN_OK);
    QTRY_COMPARE(reads(0), 1);
    QVERIFY(Texts::isSlow);
    QCOMPARE(m_manager->closeDevice(0), CAN_OK);
    QVERIFY(isDoneAtClose);
    QCOMPARE(reads(0), 1);
}

void tst_DeviceLost::asksNothingDuringAScan()
{
    start();
    QCOMPARE(m_manager->openChannel(channel(0)), CAN_OK);
    QTRY_VERIFY(reads(0) > 0);
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    const int before = reads(0);
    m_polls.acquire(m_polls.available());
    QVERIFY(waitForPolls(Rounds));
    QVERIFY(reads(0) <= before + 1); // one may have been about to begin
    m_manager->stopScan();
    QTRY_VERIFY(reads(0) >= before + 2);
    QCOMPARE(m_lost, QVector<int>());
}

/// As in the program: chosen from the devices that are there, then frames all the time until it is gone.
void tst_DeviceLost::adapterPulledOutOfABusyBus()
{
    m_folder = std::make_unique<AdapterFolder>(R"({
      "buses": [{"name": "busy", "bitrate": "500k", "nodes": [{"id": "0x100", "length": 8, "period_us": 1000}]}],
      "devices": [{"model": "X9EC-1", "can": [{"bus": "busy"}], "faults": {"vanish_after_ms": 600}},
                  {"model": "X9EC-2", "can": [{"bus": "busy"}],
                   "faults": {"vanish_after_ms": 600, "info_refused": true}}]
    })");
    m_manager = std::make_unique<CANCommunication>(std::make_unique<CANAPI>(QStringLiteral(X9_VIRTUAL_ADAPTER)));
    connect(m_manager.get(), &CANCommunication::sig_deviceLost, this, &tst_DeviceLost::noteLost);
    int frames = 0;
    connect(m_manager.get(), &CANCommunication::sig_readResultCallback, this,
            [&frames](quint8, quint8, const QVector<VCI_CAN_OBJ> &batch) { frames += batch.size(); });
    m_manager->watchDevices(400ms);
    QCOMPARE(m_manager->presentDevices().size(), 2);
    QCOMPARE(m_manager->openChannel(channel(0)), CAN_OK);
    QCOMPARE(m_manager->openChannel(channel(1)), CAN_OK);
    QTRY_VERIFY(frames > 0);
    QCOMPARE(m_lost, QVector<int>());
    QTRY_COMPARE(m_lost, QVector<int>({0}));
}

/// As the program does it: the library of the working directory.
void tst_DeviceLost::adapterByDefault()
{
    m_folder =
        std::make_unique<AdapterFolder>(R"({"devices": [{"model": "X9FC-200", "faults": {"vanish_after_ms": 300}}]})");
    QVERIFY(QFile::copy(QStringLiteral(X9_VIRTUAL_ADAPTER), CANAPI::defaultLibraryPath()));
    m_manager = std::make_unique<CANCommunication>();
    connect(m_manager.get(), &CANCommunication::sig_deviceLost, this, &tst_DeviceLost::noteLost);
    QCOMPARE(m_manager->presentDevices().size(), 1);
    QCOMPARE(m_manager->openDevice(0), CAN_OK);
    QTRY_COMPARE_WITH_TIMEOUT(m_lost, QVector<int>({0}), 30000);
}

X9_CORE_TEST(tst_DeviceLost)
#include "tst_DeviceLost.moc"
