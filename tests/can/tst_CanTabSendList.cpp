#include "capture/GUI_CanAdvancedOpearation.h"
#include "device/CANCommunication.h"
#include "tests/support/ScriptedAdapter.h"
#include "tests/support/TabUser.h"
#include "tests/support/TestProgram.h"
#include "tests/support/Ticks.h"
#include "widgets/CNotice.h"

#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTableWidget>
#include <QtTest>

namespace {
using List = GUI_CanAdvancedOpearation;

void press(const List &list, const char *button)
{
    QTest::mouseClick(list.findChild<QAbstractButton *>(QLatin1String(button)), Qt::LeftButton);
}

bool isEnabled(const List &list, const char *control)
{
    return list.findChild<QWidget *>(QLatin1String(control))->isEnabled();
}

/// Opens the list and puts so many rows into it, all ticked.
List *openList(const TabUser &user, int rows)
{
    user.click("btn_advancedOperation");
    List *list = user.dialog<List>();
    for (int row = 0; row < rows; ++row) {
        press(*list, "btnAdd");
    }
    press(*list, "btnAllSelect");
    return list;
}

/// Sends the whole list so often, with that many milliseconds between the repetitions.
void sendInOrder(const List &list, int repeat, int intervalMs)
{
    list.findChild<QComboBox *>(QStringLiteral("cbxMode"))->setCurrentIndex(1);
    list.findChild<QSpinBox *>(QStringLiteral("cbxRepeat"))->setValue(repeat);
    list.findChild<QSpinBox *>(QStringLiteral("lbxInterval"))->setValue(intervalMs);
    press(list, "btnListSend");
}
} // namespace

class tst_CanTabSendList : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void opensOneList();
    void listsWhatIsPrinted();
    static void sendsOnTheTabsChannel_data();
    void sendsOnTheTabsChannel();
    void listLocksTheTab();
    void timedSendingLocksTheList();
    void keepsItsNotices();
    void closingTheTabEndsTheList();

private:
    std::unique_ptr<ScriptedAdapter> m_adapter;
    std::unique_ptr<CANCommunication> m_manager;
};

void tst_CanTabSendList::init()
{
    m_adapter = std::make_unique<ScriptedAdapter>();
    m_adapter->setTexts("1", "X9FC", "V1");
    m_manager = std::make_unique<CANCommunication>(m_adapter->table());
}

void tst_CanTabSendList::cleanup()
{
    m_manager.reset();
    m_adapter.reset();
}

void tst_CanTabSendList::opensOneList()
{
    TabUser user(channel(0, 0), *m_manager);
    user.tab.setObjectName(QStringLiteral("CAN Device: 0 Channel: 0"));
    QVERIFY(user.dialog<List>() == nullptr);
    user.click("btn_advancedOperation");
    List *list = user.dialog<List>();
    QVERIFY(list != nullptr && list->isVisible() && !list->isModal());
    QCOMPARE(list->windowTitle(), QStringLiteral("CAN Device: 0 Channel: 0  -  List send"));
    press(*list, "btnAdd");
    list->close();
    user.click("btn_advancedOperation");
    QVERIFY(list->isVisible());
    QCOMPARE(user.tab.findChildren<List *>().size(), 1);
    QCOMPARE(list->findChild<QTableWidget *>(QStringLiteral("tableWidget"))->rowCount(), 1);
}

void tst_CanTabSendList::listsWhatIsPrinted()
{
    const TabUser user(channel(0, 0), *m_manager);
    List *list = openList(user, 2);
    press(*list, "btnListSend");
    QTRY_VERIFY(isEnabled(*list, "btnListSend"));
    QCOMPARE(m_adapter->takeFrames().size(), std::size_t(2));
    user.table()->refresh();
    QCOMPARE(user.rows(), 0);
    press(*list, "checkBox");
    m_adapter->answer("VCI_Transmit", 0);
    press(*list, "btnListSend");
    QTRY_VERIFY(isEnabled(*list, "btnListSend"));
    user.table()->refresh();
    QCOMPARE(user.rows(), 2);
    QCOMPARE(user.cell(1, 3), QStringLiteral("Send failure"));
}

void tst_CanTabSendList::sendsOnTheTabsChannel_data()
{
    QTest::addColumn<bool>("isCANFD");
    QTest::addColumn<QString>("call");
    QTest::newRow("classic") << false << "VCI_Transmit 4 0 1 1 id0";
    QTest::newRow("CAN FD") << true << "KQ_TransmitCANFD 4 0 1 1 id0";
}

void tst_CanTabSendList::sendsOnTheTabsChannel()
{
    QFETCH(bool, isCANFD);
    const TabUser user(channel(0, 1, isCANFD), *m_manager);
    List *list = openList(user, 1);
    m_adapter->takeCalls();
    press(*list, "btnListSend");
    QTRY_VERIFY(isEnabled(*list, "btnListSend"));
    QTEST(m_adapter->takeCalls().join(QLatin1Char(';')), "call");
}

void tst_CanTabSendList::listLocksTheTab()
{
    const TabUser user(channel(0, 0), *m_manager);
    QSignalSpy states(&user.tab, &GUI_CanDevice::sig_btnStateChanged);
    List *list = openList(user, 1);
    sendInOrder(*list, 65535, 1000);
    for (const char *name : {"lbx_data", "btn_sendData", "btn_sendFile", "btn_advancedOperation", "btn_reset"}) {
        QVERIFY2(!user.find<QWidget>(name)->isEnabled(), name);
    }
    QCOMPARE(states.last(), QVariantList{false});
    QVERIFY(isEnabled(*list, "m_btnStop"));
    press(*list, "m_btnStop");
    for (const char *name : {"lbx_data", "btn_sendData", "btn_sendFile", "btn_advancedOperation", "btn_reset"}) {
        QVERIFY2(user.find<QWidget>(name)->isEnabled(), name);
    }
    QCOMPARE(states.last(), QVariantList{true});
}

void tst_CanTabSendList::timedSendingLocksTheList()
{
    const TabUser user(channel(0, 0), *m_manager);
    List *list = openList(user, 1);
    user.type("lbx_frameOfSend", QStringLiteral("1000"));
    user.click("btn_sendData");
    for (const char *name : {"btnAllSelect", "btnInvert", "btnAdd", "btnRemove", "btnListSend", "cbxMode"}) {
        QVERIFY2(!isEnabled(*list, name), name);
    }
    user.click("btn_stopSending");
    for (const char *name : {"btnAllSelect", "btnInvert", "btnAdd", "btnRemove", "btnListSend", "cbxMode"}) {
        QVERIFY2(isEnabled(*list, name), name);
    }
}

/// The list is above the main window and may lie far from it.
void tst_CanTabSendList::keepsItsNotices()
{
    const TabUser user(channel(0, 0), *m_manager);
    const QSignalSpy notices(&user.tab, &WidgetDeviceBase::sig_showNotice);
    const List *list = openList(user, 0);
    press(*list, "btnListSend");
    const auto *notice = list->findChild<CNotice *>();
    QVERIFY(notice->isVisible());
    QCOMPARE(notice->parentWidget(), list);
    QCOMPARE(notice->accessibleName(), QStringLiteral("The send list is empty"));
    QCOMPARE(notices.count(), 0);
}

void tst_CanTabSendList::closingTheTabEndsTheList()
{
    auto user = std::make_unique<TabUser>(channel(0, 0), *m_manager);
    const QPointer<List> list = openList(*user, 1);
    sendInOrder(*list, 65535, 1);
    std::size_t sent = 0;
    const auto hasSent = [&](std::size_t count) {
        sent += m_adapter->takeFrames().size();
        return sent >= count;
    };
    QTRY_VERIFY(hasSent(5));
    user.reset();
    QVERIFY(list.isNull());
    m_adapter->takeFrames();
    letTicksPass(20);
    QVERIFY(m_adapter->takeFrames().empty());
}

X9_GUI_TEST(tst_CanTabSendList)
#include "tst_CanTabSendList.moc"
