#include "device/CANAPI.h"
#include "device/CANCommunication.h"
#include "lin/GUI_LINDevice.h"
#include "lin/GUI_LINModeDeveloper.h"
#include "lin/GUI_LINModeList.h"
#include "lin/GUI_LINModeMonitor.h"
#include "tests/support/AdapterFolder.h"
#include "tests/support/SaveDialogDriver.h"
#include "tests/support/ScriptedAdapter.h"
#include "tests/support/TestProgram.h"

#include <QAbstractButton>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QSpinBox>
#include <QTableView>
#include <QtTest>

// One mode at a time: what the whole tab allows while each of them runs, and after.

namespace {

enum class Run { List, Monitor, Playback, Scan };
enum class End { ByItself, Stop, DeviceGone };

const QByteArray Bus = R"("lin_buses": [{"name": "lin", "slaves": [{"id": 0, "data": "01"}]}])";

/// A device on that bus, with these faults of its LIN channel.
QByteArray adapter(const QByteArray &faults = "{}")
{
    return "{" + Bus + R"(, "devices": [{"model": "X9FC-1", "lin": [{"bus": "lin", "faults": )" + faults + "}]}]}";
}

ChannelParam channel()
{
    ChannelParam param;
    param.linBaudRate = 19200;
    return param;
}

/// A tab ready to start any mode: a row ticked in the list, frames imported.
class Tab
{
public:
    explicit Tab(CANCommunication &communication)
        : tab(channel(), communication)
        , list(*tab.findChild<GUI_LINModeList *>())
        , monitor(*tab.findChild<GUI_LINModeMonitor *>())
        , developer(*tab.findChild<GUI_LINModeDeveloper *>())
    {
        tab.resize(1000, 600);
        tab.show();
        QObject::connect(&tab, &GUI_LINDevice::sig_changeBtnEnableState, &tab, [this](uint8_t mode, bool newState) {
            announced.append(QStringLiteral("%1 %2").arg(mode).arg(newState ? 1 : 0));
        });
    }
    bool prepare()
    {
        QAbstractItemModel *rows = list.findChild<QTableView *>(QStringLiteral("tableViewParam"))->model();
        return rows->setData(rows->index(0, 0), Qt::Checked, Qt::CheckStateRole) && import();
    }
    void setLength(int frames) const
    {
        list.findChild<QSpinBox *>(QStringLiteral("lbx_count"))->setValue(frames);
        developer.findChild<QSpinBox *>(QStringLiteral("sbx_count"))->setValue(frames);
    }

    const QWidget &pageOf(Run run) const
    {
        switch (run) {
        case Run::List:
            return list;
        case Run::Monitor:
            return monitor;
        case Run::Playback:
        case Run::Scan:
            break;
        }
        return developer;
    }
    static QByteArray mode(Run run)
    {
        switch (run) {
        case Run::List:
            return "1";
        case Run::Monitor:
            return "3";
        case Run::Playback:
        case Run::Scan:
            break;
        }
        return "4";
    }
    /// Brings the page to the front first, as nothing out of sight can be clicked.
    void click(Run run, const char *name) const
    {
        const char *const pages[] = {"btn_modeList", "btn_modeMonitor", "btn_modeDeveloper", "btn_modeDeveloper"};
        clickOn(tab, pages[static_cast<int>(run)]);
        clickOn(pageOf(run), name);
    }
    void start(Run run) const { click(run, run == Run::Scan ? "btn_scanID" : "btn_start"); }
    bool isRunning() const { return list.isRunning() || monitor.isRunning() || developer.isRunning(); }
    /// The scan takes its time; with it out of the way the timer strikes at once.
    void hurry() const
    {
        while (developer.isRunning()) {
            QMetaObject::invokeMethod(&developer, "slot_sendTimeoutEvent", Qt::DirectConnection);
        }
    }

    /// Of all controls that start, stop or set something.
    QStringList enabled() const
    {
        QStringList names;
        const auto look = [&names](const QWidget &owner, const char *prefix, std::initializer_list<const char *> all) {
            for (const char *name : all) {
                if (owner.findChild<QWidget *>(QLatin1String(name))->isEnabled()) {
                    names.append(QLatin1String(prefix) + QLatin1String(name));
                }
            }
        };
        look(list, "list ", {"btn_start", "btn_stop", "lbx_count"});
        look(monitor, "monitor ", {"btn_start", "btn_stop", "cbx_mode"});
        look(developer, "developer ", {"btn_start", "btn_stop", "btn_scanID", "btn_importData", "sbx_count"});
        look(tab, "", {"btn_set", "spx_baudrate", "cbx_checksum"});
        return names;
    }

    QStringList announced; ///< "mode state", in order
    GUI_LINDevice tab;
    GUI_LINModeList &list;
    GUI_LINModeMonitor &monitor;
    GUI_LINModeDeveloper &developer;

private:
    static void clickOn(const QWidget &owner, const char *name)
    {
        QTest::mouseClick(owner.findChild<QAbstractButton *>(QLatin1String(name)), Qt::LeftButton);
    }
    bool import() const
    {
        QFile file(QDir::current().filePath(QStringLiteral("frames.csv")));
        if (!file.open(QIODevice::WriteOnly) || file.write("titles\n1,,,10[50],1,FF,,\n") < 0 || !file.flush()) {
            return false;
        }
        const SaveDialogDriver dialog(file.fileName());
        click(Run::Playback, "btn_importData");
        return QTest::qWaitFor([this, &dialog] {
            return dialog.isAnswered() &&
                   developer.findChild<QLabel *>(QStringLiteral("lbl_allCount"))->text() == QLatin1String("1");
        });
    }
};

QStringList runningState(Run run)
{
    switch (run) {
    case Run::List:
        return {QStringLiteral("list btn_stop")};
    case Run::Monitor:
        return {QStringLiteral("monitor btn_stop")};
    case Run::Playback:
        return {QStringLiteral("developer btn_stop")};
    case Run::Scan:
        break;
    }
    return {};
}

std::unique_ptr<CANCommunication> virtualManager()
{
    return std::make_unique<CANCommunication>(std::make_unique<CANAPI>(QStringLiteral(X9_VIRTUAL_ADAPTER)));
}

constexpr Run AllRuns[] = {Run::List, Run::Monitor, Run::Playback, Run::Scan};

} // namespace

Q_DECLARE_METATYPE(Run)
Q_DECLARE_METATYPE(End)

class tst_LINModes : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }
    static void cleanup() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

    static void locksAndComesBack_data();
    static void locksAndComesBack();
    static void refusedModeLocksNothing_data();
    static void refusedModeLocksNothing();
    static void closedWhileRunning_data();
    static void closedWhileRunning();
    static void oneAfterTheOther();
};

void tst_LINModes::locksAndComesBack_data()
{
    QTest::addColumn<Run>("run");
    QTest::addColumn<End>("end");
    QTest::newRow("list, by itself") << Run::List << End::ByItself;
    QTest::newRow("list, stopped") << Run::List << End::Stop;
    QTest::newRow("list, device gone") << Run::List << End::DeviceGone;
    QTest::newRow("monitor, stopped") << Run::Monitor << End::Stop;
    QTest::newRow("monitor, device gone") << Run::Monitor << End::DeviceGone;
    QTest::newRow("playback, by itself") << Run::Playback << End::ByItself;
    QTest::newRow("playback, stopped") << Run::Playback << End::Stop;
    QTest::newRow("playback, device gone") << Run::Playback << End::DeviceGone;
    QTest::newRow("scan, by itself") << Run::Scan << End::ByItself;
    QTest::newRow("scan, device gone") << Run::Scan << End::DeviceGone;
}

void tst_LINModes::locksAndComesBack()
{
    QFETCH(Run, run);
    QFETCH(End, end);
    const bool isPulledOut = end == End::DeviceGone;
    const AdapterFolder folder(adapter());
    ScriptedAdapter scripted; // can be pulled out at a given moment
    const auto manager = isPulledOut ? std::make_unique<CANCommunication>(scripted.table()) : virtualManager();
    Tab user(*manager);
    QVERIFY(user.prepare());
    const QStringList idle = user.enabled();
    QCOMPARE(idle.size(), 14);
    user.setLength(end == End::ByItself ? 2 : 30);
    user.start(run);
    const QStringList started = {QLatin1String(Tab::mode(run)) + QStringLiteral(" 0")};
    QCOMPARE(user.announced, started);
    QCOMPARE(user.enabled(), runningState(run));
    if (end != End::ByItself) {
        for (const Run other : AllRuns) {
            user.start(other); // without effect
        }
        QCOMPARE(user.announced, started);
    }
    if (isPulledOut) {
        int refused = 0;
        for (const char *entry : {"KQ_TransmitLIN", "KQ_ReceiveLIN", "KQ_ReceiveLINBySlave", "KQ_ChangeLINMode"}) {
            scripted.answer(entry, 0);
            scripted.onCall(entry, [&refused] { ++refused; });
        }
        QTRY_VERIFY(refused >= 3);
        for (const char *entry : {"KQ_TransmitLIN", "KQ_ReceiveLIN", "KQ_ReceiveLINBySlave", "KQ_ChangeLINMode"}) {
            scripted.onCall(entry, {});
        }
        QVERIFY(user.isRunning());
        QCOMPARE(user.enabled(), runningState(run));
    }
    if (end == End::Stop || run == Run::Monitor) {
        user.click(run, "btn_stop");
    } else if (run == Run::Scan) {
        user.hurry();
    }
    QTRY_VERIFY(!user.isRunning());
    QCOMPARE(user.announced, started + QStringList{QLatin1String(Tab::mode(run)) + QStringLiteral(" 1")});
    QCOMPARE(user.enabled(), idle);
}

void tst_LINModes::refusedModeLocksNothing_data()
{
    QTest::addColumn<Run>("run");
    QTest::newRow("list") << Run::List;
    QTest::newRow("monitor") << Run::Monitor;
    QTest::newRow("playback") << Run::Playback;
    QTest::newRow("scan") << Run::Scan;
}

void tst_LINModes::refusedModeLocksNothing()
{
    QFETCH(Run, run);
    const AdapterFolder folder(adapter(R"({"mode_refused": [)" + Tab::mode(run) + "]}"));
    const auto manager = virtualManager();
    Tab user(*manager);
    QVERIFY(user.prepare());
    const QStringList idle = user.enabled();
    QSignalSpy messages(&user.tab, &WidgetDeviceBase::sig_showMessageBox);
    user.start(run);
    QCOMPARE(messages.count(), 1);
    QCOMPARE(messages.first().at(0).toString(), QStringLiteral("Communication error"));
    QCOMPARE(messages.first().at(1).toInt(), 4);
    QVERIFY(!user.isRunning());
    QCOMPARE(user.announced, QStringList());
    QCOMPARE(user.enabled(), idle);
}

void tst_LINModes::closedWhileRunning_data()
{
    refusedModeLocksNothing_data();
}

void tst_LINModes::closedWhileRunning()
{
    QFETCH(Run, run);
    const AdapterFolder folder(adapter());
    const auto manager = virtualManager();
    {
        Tab user(*manager);
        QVERIFY(user.prepare());
        user.setLength(30);
        user.start(run);
        QVERIFY(user.isRunning());
    }
    QVERIFY(!manager->isDeviceOpen(0));
    Tab next(*manager); // nothing is left of the run
    QVERIFY(next.tab.isChannelOpen());
    QVERIFY(next.prepare());
    QCOMPARE(next.enabled().size(), 14);
    next.start(Run::Monitor);
    QVERIFY(next.monitor.isRunning());
}

void tst_LINModes::oneAfterTheOther()
{
    const AdapterFolder folder(adapter());
    const auto manager = virtualManager();
    Tab user(*manager);
    QVERIFY(user.prepare());
    const QStringList idle = user.enabled();
    for (const Run run : AllRuns) {
        user.start(run);
        QVERIFY(user.isRunning());
        QCOMPARE(user.enabled(), runningState(run));
        if (run == Run::Monitor) {
            user.click(run, "btn_stop");
        } else if (run != Run::List) {
            user.hurry();
        }
        QTRY_VERIFY(!user.isRunning());
        QCOMPARE(user.enabled(), idle);
    }
}

X9_GUI_TEST(tst_LINModes)
#include "tst_LINModes.moc"
