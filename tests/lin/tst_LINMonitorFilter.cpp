#include "lin/LINMonitorFilter.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

using Ids = QVector<quint8>;

class tst_LINMonitorFilter : public QObject
{
    Q_OBJECT

private slots:
    static void decides_data();
    static void decides();
};

void tst_LINMonitorFilter::decides_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<Ids>("chosen");
    QTest::addColumn<int>("id");
    QTest::addColumn<bool>("isMonitored");
    QTest::newRow("nothing chosen") << 0 << Ids{} << 0 << false;
    QTest::newRow("chosen") << 0 << Ids{0x12} << 0x12 << true;
    QTest::newRow("another") << 0 << Ids{0x12} << 0x13 << false;
    QTest::newRow("first of twelve") << 0 << Ids{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 63} << 0 << true;
    QTest::newRow("last of twelve") << 0 << Ids{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 63} << 63 << true;
    QTest::newRow("none of twelve") << 0 << Ids{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 63} << 11 << false;
    QTest::newRow("chosen twice") << 0 << Ids{5, 5} << 5 << true;
    QTest::newRow("all, nothing chosen") << 1 << Ids{} << 0x20 << true;
    QTest::newRow("all, another chosen") << 1 << Ids{0x12} << 0x20 << true;
}

void tst_LINMonitorFilter::decides()
{
    QFETCH(int, mode);
    QFETCH(Ids, chosen);
    QFETCH(int, id);
    QFETCH(bool, isMonitored);
    QCOMPARE(isLINFrameMonitored(static_cast<LINMonitorMode>(mode), chosen, static_cast<quint8>(id)), isMonitored);
}

X9_PLAIN_TEST(tst_LINMonitorFilter)
#include "tst_LINMonitorFilter.moc"
