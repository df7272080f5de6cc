#include "device/Version.h"
#include "tests/support/TestProgram.h"

#include <QtTest>

class tst_Version : public QObject
{
    Q_OBJECT

private slots:
    static void compares_data();
    static void compares();
};

void tst_Version::compares_data()
{
    QTest::addColumn<QString>("a");
    QTest::addColumn<QString>("b");
    QTest::addColumn<int>("result");
    const auto row = [](const char *a, const char *b, int result) {
        QTest::newRow(qPrintable(QStringLiteral("%1 against %2").arg(QLatin1String(a), QLatin1String(b))))
            << QString::fromLatin1(a) << QString::fromLatin1(b) << result;
    };
    row("1.1.2", "1.1.1", 1);
    row("1.1.1", "1.1.2", -1);
    row("1.1.1", "1.1.1", 0);
    row("1.10", "1.9", 1); // by number, not by text
    row("2", "1.9.9", 1);
    row("1.2", "1.2.5", 0); // the common parts only
    row("1.2.5", "1.2", 0);
    row("1.01", "1.1", 0);
    row("1..2", "1.2", 0); // empty parts are dropped
    row(".1.3.", "1.2", 1);
    row("V1.2", "v1.2", 0); // the same text
    row("V1.2", "1.2", -2);
    row("1.2", "V1.2", -2);
    row("1.a", "1.1", -2);
    row("2.a", "1.1", 1); // decided before the letter
    row("1.0x2", "1.1", -2);
    row("1.99999999999999999999", "1.1", -2);
    row("1.2147483648", "1.2147483647", 1);
    row("", "", 0);
    row("", "1.1", 0); // no part in common
    row("...", "1.1", 0);
}

void tst_Version::compares()
{
    QFETCH(QString, a);
    QFETCH(QString, b);
    QTEST(compareVersion(a, b), "result");
}

X9_PLAIN_TEST(tst_Version)
#include "tst_Version.moc"
