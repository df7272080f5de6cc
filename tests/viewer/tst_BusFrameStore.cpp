#include "tests/support/TestProgram.h"
#include "tests/viewer/ViewerFrames.h"
#include "viewer/core/BusFrameStore.h"

#include <QtTest>

#include <thread>

namespace {

/// Reads what there is until there are all rows, and tells how many were not as they had been appended.
int wrongRowsOf(const BusFrameStore &store, qint64 rows)
{
    constexpr qint64 Stride = 97;
    int wrong = 0;
    qint64 seen = 0;
    while (seen < rows) {
        const qint64 size = store.size();
        wrong += size < seen ? 1 : 0;
        for (qint64 row = seen; row < size; row += Stride) {
            wrong += isSame(store.frame(row), numberedFrame(row)) ? 0 : 1;
        }
        if (size > 0) {
            const qint64 last = store.firstRowAt(numberedFrame(size - 1).time);
            wrong += isSame(store.frame(size - 1), numberedFrame(size - 1)) && last == size - 1 ? 0 : 1;
        }
        seen = size;
    }
    return wrong;
}

} // namespace

class tst_BusFrameStore : public QObject
{
    Q_OBJECT

private slots:
    static void everyFieldComesBack();
    static void everyLengthComesBack();
    static void aShortFrameTakesAtMostFortyBytes();
    static void cutsLengthsThatCannotBe();
    static void stopsAtTheMemoryLimit();
    static void firstRowAt_data();
    static void firstRowAt();
    static void severalThreadsReadWhileOneAppends();
};

void tst_BusFrameStore::everyFieldComesBack()
{
    constexpr qint64 Rows = 1000000;
    BusFrameStore store;
    fillNumbered(store, Rows);
    QCOMPARE(store.size(), Rows);
    for (qint64 row = 0; row < Rows; ++row) {
        if (!isSame(store.frame(row), numberedFrame(row))) {
            QFAIL(qPrintable(QStringLiteral("row %1 differs").arg(row)));
        }
    }
}

void tst_BusFrameStore::everyLengthComesBack()
{
    constexpr int Rounds = 2000; // more than one block, and its pieces of long data as full as can be
    BusFrameStore store;
    std::vector<BusFrame> frames;
    for (int i = 0; i < Rounds * (BusFrame::MaxLength + 1); ++i) {
        BusFrame frame;
        frame.length = static_cast<quint8>(i % (BusFrame::MaxLength + 1));
        std::fill_n(frame.data.begin(), frame.length, static_cast<uchar>(i + 1));
        frames.push_back(frame);
    }
    fill(store, frames);
    QCOMPARE(store.size(), qint64(frames.size()));
    for (qint64 row = 0; row < store.size(); ++row) {
        const BusFrame &expected = frames[static_cast<std::size_t>(row)];
        QVERIFY(isSame(store.frame(row), expected));
        if (expected.length > 0) {
            const int last = expected.length - 1;
            QCOMPARE(store.block(BusFrameStore::blockOf(row)).byte(BusFrameStore::indexInBlock(row), last),
                     expected.data[static_cast<std::size_t>(last)]);
        }
    }
}

void tst_BusFrameStore::aShortFrameTakesAtMostFortyBytes()
{
    constexpr qint64 Rows = qint64{10} * BusFrameStore::BlockRows;
    BusFrameStore store;
    fill(store, std::vector<BusFrame>(static_cast<std::size_t>(Rows), canFrame(0, 1, "0102030405060708")));
    QCOMPARE(store.size(), Rows);
    QVERIFY2(store.memory() <= Rows * 40, qPrintable(QString::number(store.memory() / Rows)));
    QVERIFY(store.memory() >= Rows * 35);
}

void tst_BusFrameStore::cutsLengthsThatCannotBe()
{
    BusFrame frame;
    frame.length = 255;
    frame.data.fill(7);
    BusFrameStore store;
    fill(store, {frame});
    QCOMPARE(store.frame(0).length, quint8(BusFrame::MaxLength));
    QCOMPARE(store.frame(0).data, frame.data);
}

void tst_BusFrameStore::stopsAtTheMemoryLimit()
{
    constexpr qint64 Limit = 6000000; // two blocks of short frames
    const std::vector<BusFrame> frames(std::size_t{4} * BusFrameStore::BlockRows, canFrame(5, 1, "01"));
    BusFrameStore store;
    store.setMemoryLimit(Limit);
    QCOMPARE(store.append(frames.data(), int(frames.size())), 2 * BusFrameStore::BlockRows);
    QCOMPARE(store.size(), qint64{2} * BusFrameStore::BlockRows);
    QCOMPARE(store.append(frames.data(), 1), 0);
    QVERIFY(store.memory() <= Limit);
    QVERIFY(isSame(store.frame(store.size() - 1), frames.front()));
}

void tst_BusFrameStore::firstRowAt_data()
{
    QTest::addColumn<qint64>("time");
    QTest::addColumn<qint64>("row");
    constexpr qint64 Rows = qint64{3} * BusFrameStore::BlockRows; // row n has the time 10 n, but the second block 0
    QTest::newRow("before the first") << qint64(-5) << qint64(0);
    QTest::newRow("the first") << qint64(0) << qint64(0);
    QTest::newRow("between two") << qint64(11) << qint64(2);
    QTest::newRow("the last before the jump back")
        << qint64(10) * (BusFrameStore::BlockRows - 1) << qint64(BusFrameStore::BlockRows - 1);
    QTest::newRow("not reached before the jump")
        << qint64(10) * BusFrameStore::BlockRows << qint64{2} * BusFrameStore::BlockRows;
    QTest::newRow("the last") << (Rows - 1) * 10 << Rows - 1;
    QTest::newRow("behind the last") << (Rows - 1) * 10 + 1 << Rows;
}

void tst_BusFrameStore::firstRowAt()
{
    QFETCH(const qint64, time);
    QFETCH(const qint64, row);
    BusFrameStore store;
    QCOMPARE(store.firstRowAt(time), 0);
    std::vector<BusFrame> frames;
    for (qint64 i = 0; i < qint64{3} * BusFrameStore::BlockRows; ++i) {
        frames.push_back(canFrame(BusFrameStore::blockOf(i) == 1 ? 0 : i * 10, 1));
    }
    fill(store, frames);
    QCOMPARE(store.firstRowAt(time), row);
}

void tst_BusFrameStore::severalThreadsReadWhileOneAppends()
{
    constexpr qint64 Rows = 300000;
    BusFrameStore store;
    std::atomic<int> wrong{0};
    std::vector<std::thread> readers;
    readers.reserve(3);
    for (int i = 0; i < 3; ++i) {
        readers.emplace_back([&store, &wrong] { wrong += wrongRowsOf(store, Rows); });
    }
    fillNumbered(store, Rows);
    for (std::thread &reader : readers) {
        reader.join();
    }
    QCOMPARE(wrong.load(), 0);
}

X9_PLAIN_TEST(tst_BusFrameStore)
#include "tst_BusFrameStore.moc"
