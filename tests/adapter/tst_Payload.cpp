#include "adapter/virtual/Payload.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

class tst_Payload : public QObject
{
    Q_OBJECT

private slots:
    static void counting_data();
    static void counting();
    static void randomRepeats();
    static void randomDiffers();
};

void tst_Payload::counting_data()
{
    QTest::addColumn<quint64>("index");
    QTest::addColumn<int>("length");
    QTest::addColumn<QByteArray>("expected");
    const auto hex = [](const char *text) {
        return QByteArray::fromHex(text);
    };
    QTest::newRow("first") << quint64{0} << 8 << hex("0000000000000000");
    QTest::newRow("little-endian") << quint64{0x0102030405060708} << 8 << hex("0807060504030201");
    QTest::newRow("three bytes") << quint64{0x01020304} << 3 << hex("040302");
    QTest::newRow("one byte wraps") << quint64{0x1FF} << 1 << hex("FF");
    QTest::newRow("none") << quint64{5} << 0 << hex("");
    QTest::newRow("twelve") << quint64{0xFE} << 12
                            << hex("FE000000000000000607"
                                   "0809");
}

void tst_Payload::counting()
{
    QFETCH(quint64, index);
    QFETCH(int, length);
    QFETCH(QByteArray, expected);
    QByteArray data(70, '\x55');
    va::fillCounting(reinterpret_cast<std::uint8_t *>(data.data()), static_cast<std::size_t>(length), index);
    QCOMPARE(data.left(length).toHex(), expected.toHex());
    QCOMPARE(data.mid(length), QByteArray(70 - length, '\x55'));
}

void tst_Payload::randomRepeats()
{
    std::array<std::uint8_t, 64> first{};
    std::array<std::uint8_t, 64> again{};
    va::fillRandom(first.data(), first.size(), 42, 1000);
    va::fillRandom(again.data(), again.size(), 42, 1000);
    QVERIFY(first == again);
    std::array<std::uint8_t, 64> shorter{};
    va::fillRandom(shorter.data(), 5, 42, 1000);
    QVERIFY(std::equal(shorter.begin(), shorter.begin() + 5, first.begin()));
    QCOMPARE(shorter[5], std::uint8_t{0});
}

void tst_Payload::randomDiffers()
{
    QSet<QByteArray> seen;
    for (std::uint32_t seed = 0; seed < 10; ++seed) {
        for (std::uint64_t index = 0; index < 100; ++index) {
            QByteArray data(8, 0);
            va::fillRandom(reinterpret_cast<std::uint8_t *>(data.data()), 8, seed, index);
            seen.insert(data);
        }
    }
    QCOMPARE(seen.size(), 1000);
}

X9_PLAIN_TEST(tst_Payload)
#include "tst_Payload.moc"
