#include "device/CANCommunication.h"
#include "lin/LINFrameView.h"
#include "lin/LINTablePage.h"
#include "tests/lin/LINTestFrames.h"
#include "tests/support/SaveDialogDriver.h"
#include "tests/support/ScriptedAdapter.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

namespace {
/// Makes the functions that pages use reachable for the test.
class Page : public LINTablePage
{
    Q_OBJECT

public:
    Page(LINMode mode, const ChannelParam &param, CANCommunication &communication)
        : LINTablePage(mode, param, communication)
    {
        connectTable(&table, &save, &clear);
    }
    using LINModePage::startRunning;
    using LINModePage::stopRunning;

    LINFrameView table;
    QPushButton save;
    QPushButton clear;

protected slots:
    void slot_startBtnClicked() override {}
    void slot_sendTimeoutEvent() override {}

protected:
    void enableStartControls(bool /*enabled*/) override {}
};

/// A page for channel 1 of device 0, which is open.
class PageUnderTest
{
public:
    PageUnderTest()
        : manager(adapter.table())
        , page(LINModeMonitor, param(), manager)
        , states(&page, &LINModePage::sig_changeBtnEnableState)
        , messages(&page, &LINModePage::sig_showMessageBox)
    {
        manager.openLIN(param());
        adapter.takeCalls();
    }
    ~PageUnderTest() { manager.closeLIN(0, 1); }
    PageUnderTest(const PageUnderTest &) = delete;
    PageUnderTest &operator=(const PageUnderTest &) = delete;

    static ChannelParam param()
    {
        ChannelParam channel;
        channel.channel = 1;
        return channel;
    }
    QString message() const { return messages.isEmpty() ? QString() : messages.last().at(0).toString(); }
    int messageMode() const { return messages.isEmpty() ? -1 : messages.last().at(1).toInt(); }

    ScriptedAdapter adapter;
    CANCommunication manager;
    Page page;
    QSignalSpy states;
    QSignalSpy messages;
};
} // namespace

class tst_LINModePage : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }
    static void runs();
    static void doesNotRunWhenTheAdapterRefuses();
    static void saves();
    static void reportsAFailedSave();
    static void cancelledSavingDoesNothing();
};

void tst_LINModePage::runs()
{
    PageUnderTest test;
    QVERIFY(test.states.isValid());
    QVERIFY(!test.page.isRunning());
    QVERIFY(test.page.startRunning());
    QCOMPARE(test.adapter.takeCalls(), QStringList{QStringLiteral("KQ_ChangeLINMode 4 0 1 3")});
    QVERIFY(test.page.isRunning());
    QCOMPARE(test.states.count(), 1);
    QCOMPARE(test.states.at(0).at(0).value<uint8_t>(), uint8_t(3));
    QCOMPARE(test.states.at(0).at(1).toBool(), false);
    test.page.stopRunning();
    QVERIFY(!test.page.isRunning());
    test.page.stopRunning();
    QCOMPARE(test.states.count(), 2);
    QCOMPARE(test.states.at(1).at(1).toBool(), true);
    QCOMPARE(test.adapter.takeCalls(), QStringList());
    QCOMPARE(test.messages.count(), 0);
}

void tst_LINModePage::doesNotRunWhenTheAdapterRefuses()
{
    PageUnderTest test;
    test.adapter.answer("KQ_ChangeLINMode", 0);
    QVERIFY(!test.page.startRunning());
    QVERIFY(!test.page.isRunning());
    QCOMPARE(test.states.count(), 0);
    QCOMPARE(test.messages.count(), 1);
    QCOMPARE(test.message(), QStringLiteral("Communication error"));
    QCOMPARE(test.messageMode(), 4);
}

void tst_LINModePage::saves()
{
    PageUnderTest test;
    test.page.slot_addRowItem(linFrame(0x12, "01A2"), false);
    const QTemporaryDir folder;
    const SaveDialogDriver dialog(folder.filePath(QStringLiteral("frames")));
    test.page.save.click();
    QVERIFY(dialog.isAnswered());
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Save File"));
    QCOMPARE(dialog.nameFilters(), QStringList{QStringLiteral("Csv File(*.csv)")});
    QFile file(folder.filePath(QStringLiteral("frames.csv")));
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    QCOMPARE(file.readAll().count('\n'), 2);
    QCOMPARE(test.message(), QStringLiteral("Save successfully"));
    QCOMPARE(test.messageMode(), 1);
}

void tst_LINModePage::reportsAFailedSave()
{
    PageUnderTest test;
    auto folder = std::make_unique<QTemporaryDir>();
    // The folder goes away between the choice and the save.
    const QString path = folder->filePath(QStringLiteral("sub/frames.csv"));
    QVERIFY(QDir(folder->path()).mkdir(QStringLiteral("sub")));
    const SaveDialogDriver dialog(path, [&folder](QFileDialog &) { folder.reset(); });
    test.page.save.click();
    QVERIFY(dialog.isAnswered());
    QCOMPARE(test.messages.count(), 1);
    QCOMPARE(test.message(), QStringLiteral("Save failure"));
    QCOMPARE(test.messageMode(), 4);
}

void tst_LINModePage::cancelledSavingDoesNothing()
{
    PageUnderTest test;
    const SaveDialogDriver dialog{QString()};
    test.page.save.click();
    QVERIFY(dialog.isAnswered());
    QCOMPARE(test.messages.count(), 0);
}

X9_GUI_TEST(tst_LINModePage)
#include "tst_LINModePage.moc"
