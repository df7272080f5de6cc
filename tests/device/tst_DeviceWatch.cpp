#include "device/DeviceWatch.h"

#include "device/CANCommunication.h"
#include "tests/support/AdapterFolder.h"
#include "tests/support/ScriptedAdapter.h"
#include "tests/support/TestProgram.h"
#include "tests/support/Ticks.h"

#include <QElapsedTimer>
#include <QFile>
#include <QThread>
#include <QtTest>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#ifdef Q_OS_LINUX
#include <pthread.h>
#endif

using namespace std::chrono_literals;

namespace {

constexpr int Rounds = 5;      ///< of checks, enough to see that one is no accident
constexpr int QuietTicks = 20; ///< each a chance for a check every millisecond
constexpr int StopBoundMs = 2000;

/// What KQ_ReadInfo answers to the watch, device by device, and how often it was asked. Any thread.
class Devices
{
public:
    /// One character per call, '1' answers and '0' fails; the last one stays.
    void script(quint8 dev, const QByteArray &answers)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_devices.at(dev) = {answers, 0, 0};
    }
    /// Calls of a device return only after release() from its call number (counting from 1) on.
    void holdFrom(quint8 dev, int number)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_devices.at(dev).heldFrom = number;
    }
    void release()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        for (Device &device : m_devices) {
            device.heldFrom = 0;
        }
        m_changed.notify_all();
    }
    /// Calls begun.
    int reads(quint8 dev) const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_devices.at(dev).reads;
    }
    int returned() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_returned;
    }
    /// Blocks the calling thread, with its events, until so many further calls have begun.
    bool waitForReads(quint8 dev, int count)
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        const int wanted = m_devices.at(dev).reads + count;
        return m_changed.wait_for(lock, 10s, [this, dev, wanted] { return m_devices.at(dev).reads >= wanted; });
    }
    /// The same, until so many calls have begun in all.
    bool waitForRead(quint8 dev, int number)
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        return m_changed.wait_for(lock, 10s, [this, dev, number] { return m_devices.at(dev).reads >= number; });
    }
    /// Runs in the calling thread at the start of every call.
    void onRead(std::function<void()> hook)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_hook = std::move(hook);
    }

    quint32 read(quint8 dev)
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        Device &device = m_devices.at(dev);
        const int number = ++device.reads;
        const bool answers = device.answers.at(std::min(number, device.answers.size()) - 1) == '1';
        m_changed.notify_all();
        const auto hook = m_hook;
        if (hook) {
            lock.unlock();
            hook();
            lock.lock();
        }
        m_changed.wait(lock, [&device, number] { return device.heldFrom == 0 || number < device.heldFrom; });
        ++m_returned;
        return answers ? AdapterSuccess : 0;
    }

private:
    struct Device
    {
        QByteArray answers = "1";
        int reads = 0;
        int heldFrom = 0;
    };

    mutable std::mutex m_mutex; ///< guards everything below
    std::condition_variable m_changed;
    std::array<Device, 8> m_devices;
    int m_returned = 0;
    std::function<void()> m_hook;
};

Devices *current = nullptr; // entry points carry no context

quint32 X9_ADAPTER_CALL scriptedReadInfo(quint32 /*type*/, quint8 dev, char * /*serial*/, char * /*model*/,
                                         char * /*firmware*/, char * /*hardware*/)
{
    return current->read(dev);
}

/// The virtual adapter's own entry behind one that counts the answers.
AdapterEntry::ReadInfo libraryReadInfo = nullptr;
std::atomic<int> libraryReads{0};
std::atomic<int> libraryAnswers{0};

quint32 X9_ADAPTER_CALL countedReadInfo(quint32 type, quint8 dev, char *serial, char *model, char *firmware,
                                        char *hardware)
{
    const quint32 result = libraryReadInfo(type, dev, serial, model, firmware, hardware);
    ++libraryReads;
    libraryAnswers += result == AdapterSuccess ? 1 : 0;
    return result;
}

/// Lasts for a time that nothing can cut short, as a call of a slow adapter does.
void block(std::chrono::milliseconds time)
{
    std::mutex mutex;
    std::condition_variable never;
    std::unique_lock<std::mutex> lock(mutex);
    never.wait_for(lock, time, [] { return false; });
}

using Report = std::pair<int, int>; // device, opening

} // namespace

/// The watch alone, the manager with it against a scripted table, and the manager against the virtual adapter.
class tst_DeviceWatch : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    static void sleepsOneSecond();
    static void answers_data();
    void answers();
    void reportedOnce();
    void reportedOncePerOpening();
    void oneOfTwo();
    void both();
    void reportsOnItsThread();
    void sleepsFirst();
    void scanHoldsOff();
    void scanBegunAtAnyTime();

    void removedBefore();
    void removedDuringTheCall();
    void addedAgainDuringTheCall();
    void addedDuringTheCall();
    void comingAndGoing();

    void noThreadBeforeTheFirstDevice();
    static void nothingToCall_data();
    void nothingToCall();
    void noThreadLeft();
    void endsAsleep();
    void endsAfterAnAdapterCall();
    void stopsBetweenDevices();
    void endsAtAnyTime();

    void managerTells();
    void managerWatchesOpenDevices();
    void managerLeavesClosedDevices();
    void managerWithoutWatch();
    void managerByDefault();
    static void managerClosesBeforeTelling_data();
    void managerClosesBeforeTelling();
    void managerClosesDuringTheCall();
    void managerTellsEveryOpening();
    void managerScans();
    void managerEndsItFirst();

    void adapterPulledOut();
    void adapterBackAgain();
    void adapterRefusingTexts();

private:
    void start(std::chrono::milliseconds interval = 1ms);
    void startManager(std::chrono::milliseconds interval = 1ms);
    void startAdapter(const QByteArray &json);
    std::unique_ptr<CANAPI> table();
    void noteLost(quint8 dev) { m_lost.append(dev); }
    std::vector<Report> reports();
    bool readsAgain(quint8 dev, int count);

    Devices m_devices;
    std::unique_ptr<ScriptedAdapter> m_adapter;
    std::unique_ptr<CANAPI> m_api;
    std::atomic<bool> m_isScanning{false};
    std::mutex m_mutex; ///< guards m_reports
    std::vector<Report> m_reports;
    std::atomic<std::size_t> m_reportThread{0};
    std::unique_ptr<DeviceWatch> m_watch;
    std::unique_ptr<AdapterFolder> m_folder;
    std::unique_ptr<CANCommunication> m_manager;
    QVector<int> m_lost; ///< devices that the manager told of
    bool m_isToldOnGuiThread = false;
};

void tst_DeviceWatch::init()
{
    current = &m_devices;
    for (quint8 dev = 0; dev < 8; ++dev) {
        m_devices.script(dev, "1");
    }
    m_adapter = std::make_unique<ScriptedAdapter>();
    m_isScanning = false;
    m_reports.clear();
    m_reportThread = 0;
    m_lost.clear();
    m_isToldOnGuiThread = false;
    libraryReads = 0;
    libraryAnswers = 0;
}

void tst_DeviceWatch::cleanup()
{
    m_devices.release();
    m_devices.onRead({});
    m_watch.reset();
    if (m_manager) {
        for (quint8 dev = 0; dev < 8; ++dev) {
            m_manager->closeDevice(dev);
        }
        m_manager.reset();
    }
    m_folder.reset();
    m_api.reset();
    m_adapter.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

std::unique_ptr<CANAPI> tst_DeviceWatch::table()
{
    auto api = m_adapter->table();
    api->KQ_ReadInfo = scriptedReadInfo;
    return api;
}

void tst_DeviceWatch::start(std::chrono::milliseconds interval)
{
    m_api = table();
    const auto report = [this](quint8 dev, quint32 opening) {
        m_reportThread = std::hash<std::thread::id>()(std::this_thread::get_id());
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_reports.emplace_back(int(dev), int(opening));
    };
    m_watch = std::make_unique<DeviceWatch>(*m_api, m_isScanning, report, interval);
}

void tst_DeviceWatch::startManager(std::chrono::milliseconds interval)
{
    m_manager = std::make_unique<CANCommunication>(table());
    connect(m_manager.get(), &CANCommunication::sig_deviceLost, this, &tst_DeviceWatch::noteLost);
    m_manager->watchDevices(interval);
}

void tst_DeviceWatch::startAdapter(const QByteArray &json)
{
    m_folder = std::make_unique<AdapterFolder>(json);
    auto api = std::make_unique<CANAPI>(QStringLiteral(X9_VIRTUAL_ADAPTER));
    QVERIFY(api->KQ_ReadInfo != nullptr);
    libraryReadInfo = std::exchange(api->KQ_ReadInfo, countedReadInfo);
    m_manager = std::make_unique<CANCommunication>(std::move(api));
    connect(m_manager.get(), &CANCommunication::sig_deviceLost, this, &tst_DeviceWatch::noteLost);
    m_manager->watchDevices(1ms);
}

std::vector<Report> tst_DeviceWatch::reports()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_reports;
}

bool tst_DeviceWatch::readsAgain(quint8 dev, int count)
{
    const int wanted = m_devices.reads(dev) + count;
    return QTest::qWaitFor([this, dev, wanted] { return m_devices.reads(dev) >= wanted; });
}

void tst_DeviceWatch::sleepsOneSecond()
{
    QCOMPARE(std::chrono::milliseconds(DeviceWatch::Interval).count(), 1000);
}

void tst_DeviceWatch::answers_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<bool>("isLost");
    QTest::newRow("two failures") << QByteArray("100") << true;
    QTest::newRow("after a single failure") << QByteArray("10100") << true;
    QTest::newRow("after a time without answers") << QByteArray("000100") << true;
    QTest::newRow("after many answers") << QByteArray("111111111100") << true;
    QTest::newRow("always there") << QByteArray("1111111111") << false;
    QTest::newRow("never answers") << QByteArray("0000000000") << false;
    QTest::newRow("answers late") << QByteArray("0000000001") << false;
    QTest::newRow("every other call fails") << QByteArray("1010101010101") << false;
}

void tst_DeviceWatch::answers()
{
    QFETCH(QByteArray, script);
    QFETCH(bool, isLost);
    m_devices.script(3, script);
    start();
    m_watch->add(3, 7);
    if (isLost) {
        QTRY_COMPARE(reports(), std::vector<Report>({{3, 7}}));
        QCOMPARE(m_devices.reads(3), script.size());
    } else {
        QVERIFY(readsAgain(3, script.size() + Rounds));
        QCOMPARE(reports(), std::vector<Report>());
    }
}

void tst_DeviceWatch::reportedOnce()
{
    m_devices.script(0, "100");
    start();
    m_watch->add(0, 1);
    m_watch->add(1, 2);
    QTRY_COMPARE(reports().size(), std::size_t(1));
    QVERIFY(readsAgain(1, Rounds));
    QCOMPARE(reports(), std::vector<Report>({{0, 1}}));
    QCOMPARE(m_devices.reads(0), 3); // not asked any more
}

void tst_DeviceWatch::reportedOncePerOpening()
{
    start();
    std::vector<Report> expected;
    for (int opening = 1; opening <= 3; ++opening) {
        m_devices.script(0, "100");
        m_watch->add(0, quint32(opening));
        expected.emplace_back(0, opening);
        QTRY_COMPARE(reports(), expected);
        m_watch->remove(0);
    }
}

void tst_DeviceWatch::oneOfTwo()
{
    m_devices.script(5, "1100");
    start();
    m_watch->add(2, 1);
    m_watch->add(5, 2);
    QTRY_COMPARE(reports(), std::vector<Report>({{5, 2}}));
    QVERIFY(readsAgain(2, Rounds));
    QCOMPARE(reports().size(), std::size_t(1));
    QVERIFY(m_devices.reads(2) > m_devices.reads(5));
}

void tst_DeviceWatch::both()
{
    m_devices.script(0, "100");
    m_devices.script(7, "100");
    start();
    m_watch->add(0, 1);
    m_watch->add(7, 2);
    QTRY_COMPARE(reports(), std::vector<Report>({{0, 1}, {7, 2}}));
}

void tst_DeviceWatch::reportsOnItsThread()
{
    m_devices.script(0, "100");
    start();
    m_watch->add(0, 1);
    QTRY_COMPARE(reports().size(), std::size_t(1));
    QVERIFY(m_reportThread != std::hash<std::thread::id>()(std::this_thread::get_id()));
}

void tst_DeviceWatch::sleepsFirst()
{
    start(1h);
    m_watch->add(0, 1);
    QVERIFY(m_watch->isRunning());
    letTicksPass(QuietTicks);
    QCOMPARE(m_devices.reads(0), 0);
}

void tst_DeviceWatch::scanHoldsOff()
{
    m_devices.script(0, "100");
    m_isScanning = true;
    start();
    m_watch->add(0, 1);
    m_watch->add(1, 2);
    letTicksPass(QuietTicks);
    QCOMPARE(m_devices.reads(0), 0);
    QCOMPARE(m_devices.reads(1), 0);
    m_isScanning = false;
    QTRY_COMPARE(reports(), std::vector<Report>({{0, 1}}));
}

void tst_DeviceWatch::scanBegunAtAnyTime()
{
    start(0ms);
    m_watch->add(0, 1);
    for (int scan = 0; scan < 20; ++scan) {
        QVERIFY(readsAgain(0, 1));
        m_isScanning = true;
        const int before = m_devices.reads(0);
        letTicksPass(2);
        QVERIFY(m_devices.reads(0) <= before + 1); // one may have been about to begin
        m_isScanning = false;
    }
}

void tst_DeviceWatch::removedBefore()
{
    start();
    m_watch->add(0, 1);
    m_watch->add(1, 2);
    QVERIFY(readsAgain(0, Rounds));
    m_watch->remove(0);
    m_devices.script(0, "0");
    QVERIFY(readsAgain(1, Rounds));
    QVERIFY(m_devices.reads(0) <= 1); // one may have been about to begin
    QCOMPARE(reports(), std::vector<Report>());
    m_watch->remove(0); // twice, or one that never was there
    m_watch->remove(6);
}

void tst_DeviceWatch::removedDuringTheCall()
{
    m_devices.script(0, "100");
    m_devices.holdFrom(0, 3);
    start();
    m_watch->add(0, 1);
    m_watch->add(1, 2);
    QVERIFY(m_devices.waitForRead(0, 3));
    const int returned = m_devices.returned();
    m_watch->remove(0);
    QCOMPARE(m_devices.returned(), returned); // has not waited for the call
    m_devices.release();
    QVERIFY(readsAgain(1, Rounds));
    QCOMPARE(m_devices.reads(0), 3);
    QCOMPARE(reports(), std::vector<Report>());
}

void tst_DeviceWatch::addedAgainDuringTheCall()
{
    // The answer under way belongs to the opening before: this one never answers.
    m_devices.script(0, "1000000");
    m_devices.holdFrom(0, 1);
    start();
    m_watch->add(0, 1);
    QVERIFY(m_devices.waitForRead(0, 1));
    m_watch->remove(0);
    m_watch->add(0, 2);
    m_devices.release();
    QVERIFY(readsAgain(0, Rounds));
    QCOMPARE(reports(), std::vector<Report>());
}

void tst_DeviceWatch::addedDuringTheCall()
{
    m_devices.holdFrom(0, 1);
    m_devices.script(4, "100");
    start();
    m_watch->add(0, 1);
    QVERIFY(m_devices.waitForRead(0, 1));
    m_watch->add(4, 2);
    QCOMPARE(m_devices.reads(4), 0);
    m_devices.release();
    QTRY_COMPARE(reports(), std::vector<Report>({{4, 2}}));
}

void tst_DeviceWatch::comingAndGoing()
{
    m_devices.script(1, "10");
    start(0ms);
    m_watch->add(0, 1);
    for (int round = 0; round < 300; ++round) {
        m_devices.script(1, "10");
        m_watch->add(1, quint32(round));
        for (int i = 0; i < round % 7; ++i) {
            std::this_thread::yield();
        }
        m_watch->remove(1);
        const std::vector<Report> before = reports();
        std::this_thread::yield();
        QCOMPARE(reports(), before); // removed: nothing comes after it
        QVERIFY(std::count(before.begin(), before.end(), Report(1, round)) <= 1);
    }
    QVERIFY(readsAgain(0, Rounds));
}

void tst_DeviceWatch::noThreadBeforeTheFirstDevice()
{
    start();
    QVERIFY(!m_watch->isRunning());
    m_watch->add(0, 1);
    QVERIFY(m_watch->isRunning());
}

void tst_DeviceWatch::nothingToCall_data()
{
    QTest::addColumn<bool>("isLibraryThere");
    QTest::newRow("no library") << false;
    QTest::newRow("library without the entry") << true;
}

void tst_DeviceWatch::nothingToCall()
{
    QFETCH(bool, isLibraryThere);
    const auto api =
        isLibraryThere ? m_adapter->table({QStringLiteral("KQ_ReadInfo")}) : std::make_unique<CANAPI>(QString());
    DeviceWatch watch(*api, m_isScanning, {}, 1ms);
    watch.add(0, 1);
    QVERIFY(!watch.isRunning());
    watch.remove(0);
    letTicksPass(QuietTicks);
    QCOMPARE(m_adapter->takeCalls(), QStringList());
}

void tst_DeviceWatch::noThreadLeft()
{
    m_devices.script(0, "100");
    start();
#ifdef __GLIBC__
    // No system has room for such a stack.
    pthread_attr_t before;
    pthread_attr_t huge;
    QCOMPARE(pthread_getattr_default_np(&before), 0);
    QCOMPARE(pthread_attr_init(&huge), 0);
    QCOMPARE(pthread_attr_setstacksize(&huge, std::size_t(1) << (sizeof(std::size_t) * 8 - 2)), 0);
    QCOMPARE(pthread_setattr_default_np(&huge), 0);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^No watch over the devices: ")));
    m_watch->add(1, 1);
    QCOMPARE(pthread_setattr_default_np(&before), 0);
    pthread_attr_destroy(&huge);
    pthread_attr_destroy(&before);
    QVERIFY(!m_watch->isRunning());
#endif
    m_watch->add(0, 2); // the next one tries again
    QVERIFY(m_watch->isRunning());
    QTRY_COMPARE(reports(), std::vector<Report>({{0, 2}}));
}

void tst_DeviceWatch::endsAsleep()
{
    start(1h);
    m_watch->add(0, 1);
    letTicksPass(QuietTicks);
    QElapsedTimer clock;
    clock.start();
    m_watch.reset();
    QVERIFY(clock.elapsed() < StopBoundMs);
    QCOMPARE(m_devices.reads(0), 0);
}

void tst_DeviceWatch::endsAfterAnAdapterCall()
{
    m_devices.script(0, "100");
    std::atomic<int> calls{0};
    std::atomic<bool> isDone{false};
    m_devices.onRead([&] {
        if (++calls == 3) {
            block(1000ms);
            isDone = true;
        }
    });
    start();
    m_watch->add(0, 1);
    QTRY_COMPARE(calls.load(), 3);
    QVERIFY(!isDone);
    QElapsedTimer clock;
    clock.start();
    m_watch.reset();
    QVERIFY(isDone);
    QVERIFY(clock.elapsed() < StopBoundMs);
    QCOMPARE(m_devices.reads(0), 3);
    QCOMPARE(reports(), std::vector<Report>()); // though it was the second failure
}

void tst_DeviceWatch::stopsBetweenDevices()
{
    m_devices.holdFrom(0, 1);
    start();
    m_isScanning = true; // until both are there
    m_watch->add(0, 1);
    m_watch->add(1, 2);
    m_isScanning = false;
    QVERIFY(m_devices.waitForRead(0, 1));
    const int before = m_devices.reads(1);
    m_watch->stop();
    m_devices.release();
    m_watch.reset();
    QCOMPARE(m_devices.reads(0), 1);
    QCOMPARE(m_devices.reads(1), before);
}

void tst_DeviceWatch::endsAtAnyTime()
{
    for (int round = 0; round < 300; ++round) {
        m_devices.script(0, "100");
        start(round % 2 == 0 ? 0ms : std::chrono::milliseconds(1h));
        m_watch->add(0, quint32(round));
        for (int i = 0; i < round % 7; ++i) {
            std::this_thread::yield();
        }
        m_watch.reset();
        const std::vector<Report> before = reports();
        QVERIFY(std::count(before.begin(), before.end(), Report(0, round)) <= 1);
        std::this_thread::yield();
        QCOMPARE(reports(), before);
    }
}

void tst_DeviceWatch::managerTells()
{
    m_devices.script(1, "100");
    startManager();
    connect(
        m_manager.get(), &CANCommunication::sig_deviceLost, m_manager.get(),
        [this] { m_isToldOnGuiThread = QThread::currentThread() == QCoreApplication::instance()->thread(); },
        Qt::DirectConnection); // on the thread that the manager emits on
    QCOMPARE(m_manager->openDevice(0), CAN_OK);
    QCOMPARE(m_manager->openDevice(1), CAN_OK);
    QTRY_COMPARE(m_lost, QVector<int>({1}));
    QVERIFY(m_isToldOnGuiThread);
    QVERIFY(m_manager->isDeviceOpen(1));
    QVERIFY(readsAgain(0, Rounds));
    QCOMPARE(m_lost, QVector<int>({1}));
}

void tst_DeviceWatch::managerWatchesOpenDevices()
{
    m_manager = std::make_unique<CANCommunication>(table());
    connect(m_manager.get(), &CANCommunication::sig_deviceLost, this, &tst_DeviceWatch::noteLost);
    QCOMPARE(m_manager->openDevice(0), CAN_OK);
    m_manager->watchDevices(1h);
    m_devices.script(0, "100");
    m_manager->watchDevices(1ms); // starts anew
    QTRY_COMPARE(m_lost, QVector<int>({0}));
}

void tst_DeviceWatch::managerLeavesClosedDevices()
{
    startManager();
    QCOMPARE(m_manager->openDevice(0), CAN_OK);
    QCOMPARE(m_manager->openDevice(1), CAN_OK);
    QVERIFY(m_devices.waitForReads(0, 1));
    QCOMPARE(m_manager->closeDevice(0), CAN_OK);
    QVERIFY(readsAgain(1, 2)); // a check that was under way has ended
    const int reads = m_devices.reads(0);
    QVERIFY(readsAgain(1, Rounds));
    QCOMPARE(m_devices.reads(0), reads);
}

void tst_DeviceWatch::managerWithoutWatch()
{
    m_manager = std::make_unique<CANCommunication>(table());
    QCOMPARE(m_manager->openDevice(0), CAN_OK);
    letTicksPass(QuietTicks);
    QCOMPARE(m_manager->closeDevice(0), CAN_OK);
    QCOMPARE(m_devices.reads(0), 0);
}

void tst_DeviceWatch::managerByDefault()
{
    // As the program does it: the library of the working directory, checked once a second.
    m_folder =
        std::make_unique<AdapterFolder>(R"({"devices": [{"model": "X9FC-200", "faults": {"vanish_after_ms": 1500}}]})");
    QVERIFY(QFile::copy(QStringLiteral(X9_VIRTUAL_ADAPTER), CANAPI::defaultLibraryPath()));
    m_manager = std::make_unique<CANCommunication>();
    connect(m_manager.get(), &CANCommunication::sig_deviceLost, this, &tst_DeviceWatch::noteLost);
    QCOMPARE(m_manager->openDevice(0), CAN_OK);
    QTRY_COMPARE_WITH_TIMEOUT(m_lost, QVector<int>({0}), 30000);
}

void tst_DeviceWatch::managerClosesBeforeTelling_data()
{
    QTest::addColumn<bool>("isOpenedAgain");
    QTest::newRow("closed") << false;
    QTest::newRow("opened again") << true;
}

void tst_DeviceWatch::managerClosesBeforeTelling()
{
    QFETCH(bool, isOpenedAgain);
    m_devices.script(0, "100");
    startManager();
    QCOMPARE(m_manager->openDevice(0), CAN_OK);
    QCOMPARE(m_manager->openDevice(1), CAN_OK);
    // No event is delivered here. Device 1 is asked after device 0, on the same thread: the report is posted by then.
    QVERIFY(m_devices.waitForRead(0, 3));
    QVERIFY(m_devices.waitForReads(1, 2));
    QCOMPARE(m_manager->closeDevice(0), CAN_OK);
    if (isOpenedAgain) {
        m_devices.script(0, "1");
        QCOMPARE(m_manager->openDevice(0), CAN_OK);
    }
    QVERIFY(readsAgain(1, Rounds));
    QCoreApplication::processEvents();
    QCOMPARE(m_lost, QVector<int>());
}

void tst_DeviceWatch::managerClosesDuringTheCall()
{
    m_devices.script(0, "100");
    m_devices.holdFrom(0, 3);
    startManager();
    QCOMPARE(m_manager->openDevice(0), CAN_OK);
    QVERIFY(m_devices.waitForRead(0, 3));
    const int returned = m_devices.returned();
    m_adapter->takeCalls();
    QCOMPARE(m_manager->closeDevice(0), CAN_OK);
    QCOMPARE(m_devices.returned(), returned); // has not waited for the call
    QCOMPARE(m_adapter->takeCalls(), QStringList(QStringLiteral("VCI_CloseDevice 4 0")));
    QCOMPARE(m_manager->openDevice(1), CAN_OK);
    m_devices.release();
    QVERIFY(readsAgain(1, Rounds));
    QCOMPARE(m_lost, QVector<int>());
}

void tst_DeviceWatch::managerTellsEveryOpening()
{
    startManager();
    for (int opening = 1; opening <= 3; ++opening) {
        m_devices.script(0, "100");
        QCOMPARE(m_manager->openDevice(0), CAN_OK);
        QTRY_COMPARE(m_lost, QVector<int>(opening, 0));
        QCOMPARE(m_manager->closeDevice(0), CAN_OK);
    }
}

void tst_DeviceWatch::managerScans()
{
    startManager();
    QCOMPARE(m_manager->openDevice(0), CAN_OK);
    QVERIFY(readsAgain(0, Rounds));
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    const int before = m_devices.reads(0);
    letTicksPass(QuietTicks);
    QVERIFY(m_devices.reads(0) <= before + 1); // one may have been about to begin
    m_manager->stopScan();
    QVERIFY(readsAgain(0, Rounds));
    QCOMPARE(m_lost, QVector<int>());
}

void tst_DeviceWatch::managerEndsItFirst()
{
    std::atomic<bool> isDone{false};
    std::atomic<bool> isBusy{false};
    bool isDoneAtClose = false;
    m_devices.onRead([&] {
        if (!isBusy.exchange(true)) {
            block(1000ms);
            isDone = true;
        }
    });
    startManager();
    QCOMPARE(m_manager->openDevice(0), CAN_OK);
    QTRY_VERIFY(isBusy);
    QCOMPARE(m_manager->slot_scanCANBaudrate(1, 0), CAN_OK);
    QCOMPARE(m_manager->closeDevice(0), CAN_OK);
    QVERIFY(!isDone);
    m_adapter->onCall("VCI_CloseDevice", [&] { isDoneAtClose = isDone; });
    QElapsedTimer clock;
    clock.start();
    m_manager.reset(); // closes the device that the scan has opened
    QVERIFY(isDoneAtClose);
    QVERIFY(clock.elapsed() < StopBoundMs);
    QCOMPARE(m_devices.reads(0) + m_devices.reads(1), 1);
}

void tst_DeviceWatch::adapterPulledOut()
{
    startAdapter(R"({"devices": [{"model": "X9FC-200", "faults": {"vanish_after_ms": 500}}, {"model": "X9EC-200"}]})");
    QCOMPARE(m_manager->openDevice(0), CAN_OK);
    QCOMPARE(m_manager->openDevice(1), CAN_OK);
    QTRY_COMPARE(m_lost, QVector<int>({0}));
    const int reads = libraryReads;
    QTRY_VERIFY(libraryReads >= reads + Rounds);
    QCOMPARE(m_lost, QVector<int>({0}));
}

void tst_DeviceWatch::adapterBackAgain()
{
    startAdapter(R"({"devices": [{"model": "X9FC-200", "faults": {"vanish_after_ms": 500, "return_after_ms": 100}}]})");
    QCOMPARE(m_manager->openDevice(0), CAN_OK);
    QTRY_COMPARE(m_lost, QVector<int>({0}));
    QCOMPARE(m_manager->closeDevice(0), CAN_OK);
    QVERIFY(QTest::qWaitFor([this] { return m_manager->openDevice(0) == CAN_OK; }));
    const int answered = libraryAnswers;
    QTRY_VERIFY(libraryAnswers >= answered + Rounds);
    QCOMPARE(m_lost, QVector<int>({0}));
}

void tst_DeviceWatch::adapterRefusingTexts()
{
    startAdapter(R"({"devices": [{"model": "X9FC-200", "faults": {"info_refused": true, "vanish_after_ms": 100}}]})");
    QCOMPARE(m_manager->openDevice(0), CAN_OK);
    QTRY_VERIFY(libraryReads >= Rounds);
    quint32 state = 0;
    QTRY_COMPARE(m_manager->api().KQ_OpenCANGateWay(AdapterDeviceType, 0, AdapterGatewayQuery, &state), 0U); // gone
    const int reads = libraryReads;
    QTRY_VERIFY(libraryReads >= reads + Rounds);
    QCOMPARE(libraryAnswers.load(), 0);
    QCOMPARE(m_lost, QVector<int>());
}

X9_CORE_TEST(tst_DeviceWatch)
#include "tst_DeviceWatch.moc"
