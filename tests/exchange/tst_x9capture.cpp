#include "tests/exchange/ExchangeTestData.h"
#include "tests/support/TestProgram.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

using namespace ExchangeTestData;

namespace {

const QString Data = QStringLiteral(X9_TEST_DATA "/exchange/");

struct Result
{
    int code = -1;
    QByteArray out;
    QByteArray errors;
};

Result run(const QStringList &arguments, const QByteArray &input = {}, const QByteArray &language = "en_US")
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"LANG", "LC_ALL"}) {
        environment.insert(QLatin1String(name), QStringLiteral("C.UTF-8"));
    }
    environment.insert(QStringLiteral("LANGUAGE"), QString::fromLatin1(language));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(X9_CAPTURE_COMMAND), arguments);
    process.write(input);
    process.closeWriteChannel();
    Result result;
    if (process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit) {
        result = {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
        result.errors.replace("\r\n", "\n");
    }
    return result;
}

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString &path, const QByteArray &bytes, QIODevice::OpenMode mode = QIODevice::WriteOnly)
{
    QFile file(path);
    QVERIFY(file.open(mode));
    QCOMPARE(file.write(bytes), qint64{bytes.size()});
}

QStringList framesOf(const char *format, const QByteArray &bytes)
{
    return described(readBytes(ExchangeTestData::format(format), bytes).frames);
}

} // namespace

class tst_x9capture : public QObject
{
    Q_OBJECT

private slots:
    void init();

    static void wrongUse_data();
    static void wrongUse();
    static void help();
    void aRealTimeCaptureBecomesOneThatPlaysWhole();
    void theFileKeepsTheLastFramesTime();
    static void throughPipes();
    void nothingIsReplacedWithoutForce();
    void aFailureLeavesNothing();
    void strictKeepsWhatWouldBeLost();
    void timesOfTheAdapter();
    static void infoTellsWhatIsInIt();
    static void infoSpeaksChinese();
    void wordsOfCaptures();
    void verifyTellsPlaces();
    void repairSavesWhatIsLeft();
    void statsAsATable();
    void mergesByTime();
    static void cuts_data();
    void cuts();
    void decodes();
    static void decodingNeedsADatabase();
    void followsAFileThatGrows();

private:
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_x9capture::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void tst_x9capture::wrongUse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("code");
    const auto row = [](const char *arguments, int code) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments).split(QLatin1Char(' '), Qt::SkipEmptyParts) << code;
    };
    row("", 2);
    row("unknown", 2);
    row("info", 2);
    row("convert one", 2);
    row("convert one two three", 2);
    row("info --nothing file", 2);
    row("info --to csv file", 2);
    row("info /no/such/file.csv", 1);
    row("info --from nothing file", 1);
    row("cut --count many in out", 2);
    row("cut --start noon in out", 2);
    row("cut --id XYZ in out", 2);
    row("cut --channel 0 in out", 2);
    row("convert --times clock in out", 2);
    row("info --bitrate 0 in", 2);
}

void tst_x9capture::wrongUse()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, code);
    const Result result = run(arguments);
    QCOMPARE(result.code, code);
    QVERIFY(!result.errors.isEmpty());
    QVERIFY(result.out.isEmpty());
}

void tst_x9capture::help()
{
    const Result all = run({QStringLiteral("--help")});
    QCOMPARE(all.code, 0);
    for (const char *name : {"info", "convert", "verify", "repair", "stats", "merge", "cut", "decode"}) {
        QVERIFY2(all.out.contains(QByteArray("\n  ") + name), name);
        const Result one = run({QLatin1String(name), QStringLiteral("--help")});
        QCOMPARE(one.code, 0);
        QVERIFY(one.out.startsWith(QByteArray("x9capture ") + name + " [options]"));
        QVERIFY(one.out.contains(QByteArray("x9capture ") + name + " --") ||
                one.out.contains(QByteArray("\n  x9capture ") + name));
    }
    for (const ExchangeFormat &format : exchangeFormats()) {
        QVERIFY(all.out.contains(format.title));
    }
    QCOMPARE(run({QStringLiteral("--version")}).code, 0);
}

void tst_x9capture::aRealTimeCaptureBecomesOneThatPlaysWhole()
{
    const QString in = Data + QStringLiteral("csv_realtime_midnight.csv");
    QCOMPARE(run({QStringLiteral("convert"), in, path("out.canfd")}).code, 0);
    const QStringList frames = framesOf("canfd", bytesOf(path("out.canfd")));
    QCOMPARE(frames, QStringList({QStringLiteral("3723004000/3723004000 0 rx 1AB [3] 01A2FF"),
                                  QStringLiteral("3724504000/3724504000 0 rx 1AB fd brs [12] 000102030405060708090A0B"),
                                  QStringLiteral("3724504000/- 0 tx 12345678 ext remote [2]"),
                                  QStringLiteral("3726000000/3726000000 0 rx 7FF fd [0]")}));
}

void tst_x9capture::theFileKeepsTheLastFramesTime()
{
    QCOMPARE(run({QStringLiteral("convert"), Data + QStringLiteral("candump_fd.log"), path("out.csv")}).code, 0);
    QCOMPARE(QFileInfo(path("out.csv")).lastModified().toSecsSinceEpoch(), qint64{1760000000});
    // So the date comes back.
    QCOMPARE(run({QStringLiteral("convert"), path("out.csv"), path("back.log")}).code, 0);
    QVERIFY(bytesOf(path("back.log")).startsWith("(1760000000.001000) can0 4E1##4881C0F27F8A9A813\n"));
}

void tst_x9capture::throughPipes()
{
    const QByteArray log = fileBytes(QStringLiteral("exchange/candump_kinds.log"));
    const Result result = run({QStringLiteral("convert"), QStringLiteral("--to"), QStringLiteral("candump"),
                               QStringLiteral("-"), QStringLiteral("-")},
                              log);
    QCOMPARE(result.code, 0);
    QCOMPARE(framesOf("candump", result.out), framesOf("candump", log));
    const Result none = run({QStringLiteral("convert"), QStringLiteral("-"), QStringLiteral("-")}, log);
    QCOMPARE(none.code, 2);
    QVERIFY(none.errors.contains("--to"));
}

void tst_x9capture::nothingIsReplacedWithoutForce()
{
    const QString in = Data + QStringLiteral("candump_fd.log");
    write(path("out.log"), "mine");
    QCOMPARE(run({QStringLiteral("convert"), in, path("out.log")}).code, 1);
    QCOMPARE(bytesOf(path("out.log")), QByteArray("mine"));
    QCOMPARE(run({QStringLiteral("convert"), QStringLiteral("--force"), in, path("out.log")}).code, 0);
    QCOMPARE(framesOf("candump", bytesOf(path("out.log"))).size(), 60);
    // A file can become its own successor.
    QCOMPARE(run({QStringLiteral("cut"), QStringLiteral("--count"), QStringLiteral("5"), QStringLiteral("--force"),
                  path("out.log"), path("out.log")})
                 .code,
             0);
    QCOMPARE(framesOf("candump", bytesOf(path("out.log"))).size(), 5);
}

void tst_x9capture::aFailureLeavesNothing()
{
    write(path("in.xyz"), "no capture at all\n");
    QCOMPARE(run({QStringLiteral("convert"), path("in.xyz"), path("out.csv")}).code, 1);
    QCOMPARE(run({QStringLiteral("convert"), Data + QStringLiteral("candump_fd.log"), path("none/out.csv")}).code, 1);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot),
             QStringList(QStringLiteral("in.xyz")));
}

void tst_x9capture::strictKeepsWhatWouldBeLost()
{
    const QString in = Data + QStringLiteral("candump_fd.log");
    const Result lossy = run({QStringLiteral("convert"), in, path("out.can")});
    QCOMPARE(lossy.code, 0);
    QVERIFY(lossy.errors.contains("CAN FD frame left out: this kind of file holds none (32 times)"));
    const Result strict = run({QStringLiteral("convert"), QStringLiteral("--strict"), in, path("strict.can")});
    QCOMPARE(strict.code, 3);
    QVERIFY(!QFile::exists(path("strict.can")));
    QCOMPARE(run({QStringLiteral("convert"), QStringLiteral("--strict"), in, path("strict.log")}).code, 0);
}

void tst_x9capture::timesOfTheAdapter()
{
    const QString in = Data + QStringLiteral("csv_realtime_midnight.csv");
    const auto lastTime = [this, &in](const char *times) {
        const Result result = run({QStringLiteral("convert"), QStringLiteral("--force"), QStringLiteral("--times"),
                                   QLatin1String(times), in, path("out.log")});
        const std::vector<BusFrame> frames = readBytes(format("candump"), bytesOf(path("out.log"))).frames;
        return result.code == 0 && frames.size() == 4 ? (frames[3].time - frames[0].time) / 1000000 : -1;
    };
    QCOMPARE(lastTime("auto"), qint64{2996});
    QCOMPARE(lastTime("device"), qint64{2996});
    QCOMPARE(lastTime("system"), qint64{3000});
}

void tst_x9capture::infoTellsWhatIsInIt()
{
    const Result result = run({QStringLiteral("info"), QStringLiteral("--bitrate"), QStringLiteral("500000"),
                               Data + QStringLiteral("candump_fd.log")});
    QCOMPARE(result.code, 0);
    for (const char *text : {"candump, candump log", "60 (28 classic CAN, 32 CAN FD, 2 of them remote, 12 sent)",
                             "0.142857 s", "420.0 frames/s", "37 frames, can0, bus load 4.", "Findings:     none"}) {
        QVERIFY2(result.out.contains(text), text);
    }
}

void tst_x9capture::infoSpeaksChinese()
{
    const Result result = run({QStringLiteral("verify"), Data + QStringLiteral("csv_damaged.csv")}, {}, "zh_CN");
    QCOMPARE(result.code, 3);
#ifdef Q_OS_UNIX // a Western Windows writes no such letters
    QVERIFY(result.out.contains("\xE7\xAC\xAC 5 \xE8\xA1\x8C"));
#endif
}

void tst_x9capture::wordsOfCaptures()
{
    const QString in = Data + QStringLiteral("candump_classic.log");
    const auto written = [&](const QStringList &options) {
        run(QStringList({QStringLiteral("convert"), QStringLiteral("--force"), in, path("out.csv")}) + options);
        return bytesOf(path("out.csv"));
    };
    QVERIFY(written({QStringLiteral("--words"), QStringLiteral("en")}).contains("Send successfully"));
    QVERIFY(
        written({QStringLiteral("--words"), QStringLiteral("zh"), QStringLiteral("--encoding"), QStringLiteral("GBK")})
            .contains("\xB7\xA2\xCB\xCD\xB3\xC9\xB9\xA6"));
    QVERIFY(written({QStringLiteral("--words"), QStringLiteral("zh"), QStringLiteral("--encoding"),
                     QStringLiteral("UTF-8")})
                .contains("\xE5\x8F\x91\xE9\x80\x81\xE6\x88\x90\xE5\x8A\x9F"));
    QCOMPARE(framesOf("csv", bytesOf(path("out.csv"))).size(), 60);
}

void tst_x9capture::verifyTellsPlaces()
{
    QCOMPARE(run({QStringLiteral("verify"), Data + QStringLiteral("candump_fd.log")}).code, 0);
    const Result result = run({QStringLiteral("verify"), Data + QStringLiteral("csv_damaged.csv"),
                               Data + QStringLiteral("canfd_hole.canfd")});
    QCOMPARE(result.code, 3);
    QVERIFY(result.out.contains("csv_damaged.csv: line 5: a line with too few cells was left out"));
    QVERIFY(result.out.contains("csv_damaged.csv: line 6: frames are missing: their numbers jump"));
    QVERIFY(result.out.contains("canfd_hole.canfd: byte 36: 5000 bytes that are no records"));
    // Not to be read is worse than damaged.
    QCOMPARE(run({QStringLiteral("verify"), path("none"), Data + QStringLiteral("csv_damaged.csv")}).code, 1);
}

void tst_x9capture::repairSavesWhatIsLeft()
{
    const Result result =
        run({QStringLiteral("repair"), Data + QStringLiteral("canfd_hole.canfd"), path("whole.canfd")});
    QCOMPARE(result.code, 0);
    QVERIFY(result.errors.contains("byte 36: 5000 bytes that are no records"));
    QCOMPARE(run({QStringLiteral("verify"), path("whole.canfd")}).code, 0);
    QCOMPARE(framesOf("canfd", bytesOf(path("whole.canfd"))).size(), 5);
    QCOMPARE(run({QStringLiteral("repair"), Data + QStringLiteral("csv_damaged.csv"), path("whole.csv")}).code, 0);
    QCOMPARE(run({QStringLiteral("verify"), path("whole.csv")}).code, 0);
    QCOMPARE(framesOf("csv", bytesOf(path("whole.csv"))).size(), 3);
}

void tst_x9capture::statsAsATable()
{
    write(path("in.log"),
          "(1.000000) can0 123#0011\n(1.010000) can0 123#0012\n(1.030000) can0 123#0013\n(1.5) can0 00000001#\n");
    const Result result = run({QStringLiteral("stats"), QStringLiteral("--csv"), path("in.log")});
    QCOMPARE(result.code, 0);
    QCOMPARE(QByteArray(result.out).replace("\r\n", "\n"),
             QByteArray("Channel,ID,Type,Frames,Mean ms,Min ms,Max ms,Deviation ms,Length,Changing bytes\n"
                        "1,123,standard,3,15.000,10.000,20.000,5.000,2,1\n"
                        "1,1,extended,1,,,,,0,\n"));
}

void tst_x9capture::mergesByTime()
{
    write(path("a.log"), "(1000000001.000000) can0 1#\n(1000000003.000000) can0 3#\n");
    write(path("b.log"), "(1000000002.000000) can0 2#\n(1000000004.000000) can1 4#\n");
    QCOMPARE(run({QStringLiteral("merge"), path("a.log"), path("b.log"), path("ab.log")}).code, 0);
    QCOMPARE(bytesOf(path("ab.log")), QByteArray("(1000000001.000000) can0 001#\n(1000000002.000000) can0 002#\n"
                                                 "(1000000003.000000) can0 003#\n(1000000004.000000) can1 004#\n"));
    QCOMPARE(run({QStringLiteral("merge"), QStringLiteral("--separate-channels"), QStringLiteral("--align"),
                  path("a.log"), path("b.log"), path("apart.log")})
                 .code,
             0);
    QCOMPARE(bytesOf(path("apart.log")), QByteArray("(1000000001.000000) can0 001#\n(1000000001.000000) can1 002#\n"
                                                    "(1000000003.000000) can0 003#\n(1000000003.000000) can2 004#\n"));
    write(path("c.log"), "(0.5) can0 5#\n");
    QCOMPARE(run({QStringLiteral("merge"), path("a.log"), path("c.log"), path("ac.log")}).code, 2);
}

void tst_x9capture::cuts_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QString>("identifiers");
    QTest::newRow("time") << QStringLiteral("--start 1 --end 3") << QStringLiteral("101 102");
    QTest::newRow("date") << QStringLiteral("--start 2001-09-09T01:46:43Z") << QStringLiteral("103 104");
    QTest::newRow("count") << QStringLiteral("--skip 1 --count 2") << QStringLiteral("101 102");
    QTest::newRow("identifiers") << QStringLiteral("--id 100-101 --id 104") << QStringLiteral("100 101 104");
    QTest::newRow("channel") << QStringLiteral("--channel 2") << QStringLiteral("103");
    QTest::newRow("nothing") << QStringLiteral("--channel 9") << QString();
}

void tst_x9capture::cuts()
{
    QFETCH(QString, options);
    QFETCH(QString, identifiers);
    write(path("in.log"), "(1000000000.0) can0 100#\n(1000000001.0) can0 101#\n(1000000002.0) can0 102#\n"
                          "(1000000003.0) can1 103#\n(1000000004.0) can0 104#\n");
    QCOMPARE(run(QStringList(QStringLiteral("cut")) + options.split(QLatin1Char(' ')) +
                 QStringList({path("in.log"), path("out.log")}))
                 .code,
             0);
    QStringList found;
    for (const BusFrame &frame : readBytes(format("candump"), bytesOf(path("out.log"))).frames) {
        found.append(QString::number(frame.identifier, 16));
    }
    QCOMPARE(found.join(QLatin1Char(' ')), identifiers);
}

void tst_x9capture::decodes()
{
    write(path("in.log"), "(100.5) can0 100#1027\n(101.0) can0 7FF#00\n");
    write(path("car.dbc"), "VERSION \"\"\nBO_ 256 Engine: 2 ECU\n SG_ Speed : 0|16@1+ (0.5,0) [0|0] \"rpm\" X\n"
                           " SG_ Gear : 0|4@1+ (1,0) [0|0] \"\" X\nNONSENSE\n");
    const QStringList options = {QStringLiteral("decode"), QStringLiteral("--database"), path("car.dbc")};
    const Result table = run(options + QStringList{path("in.log")});
    QCOMPARE(table.code, 0);
    QCOMPARE(table.out, QByteArray("time,channel,message,signal,raw,physical,unit,text\n"
                                   "100.500000000,can0,Engine,Speed,10000,5000,rpm,\n"
                                   "100.500000000,can0,Engine,Gear,0,0,,\n"));
    QVERIFY2(table.errors.contains("car.dbc:5:"), table.errors.constData());
    QVERIFY2(table.errors.contains("1 frames are in no database."), table.errors.constData());

    const QStringList wide = options + QStringList{QStringLiteral("--wide"), QStringLiteral("--signal"),
                                                   QStringLiteral("Engine.Sp*"), path("in.log"), path("out.csv")};
    QCOMPARE(run(wide).code, 0);
    QCOMPARE(bytesOf(path("out.csv")).split('\n').value(1), QByteArray("100.500000000,can0,5000"));
    QCOMPARE(run(wide).code, 1); // stands there already
    QCOMPARE(run(options + QStringList{QStringLiteral("--signal"), QStringLiteral("None"), path("in.log")}).code, 2);
}

void tst_x9capture::decodingNeedsADatabase()
{
    QCOMPARE(run({QStringLiteral("decode"), QStringLiteral("x.csv")}).code, 2);
    QCOMPARE(run({QStringLiteral("decode"), QStringLiteral("--database"), QStringLiteral("none.dbc"),
                  QStringLiteral("x.csv")})
                 .code,
             1);
}

void tst_x9capture::followsAFileThatGrows()
{
    const QByteArray bytes = fileBytes(QStringLiteral("exchange/csv_realtime_midnight.csv"));
    const int half = bytes.indexOf("CANFD Speed"); // within a line
    write(path("in.csv"), bytes.left(half));
    QProcess process;
    process.start(QStringLiteral(X9_CAPTURE_COMMAND),
                  {QStringLiteral("convert"), QStringLiteral("--follow"), QStringLiteral("--idle"),
                   QStringLiteral("1.5"), path("in.csv"), path("out.canfd")});
    QVERIFY(process.waitForStarted());
    // The first frame is there for others before the file has ended.
    QTRY_COMPARE_WITH_TIMEOUT(framesOf("canfd", bytesOf(path("out.canfd"))).size(), 1, 20000);
    write(path("in.csv"), bytes.mid(half), QIODevice::WriteOnly | QIODevice::Append);
    QVERIFY(process.waitForFinished(30000));
    QCOMPARE(process.exitCode(), 0);
    QCOMPARE(framesOf("canfd", bytesOf(path("out.canfd"))).size(), 4);
}

X9_CORE_TEST(tst_x9capture)
#include "tst_x9capture.moc"
