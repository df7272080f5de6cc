#include "CaptureTestData.h"

#include "capture/CaptureWriter.h"
#include "tests/support/CodePage.h"
#include "tests/support/TestProgram.h"

#include <QBuffer>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCodec>

#include <optional>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

using namespace CaptureTestData;

Q_DECLARE_METATYPE(std::optional<CANFile::FileType>)

namespace {

const FrameLabels English = englishLabels();

CaptureTextStyle style(const char *codec, const char *lineEnd = "\n")
{
    CaptureTextStyle result;
    result.codec = QTextCodec::codecForName(codec);
    result.lineEnd = lineEnd;
    return result;
}

/// Received standard classic, refused extended remote, sent FD with rate switch of 12 bytes.
void fillThree(FrameStore &store)
{
    FrameRecord first = frame(0x1AB, "\x01\xA2\xFF");
    first.timeStamp = 3723004;
    first.timeFlag = 1;
    first.sendType = 5;
    store.append(first);
    FrameRecord second = sentFrame(0x1FFFFFFF, FrameRecord::SendFailure);
    second.remote = 1;
    second.extended = 1;
    store.append(second);
    FrameRecord third = sentFrame(0x10, FrameRecord::SendSuccess);
    third.protocol = FrameRecord::CANFDSpeed;
    third.data = countingBytes(12);
    store.append(third);
}

QByteArray written(CANFile::FileType format, const FrameStore &store, int first, int count,
                   const FrameLabels &labels = English, const CaptureTextStyle &textStyle = style("UTF-8"))
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return writeCapture(buffer, captureFormat(format), {store, first, count, labels, textStyle})
               ? buffer.data()
               : QByteArray("<failed>");
}

FrameLabels partlyChineseLabels()
{
    FrameLabels labels = English;
    labels.titles[1] = QStringLiteral("\u7cfb\u7edf\u65f6\u95f4");
    labels.words[static_cast<std::size_t>(FrameLabel::Received)] = QStringLiteral("\u63a5\u6536");
    return labels;
}

/// Takes a number of bytes and then no more.
class LimitedDevice : public QIODevice
{
public:
    explicit LimitedDevice(qint64 limit)
        : m_left(limit)
    {
        open(WriteOnly | Unbuffered);
    }

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *, qint64 size) override
    {
        const qint64 taken = qMin(size, m_left);
        m_left -= taken;
        return taken == 0 && size > 0 ? -1 : taken;
    }

private:
    qint64 m_left;
};

} // namespace

class tst_CaptureWriter : public QObject
{
    Q_OBJECT

private slots:
    static void formatOfPath_data();
    static void formatOfPath();
    static void csv();
    static void text();
    static void can();
    static void canFd();
    static void emptyStore();
    static void windowsLineEnds();
    static void rangeKeepsTheNumbersOfTheTable();
    static void canPayloadIsCutAndPadded();
    static void canFdLengthIsCappedButThePayloadIsWhole();
    static void longPayloadInText();
    static void timeTextIsWrittenAsItStands();
    static void hugeTimeText();
    static void timeTextsThatChange();
    static void codecs();
    static void codecChoice();
    static void manyPieces_data();
    static void manyPieces();
    static void deviceThatTakesNoMore_data();
    static void deviceThatTakesNoMore();
    static void saveByEnding();
    static void saveReplacesTheFile();
    static void saveToUnknownEnding();
    static void saveToVanishedFolder();
    static void saveOverAFolder();
#ifdef Q_OS_UNIX
    static void saveOverAPipe();
#endif
};

void tst_CaptureWriter::formatOfPath_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<std::optional<CANFile::FileType>>("format");
    const auto row = [](const char *path, std::optional<CANFile::FileType> format) {
        QTest::newRow(path) << QString::fromLatin1(path) << format;
    };
    row("a.csv", CANFile::CSV);
    row("a.Csv", CANFile::CSV);
    row("a.txt", CANFile::Text);
    row("a.TXT", CANFile::Text);
    row("a.can", CANFile::CAN);
    row("a.CaN", CANFile::CAN);
    row("a.canfd", CANFile::CANFD);
    row("a.CANFD", CANFile::CANFD);
    row("a.can.csv", CANFile::CSV);
    row(".can", CANFile::CAN);
    row("a.bin", std::nullopt);
    row("a.csv.bak", std::nullopt);
    row("csv", std::nullopt);
    row("", std::nullopt);
}

void tst_CaptureWriter::formatOfPath()
{
    QFETCH(QString, path);
    QFETCH(std::optional<CANFile::FileType>, format);
    const CaptureFormat *found = captureFormat(path);
    QCOMPARE(found != nullptr, format.has_value());
    QVERIFY(found == nullptr || found->type == *format);
}

void tst_CaptureWriter::csv()
{
    FrameStore store;
    fillThree(store);
    QCOMPARE(written(CANFile::CSV, store, 0, 3),
             QByteArray("Vantora CAN Data\n"
                        "No.,System Time,Time Stamp,Direction,ID,Protocol,Format,Type,Length,Data\n"
                        "1,10:20:30.400,1:2:3.4,Revice,0x1AB,CAN,Data,Standard,0x3,01 A2 FF \n"
                        "2,10:20:30.400,None,Send failure,0x1FFFFFFF,CAN,Remote,Extend,0x0,\n"
                        "3,10:20:30.400,None,Send successfully,0x10,CANFD Speed,Data,Standard,0xC,"
                        "00 01 02 03 04 05 06 07 08 09 0A 0B \n"
                        "\n"));
}

void tst_CaptureWriter::text()
{
    FrameStore store;
    fillThree(store);
    QCOMPARE(
        written(CANFile::Text, store, 0, 3),
        QByteArray("Vantora CAN Data\n"
                   "No.   System Time   Time Stamp   Direction   ID   Protocol   Format   Type   Length   Data   \n"
                   "1     10:20:30.400     1:2:3.4     Revice     0x1AB     CAN     Data     Standard     0x3"
                   "     01 A2 FF      \n"
                   "2     10:20:30.400     None     Send failure     0x1FFFFFFF     CAN     Remote     Extend"
                   "     0x0          \n"
                   "3     10:20:30.400     None     Send successfully     0x10     CANFD Speed     Data     "
                   "Standard     0xC     00 01 02 03 04 05 06 07 08 09 0A 0B      \n"
                   "\n"));
}

void tst_CaptureWriter::can()
{
    FrameStore store;
    fillThree(store);
    const QByteArray expected = QByteArray("Zhiyuan CAN Data") + QByteArray::fromHex("00000000") +
                                QByteArray::fromHex("ab010000 fcce3800 00 ff 00 00 03 01a2ff0000000000 000000") +
                                QByteArray::fromHex("ffffff1f 00000000 00 00 01 01 00 0000000000000000 000000") +
                                QByteArray::fromHex("10000000 00000000 00 00 00 00 08 0001020304050607 000000");
    QCOMPARE(written(CANFile::CAN, store, 0, 3).toHex(), expected.toHex());
}

void tst_CaptureWriter::canFd()
{
    FrameStore store;
    fillThree(store);
    const QByteArray expected = QByteArray("Vantora CAN Data") + QByteArray::fromHex("00000000") +
                                QByteArray::fromHex("ab010000 fcce3800 00 ff 00 00 03 01a2ff") +
                                QByteArray::fromHex("ffffff1f 00000000 00 00 01 01 00") +
                                QByteArray::fromHex("10000000 00000000 02 00 00 00 0c 000102030405060708090a0b");
    QCOMPARE(written(CANFile::CANFD, store, 0, 3).toHex(), expected.toHex());
}

void tst_CaptureWriter::emptyStore()
{
    const FrameStore store;
    QCOMPARE(written(CANFile::CSV, store, 0, 0),
             QByteArray("Vantora CAN Data\n"
                        "No.,System Time,Time Stamp,Direction,ID,Protocol,Format,Type,Length,Data\n\n"));
    QCOMPARE(written(CANFile::CAN, store, 0, 0), QByteArray("Zhiyuan CAN Data\0\0\0\0", 20));
    QCOMPARE(written(CANFile::CANFD, store, 0, 0), QByteArray("Vantora CAN Data\0\0\0\0", 20));
}

void tst_CaptureWriter::windowsLineEnds()
{
    FrameStore store;
    store.append(frame(1, "\x0A"));
    QCOMPARE(written(CANFile::CSV, store, 0, 1, English, style("UTF-8", "\r\n")),
             QByteArray("Vantora CAN Data\r\n"
                        "No.,System Time,Time Stamp,Direction,ID,Protocol,Format,Type,Length,Data\r\n"
                        "1,10:20:30.400,0:0:0.0,Revice,0x1,CAN,Data,Standard,0x1,0A \r\n"
                        "\r\n"));
    QVERIFY(written(CANFile::Text, store, 0, 1, English, style("UTF-8", "\r\n")).endsWith("0A      \r\n\r\n"));
    // The binary formats have no lines.
    QVERIFY(!written(CANFile::CANFD, store, 0, 1, English, style("UTF-8", "\r\n")).contains('\r'));
}

void tst_CaptureWriter::rangeKeepsTheNumbersOfTheTable()
{
    FrameStore store;
    fillThree(store);
    const QList<QByteArray> lines = written(CANFile::CSV, store, 1, 1).split('\n');
    QCOMPARE(lines.size(), 5);
    QVERIFY(lines[2].startsWith("2,10:20:30.400,None,Send failure,0x1FFFFFFF,"));
    QCOMPARE(lines[3] + lines[4], QByteArray());
    QCOMPARE(written(CANFile::CAN, store, 1, 2).size(), 20 + 2 * 24);
}

void tst_CaptureWriter::canPayloadIsCutAndPadded()
{
    FrameStore store;
    store.append(frame(1, QByteArray(64, '\xEE')));
    store.append(frame(2, "\x11"));
    store.append(frame(3));
    const QByteArray bytes = written(CANFile::CAN, store, 0, 3);
    QCOMPARE(bytes.size(), 20 + 3 * 24);
    QCOMPARE(bytes.mid(20 + 12, 12).toHex(), QByteArray("08eeeeeeeeeeeeeeee000000"));
    QCOMPARE(bytes.mid(44 + 12, 12).toHex(), QByteArray("011100000000000000000000"));
    QCOMPARE(bytes.mid(68 + 12, 12).toHex(), QByteArray("000000000000000000000000"));
}

void tst_CaptureWriter::canFdLengthIsCappedButThePayloadIsWhole()
{
    FrameStore store;
    store.append(frame(1, countingBytes(64)));
    store.append(frame(2, countingBytes(65)));
    store.append(frame(3, countingBytes(300)));
    const QByteArray bytes = written(CANFile::CANFD, store, 0, 3);
    QCOMPARE(bytes.size(), 20 + 3 * 13 + 64 + 65 + 300);
    QCOMPARE(bytes[20 + 12], char(64));
    QCOMPARE(bytes[20 + 77 + 12], char(64));
    QCOMPARE(bytes.mid(20 + 77 + 13, 65), countingBytes(65));
    QCOMPARE(bytes[20 + 77 + 78 + 12], char(64));
    QCOMPARE(bytes.right(300), countingBytes(300));
}

void tst_CaptureWriter::longPayloadInText()
{
    FrameStore store;
    store.append(frame(1, QByteArray(65535, '\x5A')));
    const QByteArray bytes = written(CANFile::CSV, store, 0, 1);
    QVERIFY(bytes.endsWith(",0xFFFF," + QByteArray("5A ").repeated(65535) + "\n\n"));
}

void tst_CaptureWriter::timeTextIsWrittenAsItStands()
{
    FrameStore store;
    FrameRecord record = frame(1);
    record.systemTime = QStringLiteral("a,\"b\" \u4e0a\u5348");
    store.append(record);
    QVERIFY(written(CANFile::CSV, store, 0, 1).contains("\n1,a,\"b\" \xE4\xB8\x8A\xE5\x8D\x88,0:0:0.0,Revice,"));
}

void tst_CaptureWriter::hugeTimeText()
{
    FrameStore store;
    FrameRecord record = frame(1);
    store.append(record);
    record.systemTime = QString(5000000, QLatin1Char('t')); // longer than a piece written at once
    store.append(record);
    const QByteArray bytes = written(CANFile::CSV, store, 0, 2);
    QVERIFY(bytes.contains("\n2," + QByteArray(5000000, 't') + ",0:0:0.0,Revice,"));
    QVERIFY(bytes.contains("\n1,10:20:30.400,0:0:0.0,Revice,"));
}

void tst_CaptureWriter::timeTextsThatChange()
{
    FrameStore store;
    FrameRecord record = frame(1);
    for (const char *time : {"A", "A", "BB", "", "A"}) {
        record.systemTime = QString::fromLatin1(time);
        store.append(record);
    }
    QList<QByteArray> times;
    for (const QByteArray &line : written(CANFile::CSV, store, 0, 5).split('\n').mid(2, 5)) {
        times.append(line.split(',').at(1));
    }
    QCOMPARE(times, (QList<QByteArray>{"A", "A", "BB", "", "A"}));
}

void tst_CaptureWriter::codecs()
{
    FrameStore store;
    store.append(frame(1));
    const QByteArray utf8 = written(CANFile::CSV, store, 0, 1, partlyChineseLabels(), style("UTF-8"));
    QVERIFY(utf8.contains("No.,\xE7\xB3\xBB\xE7\xBB\x9F\xE6\x97\xB6\xE9\x97\xB4,Time Stamp,"));
    QVERIFY(utf8.contains(",0:0:0.0,\xE6\x8E\xA5\xE6\x94\xB6,0x1,"));
    QVERIFY(utf8.startsWith("Vantora")); // no byte order mark
    const QByteArray gb = written(CANFile::CSV, store, 0, 1, partlyChineseLabels(), style("GB18030"));
    QVERIFY(gb.contains("No.,\xCF\xB5\xCD\xB3\xCA\xB1\xBC\xE4,Time Stamp,"));
    QVERIFY(gb.contains(",0:0:0.0,\xBD\xD3\xCA\xD5,0x1,"));
    // Whoever asks for Latin-1 gets what it can write.
    const QByteArray latin = written(CANFile::CSV, store, 0, 1, partlyChineseLabels(), style("ISO-8859-1"));
    QVERIFY(latin.contains(",0:0:0.0,??,0x1,"));
}

void tst_CaptureWriter::codecChoice()
{
    QTextCodec *gb = QTextCodec::codecForName("GB18030");
    QTextCodec *utf8 = QTextCodec::codecForName("UTF-8");
    QVERIFY(gb != nullptr && utf8 != nullptr);
    QCOMPARE(captureCodec(gb), gb);
    QCOMPARE(captureCodec(utf8), utf8);
    QCOMPARE(captureCodec(QTextCodec::codecForName("ISO-8859-1")), utf8);
    QCOMPARE(captureCodec(QTextCodec::codecForName("US-ASCII")), utf8);
    QCOMPARE(captureCodec(QTextCodec::codecForName("UTF-16LE")), utf8); // not a superset of ASCII
    QCOMPARE(captureCodec(new CodePage), utf8);
    QCOMPARE(captureCodec(nullptr), utf8);
    QCOMPARE(captureCodec(), captureCodec(QTextCodec::codecForLocale()));
}

void tst_CaptureWriter::manyPieces_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<qint64>("expectedSize");
    // 100,000 numbers of 1 to 6 digits take 488,895 bytes.
    const qint64 titles = 73;
    const qint64 textTitles = 63 + 30;
    QTest::newRow("csv") << int(CANFile::CSV)
                         << 17 + titles + 488895 +
                                Q_INT64_C(100000) *
                                    (1 + 12 + 1 + 7 + 1 + 6 + 1 + 3 + 1 + 3 + 1 + 4 + 1 + 8 + 1 + 4 + 1 + 48 + 1) +
                                1;
    QTest::newRow("text") << int(CANFile::Text)
                          << 17 + textTitles + 1 + 488895 +
                                 Q_INT64_C(100000) * (5 * 10 + 12 + 7 + 6 + 3 + 3 + 4 + 8 + 4 + 48 + 1) + 1;
    QTest::newRow("can") << int(CANFile::CAN) << qint64(20 + 100000 * 24);
    QTest::newRow("canfd") << int(CANFile::CANFD) << qint64(20 + 100000 * (13 + 16));
}

void tst_CaptureWriter::manyPieces()
{
    QFETCH(int, format);
    QFETCH(qint64, expectedSize);
    FrameStore store;
    for (int i = 0; i < 100000; ++i) {
        store.append(frame(0x5, QByteArray(16, 'U')));
    }
    const auto type = static_cast<CANFile::FileType>(format);
    const QByteArray whole = written(type, store, 0, 100000);
    QCOMPARE(qint64(whole.size()), expectedSize);
    // A part of the file is the same bytes as in a short file.
    const QByteArray lastOnly = written(type, store, 99999, 1);
    const QByteArray header = written(type, store, 0, 0);
    const int tail = format >= int(CANFile::CSV) ? 1 : 0;
    QVERIFY(whole.endsWith(lastOnly.mid(header.size() - tail)));
}

void tst_CaptureWriter::deviceThatTakesNoMore_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<qint64>("limit");
    for (const int format : {0, 1, 2, 3}) {
        QTest::addRow("%d nothing", format) << format << qint64(0);
        QTest::addRow("%d inside the first piece", format) << format << qint64(1000);
        QTest::addRow("%d inside the second piece", format) << format << qint64(1100000);
        QTest::addRow("%d last byte missing", format) << format << qint64(-1);
    }
}

void tst_CaptureWriter::deviceThatTakesNoMore()
{
    QFETCH(int, format);
    QFETCH(qint64, limit);
    FrameStore store;
    for (int i = 0; i < 50000; ++i) {
        store.append(frame(0x5, QByteArray(16, 'U')));
    }
    const auto type = static_cast<CANFile::FileType>(format);
    const qint64 whole = written(type, store, 0, store.size()).size();
    LimitedDevice tooSmall(limit < 0 ? whole + limit : limit);
    QVERIFY(!writeCapture(tooSmall, captureFormat(type), {store, 0, store.size(), English, style("UTF-8")}));
    LimitedDevice largeEnough(whole);
    QVERIFY(writeCapture(largeEnough, captureFormat(type), {store, 0, store.size(), English, style("UTF-8")}));
}

void tst_CaptureWriter::saveByEnding()
{
    QTemporaryDir folder;
    FrameStore store;
    fillThree(store);
    QVERIFY(saveCapture(folder.filePath(QStringLiteral("a.Csv")), store, 0, 3, English, style("UTF-8")));
    QVERIFY(saveCapture(folder.filePath(QStringLiteral("a.TXT")), store, 0, 3, English, style("UTF-8")));
    QVERIFY(saveCapture(folder.filePath(QStringLiteral("a.can")), store, 0, 3, English, style("UTF-8")));
    QVERIFY(saveCapture(folder.filePath(QStringLiteral("a.canFD")), store, 1, 2, English, style("UTF-8")));
    QCOMPARE(fileContent(folder.filePath(QStringLiteral("a.Csv"))), written(CANFile::CSV, store, 0, 3));
    QCOMPARE(fileContent(folder.filePath(QStringLiteral("a.TXT"))), written(CANFile::Text, store, 0, 3));
    QCOMPARE(fileContent(folder.filePath(QStringLiteral("a.can"))), written(CANFile::CAN, store, 0, 3));
    QCOMPARE(fileContent(folder.filePath(QStringLiteral("a.canFD"))), written(CANFile::CANFD, store, 1, 2));
    QCOMPARE(filesIn(folder.path()).size(), 4);
}

void tst_CaptureWriter::saveReplacesTheFile()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.can"));
    FrameStore store;
    fillThree(store);
    QVERIFY(saveCapture(path, store, 0, 3, English));
    QVERIFY(saveCapture(path, store, 0, 1, English));
    QCOMPARE(fileContent(path).size(), 20 + 24);
}

void tst_CaptureWriter::saveToUnknownEnding()
{
    QTemporaryDir folder;
    FrameStore store;
    fillThree(store);
    QVERIFY(!saveCapture(folder.filePath(QStringLiteral("a.bin")), store, 0, 3, English));
    QVERIFY(!saveCapture(folder.filePath(QStringLiteral("csv")), store, 0, 3, English));
    QCOMPARE(filesIn(folder.path()), QStringList());
}

void tst_CaptureWriter::saveToVanishedFolder()
{
    QTemporaryDir folder;
    const FrameStore store;
    QVERIFY(!saveCapture(folder.filePath(QStringLiteral("gone/a.csv")), store, 0, 0, English));
}

void tst_CaptureWriter::saveOverAFolder()
{
    QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("a.csv")));
    const FrameStore store;
    QVERIFY(!saveCapture(folder.filePath(QStringLiteral("a.csv")), store, 0, 0, English));
    QVERIFY(QDir(folder.filePath(QStringLiteral("a.csv"))).exists());
    QCOMPARE(filesIn(folder.path()), QStringList());
}

#ifdef Q_OS_UNIX
/// It stays what it is.
void tst_CaptureWriter::saveOverAPipe()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("pipe.csv"));
    QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    FrameStore store;
    fillThree(store);
    QVERIFY(!saveCapture(path, store, 0, 3, English));
    QVERIFY(QFileInfo::exists(path) && !QFileInfo(path).isFile());
}
#endif

X9_CORE_TEST(tst_CaptureWriter)
#include "tst_CaptureWriter.moc"
