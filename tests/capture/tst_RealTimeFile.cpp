#include "CaptureTestData.h"

#include "capture/RealTimeFile.h"
#include "tests/support/TestProgram.h"

#include <QTemporaryDir>
#include <QTest>
#include <QTextCodec>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

using namespace CaptureTestData;

namespace {

CaptureTextStyle unixStyle()
{
    CaptureTextStyle style;
    style.lineEnd = "\n";
    return style;
}

using Rows = std::vector<FrameRecord>;

} // namespace

class tst_RealTimeFile : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void csvLinesEndWithAComma();
    void textLines();
    void upperCaseTxtGetsCommas();
    void windowsLineEnds();
    void appendsToWhatIsThere();
    void rowsReachTheFileAtOnce();
    void numbersGoOnFromTheFirst();
    void manyRows();
    void longRows();
    void closedFileStaysReadable();
    void openFails();
#ifdef Q_OS_UNIX
    static void refusesAPipe();
#endif
    void deletedFile();
    void replacedFile();
    void movedFolder();
    static void shortenedFile_data();
    void shortenedFile();
    void grownFile();
    void syncs();
    void syncsNothingThatIsGone();

private:
    QString path(const char *name) const
    {
        return m_folder->filePath(QString::fromLatin1(name));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    const FrameLabels m_labels = englishLabels();
};

void tst_RealTimeFile::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

void tst_RealTimeFile::csvLinesEndWithAComma()
{
    RealTimeFile file;
    QVERIFY(!file.isOpen());
    QVERIFY(file.open(path("a.csv"), m_labels, unixStyle()));
    QVERIFY(file.isOpen());
    QCOMPARE(file.path(), path("a.csv"));
    QVERIFY(file.append({frame(0x1AB, "\x01\x02"), sentFrame(2)}, 1));
    QCOMPARE(fileContent(path("a.csv")),
             QByteArray("1,10:20:30.400,0:0:0.0,Revice,0x1AB,CAN,Data,Standard,0x2,01 02 ,\n"
                        "2,10:20:30.400,None,Send successfully,0x2,CAN,Data,Standard,0x0,,\n"));
}

void tst_RealTimeFile::textLines()
{
    RealTimeFile file;
    QVERIFY(file.open(path("a.txt"), m_labels, unixStyle()));
    QVERIFY(file.append({frame(0x1AB, "\x01\x02")}, 1));
    QCOMPARE(fileContent(path("a.txt")), QByteArray("1     10:20:30.400     0:0:0.0     Revice     0x1AB     CAN     "
                                                    "Data     Standard     0x2     01 02      \n"));
}

void tst_RealTimeFile::upperCaseTxtGetsCommas()
{
    RealTimeFile file;
    QVERIFY(file.open(path("a.TXT"), m_labels, unixStyle()));
    QVERIFY(file.append({frame(1)}, 1));
    QCOMPARE(fileContent(path("a.TXT")), QByteArray("1,10:20:30.400,0:0:0.0,Revice,0x1,CAN,Data,Standard,0x0,,\n"));
}

void tst_RealTimeFile::windowsLineEnds()
{
    CaptureTextStyle style = unixStyle();
    style.lineEnd = "\r\n";
    RealTimeFile file;
    QVERIFY(file.open(path("a.csv"), m_labels, style));
    QVERIFY(file.append({frame(1)}, 1));
    QVERIFY(fileContent(path("a.csv")).endsWith(",0x0,,\r\n"));
}

void tst_RealTimeFile::appendsToWhatIsThere()
{
    FrameStore store;
    store.append(frame(1));
    QVERIFY(saveCapture(path("a.csv"), store, 0, 1, m_labels, unixStyle()));
    const QByteArray saved = fileContent(path("a.csv"));
    RealTimeFile file;
    QVERIFY(file.open(path("a.csv"), m_labels, unixStyle()));
    QCOMPARE(fileContent(path("a.csv")), saved);
    QVERIFY(file.append({frame(2)}, 2));
    QCOMPARE(fileContent(path("a.csv")), saved + "2,10:20:30.400,0:0:0.0,Revice,0x2,CAN,Data,Standard,0x0,,\n");
}

void tst_RealTimeFile::rowsReachTheFileAtOnce()
{
    RealTimeFile file;
    QVERIFY(file.open(path("a.csv"), m_labels, unixStyle()));
    for (int i = 0; i < 5; ++i) {
        QVERIFY(file.append({frame(1)}, 1));
        QCOMPARE(fileContent(path("a.csv")).count('\n'), i + 1);
    }
}

void tst_RealTimeFile::numbersGoOnFromTheFirst()
{
    RealTimeFile file;
    QVERIFY(file.open(path("a.csv"), m_labels, unixStyle()));
    QVERIFY(file.append({frame(1), frame(1)}, 19));
    QVERIFY(file.append({}, 21));                           // nothing new
    QVERIFY(file.append({frame(1), frame(1)}, 4294967295)); // a log of days
    const QList<QByteArray> lines = fileContent(path("a.csv")).split('\n');
    QCOMPARE(lines.size(), 5);
    QVERIFY(lines[0].startsWith("19,"));
    QVERIFY(lines[1].startsWith("20,"));
    QVERIFY(lines[2].startsWith("4294967295,"));
    QVERIFY(lines[3].startsWith("4294967296,"));
}

/// More than is written at a time.
void tst_RealTimeFile::manyRows()
{
    constexpr int Count = 50000;
    RealTimeFile file;
    QVERIFY(file.open(path("a.csv"), m_labels, unixStyle()));
    QVERIFY(file.append(Rows(Count, frame(0x5, QByteArray(8, 'U'))), 1));
    const QList<QByteArray> lines = fileContent(path("a.csv")).split('\n');
    QCOMPARE(lines.size(), Count + 1);
    for (int i = 0; i < Count; ++i) {
        QCOMPARE(lines[i], QByteArray::number(i + 1) +
                               ",10:20:30.400,0:0:0.0,Revice,0x5,CAN,Data,Standard,0x8,55 55 55 55 55 55 55 55 ,");
    }
}

void tst_RealTimeFile::longRows()
{
    RealTimeFile file;
    QVERIFY(file.open(path("a.csv"), m_labels, unixStyle()));
    QVERIFY(file.append({frame(1), frame(2, QByteArray(65536, 'Z')), frame(3)}, 1));
    const QList<QByteArray> lines = fileContent(path("a.csv")).split('\n');
    QCOMPARE(lines.size(), 4);
    QVERIFY(lines[1].endsWith(",0xFFFF," + QByteArray("5A ").repeated(65535) + ","));
    QVERIFY(lines[2].startsWith("3,"));
}

void tst_RealTimeFile::closedFileStaysReadable()
{
    RealTimeFile file;
    QVERIFY(file.open(path("a.csv"), m_labels, unixStyle()));
    QVERIFY(file.append({frame(1)}, 1));
    file.close();
    QVERIFY(!file.isOpen());
    QCOMPARE(fileContent(path("a.csv")).count('\n'), 1);
    QVERIFY(file.open(path("b.txt"), m_labels, unixStyle()));
    QVERIFY(file.append({frame(1)}, 1));
    QVERIFY(fileContent(path("b.txt")).startsWith("1     "));
    QCOMPARE(fileContent(path("a.csv")).count('\n'), 1);
}

void tst_RealTimeFile::openFails()
{
    RealTimeFile file;
    QVERIFY(!file.open(path("gone/a.csv"), m_labels, unixStyle()));
    QVERIFY(!file.isOpen());
}

void tst_RealTimeFile::deletedFile()
{
    RealTimeFile file;
    QVERIFY(file.open(path("a.csv"), m_labels, unixStyle()));
#ifdef Q_OS_WIN // an open file stays
    QVERIFY(!QFile::remove(path("a.csv")));
    QVERIFY(file.append({frame(1)}, 1));
#else
    QVERIFY(QFile::remove(path("a.csv")));
    QVERIFY(!file.append({frame(1)}, 1));
    QVERIFY(!file.isOpen());
    QCOMPARE(filesIn(m_folder->path()), QStringList());
#endif
}

void tst_RealTimeFile::replacedFile()
{
    FrameStore store;
    store.append(frame(1));
    RealTimeFile file;
    QVERIFY(file.open(path("a.csv"), m_labels, unixStyle()));
#ifdef Q_OS_WIN
    QVERIFY(!saveCapture(path("a.csv"), store, 0, 1, m_labels, unixStyle()));
    QVERIFY(file.append({frame(1)}, 1));
#else
    QVERIFY(saveCapture(path("a.csv"), store, 0, 1, m_labels, unixStyle()));
    const QByteArray other = fileContent(path("a.csv"));
    QVERIFY(!file.append({frame(1)}, 1));
    QVERIFY(!file.isOpen());
    QCOMPARE(fileContent(path("a.csv")), other);
#endif
}

void tst_RealTimeFile::movedFolder()
{
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("here")));
    RealTimeFile file;
    QVERIFY(file.open(path("here/a.csv"), m_labels, unixStyle()));
    QVERIFY(file.append({frame(1)}, 1));
    QVERIFY(QDir(m_folder->path()).rename(QStringLiteral("here"), QStringLiteral("there")));
    QVERIFY(!file.append({frame(1)}, 1));
    QVERIFY(!file.isOpen());
    QCOMPARE(fileContent(path("there/a.csv")).count('\n'), 1);
}

#ifdef Q_OS_UNIX
/// Opening it would wait for somebody who reads.
void tst_RealTimeFile::refusesAPipe()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("pipe.csv"));
    QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    RealTimeFile file;
    QVERIFY(!file.open(path, englishLabels(), unixStyle()));
}
#endif

void tst_RealTimeFile::shortenedFile_data()
{
    QTest::addColumn<int>("left");
    QTest::newRow("empty") << 0;
    QTest::newRow("by a byte") << -1;
}

/// By another program, while it is open.
void tst_RealTimeFile::shortenedFile()
{
    QFETCH(int, left);
    for (const bool isSynced : {false, true}) {
        RealTimeFile file;
        QVERIFY(file.open(path("a.csv"), m_labels, unixStyle()));
        QVERIFY(file.append({frame(1), frame(2)}, 1));
        const QByteArray before = fileContent(path("a.csv"));
        const QByteArray rest = left < 0 ? before.chopped(1) : QByteArray();
        QVERIFY(QFile::resize(path("a.csv"), rest.size()));
        QVERIFY(!(isSynced ? file.sync() : file.append({frame(3)}, 3)));
        QCOMPARE(file.isOpen(), isSynced);
        QCOMPARE(fileContent(path("a.csv")), rest);
        file.close();
        QVERIFY(QFile::remove(path("a.csv")));
    }
}

void tst_RealTimeFile::grownFile()
{
    RealTimeFile file;
    QVERIFY(file.open(path("a.csv"), m_labels, unixStyle()));
    QVERIFY(file.append({frame(1)}, 1));
    QFile other(path("a.csv"));
    QVERIFY(other.open(QIODevice::Append));
    QCOMPARE(other.write("a note\n"), 7);
    other.close();
    QVERIFY(file.append({frame(2)}, 2));
    const QList<QByteArray> lines = fileContent(path("a.csv")).split('\n');
    QCOMPARE(lines.size(), 4);
    QCOMPARE(lines[1], QByteArray("a note"));
    QVERIFY(lines[2].startsWith("2,"));
}

void tst_RealTimeFile::syncs()
{
    RealTimeFile file;
    QVERIFY(file.open(path("a.csv"), m_labels, unixStyle()));
    QVERIFY(file.sync());
    QVERIFY(file.append({frame(1)}, 1));
    QVERIFY(file.sync());
    QVERIFY(file.isOpen());
    QVERIFY(file.append({frame(2)}, 2));
    QCOMPARE(fileContent(path("a.csv")).count('\n'), 2);
}

void tst_RealTimeFile::syncsNothingThatIsGone()
{
    RealTimeFile file;
    QVERIFY(file.open(path("a.csv"), m_labels, unixStyle()));
    QVERIFY(file.append({frame(1)}, 1));
#ifdef Q_OS_WIN // an open file stays
    QVERIFY(!QFile::remove(path("a.csv")));
    QVERIFY(file.sync());
#else
    QVERIFY(QFile::remove(path("a.csv")));
    QVERIFY(!file.sync());
    QCOMPARE(filesIn(m_folder->path()), QStringList());
#endif
}

X9_CORE_TEST(tst_RealTimeFile)
#include "tst_RealTimeFile.moc"
