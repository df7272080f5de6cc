#include "device/LINFrame.h"
#include "exchange/FrameLosses.h"
#include "exchange/LinState.h"
#include "tests/exchange/ExchangeTestData.h"
#include "tests/support/TestProgram.h"

#include <QRandomGenerator>
#include <QtTest>

#include <set>

using namespace ExchangeTestData;

namespace {

const QDate Day(2026, 3, 4);

/// What a frame of both kinds must be, and no more: bits of ExchangeFormat::Ability.
BusFrame randomFrame(QRandomGenerator &random, quint32 holds)
{
    BusFrame frame;
    const auto may = [&](quint32 ability, int in) {
        return (holds & ability) != 0 && random.bounded(in) == 0;
    };
    const bool canBeCan = (holds & (ExchangeFormat::ClassicCan | ExchangeFormat::CanFd)) != 0;
    if (!canBeCan || may(ExchangeFormat::LinFrames, 5)) {
        frame.set(BusFrame::Lin);
        frame.identifier = random.bounded(64U);
        frame.length = static_cast<quint8>(random.bounded(9));
    } else {
        frame.set(BusFrame::Extended, random.bounded(2) == 0);
        frame.identifier = random.bounded(frame.is(BusFrame::Extended) ? 0x20000000U : 0x800U);
        frame.set(BusFrame::Fd, may(ExchangeFormat::CanFd, 2));
        static constexpr int FdLengths[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 12, 16, 20, 24, 32, 48, 64};
        frame.length = static_cast<quint8>(frame.is(BusFrame::Fd) ? FdLengths[random.bounded(16)] : random.bounded(9));
        frame.set(BusFrame::BitRateSwitch, frame.is(BusFrame::Fd) && random.bounded(2) == 0);
        frame.set(BusFrame::ErrorStateIndicator, frame.is(BusFrame::Fd) && may(ExchangeFormat::ErrorStateFlag, 2));
        frame.set(BusFrame::Remote, !frame.is(BusFrame::Fd) && may(ExchangeFormat::RemoteFrames, 5));
    }
    if (!frame.is(BusFrame::Remote)) {
        for (int i = 0; i < frame.length; ++i) {
            frame.data[static_cast<std::size_t>(i)] = static_cast<uchar>(random.bounded(256));
        }
    }
    if (frame.is(BusFrame::Lin)) { // sound ones: of others the kinds keep different things
        const bool isEnhanced = random.bounded(2) == 0;
        const QByteArray data(reinterpret_cast<const char *>(frame.data.data()), frame.length);
        frame.checksum = calcChecksum(static_cast<quint8>(frame.identifier), isEnhanced, data);
        frame.linState = linStateOfChecksum(frame);
    }
    frame.channel = static_cast<quint16>((holds & ExchangeFormat::Channels) != 0 ? random.bounded(3) : 0);
    if (may(ExchangeFormat::Directions, 3)) {
        frame.direction = may(ExchangeFormat::RefusedFrames, 2) ? BusFrame::Refused : BusFrame::Sent;
    }
    return frame;
}

/// Frames that both kinds hold whole, at times that both can tell apart.
std::vector<BusFrame> randomFrames(quint32 holds, qint64 tick, bool isAbsolute)
{
    QRandomGenerator random(static_cast<quint32>(holds));
    std::vector<BusFrame> frames;
    const qint64 start = isAbsolute ? QDateTime(Day, QTime(10, 0)).toMSecsSinceEpoch() * 1000000 : 0;
    qint64 time = 0;
    for (int i = 0; i < 2000; ++i) {
        BusFrame frame = randomFrame(random, holds);
        frame.time = start + time;
        time += tick * random.bounded(100);
        frames.push_back(frame);
    }
    return frames;
}

bool canHoldTime(const ExchangeFormat &format)
{
    return (format.holds & (ExchangeFormat::AbsoluteTime | ExchangeFormat::ClockTime)) != 0;
}

/// Without what the formats' rules say about it: times that only one of them has.
QStringList comparable(std::vector<BusFrame> frames, bool withTimes)
{
    const qint64 first = frames.empty() ? 0 : frames.front().time;
    for (BusFrame &frame : frames) {
        frame.deviceTime = BusFrame::NoTime;
        frame.time = withTimes ? frame.time - first : 0;
    }
    return described(frames);
}

} // namespace

class tst_ExchangeFormats : public QObject
{
    Q_OBJECT

private slots:
    static void theTable();
    static void formatsOfPaths_data();
    static void formatsOfPaths();
    static void roundTrip_data();
    static void roundTrip();
    static void emptyCaptures_data();
    static void emptyCaptures();
    static void batchesOfAnySizeGiveTheSame_data();
    static void batchesOfAnySizeGiveTheSame();
};

void tst_ExchangeFormats::theTable()
{
    std::set<QString> names;
    QVERIFY(exchangeFormats().size() >= 6);
    for (const ExchangeFormat &format : exchangeFormats()) {
        QVERIFY(names.insert(QString::fromLatin1(format.name)).second);
        QVERIFY(format.recognises != nullptr && format.reader != nullptr && format.tick > 0);
        QCOMPARE(exchangeFormat(QString::fromLatin1(format.name)), &format);
        QVERIFY(format.holds != 0);
    }
    QVERIFY(exchangeFormat(QStringLiteral("none")) == nullptr);
    QVERIFY(recognisedFormat("") == nullptr);
    QVERIFY(recognisedFormat("hello\nworld\n") == nullptr);
}

void tst_ExchangeFormats::formatsOfPaths_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    const auto row = [](const char *path, const char *name) {
        QTest::newRow(path) << QString::fromLatin1(path) << QString::fromLatin1(name);
    };
    row("a.can", "can");
    row("b/A.CANFD", "canfd");
    row("a.csv", "csv");
    row("a.lin.csv", "lin-csv");
    row("a.txt", "txt");
    row("a.log", "candump");
    row("csv", "");
    row("a.unknown", "");
}

void tst_ExchangeFormats::formatsOfPaths()
{
    QFETCH(QString, path);
    QFETCH(QString, name);
    const ExchangeFormat *format = exchangeFormatOfPath(path);
    QCOMPARE(format != nullptr ? QString::fromLatin1(format->name) : QString(), name);
}

void tst_ExchangeFormats::roundTrip_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    for (const ExchangeFormat &first : exchangeFormats()) {
        for (const ExchangeFormat &second : exchangeFormats()) {
            const quint32 kinds = first.holds & second.holds &
                                  (ExchangeFormat::ClassicCan | ExchangeFormat::CanFd | ExchangeFormat::LinFrames);
            if (first.writer != nullptr && second.writer != nullptr && kinds != 0) {
                QTest::addRow("%s to %s", first.name, second.name)
                    << QString::fromLatin1(first.name) << QString::fromLatin1(second.name);
            }
        }
    }
}

/// Written as the one kind, read, written as the other and read: for what both can hold, nothing has changed.
void tst_ExchangeFormats::roundTrip()
{
    QFETCH(QString, first);
    QFETCH(QString, second);
    const ExchangeFormat &firstFormat = *exchangeFormat(first);
    const ExchangeFormat &secondFormat = *exchangeFormat(second);
    const bool withTimes = canHoldTime(firstFormat) && canHoldTime(secondFormat);
    const std::vector<BusFrame> frames =
        randomFrames(firstFormat.holds & secondFormat.holds, std::max(firstFormat.tick, secondFormat.tick), withTimes);
    const ReadOptions readOptions{QDateTime(Day, QTime(23, 0))};
    Findings losses;
    WriteOptions options;
    options.encoding = "UTF-8";
    options.info.timeBase = withTimes ? CaptureInfo::Absolute : CaptureInfo::SinceStart;
    const Reading once = readBytes(firstFormat, writeBytes(firstFormat, frames, options, losses), readOptions, 100);
    QCOMPARE(described(losses).mid(0, 1), QStringList());
    QCOMPARE(described(once.findings), QStringList());
    QCOMPARE(comparable(once.frames, withTimes), comparable(frames, withTimes));
    options.info = once.info;
    const Reading twice =
        readBytes(secondFormat, writeBytes(secondFormat, once.frames, options, losses), readOptions, 100);
    QCOMPARE(described(losses), QStringList());
    QCOMPARE(described(twice.findings), QStringList());
    QCOMPARE(comparable(twice.frames, withTimes), comparable(frames, withTimes));
    if (withTimes) {
        const qint64 start = twice.info.timeBase == CaptureInfo::SinceStart ? twice.info.start : 0;
        QCOMPARE(start + twice.frames.front().time, frames.front().time);
    }
    // The adapter's times come back from a kind to itself.
    if (&firstFormat == &secondFormat) {
        QCOMPARE(described(twice.frames), described(once.frames));
    }
}

void tst_ExchangeFormats::emptyCaptures_data()
{
    QTest::addColumn<QString>("name");
    for (const ExchangeFormat &format : exchangeFormats()) {
        if (format.writer != nullptr) {
            QTest::newRow(format.name) << QString::fromLatin1(format.name);
        }
    }
}

void tst_ExchangeFormats::emptyCaptures()
{
    QFETCH(QString, name);
    Findings findings;
    const ExchangeFormat &format = *exchangeFormat(name);
    const QByteArray bytes = writeBytes(format, {}, {}, findings);
    const Reading reading = readBytes(format, bytes);
    QVERIFY(reading.frames.empty());
    QCOMPARE(described(findings) + described(reading.findings), QStringList());
}

void tst_ExchangeFormats::batchesOfAnySizeGiveTheSame_data()
{
    emptyCaptures_data();
}

void tst_ExchangeFormats::batchesOfAnySizeGiveTheSame()
{
    QFETCH(QString, name);
    const ExchangeFormat &format = *exchangeFormat(name);
    Findings findings;
    const std::vector<BusFrame> frames = randomFrames(format.holds, format.tick, false);
    const QByteArray bytes = writeBytes(format, frames, {}, findings);
    const QStringList expected = described(readBytes(format, bytes, {}, 5000).frames);
    QCOMPARE(expected.size(), 2000);
    for (const int room : {1, 3, 256}) {
        QCOMPARE(described(readBytes(format, bytes, {}, room).frames), expected);
    }
}

X9_PLAIN_TEST(tst_ExchangeFormats)
#include "tst_ExchangeFormats.moc"
