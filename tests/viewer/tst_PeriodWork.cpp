#include "viewer/core/PeriodWork.h"

#include "tests/support/TestProgram.h"
#include "tests/viewer/ViewerFrames.h"

#include <QtTest>

#include <limits>
#include <numeric>

namespace {

constexpr qint64 Ms = 1000000;
constexpr quint32 Identifier = 5;

/// Frames of one identifier, with these periods from 0 on.
void fillPeriods(BusFrameStore &store, const std::vector<qint64> &periods, qint64 begin = 0)
{
    std::vector<BusFrame> frames{canFrame(begin, Identifier), canFrame(begin, Identifier + 1)};
    for (const qint64 period : periods) {
        begin += period;
        frames.push_back(canFrame(begin, Identifier));
        frames.push_back(canFrame(begin, Identifier, "", BusFrame::Extended));
    }
    fill(store, frames);
}

PeriodChoice choice(qint64 width, bool leavesOutOutliers)
{
    PeriodChoice made;
    made.key = Identifier;
    made.width = width;
    made.leavesOutOutliers = leavesOutOutliers;
    return made;
}

Periods finish(PeriodWork &work)
{
    while (work.work()) {
    }
    return work.result();
}

qint64 total(const PeriodHistogram &histogram)
{
    return std::accumulate(histogram.counts.begin(), histogram.counts.end(), qint64(0));
}

} // namespace

class tst_PeriodWork : public QObject
{
    Q_OBJECT

private slots:
    static void bins();
    static void automaticWidth_data();
    static void automaticWidth();
    static void outliersAreLeftOut();
    static void manyBinsAreWidened();
    static void nothing();
    static void goesOnAndChoosesAnew();
    static void wildTimes();
    static void findsFrames();
};

void tst_PeriodWork::bins()
{
    const auto store = std::make_shared<BusFrameStore>();
    fillPeriods(*store, {10 * Ms, 12 * Ms, 11 * Ms, 10 * Ms, 25 * Ms});
    PeriodWork work(store, choice(2 * Ms, false));
    const Periods periods = finish(work);
    QCOMPARE(periods.covered, store->size());
    QCOMPARE(periods.figures.periodCount, 5);
    QCOMPARE(periods.figures.leastPeriod, 10 * Ms);
    QCOMPARE(periods.figures.greatestPeriod, 25 * Ms);
    QCOMPARE(periods.figures.meanPeriod, 13.6 * Ms);
    QCOMPARE(periods.histogram.low, 10 * Ms);
    QCOMPARE(periods.histogram.width, 2 * Ms);
    QCOMPARE(periods.histogram.counts, (std::vector<qint64>{3, 1, 0, 0, 0, 0, 0, 1}));
}

void tst_PeriodWork::automaticWidth_data()
{
    QTest::addColumn<qint64>("least");
    QTest::addColumn<qint64>("greatest");
    QTest::addColumn<qint64>("width");
    QTest::newRow("all the same") << 10 * Ms << 10 * Ms << qint64(1);
    QTest::newRow("nanoseconds") << qint64(1000) << qint64(1150) << qint64(2);
    QTest::newRow("a millisecond") << 10 * Ms << 11 * Ms << Ms / 50;
    QTest::newRow("ten seconds") << qint64(0) << 10000 * Ms << 200 * Ms;
}

void tst_PeriodWork::automaticWidth()
{
    QFETCH(const qint64, least);
    QFETCH(const qint64, greatest);
    QFETCH(const qint64, width);
    const auto store = std::make_shared<BusFrameStore>();
    fillPeriods(*store, {least, greatest, least});
    PeriodWork work(store, choice(0, false));
    const PeriodHistogram histogram = finish(work).histogram;
    QCOMPARE(histogram.width, width);
    QVERIFY(histogram.low <= least && histogram.low % width == 0);
    QCOMPARE(total(histogram), 3);
}

void tst_PeriodWork::outliersAreLeftOut()
{
    const auto store = std::make_shared<BusFrameStore>();
    std::vector<qint64> wanted(1000, 10 * Ms);
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        wanted[i] += static_cast<qint64>(i % 11) * Ms / 10;
    }
    wanted[500] = 10000 * Ms;
    wanted[600] = 1;
    fillPeriods(*store, wanted);
    PeriodWork work(store, choice(0, true));
    const Periods periods = finish(work);
    QCOMPARE(periods.figures.greatestPeriod, 10000 * Ms);
    QCOMPARE(periods.histogram.below, 1);
    QCOMPARE(periods.histogram.above, 1);
    QCOMPARE(total(periods.histogram), 998);
    QVERIFY(periods.histogram.width <= Ms / 10);
    QVERIFY(periods.histogram.low > 9 * Ms);
}

void tst_PeriodWork::manyBinsAreWidened()
{
    const auto store = std::make_shared<BusFrameStore>();
    fillPeriods(*store, {0, 10000 * Ms});
    PeriodWork work(store, choice(1, false));
    const PeriodHistogram histogram = finish(work).histogram;
    QVERIFY(histogram.counts.size() <= std::size_t(PeriodWork::MaxBins) + 1);
    QCOMPARE(histogram.counts.front() + histogram.counts.back(), 2);
}

void tst_PeriodWork::nothing()
{
    const auto store = std::make_shared<BusFrameStore>();
    PeriodWork work(store, choice(0, true));
    QVERIFY(!work.work());
    fill(*store, {canFrame(0, Identifier), canFrame(0, 9)}); // one frame makes no period
    const Periods periods = finish(work);
    QCOMPARE(periods.figures.periodCount, 0);
    QVERIFY(periods.histogram.counts.empty());
}

void tst_PeriodWork::goesOnAndChoosesAnew()
{
    const auto store = std::make_shared<BusFrameStore>();
    fillPeriods(*store, std::vector<qint64>(100, 10 * Ms));
    PeriodWork work(store, choice(Ms, true));
    QCOMPARE(total(finish(work).histogram), 100);
    fillPeriods(*store, {10 * Ms, 10 * Ms}, 1010 * Ms);
    Periods periods = finish(work);
    QCOMPARE(total(periods.histogram), 103);
    QCOMPARE(periods.histogram.counts.size(), std::size_t(1));
    fillPeriods(*store, std::vector<qint64>(99, 20 * Ms), 1050 * Ms); // the frames come half as often
    periods = finish(work);
    QCOMPARE(periods.histogram.counts.size(), std::size_t(11));
    QCOMPARE(periods.histogram.counts.front(), 103);
    QCOMPARE(periods.histogram.counts.back(), 100);
    QCOMPARE(periods.covered, store->size());
}

void tst_PeriodWork::wildTimes()
{
    constexpr qint64 Most = std::numeric_limits<qint64>::max();
    const auto store = std::make_shared<BusFrameStore>();
    fill(*store, {canFrame(-Most, Identifier), canFrame(Most, Identifier), canFrame(0, Identifier),
                  canFrame(BusFrame::NoTime, Identifier), canFrame(Most, Identifier), canFrame(Most, Identifier)});
    for (const bool leavesOutOutliers : {false, true}) {
        PeriodWork work(store, choice(0, leavesOutOutliers));
        const Periods periods = finish(work);
        QCOMPARE(periods.figures.periodCount, 2);
        QCOMPARE(total(periods.histogram), 2);
    }
}

void tst_PeriodWork::findsFrames()
{
    BusFrameStore store;
    fillPeriods(store, {10 * Ms, 12 * Ms, 10 * Ms, 12 * Ms}); // rows 2, 4, 6, 8 end them
    std::atomic<bool> stop{false};
    const auto find = [&](qint64 low, qint64 high, qint64 after) {
        return findPeriod(store, Identifier, 0, low, high, after, stop).value_or(-1);
    };
    QCOMPARE(find(12 * Ms, 13 * Ms, -1), 4);
    QCOMPARE(find(12 * Ms, 13 * Ms, 4), 8);
    QCOMPARE(find(12 * Ms, 13 * Ms, 8), 4); // from the beginning again
    QCOMPARE(find(11 * Ms, 12 * Ms, -1), -1);
    QCOMPARE(find(10 * Ms, 13 * Ms, 4), 6);
    QCOMPARE(findPeriod(store, Identifier, 1, 0, 100 * Ms, -1, stop).value_or(-1), -1);
}

X9_CORE_TEST(tst_PeriodWork)
#include "tst_PeriodWork.moc"
