#include "lin/LINRecords.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

namespace {
VCI_LIN_OBJ record(quint8 id, quint8 length, quint8 checksum)
{
    VCI_LIN_OBJ frame{};
    frame.ID = id;
    frame.DataLen = length;
    for (std::size_t i = 0; i < sizeof frame.Data; ++i) {
        frame.Data[i] = static_cast<quint8>(0xA0 + i);
    }
    frame.Checksum = checksum;
    return frame;
}
} // namespace

class tst_LINRecords : public QObject
{
    Q_OBJECT

private slots:
    static void monitoredFrame_data();
    static void monitoredFrame();
    static void answeredFrame();
    static void cutsTheLength();
    static void recordForSending();
    static void cutsTheDataForSending();
    static void time();
};

void tst_LINRecords::monitoredFrame_data()
{
    QTest::addColumn<int>("received");
    QTest::addColumn<int>("id");
    QTest::newRow("right parity") << 0xC1 << 0x01;
    QTest::newRow("zero") << 0x80 << 0x00;
    QTest::newRow("wrong parity") << 0x81 << 0x01;
    QTest::newRow("no parity") << 0x12 << 0x12;
    QTest::newRow("all bits") << 0xFF << 0x3F;
}

void tst_LINRecords::monitoredFrame()
{
    QFETCH(int, received);
    QFETCH(int, id);
    const auto frame = monitoredLINFrame(record(static_cast<quint8>(received), 3, 0x5C), QStringLiteral("now"));
    QCOMPARE(frame.time, QStringLiteral("now"));
    QCOMPARE(frame.direction, quint8(1));
    QCOMPARE(int(frame.ID), id);
    QCOMPARE(int(frame.PID), received);
    QCOMPARE(frame.data, QByteArray::fromHex("A0A1A2"));
    QCOMPARE(frame.checksum, 0x5CU);
}

void tst_LINRecords::answeredFrame()
{
    // The record's own identifier does not count.
    const auto frame = answeredLINFrame(0x10, record(0x3F, 8, 0x77), QStringLiteral("then"));
    QCOMPARE(frame.time, QStringLiteral("then"));
    QCOMPARE(frame.direction, quint8(1));
    QCOMPARE(frame.ID, quint8(0x10));
    QCOMPARE(frame.PID, quint8(0x50));
    QCOMPARE(frame.data, QByteArray::fromHex("A0A1A2A3A4A5A6A7"));
    QCOMPARE(frame.checksum, 0x77U);
}

void tst_LINRecords::cutsTheLength()
{
    QCOMPARE(monitoredLINFrame(record(1, 255, 0), QString()).data.size(), 8);
    QCOMPARE(answeredLINFrame(1, record(1, 9, 0), QString()).data.size(), 8);
}

void tst_LINRecords::recordForSending()
{
    const VCI_LIN_OBJ frame = linRecord(0x3C, QByteArray::fromHex("0102FF"));
    QCOMPARE(frame.ID, quint8(0x3C));
    QCOMPARE(frame.DataLen, quint8(3));
    QCOMPARE(QByteArray(reinterpret_cast<const char *>(frame.Data), 8), QByteArray::fromHex("0102FF0000000000"));
    QCOMPARE(frame.Checksum, quint8(0));
    QCOMPARE(linRecord(0, QByteArray()).DataLen, quint8(0));
}

void tst_LINRecords::cutsTheDataForSending()
{
    QCOMPARE(linRecord(0, QByteArray(9, 'x')).DataLen, quint8(8));
}

void tst_LINRecords::time()
{
    const QRegularExpression pattern(QStringLiteral("^([01]\\d|2[0-3]):[0-5]\\d:[0-5]\\d\\.\\d{3}$"));
    QVERIFY(pattern.match(clockText()).hasMatch());
}

X9_PLAIN_TEST(tst_LINRecords)
#include "tst_LINRecords.moc"
