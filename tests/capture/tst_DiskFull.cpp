#include "CaptureTestData.h"

#include "capture/CTableViewCAN.h"
#include "capture/RealTimeFile.h"
#include "tests/support/TestProgram.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

#include <sys/resource.h>

using namespace CaptureTestData;

namespace {

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
        m_set = setrlimit(RLIMIT_FSIZE, &limited) == 0;
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_signal);
    }
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;
    bool isSet() const { return m_set; }

private:
    rlimit m_before = {};
    void (*m_signal)(int) = nullptr;
    bool m_set = false;
};

QVector<FrameRecord> frames(int count)
{
    QVector<FrameRecord> frames(count, frame(0x5, QByteArray(8, 'U')));
    return frames;
}

} // namespace

class tst_DiskFull : public QObject
{
    Q_OBJECT

private slots:
    void init();
    static void saveKeepsTheFileThatStood_data();
    void saveKeepsTheFileThatStood();
    static void saveLeavesNothingBehind_data();
    void saveLeavesNothingBehind();
    static void realTimeFileEndsWithAWholeLine_data();
    void realTimeFileEndsWithAWholeLine();
    void tableStopsRealTimeSavingOnce();
    void realTimeSavingDoesNotStart();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }

    std::unique_ptr<QTemporaryDir> m_folder;
    const FrameLabels m_labels = englishLabels();
};

void tst_DiskFull::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

void tst_DiskFull::saveKeepsTheFileThatStood_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("limit");
    for (const char *name : {"a.csv", "a.txt", "a.can", "a.canfd"}) {
        QTest::addRow("%s first piece", name) << QString::fromLatin1(name) << 1000;
        QTest::addRow("%s second piece", name) << QString::fromLatin1(name) << 1500000;
    }
}

void tst_DiskFull::saveKeepsTheFileThatStood()
{
    QFETCH(QString, name);
    QFETCH(int, limit);
    FrameStore store;
    for (int i = 0; i < 100000; ++i) {
        store.append(frame(0x5, QByteArray(8, 'U')));
    }
    QVERIFY(saveCapture(path(name), store, 0, 3, m_labels));
    const QByteArray before = fileContent(path(name));
    {
        const FileSizeLimit full(static_cast<rlim_t>(limit));
        QVERIFY(full.isSet());
        QVERIFY(!saveCapture(path(name), store, 0, store.size(), m_labels));
    }
    QCOMPARE(fileContent(path(name)), before);
    QCOMPARE(filesIn(m_folder->path()), QStringList(name));
    QVERIFY(saveCapture(path(name), store, 0, store.size(), m_labels));
    QVERIFY(fileContent(path(name)).size() > 1500000);
}

void tst_DiskFull::saveLeavesNothingBehind_data()
{
    saveKeepsTheFileThatStood_data();
}

void tst_DiskFull::saveLeavesNothingBehind()
{
    QFETCH(QString, name);
    QFETCH(int, limit);
    CTableViewCAN table;
    table.append(frames(100000));
    table.refresh();
    const FileSizeLimit full(static_cast<rlim_t>(limit));
    QVERIFY(!table.save(path(name)));
    QVERIFY(!table.saveRange(path(name), 1, 99999));
    QCOMPARE(filesIn(m_folder->path()), QStringList());
}

void tst_DiskFull::realTimeFileEndsWithAWholeLine_data()
{
    QTest::addColumn<int>("limit");
    QTest::addColumn<int>("lines");
    // The header and the first line are there; a line behind it has 83 bytes.
    QTest::newRow("no room at all") << 0 << 0;
    QTest::newRow("half a line") << 40 << 0;
    QTest::newRow("line without its end") << 82 << 0;
    QTest::newRow("one line") << 83 << 1;
    QTest::newRow("one and a half") << 120 << 1;
    QTest::newRow("all but the last byte") << 829 << 9;
}

void tst_DiskFull::realTimeFileEndsWithAWholeLine()
{
    QFETCH(int, limit);
    QFETCH(int, lines);
    FrameStore store;
    for (int i = 0; i < 10; ++i) {
        store.append(frame(0x5, QByteArray(8, 'U')));
    }
    QVERIFY(saveCapture(path(QStringLiteral("a.csv")), store, 0, 1, m_labels));
    const QByteArray before = fileContent(path(QStringLiteral("a.csv")));
    RealTimeFile file;
    QVERIFY(file.open(path(QStringLiteral("a.csv")), m_labels));
    {
        const FileSizeLimit full(static_cast<rlim_t>(before.size() + limit));
        const std::vector<FrameRecord> rows(10, frame(0x5, QByteArray(8, 'U')));
        QVERIFY(!file.append(rows, 11));
    }
    QVERIFY(!file.isOpen());
    const QByteArray after = fileContent(path(QStringLiteral("a.csv")));
    QVERIFY(after.startsWith(before));
    QCOMPARE(after.size(), before.size() + lines * 83);
    QVERIFY(after.endsWith('\n'));
}

void tst_DiskFull::tableStopsRealTimeSavingOnce()
{
    const QString file = path(QStringLiteral("a.csv"));
    CTableViewCAN table;
    QSignalSpy failures(&table, &CTableViewCAN::sig_realTimeSaveFailed);
    QVERIFY(table.realTimeSave(true, file));
    table.append(frames(10));
    table.refresh();
    QTRY_COMPARE(fileContent(file).count('\n'), 2 + 1 + 10);
    const QByteArray before = fileContent(file);
    {
        const FileSizeLimit full(static_cast<rlim_t>(before.size() + 30));
        table.append(frames(10));
        table.refresh();
        QTRY_COMPARE(failures.count(), 1);
        QCOMPARE(failures[0][0].toString(), file);
        QVERIFY(!table.isRealTimeSaving());
        table.append(frames(10));
        table.refresh();
    }
    QCOMPARE(failures.count(), 1);
    QCOMPARE(table.rowCount(), 30);
    QCOMPARE(fileContent(file), before);
    QVERIFY(table.realTimeSave(true, file));
    QCOMPARE(fileContent(file).count('\n'), 2 + 30 + 1);
}

void tst_DiskFull::realTimeSavingDoesNotStart()
{
    CTableViewCAN table;
    QSignalSpy failures(&table, &CTableViewCAN::sig_realTimeSaveFailed);
    table.append(frames(10));
    table.refresh();
    const FileSizeLimit full(30);
    QVERIFY(!table.realTimeSave(true, path(QStringLiteral("a.txt"))));
    QVERIFY(!table.isRealTimeSaving());
    QCOMPARE(failures.count(), 0);
    QCOMPARE(filesIn(m_folder->path()), QStringList());
}

X9_GUI_TEST(tst_DiskFull)
#include "tst_DiskFull.moc"
