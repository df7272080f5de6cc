#include "device/CANBaudrate.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

class tst_CANBaudrate : public QObject
{
    Q_OBJECT

private slots:
    static void nominalRates_data();
    static void nominalRates();
    static void dataRates();
};

void tst_CANBaudrate::nominalRates_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("timing0");
    QTest::addColumn<int>("timing1");
    QTest::newRow("Custom") << 0 << 0x00 << 0x00;
    QTest::newRow("1000k bps") << 1 << 0x00 << 0x14;
    QTest::newRow("800k bps") << 2 << 0x00 << 0x16;
    QTest::newRow("500k bps") << 3 << 0x00 << 0x1C;
    QTest::newRow("250k bps") << 4 << 0x01 << 0x1C;
    QTest::newRow("125k bps") << 5 << 0x03 << 0x1C;
    QTest::newRow("100k bps") << 6 << 0x04 << 0x1C;
    QTest::newRow("50k bps") << 7 << 0x09 << 0x1C;
    QTest::newRow("25k bps") << 8 << 0x18 << 0x1C;
    QTest::newRow("10k bps") << 9 << 0x31 << 0x1C;
    QTest::newRow("5k bps") << 10 << 0xBF << 0xFF;
}

void tst_CANBaudrate::nominalRates()
{
    QFETCH(int, index);
    QCOMPARE(canBaudrates().size(), 11);
    const CANBaudrate &rate = canBaudrates().at(index);
    QCOMPARE(rate.name, QString::fromLatin1(QTest::currentDataTag()));
    QTEST(int(rate.timing0()), "timing0");
    QTEST(int(rate.timing1()), "timing1");
}

void tst_CANBaudrate::dataRates()
{
    QStringList names;
    for (const CANBaudrate &rate : canFDDataRates()) {
        names.append(rate.name);
        QCOMPARE(rate.timing, quint16(0));
    }
    QCOMPARE(names.join(QLatin1Char(',')), QStringLiteral("None,1M bps,2M bps,4M bps,5M bps"));
}

X9_PLAIN_TEST(tst_CANBaudrate)
#include "tst_CANBaudrate.moc"
