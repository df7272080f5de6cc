// How many frames per second the adapter libraries hand to a caller that only reads: they must never be what limits the
// program. Of the virtual one: more nodes on one bus than can be served, read 2,500 frames at a time. Of the SocketCAN
// one: a sender that never waits.

#include "bench/bench_adapter_interfaces.h"
#include "bench/BenchReport.h"
#include "bench/ProcessFigures.h"

#include "device/CANAPI.h"
#include "tests/support/AdapterFolder.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QVector>

#include <cstdio>

namespace {

constexpr int Nodes = 20; ///< a frame every microsecond each: more than can be made, so that making them is the limit
constexpr quint32 BatchSize = 2500;
constexpr double MinimumPerSecond = 1.0; ///< million

QByteArray adapterJson(bool isCANFD)
{
    QByteArray nodes;
    for (int node = 1; node <= Nodes; ++node) {
        nodes += QByteArray(node == 1 ? "" : ",") + R"({"id": )" + QByteArray::number(node) +
                 R"(, "period_us": 1, "payload": "counting", )" +
                 (isCANFD ? R"("format": "fd-brs", "length": 64})" : R"("length": 8})");
    }
    return R"({"buses": [{"name": "b", "data_rate": 3, "nodes": [)" + nodes +
           R"(]}], "devices": [{"model": "X9FC", "can": [{"bus": "b"}]}]})";
}

bool start(const CANAPI &api, bool isCANFD)
{
    VCI_INIT_CONFIG config{};
    config.AccMask = 0xFFFFFFFF;
    config.Timing1 = 0x1C;
    config.Mode = static_cast<quint8>(AdapterModeAlways | (isCANFD ? 3U : 0U) << AdapterModeDataRateShift);
    return api.state() == AdapterLibraryState::Loaded && api.VCI_OpenDevice(AdapterDeviceType, 0, 0) == 1 &&
           api.VCI_InitCAN(AdapterDeviceType, 0, 0, &config) == 1 && api.VCI_StartCAN(AdapterDeviceType, 0, 0) == 1;
}

/// Million frames per second of CPU time; negative when the channel cannot be started.
template<class Frame, class Receive>
double measure(bool isCANFD, Receive receiveOf, int seconds)
{
    const AdapterFolder folder(adapterJson(isCANFD));
    const CANAPI api(QStringLiteral(X9_VIRTUAL_ADAPTER));
    if (!start(api, isCANFD)) {
        return -1;
    }
    QVector<Frame> frames(static_cast<int>(BatchSize));
    QElapsedTimer clock;
    clock.start();
    const double before = cpuSeconds();
    quint64 count = 0;
    while (clock.elapsed() < qint64(seconds) * 1000) {
        const quint32 read = receiveOf(api)(AdapterDeviceType, 0, 0, frames.data(), BatchSize, AdapterReceiveWaitMs);
        count += read == AdapterReceiveError ? 0 : read;
    }
    const double used = cpuSeconds() - before;
    api.VCI_CloseDevice(AdapterDeviceType, 0);
    return static_cast<double>(count) / used / 1e6;
}

void addVirtualFigures(BenchReport &report, int seconds)
{
    report.add(QStringLiteral("virtual adapter, read only, 8-byte frames"),
               measure<VCI_CAN_OBJ>(
                   false, [](const CANAPI &api) { return api.VCI_Receive; }, seconds),
               QStringLiteral("Mframes/s CPU"), BenchReport::Target::AtLeast, MinimumPerSecond);
    report.add(QStringLiteral("virtual adapter, read only, 64-byte FD frames"),
               measure<VCI_CANFD_OBJ>(
                   true, [](const CANAPI &api) { return api.KQ_ReceiveCANFD; }, seconds),
               QStringLiteral("Mframes/s CPU"), BenchReport::Target::AtLeast, MinimumPerSecond);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions(
        {{QStringLiteral("json"), QStringLiteral("Write the figures to FILE."), QStringLiteral("FILE")},
         {QStringLiteral("seconds"), QStringLiteral("Seconds per figure."), QStringLiteral("N"), QStringLiteral("3")},
         {QStringLiteral("interface"),
          QStringLiteral("Measure the SocketCAN library on this interface, beside candump."), QStringLiteral("NAME")}});
    parser.process(application);
    const int seconds = qMax(1, parser.value(QStringLiteral("seconds")).toInt());

    const QString interface = parser.value(QStringLiteral("interface"));
    BenchReport report;
    if (interface.isEmpty()) {
        addVirtualFigures(report, seconds);
    }
    addInterfaceFigures(report, interface, seconds);
    report.print();
    return report.writeJson(parser.value(QStringLiteral("json"))) ? 0 : 1;
}
