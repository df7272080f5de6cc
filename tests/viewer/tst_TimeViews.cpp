#include "tests/support/TestProgram.h"
#include "viewer/core/TimeViews.h"

#include <QtTest>

namespace {

constexpr qint64 End = 1000000;

TimeViews viewsOf(qint64 begin, qint64 end)
{
    TimeViews views;
    views.setWhole({0, End});
    views.show({begin, end});
    views.settle();
    return views;
}

QString text(const TimeSection &section)
{
    return QStringLiteral("%1-%2").arg(section.begin).arg(section.end);
}

} // namespace

class tst_TimeViews : public QObject
{
    Q_OBJECT

private slots:
    static void zoomsAround_data();
    static void zoomsAround();
    static void movesWithinTheWhole_data();
    static void movesWithinTheWhole();
    static void reaches_data();
    static void reaches();
    static void growsWithTheCapture();
    static void goesBackAndForward();
    static void changesThatFollowEachOtherAreOneView();
    static void extremeTimes();
};

void tst_TimeViews::zoomsAround_data()
{
    QTest::addColumn<double>("factor");
    QTest::addColumn<qint64>("around");
    QTest::addColumn<QString>("expected");
    QTest::newRow("middle") << 0.5 << qint64(500000) << QStringLiteral("450000-550000");
    QTest::newRow("left") << 0.5 << qint64(400000) << QStringLiteral("400000-500000");
    QTest::newRow("right") << 0.5 << qint64(600000) << QStringLiteral("500000-600000");
    QTest::newRow("out") << 2.0 << qint64(450000) << QStringLiteral("350000-750000");
    QTest::newRow("out of the left end") << 4.5 << qint64(600000) << QStringLiteral("0-900000");
    QTest::newRow("all") << 1e9 << qint64(600000) << QStringLiteral("0-1000000");
    QTest::newRow("least") << 1e-9 << qint64(500000) << QStringLiteral("499990-500010");
}

void tst_TimeViews::zoomsAround()
{
    QFETCH(const double, factor);
    QFETCH(const qint64, around);
    QFETCH(const QString, expected);
    TimeViews views = viewsOf(400000, 600000);
    views.zoom(factor, around);
    QCOMPARE(text(views.section()), expected);
}

void tst_TimeViews::movesWithinTheWhole_data()
{
    QTest::addColumn<qint64>("distance");
    QTest::addColumn<QString>("expected");
    QTest::newRow("right") << qint64(1000) << QStringLiteral("401000-601000");
    QTest::newRow("left") << qint64(-1000) << QStringLiteral("399000-599000");
    QTest::newRow("too far right") << qint64(500000) << QStringLiteral("800000-1000000");
    QTest::newRow("too far left") << std::numeric_limits<qint64>::min() << QStringLiteral("0-200000");
}

void tst_TimeViews::movesWithinTheWhole()
{
    QFETCH(const qint64, distance);
    QFETCH(const QString, expected);
    TimeViews views = viewsOf(400000, 600000);
    views.move(distance);
    QCOMPARE(text(views.section()), expected);
}

void tst_TimeViews::reaches_data()
{
    QTest::addColumn<qint64>("time");
    QTest::addColumn<QString>("expected");
    QTest::newRow("there") << qint64(600000) << QStringLiteral("400000-600000");
    QTest::newRow("before") << qint64(300000) << QStringLiteral("200000-400000");
    QTest::newRow("behind") << qint64(999999) << QStringLiteral("800000-1000000");
    QTest::newRow("outside") << qint64(9999999) << QStringLiteral("800000-1000000");
}

void tst_TimeViews::reaches()
{
    QFETCH(const qint64, time);
    QFETCH(const QString, expected);
    TimeViews views = viewsOf(400000, 600000);
    views.reach(time);
    QCOMPARE(text(views.section()), expected);
}

void tst_TimeViews::growsWithTheCapture()
{
    TimeViews views;
    views.setWhole({0, 100});
    QVERIFY(views.isWhole());
    views.setWhole({0, End});
    QVERIFY(views.isWhole());
    views.show({400000, 600000});
    views.setWhole({0, 2 * End});
    QCOMPARE(text(views.section()), QStringLiteral("400000-600000"));
    views.show({2 * End - 1000, 2 * End});
    views.setWhole({0, 3 * End});
    QCOMPARE(text(views.section()), QStringLiteral("2999000-3000000"));
    QVERIFY(!views.isWhole());
    views.setWhole({0, 500}); // another capture
    QCOMPARE(text(views.section()), QStringLiteral("0-500"));
}

void tst_TimeViews::goesBackAndForward()
{
    TimeViews views = viewsOf(400000, 600000);
    views.move(1000);
    views.settle();
    views.zoom(0.5, 500000);
    views.settle();
    QVERIFY(!views.canGoForward());
    views.goBack();
    QCOMPARE(text(views.section()), QStringLiteral("401000-601000"));
    views.goBack();
    QCOMPARE(text(views.section()), QStringLiteral("400000-600000"));
    views.goForward();
    QCOMPARE(text(views.section()), QStringLiteral("401000-601000"));
    views.goBack();
    views.goBack();
    QVERIFY(views.isWhole());
    QVERIFY(!views.canGoBack());
    views.goBack();
    QVERIFY(views.isWhole());
    views.goForward();
    views.move(5); // ends the way forward
    QVERIFY(!views.canGoForward());
    for (int i = 0; i < 3 * TimeViews::MaxKept; ++i) {
        views.move(i % 2 == 0 ? 10 : -10);
        views.settle();
    }
    int kept = 0;
    for (; views.canGoBack(); ++kept) {
        views.goBack();
    }
    QCOMPARE(kept, TimeViews::MaxKept);
}

void tst_TimeViews::changesThatFollowEachOtherAreOneView()
{
    TimeViews views = viewsOf(400000, 600000);
    for (int i = 0; i < 5; ++i) {
        views.zoom(0.9, 500000);
    }
    views.goBack();
    QCOMPARE(text(views.section()), QStringLiteral("400000-600000"));
    views.show(views.section()); // nothing changes
    QVERIFY(views.canGoForward());
}

void tst_TimeViews::extremeTimes()
{
    constexpr qint64 Least = std::numeric_limits<qint64>::min();
    constexpr qint64 Greatest = std::numeric_limits<qint64>::max();
    TimeViews views;
    views.setWhole({Least, Greatest});
    QCOMPARE(views.whole().begin, -TimeViews::Farthest);
    QCOMPARE(views.whole().end, TimeViews::Farthest);
    views.zoom(0.5, 0);
    views.zoom(4, views.whole().end);
    QVERIFY(views.isWhole());
    views.setWhole({Greatest, Least});
    QCOMPARE(views.section().width(), qint64(1));
    views.zoom(0.5, 0);
    views.move(Greatest);
    QCOMPARE(views.section().width(), qint64(1));
    QCOMPARE(boundedSum(Greatest, 1), Greatest);
    QCOMPARE(boundedSum(Least, -1), Least);
    QCOMPARE(boundedSum(-5, 7), qint64(2));
}

X9_PLAIN_TEST(tst_TimeViews)
#include "tst_TimeViews.moc"
