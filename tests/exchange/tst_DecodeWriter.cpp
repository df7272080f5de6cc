#include "exchange/ByteOutput.h"
#include "exchange/database/DecodeWriter.h"
#include "exchange/FrameReader.h"
#include "tests/exchange/DatabaseTestData.h"
#include "tests/support/TestProgram.h"

#include <QBuffer>
#include <QtTest>

#include <algorithm>
#include <limits>

class tst_DecodeWriter : public QObject
{
    Q_OBJECT

private slots:
    static void table();
    static void lin();
    static void cells_data();
    static void cells();
    static void times_data();
    static void times();
    static void channels();
    static void wide();
    static void wideFilled();
    static void wideTexts();
    static void wantedSignals();
    static void countsOfFrames();
    static void severalDatabases();
    static void longest();
    static void capture();
};

namespace {

Database golden(const char *name)
{
    return parseDatabase(goldenDatabase(QString::fromLatin1(name)));
}

QByteArray written(const std::vector<DecodeSource> &sources, const std::vector<BusFrame> &frames,
                   const DecodeOptions &options = DecodeOptions(), DecodeCounts *counts = nullptr)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    ByteOutput out(buffer);
    const auto writer = decodeWriter(sources, out, options);
    writer->write(frames.data(), static_cast<int>(frames.size()));
    writer->finish();
    if (counts != nullptr) {
        *counts = writer->counts();
    }
    return out.flush() ? buffer.data() : QByteArray();
}

BusFrame at(qint64 time, BusFrame frame)
{
    frame.time = time;
    return frame;
}

const BusFrame engineFrame = at(1500000000, frameWith(291, "401F0A5FD801"));

/// Gives some frames, three at a time.
class ListReader : public FrameReader
{
public:
    explicit ListReader(std::vector<BusFrame> frames)
        : m_frames(std::move(frames))
    {
        m_info.channelNames = QStringList{QStringLiteral("can0")};
    }

    int read(BusFrame *frames, int room) override
    {
        const int count = std::min({3, room, static_cast<int>(m_frames.size() - m_next)});
        std::copy_n(m_frames.begin() + static_cast<std::ptrdiff_t>(m_next), count, frames);
        m_next += static_cast<std::size_t>(count);
        return count;
    }

private:
    std::vector<BusFrame> m_frames;
    std::size_t m_next = 0;
};

} // namespace

void tst_DecodeWriter::table()
{
    // Speed 0x1F40 / 4, torque 0x0A5 / 2 - 20, gear 15, oil 0xD8 - 40 of a signed byte, running.
    QCOMPARE(QString::fromUtf8(written({{golden("vehicle.dbc"), {}}}, {engineFrame})),
             QStringLiteral("time,channel,message,signal,raw,physical,unit,text\n"
                            "1.500000000,1,EngineData,EngineSpeed,8000,2000,rpm,\n"
                            "1.500000000,1,EngineData,Torque,165,62.5,Nm,\n"
                            "1.500000000,1,EngineData,Gear,15,15,,Reverse\n"
                            "1.500000000,1,EngineData,OilTemperature,-40,-80,°C,\n"
                            "1.500000000,1,EngineData,EngineIsRunningWithANameOfMoreThan32Characters,1,1,,On\n"));
}

void tst_DecodeWriter::lin()
{
    const std::vector<BusFrame> frames{
        at(0, frameWith(0x10, "E707", BusFrame::Lin)), at(0, frameWith(0x10, "FF03", BusFrame::Lin)),
        at(0, frameWith(17, "6E", BusFrame::Lin)), at(0, frameWith(32, "0102030448494A00", BusFrame::Lin)),
        at(0, frameWith(34, "613412", BusFrame::Lin))};
    DecodeOptions options;
    options.timeDigits = 0;
    QCOMPARE(QString::fromUtf8(written({{golden("body.ldf"), {}}}, frames, options)),
             QStringLiteral("time,channel,message,signal,raw,physical,unit,text\n"
                            "0,1,MirrorStatus,MirrorAngle,999,49.9,deg,\n"
                            "0,1,MirrorStatus,MirrorState,1,,,out\n"
                            "0,1,MirrorStatus,MirrorAngle,1023,,,\"no signal, or \"\"lost\"\"\"\n"
                            "0,1,MirrorStatus,MirrorState,0,,,in\n"
                            "0,1,HeaterCommand,Heater,110,100,W,\n"
                            "0,1,SeatInfo,SerialNumber,01020304,,,\n"
                            "0,1,SeatInfo,PartName,48494A,,,HIJ\n"
                            "0,1,SeatMileage,Mileage,4660,1234,,\n"));
}

void tst_DecodeWriter::cells_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("cell");
    QTest::newRow("plain") << "km/h" << QByteArray("km/h");
    QTest::newRow("comma") << "a,b" << QByteArray("\"a,b\"");
    QTest::newRow("quotation mark") << "5\"" << QByteArray(R"("5""")");
    QTest::newRow("line end") << "a\nb" << QByteArray("\"a\nb\"");
    QTest::newRow("carriage return") << "a\rb" << QByteArray("\"a\rb\"");
    QTest::newRow("blank") << " a " << QByteArray(" a ");
    QTest::newRow("beyond ASCII") << QStringLiteral("车 °C") << QByteArray("车 °C");
    QTest::newRow("nothing") << "" << QByteArray();
}

/// Wherever texts come from: names, units, texts of values, channels.
void tst_DecodeWriter::cells()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, cell);
    Database database;
    DatabaseMessage message;
    message.name = name;
    DatabaseSignal signal;
    signal.name = name;
    signal.length = 8;
    signal.scales = {SignalScale()};
    signal.scales[0].unit = name;
    signal.texts = {{1, name}};
    message.content = {signal};
    database.messages = {message};
    DecodeOptions options;
    options.info.channelNames = QStringList{name};
    const QByteArray channel = name.isEmpty() ? QByteArray("1") : cell;
    const QByteArray line = ',' + channel + ',' + cell + ',' + cell + ",1,1," + cell + ',' + cell + '\n';
    QCOMPARE(written({{database, {}}}, {frameWith(0, "01")}, options).mid(51), line);
}

void tst_DecodeWriter::times_data()
{
    QTest::addColumn<qint64>("time");
    QTest::addColumn<int>("digits");
    QTest::addColumn<bool>("isClock");
    QTest::addColumn<bool>("isAbsolute");
    QTest::addColumn<qint64>("start");
    QTest::addColumn<QByteArray>("expected");
    const qint64 none = BusFrame::NoTime;
    const qint64 day = 1769860800000000000; // 2026-01-31 12:00
    QTest::newRow("nanoseconds") << qint64(1) << 9 << false << false << qint64(0) << QByteArray("0.000000001");
    QTest::newRow("digits are cut") << qint64(1999999999) << 3 << false << false << qint64(0) << QByteArray("1.999");
    QTest::newRow("before the start") << qint64(-1500000000) << 3 << false << false << qint64(0)
                                      << QByteArray("-1.500");
    QTest::newRow("just before") << qint64(-1000000) << 3 << false << false << qint64(0) << QByteArray("-0.001");
    QTest::newRow("none") << none << 9 << true << true << qint64(0) << QByteArray();
    QTest::newRow("no clock is known") << qint64(5000000000) << 0 << true << false << qint64(0) << QByteArray("5");
    QTest::newRow("absolute, in seconds") << day << 0 << false << true << qint64(0) << QByteArray("1769860800");
    QTest::newRow("clock") << day + 1 << 9 << true << true << qint64(0) << QByteArray("2026-01-31T12:00:00.000000001Z");
    QTest::newRow("clock, seconds") << day + 59000000000 << 0 << true << true << qint64(0)
                                    << QByteArray("2026-01-31T12:00:59Z");
    QTest::newRow("clock from the start")
        << qint64(43199999000000) << 6 << true << false << day << QByteArray("2026-01-31T23:59:59.999000Z");
    QTest::newRow("clock over midnight") << qint64(43200000000000) << 3 << true << false << day
                                         << QByteArray("2026-02-01T00:00:00.000Z");
    QTest::newRow("clock before 1970") << qint64(-1000000000) << 0 << true << true << qint64(0)
                                       << QByteArray("1969-12-31T23:59:59Z");
    QTest::newRow("highest") << std::numeric_limits<qint64>::max() << 9 << true << true << qint64(0)
                             << QByteArray("2262-04-11T23:47:16.854775807Z");
    QTest::newRow("too far") << std::numeric_limits<qint64>::max() << 9 << true << false << day
                             << QByteArray("2262-04-11T23:47:16.854775807Z");
}

void tst_DecodeWriter::times()
{
    QFETCH(qint64, time);
    DecodeOptions options;
    QFETCH(int, digits);
    QFETCH(bool, isClock);
    QFETCH(bool, isAbsolute);
    QFETCH(qint64, start);
    options.timeDigits = digits;
    options.clockTimes = isClock;
    options.info.timeBase = isAbsolute ? CaptureInfo::Absolute : CaptureInfo::SinceStart;
    options.info.start = start;
    const QByteArray text = written({{golden("utf8_mark.dbc"), {}}}, {at(time, frameWith(100, "01"))}, options);
    QTEST(text.split('\n').value(1).split(',').value(0), "expected");
}

void tst_DecodeWriter::channels()
{
    BusFrame second = engineFrame;
    second.channel = 1;
    BusFrame third = engineFrame;
    third.channel = 0xFFFF;
    DecodeOptions options;
    options.signalNames = QStringList{QStringLiteral("*.Gear")};
    options.info.channelNames = QStringList{QStringLiteral("vcan0"), QString()};
    const auto cellsOf = [&](const QVector<int> &channels) {
        QByteArray found;
        for (const QByteArray &line :
             written({{golden("vehicle.dbc"), channels}}, {engineFrame, second, third}, options).split('\n')) {
            found += line.split(',').value(1) + ' ';
        }
        return found;
    };
    QCOMPARE(cellsOf({}), QByteArray("channel vcan0 2 65536  "));
    QCOMPARE(cellsOf({1}), QByteArray("channel 2  "));
    QCOMPARE(cellsOf({0, 0xFFFF}), QByteArray("channel vcan0 65536  "));
    QCOMPARE(cellsOf({7}), QByteArray("channel  "));
}

void tst_DecodeWriter::wide()
{
    const std::vector<BusFrame> frames{at(1, frameWith(1, "0102030405060708")), at(2, frameWith(2, "0307020900010000")),
                                       at(3, frameWith(1, "0203040506")), at(4, frameWith(1, "")),
                                       at(5, frameWith(9, "00"))};
    DecodeOptions options;
    options.layout = DecodeOptions::Wide;
    QCOMPARE(QString::fromUtf8(written({{golden("multiplexed.dbc"), {}}}, frames, options)),
             QStringLiteral("time,channel,Simple.Select,Simple.Always,Simple.WithOne,Simple.WithTwo,Nested.Deep,"
                            "Nested.Top,Nested.Middle,Nested.Side,Nested.Other,Nested.OfOther\n"
                            "0.000000001,1,1,2,3,,,,,,,\n"
                            "0.000000002,1,,,,,9,3,7,2,1,\n"
                            "0.000000003,1,2,3,,1284,,,,,,\n"));
}

void tst_DecodeWriter::wideFilled()
{
    const std::vector<BusFrame> frames{at(1, frameWith(1, "0102030405060708")), at(2, frameWith(2, "0307020900010000")),
                                       at(3, frameWith(1, "0203040506"))};
    DecodeOptions options;
    options.layout = DecodeOptions::Wide;
    options.fillGaps = true;
    const QByteArray text = written({{golden("multiplexed.dbc"), {}}}, frames, options);
    QCOMPARE(QString::fromUtf8(text.mid(text.indexOf('\n') + 1)),
             QStringLiteral("0.000000001,1,1,2,3,,,,,,,\n"
                            "0.000000002,1,1,2,3,,9,3,7,2,1,\n"
                            "0.000000003,1,2,3,3,1284,9,3,7,2,1,\n"));
}

void tst_DecodeWriter::wideTexts()
{
    DecodeOptions options;
    options.layout = DecodeOptions::Wide;
    options.signalNames = QStringList{QStringLiteral("EngineData.?ear"), QStringLiteral("EngineData.EngineSp*"),
                                      QStringLiteral("EngineData.Oil*")};
    QCOMPARE(QString::fromUtf8(written({{golden("vehicle.dbc"), {}}}, {engineFrame}, options)),
             QStringLiteral("time,channel,EngineData.EngineSpeed [rpm],EngineData.Gear,EngineData.OilTemperature [°C]\n"
                            "1.500000000,1,2000,15,-80\n"));
    options.preferTexts = true;
    options.utf8Mark = true;
    const BusFrame fourteen = at(0, frameWith(291, "0000000E7F"));
    QCOMPARE(QString::fromUtf8(written({{golden("vehicle.dbc"), {}}}, {engineFrame, fourteen}, options)),
             QStringLiteral("\uFEFFtime,channel,EngineData.EngineSpeed [rpm],EngineData.Gear,"
                            "EngineData.OilTemperature [°C]\n"
                            "1.500000000,1,2000,Reverse,-80\n"
                            "0.000000000,1,0,\"Invalid, or \"\"broken\"\"\",Not known\n")
                 .remove(QChar(0xFEFF)));
    QVERIFY(written({{golden("vehicle.dbc"), {}}}, {}, options).startsWith("\xEF\xBB\xBFtime"));
}

void tst_DecodeWriter::wantedSignals()
{
    const std::vector<DecodeSource> sources{{golden("vehicle.dbc"), {}}};
    const QStringList names{
        QStringLiteral("EngineData"), QStringLiteral("EngineData.Nothing"),   QStringLiteral("*.Single"),
        QStringLiteral("E.gineData"), QStringLiteral("ExtendedMessage.Last"), QStringLiteral("EngineData.EngineIs*")};
    QCOMPARE(DecodeWriter::unknownNames(sources, names).join(QLatin1Char(' ')),
             QStringLiteral("EngineData.Nothing E.gineData"));
    DecodeOptions options;
    options.signalNames = QStringList{QStringLiteral("EngineData.Running")};
    DecodeCounts counts;
    written(sources, {engineFrame, at(0, frameWith(512, "00000000"))}, options, &counts);
    QCOMPARE(counts.values, 1);
    QCOMPARE(counts.decoded, 1);
    QCOMPARE(counts.withoutMessage, 0);
}

void tst_DecodeWriter::countsOfFrames()
{
    std::vector<BusFrame> frames{engineFrame, frameWith(291, "0102"), frameWith(292, "00"),
                                 frameWith(291, "", BusFrame::Remote), frameWith(4, "", BusFrame::Error)};
    frames.push_back(engineFrame);
    frames.back().direction = BusFrame::Refused;
    frames.push_back(engineFrame);
    frames.back().direction = BusFrame::Sent;
    DecodeCounts counts;
    written({{golden("vehicle.dbc"), {}}}, frames, DecodeOptions(), &counts);
    QCOMPARE(counts.frames, 7);
    QCOMPARE(counts.decoded, 3);
    QCOMPARE(counts.withoutMessage, 1);
    QCOMPARE(counts.withoutData, 3);
    QCOMPARE(counts.tooShort, 1);
    QCOMPARE(counts.values, 11);

    std::vector<BusFrame> lin(3, frameWith(17, "01", BusFrame::Lin));
    lin[0].linState = BusFrame::ChecksumV2;
    lin[1].linState = BusFrame::WrongChecksumV2;
    lin[2].linState = BusFrame::LinError;
    written({{golden("body.ldf"), {}}}, lin, DecodeOptions(), &counts);
    QCOMPARE(counts.decoded, 1);
    QCOMPARE(counts.withoutData, 2);
}

void tst_DecodeWriter::severalDatabases()
{
    BusFrame second = frameWith(1, "0102030405060708");
    second.channel = 1;
    const std::vector<BusFrame> frames{engineFrame, second, frameWith(1, "0102030405060708"),
                                       frameWith(17, "01", BusFrame::Lin)};
    const std::vector<DecodeSource> sources{
        {golden("vehicle.dbc"), {0}}, {golden("multiplexed.dbc"), {1}}, {golden("body.ldf"), {}}};
    DecodeCounts counts;
    DecodeOptions options;
    options.layout = DecodeOptions::Wide;
    const QByteArray text = written(sources, frames, options, &counts);
    QCOMPARE(text.split('\n').size(), 5);
    QCOMPARE(counts.decoded, 3);
    QCOMPARE(counts.withoutMessage, 1);
    for (const QByteArray &line : text.split('\n')) {
        QVERIFY(line.isEmpty() || line.count(',') == 1 + 5 + 1 + 2 + 4 + 6 + 2 + 1 + 2 + 1 + 1 + 1);
    }
}

/// Names, units and texts as long as a file can have them, of characters that become longer.
void tst_DecodeWriter::longest()
{
    const QByteArray name = QStringLiteral("名").repeated(300).toUtf8();
    const QByteArray text = '"' + QStringLiteral("\\\"文").repeated(1000).toUtf8() + '"';
    const QByteArray dbc = "BO_ 1 " + name + ": 8 N\n SG_ " + name + " : 0|8@1+ (0.1,1e300) [0|0] " + text +
                           " N\nVAL_ 1 " + name + " 1 " + text + " ;\n";
    const Database database = parseDatabase(dbc);
    QCOMPARE(findingsOf(database), QStringList());
    DecodeOptions options;
    options.info.channelNames = QStringList{QStringLiteral("\"").repeated(10000)};
    const std::vector<BusFrame> frames(200, frameWith(1, "01"));
    for (const auto layout : {DecodeOptions::Table, DecodeOptions::Wide}) {
        options.layout = layout;
        options.preferTexts = true;
        const QByteArray out = written({{database, {}}}, frames, options);
        QCOMPARE(out.count('\n'), 201);
        QVERIFY(out.size() > 200 * 3000);
    }
}

void tst_DecodeWriter::capture()
{
    ListReader reader(std::vector<BusFrame>(10, engineFrame));
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::WriteOnly));
    ByteOutput out(buffer);
    const DecodeCounts counts = decodeCapture(reader, {{golden("vehicle.dbc"), {}}}, out, DecodeOptions());
    QVERIFY(out.flush());
    QCOMPARE(counts.frames, 10);
    QCOMPARE(counts.values, 50);
    QCOMPARE(buffer.data().count('\n'), 51);
    QVERIFY(buffer.data().contains("\n1.500000000,can0,EngineData,Gear,15,15,,Reverse\n"));
}

X9_PLAIN_TEST(tst_DecodeWriter)
#include "tst_DecodeWriter.moc"
