#include "CaptureTestData.h"

#include "capture/FrameStore.h"
#include "tests/support/TestProgram.h"

#include <QRandomGenerator>
#include <QTest>
#include <QVector>

using namespace CaptureTestData;

namespace {

FrameRecord randomFrame(QRandomGenerator &random)
{
    FrameRecord record;
    record.systemTime = QString::number(random.bounded(4));
    record.id = random.generate() & 0x1FFFFFFFU;
    record.timeFlag = random.generate() & 1U;
    record.remote = random.generate() & 1U;
    record.extended = random.generate() & 1U;
    record.timeStamp = random.generate();
    record.direction = static_cast<quint8>(random.bounded(256));
    record.sendType = static_cast<quint8>(random.bounded(256));
    record.protocol = static_cast<quint8>(random.bounded(3));
    const bool isHuge = random.bounded(1000) == 0;
    record.data.resize(random.bounded(isHuge ? 65536 : 65));
    char byte = static_cast<char>(random.generate());
    for (char &place : record.data) {
        place = byte++;
    }
    return record;
}

bool isSame(const FrameView &view, const FrameRecord &record)
{
    return *view.systemTime == record.systemTime && view.id == record.id && view.timeFlag == record.timeFlag &&
           view.remote == record.remote && view.extended == record.extended && view.timeStamp == record.timeStamp &&
           view.direction == record.direction && view.sendType == record.sendType && view.protocol == record.protocol &&
           QByteArray(reinterpret_cast<const char *>(view.data), view.size) == record.data;
}

int firstDifference(const FrameStore &store, const QVector<FrameRecord> &expected)
{
    if (store.size() != expected.size()) {
        return -2;
    }
    for (int i = 0; i < expected.size(); ++i) {
        if (!isSame(store.at(i), expected[i])) {
            return i;
        }
    }
    return -1;
}

} // namespace

class tst_FrameStore : public QObject
{
    Q_OBJECT

private slots:
    static void newStoreIsEmpty();
    static void rowsComeBackAsTheyWere();
    static void emptyPayload();
    static void longPayloadsAreKeptUpToTheLimit();
    static void unknownProtocolIsTheFastest();
    static void batchSharesItsTimeText();
    static void everyRowItsOwnTimeText();
    static void growingMovesNothing();
    static void truncateKeepsTheOldest_data();
    static void truncateKeepsTheOldest();
    static void truncateBeyondTheEndChangesNothing();
    static void appendGoesOnAfterTruncate();
    static void timeTextsDoNotPileUp();
    static void randomOperations();
    static void droppedRowsAreReleasedBitByBit();
};

void tst_FrameStore::newStoreIsEmpty()
{
    FrameStore store;
    QVERIFY(store.isEmpty());
    QCOMPARE(store.size(), 0);
    QVERIFY(!store.releaseDropped(1));
    store.clear();
    QVERIFY(store.isEmpty());
}

void tst_FrameStore::rowsComeBackAsTheyWere()
{
    QRandomGenerator random(1);
    FrameStore store;
    QVector<FrameRecord> expected;
    for (int i = 0; i < 50000; ++i) {
        expected.append(randomFrame(random));
        store.append(expected.last());
    }
    QCOMPARE(firstDifference(store, expected), -1);
}

void tst_FrameStore::emptyPayload()
{
    FrameStore store;
    store.append(frame(1));
    QCOMPARE(store.at(0).size, 0);
    QVERIFY(store.at(0).data != nullptr);
}

void tst_FrameStore::longPayloadsAreKeptUpToTheLimit()
{
    FrameStore store;
    const QByteArray longest = countingBytes(65535);
    store.append(frame(1, longest));
    store.append(frame(2, longest + "beyond"));
    store.append(frame(3, "x"));
    QVERIFY(isSame(store.at(0), frame(1, longest)));
    QVERIFY(isSame(store.at(1), frame(2, longest)));
    QVERIFY(isSame(store.at(2), frame(3, "x")));
}

void tst_FrameStore::unknownProtocolIsTheFastest()
{
    FrameRecord record = frame(1);
    record.protocol = 9;
    FrameStore store;
    store.append(record);
    QCOMPARE(store.at(0).protocol, quint8(FrameRecord::CANFDSpeed));
}

void tst_FrameStore::batchSharesItsTimeText()
{
    FrameStore store;
    FrameRecord record = frame(1);
    store.append(record);
    store.append(record);
    record.systemTime = QString(record.systemTime.constData(), record.systemTime.size()); // equal, another storage
    store.append(record);
    QCOMPARE(store.at(1).systemTime, store.at(0).systemTime);
    QCOMPARE(store.at(2).systemTime, store.at(0).systemTime);
}

void tst_FrameStore::everyRowItsOwnTimeText()
{
    FrameStore store;
    FrameRecord record = frame(1);
    for (int i = 0; i < 40000; ++i) {
        record.systemTime = QString::number(i);
        store.append(record);
    }
    for (int i = 0; i < store.size(); ++i) {
        QCOMPARE(*store.at(i).systemTime, QString::number(i));
    }
}

void tst_FrameStore::growingMovesNothing()
{
    FrameStore store;
    store.append(frame(1, "abc"));
    const uchar *data = store.at(0).data;
    for (int i = 0; i < 100000; ++i) {
        store.append(frame(2, QByteArray(64, 'x')));
    }
    QCOMPARE(store.at(0).data, data);
    QVERIFY(isSame(store.at(0), frame(1, "abc")));
}

void tst_FrameStore::truncateKeepsTheOldest_data()
{
    QTest::addColumn<int>("kept");
    for (const int kept : {-1, 0, 1, 16383, 16384, 16385, 32768, 39999, 40000}) {
        QTest::addRow("%d", kept) << kept;
    }
}

void tst_FrameStore::truncateKeepsTheOldest()
{
    QFETCH(int, kept);
    QRandomGenerator random(2);
    FrameStore store;
    QVector<FrameRecord> expected;
    for (int i = 0; i < 40000; ++i) {
        const FrameRecord record = frame(static_cast<quint32>(i), QByteArray::number(i));
        store.append(record);
        if (i < kept) {
            expected.append(record);
        }
    }
    store.truncate(kept);
    QCOMPARE(firstDifference(store, expected), -1);
    for (int i = 0; i < 20000; ++i) {
        expected.append(randomFrame(random));
        store.append(expected.last());
    }
    QCOMPARE(firstDifference(store, expected), -1);
}

void tst_FrameStore::truncateBeyondTheEndChangesNothing()
{
    FrameStore store;
    store.append(frame(1, "a"));
    store.truncate(2);
    store.truncate(1);
    QCOMPARE(store.size(), 1);
    QVERIFY(isSame(store.at(0), frame(1, "a")));
}

void tst_FrameStore::appendGoesOnAfterTruncate()
{
    FrameStore store;
    FrameRecord record = frame(1, "abcdef");
    store.append(record);
    record.systemTime = QStringLiteral("later");
    store.append(record);
    store.truncate(1);
    const FrameRecord next = frame(2, "ghi");
    store.append(next);
    QVERIFY(isSame(store.at(0), frame(1, "abcdef")));
    QVERIFY(isSame(store.at(1), next));
    // Cutting and filling again and again must not pile up: the payload takes the place of the one dropped.
    const uchar *place = store.at(1).data;
    store.truncate(1);
    store.append(next);
    QCOMPARE(store.at(1).data, place);
}

void tst_FrameStore::timeTextsDoNotPileUp()
{
    FrameStore store;
    store.append(frame(1));
    FrameRecord record = frame(2);
    for (int i = 0; i < 70000; ++i) { // more texts than one part of the store can number
        record.systemTime = QString::number(i);
        store.append(record);
        QCOMPARE(*store.at(1).systemTime, record.systemTime);
        store.truncate(1);
    }
    QVERIFY(isSame(store.at(0), frame(1)));
}

void tst_FrameStore::randomOperations()
{
    QRandomGenerator random(3);
    FrameStore store;
    QVector<FrameRecord> expected;
    for (int step = 0; step < 60; ++step) {
        const int count = random.bounded(3000);
        for (int i = 0; i < count; ++i) {
            expected.append(randomFrame(random));
            store.append(expected.last());
        }
        if (random.bounded(4) == 0) {
            expected.resize(random.bounded(expected.size() + 1));
            store.truncate(expected.size());
        }
        if (random.bounded(3) == 0) {
            store.releaseDropped(1);
        }
    }
    QCOMPARE(firstDifference(store, expected), -1);
}

void tst_FrameStore::droppedRowsAreReleasedBitByBit()
{
    FrameStore store;
    for (int i = 0; i < 3 * 16384; ++i) {
        store.append(frame(1));
    }
    store.clear();
    QVERIFY(store.isEmpty());
    store.append(frame(7, "new"));
    QVERIFY(store.releaseDropped(1));
    QVERIFY(store.releaseDropped(1));
    QVERIFY(!store.releaseDropped(1));
    QVERIFY(!store.releaseDropped(1));
    QVERIFY(isSame(store.at(0), frame(7, "new")));
}

X9_PLAIN_TEST(tst_FrameStore)
#include "tst_FrameStore.moc"
