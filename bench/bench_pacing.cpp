// bench_pacing [--sends N] [--rate FRAMES] [--json FILE]
//
// The pace of sending from a CAN tab on screen while so many frames per second (20,000) arrive in its table from the
// virtual adapter: the intervals between N sends (10,000) at 1 ms, fewer at longer intervals. First of a single frame
// with increasing data, which is to keep its cycle on average, then of a send list of 1000 rows in order mode that is
// printed to the table, which waits at least its interval after each send. Before it, how long adding, ticking and
// removing 1000 rows takes. Ends with 1 when a frame was lost, doubled or refused.

#include "bench/BenchReport.h"
#include "bench/Intervals.h"

#include "can/GUI_CanDevice.h"
#include "capture/CTableViewCAN.h"
#include "capture/GUI_CanAdvancedOpearation.h"
#include "capture/WidgetDelegateCAN.h"
#include "device/CANAPI.h"
#include "device/CANCommunication.h"
#include "tests/support/AdapterFolder.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTableWidget>
#include <QtEndian>

#include <algorithm>
#include <functional>
#include <limits>
#include <memory>
#include <vector>

namespace {
constexpr int RowCount = 1000;
constexpr int FirstId = 0x100;
constexpr quint32 NodeId = 0x123;
constexpr quint8 Device = 0;
constexpr quint8 Channel = 0;
constexpr int WarmUpMs = 1000; ///< opening and the first refresh are not what is measured
constexpr int RestMs = 800;    ///< the last batches arrive and are refreshed

QByteArray adapterJson(int rate)
{
    const QJsonObject node{{QStringLiteral("id"), int(NodeId)},
                           {QStringLiteral("length"), 8},
                           {QStringLiteral("rate_hz"), rate},
                           {QStringLiteral("payload"), QStringLiteral("counting")}};
    const QJsonObject bus{{QStringLiteral("name"), QStringLiteral("bus")},
                          {QStringLiteral("bitrate"), QStringLiteral("500k")},
                          {QStringLiteral("nodes"), QJsonArray{node}}};
    const QJsonObject channel{{QStringLiteral("bus"), QStringLiteral("bus")}};
    const QJsonObject device{{QStringLiteral("model"), QStringLiteral("X9FC-BENCH")},
                             {QStringLiteral("can"), QJsonArray{channel, channel}}};
    return QJsonDocument(
               QJsonObject{{QStringLiteral("buses"), QJsonArray{bus}}, {QStringLiteral("devices"), QJsonArray{device}}})
        .toJson();
}

ChannelParam channelParam()
{
    ChannelParam param;
    param.device = Device;
    param.channel = Channel;
    param.Timing0 = 0x00;
    param.Timing1 = 0x1C;
    param.AccMask = 0xFFFFFFFF;
    return param;
}

/// What VCI_Transmit is called with on the way to the adapter. Static, because an entry point carries no context.
struct Transmissions
{
    static std::uint32_t X9_ADAPTER_CALL note(std::uint32_t type, std::uint8_t dev, std::uint8_t ch,
                                              const VCI_CAN_OBJ *frames, std::uint32_t count)
    {
        intervals->note();
        const std::uint32_t accepted = adapter(type, dev, ch, frames, count);
        sent += accepted;
        refused += count - accepted;
        return accepted;
    }
    /// The table of the virtual adapter with the notes in between.
    static std::unique_ptr<CANAPI> table()
    {
        auto api = std::make_unique<CANAPI>(QStringLiteral(X9_VIRTUAL_ADAPTER));
        adapter = api->VCI_Transmit;
        api->VCI_Transmit = note;
        return api;
    }
    static void restart()
    {
        intervals = std::make_unique<Intervals>();
        sent = 0;
        refused = 0;
    }

    static inline AdapterEntry::Transmit adapter = nullptr;
    static inline std::unique_ptr<Intervals> intervals = std::make_unique<Intervals>();
    static inline qint64 sent = 0;
    static inline qint64 refused = 0;
};

/// The bus with its traffic, and what of it came in by the manager: every frame carries a counter.
class Traffic
{
public:
    explicit Traffic(int rate)
        : m_folder(adapterJson(rate))
        , m_manager(Transmissions::table())
    {
        QObject::connect(&m_manager, &CANCommunication::sig_readResultCallback, &m_manager,
                         [this](quint8, quint8, const QVector<VCI_CAN_OBJ> &frames) { check(frames); });
    }

    CANCommunication &manager() { return m_manager; }
    qint64 received() const { return m_received; }
    /// Counters that are not one above the one before.
    qint64 gaps() const { return m_gaps; }

private:
    void check(const QVector<VCI_CAN_OBJ> &frames)
    {
        for (const VCI_CAN_OBJ &frame : frames) {
            const qint64 counter = qFromLittleEndian<quint32>(frame.Data);
            m_gaps += m_received > 0 && counter != m_counter + 1 ? 1 : 0;
            m_counter = counter;
            ++m_received;
        }
    }

    AdapterFolder m_folder;
    CANCommunication m_manager;
    qint64 m_received = 0;
    qint64 m_counter = 0;
    qint64 m_gaps = 0;
};

void runFor(int ms)
{
    QElapsedTimer clock;
    clock.start();
    runUntil([&clock, ms] { return clock.elapsed() >= ms; });
}

/// A tab on screen and its send list, operated as a user does.
class Workbench
{
public:
    explicit Workbench(CANCommunication &manager)
        : m_tab(channelParam(), manager)
    {
        m_tab.resize(1000, 600);
        m_tab.show();
    }

    bool isOpen() const { return m_tab.isChannelOpen(); }
    void press(const char *name) { find<QAbstractButton>(name)->click(); }
    void type(const char *name, int number) { find<QLineEdit>(name)->setText(QString::number(number)); }
    void openList() { press("btn_advancedOperation"); }
    void fillList(int intervalMs)
    {
        auto *rows = find<QTableWidget>("tableWidget");
        for (int row = 0; row < RowCount; ++row) {
            press("btnAdd");
            set(rows, row, WidgetDelegateCAN::Id, FirstId + row);
            set(rows, row, WidgetDelegateCAN::Length, 8);
            set(rows, row, WidgetDelegateCAN::Interval, intervalMs);
        }
        press("btnAllSelect");
        find<QComboBox>("cbxMode")->setCurrentIndex(1);
        find<QSpinBox>("cbxRepeat")->setValue(65535);
        find<QSpinBox>("lbxInterval")->setValue(intervalMs);
        find<QCheckBox>("checkBox")->setChecked(true);
    }
    void emptyList()
    {
        auto *rows = find<QTableWidget>("tableWidget");
        rows->setCurrentCell(0, WidgetDelegateCAN::Id);
        while (rows->rowCount() > 0) {
            press("btnRemove");
        }
    }
    int rowsListed() const { return m_tab.findChild<CTableViewCAN *>()->rowCount(); }

private:
    /// The list's dialog is a child of the tab.
    template<typename Widget>
    Widget *find(const char *name)
    {
        return m_tab.findChild<Widget *>(QLatin1String(name));
    }
    static void set(QTableWidget *rows, int row, int column, int value)
    {
        rows->model()->setItemData(rows->model()->index(row, column),
                                   {{Qt::DisplayRole, QString::number(value)}, {Qt::UserRole, value}});
    }

    GUI_CanDevice m_tab;
};

void benchEditing(BenchReport &report)
{
    const auto add = [&report](const char *what, const std::function<void()> &action) {
        QElapsedTimer clock;
        clock.start();
        action();
        report.add(QLatin1String(what), static_cast<double>(clock.nsecsElapsed()) / 1e6, QStringLiteral("ms"));
    };
    CANCommunication manager(std::make_unique<CANAPI>(QString()));
    Workbench bench(manager);
    bench.openList();
    add("1000 rows, added one by one and filled", [&bench] { bench.fillList(1); });
    add("1000 rows, unticked and ticked", [&bench] {
        bench.press("btnInvert");
        bench.press("btnAllSelect");
    });
    add("1000 rows, removed one by one from the first on", [&bench] { bench.emptyList(); });
}

void addLosses(BenchReport &report, const QString &name, qint64 lost)
{
    report.add(name + QStringLiteral(", frames lost"), static_cast<double>(lost), QStringLiteral("frames"),
               BenchReport::Target::AtMost, 0);
}

/// What is sent, and how it is started and stopped.
struct Scenario
{
    QString name;
    std::function<void(Workbench &, int intervalMs)> prepare;
    const char *startButton;
    const char *stopButton;
    bool keepsPace; ///< on average
};

std::vector<Scenario> scenarios()
{
    const auto prepareFrame = [](Workbench &bench, int intervalMs) {
        bench.type("lbx_frameOfSend", std::numeric_limits<int>::max());
        bench.type("lbx_sendingCycle", intervalMs);
        bench.press("chbx_dataIncrease");
    };
    const auto prepareList = [](Workbench &bench, int intervalMs) {
        bench.openList();
        bench.fillList(intervalMs);
    };
    return {{QStringLiteral("single frame"), prepareFrame, "btn_sendData", "btn_stopSending", true},
            {QStringLiteral("send list, %1 rows").arg(RowCount), prepareList, "btnListSend", "m_btnStop", false}};
}

/// False when a frame was lost.
bool benchPace(BenchReport &report, const Scenario &scenario, int rate, int sends, int intervalMs)
{
    Traffic traffic(rate);
    Workbench bench(traffic.manager());
    if (!bench.isOpen()) {
        qCritical("the channel cannot be opened");
        return false;
    }
    scenario.prepare(bench, intervalMs);
    runFor(WarmUpMs);
    Transmissions::restart();
    bench.press(scenario.startButton);
    runUntil([sends] { return Transmissions::intervals->count() >= sends; });
    bench.press(scenario.stopButton);
    runFor(RestMs);
    traffic.manager().closeChannel(Device, Channel);
    runFor(RestMs);

    const qint64 expected = traffic.received() + Transmissions::sent;
    const qint64 lost = traffic.gaps() + Transmissions::refused + std::abs(expected - bench.rowsListed());
    const QString name = QStringLiteral("%1, %2 ms").arg(scenario.name).arg(intervalMs);
    addIntervals(report, name, *Transmissions::intervals, intervalMs, scenario.keepsPace);
    report.add(name + QStringLiteral(", frames received"), static_cast<double>(traffic.received()),
               QStringLiteral("frames"));
    addLosses(report, name, lost);
    return lost == 0;
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
    parser.addOptions({{QStringLiteral("sends"), QStringLiteral("Send N times at 1 ms (10000)."), QStringLiteral("N"),
                        QStringLiteral("10000")},
                       {QStringLiteral("rate"), QStringLiteral("Receive FRAMES per second (20000)."),
                        QStringLiteral("FRAMES"), QStringLiteral("20000")},
                       {QStringLiteral("json"), QStringLiteral("Write the figures to FILE."), QStringLiteral("FILE")}});
    parser.process(application);
    const int sends = std::max(100, parser.value(QStringLiteral("sends")).toInt());
    const int rate = std::max(1, parser.value(QStringLiteral("rate")).toInt());

    BenchReport report;
    benchEditing(report);
    bool isComplete = true;
    for (const Scenario &scenario : scenarios()) {
        for (const int intervalMs : {1, 5, 10, 20}) {
            isComplete = benchPace(report, scenario, rate, sends / intervalMs, intervalMs) && isComplete;
        }
    }
    report.print();
    return report.writeJson(parser.value(QStringLiteral("json"))) && isComplete ? 0 : 1;
}
