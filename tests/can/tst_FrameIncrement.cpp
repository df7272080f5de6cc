#include "can/CanFrameInput.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

class tst_FrameIncrement : public QObject
{
    Q_OBJECT

private slots:
    static void identifier_data();
    static void identifier();
    static void payload_data();
    static void payload();
    static void payloadIsALittleEndianCounter();
};

void tst_FrameIncrement::identifier_data()
{
    QTest::addColumn<quint32>("id");
    QTest::addColumn<bool>("extended");
    QTest::addColumn<quint32>("next");
    QTest::newRow("first") << 0U << false << 1U;
    QTest::newRow("below the standard top") << 0x7FEU << false << 0x7FFU;
    QTest::newRow("standard top stays") << 0x7FFU << false << 0x7FFU;
    QTest::newRow("extended goes beyond it") << 0x7FFU << true << 0x800U;
    QTest::newRow("below the extended top") << 0x1FFFFFFEU << true << 0x1FFFFFFFU;
    QTest::newRow("extended top stays") << 0x1FFFFFFFU << true << 0x1FFFFFFFU;
}

void tst_FrameIncrement::identifier()
{
    QFETCH(quint32, id);
    QFETCH(bool, extended);
    QTEST(incrementedFrameId(id, extended), "next");
}

void tst_FrameIncrement::payload_data()
{
    QTest::addColumn<QByteArray>("hex");
    QTest::addColumn<QByteArray>("next");
    QTest::newRow("one byte") << QByteArray("00") << QByteArray("01");
    QTest::newRow("byte 0 counts") << QByteArray("05 06") << QByteArray("06 06");
    QTest::newRow("across the sign") << QByteArray("7F") << QByteArray("80");
    QTest::newRow("carry") << QByteArray("FF 01") << QByteArray("00 02");
    QTest::newRow("carry over two bytes") << QByteArray("FF FF 41 FF") << QByteArray("00 00 42 FF");
    QTest::newRow("full stays") << QByteArray("FF FF") << QByteArray("FF FF");
    QTest::newRow("one full byte stays") << QByteArray("FF") << QByteArray("FF");
    QTest::newRow("nothing") << QByteArray() << QByteArray();
    QTest::newRow("64 bytes") << QByteArray(126, 'F') + "00" << QByteArray(126, '0') + "01";
}

void tst_FrameIncrement::payload()
{
    QFETCH(QByteArray, hex);
    QFETCH(QByteArray, next);
    QCOMPARE(incrementedPayload(QByteArray::fromHex(hex)), QByteArray::fromHex(next));
}

void tst_FrameIncrement::payloadIsALittleEndianCounter()
{
    QByteArray data(3, '\0');
    for (quint32 count = 1; count < 0x20000; ++count) {
        data = incrementedPayload(data);
        const auto byte = [&data](int index) {
            return quint32(quint8(data.at(index)));
        };
        QCOMPARE(byte(0) | byte(1) << 8U | byte(2) << 16U, count);
    }
}

X9_PLAIN_TEST(tst_FrameIncrement)
#include "tst_FrameIncrement.moc"
