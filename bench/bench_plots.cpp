// bench_plots [--frames N] [--curves N] [--json FILE]
//
// The viewer's plots of a capture of N frames (10,000,000) whose every frame carries a signal: from asking for a curve
// to its first picture and to the last of its values, and the longest time that it kept the windows busy meanwhile;
// then pictures that are moved and zoomed, 1200 x 400 pixels, with one curve and with several (4). Runs without a
// screen: QT_QPA_PLATFORM=offscreen.

#include "bench/BenchReport.h"
#include "bench/MadeCapture.h"
#include "bench/ProcessFigures.h"

#include "viewer/PlotArea.h"
#include "viewer/PlotPane.h"
#include "viewer/PlotPanel.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>

namespace {

using BenchTarget = BenchReport::Target;

constexpr double PicturesPerSecond = 30;

/// A wave in the first two bytes.
void makeFrame(qint64 number, BusFrame &frame)
{
    frame.identifier = 0x100;
    const auto wave = static_cast<int>(20000 + 20000 * std::sin(static_cast<double>(number) / 1e5));
    frame.data[0] = static_cast<uchar>(wave + number % 977);
    frame.data[1] = static_cast<uchar>(wave >> 8);
    frame.data[7] = static_cast<uchar>(number);
}

/// In the first two bytes.
class BenchSignals : public SignalSource
{
public:
    QVector<Message> messages() const override { return {{0x100, QStringLiteral("Engine")}}; }
    QStringList signalNames() const override { return {QStringLiteral("Speed")}; }
    int signalNumber(const QString &name) const override { return signalNames().indexOf(name); }
    QVector<FrameKey> carriers(int /*signal*/) const override { return {0x100}; }
    double value(int /*signal*/, const BusFrame &frame) const override
    {
        return (frame.data[0] | frame.data[1] << 8) * 0.01;
    }
    QString valueText(int /*signal*/, double /*value*/) const override { return {}; }
};

double milliseconds(const QElapsedTimer &clock)
{
    return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

/// Lets the event loop go round until isDone, and returns the longest round: milliseconds of the thread's processor
/// time, so that what else runs on the machine does not count.
template<typename Function>
double runUntil(Function isDone)
{
    double longest = 0;
    while (!isDone()) {
        const double before = threadSeconds();
        QCoreApplication::processEvents(QEventLoop::AllEvents);
        longest = std::max(longest, (threadSeconds() - before) * 1000);
    }
    return longest;
}

void benchFill(BenchReport &report, PlotPanel &panel, const QString &text)
{
    PlotArea &area = panel.area();
    double first = 0;
    QElapsedTimer clock;
    const auto connection = QObject::connect(&area, &PlotArea::sig_drawn, [&] {
        if (!(first > 0) && !panel.curves().at(0).curve.series()->isEmpty()) {
            area.pane(0).canvas()->repaint();
            first = milliseconds(clock);
        }
    });
    clock.start();
    panel.addExpression(text);
    const double longest = runUntil([&panel] { return !panel.curves().isFilling(); });
    const double all = milliseconds(clock);
    QObject::disconnect(connection);
    report.add(QStringLiteral("%1: first picture").arg(text), first, QStringLiteral("ms"), BenchTarget::AtMost, 300);
    report.add(QStringLiteral("  all values"), all, QStringLiteral("ms"));
    report.add(QStringLiteral("  longest round of the event loop"), longest, QStringLiteral("ms"), BenchTarget::AtMost,
               16);
}

void benchPictures(BenchReport &report, PlotArea &area, const QString &name)
{
    constexpr int Pictures = 200;
    std::vector<double> times;
    std::vector<double> processor;
    for (int picture = 0; picture < Pictures; ++picture) {
        // In and out, and sideways in between.
        const int key = picture % 5 != 0 ? Qt::Key_Right : (picture / 40) % 2 == 0 ? Qt::Key_Plus : Qt::Key_Minus;
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        const double before = threadSeconds();
        QElapsedTimer clock;
        clock.start();
        QCoreApplication::sendEvent(&area, &event);
        area.draw();
        for (int i = 0; i < area.paneCount(); ++i) {
            area.pane(i).canvas()->repaint();
        }
        times.push_back(milliseconds(clock));
        processor.push_back((threadSeconds() - before) * 1000);
        QCoreApplication::processEvents();
    }
    std::sort(processor.begin(), processor.end());
    report.add(name, 1000 / median(times), QStringLiteral("pictures/s"), BenchTarget::AtLeast, PicturesPerSecond);
    report.add(QStringLiteral("  processor time, more than 95 of 100"), processor[Pictures * 95 / 100],
               QStringLiteral("ms"), BenchTarget::AtMost, 16);
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions(
        {{QStringLiteral("frames"), QStringLiteral("Frames of the capture (10000000)."), QStringLiteral("N"),
          QStringLiteral("10000000")},
         {QStringLiteral("curves"), QStringLiteral("Curves in the end (4)."), QStringLiteral("N"), QStringLiteral("4")},
         {QStringLiteral("json"), QStringLiteral("Write the figures to FILE."), QStringLiteral("FILE")}});
    parser.process(application);
    const qint64 frames = std::max<qint64>(100000, parser.value(QStringLiteral("frames")).toLongLong());
    const int curves = std::max(1, parser.value(QStringLiteral("curves")).toInt());

    BenchReport report;
    const QTemporaryDir folder;
    OpenCapture capture(QStringLiteral("bench"), madeCapture(frames, &makeFrame), false);
    capture.setSignalSource(std::make_shared<BenchSignals>());
    PlotPanel panel(capture, folder.path());
    panel.resize(1500, 600);
    panel.area().setFixedSize(1200, 400);
    panel.show();
    runUntil([&capture, frames] { return capture.overview().covered() == frames; });
    benchFill(report, panel, QStringLiteral("Speed"));
    benchPictures(report, panel.area(), QStringLiteral("moved and zoomed, one curve"));
    for (int curve = 1; curve < curves; ++curve) {
        panel.addExpression(QStringLiteral("Speed + %1").arg(curve));
    }
    runUntil([&panel] { return !panel.curves().isFilling(); });
    benchPictures(report, panel.area(), QStringLiteral("moved and zoomed, %1 curves").arg(curves));
    report.print();
    return report.writeJson(parser.value(QStringLiteral("json"))) ? 0 : 1;
}
