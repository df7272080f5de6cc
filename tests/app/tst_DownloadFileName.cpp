#include "app/FileDownload.h"
#include "tests/support/TestProgram.h"

#include <QtTest>
#include <QUrl>

class tst_DownloadFileName : public QObject
{
    Q_OBJECT

private slots:
    static void names_data();
    static void names();
    static void refused_data();
    static void refused();
};

void tst_DownloadFileName::names_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << QByteArray("a/b/Install.zip") << QStringLiteral("Install.zip");
    QTest::newRow("no folder") << QByteArray("Install.zip") << QStringLiteral("Install.zip");
    QTest::newRow("query and fragment") << QByteArray("f.bin?x=/y#/z") << QStringLiteral("f.bin");
    QTest::newRow("blank") << QByteArray("my%20file.bin") << QStringLiteral("my file.bin");
    QTest::newRow("decoded once") << QByteArray("a%2520b.bin") << QStringLiteral("a%20b.bin");
    QTest::newRow("decoded once, slash") << QByteArray("a%252Fb.bin") << QStringLiteral("a%2Fb.bin");
    QTest::newRow("chinese") << QByteArray("%E5%9B%BA%E4%BB%B6.bin") << QStringLiteral("固件.bin");
    QTest::newRow("hidden") << QByteArray(".bin") << QStringLiteral(".bin");
    QTest::newRow("dots inside") << QByteArray("a..b") << QStringLiteral("a..b");
    QTest::newRow("device as a beginning") << QByteArray("CONFIG.bin") << QStringLiteral("CONFIG.bin");
    QTest::newRow("device as an ending") << QByteArray("a.nul") << QStringLiteral("a.nul");
    QTest::newRow("device with two digits") << QByteArray("COM10") << QStringLiteral("COM10");
}

void tst_DownloadFileName::names()
{
    QFETCH(QByteArray, path);
    QFETCH(QString, name);
    QCOMPARE(downloadFileName(QUrl::fromEncoded("http://server/" + path)), name);
}

void tst_DownloadFileName::refused_data()
{
    QTest::addColumn<QByteArray>("path");
    const QByteArrayList paths{"",        "folder/",    "a/.",         "a/..",       "%2E",         "%2e%2e",
                               "a%2Fb",   "..%2fb",     "a%5Cb",       "a\\b",       "..%5Cb",      "c:d",
                               "c%3Ad",   "a%00.bin",   "%00",         "a%0Ab",      "a%1Fb",       "a%7Fb",
                               "a%C2%85", "a.",         "a%20",        "a...",       "%20",         "...",
                               "CON",     "con.txt",    "Nul.tar.gz",  "AUX%20.bin", "prn",         "COM1",
                               "com9.a",  "LPT0",       "lpt%C2%B9.x", "CONIN$",     "conout$.bin", "a%FFb",
                               "a%C3",    "a%E3%80%80", "%C0%AE%C0%AE"};
    for (const QByteArray &path : paths) {
        QTest::newRow(path.isEmpty() ? "empty" : path.constData()) << path;
    }
}

void tst_DownloadFileName::refused()
{
    QFETCH(QByteArray, path);
    QCOMPARE(downloadFileName(QUrl::fromEncoded("http://server/f/" + path)), QString());
}

X9_PLAIN_TEST(tst_DownloadFileName)
#include "tst_DownloadFileName.moc"
