#include "app/FileDownload.h"
#include "tests/app/UpdateServer.h"
#include "tests/support/TestProgram.h"
#include "tests/support/Ticks.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>
#include <QUrl>

#include <algorithm>
#include <memory>

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/resource.h>
#endif
#ifdef Q_OS_LINUX
#include <atomic>
#include <sys/syscall.h>
#include <unistd.h>

static std::atomic<int> diskWaits{0};

/// Stands before the system's function of this name, which the toolkit calls to wait until a file is on the disk.
extern "C" int fdatasync(int fildes)
{
    ++diskWaits;
    return static_cast<int>(syscall(SYS_fdatasync, fildes));
}
#endif

namespace {
constexpr qint64 Plenty = Q_INT64_C(1000) * 1000 * 1000;

/// What a download tells, each as it came.
struct Reports
{
    explicit Reports(FileDownload &download)
    {
        QObject::connect(&download, &FileDownload::sig_finished, &context, [this](bool ok, const QString &errorText) {
            ++finished;
            isOk = ok;
            text = errorText;
        });
    }

    QObject context;
    int finished = 0;
    bool isOk = false;
    QString text;
};

QByteArray content()
{
    QByteArray bytes;
    for (int index = 0; index < 3000000; ++index) {
        bytes.append(static_cast<char>((index * 7 + index / 251) & 0xFF));
    }
    return bytes;
}

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

#ifdef Q_OS_UNIX
/// While it lives, no file of this process can grow beyond a size: a disk that is full.
class FullDisk
{
public:
    explicit FullDisk(rlim_t bytes)
        : m_oldHandler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_old);
        const rlimit limit{bytes, m_old.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_old);
        std::signal(SIGXFSZ, m_oldHandler);
    }
    Q_DISABLE_COPY_MOVE(FullDisk)

private:
    void (*m_oldHandler)(int);
    rlimit m_old{};
};
#endif
} // namespace

class tst_FileDownload : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void downloads();
    void replacesAFile();
    void anyNameOfAFile();
    void followsARedirect();
    static void failures_data();
    void failures();
    void failureLeavesWhatWasThere();
    static void addresses_data();
    void addresses();
    void secureServiceNamesSecureAddresses();
    void sizeLimit();
    static void stalls_data();
    void stalls();
    void slowButSteady();
    static void cannotWrite_data();
    void cannotWrite();
#ifdef Q_OS_UNIX
    void diskIsFull();
#endif
    static void cancels_data();
    void cancels();
    void cancelsWhatIsCompleteButUntold();
#ifdef Q_OS_LINUX
    void waitsForTheDiskOnlyWithAWholeFile();
#endif
    static void deletedWhileItRuns_data();
    void deletedWhileItRuns();
    void deletedInItsSignal();
    void startEndsTheOneBefore();
    void manyStartsAndCancels();

private:
    QUrl url(const char *behaviour = "", const char *name = "package.zip") const;
    /// Every file and folder below the test's own folder.
    QStringList remains() const;
    /// Nothing remains. Does not look into the folder, which some systems would then not remove.
    bool isGone() const
    {
        return !QFileInfo::exists(QFileInfo(m_target).absolutePath());
    }

    QByteArray m_content = content();
    QTemporaryDir m_served;
    std::unique_ptr<UpdateServer> m_server;
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_target; ///< in a folder that is not there yet
};

void tst_FileDownload::initTestCase()
{
    write(m_served.filePath(QStringLiteral("package.zip")), m_content);
    write(m_served.filePath(QStringLiteral("small")), "0123456789");
    write(m_served.filePath(QStringLiteral("nothing")), QByteArray());
    m_server = std::make_unique<UpdateServer>(QStringList{QStringLiteral("--downloads"), m_served.path()});
    QVERIFY(!m_server->url().isEmpty());
}

void tst_FileDownload::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_target = m_folder->filePath(QStringLiteral("X9CAN_Install/Install.zip"));
}

QUrl tst_FileDownload::url(const char *behaviour, const char *name) const
{
    const QString base = *behaviour == '\0' ? m_server->url() : m_server->url(behaviour);
    return QUrl(base + QStringLiteral("/downloads/") + QLatin1String(name));
}

QStringList tst_FileDownload::remains() const
{
    QStringList entries;
    QDirIterator walk(m_folder->path(), QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                      QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        entries.append(walk.next());
    }
    return entries;
}

void tst_FileDownload::downloads()
{
    FileDownload download{m_server->url()};
    Reports reports(download);
    download.start(url(), m_target, Plenty);
    QVERIFY(download.isRunning());
    QCOMPARE(reports.finished, 0);
    QTRY_COMPARE(reports.finished, 1);
    QCOMPARE(reports.text, QString());
    QVERIFY(reports.isOk);
    QVERIFY(!download.isRunning());
    QVERIFY(read(m_target) == m_content);
    QCOMPARE(remains().count(), 2); // the folder and the file
}

void tst_FileDownload::replacesAFile()
{
    QDir().mkpath(QFileInfo(m_target).path());
    write(m_target, "old");
    FileDownload download{m_server->url()};
    Reports reports(download);
    download.start(url("", "small"), m_target, Plenty);
    QTRY_COMPARE(reports.finished, 1);
    QVERIFY(reports.isOk);
    QCOMPARE(read(m_target), QByteArray("0123456789"));
}

void tst_FileDownload::anyNameOfAFile()
{
    FileDownload download{m_server->url()};
    Reports reports(download);
    m_target = m_folder->filePath(QStringLiteral("new %1 %2/固件 %1.bin"));
    download.start(url("", "small"), m_target, Plenty);
    QTRY_COMPARE(reports.finished, 1);
    QCOMPARE(reports.text, QString());
    QCOMPARE(read(m_target), QByteArray("0123456789"));
    QCOMPARE(remains().count(), 2);
}

void tst_FileDownload::followsARedirect()
{
    FileDownload download{m_server->url()};
    Reports reports(download);
    download.start(url("redirect"), m_target, Plenty);
    QTRY_COMPARE(reports.finished, 1);
    QVERIFY(reports.isOk);
    QVERIFY(read(m_target) == m_content);
}

void tst_FileDownload::failures_data()
{
    QTest::addColumn<QByteArray>("behaviour");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QString>("text"); ///< empty: the toolkit's own
    QTest::addColumn<int>("requests");
    const QString empty = QStringLiteral("The file on the server is empty.");
    const QByteArray file = "package.zip";
    for (const char *name : {"404", "500", "redirect-file", "redirect-ftp"}) {
        QTest::newRow(name) << QByteArray(name) << file << QString() << 1;
    }
    QTest::newRow("redirect-self") << QByteArray("redirect-self") << file << QString() << 6;
    QTest::newRow("no such file") << QByteArray() << QByteArray("other") << QString() << 1;
    QTest::newRow("empty answer") << QByteArray("nothing") << file << empty << 1;
    QTest::newRow("empty file") << QByteArray() << QByteArray("nothing") << empty << 1;
    QTest::newRow("short") << QByteArray("short") << file
                           << QStringLiteral("The connection ended before the file was complete.") << 1;
}

void tst_FileDownload::failures()
{
    QFETCH(QByteArray, behaviour);
    QFETCH(QByteArray, name);
    QFETCH(QString, text);
    QFETCH(int, requests);
    const int before = m_server->requests().count();
    FileDownload download{m_server->url()};
    Reports reports(download);
    const Turns turns;
    download.start(url(behaviour.constData(), name.constData()), m_target, Plenty);
    QTRY_COMPARE(reports.finished, 1);
    QVERIFY(!reports.isOk);
    QVERIFY(!reports.text.isEmpty());
    if (!text.isEmpty()) {
        QCOMPARE(reports.text, text);
    }
    QCOMPARE(remains(), QStringList());
    // The toolkit repeats a request whose connection the server has closed meanwhile.
    QTRY_VERIFY(m_server->requests().count() >= before + requests);
    QVERIFY(m_server->requests().count() <= before + 2 * requests);
    QTRY_VERIFY(turns.count() > 20);
    QCOMPARE(reports.finished, 1);
}

void tst_FileDownload::failureLeavesWhatWasThere()
{
    QDir().mkpath(QFileInfo(m_target).path());
    write(m_target, "old");
    FileDownload download{m_server->url()};
    Reports reports(download);
    download.start(url("short"), m_target, Plenty);
    QTRY_COMPARE(reports.finished, 1);
    QVERIFY(!reports.isOk);
    QCOMPARE(read(m_target), QByteArray("old"));
    QCOMPARE(remains().count(), 2);
}

void tst_FileDownload::addresses_data()
{
    QTest::addColumn<QString>("address");
    for (const char *address : {"", "package.zip", "file:///etc/hostname", "ftp://127.0.0.1/a", "qrc:/a", "data:,abc",
                                "http:", "http://", "//127.0.0.1/a"}) {
        QTest::newRow(*address == '\0' ? "empty" : address) << QString::fromLatin1(address);
    }
}

void tst_FileDownload::addresses()
{
    QFETCH(QString, address);
    FileDownload download{m_server->url()};
    Reports reports(download);
    download.start(QUrl(address), m_target, Plenty);
    QCOMPARE(reports.finished, 0);
    QTRY_COMPARE(reports.finished, 1);
    QVERIFY(!reports.isOk);
    QCOMPARE(reports.text, QStringLiteral("The address of the file cannot be used."));
    QCOMPARE(remains(), QStringList());
}

/// Of a service that is not plain http itself.
void tst_FileDownload::secureServiceNamesSecureAddresses()
{
    const int before = m_server->requests().count();
    for (const char *service : {"https://127.0.0.1", ""}) {
        FileDownload download{QLatin1String(service)};
        Reports reports(download);
        download.start(url(), m_target, Plenty);
        QTRY_COMPARE(reports.finished, 1);
        QCOMPARE(reports.text, QStringLiteral("The address of the file cannot be used."));
        QCOMPARE(remains(), QStringList());
    }
    QCOMPARE(m_server->requests().count(), before);
}

/// As announced, and while it comes; exactly as much as allowed is enough.
void tst_FileDownload::sizeLimit()
{
    for (const char *behaviour : {"", "rubbish", "rubbish-chunked"}) {
        FileDownload download{m_server->url()};
        Reports reports(download);
        download.start(url(behaviour), m_target, m_content.size() - 1);
        QTRY_COMPARE(reports.finished, 1);
        QCOMPARE(reports.text, QStringLiteral("The file on the server is too large."));
        QCOMPARE(remains(), QStringList());
    }
    FileDownload download{m_server->url()};
    Reports reports(download);
    download.start(url(), m_target, m_content.size());
    QTRY_COMPARE(reports.finished, 1);
    QVERIFY(reports.isOk);
}

void tst_FileDownload::stalls_data()
{
    QTest::addColumn<QByteArray>("behaviour");
    QTest::newRow("no answer") << QByteArray("no-answer");
    QTest::newRow("stops halfway") << QByteArray("stall");
}

void tst_FileDownload::stalls()
{
    QFETCH(QByteArray, behaviour);
    FileDownload download{m_server->url()};
    download.setStallLimit(300);
    Reports reports(download);
    const Turns turns;
    download.start(url(behaviour.constData()), m_target, Plenty);
    QTRY_COMPARE(reports.finished, 1);
    QVERIFY(!reports.isOk);
    QCOMPARE(reports.text, QStringLiteral("The server does not answer any more."));
    QCOMPARE(remains(), QStringList());
    QVERIFY(turns.count() > 5);
}

/// The whole takes longer than the stall limit, no pause does.
void tst_FileDownload::slowButSteady()
{
    FileDownload download{m_server->url()};
    download.setStallLimit(3000);
    Reports reports(download);
    download.start(url("slow", "small"), m_target, Plenty);
    QTRY_COMPARE_WITH_TIMEOUT(reports.finished, 1, 60000);
    QCOMPARE(reports.text, QString());
    QCOMPARE(read(m_target), QByteArray("0123456789"));
}

void tst_FileDownload::cannotWrite_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("a file where the folder should be") << QStringLiteral("file/Install.zip");
    QTest::newRow("a folder where the file should be") << QStringLiteral("folder");
    QTest::newRow("a name that no file can have") << QString(300, QLatin1Char('a'));
}

void tst_FileDownload::cannotWrite()
{
    QFETCH(QString, target);
    write(m_folder->filePath(QStringLiteral("file")), "x");
    QDir().mkpath(m_folder->filePath(QStringLiteral("folder")));
    FileDownload download{m_server->url()};
    Reports reports(download);
    download.start(url("", "small"), m_folder->filePath(target), Plenty);
    QTRY_COMPARE(reports.finished, 1);
    QVERIFY(!reports.isOk);
    const QRegularExpression expected(QStringLiteral("^The file cannot be written: .+"));
    QVERIFY2(expected.match(reports.text).hasMatch(), qPrintable(reports.text));
    QCOMPARE(remains().count(), 2);
}

#ifdef Q_OS_UNIX
void tst_FileDownload::diskIsFull()
{
    FileDownload download{m_server->url()};
    Reports reports(download);
    {
        const FullDisk disk(rlim_t(500) * 1000);
        download.start(url(), m_target, Plenty);
        QTRY_COMPARE(reports.finished, 1);
    }
    QVERIFY(!reports.isOk);
    QVERIFY2(reports.text.startsWith(QLatin1String("The file cannot be written: ")), qPrintable(reports.text));
    QCOMPARE(remains(), QStringList());
}
#endif

void tst_FileDownload::cancels_data()
{
    QTest::addColumn<QByteArray>("behaviour");
    QTest::addColumn<bool>("isBegun"); ///< bytes come before it is cancelled
    QTest::newRow("at once") << QByteArray() << false;
    QTest::newRow("no answer") << QByteArray("no-answer") << false;
    QTest::newRow("stops halfway") << QByteArray("stall") << true;
    QTest::newRow("one byte per second") << QByteArray("slow") << true;
    QTest::newRow("in full flow") << QByteArray("rubbish") << true;
    QTest::newRow("in full flow, size unknown") << QByteArray("rubbish-chunked") << true;
}

/// Nothing is emitted afterwards, and soon nothing is left.
void tst_FileDownload::cancels()
{
    QFETCH(QByteArray, behaviour);
    QFETCH(bool, isBegun);
    FileDownload download{m_server->url()};
    Reports reports(download);
    const int before = m_server->requests().count();
    download.start(url(behaviour.constData()), m_target, Plenty);
    if (!behaviour.isEmpty()) {
        QTRY_COMPARE(m_server->requests().count(), before + 1);
    }
    if (isBegun) {
        QTRY_VERIFY(!remains().isEmpty()); // the file that is being written
    }
    download.cancel();
    QVERIFY(!download.isRunning());
    QTRY_VERIFY(isGone());
    const Turns turns;
    QTRY_VERIFY(turns.count() > 50);
    QCOMPARE(reports.finished, 0);
    QCOMPARE(remains(), QStringList());

    download.start(url("", "small"), m_target, Plenty);
    QTRY_COMPARE(reports.finished, 1);
    QVERIFY(reports.isOk);
}

/// The file is complete and on the disk, but the message of it is not yet read: what stood in its place stays.
void tst_FileDownload::cancelsWhatIsCompleteButUntold()
{
    QDir().mkpath(QFileInfo(m_target).path());
    write(m_target, "old");
    FileDownload download{m_server->url()};
    Reports reports(download);
    download.start(url("", "small"), m_target, Plenty);
    const auto isComplete = [this] {
        const QStringList files = remains();
        const auto isPart = [](const QString &file) {
            return file.endsWith(QLatin1String(".part"));
        };
        return read(m_target) != "old" || std::any_of(files.cbegin(), files.cend(), isPart);
    };
    const QDeadlineTimer limit(5000);
    while (!isComplete() && !limit.hasExpired()) {
        QThread::yieldCurrentThread(); // no event loop: that would read the message
    }
    QVERIFY(isComplete());
    download.cancel();
    QTRY_COMPARE(remains().count(), 2); // the folder and the file
    QCOMPARE(read(m_target), QByteArray("old"));
    const Turns turns;
    QTRY_VERIFY(turns.count() > 50);
    QCOMPARE(reports.finished, 0);
    QCOMPARE(read(m_target), QByteArray("old"));
}

#ifdef Q_OS_LINUX
/// A busy disk takes seconds for what was written so far; what is thrown away need not get there.
void tst_FileDownload::waitsForTheDiskOnlyWithAWholeFile()
{
    diskWaits = 0;
    FileDownload download{m_server->url()};
    Reports reports(download);
    download.start(url("rubbish"), m_target, Plenty);
    QTRY_VERIFY(!remains().isEmpty());
    download.cancel();
    QTRY_VERIFY(isGone());
    QCOMPARE(diskWaits.load(), 0);

    download.start(url("rubbish-chunked"), m_target, Q_INT64_C(1000) * 1000);
    QTRY_COMPARE(reports.finished, 1);
    QVERIFY(!reports.isOk);
    QCOMPARE(remains(), QStringList());
    QCOMPARE(diskWaits.load(), 0);

    download.start(url(), m_target, Plenty);
    QTRY_COMPARE(reports.finished, 2);
    QVERIFY(reports.isOk);
    QCOMPARE(diskWaits.load(), 1);
}
#endif

void tst_FileDownload::deletedWhileItRuns_data()
{
    cancels_data();
}

void tst_FileDownload::deletedWhileItRuns()
{
    QFETCH(QByteArray, behaviour);
    QFETCH(bool, isBegun);
    auto download = std::make_unique<FileDownload>(m_server->url());
    Reports reports(*download);
    download->start(url(behaviour.constData()), m_target, Plenty);
    if (isBegun) {
        QTRY_VERIFY(!remains().isEmpty());
    }
    download.reset();
    QTRY_VERIFY(isGone());
    QCOMPARE(reports.finished, 0);
}

void tst_FileDownload::deletedInItsSignal()
{
    auto download = std::make_unique<FileDownload>(m_server->url());
    connect(download.get(), &FileDownload::sig_finished, this, [&download] { download.reset(); });
    download->start(url("", "small"), m_target, Plenty);
    QTRY_VERIFY(download == nullptr);
    QVERIFY(QFile::exists(m_target)); // it had been told
}

void tst_FileDownload::startEndsTheOneBefore()
{
    FileDownload download{m_server->url()};
    Reports reports(download);
    const int before = m_server->requests().count();
    const QString other = m_folder->filePath(QStringLiteral("other"));
    download.start(url("stall"), other, Plenty);
    QTRY_COMPARE(m_server->requests().count(), before + 1);
    download.start(url("", "small"), m_target, Plenty);
    QTRY_COMPARE(reports.finished, 1);
    QVERIFY(reports.isOk);
    QCOMPARE(remains().count(), 2);
}

/// At every moment of a download's life.
void tst_FileDownload::manyStartsAndCancels()
{
    FileDownload download{m_server->url()};
    Reports reports(download);
    const Turns turns;
    for (int round = 0; round < 30; ++round) {
        download.start(url(), m_target, Plenty);
        const int until = turns.count() + round % 6;
        QTRY_VERIFY(turns.count() >= until || reports.finished > 0);
        if (download.isRunning()) {
            download.cancel();
            QTRY_VERIFY(isGone());
        }
        QFile::remove(m_target);
        QDir().rmdir(QFileInfo(m_target).path());
        reports.finished = 0;
    }
}

X9_CORE_TEST(tst_FileDownload)
#include "tst_FileDownload.moc"
