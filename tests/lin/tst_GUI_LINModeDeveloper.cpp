#include "device/CANAPI.h"
#include "device/TickTimer.h"
#include "lin/GUI_LINModeDeveloper.h"
#include "lin/LINCapture.h"
#include "lin/LINRecords.h"
#include "tests/lin/LINTabUnderTest.h"
#include "tests/lin/LINTestFrames.h"
#include "tests/support/AdapterFolder.h"
#include "tests/support/SaveDialogDriver.h"
#include "tests/support/ScriptedAdapter.h"
#include "tests/support/TestProgram.h"

#include <QCheckBox>
#include <QFile>
#include <QFileDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QStackedWidget>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

#if defined(Q_OS_UNIX)
#include <sys/stat.h>
#endif

#include <algorithm>
#include <cstdlib>
#include <numeric>

namespace {

// Channel 1 listens to what channel 0 sends. Of the slaves, one is silent and one sits on the reserved identifier.
const QByteArray Buses = R"({
  "lin_buses": [{"name": "lin", "slaves": [
    {"id": "0x05", "data": "0102", "checksum": "classic"},
    {"id": "0x10", "data": "A0A1A2A3A4A5A6A7", "checksum": "enhanced"},
    {"id": "0x11", "data": "FF", "present": false},
    {"id": "0x20", "data": "55AA", "checksum": "classic", "wrong_checksum": true},
    {"id": "0x3E", "data": "00", "checksum": "classic"},
    {"id": "0x3F", "data": "77", "checksum": "classic"}
  ]}],
  "devices": [{"model": "X9FC-1", "lin": [{"bus": "lin"}, {"bus": "lin"}]}]
})";

const QByteArray Refusing = R"({
  "devices": [{"model": "X9FC-1", "lin": [{"faults": {"mode_refused": [4]}}]}]
})";

// Pulled out a second and a half after it was opened.
const QByteArray Unplugged = R"({
  "lin_buses": [{"name": "lin", "slaves": [{"id": 0, "data": "01"}, {"id": "0x3E", "data": "02"}]}],
  "devices": [{"model": "X9FC-1", "lin": [{"bus": "lin"}], "faults": {"vanish_after_ms": 1500}}]
})";

const QByteArray Titles = "No.,System Time,Direction,ID[PID],Length,Data(Hex),Check(Hex),State\n";
const QByteArray ThreeFrames = Titles + "1,10:00:00.000,Revice,10[50],2,01 A2 ,5C,V1\n"
                                        "2,10:00:00.030,Send,11[11],1,FF ,00,V1\n"
                                        "3,10:00:00.060,Revice,3C[3C],0,,FF,V1\n";
const char SendsTen[] = "KQ_TransmitLIN 4 0 0 {2 16 01a2000000000000 0}";
const char SendsEleven[] = "KQ_TransmitLIN 4 0 0 {1 17 ff00000000000000 0}";
const char SendsThreeC[] = "KQ_TransmitLIN 4 0 0 {0 60 0000000000000000 0}";

QStringList texts(std::initializer_list<const char *> list)
{
    QStringList result;
    for (const char *text : list) {
        result.append(QLatin1String(text));
    }
    return result;
}

/// A tab with the developer page in front, and the files it imports.
class Developer : public LINTabUnderTest<GUI_LINModeDeveloper>
{
public:
    Developer(CANCommunication &communication, const ChannelParam &param)
        : LINTabUnderTest(communication, "btn_modeDeveloper", param)
        , results(&page, &GUI_LINModeDeveloper::sig_addRowItems)
    {
    }

    /// The page's timer strikes; other events have to wait.
    void strike(int times = 1)
    {
        for (int i = 0; i < times && page.isRunning(); ++i) {
            QMetaObject::invokeMethod(&page, "slot_sendTimeoutEvent", Qt::DirectConnection);
        }
    }
    /// Strikes until the run ends. The number of strikes, -1 if it does not end.
    int finish()
    {
        for (int strikes = 0; strikes < 100000; ++strikes) {
            if (!page.isRunning()) {
                return strikes;
            }
            strike();
        }
        return -1;
    }
    /// Chooses a file with this content in the dialog; reading may go on.
    bool choose(const QByteArray &content)
    {
        const QString path = folder.filePath(QStringLiteral("import.csv"));
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush() &&
               choosePath(path);
    }
    bool choosePath(const QString &path)
    {
        const SaveDialogDriver dialog(path);
        click("btn_importData");
        return QTest::qWaitFor(
            [&dialog, this] { return dialog.isAnswered() && page.findChild<QFileDialog *>() == nullptr; });
    }
    bool import(const QByteArray &content)
    {
        return choose(content) && QTest::qWaitFor([this] { return isEnabled("btn_importData"); });
    }
    QString label(const char *name) const { return find<QLabel>(name)->text(); }
    /// "current/all cycle"
    QString status() const
    {
        return label("lbl_currentCount") + QLatin1Char('/') + label("lbl_allCount") + QLatin1Char(' ') +
               label("lbl_cycle");
    }
    int progress() const { return find<QProgressBar>("progressBar")->value(); }
    bool isListPageShown() const
    {
        return tab.findChild<QStackedWidget *>(QStringLiteral("widget_content"))->currentIndex() == 0;
    }
    QVector<CTableViewLIN::DataObject> result() const
    {
        return results.last().first().value<QVector<CTableViewLIN::DataObject>>();
    }

    QTemporaryDir folder;
    QSignalSpy results;
};

/// On an adapter where the slaves named answer with their identifier and 0x77 for a checksum.
class ScriptedDeveloper
{
public:
    explicit ScriptedDeveloper(const ChannelParam &param = linChannel())
        : manager(adapter.table())
        , user(manager, param)
    {
        adapter.onCall("KQ_ReceiveLIN", [this] {
            calls.append(adapter.takeCalls());
            const auto id = static_cast<quint8>(requestedId(calls.last()));
            VCI_LIN_OBJ answer{};
            if (slaves.contains(id)) {
                answer = linRecord(id, QByteArray(1, static_cast<char>(id)));
                answer.Checksum = 0x77;
            }
            adapter.setLINFrame(answer);
        });
        adapter.takeCalls();
    }
    /// Of "KQ_ReceiveLIN 4 0 0 {00ID...}".
    static int requestedId(const QString &call)
    {
        return call.mid(call.indexOf(QLatin1Char('{')) + 3, 2).toInt(nullptr, 16);
    }
    QVector<int> requestedIds() const
    {
        QVector<int> ids;
        for (const QString &call : calls) {
            if (call.startsWith(QLatin1String("KQ_ReceiveLIN "))) {
                ids.append(requestedId(call));
            }
        }
        return ids;
    }

    ScriptedAdapter adapter;
    QVector<quint8> slaves;
    QStringList calls; ///< up to the last request
    CANCommunication manager;
    Developer user;
};

/// On the virtual adapter.
class VirtualDeveloper
{
public:
    explicit VirtualDeveloper(const QByteArray &json, const ChannelParam &param = linChannel())
        : folder(json)
        , manager(std::make_unique<CANAPI>(QStringLiteral(X9_VIRTUAL_ADAPTER)))
        , user(manager, param)
    {
    }
    ~VirtualDeveloper() { manager.closeLIN(0, 1); }
    /// Opens the other channel as a monitor.
    bool openMonitor() { return manager.openLIN(linChannel(1)) == CAN_OK && manager.changeLINMode(0, 1, 3) == CAN_OK; }
    /// What the monitor has seen since the last time: "ID data checksum".
    QStringList seen()
    {
        QStringList frames;
        VCI_LIN_OBJ record{};
        while (manager.receiveLINBySlave(0, 1, &record) == CAN_OK && record.DataLen != 0) {
            const auto frame = monitoredLINFrame(record, QString());
            frames.append(QStringLiteral("%1 %2 %3")
                              .arg(frame.ID, 2, 16, QLatin1Char('0'))
                              .arg(QString::fromLatin1(frame.data.toHex()))
                              .arg(frame.checksum, 2, 16, QLatin1Char('0')));
            record = {};
        }
        return frames;
    }
    bool isGone()
    {
        QString text;
        return manager.readDeviceInfo(0, text, text, text) != CAN_OK;
    }

    AdapterFolder folder;
    CANCommunication manager;
    Developer user;
};

/// Strikes like the page's own timer, held up by the same calls, and known not to make up for them.
class Reference
{
public:
    Reference()
        : ticks(&timer, &TickTimer::sig_tick)
    {
        timer.setMakingUp(false);
    }
    TickTimer timer;
    QSignalSpy ticks;
};

} // namespace

class tst_GUI_LINModeDeveloper : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }
    static void cleanup() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

    static void form();
    static void numbersWrap();

    static void calculates_data();
    static void calculates();
    static void calculatorNeedsAllBytes();
    static void calculatorFollowsTheTab();
    static void calculatorTakesHexadecimalOnly();
    static void calculatorIsUsableAtAllTimes();

    static void scanStarts();
    static void scanOfASilentBus();
    static void scanFinds();
    static void scanNeverAsksTheReservedIdentifier();
    static void failedRequestsAreSilence();
    static void scanCanBeRepeated();
    static void scanReplacesImportedData();
    static void scanHasNoStop();
    static void scanRefused();

    static void asksForTheFile();
    static void imports();
    static void cancelledImport();
    static void fileThatCannotBeOpened();
    static void importFailures_data();
    static void importFailures();
    static void windowStaysAliveWhileImporting();
    static void importCanBeGivenUp();
    static void otherModeWhileImporting();

    static void playbackNeedsFrames();
    static void playbackRefused();
    static void playback();
    static void playbackOfOneFrame();
    static void manyPasses();
    static void maskedFramesUseTheirSlot();
    static void masksStay();
    static void playbackStops();
    static void playbackStartsFromTheFront();
    static void failedTransmitsAreIgnored();
    static void playsMixedDirections();

    static void locksControlsWhileRunning();
    static void othersLockStopToo();
    static void paces();
    static void slowCallsDoNotPileUp_data();
    static void slowCallsDoNotPileUp();

    static void recognisesSlaves();
    static void wrongBaudRate();
    static void playsOntoTheBus();
    static void checksumTypeChangedOnTheFly();
    static void adapterRefusesTheMode();
    static void deviceVanishesDuringAScan();
    static void deviceVanishesDuringPlayback();
    static void tabClosed_data();
    static void tabClosed();
};

void tst_GUI_LINModeDeveloper::form()
{
    const ScriptedDeveloper developer;
    const Developer &user = developer.user;
    const auto range = [&user](const char *name) {
        const auto *box = user.find<QSpinBox>(name);
        return QStringLiteral("%1 to %2: %3").arg(box->minimum()).arg(box->maximum()).arg(box->value());
    };
    QCOMPARE(range("sbx_ID"), QStringLiteral("0 to 63: 0"));
    QCOMPARE(range("sbx_length"), QStringLiteral("1 to 8: 1"));
    QCOMPARE(range("sbx_interval"), QStringLiteral("30 to 5000: 30"));
    QCOMPARE(range("sbx_count"), QStringLiteral("1 to 65535: 1"));
    for (const char *name : {"sbx_ID1", "sbx_ID2", "sbx_ID3"}) {
        QCOMPARE(range(name), QStringLiteral("0 to 63: 0"));
    }
    for (const char *name : {"sbx_ID", "sbx_ID1", "sbx_ID2", "sbx_ID3"}) {
        user.setNumber(name, 0x3B);
        QCOMPARE(user.find<QSpinBox>(name)->text(), QStringLiteral("3B"));
    }
    QVERIFY(user.find("sbx_ID4") == nullptr);
    for (int pair = 1; pair <= 3; ++pair) {
        const auto *check = user.find<QCheckBox>(qPrintable(QStringLiteral("chbx_ID%1").arg(pair)));
        QCOMPARE(check->text(), QStringLiteral("ID%1:").arg(pair));
        QVERIFY(!check->isChecked());
    }
    const auto *bar = user.find<QProgressBar>("progressBar");
    QCOMPARE(bar->minimum(), 0);
    QCOMPARE(bar->maximum(), 62);
    QCOMPARE(bar->value(), 0);
    QCOMPARE(user.status(), QStringLiteral("0/0 0Cycle"));
    QCOMPARE(user.button("btn_start"), QStringLiteral("Start tBtnStyle_1"));
    QCOMPARE(user.button("btn_stop"), QStringLiteral("Stop tBtnStyle_4"));
    QCOMPARE(user.button("btn_calculate"), QStringLiteral("Calculation parameter tBtnStyle_3"));
    QCOMPARE(user.button("btn_scanID"), QStringLiteral("Automatic slave recognition tBtnStyle_3"));
    QCOMPARE(user.button("btn_importData"), QStringLiteral("Import data tBtnStyle_3"));
    QStringList captions;
    for (const QLabel *label : user.page.findChildren<QLabel *>()) {
        captions.append(label->text());
    }
    for (const QGroupBox *group : user.page.findChildren<QGroupBox *>()) {
        captions.append(group->title());
    }
    for (const char *caption : {"Length:", "Data:", "PID:", "Checksum:", "Timed receiving interval(ms):",
                                "Playback count:", "Send status:", "Mask send ID", "Communication parameter area"}) {
        QVERIFY2(captions.contains(QLatin1String(caption)), caption);
    }
    for (const char *name : {"lbx_PID", "lbx_checksum"}) {
        QVERIFY(user.find<QLineEdit>(name)->text().isEmpty());
    }
}

void tst_GUI_LINModeDeveloper::numbersWrap()
{
    const ScriptedDeveloper developer;
    for (const char *name : {"sbx_length", "sbx_interval", "sbx_count"}) {
        auto *box = developer.user.find<QSpinBox>(name);
        box->setValue(box->maximum());
        box->stepUp();
        QCOMPARE(box->value(), box->minimum());
    }
}

void tst_GUI_LINModeDeveloper::calculates_data()
{
    QTest::addColumn<int>("checksumType");
    QTest::addColumn<QString>("checksum");
    QTest::newRow("standard") << 0 << QStringLiteral("FF");
    QTest::newRow("enhanced") << 1 << QStringLiteral("C3");
}

void tst_GUI_LINModeDeveloper::calculates()
{
    QFETCH(int, checksumType);
    QFETCH(QString, checksum);
    const ScriptedDeveloper developer(linChannel(0, static_cast<quint8>(checksumType)));
    const Developer &user = developer.user;
    user.setNumber("sbx_ID", 0x3C);
    user.setNumber("sbx_length", 8);
    QTest::keyClicks(user.find<QLineEdit>("lbx_data"), QStringLiteral("00 00 00 00 00 00 00 00"));
    user.click("btn_calculate");
    QCOMPARE(user.find<QLineEdit>("lbx_PID")->text(), QStringLiteral("3C"));
    QCOMPARE(user.find<QLineEdit>("lbx_checksum")->text(), checksum);
    QCOMPARE(user.messages.count(), 0);
    user.setNumber("sbx_ID", 0x08); // both results take two digits
    user.setNumber("sbx_length", 1);
    user.find<QLineEdit>("lbx_data")->setText(checksumType == 0 ? QStringLiteral("F0") : QStringLiteral("e8"));
    user.click("btn_calculate");
    QCOMPARE(user.find<QLineEdit>("lbx_PID")->text(), QStringLiteral("08"));
    QCOMPARE(user.find<QLineEdit>("lbx_checksum")->text(), QStringLiteral("0F"));
}

void tst_GUI_LINModeDeveloper::calculatorNeedsAllBytes()
{
    const ScriptedDeveloper developer;
    const Developer &user = developer.user;
    user.setNumber("sbx_length", 2);
    QTest::keyClicks(user.find<QLineEdit>("lbx_data"), QStringLiteral("0102"));
    user.click("btn_calculate");
    const QString pid = user.find<QLineEdit>("lbx_PID")->text();
    const QString checksum = user.find<QLineEdit>("lbx_checksum")->text();
    QCOMPARE(pid, QStringLiteral("80"));
    user.setNumber("sbx_length", 8);
    user.setNumber("sbx_ID", 1);
    user.click("btn_calculate");
    QCOMPARE(user.lastMessage(), QStringLiteral("The data is not valid! 4"));
    QCOMPARE(user.find<QLineEdit>("lbx_PID")->text(), pid);
    QCOMPARE(user.find<QLineEdit>("lbx_checksum")->text(), checksum);
}

void tst_GUI_LINModeDeveloper::calculatorFollowsTheTab()
{
    const ScriptedDeveloper developer;
    const Developer &user = developer.user;
    user.find<QLineEdit>("lbx_data")->setText(QStringLiteral("00"));
    user.click("btn_calculate");
    QCOMPARE(user.find<QLineEdit>("lbx_checksum")->text(), QStringLiteral("FF"));
    auto *checksum = user.tab.findChild<QComboBox *>(QStringLiteral("cbx_checksum"));
    checksum->setCurrentIndex(checksum->findData(1));
    user.click("btn_calculate");
    QCOMPARE(user.find<QLineEdit>("lbx_checksum")->text(), QStringLiteral("FF")); // not yet applied
    user.clickTab("btn_set");
    user.click("btn_calculate");
    QCOMPARE(user.find<QLineEdit>("lbx_checksum")->text(), QStringLiteral("7F"));
}

void tst_GUI_LINModeDeveloper::calculatorTakesHexadecimalOnly()
{
    const ScriptedDeveloper developer;
    auto *data = developer.user.find<QLineEdit>("lbx_data");
    QTest::keyClicks(data, QStringLiteral("0x1g A-"));
    QCOMPARE(data->text(), QStringLiteral("1 A"));
}

void tst_GUI_LINModeDeveloper::calculatorIsUsableAtAllTimes()
{
    ScriptedDeveloper developer;
    Developer &user = developer.user;
    user.find<QLineEdit>("lbx_data")->setText(QStringLiteral("00"));
    const QStringList controls = texts({"sbx_ID", "sbx_length", "lbx_data", "btn_calculate"});
    const auto areUsable = [&user, &controls] {
        return std::all_of(controls.begin(), controls.end(),
                           [&user](const QString &name) { return user.isEnabled(qPrintable(name)); });
    };
    user.click("btn_scanID");
    QVERIFY(areUsable());
    user.click("btn_calculate");
    QCOMPARE(user.find<QLineEdit>("lbx_checksum")->text(), QStringLiteral("FF"));
    user.finish();
    QVERIFY(areUsable());
    user.page.slot_changeBtnEnableState(LINModeList, false);
    QVERIFY(areUsable());
}

void tst_GUI_LINModeDeveloper::scanStarts()
{
    ScriptedDeveloper developer;
    developer.user.click("btn_scanID");
    QCOMPARE(developer.adapter.takeCalls(), texts({"KQ_ChangeLINMode 4 0 0 4"})); // the first request comes with a tick
    QCOMPARE(developer.user.announced, texts({"4 0"}));
    QCOMPARE(developer.user.progress(), 0);
    developer.user.strike();
    QCOMPARE(developer.calls, texts({"KQ_ReceiveLIN 4 0 0 {0000000000000000000000}"}));
    developer.user.strike(6); // once more for 1
    QCOMPARE(developer.calls.last(), QStringLiteral("KQ_ReceiveLIN 4 0 0 {0001000000000000000000}"));
    QCOMPARE(developer.user.progress(), 1);
}

void tst_GUI_LINModeDeveloper::scanOfASilentBus()
{
    ScriptedDeveloper developer;
    Developer &user = developer.user;
    user.click("btn_scanID");
    QCOMPARE(user.finish(), 63 * 6);
    QCOMPARE(user.announced, texts({"4 0", "4 1"}));
    QCOMPARE(user.results.count(), 1);
    QCOMPARE(user.result().size(), 0);
    QVERIFY(user.isListPageShown());
    QCOMPARE(user.progress(), 62);
    QCOMPARE(user.messages.count(), 0);
}

void tst_GUI_LINModeDeveloper::scanFinds()
{
    ScriptedDeveloper developer;
    Developer &user = developer.user;
    developer.slaves = {0x00, 0x10, 0x3E};
    user.click("btn_scanID");
    QCOMPARE(user.finish(), 60 * 6 + 3);
    QCOMPARE(user.results.count(), 1);
    const auto found = user.result();
    QCOMPARE(found.size(), 3);
    const QVector<quint8> pids = {0x80, 0x50, 0xFE};
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(found.at(i).direction, quint8(1));
        QCOMPARE(found.at(i).ID, developer.slaves.at(i));
        QCOMPARE(found.at(i).PID, pids.at(i));
        QCOMPARE(found.at(i).data, QByteArray(1, static_cast<char>(developer.slaves.at(i))));
        QCOMPARE(found.at(i).checksum, 0x77U);
        QCOMPARE(found.at(i).time.size(), 12);
    }
    QCOMPARE(user.label("lbl_allCount"), QStringLiteral("3"));
    QVERIFY(user.isListPageShown());
}

void tst_GUI_LINModeDeveloper::scanNeverAsksTheReservedIdentifier()
{
    ScriptedDeveloper developer;
    for (quint8 id = 0; id < 64; ++id) {
        developer.slaves.append(id);
    }
    developer.user.click("btn_scanID");
    QCOMPARE(developer.user.finish(), 63);
    QVector<int> expected(63);
    std::iota(expected.begin(), expected.end(), 0);
    QCOMPARE(developer.requestedIds(), expected);
    QCOMPARE(developer.user.result().size(), 63);
}

void tst_GUI_LINModeDeveloper::failedRequestsAreSilence()
{
    ScriptedDeveloper developer;
    developer.slaves = {0x01};
    developer.adapter.answer("KQ_ReceiveLIN", 0);
    developer.user.click("btn_scanID");
    QCOMPARE(developer.user.finish(), 63 * 6);
    QCOMPARE(developer.user.result().size(), 0);
    QCOMPARE(developer.user.messages.count(), 0);
}

void tst_GUI_LINModeDeveloper::scanCanBeRepeated()
{
    ScriptedDeveloper developer;
    Developer &user = developer.user;
    developer.slaves = {0x07};
    user.click("btn_scanID");
    user.finish();
    user.clickTab("btn_modeDeveloper");
    developer.slaves = {0x09};
    user.click("btn_scanID");
    QCOMPARE(user.progress(), 0);
    QCOMPARE(user.label("lbl_allCount"), QStringLiteral("0"));
    QCOMPARE(user.finish(), 62 * 6 + 1);
    QCOMPARE(user.results.count(), 2);
    QCOMPARE(user.result().size(), 1);
    QCOMPARE(user.result().first().ID, quint8(0x09));
}

void tst_GUI_LINModeDeveloper::scanReplacesImportedData()
{
    ScriptedDeveloper developer;
    Developer &user = developer.user;
    QVERIFY(user.import(ThreeFrames));
    developer.slaves = {0x07};
    user.click("btn_scanID");
    user.finish();
    user.clickTab("btn_modeDeveloper");
    developer.adapter.takeCalls();
    user.click("btn_start");
    QCOMPARE(user.finish(), 1);
    QCOMPARE(developer.adapter.takeCalls(),
             texts({"KQ_ChangeLINMode 4 0 0 4", "KQ_TransmitLIN 4 0 0 {1 7 0700000000000000 0}"}));
}

void tst_GUI_LINModeDeveloper::scanHasNoStop()
{
    ScriptedDeveloper developer;
    Developer &user = developer.user;
    user.click("btn_scanID");
    QVERIFY(!user.isEnabled("btn_stop"));
    user.click("btn_stop");
    QVERIFY(user.page.isRunning());
    user.finish();
    QVERIFY(user.isEnabled("btn_stop"));
    user.clickTab("btn_modeDeveloper");
    user.click("btn_stop"); // nothing runs
    QCOMPARE(user.announced, texts({"4 0", "4 1"}));
}

void tst_GUI_LINModeDeveloper::scanRefused()
{
    ScriptedDeveloper developer;
    Developer &user = developer.user;
    QVERIFY(user.import(ThreeFrames));
    developer.adapter.answer("KQ_ChangeLINMode", 0);
    user.click("btn_scanID");
    QCOMPARE(user.lastMessage(), QStringLiteral("Communication error 4"));
    QVERIFY(!user.page.isRunning());
    QCOMPARE(user.announced, QStringList());
    QVERIFY(user.isEnabled("btn_scanID"));
    QVERIFY(user.isEnabled("btn_stop"));
    QCOMPARE(user.label("lbl_allCount"), QStringLiteral("3"));
}

void tst_GUI_LINModeDeveloper::asksForTheFile()
{
    const ScriptedDeveloper developer;
    const SaveDialogDriver dialog{QString()};
    developer.user.click("btn_importData");
    QTRY_VERIFY(dialog.isAnswered());
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Open CSV File"));
    QCOMPARE(dialog.nameFilters(), QStringList{QStringLiteral("CSV files (*.csv)")});
    QCOMPARE(dialog.folder(), QDir::currentPath());
}

void tst_GUI_LINModeDeveloper::imports()
{
    ScriptedDeveloper developer;
    QVERIFY(developer.user.import(ThreeFrames));
    QCOMPARE(developer.user.status(), QStringLiteral("0/3 0Cycle"));
    QVERIFY(developer.user.import(Titles + "1,,,3F[BF],8,0102030405060708,,\n"));
    QCOMPARE(developer.user.status(), QStringLiteral("0/1 0Cycle"));
    QCOMPARE(developer.user.messages.count(), 0);
}

void tst_GUI_LINModeDeveloper::cancelledImport()
{
    ScriptedDeveloper developer;
    QVERIFY(developer.user.import(ThreeFrames));
    QVERIFY(developer.user.choosePath(QString()));
    QCOMPARE(developer.user.label("lbl_allCount"), QStringLiteral("3"));
    QCOMPARE(developer.user.messages.count(), 0);
}

void tst_GUI_LINModeDeveloper::fileThatCannotBeOpened()
{
#if defined(Q_OS_UNIX)
    ScriptedDeveloper developer;
    QVERIFY(developer.user.import(ThreeFrames));
    const QString path = developer.user.folder.filePath(QStringLiteral("pipe.csv"));
    QCOMPARE(mkfifo(qPrintable(path), 0600), 0); // would block when opened
    QVERIFY(developer.user.choosePath(path));
    QCOMPARE(developer.user.label("lbl_allCount"), QStringLiteral("3"));
    QCOMPARE(developer.user.messages.count(), 0);
    QVERIFY(developer.user.isEnabled("btn_start"));
#endif
}

void tst_GUI_LINModeDeveloper::importFailures_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("titles only") << Titles;
    QTest::newRow("identifier") << ThreeFrames + "4,,,zz[50],2,0102,,\n";
    QTest::newRow("length") << ThreeFrames + "4,,,10[50],two,0102,,\n";
    QTest::newRow("fields missing") << ThreeFrames + "4,,\n";
    QTest::newRow("no text") << QByteArray("\0\xFF\n\0\xFF\n", 6);
}

void tst_GUI_LINModeDeveloper::importFailures()
{
    QFETCH(QByteArray, content);
    ScriptedDeveloper developer;
    Developer &user = developer.user;
    QVERIFY(user.import(ThreeFrames));
    QVERIFY(user.import(content));
    QCOMPARE(user.lastMessage(), QStringLiteral("Import failure! 4"));
    QCOMPARE(user.label("lbl_allCount"), QStringLiteral("0"));
    user.click("btn_start");
    QCOMPARE(user.lastMessage(), QStringLiteral("Please import data first 4"));
}

namespace {
QByteArray hugeFile()
{
    return Titles + QByteArray("1,10:00:00.000,Revice,10[50],8,01 02 03 04 05 06 07 08 ,00,V1\n").repeated(1000000);
}
} // namespace

void tst_GUI_LINModeDeveloper::windowStaysAliveWhileImporting()
{
    ScriptedDeveloper developer;
    Developer &user = developer.user;
    user.find<QLineEdit>("lbx_data")->setText(QStringLiteral("00"));
    QVERIFY(user.import(ThreeFrames));
    QTimer heart;
    QSignalSpy beats(&heart, &QTimer::timeout);
    QVERIFY(user.choose(hugeFile()));
    heart.start(0);
    QVERIFY(!user.isEnabled("btn_importData"));
    QVERIFY(!user.isEnabled("btn_scanID"));
    QVERIFY(!user.isEnabled("btn_start"));
    QCOMPARE(user.label("lbl_allCount"), QStringLiteral("0"));
    user.click("btn_start");
    user.click("btn_scanID");
    QVERIFY(!user.page.isRunning());
    QTRY_VERIFY(beats.count() >= 2);
    QVERIFY(!user.isEnabled("btn_start")); // beats come between the slices
    user.click("btn_calculate");
    QCOMPARE(user.find<QLineEdit>("lbx_PID")->text(), QStringLiteral("80"));
    QTRY_COMPARE_WITH_TIMEOUT(user.label("lbl_allCount"), QStringLiteral("1000000"), 60000);
    for (const char *name : {"btn_importData", "btn_scanID", "btn_start"}) {
        QVERIFY2(user.isEnabled(name), name);
    }
    QCOMPARE(user.messages.count(), 0);
}

void tst_GUI_LINModeDeveloper::importCanBeGivenUp()
{
    ScriptedDeveloper developer;
    Developer &user = developer.user;
    QVERIFY(user.choose(hugeFile()));
    QVERIFY(!user.isEnabled("btn_start"));
    user.click("btn_stop");
    for (const char *name : {"btn_importData", "btn_scanID", "btn_start"}) {
        QVERIFY2(user.isEnabled(name), name);
    }
    user.click("btn_start");
    QCOMPARE(user.lastMessage(), QStringLiteral("Please import data first 4"));
    QCOMPARE(user.announced, QStringList());
}

void tst_GUI_LINModeDeveloper::otherModeWhileImporting()
{
    ScriptedDeveloper developer;
    Developer &user = developer.user;
    QVERIFY(user.choose(hugeFile()));
    user.page.slot_changeBtnEnableState(LINModeMonitor, false);
    QVERIFY(!user.isEnabled("sbx_count"));
    user.page.slot_changeBtnEnableState(LINModeMonitor, true);
    QVERIFY(user.isEnabled("sbx_count"));
    QVERIFY(!user.isEnabled("btn_start")); // still reading
    user.page.slot_changeBtnEnableState(LINModeMonitor, false);
    QTRY_COMPARE_WITH_TIMEOUT(user.label("lbl_allCount"), QStringLiteral("1000000"), 60000);
    QVERIFY(!user.isEnabled("btn_start")); // still another mode
    user.page.slot_changeBtnEnableState(LINModeMonitor, true);
    QVERIFY(user.isEnabled("btn_start"));
}

void tst_GUI_LINModeDeveloper::playbackNeedsFrames()
{
    ScriptedDeveloper developer;
    developer.user.click("btn_start");
    QCOMPARE(developer.user.lastMessage(), QStringLiteral("Please import data first 4"));
    QCOMPARE(developer.adapter.takeCalls(), QStringList());
    QCOMPARE(developer.user.announced, QStringList());
}

void tst_GUI_LINModeDeveloper::playbackRefused()
{
    ScriptedDeveloper developer;
    QVERIFY(developer.user.import(ThreeFrames));
    developer.adapter.answer("KQ_ChangeLINMode", 0);
    developer.user.click("btn_start");
    QCOMPARE(developer.user.lastMessage(), QStringLiteral("Communication error 4"));
    QCOMPARE(developer.user.announced, QStringList());
    QVERIFY(!developer.user.page.isRunning());
    QVERIFY(developer.user.isEnabled("btn_start"));
}

void tst_GUI_LINModeDeveloper::playback()
{
    ScriptedDeveloper developer;
    Developer &user = developer.user;
    QVERIFY(user.import(ThreeFrames));
    user.setNumber("sbx_count", 2);
    user.click("btn_start");
    QCOMPARE(developer.adapter.takeCalls(), texts({"KQ_ChangeLINMode 4 0 0 4"}));
    QCOMPARE(user.announced, texts({"4 0"}));
    QStringList status = {user.status()};
    for (int tick = 0; tick < 6; ++tick) {
        QVERIFY(user.page.isRunning());
        user.strike();
        status.append(user.status());
    }
    QVERIFY(!user.page.isRunning());
    QCOMPARE(status,
             texts({"0/3 0Cycle", "2/3 0Cycle", "3/3 0Cycle", "1/3 1Cycle", "2/3 1Cycle", "3/3 1Cycle", "0/3 2Cycle"}));
    QCOMPARE(developer.adapter.takeCalls(),
             texts({SendsTen, SendsEleven, SendsThreeC, SendsTen, SendsEleven, SendsThreeC}));
    QCOMPARE(user.announced, texts({"4 0", "4 1"}));
    QCOMPARE(user.results.count(), 0);
    QCOMPARE(user.messages.count(), 0);
    QVERIFY(!user.isListPageShown());
}

void tst_GUI_LINModeDeveloper::playbackOfOneFrame()
{
    ScriptedDeveloper developer;
    Developer &user = developer.user;
    QVERIFY(user.import(Titles + "1,,,11[11],1,FF,,\n"));
    developer.adapter.takeCalls();
    user.click("btn_start");
    QCOMPARE(user.finish(), 1);
    QCOMPARE(user.status(), QStringLiteral("0/1 1Cycle"));
    QCOMPARE(developer.adapter.takeCalls().mid(1), texts({SendsEleven}));
}

void tst_GUI_LINModeDeveloper::manyPasses()
{
    ScriptedDeveloper developer;
    Developer &user = developer.user;
    QVERIFY(user.import(ThreeFrames));
    user.setNumber("sbx_count", 300);
    user.click("btn_start");
    developer.adapter.takeCalls();
    QCOMPARE(user.finish(), 900);
    QCOMPARE(developer.adapter.takeCalls().size(), 900);
    QCOMPARE(user.status(), QStringLiteral("0/3 300Cycle"));
}

void tst_GUI_LINModeDeveloper::maskedFramesUseTheirSlot()
{
    ScriptedDeveloper developer;
    Developer &user = developer.user;
    QVERIFY(user.import(ThreeFrames));
    user.setNumber("sbx_ID1", 0x11); // not ticked
    user.tick(2, 0x10);
    user.tick(3, 0x3C);
    user.click("btn_start");
    developer.adapter.takeCalls();
    user.strike();
    QCOMPARE(developer.adapter.takeCalls(), QStringList());
    QCOMPARE(user.label("lbl_currentCount"), QStringLiteral("2"));
    user.strike();
    QCOMPARE(developer.adapter.takeCalls(), texts({SendsEleven}));
    user.strike();
    QCOMPARE(developer.adapter.takeCalls(), QStringList());
    QVERIFY(!user.page.isRunning());
    QCOMPARE(user.status(), QStringLiteral("0/3 1Cycle"));
}

void tst_GUI_LINModeDeveloper::masksStay()
{
    ScriptedDeveloper developer;
    Developer &user = developer.user;
    QVERIFY(user.import(ThreeFrames));
    user.tick(1, 0x10);
    user.click("btn_start");
    QCOMPARE(user.finish(), 3);
    user.find<QCheckBox>("chbx_ID1")->setChecked(false);
    user.click("btn_start");
    developer.adapter.takeCalls();
    QCOMPARE(user.finish(), 3);
    QCOMPARE(developer.adapter.takeCalls(), texts({SendsEleven, SendsThreeC}));
    user.tick(1, 0x11); // comes in addition
    QVERIFY(user.import(ThreeFrames));
    user.click("btn_start");
    developer.adapter.takeCalls();
    QCOMPARE(user.finish(), 3);
    QCOMPARE(developer.adapter.takeCalls(), texts({SendsThreeC}));
}

void tst_GUI_LINModeDeveloper::playbackStops()
{
    ScriptedDeveloper developer;
    Developer &user = developer.user;
    QVERIFY(user.import(ThreeFrames));
    user.setNumber("sbx_count", 1000);
    user.click("btn_start");
    QTRY_VERIFY(user.label("lbl_cycle") == QLatin1String("1Cycle"));
    user.click("btn_stop");
    QCOMPARE(user.announced, texts({"4 0", "4 1"}));
    developer.adapter.takeCalls();
    Reference later;
    later.timer.start(30);
    QTRY_VERIFY(later.ticks.count() >= 3);
    QCOMPARE(developer.adapter.takeCalls(), QStringList());
    user.click("btn_stop");
    QCOMPARE(user.announced.size(), 2);
}

void tst_GUI_LINModeDeveloper::playbackStartsFromTheFront()
{
    ScriptedDeveloper developer;
    Developer &user = developer.user;
    QVERIFY(user.import(ThreeFrames));
    user.setNumber("sbx_count", 3);
    user.click("btn_start");
    user.strike(5);
    user.click("btn_stop");
    QCOMPARE(user.status(), QStringLiteral("3/3 1Cycle"));
    user.setNumber("sbx_count", 1);
    user.click("btn_start");
    QCOMPARE(user.status(), QStringLiteral("0/3 0Cycle"));
    developer.adapter.takeCalls();
    QCOMPARE(user.finish(), 3);
    QCOMPARE(developer.adapter.takeCalls(), texts({SendsTen, SendsEleven, SendsThreeC}));
}

void tst_GUI_LINModeDeveloper::failedTransmitsAreIgnored()
{
    ScriptedDeveloper developer;
    QVERIFY(developer.user.import(ThreeFrames));
    developer.adapter.answer("KQ_TransmitLIN", 0);
    developer.user.click("btn_start");
    QCOMPARE(developer.user.finish(), 3);
    QCOMPARE(developer.user.messages.count(), 0);
}

void tst_GUI_LINModeDeveloper::playsMixedDirections()
{
    ScriptedDeveloper developer;
    Developer &user = developer.user;
    CTableViewLIN::DataObject received = linFrame(0x10, "01A2");
    CTableViewLIN::DataObject sent = linFrame(0x11, "FF");
    sent.direction = CTableViewLIN::DataObject::Sent;
    LINFrameModel table;
    table.append({received, sent, received}, 0);
    const QString path = user.folder.filePath(QStringLiteral("saved.csv"));
    QVERIFY(saveLINCapture(path, table));
    QVERIFY(user.choosePath(path));
    QCOMPARE(user.label("lbl_allCount"), QStringLiteral("3"));
    user.click("btn_start");
    developer.adapter.takeCalls();
    QCOMPARE(user.finish(), 3);
    QCOMPARE(developer.adapter.takeCalls(), texts({SendsTen, SendsEleven, SendsTen}));
}

void tst_GUI_LINModeDeveloper::locksControlsWhileRunning()
{
    ScriptedDeveloper developer;
    Developer &user = developer.user;
    QVERIFY(user.import(ThreeFrames));
    for (const char *button : {"btn_start", "btn_scanID"}) {
        user.clickTab("btn_modeDeveloper");
        user.click(button);
        for (const bool isRunning : {true, false}) {
            for (const char *name : {"btn_scanID", "btn_importData", "btn_start", "sbx_interval", "sbx_count",
                                     "chbx_ID1", "chbx_ID2", "chbx_ID3", "sbx_ID1", "sbx_ID2", "sbx_ID3"}) {
                QVERIFY2(user.isEnabled(name) != isRunning, name);
            }
            user.finish();
        }
        QVERIFY(user.isEnabled("btn_stop"));
    }
}

void tst_GUI_LINModeDeveloper::othersLockStopToo()
{
    const ScriptedDeveloper developer;
    for (const uint8_t mode : {uint8_t(LINModeList), uint8_t(LINModeMonitor)}) {
        for (const bool isFree : {false, true}) {
            developer.user.page.slot_changeBtnEnableState(mode, isFree);
            for (const char *name : {"btn_scanID", "btn_importData", "btn_start", "btn_stop", "sbx_interval",
                                     "sbx_count", "chbx_ID1", "sbx_ID3"}) {
                QVERIFY2(developer.user.isEnabled(name) == isFree, name);
            }
        }
    }
}

/// The page's own timer, beside one that is known to be right.
void tst_GUI_LINModeDeveloper::paces()
{
    ScriptedDeveloper developer;
    Developer &user = developer.user;
    QVERIFY(user.import(ThreeFrames));
    int sent = 0;
    developer.adapter.onCall("KQ_TransmitLIN", [&sent] { ++sent; });
    Reference reference;
    user.setNumber("sbx_interval", 40);
    user.setNumber("sbx_count", 1000);
    user.click("btn_start");
    reference.timer.start(40);
    QTRY_VERIFY(reference.ticks.count() >= 6);
    QVERIFY2(std::abs(sent - reference.ticks.count()) <= 1, qPrintable(QString::number(sent)));
    user.click("btn_stop");
    user.click("btn_scanID");
    reference.ticks.clear();
    reference.timer.start(50);
    QTRY_VERIFY(reference.ticks.count() >= 6);
    const int asked = developer.requestedIds().size();
    QVERIFY2(std::abs(asked - reference.ticks.count()) <= 1, qPrintable(QString::number(asked)));
}

void tst_GUI_LINModeDeveloper::slowCallsDoNotPileUp_data()
{
    QTest::addColumn<QByteArray>("button");
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<int>("intervalMs");
    QTest::newRow("scan") << QByteArray("btn_scanID") << QByteArray("KQ_ReceiveLIN") << 50;
    QTest::newRow("playback") << QByteArray("btn_start") << QByteArray("KQ_TransmitLIN") << 30;
}

void tst_GUI_LINModeDeveloper::slowCallsDoNotPileUp()
{
    QFETCH(QByteArray, button);
    QFETCH(QByteArray, entry);
    QFETCH(int, intervalMs);
    ScriptedDeveloper developer;
    Developer &user = developer.user;
    QVERIFY(user.import(ThreeFrames));
    user.setNumber("sbx_count", 1000);
    Reference reference;
    int calls = -1;
    developer.adapter.onCall(entry, [&] {
        if (calls < 0) {
            reference.timer.start(intervalMs);
            QThread::msleep(static_cast<unsigned long>(5 * intervalMs / 2)); // the adapter takes its time, once
        }
        ++calls;
    });
    user.click(button);
    QTRY_VERIFY(reference.ticks.count() >= 6);
    QVERIFY2(calls <= reference.ticks.count() + 1, qPrintable(QString::number(calls)));
}

/// In its own time, which takes a while.
void tst_GUI_LINModeDeveloper::recognisesSlaves()
{
    VirtualDeveloper developer(Buses);
    Developer &user = developer.user;
    user.click("btn_scanID");
    QTRY_VERIFY_WITH_TIMEOUT(!user.page.isRunning(), 60000);
    QStringList found;
    for (const CTableViewLIN::DataObject &frame : user.result()) {
        found.append(QStringLiteral("%1[%2] %3 %4")
                         .arg(frame.ID, 2, 16, QLatin1Char('0'))
                         .arg(frame.PID, 2, 16, QLatin1Char('0'))
                         .arg(QString::fromLatin1(frame.data.toHex()))
                         .arg(checkChecksum(frame.ID, static_cast<quint8>(frame.checksum), frame.data)));
    }
    QCOMPARE(found, texts({"05[85] 0102 0", "10[50] a0a1a2a3a4a5a6a7 1", "20[20] 55aa 2", "3e[fe] 00 0"}));
    QCOMPARE(user.progress(), 62);
    QVERIFY(user.isListPageShown());
    QVERIFY(user.isEnabled("btn_stop"));
    QVERIFY(user.isEnabled("btn_scanID"));
    QCOMPARE(user.announced, texts({"4 0", "4 1"}));
}

void tst_GUI_LINModeDeveloper::wrongBaudRate()
{
    VirtualDeveloper developer(Buses, linChannel(0, 0, 9600));
    Developer &user = developer.user;
    user.click("btn_scanID");
    QCOMPARE(user.finish(), 63 * 6);
    QCOMPARE(user.result().size(), 0);
    user.tab.findChild<QSpinBox *>(QStringLiteral("spx_baudrate"))->setValue(19200);
    user.clickTab("btn_set");
    QCOMPARE(user.lastMessage(), QStringLiteral("Switchover successful 1"));
    user.clickTab("btn_modeDeveloper");
    user.click("btn_scanID");
    QCOMPARE(user.finish(), 59 * 6 + 4);
    QCOMPARE(user.result().size(), 4);
}

void tst_GUI_LINModeDeveloper::playsOntoTheBus()
{
    VirtualDeveloper developer(Buses);
    QVERIFY(developer.openMonitor());
    Developer &user = developer.user;
    QVERIFY(user.import(Titles + "1,,Send,12[92],2,01 A2 ,,\n2,,Revice,13[D3],1,FF,,\n3,,Revice,3F[BF],1,00,,\n"));
    user.tick(3, 0x13);
    user.setNumber("sbx_count", 3);
    user.click("btn_start");
    QTRY_VERIFY(!user.page.isRunning());
    QCOMPARE(developer.seen(), texts({"12 01a2 5c", "3f 00 ff", "12 01a2 5c", "3f 00 ff", "12 01a2 5c", "3f 00 ff"}));
    QCOMPARE(user.status(), QStringLiteral("0/3 3Cycle"));
    QCOMPARE(user.announced, texts({"4 0", "4 1"}));
}

void tst_GUI_LINModeDeveloper::checksumTypeChangedOnTheFly()
{
    VirtualDeveloper developer(Buses);
    QVERIFY(developer.openMonitor());
    Developer &user = developer.user;
    QVERIFY(user.import(Titles + "1,,Send,12[92],2,01 A2 ,,\n"));
    user.click("btn_start");
    QCOMPARE(user.finish(), 1);
    auto *checksum = user.tab.findChild<QComboBox *>(QStringLiteral("cbx_checksum"));
    checksum->setCurrentIndex(checksum->findData(1));
    user.clickTab("btn_set");
    user.click("btn_start");
    QCOMPARE(user.finish(), 1);
    QCOMPARE(developer.seen(), texts({"12 01a2 5c", "12 01a2 c9"}));
}

void tst_GUI_LINModeDeveloper::adapterRefusesTheMode()
{
    VirtualDeveloper developer(Refusing);
    Developer &user = developer.user;
    QVERIFY(user.import(ThreeFrames));
    for (const char *button : {"btn_scanID", "btn_start"}) {
        const int before = user.messages.count();
        user.click(button);
        QCOMPARE(user.messages.count(), before + 1);
        QCOMPARE(user.lastMessage(), QStringLiteral("Communication error 4"));
        QVERIFY(!user.page.isRunning());
        QVERIFY(user.isEnabled(button));
    }
    QCOMPARE(user.announced, QStringList());
}

void tst_GUI_LINModeDeveloper::deviceVanishesDuringAScan()
{
    VirtualDeveloper developer(Unplugged);
    Developer &user = developer.user;
    user.click("btn_scanID");
    QTRY_VERIFY(user.progress() > 0); // identifier 0 has answered
    QTRY_VERIFY(developer.isGone());
    QVERIFY(user.page.isRunning());
    QVERIFY(user.finish() > 0);
    QCOMPARE(user.result().size(), 1);
    QCOMPARE(user.progress(), 62);
    QCOMPARE(user.messages.count(), 0);
    QCOMPARE(user.announced, texts({"4 0", "4 1"}));
    QVERIFY(user.isEnabled("btn_stop"));
}

void tst_GUI_LINModeDeveloper::deviceVanishesDuringPlayback()
{
    VirtualDeveloper developer(Unplugged);
    Developer &user = developer.user;
    QVERIFY(user.import(ThreeFrames));
    user.setNumber("sbx_count", 1000);
    user.click("btn_start");
    QVERIFY(user.page.isRunning());
    QTRY_VERIFY(developer.isGone());
    const QString status = user.status();
    QTRY_VERIFY(user.status() != status); // the timer goes on
    QVERIFY(user.page.isRunning());
    QVERIFY(user.finish() > 0);
    QCOMPARE(user.status(), QStringLiteral("0/3 1000Cycle"));
    QCOMPARE(user.messages.count(), 0);
    user.click("btn_start");
    QCOMPARE(user.lastMessage(), QStringLiteral("Communication error 4"));
}

void tst_GUI_LINModeDeveloper::tabClosed_data()
{
    QTest::addColumn<QByteArray>("button");
    QTest::newRow("scanning") << QByteArray("btn_scanID");
    QTest::newRow("playing") << QByteArray("btn_start");
    QTest::newRow("choosing a file") << QByteArray("btn_importData");
    QTest::newRow("reading a file") << QByteArray();
}

void tst_GUI_LINModeDeveloper::tabClosed()
{
    QFETCH(QByteArray, button);
    const AdapterFolder folder(Buses);
    CANCommunication manager(std::make_unique<CANAPI>(QStringLiteral(X9_VIRTUAL_ADAPTER)));
    {
        Developer user(manager, linChannel());
        QVERIFY(user.import(ThreeFrames));
        if (button.isEmpty()) {
            QVERIFY(user.choose(hugeFile()));
            QVERIFY(!user.isEnabled("btn_start"));
        } else {
            user.click(button);
            QCOMPARE(user.page.isRunning(), button != "btn_importData");
        }
    }
    QVERIFY(!manager.isDeviceOpen(0));
    Reference later;
    later.timer.start(50);
    QTRY_VERIFY(later.ticks.count() >= 2); // nothing comes afterwards
}

X9_GUI_TEST(tst_GUI_LINModeDeveloper)
#include "tst_GUI_LINModeDeveloper.moc"
