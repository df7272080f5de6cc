#include "tests/support/TestProgram.h"
#include "tests/viewer/ViewerFrames.h"
#include "viewer/core/CaptureComparison.h"
#include "viewer/core/OverviewRun.h"
#include "viewer/core/PeriodHistogram.h"

#include <QtTest>

#include <cmath>
#include <map>

namespace {

constexpr qint64 Ms = 1000000;

void addAll(Overview &overview, const BusFrameStore &store)
{
    while (overview.add(store, 1000) > 0) {
    }
}

/// Frames of one identifier, at these milliseconds.
std::vector<BusFrame> framesAt(const std::vector<qint64> &times, quint32 identifier, const char *data = "00")
{
    std::vector<BusFrame> frames;
    frames.reserve(times.size());
    for (const qint64 time : times) {
        frames.push_back(canFrame(time * Ms, identifier, data));
    }
    return frames;
}

} // namespace

class tst_Overview : public QObject
{
    Q_OBJECT

private slots:
    static void figures();
    static void periodsOfTimesThatJump();
    static void tellsKeysAndChannelsApart();
    static void changedBytes_data();
    static void changedBytes();
    static void lastRowsAtAnyRow();
    static void previousRowOfAnyRow();
    static void manyIdentifiers();
    static void runKeepsUpWithTheStore();
    static void histogram();
    static void histogramOfWildTimes();
    static void comparison();
    static void comparisonOfTheSame();
};

void tst_Overview::figures()
{
    BusFrameStore store;
    fill(store, framesAt({100, 110, 130, 140}, 5));
    Overview overview;
    addAll(overview, store);
    QCOMPARE(overview.covered(), 4);
    QCOMPARE(overview.identifiers().size(), std::size_t(1));
    const IdentifierStatistics &identifier = overview.identifiers().front();
    QCOMPARE(identifier.key, FrameKey(5));
    QCOMPARE(identifier.count, 4);
    QCOMPARE(identifier.firstTime, 100 * Ms);
    QCOMPARE(identifier.lastTime, 140 * Ms);
    QCOMPARE(identifier.periodCount, 3);
    QCOMPARE(identifier.leastPeriod, 10 * Ms);
    QCOMPARE(identifier.greatestPeriod, 20 * Ms);
    QCOMPARE(identifier.meanPeriod, 40.0 * Ms / 3);
    QCOMPARE(identifier.periodDeviation(), std::sqrt(100.0 / 3) * Ms); // of 10, 20, 10
    QCOMPARE(identifier.rate(), 75.0);
    QCOMPARE(identifier.leastLength, 1);
    QCOMPARE(identifier.greatestLength, 1);
}

void tst_Overview::periodsOfTimesThatJump()
{
    std::vector<BusFrame> frames = framesAt({100, 110, 50, 60}, 5);
    frames[1].time = BusFrame::NoTime; // 100 -> 50 is none either
    BusFrameStore store;
    fill(store, frames);
    fill(store, {canFrame(std::numeric_limits<qint64>::max(), 6), canFrame(-1, 6), canFrame(1, 6)});
    Overview overview;
    addAll(overview, store);
    QCOMPARE(overview.identifiers()[0].periodCount, 1);
    QCOMPARE(overview.identifiers()[0].meanPeriod, 10.0 * Ms);
    QCOMPARE(overview.identifiers()[0].timedCount, 3);
    QCOMPARE(overview.identifiers()[0].count, 4);
    QCOMPARE(overview.identifiers()[0].rate(), 0.0); // the last is before the first
    QCOMPARE(overview.identifiers()[1].periodCount, 1);
    QCOMPARE(overview.identifiers()[1].greatestPeriod, 2);
}

void tst_Overview::tellsKeysAndChannelsApart()
{
    std::vector<BusFrame> frames{canFrame(0, 5),
                                 canFrame(0, 5, "", BusFrame::Extended),
                                 canFrame(0, 5, "", BusFrame::Lin),
                                 canFrame(0, 5, "", BusFrame::Error),
                                 canFrame(0, 5, "", BusFrame::Remote),
                                 canFrame(0, 5, "", BusFrame::Fd),
                                 canFrame(0, 5)};
    frames.back().channel = 1;
    BusFrameStore store;
    fill(store, frames);
    Overview overview;
    addAll(overview, store);
    QCOMPARE(overview.identifiers().size(), std::size_t(5));
    QCOMPARE(overview.identifiers()[0].count, 3); // the remote and the FD frame, too
    QCOMPARE(overview.identifiers()[4].channel, quint16(1));
    Overview together(false);
    addAll(together, store);
    QCOMPARE(together.identifiers().size(), std::size_t(4));
    QCOMPARE(together.identifiers()[0].count, 4);
}

void tst_Overview::changedBytes_data()
{
    QTest::addColumn<QStringList>("data"); // of the frames in turn; "r" is a remote frame
    QTest::addColumn<quint64>("changed");
    const auto row = [](const char *name, const QStringList &data, quint64 changed) {
        QTest::newRow(name) << data << changed;
    };
    row("one frame", {QStringLiteral("0102")}, 0);
    row("none", {QStringLiteral("0102"), QStringLiteral("0102")}, 0);
    row("first and last of eight", {QStringLiteral("0102030405060708"), QStringLiteral("8102030405060700")}, 0x81);
    row("every byte by one bit", {QStringLiteral("0000000000000000"), QStringLiteral("0102040810204080")}, 0xFF);
    row("there and back", {QStringLiteral("01"), QStringLiteral("02"), QStringLiteral("01")}, 1);
    row("shorter", {QStringLiteral("010203"), QStringLiteral("01")}, 6);
    row("shorter by zeros", {QStringLiteral("010000"), QStringLiteral("01")}, 6);
    row("a remote frame between", {QStringLiteral("01"), QStringLiteral("r"), QStringLiteral("01")}, 0);
    row("behind the eighth", {QStringLiteral("000102030405060708090A0B"), QStringLiteral("000102030405060708AA0ABB")},
        0xA00);
    QString all;
    for (int i = 0; i < 64; ++i) {
        all += QStringLiteral("FF");
    }
    row("all of 64", {all, QString(128, QLatin1Char('0'))}, ~quint64(0));
    row("from nothing to 64", {QString(), all}, ~quint64(0));
}

void tst_Overview::changedBytes()
{
    QFETCH(const QStringList, data);
    QFETCH(const quint64, changed);
    BusFrameStore store;
    for (const QString &bytes : data) {
        fill(store, {bytes == QLatin1String("r") ? canFrame(0, 5, "0000", BusFrame::Remote)
                                                 : canFrame(0, 5, bytes.toLatin1())});
    }
    Overview overview;
    addAll(overview, store);
    QCOMPARE(overview.identifiers()[0].changedBytes, changed);
}

void tst_Overview::lastRowsAtAnyRow()
{
    constexpr qint64 Rows = 1000000;
    BusFrameStore store;
    fillNumbered(store, Rows);
    Overview overview;
    addAll(overview, store);
    for (const qint64 row : {qint64(0), qint64(5000), qint64(65535), qint64(65536), qint64(777777), qint64(786432),
                             qint64(786440), Rows - 1}) {
        std::map<std::pair<quint16, FrameKey>, Overview::LastRows> expected;
        for (qint64 i = 0; i <= row; ++i) {
            const BusFrame frame = numberedFrame(i);
            Overview::LastRows &rows = expected[{frame.channel, frameKey(frame.identifier, frame.flags)}];
            rows = {i, rows.last};
        }
        const std::vector<Overview::LastRows> found = overview.lastRows(store, row);
        QCOMPARE(found.size(), overview.identifiers().size());
        for (std::size_t i = 0; i < found.size(); ++i) {
            const IdentifierStatistics &identifier = overview.identifiers()[i];
            const Overview::LastRows wanted = expected[{identifier.channel, identifier.key}];
            QVERIFY(found[i].last == wanted.last && found[i].previous == wanted.previous);
        }
    }
}

void tst_Overview::previousRowOfAnyRow()
{
    std::vector<BusFrame> frames;
    for (qint64 i = 0; i < 300000; ++i) {
        frames.push_back(
            canFrame(i, i % 100000 == 7 ? 77 : 5, "", i % 100000 == 7 && i > 100000 ? BusFrame::Remote : 0));
    }
    BusFrameStore store;
    fill(store, frames);
    Overview overview;
    addAll(overview, store);
    QCOMPARE(overview.previousRow(store, 200007), 100007);
    QCOMPARE(overview.previousRow(store, 100007), 7);
    QCOMPARE(overview.previousRow(store, 7), -1);
    QCOMPARE(overview.previousRow(store, 8), 6);
    QCOMPARE(overview.previousRow(store, 65536), 65535);
    QCOMPARE(overview.previousRow(store, 0), -1);
    QCOMPARE(overview.previousRow(store, 299999), 299998);
}

void tst_Overview::manyIdentifiers()
{
    constexpr quint32 Identifiers = 200000;
    BusFrameStore store;
    std::vector<BusFrame> frames;
    for (quint32 i = 0; i < 2 * Identifiers; ++i) {
        frames.push_back(canFrame(i, (i % Identifiers) * 16, "", BusFrame::Extended));
    }
    fill(store, frames);
    Overview overview;
    addAll(overview, store);
    QCOMPARE(overview.identifiers().size(), std::size_t(Identifiers));
    for (const IdentifierStatistics &identifier : overview.identifiers()) {
        QCOMPARE(identifier.count, 2);
        QCOMPARE(identifier.lastRow - identifier.firstRow, qint64(Identifiers));
    }
}

void tst_Overview::runKeepsUpWithTheStore()
{
    const auto store = std::make_shared<BusFrameStore>();
    std::atomic<int> announced{0};
    OverviewRun run(store, [&announced] { ++announced; });
    run.extend();
    QVERIFY(!run.isRunning());
    qint64 total = 0;
    for (const int count : {100000, 1, 200000}) {
        fill(*store, std::vector<BusFrame>(static_cast<std::size_t>(count), canFrame(0, 1, "01")));
        total += count;
        run.extend();
        QTRY_COMPARE(run.covered(), total);
        QTRY_VERIFY(!run.isRunning());
        QTRY_VERIFY(announced > 0);
        QCOMPARE(run.statistics().front().count, total);
    }
    QCOMPARE(run.lastRows(5).front().last, 5);
    QCOMPARE(run.lastRows(total * 2).front().last, total - 1);
    QCOMPARE(run.previousRow(5).value_or(-2), 4);
    QVERIFY(!run.previousRow(total));
}

void tst_Overview::histogram()
{
    BusFrameStore store;
    fill(store, framesAt({0, 10, 20, 25, 45, 30, 130}, 5)); // periods 10, 10, 5, 20, none, 100
    fill(store, framesAt({131, 132}, 6));
    Overview overview;
    addAll(overview, store);
    const std::atomic<bool> stop{false};
    const PeriodHistogram all = periodHistogram(store, overview.identifiers()[0], 5 * Ms, 100 * Ms, 100, stop);
    QCOMPARE(all.low, 5 * Ms);
    QVERIFY(all.counts.size() <= 100);
    QCOMPARE(all.counts.front(), 1);
    QCOMPARE(all.counts.at(static_cast<std::size_t>(5 * Ms / all.width)), 2);
    QCOMPARE(all.counts.back(), 1);
    QCOMPARE(all.below + all.above, 0);
    const PeriodHistogram part = periodHistogram(store, overview.identifiers()[0], 6 * Ms, 12 * Ms, 3, stop);
    QCOMPARE(part.below, 1);
    QCOMPARE(part.above, 2);
    const PeriodHistogram one = periodHistogram(store, overview.identifiers()[0], 10 * Ms, 10 * Ms, 100, stop);
    QCOMPARE(one.counts, std::vector<qint64>{2});
}

void tst_Overview::histogramOfWildTimes()
{
    constexpr qint64 Most = std::numeric_limits<qint64>::max();
    BusFrameStore store;
    fill(store, {canFrame(-Most, 5), canFrame(Most, 5), canFrame(0, 5), canFrame(Most, 5)});
    Overview overview;
    addAll(overview, store);
    const std::atomic<bool> stop{false};
    const IdentifierStatistics &identifier = overview.identifiers()[0];
    QCOMPARE(identifier.periodCount, 1); // the first is too long for a number
    const PeriodHistogram found = periodHistogram(store, identifier, 0, Most, 10, stop);
    QCOMPARE(found.counts.back(), 1);
}

void tst_Overview::comparison()
{
    BusFrameStore here;
    BusFrameStore there;
    fill(here, framesAt({0, 10, 20}, 1));  // only here
    fill(there, framesAt({0, 10, 20}, 2)); // only there
    fill(here, framesAt({0, 10, 20}, 3));  // twice as fast there
    fill(there, framesAt({0, 5, 10}, 3));
    fill(here, framesAt({0, 10, 20}, 4, "1122")); // byte 1 moves there, byte 0 is another constant
    fill(there, framesAt({0, 10}, 4, "3322"));
    fill(there, framesAt({20}, 4, "3323"));
    fill(here, framesAt({0, 10, 20}, 5, "1122")); // longer there
    fill(there, framesAt({0, 10, 20}, 5, "112233"));
    fill(here, framesAt({0, 10, 20}, 6, "1122")); // within the threshold
    fill(there, framesAt({0, 10, 21}, 6, "1122"));
    Overview overviewHere;
    Overview overviewThere;
    addAll(overviewHere, here);
    addAll(overviewThere, there);
    const std::vector<IdentifierDifference> found = compareCaptures({here, overviewHere}, {there, overviewThere});
    QCOMPARE(found.size(), std::size_t(5));
    using Difference = IdentifierDifference;
    const std::vector<quint32> expected{Difference::OnlyHere, Difference::OnlyThere,
                                        Difference::Rate | Difference::Period,
                                        Difference::ChangesThere | Difference::OtherConstant, Difference::Length};
    for (std::size_t i = 0; i < expected.size(); ++i) {
        QCOMPARE(found[i].key, FrameKey(i + 1));
        QCOMPARE(found[i].what, expected[i]);
    }
    QCOMPARE(found[3].bytesChangeThere, quint64(2));
    QCOMPARE(found[3].bytesOtherConstant, quint64(1));
    const std::vector<IdentifierDifference> reverse =
        compareCaptures({there, overviewThere}, {here, overviewHere}, {0.01, 0.01});
    QCOMPARE(reverse.size(), std::size_t(6));
    QCOMPARE(reverse[3].bytesChangeHere, quint64(2));
    QCOMPARE(reverse[5].what, quint32(Difference::Rate | Difference::Period));
}

void tst_Overview::comparisonOfTheSame()
{
    BusFrameStore store;
    fillNumbered(store, 20000);
    Overview overview;
    addAll(overview, store);
    QVERIFY(compareCaptures({store, overview}, {store, overview}).empty());
    const Overview empty;
    const BusFrameStore nothing;
    QCOMPARE(compareCaptures({store, overview}, {nothing, empty}).size(), overview.identifiers().size());
    QVERIFY(compareCaptures({nothing, empty}, {nothing, empty}).empty());
}

X9_CORE_TEST(tst_Overview)
#include "tst_Overview.moc"
