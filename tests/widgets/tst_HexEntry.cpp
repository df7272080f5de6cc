#include "tests/support/TestProgram.h"
#include "widgets/HexEntry.h"

#include <QtTest>

class tst_HexEntry : public QObject
{
    Q_OBJECT

private slots:
    static void numbers_data();
    static void numbers();
    static void pairs();
    static void reads_data();
    static void reads();
    static void refuses_data();
    static void refuses();
    static void writes();
    static void readsWhatItWrote();
    static void shows_data();
    static void shows();
    static void digits_data();
    static void digits();
    static void groups_data();
    static void groups();
    static void positions_data();
    static void positions();
    static void payload_data();
    static void payload();
};

void tst_HexEntry::reads_data()
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

void tst_HexEntry::reads()
{
    QFETCH(QString, text);
    const auto bytes = bytesFromHexText(text);
    QVERIFY(bytes.has_value());
    QTEST(*bytes, "bytes");
}

void tst_HexEntry::refuses_data()
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

void tst_HexEntry::refuses()
{
    QFETCH(QString, text);
    QVERIFY(!bytesFromHexText(text).has_value());
}

void tst_HexEntry::writes()
{
    QCOMPARE(hexTextFromBytes(QByteArray("\x01\xA2\xFF")), QStringLiteral("01 A2 FF"));
    QCOMPARE(hexTextFromBytes(QByteArray()), QString());
}

void tst_HexEntry::readsWhatItWrote()
{
    QByteArray all;
    for (int value = 0; value < 256; ++value) {
        all.append(static_cast<char>(value));
    }
    QCOMPARE(bytesFromHexText(hexTextFromBytes(all)).value_or(QByteArray()), all);
}

void tst_HexEntry::shows_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << QByteArray() << "";
    QTest::newRow("one") << QByteArray("\xAB") << "AB ";
    QTest::newRow("eight") << QByteArray("\0\1\2\3\4\5\6\xFF", 8) << "00 01 02 03 04 05 06 FF ";
    QTest::newRow("eight of 64") << QByteArray(64, '\x5A') << "5A 5A 5A 5A 5A 5A 5A 5A ";
}

void tst_HexEntry::shows()
{
    QFETCH(QByteArray, bytes);
    QTEST(shownPayload(bytes), "text");
}

void tst_HexEntry::digits_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("size");
    QTest::addColumn<QString>("digits");
    QTest::newRow("blanks go") << " 1 2\t3\n" << 8 << "123";
    QTest::newRow("case stays") << "aB" << 8 << "aB";
    QTest::newRow("six digits for two bytes") << "123456" << 2 << "1234";
    QTest::newRow("blanks do not count") << "1 2 3 4 5 6" << 2 << "1234";
    QTest::newRow("no bytes") << "12" << 0 << "";
}

void tst_HexEntry::digits()
{
    QFETCH(QString, text);
    QFETCH(int, size);
    QTEST(hexDigits(text, size), "digits");
}

void tst_HexEntry::groups_data()
{
    QTest::addColumn<QString>("digits");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << ""
                          << "";
    QTest::newRow("one") << "1"
                         << "1";
    QTest::newRow("two") << "12"
                         << "12 ";
    QTest::newRow("three") << "123"
                           << "12 3";
    QTest::newRow("six, case kept") << "aBcDeF"
                                    << "aB cD eF ";
}

void tst_HexEntry::groups()
{
    QFETCH(QString, digits);
    QTEST(groupedDigits(digits), "text");
}

void tst_HexEntry::positions_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("behind");
    QTest::newRow("0") << 0 << 0 << 0;
    QTest::newRow("1") << 1 << 1 << 1;
    QTest::newRow("2") << 2 << 2 << 3;
    QTest::newRow("3") << 3 << 4 << 4;
    QTest::newRow("4") << 4 << 5 << 6;
    QTest::newRow("5") << 5 << 7 << 7;
}

void tst_HexEntry::positions()
{
    QFETCH(int, count);
    QTEST(groupedPosition(count, false), "before");
    QTEST(groupedPosition(count, true), "behind");
}

void tst_HexEntry::payload_data()
{
    QTest::addColumn<QString>("digits");
    QTest::addColumn<int>("size");
    QTest::addColumn<QByteArray>("payload");
    QTest::newRow("all typed") << "01A2ff" << 3 << QByteArray("\x01\xA2\xFF", 3);
    QTest::newRow("rest is zero") << "12" << 4 << QByteArray("\x12\0\0\0", 4);
    QTest::newRow("single last digit") << "123" << 3 << QByteArray("\x12\x03\0", 3);
    QTest::newRow("ABC becomes AB0C") << "ABC" << 2 << QByteArray("\xAB\x0C", 2);
    QTest::newRow("one digit") << "A" << 1 << QByteArray("\x0A", 1);
    QTest::newRow("too much is cut") << "010203" << 2 << QByteArray("\x01\x02", 2);
    QTest::newRow("nothing typed") << "" << 2 << QByteArray("\0\0", 2);
    QTest::newRow("no bytes") << "12" << 0 << QByteArray();
}

void tst_HexEntry::payload()
{
    QFETCH(QString, digits);
    QFETCH(int, size);
    QTEST(payloadFromDigits(digits, size), "payload");
}

void tst_HexEntry::numbers_data()
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

void tst_HexEntry::numbers()
{
    QFETCH(quint32, number);
    QFETCH(int, digits);
    QTEST(hexNumber(number, digits), "text");
    QString text = QStringLiteral("0x");
    appendHexNumber(text, number, digits);
    QCOMPARE(text, QStringLiteral("0x") + hexNumber(number, digits));
}

void tst_HexEntry::pairs()
{
    QCOMPARE(hexPairs(QByteArray()), QString());
    QCOMPARE(hexPairs(QByteArray::fromHex("01a2FF")), QStringLiteral("01 A2 FF "));
}

X9_PLAIN_TEST(tst_HexEntry)
#include "tst_HexEntry.moc"
