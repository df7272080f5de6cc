#include "tests/support/TestProgram.h"
#include "widgets/HexText.h"

#include <QtTest>

class tst_HexText : public QObject
{
    Q_OBJECT

private slots:
    static void reads_data();
    static void reads();
    static void refuses_data();
    static void refuses();
    static void writes();
    static void readsWhatItWrote();
};

void tst_HexText::reads_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("blanks") << "01 a2 FF" << QByteArray("\x01\xA2\xFF");
    QTest::newRow("no blanks") << "01A2ff" << QByteArray("\x01\xA2\xFF");
    QTest::newRow("0x") << "0x11 0X22" << QByteArray("\x11\x22");
    QTest::newRow("long numbers") << "0x1122 3344" << QByteArray("\x11\x22\x33\x44");
    QTest::newRow("single digits") << "1 0x2 F" << QByteArray("\x01\x02\x0F");
    QTest::newRow("lines and tabs") << "\n 11\t22\r\n33 " << QByteArray("\x11\x22\x33");
    QTest::newRow("zero") << "00" << QByteArray(1, '\0');
}

void tst_HexText::reads()
{
    QFETCH(QString, text);
    const auto bytes = bytesFromHexText(text);
    QVERIFY(bytes.has_value());
    QTEST(*bytes, "bytes");
}

void tst_HexText::refuses_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << "";
    QTest::newRow("blank") << " \n";
    QTest::newRow("words") << "hello";
    QTest::newRow("behind the digits, upper case") << "GG";
    QTest::newRow("behind the digits, lower case") << "gg";
    QTest::newRow("behind the numbers") << "::";
    QTest::newRow("word behind bytes") << "11 22 xy";
    QTest::newRow("comma") << "11,22";
    QTest::newRow("only 0x") << "11 0x";
    QTest::newRow("0x inside") << "110x22";
    QTest::newRow("0x twice") << "0x0x11";
    QTest::newRow("odd") << "123";
    QTest::newRow("sign") << "-1";
    QTest::newRow("full width digits") << QString::fromUtf8("１１");
    QTest::newRow("null character") << QString(2, QChar(0));
}

void tst_HexText::refuses()
{
    QFETCH(QString, text);
    QVERIFY(!bytesFromHexText(text).has_value());
}

void tst_HexText::writes()
{
    QCOMPARE(hexTextFromBytes(QByteArray("\x01\xA2\xFF")), QStringLiteral("01 A2 FF"));
    QCOMPARE(hexTextFromBytes(QByteArray()), QString());
}

void tst_HexText::readsWhatItWrote()
{
    QByteArray all;
    for (int value = 0; value < 256; ++value) {
        all.append(static_cast<char>(value));
    }
    QCOMPARE(bytesFromHexText(hexTextFromBytes(all)).value_or(QByteArray()), all);
}

X9_PLAIN_TEST(tst_HexText)
#include "tst_HexText.moc"
