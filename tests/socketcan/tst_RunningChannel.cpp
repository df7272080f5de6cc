#include "adapter/FrameRecords.h"
#include "adapter/socketcan/RunningChannel.h"
#include "tests/socketcan/CanTestFrames.h"
#include "tests/support/TestProgram.h"

#include <linux/can/error.h>

#include <QElapsedTimer>
#include <QtTest>

#include <cerrno>
#include <deque>

using namespace std::chrono_literals;
using socketcan::Batch;
using socketcan::Moment;
using socketcan::RunningChannel;

namespace {

constexpr std::uint64_t NsPerMs = 1000000;
constexpr std::uint64_t Epoch = 1700000000000 * NsPerMs; ///< of the system's clock, at the start
const Moment Start{Epoch, 5000 * NsPerMs};

Moment after(std::uint64_t ms, std::int64_t clockSetByMs = 0)
{
    const auto set = static_cast<std::uint64_t>(clockSetByMs) * NsPerMs; // wraps for setting back
    return {Epoch + ms * NsPerMs + set, Start.steadyNs + ms * NsPerMs};
}

/// Takes what is sent and answers as told.
class Port final : public socketcan::CanPort
{
public:
    explicit Port(std::shared_ptr<Port *> self)
        : m_self(std::move(self))
    {
        *m_self = this;
    }
    int descriptor() const override { return -1; }
    int read(Batch &batch) override
    {
        batch.size = 0;
        return readError;
    }
    int write(const va::CanFrame &frame) override
    {
        ++writes;
        int error = 0;
        if (!answers.empty()) {
            error = answers.front();
            answers.pop_front();
        } else {
            error = lastAnswer;
        }
        if (error == 0) {
            sent.append(textOf(frame));
        }
        return error;
    }

    int readError = EAGAIN;
    int writes = 0;
    std::deque<int> answers; ///< of the next writes
    int lastAnswer = 0;      ///< of those after them
    QList<QByteArray> sent;

private:
    std::shared_ptr<Port *> m_self;
};

struct Bench
{
    explicit Bench(RunningChannel::Settings settings = {}, std::size_t bufferFrames = 100)
        : channel(
              std::make_shared<RunningChannel>(std::move(settings), std::make_unique<Port>(self), Start, bufferFrames))
    {
    }
    Port &port() { return **self; }
    void arrive(const QByteArray &frame, const Moment &now = after(0), std::uint64_t stampNs = 0)
    {
        Batch batch;
        batch.size = 1;
        batch.arrivals[0].frame = frameOf(frame);
        batch.arrivals[0].stampNs = stampNs;
        channel->take(batch, now);
    }
    void report(std::uint32_t bits, std::uint8_t controller = 0)
    {
        Batch batch;
        batch.size = 1;
        batch.arrivals[0].isError = true;
        batch.arrivals[0].frame.id = bits;
        batch.arrivals[0].frame.data[1] = controller;
        channel->take(batch, after(0));
    }
    QList<VCI_CANFD_OBJ> received()
    {
        QList<VCI_CANFD_OBJ> frames;
        channel->receive(1000, [&frames](const va::WaitingFrame &frame) {
            VCI_CANFD_OBJ record{};
            va::writeRecord(frame, record);
            frames.append(record);
        });
        return frames;
    }
    QList<QByteArray> texts()
    {
        QList<QByteArray> list;
        for (const VCI_CANFD_OBJ &record : received()) {
            list.append(textOf(record));
        }
        return list;
    }
    bool send(const QByteArray &frame, std::chrono::milliseconds patience = RunningChannel::SendPatience)
    {
        return channel->send(frameOf(frame), std::chrono::steady_clock::now() + patience);
    }

    std::shared_ptr<Port *> self = std::make_shared<Port *>(nullptr);
    std::shared_ptr<RunningChannel> channel;
};

RunningChannel::Settings settings(bool isFd, bool listenOnly = false, va::AcceptanceFilter filter = {})
{
    RunningChannel::Settings result;
    result.isFd = isFd;
    result.listenOnly = listenOnly;
    result.filter = filter;
    return result;
}

} // namespace

class tst_RunningChannel : public QObject
{
    Q_OBJECT

private slots:
    static void timeStamps();
    static void settingTheClock();
    static void fullBufferKeepsTheOldest();
    static void systemLosses();
    static void whatIsNotReceived();
    static void dataBytesInTheFilter();
    static void reportsAreCounted();
    static void busOffWithoutRestart();
    static void waitsForRoom();
    static void givesUpWaiting();
    static void refusals();
    static void forwards();
    static void forwardsWaitForRoom();
    static void forwardsAreBounded();
    static void goneOrDown();
};

void tst_RunningChannel::timeStamps()
{
    Bench bench;
    bench.arrive("001#", after(10), Epoch + 7 * NsPerMs);
    bench.arrive("002#", after(300), Epoch + 299 * NsPerMs + 999999);
    bench.arrive("003#", after(400));                        // no stamp: now
    bench.arrive("004#", after(500), Epoch + 350 * NsPerMs); // older than one before it
    bench.arrive("005#", after(600), Epoch - 50 * NsPerMs);  // before the start
    bench.arrive("006#", after(4000000), Epoch + 4000000 * NsPerMs);
    QList<quint32> stamps;
    for (const VCI_CANFD_OBJ &frame : bench.received()) {
        stamps.append(frame.TimeStamp);
        QCOMPARE(int(frame.TimeFlag), 1);
    }
    QCOMPARE(stamps, QList<quint32>({7, 299, 400, 400, 400, 4000000}));
}

/// Setting the system's clock, on which the kernel's stamps are, by an hour in either direction moves nothing.
void tst_RunningChannel::settingTheClock()
{
    constexpr std::int64_t Hour = 3600000;
    Bench bench;
    std::uint64_t ms = 100;
    for (const std::int64_t setBy : {std::int64_t{0}, Hour, -Hour}) {
        const Moment now = after(ms, setBy);
        bench.arrive("001#", now, now.systemNs - 3 * NsPerMs);
        ms += 100;
    }
    QList<quint32> stamps;
    for (const VCI_CANFD_OBJ &frame : bench.received()) {
        stamps.append(frame.TimeStamp);
    }
    QCOMPARE(stamps, QList<quint32>({97, 197, 297}));
}

void tst_RunningChannel::fullBufferKeepsTheOldest()
{
    Bench bench({}, 2);
    for (const char *frame : {"001#", "002#", "003#", "004#"}) {
        bench.arrive(frame);
    }
    QCOMPARE(bench.channel->waiting(), std::size_t{2});
    QCOMPARE(bench.channel->counts().bufferLost, 2U);
    QCOMPARE(bench.texts(), QList<QByteArray>({"001#", "002#"}));
    bench.arrive("005#");
    QCOMPARE(bench.texts(), QList<QByteArray>({"005#"}));
    bench.arrive("006#");
    bench.channel->clear();
    QCOMPARE(bench.channel->waiting(), std::size_t{0});
}

/// The kernel's number counts from the opening of the port, and wraps.
void tst_RunningChannel::systemLosses()
{
    Bench bench;
    Batch batch;
    for (const std::uint32_t told : {5U, 5U, 9U, 0xFFFFFFFFU, 3U}) {
        batch.dropped = told;
        bench.channel->take(batch, after(1));
    }
    QCOMPARE(bench.channel->counts().systemLost, 0x100000003U);
}

void tst_RunningChannel::whatIsNotReceived()
{
    Bench classic;
    classic.arrive("001##0"); // an FD frame on a channel that was opened for classic CAN
    Batch own;
    own.size = 1;
    own.arrivals[0].isOwn = true;
    classic.channel->take(own, after(0));
    QCOMPARE(classic.channel->waiting(), std::size_t{0});
    Bench fd(settings(true));
    fd.arrive("001##011");
    fd.arrive("12345678##122");
    fd.arrive("002#R3");
    QCOMPARE(fd.texts(), QList<QByteArray>({"001##011", "12345678##122", "002#R3"}));
}

void tst_RunningChannel::dataBytesInTheFilter()
{
    Bench bench(settings(false, false, {0x00001100U, 0xFFFF00FFU})); // first byte 0x11
    // Of an extended frame these are bits 12..5 of its identifier.
    for (const char *frame : {"001#11", "001#12", "002#", "00000220#99", "00000240#11"}) {
        bench.arrive(frame);
    }
    QCOMPARE(bench.texts(), QList<QByteArray>({"001#11", "002#", "00000220#99"}));
}

void tst_RunningChannel::reportsAreCounted()
{
    Bench bench;
    bench.report(CAN_ERR_PROT);
    bench.report(CAN_ERR_BUSOFF);
    bench.report(CAN_ERR_RESTARTED);
    bench.report(CAN_ERR_CRTL, CAN_ERR_CRTL_RX_OVERFLOW);
    bench.report(CAN_ERR_CRTL, CAN_ERR_CRTL_TX_PASSIVE);
    const socketcan::ChannelCounts counts = bench.channel->counts();
    QCOMPARE(counts.errorFrames, 5U);
    QCOMPARE(counts.busOff, 1U);
    QCOMPARE(counts.restarts, 1U);
    QCOMPARE(counts.systemLost, 1U);
    QCOMPARE(bench.channel->waiting(), std::size_t{0});
}

/// Who restarts by himself is left alone.
void tst_RunningChannel::busOffWithoutRestart()
{
    for (const std::uint32_t restartMs : {0U, 100U}) {
        RunningChannel::Settings controller;
        controller.link.hasBitTiming = true;
        controller.link.restartMs = restartMs;
        Bench bench(controller);
        QVERIFY(!bench.channel->takeNeedsRestart());
        bench.report(CAN_ERR_BUSOFF);
        QCOMPARE(bench.channel->takeNeedsRestart(), restartMs == 0);
        QVERIFY(!bench.channel->takeNeedsRestart());
    }
}

void tst_RunningChannel::waitsForRoom()
{
    for (const int error : {ENOBUFS, EAGAIN}) {
        Bench bench;
        bench.port().answers = {error, error, error, 0};
        QVERIFY(bench.send("001#11", 10s));
        QCOMPARE(bench.port().writes, 4);
        QCOMPARE(bench.port().sent, QList<QByteArray>({"001#11"}));
        QCOMPARE(bench.channel->counts().refused, 0U);
    }
}

void tst_RunningChannel::givesUpWaiting()
{
    Bench bench;
    bench.port().lastAnswer = ENOBUFS;
    QElapsedTimer clock;
    clock.start();
    QVERIFY(!bench.send("001#11"));
    QVERIFY(clock.elapsed() >= 9);
    QVERIFY(bench.port().writes > 2);
    QCOMPARE(bench.channel->counts().refused, 1U);
}

void tst_RunningChannel::refusals()
{
    Bench listening(settings(true, true));
    QVERIFY(!listening.send("001#"));
    QCOMPARE(listening.port().writes, 0);
    Bench classic;
    QVERIFY(!classic.send("001##0"));
    QCOMPARE(classic.port().writes, 0);
    Bench down;
    down.port().lastAnswer = ENETDOWN;
    QVERIFY(!down.send("001#"));
    QCOMPARE(down.port().writes, 1); // waiting would not help
    QCOMPARE(down.channel->counts().refused, 1U);
}

void tst_RunningChannel::forwards()
{
    Bench from(settings(true), 1);
    Bench fd(settings(true));
    from.channel->setForwarding(fd.channel);
    from.arrive("001#11");
    from.arrive("002##1AA"); // the buffer is full: forwarded all the same
    QCOMPARE(fd.port().sent, QList<QByteArray>({"001#11", "002##1AA"}));
    va::GatewayList list;
    const std::array<std::uint32_t, 2> words = {0x003U * 8 + 1, 0x12345678U * 8 + 3};
    QVERIFY(list.set(words.data(), 2));
    from.channel->setGatewayList(list);
    for (const char *frame : {"001#", "003#", "00000003#", "12345678#R2"}) {
        from.arrive(frame);
    }
    QCOMPARE(fd.port().sent.mid(2), QList<QByteArray>({"003#", "12345678#R2"}));
    Bench classic;
    from.channel->setForwarding(classic.channel);
    from.arrive("003##0");
    from.arrive("003#44");
    QCOMPARE(classic.port().sent, QList<QByteArray>({"003#44"}));
    Bench listening(settings(true, true));
    from.channel->setForwarding(listening.channel);
    from.arrive("003#");
    QCOMPARE(listening.port().writes, 0);
    from.channel->setForwarding(nullptr);
    from.arrive("003#");
    QCOMPARE(classic.port().sent.size(), 1);
}

void tst_RunningChannel::forwardsWaitForRoom()
{
    Bench from;
    Bench to;
    from.channel->setForwarding(to.channel);
    to.port().lastAnswer = ENOBUFS;
    from.arrive("001#");
    from.arrive("002#");
    QVERIFY(!to.channel->sendForwards());
    to.port().lastAnswer = 0;
    QVERIFY(to.channel->sendForwards());
    QCOMPARE(to.port().sent, QList<QByteArray>({"001#", "002#"}));
    QCOMPARE(to.channel->counts().gatewayLost, 0U);
    to.port().answers = {ENETDOWN};
    from.arrive("003#");
    QCOMPARE(to.channel->counts().gatewayLost, 1U);
}

void tst_RunningChannel::forwardsAreBounded()
{
    Bench from;
    Bench to;
    from.channel->setForwarding(to.channel);
    to.port().lastAnswer = ENOBUFS;
    for (std::size_t i = 0; i < RunningChannel::MaxForwards + 3; ++i) {
        from.arrive("001#");
    }
    QCOMPARE(to.channel->counts().gatewayLost, 3U);
}

void tst_RunningChannel::goneOrDown()
{
    Bench bench;
    Batch batch;
    for (const int error : {EAGAIN, ENETDOWN}) {
        bench.port().readError = error;
        QVERIFY(!bench.channel->readOnce(batch));
        QVERIFY(!bench.channel->isLost());
    }
    bench.port().readError = ENODEV;
    QVERIFY(!bench.channel->readOnce(batch));
    QVERIFY(bench.channel->isLost());
}

X9_PLAIN_TEST(tst_RunningChannel)
#include "tst_RunningChannel.moc"
