// bench_viewer_scroll [--frames N] [--json FILE]
//
// What one screen of the viewer's table costs with a capture of N frames of 8 bytes (10,000): scrolling row by row,
// page by page and jumping anywhere, each the processor time from moving the bar to the painted screen of 1200 x 700,
// without rules of colours and with eight of them; and a filter from being taken to the first screen of it. Without a
// display with QT_QPA_PLATFORM=offscreen.

#include "bench/BenchReport.h"
#include "bench/MadeCapture.h"
#include "bench/ProcessFigures.h"

#include "viewer/FrameTableView.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QImage>
#include <QRandomGenerator>
#include <QScrollBar>
#include <QThread>

#include <algorithm>
#include <cstdio>

namespace {

using BenchTarget = BenchReport::Target;

constexpr int Identifiers = 200;
constexpr int Screens = 300;

void makeFrame(qint64 number, BusFrame &frame)
{
    frame.identifier = 0x100 + static_cast<quint32>(number % Identifiers);
    frame.direction = number % 10 == 0 ? BusFrame::Sent : BusFrame::Received;
    frame.data[0] = static_cast<uchar>(number);
    frame.data[7] = static_cast<uchar>(number / Identifiers);
}

QVector<ColorRule> eightRules()
{
    QVector<ColorRule> rules = ColorRule::standard();
    for (const char *filter : {"id in 0x100..0x107", "data ~ \"DE AD ?? EF\"", "data[0] & 0x80 and len > 4",
                               "data[0] << 8 | data[1] > 60000", "number % 7 == 0"}) {
        rules.append({true, QString::fromLatin1(filter), 0x0B3D91, 0xD3F5D3});
    }
    return rules;
}

double milliseconds(const QElapsedTimer &clock)
{
    return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

/// Processor time of screens; next(screen): where the bar is moved to.
template<typename Next>
void benchScreens(BenchReport &report, FrameTableView &table, const QString &name, Next next)
{
    std::vector<double> times;
    QImage image(table.viewport()->size(), QImage::Format_RGB32);
    for (int screen = 0; screen < Screens; ++screen) {
        const int place = next(screen);
        const double begin = cpuSeconds();
        table.verticalScrollBar()->setValue(place);
        table.viewport()->render(&image);
        times.push_back((cpuSeconds() - begin) * 1e3);
        QCoreApplication::processEvents();
    }
    report.add(name, median(times), QStringLiteral("ms"), BenchTarget::AtMost, 16);
    std::sort(times.begin(), times.end());
    report.add(QStringLiteral("  slower than 95 of 100"), times[Screens * 95 / 100], QStringLiteral("ms"),
               BenchTarget::AtMost, 16);
}

void benchScrolling(BenchReport &report, FrameTableView &table, const QString &rules)
{
    const int last = table.verticalScrollBar()->maximum();
    QRandomGenerator random(1);
    benchScreens(report, table, QStringLiteral("row by row, %1").arg(rules),
                 [last](int screen) { return std::min(last, last / 2 + screen); });
    benchScreens(report, table, QStringLiteral("page by page, %1").arg(rules),
                 [last, &table](int screen) { return std::min(last, last / 3 + screen * table.visibleRows()); });
    benchScreens(report, table, QStringLiteral("anywhere, %1").arg(rules),
                 [last, &random](int /*screen*/) { return random.bounded(last); });
}

void benchFilter(BenchReport &report, OpenCapture &capture, FrameTableView &table, const char *text)
{
    std::vector<double> times;
    for (int round = 0; round < 9; ++round) {
        FilterError error{};
        const Filter filter = Filter::parse(QString::fromLatin1(text), {}, error).value_or(Filter());
        QElapsedTimer clock;
        clock.start();
        capture.setFilter(filter);
        while (capture.rowCount() == 0 && clock.elapsed() < 10000) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 1);
        }
        table.viewport()->repaint();
        times.push_back(milliseconds(clock));
        capture.setFilter({});
    }
    report.add(QStringLiteral("first screen of %1").arg(QLatin1String(text)), median(times), QStringLiteral("ms"),
               BenchTarget::AtMost, 100);
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({{QStringLiteral("frames"), QStringLiteral("Frames of the capture (10000)."), QStringLiteral("N"),
                        QStringLiteral("10000")},
                       {QStringLiteral("json"), QStringLiteral("Write the figures to FILE."), QStringLiteral("FILE")}});
    parser.process(application);
    const qint64 frames = std::max<qint64>(1000, parser.value(QStringLiteral("frames")).toLongLong());

    const double before = residentBytes();
    OpenCapture capture(QStringLiteral("made-up"), madeCapture(frames, &makeFrame), false);
    while (capture.loader().progress().isRunning() || capture.rowCount() < frames ||
           capture.overview().covered() < frames) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
        QThread::msleep(1);
        if (!capture.loader().progress().isRunning() && capture.store().size() < frames) {
            std::fprintf(stderr, "There is no memory for %lld frames.\n", static_cast<long long>(frames));
            return 1;
        }
    }
    BenchReport report;
    report.add(QStringLiteral("memory of %1 frames").arg(frames), (residentBytes() - before) / 1e6,
               QStringLiteral("MB"));
    FrameTableModel model(capture);
    FrameTableView table(model);
    table.resize(1200, 700);
    table.show();
    QCoreApplication::processEvents();
    report.add(QStringLiteral("rows of a screen"), table.visibleRows(), QString());
    benchScrolling(report, table, QStringLiteral("no rules"));
    model.setRules(eightRules());
    benchScrolling(report, table, QStringLiteral("8 rules"));
    for (const char *text : {"id == 0x123", "data ~ \"^8? 00\"", "data[0] << 8 | data[1] > 60000"}) {
        benchFilter(report, capture, table, text);
    }
    report.print();
    return report.writeJson(parser.value(QStringLiteral("json"))) ? 0 : 1;
}
