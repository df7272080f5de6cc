#include "tests/support/TestProgram.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace {

constexpr int WaitMs = 60000;
constexpr int Million = 1000000;

QByteArray candumpLines(int first, int count)
{
    QByteArray lines;
    for (int i = first; i < first + count; ++i) {
        lines += QByteArrayLiteral("(17000") + QByteArray::number(10000000000 + qint64{i} * 100).insert(5, '.') +
                 QByteArrayLiteral(") can0 ") + QByteArray::number(0x100 + i % 100, 16).toUpper() +
                 QByteArrayLiteral("#0102030405060708\n");
    }
    return lines;
}

} // namespace

/// The viewer as a process of its own, with files as they may be.
class tst_ViewerProcess : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void aFileThatGrows();
    void hostileFiles();
    void damagedSettings();
    void aMillionRows();
    void closesWhileItLoads();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    void write(const QString &name, const QByteArray &bytes, QIODevice::OpenMode mode = QIODevice::WriteOnly) const;
    void start(const QStringList &files);
    QString logged() const;
    bool waitForLine(const QString &pattern) const;
    /// Closes the window; the exit code, -1 where the process did not end by itself.
    int close();

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QProcess> m_process;
};

void tst_ViewerProcess::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(m_folder->path()).mkpath(QStringLiteral("home/X9Viewer")));
    write(QStringLiteral("home/X9Viewer/X9Viewer.ini"), "[General]\nlanguage=EN\n");
}

void tst_ViewerProcess::cleanup()
{
    if (m_process && m_process->state() != QProcess::NotRunning) {
        m_process->kill();
        m_process->waitForFinished(WaitMs);
    }
    m_process.reset();
}

void tst_ViewerProcess::write(const QString &name, const QByteArray &bytes, QIODevice::OpenMode mode) const
{
    QFile file(path(name));
    QVERIFY(file.open(mode));
    QCOMPARE(file.write(bytes), qint64{bytes.size()});
}

void tst_ViewerProcess::start(const QStringList &files)
{
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    variables.insert(QStringLiteral("X9_LOG"), path(QStringLiteral("log")));
    for (const char *name : {"XDG_CONFIG_HOME", "LOCALAPPDATA"}) {
        variables.insert(QLatin1String(name), path(QStringLiteral("home")));
    }
    m_process = std::make_unique<QProcess>();
    m_process->setProcessEnvironment(variables);
    m_process->setWorkingDirectory(m_folder->path());
    m_process->setProcessChannelMode(QProcess::ForwardedChannels);
    m_process->start(QStringLiteral(X9_VIEWER_UNDER_TEST), files);
    QVERIFY(m_process->waitForStarted(WaitMs));
}

bool tst_ViewerProcess::waitForLine(const QString &pattern) const
{
    const QRegularExpression line(pattern, QRegularExpression::MultilineOption);
    return QTest::qWaitFor([this, &line] { return logged().contains(line); }, WaitMs);
}

QString tst_ViewerProcess::logged() const
{
    QFile log(path(QStringLiteral("log")));
    return log.open(QIODevice::ReadOnly | QIODevice::Text) ? QString::fromUtf8(log.readAll()) : QString();
}

int tst_ViewerProcess::close()
{
    write(QStringLiteral("close"), {});
    const bool isEnded = m_process->waitForFinished(WaitMs);
    return isEnded && m_process->exitStatus() == QProcess::NormalExit ? m_process->exitCode() : -1;
}

void tst_ViewerProcess::aFileThatGrows()
{
    write(QStringLiteral("a.log"), candumpLines(0, 1000));
    start({QStringLiteral("a.log")});
    QVERIFY(waitForLine(QStringLiteral("^a.log: 1000 rows: Following")));
    const QByteArray more = candumpLines(1000, 1000);
    write(QStringLiteral("a.log"), more.left(more.size() - 10), QIODevice::Append);
    QVERIFY(waitForLine(QStringLiteral("^a.log: 1999 rows")));
    write(QStringLiteral("a.log"), more.right(10), QIODevice::Append);
    QVERIFY(waitForLine(QStringLiteral("^a.log: 2000 rows")));
    QCOMPARE(close(), 0);
}

void tst_ViewerProcess::hostileFiles()
{
    QByteArray garbage(Million, '\0');
    quint32 number = 1;
    for (char &byte : garbage) {
        number = number * 1664525U + 1013904223U;
        byte = static_cast<char>(number >> 24U);
    }
    const QByteArray line = candumpLines(0, 1);
    write(QStringLiteral("empty.csv"), {});
    write(QStringLiteral("empty"), {});
    write(QStringLiteral("line.log"), line + QByteArray(8 * Million, 'x') + '\n' + line);
    write(QStringLiteral("whole.log"), line);
    QStringList files{QStringLiteral("empty.csv"), QStringLiteral("empty"), QStringLiteral("line.log"),
                      QStringLiteral("missing.csv"), QStringLiteral(".")};
    for (const char *ending : {"csv", "can", "canfd", "txt", "log", "asc", "blf", "pcap", "pcapng", "trc", "lin.csv"}) {
        files.append(QStringLiteral("garbage.") + QLatin1String(ending));
        write(files.last(), garbage);
    }
    // Real captures of every kind, cut in the middle.
    const QDir captures(QStringLiteral(X9_TEST_DATA "/exchange"));
    const QFileInfoList whole = captures.entryInfoList(QDir::Files);
    for (const QFileInfo &info : whole) {
        QFile file(info.filePath());
        QVERIFY(file.open(QIODevice::ReadOnly));
        files.append(QStringLiteral("cut.") + info.fileName());
        write(files.last(), file.read(file.size() * 2 / 3));
    }
    files.append(QStringLiteral("whole.log"));
    start(files);
    QVERIFY(waitForLine(QStringLiteral("^empty.csv: 0 rows: Following")));
    QVERIFY(waitForLine(QStringLiteral("^empty: 0 rows: Failed")));
    QVERIFY(waitForLine(QStringLiteral("^line.log: 2 rows: Following")));
    QVERIFY(waitForLine(QStringLiteral("^missing.csv: 0 rows: Failed")));
    QVERIFY(waitForLine(QStringLiteral("^.*: 0 rows: Failed")));
    QVERIFY(waitForLine(QStringLiteral("^garbage.blf: 0 rows: ")));
    QVERIFY(waitForLine(QStringLiteral("^whole.log: 1 rows: Following"))); // the last one
    QCOMPARE(close(), 0);
}

void tst_ViewerProcess::damagedSettings()
{
    static constexpr char Damaged[] =
        "\x00\xff[[[\ngeometry=@ByteArray(xx\nrecent=@Variant(\\0\\0\\xff\nlanguage=@Invalid()\n";
    write(QStringLiteral("home/X9Viewer/X9Viewer.ini"), QByteArray(Damaged, sizeof Damaged - 1));
    write(QStringLiteral("a.log"), candumpLines(0, 10));
    start({QStringLiteral("a.log")});
    QVERIFY(waitForLine(QStringLiteral("^a.log: 10 rows")));
    QCOMPARE(close(), 0);
    // What it wrote then can be read again.
    QVERIFY(QFile::remove(path(QStringLiteral("close"))));
    QVERIFY(QFile::remove(path(QStringLiteral("log"))));
    start({QStringLiteral("a.log")});
    QVERIFY(waitForLine(QStringLiteral("^a.log: 10 rows")));
    QCOMPARE(close(), 0);
}

void tst_ViewerProcess::aMillionRows()
{
    write(QStringLiteral("a.log"), candumpLines(0, Million));
    start({QStringLiteral("a.log")});
    QVERIFY(waitForLine(QStringLiteral("^a.log: 1000000 rows: Following")));
    QCOMPARE(close(), 0);
}

void tst_ViewerProcess::closesWhileItLoads()
{
    write(QStringLiteral("a.log"), candumpLines(0, 3 * Million));
    start({QStringLiteral("a.log")});
    QVERIFY(waitForLine(QStringLiteral("^a.log: [0-9]+ rows: Loading")));
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(close(), 0);
    QVERIFY2(clock.elapsed() < 10000, qPrintable(QString::number(clock.elapsed())));
    QVERIFY(!logged().contains(QStringLiteral("a.log: 3000000 rows")));
}

X9_CORE_TEST(tst_ViewerProcess)
#include "tst_ViewerProcess.moc"
