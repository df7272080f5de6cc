// bench_sendfile [--frames N] [--folder FOLDER] [--json FILE]
//
// The file sender's own dialog on a recording adapter: the intervals at which N frames (10,000) go out at 1 ms, fewer
// at longer intervals, beside the ticks of a plain precise timer; and how long the event loop is held up while files of
// 1,000,000 frames are loaded.

#include "bench/BenchReport.h"
#include "bench/Intervals.h"

#include "capture/GUI_CanSendFile.h"
#include "device/CANAPI.h"
#include "device/CANCommunication.h"
#include "tests/support/ScriptedAdapter.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <functional>

namespace {
constexpr int LargeFrames = 1000000;
constexpr double LoadGapGoalMs = 200;

bool write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush();
}

QByteArray canFile(int frames)
{
    return QByteArray("Zhiyuan CAN Data") + QByteArray(4 + frames * 24, '\0');
}

/// CAN FD frames of 64 bytes.
QByteArray canFdFile(int frames)
{
    const QByteArray record = QByteArray(8, '\1') + '\2' + QByteArray(3, '\0') + char(64) + QByteArray(64, '\x5A');
    return QByteArray("Vantora CAN Data") + QByteArray(4, '\0') + record.repeated(frames);
}

QByteArray csvFile(int frames)
{
    const QByteArray line("1,10:20:30.400,123456,Revice,0x123,CAN,Data,Standard,0x8,11 22 33 44 55 66 77 88 \n");
    return "Vantora CAN Data\ntitles\n" + line.repeated(frames);
}

/// The dialog, operated as a user does.
class Sender
{
public:
    Sender()
        : m_manager(m_adapter.table())
        , m_dialog(ChannelParam(), m_manager)
    {
        m_dialog.show();
    }

    template<typename Widget>
    Widget *find(const char *name)
    {
        return m_dialog.findChild<Widget *>(QLatin1String(name));
    }
    void setFile(const QString &path) { find<QLineEdit>("lbx_fileName")->setText(path); }
    void setInterval(int ms) { find<QSpinBox>("sbx_interval")->setValue(ms); }
    void pressSend() { find<QPushButton>("btn_send")->click(); }
    bool isSending() { return find<QProgressBar>("progressBar")->isVisible(); }
    void onFrame(const std::function<void()> &hook) { m_adapter.onCall("VCI_Transmit", hook); }

private:
    ScriptedAdapter m_adapter;
    CANCommunication m_manager;
    GUI_CanSendFile m_dialog;
};

void benchSending(BenchReport &report, const QString &path, int frames, int intervalMs)
{
    Sender sender;
    Intervals intervals;
    sender.onFrame([&intervals] { intervals.note(); });
    write(path, canFile(frames));
    sender.setFile(path);
    sender.setInterval(intervalMs);
    sender.pressSend();
    runUntil([&] { return intervals.count() == frames - 1; });
    addIntervals(report, QStringLiteral("%1 frames at %2 ms").arg(frames).arg(intervalMs), intervals, intervalMs, true);
}

void benchPlainTimer(BenchReport &report, int ticks, int intervalMs)
{
    Intervals intervals;
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, &timer, [&intervals] { intervals.note(); });
    timer.start(intervalMs);
    runUntil([&] { return intervals.count() >= ticks; });
    addIntervals(report, QStringLiteral("a plain timer at %1 ms").arg(intervalMs), intervals, intervalMs, false);
}

/// The file is loaded twice: the second time the frames held before are freed as well.
void benchLoading(BenchReport &report, const QString &path)
{
    Sender sender;
    sender.setFile(path);
    sender.setInterval(1000);
    for (int round = 1; round <= 2; ++round) {
        Intervals rounds;
        QElapsedTimer clock;
        QEventLoop loop;
        QTimer timer;
        timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
            rounds.note();
            if (sender.isSending()) {
                loop.quit();
            }
        });
        timer.start(1);
        clock.start();
        rounds.note();
        sender.pressSend();
        loop.exec();
        const double loadMs = static_cast<double>(clock.nsecsElapsed()) / 1e6;
        sender.pressSend(); // stops
        const QString name = QStringLiteral("%1 frames, %2, load %3")
                                 .arg(LargeFrames)
                                 .arg(path.mid(path.lastIndexOf(QLatin1Char('.'))))
                                 .arg(round);
        report.add(name + QStringLiteral(", longest pause"), rounds.percentile(1), QStringLiteral("ms"),
                   BenchReport::Target::AtMost, LoadGapGoalMs);
        report.add(name + QStringLiteral(", in all"), loadMs, QStringLiteral("ms"));
    }
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
    parser.addOptions({{QStringLiteral("frames"), QStringLiteral("Send N frames at 1 ms (10000)."), QStringLiteral("N"),
                        QStringLiteral("10000")},
                       {QStringLiteral("folder"), QStringLiteral("Put the capture files into FOLDER."),
                        QStringLiteral("FOLDER"), QStringLiteral("/dev/shm")},
                       {QStringLiteral("json"), QStringLiteral("Write the figures to FILE."), QStringLiteral("FILE")}});
    parser.process(application);
    const int frames = std::max(100, parser.value(QStringLiteral("frames")).toInt());
    const QTemporaryDir folder(parser.value(QStringLiteral("folder")) + QStringLiteral("/bench_sendfile"));

    BenchReport report;
    for (const int intervalMs : {1, 5, 10, 20}) {
        benchSending(report, folder.filePath(QStringLiteral("a.can")), frames / intervalMs, intervalMs);
    }
    benchPlainTimer(report, frames, 1);
    const QString fd = folder.filePath(QStringLiteral("large.canfd"));
    const QString csv = folder.filePath(QStringLiteral("large.csv"));
    if (!write(fd, canFdFile(LargeFrames)) || !write(csv, csvFile(LargeFrames))) {
        qCritical("the capture files cannot be written");
        return 1;
    }
    benchLoading(report, fd);
    benchLoading(report, csv);
    report.print();
    return report.writeJson(parser.value(QStringLiteral("json"))) ? 0 : 1;
}
