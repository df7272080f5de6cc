#include "viewer/core/ComparisonWork.h"

#include "tests/support/TestProgram.h"
#include "tests/viewer/ViewerFrames.h"
#include "viewer/core/FilterRun.h"

#include <QtTest>

namespace {

constexpr qint64 Ms = 1000000;
using What = IdentifierDifference;

std::shared_ptr<BusFrameStore> storeOf(const QStringList &data, quint32 identifier = 5)
{
    auto store = std::make_shared<BusFrameStore>();
    qint64 time = 0;
    for (const QString &bytes : data) {
        fill(*store, {canFrame(time += 10 * Ms, identifier, bytes.toLatin1())});
    }
    return store;
}

Comparison compare(const CapturePart &here, const CapturePart &there, bool tellsChannels = true)
{
    ComparisonWork work(here, there, tellsChannels, {});
    while (work.work()) {
    }
    return work.result();
}

qint64 passing(const BusFrameStore &store, const QString &text)
{
    FilterError error{};
    const auto filter = Filter::parse(text, {}, error);
    if (!filter) {
        return -1;
    }
    qint64 count = 0;
    const std::atomic<bool> stop{false};
    for (auto row = findRow(store, *filter, 0, false, stop); row;
         row = findRow(store, *filter, *row + 1, false, stop)) {
        ++count;
    }
    return count;
}

} // namespace

class tst_ComparisonWork : public QObject
{
    Q_OBJECT

private slots:
    static void bits_data();
    static void bits();
    static void longData();
    static void valuesOfBytes();
    static void partsOfOneCapture();
    static void ranksSwitches();
    static void channelsTogether();
    static void runFollowsBoth();
};

void tst_ComparisonWork::bits_data()
{
    QTest::addColumn<QStringList>("here");
    QTest::addColumn<QStringList>("there");
    QTest::addColumn<unsigned>("other"); // of byte 0
    QTest::addColumn<unsigned>("movesThere");
    QTest::addColumn<unsigned>("movesHere");
    QTest::addColumn<int>("passing"); // frames there that the filter of the byte passes
    const auto list = [](const char *text) {
        return QString::fromLatin1(text).split(QLatin1Char(' '));
    };
    const auto row = [&list](const char *name, const char *here, const char *there, unsigned other, unsigned movesThere,
                             unsigned movesHere, int frames) {
        QTest::newRow(name) << list(here) << list(there) << other << movesThere << movesHere << frames;
    };
    row("the same", "11 11", "11 11", 0, 0, 0, -1);
    row("a switch that stays", "11 11", "51 51", 0x40, 0, 0, 2);
    row("off instead of on", "51 51", "11 11", 0x40, 0, 0, 2);
    row("two bits", "00", "81 81", 0x81, 0, 0, 2);
    row("beside a counter", "00 01 02 03", "80 81 82 83", 0x80, 0, 0, 4);
    row("moves there", "00 00", "00 04 00", 0, 4, 0, 1);
    row("moves there beside a counter", "10 11", "10 11 91 90", 0, 0x80, 0, 2);
    row("is on at rest", "FF FF", "FF FE FE", 0, 1, 0, 2);
    row("moves here", "00 04", "00 00", 0, 0, 4, -1);
    row("a counter in both", "00 01", "01 00", 0, 0, 0, -1);
}

void tst_ComparisonWork::bits()
{
    QFETCH(const QStringList, here);
    QFETCH(const QStringList, there);
    QFETCH(const unsigned, other);
    QFETCH(const unsigned, movesThere);
    QFETCH(const unsigned, movesHere);
    QFETCH(const int, passing);
    const auto storeThere = storeOf(there);
    const Comparison comparison = compare({storeOf(here)}, {storeThere});
    QCOMPARE(comparison.identifiers.size(), std::size_t(1));
    const ComparedIdentifier &identifier = comparison.identifiers.front();
    const BitDifference found = compareByte(identifier.bytesHere, identifier.bytesThere, 0);
    QCOMPARE(found.other, other);
    QCOMPARE(found.movesThere, movesThere);
    QCOMPARE(found.movesHere, movesHere);
    const quint32 what = identifier.difference.what & (What::OtherBits | What::MovesThere | What::MovesHere);
    QCOMPARE(what, (other != 0 ? What::OtherBits : 0U) | (movesThere != 0 ? What::MovesThere : 0U) |
                       (movesHere != 0 ? What::MovesHere : 0U));
    const QString filter = filterOfByte(identifier, 0);
    QCOMPARE(filter.isEmpty(), passing < 0);
    if (passing >= 0) {
        QCOMPARE(::passing(*storeThere, filter), qint64(passing));
    }
    QVERIFY(filterOfByte(identifier, 1).isEmpty()); // is not there
}

void tst_ComparisonWork::longData()
{
    const QString zeros(128, QLatin1Char('0'));
    QString last = zeros;
    last.replace(126, 2, QStringLiteral("08"));
    const Comparison comparison = compare({storeOf({zeros, zeros})}, {storeOf({last, QStringLiteral("00"), last})});
    const ComparedIdentifier &identifier = comparison.identifiers.front();
    for (int byte = 0; byte < 63; ++byte) {
        QCOMPARE(compareByte(identifier.bytesHere, identifier.bytesThere, byte).other, 0U);
    }
    QCOMPARE(compareByte(identifier.bytesHere, identifier.bytesThere, 63).other, 8U);
}

void tst_ComparisonWork::valuesOfBytes()
{
    const auto store = storeOf({QStringLiteral("10FF"), QStringLiteral("05FF01"), QStringLiteral("20FF")});
    fill(*store, {canFrame(0, 5, "000000", BusFrame::Remote)});
    Overview overview;
    overview.keepByteValues();
    overview.add(*store, store->size());
    const ByteValues &values = overview.byteValues().front();
    QCOMPARE(int(values.least[0]), 0x05);
    QCOMPARE(int(values.greatest[0]), 0x20);
    QCOMPARE(values.changedBits(0), 0x35U);
    QVERIFY(values.isConstant(1) && values.isConstant(2) && !values.isConstant(0));
    QCOMPARE(int(values.least[2]), 1); // a shorter frame says nothing of it
    QVERIFY(values.has(2) && !values.has(3));
    QCOMPARE(values.changedBits(3), 0U);
}

void tst_ComparisonWork::partsOfOneCapture()
{
    constexpr int Rows = 200000;
    constexpr int Moved = 123457;
    const auto store = std::make_shared<BusFrameStore>();
    std::vector<BusFrame> frames;
    for (int i = 0; i < Rows; ++i) {
        frames.push_back(canFrame(i * Ms, 0x100 + static_cast<quint32>(i % 10), "0000"));
        frames.back().data[0] = static_cast<uchar>(i / 10);
        frames.back().data[1] = i % 10 == 7 && i >= Moved ? 2 : 0;
    }
    fill(*store, frames);
    const Comparison comparison = compare({store, 0, Moved}, {store, Moved});
    QCOMPARE(comparison.rowsHere, qint64(Moved));
    QCOMPARE(comparison.rowsThere, qint64(Rows - Moved));
    QVERIFY(comparison.isComplete);
    QCOMPARE(comparison.identifiers.size(), std::size_t(10));
    for (const ComparedIdentifier &identifier : comparison.identifiers) {
        const bool isSwitch = identifier.difference.key == 0x107;
        QCOMPARE(identifier.difference.what != 0, isSwitch);
        QCOMPARE(identifier.rank > 0, isSwitch);
        QVERIFY(identifier.here.lastRow < Moved && identifier.there.firstRow >= Moved);
        QCOMPARE(identifier.here.count + identifier.there.count, qint64(Rows / 10));
    }
    const Comparison nothing = compare({store, 0, 0}, {store, Rows + 5});
    QVERIFY(nothing.identifiers.empty() && nothing.isComplete);
}

void tst_ComparisonWork::ranksSwitches()
{
    const auto here = std::make_shared<BusFrameStore>();
    const auto there = std::make_shared<BusFrameStore>();
    const auto put = [](BusFrameStore &store, quint32 identifier, const char *first, const char *second,
                        qint64 period) {
        fill(store, {canFrame(0, identifier, first), canFrame(period, identifier, second)});
    };
    put(*here, 1, "0000", "0000", Ms); // a value that is another one
    put(*there, 1, "3FF7", "3FF7", Ms);
    put(*here, 2, "00", "00", Ms); // a switch
    put(*there, 2, "40", "40", Ms);
    put(*here, 3, "00", "00", Ms); // moves there
    put(*there, 3, "00", "01", Ms);
    put(*here, 4, "00", "01", Ms); // twice as slow
    put(*there, 4, "00", "01", 2 * Ms);
    put(*here, 5, "00", "01", Ms); // nothing
    put(*there, 5, "00", "01", Ms);
    put(*here, 6, "00", "01", Ms);
    put(*there, 7, "00", "01", Ms);
    std::vector<std::pair<int, FrameKey>> ranks;
    for (const ComparedIdentifier &identifier : compare({here}, {there}).identifiers) {
        ranks.emplace_back(-identifier.rank, identifier.difference.key);
    }
    std::sort(ranks.begin(), ranks.end());
    const std::vector<FrameKey> expected{2, 1, 3, 7, 6, 4, 5};
    for (std::size_t i = 0; i < expected.size(); ++i) {
        QCOMPARE(ranks[i].second, expected[i]);
    }
    QCOMPARE(ranks.back().first, 0);
}

void tst_ComparisonWork::channelsTogether()
{
    const auto here = storeOf({QStringLiteral("00"), QStringLiteral("00")});
    const auto there = std::make_shared<BusFrameStore>();
    BusFrame frame = canFrame(0, 5, "00");
    frame.channel = 3;
    fill(*there, {frame});
    QCOMPARE(compare({here}, {there}).identifiers.size(), std::size_t(2));
    QCOMPARE(compare({here}, {there}, false).identifiers.size(), std::size_t(1));
}

void tst_ComparisonWork::runFollowsBoth()
{
    const auto here = storeOf({QStringLiteral("00")});
    const auto there = storeOf({QStringLiteral("00")});
    SliceRun<Comparison> run([] {});
    run.start(std::make_unique<ComparisonWork>(CapturePart{here}, CapturePart{there}, true, ComparisonThresholds()));
    QTRY_VERIFY(run.result() != nullptr && !run.isRunning());
    QVERIFY(run.result()->isComplete);
    fill(*there, {canFrame(20 * Ms, 5, "01")});
    run.extend();
    QTRY_COMPARE(run.result()->rowsThere, 2);
    QCOMPARE(run.result()->rowsHere, 1);
    QCOMPARE(run.result()->identifiers.front().difference.what & What::MovesThere, unsigned(What::MovesThere));
}

X9_CORE_TEST(tst_ComparisonWork)
#include "tst_ComparisonWork.moc"
