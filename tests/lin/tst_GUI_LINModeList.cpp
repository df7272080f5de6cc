#include "device/CANCommunication.h"
#include "device/LINFrame.h"
#include "lin/GUI_LINModeList.h"
#include "lin/GUI_LINModeMonitor.h"
#include "lin/LINCapture.h"
#include "tests/lin/LINListPage.h"
#include "tests/support/SaveDialogDriver.h"
#include "tests/support/ScriptedAdapter.h"
#include "tests/support/TestProgram.h"

#include <QComboBox>
#include <QFile>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSpinBox>
#include <QStandardItemModel>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

using Page = LINListPage;

namespace {

QString str(const char *text)
{
    return QString::fromUtf8(text);
}

/// An adapter that answers what the test has set, and the tab on it.
class Bench
{
public:
    explicit Bench(quint8 checksum = 0)
        : communication(adapter.table())
        , page(communication, checksum)
    {
        adapter.takeCalls();
    }

    /// Presses Start and waits for the end of the run.
    void run()
    {
        page.states.clear();
        page.click("btn_start");
        QCOMPARE(stateTexts(page.states), QStringList{str("1 false")});
        QTRY_COMPARE_WITH_TIMEOUT(stateTexts(page.states), QStringList({str("1 false"), str("1 true")}), 60000);
    }
    /// The records given to KQ_TransmitLIN: "{length id data checksum}".
    QStringList sent()
    {
        QStringList records;
        const QStringList calls = adapter.takeCalls();
        for (const QString &call : calls) {
            if (call.startsWith(QLatin1String("KQ_TransmitLIN "))) {
                records.append(call.section(QLatin1Char(' '), 4));
            }
        }
        return records;
    }

    ScriptedAdapter adapter;
    CANCommunication communication;
    LINListPage page;
};

QString messageText(const LINListPage &page)
{
    return page.messages.count() == 1 ? page.messages.at(0).at(0).toString() : QString();
}

} // namespace

class tst_GUI_LINModeList : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }

    static void showsItsControls();
    static void showsTheParameterTable();
    static void startsNothingWithoutASelectedRow();
    static void refusesAnInvalidRow_data();
    static void refusesAnInvalidRow();
    static void looksAtSelectedRowsOnly();
    static void reportsTheFirstInvalidRow();
    static void refusedModeStartsNothing();
    static void servesTheRowsInTurn();
    static void sendsWhatTheRowSays_data();
    static void sendsWhatTheRowSays();
    static void sendsNoStaleBytes();
    static void requestsFrames();
    static void listsNoFailedRequest();
    static void takesNoMoreThanEightBytes();
    static void listsARefusedTransmit();
    static void keepsOneRowPerIdInStaticDisplay();
    static void displayModeChangesWhileItRuns();
    static void startClearsTheFrames();
    static void locksItselfWhileItRuns();
    static void otherModesLockIt();
    static void stopEndsTheRun();
    static void stopDoesNothingWhenIdle();
    static void startsAgainAfterAStop();
    static void closesWhileItRuns();
    static void clears();
    static void takesOverWhatIsBeingTyped();
    static void takesPastedNumbers_data();
    static void takesPastedNumbers();
    static void closesTheEditorForAnotherMode();
    static void editsWithTheKeyboard();
    static void choosesTheDirection();
    static void cannotBeEditedWhileItRuns();
    static void closesWhileACellIsEdited();
    static void waitsFromTheAdaptersReturn();
    static void aSlowAdapterLeavesTheWindowTime();
    static void listsResultsOfAnotherMode();
    static void savesAndImports();
    static void cancelledSavingDoesNothing();
    static void reportsAFailedSave();
};

void tst_GUI_LINModeList::showsItsControls()
{
    Bench bench;
    const LINListPage &page = bench.page;
    const auto check = [&page](const char *name, const char *text, const char *nav) {
        const auto *button = page.find<QPushButton>(name);
        QVERIFY(button != nullptr);
        QCOMPARE(button->text(), str(text));
        QCOMPARE(button->property("nav").toString(), str(nav));
        QVERIFY(button->isEnabled());
    };
    check("btn_start", "Start", "tBtnStyle_1");
    check("btn_stop", "Stop", "tBtnStyle_4");
    check("btn_save", "Save", "tBtnStyle_3");
    check("btn_clear", "Clear", "tBtnStyle_4");

    const auto *count = page.find<QSpinBox>("lbx_count");
    QCOMPARE(count->minimum(), 1);
    QCOMPARE(count->maximum(), 65535);
    QCOMPARE(count->value(), 1);

    const auto *mode = page.find<QComboBox>("cbx_mode");
    QCOMPARE(mode->count(), 2);
    QCOMPARE(mode->itemText(0), str("Dynamic display"));
    QCOMPARE(mode->itemData(0).toInt(), 0);
    QCOMPARE(mode->itemText(1), str("Static display"));
    QCOMPARE(mode->itemData(1).toInt(), 1);
    QCOMPARE(mode->currentIndex(), 0);

    QStringList labels;
    for (const auto *label : page.page().findChildren<QLabel *>()) {
        labels.append(label->text());
    }
    labels.sort();
    QCOMPARE(labels, QStringList({str("Display mode:"), str("Frame count:"), str("Parameter setting")}));
}

void tst_GUI_LINModeList::showsTheParameterTable()
{
    Bench bench;
    const QTableView *table = bench.page.param();
    auto *model = qobject_cast<QStandardItemModel *>(table->model());
    QVERIFY(model != nullptr);
    QCOMPARE(model->rowCount(), 20);
    QCOMPARE(model->columnCount(), 6);
    const char *titles[] = {"Select", "Direction", "ID", "Data", "Length", "Interval(ms)"};
    const int widths[] = {50, 80, 70, 270, 100, table->horizontalHeader()->defaultSectionSize()};
    for (int column = 0; column < 6; ++column) {
        QCOMPARE(model->headerData(column, Qt::Horizontal).toString(), str(titles[column]));
        QCOMPARE(table->columnWidth(column), widths[column]);
    }
    for (int row = 0; row < 20; ++row) {
        QCOMPARE(table->rowHeight(row), 23);
        QCOMPARE(model->headerData(row, Qt::Vertical).toString(), QString::number(row));
        QStandardItem *select = model->item(row, Page::Select);
        QCOMPARE(select->checkState(), Qt::Unchecked);
        QVERIFY(select->isCheckable());
        QVERIFY(!select->isEditable());
        QCOMPARE(bench.page.paramText(row, Page::Direction), str("Send"));
        QCOMPARE(model->item(row, Page::Direction)->data(Qt::UserRole), QVariant(0));
        const auto choices = model->item(row, Page::Direction)->data(Qt::UserRole + 1).value<QVector<QString>>();
        QCOMPARE(choices, QVector<QString>({str("Send"), str("Revice")}));
        QCOMPARE(bench.page.paramText(row, Page::Length), str("8"));
        QCOMPARE(bench.page.paramText(row, Page::Interval), str("30"));
    }
    QCOMPARE(bench.page.paramText(5, Page::Id), str("05"));
    QCOMPARE(bench.page.paramText(5, Page::Data), str("00 00 00 00 00 00 00 05"));
    QCOMPARE(bench.page.paramText(19, Page::Id), str("13"));
    QCOMPARE(bench.page.paramText(19, Page::Data), str("00 00 00 00 00 00 00 13"));
    QCOMPARE(table->editTriggers(), QAbstractItemView::AllEditTriggers);
}

void tst_GUI_LINModeList::startsNothingWithoutASelectedRow()
{
    Bench bench;
    bench.page.click("btn_start");
    QVERIFY(bench.page.messages.isEmpty());
    QVERIFY(bench.page.states.isEmpty());
    QVERIFY(bench.adapter.takeCalls().isEmpty());
}

void tst_GUI_LINModeList::refusesAnInvalidRow_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("message");

    QTest::newRow("identifier") << int(Page::Id) << str("40")
                                << str("The ID is out of range, Error line3!\nValid ID range: 0x0-0x3F!");
    QTest::newRow("length") << int(Page::Length) << str("9") << str("The data length is out of range, Error line3");
    QTest::newRow("interval 29") << int(Page::Interval) << str("29")
                                 << str("The interval is out of range, Error line3");
    QTest::newRow("interval 5001") << int(Page::Interval) << str("5001")
                                   << str("The interval is out of range, Error line3");
    QTest::newRow("data") << int(Page::Data) << str("01") << str("The data is not valid, Error line3");
    QTest::newRow("empty cell") << int(Page::Length) << str("") << str("The data length is out of range, Error line3");
}

void tst_GUI_LINModeList::refusesAnInvalidRow()
{
    QFETCH(int, column);
    QFETCH(QString, text);
    QFETCH(QString, message);

    Bench bench;
    bench.page.tick(1);
    bench.page.tick(3);
    bench.page.setText(3, static_cast<Page::Column>(column), text);
    bench.page.click("btn_start");
    QCOMPARE(bench.page.messages.count(), 1);
    QCOMPARE(bench.page.messages.at(0).at(0).toString(), message);
    QCOMPARE(bench.page.messages.at(0).at(1).toInt(), 4);
    QVERIFY(bench.page.states.isEmpty());
    QVERIFY(bench.adapter.takeCalls().isEmpty());
    QVERIFY(bench.page.isEnabled("btn_start"));
}

void tst_GUI_LINModeList::looksAtSelectedRowsOnly()
{
    Bench bench;
    bench.page.setText(0, Page::Id, str("not this one"));
    bench.page.tick(1);
    bench.run();
    QVERIFY(bench.page.messages.isEmpty());
    QCOMPARE(bench.page.rowCount(), 1);
}

void tst_GUI_LINModeList::reportsTheFirstInvalidRow()
{
    Bench bench;
    for (const int row : {2, 4, 6}) {
        bench.page.tick(row);
    }
    bench.page.setText(6, Page::Id, str("40"));
    bench.page.setText(4, Page::Interval, str("0"));
    bench.page.click("btn_start");
    QCOMPARE(messageText(bench.page), str("The interval is out of range, Error line4"));
}

void tst_GUI_LINModeList::refusedModeStartsNothing()
{
    Bench bench;
    bench.page.tick(0);
    bench.adapter.answer("KQ_ChangeLINMode", 0);
    bench.page.click("btn_start");
    QCOMPARE(bench.page.messages.count(), 1);
    QCOMPARE(bench.page.messages.at(0).at(0).toString(), str("Communication error"));
    QCOMPARE(bench.page.messages.at(0).at(1).toInt(), 4);
    QVERIFY(bench.page.states.isEmpty());
    QVERIFY(!bench.page.page().isRunning());
    QVERIFY(bench.page.isEnabled("btn_start"));
    QCOMPARE(bench.adapter.takeCalls(), QStringList{str("KQ_ChangeLINMode 4 0 0 1")});

    // Nothing has been left over that runs on.
    bench.adapter.answer("KQ_ChangeLINMode", 1);
    bench.run();
    QCOMPARE(bench.sent().size(), 1);
}

void tst_GUI_LINModeList::servesTheRowsInTurn()
{
    Bench bench;
    for (const int row : {12, 3, 7}) {
        bench.page.tick(row);
    }
    bench.page.setCount(7);
    bench.run();
    QStringList ids;
    for (const QString &record : bench.sent()) {
        ids.append(record.section(QLatin1Char(' '), 1, 1));
    }
    QCOMPARE(ids, str("3 7 12 3 7 12 3").split(QLatin1Char(' ')));
    QCOMPARE(bench.page.rowCount(), 7);
    QCOMPARE(bench.page.frame(6, 0), str("7"));
    QCOMPARE(bench.page.frame(6, 3), str("03[03]"));
    QVERIFY(QTime::fromString(bench.page.frame(6, 1), str("hh:mm:ss.zzz")).isValid());
    QVERIFY(!bench.page.page().isRunning());
}

void tst_GUI_LINModeList::sendsWhatTheRowSays_data()
{
    QTest::addColumn<int>("checksum");
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("data");
    QTest::addColumn<int>("length");
    QTest::addColumn<QString>("record");
    QTest::addColumn<QString>("row");

    QTest::newRow("two bytes") << 0 << str("01") << str("01a2") << 2 << str("{2 1 01a2000000000000 0}")
                               << str("Send 01[C1] 2 01 A2  5C V1");
    QTest::newRow("enhanced") << 1 << str("01") << str("01 A2") << 2 << str("{2 1 01a2000000000000 0}")
                              << str("Send 01[C1] 2 01 A2  9A V2");
    QTest::newRow("nothing") << 0 << str("10") << str("") << 0 << str("{0 16 0000000000000000 0}")
                             << str("Send 10[50] 0  FF V1");
    QTest::newRow("more data than length") << 0 << str("3F") << str("FF FF 01 AA BB") << 3
                                           << str("{3 63 ffff010000000000 0}") << str("Send 3F[BF] 3 FF FF 01  FF V1");
    QTest::newRow("not hexadecimal") << 0 << str("02") << str("zz 11 2g") << 3 << str("{1 2 1100000000000000 0}")
                                     << str("Send 02[42] 1 11  EE V1");
    QTest::newRow("identifier with blanks")
        << 0 << str(" 2 ") << str("1 1") << 1 << str("{1 2 1100000000000000 0}") << str("Send 02[42] 1 11  EE V1");
}

void tst_GUI_LINModeList::sendsWhatTheRowSays()
{
    QFETCH(int, checksum);
    QFETCH(QString, id);
    QFETCH(QString, data);
    QFETCH(int, length);

    Bench bench(static_cast<quint8>(checksum));
    bench.page.setRow(0, id, data, length);
    bench.run();
    QTEST(bench.sent().join(QLatin1Char('|')), "record");
    QTEST(bench.page.frameTexts().join(QLatin1Char('|')), "row");
}

void tst_GUI_LINModeList::sendsNoStaleBytes()
{
    Bench bench;
    bench.page.setRow(0, str("01"), str("FF FF FF FF FF FF FF FF"), 8);
    bench.page.setRow(1, str("02"), str("11"), 1);
    bench.page.setRow(2, str("03"), str("zz 22"), 2);
    bench.page.setRow(3, str("04"), str(""), 0);
    bench.page.setCount(4);
    bench.run();
    QCOMPARE(bench.sent(), QStringList({str("{8 1 ffffffffffffffff 0}"), str("{1 2 1100000000000000 0}"),
                                        str("{1 3 2200000000000000 0}"), str("{0 4 0000000000000000 0}")}));
}

void tst_GUI_LINModeList::requestsFrames()
{
    Bench bench;
    bench.adapter.setLINFrame({2, 0x21, {0x01, 0xA2, 0x33, 0, 0, 0, 0, 0}, 0x5C});
    bench.page.setRow(0, str("21"), str("FF FF FF FF FF FF FF FF"), 8, true);
    bench.page.setRow(1, str("22"), str(""), 0, true);
    bench.page.setCount(2);
    bench.run();
    // The record is zero but for the identifier.
    QCOMPARE(bench.adapter.takeCalls(),
             QStringList({str("KQ_ChangeLINMode 4 0 0 1"), str("KQ_ReceiveLIN 4 0 0 {0021000000000000000000}"),
                          str("KQ_ReceiveLIN 4 0 0 {0022000000000000000000}")}));
    QCOMPARE(bench.page.frameTexts(),
             QStringList({str("Revice 21[61] 2 01 A2  5C V1"), str("Revice 21[61] 2 01 A2  5C V1")}));
}

void tst_GUI_LINModeList::listsNoFailedRequest()
{
    Bench bench;
    bench.adapter.answer("KQ_ReceiveLIN", 0);
    bench.adapter.setLINFrame({1, 0x21, {0x11}, 0xEE});
    bench.page.setRow(0, str("21"), str(""), 0, true);
    bench.page.setRow(1, str("02"), str("11"), 1);
    bench.page.setCount(5);
    bench.run();
    // Each of them counts.
    QCOMPARE(bench.page.frameTexts(), QStringList({str("Send 02[42] 1 11  EE V1"), str("Send 02[42] 1 11  EE V1")}));
    QVERIFY(bench.page.messages.isEmpty());

    bench.adapter.answer("KQ_ReceiveLIN", 1);
    bench.adapter.setLINFrame({0, 0x21, {0x11}, 0xEE});
    bench.run();
    QCOMPARE(bench.page.rowCount(), 2);
}

void tst_GUI_LINModeList::takesNoMoreThanEightBytes()
{
    Bench bench;
    bench.adapter.setLINFrame({255, 0xE1, {1, 2, 3, 4, 5, 6, 7, 8}, 0xDB});
    bench.page.setRow(0, str("21"), str(""), 0, true);
    bench.run();
    QCOMPARE(bench.page.frameTexts(), QStringList{str("Revice 21[61] 8 01 02 03 04 05 06 07 08  DB V1")});
}

void tst_GUI_LINModeList::listsARefusedTransmit()
{
    Bench bench;
    bench.adapter.answer("KQ_TransmitLIN", 0);
    bench.page.setRow(0, str("02"), str("11"), 1);
    bench.page.setCount(2);
    bench.run();
    QCOMPARE(bench.page.rowCount(), 2);
    QVERIFY(bench.page.messages.isEmpty());
}

void tst_GUI_LINModeList::keepsOneRowPerIdInStaticDisplay()
{
    Bench bench;
    bench.page.setRow(0, str("05"), str("01"), 1);
    bench.page.setRow(1, str("06"), str("02"), 1);
    bench.page.setRow(2, str("05"), str("03 04"), 2);
    bench.page.setMode(1);
    bench.page.setCount(6);
    bench.run();
    QCOMPARE(bench.page.frameTexts(), QStringList({str("Send 05[85] 2 03 04  F8 V1"), str("Send 06[06] 1 02  FD V1")}));
    QCOMPARE(bench.page.frame(0, 0), str("1"));
    QCOMPARE(bench.page.frame(1, 0), str("2"));
}

void tst_GUI_LINModeList::displayModeChangesWhileItRuns()
{
    Bench bench;
    bench.page.tick(5);
    bench.page.setCount(6);
    bench.page.onFrame(2, [&bench] {
        QVERIFY(bench.page.isEnabled("cbx_mode"));
        bench.page.setMode(1);
    });
    bench.run();
    QCOMPARE(bench.page.rowCount(), 2);
    QCOMPARE(bench.sent().size(), 6);
}

void tst_GUI_LINModeList::startClearsTheFrames()
{
    Bench bench;
    bench.page.tick(0);
    bench.run();
    bench.page.setText(0, Page::Id, str("07"));
    bench.run();
    QCOMPARE(bench.page.rowCount(), 1);
    QCOMPARE(bench.page.frame(0, 3), str("07[47]"));
    QCOMPARE(bench.page.frame(0, 0), str("1"));
}

void tst_GUI_LINModeList::locksItselfWhileItRuns()
{
    Bench bench;
    bench.page.tick(0);
    bench.page.setCount(65535);
    bench.page.click("btn_start");
    for (const char *name : {"btn_start", "btn_save", "lbx_count"}) {
        QVERIFY2(!bench.page.isEnabled(name), name);
    }
    for (const char *name : {"btn_stop", "btn_clear", "cbx_mode"}) {
        QVERIFY2(bench.page.isEnabled(name), name);
    }
    QCOMPARE(bench.page.param()->editTriggers(), QAbstractItemView::NoEditTriggers);
    QVERIFY(!bench.page.tab.findChild<QWidget *>(str("btn_set"))->isEnabled());
    bench.page.click("btn_stop");
    for (const char *name : {"btn_start", "btn_save", "lbx_count", "btn_stop", "btn_clear", "cbx_mode"}) {
        QVERIFY2(bench.page.isEnabled(name), name);
    }
    QCOMPARE(bench.page.param()->editTriggers(), QAbstractItemView::AllEditTriggers);
    QVERIFY(bench.page.tab.findChild<QWidget *>(str("btn_set"))->isEnabled());
}

void tst_GUI_LINModeList::otherModesLockIt()
{
    Bench bench;
    bench.page.tick(0);
    auto *monitor = bench.page.tab.findChild<GUI_LINModeMonitor *>();
    emit monitor->sig_changeBtnEnableState(3, false);
    for (const char *name : {"btn_start", "btn_save", "lbx_count", "btn_stop"}) {
        QVERIFY2(!bench.page.isEnabled(name), name);
    }
    for (const char *name : {"btn_clear", "cbx_mode"}) {
        QVERIFY2(bench.page.isEnabled(name), name);
    }
    QCOMPARE(bench.page.param()->editTriggers(), QAbstractItemView::NoEditTriggers);
    bench.page.click("btn_start");
    QVERIFY(!bench.page.page().isRunning());
    emit monitor->sig_changeBtnEnableState(3, true);
    for (const char *name : {"btn_start", "btn_save", "lbx_count", "btn_stop"}) {
        QVERIFY2(bench.page.isEnabled(name), name);
    }
    QCOMPARE(bench.page.param()->editTriggers(), QAbstractItemView::AllEditTriggers);
}

void tst_GUI_LINModeList::stopEndsTheRun()
{
    Bench bench;
    bench.page.tick(0);
    bench.page.setCount(65535);
    bench.page.click("btn_start");
    QTRY_VERIFY(bench.page.rowCount() >= 2);
    bench.page.click("btn_stop");
    QCOMPARE(stateTexts(bench.page.states), QStringList({str("1 false"), str("1 true")}));
    QVERIFY(!bench.page.page().isRunning());
    const QStringList calls = bench.adapter.takeCalls();
    QVERIFY(calls.last().startsWith(str("KQ_TransmitLIN")));

    // A schedule's length later nothing has come.
    QTimer later;
    later.setSingleShot(true);
    later.start(120);
    QTRY_VERIFY(!later.isActive());
    QVERIFY(bench.adapter.takeCalls().isEmpty());
    QCOMPARE(bench.page.states.count(), 2);
}

void tst_GUI_LINModeList::stopDoesNothingWhenIdle()
{
    Bench bench;
    bench.page.click("btn_stop");
    QVERIFY(bench.page.states.isEmpty());
    QVERIFY(bench.adapter.takeCalls().isEmpty());
}

void tst_GUI_LINModeList::startsAgainAfterAStop()
{
    Bench bench;
    bench.page.tick(0);
    bench.page.tick(1);
    bench.page.setCount(65535);
    bench.page.click("btn_start");
    QTRY_VERIFY(bench.page.rowCount() >= 1);
    bench.page.click("btn_stop");
    bench.page.setCount(3);
    bench.adapter.takeCalls();
    bench.run();
    QCOMPARE(bench.page.frameTexts().size(), 3);
    QCOMPARE(bench.page.frame(0, 3), str("00[80]")); // from the first row again
}

void tst_GUI_LINModeList::closesWhileItRuns()
{
    ScriptedAdapter adapter;
    CANCommunication communication(adapter.table());
    {
        LINListPage page(communication);
        page.tick(0);
        page.setCount(65535);
        page.click("btn_start");
        QTRY_VERIFY(page.rowCount() >= 1);
    }
    const QStringList calls = adapter.takeCalls();
    QVERIFY(calls.indexOf(str("KQ_CloseLIN 4 0 0")) == calls.lastIndexOf(str("KQ_CloseLIN 4 0 0")));
    QCOMPARE(calls.last(), str("VCI_CloseDevice 4 0"));
    QTimer later;
    later.setSingleShot(true);
    later.start(90);
    QTRY_VERIFY(!later.isActive());
    QVERIFY(adapter.takeCalls().isEmpty());
}

void tst_GUI_LINModeList::clears()
{
    Bench bench;
    bench.page.tick(0);
    bench.page.setCount(65535);
    bench.page.click("btn_start");
    QTRY_VERIFY(bench.page.rowCount() >= 2);
    bench.page.click("btn_clear");
    QCOMPARE(bench.page.rowCount(), 0);
    QTRY_VERIFY(bench.page.rowCount() >= 1);
    QCOMPARE(bench.page.frame(0, 0), str("1"));
    bench.page.click("btn_stop");
}

void tst_GUI_LINModeList::takesOverWhatIsBeingTyped()
{
    for (const bool isFocused : {true, false}) {
        Bench bench;
        bench.page.tick(4);
        bench.page.clickCell(4, Page::Id);
        auto *editor = bench.page.editor<QLineEdit>();
        QVERIFY(editor != nullptr);
        editor->selectAll();
        QTest::keyClicks(editor, str("2A"));
        if (isFocused) {
            bench.page.click("btn_start");
        } else {
            bench.page.find<QPushButton>("btn_start")->click(); // as a test tool or a screen reader does
        }
        QVERIFY(bench.page.page().isRunning());
        QCOMPARE(bench.page.paramText(4, Page::Id), str("2A"));
        QTRY_VERIFY(bench.page.editor<QLineEdit>() == nullptr);
        QTRY_VERIFY(!bench.page.page().isRunning());
        QCOMPARE(bench.page.frame(0, 3), str("2A[6A]"));
    }
}

void tst_GUI_LINModeList::takesPastedNumbers_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("cell");
    QTest::newRow("id") << int(Page::Id) << " 0x2A\n"
                        << "2A";
    QTest::newRow("data") << int(Page::Data) << "0x11 0x2 0x33\n"
                          << "11 02 33 ";
    QTest::newRow("length") << int(Page::Length) << "\t3 "
                            << "3";
    QTest::newRow("interval") << int(Page::Interval) << "1 000\r\n"
                              << "1000";
    QTest::newRow("no number") << int(Page::Id) << "xyz"
                               << "xyz"; // what it is worth is said at the start
}

void tst_GUI_LINModeList::takesPastedNumbers()
{
    QFETCH(int, column);
    QFETCH(QString, text);
    Bench bench;
    bench.page.clickCell(4, static_cast<Page::Column>(column));
    auto *editor = bench.page.editor<QLineEdit>();
    QVERIFY(editor != nullptr);
    editor->selectAll();
    editor->insert(text); // as from the clipboard
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_VERIFY(bench.page.editor<QLineEdit>() == nullptr);
    QTEST(bench.page.paramText(4, static_cast<Page::Column>(column)), "cell");
}

void tst_GUI_LINModeList::closesTheEditorForAnotherMode()
{
    Bench bench;
    bench.page.clickCell(4, Page::Id);
    auto *editor = bench.page.editor<QLineEdit>();
    QVERIFY(editor != nullptr);
    editor->setText(str("2A"));
    auto *monitor = bench.page.tab.findChild<GUI_LINModeMonitor *>();
    emit monitor->sig_changeBtnEnableState(3, false);
    QTRY_VERIFY(bench.page.editor<QLineEdit>() == nullptr);
    QCOMPARE(bench.page.paramText(4, Page::Id), str("2A"));
    QCOMPARE(bench.page.param()->currentIndex(), bench.page.paramIndex(4, Page::Id));
}

void tst_GUI_LINModeList::editsWithTheKeyboard()
{
    Bench bench;
    QTableView *table = bench.page.param();
    table->setFocus();
    table->setCurrentIndex(bench.page.paramIndex(2, Page::Select));
    QTest::keyClick(table, Qt::Key_Space);
    QCOMPARE(bench.page.paramIndex(2, Page::Select).data(Qt::CheckStateRole).toInt(), int(Qt::Checked));

    // Tab goes on to the next cell, which is then edited.
    table->setCurrentIndex(bench.page.paramIndex(2, Page::Id));
    QPointer<QLineEdit> editor = bench.page.editor<QLineEdit>();
    QVERIFY(editor != nullptr);
    editor->selectAll();
    QTest::keyClicks(editor, str("11"));
    QTest::keyClick(editor, Qt::Key_Tab);
    QCOMPARE(bench.page.paramText(2, Page::Id), str("11"));
    QCOMPARE(table->currentIndex(), bench.page.paramIndex(2, Page::Data));
    QTRY_VERIFY(editor == nullptr);
    editor = bench.page.editor<QLineEdit>();
    QVERIFY(editor != nullptr);

    // Enter takes over.
    editor->selectAll();
    QTest::keyClicks(editor, str("22 33"));
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_VERIFY(editor == nullptr);
    QCOMPARE(bench.page.paramText(2, Page::Data), str("22 33"));
    QVERIFY(bench.page.editor<QLineEdit>() == nullptr);

    // F2 edits again, Esc gives up.
    QTest::keyClick(table, Qt::Key_F2);
    editor = bench.page.editor<QLineEdit>();
    QVERIFY(editor != nullptr);
    QTest::keyClicks(editor, str("44"));
    QTest::keyClick(editor, Qt::Key_Escape);
    QTRY_VERIFY(editor == nullptr);
    QCOMPARE(bench.page.paramText(2, Page::Data), str("22 33"));
}

void tst_GUI_LINModeList::choosesTheDirection()
{
    Bench bench;
    bench.adapter.setLINFrame({1, 0x06, {0x11}, 0xEE});
    bench.page.clickCheckBox(6);
    QCOMPARE(bench.page.paramIndex(6, Page::Select).data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
    bench.page.clickCell(6, Page::Direction);
    auto *editor = bench.page.editor<QComboBox>();
    QVERIFY(editor != nullptr);
    QTest::keyClick(editor, Qt::Key_Down);
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_VERIFY(bench.page.editor<QComboBox>() == nullptr);
    QCOMPARE(bench.page.paramText(6, Page::Direction), str("Revice"));
    bench.run();
    QCOMPARE(bench.page.frameTexts(), QStringList{str("Revice 06[06] 1 11  EE V1")});
}

void tst_GUI_LINModeList::cannotBeEditedWhileItRuns()
{
    Bench bench;
    bench.page.tick(0);
    bench.page.setCount(65535);
    bench.page.click("btn_start");
    QTableView *table = bench.page.param();
    bench.page.clickCheckBox(0);
    bench.page.clickCheckBox(1);
    QCOMPARE(bench.page.paramIndex(0, Page::Select).data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
    QCOMPARE(bench.page.paramIndex(1, Page::Select).data(Qt::CheckStateRole).toInt(), int(Qt::Unchecked));
    table->setCurrentIndex(bench.page.paramIndex(1, Page::Select));
    QTest::keyClick(table, Qt::Key_Space);
    QCOMPARE(bench.page.paramIndex(1, Page::Select).data(Qt::CheckStateRole).toInt(), int(Qt::Unchecked));
    bench.page.clickCell(1, Page::Id);
    QTest::keyClick(table, Qt::Key_F2);
    QTest::keyClicks(table, str("3"));
    bench.page.clickCell(1, Page::Direction);
    QVERIFY(bench.page.editor<QLineEdit>() == nullptr);
    QVERIFY(bench.page.editor<QComboBox>() == nullptr);
    QCOMPARE(bench.page.paramText(1, Page::Id), str("01"));

    bench.page.click("btn_stop");
    bench.page.clickCheckBox(1);
    QCOMPARE(bench.page.paramIndex(1, Page::Select).data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
}

void tst_GUI_LINModeList::closesWhileACellIsEdited()
{
    for (const Page::Column column : {Page::Id, Page::Direction}) {
        Bench bench;
        bench.page.clickCell(4, column);
        QVERIFY(bench.page.editor<QWidget>() != nullptr);
    }
}

/// The interval is what lies at least between the end of a call and the next one, sent or requested.
void tst_GUI_LINModeList::waitsFromTheAdaptersReturn()
{
    constexpr int IntervalMs = 30;
    constexpr qint64 IntervalNs = IntervalMs * Q_INT64_C(1000000);
    Bench bench;
    QElapsedTimer sinceReturn;
    int calls = 0;
    int tooSoon = 0;
    const auto slowCall = [&] {
        ++calls;
        tooSoon += sinceReturn.isValid() && sinceReturn.nsecsElapsed() < IntervalNs ? 1 : 0;
        QElapsedTimer busy;
        busy.start();
        while (!busy.hasExpired(IntervalMs / 2)) {
        }
        sinceReturn.start();
    };
    bench.adapter.onCall("KQ_TransmitLIN", slowCall);
    bench.adapter.onCall("KQ_ReceiveLIN", slowCall);
    bench.page.setRow(0, str("01"), str(""), 0, false, IntervalMs);
    bench.page.setRow(1, str("02"), str(""), 0, true, IntervalMs);
    bench.page.setCount(5);
    bench.run();
    QCOMPARE(calls, 5);
    QCOMPARE(tooSoon, 0);
}

void tst_GUI_LINModeList::aSlowAdapterLeavesTheWindowTime()
{
    Bench bench;
    // A call that outlasts the interval, and something that the window has to do soon after each of them.
    QStringList order;
    bench.adapter.onCall("KQ_TransmitLIN", [&order, &bench] {
        order.append(str("call"));
        QElapsedTimer busy;
        busy.start();
        while (!busy.hasExpired(250)) {
        }
        QTimer::singleShot(10, &bench.page.tab, [&order] { order.append(str("window")); });
    });
    bench.page.setRow(0, str("01"), str(""), 0, false, 200);
    bench.page.setCount(4);
    bench.run();
    QCOMPARE(order, str("call window call window call window call window").split(QLatin1Char(' ')));
}

void tst_GUI_LINModeList::listsResultsOfAnotherMode()
{
    Bench bench(1);
    CTableViewLIN::DataObject frame;
    frame.time = str("12:34:56.789");
    frame.direction = CTableViewLIN::DataObject::Received;
    frame.ID = 0x12;
    frame.PID = 0x92;
    frame.data = QByteArray::fromHex("01A2");
    frame.checksum = 0x5C;
    bench.page.setMode(1); // they are dynamic rows all the same
    bench.page.page().slot_addRowItems({frame, frame});
    QCOMPARE(bench.page.frameTexts(), QStringList({str("Revice 12[92] 2 01 A2  5C Error checksum(V1)"),
                                                   str("Revice 12[92] 2 01 A2  5C Error checksum(V1)")}));
    QCOMPARE(bench.page.frame(0, 1), str("12:34:56.789"));
}

void tst_GUI_LINModeList::savesAndImports()
{
    Bench bench;
    bench.adapter.setLINFrame({3, 0x21, {0xDE, 0xAD, 0x99}, 0x00});
    bench.page.setRow(0, str("05"), str("01 A2"), 2);
    bench.page.setRow(1, str("21"), str(""), 0, true);
    bench.page.setRow(2, str("3F"), str(""), 0);
    bench.page.setCount(3);
    bench.run();

    const QTemporaryDir folder;
    const QString path = folder.filePath(str("frames"));
    const SaveDialogDriver dialog(path);
    bench.page.click("btn_save");
    QVERIFY(dialog.isAnswered());
    QCOMPARE(dialog.windowTitle(), str("Save File"));
    QCOMPARE(dialog.nameFilters(), QStringList{str("Csv File(*.csv)")});
    QCOMPARE(messageText(bench.page), str("Save successfully"));
    QCOMPARE(bench.page.messages.at(0).at(1).toInt(), 1);

    QFile file(path + str(".csv"));
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    const QByteArray saved = file.readAll();
    const QStringList times{bench.page.frame(0, 1), bench.page.frame(1, 1), bench.page.frame(2, 1)};
    QCOMPARE(QString::fromUtf8(saved), str("No.,System Time,Direction,ID[PID],Length,Data(Hex),Check(Hex),State\n"
                                           "1,%1,Send,05[85],2,01 A2 ,5C,V1\n"
                                           "2,%2,Revice,21[61],3,DE AD 99 ,00,Error state\n"
                                           "3,%3,Send,3F[BF],0,,FF,V1\n")
                                           .arg(times.at(0), times.at(1), times.at(2)));

    LINCaptureParser parser;
    parser.feed(saved.constData(), saved.size());
    const auto frames = parser.finish();
    QVERIFY(frames.has_value());
    QCOMPARE(frames->size(), 3);
    QCOMPARE(frames->at(0).ID, quint8(0x05));
    QCOMPARE(frames->at(0).data, QByteArray::fromHex("01A2"));
    QCOMPARE(frames->at(1).ID, quint8(0x21));
    QCOMPARE(frames->at(1).data, QByteArray::fromHex("DEAD99"));
    QCOMPARE(frames->at(2).ID, quint8(0x3F));
    QCOMPARE(frames->at(2).data, QByteArray());

    // A second import of the same frames gives the same file.
    bench.page.page().slot_addRowItems(*frames);
    QCOMPARE(bench.page.frame(3, 5), bench.page.frame(0, 5));
    QCOMPARE(bench.page.frame(4, 4), bench.page.frame(1, 4));
}

void tst_GUI_LINModeList::cancelledSavingDoesNothing()
{
    Bench bench;
    const SaveDialogDriver dialog{QString()};
    bench.page.click("btn_save");
    QVERIFY(dialog.isAnswered());
    QVERIFY(bench.page.messages.isEmpty());
}

void tst_GUI_LINModeList::reportsAFailedSave()
{
    Bench bench;
    bench.page.tick(0);
    bench.run();
    QTemporaryDir folder;
    QVERIFY(folder.isValid());
    // The folder is gone by the time the file is written.
    const SaveDialogDriver dialog(folder.filePath(str("frames.csv")),
                                  [&folder](QFileDialog & /*dialog*/) { folder.remove(); });
    bench.page.click("btn_save");
    QVERIFY(dialog.isAnswered());
    QCOMPARE(bench.page.messages.count(), 1);
    QCOMPARE(bench.page.messages.at(0).at(1).toInt(), 4);
    QCOMPARE(bench.page.rowCount(), 1);
}

X9_GUI_TEST(tst_GUI_LINModeList)
#include "tst_GUI_LINModeList.moc"
