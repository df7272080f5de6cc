#include "device/CANCommunication.h"
#include "lin/GUI_LINDevice.h"
#include "lin/GUI_LINModeDeveloper.h"
#include "lin/GUI_LINModeList.h"
#include "lin/GUI_LINModeMonitor.h"
#include "tests/support/AdapterFolder.h"
#include "tests/support/ScriptedAdapter.h"
#include "tests/support/TestProgram.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QStackedWidget>
#include <QtTest>

#include <utility>

namespace {
ChannelParam channel(quint8 checksum = 1, quint16 baudRate = 9600)
{
    ChannelParam param;
    param.device = 2;
    param.channel = 1;
    param.linChecksum = checksum;
    param.linBaudRate = baudRate;
    return param;
}

/// A tab on screen, its widgets by name.
class TabUnderTest
{
public:
    explicit TabUnderTest(CANCommunication &communication, const ChannelParam &param = channel())
        : tab(param, communication)
        , messages(&tab, &GUI_LINDevice::sig_showMessageBox)
    {
        tab.resize(1000, 600);
        tab.show();
    }

    template<typename Widget>
    Widget *find(const char *name) const
    {
        return tab.findChild<Widget *>(QLatin1String(name));
    }
    void click(const char *name) const { QTest::mouseClick(find<QPushButton>(name), Qt::LeftButton); }
    template<typename Page>
    Page *page() const
    {
        return tab.findChild<Page *>();
    }
    QList<LINModePage *> pages() const
    {
        return {page<GUI_LINModeList>(), page<GUI_LINModeMonitor>(), page<GUI_LINModeDeveloper>()};
    }
    QWidget *shown() const { return find<QStackedWidget>("widget_content")->currentWidget(); }
    bool areSettingsEnabled() const
    {
        return find<QPushButton>("btn_set")->isEnabled() && find<QSpinBox>("spx_baudrate")->isEnabled() &&
               find<QComboBox>("cbx_checksum")->isEnabled();
    }
    bool areSettingsDisabled() const
    {
        return !find<QPushButton>("btn_set")->isEnabled() && !find<QSpinBox>("spx_baudrate")->isEnabled() &&
               !find<QComboBox>("cbx_checksum")->isEnabled();
    }

    GUI_LINDevice tab;
    QSignalSpy messages;
};

QStringList calls(const std::initializer_list<const char *> texts)
{
    QStringList list;
    for (const char *text : texts) {
        list.append(QLatin1String(text));
    }
    return list;
}
} // namespace

class tst_GUI_LINDevice : public QObject
{
    Q_OBJECT

private slots:
    static void opensAndClosesItsChannel();
    static void isNotOpenWhenTheAdapterRefuses();
    static void showsTheChannelsSettings();
    static void ratesBeyondTheBox_data();
    static void ratesBeyondTheBox();
    static void tellsTheRateInForce();
    static void baudRateWraps();
    static void modeButtons();
    static void showsThePageOfAMode();
    static void appliesTheSettings();
    static void keepsTheSettingsWhenTheAdapterRefuses();
    static void locksTheSettingsWhileAModeRuns_data();
    static void locksTheSettingsWhileAModeRuns();
    static void forwardsMessagesAndNotices();
    static void handsResultsToTheListPage();
    static void goesAwayWhileAModeRuns();
    static void worksWithTheVirtualAdapter();
};

void tst_GUI_LINDevice::opensAndClosesItsChannel()
{
    ScriptedAdapter adapter;
    CANCommunication manager(adapter.table());
    {
        const TabUnderTest test(manager);
        QVERIFY(test.tab.isChannelOpen());
        QCOMPARE(test.tab.openResult(), CAN_OK);
        QCOMPARE(adapter.takeCalls(), calls({"VCI_OpenDevice 4 2 0", "KQ_OpenLIN 4 2 1 9600 1"}));
    }
    QCOMPARE(adapter.takeCalls(), calls({"KQ_CloseLIN 4 2 1", "VCI_CloseDevice 4 2"}));
}

void tst_GUI_LINDevice::isNotOpenWhenTheAdapterRefuses()
{
    ScriptedAdapter adapter;
    CANCommunication manager(adapter.table());
    {
        const TabUnderTest first(manager);
        const TabUnderTest second(manager);
        QCOMPARE(second.tab.openResult(), CAN_ChannelExists);
        QVERIFY(!second.tab.isChannelOpen());
    }
    adapter.takeCalls();
    adapter.answer("KQ_OpenLIN", 0);
    {
        const TabUnderTest test(manager);
        QCOMPARE(test.tab.openResult(), CAN_ChannelOpenFailed);
        adapter.takeCalls();
    }
    QCOMPARE(adapter.takeCalls(), QStringList()); // closes nothing
}

void tst_GUI_LINDevice::showsTheChannelsSettings()
{
    ScriptedAdapter adapter;
    CANCommunication manager(adapter.table());
    const TabUnderTest test(manager);
    const auto *baudRate = test.find<QSpinBox>("spx_baudrate");
    QCOMPARE(baudRate->minimum(), 4000);
    QCOMPARE(baudRate->maximum(), 20000);
    QCOMPARE(baudRate->value(), 9600);
    const auto *checksum = test.find<QComboBox>("cbx_checksum");
    QCOMPARE(checksum->count(), 2);
    QCOMPARE(checksum->itemText(0), QStringLiteral("Standard checksum"));
    QCOMPARE(checksum->itemData(0).toInt(), 0);
    QCOMPARE(checksum->itemText(1), QStringLiteral("Enhanced checksum"));
    QCOMPARE(checksum->itemData(1).toInt(), 1);
    QCOMPARE(checksum->currentIndex(), 1);
    for (const LINModePage *page : test.pages()) {
        QCOMPARE(page->channelParam().device, quint8(2));
        QCOMPARE(page->channelParam().channel, quint8(1));
        QCOMPARE(page->channelParam().linChecksum, quint8(1));
        QCOMPARE(page->channelParam().linBaudRate, quint16(9600));
    }
}

void tst_GUI_LINDevice::ratesBeyondTheBox_data()
{
    QTest::addColumn<quint16>("rate");
    QTest::addColumn<int>("shown");
    for (const auto &[rate, shown] :
         {std::pair(0, 4000), std::pair(3999, 4000), std::pair(20001, 20000), std::pair(65535, 20000)}) {
        QTest::addRow("%d", rate) << quint16(rate) << shown;
    }
}

/// The box shows the nearest rate that it has, and tells which one the channel runs at.
void tst_GUI_LINDevice::ratesBeyondTheBox()
{
    QFETCH(quint16, rate);
    ScriptedAdapter adapter;
    CANCommunication manager(adapter.table());
    const TabUnderTest test(manager, channel(0, rate));
    QCOMPARE(adapter.takeCalls().last(), QStringLiteral("KQ_OpenLIN 4 2 1 %1 0").arg(rate));
    const auto *box = test.find<QSpinBox>("spx_baudrate");
    QTEST(box->value(), "shown");
    QCOMPARE(box->toolTip(), QStringLiteral("Baudrate in force: %1").arg(rate));
    QCOMPARE(test.tab.channelParam().linBaudRate, rate);
}

void tst_GUI_LINDevice::tellsTheRateInForce()
{
    ScriptedAdapter adapter;
    CANCommunication manager(adapter.table());
    const TabUnderTest test(manager);
    auto *box = test.find<QSpinBox>("spx_baudrate");
    QCOMPARE(box->toolTip(), QStringLiteral("Baudrate in force: 9600"));
    box->setValue(4800);
    QCOMPARE(box->toolTip(), QStringLiteral("Baudrate in force: 9600"));
    adapter.answer("KQ_CloseLIN", 0);
    test.click("btn_set");
    QCOMPARE(box->toolTip(), QStringLiteral("Baudrate in force: 9600"));
    adapter.answer("KQ_CloseLIN", 1);
    adapter.answer("KQ_OpenLIN", 0);
    test.click("btn_set"); // closes the channel
    QCOMPARE(box->toolTip(), QString());
    adapter.answer("KQ_CloseLIN", 0); // as an adapter does for a channel that is closed
    adapter.answer("KQ_OpenLIN", 1);
    test.click("btn_set");
    QCOMPARE(box->toolTip(), QStringLiteral("Baudrate in force: 4800"));
    QCOMPARE(test.messages.last(), (QVariantList{QStringLiteral("Switchover successful"), 1}));
}

void tst_GUI_LINDevice::baudRateWraps()
{
    ScriptedAdapter adapter;
    CANCommunication manager(adapter.table());
    const TabUnderTest test(manager, channel(0, 20000));
    auto *baudRate = test.find<QSpinBox>("spx_baudrate");
    QCOMPARE(baudRate->value(), 20000);
    QTest::keyClick(baudRate, Qt::Key_Up);
    QCOMPARE(baudRate->value(), 4000);
    QTest::keyClick(baudRate, Qt::Key_Down);
    QCOMPARE(baudRate->value(), 20000);
}

void tst_GUI_LINDevice::modeButtons()
{
    ScriptedAdapter adapter;
    CANCommunication manager(adapter.table());
    const TabUnderTest test(manager);
    for (const char *name : {"btn_modeList", "btn_modeMonitor", "btn_modeDeveloper"}) {
        const auto *button = test.find<QPushButton>(name);
        QVERIFY(button->isCheckable());
        QCOMPARE(button->property("nav").toString(), QStringLiteral("tBtnStyle_6"));
        QVERIFY(button->group() != nullptr && button->group()->exclusive());
        QCOMPARE(button->group()->buttons().size(), 3);
    }
    QVERIFY(test.find<QPushButton>("btn_modeList")->isChecked());
    QVERIFY(test.shown() == test.page<GUI_LINModeList>());
    const auto *content = test.find<QStackedWidget>("widget_content");
    QCOMPARE(content->count(), 3);
    for (int i = 0; i < 3; ++i) {
        QVERIFY(content->widget(i) == test.pages().at(i));
    }
}

/// Without a word to the adapter.
void tst_GUI_LINDevice::showsThePageOfAMode()
{
    ScriptedAdapter adapter;
    CANCommunication manager(adapter.table());
    const TabUnderTest test(manager);
    adapter.takeCalls();
    test.click("btn_modeDeveloper");
    QVERIFY(test.shown() == test.page<GUI_LINModeDeveloper>());
    QVERIFY(test.find<QPushButton>("btn_modeDeveloper")->isChecked());
    QVERIFY(!test.find<QPushButton>("btn_modeList")->isChecked());
    test.click("btn_modeMonitor");
    QVERIFY(test.shown() == test.page<GUI_LINModeMonitor>());
    test.click("btn_modeMonitor");
    QVERIFY(test.find<QPushButton>("btn_modeMonitor")->isChecked());
    test.click("btn_modeList");
    QVERIFY(test.shown() == test.page<GUI_LINModeList>());
    QCOMPARE(adapter.takeCalls(), QStringList());
}

void tst_GUI_LINDevice::appliesTheSettings()
{
    ScriptedAdapter adapter;
    CANCommunication manager(adapter.table());
    TabUnderTest test(manager);
    for (const int baudRate : {4000, 20000}) {
        adapter.takeCalls();
        test.find<QSpinBox>("spx_baudrate")->setValue(baudRate);
        test.find<QComboBox>("cbx_checksum")->setCurrentIndex(0);
        test.click("btn_set");
        QCOMPARE(adapter.takeCalls(), calls({"KQ_CloseLIN 4 2 1"})
                                          << QStringLiteral("KQ_OpenLIN 4 2 1 %1 0").arg(baudRate));
        QCOMPARE(test.messages.takeLast(), (QVariantList{QStringLiteral("Switchover successful"), 1}));
        QVERIFY(test.messages.isEmpty());
        QCOMPARE(int(test.tab.channelParam().linBaudRate), baudRate);
        QCOMPARE(test.tab.channelParam().linChecksum, quint8(0));
        for (const LINModePage *page : test.pages()) {
            QCOMPARE(int(page->channelParam().linBaudRate), baudRate);
            QCOMPARE(page->channelParam().linChecksum, quint8(0));
            QCOMPARE(page->channelParam().device, quint8(2));
        }
    }
}

void tst_GUI_LINDevice::keepsTheSettingsWhenTheAdapterRefuses()
{
    ScriptedAdapter adapter;
    CANCommunication manager(adapter.table());
    TabUnderTest test(manager);
    test.find<QSpinBox>("spx_baudrate")->setValue(4800);
    test.find<QComboBox>("cbx_checksum")->setCurrentIndex(0);
    for (const char *refused : {"KQ_OpenLIN", "KQ_CloseLIN"}) {
        adapter.answer(refused, 0);
        test.click("btn_set");
        QCOMPARE(test.messages.takeLast(), (QVariantList{QStringLiteral("Switchover failure"), 4}));
        QVERIFY(test.messages.isEmpty());
        QCOMPARE(test.tab.channelParam().linBaudRate, quint16(9600));
        for (const LINModePage *page : test.pages()) {
            QCOMPARE(page->channelParam().linBaudRate, quint16(9600));
            QCOMPARE(page->channelParam().linChecksum, quint8(1));
        }
        QCOMPARE(test.find<QSpinBox>("spx_baudrate")->value(), 4800);
        QCOMPARE(test.find<QComboBox>("cbx_checksum")->currentIndex(), 0);
    }
    adapter.answer("KQ_CloseLIN", 1);
}

void tst_GUI_LINDevice::locksTheSettingsWhileAModeRuns_data()
{
    QTest::addColumn<int>("page");
    QTest::addColumn<int>("mode");
    QTest::newRow("list") << 0 << 1;
    QTest::newRow("monitor") << 1 << 3;
    QTest::newRow("developer") << 2 << 4;
}

void tst_GUI_LINDevice::locksTheSettingsWhileAModeRuns()
{
    QFETCH(int, page);
    QFETCH(int, mode);
    ScriptedAdapter adapter;
    CANCommunication manager(adapter.table());
    const TabUnderTest test(manager);
    const QSignalSpy states(&test.tab, &GUI_LINDevice::sig_changeBtnEnableState);
    QVERIFY(test.areSettingsEnabled());
    LINModePage *running = test.pages().at(page);
    emit running->sig_changeBtnEnableState(static_cast<uint8_t>(mode), false);
    QVERIFY(test.areSettingsDisabled());
    emit running->sig_changeBtnEnableState(static_cast<uint8_t>(mode), true);
    QVERIFY(test.areSettingsEnabled());
    QCOMPARE(states.count(), 2);
    QCOMPARE(int(states.at(0).at(0).value<uint8_t>()), mode);
    QCOMPARE(states.at(0).at(1).toBool(), false);
}

void tst_GUI_LINDevice::forwardsMessagesAndNotices()
{
    ScriptedAdapter adapter;
    CANCommunication manager(adapter.table());
    TabUnderTest test(manager);
    const QSignalSpy notices(&test.tab, &GUI_LINDevice::sig_showNotice);
    const QList<LINModePage *> pages = test.pages();
    for (LINModePage *page : pages) {
        emit page->sig_showMessageBox(QStringLiteral("text"), 4);
        emit page->sig_showNotice(QStringLiteral("notice"), 3, 1500);
    }
    QCOMPARE(test.messages.count(), 3);
    QCOMPARE(test.messages.at(2), (QVariantList{QStringLiteral("text"), 4}));
    QCOMPARE(notices.count(), 3);
    QCOMPARE(notices.at(2), (QVariantList{QStringLiteral("notice"), 3, 1500}));
}

void tst_GUI_LINDevice::handsResultsToTheListPage()
{
    ScriptedAdapter adapter;
    CANCommunication manager(adapter.table());
    const TabUnderTest test(manager);
    test.click("btn_modeDeveloper");
    emit test.page<GUI_LINModeDeveloper>()->sig_addRowItems({CTableViewLIN::DataObject()});
    QVERIFY(test.shown() == test.page<GUI_LINModeList>());
    QVERIFY(test.find<QPushButton>("btn_modeList")->isChecked());
    QVERIFY(!test.find<QPushButton>("btn_modeDeveloper")->isChecked());
}

void tst_GUI_LINDevice::goesAwayWhileAModeRuns()
{
    ScriptedAdapter adapter;
    CANCommunication manager(adapter.table());
    auto test = std::make_unique<TabUnderTest>(manager);
    emit test->page<GUI_LINModeMonitor>()->sig_changeBtnEnableState(3, false);
    adapter.takeCalls();
    test.reset();
    QCOMPARE(adapter.takeCalls(), calls({"KQ_CloseLIN 4 2 1", "VCI_CloseDevice 4 2"}));
}

void tst_GUI_LINDevice::worksWithTheVirtualAdapter()
{
    const AdapterFolder folder(R"({
      "lin_buses": [{"name": "body", "baud_rate": 10400, "slaves": [{"id": "0x12", "data": "01 A2"}]}],
      "devices": [{"model": "X9FC-1", "lin": [{"bus": "body"}]}]
    })");
    CANCommunication manager(std::make_unique<CANAPI>(QStringLiteral(X9_VIRTUAL_ADAPTER)));
    ChannelParam param;
    param.linBaudRate = 19200;
    TabUnderTest test(manager, param);
    QVERIFY(test.tab.isChannelOpen());
    VCI_LIN_OBJ frame{};
    frame.ID = 0x12;
    QCOMPARE(manager.receiveLIN(0, 0, &frame), CAN_OK);
    QCOMPARE(int(frame.DataLen), 0); // at the wrong baud rate
    test.find<QSpinBox>("spx_baudrate")->setValue(10400);
    test.click("btn_set");
    QCOMPARE(test.messages.takeLast(), (QVariantList{QStringLiteral("Switchover successful"), 1}));
    QCOMPARE(manager.receiveLIN(0, 0, &frame), CAN_OK);
    QCOMPARE(int(frame.DataLen), 2);
}

X9_GUI_TEST(tst_GUI_LINDevice)
#include "tst_GUI_LINDevice.moc"
