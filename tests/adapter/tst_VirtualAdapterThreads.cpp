#include "tests/adapter/AdapterBench.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

#include <atomic>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <random>
#include <thread>

namespace {

constexpr std::uint32_t Type = AdapterDeviceType;
constexpr const char *Config = R"({
    "receive_buffer_frames": 5000,
    "buses": [
        {"name": "a", "data_rate": 2, "nodes": [{"id": 1, "period_us": 50}, {"id": 2, "request_id": "0x20"},
                                                {"id": 3, "period_us": 70, "format": "fd", "length": 64}]},
        {"name": "b", "data_rate": 2, "nodes": [{"id": 4, "period_us": 60, "payload": "random"}]}],
    "lin_buses": [{"name": "l", "slaves": [{"id": 1, "data": "01"}], "traffic": [{"id": 1, "period_ms": 1}]}],
    "devices": [
        {"model": "X9FC", "can": [{"bus": "a"}, {"bus": "b"}], "lin": [{"bus": "l"}, {"bus": "l"}],
         "faults": {"call_delay_ms": {"KQ_ReadInfo": 1}}},
        {"model": "X9FC", "can": [{"bus": "b"}, {"bus": "a"}], "lin": [{"bus": "l"}, {"bus": "l"}],
         "faults": {"vanish_after_ms": 30, "return_after_ms": 30}}]})";

/// A clock whose sleep lasts until the test ends it.
class GateClock final : public va::AdapterClock
{
public:
    std::uint64_t nowNs() override { return ++m_nowNs; }
    void sleepMs(std::uint32_t /*milliseconds*/) override
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_asleep = true;
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return m_isOpen; });
    }
    void waitForSleeper()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_changed.wait(lock, [this] { return m_asleep; });
    }
    void open()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isOpen = true;
        m_changed.notify_all();
    }

private:
    std::atomic<std::uint64_t> m_nowNs{0};
    std::mutex m_mutex; ///< guards the two flags
    std::condition_variable m_changed;
    bool m_asleep = false;
    bool m_isOpen = false;
};

/// One random call; answers its result so that nothing can be left out.
std::uint32_t randomCall(va::VirtualAdapter &adapter, std::mt19937 &random)
{
    std::array<VCI_CAN_OBJ, 100> frames{};
    std::array<VCI_CANFD_OBJ, 100> fdFrames{};
    std::array<std::array<char, AdapterInfoSize>, 4> info{};
    std::array<std::uint32_t, AdapterGatewayMaxIds> words{};
    std::uint32_t word = 0;
    VCI_LIN_OBJ lin{};
    lin.ID = 1;
    const auto dev = static_cast<std::uint8_t>(random() % 3);
    const auto ch = static_cast<std::uint8_t>(random() % 3);
    const VCI_INIT_CONFIG config = AdapterBench::settings(random() % 2 == 0 ? 0 : 2);
    frames[0] = classicFrame(0x20);
    fdFrames[0] = fdFrame(0x20, 64, 2);
    switch (random() % 24) {
    case 0:
        return adapter.closeDevice(Type, dev);
    case 1:
    case 2:
        return adapter.openDevice(Type, dev);
    case 3:
        return adapter.readInfo(Type, dev, info[0].data(), info[1].data(), info[2].data(), info[3].data());
    case 4:
    case 5:
        return adapter.initCan(Type, dev, ch, &config);
    case 6:
    case 7:
        return adapter.startCan(Type, dev, ch);
    case 8:
        return adapter.resetCan(Type, dev, ch);
    case 9:
        return adapter.clearBuffer(Type, dev, ch);
    case 10:
        return adapter.receiveNum(Type, dev, ch) + adapter.receiveNum<VCI_CANFD_OBJ>(Type, dev, ch);
    case 11:
        return adapter.transmit(Type, dev, ch, frames.data(), 1);
    case 12:
        return adapter.transmit(Type, dev, ch, fdFrames.data(), 1);
    case 13:
    case 14:
        return adapter.receive(Type, dev, ch, frames.data(), 100);
    case 15:
        return adapter.receive(Type, dev, ch, fdFrames.data(), 100);
    case 16:
        return adapter.switchGateway(Type, dev, random() % 3 == 0 ? AdapterGatewayOff : AdapterGatewayOn, &word);
    case 17:
        return adapter.setGatewayFilter(Type, dev, ch, words.data(), random() % 2);
    case 18:
        return adapter.gatewayFilter(Type, dev, ch, words.data(), &word);
    case 19:
        return adapter.openLin(Type, dev, ch, 19200, 0) + adapter.closeLin(Type, dev, ch);
    case 20:
        return adapter.openLin(Type, dev, ch, 19200, 1) + adapter.changeLinMode(Type, dev, ch, 3);
    case 21:
        return adapter.transmitLin(Type, dev, ch, lin) + adapter.transmitLinBySlave(Type, dev, ch, lin);
    case 22:
        return adapter.receiveLin(Type, dev, ch, &lin);
    default:
        return adapter.receiveLinBySlave(Type, dev, ch, &lin) + adapter.overflowNum(Type, dev, ch);
    }
}

} // namespace

class tst_VirtualAdapterThreads : public QObject
{
    Q_OBJECT

private slots:
    static void randomCallsFromManyThreads();
    static void readersAndSendersLoseNothing();
    static void aSlowCallHoldsUpNobody();
};

void tst_VirtualAdapterThreads::randomCallsFromManyThreads()
{
    va::SteadyClock clock;
    va::VirtualAdapter adapter(AdapterBench::parsed(Config), clock);
    std::atomic<std::uint64_t> succeeded{0};
    std::vector<std::thread> threads;
    for (unsigned seed = 1; seed <= 4; ++seed) {
        threads.emplace_back([&adapter, &succeeded, seed] {
            std::mt19937 random(seed);
            for (int i = 0; i < 5000; ++i) {
                succeeded += randomCall(adapter, random) > 0 ? 1 : 0;
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    QVERIFY(succeeded > 1000);
}

void tst_VirtualAdapterThreads::readersAndSendersLoseNothing()
{
    constexpr std::uint32_t count = 20000;
    va::SteadyClock clock;
    va::VirtualAdapter adapter(AdapterBench::parsed(R"({"buses": [{"name": "a"}],
        "devices": [{"model": "X9FC", "can": [{"bus": "a"}, {"bus": "a"}]}]})"),
                               clock);
    const VCI_INIT_CONFIG config = AdapterBench::settings();
    adapter.openDevice(Type, 0);
    for (const std::uint8_t ch : {std::uint8_t{0}, std::uint8_t{1}}) {
        adapter.initCan(Type, 0, ch, &config);
        adapter.startCan(Type, 0, ch);
    }
    std::thread sender([&adapter] {
        for (std::uint32_t i = 0; i < count; ++i) {
            VCI_CAN_OBJ frame = classicFrame(i & 0x7FFU, 4);
            std::memcpy(frame.Data, &i, sizeof i);
            adapter.transmit(Type, 0, 0, &frame, 1);
        }
    });
    std::uint32_t received = 0;
    bool inOrder = true;
    std::array<VCI_CAN_OBJ, 64> frames{};
    while (received < count) {
        const std::uint32_t n = adapter.receive(Type, 0, 1, frames.data(), frames.size());
        for (std::uint32_t i = 0; i < n; ++i) {
            inOrder = inOrder && counterOf(frames[i]) == received++;
        }
    }
    sender.join();
    QVERIFY(inOrder);
    QCOMPARE(adapter.overflowNum(Type, 0, 1), 0U);
}

void tst_VirtualAdapterThreads::aSlowCallHoldsUpNobody()
{
    GateClock clock;
    va::VirtualAdapter adapter(AdapterBench::parsed(Config), clock);
    adapter.openDevice(Type, 0);
    std::uint32_t answer = 0;
    std::thread slow([&adapter, &answer] {
        std::array<std::array<char, AdapterInfoSize>, 4> info{};
        answer = adapter.readInfo(Type, 0, info[0].data(), info[1].data(), info[2].data(), info[3].data());
    });
    clock.waitForSleeper();
    // These would never return if the sleeping call held the lock.
    const VCI_INIT_CONFIG config = AdapterBench::settings();
    QCOMPARE(adapter.initCan(Type, 0, 0, &config), 1U);
    QCOMPARE(adapter.openDevice(Type, 1), 1U);
    clock.open();
    slow.join();
    QCOMPARE(answer, 1U);
}

X9_PLAIN_TEST(tst_VirtualAdapterThreads)
#include "tst_VirtualAdapterThreads.moc"
