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
    void numbersFollowTheStore();
    void longRows();
    void closedFileStaysReadable();
    void openFails();
#ifdef Q_OS_UNIX
    static void refusesAPipe();
#endif
    void deletedFile();
    void replacedFile();
    void movedFolder();

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
    FrameStore store;
    store.append(frame(0x1AB, "\x01\x02"));
    store.append(sentFrame(2));
    RealTimeFile file;
    QVERIFY(!file.isOpen());
    QVERIFY(file.open(path("a.csv"), m_labels, unixStyle()));
    QVERIFY(file.isOpen());
    QCOMPARE(file.path(), path("a.csv"));
    QVERIFY(file.append(store, 0));
    QCOMPARE(fileContent(path("a.csv")),
             QByteArray("1,10:20:30.400,0:0:0.0,Revice,0x1AB,CAN,Data,Standard,0x2,01 02 ,\n"
                        "2,10:20:30.400,None,Send successfully,0x2,CAN,Data,Standard,0x0,,\n"));
}

void tst_RealTimeFile::textLines()
{
    FrameStore store;
    store.append(frame(0x1AB, "\x01\x02"));
    RealTimeFile file;
    QVERIFY(file.open(path("a.txt"), m_labels, unixStyle()));
    QVERIFY(file.append(store, 0));
    QCOMPARE(fileContent(path("a.txt")), QByteArray("1     10:20:30.400     0:0:0.0     Revice     0x1AB     CAN     "
                                                    "Data     Standard     0x2     01 02      \n"));
}

void tst_RealTimeFile::upperCaseTxtGetsCommas()
{
    FrameStore store;
    store.append(frame(1));
    RealTimeFile file;
    QVERIFY(file.open(path("a.TXT"), m_labels, unixStyle()));
    QVERIFY(file.append(store, 0));
    QCOMPARE(fileContent(path("a.TXT")), QByteArray("1,10:20:30.400,0:0:0.0,Revice,0x1,CAN,Data,Standard,0x0,,\n"));
}

void tst_RealTimeFile::windowsLineEnds()
{
    CaptureTextStyle style = unixStyle();
    style.lineEnd = "\r\n";
    FrameStore store;
    store.append(frame(1));
    RealTimeFile file;
    QVERIFY(file.open(path("a.csv"), m_labels, style));
    QVERIFY(file.append(store, 0));
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
    store.append(frame(2));
    QVERIFY(file.append(store, 1));
    QCOMPARE(fileContent(path("a.csv")), saved + "2,10:20:30.400,0:0:0.0,Revice,0x2,CAN,Data,Standard,0x0,,\n");
}

void tst_RealTimeFile::rowsReachTheFileAtOnce()
{
    FrameStore store;
    RealTimeFile file;
    QVERIFY(file.open(path("a.csv"), m_labels, unixStyle()));
    for (int i = 0; i < 5; ++i) {
        store.append(frame(1));
        QVERIFY(file.append(store, i));
        QCOMPARE(fileContent(path("a.csv")).count('\n'), i + 1);
    }
}

void tst_RealTimeFile::numbersFollowTheStore()
{
    FrameStore store;
    for (int i = 0; i < 20; ++i) {
        store.append(frame(1));
    }
    RealTimeFile file;
    QVERIFY(file.open(path("a.csv"), m_labels, unixStyle()));
    QVERIFY(file.append(store, 18));
    const QList<QByteArray> lines = fileContent(path("a.csv")).split('\n');
    QCOMPARE(lines.size(), 3);
    QVERIFY(lines[0].startsWith("19,"));
    QVERIFY(lines[1].startsWith("20,"));
    QVERIFY(file.append(store, 20)); // nothing new
    QCOMPARE(fileContent(path("a.csv")).count('\n'), 2);
}

void tst_RealTimeFile::longRows()
{
    FrameStore store;
    store.append(frame(1));
    store.append(frame(2, QByteArray(65535, 'Z')));
    store.append(frame(3));
    RealTimeFile file;
    QVERIFY(file.open(path("a.csv"), m_labels, unixStyle()));
    QVERIFY(file.append(store, 0));
    const QList<QByteArray> lines = fileContent(path("a.csv")).split('\n');
    QCOMPARE(lines.size(), 4);
    QVERIFY(lines[1].endsWith(",0xFFFF," + QByteArray("5A ").repeated(65535) + ","));
    QVERIFY(lines[2].startsWith("3,"));
}

void tst_RealTimeFile::closedFileStaysReadable()
{
    FrameStore store;
    store.append(frame(1));
    RealTimeFile file;
    QVERIFY(file.open(path("a.csv"), m_labels, unixStyle()));
    QVERIFY(file.append(store, 0));
    file.close();
    QVERIFY(!file.isOpen());
    QCOMPARE(fileContent(path("a.csv")).count('\n'), 1);
    QVERIFY(file.open(path("b.txt"), m_labels, unixStyle()));
    QVERIFY(file.append(store, 0));
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
    FrameStore store;
    store.append(frame(1));
    RealTimeFile file;
    QVERIFY(file.open(path("a.csv"), m_labels, unixStyle()));
#ifdef Q_OS_WIN // an open file stays
    QVERIFY(!QFile::remove(path("a.csv")));
    QVERIFY(file.append(store, 0));
#else
    QVERIFY(QFile::remove(path("a.csv")));
    QVERIFY(!file.append(store, 0));
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
    QVERIFY(file.append(store, 0));
#else
    QVERIFY(saveCapture(path("a.csv"), store, 0, 1, m_labels, unixStyle()));
    const QByteArray other = fileContent(path("a.csv"));
    QVERIFY(!file.append(store, 0));
    QVERIFY(!file.isOpen());
    QCOMPARE(fileContent(path("a.csv")), other);
#endif
}

void tst_RealTimeFile::movedFolder()
{
    FrameStore store;
    store.append(frame(1));
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("here")));
    RealTimeFile file;
    QVERIFY(file.open(path("here/a.csv"), m_labels, unixStyle()));
    QVERIFY(file.append(store, 0));
    QVERIFY(QDir(m_folder->path()).rename(QStringLiteral("here"), QStringLiteral("there")));
    QVERIFY(!file.append(store, 0));
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

X9_CORE_TEST(tst_RealTimeFile)
#include "tst_RealTimeFile.moc"
