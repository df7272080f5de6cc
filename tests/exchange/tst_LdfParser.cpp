#include "exchange/database/LdfParser.h"
#include "tests/exchange/DatabaseTestData.h"
#include "tests/support/TestProgram.h"

#include <QElapsedTimer>
#include <QtTest>

#include <random>

class tst_LdfParser : public QObject
{
    Q_OBJECT

private slots:
    static void body();
    static void bodySignals();
    static void old();
    static void broken();
    static void everyCut();
    static void randomChanges();
    static void bounded_data();
    static void bounded();
};

namespace {

Database golden(const char *name)
{
    return parseDatabase(goldenDatabase(QString::fromLatin1(name)));
}

QStringList namesOf(const Database &database)
{
    QStringList names;
    for (const DatabaseMessage &message : database.messages) {
        names.append(message.name);
    }
    return names;
}

} // namespace

void tst_LdfParser::body()
{
    const Database database = golden("body.ldf");
    QCOMPARE(findingsOf(database), QStringList());
    QCOMPARE(database.bus, Database::Lin);
    QCOMPARE(database.version, QStringLiteral("2.1"));
    QCOMPARE(database.nodes.join(QLatin1Char(' ')), QStringLiteral("Body Mirror Seat"));
    QCOMPARE(namesOf(database).join(QLatin1Char(' ')),
             QStringLiteral("MirrorStatus HeaterCommand SeatInfo SeatMileage Commands SeatEvent MasterReq SlaveResp"));
    const DatabaseMessage &mirror = database.messages[0];
    QCOMPARE(mirror.identifier, 0x10U);
    QCOMPARE(mirror.length, 2);
    QCOMPARE(mirror.kind, DatabaseMessage::Plain);
    QCOMPARE(mirror.senders, QStringList(QStringLiteral("Mirror")));
    QCOMPARE(mirror.place.line, 28);
    QCOMPARE(database.messages[4].kind, DatabaseMessage::Sporadic);
    QCOMPARE(database.messages[4].associated, QVector<int>{1});
    QCOMPARE(database.messages[5].kind, DatabaseMessage::EventTriggered);
    QCOMPARE(database.messages[5].identifier, 34U);
    QCOMPARE(database.messages[5].associated, QVector<int>{3});
    QCOMPARE(database.messages[6].kind, DatabaseMessage::Diagnostic);
    QCOMPARE(database.messages[6].length, 8);
    QCOMPARE(database.messages[6].content.size(), 1);
}

void tst_LdfParser::bodySignals()
{
    const Database database = golden("body.ldf");
    const DatabaseSignal &angle = database.messages[0].content[0];
    QCOMPARE(angle.name, QStringLiteral("MirrorAngle"));
    QCOMPARE(int(angle.length), 10);
    QCOMPARE(angle.receivers, QStringList(QStringLiteral("Body")));
    QCOMPARE(angle.scales.size(), 1);
    QCOMPARE(angle.scales[0].raw.last, quint64(999));
    QCOMPARE(angle.scales[0].factor, 0.1);
    QCOMPARE(angle.scales[0].offset, -50.0);
    QCOMPARE(angle.unit(), QStringLiteral("deg"));
    QCOMPARE(angle.minimum, -50.0);
    QCOMPARE(angle.maximum, 999 * 0.1 - 50);
    QCOMPARE(angle.texts.size(), 2);
    QCOMPARE(angle.texts[1].value, quint64(1023));
    QCOMPARE(angle.texts[1].text, QStringLiteral("no signal, or \"lost\""));
    QCOMPARE(int(database.messages[0].content[1].startBit), 10);
    QCOMPARE(database.messages[0].content[1].scales.size(), 0);
    QCOMPARE(database.messages[1].content[0].scales.size(), 2);
    QCOMPARE(database.messages[2].content[0].type, DatabaseSignal::Bytes);
    QCOMPARE(int(database.messages[2].content[0].length), 32);
    QCOMPARE(database.messages[2].content[1].type, DatabaseSignal::Ascii);
    QCOMPARE(database.messages[3].content[0].type, DatabaseSignal::Bcd);
}

void tst_LdfParser::old()
{
    const Database database = golden("old.ldf");
    QCOMPARE(findingsOf(database), QStringList());
    QCOMPARE(namesOf(database).join(QLatin1Char(' ')), QStringLiteral("TwoBytes FourBytes Event"));
    QCOMPARE(database.messages[0].length, 2);
    QCOMPARE(int(database.messages[0].content[0].startBit), 8);
    QCOMPARE(database.messages[0].content[0].scales[0].factor, 2.0);
    QCOMPARE(database.messages[1].length, 4);
    QCOMPARE(database.messages[2].associated, QVector<int>{0});
}

void tst_LdfParser::broken()
{
    const Database database = golden("broken.ldf");
    QCOMPARE(findingsOf(database).join(QLatin1Char('\n')),
             QStringLiteral("2:24 Expected here: a quoted text\n"
                            "3:40 Expected here: a name\n"
                            "6:3 A signal has 1 to 64 bits, an array 1 to 8 bytes: Large is left out\n"
                            "7:3 Another signal has the name One\n"
                            "8:11 Expected here: a whole number\n"
                            "12:28 Missing is no signal\n"
                            "12:43 Expected here: ,\n"
                            "13:3 Another message has this identifier, or none can have it: Same is left out\n"
                            "14:9 The identifier of a LIN frame is from 0 to 63: High is left out\n"
                            "15:3 Another frame has the name First\n"
                            "16:17 Wide is longer than any frame\n"
                            "18:1 The keyword Unknown_section is not known\n"
                            "19:26 Nothing is no frame of its own\n"
                            "20:45 Expected here: ,\n"
                            "20:48 Not understood: new_value\n"
                            "21:35 None is no encoding\n"
                            "23:1 Expected here: }"));
    QCOMPARE(namesOf(database).join(QLatin1Char(' ')), QStringLiteral("First Wide Event Open"));
    QCOMPARE(database.messages[0].content.size(), 1);
    QCOMPARE(database.messages[1].content[0].texts.size(), 1);
    QCOMPARE(database.messages[2].associated, QVector<int>{0});
    QCOMPARE(database.messages[3].content.size(), 1);
}

void tst_LdfParser::everyCut()
{
    const QByteArray whole = goldenDatabase(QStringLiteral("body.ldf"));
    QVERIFY(whole.size() > 1500);
    const int behind = whole.indexOf("HeaterCommand: 17");
    for (int size = 0; size < whole.size(); ++size) {
        const Database database = parseDatabase(whole.left(size));
        if (size >= behind) {
            QVERIFY(!database.messages.isEmpty());
            QCOMPARE(database.messages[0].content.size(), 2);
        }
    }
}

void tst_LdfParser::randomChanges()
{
    std::mt19937 random(20);
    const QByteArray characters = "\"\\;:,{}={}/*\n\r\0\x80\xFF 0x19_ab";
    for (const char *name : {"body.ldf", "old.ldf", "broken.ldf"}) {
        const QByteArray whole = goldenDatabase(QString::fromLatin1(name));
        for (int i = 0; i < 300; ++i) {
            QByteArray changed = whole;
            for (unsigned k = 0; k < 1 + random() % 20; ++k) {
                const int at = 30 + static_cast<int>(random() % static_cast<unsigned>(changed.size() - 30));
                const int size = static_cast<int>(random() % 3);
                changed.replace(at, size, characters.mid(static_cast<int>(random() % 28), 1));
            }
            const Database database = parseDatabase(changed);
            for (const DatabaseMessage &message : database.messages) {
                QVERIFY(message.identifier < 64);
                for (const DatabaseSignal &signal : message.content) {
                    QVERIFY(signal.length >= 1 && signal.length <= 64 && bytesNeeded(signal) <= BusFrame::MaxLength);
                }
            }
        }
    }
}

/// Files that were made to take time or memory: each of megabytes, read in a second or so.
void tst_LdfParser::bounded_data()
{
    QTest::addColumn<QByteArray>("text");
    const int many = 1000000;
    const QByteArray head = "LIN_description_file;\nSignals { S: 8, 0, M, N; }\n";
    QTest::newRow("braces") << head + QByteArray(many, '{');
    QTest::newRow("closed braces") << head + QByteArray(many, '}');
    QTest::newRow("braces in a section") << head + "Frames " + QByteArray(many, '{');
    QTest::newRow("quotation marks") << head + QByteArray(many, '"');
    QTest::newRow("comments") << head + QByteArray("/**/").repeated(many);
    QTest::newRow("comment without an end") << head + QByteArray("/*").repeated(many);
    QTest::newRow("an array") << head + "Signals { A: 8, {" + QByteArray("1,").repeated(many) + "1}, M; }";
    QTest::newRow("signals of a frame") << head + "Frames { F: 1, M, 8 { " + QByteArray("S, 0; ").repeated(many) +
                                               "} }";
    QTest::newRow("frames") << head + "Frames { " + QByteArray("F: 1, M, 8 { S, 0; } ").repeated(many / 4) + "}";
    QTest::newRow("values") << head + "Signal_encoding_types { E { " +
                                   QByteArray("logical_value, 1, \"x\"; ").repeated(many + 1) +
                                   "} } Signal_representation { E: S; }";
    QTest::newRow("event-triggered") << head + "Event_triggered_frames { E: T, 1" + QByteArray(", F").repeated(many) +
                                            "; }";
}

void tst_LdfParser::bounded()
{
    QFETCH(QByteArray, text);
    QElapsedTimer timer;
    timer.start();
    const Database database = parseDatabase(text);
    QVERIFY2(timer.elapsed() < 60000, "this takes hours when it is not in proportion to the size");
    QVERIFY(database.findings.size() <= Database::MaxFindings);
    QVERIFY(database.messages.size() <= 1);
    if (!database.messages.isEmpty()) {
        QVERIFY(database.messages[0].content.size() <= LdfParser::MaxSignals);
    }
}

X9_PLAIN_TEST(tst_LdfParser)
#include "tst_LdfParser.moc"
