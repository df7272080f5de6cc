#include "device/CANReadHandle.h"
#include "tests/support/ScriptedAdapter.h"
#include "tests/support/TestProgram.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QThread>
#include <QtTest>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>

using namespace std::chrono_literals;

namespace {

constexpr int PeriodMs = 2; ///< between two polls, where it does not matter

using Frames = QVector<VCI_CAN_OBJ>;
using FramesCANFD = QVector<VCI_CANFD_OBJ>;

template<class Frame>
QVector<quint32> idsOf(const QVector<Frame> &frames)
{
    QVector<quint32> ids;
    for (const Frame &frame : frames) {
        ids.append(frame.ID);
    }
    return ids;
}

template<class Frame>
bool isZeroed(const Frame &frame)
{
    const QByteArray bytes(reinterpret_cast<const char *>(&frame), sizeof frame);
    return bytes == QByteArray(sizeof frame, '\0');
}

enum class Sign { None, InCan, InCanFD, Elsewhere }; ///< of life

namespace FailingReceive {
VCI_CAN_OBJ *written = nullptr;
int calls = 0;

/// Writes over the records and fails the first time, leaves them alone and succeeds from then on.
quint32 X9_ADAPTER_CALL receive(quint32, quint8, quint8, VCI_CAN_OBJ *frames, quint32 capacity, qint32)
{
    if (++calls == 1) {
        written = frames;
        std::fill_n(reinterpret_cast<char *>(frames), capacity * sizeof *frames, '\x7F');
        return AdapterReceiveError;
    }
    return capacity;
}
} // namespace FailingReceive

} // namespace

Q_DECLARE_METATYPE(Sign)

/// The loop runs on the test's own thread: the scripted adapter sets the flags from inside the calls, so that every
/// poll and every signal comes in a fixed order.
class tst_CANReadHandle : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void channelsArePolledInOrder();
    static void onlyFlaggedChannelsArePolled_data();
    void onlyFlaggedChannelsArePolled();
    void channelsAboveOneCountAsOne();
    void setFlagReadClearsTheChannels();
    void nothingWaitingNothingReceived();
    void batchHoldsAllThatWaits();
    void batchOfCANFD();
    void fewerThanAnnounced();
    static void failedReceive_data();
    void failedReceive();
    void recordsLeftFromAFailedReceiveAreZeroed();
    void emittedBatchIsNotWrittenAgain();
    static void failedCountReadsNothing_data();
    void failedCountReadsNothing();
    void absurdCountIsBounded();
    static void missingEntriesAreNotPolled_data();
    void missingEntriesAreNotPolled();
    void pausesBetweenPolls();
    void asksBetweenPolls();
    static void asksASilentDevice_data();
    void asksASilentDevice();
    static void tellsALostDeviceOnce_data();
    void tellsALostDeviceOnce();
    void idleLoopKeepsWaking();
    void startsByNameOnItsThread();
    void returnsAtOnceWhenNotToRead();

private:
    void startOnThread();
    void stopThread();
    /// Runs the loop for some polls of an entry; polled(n) runs inside the nth, counting from 1.
    void run(const char *entry, int polls, const std::function<void(int)> &polled = {});

    std::unique_ptr<ScriptedAdapter> m_adapter;
    std::unique_ptr<CANAPI> m_api;
    std::unique_ptr<CANReadHandle> m_reader;
    std::shared_ptr<std::atomic<bool>> m_isScanning = std::make_shared<std::atomic<bool>>(false);
    QThread m_thread;
};

void tst_CANReadHandle::init()
{
    qRegisterMetaType<Frames>("QVector<VCI_CAN_OBJ>");
    qRegisterMetaType<FramesCANFD>("QVector<VCI_CANFD_OBJ>");
    qRegisterMetaType<CANAPI *>("CANAPI*");
    m_adapter = std::make_unique<ScriptedAdapter>();
    m_api = m_adapter->table();
    m_reader = std::make_unique<CANReadHandle>(PeriodMs);
    m_reader->setFlagRead(true);
    *m_isScanning = false;
}

void tst_CANReadHandle::cleanup()
{
    stopThread();
    m_reader.reset();
    m_api.reset();
    m_adapter.reset();
}

void tst_CANReadHandle::run(const char *entry, int polls, const std::function<void(int)> &polled)
{
    int count = 0;
    m_adapter->onCall(entry, [this, &count, &polls, &polled] {
        ++count;
        if (polled) {
            polled(count);
        }
        if (count == polls) {
            m_reader->setFlagRead(false);
        }
    });
    m_reader->readHandle(3, m_api.get());
    QCOMPARE(count, polls);
}

void tst_CANReadHandle::channelsArePolledInOrder()
{
    for (const quint8 channel : {quint8(0), quint8(1)}) {
        m_reader->setFlagCAN(channel, true);
        m_reader->setFlagCANFD(channel, true);
    }
    // A stop takes the channel flags with it: the fifth CAN FD poll, the first of the third round, is the last call.
    run("KQ_GetReceiveNumCANFD", 5);
    const QStringList round{QStringLiteral("VCI_GetReceiveNum 4 3 0"), QStringLiteral("VCI_GetReceiveNum 4 3 1"),
                            QStringLiteral("KQ_GetReceiveNumCANFD 4 3 0"),
                            QStringLiteral("KQ_GetReceiveNumCANFD 4 3 1")};
    QCOMPARE(m_adapter->takePolls(), round + round + round.mid(0, 3));
}

void tst_CANReadHandle::onlyFlaggedChannelsArePolled_data()
{
    QTest::addColumn<bool>("isCANFD");
    QTest::addColumn<int>("channel");
    QTest::addColumn<QByteArray>("entry");
    QTest::newRow("CAN 0") << false << 0 << QByteArray("VCI_GetReceiveNum");
    QTest::newRow("CAN 1") << false << 1 << QByteArray("VCI_GetReceiveNum");
    QTest::newRow("CAN FD 0") << true << 0 << QByteArray("KQ_GetReceiveNumCANFD");
    QTest::newRow("CAN FD 1") << true << 1 << QByteArray("KQ_GetReceiveNumCANFD");
}

void tst_CANReadHandle::onlyFlaggedChannelsArePolled()
{
    QFETCH(bool, isCANFD);
    QFETCH(int, channel);
    QFETCH(QByteArray, entry);
    if (isCANFD) {
        m_reader->setFlagCANFD(quint8(channel), true);
    } else {
        m_reader->setFlagCAN(quint8(channel), true);
    }
    run(entry.constData(), 2);
    const QString poll = QStringLiteral("%1 4 3 %2").arg(QString::fromLatin1(entry)).arg(channel);
    QCOMPARE(m_adapter->takePolls(), QStringList({poll, poll}));
}

void tst_CANReadHandle::channelsAboveOneCountAsOne()
{
    m_reader->setFlagCAN(200, true);
    m_reader->setFlagCANFD(2, true);
    run("KQ_GetReceiveNumCANFD", 1);
    QCOMPARE(m_adapter->takePolls(),
             QStringList({QStringLiteral("VCI_GetReceiveNum 4 3 1"), QStringLiteral("KQ_GetReceiveNumCANFD 4 3 1")}));
}

void tst_CANReadHandle::setFlagReadClearsTheChannels()
{
    for (const quint8 channel : {quint8(0), quint8(1)}) {
        m_reader->setFlagCAN(channel, true);
        m_reader->setFlagCANFD(channel, true);
    }
    m_reader->setFlagRead(true);
    m_reader->setFlagCAN(1, true);
    run("VCI_GetReceiveNum", 1);
    QCOMPARE(m_adapter->takePolls(), QStringList({QStringLiteral("VCI_GetReceiveNum 4 3 1")}));
}

void tst_CANReadHandle::nothingWaitingNothingReceived()
{
    QSignalSpy batches(m_reader.get(), &CANReadHandle::sig_readResultCallback);
    m_reader->setFlagCAN(0, true);
    run("VCI_GetReceiveNum", 2);
    QCOMPARE(batches.count(), 0);
    QCOMPARE(m_adapter->takePolls().filter(QStringLiteral("VCI_Receive")), QStringList());
}

void tst_CANReadHandle::batchHoldsAllThatWaits()
{
    QSignalSpy batches(m_reader.get(), &CANReadHandle::sig_readResultCallback);
    m_reader->setFlagCAN(1, true);
    m_adapter->announce(false, 1, 5, 5);
    run("VCI_GetReceiveNum", 2, [this](int poll) {
        if (poll == 2) {
            m_adapter->announce(false, 1, 2, 2);
        }
    });
    QCOMPARE(m_adapter->takePolls(),
             QStringList({QStringLiteral("VCI_GetReceiveNum 4 3 1"), QStringLiteral("VCI_Receive 4 3 1 5 3000"),
                          QStringLiteral("VCI_GetReceiveNum 4 3 1"), QStringLiteral("VCI_Receive 4 3 1 2 3000")}));
    QCOMPARE(batches.count(), 2);
    QCOMPARE(batches[0][0].value<quint8>(), quint8(3));
    QCOMPARE(batches[0][1].value<quint8>(), quint8(1));
    QCOMPARE(idsOf(batches[0][2].value<Frames>()), QVector<quint32>({1, 2, 3, 4, 5}));
    QCOMPARE(idsOf(batches[1][2].value<Frames>()), QVector<quint32>({6, 7}));
}

void tst_CANReadHandle::batchOfCANFD()
{
    QSignalSpy batches(m_reader.get(), &CANReadHandle::sig_readResultCallbackCANFD);
    QSignalSpy classic(m_reader.get(), &CANReadHandle::sig_readResultCallback);
    m_reader->setFlagCANFD(0, true);
    m_adapter->announce(true, 0, 3, 3);
    run("KQ_GetReceiveNumCANFD", 1);
    QCOMPARE(m_adapter->takePolls(), QStringList({QStringLiteral("KQ_GetReceiveNumCANFD 4 3 0"),
                                                  QStringLiteral("KQ_ReceiveCANFD 4 3 0 3 3000")}));
    QCOMPARE(batches.count(), 1);
    QCOMPARE(batches[0][0].value<quint8>(), quint8(3));
    QCOMPARE(batches[0][1].value<quint8>(), quint8(0));
    QCOMPARE(idsOf(batches[0][2].value<FramesCANFD>()), QVector<quint32>({1, 2, 3}));
    QCOMPARE(classic.count(), 0);
}

void tst_CANReadHandle::fewerThanAnnounced()
{
    QSignalSpy batches(m_reader.get(), &CANReadHandle::sig_readResultCallback);
    m_reader->setFlagCAN(0, true);
    m_adapter->announce(false, 0, 4, 1);
    run("VCI_GetReceiveNum", 1);
    QCOMPARE(batches.count(), 1);
    const auto frames = batches[0][2].value<Frames>();
    QCOMPARE(idsOf(frames), QVector<quint32>({1, 0, 0, 0}));
    QVERIFY(isZeroed(frames[1]) && isZeroed(frames[2]) && isZeroed(frames[3]));
}

void tst_CANReadHandle::failedReceive_data()
{
    QTest::addColumn<bool>("isCANFD");
    QTest::addColumn<quint32>("result");
    QTest::newRow("CAN, none") << false << 0U;
    QTest::newRow("CAN, error") << false << 0xFFFFFFFFU;
    QTest::newRow("CAN FD, none") << true << 0U;
    QTest::newRow("CAN FD, error") << true << 0xFFFFFFFFU;
}

void tst_CANReadHandle::failedReceive()
{
    QFETCH(bool, isCANFD);
    QFETCH(quint32, result);
    QSignalSpy batches(m_reader.get(), &CANReadHandle::sig_readResultCallback);
    QSignalSpy batchesCANFD(m_reader.get(), &CANReadHandle::sig_readResultCallbackCANFD);
    QSignalSpy failures(m_reader.get(), &CANReadHandle::sig_readFailed);
    m_reader->setFlagCAN(0, !isCANFD);
    m_reader->setFlagCANFD(0, isCANFD);
    m_adapter->announce(isCANFD, 0, 4, result);
    // The loop goes on, and what comes later is handed over.
    run(isCANFD ? "KQ_GetReceiveNumCANFD" : "VCI_GetReceiveNum", 2, [this, isCANFD](int poll) {
        if (poll == 2) {
            m_adapter->announce(isCANFD, 0, 1, 1);
        }
    });
    QCOMPARE(batches.count(), isCANFD ? 0 : 1);
    QCOMPARE(batchesCANFD.count(), isCANFD ? 1 : 0);
    QCOMPARE(failures.count(), result == 0 ? 0 : 1);
    if (!failures.isEmpty()) {
        QCOMPARE(failures[0], (QVariantList{QVariant::fromValue(quint8(3)), QVariant::fromValue(quint8(0))}));
    }
}

void tst_CANReadHandle::recordsLeftFromAFailedReceiveAreZeroed()
{
    QSignalSpy batches(m_reader.get(), &CANReadHandle::sig_readResultCallback);
    m_reader->setFlagCAN(0, true);
    FailingReceive::calls = 0;
    FailingReceive::written = nullptr;
    m_api->VCI_Receive = FailingReceive::receive;
    m_adapter->announce(false, 0, 3, 3);
    run("VCI_GetReceiveNum", 2);
    QVERIFY(FailingReceive::written != nullptr);
    QCOMPARE(batches.count(), 1);
    for (const VCI_CAN_OBJ &frame : batches[0][2].value<Frames>()) {
        QVERIFY(isZeroed(frame));
    }
}

void tst_CANReadHandle::emittedBatchIsNotWrittenAgain()
{
    QVector<Frames> kept;
    connect(m_reader.get(), &CANReadHandle::sig_readResultCallback,
            [&kept](quint8, quint8, const Frames &frames) { kept.append(frames); });
    m_reader->setFlagCAN(0, true);
    m_adapter->announce(false, 0, 3, 3);
    run("VCI_GetReceiveNum", 2, [this](int poll) {
        if (poll == 2) {
            m_adapter->announce(false, 0, 3, 3);
        }
    });
    QCOMPARE(kept.size(), 2);
    QCOMPARE(idsOf(kept[0]), QVector<quint32>({1, 2, 3}));
    QCOMPARE(idsOf(kept[1]), QVector<quint32>({4, 5, 6}));
}

void tst_CANReadHandle::failedCountReadsNothing_data()
{
    QTest::addColumn<bool>("isCANFD");
    QTest::newRow("CAN") << false;
    QTest::newRow("CAN FD") << true;
}

/// The library's error value is no number of frames.
void tst_CANReadHandle::failedCountReadsNothing()
{
    QFETCH(bool, isCANFD);
    QVector<int> batches;
    connect(m_reader.get(), &CANReadHandle::sig_readResultCallback,
            [&batches](quint8, quint8, const Frames &frames) { batches.append(frames.size()); });
    connect(m_reader.get(), &CANReadHandle::sig_readResultCallbackCANFD,
            [&batches](quint8, quint8, const FramesCANFD &frames) { batches.append(frames.size()); });
    const char *const counting = isCANFD ? "KQ_GetReceiveNumCANFD" : "VCI_GetReceiveNum";
    m_reader->setFlagCAN(0, !isCANFD);
    m_reader->setFlagCANFD(0, isCANFD);
    m_adapter->announce(isCANFD, 0, 0xFFFFFFFFU, 7);
    // The loop goes on, and what comes later is handed over.
    run(counting, 3, [this, isCANFD](int poll) {
        if (poll == 3) {
            m_adapter->announce(isCANFD, 0, 2, 2);
        }
    });
    const QString count = QLatin1String(counting) + QStringLiteral(" 4 3 0");
    const QString receive =
        QLatin1String(isCANFD ? "KQ_ReceiveCANFD" : "VCI_Receive") + QStringLiteral(" 4 3 0 2 3000");
    QCOMPARE(m_adapter->takePolls(), QStringList({count, count, count, receive}));
    QCOMPARE(batches, QVector<int>({2}));
}

void tst_CANReadHandle::absurdCountIsBounded()
{
    int frames = 0;
    connect(m_reader.get(), &CANReadHandle::sig_readResultCallbackCANFD,
            [&frames](quint8, quint8, const FramesCANFD &batch) { frames += batch.size(); });
    m_reader->setFlagCANFD(1, true);
    m_adapter->announce(true, 1, 0xFFFFFFFEU, 7);
    // The rest is asked for at the next poll.
    run("KQ_GetReceiveNumCANFD", 2, [this](int poll) {
        if (poll == 2) {
            m_adapter->announce(true, 1, 5, 5);
        }
    });
    QCOMPARE(m_adapter->takePolls(),
             QStringList(
                 {QStringLiteral("KQ_GetReceiveNumCANFD 4 3 1"), QStringLiteral("KQ_ReceiveCANFD 4 3 1 1000000 3000"),
                  QStringLiteral("KQ_GetReceiveNumCANFD 4 3 1"), QStringLiteral("KQ_ReceiveCANFD 4 3 1 5 3000")}));
    QCOMPARE(frames, 1'000'005);
}

void tst_CANReadHandle::missingEntriesAreNotPolled_data()
{
    QTest::addColumn<QString>("missing");
    QTest::addColumn<bool>("isCANFD");
    QTest::newRow("count") << QStringLiteral("VCI_GetReceiveNum") << false;
    QTest::newRow("receive") << QStringLiteral("VCI_Receive") << false;
    QTest::newRow("count of CAN FD") << QStringLiteral("KQ_GetReceiveNumCANFD") << true;
    QTest::newRow("receive of CAN FD") << QStringLiteral("KQ_ReceiveCANFD") << true;
}

void tst_CANReadHandle::missingEntriesAreNotPolled()
{
    QFETCH(QString, missing);
    QFETCH(bool, isCANFD);
    m_api = m_adapter->table({missing});
    m_reader->setFlagCAN(0, true);
    m_reader->setFlagCANFD(0, true);
    // The other protocol's channel is still polled and ends the run.
    const QByteArray other = isCANFD ? "VCI_GetReceiveNum" : "KQ_GetReceiveNumCANFD";
    run(other.constData(), 2);
    const QString poll = QString::fromLatin1(other) + QStringLiteral(" 4 3 0");
    QCOMPARE(m_adapter->takePolls(), QStringList({poll, poll}));
}

void tst_CANReadHandle::pausesBetweenPolls()
{
    QCOMPARE(CANReadHandle::PollPeriodMs, 250);
    m_reader = std::make_unique<CANReadHandle>();
    m_reader->setFlagRead(true);
    m_reader->setFlagCAN(0, true);
    QElapsedTimer clock;
    clock.start();
    run("VCI_GetReceiveNum", 2);
    QVERIFY(clock.elapsed() >= CANReadHandle::PollPeriodMs);
}

/// Once for all channels, and not when the polling is to end.
void tst_CANReadHandle::asksBetweenPolls()
{
    QStringList order;
    const auto note = [this, &order](const char *entry, const char *text) {
        m_adapter->onCall(entry, [&order, text] { order.append(QLatin1String(text)); });
    };
    note("KQ_ReadInfo", "ask");
    note("VCI_GetReceiveNum", "CAN");
    m_reader->watchDevice(m_isScanning, 0ms);
    m_reader->setFlagCAN(0, true);
    m_reader->setFlagCANFD(1, true);
    run("KQ_GetReceiveNumCANFD", 3, [&order](int) { order.append(QStringLiteral("FD")); });
    QCOMPARE(order.join(QLatin1Char(' ')), QStringLiteral("CAN FD ask CAN FD ask CAN FD"));
    QCOMPARE(m_adapter->takeCalls(),
             QStringList({QStringLiteral("KQ_ReadInfo 4 3"), QStringLiteral("KQ_ReadInfo 4 3")}));
}

void tst_CANReadHandle::asksASilentDevice_data()
{
    QTest::addColumn<bool>("isWatched");
    QTest::addColumn<bool>("isScanning");
    QTest::addColumn<Sign>("sign");
    QTest::addColumn<bool>("isAsked");
    QTest::newRow("silent") << true << false << Sign::None << true;
    QTest::newRow("not watched") << false << false << Sign::None << false;
    QTest::newRow("while a scan runs") << true << true << Sign::None << false;
    QTest::newRow("with frames") << true << false << Sign::InCan << false;
    QTest::newRow("with CAN FD frames") << true << false << Sign::InCanFD << false;
    QTest::newRow("with frames received elsewhere") << true << false << Sign::Elsewhere << false;
}

/// A sign of life comes with every poll or never.
void tst_CANReadHandle::asksASilentDevice()
{
    QFETCH(bool, isWatched);
    QFETCH(bool, isScanning);
    QFETCH(Sign, sign);
    QFETCH(bool, isAsked);
    const auto giveSign = [this, sign](int /*poll*/) {
        m_adapter->announce(false, 0, sign == Sign::InCan ? 1 : 0, 1);
        m_adapter->announce(true, 1, sign == Sign::InCanFD ? 1 : 0, 1);
        if (sign == Sign::Elsewhere) {
            m_reader->noteFrame();
        }
    };
    if (isWatched) {
        m_reader->watchDevice(m_isScanning, 1ms);
    }
    *m_isScanning = isScanning;
    m_reader->setFlagCAN(0, true);
    m_reader->setFlagCANFD(1, true);
    giveSign(0);
    run("VCI_GetReceiveNum", 6, giveSign);
    QCOMPARE(m_adapter->takeCalls().contains(QStringLiteral("KQ_ReadInfo 4 3")), isAsked);
}

void tst_CANReadHandle::tellsALostDeviceOnce_data()
{
    QTest::addColumn<bool>("isKnown");
    QTest::addColumn<int>("answers");
    QTest::addColumn<int>("asked");
    QTest::addColumn<int>("told");
    QTest::newRow("known to answer") << true << 0 << 2 << 1;
    QTest::newRow("answered before") << false << 2 << 4 << 1;
    QTest::newRow("never answers") << false << 0 << 7 << 0;
}

/// A device that stops to answer after some calls, polled eight times.
void tst_CANReadHandle::tellsALostDeviceOnce()
{
    QFETCH(bool, isKnown);
    QFETCH(int, answers);
    QSignalSpy lost(m_reader.get(), &CANReadHandle::sig_deviceLost);
    int asked = 0;
    m_adapter->onCall("KQ_ReadInfo", [&] { m_adapter->answer("KQ_ReadInfo", ++asked < answers ? 1 : 0); });
    m_adapter->answer("KQ_ReadInfo", answers > 0 ? 1 : 0);
    m_reader->watchDevice(m_isScanning, 0ms);
    if (isKnown) {
        m_reader->noteTexts();
    }
    m_reader->setFlagCAN(0, true);
    run("VCI_GetReceiveNum", 8);
    QTEST(asked, "asked");
    QTEST(lost.count(), "told");
    QVERIFY(lost.isEmpty() || lost.first().first().value<quint8>() == 3);
}

void tst_CANReadHandle::stopThread()
{
    m_reader->setFlagRead(false);
    m_thread.quit();
    m_thread.wait();
}

void tst_CANReadHandle::startOnThread()
{
    m_reader->moveToThread(&m_thread);
    QVERIFY(QMetaObject::invokeMethod(m_reader.get(), "readHandle", Qt::QueuedConnection, Q_ARG(quint8, 3),
                                      Q_ARG(CANAPI *, m_api.get())));
    m_thread.start();
}

void tst_CANReadHandle::idleLoopKeepsWaking()
{
    // A second worker with a channel to poll counts the periods that the idle one spends.
    CANReadHandle counting(PeriodMs);
    QThread countingThread;
    counting.moveToThread(&countingThread);
    counting.setFlagRead(true);
    counting.setFlagCAN(1, true);
    QMetaObject::invokeMethod(&counting, "readHandle", Qt::QueuedConnection, Q_ARG(quint8, 5),
                              Q_ARG(CANAPI *, m_api.get()));
    startOnThread();
    countingThread.start();

    QStringList polls;
    const auto periods = [this, &polls](const char *entry) {
        polls += m_adapter->takePolls();
        return polls.count(QString::fromLatin1(entry));
    };
    QTRY_VERIFY(periods("VCI_GetReceiveNum 4 5 1") >= 4);
    const int idlePolls = polls.size() - polls.count(QStringLiteral("VCI_GetReceiveNum 4 5 1"));
    // Nothing was polled, and the loop is alive all the same: it sees a flag that comes now.
    m_reader->setFlagCAN(0, true);
    const bool isAlive = QTest::qWaitFor([&periods] { return periods("VCI_GetReceiveNum 4 3 0") > 0; });

    counting.setFlagRead(false);
    countingThread.quit();
    countingThread.wait();
    stopThread();
    QCOMPARE(idlePolls, 0);
    QVERIFY(isAlive);
}

void tst_CANReadHandle::startsByNameOnItsThread()
{
    std::atomic<QThread *> caller{nullptr};
    m_adapter->onCall("VCI_GetReceiveNum", [&caller] { caller = QThread::currentThread(); });
    m_reader->setFlagCAN(0, true);
    startOnThread();
    QTRY_COMPARE(caller.load(), &m_thread);
    stopThread();
}

void tst_CANReadHandle::returnsAtOnceWhenNotToRead()
{
    m_reader->setFlagRead(false);
    m_reader->setFlagCAN(0, true);
    m_reader->readHandle(3, m_api.get());
    QCOMPARE(m_adapter->takePolls(), QStringList());
    m_reader->setFlagRead(true);
    m_reader->readHandle(3, nullptr);
    QCOMPARE(m_adapter->takePolls(), QStringList());
}

X9_CORE_TEST(tst_CANReadHandle)
#include "tst_CANReadHandle.moc"
