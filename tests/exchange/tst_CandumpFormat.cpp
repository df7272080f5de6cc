#include "tests/exchange/ExchangeTestData.h"
#include "tests/support/TestProgram.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using namespace ExchangeTestData;

namespace {

/// A frame of the truth beside a log. A remote frame's length is not in the log.
BusFrame frameOf(const QJsonObject &object)
{
    BusFrame frame;
    frame.time = qRound64(object.value(QLatin1String("time")).toDouble() * 1e6) * 1000;
    frame.channel = static_cast<quint16>(object.value(QLatin1String("channel")).toInt());
    frame.direction = object.value(QLatin1String("received")).toBool() ? BusFrame::Received : BusFrame::Sent;
    frame.identifier = static_cast<quint32>(object.value(QLatin1String("id")).toInt());
    const auto is = [&object](const char *name) {
        return object.value(QLatin1String(name)).toBool();
    };
    frame.set(BusFrame::Extended, is("extended"));
    frame.set(BusFrame::Remote, is("remote"));
    frame.set(BusFrame::Fd, is("fd"));
    frame.set(BusFrame::BitRateSwitch, is("brs"));
    frame.set(BusFrame::ErrorStateIndicator, is("esi"));
    const QByteArray data = QByteArray::fromHex(object.value(QLatin1String("data")).toString().toLatin1());
    frame.length = static_cast<quint8>(data.size());
    std::copy(data.begin(), data.end(), frame.data.begin());
    return frame;
}

QStringList truth(const QByteArray &json)
{
    QStringList lines;
    const QJsonArray frames = QJsonDocument::fromJson(json).array();
    for (const QJsonValue &value : frames) {
        lines.append(described(frameOf(value.toObject())));
    }
    return lines;
}

} // namespace

class tst_CandumpFormat : public QObject
{
    Q_OBJECT

private slots:
    static void logsOfAPublicProgram_data();
    static void logsOfAPublicProgram();
    static void everyKindOfLine();
    static void screens();
    static void damagedLines();
    static void noRemoteErrorFrames();
    static void directions_data();
    static void directions();
    static void channelsWithoutNumbers();
    static void longNames();
    static void writtenAgain();
};

void tst_CandumpFormat::logsOfAPublicProgram_data()
{
    QTest::addColumn<QString>("path");
    const QString small = QStringLiteral(X9_TEST_DATA "/exchange/candump_");
    QTest::newRow("classic") << small + QStringLiteral("classic");
    QTest::newRow("fd") << small + QStringLiteral("fd");
}

void tst_CandumpFormat::logsOfAPublicProgram()
{
    QFETCH(QString, path);
    QFile log(path + QStringLiteral(".log"));
    QFile json(path + QStringLiteral(".json"));
    QVERIFY(log.open(QIODevice::ReadOnly) && json.open(QIODevice::ReadOnly));
    const Reading reading = readBytes(format("candump"), log.readAll());
    const QStringList expected = truth(json.readAll());
    QVERIFY(expected.size() >= 60);
    QCOMPARE(described(reading.findings), QStringList());
    QCOMPARE(described(reading.frames), expected);
    QCOMPARE(reading.info.timeBase, CaptureInfo::Absolute);
    QCOMPARE(reading.info.channelNames, QStringList({QStringLiteral("can0"), QStringLiteral("can1")}));
}

void tst_CandumpFormat::everyKindOfLine()
{
    const Reading reading = readBytes(format("candump"), fileBytes(QStringLiteral("exchange/candump_kinds.log")));
    QCOMPARE(described(reading.findings), QStringList());
    QCOMPARE(described(reading.frames),
             QStringList({QStringLiteral("1436509052249713/- 0 rx 123 [8] 1122334455667788"),
                          QStringLiteral("1436509052249714/- 1 rx 12345678 ext [0]"),
                          QStringLiteral("1436509052250000/- 2 rx 7FF remote [0]"),
                          QStringLiteral("1436509052350000/- 2 rx 0 remote [8]"),
                          QStringLiteral("1436509052450000/- 1 tx 1ABCDEF0 ext remote [3]"),
                          QStringLiteral("1436509052450001/- 1 rx 4 error [8] 0004000000000000"),
                          QStringLiteral("1436509052550000/- 0 rx 555 fd brs esi [3] 112233"),
                          QStringLiteral("1436509052550001/- 0 rx 18DAF110 ext fd [0]"),
                          QStringLiteral("1436509052650000/- 0 rx 123 [3] 112233"),
                          QStringLiteral("1436509052750000/- 0 rx 123 [8] 1122334455667788")}));
    QCOMPARE(reading.info.channelNames,
             QStringList({QStringLiteral("vcan0"), QStringLiteral("can0"), QStringLiteral("slcan1")}));
}

void tst_CandumpFormat::screens()
{
    const Reading reading = readBytes(format("candump"), fileBytes(QStringLiteral("exchange/candump_screen.log")));
    QCOMPARE(described(reading.findings), QStringList());
    QCOMPARE(reading.info.timeBase, CaptureInfo::SinceStart);
    QCOMPARE(described(reading.frames),
             QStringList(
                 {QStringLiteral("500000/- 0 rx 123 [4] 11223344"), QStringLiteral("1000000/- 1 rx 12345678 ext [0]"),
                  QStringLiteral("0/- 0 tx 7FF fd brs esi [12] 000102030405060708090A0B"),
                  QStringLiteral("0/- 0 rx 7FF remote [0]"), QStringLiteral("0/- 0 rx 4 error [8] 0004000000000000")}));
}

void tst_CandumpFormat::damagedLines()
{
    const Reading reading = readBytes(format("candump"), fileBytes(QStringLiteral("exchange/candump_damaged.log")));
    QCOMPARE(described(reading.frames), QStringList({QStringLiteral("1436509052249713/- 0 rx 123 [1] 11"),
                                                     QStringLiteral("1436509052249715/- 0 rx 8001 ext [1] 11"),
                                                     QStringLiteral("1436509052249719/- 0 rx 123 [1] 22")}));
    QStringList places;
    for (const int line : {2, 4, 5, 6, 7, 10}) {
        places.append(QStringLiteral("Line %1: a line that holds no frame was left out").arg(line));
    }
    QCOMPARE(described(reading.findings), places);
}

void tst_CandumpFormat::noRemoteErrorFrames()
{
    const Reading reading =
        readBytes(format("candump"), fileBytes(QStringLiteral("exchange/candump_remote_error.log")));
    QCOMPARE(described(reading.frames), QStringList(QStringLiteral("0/- 0 rx 123 remote [0]")));
    QCOMPARE(reading.findings.count(), 2);
    const Reading fd =
        readBytes(format("candump"), "  can0  7FF   [00]  remote request\n  can0  7FF   [08]  remote request\n");
    QCOMPARE(described(fd.frames), QStringList());
    QCOMPARE(fd.findings.count(), 2);
    const Reading errors = readBytes(format("candump"), "  can0  20000004   [08]  00 00 00 00 00 00 00 00\n"
                                                        "  can0  123   [0]]\n");
    QCOMPARE(described(errors.frames), QStringList());
    QCOMPARE(errors.findings.count(), 2);
}

void tst_CandumpFormat::directions_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("frame"); // empty: none
    const auto row = [](const char *content, const char *frame) {
        QTest::newRow(content) << QByteArray(content) << QString::fromLatin1(frame);
    };
    row("1#11", "0 rx 1 [1] 11");
    row("1#11 T", "0 tx 1 [1] 11");
    row("1#11 R", "0 rx 1 [1] 11");
    row("1#11  T", "0 tx 1 [1] 11");
    row("1#11 T ", "0 tx 1 [1] 11");
    row("1#11 ", "0 rx 1 [1] 11");
    row("1#11_9 T", "0 tx 1 [1] 11");
    row("1#1.1", "");
    row("1#11.22 T", "0 tx 1 [2] 1122");
    row("1# T", "0 tx 1 [0]");
    row("1#R T", "0 tx 1 remote [0]");
    row("1#R", "0 rx 1 remote [0]");
    row("1#R8 T", "0 tx 1 remote [8]");
    row("1##111 T", "0 tx 1 fd brs [1] 11");
    row("1#11 R T", "");
    row("1#11 X", "");
    row("1#11 T T", "");
    row("1#111 T", "");
    row("1#112233445566778899 T", "");
    row(" T", "");
}

void tst_CandumpFormat::directions()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, frame);
    const Reading reading = readBytes(format("candump"), "(1.000000) can0 " + content + '\n');
    const QStringList expected = frame.isEmpty() ? QStringList() : QStringList(QStringLiteral("1000000/- ") + frame);
    QCOMPARE(described(reading.frames), expected);
    QCOMPARE(reading.findings.count(), frame.isEmpty() ? 1 : 0);
}

/// Short names are kept in another way than long ones, and one that begins like another is another.
void tst_CandumpFormat::longNames()
{
    QByteArray log;
    for (int i = 0; i < 2; ++i) {
        log += "(1.0) a 1#\n(1.0) sevenab 1#\n(1.0) xsevenabc 1#\n(1.0) ysevenabc 1#\n(1.0) xsevenabc 1#\n";
    }
    const Reading reading = readBytes(format("candump"), log);
    QList<int> channels;
    for (const BusFrame &frame : reading.frames) {
        channels.append(frame.channel);
    }
    QCOMPARE(channels, QList<int>({0, 1, 2, 3, 2, 0, 1, 2, 3, 2}));
    QCOMPARE(reading.info.channelNames.size(), 4);
}

void tst_CandumpFormat::channelsWithoutNumbers()
{
    const Reading reading =
        readBytes(format("candump"),
                  "(1.0) body 1#\n(1.0) can0 1#\n(1.0) can3 1#\n(1.0) motor 1#\n(1.0) body 1#\n(1.0) x999 1#\n");
    QList<int> channels;
    for (const BusFrame &frame : reading.frames) {
        channels.append(frame.channel);
    }
    QCOMPARE(channels, QList<int>({0, 1, 3, 2, 0, 4}));
}

void tst_CandumpFormat::writtenAgain()
{
    const QByteArray bytes = fileBytes(QStringLiteral("exchange/candump_kinds.log"));
    const Reading reading = readBytes(format("candump"), bytes);
    WriteOptions options;
    options.info = reading.info;
    Findings findings;
    const QByteArray written = writeBytes(format("candump"), reading.frames, options, findings);
    QCOMPARE(described(findings), QStringList());
    QCOMPARE(written, QByteArray("(1436509052.249713) vcan0 123#1122334455667788\n"
                                 "(1436509052.249714) can0 12345678#\n"
                                 "(1436509052.250000) slcan1 7FF#R0\n"
                                 "(1436509052.350000) slcan1 000#R8\n"
                                 "(1436509052.450000) can0 1ABCDEF0#R3 T\n"
                                 "(1436509052.450001) can0 20000004#0004000000000000\n"
                                 "(1436509052.550000) vcan0 555##7112233\n"
                                 "(1436509052.550001) vcan0 18DAF110##4\n"
                                 "(1436509052.650000) vcan0 123#112233\n"
                                 "(1436509052.750000) vcan0 123#1122334455667788\n"));
}

X9_CORE_TEST(tst_CandumpFormat)
#include "tst_CandumpFormat.moc"
