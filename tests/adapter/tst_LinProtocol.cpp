#include "adapter/virtual/LinProtocol.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

class tst_LinProtocol : public QObject
{
    Q_OBJECT

private slots:
    static void protectedId_data();
    static void protectedId();
    static void checksum_data();
    static void checksum();
};

void tst_LinProtocol::protectedId_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<int>("expected");
    QTest::newRow("00") << 0x00 << 0x80;
    QTest::newRow("01") << 0x01 << 0xC1;
    QTest::newRow("10") << 0x10 << 0x50;
    QTest::newRow("12") << 0x12 << 0x92;
    QTest::newRow("3C") << 0x3C << 0x3C;
    QTest::newRow("3D") << 0x3D << 0x7D;
    QTest::newRow("3F") << 0x3F << 0xBF;
    QTest::newRow("upper bits are ignored") << 0xC0 << 0x80;
}

void tst_LinProtocol::protectedId()
{
    QFETCH(int, id);
    QFETCH(int, expected);
    QCOMPARE(int{va::protectedId(static_cast<std::uint8_t>(id))}, expected);
}

void tst_LinProtocol::checksum_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<bool>("enhanced");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<int>("expected");
    const auto hex = [](const char *text) {
        return QByteArray::fromHex(text);
    };
    QTest::newRow("empty") << 0x00 << false << hex("") << 0xFF;
    QTest::newRow("zeros classic") << 0x3C << false << hex("0000000000000000") << 0xFF;
    QTest::newRow("zeros enhanced") << 0x3C << true << hex("0000000000000000") << 0xC3;
    QTest::newRow("one carry") << 0x10 << false << hex("FF01") << 0xFE;
    // FF + FF + 01 = 1FF; the carry makes 100, and its carry 01
    QTest::newRow("carry of a carry") << 0x10 << false << hex("FFFF01") << 0xFE;
    QTest::newRow("all ones") << 0x10 << false << hex("FFFFFFFFFFFFFFFF") << 0x00;
    QTest::newRow("sum of the LIN 2.x document") << 0x10 << false << hex("4A5593E5") << 0xE6;
    QTest::newRow("enhanced") << 0x01 << true << hex("0203") << 0x39; // C1 + 02 + 03 = C6
}

void tst_LinProtocol::checksum()
{
    QFETCH(int, id);
    QFETCH(bool, enhanced);
    QFETCH(QByteArray, data);
    QFETCH(int, expected);
    const auto *bytes = reinterpret_cast<const std::uint8_t *>(data.constData());
    const std::uint8_t sum =
        va::linChecksum(static_cast<std::uint8_t>(id), enhanced, bytes, static_cast<std::size_t>(data.size()));
    QCOMPARE(int{sum}, expected);
}

X9_PLAIN_TEST(tst_LinProtocol)
#include "tst_LinProtocol.moc"
