#include "exchange/database/MessageDecoder.h"
#include "tests/exchange/DatabaseTestData.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

class tst_MessageDecoder : public QObject
{
    Q_OBJECT

private slots:
    static void multiplexed_data();
    static void multiplexed();
    static void lookup();
    static void lookupOfLin();
    static void shortFrames();
    static void wanted();
    static void manyRanges();
};

namespace {

Database golden(const char *name)
{
    return parseDatabase(goldenDatabase(QString::fromLatin1(name)));
}

/// name=raw for each signal of a frame.
QString decoded(const Database &database, const DatabaseDecoder &decoder, const BusFrame &frame)
{
    const int number = decoder.messageOf(frame);
    if (number < 0) {
        return QStringLiteral("none");
    }
    QStringList found;
    const MessageDecoder &message = decoder.message(number);
    const int missing = message.decode(frame.data.data(), frame.length, [&](const SignalDecoder &signal, int place) {
        Q_ASSERT(&message.content()[static_cast<std::size_t>(place)] == &signal);
        Q_ASSERT(message.has(place, frame.data.data(), frame.length));
        found.append(database.messages[number].content[signal.number()].symbol + QLatin1Char('=') +
                     QString::number(signal.bits(frame.data.data())));
    });
    if (missing > 0) {
        found.append(QStringLiteral("%1 missing").arg(missing));
    }
    return found.join(QLatin1Char(' '));
}

} // namespace

void tst_MessageDecoder::multiplexed_data()
{
    QTest::addColumn<int>("identifier");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, int identifier, const char *data, const char *expected) {
        QTest::newRow(name) << identifier << QByteArray(data) << QString::fromLatin1(expected);
    };
    row("simple, one", 1, "0102030405060708", "Select=1 Always=2 WithOne=3");
    row("simple, two", 1, "0202030405060708", "Select=2 Always=2 WithTwo=1027");
    row("simple, neither", 1, "0302030405060708", "Select=3 Always=2");
    row("simple, cut", 1, "020203", "Select=2 Always=2 1 missing");
    row("simple, without its multiplexor", 1, "", "2 missing");
    row("nested, nothing", 2, "0007020300010000", "Top=0 Other=1");
    row("nested, side and middle", 2, "0308020300010000", "Top=3 Middle=8 Side=2 Other=1");
    row("nested, deep", 2, "0307020900010000", "Deep=9 Top=3 Middle=7 Side=2 Other=1");
    row("nested, deep, other range", 2, "0414020900010000", "Deep=9 Top=4 Middle=20 Other=1");
    row("nested, behind the range", 2, "0415020900010000", "Top=4 Middle=21 Other=1");
    row("nested, middle is not there", 2, "0607020900010000", "Top=6 Other=1");
    row("nested, second root", 2, "0000000000000B00", "Top=0 Other=0 OfOther=11");
    row("nested, second root, range", 2, "0000000000060B00", "Top=0 Other=6 OfOther=11");
}

void tst_MessageDecoder::multiplexed()
{
    QFETCH(int, identifier);
    QFETCH(QByteArray, data);
    const Database database = golden("multiplexed.dbc");
    const DatabaseDecoder decoder(database);
    QTEST(decoded(database, decoder, frameWith(static_cast<quint32>(identifier), data)), "expected");
}

void tst_MessageDecoder::lookup()
{
    const Database database = golden("vehicle.dbc");
    const DatabaseDecoder decoder(database);
    QCOMPARE(decoder.messageOf(frameWith(291, "00")), 0);
    QCOMPARE(decoder.messageOf(frameWith(291, "00", BusFrame::Fd)), 0);
    QCOMPARE(decoder.messageOf(frameWith(291, "00", BusFrame::Extended)), -1);
    QCOMPARE(decoder.messageOf(frameWith(291, "00", BusFrame::Lin)), -1);
    QCOMPARE(decoder.messageOf(frameWith(0x18FEF1FE, "00", BusFrame::Extended)), 1);
    QCOMPARE(decoder.messageOf(frameWith(0x18FEF1FE, "00")), -1);
    QCOMPARE(decoder.messageOf(frameWith(292, "00")), -1);
}

void tst_MessageDecoder::lookupOfLin()
{
    const Database database = golden("body.ldf");
    const DatabaseDecoder decoder(database);
    QCOMPARE(decoder.messageOf(frameWith(0x10, "00", BusFrame::Lin)), 0);
    QCOMPARE(decoder.messageOf(frameWith(0x10, "00")), -1);
    QCOMPARE(decoder.messageOf(frameWith(0, "00", BusFrame::Lin)), -1); // sporadic frames have no identifier
    QCOMPARE(decoded(database, decoder, frameWith(0x10, "E70B", BusFrame::Lin)),
             QStringLiteral("MirrorAngle=999 MirrorState=2"));
    // Event-triggered: the protected identifier of frame 33, 0x61, comes first.
    QCOMPARE(decoded(database, decoder, frameWith(34, "613412", BusFrame::Lin)), QStringLiteral("Mileage=4660"));
    QCOMPARE(decoded(database, decoder, frameWith(34, "503412", BusFrame::Lin)), QStringLiteral("none"));
    QCOMPARE(decoded(database, decoder, frameWith(34, "", BusFrame::Lin)), QStringLiteral("none"));
}

/// Signals that do not fit are absent, whatever lies behind the data.
void tst_MessageDecoder::shortFrames()
{
    const Database database = golden("vehicle.dbc");
    const DatabaseDecoder decoder(database);
    BusFrame frame = frameWith(291, "FFFFFFFFFFFF");
    QCOMPARE(decoded(database, decoder, frame), QStringLiteral("EngineSpeed=65535 Torque=18446744073709551615 Gear=15 "
                                                               "OilTemperature=18446744073709551615 Running=1"));
    frame.length = 5;
    QVERIFY(decoded(database, decoder, frame).endsWith(QLatin1String("OilTemperature=18446744073709551615 1 missing")));
    frame.length = 3;
    QCOMPARE(decoded(database, decoder, frame), QStringLiteral("EngineSpeed=65535 4 missing"));
    frame.length = 0;
    QCOMPARE(decoded(database, decoder, frame), QStringLiteral("5 missing"));
}

void tst_MessageDecoder::wanted()
{
    const Database database = golden("multiplexed.dbc");
    const DatabaseDecoder decoder(database, [](const DatabaseMessage &, const DatabaseSignal &signal) {
        return signal.symbol == QLatin1String("Deep") || signal.symbol == QLatin1String("OfOther");
    });
    QCOMPARE(decoded(database, decoder, frameWith(2, "0307020900010000")), QStringLiteral("Deep=9"));
    QCOMPARE(decoded(database, decoder, frameWith(2, "0207020900050100")), QStringLiteral("OfOther=1"));
    QCOMPARE(decoded(database, decoder, frameWith(1, "0102030405060708")), QString());
}

void tst_MessageDecoder::manyRanges()
{
    DatabaseMessage message;
    DatabaseSignal multiplexor;
    multiplexor.length = 16;
    DatabaseSignal signal;
    signal.startBit = 16;
    signal.multiplexor = 0;
    // In no order, one in another, one the wrong way round, two that touch: 5-9, 20-40, 41-41
    signal.multiplexed = {{41, 41}, {20, 40}, {5, 9}, {25, 30}, {60, 50}};
    message.content = {multiplexor, signal};
    SharedTexts texts;
    const MessageDecoder decoder(message, texts, MessageDecoder::Filter());
    for (int value = 0; value < 100; ++value) {
        const BusFrame frame = frameWith(0, QByteArray::number(value, 16).rightJustified(2, '0') + "0000");
        const bool isExpected = (value >= 5 && value <= 9) || (value >= 20 && value <= 41);
        QCOMPARE(decoder.has(1, frame.data.data(), frame.length), isExpected);
    }
}

X9_PLAIN_TEST(tst_MessageDecoder)
#include "tst_MessageDecoder.moc"
