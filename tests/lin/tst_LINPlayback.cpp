#include "lin/LINPlayback.h"
#include "tests/support/TestProgram.h"

#include <QtTest>
#include <QVector>

using Numbers = QVector<int>;

namespace {
/// The frames that had their turn, and the passes after each.
void run(LINPlayback &playback, Numbers &positions, Numbers &passes)
{
    while (!playback.isFinished() && positions.size() < 1000000) {
        positions.append(playback.position());
        playback.advance();
        passes.append(playback.passes());
    }
}
} // namespace

class tst_LINPlayback : public QObject
{
    Q_OBJECT

private slots:
    static void goesThroughTheList_data();
    static void goesThroughTheList();
    static void manyPasses_data();
    static void manyPasses();
    static void startsAnew();
    static void masks();
    static void masksAccumulate();
};

void tst_LINPlayback::goesThroughTheList_data()
{
    QTest::addColumn<int>("frames");
    QTest::addColumn<int>("wanted");
    QTest::addColumn<Numbers>("positions");
    QTest::addColumn<Numbers>("passes");
    QTest::newRow("one frame once") << 1 << 1 << Numbers{0} << Numbers{1};
    QTest::newRow("one frame thrice") << 1 << 3 << Numbers{0, 0, 0} << Numbers{1, 2, 3};
    QTest::newRow("three frames once") << 3 << 1 << Numbers{0, 1, 2} << Numbers{0, 0, 1};
    QTest::newRow("three frames twice") << 3 << 2 << Numbers{0, 1, 2, 0, 1, 2} << Numbers{0, 0, 1, 1, 1, 2};
}

void tst_LINPlayback::goesThroughTheList()
{
    QFETCH(int, frames);
    QFETCH(int, wanted);
    QFETCH(Numbers, positions);
    QFETCH(Numbers, passes);
    LINPlayback playback;
    playback.start(frames, wanted);
    Numbers seen;
    Numbers counted;
    run(playback, seen, counted);
    QCOMPARE(seen, positions);
    QCOMPARE(counted, passes);
}

void tst_LINPlayback::manyPasses_data()
{
    QTest::addColumn<int>("wanted");
    for (const int wanted : {255, 256, 257, 300, 65535}) {
        QTest::addRow("%d", wanted) << wanted;
    }
}

void tst_LINPlayback::manyPasses()
{
    QFETCH(int, wanted);
    LINPlayback playback;
    playback.start(2, wanted);
    Numbers seen;
    Numbers counted;
    run(playback, seen, counted);
    QCOMPARE(seen.size(), 2 * wanted);
    QCOMPARE(counted.last(), wanted);
}

void tst_LINPlayback::startsAnew()
{
    LINPlayback playback;
    playback.start(3, 2);
    for (int i = 0; i < 4; ++i) {
        playback.advance();
    }
    playback.start(2, 1);
    QCOMPARE(playback.position(), 0);
    QCOMPARE(playback.passes(), 0);
    QVERIFY(!playback.isFinished());
}

void tst_LINPlayback::masks()
{
    LINPlayback playback;
    for (int id = 0; id < 64; ++id) {
        QVERIFY(!playback.isMasked(static_cast<quint8>(id)));
    }
    playback.mask(0x00);
    playback.mask(0x3F);
    for (int id = 0; id < 64; ++id) {
        QCOMPARE(playback.isMasked(static_cast<quint8>(id)), id == 0 || id == 0x3F);
    }
}

void tst_LINPlayback::masksAccumulate()
{
    LINPlayback playback;
    playback.mask(0x10);
    playback.start(3, 1);
    QVERIFY(playback.isMasked(0x10));
    playback.mask(0x11);
    playback.start(3, 1);
    QVERIFY(playback.isMasked(0x10));
    QVERIFY(playback.isMasked(0x11));
}

X9_PLAIN_TEST(tst_LINPlayback)
#include "tst_LINPlayback.moc"
