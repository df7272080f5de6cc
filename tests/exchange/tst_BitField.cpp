#include "exchange/BusFrame.h"
#include "exchange/database/BitField.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

#include <array>
#include <random>

Q_DECLARE_METATYPE(DatabaseSignal::ByteOrder)

class tst_BitField : public QObject
{
    Q_OBJECT

private slots:
    static void read_data();
    static void read();
    static void everyPlaceAndLength_data();
    static void everyPlaceAndLength();
    static void bits();
    static void bytes();
};

namespace {

using Data = std::array<uchar, BusFrame::MaxLength>;

DatabaseSignal signalAt(int start, int length, DatabaseSignal::ByteOrder order)
{
    DatabaseSignal signal;
    signal.startBit = static_cast<quint16>(start);
    signal.length = static_cast<quint16>(length);
    signal.byteOrder = order;
    return signal;
}

/// Bit by bit, from the places that the signal says it has.
quint64 plainly(const DatabaseSignal &signal, const Data &data)
{
    quint64 value = 0;
    for (const int bit : signalBits(signal)) {
        value = value << 1U | (data[static_cast<std::size_t>(bit / 8)] >> (bit % 8) & 1U);
    }
    return value;
}

} // namespace

void tst_BitField::read_data()
{
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("length");
    QTest::addColumn<DatabaseSignal::ByteOrder>("order");
    QTest::addColumn<quint64>("expected");

    // In 01 23 45 67 89 AB CD EF 10 32
    const auto little = DatabaseSignal::LittleEndian;
    const auto big = DatabaseSignal::BigEndian;
    QTest::newRow("little, lowest bit") << 0 << 1 << little << quint64(1);
    QTest::newRow("little, next bit") << 1 << 1 << little << quint64(0);
    QTest::newRow("little, byte") << 8 << 8 << little << quint64(0x23);
    QTest::newRow("little, half bytes of two") << 4 << 8 << little << quint64(0x30);
    QTest::newRow("little, two bytes") << 8 << 16 << little << quint64(0x4523);
    QTest::newRow("little, 12 bits") << 12 << 12 << little << quint64(0x452);
    QTest::newRow("little, 64 bits") << 0 << 64 << little << quint64(0xEFCDAB8967452301);
    QTest::newRow("little, 64 bits in nine bytes") << 4 << 64 << little << quint64(0x0EFCDAB896745230);
    QTest::newRow("little, 57 bits in nine bytes") << 15 << 57 << little << quint64(0x0021DF9B5712CE8A);
    QTest::newRow("little, over the eighth byte") << 60 << 12 << little << quint64(0x10E);
    QTest::newRow("big, highest bit of a byte") << 15 << 1 << big << quint64(0);
    QTest::newRow("big, lowest bit") << 0 << 1 << big << quint64(1);
    QTest::newRow("big, byte") << 15 << 8 << big << quint64(0x23);
    QTest::newRow("big, half bytes of two") << 3 << 8 << big << quint64(0x12);
    QTest::newRow("big, two bytes") << 15 << 16 << big << quint64(0x2345);
    QTest::newRow("big, 12 bits") << 11 << 12 << big << quint64(0x345);
    QTest::newRow("big, 64 bits") << 7 << 64 << big << quint64(0x0123456789ABCDEF);
    QTest::newRow("big, 64 bits in nine bytes") << 3 << 64 << big << quint64(0x123456789ABCDEF1);
    QTest::newRow("big, over the eighth byte") << 59 << 12 << big << quint64(0xF10);
}

void tst_BitField::read()
{
    QFETCH(int, start);
    QFETCH(int, length);
    QFETCH(DatabaseSignal::ByteOrder, order);
    QFETCH(quint64, expected);
    const Data data{0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF, 0x10, 0x32};
    const DatabaseSignal signal = signalAt(start, length, order);
    QCOMPARE(BitField(signal).read(data.data()), expected);
    QCOMPARE(plainly(signal, data), expected);
}

void tst_BitField::everyPlaceAndLength_data()
{
    QTest::addColumn<DatabaseSignal::ByteOrder>("order");
    QTest::newRow("little") << DatabaseSignal::LittleEndian;
    QTest::newRow("big") << DatabaseSignal::BigEndian;
}

void tst_BitField::everyPlaceAndLength()
{
    QFETCH(DatabaseSignal::ByteOrder, order);
    std::mt19937 random(7);
    Data data{};
    int compared = 0;
    for (int start = 0; start < 512; ++start) {
        for (int length = 1; length <= 64; ++length) {
            const DatabaseSignal signal = signalAt(start, length, order);
            if (bytesNeeded(signal) > BusFrame::MaxLength) {
                continue;
            }
            for (uchar &byte : data) {
                byte = static_cast<uchar>(random());
            }
            if (BitField(signal).read(data.data()) != plainly(signal, data)) {
                QFAIL(qPrintable(QStringLiteral("start %1, length %2").arg(start).arg(length)));
            }
            ++compared;
        }
    }
    // 512 starts of 64 lengths, without those whose last bit would be bit 512 to 574.
    QCOMPARE(compared, 512 * 64 - 63 * 64 / 2);
}

void tst_BitField::bits()
{
    QCOMPARE(signalBits(signalAt(6, 4, DatabaseSignal::LittleEndian)), (QVector<int>{9, 8, 7, 6}));
    QCOMPARE(signalBits(signalAt(1, 4, DatabaseSignal::BigEndian)), (QVector<int>{1, 0, 15, 14}));
}

void tst_BitField::bytes()
{
    QCOMPARE(bytesNeeded(signalAt(0, 8, DatabaseSignal::LittleEndian)), 1);
    QCOMPARE(bytesNeeded(signalAt(0, 9, DatabaseSignal::LittleEndian)), 2);
    QCOMPARE(bytesNeeded(signalAt(7, 8, DatabaseSignal::BigEndian)), 1);
    QCOMPARE(bytesNeeded(signalAt(0, 2, DatabaseSignal::BigEndian)), 2);
    QCOMPARE(bytesNeeded(signalAt(504, 8, DatabaseSignal::LittleEndian)), 64);
    QCOMPARE(bytesNeeded(signalAt(505, 8, DatabaseSignal::LittleEndian)), 65);
    QCOMPARE(bytesNeeded(signalAt(0xFFF, 64, DatabaseSignal::BigEndian)), 65);
}

X9_PLAIN_TEST(tst_BitField)
#include "tst_BitField.moc"
