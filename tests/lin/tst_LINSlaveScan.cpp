#include "lin/LINSlaveScan.h"
#include "tests/support/TestProgram.h"

#include <QSet>
#include <QtTest>

#include <algorithm>
#include <QVector>

using Ids = QVector<int>;

namespace {
/// What a scan does with slaves that answer every request, or the late-th of theirs.
struct Run
{
    explicit Run(const QSet<int> &slaves, int late = 1)
    {
        LINSlaveScan scan;
        scan.start();
        int requests = 0; // of the identifier under test
        while (!scan.isFinished()) {
            const int id = scan.id();
            requests = !asked.isEmpty() && asked.last() == id ? requests + 1 : 1;
            asked.append(id);
            const bool isAnswered = slaves.contains(id) && requests >= late;
            if (isAnswered) {
                found.append(id);
            }
            scan.step(isAnswered);
            progress.append(scan.progress());
        }
    }

    Ids asked;
    Ids found;
    Ids progress;
};
} // namespace

class tst_LINSlaveScan : public QObject
{
    Q_OBJECT

private slots:
    static void steps_data();
    static void steps();
    static void asksASilentIdentifierSixTimes();
    static void goesOnAtOnceAfterAnAnswer();
    static void anAnswerAtTheLastAttemptCounts();
    static void progressGoesFromZeroToTheLast();
    static void startsAnew();
};

void tst_LINSlaveScan::steps_data()
{
    QTest::addColumn<Ids>("slaves");
    QTest::addColumn<int>("late");
    QTest::addColumn<Ids>("found");
    QTest::addColumn<int>("requests");
    QTest::newRow("nobody") << Ids{} << 1 << Ids{} << 63 * 6;
    QTest::newRow("first") << Ids{0} << 1 << Ids{0} << 62 * 6 + 1;
    QTest::newRow("last") << Ids{0x3E} << 1 << Ids{0x3E} << 62 * 6 + 1;
    QTest::newRow("reserved") << Ids{0x3F} << 1 << Ids{} << 63 * 6;
    QTest::newRow("three") << Ids{0x3C, 0x01, 0x02} << 1 << Ids{0x01, 0x02, 0x3C} << 60 * 6 + 3;
    QTest::newRow("three, third attempt") << Ids{0x3C, 0x01, 0x02} << 3 << Ids{0x01, 0x02, 0x3C} << 60 * 6 + 9;
    QTest::newRow("too late") << Ids{0x10} << 7 << Ids{} << 63 * 6;
}

void tst_LINSlaveScan::steps()
{
    QFETCH(Ids, slaves);
    QFETCH(int, late);
    QFETCH(Ids, found);
    QFETCH(int, requests);
    const Run run(QSet<int>(slaves.begin(), slaves.end()), late);
    QCOMPARE(run.found, found);
    QCOMPARE(run.asked.size(), requests);
    QCOMPARE(run.asked.first(), 0);
    QCOMPARE(run.asked.last(), 0x3E);
    QVERIFY(std::is_sorted(run.asked.begin(), run.asked.end()));
    QVERIFY(!run.asked.contains(0x3F));
}

void tst_LINSlaveScan::asksASilentIdentifierSixTimes()
{
    const Run run({});
    for (int id = 0; id < 63; ++id) {
        QCOMPARE(run.asked.count(id), 6);
    }
}

void tst_LINSlaveScan::goesOnAtOnceAfterAnAnswer()
{
    QCOMPARE(Run({0, 1, 3}).asked.mid(0, 10), Ids({0, 1, 2, 2, 2, 2, 2, 2, 3, 4}));
    QCOMPARE(Run({0}, 4).asked.mid(0, 11), Ids({0, 0, 0, 0, 1, 1, 1, 1, 1, 1, 2})); // attempts count from 0 again
}

void tst_LINSlaveScan::anAnswerAtTheLastAttemptCounts()
{
    const Run run({5}, 6);
    QCOMPARE(run.found, Ids{5});
    QCOMPARE(run.asked.count(5), 6);
}

void tst_LINSlaveScan::progressGoesFromZeroToTheLast()
{
    const Run run({0});
    QCOMPARE(run.progress.mid(0, 8), Ids({1, 1, 1, 1, 1, 1, 2, 2}));
    QCOMPARE(run.progress.last(), 62);
    QCOMPARE(LINSlaveScan().progress(), 0);
}

void tst_LINSlaveScan::startsAnew()
{
    LINSlaveScan scan;
    scan.step(true);
    scan.step(false);
    scan.start();
    QCOMPARE(scan.id(), quint8(0));
    QCOMPARE(scan.progress(), 0);
    for (int attempt = 0; attempt < 5; ++attempt) {
        scan.step(false);
        QCOMPARE(scan.id(), quint8(0));
    }
    scan.step(false);
    QCOMPARE(scan.id(), quint8(1));
}

X9_PLAIN_TEST(tst_LINSlaveScan)
#include "tst_LINSlaveScan.moc"
