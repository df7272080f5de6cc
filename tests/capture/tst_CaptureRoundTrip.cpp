#include "CaptureTestData.h"

#include "capture/CaptureReader.h"
#include "capture/CaptureWriter.h"
#include "capture/RealTimeFile.h"
#include "tests/support/TestProgram.h"

#include <QBuffer>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCodec>

using namespace CaptureTestData;

namespace {

constexpr int Cases = 10000;

FrameRecord randomRecord(QRandomGenerator &random)
{
    static const int lengths[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 12, 16, 20, 24, 32, 48, 64};
    FrameRecord record;
    record.extended = random.bounded(2) & 1;
    record.id = random.generate() & 0x1FFFFFFFU;
    if (!record.extended) {
        record.id &= 0x7FFU;
    }
    record.protocol = quint8(random.bounded(3));
    record.remote = record.protocol == FrameRecord::CAN && random.bounded(4) == 0;
    record.direction = quint8(random.bounded(3));
    record.sendType = quint8(random.bounded(256));
    record.timeFlag = random.bounded(2) & 1;
    record.timeStamp = record.direction == FrameRecord::Received ? random.generate() : 0;
    record.systemTime = QStringLiteral("%1:20:30.400").arg(random.bounded(24), 2, 10, QLatin1Char('0'));
    const int longest = record.protocol == FrameRecord::CAN ? 9 : int(std::size(lengths));
    record.data.resize(lengths[random.bounded(longest)]);
    for (char &byte : record.data) {
        byte = char(random.bounded(256));
    }
    return record;
}

struct Table
{
    std::vector<FrameRecord> records;
    FrameStore store;

    explicit Table(QRandomGenerator &random)
    {
        const int rows = random.bounded(20);
        for (int i = 0; i < rows; ++i) {
            records.push_back(randomRecord(random));
            store.append(records.back());
        }
    }
};

CaptureTextStyle randomStyle(QRandomGenerator &random)
{
    static const char *const encodings[] = {"UTF-8", "GBK", "GB18030"};
    CaptureTextStyle style;
    style.codec = QTextCodec::codecForName(encodings[random.bounded(3)]);
    style.lineEnd = random.bounded(2) == 0 ? "\n" : "\r\n";
    return style;
}

/// What the record is after it went through a file of the format: everything else must come back.
CaptureFrame afterwards(const FrameRecord &record, CANFile::FileType format)
{
    CaptureFrame frame;
    switch (format) {
    case CANFile::CAN: // loses the protocol and what is behind the eighth byte; the payload is filled up to eight
        frame.idWord = CaptureFrame::toIdWord(record.id, record.remote, record.extended);
        frame.attributes = CaptureFrame::toAttributes(std::min(record.data.size(), 8), 0);
        frame.data = record.data.left(8).leftJustified(8, '\0');
        break;
    case CANFile::CANFD: // loses nothing
        frame.idWord = CaptureFrame::toIdWord(record.id, record.remote, record.extended);
        frame.attributes = CaptureFrame::toAttributes(record.data.size(), record.protocol);
        frame.data = record.data;
        break;
    case CANFile::CSV: // loses remote and what is behind the eighth byte
        frame.idWord = CaptureFrame::toIdWord(record.id, false, record.extended);
        frame.data = record.data.left(8);
        frame.attributes = CaptureFrame::toAttributes(frame.data.size(), record.protocol);
        break;
    case CANFile::Text: // loses remote and the payload
        frame.idWord = CaptureFrame::toIdWord(record.id, false, record.extended);
        frame.attributes = CaptureFrame::toAttributes(0, record.protocol);
        break;
    }
    return frame;
}

std::optional<CaptureContent> throughFile(const Table &table, CANFile::FileType format, const FrameLabels &labels,
                                          const CaptureTextStyle &style)
{
    QBuffer file;
    file.open(QIODevice::ReadWrite);
    if (!writeCapture(file, captureFormat(format), {table.store, 0, table.store.size(), labels, style})) {
        return std::nullopt;
    }
    file.seek(0);
    return readCapture(file, captureFormat(format));
}

bool isSame(const CaptureFrame &a, const CaptureFrame &b)
{
    return a.idWord == b.idWord && a.attributes == b.attributes && a.data == b.data;
}

} // namespace

class tst_CaptureRoundTrip : public QObject
{
    Q_OBJECT

private slots:
    static void randomTables_data();
    static void randomTables();
    static void savedFilesOfEachEnding();
    static void textFileLosesItsPayloads();
    static void realTimeLinesOfCsvLoseTheirPayloads();
};

void tst_CaptureRoundTrip::randomTables_data()
{
    QTest::addColumn<CANFile::FileType>("format");
    QTest::newRow("csv") << CANFile::CSV;
    QTest::newRow("txt") << CANFile::Text;
    QTest::newRow("can") << CANFile::CAN;
    QTest::newRow("canfd") << CANFile::CANFD;
}

void tst_CaptureRoundTrip::randomTables()
{
    QFETCH(CANFile::FileType, format);
    QRandomGenerator random(20260102);
    const FrameLabels labels[] = {englishLabels(), chineseLabels()};
    for (int i = 0; i < Cases; ++i) {
        const Table table(random);
        const auto content = throughFile(table, format, labels[i % 2], randomStyle(random));
        QVERIFY(content);
        QCOMPARE(content->droppedLines, 0);
        QCOMPARE(content->frames.size(), qint64(table.records.size()));
        for (std::size_t row = 0; row < table.records.size(); ++row) {
            if (!isSame(content->frames.at(qint64(row)), afterwards(table.records[row], format))) {
                QFAIL(qPrintable(QStringLiteral("table %1, row %2").arg(i).arg(row)));
            }
        }
    }
}

void tst_CaptureRoundTrip::savedFilesOfEachEnding()
{
    QTemporaryDir folder;
    QRandomGenerator random(7);
    Table table(random);
    while (table.records.size() < 3) {
        table.records.push_back(randomRecord(random));
        table.store.append(table.records.back());
    }
    for (const char *ending : {"csv", "txt", "can", "canfd", "CSV", "TXT", "CAN", "CANFD"}) {
        const QString path = folder.filePath(QStringLiteral("\u6355\u83b7 a.") + QString::fromLatin1(ending));
        QVERIFY(saveCapture(path, table.store, 1, table.store.size() - 1, chineseLabels()));
        const auto content = readCapture(path);
        QVERIFY(content);
        QCOMPARE(content->frames.size(), qint64(table.records.size()) - 1);
        for (std::size_t row = 1; row < table.records.size(); ++row) {
            QVERIFY(
                isSame(content->frames.at(qint64(row) - 1), afterwards(table.records[row], captureFormat(path)->type)));
        }
    }
}

/// A separator follows the payload, so that what stands behind the last separator is a single blank.
void tst_CaptureRoundTrip::textFileLosesItsPayloads()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.txt"));
    FrameStore store;
    store.append(frame(0x123, "\x01\x02"));
    QVERIFY(saveCapture(path, store, 0, 1, englishLabels()));
    const auto content = readCapture(path);
    QVERIFY(content);
    QCOMPARE(content->frames.size(), 1);
    QCOMPARE(content->frames.at(0).id(), 0x123U);
    QCOMPARE(content->frames.at(0).length(), 0);
    QCOMPARE(content->frames.at(0).data, QByteArray());
}

void tst_CaptureRoundTrip::realTimeLinesOfCsvLoseTheirPayloads()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.csv"));
    FrameStore store;
    store.append(frame(0x123, "\x01\x02"));
    QVERIFY(saveCapture(path, store, 0, 1, englishLabels()));
    RealTimeFile file;
    QVERIFY(file.open(path, englishLabels()));
    QVERIFY(file.append({frame(0x124, "\x03\x04")}, 2));
    file.close();
    const auto content = readCapture(path);
    QVERIFY(content);
    QCOMPARE(content->frames.size(), 2);
    QCOMPARE(content->frames.at(0).data, QByteArray("\x01\x02"));
    QCOMPARE(content->frames.at(1).id(), 0x124U);
    QCOMPARE(content->frames.at(1).data, QByteArray());
}

X9_PLAIN_TEST(tst_CaptureRoundTrip)
#include "tst_CaptureRoundTrip.moc"
