#include "exchange/BlfHeader.h"
#include "exchange/FindingTexts.h"
#include "tests/exchange/ExchangeTestData.h"
#include "tests/exchange/RandomFrames.h"
#include "tests/support/TestProgram.h"

#include <QtEndian>

using namespace ExchangeTestData;

/// BLF: objects and containers written by hand, what the header says, and containers that lie.
class tst_BlfFormat : public QObject
{
    Q_OBJECT

private slots:
    static void objects_data();
    static void objects();
    static void containers_data();
    static void containers();
    static void timesOfObjects();
    static void headerTellsOfTheFile();
    static void pipeGetsAHeaderAllTheSame();
    static void damage_data();
    static void damage();
    static void bombNeedsNoMemory();
    static void lostData();
};

namespace {

template<typename Number>
QByteArray bytesOf(Number number)
{
    const Number bytes = qToLittleEndian(number);
    return {reinterpret_cast<const char *>(&bytes), sizeof bytes};
}

const QByteArray Header = [] {
    BlfHeader header;
    header.start = QDateTime({2025, 10, 9}, {8, 53, 21, 500}).toMSecsSinceEpoch() * 1000000;
    const auto bytes = header.bytes();
    return QByteArray(bytes.data(), int(bytes.size()));
}();

QByteArray padded(const QByteArray &object)
{
    return object + QByteArray(object.size() % 4, '\0');
}

/// 5 us after the start.
QByteArray object(quint32 type, const QByteArray &body, quint16 version = 1, quint32 unit = 2, quint64 time = 5000)
{
    const QByteArray more(version == 2 ? 8 : 0, '\x55');
    const auto headerSize = static_cast<quint16>(32 + more.size());
    return padded("LOBJ" + bytesOf(headerSize) + bytesOf(version) +
                  bytesOf(static_cast<quint32>(headerSize + body.size())) + bytesOf(type) + bytesOf(unit) +
                  bytesOf<quint32>(0) + bytesOf(time) + more + body);
}

QByteArray can(quint32 identifier)
{
    return object(1, bytesOf<quint16>(1) + QByteArray("\0\3", 2) + bytesOf(identifier) +
                         QByteArray::fromHex("0102030000000000"));
}

QByteArray container(const QByteArray &content, quint16 compression, quint32 said)
{
    const QByteArray bytes = compression == 2 ? qCompress(content).mid(4) : content;
    return padded("LOBJ" + bytesOf<quint16>(16) + bytesOf<quint16>(1) +
                  bytesOf(static_cast<quint32>(32 + bytes.size())) + bytesOf<quint32>(10) + bytesOf(compression) +
                  QByteArray(6, '\0') + bytesOf(said) + QByteArray(4, '\0') + bytes);
}

QByteArray container(const QByteArray &content, quint16 compression = 2)
{
    return container(content, compression, static_cast<quint32>(content.size()));
}

const char *const Described1AB = "5/- 0 rx 1AB [3] 010203";

} // namespace

void tst_BlfFormat::objects_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("frame"); // empty: none
    QTest::addColumn<QString>("finding");
    const auto row = [](const char *name, int type, const QByteArray &body, const char *frame,
                        const QString &finding = {}) {
        QTest::newRow(name) << type << QByteArray::fromHex(body) << QString::fromLatin1(frame) << finding;
    };
    row("CAN_MESSAGE", 1, "0100 00 03 ab010000 0102030405060708", Described1AB);
    row("CAN_MESSAGE, sent, extended", 1, "0200 01 08 10f1da98 0102030405060708",
        "5/- 1 tx 18DAF110 ext [8] 0102030405060708");
    row("CAN_MESSAGE, remote", 1, "0100 80 0f ab010000 0102030405060708", "5/- 0 rx 1AB remote [8]");
    row("CAN_MESSAGE, request", 1, "0100 02 03 ab010000 0102030405060708", "", FindingTexts::transmitRequest());
    row("CAN_MESSAGE, cut", 1, "0100 00 03 ab010000 0102", "", FindingTexts::wrongLength());
    row("CAN_MESSAGE, 12 bits", 1, "0100 00 03 00080000 0102030405060708", "", FindingTexts::damagedRecord());
    row("CAN_MESSAGE2", 86, "0100 00 03 ab010000 0102030405060708 00000000 00 00 0000", Described1AB);
    const QByteArray zeros(126, '0');
    row("CAN_FD_MESSAGE", 100,
        "0100 00 09 ab010000 00000000 00 07 0c 00 00000000 0102030405060708090a0b0c" + zeros.left(104),
        "5/- 0 rx 1AB fd brs esi [12] 0102030405060708090A0B0C");
    row("CAN_FD_MESSAGE, classic", 100, "0100 01 02 ab010000 00000000 00 00 02 00 00000000 0102" + zeros.left(124),
        "5/- 0 tx 1AB [2] 0102");
    row("CAN_FD_MESSAGE, 65 bytes", 100, "0100 00 0f ab010000 00000000 00 01 41 00 00000000 0102" + zeros, "",
        FindingTexts::wrongLength());
    const QByteArray timing(36, '0');
    row("CAN_FD_MESSAGE_64", 101, "02 02 02 00 ab010080 00000000 00300000" + timing + "00 00 00000000 0102",
        "5/- 1 rx 1AB ext fd brs [2] 0102");
    row("CAN_FD_MESSAGE_64, sent", 101,
        "01 0a 10 00 ab010000 00000000 00500000" + timing + "01 00 00000000 000102030405060708090a0b0c0d0e0f",
        "5/- 0 tx 1AB fd esi [16] 000102030405060708090A0B0C0D0E0F");
    row("CAN_FD_MESSAGE_64, remote", 101, "01 03 00 00 ab010000 00000000 10000000" + timing + "01 00 00000000",
        "5/- 0 tx 1AB remote [3]");
    row("CAN_FD_MESSAGE_64, too few", 101, "01 09 0c 00 ab010000 00000000 00100000" + timing + "00 00 00000000 0102",
        "", FindingTexts::wrongLength());
    row("CAN_ERROR", 2, "0200 0000", "5/- 1 rx 0 error [0]");
    row("CAN_ERROR_EXT of Linux", 73, "0200 0000 00000000 00 00 08 00 00000000 88000000 0000 0000 0000020000000000",
        "5/- 1 rx 88 error [8] 0000020000000000");
    row("CAN_ERROR_EXT of a controller", 73,
        "0200 0000 01000000 a2 00 08 00 00000000 ab010000 0000 0000 0102030405060708", "5/- 1 rx 0 error [0]");
    row("CAN_FD_ERROR_64", 104, "03 00 00 00", "5/- 2 rx 0 error [0]");
    row("LIN_MESSAGE", 11, "0200 10 01 5500000000000000 00 00 00 00 5a00 01 00", "5/- 1 tx 10 lin [1] 55 5a 2");
    row("LIN_CRC_ERROR", 12, "0200 10 01 5500000000000000 00 00 00 00 1100 00 00", "5/- 1 rx 10 lin [1] 55 11 4");
    row("LIN_RCV_ERROR", 14, "0200 10 01 00 00 00 00 00 00 00 00", "5/- 1 rx 10 lin [0]  00 5");
    row("LIN_SND_ERROR", 15, "0200 10 01 00 00 00 00", "5/- 1 tx 10 lin [0]  00 5");
    row("another object", 4, "0100 0000 00000000", "", FindingTexts::otherEvent());
}

void tst_BlfFormat::objects()
{
    QFETCH(const int, type);
    QFETCH(const QByteArray, body);
    QFETCH(const QString, frame);
    QFETCH(const QString, finding);
    const Reading reading = readBytes(format("blf"), Header + container(object(static_cast<quint32>(type), body)));
    QCOMPARE(described(reading.frames).join(QLatin1Char('|')), frame);
    QCOMPARE(described(reading.findings).join(QLatin1Char('|')),
             finding.isEmpty() ? QString() : QStringLiteral("Offset 144: ") + finding);
}

void tst_BlfFormat::containers_data()
{
    QTest::addColumn<QByteArray>("content");
    const QByteArray one = can(0x1AB);
    const QByteArray cut = one.left(20);
    const QByteArray rest = one.mid(20);
    QTest::newRow("compressed") << container(one + one);
    QTest::newRow("stored") << container(one + one, 0);
    QTest::newRow("in none") << one + one;
    QTest::newRow("some of each") << container(one) + one;
    QTest::newRow("across containers") << container(one + cut) + container(rest);
    QTest::newRow("across stored containers") << container(one + cut, 0) + container(rest, 0);
    QTest::newRow("across many") << container(one.left(1)) + container(one.mid(1, 1)) +
                                        container(one.mid(2) + one.left(3)) + container(one.mid(3), 0);
    QTest::newRow("empty ones between") << container({}) + container(one) + container({}, 0) + container(one);
    QTest::newRow("padded to four") << container(one) + QByteArray(3, '\0') + container(one) + QByteArray(3, '\0');
    QTest::newRow("version 2 of the header")
        << container(object(1, QByteArray::fromHex("01000003ab0100000102030405060708"), 2) + one);
    QTest::newRow("large unknown object") << container(one + object(65, QByteArray(200000, 'x'))) + container(one);
}

void tst_BlfFormat::containers()
{
    QFETCH(const QByteArray, content);
    const Reading reading = readBytes(format("blf"), Header + content);
    QCOMPARE(described(reading.frames),
             QStringList({QString::fromLatin1(Described1AB), QString::fromLatin1(Described1AB)}));
    QCOMPARE(reading.findings.count(), reading.findings.count(FindingTexts::otherEvent()));
}

void tst_BlfFormat::timesOfObjects()
{
    const QByteArray body = QByteArray::fromHex("01000003ab0100000102030405060708");
    const Reading reading = readBytes(
        format("blf"), Header + container(object(1, body, 1, 1, 7) + object(1, body, 1, 2, 7) +
                                          object(1, body, 1, 1, ~quint64(0)) + object(1, body, 1, 2, ~quint64(0))));
    QCOMPARE(reading.frames.size(), std::size_t(4));
    QCOMPARE(reading.frames[0].time, 70000);
    QCOMPARE(reading.frames[1].time, 7);
    QCOMPARE(reading.frames[2].time, BusFrame::NoTime);
    QCOMPARE(reading.frames[3].time, BusFrame::NoTime);
    QCOMPARE(reading.findings.count(FindingTexts::timeOutOfRange()), 2);
    QCOMPARE(reading.info.start, QDateTime({2025, 10, 9}, {8, 53, 21, 500}).toMSecsSinceEpoch() * 1000000);
}

void tst_BlfFormat::headerTellsOfTheFile()
{
    const qint64 start = QDateTime({2025, 10, 9}, {8, 53, 21, 500}).toMSecsSinceEpoch() * 1000000;
    auto frames = RandomFrames::make(RandomFrames::Mixed, 5000, start + 123, 1);
    WriteOptions options;
    options.info.timeBase = CaptureInfo::Absolute;
    Findings findings;
    const QByteArray bytes = writeBytes(format("blf"), frames, options, findings);
    const BlfHeader header = BlfHeader::read(bytes.constData());
    QCOMPARE(header.size, 144U);
    QCOMPARE(header.fileSize, quint64(bytes.size()));
    QCOMPARE(header.objects, 5000U);
    QCOMPARE(header.start, start);
    QCOMPARE(header.end / 1000000, frames.back().time / 1000000);
    quint64 size = 144;
    for (const BusFrame &frame : frames) {
        size += frame.is(BusFrame::Error) ? 64 : frame.is(BusFrame::Fd) ? 116 : 48;
    }
    QVERIFY(header.uncompressedSize > size && header.uncompressedSize < size + 5000);
    QCOMPARE((header.uncompressedSize - size) % 32, quint64(0)); // the containers' own headers
}

void tst_BlfFormat::pipeGetsAHeaderAllTheSame()
{
    class Pipe : public QBuffer
    {
    public:
        bool isSequential() const override { return true; }
    };
    Pipe pipe;
    QVERIFY(pipe.open(QIODevice::WriteOnly));
    ByteOutput out(pipe);
    Findings findings;
    const auto writer = format("blf").writer(out, {}, findings);
    BusFrame frame;
    frame.time = 5000;
    writer->write(&frame, 1);
    writer->finish();
    QVERIFY(out.flush());
    QCOMPARE(described(findings), QStringList(QStringLiteral("Nowhere 0: ") + FindingTexts::headerNotCompleted()));
    QCOMPARE(BlfHeader::read(pipe.data().constData()).objects, 0U);
    QCOMPARE(described(readBytes(format("blf"), pipe.data()).frames), QStringList(QStringLiteral("5/- 0 rx 0 [0]")));
}

void tst_BlfFormat::damage_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("frames");
    QTest::addColumn<QString>("finding");
    const QByteArray one = can(0x1AB);
    const auto row = [](const char *name, const QByteArray &bytes, int frames, const QString &finding) {
        QTest::newRow(name) << bytes << frames << finding;
    };
    QByteArray broken = container(one + one);
    broken[40] = static_cast<char>(~broken[40]);
    row("compressed data", Header + broken + container(one), 1, FindingTexts::damagedCompression());
    row("no compression known", Header + container(one, 1) + container(one), 1, FindingTexts::unknownCompression());
    row("more than said", Header + container(one + one, 2, 48), 2, FindingTexts::wrongContainerSize());
    row("less than said", Header + container(one, 2, 0xFFFFFFFF), 1, FindingTexts::wrongContainerSize());
    row("rubbish between", Header + container(one) + QByteArray(20, 'x') + container(one), 2,
        FindingTexts::damagedRecord());
    row("rubbish within", Header + container(one + QByteArray(20, 'x') + one), 2, FindingTexts::damagedRecord());
    QByteArray small = one;
    small[8] = 3;
    row("object that is too small", Header + container(small + one), 1, FindingTexts::damagedRecord());
    QByteArray huge = one;
    qToLittleEndian<quint32>(0xFFFFFFFF, huge.data() + 8);
    row("object of 4 GB", Header + container(huge + one), 1, FindingTexts::damagedRecord());
    row("object of 4 GB in no container", Header + huge + container(one), 1, FindingTexts::damagedRecord());
    QByteArray head = one;
    head[4] = 4;
    row("header that is too small", Header + container(head + one), 1, FindingTexts::damagedRecord());
    QByteArray claim = container(one);
    qToLittleEndian<quint32>(0xFFFFFFFF, claim.data() + 8);
    row("container of 4 GB", Header + claim + container(one), 2, QString());
    row("cut container", Header + container(one) + container(one).left(40), 1, FindingTexts::cutAtEnd());
    row("cut object", Header + container(one + one.left(40)), 1, FindingTexts::cutAtEnd());
    row("no header", container(one), 1, FindingTexts::damagedHeader());
    QByteArray odd = Header;
    qToLittleEndian<quint32>(0x7FFFFFFF, odd.data() + 4);
    row("header of 2 GB", odd + container(one), 1, FindingTexts::damagedHeader());
    row("nothing", {}, 0, FindingTexts::damagedHeader());
}

void tst_BlfFormat::damage()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const int, frames);
    QFETCH(const QString, finding);
    const Reading reading = readBytes(format("blf"), bytes);
    QCOMPARE(int(reading.frames.size()), frames);
    for (const BusFrame &frame : reading.frames) {
        QCOMPARE(described(frame), QString::fromLatin1(Described1AB));
    }
    if (finding.isEmpty()) {
        QCOMPARE(described(reading.findings), QStringList());
    } else {
        QVERIFY2(reading.findings.count(finding) > 0, qPrintable(described(reading.findings).join(QLatin1Char('|'))));
    }
}

/// 64 MB of zeros in 64 KB: nothing of it is kept.
void tst_BlfFormat::bombNeedsNoMemory()
{
    const QByteArray zeros = container(QByteArray(1 << 26, '\0'), 2, 0xFFFFFFFF);
    const Reading reading = readBytes(format("blf"), Header + zeros + container(can(0x1AB)));
    QCOMPARE(reading.frames.size(), std::size_t(1));
    QCOMPARE(reading.findings.count(FindingTexts::wrongContainerSize()), 1);
    QCOMPARE(reading.findings.count(FindingTexts::damagedRecord()), 1);
}

void tst_BlfFormat::lostData()
{
    BusFrame lin;
    lin.time = 0;
    lin.flags = BusFrame::Lin;
    lin.linState = BusFrame::LinError;
    lin.length = 3;
    Findings findings;
    writeBytes(format("blf"), {lin}, {}, findings);
    QCOMPARE(described(findings), QStringList(QStringLiteral("Frame 1: ") + FindingTexts::linErrorData()));
}

X9_CORE_TEST(tst_BlfFormat)
#include "tst_BlfFormat.moc"
