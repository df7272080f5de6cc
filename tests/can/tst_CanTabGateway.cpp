#include "can/GUI_CanGateWay.h"
#include "device/CANAPI.h"
#include "device/CANCommunication.h"
#include "tests/support/AdapterFolder.h"
#include "tests/support/TabUser.h"
#include "tests/support/TestProgram.h"

#include <QListWidget>
#include <QPushButton>
#include <QSet>
#include <QSignalSpy>
#include <QtTest>

namespace {
// Device 0 stands between two buses; device 1 has a channel on each of them, so it sees what is forwarded.
const QByteArray Buses = R"({
  "buses": [{"name": "left", "bitrate": "500k"}, {"name": "right", "bitrate": "500k"}],
  "devices": [
    {"model": "X9FC-1", "can": [{"bus": "left"}, {"bus": "right"}]},
    {"model": "X9FC-2", "can": [{"bus": "left"}, {"bus": "right"}]}
  ]
})";

const QByteArray Refusing = R"({
  "buses": [{"name": "left", "bitrate": "500k"}],
  "devices": [{"model": "X9FC-1", "can": [{"bus": "left"}, {"bus": "left"}], "faults": {"gateway_refused": true}}]
})";

QString switchText(const TabUser &user)
{
    return user.find<QPushButton>("btn_gatewaySwitch")->text();
}

void send(const TabUser &user, const QString &id)
{
    user.type("lbx_frameID", id);
    user.click("btn_sendData");
}

/// The identifiers in the tab's table, sorted: what is sent is listed before what has been received meanwhile.
QStringList listed(const TabUser &user)
{
    user.table()->refresh();
    QStringList ids;
    for (int row = 0; row < user.rows(); ++row) {
        ids.append(user.cell(row, 4));
    }
    ids.sort();
    return ids;
}

void addEntry(const GUI_CanGateWay &dialog, const QString &id)
{
    TabUser::type(dialog.findChild<QLineEdit *>(QStringLiteral("lbx_id")), id);
    QTest::mouseClick(dialog.findChild<QPushButton *>(QStringLiteral("btn_apply")), Qt::LeftButton);
}

void press(const GUI_CanGateWay &dialog, const char *button)
{
    QTest::mouseClick(dialog.findChild<QPushButton *>(QLatin1String(button)), Qt::LeftButton);
}
} // namespace

class tst_CanTabGateway : public QObject
{
    Q_OBJECT

private slots:
    void init() { start(Buses); }
    void cleanup();

    void bothTabsShowTheState();
    void needsBothChannels();
    void reportsARefusal();
    void forwardsOnlyWhatIsListed();
    void rejectedDialogWritesNothing();
    void writingWhileItIsOffFails();
    void readsBackWhatWasWritten();
    void routesTheMessagesOfTheDialog();

private:
    void start(const QByteArray &json);

    std::unique_ptr<AdapterFolder> m_folder;
    std::unique_ptr<CANCommunication> m_manager;
};

void tst_CanTabGateway::start(const QByteArray &json)
{
    m_manager.reset();
    m_folder.reset();
    m_folder = std::make_unique<AdapterFolder>(json);
    m_manager = std::make_unique<CANCommunication>(std::make_unique<CANAPI>(QStringLiteral(X9_VIRTUAL_ADAPTER)));
}

void tst_CanTabGateway::cleanup()
{
    m_manager.reset();
    m_folder.reset();
}

void tst_CanTabGateway::bothTabsShowTheState()
{
    const TabUser left(channel(0, 0), *m_manager);
    const TabUser right(channel(0, 1), *m_manager);
    const TabUser other(channel(1, 0), *m_manager);
    QSignalSpy messages(&left.tab, &WidgetDeviceBase::sig_showMessageBox);
    QCOMPARE(switchText(left), QStringLiteral("Open"));
    left.click("btn_gatewaySwitch");
    QCOMPARE(switchText(left), QStringLiteral("Close"));
    QCOMPARE(switchText(right), QStringLiteral("Close"));
    QCOMPARE(switchText(other), QStringLiteral("Open"));
    right.click("btn_gatewaySwitch");
    QCOMPARE(switchText(left), QStringLiteral("Open"));
    QCOMPARE(switchText(right), QStringLiteral("Open"));

    right.click("btn_gatewaySwitch");
    left.click("btn_reset"); // closes the channel and with it the gateway
    QCOMPARE(switchText(left), QStringLiteral("Open"));
    QCOMPARE(switchText(right), QStringLiteral("Open"));
    QCOMPARE(messages.count(), 1); // of the reset
}

void tst_CanTabGateway::needsBothChannels()
{
    const TabUser left(channel(0, 0), *m_manager);
    QSignalSpy messages(&left.tab, &WidgetDeviceBase::sig_showMessageBox);
    left.click("btn_gatewaySwitch");
    QCOMPARE(messages.count(), 1);
    QCOMPARE(messages.first(), (QVariantList{QStringLiteral("The gateway function fails to be enabled!"), 4}));
    QCOMPARE(switchText(left), QStringLiteral("Open"));
}

void tst_CanTabGateway::reportsARefusal()
{
    start(Refusing);
    const TabUser left(channel(0, 0), *m_manager);
    const TabUser right(channel(0, 1), *m_manager);
    QSignalSpy messages(&left.tab, &WidgetDeviceBase::sig_showMessageBox);
    left.click("btn_gatewaySwitch");
    QCOMPARE(messages.count(), 1);
    QCOMPARE(messages.takeFirst(), (QVariantList{QStringLiteral("The gateway function fails to be enabled!"), 4}));
    left.click("btn_gatewayFilter"); // cannot be read, so there is nothing to edit
    QCOMPARE(messages.count(), 1);
    QCOMPARE(messages.first(),
             (QVariantList{QStringLiteral("Setup failure, Please check whether the gateway function is enabled!"), 4}));
    QVERIFY(left.dialog<GUI_CanGateWay>() == nullptr);
}

void tst_CanTabGateway::forwardsOnlyWhatIsListed()
{
    const TabUser left(channel(0, 0), *m_manager);
    const TabUser right(channel(0, 1), *m_manager);
    const TabUser farLeft(channel(1, 0), *m_manager);
    const TabUser farRight(channel(1, 1), *m_manager);
    QSignalSpy messages(&left.tab, &WidgetDeviceBase::sig_showMessageBox);

    send(farLeft, QStringLiteral("100"));
    QTRY_COMPARE(listed(left), QStringList{QStringLiteral("0x100")});
    QVERIFY(listed(right).isEmpty());

    left.click("btn_gatewaySwitch");
    send(farLeft, QStringLiteral("101"));
    QTRY_COMPARE(listed(farRight), QStringList{QStringLiteral("0x101")});

    left.click("btn_gatewayFilter");
    const auto *dialog = left.dialog<GUI_CanGateWay>();
    QVERIFY(dialog != nullptr);
    QVERIFY(dialog->isModal());
    QCOMPARE(dialog->windowTitle(), QStringLiteral("Gateway filtering rule"));
    addEntry(*dialog, QStringLiteral("123"));
    press(*dialog, "btn_ok");
    QCOMPARE(messages.count(), 1);
    QCOMPARE(messages.first(), (QVariantList{QStringLiteral("Successful setting!"), 1}));
    farRight.click("btn_clear");
    for (const char *id : {"122", "123", "124"}) {
        send(farLeft, QLatin1String(id));
    }
    send(farRight, QStringLiteral("200")); // the other direction has a list of its own, an empty one
    QTRY_COMPARE(listed(farLeft).last(), QStringLiteral("0x200"));
    QTRY_COMPARE(listed(farRight), (QStringList{QStringLiteral("0x123"), QStringLiteral("0x200")}));

    right.click("btn_gatewaySwitch");
    farRight.click("btn_clear");
    send(farLeft, QStringLiteral("123"));
    QTRY_COMPARE(listed(left).count(QStringLiteral("0x123")), 2);
    QVERIFY(listed(farRight).isEmpty());
}

void tst_CanTabGateway::rejectedDialogWritesNothing()
{
    const TabUser left(channel(0, 0), *m_manager);
    const TabUser right(channel(0, 1), *m_manager);
    left.click("btn_gatewaySwitch");
    QSignalSpy messages(&left.tab, &WidgetDeviceBase::sig_showMessageBox);
    left.click("btn_gatewayFilter");
    const QPointer<GUI_CanGateWay> dialog = left.dialog<GUI_CanGateWay>();
    addEntry(*dialog, QStringLiteral("1"));
    press(*dialog, "btn_cancel");
    QTRY_VERIFY(dialog.isNull());
    QCOMPARE(messages.count(), 0);
    QSet<quint32> entries{1};
    QCOMPARE(m_manager->getGatewayIDFilter(0, 0, entries), CAN_OK);
    QVERIFY(entries.isEmpty());
}

void tst_CanTabGateway::writingWhileItIsOffFails()
{
    const TabUser left(channel(0, 0), *m_manager);
    const TabUser right(channel(0, 1), *m_manager);
    QSignalSpy messages(&left.tab, &WidgetDeviceBase::sig_showMessageBox);
    left.click("btn_gatewayFilter");
    press(*left.dialog<GUI_CanGateWay>(), "btn_ok");
    QCOMPARE(messages.count(), 1);
    QCOMPARE(messages.first(),
             (QVariantList{QStringLiteral("Setup failure, Please check whether the gateway function is enabled!"), 4}));
}

void tst_CanTabGateway::readsBackWhatWasWritten()
{
    const TabUser left(channel(0, 0), *m_manager);
    const TabUser right(channel(0, 1), *m_manager);
    right.click("btn_gatewaySwitch");
    QSet<quint32> written;
    right.click("btn_gatewayFilter");
    const QPointer<GUI_CanGateWay> first = right.dialog<GUI_CanGateWay>();
    for (quint32 id = 0; id < 64; ++id) {
        addEntry(*first, QString::number(id * 17, 16));
        written.insert(id * 17 * 8 + 1);
    }
    press(*first, "btn_ok");
    QTRY_VERIFY(first.isNull());
    right.click("btn_gatewayFilter");
    const auto *second = right.dialog<GUI_CanGateWay>();
    QCOMPARE(second->entries(), written);
    QCOMPARE(second->findChild<QListWidget *>(QStringLiteral("listWidget"))->count(), 64);
    left.click("btn_gatewayFilter");
    QVERIFY(left.dialog<GUI_CanGateWay>()->entries().isEmpty());
}

void tst_CanTabGateway::routesTheMessagesOfTheDialog()
{
    const TabUser left(channel(0, 0), *m_manager);
    QSignalSpy messages(&left.tab, &WidgetDeviceBase::sig_showMessageBox);
    left.click("btn_gatewayFilter");
    const auto *dialog = left.dialog<GUI_CanGateWay>();
    addEntry(*dialog, QStringLiteral("1"));
    addEntry(*dialog, QStringLiteral("1"));
    QCOMPARE(messages.count(), 1);
    QCOMPARE(messages.first(), (QVariantList{QStringLiteral("The ID already exists in the list!"), 4}));
}

X9_GUI_TEST(tst_CanTabGateway)
#include "tst_CanTabGateway.moc"
