#include "tests/support/TestProgram.h"
#include "tests/viewer/ViewerFrames.h"
#include "viewer/core/MatchCount.h"

#include <QSemaphore>
#include <QtTest>

namespace {

Filter filterOf(const char *text)
{
    FilterError error{};
    return Filter::parse(QString::fromLatin1(text), {}, error).value_or(Filter());
}

} // namespace

class tst_MatchCount : public QObject
{
    Q_OBJECT

private slots:
    static void countsAndNumbers();
    static void bothFilters();
};

void tst_MatchCount::countsAndNumbers()
{
    constexpr qint64 Rows = 200000;
    const auto store = std::make_shared<BusFrameStore>();
    fillNumbered(*store, Rows);
    QSemaphore news;
    MatchCount count(store, [&news] { news.release(); });
    const auto finish = [&] {
        while (count.isRunning()) {
            QVERIFY(news.tryAcquire(1, 10000));
            count.update();
        }
    };
    count.start(filterOf("number % 1000 == 1"));
    finish();
    QCOMPARE(count.matches(), Rows / 1000);
    QCOMPARE(count.ordinal(*store, 0).value_or(-1), qint64(1));
    QCOMPARE(count.ordinal(*store, 999).value_or(-1), qint64(1));
    QCOMPARE(count.ordinal(*store, 1000).value_or(-1), qint64(2));
    QCOMPARE(count.ordinal(*store, 150000).value_or(-1), qint64(151));
    QVERIFY(!count.ordinal(*store, Rows));
    fillNumbered(*store, 5000);
    count.extend();
    finish();
    QCOMPARE(count.matches(), Rows / 1000 + 5);
    QCOMPARE(count.ordinal(*store, Rows).value_or(-1), qint64(201));
    count.start(filterOf("number == 7"));
    QCOMPARE(count.matches(), qint64(0));
    finish();
    QCOMPARE(count.matches(), qint64(1));
}

void tst_MatchCount::bothFilters()
{
    BusFrameStore store;
    fillNumbered(store, 100);
    const auto passing = [&store](const Filter &filter) {
        int count = 0;
        for (qint64 row = 0; row < store.size(); ++row) {
            count += filter.passes(store, row) ? 1 : 0;
        }
        return count;
    };
    const Filter all;
    const Filter even = filterOf("number % 2 == 0");
    QCOMPARE(passing(Filter::both(even, filterOf("number <= 10"))), 5);
    QCOMPARE(passing(Filter::both(filterOf("number <= 10"), even)), 5);
    QCOMPARE(passing(Filter::both(even, all)), 50);
    QCOMPARE(passing(Filter::both(all, even)), 50);
    QVERIFY(Filter::both(all, all).passesAll());
}

X9_PLAIN_TEST(tst_MatchCount)
#include "tst_MatchCount.moc"
