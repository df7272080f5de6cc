#include "can/GatewayIdList.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

using AddResult = GatewayIdList::AddResult;

namespace {
/// Words of the identifiers 0 to count - 1, standard.
QSet<quint32> words(int count)
{
    QSet<quint32> result;
    for (int i = 0; i < count; ++i) {
        result.insert(static_cast<quint32>(i) * 8 + 1);
    }
    return result;
}
} // namespace

class tst_GatewayIdList : public QObject
{
    Q_OBJECT

private slots:
    static void startsSorted();
    static void addsBehindTheOthers();
    static void refusesADuplicate();
    static void holdsBothTypesOfAnIdentifier();
    static void refusesTheSixtyFifth();
    static void countComesBeforeDuplicate();
    static void hasRoomAfterRemoving();
    static void removingKeepsTheOrder();
    static void clearing();
    static void keepsOddWords();
    static void keepsMoreThanItTakes();
};

void tst_GatewayIdList::startsSorted()
{
    const GatewayIdList list({0x91B, 0x9, 0x919, 0x1});
    QCOMPARE(list.words(), QVector<quint32>({0x1, 0x9, 0x919, 0x91B}));
}

void tst_GatewayIdList::addsBehindTheOthers()
{
    GatewayIdList list({0x11, 0x9});
    QCOMPARE(list.add(0x1), AddResult::Added);
    QCOMPARE(list.words(), QVector<quint32>({0x9, 0x11, 0x1}));
    QCOMPARE(list.toSet(), QSet<quint32>({0x1, 0x9, 0x11}));
}

void tst_GatewayIdList::refusesADuplicate()
{
    GatewayIdList list({0x9});
    QCOMPARE(list.add(0x9), AddResult::Exists);
    QCOMPARE(list.words(), QVector<quint32>({0x9}));
}

void tst_GatewayIdList::holdsBothTypesOfAnIdentifier()
{
    GatewayIdList list({0x919});
    QCOMPARE(list.add(0x91B), AddResult::Added);
    QCOMPARE(list.toSet(), QSet<quint32>({0x919, 0x91B}));
}

void tst_GatewayIdList::refusesTheSixtyFifth()
{
    GatewayIdList list(words(63));
    QCOMPARE(list.add(0x10001), AddResult::Added);
    QCOMPARE(list.words().size(), 64);
    QCOMPARE(list.add(0x10009), AddResult::Full);
    QCOMPARE(list.words().size(), 64);
    QVERIFY(!list.words().contains(0x10009));
}

void tst_GatewayIdList::countComesBeforeDuplicate()
{
    GatewayIdList list(words(64));
    QCOMPARE(list.add(0x9), AddResult::Full);
    QCOMPARE(list.toSet(), words(64));
}

void tst_GatewayIdList::hasRoomAfterRemoving()
{
    GatewayIdList list(words(64));
    list.remove(0x9);
    QCOMPARE(list.words().size(), 63);
    QCOMPARE(list.add(0x9), AddResult::Added);
    QCOMPARE(list.toSet(), words(64));
}

void tst_GatewayIdList::removingKeepsTheOrder()
{
    GatewayIdList list({0x9, 0x11, 0x19});
    QCOMPARE(list.add(0x1), AddResult::Added);
    list.remove(0x11);
    QCOMPARE(list.words(), QVector<quint32>({0x9, 0x19, 0x1}));
    list.remove(0x11);
    QCOMPARE(list.words(), QVector<quint32>({0x9, 0x19, 0x1}));
}

void tst_GatewayIdList::clearing()
{
    GatewayIdList list(words(64));
    list.clear();
    QVERIFY(list.words().isEmpty());
    QVERIFY(list.toSet().isEmpty());
    QCOMPARE(list.add(0x9), AddResult::Added);
}

void tst_GatewayIdList::keepsOddWords()
{
    const QSet<quint32> odd = {0x0, 0x4, 0x91D, 0x918, 0x91F, 0xFFFFFFFF, 0xFFFFFFF8};
    GatewayIdList list(odd);
    QCOMPARE(list.toSet(), odd);
    QCOMPARE(list.add(0x919), AddResult::Added); // other words of the same identifier are other entries
    list.remove(0x919);
    QCOMPARE(list.toSet(), odd);
}

void tst_GatewayIdList::keepsMoreThanItTakes()
{
    GatewayIdList list(words(1000));
    QCOMPARE(list.toSet(), words(1000));
    QCOMPARE(list.add(0x10001), AddResult::Full);
    QCOMPARE(list.toSet(), words(1000));
}

X9_PLAIN_TEST(tst_GatewayIdList)
#include "tst_GatewayIdList.moc"
