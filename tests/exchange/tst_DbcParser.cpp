#include "exchange/database/DbcParser.h"
#include "tests/exchange/DatabaseTestData.h"
#include "tests/support/TestProgram.h"

#include <QElapsedTimer>
#include <QtTest>

#include <random>

class tst_DbcParser : public QObject
{
    Q_OBJECT

private slots:
    static void vehicle();
    static void vehicleSignals();
    static void multiplexed();
    static void lineEndsAndBlanks();
    static void encodings_data();
    static void encodings();
    static void broken();
    static void what_data();
    static void what();
    static void everyCut();
    static void randomChanges();
    static void bounded_data();
    static void bounded();
    static void nestedTooDeep();
    static void files();
};

namespace {

Database golden(const char *name)
{
    return parseDatabase(goldenDatabase(QString::fromLatin1(name)));
}

const DatabaseSignal &signalOf(const Database &database, int message, const char *symbol)
{
    const DatabaseMessage &found = database.messages.at(message);
    return found.content.at(found.signalNumber(QString::fromLatin1(symbol)));
}

} // namespace

void tst_DbcParser::vehicle()
{
    const Database database = golden("vehicle.dbc");
    QCOMPARE(findingsOf(database), QStringList());
    QCOMPARE(database.bus, Database::Can);
    QVERIFY(database.version.startsWith(QLatin1String("HIPB")));
    QCOMPARE(database.encoding, QStringLiteral("UTF-8"));
    QCOMPARE(database.nodes.join(QLatin1Char(' ')), QStringLiteral("Engine Gearbox Dashboard"));
    QCOMPARE(database.messages.size(), 3);

    const DatabaseMessage &engine = database.messages[0];
    QCOMPARE(engine.name, QStringLiteral("EngineData"));
    QCOMPARE(engine.identifier, 291U);
    QVERIFY(!engine.extended);
    QVERIFY(!engine.fd);
    QCOMPARE(engine.length, 8);
    QCOMPARE(engine.cycleTime.value_or(0), 10.0);
    QCOMPARE(engine.senders.join(QLatin1Char(' ')), QStringLiteral("Engine Dashboard"));
    QCOMPARE(engine.comment, QStringLiteral("Every 10 ms.\nThe second line; a semicolon, and \"quotation marks\"."));
    QCOMPARE(engine.place.line, 43);
    QCOMPARE(engine.place.column, 5);
    QCOMPARE(engine.content.size(), 5);

    const DatabaseMessage &extended = database.messages[1];
    QCOMPARE(extended.name, QStringLiteral("ExtendedMessageWithANameOfMoreThan32Characters"));
    QCOMPARE(extended.symbol, QStringLiteral("ExtendedMessage"));
    QCOMPARE(extended.identifier, 0x18FEF1FEU);
    QVERIFY(extended.extended);
    QVERIFY(extended.fd);
    QVERIFY(!extended.cycleTime); // the default of 0 stands for none
    QVERIFY(database.messages[2].fd);
}

void tst_DbcParser::vehicleSignals()
{
    const Database database = golden("vehicle.dbc");
    const DatabaseSignal &torque = signalOf(database, 0, "Torque");
    QCOMPARE(int(torque.startBit), 23);
    QCOMPARE(int(torque.length), 12);
    QCOMPARE(torque.byteOrder, DatabaseSignal::BigEndian);
    QCOMPARE(torque.type, DatabaseSignal::Signed);
    QCOMPARE(torque.scales.size(), 1);
    QCOMPARE(torque.scales[0].factor, 0.5);
    QCOMPARE(torque.scales[0].offset, -20.0);
    QCOMPARE(torque.unit(), QStringLiteral("Nm"));
    QCOMPARE(torque.minimum, -1044.0);
    QCOMPARE(torque.maximum, 1003.5);
    QCOMPARE(torque.receivers, QStringList(QStringLiteral("Gearbox")));

    const DatabaseSignal &speed = signalOf(database, 0, "EngineSpeed");
    QCOMPARE(speed.byteOrder, DatabaseSignal::LittleEndian);
    QCOMPARE(speed.type, DatabaseSignal::Unsigned);
    QCOMPARE(speed.comment, QStringLiteral("Crankshaft"));
    QCOMPARE(speed.receivers.size(), 2);
    QCOMPARE(signalOf(database, 0, "OilTemperature").receivers.size(), 0);
    QCOMPARE(signalOf(database, 0, "OilTemperature").unit(), QStringLiteral("°C"));
    QCOMPARE(signalOf(database, 0, "OilTemperature").texts[0].value, ~quint64(0));
    QCOMPARE(signalOf(database, 0, "Gear").texts.size(), 4);
    QCOMPARE(signalOf(database, 0, "Gear").texts[2].value, quint64(14));
    QCOMPARE(signalOf(database, 0, "Gear").texts[2].text, QStringLiteral("Invalid, or \"broken\""));
    QCOMPARE(signalOf(database, 0, "Running").name, QStringLiteral("EngineIsRunningWithANameOfMoreThan32Characters"));
    QCOMPARE(signalOf(database, 0, "Running").texts.size(), 2); // of the table
    QCOMPARE(signalOf(database, 0, "Running").texts[0].text, QStringLiteral("On"));
    QCOMPARE(signalOf(database, 2, "Single").type, DatabaseSignal::Float);
    QCOMPARE(signalOf(database, 2, "Double").type, DatabaseSignal::Float);
}

void tst_DbcParser::multiplexed()
{
    const Database database = golden("multiplexed.dbc");
    QCOMPARE(findingsOf(database), QStringList());
    const DatabaseMessage &simple = database.messages[0];
    QVERIFY(simple.content[0].isMultiplexor);
    QCOMPARE(simple.content[0].multiplexor, -1);
    QCOMPARE(simple.content[1].multiplexor, -1);
    QCOMPARE(simple.content[2].multiplexor, 0);
    QCOMPARE(simple.content[2].multiplexed[0].first, quint64(1));
    QCOMPARE(simple.content[2].multiplexed[0].last, quint64(1));
    const DatabaseMessage &nested = database.messages[1];
    QCOMPARE(nested.content[0].multiplexor, 2);
    QCOMPARE(nested.content[0].multiplexed.size(), 2);
    QCOMPARE(nested.content[0].multiplexed[1].last, quint64(20));
    QVERIFY(nested.content[2].isMultiplexor);
    QCOMPARE(nested.content[2].multiplexor, 1);
    QCOMPARE(nested.content[2].multiplexed[0].last, quint64(5));
    QCOMPARE(nested.content[5].multiplexor, 4);
}

void tst_DbcParser::lineEndsAndBlanks()
{
    const Database database = golden("crlf.dbc");
    QCOMPARE(findingsOf(database), QStringList());
    QCOMPARE(database.messages.size(), 1);
    QCOMPARE(database.messages[0].content.size(), 2);
    QCOMPARE(database.messages[0].content[0].comment, QStringLiteral("two\nlines"));
    const DatabaseSignal &second = database.messages[0].content[1];
    QCOMPARE(second.scales[0].offset, 5.0);
    QCOMPARE(second.unit(), QStringLiteral("V"));
    QCOMPARE(second.receivers.size(), 2);
    QCOMPARE(database.nodes.size(), 2);
}

void tst_DbcParser::encodings_data()
{
    QTest::addColumn<QString>("encoding");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("unit");
    QTest::newRow("windows_1252") << "windows-1252" << QStringLiteral("Außentemperatur") << QStringLiteral("°C");
    QTest::newRow("gbk") << "GBK" << QStringLiteral("车外温度") << QStringLiteral("℃");
    QTest::newRow("utf8_mark") << "UTF-8" << QStringLiteral("温度") << QStringLiteral("℃");
}

void tst_DbcParser::encodings()
{
    QFETCH(QString, encoding);
    const Database database = golden(qPrintable(QString::fromLatin1(QTest::currentDataTag()) + QLatin1String(".dbc")));
    QCOMPARE(findingsOf(database), QStringList());
    QCOMPARE(database.encoding.toLower(), encoding.toLower());
    QCOMPARE(database.messages.size(), 1);
    QTEST(database.messages[0].content[0].name, "name");
    QTEST(database.messages[0].content[0].unit(), "unit");
    // What it was taken for can be said.
    const Database latin = parseDatabase(goldenDatabase(QStringLiteral("gbk.dbc")), QStringLiteral("windows-1252"));
    QCOMPARE(latin.encoding, QStringLiteral("windows-1252"));
    QVERIFY(latin.nodes[0] != QStringLiteral("网关"));
}

void tst_DbcParser::broken()
{
    const Database database = golden("broken.dbc");
    const QString findings = findingsOf(database).join(QLatin1Char('\n'));
    QCOMPARE(findings,
             QStringLiteral("1:9 Expected here: a quoted text\n"
                            "3:1 The keyword WHATEVER_ is not known\n"
                            "5:6 What multiplexes One is left out, goes round in a circle or is nested too deep\n"
                            "6:17 Expected here: @\n"
                            "7:18 The length of a signal is from 1 to 64 bits: TooLong is left out\n"
                            "8:19 The length of a signal is from 1 to 64 bits: NoLength is left out\n"
                            "9:6 Beyond needs 9 bytes, its message has 8\n"
                            "10:6 Far does not fit into any frame and is left out\n"
                            "11:31 Expected here: a number\n"
                            "12:13 Expected here: M, m0, m0M\n"
                            "13:6 LostMux is multiplexed by nothing that the message has\n"
                            "14:6 What multiplexes Two is left out, goes round in a circle or is nested too deep\n"
                            "14:44 Expected here: the end of the line\n"
                            "15:6 Its message has another signal with the name One\n"
                            "16:5 Another message has this identifier, or none can have it: Double is left out\n"
                            "18:5 The identifier of Standard has more than 11 bits and is taken for an extended one\n"
                            "20:5 Another message has this identifier, or none can have it: NoIdentifier is left out\n"
                            "21:5 Long is longer than any frame\n"
                            "23:5 Expected here: a whole number\n"
                            "24:9 No message has the identifier 77\n"
                            "25:13 Good has no signal Nobody\n"
                            "26:24 Expected here: a quoted text\n"
                            "27:24 A float has 32 bits and the type 1, a double 64 and the type 2\n"
                            "28:17 This text has no end\n"
                            "29:1 Expected here: a whole number\n"
                            "31:31 Expected here: a number"));
    QCOMPARE(database.findingCount, database.findings.size());
    QCOMPARE(database.messages.size(), 4); // the first one is behind the unknown keyword
    QStringList kept;
    for (const DatabaseSignal &signal : database.messages[1].content) {
        kept.append(signal.name);
    }
    QCOMPARE(kept.join(QLatin1Char(' ')), QStringLiteral("Beyond BadRange One"));
    QCOMPARE(signalOf(database, 1, "Beyond").texts.size(), 1); // the last line
}

void tst_DbcParser::what_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("finding");
    const QByteArray message = "BO_ 1 M: 8 N\n";
    QTest::newRow("column counts characters") << QByteArray("CM_ \"äöü\" x;") << "1:11 Expected here: ;";
    QTest::newRow("unknown keyword with a semicolon")
        << QByteArray("NEW_ \"a;b\" 1 ; ") + message << "1:1 The keyword NEW_ is not known";
    QTest::newRow("unknown keyword without one")
        << QByteArray("NEW_ 1\n") + message << "1:1 The keyword NEW_ is not known";
    QTest::newRow("no keyword") << QByteArray("\n\n  [] ;") + message << "3:3 Expected here: a keyword";
    QTest::newRow("signal without a message") << QByteArray(" SG_ A : 0|8@1+ (1,0) [0|1] \"\" N\n") + message << "";
    QTest::newRow("backslash at a text's end") << message + "CM_ BO_ 1 \"C:\\\";\n"
                                               << "";
    QTest::newRow("text without an end") << message + "CM_ BO_ 1 \"open\nVAL_ 1\n"
                                         << "2:11 This text has no end";
    QTest::newRow("30 bits") << QByteArray("BO_ 3758096383 M: 8 N")
                             << "1:5 Another message has this identifier, or none can have it: M is left out";
    QTest::newRow("nothing") << QByteArray() << "";
    QTest::newRow("semicolons") << QByteArray(";;\n;") << "";
    QTest::newRow("number too large") << message + " SG_ A : 99999999999999999999|8@1+ (1,0) [0|1] \"\" N\n"
                                      << "2:10 Expected here: a whole number";
}

void tst_DbcParser::what()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, finding);
    const Database database = parseDatabase(text);
    QCOMPARE(findingsOf(database).value(0), finding);
    QCOMPARE(database.messages.size(), text.contains(" M: 8") && !finding.contains(QLatin1String("left out")) ? 1 : 0);
}

/// Whatever is missing at the end, what was there before is read.
void tst_DbcParser::everyCut()
{
    const QByteArray whole = goldenDatabase(QStringLiteral("vehicle.dbc"));
    QVERIFY(whole.size() > 2500);
    const int engine = whole.indexOf("BO_ 2566844926");
    for (int size = 0; size < whole.size(); ++size) {
        const Database database = parseDatabase(whole.left(size));
        if (size >= engine) {
            QVERIFY(!database.messages.isEmpty());
            QCOMPARE(database.messages[0].content.size(), 5);
        }
    }
}

void tst_DbcParser::randomChanges()
{
    std::mt19937 random(20);
    const QByteArray characters = "\"\\;:|@+-()[],{}\n\r\0\x80\xFF m0M1_SGBOVAL";
    for (const char *name : {"vehicle.dbc", "multiplexed.dbc", "broken.dbc", "gbk.dbc"}) {
        const QByteArray whole = goldenDatabase(QString::fromLatin1(name));
        for (int i = 0; i < 300; ++i) {
            QByteArray changed = whole;
            for (unsigned k = 0; k < 1 + random() % 20; ++k) {
                const int at = static_cast<int>(random() % static_cast<unsigned>(changed.size()));
                const int size = static_cast<int>(random() % 3);
                changed.replace(at, size, characters.mid(static_cast<int>(random() % 40), 1));
            }
            const Database database = parseDatabase(changed);
            for (const DatabaseMessage &message : database.messages) {
                for (const DatabaseSignal &signal : message.content) {
                    QVERIFY(signal.length >= 1 && signal.length <= 64 && bytesNeeded(signal) <= BusFrame::MaxLength);
                    QVERIFY(signal.multiplexor < message.content.size());
                }
            }
        }
    }
}

/// Files that were made to take time or memory: each of megabytes, read in a second or so.
void tst_DbcParser::bounded_data()
{
    QTest::addColumn<QByteArray>("text");
    const int many = 1000000;
    const QByteArray message = "BO_ 1 M: 64 N\n";
    const QByteArray signal = " SG_ A : 0|8@1+ (1,0) [0|1] \"\" N\n";
    QTest::newRow("quotation marks") << QByteArray(many, '"');
    QTest::newRow("escaped quotation marks") << QByteArray("CM_ \"\n") + QByteArray("\\\"\n").repeated(many);
    QTest::newRow("escaped ones and an end")
        << QByteArray("VAL_ 1 A 1 \"\n") + QByteArray("\\\"\n").repeated(many) + '"';
    QTest::newRow("braces") << QByteArray(many, '{');
    QTest::newRow("zeros") << QByteArray(many, '\0');
    QTest::newRow("one line") << message + "CM_ " + QByteArray(" x").repeated(many);
    QTest::newRow("blanks") << message + " SG_ A" + QByteArray(4 * many, ' ');
    QTest::newRow("a long name") << "BO_ 1 " + QByteArray(4 * many, 'x') + ": 8 N\n";
    QTest::newRow("a long number") << "BO_ " + QByteArray(4 * many, '1') + " M: 8 N\n";
    QTest::newRow("signals") << message + signal.repeated(many / 4);
    QTest::newRow("multiplexed signals")
        << message + QByteArray(" SG_ A m0M : 0|8@1+ (1,0) [0|1] \"\" N\n").repeated(many / 4);
    QTest::newRow("texts") << message + signal + "VAL_ 1 A" + QByteArray(" 1 \"\"").repeated(many + 1) + ";";
    QTest::newRow("ranges") << message + signal + "SG_MUL_VAL_ 1 A A " + QByteArray("1-2,").repeated(many + 1) + "1-2;";
    QTest::newRow("messages") << QByteArray("BO_ 1 M: 8 N\n").repeated(many / 2);
    QTest::newRow("receivers") << message + " SG_ A : 0|8@1+ (1,0) [0|1] \"\" " + QByteArray("N,").repeated(many);
    QTest::newRow("senders") << message + "BO_TX_BU_ 1 : " + QByteArray("N,").repeated(many);
    QTest::newRow("attributes") << message + QByteArray("BA_ \"GenMsgCycleTime\" BO_ 1 5;\n").repeated(many / 8);
}

void tst_DbcParser::bounded()
{
    QFETCH(QByteArray, text);
    QElapsedTimer timer;
    timer.start();
    const Database database = parseDatabase(text);
    QVERIFY2(timer.elapsed() < 60000, "this takes hours when it is not in proportion to the size");
    QVERIFY(database.findings.size() <= Database::MaxFindings);
    QVERIFY(database.messages.size() <= 1);
    if (!database.messages.isEmpty()) {
        QVERIFY(database.messages[0].content.size() <= DbcParser::MaxSignals);
        QVERIFY(database.messages[0].name.size() <= DbcParser::MaxNameLength);
    }
}

void tst_DbcParser::nestedTooDeep()
{
    QByteArray text = "BO_ 1 M: 64 N\n SG_ S0 M : 0|8@1+ (1,0) [0|1] \"\" N\n";
    QByteArray ranges;
    for (int i = 1; i < 30; ++i) {
        const QByteArray number = QByteArray::number(i);
        text += " SG_ S" + number + " m1M : 0|8@1+ (1,0) [0|1] \"\" N\n";
        ranges += "SG_MUL_VAL_ 1 S" + number + " S" + QByteArray::number(i - 1) + " 1-1;\n";
    }
    const Database database = parseDatabase(text + ranges);
    QCOMPARE(database.messages[0].content.size(), DbcParser::MaxNesting + 1);
    QCOMPARE(database.findingCount, 29 - DbcParser::MaxNesting);
    QCOMPARE(database.messages[0].content.last().multiplexor, DbcParser::MaxNesting - 1);
}

void tst_DbcParser::files()
{
    QString error;
    const QString folder = QStringLiteral(X9_TEST_DATA "/exchange/database/");
    QVERIFY(readDatabase(folder + QLatin1String("vehicle.dbc"), QString(), error).has_value());
    QVERIFY(readDatabase(folder + QLatin1String("body.ldf"), QString(), error)->bus == Database::Lin);
    QVERIFY(!readDatabase(folder + QLatin1String("none.dbc"), QString(), error));
    QVERIFY(error.contains(QLatin1String("none.dbc")));
    QVERIFY(!readDatabase(folder + QLatin1String("vehicle.dbc"), QStringLiteral("klingon"), error));
    QVERIFY(error.contains(QLatin1String("klingon")));
    QVERIFY(!readDatabase(folder + QLatin1String("README.md"), QString(), error));
    QVERIFY(error.contains(QLatin1String("README.md")) && error.contains(QLatin1String("1:1")));
}

X9_PLAIN_TEST(tst_DbcParser)
#include "tst_DbcParser.moc"
