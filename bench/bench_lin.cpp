// bench_lin [--rows N] [--json FILE]
//
// The table of LIN frames on screen with N rows (720,000: an hour of monitoring at 200 frames a second): memory per
// row; what a dynamic row and a refresh of the view cost at the start and at the end; what a static row costs beside
// few rows and beside many; how often a 5 ms poll that lists a frame each time gets its turn while the table grows from
// nothing and when it is full; saving the table and reading it back.

#include "bench/BenchReport.h"
#include "bench/ProcessFigures.h"

#include "device/LINFrame.h"
#include "device/TickTimer.h"
#include "lin/LINCapture.h"
#include "lin/LINCaptureReader.h"
#include "lin/LINFrameModel.h"
#include "lin/LINFrameView.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>
#include <QTime>
#include <QTimer>

#include <algorithm>
#include <functional>

namespace {

constexpr double BytesGoal = 400;
constexpr double PollsGoal = 150;
constexpr int PollMs = 5;
constexpr int PollSeconds = 5;
constexpr int Samples = 200;
constexpr int Identifiers = 64;

using BenchTarget = BenchReport::Target;

/// As monitor mode makes it: every text and every payload is its own.
CTableViewLIN::DataObject frame(int number)
{
    CTableViewLIN::DataObject object;
    object.time = QTime::fromMSecsSinceStartOfDay(number * PollMs % 86400000).toString(QStringLiteral("hh:mm:ss.zzz"));
    object.direction = CTableViewLIN::DataObject::Received;
    object.ID = static_cast<quint8>(number % Identifiers);
    object.PID = calcPID(object.ID);
    object.data = QByteArray(8, static_cast<char>(number));
    object.checksum = calcChecksum(object.ID, true, object.data);
    return object;
}

double elapsedMs(const std::function<void()> &work)
{
    QElapsedTimer clock;
    clock.start();
    work();
    return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

/// Lets the view scroll and paint, and its pause pass.
void refresh()
{
    QEventLoop loop;
    QTimer::singleShot(LINFrameView::RefreshMs + 10, &loop, &QEventLoop::quit);
    loop.exec();
}

/// A row and, apart from it, the scrolling and painting that follow.
void benchDynamic(BenchReport &report, LINFrameView &view, int next, const QString &when)
{
    std::vector<double> appends;
    std::vector<double> refreshes;
    for (int i = 0; i < Samples; ++i) {
        refresh();
        const CTableViewLIN::DataObject second = frame(next + 1);
        view.addRow(frame(next), false, 1); // refreshes at once; the second one waits for its turn
        appends.push_back(elapsedMs([&] { view.addRow(second, false, 1); }) * 1000);
        refreshes.push_back(elapsedMs([&] {
            view.scrollToBottom();
            view.viewport()->repaint();
        }));
    }
    report.add(QStringLiteral("dynamic row, %1").arg(when), median(appends), QStringLiteral("us"));
    report.add(QStringLiteral("scroll and paint, %1").arg(when), median(refreshes), QStringLiteral("ms"));
}

void benchStatic(BenchReport &report, LINFrameView &view, const QString &when)
{
    std::vector<double> times;
    for (int round = 0; round < Samples; ++round) {
        std::vector<CTableViewLIN::DataObject> frames;
        frames.reserve(Identifiers);
        for (int id = 0; id < Identifiers; ++id) {
            frames.push_back(frame(id));
        }
        refresh();
        view.addRow(frames.front(), true, 1);
        times.push_back(elapsedMs([&] {
                            for (const CTableViewLIN::DataObject &object : frames) {
                                view.addRow(object, true, 1);
                            }
                        }) *
                        1000 / Identifiers);
    }
    report.add(QStringLiteral("static row, %1").arg(when), median(times), QStringLiteral("us"));
}

void benchPolls(BenchReport &report, LINFrameView &view, bool isStatic, const QString &when)
{
    TickTimer poll;
    poll.setMakingUp(false);
    int polls = 0;
    QObject::connect(&poll, &TickTimer::sig_tick, &view, [&] { view.addRow(frame(polls++), isStatic, 1); });
    QEventLoop loop;
    QTimer::singleShot(PollSeconds * 1000, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    const double before = cpuSeconds();
    poll.start(PollMs);
    loop.exec();
    report.add(QStringLiteral("polls a second, %1").arg(when), static_cast<double>(polls) / PollSeconds,
               QStringLiteral("1/s"), BenchTarget::AtLeast, PollsGoal);
    report.add(QStringLiteral("processor time, %1").arg(when), (cpuSeconds() - before) / PollSeconds * 100,
               QStringLiteral("%"));
}

void benchFile(BenchReport &report, const LINFrameModel &frames, const QString &path)
{
    bool isSaved = false;
    const double saveMs = elapsedMs([&] { isSaved = saveLINCapture(path, frames); });
    report.add(QStringLiteral("saving %1 rows").arg(frames.rowCount()), isSaved ? saveMs : -1, QStringLiteral("ms"));

    LINCaptureReader reader;
    QEventLoop loop;
    int count = 0;
    QObject::connect(&reader, &LINCaptureReader::sig_finished, &loop,
                     [&](const QVector<CTableViewLIN::DataObject> &read, bool /*isCapture*/) {
                         count = read.size();
                         loop.quit();
                     });
    double longest = 0;
    QElapsedTimer since;
    QTimer ticks;
    QObject::connect(&ticks, &QTimer::timeout, &loop, [&] {
        longest = std::max(longest, static_cast<double>(since.nsecsElapsed()) / 1e6);
        since.start();
    });
    ticks.start(0);
    since.start();
    const double readMs = elapsedMs([&] {
        if (reader.start(path) && reader.isReading()) {
            loop.exec();
        }
    });
    report.add(QStringLiteral("importing %1 rows").arg(count), readMs, QStringLiteral("ms"));
    report.add(QStringLiteral("importing, longest pause"), longest, QStringLiteral("ms"));
}

void fill(LINFrameView &view, int rows)
{
    constexpr int Batch = 1000;
    while (view.frames().rowCount() < rows) {
        QVector<CTableViewLIN::DataObject> batch;
        for (int i = 0; i < Batch; ++i) {
            batch.append(frame(view.frames().rowCount() + i));
        }
        view.addRows(batch, 1);
    }
    refresh();
}

} // namespace

int main(int argc, char *argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({{QStringLiteral("rows"), QStringLiteral("Rows of the full table (720000)."), QStringLiteral("N"),
                        QStringLiteral("720000")},
                       {QStringLiteral("json"), QStringLiteral("Write the figures to FILE."), QStringLiteral("FILE")}});
    parser.process(application);
    const int rows = std::max(1000, parser.value(QStringLiteral("rows")).toInt());
    const QTemporaryDir folder;

    BenchReport report;
    LINFrameView view;
    view.resize(1200, 700);
    view.show();
    benchPolls(report, view, false, QStringLiteral("dynamic, at the start"));
    view.clearRows();
    benchStatic(report, view, QStringLiteral("beside 64 rows"));
    view.clearRows();
    benchDynamic(report, view, 0, QStringLiteral("at the start"));
    view.clearRows();
    refresh();

    const double before = residentBytes();
    fill(view, rows);
    report.add(QStringLiteral("memory of a row, %1 rows").arg(rows),
               (residentBytes() - before) / view.frames().rowCount(), QStringLiteral("bytes"), BenchTarget::AtMost,
               BytesGoal);
    benchDynamic(report, view, rows, QStringLiteral("at the end"));
    benchStatic(report, view, QStringLiteral("beside all rows"));
    benchPolls(report, view, false, QStringLiteral("dynamic, at the end"));
    benchPolls(report, view, true, QStringLiteral("static, at the end"));
    benchFile(report, view.frames(), folder.filePath(QStringLiteral("a.csv")));
    report.add(QStringLiteral("clearing the table"), elapsedMs([&] { view.clearRows(); }), QStringLiteral("ms"));
    report.print();
    return report.writeJson(parser.value(QStringLiteral("json"))) ? 0 : 1;
}
