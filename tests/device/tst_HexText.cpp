#include "device/HexText.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

class tst_HexText : public QObject
{
    Q_OBJECT

private slots:
    static void numbers_data();
    static void numbers();
    static void pairs();
};

void tst_HexText::numbers_data()
{
    QTest::addColumn<quint32>("number");
    QTest::addColumn<int>("digits");
    QTest::addColumn<QString>("text");
    QTest::newRow("zero") << 0U << 2 << QStringLiteral("00");
    QTest::newRow("one digit") << 1U << 2 << QStringLiteral("01");
    QTest::newRow("letters") << 0xBFU << 2 << QStringLiteral("BF");
    QTest::newRow("highest of two") << 0xFFU << 2 << QStringLiteral("FF");
    QTest::newRow("three") << 0x7FFU << 3 << QStringLiteral("7FF");
    QTest::newRow("eight") << 0x1FFFFFFFU << 8 << QStringLiteral("1FFFFFFF");
    QTest::newRow("highest of eight") << 0xFFFFFFFFU << 8 << QStringLiteral("FFFFFFFF");
    QTest::newRow("the last ones") << 0xA1234U << 4 << QStringLiteral("1234");
}

void tst_HexText::numbers()
{
    QFETCH(quint32, number);
    QFETCH(int, digits);
    QTEST(hexNumber(number, digits), "text");
    QString text = QStringLiteral("0x");
    appendHexNumber(text, number, digits);
    QCOMPARE(text, QStringLiteral("0x") + hexNumber(number, digits));
}

void tst_HexText::pairs()
{
    QCOMPARE(hexPairs(QByteArray()), QString());
    QCOMPARE(hexPairs(QByteArray::fromHex("01a2FF")), QStringLiteral("01 A2 FF "));
}

X9_PLAIN_TEST(tst_HexText)
#include "tst_HexText.moc"
