#include "exchange/BusFrame.h"
#include "exchange/database/SignalDecoder.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

#include <array>
#include <limits>

class tst_SignalDecoder : public QObject
{
    Q_OBJECT

private slots:
    static void values_data();
    static void values();
    static void numbers_data();
    static void numbers();
    static void texts();
    static void textsOfFloats();
    static void ranges();
    static void bytesAndLetters();
    static void digits();
    static void bitsOfNumbers_data();
    static void bitsOfNumbers();
    static void bitsOfScales();
};

namespace {

using Data = std::array<uchar, BusFrame::MaxLength>;

Data dataOf(const QByteArray &hex)
{
    const QByteArray bytes = QByteArray::fromHex(hex);
    Data data{};
    std::copy(bytes.begin(), bytes.end(), data.begin());
    return data;
}

DatabaseSignal signalOf(DatabaseSignal::Type type, int length)
{
    DatabaseSignal signal;
    signal.type = type;
    signal.length = static_cast<quint16>(length);
    return signal;
}

SignalValue decoded(const DatabaseSignal &signal, const QByteArray &hex)
{
    const auto texts = signal.texts.isEmpty()
                           ? nullptr
                           : std::make_shared<const ValueTexts>(signal.texts, SignalDecoder::textMask(signal));
    return SignalDecoder(signal, 0, texts).value(dataOf(hex).data());
}

/// The physical value as it is written.
QString written(const DatabaseSignal &signal, const QByteArray &hex)
{
    const SignalDecoder decoder(signal, 0, nullptr);
    const Data data = dataOf(hex);
    const quint64 bits = decoder.bits(data.data());
    char text[MaxNumberText];
    const char *end = decoder.putPhysical(text, bits, *decoder.scale(bits));
    return QString::fromLatin1(text, static_cast<int>(end - text));
}

} // namespace

void tst_SignalDecoder::values_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("length");
    QTest::addColumn<QByteArray>("hex");
    QTest::addColumn<QString>("raw");
    QTest::addColumn<double>("physical");

    const int plain = DatabaseSignal::Unsigned;
    const int withSign = DatabaseSignal::Signed;
    const int real = DatabaseSignal::Float;
    const auto row = [](const char *name, int type, int length, const char *hex, const char *raw, double physical) {
        QTest::newRow(name) << type << length << QByteArray(hex) << QString::fromLatin1(raw) << physical;
    };
    row("1 bit", plain, 1, "FF", "1", 1);
    row("1 bit with a sign", withSign, 1, "01", "-1", -1);
    row("8 bits", plain, 8, "FF", "255", 255);
    row("8 bits, lowest", withSign, 8, "80", "-128", -128);
    row("8 bits, highest", withSign, 8, "7F", "127", 127);
    row("8 bits, -1", withSign, 8, "FF", "-1", -1);
    row("12 bits, -2048", withSign, 12, "00F8", "-2048", -2048);
    row("32 bits, lowest", withSign, 32, "00000080", "-2147483648", -2147483648.0);
    row("63 bits, highest", plain, 63, "FFFFFFFFFFFFFFFF", "9223372036854775807", 9223372036854775807.0);
    row("64 bits", plain, 64, "FFFFFFFFFFFFFFFF", "18446744073709551615", 18446744073709551615.0);
    row("64 bits, lowest", withSign, 64, "0000000000000080", "-9223372036854775808", -9223372036854775808.0);
    row("64 bits, -1", withSign, 64, "FFFFFFFFFFFFFFFF", "-1", -1);
    row("float 1", real, 32, "0000803F", "1", 1);
    row("float 0.1", real, 32, "CDCCCC3D", "0.1", static_cast<double>(0.1F));
    row("float, smallest", real, 32, "01000000", "1e-45", 1.401298464324817e-45);
    row("float, infinite", real, 32, "0000807F", "inf", std::numeric_limits<double>::infinity());
    row("float, infinite below", real, 32, "000080FF", "-inf", -std::numeric_limits<double>::infinity());
    row("float, -0", real, 32, "00000080", "-0", -0.0);
    row("double 0.1", real, 64, "9A9999999999B93F", "0.1", 0.1);
    row("double, highest", real, 64, "FFFFFFFFFFFFEF7F", "1.7976931348623157e+308", 1.7976931348623157e+308);
}

void tst_SignalDecoder::values()
{
    QFETCH(int, type);
    QFETCH(int, length);
    QFETCH(QByteArray, hex);
    const SignalValue value = decoded(signalOf(static_cast<DatabaseSignal::Type>(type), length), hex);
    QTEST(value.raw, "raw");
    QFETCH(double, physical);
    QVERIFY(value.physical.has_value());
    QVERIFY(*value.physical == physical); // to the last bit
    for (const char *nan : {"0000C07F", "0000C0FF"}) {
        const SignalValue none = decoded(signalOf(DatabaseSignal::Float, 32), nan);
        QCOMPARE(none.raw, QStringLiteral("nan"));
        QVERIFY(qIsNaN(*none.physical));
    }
}

void tst_SignalDecoder::numbers_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("length");
    QTest::addColumn<double>("factor");
    QTest::addColumn<double>("offset");
    QTest::addColumn<QByteArray>("hex");
    QTest::addColumn<QString>("expected");

    const int plain = DatabaseSignal::Unsigned;
    const int withSign = DatabaseSignal::Signed;
    const auto row = [](const char *name, int type, int length, double factor, double offset, const char *hex,
                        const char *expected) {
        QTest::newRow(name) << type << length << factor << offset << QByteArray(hex) << QString::fromLatin1(expected);
    };
    row("as it is", plain, 8, 1, 0, "7F", "127");
    row("tenths", plain, 8, 0.1, 0, "7F", "12.7");
    row("tenths, whole", plain, 8, 0.1, 0, "64", "10");
    row("tenths, nothing", withSign, 8, 0.1, 0, "00", "0");
    row("three tenths", plain, 8, 0.1, 0, "03", "0.3");
    row("below one", withSign, 8, 0.01, 0, "FF", "-0.01");
    row("below one with an offset", withSign, 8, 0.01, -0.5, "FF", "-0.51");
    row("offset with more digits", plain, 8, 0.5, -273.15, "01", "-272.65");
    row("large factor", plain, 8, 1000, 5, "FF", "255005");
    row("negative factor", plain, 8, -0.25, 0, "03", "-0.75");
    row("many digits", plain, 16, 0.0009765625, 0, "0300", "0.0029296875");
    row("small factor", plain, 8, 1e-9, 0, "02", "0.000000002");
    row("very small factor", plain, 8, 1e-30, 0, "02", "2e-30");
    row("very large factor", plain, 8, 1e30, 0, "02", "2e+30");
    row("factor 0", plain, 8, 0, 7.5, "02", "7.5");
    row("61 bits in whole numbers", plain, 61, 2, 1, "FFFFFFFFFFFFFF0F", "2305843009213693951");
    row("64 bits that do not fit", plain, 64, 2, 0, "FFFFFFFFFFFFFFFF", "36893488147419103000");
    row("64 bits of tenths", plain, 64, 0.5, 0, "0300000000000000", "1.5");
    row("float", DatabaseSignal::Float, 32, 2, 1, "0000003F", "2");
}

void tst_SignalDecoder::numbers()
{
    QFETCH(int, type);
    QFETCH(int, length);
    QFETCH(double, factor);
    QFETCH(double, offset);
    QFETCH(QByteArray, hex);
    QFETCH(QString, expected);
    DatabaseSignal signal = signalOf(static_cast<DatabaseSignal::Type>(type), length);
    SignalScale scale;
    scale.factor = factor;
    scale.offset = offset;
    signal.scales = {scale};
    if (qstrcmp(QTest::currentDataTag(), "64 bits that do not fit") == 0) {
        QCOMPARE(written(signal, hex).toDouble(), 36893488147419103230.0);
    } else {
        QCOMPARE(written(signal, hex), expected);
    }
    QCOMPARE(*decoded(signal, hex).physical, expected.toDouble());
}

void tst_SignalDecoder::texts()
{
    DatabaseSignal signal = signalOf(DatabaseSignal::Signed, 12);
    signal.texts = {{~quint64(0), QStringLiteral("minus one")},
                    {1000, QStringLiteral("thousand")},
                    {3, QStringLiteral("three")},
                    {3, QStringLiteral("three again")},
                    {4096 + 5, QStringLiteral("no such value")},
                    {0x801, QStringLiteral("as its bits")}};
    QCOMPARE(decoded(signal, "FF0F").text, QStringLiteral("minus one"));
    QCOMPARE(decoded(signal, "E803").text, QStringLiteral("thousand"));
    QCOMPARE(decoded(signal, "0300").text, QStringLiteral("three"));
    QCOMPARE(decoded(signal, "0108").text, QStringLiteral("as its bits"));
    QCOMPARE(decoded(signal, "0500").text, QString());
    QCOMPARE(decoded(signal, "0200").text, QString());
    QCOMPARE(decoded(signal, "FF07").text, QString());
}

void tst_SignalDecoder::textsOfFloats()
{
    DatabaseSignal signal = signalOf(DatabaseSignal::Float, 32);
    signal.texts = {{2, QStringLiteral("two")}, {~quint64(0), QStringLiteral("minus one")}};
    QCOMPARE(decoded(signal, "00000040").text, QStringLiteral("two"));
    QCOMPARE(decoded(signal, "000080BF").text, QStringLiteral("minus one"));
    QCOMPARE(decoded(signal, "00002040").text, QString()); // 2.5
    QCOMPARE(decoded(signal, "0000C07F").text, QString()); // not a number
    QCOMPARE(decoded(signal, "0000807F").text, QString()); // infinite
}

/// As LIN describes them: a scale for each of some ranges of raw values.
void tst_SignalDecoder::ranges()
{
    DatabaseSignal signal = signalOf(DatabaseSignal::Unsigned, 8);
    signal.scales = {{{0, 100}, 1, 0, QStringLiteral("%")}, {{101, 200}, 10, -1000, QStringLiteral("W")}};
    signal.texts = {{255, QStringLiteral("unknown")}};
    QCOMPARE(*decoded(signal, "64").physical, 100.0);
    QCOMPARE(decoded(signal, "64").unit, QStringLiteral("%"));
    QCOMPARE(*decoded(signal, "65").physical, 10.0);
    QCOMPARE(decoded(signal, "65").unit, QStringLiteral("W"));
    QVERIFY(!decoded(signal, "FF").physical);
    QCOMPARE(decoded(signal, "FF").raw, QStringLiteral("255"));
    QCOMPARE(decoded(signal, "FF").text, QStringLiteral("unknown"));
    QCOMPARE(decoded(signal, "FF").unit, QString());
    signal.scales.clear(); // texts only
    QVERIFY(!decoded(signal, "01").physical);
}

void tst_SignalDecoder::bytesAndLetters()
{
    DatabaseSignal signal = signalOf(DatabaseSignal::Bytes, 32);
    QCOMPARE(decoded(signal, "0102FF04").raw, QStringLiteral("0102FF04"));
    QVERIFY(!decoded(signal, "0102FF04").physical);
    QCOMPARE(decoded(signal, "0102FF04").text, QString());
    signal.startBit = 4;
    QCOMPARE(decoded(signal, "1020F04F00").raw, QStringLiteral("0102FF04"));
    signal.type = DatabaseSignal::Ascii;
    signal.startBit = 0;
    QCOMPARE(decoded(signal, "41426300").text, QStringLiteral("ABc"));
    QCOMPARE(decoded(signal, "410A6380").text, QStringLiteral("A?c?"));
    QCOMPARE(decoded(signal, "41426300").raw, QStringLiteral("41426300"));
}

void tst_SignalDecoder::digits()
{
    DatabaseSignal signal = signalOf(DatabaseSignal::Bcd, 16);
    QCOMPARE(*decoded(signal, "3412").physical, 1234.0);
    QCOMPARE(decoded(signal, "3412").raw, QString::number(0x1234));
    QVERIFY(!decoded(signal, "3A12").physical);
    signal.length = 64;
    QCOMPARE(*decoded(signal, "9999999999999999").physical, 9999999999999999.0);
}

void tst_SignalDecoder::bitsOfNumbers_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("length");
    QTest::addColumn<double>("factor");
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, DatabaseSignal::Type type, int length, double factor, double value,
                        const char *expected) {
        QTest::newRow(name) << int(type) << length << factor << value << QString::fromLatin1(expected);
    };
    row("byte", DatabaseSignal::Unsigned, 8, 0.1, 12.7, "7f");
    row("between two", DatabaseSignal::Unsigned, 8, 0.1, 12.75, "none");
    row("too large", DatabaseSignal::Unsigned, 8, 0.1, 25.6, "none");
    row("below", DatabaseSignal::Unsigned, 8, 0.1, -0.1, "none");
    row("all of 64 bits", DatabaseSignal::Unsigned, 64, 1, 18446744073709551615.0, "ffffffffffffffff");
    row("infinite", DatabaseSignal::Unsigned, 64, 1, std::numeric_limits<double>::infinity(), "none");
    row("factor 0", DatabaseSignal::Unsigned, 8, 0, 3, "none");
    row("negative", DatabaseSignal::Signed, 8, -2, 256, "ffffffffffffff80");
    row("negative, too large", DatabaseSignal::Signed, 8, -2, 258, "none");
    row("least of 64 bits", DatabaseSignal::Signed, 64, 1, -9223372036854775808.0, "8000000000000000");
    row("float", DatabaseSignal::Float, 32, 2, 3, "3fc00000");
    row("float, not exact", DatabaseSignal::Float, 32, 1, 0.1, "none");
    row("double", DatabaseSignal::Float, 64, 1, 0.1, "3fb999999999999a");
    row("digits", DatabaseSignal::Bcd, 16, 1, 1234, "1234");
    row("too many digits", DatabaseSignal::Bcd, 16, 1, 12345, "none");
    row("letters", DatabaseSignal::Ascii, 16, 1, 1, "none");
}

void tst_SignalDecoder::bitsOfNumbers()
{
    QFETCH(int, type);
    QFETCH(int, length);
    QFETCH(double, factor);
    QFETCH(double, value);
    DatabaseSignal signal = signalOf(static_cast<DatabaseSignal::Type>(type), length);
    SignalScale scale;
    scale.factor = factor;
    signal.scales = {scale};
    const SignalDecoder decoder(signal, 0, nullptr);
    const std::optional<quint64> bits = decoder.bitsOf(value);
    const QString found = bits ? QString::number(*bits, 16) : QStringLiteral("none");
    QTEST(found, "expected");
    if (bits) {
        QCOMPARE(decoder.number(*bits), std::optional(value));
    }
}

void tst_SignalDecoder::bitsOfScales()
{
    DatabaseSignal signal = signalOf(DatabaseSignal::Unsigned, 8);
    signal.scales = {{{0, 100}, 1, 0, {}}, {{101, 200}, 10, -1000, {}}};
    const SignalDecoder decoder(signal, 0, nullptr);
    QCOMPARE(decoder.bitsOf(100), std::optional<quint64>(100));
    QCOMPARE(decoder.bitsOf(1000), std::optional<quint64>(200));
    QVERIFY(!decoder.bitsOf(150.5));
    QVERIFY(!decoder.number(201));
    signal.scales.clear();
    signal.texts = {{1, QStringLiteral("on")}};
    const SignalDecoder onlyTexts(signal, 0, nullptr);
    QVERIFY(!onlyTexts.physical(1));
    QCOMPARE(onlyTexts.number(1), std::optional(1.0));
    QCOMPARE(onlyTexts.bitsOf(1), std::optional<quint64>(1));
    QVERIFY(!onlyTexts.bitsOf(256));
}

X9_PLAIN_TEST(tst_SignalDecoder)
#include "tst_SignalDecoder.moc"
