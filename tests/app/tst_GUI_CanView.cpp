#include "app/GUI_CanView.h"
#include "can/GUI_CanDevice.h"
#include "capture/CTableViewCAN.h"
#include "capture/GUI_CanSendFile.h"
#include "device/CANAPI.h"
#include "device/CANCommunication.h"
#include "tests/support/AdapterFolder.h"

#include <QAbstractButton>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QProgressBar>
#include <QStatusBar>
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
} // namespace

Q_DECLARE_METATYPE(QMessageBox::Icon)

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
    void closesWhileFramesArrive();
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
    QCOMPARE(window.findChild<QStatusBar *>()->currentMessage(), QStringLiteral("Devices is open"));
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
    QCOMPARE(window.findChild<QStatusBar *>()->currentMessage(), QStringLiteral("Device turned off"));
    QTRY_COMPARE(window.findChildren<GUI_CanDevice *>().size(), 0);
    actions.at(0)->trigger();
    QCOMPARE(tabsOf(window)->count(), 2);
}

void tst_GUI_CanView::saysThatThereIsNoDevice()
{
    const AdapterFolder folder(NoDevice);
    GUI_CanView window(manager());
    window.show();
    QTRY_COMPARE(window.findChild<QStatusBar *>()->currentMessage(), QStringLiteral("No devices!!!"));
    QCOMPARE(tabsOf(window)->count(), 0);
    QVERIFY(window.findChild<QMessageBox *>() == nullptr); // the library is fine
}

void tst_GUI_CanView::explainsAMissingLibrary()
{
    GUI_CanView window(manager(QStringLiteral("./no-such-library")));
    window.show();
    QTRY_VERIFY(window.findChild<QMessageBox *>() != nullptr);
    auto *box = window.findChild<QMessageBox *>();
    QVERIFY2(box->text().contains(QLatin1String("no-such-library")), qPrintable(box->text()));
    QVERIFY(box->isModal());
    QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
    QTRY_VERIFY(window.findChild<QMessageBox *>() == nullptr);
}

void tst_GUI_CanView::messageBoxByType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QMessageBox::Icon>("icon");
    QTest::newRow("success") << 1 << QMessageBox::Information;
    QTest::newRow("question") << 2 << QMessageBox::Question;
    QTest::newRow("warning") << 3 << QMessageBox::Warning;
    QTest::newRow("critical") << 4 << QMessageBox::Critical;
    QTest::newRow("any other") << 9 << QMessageBox::Information;
}

void tst_GUI_CanView::messageBoxByType()
{
    QFETCH(int, type);
    const AdapterFolder folder(OneDevice);
    GUI_CanView window(manager());
    window.slot_showMessageBox(QStringLiteral("text"), type);
    const auto *box = window.findChild<QMessageBox *>();
    QVERIFY(box != nullptr);
    QCOMPARE(box->windowTitle(), QStringLiteral("Tips"));
    QCOMPARE(box->text(), QStringLiteral("text"));
    QTEST(box->icon(), "icon");
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

QTEST_MAIN(tst_GUI_CanView)
#include "tst_GUI_CanView.moc"
