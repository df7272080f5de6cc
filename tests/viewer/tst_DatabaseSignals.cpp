#include "tests/exchange/DatabaseTestData.h"
#include "tests/support/TestProgram.h"
#include "tests/viewer/ViewerFrames.h"
#include "viewer/core/DatabaseSignals.h"
#include "viewer/core/Filter.h"
#include "viewer/core/FrameNames.h"

#include <QtTest>

#include <cmath>
#include <thread>

namespace {

std::shared_ptr<const Database> golden(const char *name)
{
    return std::make_shared<const Database>(parseDatabase(goldenDatabase(QString::fromLatin1(name))));
}

std::shared_ptr<const Database> databaseOf(const char *messages)
{
    return std::make_shared<const Database>(parseDatabase(QByteArray("VERSION \"\"\nBU_: Node\n") + messages));
}

BusFrame onChannel(BusFrame frame, int channel)
{
    frame.channel = static_cast<quint16>(channel);
    return frame;
}

QString textOf(double value)
{
    return std::isnan(value) ? QStringLiteral("none") : QString::number(value, 'g', 15);
}

/// Numbers of the frames that pass.
QString passing(const BusFrameStore &store, const std::shared_ptr<const SignalSource> &source, const char *text)
{
    FilterError error{};
    const std::optional<Filter> filter = Filter::parse(QString::fromLatin1(text), source, error);
    if (!filter) {
        return error.text;
    }
    QStringList rows;
    for (qint64 row = 0; row < store.size(); ++row) {
        if (filter->passes(store, row)) {
            rows.append(QString::number(row + 1));
        }
    }
    return rows.join(QLatin1Char(' '));
}

} // namespace

class tst_DatabaseSignals : public QObject
{
    Q_OBJECT

private slots:
    static void values_data();
    static void values();
    static void valueTexts_data();
    static void valueTexts();
    static void states_data();
    static void states();
    static void framesWithoutValues();
    static void eventTriggered();
    static void names();
    static void sameNames();
    static void names_ofFilters();
    static void channels();
    static void hiddenMessages();
    static void damagedDatabases();
    static void severalThreads();
};

void tst_DatabaseSignals::values_data()
{
    QTest::addColumn<QString>("signal");
    QTest::addColumn<quint32>("identifier");
    QTest::addColumn<int>("flags");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const char *signal, quint32 identifier, int flags, const QByteArray &data,
                        const char *expected) {
        QTest::newRow(name) << QString::fromLatin1(signal) << identifier << flags << data
                            << QString::fromLatin1(expected);
    };
    constexpr int Lin = BusFrame::Lin;
    row("little-endian", "EngineSpeed", 291, 0, "A00F000000000000", "1000");
    row("big-endian, signed", "Torque", 291, 0, "0000FFE000000000", "-21");
    row("big-endian, signed, least", "Torque", 291, 0, "0000800000000000", "-1044");
    row("four bits", "EngineData.Gear", 291, 0, "0000000E00000000", "14");
    row("signed byte with an offset", "OilTemperature", 291, 0, "00000000FF000000", "-41");
    row("one bit, by its long name", "EngineIsRunningWithANameOfMoreThan32Characters", 291, 0, "0000000000010000", "1");
    row("one bit, by its short name", "EngineData.Running", 291, 0, "0000000000FE0000", "0");
    row("too short", "OilTemperature", 291, 0, "00000000", "none");
    row("float, little-endian", "Single", 512, BusFrame::Fd, "0000C03F000000000000000000000000", "1.5");
    row("float, no number", "Single", 512, BusFrame::Fd, "0000C07F000000000000000000000000", "none");
    row("double, big-endian", "Double", 512, BusFrame::Fd, "0000000000000000C00C000000000000", "-3.5");
    row("last of 64 bytes", "Last", 0x18FEF1FE, BusFrame::Extended | BusFrame::Fd, QByteArray(126, '0') + "7B", "123");
    row("without a multiplexor", "Simple.Always", 1, 0, "0905000000000000", "5");
    row("multiplexed", "WithOne", 1, 0, "0105070000000000", "7");
    row("another one is there", "WithOne", 1, 0, "0205070000000000", "none");
    row("multiplexed over two bytes", "WithTwo", 1, 0, "0205070100000000", "263");
    row("multiplexed twice", "Deep", 2, 0, "0307020900010000", "9");
    row("multiplexed twice, range", "Deep", 2, 0, "0414020900010000", "9");
    row("behind the range", "Deep", 2, 0, "0415020900010000", "none");
    row("its multiplexor is not there", "Deep", 2, 0, "0607020900010000", "none");
    row("LIN, physical", "MirrorAngle", 0x10, Lin, "E703", "49.9");
    row("LIN, only a text", "MirrorAngle", 0x10, Lin, "FF03", "none");
    row("LIN, only texts at all", "MirrorState", 0x10, Lin, "0004", "1");
    row("LIN, first of two scales", "Heater", 17, Lin, "64", "100");
    row("LIN, second of two scales", "Heater", 17, Lin, "65", "10");
    row("LIN, none of two scales", "Heater", 17, Lin, "C9", "none");
    row("LIN, BCD", "Mileage", 33, Lin, "003412", "1234");
    row("LIN, no BCD", "Mileage", 33, Lin, "003A12", "none");
    row("LIN, letters", "PartName", 32, Lin, "0000000041424300", "none");
    row("LIN, diagnostic", "MasterReqB0", 60, Lin, "2A00000000000000", "42");
}

void tst_DatabaseSignals::values()
{
    QFETCH(QString, signal);
    QFETCH(quint32, identifier);
    QFETCH(int, flags);
    QFETCH(QByteArray, data);
    const DatabaseSignals source({{golden("vehicle.dbc"), QStringLiteral("vehicle"), {}},
                                  {golden("multiplexed.dbc"), QStringLiteral("multiplexed"), {}},
                                  {golden("body.ldf"), QStringLiteral("body"), {}}});
    const int number = source.signalNumber(signal);
    QVERIFY(number >= 0);
    const BusFrame frame = frameWith(identifier, data, static_cast<quint16>(flags));
    QVERIFY(source.carriers(number).contains(frameKey(frame.identifier, frame.flags)));
    QTEST(textOf(source.value(number, frame)), "expected");
}

void tst_DatabaseSignals::valueTexts_data()
{
    QTest::addColumn<QString>("signal");
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *signal, double value, const char *expected) {
        QTest::addRow("%s %f", signal, value) << QString::fromLatin1(signal) << value << QString::fromLatin1(expected);
    };
    row("Gear", 0, "Neutral");
    row("Gear", 15, "Reverse");
    row("Gear", 2, "");
    row("Gear", 16, ""); // does not fit: not the text of its lowest bits
    row("Gear", 0.5, "");
    row("Gear", 1e300, "");
    row("Gear", std::nan(""), "");
    row("OilTemperature", -41, "Below zero");
    row("OilTemperature", 87, "Not known");
    row("OilTemperature", -1, "");
    row("EngineSpeed", 0, "");
    row("MirrorState", 1, "out");
    row("MirrorAngle", 52.3, "");
}

void tst_DatabaseSignals::valueTexts()
{
    QFETCH(QString, signal);
    QFETCH(double, value);
    const DatabaseSignals source(
        {{golden("vehicle.dbc"), QStringLiteral("vehicle"), {}}, {golden("body.ldf"), QStringLiteral("body"), {}}});
    QTEST(source.valueText(source.signalNumber(signal), value), "expected");
}

void tst_DatabaseSignals::states_data()
{
    QTest::addColumn<QByteArray>("definition");
    QTest::addColumn<QByteArray>("texts");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const char *definition, const char *texts, const char *expected) {
        QTest::newRow(name) << QByteArray(definition) << QByteArray(texts) << QString::fromLatin1(expected);
    };
    row("whole numbers", "0|8@1+ (1,0)", R"(0 "Off" 1 "On")", "0=Off 1=On");
    row("physical", "0|8@1+ (0.5,-40)", R"(0 "Off" 250 "On")", "-40=Off 85=On");
    row("negative", "0|8@1- (2,0)", R"(-1 "Low" 127 "High")", "-2=Low 254=High");
    row("too long", "0|4@1+ (1,0)", R"(17 "On")", "");
    row("twice", "0|8@1+ (1,0)", R"(1 "First" 1 "Second" 2 "First")", "1=First 2=First");
    row("none", "0|8@1+ (1,0)", "", "");
}

void tst_DatabaseSignals::states()
{
    QFETCH(const QByteArray, definition);
    QFETCH(const QByteArray, texts);
    const DatabaseSignals source({{databaseOf("BO_ 1 A: 8 Node\n SG_ S : " + definition +
                                              " [0|0] \"\" Node\n"
                                              "VAL_ 1 S " +
                                              texts + " ;\n"),
                                   QStringLiteral("a"),
                                   {}}});
    QStringList found;
    const QVector<SignalSource::State> states = source.states(source.signalNumber(QStringLiteral("S")));
    for (const SignalSource::State &state : states) {
        found.append(QStringLiteral("%1=%2").arg(state.value).arg(state.text));
    }
    QTEST(found.join(QLatin1Char(' ')), "expected");
}

void tst_DatabaseSignals::framesWithoutValues()
{
    const DatabaseSignals source(
        {{golden("vehicle.dbc"), QStringLiteral("vehicle"), {}}, {golden("body.ldf"), QStringLiteral("body"), {}}});
    const int speed = source.signalNumber(QStringLiteral("EngineSpeed"));
    const int state = source.signalNumber(QStringLiteral("MirrorState"));
    BusFrame frame = frameWith(291, "A00F000000000000");
    QCOMPARE(source.value(speed, frame), 1000.0);
    frame.direction = BusFrame::Refused;
    QVERIFY(std::isnan(source.value(speed, frame)));
    QVERIFY(std::isnan(source.value(speed, frameWith(291, "A00F000000000000", BusFrame::Remote))));
    QVERIFY(std::isnan(source.value(speed, frameWith(291, "A00F000000000000", BusFrame::Error))));
    QVERIFY(std::isnan(source.value(speed, frameWith(291, "A00F000000000000", BusFrame::Extended))));
    frame = frameWith(0x10, "0004", BusFrame::Lin);
    frame.linState = BusFrame::ChecksumV2;
    QCOMPARE(source.value(state, frame), 1.0);
    frame.linState = BusFrame::WrongChecksumV2;
    QVERIFY(std::isnan(source.value(state, frame)));
}

void tst_DatabaseSignals::eventTriggered()
{
    const DatabaseSignals source({{golden("body.ldf"), QStringLiteral("body"), {}}});
    const int mileage = source.signalNumber(QStringLiteral("Mileage"));
    QCOMPARE(source.carriers(mileage), (QVector<FrameKey>{LinKey | 33U, LinKey | 34U}));
    QCOMPARE(source.value(mileage, frameWith(34, "E13412", BusFrame::Lin)), 1234.0);
    QVERIFY(std::isnan(source.value(mileage, frameWith(34, "A03412", BusFrame::Lin)))); // another frame's answer
    const FrameNames names(&source);
    QCOMPARE(names.of(LinKey | 34U, 0), QStringLiteral("SeatEvent"));
    QCOMPARE(names.of(LinKey | 33U, 0), QStringLiteral("SeatMileage"));
}

void tst_DatabaseSignals::names()
{
    const DatabaseSignals source({{golden("vehicle.dbc"), QStringLiteral("vehicle"), {}}});
    const QStringList offered = source.signalNames();
    QCOMPARE(source.unit(source.signalNumber(QStringLiteral("EngineSpeed"))), QStringLiteral("rpm"));
    QVERIFY(offered.contains(QStringLiteral("EngineSpeed")));
    QVERIFY(offered.contains(QStringLiteral("EngineData.EngineSpeed")));
    QVERIFY(!offered.contains(QStringLiteral("vehicle.EngineData.EngineSpeed"))); // needs no telling apart
    for (const QString &name : offered) {
        QVERIFY2(source.signalNumber(name) >= 0, qPrintable(name));
    }
    const int speed = source.signalNumber(QStringLiteral("EngineSpeed"));
    QCOMPARE(source.expression(speed), QStringLiteral("EngineData.EngineSpeed"));
    QCOMPARE(source.signalNumber(source.expression(speed)), speed);
    QCOMPARE(source.signalNumber(QStringLiteral("enginespeed")), -1);
    QCOMPARE(source.signalNumber(QString()), -1);
    QCOMPARE(source.message(source.messageOfSignal(speed)).name, QStringLiteral("EngineData"));
}

void tst_DatabaseSignals::sameNames()
{
    const auto first = databaseOf("BO_ 1 A: 8 Node\n SG_ S : 0|8@1+ (1,0) [0|0] \"\" Node\n"
                                  " SG_ T : 8|8@1+ (1,0) [0|0] \"\" Node\n"
                                  "BO_ 2 B: 8 Node\n SG_ S : 8|8@1+ (1,0) [0|0] \"\" Node\n");
    const auto second = databaseOf("BO_ 3 A: 8 Node\n SG_ T : 16|8@1+ (1,0) [0|0] \"\" Node\n");
    const DatabaseSignals source({{first, QStringLiteral("first file"), {}}, {second, QStringLiteral("2nd-file"), {}}});
    QCOMPARE(source.signalNumber(QStringLiteral("S")), -1);
    QCOMPARE(source.signalNumber(QStringLiteral("A.S")), 0);
    QCOMPARE(source.signalNumber(QStringLiteral("B.S")), 2);
    QCOMPARE(source.signalNumber(QStringLiteral("A.T")), -1);
    QCOMPARE(source.signalNumber(QStringLiteral("first_file.A.T")), 1);
    QCOMPARE(source.signalNumber(QStringLiteral("_2nd_file.A.T")), 3);
    QCOMPARE(source.expression(3), QStringLiteral("_2nd_file.A.T"));
    QCOMPARE(source.signalNames(), (QStringList{QStringLiteral("A.S"), QStringLiteral("first_file.A.T"),
                                                QStringLiteral("B.S"), QStringLiteral("_2nd_file.A.T")}));
    BusFrameStore store;
    fill(store, {canFrame(0, 1, "0102030405060708"), canFrame(1, 3, "0102030405060708")});
    const auto shared = std::make_shared<DatabaseSignals>(std::vector<DatabaseSignals::Part>{
        {first, QStringLiteral("first file"), {}}, {second, QStringLiteral("2nd-file"), {}}});
    QCOMPARE(passing(store, shared, "_2nd_file.A.T == 3"), QStringLiteral("2"));
    QCOMPARE(passing(store, shared, "first_file.A.T == 2 and A.S == 1"), QStringLiteral("1"));
}

void tst_DatabaseSignals::names_ofFilters()
{
    BusFrameStore store;
    fill(store, {onChannel(canFrame(0, 1, "01"), 0), onChannel(canFrame(1, 1, "01"), 1), canFrame(2, 2, "01"),
                 canFrame(3, 1, "01", BusFrame::Extended)});
    const auto named = [](const char *name, const char *identifier) {
        return databaseOf(QByteArray("BO_ ") + identifier + ' ' + name +
                          ": 8 Node\n SG_ S : 0|8@1+ (1,0) [0|0] \"\" Node\n");
    };
    const auto source = std::make_shared<DatabaseSignals>(
        std::vector<DatabaseSignals::Part>{{named("Door", "1"), QStringLiteral("a"), {}},
                                           {named("Window", "1"), QStringLiteral("b"), {1}},
                                           {named("Doorbell", "2"), QStringLiteral("c"), {}}});
    QCOMPARE(passing(store, source, "name ~ \"door\""), QStringLiteral("1 3"));
    QCOMPARE(passing(store, source, "name == \"Door\""), QStringLiteral("1"));
    QCOMPARE(passing(store, source, "name == \"Window\""), QStringLiteral("2"));
    QCOMPARE(passing(store, source, "not name == \"Window\""), QStringLiteral("1 3 4"));
    QCOMPARE(passing(store, source, "b.Window.S == 1"), QStringLiteral("2"));
    QCOMPARE(passing(store, source, "Door.S == 1"), QStringLiteral("1"));
    const FrameNames names(source.get());
    QCOMPARE(names.of(1, 0), QStringLiteral("Door"));
    QCOMPARE(names.of(1, 1), QStringLiteral("Window"));
    QCOMPARE(names.of(7, 1), QString());
}

void tst_DatabaseSignals::channels()
{
    const auto database = databaseOf("BO_ 1 A: 8 Node\n SG_ S : 0|8@1+ (1,0) [0|0] \"\" Node\n");
    const DatabaseSignals source({{database, QStringLiteral("a"), {0, 2}}});
    const BusFrame frame = frameWith(1, "05");
    QCOMPARE(source.value(0, onChannel(frame, 0)), 5.0);
    QVERIFY(std::isnan(source.value(0, onChannel(frame, 1))));
    QCOMPARE(source.value(0, onChannel(frame, 2)), 5.0);
    QCOMPARE(source.messageOf(onChannel(frame, 2)), 0);
    QCOMPARE(source.messageOf(onChannel(frame, 1)), -1);
}

void tst_DatabaseSignals::hiddenMessages()
{
    const auto first = databaseOf("BO_ 1 Old: 8 Node\n SG_ S : 0|8@1+ (1,0) [0|0] \"\" Node\n");
    const auto second = databaseOf("BO_ 1 New: 8 Node\n SG_ S : 0|8@1+ (1,100) [0|0] \"\" Node\n");
    const BusFrame frame = frameWith(1, "05");
    const DatabaseSignals both({{first, QStringLiteral("a"), {}}, {second, QStringLiteral("b"), {}}});
    QCOMPARE(both.hidden().size(), std::size_t(1));
    QCOMPARE(both.hidden().front().message, 1);
    QCOMPARE(both.hidden().front().by, 0);
    QCOMPARE(both.signalNumber(QStringLiteral("S")), 0); // as nothing else can be meant
    QCOMPARE(both.signalNumber(QStringLiteral("New.S")), -1);
    QCOMPARE(both.messages().size(), 1);
    const DatabaseSignals apart({{first, QStringLiteral("a"), {}}, {second, QStringLiteral("b"), {1}}});
    QVERIFY(apart.hidden().empty());
    const int ofNew = apart.signalNumber(QStringLiteral("New.S"));
    QCOMPARE(apart.value(ofNew, onChannel(frame, 1)), 105.0);
    QVERIFY(std::isnan(apart.value(ofNew, onChannel(frame, 0))));
    QCOMPARE(apart.value(apart.signalNumber(QStringLiteral("Old.S")), onChannel(frame, 0)), 5.0);
}

void tst_DatabaseSignals::damagedDatabases()
{
    for (const char *name : {"broken.dbc", "broken.ldf", "gbk.dbc", "crlf.dbc", "old.ldf", "windows_1252.dbc"}) {
        const DatabaseSignals source({{golden(name), QString::fromLatin1(name), {}}, {golden(name), QString(), {3}}});
        BusFrame frame = frameWith(0, "FFFFFFFFFFFFFFFF");
        for (const SignalSource::Message &message : source.messages()) {
            frame.identifier = message.key & KeyIdentifier;
            frame.flags = static_cast<quint16>(((message.key & LinKey) != 0 ? BusFrame::Lin : 0) |
                                               ((message.key & ExtendedKey) != 0 ? BusFrame::Extended : 0));
            for (int length = 0; length <= BusFrame::MaxLength; ++length) {
                frame.length = static_cast<quint8>(length);
                const int number = source.messageOf(frame);
                for (int i = 0; number >= 0 && i < source.message(number).content.size(); ++i) {
                    const int signal = source.firstSignal(number) + i;
                    source.valueText(signal, source.value(signal, frame));
                }
            }
        }
        for (const QString &offered : source.signalNames()) {
            FilterError error{};
            QVERIFY2(Filter::parse(offered + QStringLiteral(" > 1"),
                                   std::make_shared<DatabaseSignals>(std::vector<DatabaseSignals::Part>{
                                       {golden(name), QString::fromLatin1(name), {}}, {golden(name), QString(), {3}}}),
                                   error),
                     qPrintable(offered + error.text));
        }
    }
    const DatabaseSignals empty({});
    QVERIFY(empty.messages().isEmpty() && empty.signalNames().isEmpty());
    QCOMPARE(empty.messageOf(frameWith(1, "05")), -1);
}

void tst_DatabaseSignals::severalThreads()
{
    const DatabaseSignals source({{golden("vehicle.dbc"), QStringLiteral("vehicle"), {}},
                                  {golden("multiplexed.dbc"), QStringLiteral("multiplexed"), {}}});
    const int speed = source.signalNumber(QStringLiteral("EngineSpeed"));
    const auto sum = [&source, speed] {
        double total = 0;
        for (int i = 0; i < 10000; ++i) {
            BusFrame frame = frameWith(291, "0000000000000000");
            frame.data[0] = static_cast<uchar>(i);
            total += source.value(speed, frame);
            total += source.valueText(source.signalNumber(QStringLiteral("Gear")), i % 16).size();
        }
        return total;
    };
    const double expected = sum();
    std::vector<double> found(3);
    std::vector<std::thread> threads;
    threads.reserve(found.size());
    for (double &result : found) {
        threads.emplace_back([&result, &sum] { result = sum(); });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    QCOMPARE(found, std::vector<double>(3, expected));
}

X9_PLAIN_TEST(tst_DatabaseSignals)
#include "tst_DatabaseSignals.moc"
