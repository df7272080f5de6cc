#include "bench/ViewerWindowsBench.h"

#include "bench/BenchReport.h"
#include "bench/MadeCapture.h"
#include "bench/ProcessFigures.h"

#include "viewer/BusLoadWindow.h"
#include "viewer/CaptureTab.h"
#include "viewer/ComparisonWindow.h"
#include "viewer/PeriodWindow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QTableView>
#include <QTableWidget>
#include <QTabWidget>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

using BenchTarget = BenchReport::Target;

constexpr int Identifiers = 200;
constexpr qint64 MostMs = 120000;

double milliseconds(const QElapsedTimer &clock)
{
    return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

/// Notes how much of the processor's time the longest event took: what else runs on the machine does not count.
class TimedApplication : public QApplication
{
public:
    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override
    {
        if (m_depth > 0) {
            return QApplication::notify(receiver, event);
        }
        const double begin = threadSeconds();
        ++m_depth;
        const bool isHandled = QApplication::notify(receiver, event);
        --m_depth;
        m_longest = std::max(m_longest, (threadSeconds() - begin) * 1000);
        return isHandled;
    }
    double takeLongest() { return std::exchange(m_longest, 0); }

private:
    int m_depth = 0;
    double m_longest = 0;
};

/// A counter, a wave and a switch that moves in the middle, on two channels.
auto frameMaker(qint64 frames)
{
    return [frames](qint64 number, BusFrame &frame) {
        frame.time += number % 7 * 900;
        frame.identifier = 0x100 + static_cast<quint32>(number % Identifiers);
        frame.channel = static_cast<quint16>(number % 2);
        const auto wave = static_cast<int>(20000 + 20000 * std::sin(static_cast<double>(number) / 1e5));
        frame.data[0] = static_cast<uchar>(wave);
        frame.data[1] = static_cast<uchar>(wave >> 8);
        frame.data[5] = number > frames / 2 ? 1 : 0;
        frame.data[7] = static_cast<uchar>(number / Identifiers);
    };
}

bool waitFor(const std::function<bool()> &isSo)
{
    QElapsedTimer clock;
    clock.start();
    while (!isSo() && clock.elapsed() < MostMs) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
    }
    return isSo();
}

struct OpenedWindow
{
    std::function<bool()> hasSomething;
    std::function<bool()> hasAll;
};

OpenedWindow openCompare(QTabWidget &tabs, CaptureTab &tab)
{
    tab.capture().setMark(tab.capture().store().size() / 2);
    auto *window = new ComparisonWindow(tabs, &tabs);
    window->choose(&tab, ComparisonWindow::BeforeMark, &tab, ComparisonWindow::FromMark);
    window->show();
    const auto *state = window->findChild<QLabel *>(QStringLiteral("state"));
    const auto hasSomething = [state] {
        return state->text().contains(QLatin1Char(';'));
    };
    return {hasSomething, [state, hasSomething] {
                return hasSomething() && !state->text().contains(QLatin1String("..."));
            }};
}

OpenedWindow openPeriods(CaptureTab &tab)
{
    auto *window = PeriodWindow::open(tab, 0x100, 0);
    const auto *figures = window->findChild<QLabel *>(QStringLiteral("figures"));
    const QString all = QLocale().toString(tab.capture().store().size() / Identifiers - 1);
    return {[figures] { return !figures->text().isEmpty(); },
            [window, all] {
                return window->periods() && window->periods()->covered > 0 &&
                       QLocale().toString(window->periods()->figures.periodCount) == all;
            }};
}

OpenedWindow openBusLoad(CaptureTab &tab, const QString &folder)
{
    auto *window = BusLoadWindow::open(tab, BusLoadMemory(folder + QStringLiteral("/busload.ini")));
    return {[window] { return window->loads() && !window->loads()->channels.empty(); },
            [window, &tab] {
                return window->loads() && window->loads()->covered == tab.capture().store().size();
            }};
}

} // namespace

QStringList viewerWindowModes()
{
    return {QStringLiteral("compare"), QStringLiteral("periods"), QStringLiteral("busload"),
            QStringLiteral("overview")};
}

bool benchViewerWindow(BenchReport &report, const QString &mode, qint64 frames, int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    TimedApplication application(argc, argv);
    const QTemporaryDir folder;
    QTabWidget tabs;
    auto *tab = new CaptureTab(QStringLiteral("bench"), madeCapture(frames, frameMaker(frames)), folder.path());
    tabs.addTab(tab, QStringLiteral("bench"));
    tabs.resize(1200, 800);
    tabs.show();
    QElapsedTimer clock;
    clock.start();
    waitFor([&clock] { return clock.elapsed() > 300; }); // letters are read from files only once
    application.takeLongest();
    const auto isLoaded = [tab, frames] {
        return tab->capture().store().size() == frames && tab->capture().overview().covered() == frames;
    };
    if (!waitFor(isLoaded)) {
        return false;
    }
    report.add(QStringLiteral("loading with the overview, longest event"), application.takeLongest(),
               QStringLiteral("ms"), BenchTarget::AtMost, 16);
    if (mode == QLatin1String("overview")) {
        return true;
    }
    const double before = threadSeconds();
    const double allBefore = cpuSeconds();
    clock.start();
    const OpenedWindow window = mode == QLatin1String("compare")   ? openCompare(tabs, *tab)
                                : mode == QLatin1String("periods") ? openPeriods(*tab)
                                                                   : openBusLoad(*tab, folder.path());
    report.add(mode + QStringLiteral(": making the window"), (threadSeconds() - before) * 1000, QStringLiteral("ms"),
               BenchTarget::AtMost, 16);
    if (!waitFor(window.hasSomething)) {
        return false;
    }
    report.add(QStringLiteral("  first result"), milliseconds(clock), QStringLiteral("ms"), BenchTarget::AtMost, 300);
    if (!waitFor(window.hasAll)) {
        return false;
    }
    report.add(QStringLiteral("  all of it"), milliseconds(clock), QStringLiteral("ms"));
    report.add(QStringLiteral("  processor time for all of it"), (cpuSeconds() - allBefore) * 1000,
               QStringLiteral("ms"));
    waitFor(
        [&clock, end = clock.elapsed() + 1500] { return clock.elapsed() > end; }); // it is drawn, and looks for more
    report.add(QStringLiteral("  longest event"), application.takeLongest(), QStringLiteral("ms"), BenchTarget::AtMost,
               16);
    return true;
}
