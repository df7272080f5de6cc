#include "capture/FrameRecord.h"
#include "tests/support/TestProgram.h"

#include <QTest>

namespace {

const QString Now = QStringLiteral("01:02:03.004");

VCI_CAN_OBJ classicFrame()
{
    VCI_CAN_OBJ frame = {};
    frame.ID = 0x123;
    frame.TimeStamp = 5007;
    frame.TimeFlag = 1;
    frame.SendType = 3;
    frame.ExternFlag = 1;
    frame.RemoteFlag = 1;
    frame.DataLen = 2;
    frame.Data[0] = 0xA1;
    frame.Data[1] = 0xB2;
    frame.Data[2] = 0xC3;
    return frame;
}

VCI_CANFD_OBJ fdFrame()
{
    VCI_CANFD_OBJ frame = {};
    frame.ID = 0x456;
    frame.TimeStamp = 77;
    frame.FDFlag = 1;
    frame.DataLen = 12;
    frame.Data[11] = 0x99;
    frame.Data[12] = 0x77;
    return frame;
}

} // namespace

class tst_FrameRecord : public QObject
{
    Q_OBJECT

private slots:
    static void newRecordIsEmpty();
    static void receivedClassicFrame();
    static void receivedFdFrame();
    static void identifierIsMaskedTo29Bits();
    static void flagsAreBitZero();
    static void fdFrameIsNeverRemote();
    static void payloadLengthIsClamped_data();
    static void payloadLengthIsClamped();
    static void fdFlag_data();
    static void fdFlag();
    static void sentFrameCarriesItsResult();
    static void batchSharesOneTimeText();
};

void tst_FrameRecord::newRecordIsEmpty()
{
    const FrameRecord record;
    QCOMPARE(quint32(record.id), 0U);
    QVERIFY(!record.timeFlag && !record.remote && !record.extended);
    QCOMPARE(record.timeStamp, 0U);
    QCOMPARE(record.direction, quint8(FrameRecord::SendFailure));
    QCOMPARE(record.protocol, quint8(FrameRecord::CAN));
    QVERIFY(record.data.isEmpty() && record.systemTime.isEmpty());
}

void tst_FrameRecord::receivedClassicFrame()
{
    const FrameRecord record = FrameRecord::received(classicFrame(), Now);
    QCOMPARE(record.direction, quint8(2));
    QCOMPARE(quint32(record.id), 0x123U);
    QCOMPARE(record.timeStamp, 5007U);
    QCOMPARE(record.sendType, quint8(3));
    QVERIFY(record.timeFlag && record.remote && record.extended);
    QCOMPARE(record.protocol, quint8(0));
    QCOMPARE(record.systemTime, Now);
    QCOMPARE(record.data, QByteArray("\xA1\xB2"));
}

void tst_FrameRecord::receivedFdFrame()
{
    const FrameRecord record = FrameRecord::received(fdFrame(), Now);
    QCOMPARE(record.direction, quint8(2));
    QCOMPARE(quint32(record.id), 0x456U);
    QCOMPARE(record.timeStamp, 77U);
    QVERIFY(!record.timeFlag && !record.remote && !record.extended);
    QCOMPARE(record.protocol, quint8(1));
    QCOMPARE(record.data, QByteArray(11, '\0') + '\x99');
}

void tst_FrameRecord::identifierIsMaskedTo29Bits()
{
    VCI_CAN_OBJ frame = {};
    frame.ID = 0xFFFFFFFF;
    const FrameRecord record = FrameRecord::received(frame, Now);
    QCOMPARE(quint32(record.id), 0x1FFFFFFFU);
    QVERIFY(!record.timeFlag && !record.remote && !record.extended);
}

void tst_FrameRecord::flagsAreBitZero()
{
    VCI_CAN_OBJ frame = {};
    frame.TimeFlag = frame.RemoteFlag = frame.ExternFlag = 0xFE;
    FrameRecord record = FrameRecord::received(frame, Now);
    QVERIFY(!record.timeFlag && !record.remote && !record.extended);
    frame.TimeFlag = frame.RemoteFlag = frame.ExternFlag = 0xFF;
    record = FrameRecord::received(frame, Now);
    QVERIFY(record.timeFlag && record.remote && record.extended);
}

void tst_FrameRecord::fdFrameIsNeverRemote()
{
    VCI_CANFD_OBJ frame = fdFrame();
    frame.RemoteFlag = 1;
    QVERIFY(!FrameRecord::received(frame, Now).remote);
    QVERIFY(!FrameRecord::sent(frame, true, Now).remote);
}

void tst_FrameRecord::payloadLengthIsClamped_data()
{
    QTest::addColumn<int>("announced");
    QTest::addColumn<int>("classic");
    QTest::addColumn<int>("fd");
    QTest::newRow("none") << 0 << 0 << 0;
    QTest::newRow("classic limit") << 8 << 8 << 8;
    QTest::newRow("above classic") << 9 << 8 << 9;
    QTest::newRow("fd limit") << 64 << 8 << 64;
    QTest::newRow("above fd") << 65 << 8 << 64;
    QTest::newRow("largest byte") << 255 << 8 << 64;
}

void tst_FrameRecord::payloadLengthIsClamped()
{
    QFETCH(int, announced);
    QFETCH(int, classic);
    QFETCH(int, fd);
    VCI_CAN_OBJ classicObject = {};
    VCI_CANFD_OBJ fdObject = {};
    classicObject.DataLen = fdObject.DataLen = static_cast<quint8>(announced);
    QCOMPARE(FrameRecord::received(classicObject, Now).data.size(), classic);
    QCOMPARE(FrameRecord::sent(classicObject, true, Now).data.size(), classic);
    QCOMPARE(FrameRecord::received(fdObject, Now).data.size(), fd);
    QCOMPARE(FrameRecord::sent(fdObject, true, Now).data.size(), fd);
}

void tst_FrameRecord::fdFlag_data()
{
    QTest::addColumn<int>("flag");
    QTest::addColumn<int>("protocol");
    QTest::newRow("classic on an FD channel") << 0 << 0;
    QTest::newRow("FD") << 1 << 1;
    QTest::newRow("FD with rate switch") << 2 << 2;
    QTest::newRow("unknown") << 7 << 2;
}

void tst_FrameRecord::fdFlag()
{
    QFETCH(int, flag);
    QFETCH(int, protocol);
    VCI_CANFD_OBJ frame = fdFrame();
    frame.FDFlag = static_cast<quint8>(flag);
    QCOMPARE(int(FrameRecord::received(frame, Now).protocol), protocol);
    QCOMPARE(int(FrameRecord::sent(frame, true, Now).protocol), protocol);
}

void tst_FrameRecord::sentFrameCarriesItsResult()
{
    const FrameRecord accepted = FrameRecord::sent(classicFrame(), true, Now);
    QCOMPARE(accepted.direction, quint8(1));
    QCOMPARE(accepted.timeStamp, 0U);
    QCOMPARE(quint32(accepted.id), 0x123U);
    QVERIFY(accepted.remote && accepted.extended);
    QCOMPARE(accepted.data, QByteArray("\xA1\xB2"));
    QCOMPARE(FrameRecord::sent(classicFrame(), false, Now).direction, quint8(0));

    const FrameRecord refused = FrameRecord::sent(fdFrame(), false, Now);
    QCOMPARE(refused.direction, quint8(0));
    QCOMPARE(refused.timeStamp, 0U);
    QCOMPARE(FrameRecord::sent(fdFrame(), true, Now).direction, quint8(1));
}

void tst_FrameRecord::batchSharesOneTimeText()
{
    const FrameRecord first = FrameRecord::received(classicFrame(), Now);
    const FrameRecord second = FrameRecord::received(fdFrame(), Now);
    QCOMPARE(first.systemTime.constData(), second.systemTime.constData());
}

X9_PLAIN_TEST(tst_FrameRecord)
#include "tst_FrameRecord.moc"
