#include "device/CANAPI.h"
#include "device/LINFrame.h"
#include "device/TickTimer.h"
#include "lin/GUI_LINModeMonitor.h"
#include "lin/LINRecords.h"
#include "tests/lin/LINTabUnderTest.h"
#include "tests/support/AdapterFolder.h"
#include "tests/support/SaveDialogDriver.h"
#include "tests/support/ScriptedAdapter.h"
#include "tests/support/TestProgram.h"

#include <QCheckBox>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QTemporaryDir>
#include <QThread>

#include <deque>

namespace {

// Silent but for what the second channel sends and requests.
const QByteArray Buses = R"({
  "lin_buses": [{"name": "quiet", "slaves": [{"id": "0x21", "data": "0102", "checksum": "classic"}]}],
  "devices": [{"model": "X9FC-1", "lin": [{"bus": "quiet"}, {"bus": "quiet"}]}]
})";

const QByteArray WrongParity = R"({
  "lin_buses": [{"name": "lin", "traffic": [{"id": 1, "period_ms": 20, "data": "AA", "wrong_parity": true}]}],
  "devices": [{"model": "X9FC-1", "lin": [{"bus": "lin"}]}]
})";

const QByteArray Refusing = R"({
  "devices": [{"model": "X9FC-1", "lin": [{"faults": {"mode_refused": [3]}}]}]
})";

// Pulled out a second and a half after it was opened.
const QByteArray Unplugged = R"({
  "lin_buses": [{"name": "lin", "traffic": [{"id": 1, "period_ms": 5, "data": "AA"}]}],
  "devices": [{"model": "X9FC-1", "lin": [{"bus": "lin"}], "faults": {"vanish_after_ms": 1500}}]
})";

enum Column { Number, Time, Direction, Id, Length, Data, Check, State };

VCI_LIN_OBJ seen(quint8 pid, const char *data, quint8 checksum = 0)
{
    VCI_LIN_OBJ record = linRecord(pid, QByteArray::fromHex(data));
    record.Checksum = checksum;
    return record;
}

/// A monitor page that sees exactly the records it is given, one per poll.
class ScriptedMonitor
{
public:
    explicit ScriptedMonitor(const ChannelParam &param = linChannel())
        : manager(adapter.table())
        , user(manager, "btn_modeMonitor", param)
    {
        adapter.onCall("KQ_ReceiveLINBySlave", [this] {
            ++polls;
            adapter.setLINFrame(waiting.empty() ? VCI_LIN_OBJ{} : waiting.front());
            if (!waiting.empty()) {
                waiting.pop_front();
            }
        });
    }
    /// Runs until all of records have been polled, and once more.
    bool see(const std::deque<VCI_LIN_OBJ> &records)
    {
        waiting = records;
        const int last = polls + static_cast<int>(records.size()) + 1;
        return QTest::qWaitFor([this, last] { return polls >= last; });
    }

    ScriptedAdapter adapter;
    std::deque<VCI_LIN_OBJ> waiting;
    int polls = 0;
    CANCommunication manager;
    LINTabUnderTest<GUI_LINModeMonitor> user;
};

/// The virtual adapter with a monitor on LIN channel 0.
class VirtualMonitor
{
public:
    explicit VirtualMonitor(const QByteArray &json, const ChannelParam &param = linChannel())
        : folder(json)
        , manager(std::make_unique<CANAPI>(QStringLiteral(X9_VIRTUAL_ADAPTER)))
        , user(manager, "btn_modeMonitor", param)
    {
    }
    ~VirtualMonitor() { manager.closeLIN(0, 1); }
    /// Opens the other channel as the bus's master.
    bool openMaster(quint8 checksum = 0)
    {
        return manager.openLIN(linChannel(1, checksum)) == CAN_OK && manager.changeLINMode(0, 1, 1) == CAN_OK;
    }
    bool send(quint8 id, const char *data)
    {
        return manager.transmitLIN(0, 1, linRecord(id, QByteArray::fromHex(data))) == CAN_OK;
    }

    AdapterFolder folder;
    CANCommunication manager;
    LINTabUnderTest<GUI_LINModeMonitor> user;
};

} // namespace

class tst_GUI_LINModeMonitor : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }

    static void form();
    static void startsAndStops();
    static void pollsWithAnEmptyRecord();
    static void refusedModeStartsNothing();
    static void startEmptiesTheTable();
    static void twoPairsOnOneIdentifierShowAFrameOnce();
    static void nothingCheckedShowsNothing();
    static void showsIdentifierAndReceivedPid();
    static void rowsOfAFrame();
    static void failedPollsAreSilent();
    static void displayModeChangesWhileRunning();
    static void locksTheFilterWhileRunning();
    static void othersLockStopToo();
    static void clearWhileRunning();
    static void saves();
    static void savingThatIsCancelled();
    static void savingThatFails();
    static void checksumTypeChangedBetweenFrames();
    static void slowCallsDoNotPileUp();

    static void monitorsTwelveIdentifiers();
    static void monitorsTheBus();
    static void answersOfSlavesAreSeen();
    static void wrongParity();
    static void wrongBaudRate();
    static void checksumTypeChangedOnTheFly();
    static void adapterRefusesTheMode();
    static void deviceVanishes();
    static void tabClosedWhileRunning();
};

void tst_GUI_LINModeMonitor::form()
{
    const ScriptedMonitor monitor;
    const auto &user = monitor.user;
    const auto *mode = user.find<QComboBox>("cbx_mode");
    QCOMPARE(mode->count(), 2);
    QCOMPARE(mode->currentData().toInt(), 0);
    QCOMPARE(mode->itemText(0), QStringLiteral("Fixed ID"));
    QCOMPARE(mode->itemText(1), QStringLiteral("Bus monitoring"));
    QCOMPARE(mode->itemData(1).toInt(), 1);
    const auto *display = user.find<QComboBox>("cbx_modeDisplay");
    QCOMPARE(display->count(), 2);
    QCOMPARE(display->currentData().toInt(), 0);
    QCOMPARE(display->itemText(0), QStringLiteral("Dynamic display"));
    QCOMPARE(display->itemText(1), QStringLiteral("Static display"));
    QCOMPARE(display->itemData(1).toInt(), 1);
    for (int pair = 1; pair <= 12; ++pair) {
        QVERIFY(!user.find<QCheckBox>(qPrintable(QStringLiteral("chbx_ID%1").arg(pair)))->isChecked());
        auto *id = user.find<QSpinBox>(qPrintable(QStringLiteral("sbx_ID%1").arg(pair)));
        QCOMPARE(id->minimum(), 0);
        QCOMPARE(id->maximum(), 63);
        id->setValue(0x3B);
        QCOMPARE(id->text(), QStringLiteral("3B"));
        QVERIFY(id->wrapping());
    }
    QVERIFY(user.find("sbx_ID13") == nullptr);
    QCOMPARE(user.button("btn_start"), QStringLiteral("Start tBtnStyle_1"));
    QCOMPARE(user.button("btn_stop"), QStringLiteral("Stop tBtnStyle_4"));
    QCOMPARE(user.button("btn_save"), QStringLiteral("Save tBtnStyle_3"));
    QCOMPARE(user.button("btn_clear"), QStringLiteral("Clear tBtnStyle_4"));
    for (const char *name : {"btn_start", "btn_stop", "btn_save", "btn_clear"}) {
        QVERIFY2(user.isEnabled(name), name);
    }
    QStringList titles;
    for (const QGroupBox *group : user.page.findChildren<QGroupBox *>()) {
        titles.append(group->title());
    }
    QVERIFY(titles.contains(QStringLiteral("Monitor Parameter Settings")));
    QVERIFY(titles.contains(QStringLiteral("Fixed ID Settings")));
    QCOMPARE(user.find<QLabel>("lbl_mode")->text(), QStringLiteral("Monitor mode:"));
    QCOMPARE(user.find<QLabel>("lbl_modeDisplay")->text(), QStringLiteral("Display mode:"));
    QCOMPARE(user.frames().headerData(Id, Qt::Horizontal).toString(), QStringLiteral("ID[PID]"));
}

void tst_GUI_LINModeMonitor::startsAndStops()
{
    ScriptedMonitor monitor;
    monitor.adapter.takeCalls();
    monitor.user.click("btn_start");
    QCOMPARE(monitor.adapter.takeCalls(), QStringList{QStringLiteral("KQ_ChangeLINMode 4 0 0 3")});
    QVERIFY(monitor.user.page.isRunning());
    QTRY_VERIFY(monitor.polls >= 5);
    monitor.user.click("btn_stop");
    QVERIFY(!monitor.user.page.isRunning());
    QCOMPARE(monitor.user.announced, QStringList({QStringLiteral("3 0"), QStringLiteral("3 1")}));
    const int polls = monitor.polls;
    TickTimer later;
    QSignalSpy ticks(&later, &TickTimer::sig_tick);
    later.start(5);
    QTRY_VERIFY(ticks.count() >= 5);
    QCOMPARE(monitor.polls, polls);
    monitor.user.click("btn_stop"); // announces nothing
    QCOMPARE(monitor.user.announced.size(), 2);
    QCOMPARE(monitor.user.messages.count(), 0);
}

void tst_GUI_LINModeMonitor::pollsWithAnEmptyRecord()
{
    ScriptedMonitor monitor(linChannel(1));
    monitor.user.click("btn_start");
    monitor.adapter.takeCalls();
    QVERIFY(monitor.see({seen(0xC1, "0102030405060708", 9)}));
    QTRY_VERIFY(monitor.polls >= 5);
    for (const QString &call : monitor.adapter.takeCalls()) {
        QCOMPARE(call, QStringLiteral("KQ_ReceiveLINBySlave 4 0 1 {0000000000000000000000}"));
    }
}

void tst_GUI_LINModeMonitor::refusedModeStartsNothing()
{
    ScriptedMonitor monitor;
    monitor.user.choose("cbx_mode", 1);
    monitor.user.click("btn_start");
    QVERIFY(monitor.see({seen(0xC1, "01")}));
    monitor.user.click("btn_stop");
    QCOMPARE(monitor.user.rows(), 1);
    monitor.adapter.answer("KQ_ChangeLINMode", 0);
    const int polls = monitor.polls;
    monitor.user.click("btn_start");
    QCOMPARE(monitor.user.lastMessage(), QStringLiteral("Communication error 4"));
    QVERIFY(!monitor.user.page.isRunning());
    QCOMPARE(monitor.user.announced.size(), 2); // those of the first run
    QCOMPARE(monitor.user.rows(), 1);           // its frames stay
    QVERIFY(monitor.user.isEnabled("btn_start"));
    QCOMPARE(monitor.polls, polls);
}

void tst_GUI_LINModeMonitor::startEmptiesTheTable()
{
    ScriptedMonitor monitor;
    monitor.user.choose("cbx_mode", 1);
    monitor.user.click("btn_start");
    QVERIFY(monitor.see({seen(0xC1, "01"), seen(0xC1, "02")}));
    monitor.user.click("btn_stop");
    QCOMPARE(monitor.user.rows(), 2);
    monitor.user.click("btn_start");
    QCOMPARE(monitor.user.rows(), 0);
}

void tst_GUI_LINModeMonitor::twoPairsOnOneIdentifierShowAFrameOnce()
{
    ScriptedMonitor monitor;
    monitor.user.tick(2, 0x01);
    monitor.user.tick(9, 0x01);
    monitor.user.click("btn_start");
    QVERIFY(monitor.see({seen(0xC1, "AA"), seen(0x42, "BB")}));
    QCOMPARE(monitor.user.column(Id), QStringList{QStringLiteral("01[C1]")});
}

void tst_GUI_LINModeMonitor::nothingCheckedShowsNothing()
{
    ScriptedMonitor monitor;
    monitor.user.click("btn_start");
    QVERIFY(monitor.see({seen(0x80, "AA"), seen(0xC1, "BB")})); // 0, the value of all twelve, and another one
    QCOMPARE(monitor.user.rows(), 0);
}

void tst_GUI_LINModeMonitor::showsIdentifierAndReceivedPid()
{
    ScriptedMonitor monitor;
    monitor.user.choose("cbx_mode", 1);
    monitor.user.click("btn_start");
    QVERIFY(monitor.see({seen(0xC1, "AA"), seen(0x81, "AA"), seen(0x01, "AA")})); // the parity is right, wrong, wrong
    QCOMPARE(monitor.user.column(Id),
             QStringList({QStringLiteral("01[C1]"), QStringLiteral("01[81]"), QStringLiteral("01[01]")}));
}

void tst_GUI_LINModeMonitor::rowsOfAFrame()
{
    ScriptedMonitor monitor(linChannel(0, 1));
    monitor.user.choose("cbx_mode", 1);
    monitor.user.click("btn_start");
    QVERIFY(monitor.see({seen(0x92, "01A2", 0x5C), seen(0x92, "01A2", 0xC9), seen(0x92, "01A2", 0)}));
    QCOMPARE(monitor.user.column(Number), QStringList({QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")}));
    QCOMPARE(monitor.user.cell(0, Direction), QStringLiteral("Revice"));
    QCOMPARE(monitor.user.cell(0, Id), QStringLiteral("12[92]"));
    QCOMPARE(monitor.user.cell(0, Length), QStringLiteral("2"));
    QCOMPARE(monitor.user.cell(0, Data), QStringLiteral("01 A2 "));
    QCOMPARE(monitor.user.cell(0, Check), QStringLiteral("5C"));
    const QRegularExpression time(QStringLiteral("^\\d\\d:\\d\\d:\\d\\d\\.\\d{3}$"));
    QVERIFY(time.match(monitor.user.cell(0, Time)).hasMatch());
    QCOMPARE(monitor.user.column(State),
             QStringList({QStringLiteral("Error checksum(V1)"), QStringLiteral("V2"), QStringLiteral("Error state")}));
}

void tst_GUI_LINModeMonitor::failedPollsAreSilent()
{
    ScriptedMonitor monitor;
    monitor.user.choose("cbx_mode", 1);
    monitor.user.click("btn_start");
    monitor.adapter.answer("KQ_ReceiveLINBySlave", 0);
    QVERIFY(monitor.see({seen(0xC1, "AA"), seen(0xC1, "AA")}));
    monitor.adapter.answer("KQ_ReceiveLINBySlave", 1);
    QVERIFY(monitor.see({VCI_LIN_OBJ{}, seen(0xC1, "BB"), VCI_LIN_OBJ{}}));
    QCOMPARE(monitor.user.column(Data), QStringList{QStringLiteral("BB ")});
    QCOMPARE(monitor.user.messages.count(), 0);
    QVERIFY(monitor.user.page.isRunning());
}

void tst_GUI_LINModeMonitor::displayModeChangesWhileRunning()
{
    ScriptedMonitor monitor;
    monitor.user.choose("cbx_mode", 1);
    monitor.user.click("btn_start");
    QVERIFY(monitor.see({seen(0xC1, "01"), seen(0x42, "02"), seen(0xC1, "03")}));
    QVERIFY(monitor.user.isEnabled("cbx_modeDisplay"));
    monitor.user.choose("cbx_modeDisplay", 1);
    QVERIFY(monitor.see({seen(0x42, "04"), seen(0xC1, "05"), seen(0x03, "06")}));
    QCOMPARE(monitor.user.column(Data),
             QStringList({QStringLiteral("05 "), QStringLiteral("04 "), QStringLiteral("03 "), QStringLiteral("06 ")}));
    QCOMPARE(monitor.user.column(Number),
             QStringList({QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3"), QStringLiteral("4")}));
    monitor.user.choose("cbx_modeDisplay", 0);
    QVERIFY(monitor.see({seen(0xC1, "07")}));
    QCOMPARE(monitor.user.rows(), 5);
}

void tst_GUI_LINModeMonitor::locksTheFilterWhileRunning()
{
    ScriptedMonitor monitor;
    QStringList locked = {QStringLiteral("btn_start"), QStringLiteral("btn_save"), QStringLiteral("cbx_mode")};
    for (int pair = 1; pair <= 12; ++pair) {
        locked.append(QStringLiteral("chbx_ID%1").arg(pair));
        locked.append(QStringLiteral("sbx_ID%1").arg(pair));
    }
    for (const bool isRunning : {true, false}) {
        monitor.user.click(isRunning ? "btn_start" : "btn_stop");
        for (const QString &name : locked) {
            QVERIFY2(monitor.user.isEnabled(qPrintable(name)) != isRunning, qPrintable(name));
        }
        for (const char *name : {"btn_stop", "btn_clear", "cbx_modeDisplay"}) {
            QVERIFY2(monitor.user.isEnabled(name), name);
        }
    }
}

void tst_GUI_LINModeMonitor::othersLockStopToo()
{
    const ScriptedMonitor monitor;
    for (const uint8_t mode : {uint8_t(LINModeList), uint8_t(LINModeDeveloper)}) {
        for (const bool isFree : {false, true}) {
            monitor.user.page.slot_changeBtnEnableState(mode, isFree);
            for (const char *name : {"btn_start", "btn_stop", "btn_save", "cbx_mode", "chbx_ID12", "sbx_ID1"}) {
                QVERIFY2(monitor.user.isEnabled(name) == isFree, name);
            }
            QVERIFY(monitor.user.isEnabled("btn_clear"));
            QVERIFY(monitor.user.isEnabled("cbx_modeDisplay"));
        }
    }
}

void tst_GUI_LINModeMonitor::clearWhileRunning()
{
    ScriptedMonitor monitor;
    monitor.user.choose("cbx_mode", 1);
    monitor.user.click("btn_start");
    QVERIFY(monitor.see({seen(0xC1, "01"), seen(0x42, "02")}));
    monitor.user.click("btn_clear");
    QCOMPARE(monitor.user.rows(), 0);
    QVERIFY(monitor.see({seen(0xC1, "03")}));
    QCOMPARE(monitor.user.column(Number), QStringList{QStringLiteral("1")});
}

void tst_GUI_LINModeMonitor::saves()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("seen.csv"));
    ScriptedMonitor monitor;
    monitor.user.choose("cbx_mode", 1);
    monitor.user.click("btn_start");
    QVERIFY(monitor.see({seen(0xC1, "01A2", 0x5C)}));
    monitor.user.click("btn_stop");
    const SaveDialogDriver dialog(path);
    monitor.user.click("btn_save");
    QVERIFY(dialog.isAnswered());
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Save File"));
    QCOMPARE(dialog.nameFilters(), QStringList{QStringLiteral("Csv File(*.csv)")});
    QCOMPARE(monitor.user.lastMessage(), QStringLiteral("Save successfully 1"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    const QString time = monitor.user.cell(0, Time);
    QCOMPARE(QString::fromUtf8(file.readAll()),
             QStringLiteral("No.,System Time,Direction,ID[PID],Length,Data(Hex),Check(Hex),State\n"
                            "1,%1,Revice,01[C1],2,01 A2 ,5C,V1\n")
                 .arg(time));
}

void tst_GUI_LINModeMonitor::savingThatIsCancelled()
{
    const ScriptedMonitor monitor;
    const SaveDialogDriver dialog{QString()};
    monitor.user.click("btn_save");
    QVERIFY(dialog.isAnswered());
    QCOMPARE(monitor.user.messages.count(), 0);
}

void tst_GUI_LINModeMonitor::savingThatFails()
{
    const QTemporaryDir folder;
    const ScriptedMonitor monitor;
    const SaveDialogDriver dialog(folder.filePath(QStringLiteral("none.csv")),
                                  [&folder](QFileDialog &) { QVERIFY(QDir(folder.path()).removeRecursively()); });
    monitor.user.click("btn_save");
    QVERIFY(dialog.isAnswered());
    QCOMPARE(monitor.user.lastMessage(), QStringLiteral("Save failure 4"));
}

void tst_GUI_LINModeMonitor::checksumTypeChangedBetweenFrames()
{
    ScriptedMonitor monitor;
    monitor.user.choose("cbx_mode", 1);
    monitor.user.click("btn_start");
    QVERIFY(monitor.see({seen(0x92, "01A2", 0x5C)}));
    monitor.user.page.setChannelParam(linChannel(0, 1));
    QVERIFY(monitor.see({seen(0x92, "01A2", 0x5C)}));
    QCOMPARE(monitor.user.column(State), QStringList({QStringLiteral("V1"), QStringLiteral("Error checksum(V1)")}));
}

void tst_GUI_LINModeMonitor::slowCallsDoNotPileUp()
{
    ScriptedMonitor monitor;
    monitor.user.click("btn_start");
    QTRY_VERIFY(monitor.polls >= 1);
    // Held up like the page's own timer, and known not to make up for it.
    TickTimer reference;
    reference.setMakingUp(false);
    QSignalSpy ticks(&reference, &TickTimer::sig_tick);
    monitor.adapter.onCall("KQ_ReceiveLINBySlave", [&monitor, &reference] {
        monitor.polls = 0;
        reference.start(5);
        monitor.adapter.onCall("KQ_ReceiveLINBySlave", [&monitor] { ++monitor.polls; });
        QThread::msleep(60); // the adapter takes its time, once
    });
    while (ticks.count() < 20) {
        QVERIFY(ticks.wait()); // QTRY_VERIFY would hold up both timers
    }
    QVERIFY2(monitor.polls <= ticks.count() + 3, qPrintable(QString::number(monitor.polls)));
}

void tst_GUI_LINModeMonitor::monitorsTwelveIdentifiers()
{
    VirtualMonitor monitor(Buses);
    QVERIFY(monitor.openMaster());
    const QVector<quint8> watched = {0x00, 0x01, 0x08, 0x10, 0x12, 0x1F, 0x20, 0x2A, 0x30, 0x3C, 0x3D, 0x3F};
    for (int i = 0; i < watched.size(); ++i) {
        monitor.user.tick(i + 1, watched.at(i));
    }
    monitor.user.click("btn_start");
    for (quint8 id = 0; id < 64; ++id) {
        QVERIFY(monitor.send(id, "1122"));
    }
    QStringList expected;
    for (const quint8 id : watched) {
        expected.append(QStringLiteral("%1[%2]")
                            .arg(id, 2, 16, QLatin1Char('0'))
                            .arg(calcPID(id), 2, 16, QLatin1Char('0'))
                            .toUpper());
    }
    QTRY_COMPARE(monitor.user.rows(), 12);
    QCOMPARE(monitor.user.column(Id), expected);
    QCOMPARE(monitor.user.column(State), QVector<QString>(12, QStringLiteral("V1")).toList());
    monitor.user.click("btn_stop");
}

void tst_GUI_LINModeMonitor::monitorsTheBus()
{
    VirtualMonitor monitor(Buses);
    QVERIFY(monitor.openMaster());
    monitor.user.choose("cbx_mode", 1);
    monitor.user.click("btn_start");
    for (quint8 id = 0; id < 64; ++id) {
        QVERIFY(monitor.send(id, "010203"));
    }
    QTRY_COMPARE(monitor.user.rows(), 64);
    QCOMPARE(monitor.user.cell(63, Id), QStringLiteral("3F[BF]"));
    monitor.user.click("btn_stop");
    QVERIFY(monitor.send(1, "AA"));
    monitor.user.click("btn_start"); // what was sent meanwhile is not seen
    QVERIFY(monitor.send(2, "BB"));
    QTRY_VERIFY(monitor.user.rows() > 0);
    QCOMPARE(monitor.user.column(Data), QStringList{QStringLiteral("BB ")});
}

void tst_GUI_LINModeMonitor::answersOfSlavesAreSeen()
{
    VirtualMonitor monitor(Buses);
    QVERIFY(monitor.openMaster());
    monitor.user.tick(7, 0x21);
    monitor.user.click("btn_start");
    for (const quint8 id : {quint8(0x20), quint8(0x21), quint8(0x22)}) { // silent, answered, silent
        VCI_LIN_OBJ request{};
        request.ID = id;
        QCOMPARE(monitor.manager.receiveLIN(0, 1, &request), CAN_OK);
    }
    QTRY_COMPARE(monitor.user.rows(), 1);
    QCOMPARE(monitor.user.cell(0, Id), QStringLiteral("21[61]"));
    QCOMPARE(monitor.user.cell(0, Data), QStringLiteral("01 02 "));
}

void tst_GUI_LINModeMonitor::wrongParity()
{
    VirtualMonitor monitor(WrongParity);
    monitor.user.tick(1, 0x01);
    monitor.user.click("btn_start");
    QTRY_VERIFY(monitor.user.rows() >= 2);
    QCOMPARE(monitor.user.cell(1, Id), QStringLiteral("01[81]"));
}

void tst_GUI_LINModeMonitor::wrongBaudRate()
{
    VirtualMonitor monitor(WrongParity, linChannel(0, 0, 9600));
    monitor.user.choose("cbx_mode", 1);
    monitor.user.click("btn_start");
    TickTimer later;
    QSignalSpy ticks(&later, &TickTimer::sig_tick);
    later.start(20); // the traffic's period
    QTRY_VERIFY(ticks.count() >= 10);
    QCOMPARE(monitor.user.rows(), 0);
    monitor.user.click("btn_stop");
    monitor.user.tab.findChild<QSpinBox *>(QStringLiteral("spx_baudrate"))->setValue(19200);
    monitor.user.clickTab("btn_set");
    QCOMPARE(monitor.user.lastMessage(), QStringLiteral("Switchover successful 1"));
    monitor.user.click("btn_start");
    QTRY_VERIFY(monitor.user.rows() >= 2);
}

void tst_GUI_LINModeMonitor::checksumTypeChangedOnTheFly()
{
    VirtualMonitor monitor(Buses);
    QVERIFY(monitor.openMaster());
    monitor.user.choose("cbx_mode", 1);
    monitor.user.click("btn_start");
    QVERIFY(monitor.send(0x12, "01A2"));
    QTRY_COMPARE(monitor.user.column(State), QStringList{QStringLiteral("V1")});
    monitor.user.click("btn_stop");
    auto *checksum = monitor.user.tab.findChild<QComboBox *>(QStringLiteral("cbx_checksum"));
    checksum->setCurrentIndex(checksum->findData(1));
    monitor.user.clickTab("btn_set");
    QCOMPARE(monitor.user.lastMessage(), QStringLiteral("Switchover successful 1"));
    QCOMPARE(monitor.user.column(State), QStringList{QStringLiteral("V1")}); // as it was judged
    monitor.user.click("btn_start");
    QVERIFY(monitor.send(0x12, "01A2"));
    QTRY_COMPARE(monitor.user.column(State), QStringList{QStringLiteral("Error checksum(V1)")});
}

void tst_GUI_LINModeMonitor::adapterRefusesTheMode()
{
    const VirtualMonitor monitor(Refusing);
    monitor.user.click("btn_start");
    QCOMPARE(monitor.user.lastMessage(), QStringLiteral("Communication error 4"));
    QVERIFY(!monitor.user.page.isRunning());
    QVERIFY(monitor.user.isEnabled("btn_start"));
    QCOMPARE(monitor.user.announced.size(), 0);
}

void tst_GUI_LINModeMonitor::deviceVanishes()
{
    VirtualMonitor monitor(Unplugged);
    monitor.user.choose("cbx_mode", 1);
    monitor.user.click("btn_start");
    QTRY_VERIFY(monitor.user.rows() > 0);
    QString text;
    QTRY_VERIFY(monitor.manager.readDeviceInfo(0, text, text, text) != CAN_OK);
    TickTimer later;
    QSignalSpy ticks(&later, &TickTimer::sig_tick);
    later.start(5);
    QTRY_VERIFY(ticks.count() >= 5);
    QVERIFY(monitor.user.page.isRunning());
    QCOMPARE(monitor.user.messages.count(), 0);
    const int rows = monitor.user.rows();
    monitor.user.click("btn_stop");
    QCOMPARE(monitor.user.announced, QStringList({QStringLiteral("3 0"), QStringLiteral("3 1")}));
    monitor.user.click("btn_start");
    QCOMPARE(monitor.user.lastMessage(), QStringLiteral("Communication error 4"));
    QCOMPARE(monitor.user.rows(), rows); // what was seen stays
}

void tst_GUI_LINModeMonitor::tabClosedWhileRunning()
{
    const AdapterFolder folder(WrongParity);
    CANCommunication manager(std::make_unique<CANAPI>(QStringLiteral(X9_VIRTUAL_ADAPTER)));
    {
        const LINTabUnderTest<GUI_LINModeMonitor> user(manager, "btn_modeMonitor");
        user.choose("cbx_mode", 1);
        user.click("btn_start");
        QTRY_VERIFY(user.rows() > 0);
    }
    QVERIFY(!manager.isDeviceOpen(0));
}

X9_GUI_TEST(tst_GUI_LINModeMonitor)
#include "tst_GUI_LINModeMonitor.moc"
