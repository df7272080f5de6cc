#include "tests/support/TestProgram.h"
#include "tests/viewer/ViewerFrames.h"
#include "viewer/core/FilterRun.h"

#include <QtTest>

namespace {

Filter filterOf(const char *text)
{
    FilterError error{};
    return Filter::parse(QString::fromLatin1(text), {}, error).value_or(Filter());
}

} // namespace

class tst_FilterRun : public QObject
{
    Q_OBJECT

private slots:
    static void rowSet();
    void init();
    void aMillionRowsInTheirOrder();
    void goesOnWhereTheStoreGrew();
    void startsAnew();
    void cancels();
    void announcesOnceUntilTaken();
    void findsForwardAndBackward();

private:
    static void runToEnd(FilterRun &run, RowSet &rows);

    std::shared_ptr<BusFrameStore> m_store;
    std::atomic<int> m_announced{0};
};

void tst_FilterRun::rowSet()
{
    constexpr qint64 Block = BusFrameStore::BlockRows;
    const auto part = [](qint64 first, qint64 count, qint64 every) {
        RowSet::Part made{first, static_cast<int>(count), {}};
        for (qint64 row = first; row < first + count; ++row) {
            if (row % every == 0) {
                made.indices.push_back(static_cast<quint16>(BusFrameStore::indexInBlock(row)));
            }
        }
        return made;
    };
    RowSet rows;
    QCOMPARE(rows.lowerBound(0), 0);
    rows.append(part(0, Block, 1)); // whole
    QCOMPARE(rows.memory(), 0);
    rows.append(part(Block, 100, 1)); // whole at first
    rows.append(part(Block + 100, Block - 100, 2));
    rows.append(part(2 * Block, Block, Block * 4)); // empty
    rows.append(part(3 * Block, 5, 1));
    QCOMPARE(rows.size(), Block + 100 + (Block - 100) / 2 + 5);
    QCOMPARE(rows.covered(), 3 * Block + 5);
    qint64 place = 0;
    for (qint64 row = 0; row < rows.covered(); ++row) {
        const bool isIn = row < Block + 100 || (row < 2 * Block && row % 2 == 0) || row >= 3 * Block;
        QCOMPARE(rows.lowerBound(row), place);
        QCOMPARE(rows.contains(row), isIn);
        if (isIn) {
            QCOMPARE(rows.at(place), row);
            ++place;
        }
    }
    QCOMPARE(rows.lowerBound(100 * Block), rows.size());
}

void tst_FilterRun::init()
{
    m_store = std::make_shared<BusFrameStore>();
    m_announced = 0;
}

void tst_FilterRun::runToEnd(FilterRun &run, RowSet &rows)
{
    QTRY_VERIFY_WITH_TIMEOUT((run.takeTo(rows), !run.isRunning()), 20000);
}

void tst_FilterRun::aMillionRowsInTheirOrder()
{
    constexpr qint64 Rows = 1000000;
    fillNumbered(*m_store, Rows);
    FilterRun run(m_store, [this] { ++m_announced; });
    run.setThreadCount(4);
    run.start(filterOf("id in 10..20 and data[0] & 1"));
    RowSet rows;
    runToEnd(run, rows);
    QVERIFY(m_announced > 0);
    qint64 place = 0;
    for (qint64 row = 0; row < Rows; ++row) {
        const qint64 identifier = row % 2048;
        if (identifier >= 10 && identifier <= 20 && row % 2 == 1) {
            QVERIFY(place < rows.size());
            QCOMPARE(rows.at(place), row);
            ++place;
        }
    }
    QCOMPARE(rows.size(), place);
    QCOMPARE(rows.covered(), Rows);
}

void tst_FilterRun::goesOnWhereTheStoreGrew()
{
    FilterRun run(m_store, [] {});
    run.start(filterOf("number % 3 == 1"));
    RowSet rows;
    QVERIFY(!run.isRunning());
    for (const int count : {5, 40000, 1, 100000, 31072}) {
        std::vector<BusFrame> frames(static_cast<std::size_t>(count), canFrame(0, 1));
        fill(*m_store, frames);
        run.extend();
        QVERIFY(run.isRunning());
        run.extend(); // nothing happens
        runToEnd(run, rows);
        QCOMPARE(rows.covered(), m_store->size());
    }
    QCOMPARE(rows.size(), (m_store->size() + 2) / 3);
    for (qint64 place = 0; place < rows.size(); ++place) {
        QCOMPARE(rows.at(place), place * 3);
    }
}

void tst_FilterRun::startsAnew()
{
    fillNumbered(*m_store, 500000);
    FilterRun run(m_store, [] {});
    for (int i = 0; i < 20; ++i) {
        run.start(filterOf("id == 1"));
    }
    run.start(filterOf("id == 2"));
    RowSet rows;
    runToEnd(run, rows);
    QCOMPARE(rows.at(0), 2);
    QCOMPARE(rows.size(), qint64((500000 + 2045) / 2048));
}

void tst_FilterRun::cancels()
{
    fillNumbered(*m_store, 500000);
    FilterRun run(m_store, [] {});
    run.start(Filter());
    run.cancel();
    QVERIFY(!run.isRunning());
    RowSet rows;
    run.takeTo(rows);
    run.extend();
    QVERIFY(!run.isRunning());
    QCOMPARE(rows.size(), 0);
}

void tst_FilterRun::announcesOnceUntilTaken()
{
    fillNumbered(*m_store, 500000);
    FilterRun run(m_store, [this] { ++m_announced; });
    run.setThreadCount(1); // parts are done in their order
    run.start(Filter());
    QTRY_COMPARE(m_announced.load(), 1);
    QTest::qWait(50);
    QCOMPARE(m_announced.load(), 1);
    RowSet rows;
    runToEnd(run, rows);
    QCOMPARE(rows.size(), 500000);
}

void tst_FilterRun::findsForwardAndBackward()
{
    fillNumbered(*m_store, 200000);
    const std::atomic<bool> isGoing{false};
    const std::atomic<bool> isStopped{true};
    const Filter filter = filterOf("number == 70000 or number == 150000");
    QCOMPARE(findRow(*m_store, filter, 0, false, isGoing).value_or(-1), 69999);
    QCOMPARE(findRow(*m_store, filter, 69999, false, isGoing).value_or(-1), 69999);
    QCOMPARE(findRow(*m_store, filter, 70000, false, isGoing).value_or(-1), 149999);
    QVERIFY(!findRow(*m_store, filter, 150000, false, isGoing));
    QCOMPARE(findRow(*m_store, filter, 199999, true, isGoing).value_or(-1), 149999);
    QCOMPARE(findRow(*m_store, filter, 149998, true, isGoing).value_or(-1), 69999);
    QVERIFY(!findRow(*m_store, filter, 69998, true, isGoing));
    QVERIFY(!findRow(*m_store, filter, -1, true, isGoing));
    QCOMPARE(findRow(*m_store, filter, 1000000, true, isGoing).value_or(-1), 149999);
    QVERIFY(!findRow(*m_store, filter, 1000000, false, isGoing));
    QVERIFY(!findRow(*m_store, filter, 0, false, isStopped));
}

X9_CORE_TEST(tst_FilterRun)
#include "tst_FilterRun.moc"
