#include "exchange/CanLength.h"
#include "exchange/TextFields.h"
#include "exchange/TextLine.h"
#include "exchange/TextNumbers.h"
#include "tests/support/TestProgram.h"

#include <array>
#include <cctype>

/// What text captures are made of.
class tst_TextFields : public QObject
{
    Q_OBJECT

private slots:
    static void fields();
    static void scaledDecimals_data();
    static void scaledDecimals();
    static void wholeNumbers();
    static void lines();
    static void lengthCodes();
    static void sixDigits();
    static void pairsOfHexDigits();
};

void tst_TextFields::fields()
{
    TextFields fields("  one\ttwo   three ");
    QCOMPARE(fields.next(), std::string_view("one"));
    QCOMPARE(fields.peek(), std::string_view("two"));
    QCOMPARE(fields.next(), std::string_view("two"));
    QCOMPARE(fields.rest(), std::string_view("   three "));
    QCOMPARE(fields.next(), std::string_view("three"));
    QVERIFY(fields.next().empty());
    QVERIFY(fields.next().empty());
}

void tst_TextFields::scaledDecimals_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("digits");
    QTest::addColumn<qint64>("value"); // -1: none
    const auto row = [](const char *text, int digits, qint64 value) {
        QTest::addRow("%s, %d", text, digits) << QByteArray(text) << digits << value;
    };
    row("0", 9, 0);
    row("1.5", 9, 1500000000);
    row("0.000001", 9, 1000);
    row("0.123456789123", 9, 123456789);
    row("12.3456", 2, 1234);
    row(".5", 3, 500);
    row("7.", 1, 70);
    row("9223372035.999999999", 9, 9223372035999999999);
    row("9223372040", 9, -1);
    row("99999999999999999999", 0, -1);
    row("", 9, -1);
    row(".", 9, -1);
    row("-1", 9, -1);
    row("1.2.3", 9, -1);
    row("1e5", 9, -1);
}

void tst_TextFields::scaledDecimals()
{
    QFETCH(const QByteArray, text);
    QFETCH(const int, digits);
    QFETCH(const qint64, value);
    QCOMPARE(scaledDecimal({text.constData(), static_cast<std::size_t>(text.size())}, digits).value_or(-1), value);
}

void tst_TextFields::wholeNumbers()
{
    QCOMPARE(wholeNumber("1aF", 16).value_or(0), 0x1AFU);
    QCOMPARE(wholeNumber("4294967295").value_or(0), 4294967295U);
    QVERIFY(!wholeNumber("4294967296"));
    QVERIFY(!wholeNumber(""));
    QVERIFY(!wholeNumber("1 "));
    QVERIFY(!wholeNumber("0x1", 16));
    QVERIFY(!wholeNumber("-1"));
    QVERIFY(!wholeNumber<int>("-1"));
    QVERIFY(!wholeNumber<int>("-0"));
    QVERIFY(!wholeNumber<quint8>("256"));
    QVERIFY(isSameWord("TriggerBlock", "triggerblock"));
    QVERIFY(!isSameWord("Trigger", "triggerblock"));
    QVERIFY(beginsWith("ClassicX", "classic"));
}

void tst_TextFields::lines()
{
    TextLine line;
    line.addHex(0x1AB, 5, '0');
    line.add(' ');
    line.addDecimal(42, 4);
    line.add(' ');
    line.addTime(1234567890123, 9, 6, 11);
    line.add(' ');
    line.addTime(1500000, 6, 3, 9);
    QCOMPARE(line.text(), std::string_view("001AB   42 1234.567890     1.500"));
    line.clear();
    BusFrame frame;
    frame.length = 2;
    frame.data = {0x0A, 0xF1};
    line.addBytes(frame);
    line.padTo(8);
    line.add('|');
    QCOMPARE(line.text(), std::string_view(" 0A F1  |"));
    for (int i = 0; i < 1000; ++i) {
        line.add("more than fits");
    }
    QCOMPARE(line.size(), std::size_t(1024));
}

/// ISO 11898-1.
void tst_TextFields::lengthCodes()
{
    constexpr int Lengths[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 12, 16, 20, 24, 32, 48, 64};
    for (int code = 0; code < 16; ++code) {
        QCOMPARE(canLengthOfCode(code), Lengths[code]);
        QCOMPARE(canLengthCode(Lengths[code]), code);
    }
    QCOMPARE(canLengthCode(9), 9);
    QCOMPARE(canLengthCode(33), 14);
    QCOMPARE(canLengthOfCode(16), 0);
    QCOMPARE(canLengthOfCode(-1), 0);
}

/// Every value in steps of a prime; every byte at every place.
void tst_TextFields::sixDigits()
{
    int number = 0;
    for (int value = 0; value < 1000000; value += 37) {
        const QByteArray text = QByteArray("x\377") + QByteArray::number(value).rightJustified(6, '0');
        QVERIFY(TextNumbers::sixDigitsBehindTwo(text.constData(), number));
        QCOMPARE(number, value);
    }
    for (int place = 2; place < 8; ++place) {
        for (int byte = 0; byte < 256; ++byte) {
            QByteArray text("00901234");
            text[place] = static_cast<char>(byte);
            const bool isDigit = byte >= '0' && byte <= '9';
            QCOMPARE(TextNumbers::sixDigitsBehindTwo(text.constData(), number), isDigit);
        }
    }
}

void tst_TextFields::pairsOfHexDigits()
{
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            const QByteArray text = QByteArray("00 ") + static_cast<char>(first) + static_cast<char>(second) + " fF";
            const QByteArray bytes = QByteArray::fromHex(text);
            const bool isGood = std::isxdigit(first) != 0 && std::isxdigit(second) != 0;
            std::array<uchar, 3> got{};
            QCOMPARE(TextNumbers::hexBytes(text.constData(), 3, 3, got.data()), isGood);
            QVERIFY(!isGood || std::equal(got.begin(), got.end(), reinterpret_cast<const uchar *>(bytes.constData())));
        }
    }
}

X9_PLAIN_TEST(tst_TextFields)
#include "tst_TextFields.moc"
