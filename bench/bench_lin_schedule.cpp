// bench_lin_schedule [--frames N] [--json FILE]
//
// The list page of a LIN tab on the virtual adapter: the intervals at which N frames (1,000) of a 30 ms schedule, sent
// and requested in turn, come into its table. Each waits at least its interval after the one before.

#include "bench/BenchReport.h"

#include "device/CANAPI.h"
#include "device/CANCommunication.h"
#include "lin/GUI_LINDevice.h"
#include "lin/GUI_LINModeList.h"
#include "tests/support/AdapterFolder.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QPushButton>
#include <QSpinBox>
#include <QTableView>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr int IntervalMs = 30;
const QByteArray Bus = R"({
  "lin_buses": [{"name": "body", "slaves": [{"id": "0x01", "data": [1, 2, 3, 4, 5, 6, 7, 8]}]}],
  "devices": [{"model": "X9FC-1", "lin": [{"bus": "body"}]}]
})";

template<typename Widget>
Widget &find(const QWidget &parent, const char *name)
{
    return *parent.findChild<Widget *>(QLatin1String(name));
}

/// Row 0 is sent, row 1 requested.
void fillSchedule(const QWidget &page, int frames)
{
    QAbstractItemModel &rows = *find<QTableView>(page, "tableViewParam").model();
    rows.setData(rows.index(0, 0), Qt::Checked, Qt::CheckStateRole);
    rows.setData(rows.index(1, 0), Qt::Checked, Qt::CheckStateRole);
    rows.setData(rows.index(1, 1), 1, Qt::UserRole);
    find<QSpinBox>(page, "lbx_count").setValue(frames);
}

void addFigures(BenchReport &report, const std::vector<double> &times)
{
    std::vector<double> intervals;
    for (std::size_t i = 1; i < times.size(); ++i) {
        intervals.push_back(times[i] - times[i - 1]);
    }
    std::sort(intervals.begin(), intervals.end());
    const auto percentile = [&intervals](double share) {
        return intervals.at(static_cast<std::size_t>(share * static_cast<double>(intervals.size() - 1)));
    };
    const QString ms = QStringLiteral("ms");
    const double average = (times.back() - times.front()) / static_cast<double>(intervals.size());
    report.add(QStringLiteral("30 ms schedule, average"), average, ms);
    report.add(QStringLiteral("30 ms schedule, average off by"), std::abs(average - IntervalMs) / IntervalMs * 100,
               QStringLiteral("%"));
    report.add(QStringLiteral("30 ms schedule, 1st percentile"), percentile(0.01), ms);
    report.add(QStringLiteral("30 ms schedule, 50th percentile"), percentile(0.5), ms);
    report.add(QStringLiteral("30 ms schedule, 99th percentile"), percentile(0.99), ms);
    report.add(QStringLiteral("30 ms schedule, worst"), intervals.back(), ms);
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption frames(QStringLiteral("frames"), {}, QStringLiteral("N"), QStringLiteral("1000"));
    const QCommandLineOption json(QStringLiteral("json"), {}, QStringLiteral("FILE"));
    parser.addOptions({frames, json});
    parser.process(application);
    const int count = std::clamp(parser.value(frames).toInt(), 2, 65535);

    const QString jsonPath = parser.isSet(json) ? QFileInfo(parser.value(json)).absoluteFilePath() : QString();
    const AdapterFolder folder(Bus); // changes the working directory
    CANCommunication communication(std::make_unique<CANAPI>(QStringLiteral(X9_VIRTUAL_ADAPTER)));
    ChannelParam channel;
    channel.linBaudRate = 19200;
    channel.linChecksum = 1;
    GUI_LINDevice tab(channel, communication);
    tab.resize(980, 580);
    tab.show();
    const auto &page = *tab.findChild<GUI_LINModeList *>();
    fillSchedule(page, count);

    std::vector<double> times;
    QElapsedTimer clock;
    clock.start();
    QObject::connect(find<QTableView>(page, "tableview").model(), &QAbstractItemModel::rowsInserted,
                     [&times, &clock] { times.push_back(static_cast<double>(clock.nsecsElapsed()) / 1e6); });
    QObject::connect(&tab, &GUI_LINDevice::sig_changeBtnEnableState, &application,
                     [](uint8_t /*mode*/, bool isStopped) {
                         if (isStopped) {
                             QApplication::quit();
                         }
                     });
    find<QPushButton>(page, "btn_start").click();
    QApplication::exec();
    if (times.size() != static_cast<std::size_t>(count)) {
        qFatal("%d frames came instead of %d", static_cast<int>(times.size()), count);
    }

    BenchReport report;
    addFigures(report, times);
    report.print();
    return report.writeJson(jsonPath) ? 0 : 1;
}
