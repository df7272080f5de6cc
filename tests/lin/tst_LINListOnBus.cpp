#include "device/CANAPI.h"
#include "device/CANCommunication.h"
#include "lin/GUI_LINModeList.h"
#include "tests/lin/LINListPage.h"
#include "tests/support/AdapterFolder.h"
#include "tests/support/TestProgram.h"

#include <QComboBox>
#include <QPushButton>
#include <QSpinBox>
#include <QtTest>

namespace {

/// Slaves 10 and 11 answer, 12 is silent, 13 spoils its checksum; the adapter's other channel can listen.
const QByteArray Bus = R"({
  "lin_buses": [
    {"name": "body", "baud_rate": 19200, "slaves": [
      {"id": "0x10", "data": [1, 2, 3, 4]},
      {"id": "0x11", "data": [170], "checksum": "classic"},
      {"id": "0x12", "data": [1], "present": false},
      {"id": "0x13", "data": [1], "wrong_checksum": true},
      {"id": "0x14", "data": [0, 0], "counting": true}
    ]}
  ],
  "devices": [{"model": "X9FC-1", "lin": [%1{"bus": "body"}], %2 "can": []}]
})";

QByteArray bus(const QByteArray &channel = R"({"bus": "body"},)", const QByteArray &device = "")
{
    QByteArray json = Bus;
    return json.replace("%1", channel).replace("%2", device);
}

QString str(const char *text)
{
    return QString::fromUtf8(text);
}

/// The virtual adapter with one bus, and the tab on its first channel.
class BusUnderTest
{
public:
    explicit BusUnderTest(quint8 checksum = 1, const QByteArray &json = bus())
        : folder(json)
        , communication(std::make_unique<CANAPI>(QStringLiteral(X9_VIRTUAL_ADAPTER)))
        , page(communication, checksum)
    {
    }

    void run()
    {
        page.states.clear();
        page.click("btn_start");
        QTRY_COMPARE_WITH_TIMEOUT(stateTexts(page.states), QStringList({str("1 false"), str("1 true")}), 60000);
    }

    AdapterFolder folder;
    CANCommunication communication;
    LINListPage page;
};

/// Listens on the second channel and tells what it saw: "PID data".
class Listener
{
public:
    explicit Listener(CANCommunication &manager)
        : communication(manager)
    {
        ChannelParam param;
        param.channel = 1;
        param.linBaudRate = 19200;
        param.linChecksum = 1;
        m_isOpen = communication.openLIN(param) == CAN_OK && communication.changeLINMode(0, 1, 3) == CAN_OK;
    }
    ~Listener() { communication.closeLIN(0, 1); }
    Listener(const Listener &) = delete;
    Listener &operator=(const Listener &) = delete;

    bool isOpen() const { return m_isOpen; }
    QStringList seen() const
    {
        QStringList texts;
        for (;;) {
            VCI_LIN_OBJ frame{};
            if (communication.receiveLINBySlave(0, 1, &frame) != CAN_OK || frame.DataLen == 0) {
                return texts;
            }
            const QByteArray data(reinterpret_cast<const char *>(frame.Data), frame.DataLen);
            texts.append(QStringLiteral("%1 %2").arg(frame.ID, 2, 16, QLatin1Char('0')).arg(str(data.toHex())));
        }
    }

private:
    CANCommunication &communication;
    bool m_isOpen = false;
};

} // namespace

class tst_LINListOnBus : public QObject
{
    Q_OBJECT

private slots:
    static void runsASchedule();
    static void hasNoAnswerAtAnotherBaudRate();
    static void changesTheChecksumOnTheFly();
    static void refusedMode();
    static void refusedTransfers();
    static void deviceVanishesWhileItRuns();
    static void slowAdapter();
};

void tst_LINListOnBus::runsASchedule()
{
    BusUnderTest bus;
    const Listener listener(bus.communication);
    QVERIFY(listener.isOpen());
    bus.page.setRow(0, str("01"), str("01 A2"), 2);
    bus.page.setRow(1, str("10"), str(""), 0, true);
    bus.page.setRow(2, str("12"), str(""), 0, true); // silent
    bus.page.setRow(3, str("13"), str(""), 0, true);
    bus.page.setRow(4, str("14"), str(""), 0, true);
    bus.page.setRow(5, str("3C"), str("FF zz 02"), 3);
    bus.page.setCount(11);
    bus.run();
    QCOMPARE(bus.page.frameTexts(),
             QStringList({str("Send 01[C1] 2 01 A2  9A V2"), str("Revice 10[50] 4 01 02 03 04  A5 V2"),
                          str("Revice 13[D3] 1 01  71 Error state"), str("Revice 14[14] 2 00 00  EB V2"),
                          str("Send 3C[3C] 2 FF 02  C1 V2"), str("Send 01[C1] 2 01 A2  9A V2"),
                          str("Revice 10[50] 4 01 02 03 04  A5 V2"), str("Revice 13[D3] 1 01  71 Error state"),
                          str("Revice 14[14] 2 01 00  EA V2")}));
    QCOMPARE(listener.seen(),
             QStringList({str("c1 01a2"), str("50 01020304"), str("d3 01"), str("14 0000"), str("3c ff02"),
                          str("c1 01a2"), str("50 01020304"), str("d3 01"), str("14 0100")}));
    QVERIFY(bus.page.messages.isEmpty());
}

void tst_LINListOnBus::hasNoAnswerAtAnotherBaudRate()
{
    BusUnderTest bus;
    bus.page.tab.findChild<QSpinBox *>(str("spx_baudrate"))->setValue(9600);
    QTest::mouseClick(bus.page.tab.findChild<QPushButton *>(str("btn_set")), Qt::LeftButton);
    QCOMPARE(bus.page.messages.takeFirst().at(0).toString(), str("Switchover successful"));
    bus.page.setRow(0, str("01"), str("01 A2"), 2);
    bus.page.setRow(1, str("10"), str(""), 0, true);
    bus.page.setCount(4);
    bus.run();
    QCOMPARE(bus.page.frameTexts(),
             QStringList({str("Send 01[C1] 2 01 A2  9A V2"), str("Send 01[C1] 2 01 A2  9A V2")}));

    bus.page.tab.findChild<QSpinBox *>(str("spx_baudrate"))->setValue(19200);
    QTest::mouseClick(bus.page.tab.findChild<QPushButton *>(str("btn_set")), Qt::LeftButton);
    bus.run();
    QCOMPARE(bus.page.rowCount(), 4);
}

void tst_LINListOnBus::changesTheChecksumOnTheFly()
{
    BusUnderTest bus(1);
    bus.page.setRow(0, str("01"), str("01 A2"), 2);
    bus.page.setRow(1, str("10"), str(""), 0, true);
    bus.page.setRow(2, str("11"), str(""), 0, true);
    bus.page.setCount(3);
    bus.run();
    QCOMPARE(bus.page.frameTexts(),
             QStringList({str("Send 01[C1] 2 01 A2  9A V2"), str("Revice 10[50] 4 01 02 03 04  A5 V2"),
                          str("Revice 11[11] 1 AA  55 Error checksum(V1)")}));

    auto *checksum = bus.page.tab.findChild<QComboBox *>(str("cbx_checksum"));
    checksum->setCurrentIndex(checksum->findData(0));
    QTest::mouseClick(bus.page.tab.findChild<QPushButton *>(str("btn_set")), Qt::LeftButton);
    QCOMPARE(bus.page.frame(1, 7), str("V2")); // what has been listed stays
    bus.run();
    QCOMPARE(bus.page.frameTexts(),
             QStringList({str("Send 01[C1] 2 01 A2  5C V1"), str("Revice 10[50] 4 01 02 03 04  A5 Error checksum(V2)"),
                          str("Revice 11[11] 1 AA  55 V1")}));
}

void tst_LINListOnBus::refusedMode()
{
    BusUnderTest bus(1, ::bus(R"({"bus": "body", "faults": {"mode_refused": [1]}},)"));
    bus.page.tick(0);
    bus.page.click("btn_start");
    QCOMPARE(bus.page.messages.count(), 1);
    QCOMPARE(bus.page.messages.at(0).at(0).toString(), str("Communication error"));
    QCOMPARE(bus.page.messages.at(0).at(1).toInt(), 4);
    QVERIFY(bus.page.states.isEmpty());
    QVERIFY(bus.page.isEnabled("btn_start"));
}

void tst_LINListOnBus::refusedTransfers()
{
    BusUnderTest bus(1, ::bus(R"({"bus": "body", "faults": {"transmit_refused": true, "receive_refused": true}},)"));
    bus.page.setRow(0, str("01"), str("01 A2"), 2);
    bus.page.setRow(1, str("10"), str(""), 0, true);
    bus.page.setCount(4);
    bus.run();
    QCOMPARE(bus.page.rowCount(), 2);
    QVERIFY(bus.page.messages.isEmpty());
}

void tst_LINListOnBus::deviceVanishesWhileItRuns()
{
    BusUnderTest bus(1, ::bus(R"({"bus": "body"},)", R"("faults": {"vanish_after_ms": 1500},)"));
    bus.page.setRow(0, str("01"), str("01 A2"), 2);
    bus.page.setRow(1, str("10"), str(""), 0, true);
    bus.page.setCount(120);
    bus.run();
    const QStringList rows = bus.page.frameTexts();
    const int sent = rows.count(str("Send 01[C1] 2 01 A2  9A V2"));
    QCOMPARE(sent, 60);
    const int received = rows.size() - sent;
    QVERIFY2(received > 0 && received < 60, qPrintable(QString::number(received)));
    QVERIFY(rows.at(1).startsWith(str("Revice")));
    QVERIFY(rows.last().startsWith(str("Send")));
    QVERIFY(bus.page.messages.isEmpty());
    QVERIFY(bus.page.isEnabled("btn_start"));

    bus.page.click("btn_start");
    QCOMPARE(bus.page.messages.count(), 1);
    QCOMPARE(bus.page.messages.at(0).at(0).toString(), str("Communication error"));
    QCOMPARE(bus.page.rowCount(), 0);
}

void tst_LINListOnBus::slowAdapter()
{
    BusUnderTest bus(1, ::bus(R"({"bus": "body"},)", R"("faults": {"call_delay_ms": {"KQ_ReceiveLIN": 150}},)"));
    const Listener listener(bus.communication);
    QVERIFY(listener.isOpen());
    bus.page.setRow(0, str("10"), str(""), 0, true);
    bus.page.setCount(65535);
    bus.page.onFrame(3, [&bus] { bus.page.click("btn_stop"); });
    bus.run();
    // Nothing was waiting behind the slow calls.
    QTimer later;
    later.setSingleShot(true);
    later.start(300);
    QTRY_VERIFY(!later.isActive());
    QCOMPARE(bus.page.rowCount(), 3);
    QCOMPARE(listener.seen().size(), 3);
}

X9_GUI_TEST(tst_LINListOnBus)
#include "tst_LINListOnBus.moc"
