#include "capture/GUI_CanSendFile.h"
#include "device/CANAPI.h"
#include "device/CANCommunication.h"
#include "tests/support/AdapterFolder.h"
#include "tests/support/SaveDialogDriver.h"
#include "tests/support/TabUser.h"
#include "tests/support/TestProgram.h"
#include "widgets/CHexEditView.h"

#include <QFile>
#include <QFileDialog>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSpinBox>
#include <QToolTip>
#include <QtTest>

#include <limits>

namespace {
// Both channels of device 0 sit on one bus, so each receives what the other sends; device 1 has a bus with traffic.
const QByteArray Buses = R"({
  "buses": [
    {"name": "quiet", "bitrate": "500k", "data_rate": 2, "nodes": []},
    {"name": "busy", "bitrate": "500k", "data_rate": 2, "nodes": [
      {"id": "0x100", "length": 8, "period_us": 2000, "payload": "counting"},
      {"id": "0x200", "length": 4, "period_us": 2000, "phase_us": 700, "payload": "counting"}
    ]}
  ],
  "devices": [
    {"serial": "A", "model": "X9FC-1", "firmware": "V2.05", "hardware": "V1",
     "can": [{"bus": "quiet"}, {"bus": "quiet"}], "lin": []},
    {"serial": "B", "model": "X9FC-2", "firmware": "V2.05", "hardware": "V1",
     "can": [{"bus": "busy"}, {"bus": "busy"}], "lin": []}
  ]
})";

// Pulled out half a second after it was opened, and plugged in again at once.
const QByteArray Unplugged = R"({
  "buses": [{"name": "busy", "bitrate": "500k", "nodes": [{"id": "0x100", "length": 8, "period_us": 1000}]}],
  "devices": [{"model": "X9FC-1", "can": [{"bus": "busy"}],
               "faults": {"vanish_after_ms": 500, "return_after_ms": 1}}]
})";
} // namespace

class tst_GUI_CanDevice : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }
    void init();
    void cleanup();

    void opensAndClosesItsChannel();
    void isNotOpenWhenTheChannelIsTaken();
    void sendsOneFrameAndListsIt();
    void listsARefusedFrame();
    void refusesAnIdentifierOutOfRange();
    void emptyIdentifierIsOne();
    void cancelledSavingDoesNothing();
    void correctsTheIdentifierWhileTyping();
    void offersLengthsByProtocol();
    void sendsFdFrames();
    void lengthSizesTheData();
    void protocolKeepsTheData();
    void editsTheDataOfALongFrame();
    void closesWhileTheDataIsEdited();
    void pausedSendingSendsButDoesNotList();
    void listsOnlyItsOwnChannel();
    void pausedReceivingListsNothing();
    void hidesAnIdentifier();
    static void refusesAFilterAbove29Bits_data();
    void refusesAFilterAbove29Bits();
    void showsTheRates();
    void savesTheMostRecentFrames();
    static void savesNoFileWithoutFrames_data();
    void savesNoFileWithoutFrames();
    void reportsAFailedSave();
    void savesInRealTime();
    void realTimeSavingEndsWithTheFolder();
    void realTimeSavingTakesTextFilesOnly();
    void realTimeSavingCompletesTheName();
    void cacheFieldActsWhenItIsEdited();
    void cacheFieldSaysTheLimitInForce();
    static void oddCacheSizesKeepTheOneInForce_data();
    void oddCacheSizesKeepTheOneInForce();
    void takesALongIdentifier();
    void folds();
    void resetsTheChannel();
    void reportsAFailedReset();
    void offersLengthsByMode();
    void losesNothingWhenTheAdapterIsPulledOut();
    void opensTheFileSender();
    void playsAFile();
    void routesTheNoticesOfTheFileSender();

private:
    std::unique_ptr<AdapterFolder> m_folder;
    std::unique_ptr<CANCommunication> m_manager;
};

void tst_GUI_CanDevice::init()
{
    m_folder = std::make_unique<AdapterFolder>(Buses);
    m_manager = std::make_unique<CANCommunication>(std::make_unique<CANAPI>(QStringLiteral(X9_VIRTUAL_ADAPTER)));
    QCOMPARE(m_manager->api().state(), AdapterLibraryState::Loaded);
}

void tst_GUI_CanDevice::cleanup()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_manager.reset();
    m_folder.reset();
}

void tst_GUI_CanDevice::opensAndClosesItsChannel()
{
    {
        const TabUser user(channel(0, 0), *m_manager);
        QVERIFY(user.tab.isChannelOpen());
        QVERIFY(m_manager->isDeviceOpen(0));
    }
    QVERIFY(!m_manager->isDeviceOpen(0));
}

void tst_GUI_CanDevice::isNotOpenWhenTheChannelIsTaken()
{
    const TabUser user(channel(0, 0), *m_manager);
    {
        const TabUser second(channel(0, 0), *m_manager);
        QVERIFY(!second.tab.isChannelOpen());
    }
    QVERIFY(m_manager->isDeviceOpen(0)); // the second tab has not closed what it did not open
}

void tst_GUI_CanDevice::sendsOneFrameAndListsIt()
{
    const TabUser user(channel(0, 0), *m_manager);
    const TabUser other(channel(0, 1), *m_manager);
    user.choose("cbx_frameType", 1);
    user.type("lbx_frameID", QStringLiteral("1ABCDEF"));
    user.choose("cbx_length", 3);
    user.typeData(QStringLiteral("0A0B0C"));
    user.click("btn_sendData");
    QTRY_COMPARE(user.rows(), 1);
    QCOMPARE(user.cell(0, 2), QStringLiteral("None"));
    QCOMPARE(user.cell(0, 3), QStringLiteral("Send successfully"));
    QCOMPARE(user.cell(0, 4), QStringLiteral("0x1ABCDEF"));
    QCOMPARE(user.cell(0, 7), QStringLiteral("Extend"));
    QCOMPARE(user.cell(0, 9), QStringLiteral("0A 0B 0C "));
    QTRY_COMPARE(other.rows(), 1);
    QCOMPARE(other.cell(0, 3), QStringLiteral("Revice"));
    QCOMPARE(other.cell(0, 9), QStringLiteral("0A 0B 0C "));
}

void tst_GUI_CanDevice::listsARefusedFrame()
{
    ChannelParam listening = channel(0, 0);
    listening.listenOnly = 1;
    const TabUser user(listening, *m_manager);
    user.click("btn_sendData");
    QTRY_COMPARE(user.rows(), 1);
    QCOMPARE(user.cell(0, 3), QStringLiteral("Send failure"));
}

void tst_GUI_CanDevice::refusesAnIdentifierOutOfRange()
{
    const TabUser user(channel(0, 0), *m_manager);
    QSignalSpy messages(&user.tab, &WidgetDeviceBase::sig_showMessageBox);
    user.choose("cbx_frameType", 1);
    user.type("lbx_frameID", QStringLiteral("800"));
    user.choose("cbx_frameType", 0); // now out of range
    user.click("btn_sendData");
    QCOMPARE(messages.count(), 1);
    QCOMPARE(messages.first().at(0).toString(),
             QStringLiteral("Frame ID error, Standard frame valid range: 0x0-0x7FF, Extend frame valid range: "
                            "0x0-0x1FFFFFFF"));
    QCOMPARE(messages.first().at(1).toInt(), 4);
    QVERIFY(user.find<QLineEdit>("lbx_frameID")->text() != QLatin1String("800"));
    user.table()->refresh();
    QCOMPARE(user.rows(), 0);
}

void tst_GUI_CanDevice::emptyIdentifierIsOne()
{
    const TabUser user(channel(0, 0), *m_manager);
    user.type("lbx_frameID", QString());
    user.click("btn_sendData");
    QCOMPARE(user.find<QLineEdit>("lbx_frameID")->text(), QStringLiteral("1"));
    QTRY_COMPARE(user.rows(), 1);
    QCOMPARE(user.cell(0, 4), QStringLiteral("0x1"));
}

void tst_GUI_CanDevice::cancelledSavingDoesNothing()
{
    const TabUser user(channel(0, 0), *m_manager);
    QSignalSpy notices(&user.tab, &WidgetDeviceBase::sig_showNotice);
    for (const char *button : {"btn_save", "btn_realTimeSaving"}) {
        const SaveDialogDriver dialog{QString()};
        user.click(button);
        QVERIFY(dialog.isAnswered());
    }
    QCOMPARE(notices.count(), 0);
    QVERIFY(!user.table()->isRealTimeSaving());
    QCOMPARE(user.find<QPushButton>("btn_realTimeSaving")->text(), QStringLiteral("Real time saving"));
}

void tst_GUI_CanDevice::correctsTheIdentifierWhileTyping()
{
    const TabUser user(channel(0, 0), *m_manager);
    user.type("lbx_frameID", QStringLiteral("8000"));
    QCOMPARE(user.find<QLineEdit>("lbx_frameID")->text(), QStringLiteral("7FF"));
}

void tst_GUI_CanDevice::offersLengthsByProtocol()
{
    const TabUser classic(channel(0, 0), *m_manager);
    QVERIFY(classic.find<QComboBox>("cbx_frameFormat")->isEnabled());
    QVERIFY(!classic.find<QComboBox>("cbx_protocol")->isEnabled());
    QCOMPARE(classic.find<QComboBox>("cbx_length")->count(), 8);

    const TabUser fd(channel(0, 1, true), *m_manager);
    QVERIFY(fd.tab.isChannelOpen());
    QVERIFY(!fd.find<QComboBox>("cbx_frameFormat")->isEnabled());
    QVERIFY(fd.find<QComboBox>("cbx_protocol")->isEnabled());
    fd.choose("cbx_protocol", 1);
    QCOMPARE(fd.find<QComboBox>("cbx_length")->count(), 15);
    fd.choose("cbx_length", 64);
    fd.choose("cbx_protocol", 0);
    QCOMPARE(fd.find<QComboBox>("cbx_length")->currentData().toInt(), 8);
}

void tst_GUI_CanDevice::sendsFdFrames()
{
    const TabUser user(channel(0, 0, true), *m_manager);
    const TabUser other(channel(0, 1, true), *m_manager);
    user.choose("cbx_protocol", 2);
    user.choose("cbx_length", 64);
    user.typeData(QString(128, QLatin1Char('5')));
    user.click("btn_sendData");
    QTRY_COMPARE(other.rows(), 1);
    QCOMPARE(other.cell(0, 5), QStringLiteral("CANFD Speed"));
    QCOMPARE(other.cell(0, 8), QStringLiteral("0x40"));
    QCOMPARE(other.cell(0, 9), QStringLiteral("55 ").repeated(64));
}

void tst_GUI_CanDevice::lengthSizesTheData()
{
    const TabUser user(channel(0, 0), *m_manager);
    QCOMPARE(user.dataLine()->text(), QStringLiteral("00 00 00 00 00 00 00 00 "));
    user.typeData(QStringLiteral("1122334455667788"));
    user.choose("cbx_length", 2);
    QCOMPARE(user.dataLine()->text(), QStringLiteral("11 22 "));
    user.click("btn_sendData");
    user.choose("cbx_length", 4);
    user.click("btn_sendData");
    user.choose("cbx_length", 5);
    user.typeData(QStringLiteral("aBc"));
    user.click("btn_sendData");
    QTRY_COMPARE(user.rows(), 3);
    QCOMPARE(user.cell(0, 8), QStringLiteral("0x2"));
    QCOMPARE(user.cell(0, 9), QStringLiteral("11 22 "));
    QCOMPARE(user.cell(1, 9), QStringLiteral("11 22 00 00 "));
    QCOMPARE(user.cell(2, 9), QStringLiteral("AB 0C 00 00 00 "));
}

void tst_GUI_CanDevice::protocolKeepsTheData()
{
    const TabUser user(channel(0, 0, true), *m_manager);
    user.typeData(QStringLiteral("1122334455667788"));
    user.choose("cbx_protocol", 1);
    QCOMPARE(user.dataLine()->text(), QStringLiteral("11 22 33 44 55 66 77 88 "));
    user.choose("cbx_length", 12);
    user.choose("cbx_protocol", 2);
    user.click("btn_sendData");
    user.choose("cbx_protocol", 0); // 8 bytes at most
    user.click("btn_sendData");
    QTRY_COMPARE(user.rows(), 2);
    QCOMPARE(user.cell(0, 9), QStringLiteral("11 22 33 44 55 66 77 88 00 00 00 00 "));
    QCOMPARE(user.cell(1, 9), QStringLiteral("11 22 33 44 55 66 77 88 "));
}

void tst_GUI_CanDevice::editsTheDataOfALongFrame()
{
    const TabUser user(channel(0, 0, true), *m_manager);
    user.choose("cbx_protocol", 1);
    user.choose("cbx_length", 64);
    QTest::mouseClick(user.find<QWidget>("lbx_data")->findChild<QPushButton *>(), Qt::LeftButton);
    auto *dialog = user.tab.findChild<CHexEditView *>();
    QVERIFY(dialog != nullptr);
    auto *editor = dialog->findChild<QWidget *>(QStringLiteral("hexEdit"));
    QTest::keyClicks(editor, QStringLiteral("77").repeated(70));
    QTest::keyClick(editor, Qt::Key_Return);
    QCOMPARE(user.dataLine()->text(), QStringLiteral("77 ").repeated(8));
    user.click("btn_sendData");
    QTRY_COMPARE(user.rows(), 1);
    QCOMPARE(user.cell(0, 9), QStringLiteral("77 ").repeated(64));
}

void tst_GUI_CanDevice::closesWhileTheDataIsEdited()
{
    QPointer<CHexEditView> dialog;
    {
        const TabUser user(channel(0, 0), *m_manager);
        QTest::mouseClick(user.find<QWidget>("lbx_data")->findChild<QPushButton *>(), Qt::LeftButton);
        dialog = user.tab.findChild<CHexEditView *>();
        QVERIFY(dialog != nullptr);
    }
    QVERIFY(dialog == nullptr);
    QVERIFY(QApplication::activeModalWidget() == nullptr);
}

void tst_GUI_CanDevice::pausedSendingSendsButDoesNotList()
{
    const TabUser user(channel(0, 0), *m_manager);
    const TabUser other(channel(0, 1), *m_manager);
    QSignalSpy notices(&user.tab, &WidgetDeviceBase::sig_showNotice);
    user.click("btn_pause");
    QCOMPARE(notices.last().at(0).toString(), QStringLiteral("Suspend CAN sending"));
    user.click("btn_sendData");
    QTRY_COMPARE(other.rows(), 1);
    user.table()->refresh();
    QCOMPARE(user.rows(), 0);
    user.click("btn_pause");
    QCOMPARE(notices.last().at(0).toString(), QStringLiteral("Resume CAN sending"));
    user.click("btn_sendData");
    QTRY_COMPARE(user.rows(), 1);
}

void tst_GUI_CanDevice::listsOnlyItsOwnChannel()
{
    TabUser user(channel(0, 0), *m_manager);
    VCI_CAN_OBJ frame{};
    frame.ID = 0x123;
    user.tab.slot_readResultCallback(0, 1, {frame});
    user.tab.slot_readResultCallback(1, 0, {frame});
    user.table()->refresh();
    QCOMPARE(user.rows(), 0);
    user.tab.slot_readResultCallback(0, 0, {frame});
    user.table()->refresh();
    QCOMPARE(user.rows(), 1);
}

void tst_GUI_CanDevice::pausedReceivingListsNothing()
{
    TabUser user(channel(0, 0), *m_manager);
    QSignalSpy notices(&user.tab, &WidgetDeviceBase::sig_showNotice);
    user.click("btn_pauseReceiving");
    QCOMPARE(notices.last().at(0).toString(), QStringLiteral("Suspend CAN receiving"));
    user.tab.slot_readResultCallback(0, 0, {VCI_CAN_OBJ{}});
    user.tab.slot_readResultCallbackCANFD(0, 0, {VCI_CANFD_OBJ{}});
    user.table()->refresh();
    QCOMPARE(user.rows(), 0);
    user.click("btn_pauseReceiving");
    QCOMPARE(notices.last().at(0).toString(), QStringLiteral("Resume CAN receiving"));
    user.tab.slot_readResultCallback(0, 0, {VCI_CAN_OBJ{}});
    user.table()->refresh();
    QCOMPARE(user.rows(), 1);
}

void tst_GUI_CanDevice::hidesAnIdentifier()
{
    TabUser user(channel(0, 0), *m_manager);
    VCI_CAN_OBJ hidden{};
    hidden.ID = 0x100;
    VCI_CAN_OBJ shown{};
    shown.ID = 0x200;
    user.type("lbx_setFilter", QStringLiteral("100"));
    user.click("btn_setFilter"); // not enabled: nothing happens
    user.tab.slot_readResultCallback(0, 0, {hidden, shown});
    user.table()->refresh();
    QCOMPARE(user.rows(), 2);
    user.click("rbtn_enable");
    user.click("btn_setFilter");
    user.tab.slot_readResultCallback(0, 0, {hidden, shown, hidden});
    user.table()->refresh();
    QCOMPARE(user.rows(), 3);
    user.click("rbtn_disable");
    user.tab.slot_readResultCallback(0, 0, {hidden});
    user.table()->refresh();
    QCOMPARE(user.rows(), 4);
}

void tst_GUI_CanDevice::refusesAFilterAbove29Bits_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("30 bits") << QStringLiteral("20000000");
    QTest::newRow("64 bits") << QStringLiteral("FFFFFFFFFFFFFFFF");
}

void tst_GUI_CanDevice::refusesAFilterAbove29Bits()
{
    QFETCH(QString, text);
    TabUser user(channel(0, 0), *m_manager);
    QSignalSpy messages(&user.tab, &WidgetDeviceBase::sig_showMessageBox);
    VCI_CAN_OBJ frame{};
    frame.ID = 0x100;
    user.click("rbtn_enable");
    user.type("lbx_setFilter", QStringLiteral("100"));
    user.click("btn_setFilter");
    QCOMPARE(messages.count(), 0);
    user.type("lbx_setFilter", text);
    user.click("btn_setFilter");
    QCOMPARE(messages.count(), 1);
    QCOMPARE(messages.first(), (QVariantList{QStringLiteral("There is no such frame ID, the highest one is "
                                                            "0x1FFFFFFF. No frames are hidden now."),
                                             4}));
    user.tab.slot_readResultCallback(0, 0, {frame}); // the filter that was in force is not
    user.table()->refresh();
    QCOMPARE(user.rows(), 1);
    user.type("lbx_setFilter", QString());
    user.click("btn_setFilter");
    user.click("rbtn_disable");
    user.type("lbx_setFilter", text);
    user.click("btn_setFilter");
    QCOMPARE(messages.count(), 1);
}

void tst_GUI_CanDevice::showsTheRates()
{
    const TabUser user(channel(1, 0), *m_manager);
    QCOMPARE(user.find<QLineEdit>("lbx_rateR")->text(), QStringLiteral("0 p/s"));
    user.click("btn_sendData");
    QTRY_VERIFY(user.find<QLineEdit>("lbx_rateT")->text() == QLatin1String("1 p/s"));
    QTRY_VERIFY(user.find<QLineEdit>("lbx_rateR")->text().split(QLatin1Char(' ')).first().toInt() > 100);
}

void tst_GUI_CanDevice::savesTheMostRecentFrames()
{
    TabUser user(channel(0, 0), *m_manager);
    QVector<VCI_CAN_OBJ> frames(5, VCI_CAN_OBJ{});
    for (int i = 0; i < frames.size(); ++i) {
        frames[i].ID = static_cast<quint32>(i);
    }
    user.tab.slot_readResultCallback(0, 0, frames);
    user.table()->refresh();
    user.type("lbx_frameOfSaved", QStringLiteral("2"));
    QSignalSpy notices(&user.tab, &WidgetDeviceBase::sig_showNotice);
    const QString path = m_folder->filePath(QStringLiteral("capture.csv"));
    const SaveDialogDriver dialog(path);
    user.click("btn_save");
    QVERIFY(dialog.isAnswered());
    QCOMPARE(dialog.nameFilters(),
             (QStringList{QStringLiteral("CAN File(*.can)"), QStringLiteral("CANFD File(*.canfd)"),
                          QStringLiteral("Csv File(*.csv)"), QStringLiteral("Text File(*.txt)")}));
    QCOMPARE(notices.count(), 1);
    QCOMPARE(notices.first(), (QVariantList{QStringLiteral("File saved successfully!"), 0, 1500}));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    const QList<QByteArray> lines = file.readAll().split('\n');
    QCOMPARE(lines.size(), 6); // own header, titles, two frames, the empty line and its end
    QVERIFY2(lines.at(2).startsWith("4,") && lines.at(2).contains(",0x3,"), lines.at(2).constData());
    QVERIFY2(lines.at(3).startsWith("5,") && lines.at(3).contains(",0x4,"), lines.at(3).constData());
}

void tst_GUI_CanDevice::savesNoFileWithoutFrames_data()
{
    QTest::addColumn<QString>("count");
    QTest::newRow("empty") << QString();
    QTest::newRow("0") << QStringLiteral("0");
    QTest::newRow("zeros") << QStringLiteral("000");
}

void tst_GUI_CanDevice::savesNoFileWithoutFrames()
{
    QFETCH(QString, count);
    TabUser user(channel(0, 0), *m_manager);
    user.tab.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&user.tab));
    user.tab.slot_readResultCallback(0, 0, {VCI_CAN_OBJ{}});
    user.table()->refresh();
    QSignalSpy notices(&user.tab, &WidgetDeviceBase::sig_showNotice);
    user.type("lbx_frameOfSaved", count);
    const QString path = m_folder->filePath(QStringLiteral("nothing.can"));
    const SaveDialogDriver dialog(path);
    user.click("btn_save");
    QVERIFY(!dialog.isAnswered());
    QVERIFY(!QFile::exists(path));
    QCOMPARE(notices.count(), 0);
    QVERIFY(user.find<QLineEdit>("lbx_frameOfSaved")->hasFocus());
    QVERIFY(QToolTip::isVisible());
    QCOMPARE(QToolTip::text(), QStringLiteral("How many of the newest frames to save, at least 1"));
}

void tst_GUI_CanDevice::reportsAFailedSave()
{
    const TabUser user(channel(0, 0), *m_manager);
    QSignalSpy notices(&user.tab, &WidgetDeviceBase::sig_showNotice);
    const SaveDialogDriver dialog(m_folder->filePath(QStringLiteral("capture.bin")));
    user.click("btn_save");
    QVERIFY(dialog.isAnswered());
    QCOMPARE(notices.first(), (QVariantList{QStringLiteral("File saving failure!"), 3, 1500}));
}

void tst_GUI_CanDevice::savesInRealTime()
{
    TabUser user(channel(0, 0), *m_manager);
    user.tab.slot_readResultCallback(0, 0, {VCI_CAN_OBJ{}});
    user.table()->refresh();
    const QString path = m_folder->filePath(QStringLiteral("live.csv"));
    const SaveDialogDriver dialog(path);
    user.click("btn_realTimeSaving");
    QCOMPARE(dialog.nameFilters(),
             (QStringList{QStringLiteral("Text File(*.txt)"), QStringLiteral("CSV File(*.csv)")}));
    QCOMPARE(user.find<QPushButton>("btn_realTimeSaving")->text(), QStringLiteral("Stop"));
    user.tab.slot_readResultCallback(0, 0, {VCI_CAN_OBJ{}, VCI_CAN_OBJ{}});
    user.table()->refresh();
    user.click("btn_realTimeSaving");
    QCOMPARE(user.find<QPushButton>("btn_realTimeSaving")->text(), QStringLiteral("Real time saving"));
    QVERIFY(!user.table()->isRealTimeSaving());
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    const QList<QByteArray> lines = file.readAll().split('\n');
    QVERIFY(lines.at(2).startsWith("1,"));
    QVERIFY(lines.at(4).startsWith("2,") && lines.at(4).endsWith(','));
    QVERIFY(lines.at(5).startsWith("3,"));
}

/// Windows keeps a folder with an open file in it, and saving goes on.
void tst_GUI_CanDevice::realTimeSavingEndsWithTheFolder()
{
    QTemporaryDir folder;
    TabUser user(channel(0, 0), *m_manager);
    const SaveDialogDriver dialog(folder.filePath(QStringLiteral("live.csv")));
    user.click("btn_realTimeSaving");
    QVERIFY(user.table()->isRealTimeSaving());
    QSignalSpy notices(&user.tab, &WidgetDeviceBase::sig_showNotice);
    const bool isGone = QDir(folder.path()).removeRecursively();
    user.tab.slot_readResultCallback(0, 0, {VCI_CAN_OBJ{}});
    user.table()->refresh();
#ifdef Q_OS_WIN
    QVERIFY(!isGone);
    user.table()->realTimeSave(false, QString());
    QCOMPARE(notices.count(), 0);
#else
    QVERIFY(isGone);
    QTRY_COMPARE(notices.count(), 1);
    user.tab.slot_readResultCallback(0, 0, {VCI_CAN_OBJ{}});
    user.table()->refresh();
    QCOMPARE(notices.count(), 1);
    QCOMPARE(notices.first(), (QVariantList{QStringLiteral("File saving failure!"), 3, 1500}));
    QCOMPARE(user.find<QPushButton>("btn_realTimeSaving")->text(), QStringLiteral("Real time saving"));
#endif
}

/// The other formats cannot be appended to.
void tst_GUI_CanDevice::realTimeSavingTakesTextFilesOnly()
{
    const QTemporaryDir folder;
    TabUser user(channel(0, 0), *m_manager);
    QSignalSpy notices(&user.tab, &WidgetDeviceBase::sig_showNotice);
    for (const char *name : {"live.can", "live.canfd", "live.log"}) {
        const SaveDialogDriver dialog(folder.filePath(QLatin1String(name)));
        user.click("btn_realTimeSaving");
        QVERIFY(dialog.isAnswered());
        QCOMPARE(notices.count(), 1);
        QCOMPARE(
            notices.takeFirst(),
            (QVariantList{QStringLiteral("File saving failure!\nOnly .txt and .csv files can be saved in real time."),
                          3, 1500}));
        QVERIFY(!user.table()->isRealTimeSaving());
        QCOMPARE(user.find<QPushButton>("btn_realTimeSaving")->text(), QStringLiteral("Real time saving"));
    }
    QVERIFY(QDir(folder.path()).isEmpty());
}

/// A name without an ending gets the one of the file type chosen.
void tst_GUI_CanDevice::realTimeSavingCompletesTheName()
{
    for (const int filter : {0, 1}) {
        const QTemporaryDir folder; // the dialog completes a name by those that are there
        TabUser user(channel(0, 0), *m_manager);
        const QString name = folder.filePath(QStringLiteral("live"));
        const SaveDialogDriver dialog(name, [filter](QFileDialog &shown) {
            shown.selectNameFilter(shown.nameFilters().at(filter));
            emit shown.filterSelected(shown.nameFilters().at(filter));
        });
        user.click("btn_realTimeSaving");
        QVERIFY(user.table()->isRealTimeSaving());
        QVERIFY(QFile::exists(name + (filter == 0 ? QStringLiteral(".txt") : QStringLiteral(".csv"))));
    }
}

void tst_GUI_CanDevice::cacheFieldActsWhenItIsEdited()
{
    TabUser user(channel(0, 0), *m_manager);
    auto *field = user.find<QLineEdit>("lbx_cache");
    QCOMPARE(field->text(), QStringLiteral("20000"));
    QCOMPARE(user.table()->cacheSize(), 1000000);
    QVERIFY(QTest::qWaitForWindowActive(&user.tab));
    field->setFocus();
    QVERIFY(field->hasFocus());
    QTest::keyClick(field, Qt::Key_Tab); // passed through
    QVERIFY(!field->hasFocus());
    QCOMPARE(user.table()->cacheSize(), 1000000);
    QCOMPARE(field->text(), QStringLiteral("20000"));
    field->setFocus();
    QTest::keyClick(field, Qt::Key_Return); // what is shown is wanted
    QCOMPARE(user.table()->cacheSize(), 20000);
    QCOMPARE(field->text(), QStringLiteral("20000"));
    user.table()->setCacheSize(30000);
    user.type("lbx_cache", QStringLiteral("20000")); // typed, though it reads as before
    QTest::keyClick(field, Qt::Key_Tab);
    QCOMPARE(user.table()->cacheSize(), 20000);

    user.tab.slot_readResultCallback(0, 0, QVector<VCI_CAN_OBJ>(10, VCI_CAN_OBJ{}));
    user.table()->refresh();
    user.type("lbx_cache", QStringLiteral("4"));
    QCOMPARE(user.rows(), 10);
    QTest::keyClick(field, Qt::Key_Return);
    QCOMPARE(user.rows(), 4);
    QCOMPARE(field->text(), QStringLiteral("4"));
}

void tst_GUI_CanDevice::cacheFieldSaysTheLimitInForce()
{
    const TabUser user(channel(0, 0), *m_manager);
    auto *field = user.find<QLineEdit>("lbx_cache");
    const auto says = [field](int limit) {
        const QString words = QStringLiteral("The table holds at most %1 frames.").arg(QLocale().toString(limit));
        return field->toolTip().startsWith(words);
    };
    QVERIFY2(says(1000000), qPrintable(field->toolTip()));
    user.type("lbx_cache", QStringLiteral("500"));
    QVERIFY(says(1000000));
    QTest::keyClick(field, Qt::Key_Return);
    QVERIFY2(says(500), qPrintable(field->toolTip()));
    user.type("lbx_cache", QStringLiteral("0"));
    QTest::keyClick(field, Qt::Key_Return);
    QVERIFY(says(500));
    QCOMPARE(field->text(), QStringLiteral("500"));
}

void tst_GUI_CanDevice::oddCacheSizesKeepTheOneInForce_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("rows");
    QTest::newRow("empty") << QString() << 500 << 10;
    QTest::newRow("zero") << "0" << 500 << 10;
    QTest::newRow("zeros") << "000" << 500 << 10;
    QTest::newRow("negative") << "-3" << 500 << 10;
    QTest::newRow("no number") << "abc" << 500 << 10;
    QTest::newRow("number and more") << "12x" << 500 << 10;
    QTest::newRow("blanks") << "  " << 500 << 10;
    QTest::newRow("ten million") << "10000000" << 10000000 << 10;
    QTest::newRow("above the range") << "99999999999999999999" << std::numeric_limits<int>::max() << 10;
    QTest::newRow("leading zeros") << "0007" << 7 << 7;
}

/// Typed, where the field lets only digits through, and set from outside.
void tst_GUI_CanDevice::oddCacheSizesKeepTheOneInForce()
{
    QFETCH(QString, text);
    QFETCH(int, size);
    TabUser user(channel(0, 0), *m_manager);
    auto *field = user.find<QLineEdit>("lbx_cache");
    user.type("lbx_cache", QStringLiteral("500"));
    QTest::keyClick(field, Qt::Key_Return);
    user.tab.slot_readResultCallback(0, 0, QVector<VCI_CAN_OBJ>(10, VCI_CAN_OBJ{}));
    user.table()->refresh();
    field->setText(text);
    emit field->editingFinished();
    QCOMPARE(user.table()->cacheSize(), size);
    QCOMPARE(field->text(), QString::number(size));
    QTEST(user.rows(), "rows");

    QString digits = text;
    user.type("lbx_cache", text);
    QCOMPARE(field->text(), digits.remove(QRegularExpression(QStringLiteral("[^0-9]"))));
}

void tst_GUI_CanDevice::takesALongIdentifier()
{
    const TabUser user(channel(0, 0), *m_manager);
    QSignalSpy messages(&user.tab, &WidgetDeviceBase::sig_showMessageBox);
    const QString longText(40, QLatin1Char('A'));
    user.type("lbx_frameID", longText);
    QCOMPARE(user.find<QLineEdit>("lbx_frameID")->text(), QStringLiteral("7FF"));
    user.find<QLineEdit>("lbx_frameID")->setText(longText);
    user.click("btn_sendData");
    QCOMPARE(messages.count(), 1);
    user.type("lbx_setFilter", longText);
    user.click("rbtn_enable");
    user.click("btn_setFilter"); // no identifier: hides nothing
    user.tab.findChild<QLineEdit *>(QStringLiteral("lbx_frameID"))->setText(QStringLiteral("5"));
    user.click("btn_sendData");
    QTRY_COMPARE(user.rows(), 1);
}

void tst_GUI_CanDevice::folds()
{
    const TabUser user(channel(0, 0), *m_manager);
    auto *panel = user.find<QWidget>("widget_content");
    const int height = panel->height();
    const int tableHeight = user.table()->height();
    QVERIFY(height > 0);
    QVERIFY(height <= 155);
    QCOMPARE(panel->maximumHeight(), 155);
    user.click("btn_fold");
    QVERIFY(panel->maximumHeight() > 0); // on its way
    QTRY_COMPARE(panel->maximumHeight(), 0);
    QTRY_COMPARE(user.table()->height(), tableHeight + height);
    user.click("btn_fold");
    QTRY_COMPARE(panel->maximumHeight(), 155);
    QTRY_COMPARE(panel->height(), height);

    user.click("btn_fold"); // turned round half-way
    QTRY_VERIFY(panel->maximumHeight() < 100);
    user.click("btn_fold");
    QTRY_COMPARE(panel->maximumHeight(), 155);
}

void tst_GUI_CanDevice::resetsTheChannel()
{
    const TabUser other(channel(0, 1), *m_manager);
    const TabUser user(channel(0, 0), *m_manager);
    QSignalSpy messages(&user.tab, &WidgetDeviceBase::sig_showMessageBox);
    user.click("btn_reset");
    QCOMPARE(messages.count(), 1);
    QCOMPARE(messages.first(), (QVariantList{QStringLiteral("Device reset"), 1}));
    user.click("btn_sendData"); // 800 ms long closed
    const auto isHeard = [&] {
        user.click("btn_sendData");
        other.table()->refresh();
        return other.rows() > 0;
    };
    QTRY_VERIFY(isHeard());
    QCOMPARE(user.cell(0, 3), QStringLiteral("Send failure"));
    QVERIFY(user.tab.isChannelOpen());
}

void tst_GUI_CanDevice::reportsAFailedReset()
{
    const TabUser user(channel(0, 0), *m_manager);
    QSignalSpy messages(&user.tab, &WidgetDeviceBase::sig_showMessageBox);
    QCOMPARE(m_manager->closeChannel(0, 0), CAN_OK); // and with it the device
    user.click("btn_reset");
    QCOMPARE(messages.count(), 1);
    QCOMPARE(messages.first(), (QVariantList{QStringLiteral("Device reset failure"), 4}));
}

void tst_GUI_CanDevice::offersLengthsByMode()
{
    const TabUser classic(channel(0, 0), *m_manager);
    QVERIFY(classic.find<QComboBox>("cbx_frameFormat")->isEnabled());
    QVERIFY(!classic.find<QComboBox>("cbx_protocol")->isEnabled());
    QCOMPARE(classic.find<QComboBox>("cbx_length")->count(), 8);
    const TabUser fd(channel(0, 1, true), *m_manager);
    QVERIFY(!fd.find<QComboBox>("cbx_frameFormat")->isEnabled());
    QVERIFY(fd.find<QComboBox>("cbx_protocol")->isEnabled());
    QCOMPARE(fd.find<QComboBox>("cbx_length")->count(), 8); // the protocol is still CAN
}

void tst_GUI_CanDevice::losesNothingWhenTheAdapterIsPulledOut()
{
    m_manager.reset();
    m_folder.reset();
    m_folder = std::make_unique<AdapterFolder>(Unplugged);
    m_manager = std::make_unique<CANCommunication>(std::make_unique<CANAPI>(QStringLiteral(X9_VIRTUAL_ADAPTER)));
    {
        const TabUser user(channel(0, 0), *m_manager);
        QVERIFY(user.tab.isChannelOpen());
        const QString path = m_folder->filePath(QStringLiteral("live.csv"));
        QVERIFY(user.table()->realTimeSave(true, path));
        user.type("lbx_frameID", QStringLiteral("7FF"));
        const auto sendFails = [&user] {
            user.click("btn_sendData");
            user.table()->refresh();
            const QAbstractItemModel *model = user.table()->findChild<QTableView *>()->model();
            return user.cell(model->rowCount() - 1, 3) == QLatin1String("Send failure");
        };
        QTRY_VERIFY(sendFails());
        const int rows = user.rows();
        QVERIFY(rows > 100);
        QVERIFY(user.table()->save(m_folder->filePath(QStringLiteral("kept.can"))));
        QCOMPARE(QFileInfo(m_folder->filePath(QStringLiteral("kept.can"))).size(), qint64(20 + 24 * rows));
        user.table()->realTimeSave(false, path);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll().count('\n'), rows + 3); // own header, titles, the empty line of the first save
    }
    QVERIFY(!m_manager->isDeviceOpen(0));
    const TabUser again(channel(0, 0), *m_manager);
    QVERIFY(again.tab.isChannelOpen());
    QTRY_VERIFY(again.rows() > 0);
}

void tst_GUI_CanDevice::opensTheFileSender()
{
    TabUser user(channel(0, 0), *m_manager);
    user.tab.setObjectName(QStringLiteral("CAN Device: 0 Channel: 0"));
    QVERIFY(user.dialog<GUI_CanSendFile>() == nullptr);
    user.click("btn_sendFile");
    QPointer<GUI_CanSendFile> dialog = user.dialog<GUI_CanSendFile>();
    QVERIFY(dialog != nullptr);
    QVERIFY(dialog->isVisible());
    QVERIFY(!dialog->isModal());
    QCOMPARE(dialog->windowTitle(), QStringLiteral("CAN Device: 0 Channel: 0  -  Send File"));
    dialog->findChild<QLineEdit *>(QStringLiteral("lbx_fileName"))->setText(QStringLiteral("kept"));
    dialog->close();
    QVERIFY(!dialog->isVisible());
    user.click("btn_sendFile");
    QVERIFY(dialog->isVisible());
    user.click("btn_sendFile");
    QCOMPARE(user.tab.findChildren<GUI_CanSendFile *>().size(), 1);
    QCOMPARE(dialog->findChild<QLineEdit *>(QStringLiteral("lbx_fileName"))->text(), QStringLiteral("kept"));
}

/// What the tab has received and saved goes out on the tab's own channel, and stops with the tab.
void tst_GUI_CanDevice::playsAFile()
{
    const TabUser other(channel(0, 1), *m_manager);
    auto user = std::make_unique<TabUser>(channel(0, 0), *m_manager);
    for (const char *id : {"123", "456"}) {
        user->type("lbx_frameID", QLatin1String(id));
        user->click("btn_sendData");
    }
    QTRY_COMPARE(user->rows(), 2);
    const QString path = m_folder->filePath(QStringLiteral("played.can"));
    QVERIFY(user->table()->save(path));
    QTRY_COMPARE(other.rows(), 2);

    user->click("btn_sendFile");
    auto *dialog = user->dialog<GUI_CanSendFile>();
    dialog->findChild<QLineEdit *>(QStringLiteral("lbx_fileName"))->setText(path);
    dialog->findChild<QSpinBox *>(QStringLiteral("sbx_interval"))->setValue(1);
    auto *count = dialog->findChild<QSpinBox *>(QStringLiteral("sbx_count"));
    auto *send = dialog->findChild<QPushButton *>(QStringLiteral("btn_send"));
    count->setValue(2);
    QTest::mouseClick(send, Qt::LeftButton);
    QTRY_COMPARE(other.rows(), 6);
    for (int row = 2; row < 6; ++row) {
        QCOMPARE(other.cell(row, 4), row % 2 == 0 ? QStringLiteral("0x123") : QStringLiteral("0x456"));
    }
    QCOMPARE(user->rows(), 2); // played frames are not listed as sent
    count->setValue(65535);
    QTest::mouseClick(send, Qt::LeftButton);
    QTRY_VERIFY(other.rows() > 6);
    user.reset();
    QVERIFY(m_manager->isDeviceOpen(0));
}

void tst_GUI_CanDevice::routesTheNoticesOfTheFileSender()
{
    const TabUser user(channel(0, 0), *m_manager);
    QSignalSpy notices(&user.tab, &WidgetDeviceBase::sig_showNotice);
    QSignalSpy messages(&user.tab, &WidgetDeviceBase::sig_showMessageBox);
    user.click("btn_sendFile");
    auto *dialog = user.dialog<GUI_CanSendFile>();
    dialog->findChild<QLineEdit *>(QStringLiteral("lbx_fileName"))->setText(QStringLiteral("/no/such/file.can"));
    QTest::mouseClick(dialog->findChild<QPushButton *>(QStringLiteral("btn_send")), Qt::LeftButton);
    QTRY_COMPARE(notices.count(), 1);
    QCOMPARE(notices.first(), (QList<QVariant>{QStringLiteral("File read failure"), 3, 1500}));
    emit dialog->sig_showMessageBox(QStringLiteral("text"), 4);
    QCOMPARE(messages.first(), (QList<QVariant>{QStringLiteral("text"), 4}));
}

X9_GUI_TEST(tst_GUI_CanDevice)
#include "tst_GUI_CanDevice.moc"
