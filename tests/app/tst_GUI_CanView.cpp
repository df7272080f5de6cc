#include "app/ApplicationSetup.h"
#include "app/GUI_CanView.h"
#include "can/GUI_CanDevice.h"
#include "capture/CTableViewCAN.h"
#include "capture/GUI_CanSendFile.h"
#include "device/CANAPI.h"
#include "device/CANCommunication.h"
#include "tests/support/AdapterFolder.h"
#include "widgets/CMaskWidget.h"
#include "widgets/CMessageBox.h"
#include "widgets/CNotice.h"

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
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

void pressOk(const CMessageBox &box)
{
    auto *buttons = box.findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"));
    QTest::mouseClick(buttons->button(QDialogButtonBox::Ok), Qt::LeftButton);
}
} // namespace

Q_DECLARE_METATYPE(CMessageBox::Icon)

class tst_GUI_CanView : public QObject
{
    Q_OBJECT

private slots:
    void opensBothChannelsByItself();
    void closesTabs();
    void closingATabEndsItsPlayback();
    void closesAndOpensFromTheMenu();
    void saysThatThereIsNoDevice();
    void explainsAMissingLibrary();
    void messageBoxByType_data();
    void messageBoxByType();
    void sameMessageOnce();
    void messageStorm();
    void noticeByType();
    void closesWithMessagesOpen();
    void closesWhileFramesArrive();
    void dimmedBehindDialogs();
};

void tst_GUI_CanView::opensBothChannelsByItself()
{
    const AdapterFolder folder(OneDevice);
    GUI_CanView window(manager());
    window.show();
    QCOMPARE(window.windowTitle(), QStringLiteral("X9CAN V1.1.1"));
    QCOMPARE(window.size(), QSize(1000, 650));
    QTRY_COMPARE(tabsOf(window)->count(), 2);
    QCOMPARE(tabsOf(window)->tabText(0), QStringLiteral("CAN Device: 0 Channel: 0"));
    QCOMPARE(tabsOf(window)->tabText(1), QStringLiteral("CAN Device: 0 Channel: 1"));
    QCOMPARE(noticeOf(window), QStringLiteral("Devices is open"));
    const auto tables = window.findChildren<CTableViewCAN *>();
    QCOMPARE(tables.size(), 2);
    QTRY_VERIFY(tables.at(0)->rowCount() > 100 && tables.at(1)->rowCount() > 100);
}

void tst_GUI_CanView::closesTabs()
{
    const AdapterFolder folder(OneDevice);
    GUI_CanView window(manager());
    window.show();
    QTRY_COMPARE(tabsOf(window)->count(), 2);
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
    QTRY_COMPARE(tabsOf(window)->count(), 2);
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
    QTRY_COMPARE(tabsOf(window)->count(), 2);
    const QList<QAction *> actions = window.findChild<QToolButton *>(QStringLiteral("btn_connect"))->menu()->actions();
    QCOMPARE(actions.at(0)->text(), QStringLiteral("Open device"));
    QCOMPARE(actions.at(1)->text(), QStringLiteral("Close device"));
    actions.at(1)->trigger();
    QCOMPARE(tabsOf(window)->count(), 0);
    QCOMPARE(noticeOf(window), QStringLiteral("Device turned off"));
    QTRY_COMPARE(window.findChildren<GUI_CanDevice *>().size(), 0);
    actions.at(0)->trigger();
    QCOMPARE(tabsOf(window)->count(), 2);
}

void tst_GUI_CanView::saysThatThereIsNoDevice()
{
    const AdapterFolder folder(NoDevice);
    GUI_CanView window(manager());
    window.show();
    QTRY_COMPARE(noticeOf(window), QStringLiteral("No devices!!!"));
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
    QCOMPARE(noticeOf(window), QStringLiteral("No devices!!!"));
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
        QTRY_COMPARE(tabsOf(window)->count(), 2);
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

// The last one: what it sets up stays for the whole program.
void tst_GUI_CanView::dimmedBehindDialogs()
{
    applyApplicationLook(*qobject_cast<QApplication *>(QCoreApplication::instance()));
    const AdapterFolder folder(OneDevice);
    GUI_CanView window(manager());
    window.show();
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

QTEST_MAIN(tst_GUI_CanView)
#include "tst_GUI_CanView.moc"
