#include "adapter/BusTiming.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

class tst_BusTiming : public QObject
{
    Q_OBJECT

private slots:
    static void nominal_data();
    static void nominal();
    static void data_data();
    static void data();
};

void tst_BusTiming::nominal_data()
{
    QTest::addColumn<int>("timing0");
    QTest::addColumn<int>("timing1");
    QTest::addColumn<quint32>("bitrate"); // 0: none
    QTest::addColumn<quint32>("samplePoint");
    QTest::newRow("1000k") << 0x00 << 0x14 << 1000000U << 750U;
    QTest::newRow("800k") << 0x00 << 0x16 << 800000U << 800U;
    QTest::newRow("500k") << 0x00 << 0x1C << 500000U << 875U;
    QTest::newRow("250k") << 0x01 << 0x1C << 250000U << 875U;
    QTest::newRow("125k") << 0x03 << 0x1C << 125000U << 875U;
    QTest::newRow("100k") << 0x04 << 0x1C << 100000U << 875U;
    QTest::newRow("50k") << 0x09 << 0x1C << 50000U << 875U;
    QTest::newRow("25k, by its name") << 0x18 << 0x1C << 25000U << 875U;
    QTest::newRow("10k") << 0x31 << 0x1C << 10000U << 875U;
    QTest::newRow("5k") << 0xBF << 0xFF << 5000U << 680U;
    QTest::newRow("custom: 400k") << 0x01 << 0x16 << 400000U << 800U;
    QTest::newRow("custom: 20k") << 0x18 << 0x2B << 20000U << 812U;
    QTest::newRow("custom: the jump width makes no difference") << 0xC1 << 0x16 << 400000U << 800U;
    QTest::newRow("custom: nor do three samples") << 0x01 << 0x96 << 400000U << 800U;
    QTest::newRow("slowest") << 0x3F << 0x7F << 5000U << 680U;
    QTest::newRow("no whole number: 3 quanta") << 0x02 << 0x00 << 0U << 0U;
    QTest::newRow("no whole number: 7 prescaled") << 0x06 << 0x1C << 0U << 0U;
    QTest::newRow("above 1 Mbit/s") << 0x00 << 0x01 << 0U << 0U;
}

void tst_BusTiming::nominal()
{
    QFETCH(int, timing0);
    QFETCH(int, timing1);
    QFETCH(quint32, bitrate);
    const auto timing = va::nominalTiming(static_cast<std::uint8_t>(timing0), static_cast<std::uint8_t>(timing1));
    QCOMPARE(timing.has_value(), bitrate != 0);
    if (timing) {
        QCOMPARE(timing->bitrate, bitrate);
        QTEST(quint32{timing->samplePoint}, "samplePoint");
    }
}

void tst_BusTiming::data_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<quint32>("bitrate"); // 0: none
    const std::array<quint32, 16> rates = {0, 1000000, 2000000, 4000000, 5000000};
    for (int index = 0; index < 16; ++index) {
        QTest::addRow("%d", index) << index << rates.at(static_cast<std::size_t>(index));
    }
}

void tst_BusTiming::data()
{
    QFETCH(int, index);
    QTEST(quint32{va::dataBitrate(static_cast<std::uint8_t>(index)).value_or(0)}, "bitrate");
}

X9_PLAIN_TEST(tst_BusTiming)
#include "tst_BusTiming.moc"
