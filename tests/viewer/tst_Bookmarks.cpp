#include "tests/support/TestProgram.h"
#include "viewer/core/Bookmarks.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

class tst_Bookmarks : public QObject
{
    Q_OBJECT

private slots:
    static void nextAndPrevious();
    static void comeBackFromTheirFile();
    static void damagedFilesDoNoHarm_data();
    static void damagedFilesDoNoHarm();
    static void isBounded();
};

void tst_Bookmarks::nextAndPrevious()
{
    Bookmarks bookmarks;
    QCOMPARE(bookmarks.next(-1), -1);
    bookmarks.set(10, QStringLiteral("a"));
    bookmarks.set(20, QStringLiteral("b"));
    bookmarks.set(20, QStringLiteral("c"));
    QCOMPARE(bookmarks.note(20), QStringLiteral("c"));
    QCOMPARE(bookmarks.next(-1), 10);
    QCOMPARE(bookmarks.next(10), 20);
    QCOMPARE(bookmarks.next(20), -1);
    QCOMPARE(bookmarks.previous(20), 10);
    QCOMPARE(bookmarks.previous(10), -1);
    bookmarks.remove(10);
    QVERIFY(!bookmarks.contains(10));
}

void tst_Bookmarks::comeBackFromTheirFile()
{
    const QTemporaryDir folder;
    const QString settings = folder.filePath(QStringLiteral("settings/bookmarks"));
    const QString capture = folder.filePath(QStringLiteral("a.csv"));
    Bookmarks bookmarks;
    bookmarks.set(1234567890123, QStringLiteral("pressure drops \u538b\u529b"));
    bookmarks.set(0, QString());
    QVERIFY(bookmarks.save(settings, capture));
    QCOMPARE(Bookmarks::load(settings, capture).notes(), bookmarks.notes());
    QVERIFY(Bookmarks::load(settings, folder.filePath(QStringLiteral("b.csv"))).notes().isEmpty());
    QVERIFY(Bookmarks().save(settings, capture)); // the file goes
    QVERIFY(QDir(settings).entryList(QDir::Files).isEmpty());
    QVERIFY(Bookmarks().save(settings, capture));
    QFile file(folder.filePath(QStringLiteral("file")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(!bookmarks.save(file.fileName() + QStringLiteral("/bookmarks"), capture));
}

void tst_Bookmarks::damagedFilesDoNoHarm_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<int>("count");
    QTest::newRow("nothing") << QByteArray() << 0;
    QTest::newRow("no JSON") << QByteArray(R"({"bookmarks": [{"row": 5)") << 0;
    QTest::newRow("a list") << QByteArray("[1, 2]") << 0;
    QTest::newRow("other types") << QByteArray(R"({"bookmarks": {"row": 5}})") << 0;
    QTest::newRow("wrong rows")
        << QByteArray(R"({"bookmarks": [{"row": -5}, {"row": "5"}, 7, {"row": 1e300}, {}, {"row": 5, "note": 5}]})")
        << 1;
}

void tst_Bookmarks::damagedFilesDoNoHarm()
{
    QFETCH(const QByteArray, json);
    QFETCH(const int, count);
    QCOMPARE(Bookmarks::fromJson(json).notes().size(), count);
}

void tst_Bookmarks::isBounded()
{
    Bookmarks bookmarks;
    for (int i = 0; i < Bookmarks::MaxCount; ++i) {
        QVERIFY(bookmarks.set(i, QString()));
    }
    QVERIFY(!bookmarks.set(Bookmarks::MaxCount, QString()));
    QVERIFY(bookmarks.set(5, QString(5000, QLatin1Char('x'))));
    QCOMPARE(bookmarks.note(5).size(), int(Bookmarks::MaxNote));
}

X9_PLAIN_TEST(tst_Bookmarks)
#include "tst_Bookmarks.moc"
