#include "CaptureTestData.h"

#include "capture/CaptureReader.h"
#include "tests/support/PlainCaptureReader.h"
#include "tests/support/TestProgram.h"

#include <QBuffer>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <vector>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

using namespace CaptureTestData;

namespace {

const QString DataFolder = QStringLiteral(X9_TEST_DATA "/capture/");

/// "1AB standard data 0 3:01A2FF": identifier, type, format, protocol, length, payload.
QString described(const CaptureFrame &frame)
{
    return QStringLiteral("%1 %2 %3 %4 %5:%6")
        .arg(QString::number(frame.id(), 16).toUpper(),
             frame.isExtended() ? QStringLiteral("extended") : QStringLiteral("standard"),
             frame.isRemote() ? QStringLiteral("remote") : QStringLiteral("data"))
        .arg(frame.protocol())
        .arg(frame.length())
        .arg(QString::fromLatin1(frame.data.toHex().toUpper()));
}

QStringList described(const std::optional<CaptureContent> &content)
{
    if (!content) {
        return {QStringLiteral("refused")};
    }
    QStringList list;
    for (qint64 i = 0; i < content->frames.size(); ++i) {
        list.append(described(content->frames.at(i)));
    }
    return list;
}

QStringList described(const std::optional<std::vector<CaptureFrame>> &frames)
{
    if (!frames) {
        return {QStringLiteral("refused")};
    }
    QStringList list;
    for (const CaptureFrame &frame : *frames) {
        list.append(described(frame));
    }
    return list;
}

std::optional<CaptureContent> readBytes(const QByteArray &bytes, CANFile::FileType format)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    return readCapture(buffer, captureFormat(format));
}

bool isSame(const CaptureFrame &a, const CaptureFrame &b)
{
    return a.idWord == b.idWord && a.attributes == b.attributes && a.data == b.data;
}

/// Whether the real reader and the plain one agree.
bool areAgreed(const QByteArray &bytes, CANFile::FileType format)
{
    const auto expected = readPlainly(bytes, format);
    const auto content = readBytes(bytes, format);
    if (!expected || !content) {
        return !expected && !content;
    }
    bool isEqual = content->frames.size() == qint64(expected->size());
    for (std::size_t i = 0; isEqual && i < expected->size(); ++i) {
        isEqual = isSame(content->frames.at(qint64(i)), (*expected)[i]);
    }
    return isEqual;
}

QStringList goldenFiles()
{
    return QDir(DataFolder)
        .entryList(
            {QStringLiteral("*.can"), QStringLiteral("*.canfd"), QStringLiteral("*.csv"), QStringLiteral("*.txt")},
            QDir::Files, QDir::Name);
}

QString path64(const char *first)
{
    QString digits;
    for (int i = 0; i < 64; ++i) {
        digits += QStringLiteral("%1").arg(i + 0x40, 2, 16, QLatin1Char('0')).toUpper();
    }
    return QString::fromLatin1(first) + digits;
}

/// Changes, removes, doubles or inserts a few bytes, and sometimes cuts.
QByteArray mutated(QByteArray bytes, QRandomGenerator &random)
{
    static const QByteArray pieces[] = {
        ",",     "     ", " ",    "\n",       "\r\n",         "Standard",          "Extend",
        "CANFD", "0x1F",  "\xFF", "\xDE\x44", "\xE8\xBD\xAC", QByteArray("\0", 1), "9"};
    const int changes = 1 + random.bounded(6);
    for (int i = 0; i < changes; ++i) {
        const int place = random.bounded(bytes.size() + 1);
        switch (random.bounded(5)) {
        case 0:
            if (place < bytes.size()) {
                bytes[place] = char(random.bounded(256));
            }
            break;
        case 1:
            bytes.remove(place, 1 + random.bounded(8));
            break;
        case 2:
            bytes.insert(place, bytes.mid(random.bounded(bytes.size() + 1), 1 + random.bounded(100)));
            break;
        case 3:
            bytes.insert(place, pieces[random.bounded(int(std::size(pieces)))]);
            break;
        case 4:
            if (random.bounded(4) == 0) {
                bytes.truncate(place);
            }
            break;
        }
    }
    return bytes;
}

} // namespace

class tst_CaptureReader : public QObject
{
    Q_OBJECT

private slots:
    static void goldenFiles_data();
    static void goldenFiles();
    static void everyGoldenFileIsKnown();
    static void goldenFilesAgreeWithThePlainReader();
    static void goldenFilesCutAnywhere();
    static void goldenFilesMutated();
    static void linesThatHoldNoFrameAreCounted();
    static void refusedPaths();
#ifdef Q_OS_UNIX
    static void pipeIsRefusedAtOnce();
#endif
    static void endingInAnyCase();
    static void stoppedReadingGivesNothing();
    static void lineLargerThanAPiece();
};

// NOLINTNEXTLINE(readability-function-size): a table
void tst_CaptureReader::goldenFiles_data()
{
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char *file, const QStringList &frames) {
        QTest::newRow(file) << frames;
    };
    const auto text = [](const char *frame) {
        return QString::fromLatin1(frame);
    };
    const QStringList none;
    const QStringList refused = {text("refused")};
    const QStringList fourCan = {
        text("1AB standard data 0 3:01A2FF0000000000"), text("12345678 extended data 0 8:0011223344556677"),
        text("7FF standard remote 0 0:0000000000000000"), text("1FFFFFFF extended remote 0 4:0000000000000000")};
    row("can_four.can", fourCan);
    row("can_cut_tail.can", fourCan.mid(0, 3));
    row("can_length_2.can", {text("123 standard data 0 2:A1A2A3A4A5A6A7A8")});
    row("can_odd_bits.can", {text("123 extended data 0 64:0102030405060708")});
    row("can_other_reserve.can", fourCan.mid(0, 1));
    row("can_header_only.can", none);
    row("can_header_cut.can", refused);
    row("can_empty.can", refused);
    row("can_wrong_header.can", refused);
    row("can_fd_header.can", refused);
    const QString firstOther = text("123 standard data 0 8:0102030405060708");
    row("can_other_three.can", {firstOther, text("12345678 extended remote 0 2:F1F2F3F4F5F6F7F8"),
                                text("1AB standard data 0 0:1122334455667788")});
    row("can_other_16_left.can", {firstOther});
    row("can_other_17_left.can", {firstOther, text("1AB standard data 0 0:0000000000000000")});
    row("can_other_24_left.can", {firstOther, text("1AB standard data 0 0:1122334455000000")});
    row("can_other_header_only.can", none);

    const QString fdClassic = text("1AB standard data 0 3:01A2FF");
    const QString fd64 = path64("1FFFFFFF extended data 1 64:");
    const QString fdSpeed = text("123 standard data 2 12:00112233445566778899AABB");
    const QString fdRemote = text("7FF standard remote 0 0:");
    row("canfd_five.canfd", {fdClassic, fd64, fdSpeed, fdRemote, text("1 extended remote 1 0:")});
    row("canfd_cut_payload.canfd", {fdClassic, fdSpeed});
    row("canfd_cut_record.canfd", {fdClassic});
    row("canfd_12_left.canfd", none);
    row("canfd_13_left.canfd", {fdRemote});
    row("canfd_length_100.canfd", {path64("123 standard data 1 64:"), fdClassic});
    row("canfd_odd_bits.canfd", {text("123 extended data 2 2:0A0B")});
    row("canfd_protocol_3.canfd", {text("123 standard data 2 2:0A0B")});
    row("canfd_header_only.canfd", none);
    row("canfd_empty.canfd", refused);
    row("canfd_wrong_header.canfd", refused);

    // A text file gives data frames only, with at most eight bytes.
    const QStringList own = {text("1AB standard data 0 3:01A2FF"), text("1FFFFFFF extended data 0 0:"),
                             text("12345678 extended data 2 8:0011223344556677"), text("7FF standard data 1 0:")};
    row("csv_own.csv", own);
    row("csv_own_crlf.csv", own);
    row("csv_own_no_last_line_end.csv", own.mid(0, 1));
    row("csv_own_realtime.csv", {own[0], text("1AB standard data 0 0:")});
    row("csv_own_fd_64_bytes.csv", {text("1AB standard data 1 8:4041424344454647")});
    const QStringList chinese = {text("1AB standard data 0 2:01A2"), text("12345678 extended data 2 2:B1B2"),
                                 text("7FF standard data 1 0:"), text("800 extended data 0 0:")};
    row("csv_own_chinese_utf8.csv", chinese);
    row("csv_own_chinese_utf8_mark.csv", chinese);
    row("csv_own_chinese_gbk.csv", chinese);
    row("csv_own_chinese_gbk_crlf.csv", chinese);
    row("csv_own_odd_lines.csv", {text("1AB extended data 0 1:01"), text("3 standard data 0 3:001234"),
                                  text("4 standard data 0 0:"), text("1FFFFFFF extended data 0 1:11"),
                                  text("AB standard data 1 2:ADAD"), text("C standard data 0 8:0123456789ABCDEF")});
    row("csv_own_header_only.csv", none);
    row("csv_own_titles_only.csv", none);
    row("csv_own_frame_as_titles.csv", own.mid(1, 1));
    // Counted from the end, the own cells lie elsewhere.
    row("csv_wrong_header.csv", none);
    row("csv_empty.csv", none);
    row("csv_one_line.csv", none);
    row("csv_foreign.csv", {text("1AB standard data 0 8:0102030405060708"), text("18FEF100 extended data 0 3:AABBCC"),
                            text("7FF standard data 0 0:"), text("123 standard data 0 1:99")});
    const QStringList foreignChinese = {text("1AB standard data 0 2:0102"), text("18FEF100 extended data 0 1:12")};
    row("csv_foreign_chinese_utf8.csv", foreignChinese);
    row("csv_foreign_chinese_gbk.csv", foreignChinese);
    row("csv_foreign_gbk_digits.csv", {text("1AB standard data 0 1:12")});

    row("txt_own.txt", {text("1AB standard data 0 0:"), own[1], text("12345678 extended data 2 0:"), own[3]});
    row("txt_own_chinese_gbk_crlf.txt", {text("1AB standard data 0 0:"), text("12345678 extended data 2 0:"),
                                         text("7FF standard data 1 0:"), text("800 extended data 0 0:")});
    row("txt_own_no_last_separator.txt", {own[0]});
    row("txt_foreign.txt", {text("1AB standard data 0 2:0102"), text("18FEF100 extended data 0 2:0304")});
    row("txt_empty.txt", none);
}

void tst_CaptureReader::goldenFiles()
{
    QFETCH(QStringList, expected);
    QCOMPARE(described(readCapture(DataFolder + QString::fromLatin1(QTest::currentDataTag()))), expected);
}

/// Each file has its row above and its line in the folder's README; findings of the fuzz targets need no row.
void tst_CaptureReader::everyGoldenFileIsKnown()
{
    const QString readme = QString::fromUtf8(fileContent(DataFolder + QStringLiteral("README.md")));
    const QString source =
        QString::fromUtf8(fileContent(DataFolder + QStringLiteral("../../capture/tst_CaptureReader.cpp")));
    for (const QString &file : ::goldenFiles()) {
        QVERIFY2(readme.contains(QStringLiteral("`%1`").arg(file)), qPrintable(file));
        QVERIFY2(file.startsWith(QLatin1String("found_")) || source.contains(QStringLiteral("\"%1\"").arg(file)),
                 qPrintable(file));
    }
}

void tst_CaptureReader::goldenFilesAgreeWithThePlainReader()
{
    for (const QString &file : ::goldenFiles()) {
        const CaptureFormat *format = captureFormat(file);
        QVERIFY(format);
        QCOMPARE(described(readCapture(DataFolder + file)),
                 described(readPlainly(fileContent(DataFolder + file), format->type)));
    }
}

void tst_CaptureReader::goldenFilesCutAnywhere()
{
    for (const QString &file : ::goldenFiles()) {
        const QByteArray bytes = fileContent(DataFolder + file);
        for (int size = 0; size < bytes.size(); ++size) {
            QVERIFY2(areAgreed(bytes.left(size), captureFormat(file)->type),
                     qPrintable(QStringLiteral("%1 cut to %2 bytes").arg(file).arg(size)));
        }
    }
}

void tst_CaptureReader::goldenFilesMutated()
{
    QRandomGenerator random(20260101);
    const QStringList files = ::goldenFiles();
    std::vector<QByteArray> contents; // under Wine reading them each time takes most of the time
    contents.reserve(static_cast<std::size_t>(files.size()));
    for (const QString &file : files) {
        contents.push_back(fileContent(DataFolder + file));
    }
    for (int i = 0; i < 20000; ++i) {
        const int chosen = random.bounded(files.size());
        const QString &file = files.at(chosen);
        const QByteArray bytes = mutated(contents.at(static_cast<std::size_t>(chosen)), random);
        QVERIFY2(
            areAgreed(bytes, captureFormat(file)->type),
            qPrintable(QStringLiteral("%1, change %2: %3").arg(file).arg(i).arg(QString::fromLatin1(bytes.toHex()))));
    }
}

void tst_CaptureReader::linesThatHoldNoFrameAreCounted()
{
    const auto dropped = [](const char *file) {
        const auto content = readCapture(DataFolder + QString::fromLatin1(file));
        return content ? content->droppedLines : -1;
    };
    QCOMPARE(dropped("csv_own.csv"), 0);
    QCOMPARE(dropped("csv_own_realtime.csv"), 0);
    QCOMPARE(dropped("csv_own_odd_lines.csv"), 6);
    QCOMPARE(dropped("csv_foreign.csv"), 3);
    QCOMPARE(dropped("csv_wrong_header.csv"), 2);
    QCOMPARE(dropped("txt_foreign.txt"), 1);
    QCOMPARE(dropped("can_four.can"), 0);
}

void tst_CaptureReader::refusedPaths()
{
    QTemporaryDir folder;
    const auto pathOf = [&folder](const char *name) {
        return folder.filePath(QString::fromLatin1(name));
    };
    QVERIFY(QFile::copy(DataFolder + QStringLiteral("csv_own.csv"), pathOf("a.csv.bak")));
    QVERIFY(QFile::copy(DataFolder + QStringLiteral("csv_own.csv"), pathOf("csv")));
    QVERIFY(QDir().mkdir(pathOf("folder.csv")));
    QVERIFY(!readCapture(pathOf("a.csv.bak")));
    QVERIFY(!readCapture(pathOf("csv")));
    QVERIFY(!readCapture(pathOf("folder.csv")));
    QVERIFY(!readCapture(pathOf("missing.csv")));
    QVERIFY(!readCapture(QString()));
    QVERIFY(!readCapture(QStringLiteral(".csv")));
}

#ifdef Q_OS_UNIX
/// Opening it would wait for somebody to write to it.
void tst_CaptureReader::pipeIsRefusedAtOnce()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.csv"));
    QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    QVERIFY(!readCapture(path));
}
#endif

void tst_CaptureReader::endingInAnyCase()
{
    QTemporaryDir folder;
    const QStringList names = {QStringLiteral("can_four.can>a.CAN"), QStringLiteral("canfd_five.canfd>a.CanFd"),
                               QStringLiteral("csv_own.csv>\u6355\u83b7 1.cSv"), QStringLiteral("txt_own.txt>a.b.TXT")};
    for (const QString &name : names) {
        const QString golden = DataFolder + name.section(QLatin1Char('>'), 0, 0);
        const QString copy = folder.filePath(name.section(QLatin1Char('>'), 1));
        QVERIFY(QFile::copy(golden, copy));
        QCOMPARE(described(readCapture(copy)), described(readCapture(golden)));
        QVERIFY(described(readCapture(copy)).size() > 1);
    }
}

void tst_CaptureReader::stoppedReadingGivesNothing()
{
    const std::atomic<bool> stop{true};
    for (const char *file : {"can_four.can", "can_other_three.can", "canfd_five.canfd", "csv_own.csv", "txt_own.txt"}) {
        QVERIFY(!readCapture(DataFolder + QString::fromLatin1(file), &stop));
    }
}

void tst_CaptureReader::lineLargerThanAPiece()
{
    const QByteArray large(3000000, 'x');
    const QByteArray file = "Vantora CAN Data\nTitles\n" + large + "\n1,,,,0x1,CAN,,Standard," + large + "," + large +
                            "77\n2,,,,0x2,CAN,,Standard,,11";
    QCOMPARE(described(readBytes(file, CANFile::CSV)),
             (QStringList{QStringLiteral("1 standard data 0 1:77"), QStringLiteral("2 standard data 0 1:11")}));
}

X9_PLAIN_TEST(tst_CaptureReader)
#include "tst_CaptureReader.moc"
