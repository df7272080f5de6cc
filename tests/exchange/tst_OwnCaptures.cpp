#include "tests/exchange/ExchangeTestData.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

using namespace ExchangeTestData;

namespace {

const QDateTime FileDate(QDate(2026, 3, 4), QTime(12, 0));

/// The frames with the times of day of their first column counted from the midnight before 2026-03-04.
QStringList describedFromDay(std::vector<BusFrame> frames, const QDate &day)
{
    const qint64 midnight = QDateTime(day, QTime(0, 0)).toMSecsSinceEpoch() * 1000000;
    for (BusFrame &frame : frames) {
        frame.time -= midnight;
    }
    return described(frames);
}

} // namespace

class tst_OwnCaptures : public QObject
{
    Q_OBJECT

private slots:
    static void files_data();
    static void files();
    static void recognition_data();
    static void recognition();
    static void realTimeOverMidnightTakesTheFilesDate();
    static void aPipeHasNoDate();
    static void everyByteCutLosesNothingBefore();
    static void frameByFrameWhileItGrows();
    static void whatTheProgramWritesAndThisAreTheSame_data();
    static void whatTheProgramWritesAndThisAreTheSame();
    static void lossesAreTold();
    static void everyNumberAndLength_data();
    static void everyNumberAndLength();
};

void tst_OwnCaptures::files_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QStringList>("frames");
    QTest::addColumn<QStringList>("findings");
    const auto row = [](const char *file, const QStringList &frames, const QStringList &findings = {}) {
        QTest::newRow(file) << QString::fromLatin1(file) << frames << findings;
    };
    const QString first = QStringLiteral("1000000/1000000 0 rx 1AB [3] 01A2FF");
    const QStringList others = {
        QStringLiteral("1001000/1001000 0 rx 12345678 ext fd brs [12] 000102030405060708090A0B"),
        QStringLiteral("1001000/- 0 tx 7FF remote [2]"),
        QStringLiteral("1003000/1003000 0 rx 1 fd [64] ") + QString(128, QLatin1Char('0')),
        QStringLiteral("1004000/1004000 0 rx 2 [8] 0101010101010101")};
    row("exchange/canfd_length_lies.canfd", QStringList(first) + others,
        {QStringLiteral("Offset 36: 33 bytes that are no records")});
    row("exchange/canfd_hole.canfd", QStringList(first) + others,
        {QStringLiteral("Offset 36: 5000 bytes that are no records")});
    row("exchange/canfd_no_header.canfd", QStringList(first) + others,
        {QStringLiteral("Offset 0: the header is missing")});
    row("exchange/canfd_stamps_wrap.canfd",
        {QStringLiteral("4294967280000/4294967280000 0 rx 1 [0]"), QStringLiteral("4294967280000/- 0 tx 2 [0]"),
         QStringLiteral("4294967301000/4294967301000 0 rx 3 [0]")});
    row("exchange/can_hole.can",
        {first, QStringLiteral("1001000/1001000 0 rx 12345678 ext [8] 0001020304050607"),
         QStringLiteral("1002000/1002000 0 rx 9 [8] 0101010101010101")},
        {QStringLiteral("Offset 44: zeros where records should be"),
         QStringLiteral("Offset 4868: a length of more than 8 was taken as 8"),
         QStringLiteral("Offset 4892: the last record is cut and was left out")});
    row("capture/can_header_only.can", {});
    row("capture/canfd_empty.canfd", {}, {QStringLiteral("Offset 0: the header is missing")});
    row("capture/canfd_cut_record.canfd", {QStringLiteral("3723004000/3723004000 0 rx 1AB [3] 01A2FF")},
        {QStringLiteral("Offset 36: the last record is cut and was left out")});
    row("exchange/csv_damaged.csv",
        {QStringLiteral("37230400000/3723004000 0 rx 1AB [3] 01A2FF"),
         QStringLiteral("37230400000/3723005000 0 rx 1AB [3] 01A2FF"),
         QStringLiteral("37230500000/3723007000 0 rx 1AB [1] 01")},
        {QStringLiteral("Line 4: the length is not that of the payload, which was taken"),
         QStringLiteral("Line 5: a line with too few cells was left out"),
         QStringLiteral("Line 6: frames are missing: their numbers jump"),
         QStringLiteral("Line 7: a line with a damaged payload was left out")});
    const QStringList chinese = {
        QStringLiteral("37230400000/3723004000 0 rx 1AB [3] 01A2FF"),
        QStringLiteral("37230500000/- 0 refused 1FFFFFFF ext fd brs [12] 000102030405060708090A0B"),
        QStringLiteral("37230600000/- 0 tx 7 remote [0]")};
    row("exchange/txt_chinese_gbk.txt", chinese);
    row("exchange/txt_chinese_utf8.txt", chinese);
    row("exchange/txt_upper_realtime.txt", {QStringLiteral("37230400000/3723004000 0 rx 1AB [3] 01A2FF"),
                                            QStringLiteral("37231150000/3724001000 0 rx 1AB [3] 01A2FF")});
}

void tst_OwnCaptures::files()
{
    QFETCH(QString, file);
    QFETCH(QStringList, frames);
    QFETCH(QStringList, findings);
    const QByteArray bytes = fileBytes(file);
    const ExchangeFormat *format = exchangeFormatOfPath(file);
    QVERIFY(format != nullptr);
    const Reading reading = readBytes(*format, bytes);
    QCOMPARE(described(reading.findings), findings);
    QCOMPARE(described(reading.frames), frames);
    QCOMPARE(reading.info.timeBase, CaptureInfo::SinceStart);
    QCOMPARE(reading.info.format, QLatin1String(format->name));
}

void tst_OwnCaptures::recognition_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("format");
    const auto row = [](const char *file, const char *format) {
        QTest::newRow(file) << QString::fromLatin1(file) << QString::fromLatin1(format);
    };
    row("capture/can_four.can", "can");
    row("capture/can_other_three.can", "can");
    row("capture/canfd_five.canfd", "canfd");
    row("capture/canfd_header_only.canfd", "canfd");
    row("capture/csv_own.csv", "csv");
    row("capture/csv_own_crlf.csv", "csv");
    row("capture/csv_own_chinese_utf8_mark.csv", "csv");
    row("capture/csv_own_chinese_gbk_crlf.csv", "csv");
    row("capture/csv_own_header_only.csv", "csv");
    row("capture/csv_foreign.csv", "");
    row("capture/csv_empty.csv", "");
    row("capture/txt_own.txt", "txt");
    row("capture/txt_own_chinese_gbk_crlf.txt", "txt");
    row("exchange/txt_upper_realtime.txt", "txt");
    row("exchange/lin_midnight_gbk.csv", "lin-csv");
    row("lin/four.csv", "lin-csv");
    row("exchange/candump_classic.log", "candump");
    row("exchange/candump_screen.log", "candump");
    row("exchange/README.md", "");
}

void tst_OwnCaptures::recognition()
{
    QFETCH(QString, file);
    QFETCH(QString, format);
    const QByteArray bytes = fileBytes(file);
    const ExchangeFormat *found = recognisedFormat({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    QCOMPARE(found != nullptr ? QString::fromLatin1(found->name) : QString(), format);
}

void tst_OwnCaptures::realTimeOverMidnightTakesTheFilesDate()
{
    const Reading reading =
        readBytes(format("csv"), fileBytes(QStringLiteral("exchange/csv_realtime_midnight.csv")), {FileDate});
    QCOMPARE(reading.info.timeBase, CaptureInfo::Absolute);
    QCOMPARE(described(reading.findings), QStringList());
    QCOMPARE(describedFromDay(reading.frames, QDate(2026, 3, 3)),
             QStringList({QStringLiteral("86398000000/3723004000 0 rx 1AB [3] 01A2FF"),
                          QStringLiteral("86399500000/3724504000 0 rx 1AB fd brs [12] 000102030405060708090A0B"),
                          QStringLiteral("86400250000/- 0 tx 12345678 ext remote [2]"),
                          QStringLiteral("86401000000/3726000000 0 rx 7FF fd [0]")}));
}

void tst_OwnCaptures::aPipeHasNoDate()
{
    const Reading reading = readBytes(format("csv"), fileBytes(QStringLiteral("exchange/csv_realtime_midnight.csv")));
    QCOMPARE(reading.info.timeBase, CaptureInfo::SinceStart);
    QCOMPARE(reading.frames.back().time, qint64{86401000} * 1000000);
}

void tst_OwnCaptures::everyByteCutLosesNothingBefore()
{
    for (const char *name : {"can_four.can", "canfd_five.canfd", "csv_own.csv", "txt_own.txt"}) {
        const QString file = QStringLiteral("capture/") + QLatin1String(name);
        const ExchangeFormat &kind = *exchangeFormatOfPath(file);
        const QByteArray bytes = fileBytes(file);
        const QStringList whole = described(readBytes(kind, bytes).frames);
        QVERIFY(whole.size() >= 4);
        int least = 0;
        for (int size = 20; size < bytes.size(); ++size) {
            const QStringList frames = described(readBytes(kind, bytes.left(size)).frames);
            // The last one may lack bytes of its payload in text, where its length says so.
            const int sure = std::max(0, frames.size() - 1);
            QCOMPARE(frames.mid(0, sure), whole.mid(0, sure));
            QVERIFY(frames.size() >= least);
            least = sure;
        }
        QVERIFY(least >= whole.size() - 2);
    }
}

void tst_OwnCaptures::frameByFrameWhileItGrows()
{
    for (const char *name :
         {"can_four.can", "can_other_three.can", "canfd_five.canfd", "csv_own_realtime.csv", "txt_own.txt"}) {
        const QByteArray bytes = fileBytes(QStringLiteral("capture/") + QLatin1String(name));
        const ExchangeFormat &kind = *exchangeFormatOfPath(QString::fromLatin1(name));
        const QStringList whole = described(readBytes(kind, bytes).frames);
        QBuffer buffer;
        QVERIFY(buffer.open(QIODevice::ReadOnly));
        ByteInput in(buffer);
        in.setGrowing(true);
        Findings findings;
        const auto reader = kind.reader(in, {}, findings);
        QStringList frames;
        BusFrame frame;
        for (const char byte : bytes) {
            buffer.buffer().append(byte);
            while (reader->read(&frame, 1) > 0) {
                frames.append(described(frame));
            }
        }
        in.setGrowing(false);
        while (reader->read(&frame, 1) > 0) {
            frames.append(described(frame));
        }
        QCOMPARE(frames, whole);
        QCOMPARE(described(findings), QStringList());
    }
}

void tst_OwnCaptures::whatTheProgramWritesAndThisAreTheSame_data()
{
    QTest::addColumn<QString>("file");
    for (const char *name :
         {"capture/can_four.can", "capture/canfd_five.canfd", "capture/csv_own.csv", "capture/txt_own.txt",
          "lin/four.csv", "exchange/txt_chinese_utf8.txt", "exchange/txt_chinese_gbk.txt"}) {
        QTest::newRow(name) << QString::fromLatin1(name);
    }
}

/// Read whole and written again, a file that the program could have written is the same byte by byte.
void tst_OwnCaptures::whatTheProgramWritesAndThisAreTheSame()
{
    QFETCH(QString, file);
    QByteArray bytes = fileBytes(file);
    const ExchangeFormat &kind = *recognisedFormat({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    const Reading reading = readBytes(kind, bytes);
    WriteOptions options;
    options.info = reading.info;
    options.isChinese = file.contains(QLatin1String("chinese"));
    options.encoding = file.contains(QLatin1String("gbk")) ? "GBK" : "UTF-8";
    Findings findings;
    const QByteArray written = writeBytes(kind, reading.frames, options, findings).replace("\r\n", "\n");
    QCOMPARE(written, bytes.replace("\r\n", "\n"));
    QCOMPARE(described(findings), QStringList());
}

void tst_OwnCaptures::lossesAreTold()
{
    BusFrame classic;
    classic.time = 0;
    classic.channel = 1;
    BusFrame fd = classic;
    fd.set(BusFrame::Fd);
    fd.set(BusFrame::ErrorStateIndicator);
    BusFrame refused = classic;
    refused.channel = 0;
    refused.direction = BusFrame::Refused;
    BusFrame lin;
    lin.set(BusFrame::Lin);
    BusFrame error;
    error.set(BusFrame::Error);
    const std::vector<BusFrame> frames = {classic, fd, fd, refused, lin, error};
    const auto lossesOf = [&](const char *name, int count) {
        Findings findings;
        const QByteArray bytes = writeBytes(format(name), frames, {}, findings);
        const int written = static_cast<int>(readBytes(format(name), bytes).frames.size());
        return written == count ? described(findings) : QStringList(QString::number(written));
    };
    const QString channel = QStringLiteral("Frame 1: channel not written: this kind of file has one");
    const QString noError = QStringLiteral("Frame 6: error frame left out: this kind of file holds none");
    const QString noLin = QStringLiteral("Frame 5: LIN frame left out: this kind of file holds none");
    const QString noRefused =
        QStringLiteral("Frame 4: frame that the adapter refused: this kind of file does not tell it apart");
    QCOMPARE(lossesOf("can", 2),
             QStringList({QStringLiteral("Frame 2: CAN FD frame left out: this kind of file holds none (2)"), noError,
                          noLin, noRefused, channel}));
    QCOMPARE(
        lossesOf("csv", 4),
        QStringList({noError, noLin, channel + QStringLiteral(" (3)"),
                     QStringLiteral("Frame 2: error state indicator not written: this kind of file has none (2)")}));
    QCOMPARE(lossesOf("candump", 4), QStringList({noLin, noRefused}));
    QCOMPARE(lossesOf("lin-csv", 1).size(), 4);
}

void tst_OwnCaptures::everyNumberAndLength_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("separator");
    QTest::newRow("csv") << QByteArray("csv") << QByteArray(",");
    QTest::newRow("txt") << QByteArray("txt") << QByteArray("     ");
}

/// Lines are put together of parts of other lines: each is compared with one that is not.
void tst_OwnCaptures::everyNumberAndLength()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, separator);
    constexpr int Count = 12001;
    std::vector<BusFrame> frames;
    for (int i = 0; i < Count; ++i) {
        BusFrame frame;
        frame.set(BusFrame::Fd);
        frame.set(BusFrame::Extended);
        frame.identifier = 1U << static_cast<unsigned>(i % 29) | static_cast<unsigned>(i);
        frame.length = static_cast<quint8>(i % (BusFrame::MaxLength + 1));
        frame.time = qint64{i} * 7001000;
        frames.push_back(frame);
    }
    Findings findings;
    WriteOptions options;
    options.info.timeBase = CaptureInfo::SinceStart;
    const QList<QByteArray> lines = writeBytes(format(name.constData()), frames, options, findings).split('\n');
    QVERIFY(lines.size() >= Count + 2);
    for (int i = 0; i < Count; ++i) {
        const BusFrame &frame = frames[static_cast<std::size_t>(i)];
        const QByteArrayList cells = {QByteArray::number(i + 1),
                                      QTime::fromMSecsSinceStartOfDay(static_cast<int>(frame.time / 1000000))
                                          .toString(QStringLiteral("hh:mm:ss.zzz"))
                                          .toLatin1(),
                                      "None",
                                      "Revice",
                                      "0x" + QByteArray::number(frame.identifier, 16).toUpper(),
                                      "CANFD",
                                      "Data",
                                      "Extend",
                                      "0x" + QByteArray::number(uint{frame.length}, 16).toUpper(),
                                      QByteArray("00 ").repeated(frame.length)};
        QCOMPARE(lines.at(i + 2).trimmed(), cells.join(separator).trimmed());
    }
}

X9_PLAIN_TEST(tst_OwnCaptures)
#include "tst_OwnCaptures.moc"
