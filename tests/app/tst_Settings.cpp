#include "app/Settings.h"

#include <QFile>
#include <QtTest>

class tst_Settings : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QFile::remove(iniPath()); }
    void noFileIsChinese() { QCOMPARE(getLanguage(), 0); }
    void storedLanguage();
    void damagedFileIsChinese();

private:
    static QString iniPath() { return QCoreApplication::applicationDirPath() + QStringLiteral("/Init.ini"); }
    static void write(const QByteArray &content);
};

void tst_Settings::write(const QByteArray &content)
{
    QFile file(iniPath());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

void tst_Settings::storedLanguage()
{
    write("[General]\nlanguage=1\n");
    QCOMPARE(getLanguage(), 1);
}

void tst_Settings::damagedFileIsChinese()
{
    write(QByteArray("\0\xFF[[[language\0=1", 16));
    QCOMPARE(getLanguage(), 0);
}

QTEST_GUILESS_MAIN(tst_Settings)
#include "tst_Settings.moc"
