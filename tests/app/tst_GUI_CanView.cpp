#include "app/Application.h"
#include "app/GUI_CanView.h"
#include "app/GUI_DeviceInfo.h"
#include "app/GUI_SoftwareInfo.h"
#include "app/GUI_Update.h"
#include "app/MigrationWidget.h"
#include "app/Settings.h"
#include "app/UpgradeProcess.h"
#include "can/GUI_CanDevice.h"
#include "can/GUI_CanDeviceParam.h"
#include "can/GUI_CanScanBaudrate.h"
#include "capture/CTableViewCAN.h"
#include "capture/GUI_CanSendFile.h"
#include "device/CANAPI.h"
#include "device/CANCommunication.h"
#include "lin/GUI_LINDevice.h"
#include "lin/GUI_LINModeMonitor.h"
#include "tests/app/StandInProgram.h"
#include "tests/app/UpdateServer.h"
#include "tests/support/AdapterFolder.h"
#include "tests/support/StallingTarget.h"
#include "tests/support/TestProgram.h"
#include "widgets/CMaskWidget.h"
#include "widgets/CMessageBox.h"
#include "widgets/CNotice.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTabBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QToolBar>
#include <QToolButton>
#include <QtTest>

namespace {
const QByteArray OneDevice = R"({
  "buses": [{"name": "busy", "bitrate": "500k", "nodes": [{"id": "0x100", "length": 8, "period_us": 1000}]}],
  "devices": [{"serial": "A", "model": "X9FC-1", "firmware": "V2.05", "hardware": "V1",
               "can": [{"bus": "busy"}, {"bus": "busy"}], "lin": []}]
})";
const QByteArray NoDevice = R"({"buses": [], "devices": []})";

std::unique_ptr<CANCommunication> manager(const QString &library = QStringLiteral(X9_VIRTUAL_ADAPTER))
{
    return std::make_unique<CANCommunication>(std::make_unique<CANAPI>(library));
}

QTabWidget *tabsOf(const GUI_CanView &window)
{
    return window.findChild<QTabWidget *>(QStringLiteral("tabWidget"));
}

/// What the window's notice says; empty while there is none.
QString noticeOf(const GUI_CanView &window)
{
    const auto *notice = window.findChild<CNotice *>();
    return notice->isHidden() ? QString() : notice->accessibleName();
}

/// The messages on screen, the oldest first.
QList<CMessageBox *> messagesOf(const GUI_CanView &window)
{
    QList<CMessageBox *> open;
    for (CMessageBox *box : window.findChildren<CMessageBox *>()) {
        if (box->isVisible()) {
            open.append(box);
        }
    }
    return open;
}

GUI_CanDeviceParam *dialogOf(const GUI_CanView &window)
{
    return window.findChild<GUI_CanDeviceParam *>();
}

void clickIn(const QWidget &parent, const char *button)
{
    QTest::mouseClick(parent.findChild<QAbstractButton *>(QLatin1String(button)), Qt::LeftButton);
}

void chooseIn(const QWidget &parent, const char *combo, int index)
{
    parent.findChild<QComboBox *>(QLatin1String(combo))->setCurrentIndex(index);
}

/// What can be chosen in one of the dialog's lists.
QStringList choicesIn(const QWidget &parent, const char *combo)
{
    const auto *box = parent.findChild<QComboBox *>(QLatin1String(combo));
    QStringList texts;
    for (int index = 0; index < box->count(); ++index) {
        texts.append(box->itemText(index));
    }
    return texts;
}

/// Waits for the dialog that comes by itself and opens every channel of the device it shows.
void openAllChannels(const GUI_CanView &window)
{
    QTRY_VERIFY(dialogOf(window)->isVisible());
    auto *all = dialogOf(window)->findChild<QAbstractButton *>(QStringLiteral("chbx_openAllChannel"));
    all->setChecked(true);
    clickIn(*dialogOf(window), "btn_ok");
    QTRY_VERIFY(!dialogOf(window)->isVisible());
}

void press(const CMessageBox &box, QDialogButtonBox::StandardButton button)
{
    auto *buttons = box.findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"));
    QTest::mouseClick(buttons->button(button), Qt::LeftButton);
}

void pressOk(const CMessageBox &box)
{
    press(box, QDialogButtonBox::Ok);
}

QAction *actionIn(const GUI_CanView &window, const char *button, int index)
{
    return window.findChild<QToolButton *>(QLatin1String(button))->menu()->actions().at(index);
}

/// No language is stored at first, and none afterwards.
class StoredLanguage
{
public:
    StoredLanguage()
    {
        QStandardPaths::setTestModeEnabled(true); // not the user's own file
        remove();
    }
    ~StoredLanguage() { remove(); }
    StoredLanguage(const StoredLanguage &) = delete;
    StoredLanguage &operator=(const StoredLanguage &) = delete;

    static QString programFile() { return QCoreApplication::applicationDirPath() + QStringLiteral("/Init.ini"); }
    static QString userFile() { return SettingsFiles::ofProgram().userFile(); }
    static bool setUpdateServer(const QString &url)
    {
        QFile file(programFile());
        return file.open(QIODevice::WriteOnly) && file.write("[General]\nupdateServer=" + url.toUtf8() + '\n') > 0;
    }
    static bool isStored() { return QFile::exists(programFile()) || QFile::exists(userFile()); }
    /// Puts folders where the files would be.
    static bool makeUnwritable()
    {
        return QDir().mkpath(programFile() + QStringLiteral("/taken")) &&
               QDir().mkpath(userFile() + QStringLiteral("/taken"));
    }

private:
    static void remove()
    {
        for (const QString &path : {programFile(), userFile()}) {
            QFile::remove(path);
            QDir(path).removeRecursively();
        }
    }
};
/// The window with an upgrade program at work.
class WindowDuringAnUpgrade
{
public:
    WindowDuringAnUpgrade()
    {
        window->show();
        window->findChild<UpgradeProcess *>()->start(program.path(), {});
    }
    /// It has ended by itself, nobody has ended it.
    bool letsGo() const
    {
        program.letGo();
        return QTest::qWaitFor([this] { return program.ends() == QStringList(QStringLiteral("3")); });
    }
    /// The question that is open, if it is the only one.
    const CMessageBox *question() const
    {
        const QList<CMessageBox *> open = messagesOf(*window);
        return open.size() == 1 && open.first()->standardButtons() == (CMessageBox::Yes | CMessageBox::No)
                   ? open.first()
                   : nullptr;
    }

    const AdapterFolder folder{NoDevice};
    const QTemporaryDir programs;
    const StandInProgram program{programs.filePath(QStringLiteral("UpgradeCAN.exe")), "wait exit 3"};
    std::unique_ptr<GUI_CanView> window = std::make_unique<GUI_CanView>(manager());
};
} // namespace

Q_DECLARE_METATYPE(CMessageBox::Icon)

class tst_GUI_CanView : public QObject
{
    Q_OBJECT

private slots:
    static void asksByItselfWhatToOpen();
    static void cancelOpensNothing();
    static void opensNothingForASecondClick();
    static void opensOneChannelAfterTheOther();
    static void offersAClosedChannelAgain();
    static void opensCANFD();
    static void opensLIN();
    static void closesWithALINTab();
    static void explainsALINChannelThatDoesNotOpen();
    static void saysWhyAChannelDoesNotOpen();
    static void opensAgainWhenTheAdapterIsBack();
    static void saysOnceThatADeviceIsGone();
    static void saysWhereToBegin();
    static void closesTabs();
    static void closingATabEndsItsPlayback();
    static void closesAndOpensFromTheMenu();
    static void saysThatThereIsNoDevice();
    static void explainsAMissingLibrary();
    static void messageBoxByType_data();
    static void messageBoxByType();
    static void sameMessageOnce();
    static void messageStorm();
    static void noticeByType();
    static void closesWithMessagesOpen();
    static void closesWhileFramesArrive();
    static void endsWithFilesThatStandStill();
    static void goesWhileAScanRuns();
    static void dimmedBehindDialogs();
    static void toolBarMenus();
    static void closesWithNothingOpen();
    static void choosesTheLanguage();
    static void choosesTheActiveLanguage();
    static void restartsOnRequest();
    static void saysThatTheLanguageCannotBeStored();
    static void asksToUpdateTheFirmware();
    static void deviceInformationIsThereOnce();
    static void migrationIsKnownToTheWindow();
    static void readsNoDeviceDuringAnUpgrade();
    static void asksBeforeItClosesDuringAnUpgrade();
    static void asksBeforeItRestartsDuringAnUpgrade();
    static void goesWithoutAQuestionDuringAnUpgrade();
    static void offersANewerRelease();
    static void searchesOnRequest();
    static void searchEndsWithItsDialog();
    static void tellsOfTheDeviceOnTop();
};

void tst_GUI_CanView::asksByItselfWhatToOpen()
{
    const AdapterFolder folder(OneDevice);
    GUI_CanView window(manager());
    window.show();
    QCOMPARE(window.windowTitle(), QStringLiteral("X9CAN V1.1.1"));
    QCOMPARE(window.size(), QSize(1000, 650));
    QVERIFY(!dialogOf(window)->isVisible());
    openAllChannels(window);
    QCOMPARE(tabsOf(window)->count(), 2);
    QCOMPARE(tabsOf(window)->currentIndex(), 1);
    QCOMPARE(tabsOf(window)->tabText(0), QStringLiteral("CAN Device: 0 Channel: 0"));
    QCOMPARE(tabsOf(window)->tabText(1), QStringLiteral("CAN Device: 0 Channel: 1"));
    QCOMPARE(noticeOf(window), QStringLiteral("Devices is open"));
    const auto tables = window.findChildren<CTableViewCAN *>();
    QCOMPARE(tables.size(), 2);
    QTRY_VERIFY(tables.at(0)->rowCount() > 100 && tables.at(1)->rowCount() > 100);
}

void tst_GUI_CanView::cancelOpensNothing()
{
    const AdapterFolder folder(OneDevice);
    GUI_CanView window(manager());
    window.show();
    QTRY_VERIFY(dialogOf(window)->isVisible());
    QVERIFY(dialogOf(window)->isModal());
    clickIn(*dialogOf(window), "btn_cancel");
    QVERIFY(!dialogOf(window)->isVisible());
    QCOMPARE(tabsOf(window)->count(), 0);
    QCOMPARE(noticeOf(window), QString());
}

/// It comes after the dialog has closed, while the window opens what the first one asked for.
void tst_GUI_CanView::opensNothingForASecondClick()
{
    const AdapterFolder folder(OneDevice);
    GUI_CanView window(manager());
    window.show();
    QTRY_VERIFY(dialogOf(window)->isVisible());
    clickIn(*dialogOf(window), "btn_ok");
    clickIn(*dialogOf(window), "btn_ok");
    QCOMPARE(tabsOf(window)->count(), 1);
    QCOMPARE(noticeOf(window), QStringLiteral("Devices is open"));
}

/// A channel that a tab holds is not offered; what was chosen for the first is offered for the second.
void tst_GUI_CanView::opensOneChannelAfterTheOther()
{
    const AdapterFolder folder(OneDevice);
    GUI_CanView window(manager());
    window.show();
    QTRY_VERIFY(dialogOf(window)->isVisible());
    const QWidget &dialog = *dialogOf(window);
    QCOMPARE(choicesIn(dialog, "cbx_channel").size(), 2);
    chooseIn(dialog, "cbx_channel", 1);
    chooseIn(dialog, "cbx_operatingMode", 1);
    clickIn(dialog, "btn_ok");
    QCOMPARE(tabsOf(window)->tabText(0), QStringLiteral("CAN Device: 0 Channel: 1"));
    QVERIFY(qobject_cast<WidgetDeviceBase *>(tabsOf(window)->widget(0))->channelParam().listenOnly == 1);

    window.slot_openCanDevice();
    QCOMPARE(choicesIn(dialog, "cbx_channel"), QStringList{QStringLiteral("Channel0")});
    QCOMPARE(dialog.findChild<QComboBox *>(QStringLiteral("cbx_operatingMode"))->currentIndex(), 1);
    clickIn(dialog, "btn_ok");
    QCOMPARE(tabsOf(window)->tabText(1), QStringLiteral("CAN Device: 0 Channel: 0"));
    window.slot_openCanDevice();
    QCOMPARE(choicesIn(dialog, "cbx_channel"), QStringList());
    clickIn(dialog, "btn_cancel");
}

void tst_GUI_CanView::offersAClosedChannelAgain()
{
    const AdapterFolder folder(OneDevice);
    GUI_CanView window(manager());
    window.show();
    openAllChannels(window);
    QCOMPARE(tabsOf(window)->count(), 2);
    window.slot_closeTabRequest(0);
    window.slot_openCanDevice();
    QCOMPARE(choicesIn(*dialogOf(window), "cbx_channel"), QStringList{QStringLiteral("Channel0")});
    QTRY_COMPARE(window.findChildren<GUI_CanDevice *>().size(), 1);
    clickIn(*dialogOf(window), "btn_ok");
    QCOMPARE(tabsOf(window)->tabText(1), QStringLiteral("CAN Device: 0 Channel: 0"));
    window.slot_closeTabRequest(7); // no such tab
    QCOMPARE(tabsOf(window)->count(), 2);
}

void tst_GUI_CanView::opensCANFD()
{
    const AdapterFolder folder(OneDevice);
    GUI_CanView window(manager());
    window.show();
    QTRY_VERIFY(dialogOf(window)->isVisible());
    chooseIn(*dialogOf(window), "cbx_baudrateCANFD", 2);
    clickIn(*dialogOf(window), "btn_ok");
    QCOMPARE(tabsOf(window)->tabText(0), QStringLiteral("CANFD Device: 0 Channel: 0"));
}

void tst_GUI_CanView::opensLIN()
{
    const AdapterFolder folder(R"({
      "lin_buses": [{"name": "doors", "slaves": [{"id": 5, "data": [1, 2]}]}],
      "devices": [{"model": "X9FC-1", "lin": [{"bus": "doors"}, {"bus": "doors"}]}]
    })");
    GUI_CanView window(manager());
    window.show();
    QTRY_VERIFY(dialogOf(window)->isVisible());
    const QWidget &dialog = *dialogOf(window);
    clickIn(dialog, "btn_setup");
    chooseIn(dialog, "cbx_channelLIN", 1);
    clickIn(dialog, "btn_ok");
    QCOMPARE(tabsOf(window)->count(), 1);
    QCOMPARE(tabsOf(window)->tabText(0), QStringLiteral("LIN Device: 0 Channel: 1"));
    QVERIFY(qobject_cast<GUI_LINDevice *>(tabsOf(window)->widget(0)) != nullptr);
    QCOMPARE(noticeOf(window), QStringLiteral("Devices is open"));

    window.slot_openCanDevice();
    QCOMPARE(choicesIn(dialog, "cbx_channelLIN"), QStringList{QStringLiteral("Channel0")});
    QCOMPARE(choicesIn(dialog, "cbx_channel").size(), 2); // of another kind
    clickIn(dialog, "btn_cancel");
    emit qobject_cast<WidgetDeviceBase *>(tabsOf(window)->widget(0))->sig_showMessageBox(QStringLiteral("text"), 4);
    QCOMPARE(messagesOf(window).size(), 1);
    pressOk(*messagesOf(window).first());

    window.slot_closeTabRequest(0);
    QTRY_VERIFY(window.findChild<GUI_LINDevice *>() == nullptr);
    window.slot_openCanDevice();
    QCOMPARE(choicesIn(dialog, "cbx_channelLIN").size(), 2);
    clickIn(dialog, "btn_cancel");
}

void tst_GUI_CanView::closesWithALINTab()
{
    const AdapterFolder folder(R"({"lin_buses": [{"name": "doors"}],
                                   "devices": [{"model": "X9FC-1", "lin": [{"bus": "doors"}, {"bus": "doors"}]}]})");
    {
        GUI_CanView window(manager());
        window.show();
        QTRY_VERIFY(dialogOf(window)->isVisible());
        clickIn(*dialogOf(window), "btn_setup");
        dialogOf(window)->findChild<QAbstractButton *>(QStringLiteral("chbx_openAllChannelLIN"))->setChecked(true);
        clickIn(*dialogOf(window), "btn_ok");
        QCOMPARE(tabsOf(window)->count(), 2);
        clickIn(*tabsOf(window)->widget(0), "btn_modeMonitor");
        clickIn(*tabsOf(window)->widget(0)->findChild<GUI_LINModeMonitor *>(), "btn_start");
        window.slot_closeTabRequest(1); // waits to be deleted while the window goes
    }
    CANCommunication second(std::make_unique<CANAPI>(QStringLiteral(X9_VIRTUAL_ADAPTER)));
    QCOMPARE(second.openDevice(0), CAN_OK);
    QCOMPARE(second.closeDevice(0), CAN_OK);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void tst_GUI_CanView::explainsALINChannelThatDoesNotOpen()
{
    const AdapterFolder folder(R"({
      "lin_buses": [{"name": "doors"}],
      "devices": [{"model": "X9FC-1", "lin": [{"bus": "doors", "faults": {"open_refused": true}}]}]
    })");
    GUI_CanView window(manager());
    window.show();
    QTRY_VERIFY(dialogOf(window)->isVisible());
    clickIn(*dialogOf(window), "btn_setup");
    clickIn(*dialogOf(window), "btn_ok");
    QCOMPARE(tabsOf(window)->count(), 0);
    QCOMPARE(noticeOf(window), QStringLiteral("No devices!!!"));
    QVERIFY(messagesOf(window).first()->text().startsWith(QLatin1String("Device 0 refused to open channel 0.")));
}

void tst_GUI_CanView::saysWhyAChannelDoesNotOpen()
{
    const AdapterFolder folder(R"({
      "buses": [{"name": "busy", "bitrate": "500k"}],
      "devices": [{"model": "X9EC-1", "can": [{"bus": "busy", "faults": {"start_refused": true}}, {"bus": "busy"}]}]
    })");
    GUI_CanView window(manager());
    window.show();
    openAllChannels(window); // one of them opens
    QCOMPARE(tabsOf(window)->count(), 1);
    QCOMPARE(noticeOf(window), QStringLiteral("Devices is open"));
    QCOMPARE(messagesOf(window).size(), 1);
    const CMessageBox &refused = *messagesOf(window).first();
    QCOMPARE(refused.icon(), CMessageBox::Critical);
    QVERIFY2(refused.text().startsWith(QLatin1String("Device 0 refused to open channel 0.")),
             qPrintable(refused.text()));
    pressOk(refused);

    window.slot_openCanDevice();
    chooseIn(*dialogOf(window), "cbx_baudrateCANFD", 1);
    clickIn(*dialogOf(window), "btn_ok");
    QCOMPARE(tabsOf(window)->count(), 1);
    QCOMPARE(noticeOf(window), QStringLiteral("No devices!!!"));
    QVERIFY(messagesOf(window).first()->text().startsWith(QLatin1String("Device 0 does not offer CAN FD.")));
}

/// Pulled out while the channel runs: the tab stays until it is closed, and the channel opens again.
void tst_GUI_CanView::opensAgainWhenTheAdapterIsBack()
{
    const AdapterFolder folder(R"({
      "buses": [{"name": "busy", "bitrate": "500k", "nodes": [{"id": "0x100", "length": 8, "period_us": 1000}]}],
      "devices": [{"model": "X9FC-1", "can": [{"bus": "busy"}],
                   "faults": {"vanish_after_ms": 900, "return_after_ms": 1}}]
    })");
    GUI_CanView window(manager());
    window.show();
    QTRY_VERIFY(dialogOf(window)->isVisible());
    clickIn(*dialogOf(window), "btn_ok");
    QCOMPARE(tabsOf(window)->count(), 1);
    QWidget *tab = tabsOf(window)->widget(0);
    auto *table = tab->findChild<CTableViewCAN *>();
    const auto sendFails = [&] {
        clickIn(*tab, "btn_sendData");
        return table->save(folder.filePath(QStringLiteral("a.csv"))) && [&] {
            QFile file(folder.filePath(QStringLiteral("a.csv")));
            return file.open(QIODevice::ReadOnly) && file.readAll().contains("Send failure");
        }();
    };
    QTRY_VERIFY(sendFails());
    const int rows = table->rowCount();
    QVERIFY(rows > 100);
    table->refresh();
    QVERIFY(table->rowCount() >= rows);
    window.slot_closeTabRequest(0);
    QTRY_VERIFY(window.findChildren<GUI_CanDevice *>().isEmpty());
    window.slot_openCanDevice();
    clickIn(*dialogOf(window), "btn_ok");
    QCOMPARE(tabsOf(window)->count(), 1);
    auto *again = tabsOf(window)->widget(0)->findChild<CTableViewCAN *>();
    QTRY_VERIFY(again->rowCount() > 100);
}

/// Both of its tabs stay, with what they have received.
void tst_GUI_CanView::saysOnceThatADeviceIsGone()
{
    const AdapterFolder folder(R"({
      "buses": [{"name": "busy", "bitrate": "500k", "nodes": [{"id": "0x100", "length": 8, "period_us": 1000}]}],
      "devices": [{"model": "X9FC-1", "can": [{"bus": "busy"}, {"bus": "busy"}], "faults": {"vanish_after_ms": 900}}]
    })");
    auto communication = manager();
    communication->watchDevices(std::chrono::milliseconds(10));
    GUI_CanView window(std::move(communication));
    window.show();
    openAllChannels(window);
    QTRY_COMPARE(messagesOf(window).size(), 1);
    QCOMPARE(messagesOf(window).first()->icon(), CMessageBox::Warning);
    QVERIFY(messagesOf(window).first()->text().startsWith(QLatin1String("Device 0 does not answer any more.")));
    QCOMPARE(tabsOf(window)->count(), 2);
    pressOk(*messagesOf(window).first());
    QTRY_VERIFY(messagesOf(window).isEmpty());
    auto *table = window.findChild<CTableViewCAN *>();
    table->refresh();
    QVERIFY(table->rowCount() > 0);
    actionIn(window, "btn_connect", 1)->trigger();
    QCOMPARE(tabsOf(window)->count(), 0);
    QVERIFY(messagesOf(window).isEmpty());
}

/// While there is no tab.
void tst_GUI_CanView::saysWhereToBegin()
{
    const AdapterFolder folder(OneDevice);
    GUI_CanView window(manager());
    window.show();
    const auto *beginning = window.findChild<QLabel *>(QStringLiteral("lbl_begin"));
    QCOMPARE(beginning->text(), QStringLiteral("To begin: \"Connect\" > \"Open device\""));
    QVERIFY(beginning->isVisible());
    QCOMPARE(beginning->mapTo(&window, beginning->rect().center()),
             tabsOf(window)->mapTo(&window, tabsOf(window)->rect().center()));
    QCOMPARE(beginning->alignment(), Qt::AlignCenter);
    const QWidget *centre = window.centralWidget();
    QCOMPARE(centre->childAt(centre->rect().center()), beginning); // not behind the empty tab widget
    openAllChannels(window);
    QCOMPARE(tabsOf(window)->count(), 2);
    QVERIFY(!beginning->isVisible());
    window.slot_closeTabRequest(0);
    QVERIFY(!beginning->isVisible());
    window.slot_closeTabRequest(0);
    QVERIFY(beginning->isVisible());
    QTRY_VERIFY(window.findChild<GUI_CanDevice *>() == nullptr);
    window.slot_openCanDevice();
    clickIn(*dialogOf(window), "btn_ok");
    QVERIFY(!beginning->isVisible());
    window.slot_closeCanDevice();
    QVERIFY(beginning->isVisible());
}

void tst_GUI_CanView::closesTabs()
{
    const AdapterFolder folder(OneDevice);
    GUI_CanView window(manager());
    window.show();
    openAllChannels(window);
    QCOMPARE(tabsOf(window)->count(), 2);
    auto *button = qobject_cast<QAbstractButton *>(tabsOf(window)->tabBar()->tabButton(0, QTabBar::RightSide));
    QVERIFY(button != nullptr);
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(tabsOf(window)->count(), 1);
    QCOMPARE(tabsOf(window)->tabText(0), QStringLiteral("CAN Device: 0 Channel: 1"));
    QTRY_COMPARE(window.findChildren<GUI_CanDevice *>().size(), 1);
}

void tst_GUI_CanView::closingATabEndsItsPlayback()
{
    const AdapterFolder folder(OneDevice);
    GUI_CanView window(manager());
    window.show();
    openAllChannels(window);
    QCOMPARE(tabsOf(window)->count(), 2);
    QWidget *tab = tabsOf(window)->widget(1);
    QTest::mouseClick(tab->findChild<QAbstractButton *>(QStringLiteral("btn_sendFile")), Qt::LeftButton);
    QPointer<GUI_CanSendFile> dialog = tab->findChild<GUI_CanSendFile *>();
    QVERIFY(dialog != nullptr);
    QCOMPARE(dialog->windowTitle(), QStringLiteral("CAN Device: 0 Channel: 1  -  Send File"));

    const QString path = folder.filePath(QStringLiteral("a.can"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray("Zhiyuan CAN Data") + QByteArray(4 + 1000 * 24, '\0'));
    file.close();
    dialog->findChild<QLineEdit *>(QStringLiteral("lbx_fileName"))->setText(path);
    auto *send = dialog->findChild<QAbstractButton *>(QStringLiteral("btn_send"));
    QTest::mouseClick(send, Qt::LeftButton);
    QTRY_VERIFY(dialog->findChild<QProgressBar *>(QStringLiteral("progressBar"))->value() > 0);
    tabsOf(window)->setCurrentIndex(0); // looking at another tab does not end it
    QCOMPARE(send->text(), QStringLiteral("Stop"));
    window.slot_closeTabRequest(1);
    QTRY_VERIFY(dialog.isNull());
}

void tst_GUI_CanView::closesAndOpensFromTheMenu()
{
    const AdapterFolder folder(OneDevice);
    GUI_CanView window(manager());
    window.show();
    openAllChannels(window);
    QCOMPARE(tabsOf(window)->count(), 2);
    const QList<QAction *> actions = window.findChild<QToolButton *>(QStringLiteral("btn_connect"))->menu()->actions();
    QCOMPARE(actions.at(0)->text(), QStringLiteral("Open device"));
    QCOMPARE(actions.at(1)->text(), QStringLiteral("Close device"));
    actions.at(1)->trigger();
    QCOMPARE(tabsOf(window)->count(), 0);
    QCOMPARE(noticeOf(window), QStringLiteral("Device turned off"));
    QTRY_COMPARE(window.findChildren<GUI_CanDevice *>().size(), 0);
    actions.at(0)->trigger();
    openAllChannels(window);
    QCOMPARE(tabsOf(window)->count(), 2);
}

void tst_GUI_CanView::saysThatThereIsNoDevice()
{
    const AdapterFolder folder(NoDevice);
    GUI_CanView window(manager());
    window.show();
    openAllChannels(window);
    QCOMPARE(noticeOf(window), QStringLiteral("No devices!!!"));
    QCOMPARE(tabsOf(window)->count(), 0);
    QVERIFY(window.findChild<CMessageBox *>() == nullptr); // the library is fine
}

void tst_GUI_CanView::explainsAMissingLibrary()
{
    GUI_CanView window(manager(QStringLiteral("./no-such-library")));
    window.show();
    QTRY_VERIFY(window.findChild<CMessageBox *>() != nullptr);
    auto *box = window.findChild<CMessageBox *>();
    QVERIFY2(box->text().contains(QLatin1String("no-such-library")), qPrintable(box->text()));
    QVERIFY(box->isModal());
    QCOMPARE(box->icon(), CMessageBox::Critical);
    QVERIFY(dialogOf(window)->isVisible()); // behind the message
    pressOk(*box);
    QTRY_VERIFY(window.findChild<CMessageBox *>() == nullptr);
}

void tst_GUI_CanView::messageBoxByType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<CMessageBox::Icon>("icon");
    QTest::addColumn<int>("buttons");
    const int yesNo = CMessageBox::Yes | CMessageBox::No;
    QTest::newRow("success") << 1 << CMessageBox::Success << static_cast<int>(CMessageBox::Ok);
    QTest::newRow("question") << 2 << CMessageBox::Question << yesNo;
    QTest::newRow("warning") << 3 << CMessageBox::Warning << static_cast<int>(CMessageBox::Ok);
    QTest::newRow("critical") << 4 << CMessageBox::Critical << static_cast<int>(CMessageBox::Ok);
    QTest::newRow("none") << 0 << CMessageBox::Information << static_cast<int>(CMessageBox::Ok);
    QTest::newRow("any other") << 9 << CMessageBox::Information << static_cast<int>(CMessageBox::Ok);
}

void tst_GUI_CanView::messageBoxByType()
{
    QFETCH(int, type);
    const AdapterFolder folder(OneDevice);
    GUI_CanView window(manager());
    window.slot_showMessageBox(QStringLiteral("text"), type);
    const auto *box = window.findChild<CMessageBox *>();
    QVERIFY(box != nullptr);
    QVERIFY(box->isVisible() && box->isModal());
    QCOMPARE(box->windowTitle(), QStringLiteral("Tips"));
    QCOMPARE(box->text(), QStringLiteral("text"));
    QTEST(box->icon(), "icon");
    QTEST(static_cast<int>(box->standardButtons()), "buttons");
}

void tst_GUI_CanView::sameMessageOnce()
{
    const AdapterFolder folder(OneDevice);
    GUI_CanView window(manager());
    for (int i = 0; i < 1000; ++i) {
        window.slot_showMessageBox(QStringLiteral("same"), 3);
    }
    QCOMPARE(messagesOf(window).size(), 1);
    window.slot_showMessageBox(QStringLiteral("same"), 4);
    window.slot_showMessageBox(QStringLiteral("other"), 3);
    QCOMPARE(messagesOf(window).size(), 3);
    pressOk(*messagesOf(window).first());
    QCOMPARE(messagesOf(window).size(), 2);
    window.slot_showMessageBox(QStringLiteral("same"), 3); // once it was read it may come again
    QCOMPARE(messagesOf(window).size(), 3);
}

void tst_GUI_CanView::messageStorm()
{
    const AdapterFolder folder(OneDevice);
    GUI_CanView window(manager());
    for (int i = 0; i < 1000; ++i) {
        window.slot_showMessageBox(QStringLiteral("message %1").arg(i), 4);
    }
    const QList<CMessageBox *> open = messagesOf(window);
    QCOMPARE(open.size(), 5);
    for (int i = 0; i < 4; ++i) {
        QCOMPARE(open.at(i)->text(), QStringLiteral("message %1").arg(i));
    }
    QCOMPARE(open.last()->text(), QStringLiteral("message 4\n\nFurther messages not shown: 995"));
    window.slot_showMessageBox(QStringLiteral("message 4"), 4); // is on screen
    QCOMPARE(open.last()->text(), QStringLiteral("message 4\n\nFurther messages not shown: 995"));

    pressOk(*open.last());
    window.slot_showMessageBox(QStringLiteral("later"), 4);
    window.slot_showMessageBox(QStringLiteral("even later"), 4);
    QCOMPARE(messagesOf(window).last()->text(), QStringLiteral("later\n\nFurther messages not shown: 1"));
    for (int i = 0; i < 5; ++i) {
        pressOk(*messagesOf(window).last());
    }
    QVERIFY(messagesOf(window).isEmpty());
}

void tst_GUI_CanView::noticeByType()
{
    const AdapterFolder folder(OneDevice);
    GUI_CanView window(manager());
    window.show();
    window.slot_showNotice(QStringLiteral("done"), 0, 1500);
    QCOMPARE(noticeOf(window), QStringLiteral("done"));
    const auto *notice = window.findChild<CNotice *>();
    QCOMPARE(notice->parentWidget(), &window);
    const QString done = notice->styleSheet();
    window.slot_showNotice(QStringLiteral("failed"), 3, 1500);
    QCOMPARE(noticeOf(window), QStringLiteral("failed"));
    QVERIFY(notice->styleSheet() != done);
    window.slot_showNotice(QStringLiteral("nothing"), 7, 1500);
    QCOMPARE(noticeOf(window), QStringLiteral("failed"));
}

void tst_GUI_CanView::closesWithMessagesOpen()
{
    const AdapterFolder folder(OneDevice);
    auto window = std::make_unique<GUI_CanView>(manager());
    window->show();
    window->slot_showMessageBox(QStringLiteral("one"), 1);
    window->slot_showMessageBox(QStringLiteral("two"), 2);
    window->slot_showNotice(QStringLiteral("notice"), 0, 1500);
    window.reset();
    QVERIFY(QApplication::activeModalWidget() == nullptr);
}

void tst_GUI_CanView::closesWhileFramesArrive()
{
    const AdapterFolder folder(OneDevice);
    {
        GUI_CanView window(manager());
        window.show();
        openAllChannels(window);
        QCOMPARE(tabsOf(window)->count(), 2);
        QTRY_VERIFY(window.findChildren<CTableViewCAN *>().first()->rowCount() > 0);
        window.slot_closeTabRequest(0); // waits to be deleted while the window goes
        window.close();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    // Everything is closed: the same device opens again.
    CANCommunication second(std::make_unique<CANAPI>(QStringLiteral(X9_VIRTUAL_ADAPTER)));
    QCOMPARE(second.openDevice(0), CAN_OK);
    QCOMPARE(second.closeDevice(0), CAN_OK);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

/// Five seconds are for all of them together; what they still have is written when they move on.
void tst_GUI_CanView::endsWithFilesThatStandStill()
{
    const AdapterFolder folder(OneDevice);
    GUI_CanView window(manager());
    window.show();
    openAllChannels(window);
    const QList<CTableViewCAN *> tables = window.findChildren<CTableViewCAN *>();
    QCOMPARE(tables.size(), 2);
    std::vector<std::shared_ptr<Gate>> gates;
    for (CTableViewCAN *table : tables) {
        const auto gate = std::make_shared<Gate>();
        gate->close();
        table->setTargetWrapper([gate](std::unique_ptr<RealTimeTarget> file) {
            return std::make_unique<StallingTarget>(std::move(file), gate);
        });
        QVERIFY(table->realTimeSave(true, folder.filePath(QStringLiteral("%1.csv").arg(gates.size()))));
        QTRY_VERIFY(gate->isHolding());
        QTest::ignoreMessage(QtWarningMsg, "The end of a file saved in real time could not be written.");
        gates.push_back(gate);
    }
    QElapsedTimer clock;
    clock.start();
    window.finishFiles();
    QVERIFY(clock.hasExpired(4900));
    QVERIFY(!clock.hasExpired(9000));
    for (std::size_t i = 0; i < gates.size(); ++i) {
        QVERIFY(gates.at(i)->isHolding());
        gates.at(i)->open();
        QVERIFY(tables.at(static_cast<int>(i))->waitForFiles(std::chrono::seconds(30)));
        QVERIFY(QFileInfo(folder.filePath(QStringLiteral("%1.csv").arg(i))).size() > 1000);
    }
}

/// Without being closed before. The scan's dialog still works with the manager when it goes.
void tst_GUI_CanView::goesWhileAScanRuns()
{
    const AdapterFolder folder(OneDevice);
    auto communication = manager();
    const CANCommunication *adapter = communication.get();
    auto window = std::make_unique<GUI_CanView>(std::move(communication));
    window->show();
    QTRY_VERIFY(dialogOf(*window)->isVisible());
    clickIn(*dialogOf(*window), "btn_scan");
    const QPointer<GUI_CanScanBaudrate> scan(window->findChild<GUI_CanScanBaudrate *>());
    clickIn(*scan, "btn_start");
    QVERIFY(adapter->isScanning());
    bool hasGoneFirst = false;
    connect(adapter, &QObject::destroyed, qApp, [&] { hasGoneFirst = scan.isNull(); });
    window.reset();
    QVERIFY(hasGoneFirst);
    CANCommunication second(std::make_unique<CANAPI>(QStringLiteral(X9_VIRTUAL_ADAPTER)));
    QCOMPARE(second.openDevice(0), CAN_OK);
    QCOMPARE(second.closeDevice(0), CAN_OK);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// The last one: what it sets up stays for the whole program.
void tst_GUI_CanView::dimmedBehindDialogs()
{
    applyApplicationLook(*qobject_cast<QApplication *>(QCoreApplication::instance()));
    const AdapterFolder folder(OneDevice);
    GUI_CanView window(manager());
    window.show();
    QTRY_VERIFY(dialogOf(window)->isVisible());
    clickIn(*dialogOf(window), "btn_cancel");
    window.slot_showMessageBox(QStringLiteral("one"), 1);
    window.slot_showMessageBox(QStringLiteral("two"), 4);
    const auto boxes = messagesOf(window);
    const auto masksOn = [](const QWidget &widget) {
        return widget.findChildren<CMaskWidget *>(QString(), Qt::FindDirectChildrenOnly).size();
    };
    QCOMPARE(masksOn(window), 1);
    QCOMPARE(masksOn(*boxes.at(0)), 1);
    QCOMPARE(masksOn(*boxes.at(1)), 0);
    pressOk(*boxes.at(1));
    QCOMPARE(masksOn(window), 1);
    pressOk(*boxes.at(0));
    QCOMPARE(masksOn(window), 0);
}

void tst_GUI_CanView::toolBarMenus()
{
    const AdapterFolder folder(NoDevice);
    const GUI_CanView window(manager());
    QVERIFY(window.findChild<QToolBar *>(QStringLiteral("ToolBar")) != nullptr);
    const auto check = [&window](const char *name, const char *text, const char *toolTip, const QStringList &entries) {
        const auto *button = window.findChild<QToolButton *>(QLatin1String(name));
        QCOMPARE(button->text(), QLatin1String(text));
        QCOMPARE(button->toolTip(), QLatin1String(toolTip));
        QCOMPARE(button->property("nav").toString(), QStringLiteral("tBtnStyle_5"));
        QCOMPARE(button->popupMode(), QToolButton::InstantPopup);
        QStringList texts;
        for (const QAction *action : button->menu()->actions()) {
            texts.append(action->text());
        }
        QCOMPARE(texts, entries);
    };
    check("btn_connect", "Connect(&D)", "Connect to the device",
          {QStringLiteral("Open device"), QStringLiteral("Close device")});
    check("btn_about", "About(&A)", "About",
          {QStringLiteral("Software information"), QStringLiteral("Device information")});
    check("btn_language", "Language(&L)", "Language", {QStringLiteral("Chinese"), QStringLiteral("English")});
}

void tst_GUI_CanView::closesWithNothingOpen()
{
    const AdapterFolder folder(NoDevice);
    GUI_CanView window(manager());
    window.show();
    actionIn(window, "btn_connect", 1)->trigger();
    QCOMPARE(noticeOf(window), QStringLiteral("Device turned off"));
    QVERIFY(messagesOf(window).isEmpty());
    QCOMPARE(tabsOf(window)->count(), 0);
}

void tst_GUI_CanView::choosesTheLanguage()
{
    const StoredLanguage stored;
    const AdapterFolder folder(NoDevice);
    GUI_CanView window(manager());
    window.show();
    const auto *chinese = window.findChild<QAction *>(QStringLiteral("CN"));
    auto *english = window.findChild<QAction *>(QStringLiteral("EN"));
    QVERIFY(chinese->isChecked() && !english->isChecked());
    english->trigger();
    QVERIFY(!chinese->isChecked() && english->isChecked());
    QCOMPARE(getLanguage(), 1);
    QCOMPARE(messagesOf(window).size(), 1);
    const CMessageBox &question = *messagesOf(window).first();
    QCOMPARE(question.icon(), CMessageBox::Question);
    QCOMPARE(question.windowTitle(), QStringLiteral("Tips"));
    QCOMPARE(question.text(), QStringLiteral("The current language has changed and takes effect after the restart.<br>"
                                             "Do you wish to restart it now?"));
    QCOMPARE(question.standardButtons(), CMessageBox::Yes | CMessageBox::No);
    QVERIFY(!question.findChild<QLabel *>(QStringLiteral("textLabel"))->text().isEmpty());
    press(question, QDialogButtonBox::No);
    QTRY_VERIFY(messagesOf(window).isEmpty());
    const GUI_CanView next(manager());
    QVERIFY(next.findChild<QAction *>(QStringLiteral("EN"))->isChecked());
}

/// It is stored, and the question comes, all the same.
void tst_GUI_CanView::choosesTheActiveLanguage()
{
    const StoredLanguage stored;
    const AdapterFolder folder(NoDevice);
    GUI_CanView window(manager());
    window.show();
    auto *chinese = window.findChild<QAction *>(QStringLiteral("CN"));
    QVERIFY(chinese->isChecked());
    QVERIFY(!StoredLanguage::isStored());
    chinese->trigger();
    QVERIFY(chinese->isChecked());
    QVERIFY(StoredLanguage::isStored());
    QCOMPARE(getLanguage(), 0);
    QCOMPARE(messagesOf(window).size(), 1);
}

void tst_GUI_CanView::restartsOnRequest()
{
    const StoredLanguage stored;
    const AdapterFolder folder(NoDevice);
    GUI_CanView window(manager());
    window.show();
    QTimer::singleShot(0, &window, [&window] {
        window.findChild<QAction *>(QStringLiteral("EN"))->trigger();
        press(*messagesOf(window).first(), QDialogButtonBox::Yes);
    });
    QCOMPARE(QApplication::exec(), 100);
}

void tst_GUI_CanView::saysThatTheLanguageCannotBeStored()
{
    const StoredLanguage stored;
    const AdapterFolder folder(NoDevice);
    QVERIFY(StoredLanguage::makeUnwritable());
    GUI_CanView window(manager());
    window.show();
    window.findChild<QAction *>(QStringLiteral("EN"))->trigger();
    QCOMPARE(messagesOf(window).size(), 1);
    QCOMPARE(messagesOf(window).first()->icon(), CMessageBox::Critical);
    QVERIFY(messagesOf(window).first()->text().startsWith(QLatin1String("The language could not be stored.")));
    QVERIFY(window.findChild<QAction *>(QStringLiteral("CN"))->isChecked());
}

void tst_GUI_CanView::asksToUpdateTheFirmware()
{
    const AdapterFolder folder(NoDevice);
    auto communication = manager();
    CANCommunication *adapter = communication.get();
    GUI_CanView window(std::move(communication));
    window.show();
    emit adapter->sig_showFrimwareUpgrade();
    QCOMPARE(messagesOf(window).size(), 1);
    QCOMPARE(messagesOf(window).first()->text(),
             QStringLiteral("New firmware version detected,<br>Do you want to go update it now?"));
    QCOMPARE(messagesOf(window).first()->windowTitle(), QStringLiteral("Tips"));
    press(*messagesOf(window).first(), QDialogButtonBox::No);
    QTRY_VERIFY(messagesOf(window).isEmpty());
    QVERIFY(window.findChild<GUI_DeviceInfo *>() == nullptr);
    window.slot_showFrimwareUpgrade();
    press(*messagesOf(window).first(), QDialogButtonBox::Yes);
    QVERIFY(window.findChild<GUI_DeviceInfo *>()->isVisible());
}

/// However often it is asked for; it comes to the front then.
void tst_GUI_CanView::deviceInformationIsThereOnce()
{
    const AdapterFolder folder(NoDevice);
    GUI_CanView window(manager());
    window.show();
    QTRY_VERIFY(dialogOf(window)->isVisible());
    clickIn(*dialogOf(window), "btn_cancel");
    actionIn(window, "btn_about", 1)->trigger();
    QWidget *information = window.findChild<GUI_DeviceInfo *>();
    QTRY_COMPARE(QApplication::activeWindow(), information);
    window.slot_showFrimwareUpgrade();
    QTRY_COMPARE(messagesOf(window).size(), 1);
    press(*messagesOf(window).first(), QDialogButtonBox::Yes);
    QCOMPARE(window.findChildren<GUI_DeviceInfo *>().size(), 1);
    QWidget other;
    other.show();
    other.activateWindow();
    QTRY_COMPARE(QApplication::activeWindow(), &other);
    window.slot_showDeviceInfo();
    QTRY_COMPARE(QApplication::activeWindow(), information);
    information->close();
    window.slot_showDeviceInfo();
    QTRY_COMPARE(window.findChildren<GUI_DeviceInfo *>().size(), 1);
    QVERIFY(window.findChild<GUI_DeviceInfo *>()->isVisible());
}

/// The dialog starts it by the window's own means.
void tst_GUI_CanView::migrationIsKnownToTheWindow()
{
    const AdapterFolder folder(NoDevice);
    const QString applicationDir = QCoreApplication::applicationDirPath();
    QDir(applicationDir + QStringLiteral("/Migration")).removeRecursively(); // of a run that was cut off
    const StandInProgram program(migrationProgram(applicationDir), "wait exit 3");
    GUI_CanView window(manager());
    window.show();
    actionIn(window, "btn_about", 1)->trigger();
    const auto *information = window.findChild<GUI_DeviceInfo *>();
    clickIn(*information, "btn_migration");
    clickIn(*information->findChild<MigrationWidget *>(), "btn_migration");
    QVERIFY(window.findChild<UpgradeProcess *>()->isRunning());
    QTRY_COMPARE(program.starts().size(), 1);
    QVERIFY(!window.close());
    program.letGo();
    QTRY_VERIFY(!window.findChild<UpgradeProcess *>()->isRunning());
    QTRY_VERIFY(QDir(applicationDir + QStringLiteral("/Migration")).removeRecursively()); // the system may lag behind
}

/// The upgrade program has the adapter for itself.
void tst_GUI_CanView::readsNoDeviceDuringAnUpgrade()
{
    const QTemporaryDir programs;
    const AdapterFolder folder(OneDevice);
    const StandInProgram program(programs.filePath(QStringLiteral("UpgradeCAN.exe")), "wait");
    GUI_CanView window(manager());
    window.show();
    window.findChild<UpgradeProcess *>()->start(program.path(), {});
    actionIn(window, "btn_about", 1)->trigger();
    const auto *information = window.findChild<GUI_DeviceInfo *>();
    const auto *serial = information->findChild<QLabel *>(QStringLiteral("lbl_productSN"));
    clickIn(*information, "btn_update");
    QCOMPARE(serial->text(), QStringLiteral("-"));
    program.letGo();
    QTRY_COMPARE(serial->text(), QStringLiteral("A"));
}

void tst_GUI_CanView::asksBeforeItClosesDuringAnUpgrade()
{
    const WindowDuringAnUpgrade stage;
    QVERIFY(!stage.window->close());
    QVERIFY(stage.window->isVisible());
    QVERIFY(!stage.window->close());
    QVERIFY(stage.question() != nullptr); // once
    QCOMPARE(stage.question()->windowTitle(), QStringLiteral("Tips"));
    QCOMPARE(stage.question()->icon(), CMessageBox::Question);
    QVERIFY(stage.question()->text().startsWith(QLatin1String("The upgrade program is still running.")));
    press(*stage.question(), QDialogButtonBox::No);
    QVERIFY(stage.window->isVisible());
    QVERIFY(stage.window->findChild<UpgradeProcess *>()->isRunning());
    QVERIFY(!stage.window->close());
    QVERIFY(stage.question() != nullptr);
    press(*stage.question(), QDialogButtonBox::Yes);
    QVERIFY(!stage.window->isVisible());
    QVERIFY(stage.letsGo());
}

/// Both questions: the restart and, when that is answered, the upgrade program.
void tst_GUI_CanView::asksBeforeItRestartsDuringAnUpgrade()
{
    const StoredLanguage stored;
    const WindowDuringAnUpgrade stage;
    bool wasAsked = false;
    QTimer::singleShot(0, stage.window.get(), [&] {
        stage.window->findChild<QAction *>(QStringLiteral("EN"))->trigger();
        press(*stage.question(), QDialogButtonBox::Yes);
        wasAsked = stage.question() != nullptr && stage.question()->text().startsWith(QLatin1String("The upgrade"));
        if (wasAsked) {
            press(*stage.question(), QDialogButtonBox::Yes);
        } else {
            QCoreApplication::exit(1);
        }
    });
    QCOMPARE(QApplication::exec(), 100);
    QVERIFY(wasAsked);
    QVERIFY(stage.letsGo());
}

/// When the event loop ends for another reason, and when nobody closes the window before it goes.
void tst_GUI_CanView::goesWithoutAQuestionDuringAnUpgrade()
{
    WindowDuringAnUpgrade stage;
    stage.window->slot_showDeviceInfo();
    QTRY_COMPARE(stage.program.starts().size(), 1);
    QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(5); });
    QCOMPARE(QApplication::exec(), 5);
    QApplication::closeAllWindows();
    QVERIFY(!stage.window->isVisible());
    QVERIFY(messagesOf(*stage.window).isEmpty());
    stage.window.reset();

    WindowDuringAnUpgrade another;
    QTRY_COMPARE(another.program.starts().size(), 1);
    another.window.reset();
    QVERIFY(stage.letsGo());
    QVERIFY(another.letsGo());
}

/// In place of the question what to open.
void tst_GUI_CanView::offersANewerRelease()
{
    const StoredLanguage stored;
    const AdapterFolder folder(OneDevice);
    const UpdateServer server({QStringLiteral("--record"), QStringLiteral(R"(Korvane_CAN={"versionNo": "9.0.0"})")});
    QVERIFY(StoredLanguage::setUpdateServer(server.url()));
    GUI_CanView window(manager());
    window.show();
    QTRY_VERIFY(window.findChild<GUI_Update *>() != nullptr);
    QTRY_VERIFY(window.findChild<GUI_Update *>()->isVisible());
    QVERIFY(window.findChild<GUI_Update *>()->findChild<QWidget *>(QStringLiteral("btn_update"))->isVisible());
    QVERIFY(!dialogOf(window)->isVisible());
}

void tst_GUI_CanView::searchesOnRequest()
{
    const AdapterFolder folder(NoDevice);
    GUI_CanView window(manager());
    window.show();
    actionIn(window, "btn_about", 0)->trigger();
    auto *information = window.findChild<GUI_SoftwareInfo *>();
    QVERIFY(information->isVisible());
    clickIn(*information, "btn_update");
    QTRY_VERIFY(window.findChild<GUI_Update *>() != nullptr); // there is no server
    QTRY_VERIFY(window.findChild<GUI_Update *>()->findChild<QWidget *>(QStringLiteral("btn_cancel"))->isVisible());
}

void tst_GUI_CanView::searchEndsWithItsDialog()
{
    const StoredLanguage stored;
    const AdapterFolder folder(NoDevice);
    UpdateServer server({QStringLiteral("--behaviour"), QStringLiteral("Korvane_CAN=no-answer")});
    QVERIFY(StoredLanguage::setUpdateServer(server.url()));
    GUI_CanView window(manager());
    window.show();
    for (const int requests :
         {2, 3}) { // after the one at the start; a search that went on would leave out the next one
        actionIn(window, "btn_about", 0)->trigger();
        QPointer<GUI_SoftwareInfo> information(window.findChild<GUI_SoftwareInfo *>());
        auto *button = information->findChild<QPushButton *>(QStringLiteral("btn_update"));
        QVERIFY(button->isEnabled());
        QTest::mouseClick(button, Qt::LeftButton);
        QVERIFY(!button->isEnabled());
        QCOMPARE(button->text(), QStringLiteral("Checking..."));
        QTRY_COMPARE(server.requests().count(), requests);
        information->close();
        QTRY_VERIFY(information == nullptr);
    }
    QVERIFY(window.findChild<GUI_Update *>() == nullptr);
}

void tst_GUI_CanView::tellsOfTheDeviceOnTop()
{
    const AdapterFolder folder(R"({
      "buses": [{"name": "busy", "bitrate": "500k"}],
      "devices": [{"serial": "A", "model": "X9EC-1", "firmware": "V2.05", "can": [{"bus": "busy"}]},
                  {"serial": "B", "model": "X9FC-1", "firmware": "V3.01", "can": [{"bus": "busy"}]}]
    })");
    GUI_CanView window(manager());
    window.show();
    QTRY_VERIFY(dialogOf(window)->isVisible());
    clickIn(*dialogOf(window), "btn_cancel");
    const auto shown = [&window](const char *label) {
        return window.findChild<GUI_DeviceInfo *>()->findChild<QLabel *>(QLatin1String(label))->text();
    };
    actionIn(window, "btn_about", 1)->trigger();
    QCOMPARE(shown("lbl_productSN"), QStringLiteral("A"));
    QCOMPARE(shown("lbl_firmware"), QStringLiteral("V2.05"));
    window.findChild<GUI_DeviceInfo *>()->close();
    QTRY_VERIFY(window.findChild<GUI_DeviceInfo *>() == nullptr);

    window.slot_openCanDevice();
    chooseIn(*dialogOf(window), "cbx_index", 1);
    clickIn(*dialogOf(window), "btn_ok");
    QCOMPARE(tabsOf(window)->count(), 1);
    actionIn(window, "btn_about", 1)->trigger();
    QCOMPARE(shown("lbl_productSN"), QStringLiteral("B"));
    QCOMPARE(shown("lbl_firmware"), QStringLiteral("V3.01"));
}

X9_GUI_TEST(tst_GUI_CanView)
#include "tst_GUI_CanView.moc"
