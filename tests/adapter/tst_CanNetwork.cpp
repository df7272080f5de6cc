#include "adapter/virtual/CanNetwork.h"
#include "tests/adapter/AdapterBench.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

namespace {

constexpr std::uint64_t SecondNs = 1000000000;
constexpr std::uint64_t YearNs = std::uint64_t(365) * 86400 * SecondNs;

const va::AdapterConfig &config()
{
    static const va::AdapterConfig parsed = AdapterBench::parsed(R"({"receive_buffer_frames": 10, "buses": [
        {"name": "a", "nodes": [{"id": 1, "period_us": 1}, {"id": 2, "period_us": 1000000}]}],
        "devices": [{"model": "X9FC", "can": [{"bus": "a"}, {"bus": "a"}]}]})");
    return parsed;
}

} // namespace

/// What is not computed one by one; how the frames arrive is tested through the adapter's calls.
class tst_CanNetwork : public QObject
{
    Q_OBJECT

private slots:
    static void nothingIsComputedForNobody();
    static void nothingIsComputedForAFullBuffer();
    static void filteredNodesAreNotComputed();
    static void oneCallIsBounded();
};

void tst_CanNetwork::nothingIsComputedForNobody()
{
    va::CanNetwork network(config(), 0);
    network.catchUpAll(YearNs);
    QCOMPARE(network.computedFrames(), std::uint64_t{0});
}

void tst_CanNetwork::nothingIsComputedForAFullBuffer()
{
    va::CanNetwork network(config(), 0);
    network.init(0, AdapterBench::settings());
    network.start(0, 0);
    network.catchUp(0, YearNs);
    QCOMPARE(network.computedFrames(), std::uint64_t{10});
    QCOMPARE(network.channel(0).overflow(), YearNs / 1000 + YearNs / SecondNs - 10);
    network.catchUp(0, 2 * YearNs);
    QCOMPARE(network.computedFrames(), std::uint64_t{10});
}

void tst_CanNetwork::filteredNodesAreNotComputed()
{
    va::CanNetwork network(config(), 0);
    VCI_INIT_CONFIG settings = AdapterBench::settings();
    settings.AccCode = 2U << 21U;
    settings.AccMask = 0x001FFFFFU;
    network.init(0, settings);
    network.start(0, 0);
    network.catchUp(0, 5 * SecondNs);
    QCOMPARE(network.computedFrames(), std::uint64_t{5});
    QCOMPARE(network.channel(0).queue().size(), std::size_t{5});
}

void tst_CanNetwork::oneCallIsBounded()
{
    const va::AdapterConfig fast = AdapterBench::parsed(R"({"buses": [
        {"name": "a", "nodes": [{"id": 1, "period_us": 1, "data": "00 00"}]}],
        "devices": [{"model": "X9FC", "can": [{"bus": "a"}]}]})");
    va::CanNetwork network(fast, 0);
    VCI_INIT_CONFIG settings = AdapterBench::settings();
    settings.AccCode = 0x0000FFFFU; // the data bytes never match, the identifier always does
    settings.AccMask = 0xFFFF0000U;
    network.init(0, settings);
    network.start(0, 0);
    network.catchUp(0, YearNs);
    QCOMPARE(network.computedFrames(), va::CanNetwork::MaxFramesPerCatchUp);
}

X9_PLAIN_TEST(tst_CanNetwork)
#include "tst_CanNetwork.moc"
