#include "device/LINFrame.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

namespace {

/// Protected identifiers of the identifiers 0 to 0x3F, as LIN 2.x tabulates them.
constexpr quint8 ProtectedIds[64] = {
    0x80, 0xC1, 0x42, 0x03, 0xC4, 0x85, 0x06, 0x47, 0x08, 0x49, 0xCA, 0x8B, 0x4C, 0x0D, 0x8E, 0xCF,
    0x50, 0x11, 0x92, 0xD3, 0x14, 0x55, 0xD6, 0x97, 0xD8, 0x99, 0x1A, 0x5B, 0x9C, 0xDD, 0x5E, 0x1F,
    0x20, 0x61, 0xE2, 0xA3, 0x64, 0x25, 0xA6, 0xE7, 0xA8, 0xE9, 0x6A, 0x2B, 0xEC, 0xAD, 0x2E, 0x6F,
    0xF0, 0xB1, 0x32, 0x73, 0xB4, 0xF5, 0x76, 0x37, 0x78, 0x39, 0xBA, 0xFB, 0x3C, 0x7D, 0xFE, 0xBF,
};

} // namespace

class tst_LINFrame : public QObject
{
    Q_OBJECT

private slots:
    static void protectedIdentifiers();
    static void ignoresParityOfItsInput();
    static void checksums_data();
    static void checksums();
    static void checks_data();
    static void checks();
};

void tst_LINFrame::protectedIdentifiers()
{
    for (quint8 id = 0; id < 64; ++id) {
        QVERIFY2(calcPID(id) == ProtectedIds[id], qPrintable(QString::number(id, 16)));
    }
}

void tst_LINFrame::ignoresParityOfItsInput()
{
    for (unsigned byte = 0; byte < 256; ++byte) {
        QCOMPARE(calcPID(static_cast<quint8>(byte)), ProtectedIds[byte & 0x3FU]);
    }
}

void tst_LINFrame::checksums_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<int>("classic");
    QTest::addColumn<int>("enhanced");

    // Enhanced adds the protected identifier: 80 of 00, C1 of 01, 3C of 3C, 50 of 10, 92 of 12, BF of 3F.
    QTest::newRow("no data") << 0x00 << QByteArray() << 0xFF << 0x7F;
    QTest::newRow("3C, zeros") << 0x3C << QByteArray::fromHex("0000000000000000") << 0xFF << 0xC3;
    QTest::newRow("one byte") << 0x01 << QByteArray::fromHex("01") << 0xFE << 0x3D;
    QTest::newRow("a carry of the identifier") << 0x01 << QByteArray::fromHex("40") << 0xBF << 0xFD;
    QTest::newRow("4A 55 93 E5") << 0x10 << QByteArray::fromHex("4A5593E5") << 0xE6 << 0x96;
    QTest::newRow("1 to 8") << 0x10 << QByteArray::fromHex("0102030405060708") << 0xDB << 0x8B;
    QTest::newRow("sum FF") << 0x12 << QByteArray::fromHex("F00F") << 0x00 << 0x6D;
    QTest::newRow("sum 100") << 0x12 << QByteArray::fromHex("FF01") << 0xFE << 0x6C;
    QTest::newRow("folded once: sum 1FF") << 0x12 << QByteArray::fromHex("FFFF01") << 0xFF << 0x6C;
    QTest::newRow("folded once: sum 2FE") << 0x00 << QByteArray::fromHex("FFFFFF01") << 0xFF << 0x7E;
    QTest::newRow("largest sum") << 0x3F << QByteArray::fromHex("FFFFFFFFFFFFFFFF") << 0x00 << 0x40;
}

void tst_LINFrame::checksums()
{
    QFETCH(int, id);
    QFETCH(QByteArray, data);
    const auto identifier = static_cast<quint8>(id);
    QTEST(int(calcChecksum(identifier, false, data)), "classic");
    QTEST(int(calcChecksum(identifier, true, data)), "enhanced");
}

void tst_LINFrame::checks_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<int>("checksum");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<int>("result");

    const QByteArray data = QByteArray::fromHex("0102030405060708");
    QTest::newRow("classic") << 0x10 << 0xDB << data << 0;
    QTest::newRow("enhanced") << 0x10 << 0x8B << data << 1;
    QTest::newRow("neither") << 0x10 << 0xDC << data << 2;
    QTest::newRow("enhanced of another identifier") << 0x11 << 0x8B << data << 2;
    QTest::newRow("single fold") << 0x12 << 0xFF << QByteArray::fromHex("FFFF01") << 0;
    QTest::newRow("repeated fold") << 0x12 << 0xFE << QByteArray::fromHex("FFFF01") << 2;
    QTest::newRow("no data") << 0x00 << 0xFF << QByteArray() << 0;
}

void tst_LINFrame::checks()
{
    QFETCH(int, id);
    QFETCH(int, checksum);
    QFETCH(QByteArray, data);
    QTEST(checkChecksum(static_cast<quint8>(id), static_cast<quint8>(checksum), data), "result");
}

X9_PLAIN_TEST(tst_LINFrame)
#include "tst_LINFrame.moc"
