#include "tests/exchange/DatabaseTestData.h"
#include "tests/support/TestProgram.h"
#include "viewer/core/FrameBits.h"
#include "viewer/core/SignalCells.h"

#include <QtTest>

namespace {

std::unique_ptr<DatabaseSignals> signalsOf(const char *name)
{
    return std::make_unique<DatabaseSignals>(std::vector<DatabaseSignals::Part>{
        {std::make_shared<const Database>(parseDatabase(goldenDatabase(QString::fromLatin1(name)))),
         QString::fromLatin1(name),
         {}}});
}

/// A letter for each bit from the first byte's highest on, a row for each byte: A for the message's first signal.
QString drawn(const FrameBits &bits)
{
    QStringList rows;
    for (int byte = 0; byte < bits.bitCount() / 8; ++byte) {
        QString row;
        for (int bit = 7; bit >= 0; --bit) {
            const int place = bits.at(byte * 8 + bit);
            row += place >= 0 ? QChar('A' + place) : QLatin1Char('.');
        }
        rows.append(row);
    }
    return rows.join(QLatin1Char(' '));
}

} // namespace

class tst_FrameBits : public QObject
{
    Q_OBJECT

private slots:
    static void places_data();
    static void places();
    static void overlaps();
    static void withoutSignals();
    static void isBounded();
    static void cells_data();
    static void cells();
};

void tst_FrameBits::places_data()
{
    QTest::addColumn<QString>("database");
    QTest::addColumn<quint32>("identifier");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<int>("missing");
    const auto row = [](const char *name, const char *database, quint32 identifier, const char *data,
                        const char *expected, int missing) {
        QTest::newRow(name) << QString::fromLatin1(database) << identifier << QByteArray(data)
                            << QString::fromLatin1(expected) << missing;
    };
    row("both byte orders", "vehicle.dbc", 291, "0000000000000000",
        "AAAAAAAA AAAAAAAA BBBBBBBB BBBBCCCC DDDDDDDD .......E ........ ........", 0);
    row("cut in a big-endian signal", "vehicle.dbc", 291, "000000", "AAAAAAAA AAAAAAAA ........", 4);
    row("without data", "vehicle.dbc", 291, "", "", 5);
    row("one page", "multiplexed.dbc", 1, "0100000000000000",
        "AAAAAAAA BBBBBBBB CCCCCCCC ........ ........ ........ ........ ........", 0);
    row("other page", "multiplexed.dbc", 1, "0200000000000000",
        "AAAAAAAA BBBBBBBB DDDDDDDD DDDDDDDD ........ ........ ........ ........", 0);
    row("no page", "multiplexed.dbc", 1, "0900000000000000",
        "AAAAAAAA BBBBBBBB ........ ........ ........ ........ ........ ........", 0);
    row("pages of pages", "multiplexed.dbc", 2, "0307020900010000",
        "BBBBBBBB CCCCCCCC DDDDDDDD AAAAAAAA ........ EEEEEEEE ........ ........", 0);
}

void tst_FrameBits::places()
{
    QFETCH(QString, database);
    QFETCH(quint32, identifier);
    QFETCH(QByteArray, data);
    QFETCH(int, missing);
    const auto source = signalsOf(qPrintable(database));
    const BusFrame frame = frameWith(identifier, data);
    const FrameBits bits(*source, source->messageOf(frame), frame);
    QTEST(drawn(bits), "expected");
    QCOMPARE(bits.missing(), missing);
    for (const int place : bits.places()) {
        QCOMPARE(static_cast<int>(bits.bitsOf(place).size()),
                 int(source->message(source->messageOf(frame)).content[place].length));
        QVERIFY(bits.isAt(place, bits.bitsOf(place).front()));
    }
}

void tst_FrameBits::overlaps()
{
    const DatabaseSignals source({{std::make_shared<const Database>(parseDatabase(
                                       "VERSION \"\"\nBU_: N\nBO_ 1 A: 2 N\n SG_ Whole : 0|16@1+ (1,0) [0|0] \"\" N\n"
                                       " SG_ Part : 4|4@1+ (1,0) [0|0] \"\" N\n")),
                                   QStringLiteral("a"),
                                   {}}});
    const BusFrame frame = frameWith(1, "8001");
    const FrameBits bits(source, 0, frame);
    QCOMPARE(bits.allAt(5), (std::vector<int>{0, 1}));
    QCOMPARE(bits.allAt(8), std::vector<int>{0});
    QVERIFY(bits.allAt(16).empty() && bits.allAt(-1).empty());
    QVERIFY(bits.isSet(7) && bits.isSet(8) && !bits.isSet(0));
    QVERIFY(bits.bitsOf(2).empty());
}

void tst_FrameBits::withoutSignals()
{
    const auto source = signalsOf("vehicle.dbc");
    const BusFrame frame = frameWith(0x7FF, "0102");
    const FrameBits bits(*source, source->messageOf(frame), frame);
    QCOMPARE(bits.bitCount(), 16);
    QCOMPARE(bits.at(3), -1);
    const FrameBits remote(frameWith(291, "0102", BusFrame::Remote));
    QCOMPARE(remote.bitCount(), 0);
    QCOMPARE(FrameBits().bitCount(), 0);
}

void tst_FrameBits::isBounded()
{
    QByteArray text("VERSION \"\"\nBU_: N\nBO_ 1 A: 8 N\n");
    for (int i = 0; i < 5000; ++i) {
        text += " SG_ S" + QByteArray::number(i) + " : 0|64@1+ (1,0) [0|0] \"\" N\n";
    }
    const DatabaseSignals source({{std::make_shared<const Database>(parseDatabase(text)), QStringLiteral("a"), {}}});
    const FrameBits bits(source, 0, frameWith(1, "0102030405060708"));
    QCOMPARE(bits.places().size(), std::size_t(FrameBits::MaxSignals));
    QVERIFY(bits.isCut());
}

void tst_FrameBits::cells_data()
{
    QTest::addColumn<QString>("database");
    QTest::addColumn<QString>("signal");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *database, const char *signal, const char *data, const char *expected) {
        QTest::addRow("%s %s", signal, data) << QString::fromLatin1(database) << QString::fromLatin1(signal)
                                             << QByteArray(data) << QString::fromUtf8(expected);
    };
    row("vehicle.dbc", "EngineSpeed", "0300000000000000", "3|0.75|rpm|");
    row("vehicle.dbc", "Torque", "0000FFE000000000", "-2|-21|Nm|");
    row("vehicle.dbc", "Gear", "0000000E00000000", "14|14||Invalid, or \"broken\"");
    row("vehicle.dbc", "OilTemperature", "00000000FF000000", "-1|-41|°C|Below zero");
    row("vehicle.dbc", "Single", "0000C03F", "1.5|1.5||");
    row("body.ldf", "MirrorAngle", "FF03", "1023|||no signal, or \"lost\"");
    row("body.ldf", "MirrorAngle", "E703", "999|49.9|deg|");
    row("body.ldf", "MirrorState", "0004", "1|||out");
    row("body.ldf", "Heater", "66", "102|20|W|");
    row("body.ldf", "PartName", "0000000041424300", "414243|||ABC");
    row("body.ldf", "Mileage", "003412", "4660|1234||");
}

void tst_FrameBits::cells()
{
    QFETCH(QString, database);
    QFETCH(QString, signal);
    QFETCH(QByteArray, data);
    const auto source = signalsOf(qPrintable(database));
    const BusFrame frame = frameWith(0, data);
    const SignalCells found = signalCells(source->signalDecoder(source->signalNumber(signal)), frame.data.data());
    const QString texts = QStringList{found.raw, found.physical, found.unit, found.text}.join(QLatin1Char('|'));
    QTEST(texts, "expected");
}

X9_PLAIN_TEST(tst_FrameBits)
#include "tst_FrameBits.moc"
