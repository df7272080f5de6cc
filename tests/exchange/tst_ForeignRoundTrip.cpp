#include "tests/exchange/ExchangeTestData.h"
#include "tests/exchange/RandomFrames.h"
#include "tests/support/TestProgram.h"

using namespace ExchangeTestData;

/// Captures of other programs' kinds: what is written is read as the same frames.
class tst_ForeignRoundTrip : public QObject
{
    Q_OBJECT

private slots:
    static void everyKindOfFrame_data();
    static void everyKindOfFrame();
    static void timesSinceAnUnknownStart_data();
    static void timesSinceAnUnknownStart();
    static void nothing_data();
    static void nothing();
    static void recognised_data();
    static void recognised();
    static void cutAnywhere_data();
    static void cutAnywhere();
    static void inPieces_data();
    static void inPieces();
};

namespace {

constexpr qint64 SomeTime = 1760000001500000123; // 2025-10-09
constexpr const char *Formats[] = {"asc", "blf", "pcapng", "pcap", "trc"};

void formatRows()
{
    QTest::addColumn<QString>("name");
    for (const char *name : Formats) {
        QTest::newRow(name) << QString::fromLatin1(name);
    }
}

qint64 absolute(const Reading &reading, const BusFrame &frame)
{
    return frame.time + (reading.info.timeBase == CaptureInfo::Absolute ? 0 : reading.info.start);
}

/// What the kind has no place for is not in the frames.
std::vector<BusFrame> framesFor(const ExchangeFormat &format, RandomFrames::Kind kind)
{
    auto frames = RandomFrames::make(kind, 2000, SomeTime, format.tick);
    for (BusFrame &frame : frames) {
        frame.channel = (format.holds & ExchangeFormat::Channels) != 0 ? frame.channel : quint16(0);
        if ((format.holds & ExchangeFormat::Directions) == 0) {
            frame.direction = BusFrame::Received;
        }
    }
    return frames;
}

WriteOptions absoluteTimes()
{
    WriteOptions options;
    options.info.timeBase = CaptureInfo::Absolute;
    return options;
}

} // namespace

void tst_ForeignRoundTrip::everyKindOfFrame_data()
{
    struct Kind
    {
        const char *name;
        RandomFrames::Kind kind;
        quint32 needs;
    };
    constexpr Kind Kinds[] = {{"classic", RandomFrames::Classic, ExchangeFormat::ClassicCan},
                              {"remote", RandomFrames::Remote, ExchangeFormat::RemoteFrames},
                              {"fd", RandomFrames::Fd, ExchangeFormat::CanFd},
                              {"error", RandomFrames::Error, ExchangeFormat::ErrorFrames},
                              {"lin", RandomFrames::Lin, ExchangeFormat::LinFrames},
                              {"lin errors", RandomFrames::LinErrors, ExchangeFormat::LinFrames},
                              {"mixed", RandomFrames::Mixed, ExchangeFormat::CanFd}};
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("kind");
    for (const char *name : Formats) {
        for (const Kind &kind : Kinds) {
            if ((format(name).holds & kind.needs) != 0) {
                QTest::addRow("%s, %s", name, kind.name) << QString::fromLatin1(name) << int(kind.kind);
            }
        }
    }
}

void tst_ForeignRoundTrip::everyKindOfFrame()
{
    QFETCH(const QString, name);
    QFETCH(const int, kind);
    const ExchangeFormat &format = *exchangeFormat(name);
    const auto frames = framesFor(format, static_cast<RandomFrames::Kind>(kind));
    Findings findings;
    const QByteArray bytes = writeBytes(format, frames, absoluteTimes(), findings);
    QCOMPARE(described(findings), QStringList());
    Reading reading = readBytes(format, bytes);
    QCOMPARE(described(reading.findings), QStringList());
    for (BusFrame &frame : reading.frames) {
        frame.time = absolute(reading, frame);
    }
    QCOMPARE(RandomFrames::difference(reading.frames, frames), QString());
}

void tst_ForeignRoundTrip::timesSinceAnUnknownStart_data()
{
    formatRows();
}

void tst_ForeignRoundTrip::timesSinceAnUnknownStart()
{
    QFETCH(const QString, name);
    const ExchangeFormat &format = *exchangeFormat(name);
    auto frames = RandomFrames::make(RandomFrames::Classic, 10, 5000000, format.tick);
    for (BusFrame &frame : frames) {
        frame.channel = 0;
        frame.direction = BusFrame::Received;
    }
    Findings findings;
    const Reading reading = readBytes(format, writeBytes(format, frames, {}, findings));
    QCOMPARE(reading.info.start, 0);
    QCOMPARE(RandomFrames::difference(reading.frames, frames), QString());
}

void tst_ForeignRoundTrip::nothing_data()
{
    formatRows();
}

/// A capture without frames is one all the same.
void tst_ForeignRoundTrip::nothing()
{
    QFETCH(const QString, name);
    const ExchangeFormat &format = *exchangeFormat(name);
    Findings findings;
    const QByteArray bytes = writeBytes(format, {}, absoluteTimes(), findings);
    const Reading reading = readBytes(format, bytes);
    QVERIFY(!bytes.isEmpty());
    QCOMPARE(recognisedFormat({bytes.constData(), static_cast<std::size_t>(bytes.size())}), &format);
    QVERIFY(reading.frames.empty());
    QCOMPARE(described(reading.findings), QStringList());
}

void tst_ForeignRoundTrip::recognised_data()
{
    formatRows();
}

void tst_ForeignRoundTrip::recognised()
{
    QFETCH(const QString, name);
    const ExchangeFormat &format = *exchangeFormat(name);
    Findings findings;
    const QByteArray bytes =
        writeBytes(format, framesFor(format, RandomFrames::Mixed), absoluteTimes(), findings).left(1 << 16);
    QCOMPARE(recognisedFormat({bytes.constData(), static_cast<std::size_t>(bytes.size())}), &format);
    QCOMPARE(exchangeFormatOfPath(QStringLiteral("folder/Some.File.") + name.toUpper()), &format);
}

void tst_ForeignRoundTrip::cutAnywhere_data()
{
    formatRows();
}

/// A cut file gives the frames before the cut, and says where it is cut, except where a text ends with a whole line.
void tst_ForeignRoundTrip::cutAnywhere()
{
    QFETCH(const QString, name);
    const ExchangeFormat &format = *exchangeFormat(name);
    auto frames = framesFor(format, RandomFrames::Mixed);
    frames.resize(12);
    Findings findings;
    const QByteArray bytes = writeBytes(format, frames, absoluteTimes(), findings);
    std::size_t most = 0;
    for (int size = 0; size < bytes.size(); ++size) {
        Reading reading = readBytes(format, bytes.left(size));
        for (BusFrame &frame : reading.frames) {
            frame.time = absolute(reading, frame);
        }
        QVERIFY(reading.frames.size() >= most);
        most = reading.frames.size();
        const std::vector<BusFrame> begin(frames.begin(), frames.begin() + static_cast<std::ptrdiff_t>(most));
        const bool isText = name == QLatin1String("asc") || name == QLatin1String("trc");
        if (!isText) { // the last line of a text may be a shorter one
            QCOMPARE(RandomFrames::difference(reading.frames, begin), QString());
        }
    }
    QVERIFY(most + 1 >= frames.size());
}

void tst_ForeignRoundTrip::inPieces_data()
{
    formatRows();
}

/// A file that grows while it is read gives the same frames.
void tst_ForeignRoundTrip::inPieces()
{
    QFETCH(const QString, name);
    const ExchangeFormat &format = *exchangeFormat(name);
    const auto frames = framesFor(format, RandomFrames::Mixed);
    Findings findings;
    const QByteArray bytes = writeBytes(format, frames, absoluteTimes(), findings);
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::ReadWrite));
    ByteInput in(buffer);
    in.setGrowing(true);
    const auto reader = format.reader(in, {}, findings);
    Reading reading;
    std::vector<BusFrame> batch(100);
    const auto readAll = [&] {
        for (int count = 0; (count = reader->read(batch.data(), 100)) > 0;) {
            reading.frames.insert(reading.frames.end(), batch.begin(), batch.begin() + count);
        }
    };
    for (int at = 0; at < bytes.size(); at += 997) {
        buffer.buffer().append(bytes.mid(at, 997));
        readAll();
    }
    in.setGrowing(false);
    readAll();
    reading.info = reader->info();
    for (BusFrame &frame : reading.frames) {
        frame.time = absolute(reading, frame);
    }
    QCOMPARE(described(findings), QStringList());
    QCOMPARE(RandomFrames::difference(reading.frames, frames), QString());
}

X9_CORE_TEST(tst_ForeignRoundTrip)
#include "tst_ForeignRoundTrip.moc"
