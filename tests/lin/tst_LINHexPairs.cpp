#include "lin/LINHexPairs.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

class tst_LINHexPairs : public QObject
{
    Q_OBJECT

private slots:
    static void decodesPairs_data();
    static void decodesPairs();
    static void countsDigits_data();
    static void countsDigits();
};

void tst_LINHexPairs::decodesPairs_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("length");
    QTest::addColumn<QByteArray>("bytes");

    const auto row = [](const QString &text, int length, const char *hex) {
        QTest::newRow(qPrintable(text.left(40) + QString::number(length)))
            << text << length << QByteArray::fromHex(hex);
    };
    row(QStringLiteral("00 00 00 00 00 00 00 05"), 8, "0000000000000005");
    row(QStringLiteral("0102"), 2, "0102");
    row(QStringLiteral("0102"), 1, "01");
    row(QStringLiteral("0102"), 0, "");
    row(QString(), 8, "");
    row(QStringLiteral("0 1\t0\n2"), 2, "0102");
    row(QStringLiteral("aB cD"), 2, "ABCD");
    row(QStringLiteral("010"), 2, "01");
    // Digits of different pairs never make a byte together.
    row(QStringLiteral("zz 01"), 2, "01");
    row(QStringLiteral("0G 12"), 2, "12");
    row(QStringLiteral("1G G2 34"), 3, "34");
    row(QStringLiteral("-1 0x 01"), 3, "01");
    row(QStringLiteral("zz 01"), 1, "");
    row(QStringLiteral("@` /: 09"), 3, "09");
    row(QString::fromUtf8("１１ ４ａ İı 0f"), 4, "0F");
    row(QStringLiteral("1 ").repeated(1000000), 8, "1111111111111111");
}

void tst_LINHexPairs::decodesPairs()
{
    QFETCH(QString, text);
    QFETCH(int, length);
    QFETCH(QByteArray, bytes);
    QCOMPARE(bytesOfHexPairs(text, length), bytes);
}

void tst_LINHexPairs::countsDigits_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isEnough");
    QTest::newRow("nothing wanted") << 0 << QString() << true;
    QTest::newRow("empty") << 1 << QString() << false;
    QTest::newRow("half a byte") << 1 << QStringLiteral("A") << false;
    QTest::newRow("blanks do not count") << 2 << QStringLiteral("01 A") << false;
    QTest::newRow("two of eight") << 8 << QStringLiteral("0102") << false;
    QTest::newRow("one digit short") << 8 << QString(15, QLatin1Char('0')) << false;
    QTest::newRow("as many") << 2 << QStringLiteral(" 0 1 A2\t") << true;
    QTest::newRow("half a byte more") << 2 << QStringLiteral("01A2F") << true;
    QTest::newRow("no digits") << 1 << QStringLiteral("zz") << true;
}

void tst_LINHexPairs::countsDigits()
{
    QFETCH(int, length);
    QFETCH(QString, text);
    QTEST(hasHexPairs(text, length), "isEnough");
}

X9_PLAIN_TEST(tst_LINHexPairs)
#include "tst_LINHexPairs.moc"
