#include "can/CanIdEntry.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

using Ranges = QVector<CanIdRange>;
Q_DECLARE_METATYPE(CanIdEntryProblem)

class tst_CanIdEntry : public QObject
{
    Q_OBJECT

private slots:
    static void checks_data();
    static void checks();
    static void namesTheRange();
    static void refusesWhatIsListed();
    static void endsWhenTheListIsFull();
};

void tst_CanIdEntry::checks_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("last");
    QTest::addColumn<bool>("extended");
    QTest::addColumn<CanIdEntryProblem>("problem");
    const auto row = [](const char *first, const char *last, bool extended, CanIdEntryProblem problem) {
        QTest::addRow("%s to %s %s", first, last, extended ? "extended" : "standard")
            << QString::fromLatin1(first) << QString::fromLatin1(last) << extended << problem;
    };
    row("0", "", false, CanIdEntryProblem::None);
    row("7FF", "", false, CanIdEntryProblem::None);
    row("800", "", false, CanIdEntryProblem::First);
    row("800", "", true, CanIdEntryProblem::None);
    row("1FFFFFFF", "", true, CanIdEntryProblem::None);
    row("20000000", "", true, CanIdEntryProblem::First);
    row("FFFFFFFF", "", true, CanIdEntryProblem::First);
    row("", "", false, CanIdEntryProblem::First);
    row("", "7FF", false, CanIdEntryProblem::First);
    row("0x", "", false, CanIdEntryProblem::First);
    row("xyz", "", true, CanIdEntryProblem::First);
    row("0", "7FF", false, CanIdEntryProblem::None);
    row("0", "800", false, CanIdEntryProblem::Last);
    row("0", "1FFFFFFF", true, CanIdEntryProblem::None);
    row("0", "20000000", true, CanIdEntryProblem::Last);
    row("0", "0x", true, CanIdEntryProblem::Last);
    row("800", "900", false, CanIdEntryProblem::First);
    row("101", "100", false, CanIdEntryProblem::Order);
    row("100", "100", false, CanIdEntryProblem::None);
    row("0x100", "0X1ff", false, CanIdEntryProblem::None);
}

void tst_CanIdEntry::checks()
{
    QFETCH(QString, first);
    QFETCH(QString, last);
    QFETCH(bool, extended);
    QTEST(checkedIdEntry(first, last, extended, {}).problem, "problem");
}

void tst_CanIdEntry::namesTheRange()
{
    const QString first = QStringLiteral("0x1a");
    const QString last = QStringLiteral("2B");
    QVERIFY(checkedIdEntry(first, last, true, {}).range == (CanIdRange{0x1A, 0x2B, true}));
    QVERIFY(checkedIdEntry(first, QString(), false, {}).range == (CanIdRange{0x1A, 0x1A, false}));
}

void tst_CanIdEntry::refusesWhatIsListed()
{
    const Ranges listed{{0x10, 0x20, false}};
    const auto problem = [&listed](const char *first, const char *last, bool extended) {
        return checkedIdEntry(QLatin1String(first), QLatin1String(last), extended, listed).problem;
    };
    QCOMPARE(problem("10", "20", false), CanIdEntryProblem::Listed);
    QCOMPARE(problem("10", "20", true), CanIdEntryProblem::None);
    QCOMPARE(problem("10", "21", false), CanIdEntryProblem::None);
    QCOMPARE(problem("11", "20", false), CanIdEntryProblem::None);
}

void tst_CanIdEntry::endsWhenTheListIsFull()
{
    Ranges listed;
    for (int id = 0; id < CanIdEntriesMax - 1; ++id) {
        listed.append({static_cast<quint32>(id), static_cast<quint32>(id), false});
    }
    const QString another = QStringLiteral("7FF");
    QCOMPARE(checkedIdEntry(another, QString(), false, listed).problem, CanIdEntryProblem::None);
    listed.append({0x7FE, 0x7FE, false});
    QCOMPARE(checkedIdEntry(another, QString(), false, listed).problem, CanIdEntryProblem::Full);
    QCOMPARE(CanIdEntriesMax, 1000);
}

X9_PLAIN_TEST(tst_CanIdEntry)
#include "tst_CanIdEntry.moc"
