// bench_endtoend [--seconds N] [--rate FRAMES] [--fd] [--stall SECONDS] [--folder FOLDER] [--json FILE]
//
// Adapter to table and file: two devices with two CAN channels each, so many numbered frames per second (27,000) on
// each channel, received in four tabs with real-time saving on. Afterwards every file is read and every payload counter
// checked. Ends with 1 when a frame was lost, doubled or out of order. With --stall no file takes anything for so long,
// in the middle of the run, as on a drive that does not answer.

#include "bench/BenchReport.h"
#include "bench/ProcessFigures.h"

#include "can/GUI_CanDevice.h"
#include "capture/CTableViewCAN.h"
#include "device/CANAPI.h"
#include "device/CANCommunication.h"
#include "tests/support/AdapterFolder.h"
#include "tests/support/StallingTarget.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTabWidget>
#include <QTextStream>
#include <QTimer>

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

namespace {
constexpr int ChannelCount = 4;
constexpr int CounterBytes = 4;
constexpr int IdleSeconds = 3;

struct Options
{
    int seconds = 30;
    int rate = 27000; ///< frames per second and channel
    bool isCANFD = false;
    int stallSeconds = 0;
    QString folder;
    QString json;
};

/// What was found in one channel's real-time file.
struct Check
{
    qint64 frames = 0;
    qint64 lost = 0;       ///< counters that never came
    qint64 misplaced = 0;  ///< counters that were not above the one before
    qint64 wrongLines = 0; ///< lines that are no frame, or numbered wrongly
    int rowsInTable = 0;
};

/// The event loop as the program runs it; a wait that sleeps between rounds would be measured as a pause.
void runEventLoop(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

/// Longest time the event loop of the GUI thread did not come round.
class PauseMeter
{
public:
    PauseMeter()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, [this] { note(); });
        m_timer.start(1);
        m_clock.start();
    }

    void restart()
    {
        m_pauses.clear();
        m_clock.start();
    }
    double longestMs() { return percentile(1.0); }
    double percentile(double share)
    {
        if (m_pauses.empty()) {
            return 0;
        }
        std::sort(m_pauses.begin(), m_pauses.end());
        return m_pauses.at(static_cast<std::size_t>(share * static_cast<double>(m_pauses.size() - 1)));
    }

private:
    void note() { m_pauses.push_back(static_cast<double>(m_clock.nsecsElapsed()) / 1e6), m_clock.start(); }

    QTimer m_timer;
    QElapsedTimer m_clock;
    std::vector<double> m_pauses;
};

QByteArray adapterJson(const Options &options)
{
    QJsonArray buses;
    for (int bus = 0; bus < ChannelCount; ++bus) {
        const QJsonObject node{{QStringLiteral("id"), QStringLiteral("0x10%1").arg(bus)},
                               {QStringLiteral("length"), options.isCANFD ? 64 : 8},
                               {QStringLiteral("format"), QLatin1String(options.isCANFD ? "fd-brs" : "classic")},
                               {QStringLiteral("rate_hz"), options.rate},
                               {QStringLiteral("payload"), QStringLiteral("counting")}};
        buses.append(QJsonObject{{QStringLiteral("name"), QStringLiteral("bus%1").arg(bus)},
                                 {QStringLiteral("bitrate"), QStringLiteral("500k")},
                                 {QStringLiteral("data_rate"), 3},
                                 {QStringLiteral("nodes"), QJsonArray{node}}});
    }
    QJsonArray devices;
    for (int device = 0; device < ChannelCount / 2; ++device) {
        const auto channel = [](int bus) {
            return QJsonObject{{QStringLiteral("bus"), QStringLiteral("bus%1").arg(bus)}};
        };
        devices.append(QJsonObject{{QStringLiteral("serial"), QString::number(device)},
                                   {QStringLiteral("model"), QStringLiteral("X9FC-BENCH")},
                                   {QStringLiteral("firmware"), QStringLiteral("V2.05")},
                                   {QStringLiteral("hardware"), QStringLiteral("V1")},
                                   {QStringLiteral("can"), QJsonArray{channel(2 * device), channel(2 * device + 1)}},
                                   {QStringLiteral("lin"), QJsonArray()}});
    }
    return QJsonDocument(QJsonObject{{QStringLiteral("buses"), buses}, {QStringLiteral("devices"), devices}}).toJson();
}

ChannelParam channelParam(int index, bool isCANFD)
{
    ChannelParam param;
    param.device = static_cast<quint8>(index / 2);
    param.channel = static_cast<quint8>(index % 2);
    param.Timing0 = 0x00;
    param.Timing1 = 0x1C;
    param.AccMask = 0xFFFFFFFF;
    param.isCANFD = isCANFD;
    param.dataRateCANFD = isCANFD ? 3 : 0;
    return param;
}

/// The little-endian counter at the start of the payload cell "01 02 03 04 ...".
qint64 counterOf(const QByteArray &cell)
{
    const QByteArray bytes = QByteArray::fromHex(cell.left(3 * CounterBytes));
    qint64 counter = 0;
    for (int i = CounterBytes - 1; i >= 0; --i) {
        counter = counter << 8 | static_cast<quint8>(bytes.at(i));
    }
    return counter;
}

Check checkFile(const QString &path)
{
    Check check;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        ++check.wrongLines;
        return check;
    }
    file.readLine(); // own header
    file.readLine(); // titles
    qint64 previous = -1;
    while (!file.atEnd()) {
        const QList<QByteArray> cells = file.readLine().trimmed().split(',');
        if (cells.size() == 1 && cells.first().isEmpty()) {
            continue; // the empty line behind the rows of the first save
        }
        if (cells.size() < 10 || cells.at(9).size() < 3 * CounterBytes - 1 ||
            cells.first().toLongLong() != check.frames + 1) {
            ++check.wrongLines;
            continue;
        }
        const qint64 counter = counterOf(cells.at(9));
        if (previous >= 0 && counter <= previous) {
            ++check.misplaced;
        } else if (previous >= 0) {
            check.lost += counter - previous - 1;
        }
        previous = counter;
        ++check.frames;
    }
    return check;
}

/// The four tabs in one window, as the program shows them.
class Workbench
{
public:
    explicit Workbench(const Options &options)
        : m_options(options)
        , m_folder(adapterJson(options))
        , m_manager(std::make_unique<CANAPI>(QStringLiteral(X9_VIRTUAL_ADAPTER)))
    {
        m_tabs.resize(1000, 650);
        m_tabs.show();
    }

    bool open()
    {
        const int cache = 2 * (options().seconds + 5) * options().rate;
        for (int i = 0; i < ChannelCount; ++i) {
            auto tab = std::make_unique<GUI_CanDevice>(channelParam(i, options().isCANFD), m_manager);
            if (!tab->isChannelOpen()) {
                return false;
            }
            m_tables.at(static_cast<std::size_t>(i)) = tab->findChild<CTableViewCAN *>(QStringLiteral("tableView"));
            table(i)->setCacheSize(cache);
            m_tabs.addTab(tab.release(), QString::number(i));
            table(i)->setTargetWrapper([gate = m_gate](std::unique_ptr<RealTimeTarget> file) {
                return std::make_unique<StallingTarget>(std::move(file), gate);
            });
            if (!table(i)->realTimeSave(true, path(i))) {
                return false;
            }
        }
        return true;
    }

    /// From the middle of a run of the options' length on.
    void planStall()
    {
        const int stallMs = options().stallSeconds * 1000;
        const int startMs = (options().seconds * 1000 - stallMs) / 2;
        if (stallMs > 0) {
            QTimer::singleShot(startMs, Qt::PreciseTimer, &m_tabs, [this] { m_gate->close(); });
            QTimer::singleShot(startMs + stallMs, Qt::PreciseTimer, &m_tabs, [this] { m_gate->open(); });
        }
    }

    void close()
    {
        for (int i = 0; i < ChannelCount; ++i) {
            m_manager.closeChannel(static_cast<quint8>(i / 2), static_cast<quint8>(i % 2));
        }
        runEventLoop(600); // the last batches arrive and are refreshed
    }

    std::vector<Check> check()
    {
        std::vector<Check> checks;
        for (int i = 0; i < ChannelCount; ++i) {
            table(i)->realTimeSave(false, QString());
            checks.push_back(checkFile(path(i)));
            checks.back().rowsInTable = table(i)->rowCount();
        }
        return checks;
    }

private:
    const Options &options() const { return m_options; }
    CTableViewCAN *table(int i) const { return m_tables.at(static_cast<std::size_t>(i)); }
    QString path(int i) const
    {
        const QString name = QStringLiteral("live%1.csv").arg(i);
        return m_options.folder.isEmpty() ? m_folder.filePath(name) : m_options.folder + QLatin1Char('/') + name;
    }

    Options m_options;
    AdapterFolder m_folder;
    CANCommunication m_manager;
    QTabWidget m_tabs;
    std::array<CTableViewCAN *, ChannelCount> m_tables{};
    std::shared_ptr<Gate> m_gate = std::make_shared<Gate>();
};

Options readOptions(const QApplication &application)
{
    QCommandLineParser parser;
    const QCommandLineOption seconds(QStringLiteral("seconds"), QString(), QStringLiteral("n"), QStringLiteral("30"));
    const QCommandLineOption rate(QStringLiteral("rate"), QString(), QStringLiteral("n"), QStringLiteral("27000"));
    const QCommandLineOption fd(QStringLiteral("fd"));
    const QCommandLineOption stall(QStringLiteral("stall"), QString(), QStringLiteral("n"), QStringLiteral("0"));
    const QCommandLineOption folder(QStringLiteral("folder"), QString(), QStringLiteral("folder"));
    const QCommandLineOption json(QStringLiteral("json"), QString(), QStringLiteral("file"));
    parser.addOptions({seconds, rate, fd, stall, folder, json});
    parser.process(application);
    const int runSeconds = std::max(1, parser.value(seconds).toInt());
    return {runSeconds,
            std::max(1, parser.value(rate).toInt()),
            parser.isSet(fd),
            std::clamp(parser.value(stall).toInt(), 0, std::min(runSeconds, 9)), // the gate opens by itself after ten
            parser.value(folder),
            parser.value(json)};
}

/// Prints a line for each channel and appends it to the report. Answers whether all frames are there, in order.
bool reportChannels(const std::vector<Check> &checks, const Options &options, QTextStream &out, QJsonArray &channels)
{
    bool isGood = true;
    out << "channel    frames   rows in table   lost   out of order   wrong lines\n";
    for (std::size_t i = 0; i < checks.size(); ++i) {
        const Check &c = checks[i];
        out << qSetFieldWidth(0)
            << QStringLiteral("%1%2%3%4%5%6\n")
                   .arg(i, 7)
                   .arg(c.frames, 10)
                   .arg(c.rowsInTable, 16)
                   .arg(c.lost, 7)
                   .arg(c.misplaced, 15)
                   .arg(c.wrongLines, 14);
        const qint64 expected = qint64(options.seconds) * options.rate;
        isGood = isGood && c.lost == 0 && c.misplaced == 0 && c.wrongLines == 0 && c.frames == c.rowsInTable &&
                 c.frames >= expected;
        channels.append(QJsonObject{{QStringLiteral("frames"), c.frames},
                                    {QStringLiteral("lost"), c.lost},
                                    {QStringLiteral("misplaced"), c.misplaced}});
    }
    return isGood;
}

} // namespace

int main(int argc, char *argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    const Options options = readOptions(application);
    QTextStream out(stdout);

    PauseMeter meter;
    runEventLoop(IdleSeconds * 1000);
    const double idleMs = meter.longestMs();

    Workbench workbench(options);
    if (!workbench.open()) {
        out << "the channels or their files could not be opened\n";
        return 1;
    }
    runEventLoop(1000); // start-up is not what is measured
    workbench.planStall();
    meter.restart();
    const double cpuBefore = cpuSeconds();
    runEventLoop(options.seconds * 1000);
    const double cpuShare = (cpuSeconds() - cpuBefore) / options.seconds;
    const double longestMs = meter.longestMs();
    const double p999Ms = meter.percentile(0.999);
    workbench.close();

    QJsonArray channels;
    bool isGood = reportChannels(workbench.check(), options, out, channels);
    out << QStringLiteral("longest GUI pause %1 ms (99.9 % of the rounds within %2 ms; idle before: %3 ms), "
                          "%4 CPU seconds per second\n")
               .arg(longestMs, 0, 'f', 1)
               .arg(p999Ms, 0, 'f', 1)
               .arg(idleMs, 0, 'f', 1)
               .arg(cpuShare, 0, 'f', 2)
        << (isGood ? "no frame lost\n" : "FRAMES ARE MISSING OR WRONG\n");
    if (!options.json.isEmpty()) {
        QFile file(options.json);
        const QJsonObject report{
            {QStringLiteral("seconds"), options.seconds}, {QStringLiteral("framesPerSecondAndChannel"), options.rate},
            {QStringLiteral("channels"), channels},       {QStringLiteral("longestPauseMs"), longestMs},
            {QStringLiteral("idlePauseMs"), idleMs},      {QStringLiteral("cpuShare"), cpuShare}};
        isGood = file.open(QIODevice::WriteOnly) && file.write(QJsonDocument(report).toJson()) > 0 && isGood;
    }
    return isGood ? 0 : 1;
}
