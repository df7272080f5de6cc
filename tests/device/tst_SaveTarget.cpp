#include "device/SaveTarget.h"
#include "tests/support/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>
#ifdef Q_OS_LINUX
#include <sys/fsuid.h>
#endif
#include <unistd.h>

class tst_SaveTarget : public QObject
{
    Q_OBJECT

private slots:
    static void isForOrdinaryFiles();
    static void isNotForPipesAndDevices();
    static void refusesAPipe();
    static void replacesTheFileBehindALink();
#ifdef Q_OS_LINUX
    static void savesInPlace();
#endif
};

namespace {
constexpr uint Somebody = 65534;

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool save(const QString &path, const QByteArray &content)
{
    QSaveFile file(path);
    return openForSaving(file) && file.write(content) == content.size() && file.commit();
}
} // namespace

void tst_SaveTarget::isForOrdinaryFiles()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a"));
    const QString link = folder.filePath(QStringLiteral("link"));
    QVERIFY(QFile::link(path, link));
    QVERIFY(isFileTarget(path));
    QVERIFY(isFileTarget(link));
    write(path, "x");
    QVERIFY(isFileTarget(path));
    QVERIFY(isFileTarget(link));
    QVERIFY(!isFileTarget(folder.path()));
}

void tst_SaveTarget::isNotForPipesAndDevices()
{
    const QTemporaryDir folder;
    const QString pipe = folder.filePath(QStringLiteral("pipe"));
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    const QStringList targets{pipe, QStringLiteral("/dev/null")};
    for (int i = 0; i < targets.size(); ++i) {
        const QString link = folder.filePath(QStringLiteral("link%1").arg(i));
        const QString second = folder.filePath(QStringLiteral("second%1").arg(i));
        QVERIFY(QFile::link(targets[i], link));
        QVERIFY(QFile::link(link, second));
        QVERIFY(!isFileTarget(targets[i]));
        QVERIFY(!isFileTarget(link));
        QVERIFY(!isFileTarget(second));
    }
}

void tst_SaveTarget::refusesAPipe()
{
    const QTemporaryDir folder;
    const QString pipe = folder.filePath(QStringLiteral("pipe"));
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QVERIFY(!save(pipe, "x"));
    struct stat standing = {};
    QCOMPARE(::stat(QFile::encodeName(pipe).constData(), &standing), 0);
    QVERIFY(S_ISFIFO(standing.st_mode));
    QCOMPARE(QDir(folder.path()).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size(), 1);
}

void tst_SaveTarget::replacesTheFileBehindALink()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a"));
    const QString link = folder.filePath(QStringLiteral("link"));
    write(path, "before");
    QVERIFY(QFile::link(path, link));
    QVERIFY(save(link, "after"));
    QCOMPARE(read(path), QByteArray("after"));
    QVERIFY(QFileInfo(link).isSymLink());
}

#ifdef Q_OS_LINUX
/// As somebody who may write the file and create nothing beside it; the superuser may always create.
void tst_SaveTarget::savesInPlace()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a"));
    write(path, "before, and longer");
    QVERIFY(QFile::setPermissions(path, QFile::Permissions(0x6666)));
    QVERIFY(::chmod(QFile::encodeName(folder.path()).constData(), 0555) == 0);
    const int before = ::setfsuid(Somebody);
    const bool isSaved = save(path, "after");
    const bool isCreated = save(folder.filePath(QStringLiteral("b")), "new");
    ::setfsuid(static_cast<uint>(before));
    QVERIFY(::chmod(QFile::encodeName(folder.path()).constData(), 0755) == 0);
    QVERIFY(isSaved);
    QVERIFY(!isCreated);
    QCOMPARE(read(path), QByteArray("after"));
}
#endif

X9_CORE_TEST(tst_SaveTarget)
#include "tst_SaveTarget.moc"
