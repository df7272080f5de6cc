#include "device/FirmwareMonitor.h"

#include "device/CANCommunication.h"
#include "tests/support/FirmwarePublisher.h"
#include "tests/support/ScriptedAdapter.h"
#include "tests/support/TestProgram.h"
#include "tests/support/Ticks.h"

#include <QElapsedTimer>
#include <QtTest>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#ifdef Q_OS_LINUX
#include <pthread.h>
#endif

using namespace std::chrono_literals;

namespace {

constexpr int Rounds = 5;      ///< of checks, enough to see that one is no accident
constexpr int QuietTicks = 20; ///< each a chance for a check every millisecond
constexpr int StopBoundMs = 2000;

/// Lasts for a time that nothing can cut short, as a call of a slow adapter does.
void block(std::chrono::milliseconds time)
{
    std::mutex mutex;
    std::condition_variable never;
    std::unique_lock<std::mutex> lock(mutex);
    never.wait_for(lock, time, [] { return false; });
}

QByteArray padded(const char *text, char filling)
{
    return QByteArray(text).leftJustified(int(AdapterInfoSize), filling);
}

} // namespace

/// The monitor alone, against a scripted table. Its reports and queries come on its own thread and are counted there.
class tst_FirmwareMonitor : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    static void sleepsTwoSeconds();
    static void newerFirmware_data();
    void newerFirmware();
    static void noNewerFirmware_data();
    void noNewerFirmware();
    static void otherModels_data();
    void otherModels();
    static void noAdapter_data();
    void noAdapter();
    void adapterComesLater();
    void firmwarePublishedLater();
    void onceARun();
    void checksAtOnceThenSleeps();
    void callsOnlyReadInfo();
    void reportsOnItsThread();

    void scanHoldsOff();
    void scanBegunWhileAsking();
    void scanBegunWhileReading();
    void scanBegunAtAnyTime();

    static void nothingToCall_data();
    void nothingToCall();
    void withoutQuery();
    void managerWithoutQuery();
    void managerEndsItFirst();
    void noThreadLeft();

    void stopsAsleep();
    void stopsAQuery();
    void stopsAfterAnAdapterCall();
    void stopsTwice();
    void stopsAtAnyTime();

private:
    void start(std::chrono::milliseconds interval = 1ms, const QStringList &without = {});
    int reads();
    /// So many further reads have begun.
    bool readsAgain(int count);
    bool asksAgain(int count);
    /// Starts and looks that the device is read again and again, but nothing comes of it.
    void readsWithoutAsking();

    std::unique_ptr<ScriptedAdapter> m_adapter;
    std::unique_ptr<FirmwarePublisher> m_publisher;
    std::unique_ptr<CANAPI> m_api;
    std::atomic<bool> m_isScanning{false};
    std::atomic<int> m_reports{0};
    std::atomic<std::size_t> m_reportThread{0};
    std::atomic<bool> m_isBusy{false}; ///< a hook of the test has begun
    std::atomic<bool> m_isDone{false}; ///< it has come to its end
    std::atomic<bool> m_isDoneAtClose{false};
    int m_reads = 0;
    std::unique_ptr<FirmwareMonitor> m_monitor;
};

void tst_FirmwareMonitor::init()
{
    m_adapter = std::make_unique<ScriptedAdapter>();
    m_publisher = std::make_unique<FirmwarePublisher>();
    m_isScanning = false;
    m_reports = 0;
    m_isBusy = false;
    m_isDone = false;
    m_isDoneAtClose = false;
    m_reads = 0;
}

void tst_FirmwareMonitor::cleanup()
{
    m_monitor.reset();
    m_api.reset();
    m_publisher.reset();
    m_adapter.reset();
}

void tst_FirmwareMonitor::start(std::chrono::milliseconds interval, const QStringList &without)
{
    m_api = m_adapter->table(without);
    const auto report = [this] {
        m_reportThread = std::hash<std::thread::id>()(std::this_thread::get_id());
        ++m_reports;
    };
    m_monitor = std::make_unique<FirmwareMonitor>(*m_api, m_isScanning, m_publisher->query(), report, interval);
}

int tst_FirmwareMonitor::reads()
{
    m_reads += m_adapter->takeCalls().size();
    return m_reads;
}

bool tst_FirmwareMonitor::readsAgain(int count)
{
    const int wanted = reads() + count;
    return QTest::qWaitFor([this, wanted] { return reads() >= wanted; });
}

bool tst_FirmwareMonitor::asksAgain(int count)
{
    const int wanted = m_publisher->asked().size() + count;
    return QTest::qWaitFor([this, wanted] { return m_publisher->asked().size() >= wanted; });
}

void tst_FirmwareMonitor::readsWithoutAsking()
{
    m_publisher->publish(QStringLiteral("9.0"));
    start();
    QVERIFY(readsAgain(Rounds));
    QVERIFY(m_monitor->isRunning());
    m_monitor->stop();
    QCOMPARE(m_publisher->asked(), QStringList());
    QCOMPARE(m_reports.load(), 0);
}

void tst_FirmwareMonitor::sleepsTwoSeconds()
{
    QCOMPARE(std::chrono::milliseconds(FirmwareMonitor::Interval).count(), 2000);
}

void tst_FirmwareMonitor::newerFirmware_data()
{
    QTest::addColumn<QByteArray>("model");
    QTest::addColumn<QByteArray>("firmware");
    QTest::addColumn<QString>("published");
    QTest::addColumn<QString>("product");
    const QString classic = QStringLiteral("X9CANFirmWare");
    const QString canFD = QStringLiteral("X9770CANFirmWare");
    const QString next = QStringLiteral("2.06");
    QTest::newRow("classic model") << QByteArray("X9EC-200") << QByteArray("V2.05") << next << classic;
    QTest::newRow("CAN FD model") << QByteArray("X9FC-200") << QByteArray("V2.05") << next << canFD;
    QTest::newRow("four characters") << QByteArray("X9EC") << QByteArray("V2.05") << next << classic;
    QTest::newRow("other letter") << QByteArray("X9EC-200") << QByteArray("A2.05") << next << classic;
    QTest::newRow("any first character") << QByteArray("X9EC-200") << QByteArray("92.05") << next << classic;
    QTest::newRow("numbers, not texts") << QByteArray("X9EC-200") << QByteArray("V2.9") << QStringLiteral("2.10")
                                        << classic;
    // No room for a zero behind the texts.
    QTest::newRow("full buffers") << padded("X9FC", 'x') << padded("V1.", '0') << QStringLiteral("1.1") << canFD;
}

void tst_FirmwareMonitor::newerFirmware()
{
    QFETCH(QByteArray, model);
    QFETCH(QByteArray, firmware);
    QFETCH(QString, published);
    QFETCH(QString, product);
    m_adapter->setTexts("SN1", model, firmware);
    m_publisher->publish(published);
    start();
    QTRY_COMPARE(m_reports.load(), 1);
    QCOMPARE(m_publisher->asked(), QStringList(product));
}

void tst_FirmwareMonitor::noNewerFirmware_data()
{
    QTest::addColumn<QByteArray>("firmware");
    QTest::addColumn<QString>("published");
    QTest::newRow("the same") << QByteArray("V2.05") << QStringLiteral("2.05");
    QTest::newRow("an older one") << QByteArray("V2.05") << QStringLiteral("2.04");
    QTest::newRow("the parts of both are the same") << QByteArray("V2.05") << QStringLiteral("2.05.1");
    QTest::newRow("no answer") << QByteArray("V2.05") << QString();
    QTest::newRow("no number") << QByteArray("V2.05") << QStringLiteral("V2.06");
    QTest::newRow("no number in the device") << QByteArray("VV2.05") << QStringLiteral("2.06");
    QTest::newRow("device without a version") << QByteArray() << QStringLiteral("2.06");
    QTest::newRow("device with nothing but a letter") << QByteArray("V") << QStringLiteral("2.06");
    QTest::newRow("a number too large") << padded("V2.", '9') << QStringLiteral("2.06");
}

void tst_FirmwareMonitor::noNewerFirmware()
{
    QFETCH(QByteArray, firmware);
    QFETCH(QString, published);
    m_adapter->setTexts("SN1", "X9EC-200", firmware);
    m_publisher->publish(published);
    start();
    QVERIFY(asksAgain(Rounds));
    QVERIFY(m_monitor->isRunning());
    m_monitor->stop();
    QCOMPARE(m_reports.load(), 0);
}

void tst_FirmwareMonitor::otherModels_data()
{
    QTest::addColumn<QByteArray>("model");
    QTest::newRow("another family") << QByteArray("X9LC-200");
    QTest::newRow("lower case") << QByteArray("x9ec-200");
    QTest::newRow("not at the beginning") << QByteArray(" X9EC-200");
    QTest::newRow("of another maker") << QByteArray("X9FC SocketCAN");
    QTest::newRow("three characters") << QByteArray("X9E");
    QTest::newRow("a zero within") << QByteArray("X9E\0C-200", 9);
    QTest::newRow("none") << QByteArray();
}

void tst_FirmwareMonitor::otherModels()
{
    QFETCH(QByteArray, model);
    m_adapter->setTexts("SN1", model, "V2.05");
    readsWithoutAsking();
}

void tst_FirmwareMonitor::noAdapter_data()
{
    QTest::addColumn<quint32>("answer");
    QTest::newRow("refused") << 0U;
    QTest::newRow("two") << 2U;
    QTest::newRow("error") << 0xFFFFFFFFU;
}

void tst_FirmwareMonitor::noAdapter()
{
    QFETCH(quint32, answer);
    m_adapter->answer("KQ_ReadInfo", answer);
    readsWithoutAsking();
}

void tst_FirmwareMonitor::adapterComesLater()
{
    m_adapter->answer("KQ_ReadInfo", 0);
    m_publisher->publish(QStringLiteral("9.0"));
    start();
    QVERIFY(readsAgain(Rounds));
    QCOMPARE(m_reports.load(), 0);
    m_adapter->answer("KQ_ReadInfo", AdapterSuccess);
    QTRY_COMPARE(m_reports.load(), 1);
}

void tst_FirmwareMonitor::firmwarePublishedLater()
{
    start();
    QVERIFY(asksAgain(Rounds));
    QCOMPARE(m_reports.load(), 0);
    m_publisher->publish(QStringLiteral("9.0"));
    QTRY_COMPARE(m_reports.load(), 1);
}

void tst_FirmwareMonitor::onceARun()
{
    m_publisher->publish(QStringLiteral("2.06"));
    start();
    QTRY_COMPARE(m_reports.load(), 1);
    QVERIFY(!m_monitor->isRunning());
    QCOMPARE(reads(), 1);
    m_publisher->publish(QStringLiteral("2.07"));
    letTicksPass(QuietTicks);
    QCOMPARE(reads(), 1);
    QCOMPARE(m_publisher->asked().size(), 1);
    QCOMPARE(m_reports.load(), 1);
}

void tst_FirmwareMonitor::checksAtOnceThenSleeps()
{
    start(1h);
    QTRY_COMPARE(m_publisher->asked().size(), 1);
    letTicksPass(QuietTicks);
    QCOMPARE(reads(), 1);
    QCOMPARE(m_publisher->asked().size(), 1);
    QVERIFY(m_monitor->isRunning());
}

void tst_FirmwareMonitor::callsOnlyReadInfo()
{
    start();
    QVERIFY(asksAgain(Rounds));
    m_monitor->stop();
    const QStringList calls = m_adapter->takeCalls();
    QVERIFY(calls.size() >= Rounds);
    QCOMPARE(calls.count(QStringLiteral("KQ_ReadInfo 4 0")), calls.size());
    QCOMPARE(m_adapter->takePolls(), QStringList());
}

void tst_FirmwareMonitor::reportsOnItsThread()
{
    m_publisher->publish(QStringLiteral("9.0"));
    start();
    QTRY_COMPARE(m_reports.load(), 1);
    QVERIFY(m_reportThread != std::hash<std::thread::id>()(std::this_thread::get_id()));
}

void tst_FirmwareMonitor::scanHoldsOff()
{
    m_isScanning = true;
    start();
    letTicksPass(QuietTicks);
    QCOMPARE(reads(), 0);
    QVERIFY(m_monitor->isRunning());
    m_isScanning = false;
    QVERIFY(readsAgain(Rounds));
}

void tst_FirmwareMonitor::scanBegunWhileAsking()
{
    m_publisher->onQuery([this](const std::atomic<bool> &) { m_isScanning = true; });
    start();
    QTRY_VERIFY(m_isScanning);
    letTicksPass(QuietTicks);
    QCOMPARE(reads(), 1);
    m_isScanning = false;
    QTRY_COMPARE(reads(), 2);
    letTicksPass(QuietTicks);
    QCOMPARE(reads(), 2);
}

void tst_FirmwareMonitor::scanBegunWhileReading()
{
    // The call under way comes to its end, and what it told is used.
    m_adapter->onCall("KQ_ReadInfo", [this] { m_isScanning = true; });
    start();
    QTRY_COMPARE(m_publisher->asked().size(), 1);
    letTicksPass(QuietTicks);
    QCOMPARE(reads(), 1);
    QCOMPARE(m_publisher->asked().size(), 1);
    m_isScanning = false;
    QTRY_COMPARE(reads(), 2);
}

void tst_FirmwareMonitor::scanBegunAtAnyTime()
{
    start(0ms);
    for (int scan = 0; scan < 20; ++scan) {
        QVERIFY(readsAgain(1));
        m_isScanning = true;
        const int before = reads();
        letTicksPass(2);
        QVERIFY(reads() <= before + 1); // one may have been under way
        m_isScanning = false;
    }
}

void tst_FirmwareMonitor::nothingToCall_data()
{
    QTest::addColumn<bool>("isLibraryThere");
    QTest::newRow("no library") << false;
    QTest::newRow("library without the entry") << true;
}

void tst_FirmwareMonitor::nothingToCall()
{
    QFETCH(bool, isLibraryThere);
    m_api = isLibraryThere ? m_adapter->table({QStringLiteral("KQ_ReadInfo")}) : std::make_unique<CANAPI>(QString());
    m_publisher->publish(QStringLiteral("9.0"));
    FirmwareMonitor monitor(
        *m_api, m_isScanning, m_publisher->query(), [this] { ++m_reports; }, 1ms);
    QVERIFY(!monitor.isRunning());
    letTicksPass(QuietTicks);
    QCOMPARE(reads(), 0);
    QCOMPARE(m_publisher->asked(), QStringList());
    QCOMPARE(m_reports.load(), 0);
}

void tst_FirmwareMonitor::withoutQuery()
{
    m_api = m_adapter->table();
    FirmwareMonitor monitor(
        *m_api, m_isScanning, {}, [this] { ++m_reports; }, 1ms);
    QVERIFY(!monitor.isRunning());
    letTicksPass(QuietTicks);
    QCOMPARE(reads(), 0);
    monitor.stop();
}

void tst_FirmwareMonitor::managerWithoutQuery()
{
    CANCommunication manager(m_adapter->table(), {}, nullptr, 1ms);
    letTicksPass(QuietTicks);
    QCOMPARE(m_adapter->takeCalls(), QStringList());
}

void tst_FirmwareMonitor::managerEndsItFirst()
{
    m_publisher->onQuery([this](const std::atomic<bool> &isCancelled) {
        waitFor(isCancelled);
        m_isDone = isCancelled.load();
    });
    m_adapter->onCall("VCI_CloseDevice", [this] { m_isDoneAtClose = m_isDone.load(); });
    auto manager = std::make_unique<CANCommunication>(m_adapter->table(), m_publisher->query(), nullptr, 1ms);
    QTRY_COMPARE(m_publisher->asked().size(), 1);
    QCOMPARE(manager->slot_scanCANBaudrate(1, 0), CAN_OK);
    manager.reset(); // closes the device that the scan has opened
    QVERIFY(m_isDoneAtClose);
}

void tst_FirmwareMonitor::noThreadLeft()
{
#ifdef __GLIBC__
    // No system has room for such a stack.
    pthread_attr_t before;
    pthread_attr_t huge;
    QCOMPARE(pthread_getattr_default_np(&before), 0);
    QCOMPARE(pthread_attr_init(&huge), 0);
    QCOMPARE(pthread_attr_setstacksize(&huge, std::size_t(1) << (sizeof(std::size_t) * 8 - 2)), 0);
    QCOMPARE(pthread_setattr_default_np(&huge), 0);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^No firmware monitor: ")));
    start();
    QCOMPARE(pthread_setattr_default_np(&before), 0);
    pthread_attr_destroy(&huge);
    pthread_attr_destroy(&before);
    QVERIFY(!m_monitor->isRunning());
    m_monitor->stop();
    QCOMPARE(reads(), 0);
#endif
    start();
    QVERIFY(m_monitor->isRunning());
    QVERIFY(readsAgain(1));
}

void tst_FirmwareMonitor::stopsAsleep()
{
    start(1h);
    QTRY_COMPARE(m_publisher->asked().size(), 1);
    letTicksPass(QuietTicks);
    QElapsedTimer clock;
    clock.start();
    m_monitor->stop();
    QVERIFY(clock.elapsed() < StopBoundMs);
    QVERIFY(!m_monitor->isRunning());
    QCOMPARE(reads(), 1);
}

void tst_FirmwareMonitor::stopsAQuery()
{
    m_publisher->publish(QStringLiteral("9.0")); // an answer that comes all the same is dropped
    m_publisher->onQuery([this](const std::atomic<bool> &isCancelled) {
        m_isBusy = true;
        waitFor(isCancelled);
        m_isDone = isCancelled.load();
    });
    start(1h); // which must not follow
    QTRY_VERIFY(m_isBusy);
    letTicksPass(QuietTicks);
    QVERIFY(!m_isDone);
    QElapsedTimer clock;
    clock.start();
    m_monitor.reset();
    QVERIFY(m_isDone);
    QVERIFY(clock.elapsed() < StopBoundMs);
    QCOMPARE(m_publisher->asked().size(), 1);
    QCOMPARE(m_reports.load(), 0);
}

void tst_FirmwareMonitor::stopsAfterAnAdapterCall()
{
    m_publisher->publish(QStringLiteral("9.0"));
    m_adapter->onCall("KQ_ReadInfo", [this] {
        m_isBusy = true;
        block(1000ms);
        m_isDone = true;
    });
    start(1h); // which must not follow
    QTRY_VERIFY(m_isBusy);
    QVERIFY(!m_isDone);
    QElapsedTimer clock;
    clock.start();
    m_monitor.reset();
    QVERIFY(m_isDone);
    QVERIFY(clock.elapsed() < StopBoundMs);
    QCOMPARE(m_publisher->asked(), QStringList()); // nobody is asked any more
    QCOMPARE(m_reports.load(), 0);
}

void tst_FirmwareMonitor::stopsTwice()
{
    start();
    QVERIFY(asksAgain(Rounds));
    m_monitor->stop();
    const int before = reads();
    m_monitor->stop();
    letTicksPass(QuietTicks);
    QCOMPARE(reads(), before);
    QVERIFY(!m_monitor->isRunning());
}

void tst_FirmwareMonitor::stopsAtAnyTime()
{
    for (int round = 0; round < 300; ++round) {
        m_publisher->publish(round % 3 == 0 ? QStringLiteral("9.0") : QString());
        m_reports = 0;
        start(round % 2 == 0 ? 0ms : std::chrono::milliseconds(1h));
        for (int i = 0; i < round % 7; ++i) {
            std::this_thread::yield();
        }
        m_monitor.reset();
        const int reports = m_reports;
        QVERIFY(reports <= 1);
        std::this_thread::yield();
        QCOMPARE(m_reports.load(), reports);
    }
}

X9_CORE_TEST(tst_FirmwareMonitor)
#include "tst_FirmwareMonitor.moc"
