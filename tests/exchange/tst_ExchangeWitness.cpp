#include "tests/exchange/ExchangeTestData.h"
#include "tests/exchange/FrameText.h"
#include "tests/exchange/RandomFrames.h"
#include "tests/support/TestProgram.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

using namespace ExchangeTestData;

/// Other programs read what is written here, and write what is read here: 2,000 random frames of each kind. Not under
/// Windows, where these programs are others.
class tst_ExchangeWitness : public QObject
{
    Q_OBJECT

private slots:
    static void readsOurs_data();
    static void readsOurs();
    static void weReadTheirs_data();
    static void weReadTheirs();
    static void editcapConverts_data();
    static void editcapConverts();
    static void log2ascMakesTheSame();
};

namespace {

constexpr qint64 SomeTime = 1760000001500000000; // 2025-10-09
constexpr qint64 NsPerUs = 1000;

/// What another program does not read or write, of what a kind of file can hold.
enum Lack : unsigned {
    NoDirection = 1U << 0U,
    NoErrorChannel = 1U << 1U,
    NoFdFlags = 1U << 2U, ///< CAN FD frames are not told apart
    ChannelFromOne = 1U << 3U,
    NoEmptyFd = 1U << 4U,
    NoStart = 1U << 5U,
    NoChannel = 1U << 6U
};

struct Witness
{
    const char *program;
    const char *format;
    RandomFrames::Kind kind;
    unsigned lacks;
};

const char *kindName(RandomFrames::Kind kind)
{
    constexpr const char *Names[] = {"classic", "remote", "fd", "error", "lin", "lin errors", "mixed"};
    return Names[kind];
}

template<std::size_t Count>
void witnessRows(const Witness (&witnesses)[Count])
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("kind");
    QTest::addColumn<unsigned>("lacks");
    for (const Witness &row : witnesses) {
        QTest::addRow("%s, %s, %s", row.program, row.format, kindName(row.kind))
            << QString::fromLatin1(row.program) << QString::fromLatin1(row.format) << int(row.kind) << row.lacks;
    }
}

struct Run
{
    QByteArray output;
    QString error;
};

Run run(const QString &program, const QStringList &arguments, const QByteArray &input = {})
{
    Run result;
    QProcess process;
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(60000) || process.exitCode() != 0) {
        result.error = program + QStringLiteral(" failed: ") + QString::fromUtf8(process.readAllStandardError());
    }
    result.output = process.readAllStandardOutput();
    return result;
}

QString missing(const QString &program)
{
    return program + QStringLiteral(" is not installed: tools/install-packages.sh witness");
}

/// Python is the system's, which has the system's packages.
Run witness(const QString &action, const QString &program, const QString &path, const QByteArray &input = {})
{
    const QString python = QStringLiteral("/usr/bin/python3");
    const bool isThere = program == QLatin1String("python-can")
                             ? run(python, {QStringLiteral("-c"), QStringLiteral("import can.io")}).error.isEmpty()
                             : !QStandardPaths::findExecutable(program).isEmpty();
    if (!isThere) {
        return {{}, missing(program)};
    }
    return run(python, {QStringLiteral(X9_WITNESS), action, program, path}, input);
}

/// The frames as the other program has them.
void apply(std::vector<BusFrame> &frames, unsigned lacks)
{
    for (BusFrame &frame : frames) {
        if ((lacks & NoDirection) != 0) {
            frame.direction = BusFrame::Received;
        }
        if ((lacks & NoChannel) != 0 || ((lacks & NoErrorChannel) != 0 && frame.is(BusFrame::Error))) {
            frame.channel = 0;
        }
        if ((lacks & ChannelFromOne) != 0) {
            ++frame.channel;
        }
        if ((lacks & NoFdFlags) != 0) {
            frame.flags &= BusFrame::Extended | BusFrame::Remote | BusFrame::Error | BusFrame::Lin;
        }
        frame.checksum = 0; // the lines have none
        frame.linState = BusFrame::NoLinState;
    }
}

std::vector<BusFrame> framesFor(RandomFrames::Kind kind, unsigned lacks)
{
    auto frames = RandomFrames::make(kind, 2000, SomeTime, NsPerUs);
    if ((lacks & NoEmptyFd) != 0) {
        frames.erase(std::remove_if(frames.begin(), frames.end(),
                                    [](const BusFrame &f) { return f.is(BusFrame::Fd) && f.length == 0; }),
                     frames.end());
    }
    return frames;
}

void makeRelative(std::vector<BusFrame> &frames)
{
    const qint64 first = frames.empty() ? 0 : frames.front().time;
    for (BusFrame &frame : frames) {
        frame.time -= first;
    }
}

} // namespace

void tst_ExchangeWitness::readsOurs_data()
{
    constexpr Witness Witnesses[] = {
        {"python-can", "asc", RandomFrames::Classic, 0},
        {"python-can", "asc", RandomFrames::Remote, 0},
        {"python-can", "asc", RandomFrames::Fd, NoEmptyFd},
        {"python-can", "asc", RandomFrames::Error, 0},
        {"python-can", "blf", RandomFrames::Classic, 0},
        {"python-can", "blf", RandomFrames::Remote, 0},
        {"python-can", "blf", RandomFrames::Fd, 0},
        {"python-can", "blf", RandomFrames::Error, 0},
        {"python-can", "trc", RandomFrames::Classic, ChannelFromOne | NoStart},
        {"tshark", "blf", RandomFrames::Classic, ChannelFromOne},
        {"tshark", "blf", RandomFrames::Remote, ChannelFromOne},
        {"tshark", "blf", RandomFrames::Fd, ChannelFromOne | NoFdFlags},
        {"tshark", "blf", RandomFrames::Lin, ChannelFromOne | NoDirection},
        {"tshark", "pcapng", RandomFrames::Classic, 0},
        {"tshark", "pcapng", RandomFrames::Remote, 0},
        {"tshark", "pcapng", RandomFrames::Fd, 0},
        {"tshark", "pcapng", RandomFrames::Error, 0},
        {"tshark", "pcap", RandomFrames::Classic, NoChannel | NoDirection},
        {"tshark", "pcap", RandomFrames::Remote, NoChannel | NoDirection},
        {"tshark", "pcap", RandomFrames::Fd, NoChannel | NoDirection},
        {"tshark", "pcap", RandomFrames::Error, NoChannel | NoDirection},
        {"asc2log", "asc", RandomFrames::Classic, NoStart},
        {"asc2log", "asc", RandomFrames::Remote, NoStart},
        {"asc2log", "asc", RandomFrames::Fd, NoStart},
        {"asc2log", "asc", RandomFrames::Error, NoStart},
    };
    witnessRows(Witnesses);
}

void tst_ExchangeWitness::readsOurs()
{
    QFETCH(const QString, program);
    QFETCH(const QString, name);
    QFETCH(const int, kind);
    QFETCH(const unsigned, lacks);
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("ours.") + name);
    auto frames = framesFor(static_cast<RandomFrames::Kind>(kind), lacks);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    ByteOutput out(file);
    Findings findings;
    WriteOptions options;
    options.info.timeBase = CaptureInfo::Absolute;
    const auto writer = exchangeFormat(name)->writer(out, options, findings);
    writer->write(frames.data(), static_cast<int>(frames.size()));
    writer->finish();
    QVERIFY(out.flush());
    file.close();
    const Run result = witness(QStringLiteral("read"), program, path);
    QCOMPARE(result.error, QString());
    auto theirs = FrameText::frames(result.output);
    apply(frames, lacks);
    apply(theirs, lacks & NoDirection); // or one that is none
    if ((lacks & NoStart) != 0) {
        makeRelative(frames);
        makeRelative(theirs);
    }
    QCOMPARE(RandomFrames::difference(theirs, frames, NsPerUs), QString());
}

void tst_ExchangeWitness::weReadTheirs_data()
{
    constexpr Witness Witnesses[] = {
        {"python-can", "asc", RandomFrames::Classic, 0},
        {"python-can", "asc", RandomFrames::Remote, 0},
        {"python-can", "asc", RandomFrames::Fd, 0},
        {"python-can", "asc", RandomFrames::Error, NoErrorChannel},
        {"python-can", "blf", RandomFrames::Classic, 0},
        {"python-can", "blf", RandomFrames::Remote, 0},
        {"python-can", "blf", RandomFrames::Fd, 0},
        {"python-can", "blf", RandomFrames::Error, 0},
        {"python-can", "trc", RandomFrames::Classic, NoStart},
        {"log2asc", "asc", RandomFrames::Classic, NoDirection | NoStart},
        {"log2asc", "asc", RandomFrames::Fd, NoDirection | NoStart},
    };
    witnessRows(Witnesses);
}

void tst_ExchangeWitness::weReadTheirs()
{
    QFETCH(const QString, program);
    QFETCH(const QString, name);
    QFETCH(const int, kind);
    QFETCH(const unsigned, lacks);
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("theirs.") + name);
    auto frames = framesFor(static_cast<RandomFrames::Kind>(kind), lacks);
    const Run result = witness(QStringLiteral("write"), program, path, FrameText::text(frames));
    QCOMPARE(result.error, QString());
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    Reading reading = readBytes(*exchangeFormat(name), file.readAll());
    QCOMPARE(described(reading.findings), QStringList());
    for (BusFrame &frame : reading.frames) {
        frame.time += reading.info.timeBase == CaptureInfo::Absolute ? 0 : reading.info.start;
    }
    apply(frames, lacks);
    if ((lacks & NoStart) != 0) {
        makeRelative(frames);
        makeRelative(reading.frames);
    }
    QCOMPARE(RandomFrames::difference(reading.frames, frames, NsPerUs), QString());
}

void tst_ExchangeWitness::editcapConverts_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<unsigned>("lacks");
    QTest::newRow("pcapng again") << "pcapng"
                                  << "pcapng" << 0U;
    QTest::newRow("pcap, nanoseconds") << "pcap"
                                       << "nsecpcap" << unsigned(NoChannel | NoDirection);
    QTest::newRow("pcap, microseconds") << "pcap"
                                        << "pcap" << unsigned(NoChannel | NoDirection);
}

void tst_ExchangeWitness::editcapConverts()
{
    QFETCH(const QString, from);
    QFETCH(const QString, to);
    QFETCH(const unsigned, lacks);
    const QString editcap = QStandardPaths::findExecutable(QStringLiteral("editcap"));
    QVERIFY2(!editcap.isEmpty(), qPrintable(missing(QStringLiteral("editcap"))));
    QTemporaryDir folder;
    auto frames = framesFor(RandomFrames::Fd, lacks);
    Findings findings;
    WriteOptions options;
    options.info.timeBase = CaptureInfo::Absolute;
    const QString path = folder.filePath(QStringLiteral("ours.") + from);
    const QString converted = folder.filePath(QStringLiteral("converted"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(writeBytes(*exchangeFormat(from), frames, options, findings));
    file.close();
    QCOMPARE(run(editcap, {QStringLiteral("-F"), to, path, converted}).error, QString());
    QFile result(converted);
    QVERIFY(result.open(QIODevice::ReadOnly));
    const QByteArray bytes = result.readAll();
    const ExchangeFormat *format = recognisedFormat({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    QVERIFY(format);
    const Reading reading = readBytes(*format, bytes);
    QCOMPARE(described(reading.findings), QStringList());
    apply(frames, lacks);
    QCOMPARE(RandomFrames::difference(reading.frames, frames, NsPerUs), QString());
}

/// log2asc makes the same of a log of a public program and of ours.
void tst_ExchangeWitness::log2ascMakesTheSame()
{
    const QString tool = QStandardPaths::findExecutable(QStringLiteral("log2asc"));
    QVERIFY2(!tool.isEmpty(), qPrintable(missing(QStringLiteral("log2asc"))));
    const ExchangeFormat *candump = exchangeFormat(QStringLiteral("candump"));
    QTemporaryDir folder;
    for (const char *name : {"candump_classic.log", "candump_fd.log"}) {
        const QByteArray bytes = fileBytes(QStringLiteral("exchange/") + QLatin1String(name));
        const Reading reading = readBytes(*candump, bytes);
        WriteOptions options;
        options.info = reading.info;
        Findings findings;
        const QString own = folder.filePath(QStringLiteral("own.log"));
        QFile file(own);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(writeBytes(*candump, reading.frames, options, findings));
        file.close();
        const QString theirs = QStringLiteral(X9_TEST_DATA "/exchange/") + QLatin1String(name);
        const QStringList channels = {QStringLiteral("can0"), QStringLiteral("can1")};
        const QByteArray expected = run(tool, QStringList({QStringLiteral("-I"), theirs}) + channels).output;
        QVERIFY(expected.count('\n') >= 60);
        QCOMPARE(run(tool, QStringList({QStringLiteral("-I"), own}) + channels).output, expected);
    }
}

X9_CORE_TEST(tst_ExchangeWitness)
#include "tst_ExchangeWitness.moc"
