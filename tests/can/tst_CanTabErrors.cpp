#include "can/CanTabErrors.h"

#include "device/CANAPI.h"
#include "device/CANCommunication.h"
#include "tests/support/ScriptedAdapter.h"
#include "tests/support/TabUser.h"
#include "tests/support/TestProgram.h"

#include <QTemporaryDir>
#include <QtTest>

class tst_CanTabErrors : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    static void texts_data();
    static void texts();
    static void toolTip();

    void nothingWrong();
    void fullTable();
    void fullTableWhileSaving();
    void refusedFrames();
    void receiveErrors();
    void severalKindsUntilClear();

private:
    static QLineEdit *field(const TabUser &user) { return user.find<QLineEdit>("lbx_crc"); }

    std::unique_ptr<ScriptedAdapter> m_adapter;
    std::unique_ptr<CANCommunication> m_manager;
};

void tst_CanTabErrors::init()
{
    m_adapter = std::make_unique<ScriptedAdapter>();
    m_manager = std::make_unique<CANCommunication>(m_adapter->table());
}

void tst_CanTabErrors::cleanup()
{
    m_manager.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_adapter.reset();
}

void tst_CanTabErrors::texts_data()
{
    QTest::addColumn<quint64>("unlisted");
    QTest::addColumn<quint64>("refused");
    QTest::addColumn<quint64>("receiving");
    QTest::addColumn<QString>("text");
    const auto row = [](quint64 unlisted, quint64 refused, quint64 receiving, const char *text) {
        QTest::addRow("%s", *text == 0 ? "none" : text)
            << unlisted << refused << receiving << QString::fromLatin1(text);
    };
    row(0, 0, 0, "");
    row(1, 0, 0, "Full 1");
    row(0, 9999, 0, "Send 9999");
    row(0, 0, 10000, "Recv 10k");
    row(0, 0, 999999, "Recv 999k");
    row(9999999, 0, 0, "Full 9M");
    row(10000000, 0, 0, "Full 10M");
    row(123456789012, 0, 0, "Full 123G");
    row(Q_UINT64_C(18446744073709551615), 0, 0, "Full 18446744T");
    row(3, 2, 0, "Errors 5");
    row(9000, 900, 100, "Errors 10k");
}

void tst_CanTabErrors::texts()
{
    QFETCH(quint64, unlisted);
    QFETCH(quint64, refused);
    QFETCH(quint64, receiving);
    CanTabErrors errors;
    errors.unlisted = unlisted;
    errors.refused = refused;
    errors.receiving = receiving;
    QTEST(errorText(errors), "text");
    QCOMPARE(errorToolTip(errors).isEmpty(), errorText(errors).isEmpty());
}

void tst_CanTabErrors::toolTip()
{
    CanTabErrors errors;
    errors.unlisted = 123;
    errors.receiving = 5;
    QCOMPARE(errorToolTip(errors), QStringLiteral("Since the table was last cleared:\n"
                                                  "Frames not listed because the table is full: 123\n"
                                                  "Errors of the adapter while receiving: 5"));
    errors = {};
    errors.refused = 2;
    QCOMPARE(errorToolTip(errors), QStringLiteral("Since the table was last cleared:\n"
                                                  "Frames that the adapter refused to send: 2"));
}

void tst_CanTabErrors::nothingWrong()
{
    TabUser user(channel(0, 0), *m_manager);
    QVERIFY(user.tab.isChannelOpen());
    user.click("btn_sendData");
    user.tab.slot_readResultCallback(0, 0, QVector<VCI_CAN_OBJ>(10));
    user.table()->refresh();
    QCOMPARE(user.rows(), 11);
    QCOMPARE(field(user)->text(), QString());
    QCOMPARE(field(user)->toolTip(), QString());
}

void tst_CanTabErrors::fullTable()
{
    TabUser user(channel(0, 0), *m_manager);
    user.type("lbx_cache", QStringLiteral("4"));
    QTest::keyClick(user.find<QLineEdit>("lbx_cache"), Qt::Key_Return);
    user.tab.slot_readResultCallback(0, 0, QVector<VCI_CAN_OBJ>(10));
    user.table()->refresh();
    QCOMPARE(user.rows(), 4);
    QCOMPARE(field(user)->text(), QStringLiteral("Full 6"));
    QVERIFY(field(user)->toolTip().contains(QStringLiteral("the table is full: 6")));
}

/// The log goes on, and the field says that the table does not.
void tst_CanTabErrors::fullTableWhileSaving()
{
    const QTemporaryDir folder;
    TabUser user(channel(0, 0), *m_manager);
    user.table()->setCacheSize(4);
    const QString path = folder.filePath(QStringLiteral("a.csv"));
    QVERIFY(user.table()->realTimeSave(true, path));
    user.tab.slot_readResultCallback(0, 0, QVector<VCI_CAN_OBJ>(10));
    user.table()->refresh();
    QCOMPARE(user.rows(), 4);
    QCOMPARE(field(user)->text(), QStringLiteral("Full 6"));
    user.table()->realTimeSave(false, QString());
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll().count('\n'), 2 + 1 + 10);
}

/// Listed or not, from the tab and from its dialogs; on another channel they are no concern of this tab.
void tst_CanTabErrors::refusedFrames()
{
    const TabUser user(channel(0, 0), *m_manager);
    const TabUser other(channel(0, 1), *m_manager);
    m_adapter->answerChannel("VCI_Transmit", 0, 0);
    user.click("btn_sendData");
    QCOMPARE(field(user)->text(), QStringLiteral("Send 1"));
    user.click("btn_pause");
    user.click("btn_sendData");
    other.click("btn_sendData");
    QCOMPARE(field(user)->text(), QStringLiteral("Send 2"));
    QCOMPARE(field(other)->text(), QString());

    m_adapter->answerChannel("VCI_Transmit", 0, 2); // of five
    const VCI_CAN_OBJ frames[5] = {};
    QCOMPARE(m_manager->transmit(0, 0, frames, 5), CAN_SendFailed);
    QCOMPARE(field(user)->text(), QStringLiteral("Send 5"));
    m_adapter->answerChannel("VCI_Transmit", 0, 0xFFFFFFFF);
    QCOMPARE(m_manager->transmit(0, 0, frames, 5), CAN_SendFailed);
    QCOMPARE(field(user)->text(), QStringLiteral("Send 10"));
    const VCI_CANFD_OBJ fdFrames[3] = {};
    m_adapter->answerChannel("KQ_TransmitCANFD", 0, 0);
    QCOMPARE(m_manager->transmitCANFD(0, 0, fdFrames, 3), CAN_SendFailed);
    QCOMPARE(field(user)->text(), QStringLiteral("Send 13"));
    QVERIFY(field(user)->toolTip().contains(QStringLiteral("refused to send: 13")));
}

void tst_CanTabErrors::receiveErrors()
{
    const TabUser user(channel(0, 0), *m_manager);
    const TabUser fd(channel(0, 1, true), *m_manager);
    m_adapter->announce(false, 0, 5, AdapterReceiveError);
    QTRY_COMPARE(field(user)->text(), QStringLiteral("Recv 1"));
    QCOMPARE(field(fd)->text(), QString());
    m_adapter->announce(true, 1, 5, AdapterReceiveError);
    QTRY_COMPARE(field(fd)->text(), QStringLiteral("Recv 1"));
    m_adapter->announce(false, 0, 5, 0); // nothing came after all: no error
    m_adapter->announce(false, 0, 5, AdapterReceiveError);
    QTRY_COMPARE(field(user)->text(), QStringLiteral("Recv 2"));
    QCOMPARE(user.rows(), 0);
}

void tst_CanTabErrors::severalKindsUntilClear()
{
    TabUser user(channel(0, 0), *m_manager);
    user.table()->setCacheSize(1);
    m_adapter->answer("VCI_Transmit", 0);
    user.click("btn_sendData");
    user.tab.slot_readResultCallback(0, 0, QVector<VCI_CAN_OBJ>(3));
    user.table()->refresh();
    QCOMPARE(field(user)->text(), QStringLiteral("Errors 4"));
    QCOMPARE(field(user)->toolTip().count(QLatin1Char('\n')), 2);
    user.click("btn_clear");
    QCOMPARE(field(user)->text(), QString());
    QCOMPARE(field(user)->toolTip(), QString());
    QCOMPARE(user.rows(), 0);
    user.click("btn_sendData");
    QCOMPARE(field(user)->text(), QStringLiteral("Send 1"));
}

X9_GUI_TEST(tst_CanTabErrors)
#include "tst_CanTabErrors.moc"
