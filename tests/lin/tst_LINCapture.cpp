#include "lin/LINCapture.h"
#include "lin/LINFrameModel.h"
#include "resources/Resources.h"
#include "tests/lin/LINTestFrames.h"
#include "tests/support/CodePage.h"
#include "tests/support/TestProgram.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QTranslator>
#include <QtTest>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

#include <algorithm>
#include <random>

#if defined(Q_OS_UNIX)
#include <csignal>

#include <sys/resource.h>
#endif

namespace {
using Frames = QVector<CTableViewLIN::DataObject>;

const QByteArray Titles("No.,System Time,Direction,ID[PID],Length,Data(Hex),Check(Hex),State\n");

#if defined(Q_OS_UNIX)
/// While it lives, no file of this process grows beyond size bytes: a write is cut there and the next one fails.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t size)
    {
        m_signal = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit limited = m_before;
        limited.rlim_cur = size;
        m_isSet = setrlimit(RLIMIT_FSIZE, &limited) == 0;
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_signal);
    }
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;
    bool isSet() const { return m_isSet; }

private:
    rlimit m_before = {};
    void (*m_signal)(int) = nullptr;
    bool m_isSet = false;
};
#endif

QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

std::optional<Frames> parse(const QByteArray &file, int pieceSize)
{
    LINCaptureParser parser;
    for (int at = 0; at < file.size(); at += pieceSize) {
        parser.feed(file.constData() + at, std::min(pieceSize, file.size() - at));
    }
    return parser.finish();
}

/// The frames as "id:data id:data", "-" when the file is none.
QString summary(const std::optional<Frames> &frames)
{
    if (!frames) {
        return QStringLiteral("-");
    }
    QStringList texts;
    for (const CTableViewLIN::DataObject &frame : *frames) {
        texts.append(QStringLiteral("%1:%2")
                         .arg(frame.ID, 2, 16, QLatin1Char('0'))
                         .arg(QString::fromLatin1(frame.data.toHex())));
    }
    return texts.join(QLatin1Char(' '));
}

/// The rows of tests/data/lin/four.csv.
void fillWithFour(LINFrameModel &model)
{
    CTableViewLIN::DataObject frame = linFrame(0x12, "01A2");
    model.append(frame, 0);
    frame = linFrame(0x3C, "0000000000000000");
    frame.time = QStringLiteral("12:34:56.790");
    frame.direction = CTableViewLIN::DataObject::Sent;
    model.append(frame, 0);
    frame = linFrame(0x01, "");
    frame.time = QStringLiteral("23:59:59.999");
    frame.checksum = calcChecksum(0x01, true, QByteArray());
    model.append(frame, 0);
    frame = linFrame(0x3F, "7F");
    frame.time = QStringLiteral("00:00:00.000");
    frame.checksum = 0;
    model.append(frame, 0);
}
} // namespace

class tst_LINCapture : public QObject
{
    Q_OBJECT

private slots:
    static void savesTheTable();
    static void savesAnEmptyTable();
    static void savesChineseInTheLocalEncoding_data();
    static void savesChineseInTheLocalEncoding();
    static void replacesAFile();
    static void keepsTheFileWhenItCannotBeWritten();
#ifdef Q_OS_UNIX
    static void keepsAPipe();
#endif
    static void keepsTheFileOnAFullDisk_data();
    static void keepsTheFileOnAFullDisk();
    static void readsTheGoldenFile();
    static void reads_data();
    static void reads();
    static void looksAtTheBeginningOfLongLines();
    static void holdsNoLongLine();
    static void readsWhatWasSaved();
    static void withstandsMutations();
};

void tst_LINCapture::savesTheTable()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.csv"));
    LINFrameModel model;
    fillWithFour(model);
    QVERIFY(saveLINCapture(path, model));
    QFile saved(path);
    QVERIFY(saved.open(QIODevice::ReadOnly | QIODevice::Text));
    QCOMPARE(saved.readAll(), content(QStringLiteral(X9_TEST_DATA "/lin/four.csv")));
}

void tst_LINCapture::savesAnEmptyTable()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.csv"));
    const LINFrameModel model;
    QVERIFY(saveLINCapture(path, model));
    QCOMPARE(content(path).simplified(), Titles.simplified());
    QCOMPARE(summary(parse(content(path), 100)), QStringLiteral("-"));
}

void tst_LINCapture::savesChineseInTheLocalEncoding_data()
{
    new CodePage; // found by its name
    QTest::addColumn<QByteArray>("local");
    QTest::addColumn<QByteArray>("used");
    QTest::newRow("GB18030") << QByteArray("GB18030") << QByteArray("GB18030");
    QTest::newRow("UTF-8") << QByteArray("UTF-8") << QByteArray("UTF-8");
    QTest::newRow("one that has no Chinese") << QByteArray("ISO-8859-1") << QByteArray("UTF-8");
    QTest::newRow("one that hides it") << CodePage::codecName() << QByteArray("UTF-8");
}

void tst_LINCapture::savesChineseInTheLocalEncoding()
{
    QFETCH(QByteArray, local);
    QFETCH(QByteArray, used);
    initResources();
    QTranslator translator;
    QVERIFY(translator.load(QStringLiteral(":/Language/CN.qm")));
    QVERIFY(QCoreApplication::installTranslator(&translator));
    QTextCodec *before = QTextCodec::codecForLocale();
    QTextCodec::setCodecForLocale(QTextCodec::codecForName(local));
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.csv"));
    LINFrameModel model;
    model.append(linFrame(0x12, "01A2"), 1);
    const bool isSaved = saveLINCapture(path, model);
    QTextCodec::setCodecForLocale(before);
    QCoreApplication::removeTranslator(&translator);
    QVERIFY(isSaved);
    const QByteArray bytes = content(path).replace("\r\n", "\n");
    QCOMPARE(QTextCodec::codecForName(used)->toUnicode(bytes),
             QString::fromUtf8("No.,系统时间,方向,ID[PID],长度,数据(Hex),校验(Hex),状态\n"
                               "1,12:34:56.789,接收,12[92],2,01 A2 ,5C,校验和错误(V1)\n"));
    QCOMPARE(summary(parse(bytes, 7)), QStringLiteral("12:01a2"));
}

void tst_LINCapture::replacesAFile()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.csv"));
    QVERIFY(write(path, QByteArray(10000, 'x')));
    LINFrameModel model;
    model.append(linFrame(0x12, ""), 0);
    QVERIFY(saveLINCapture(path, model));
    QCOMPARE(summary(parse(content(path), 100)), QStringLiteral("12:"));
}

void tst_LINCapture::keepsTheFileWhenItCannotBeWritten()
{
    const QTemporaryDir folder;
    LINFrameModel model;
    fillWithFour(model);
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("folder.csv")));
    QVERIFY(!saveLINCapture(folder.filePath(QStringLiteral("folder.csv")), model));
    QVERIFY(!saveLINCapture(folder.filePath(QStringLiteral("none/a.csv")), model));
    QVERIFY(!saveLINCapture(QString(), model));
    QVERIFY(QFileInfo(folder.filePath(QStringLiteral("folder.csv"))).isDir());
}

void tst_LINCapture::keepsTheFileOnAFullDisk_data()
{
    QTest::addColumn<int>("limit");
    QTest::addColumn<int>("frames");
    QTest::newRow("a file smaller than a buffer") << 100 << 4;
    QTest::newRow("in the second piece") << 150000 << 10000;
}

void tst_LINCapture::keepsTheFileOnAFullDisk()
{
#if defined(Q_OS_UNIX)
    QFETCH(int, limit);
    QFETCH(int, frames);
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.csv"));
    QVERIFY(write(path, "before"));
    LINFrameModel model;
    model.append(Frames(frames, linFrame(0x12, "01A2")), 0);
    bool isSaved = true;
    {
        const FileSizeLimit full(static_cast<rlim_t>(limit));
        QVERIFY(full.isSet());
        isSaved = saveLINCapture(path, model);
    }
    QVERIFY(!isSaved);
    QCOMPARE(content(path), QByteArray("before"));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("a.csv")});
#endif
}

void tst_LINCapture::readsTheGoldenFile()
{
    const QByteArray file = content(QStringLiteral(X9_TEST_DATA "/lin/four.csv"));
    QCOMPARE(summary(parse(file, 1)), QStringLiteral("12:01a2 3c:0000000000000000 01: 3f:7f"));
}

void tst_LINCapture::reads_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QString>("frames");

    const QString none = QStringLiteral("-");
    QTest::newRow("no line") << QByteArray() << none;
    QTest::newRow("one") << QByteArray("1,t,d,12[92],2,01 A2 ,5C,V1\n") << QStringLiteral("12:01a2");
    QTest::newRow("without an end") << QByteArray("1,t,d,12[92],2,01 A2") << QStringLiteral("12:01a2");
    QTest::newRow("CR LF") << QByteArray("1,t,d,12[92],2,01 A2 ,5C,V1\r\n2,,,01,1,FF\r\n")
                           << QStringLiteral("12:01a2 01:ff");
    QTest::newRow("other fields are not looked at")
        << QByteArray("\xFF,,\x01,3Fx,8,0011223344556677,zz,zz,zz,zz") << QStringLiteral("3f:0011223344556677");
    QTest::newRow("lower case, one digit") << QByteArray(",,,a,1,ab\n,,,3f,1,cD") << QStringLiteral("0a:ab 3f:cd");
    QTest::newRow("blanks around the numbers") << QByteArray(",,, 5, 1 ,ab") << QStringLiteral("05:ab");
    QTest::newRow("more data than the length") << QByteArray(",,,01,2,11 22 33") << QStringLiteral("01:1122");
    QTest::newRow("less data than the length") << QByteArray(",,,01,8,11 22 33") << QStringLiteral("01:112233");
    QTest::newRow("length 0") << QByteArray(",,,01,0,11 22") << QStringLiteral("01:");
    QTest::newRow("no data field") << QByteArray(",,,01,0") << QStringLiteral("01:");
    QTest::newRow("blanks anywhere in the data") << QByteArray(",,,01,2,\t1 1  2\v2\f") << QStringLiteral("01:1122");
    QTest::newRow("data that is not hexadecimal") << QByteArray(",,,01,3,11 zz 33") << QStringLiteral("01:1133");
    QTest::newRow("no identifier field") << QByteArray("1,t,d") << none;
    QTest::newRow("no length field") << QByteArray("1,t,d,12[92]") << none;
    QTest::newRow("identifier empty") << QByteArray(",,,,1,11") << none;
    QTest::newRow("identifier no number") << QByteArray(",,,x1,1,11") << none;
    QTest::newRow("identifier with a sign") << QByteArray(",,,+1,1,11") << none;
    QTest::newRow("identifier with a prefix") << QByteArray(",,,0x,1,11") << none;
    QTest::newRow("identifier 40") << QByteArray(",,,40[00],1,11") << none;
    QTest::newRow("identifier FF") << QByteArray(",,,FF[FF],1,11") << none;
    QTest::newRow("length empty") << QByteArray(",,,01,,11") << none;
    QTest::newRow("length no number") << QByteArray(",,,01,x,11") << none;
    QTest::newRow("length 9") << QByteArray(",,,01,9,112233445566778899") << none;
    QTest::newRow("length -1") << QByteArray(",,,01,-1,11") << none;
    QTest::newRow("length beyond int") << QByteArray(",,,01,4294967297,11") << none;
    QTest::newRow("an empty line") << QByteArray(",,,01,1,11\n\n,,,01,1,11\n") << none;
    QTest::newRow("an empty line at the end") << QByteArray(",,,01,1,11\n\n") << none;
    QTest::newRow("the last line damaged") << QByteArray(",,,01,1,11\n,,,01,1,11\n,,,01") << none;
    QTest::newRow("zero bytes") << QByteArray(100, '\0') << none;
    QTest::newRow("commas only") << QByteArray(100, ',') << none;
    QTest::newRow("UTF-16") << QByteArray("\0,\0,\0,\0001\0002\0,\0001\0,\0001\0001\0\n", 22) << none;
}

/// In pieces of any size.
void tst_LINCapture::reads()
{
    QFETCH(QByteArray, lines);
    for (const int pieceSize : {1, 2, 3, 7, 64, 100000}) {
        QTEST(summary(parse(Titles + lines, pieceSize)), "frames");
    }
}

/// Titles of megabytes, a last field of megabytes; but what counts must come at the beginning.
void tst_LINCapture::looksAtTheBeginningOfLongLines()
{
    const QByteArray large(3000000, 'x');
    QCOMPARE(summary(parse(large + "\n,,,01,1,11," + large + "\n,,,02,1,22", 65536)), QStringLiteral("01:11 02:22"));
    QCOMPARE(summary(parse(Titles + large + ",,,01,1,11", 65536)), QStringLiteral("-"));
    QCOMPARE(summary(parse(Titles + ",,,01,8,11" + QByteArray(LINCaptureParser::MaxLine, ' ') + "22", 65536)),
             QStringLiteral("01:11"));
    QCOMPARE(summary(parse(large, 65536)), QStringLiteral("-"));
}

/// After a line that fails nothing is taken any more.
void tst_LINCapture::holdsNoLongLine()
{
    LINCaptureParser parser;
    parser.feed(Titles.constData(), Titles.size());
    QVERIFY(!parser.isFailed());
    parser.feed("x\n", 2);
    QVERIFY(parser.isFailed());
    parser.feed(",,,01,1,11\n", 11);
    QVERIFY(!parser.finish());
}

void tst_LINCapture::readsWhatWasSaved()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.csv"));
    std::mt19937 random(1);
    LINFrameModel model;
    Frames saved;
    for (int i = 0; i < 5000; ++i) {
        CTableViewLIN::DataObject frame = linFrame(static_cast<quint8>(random() % 64), "");
        frame.direction = static_cast<quint8>(random() % 2);
        for (auto size = random() % 9; size > 0; --size) {
            frame.data.append(static_cast<char>(random()));
        }
        frame.checksum = static_cast<quint8>(random());
        saved.append(frame);
    }
    model.append(saved, 0);
    QVERIFY(saveLINCapture(path, model));
    QCOMPARE(summary(parse(content(path), 4096)), summary(saved));
}

/// Whatever comes out has the form of LIN frames, however the file is cut into pieces.
void tst_LINCapture::withstandsMutations()
{
    const QByteArray golden = content(QStringLiteral(X9_TEST_DATA "/lin/four.csv"));
    const QByteArray tokens(",\n\r 0F9[]-+x\0\xFF", 15);
    std::mt19937 random(20);
    int captures = 0;
    for (int round = 0; round < 20000; ++round) {
        QByteArray file = golden;
        for (auto changes = 1 + random() % 4; changes > 0; --changes) {
            const int at = static_cast<int>(random() % static_cast<std::size_t>(file.size()));
            const char token = tokens.at(static_cast<int>(random() % static_cast<std::size_t>(tokens.size())));
            switch (random() % 4) {
            case 0:
                file[at] = token;
                break;
            case 1:
                file.insert(at, token);
                break;
            case 2:
                file.remove(at, 1 + static_cast<int>(random() % 20));
                break;
            case 3:
                file.truncate(at + 1);
                break;
            }
            if (file.isEmpty()) {
                file.append(token);
            }
        }
        const auto frames = parse(file, file.size());
        QCOMPARE(summary(frames), summary(parse(file, 1 + static_cast<int>(random() % 40))));
        if (frames) {
            ++captures;
            QVERIFY(!frames->isEmpty());
            for (const CTableViewLIN::DataObject &frame : *frames) {
                QVERIFY(frame.ID <= 0x3F);
                QVERIFY(frame.data.size() <= 8);
            }
        }
    }
    QVERIFY(captures > 1000 && captures < 19000);
}

#ifdef Q_OS_UNIX
/// It stays what it is.
void tst_LINCapture::keepsAPipe()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("pipe.csv"));
    QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    LINFrameModel model;
    fillWithFour(model);
    QVERIFY(!saveLINCapture(path, model));
    QVERIFY(QFileInfo::exists(path) && !QFileInfo(path).isFile());
}
#endif

X9_CORE_TEST(tst_LINCapture)
#include "tst_LINCapture.moc"
