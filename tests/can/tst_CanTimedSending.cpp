#include "can/GUI_CanDevice.h"
#include "capture/CTableViewCAN.h"
#include "capture/GUI_CanAdvancedOpearation.h"
#include "device/CANCommunication.h"
#include "device/TickTimer.h"
#include "tests/support/ScriptedAdapter.h"
#include "tests/support/TabUser.h"
#include "tests/support/TestProgram.h"
#include "tests/support/Ticks.h"

#include <QCheckBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

namespace {
constexpr std::array<const char *, 5> LockedControls{"lbx_data", "btn_sendData", "btn_sendFile",
                                                     "btn_advancedOperation", "btn_reset"};

template<typename Frame>
QByteArray payloadOf(const Frame &frame)
{
    return {reinterpret_cast<const char *>(frame.Data), int(frame.DataLen)};
}

/// Whether all the controls that are locked while frames are sent, are enabled (or all are not); fails if mixed.
bool areControlsEnabled(const TabUser &user)
{
    const bool first = user.find<QWidget>(LockedControls.front())->isEnabled();
    for (const char *name : LockedControls) {
        if (user.find<QWidget>(name)->isEnabled() != first) {
            qFatal("%s differs from the other controls", name);
        }
    }
    return first;
}
} // namespace

class tst_CanTimedSending : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void sendsAsManyFramesAsAskedFor();
    void locksItsControlsMeanwhile();
    void oneFrameNeedsNoTimer();
    void emptyFieldsAreOne();
    void aCycleOfZeroIsOneMillisecond();
    void hugeNumbersAreCut();
    static void increasesTheIdentifier_data();
    void increasesTheIdentifier();
    static void increasesTheData_data();
    void increasesTheData();
    void increasesBothOfFdFrames();
    void sendsTheSameFrameWithoutIncrease();
    void takesTheFrameOverAtTheClick();
    void stopMeansNotOneMoreFrame();
    void stopWhileIdleDoesNothing();
    void failedFramesDoNotStopIt();
    void pausedSendingIsSentButNotListed();
    void refusedIdentifierSendsNothing();
    void closingTheTabEndsIt();
    void manyFramesAtOneMillisecond();

private:
    std::unique_ptr<ScriptedAdapter> m_adapter;
    std::unique_ptr<CANCommunication> m_manager;
};

void tst_CanTimedSending::init()
{
    m_adapter = std::make_unique<ScriptedAdapter>();
    m_adapter->setTexts("1", "X9FC", "V1");
    m_manager = std::make_unique<CANCommunication>(m_adapter->table());
}

void tst_CanTimedSending::cleanup()
{
    m_manager.reset();
    m_adapter.reset();
}

void tst_CanTimedSending::sendsAsManyFramesAsAskedFor()
{
    const TabUser user(channel(0, 1), *m_manager);
    QSignalSpy states(&user.tab, &GUI_CanDevice::sig_btnStateChanged);
    m_adapter->takeCalls();
    user.type("lbx_frameOfSend", QStringLiteral("5"));
    user.type("lbx_sendingCycle", QStringLiteral("1"));
    user.click("btn_sendData");
    QCOMPARE(m_adapter->takeCalls(), QStringList{QStringLiteral("VCI_Transmit 4 0 1 1 id1")}); // the first one at once
    QTRY_COMPARE(states.count(), 2);
    QCOMPARE(states.at(0), QVariantList{false});
    QCOMPARE(states.at(1), QVariantList{true});
    QCOMPARE(m_adapter->takeFrames().size(), std::size_t(5));
    QTRY_COMPARE(user.rows(), 5);
    QCOMPARE(user.cell(4, 3), QStringLiteral("Send successfully"));
    letTicksPass(20); // twenty cycles
    QVERIFY(m_adapter->takeFrames().empty());
}

void tst_CanTimedSending::locksItsControlsMeanwhile()
{
    const TabUser user(channel(0, 0), *m_manager);
    QVERIFY(areControlsEnabled(user));
    user.type("lbx_frameOfSend", QStringLiteral("2"));
    user.type("lbx_sendingCycle", QStringLiteral("50"));
    user.click("btn_sendData");
    QVERIFY(!areControlsEnabled(user));
    user.click("btn_sendData"); // disabled: no third frame
    QTRY_VERIFY(areControlsEnabled(user));
    QCOMPARE(m_adapter->takeFrames().size(), std::size_t(2));
}

void tst_CanTimedSending::oneFrameNeedsNoTimer()
{
    const TabUser user(channel(0, 0), *m_manager);
    QSignalSpy states(&user.tab, &GUI_CanDevice::sig_btnStateChanged);
    for (const char *count : {"1", "0"}) {
        user.type("lbx_frameOfSend", QLatin1String(count));
        user.click("btn_sendData");
        QVERIFY(areControlsEnabled(user));
        letTicksPass(15);
        QCOMPARE(m_adapter->takeFrames().size(), std::size_t(1));
    }
    QCOMPARE(states.count(), 0);
}

void tst_CanTimedSending::emptyFieldsAreOne()
{
    const TabUser user(channel(0, 0), *m_manager);
    user.type("lbx_frameOfSend", QString());
    user.type("lbx_sendingCycle", QString());
    user.type("lbx_frameID", QString());
    user.click("btn_sendData");
    QCOMPARE(user.find<QLineEdit>("lbx_frameOfSend")->text(), QStringLiteral("1"));
    QCOMPARE(user.find<QLineEdit>("lbx_sendingCycle")->text(), QStringLiteral("1"));
    QCOMPARE(user.find<QLineEdit>("lbx_frameID")->text(), QStringLiteral("1"));
    QVERIFY(areControlsEnabled(user));
    const auto frames = m_adapter->takeFrames();
    QCOMPARE(frames.size(), std::size_t(1));
    QCOMPARE(frames.front().ID, 1U);
}

/// As many frames come as another timer ticks at one millisecond.
void tst_CanTimedSending::aCycleOfZeroIsOneMillisecond()
{
    const TabUser user(channel(0, 0), *m_manager);
    TickTimer reference;
    int ticks = 0;
    connect(&reference, &TickTimer::sig_tick, this, [&ticks] { ++ticks; });
    QSignalSpy states(&user.tab, &GUI_CanDevice::sig_btnStateChanged);
    user.type("lbx_frameOfSend", QStringLiteral("101"));
    user.type("lbx_sendingCycle", QStringLiteral("0"));
    reference.start(1);
    user.click("btn_sendData");
    QCOMPARE(m_adapter->takeFrames().size(), std::size_t(1));
    connect(&user.tab, &GUI_CanDevice::sig_btnStateChanged, &reference, &TickTimer::stop);
    QTRY_COMPARE(states.count(), 2);
    QCOMPARE(m_adapter->takeFrames().size(), std::size_t(100));
    QVERIFY2(ticks > 50 && ticks < 200, qPrintable(QString::number(ticks)));
}

void tst_CanTimedSending::hugeNumbersAreCut()
{
    const TabUser user(channel(0, 0), *m_manager);
    user.type("lbx_frameOfSend", QStringLiteral("99999999999999999999999999"));
    user.type("lbx_sendingCycle", QStringLiteral("99999999999999999999999999"));
    user.click("btn_sendData");
    QVERIFY(!areControlsEnabled(user));
    letTicksPass(20);
    QCOMPARE(m_adapter->takeFrames().size(), std::size_t(1)); // the next one in 24 days
    user.click("btn_stopSending");
    QVERIFY(areControlsEnabled(user));
}

void tst_CanTimedSending::increasesTheIdentifier_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("id");
    QTest::addColumn<QVector<quint32>>("ids");
    QTest::newRow("standard") << 0 << "7FD" << QVector<quint32>{0x7FD, 0x7FE, 0x7FF, 0x7FF};
    QTest::newRow("standard top") << 0 << "7FF" << QVector<quint32>{0x7FF, 0x7FF, 0x7FF, 0x7FF};
    QTest::newRow("extended") << 1 << "7FE" << QVector<quint32>{0x7FE, 0x7FF, 0x800, 0x801};
    QTest::newRow("extended top") << 1 << "1FFFFFFE"
                                  << QVector<quint32>{0x1FFFFFFE, 0x1FFFFFFF, 0x1FFFFFFF, 0x1FFFFFFF};
}

void tst_CanTimedSending::increasesTheIdentifier()
{
    QFETCH(int, type);
    QFETCH(QString, id);
    const TabUser user(channel(0, 0), *m_manager);
    user.choose("cbx_frameType", type);
    user.type("lbx_frameID", id);
    user.type("lbx_frameOfSend", QStringLiteral("4"));
    user.type("lbx_sendingCycle", QStringLiteral("1"));
    user.click("chbx_idIncrease");
    user.click("btn_sendData");
    QTRY_VERIFY(areControlsEnabled(user));
    QVector<quint32> ids;
    for (const VCI_CAN_OBJ &frame : m_adapter->takeFrames()) {
        ids.append(frame.ID);
        QCOMPARE(int(frame.ExternFlag), type);
    }
    QTEST(ids, "ids");
    QCOMPARE(user.find<QLineEdit>("lbx_frameID")->text(), id); // what the user typed stays
}

void tst_CanTimedSending::increasesTheData_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QList<QByteArray>>("payloads");
    const auto bytes = [](const QList<QByteArray> &hex) {
        QList<QByteArray> payloads;
        for (const QByteArray &text : hex) {
            payloads.append(QByteArray::fromHex(text));
        }
        return payloads;
    };
    QTest::newRow("carry") << 2 << "FE 01" << bytes({"FE01", "FF01", "0002", "0102"});
    QTest::newRow("full stays") << 2 << "FE FF" << bytes({"FEFF", "FFFF", "FFFF", "FFFF"});
    QTest::newRow("eight bytes") << 8 << "FF FF FF FF FF FF FF 00"
                                 << bytes({"FFFFFFFFFFFFFF00", "0000000000000001", "0100000000000001",
                                           "0200000000000001"});
}

void tst_CanTimedSending::increasesTheData()
{
    QFETCH(int, length);
    QFETCH(QString, typed);
    const TabUser user(channel(0, 0), *m_manager);
    user.choose("cbx_length", length);
    user.typeData(typed);
    user.type("lbx_frameOfSend", QStringLiteral("4"));
    user.type("lbx_sendingCycle", QStringLiteral("1"));
    user.click("chbx_dataIncrease");
    user.click("btn_sendData");
    QTRY_VERIFY(areControlsEnabled(user));
    QList<QByteArray> payloads;
    for (const VCI_CAN_OBJ &frame : m_adapter->takeFrames()) {
        payloads.append(payloadOf(frame));
        QCOMPARE(frame.ID, 1U);
    }
    QTEST(payloads, "payloads");
}

void tst_CanTimedSending::increasesBothOfFdFrames()
{
    const TabUser user(channel(0, 0, true), *m_manager);
    QVERIFY(user.tab.isChannelOpen());
    user.choose("cbx_protocol", 2);
    user.choose("cbx_length", 64);
    user.typeData(QString(128, QLatin1Char('F')).replace(126, 2, QStringLiteral("00")));
    user.type("lbx_frameOfSend", QStringLiteral("2"));
    user.type("lbx_sendingCycle", QStringLiteral("1"));
    user.click("chbx_dataIncrease");
    user.click("chbx_idIncrease");
    user.click("btn_sendData");
    QTRY_VERIFY(areControlsEnabled(user));
    const auto frames = m_adapter->takeFdFrames();
    QCOMPARE(frames.size(), std::size_t(2));
    QCOMPARE(payloadOf(frames.at(0)), QByteArray(63, '\xFF') + '\0');
    QCOMPARE(payloadOf(frames.at(1)), QByteArray(63, '\0') + '\1');
    QCOMPARE(frames.at(1).ID, 2U);
    QCOMPARE(frames.at(1).FDFlag, quint8(2));
    QVERIFY(m_adapter->takeFrames().empty());
}

void tst_CanTimedSending::sendsTheSameFrameWithoutIncrease()
{
    const TabUser user(channel(0, 0), *m_manager);
    user.choose("cbx_frameFormat", 1);
    user.choose("cbx_length", 3);
    user.type("lbx_frameOfSend", QStringLiteral("3"));
    user.click("btn_sendData");
    QTRY_VERIFY(areControlsEnabled(user));
    const auto frames = m_adapter->takeFrames();
    QCOMPARE(frames.size(), std::size_t(3));
    for (const VCI_CAN_OBJ &frame : frames) {
        QCOMPARE(frame.ID, 1U);
        QCOMPARE(frame.RemoteFlag, quint8(1));
        QCOMPARE(frame.DataLen, quint8(3));
    }
}

/// What the user changes while frames go out is for the next "Send message".
void tst_CanTimedSending::takesTheFrameOverAtTheClick()
{
    const TabUser user(channel(0, 0), *m_manager);
    user.type("lbx_frameOfSend", QStringLiteral("3"));
    user.type("lbx_sendingCycle", QStringLiteral("40"));
    user.click("btn_sendData");
    user.click("chbx_idIncrease");
    user.type("lbx_frameID", QStringLiteral("55"));
    user.type("lbx_frameOfSend", QStringLiteral("100"));
    QTRY_VERIFY(areControlsEnabled(user));
    const auto frames = m_adapter->takeFrames();
    QCOMPARE(frames.size(), std::size_t(3));
    for (const VCI_CAN_OBJ &frame : frames) {
        QCOMPARE(frame.ID, 1U);
    }
}

void tst_CanTimedSending::stopMeansNotOneMoreFrame()
{
    const TabUser user(channel(0, 0), *m_manager);
    QSignalSpy notices(&user.tab, &WidgetDeviceBase::sig_showNotice);
    QSignalSpy states(&user.tab, &GUI_CanDevice::sig_btnStateChanged);
    user.type("lbx_frameOfSend", QStringLiteral("1000000"));
    user.type("lbx_sendingCycle", QStringLiteral("1"));
    user.click("btn_sendData");
    std::size_t sent = 0;
    const auto hasSent = [&](std::size_t count) {
        sent += m_adapter->takeFrames().size();
        return sent >= count;
    };
    QTRY_VERIFY(hasSent(20));
    user.click("btn_stopSending");
    m_adapter->takeFrames();
    QCOMPARE(notices.count(), 1);
    QCOMPARE(notices.first(), (QVariantList{QStringLiteral("Send stopped"), 0, 1500}));
    QCOMPARE(states.count(), 2);
    QCOMPARE(states.last(), QVariantList{true});
    QVERIFY(areControlsEnabled(user));
    letTicksPass(30);
    QVERIFY(m_adapter->takeFrames().empty());

    user.type("lbx_frameOfSend", QStringLiteral("2")); // and it can be started again
    user.click("btn_sendData");
    QTRY_VERIFY(areControlsEnabled(user));
    QCOMPARE(m_adapter->takeFrames().size(), std::size_t(2));
}

void tst_CanTimedSending::stopWhileIdleDoesNothing()
{
    const TabUser user(channel(0, 0), *m_manager);
    QSignalSpy notices(&user.tab, &WidgetDeviceBase::sig_showNotice);
    QSignalSpy states(&user.tab, &GUI_CanDevice::sig_btnStateChanged);
    user.click("btn_stopSending");
    QCOMPARE(notices.count(), 0);
    QCOMPARE(states.count(), 0);
}

void tst_CanTimedSending::failedFramesDoNotStopIt()
{
    const TabUser user(channel(0, 0), *m_manager);
    m_adapter->answer("VCI_Transmit", 0);
    user.type("lbx_frameOfSend", QStringLiteral("3"));
    user.type("lbx_sendingCycle", QStringLiteral("1"));
    user.click("btn_sendData");
    QTRY_COMPARE(user.rows(), 3);
    for (int row = 0; row < 3; ++row) {
        QCOMPARE(user.cell(row, 3), QStringLiteral("Send failure"));
    }
}

void tst_CanTimedSending::pausedSendingIsSentButNotListed()
{
    const TabUser user(channel(0, 0), *m_manager);
    user.click("btn_pause");
    user.type("lbx_frameOfSend", QStringLiteral("3"));
    user.type("lbx_sendingCycle", QStringLiteral("1"));
    user.click("btn_sendData");
    QTRY_VERIFY(areControlsEnabled(user));
    QCOMPARE(m_adapter->takeFrames().size(), std::size_t(3));
    user.table()->refresh();
    QCOMPARE(user.rows(), 0);
}

void tst_CanTimedSending::refusedIdentifierSendsNothing()
{
    const TabUser user(channel(0, 0), *m_manager);
    QSignalSpy messages(&user.tab, &WidgetDeviceBase::sig_showMessageBox);
    user.type("lbx_frameOfSend", QStringLiteral("3"));
    user.choose("cbx_frameType", 1);
    user.type("lbx_frameID", QStringLiteral("800"));
    user.choose("cbx_frameType", 0);
    user.click("btn_sendData");
    QCOMPARE(messages.count(), 1);
    QVERIFY(areControlsEnabled(user));
    QVERIFY(m_adapter->takeFrames().empty());
}

void tst_CanTimedSending::closingTheTabEndsIt()
{
    auto user = std::make_unique<TabUser>(channel(0, 0), *m_manager);
    user->type("lbx_frameOfSend", QStringLiteral("1000"));
    user->type("lbx_sendingCycle", QStringLiteral("1"));
    user->click("btn_sendData");
    user->table()->refresh();
    user.reset();
    m_adapter->takeFrames();
    letTicksPass(20);
    QVERIFY(m_adapter->takeFrames().empty());
    QVERIFY(!m_manager->isDeviceOpen(0));
}

/// Numbered by the data, all of them and in order.
void tst_CanTimedSending::manyFramesAtOneMillisecond()
{
    const TabUser user(channel(0, 0), *m_manager);
    user.type("lbx_frameOfSend", QStringLiteral("600"));
    user.type("lbx_sendingCycle", QStringLiteral("1"));
    user.click("chbx_dataIncrease");
    user.click("btn_sendData");
    QTRY_VERIFY_WITH_TIMEOUT(areControlsEnabled(user), 20000);
    const auto frames = m_adapter->takeFrames();
    QCOMPARE(frames.size(), std::size_t(600));
    for (std::size_t number = 0; number < frames.size(); ++number) {
        QCOMPARE(std::size_t(frames[number].Data[0] + 256 * frames[number].Data[1]), number);
    }
    QTRY_COMPARE(user.rows(), 600);
}

X9_GUI_TEST(tst_CanTimedSending)
#include "tst_CanTimedSending.moc"
