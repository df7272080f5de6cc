#include "app/Settings.h"
#include "tests/support/TestProgram.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

namespace {
/// Where nobody may write, not even root.
const QString ReadOnlyFolder = QStringLiteral(X9_DRIVE "/sys");
} // namespace

class tst_Settings : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { QStandardPaths::setTestModeEnabled(true); } // not the user's own file
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }
    static void cleanup() { QFile::remove(iniPath()); }
    static void noFileIsChinese();
    static void storedLanguage();
    static void storesTheLanguage();
    static void damagedFileIsChinese_data();
    static void damagedFileIsChinese();
    void keepsOtherKeys();
    static void storesForTheUser_data();
    void storesForTheUser();
    void theProgramsFileCountsAgain();
    static void usersFileIsOneInstallations();
#ifdef Q_OS_UNIX
    void pipesAreNoFiles();
#endif
    void isStoredNowhere();
    void updateServerIsTheInstallations();

private:
    static QString iniPath()
    {
        return QCoreApplication::applicationDirPath() + QStringLiteral("/Init.ini");
    }
    static void write(const QString &path, const QByteArray &content);
    static QByteArray read(const QString &path);
    QString file(const char *name) const
    {
        return m_folder->filePath(QLatin1String(name));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_Settings::write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

QByteArray tst_Settings::read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void tst_Settings::noFileIsChinese()
{
    QCOMPARE(getLanguage(), 0);
    QVERIFY(SettingsFiles::ofProgram().updateServer().isEmpty());
}

void tst_Settings::storedLanguage()
{
    write(iniPath(), "[General]\nlanguage=1\n");
    QCOMPARE(getLanguage(), 1);
}

void tst_Settings::storesTheLanguage()
{
    QVERIFY(setLanguage(1));
    QVERIFY(read(iniPath()).contains("language=1"));
    QCOMPARE(getLanguage(), 1);
    QVERIFY(setLanguage(0));
    QVERIFY(read(iniPath()).contains("language=0"));
    QCOMPARE(getLanguage(), 0);
}

void tst_Settings::damagedFileIsChinese_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("binary") << QByteArray("\0\xFF[[[language\0=1", 16);
    QTest::newRow("no number") << QByteArray("[General]\nlanguage=English\n");
    QTest::newRow("no value") << QByteArray("[General]\nlanguage\n");
    QTest::newRow("list") << QByteArray("[General]\nlanguage=1, 2\n");
    QTest::newRow("large") << QByteArray(1 << 20, '[');
}

void tst_Settings::damagedFileIsChinese()
{
    QFETCH(QByteArray, content);
    write(iniPath(), content);
    QCOMPARE(getLanguage(), 0);
    QVERIFY(setLanguage(1)); // and can be mended
    QCOMPARE(getLanguage(), 1);
}

void tst_Settings::keepsOtherKeys()
{
    write(file("program.ini"), "[General]\nupdateServer=https://updates.example.com\n[Other]\nkey=value\n");
    const SettingsFiles settings(file("program.ini"), file("user.ini"));
    QVERIFY(settings.setLanguage(1));
    QCOMPARE(settings.updateServer(), QStringLiteral("https://updates.example.com"));
    QVERIFY(read(file("program.ini")).contains("key=value"));
    QVERIFY(!QFile::exists(file("user.ini")));
}

void tst_Settings::storesForTheUser_data()
{
    QTest::addColumn<QString>("programFile");
    QTest::newRow("a folder of that name") << QStringLiteral("taken");
    QTest::newRow("read-only folder") << ReadOnlyFolder + QStringLiteral("/Init.ini");
    QTest::newRow("folder is a file") << QStringLiteral("plain/Init.ini");
}

/// Where the program's own file cannot be written.
void tst_Settings::storesForTheUser()
{
    QFETCH(QString, programFile);
    QVERIFY(QDir(m_folder->path()).mkpath(QStringLiteral("taken/full")));
    write(file("plain"), "x");
    const SettingsFiles settings(QDir(m_folder->path()).filePath(programFile), file("home/X9CAN/Init.ini"));
    QCOMPARE(settings.language(), 0);
    QVERIFY(settings.setLanguage(1));
    QCOMPARE(settings.language(), 1);
    QVERIFY(read(file("home/X9CAN/Init.ini")).contains("language=1"));
    QVERIFY(settings.setLanguage(0));
    QCOMPARE(settings.language(), 0);
}

/// Once it can be written.
void tst_Settings::theProgramsFileCountsAgain()
{
    write(file("user.ini"), "[General]\nlanguage=1\n");
    const SettingsFiles settings(file("program.ini"), file("user.ini"));
    QCOMPARE(settings.language(), 0);
    QVERIFY(!QFile::exists(file("program.ini"))); // trying is not writing
    QVERIFY(settings.setLanguage(1));
    QVERIFY(read(file("program.ini")).contains("language=1"));
    write(file("user.ini"), "[General]\nlanguage=0\n");
    QCOMPARE(settings.language(), 1);
}

void tst_Settings::usersFileIsOneInstallations()
{
    const QString name = SettingsFiles::ofProgram().userFile();
    QVERIFY(QRegularExpression(QStringLiteral("/X9CAN/Init-[0-9a-f]{8}\\.ini$")).match(name).hasMatch());
    // The first digits of the SHA-1 of the program's folder.
    const QByteArray folder = QDir(QCoreApplication::applicationDirPath()).canonicalPath().toUtf8();
    QVERIFY(
        name.contains(QString::fromLatin1(QCryptographicHash::hash(folder, QCryptographicHash::Sha1).toHex().left(8))));
}

#ifdef Q_OS_UNIX
/// Reading it would wait for ever.
void tst_Settings::pipesAreNoFiles()
{
    for (const char *name : {"program.ini", "user.ini"}) {
        QCOMPARE(::mkfifo(QFile::encodeName(file(name)).constData(), 0600), 0);
    }
    const SettingsFiles settings(file("program.ini"), file("user.ini"));
    QCOMPARE(settings.language(), 0);
    QVERIFY(settings.updateServer().isEmpty());
    QVERIFY(!settings.setLanguage(1));
    QCOMPARE(settings.language(), 0);
    const SettingsFiles usable(file("program.ini"), file("other.ini"));
    QVERIFY(usable.setLanguage(1));
    QCOMPARE(usable.language(), 1);
    QVERIFY(!QFileInfo(file("program.ini")).isFile());
}
#endif

void tst_Settings::isStoredNowhere()
{
    write(file("plain"), "x");
    QVERIFY(QDir(m_folder->path()).mkpath(QStringLiteral("folder.ini/taken")));
    for (const char *program : {"plain/a.ini", "folder.ini"}) {
        const SettingsFiles settings(file(program), file("plain/b.ini"));
        QVERIFY(!settings.setLanguage(1));
        QCOMPARE(settings.language(), 0);
    }
}

void tst_Settings::updateServerIsTheInstallations()
{
    write(file("program.ini"), "[General]\nupdateServer=http://a\n");
    write(file("user.ini"), "[General]\nupdateServer=http://b\n");
    QCOMPARE(SettingsFiles(file("program.ini"), file("user.ini")).updateServer(), QStringLiteral("http://a"));
    QVERIFY(SettingsFiles(file("none.ini"), file("user.ini")).updateServer().isEmpty());
}

X9_CORE_TEST(tst_Settings)
#include "tst_Settings.moc"
