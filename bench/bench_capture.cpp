// The frame table without painting: append and refresh, memory, saving (bench_capture_save.cpp) and loading
// (bench_capture_load.cpp).

#include "bench/bench_capture.h"

#include "capture/CTableViewCAN.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>

namespace {

constexpr int BatchSize = 2500;

/// A table of full size whose painting is switched off.
void showWithoutPainting(CTableViewCAN &table, int cacheSize)
{
    table.setUpdatesEnabled(false);
    table.resize(1000, 650);
    table.show();
    table.setAutoScroll(true);
    table.setCacheSize(cacheSize);
}

struct AppendRun
{
    double table = 0;   ///< seconds in append and refresh
    double batches = 0; ///< seconds in making and dropping the batches
    double firstTenth = 0;
    double lastTenth = 0;
    double resident = 0; ///< bytes
    double allocated = 0;
};

AppendRun appendOnce(int frames, int size)
{
    releaseFreeMemory();
    const double resident = residentBytes();
    const double allocated = allocatedBytes();
    AppendRun run;
    CTableViewCAN table;
    showWithoutPainting(table, frames);
    const int batches = frames / BatchSize;
    double begin = cpuSeconds();
    for (int i = 0; i < batches; ++i) {
        QVector<FrameRecord> batch = receivedBatch(BatchSize, size, static_cast<quint32>(i));
        const double made = cpuSeconds();
        table.append(batch, true);
        table.refresh();
        const double moved = cpuSeconds();
        batch = QVector<FrameRecord>();
        run.batches += made - begin;
        run.table += moved - made;
        if (i < batches / 10) {
            run.firstTenth += moved - made;
        }
        if (i >= batches - batches / 10) {
            run.lastTenth += moved - made;
        }
        begin = moved;
    }
    run.resident = residentBytes() - resident;
    run.allocated = allocatedBytes() - allocated;
    if (table.rowCount() != batches * BatchSize) {
        qFatal("frames were lost");
    }
    return run;
}

} // namespace

QVector<FrameRecord> receivedBatch(int count, int size, quint32 firstTime)
{
    const QString now = QStringLiteral("12:34:56.%1").arg(firstTime % 1000, 3, 10, QLatin1Char('0'));
    QVector<FrameRecord> batch;
    batch.reserve(count);
    VCI_CAN_OBJ classic = {};
    VCI_CANFD_OBJ fd = {};
    fd.FDFlag = 2;
    classic.DataLen = fd.DataLen = static_cast<quint8>(size);
    for (int i = 0; i < count; ++i) {
        const auto number = static_cast<quint32>(i);
        classic.ID = fd.ID = 0x100 + number % 0x600;
        classic.TimeStamp = fd.TimeStamp = firstTime * 250 + number / 10;
        classic.Data[0] = fd.Data[0] = static_cast<quint8>(number);
        classic.Data[7] = fd.Data[63] = static_cast<quint8>(firstTime);
        batch.append(size > 8 ? FrameRecord::received(fd, now) : FrameRecord::received(classic, now));
    }
    return batch;
}

void benchAppend(BenchReport &report, const CaptureBenchOptions &options, int size)
{
    std::vector<double> overall;
    std::vector<double> first;
    std::vector<double> last;
    std::vector<double> withBatches;
    AppendRun run;
    double resident = 0;
    double allocated = 0;
    const double frames = options.frames;
    for (int i = 0; i < options.repetitions; ++i) {
        run = appendOnce(options.frames, size);
        if (i == 0) { // later runs find memory that the process already has
            resident = run.resident;
            allocated = run.allocated;
        }
        overall.push_back(frames / run.table / 1e6);
        withBatches.push_back(frames / (run.table + run.batches) / 1e6);
        first.push_back(frames / 10 / run.firstTenth / 1e6);
        last.push_back(frames / 10 / run.lastTenth / 1e6);
    }
    const QString what = QStringLiteral(", %1-byte frames").arg(size);
    const QString unit = QStringLiteral("Mframes/s CPU");
    report.add(QStringLiteral("append + refresh") + what, median(overall), unit, BenchReport::Target::AtLeast, 8);
    report.add(QStringLiteral("  its first tenth"), median(first), unit);
    report.add(QStringLiteral("  its last tenth"), median(last), unit);
    report.add(QStringLiteral("  with making and dropping the batches"), median(withBatches), unit);
    const auto target = size == 8 ? BenchReport::Target::AtMost : BenchReport::Target::None;
    report.add(QStringLiteral("memory per frame, resident") + what, resident / frames, QStringLiteral("bytes"), target,
               90);
    report.add(QStringLiteral("memory per frame, allocated") + what, allocated / frames, QStringLiteral("bytes"),
               target, 90);
}

void benchRefresh(BenchReport &report, const CaptureBenchOptions &options)
{
    constexpr int Refreshes = 300;
    CTableViewCAN table;
    showWithoutPainting(table, options.frames + Refreshes * BatchSize);
    while (table.rowCount() < options.frames) {
        table.append(receivedBatch(BatchSize, 8, 1));
        table.refresh();
    }
    std::vector<double> times;
    std::vector<double> walls;
    for (int i = 0; i < Refreshes; ++i) {
        table.append(receivedBatch(BatchSize, 8, static_cast<quint32>(i)));
        QElapsedTimer wall;
        wall.start();
        const double begin = cpuSeconds();
        table.refresh();
        times.push_back((cpuSeconds() - begin) * 1e3);
        walls.push_back(static_cast<double>(wall.nsecsElapsed()) / 1e6);
    }
    const QString unit = QStringLiteral("ms CPU");
    report.add(QStringLiteral("refresh, 1M rows held, 2500 new: median"), median(times), unit,
               BenchReport::Target::AtMost, 1);
    report.add(QStringLiteral("  longest of %1").arg(Refreshes), *std::max_element(times.begin(), times.end()), unit);
    report.add(QStringLiteral("  longest by the wall clock"), *std::max_element(walls.begin(), walls.end()),
               QStringLiteral("ms"));

    QElapsedTimer wall;
    wall.start();
    table.clear();
    report.add(QStringLiteral("clear of 1.75M rows"), static_cast<double>(wall.nsecsElapsed()) / 1e6,
               QStringLiteral("ms"));
    wall.restart();
    table.refresh();
    report.add(QStringLiteral("  the refresh that gives memory back"), static_cast<double>(wall.nsecsElapsed()) / 1e6,
               QStringLiteral("ms"));
}

int main(int argc, char *argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions(
        {{QStringLiteral("json"), QStringLiteral("Write the figures to FILE."), QStringLiteral("FILE")},
         {QStringLiteral("dir"), QStringLiteral("Save files in DIR (a memory file system)."), QStringLiteral("DIR"),
          QStringLiteral("/dev/shm")},
         {QStringLiteral("load"), QStringLiteral("Only loading.")},
         {QStringLiteral("frames"), QStringLiteral("How many frames."), QStringLiteral("N"), QStringLiteral("1000000")},
         {QStringLiteral("repeat"), QStringLiteral("Repetitions, the median counts."), QStringLiteral("N"),
          QStringLiteral("5")}});
    parser.process(application);
    CaptureBenchOptions options;
    options.frames = std::max(parser.value(QStringLiteral("frames")).toInt(), 10 * BatchSize);
    options.repetitions = std::max(parser.value(QStringLiteral("repeat")).toInt(), 1);
    options.folder = parser.value(QStringLiteral("dir"));

    BenchReport report;
    if (!parser.isSet(QStringLiteral("load"))) {
        benchAppend(report, options, 8);
        benchAppend(report, options, 64);
        benchRefresh(report, options);
        benchSave(report, options, 8);
        benchSave(report, options, 64);
    }
    benchLoad(report, options, 8);
    benchLoad(report, options, 64);
    report.print();
    return report.writeJson(parser.value(QStringLiteral("json"))) ? 0 : 1;
}
