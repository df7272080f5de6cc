#include "lin/LINCalculator.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

class tst_LINCalculator : public QObject
{
    Q_OBJECT

private slots:
    static void calculates_data();
    static void calculates();
    static void tooFewDigits_data();
    static void tooFewDigits();
};

void tst_LINCalculator::calculates_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<int>("length");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isEnhanced");
    QTest::addColumn<int>("pid");
    QTest::addColumn<int>("checksum");
    const QString zeros(16, QLatin1Char('0'));
    QTest::newRow("3C, zeros, enhanced") << 0x3C << 8 << zeros << true << 0x3C << 0xC3;
    QTest::newRow("3C, zeros, standard") << 0x3C << 8 << zeros << false << 0x3C << 0xFF;
    QTest::newRow("standard") << 0x12 << 2 << QStringLiteral("01A2") << false << 0x92 << 0x5C;
    QTest::newRow("enhanced") << 0x12 << 2 << QStringLiteral("01A2") << true << 0x92 << 0xC9;
    QTest::newRow("blanks") << 0x12 << 2 << QStringLiteral(" 0 1 A2\t") << false << 0x92 << 0x5C;
    QTest::newRow("lower case") << 0x12 << 2 << QStringLiteral("01a2") << false << 0x92 << 0x5C;
    QTest::newRow("more than the length") << 0x12 << 2 << QStringLiteral("01A2FFFF") << false << 0x92 << 0x5C;
    QTest::newRow("half a byte more") << 0x12 << 2 << QStringLiteral("01A2F") << false << 0x92 << 0x5C;
    QTest::newRow("carry folded once") << 0x00 << 3 << QStringLiteral("FFFF01") << false << 0x80 << 0xFF;
}

void tst_LINCalculator::calculates()
{
    QFETCH(int, id);
    QFETCH(int, length);
    QFETCH(QString, text);
    QFETCH(bool, isEnhanced);
    QFETCH(int, pid);
    QFETCH(int, checksum);
    const auto result = calculateLIN(static_cast<quint8>(id), length, text, isEnhanced);
    QVERIFY(result.has_value());
    QCOMPARE(int(result->pid), pid);
    QCOMPARE(int(result->checksum), checksum);
}

void tst_LINCalculator::tooFewDigits_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << 1 << QString();
    QTest::newRow("half a byte") << 1 << QStringLiteral("A");
    QTest::newRow("blanks do not count") << 2 << QStringLiteral("01 A");
    QTest::newRow("two of eight") << 8 << QStringLiteral("0102");
    QTest::newRow("one digit short") << 8 << QString(15, QLatin1Char('0'));
}

void tst_LINCalculator::tooFewDigits()
{
    QFETCH(int, length);
    QFETCH(QString, text);
    QVERIFY(!calculateLIN(0x10, length, text, false).has_value());
}

X9_PLAIN_TEST(tst_LINCalculator)
#include "tst_LINCalculator.moc"
