#include "tests/support/TestProgram.h"
#include "tests/viewer/TestSignals.h"
#include "tests/viewer/ViewerFrames.h"
#include "viewer/core/PlotExpression.h"

#include <QtTest>

namespace {

/// The values of three frames, "-" where one has none.
QString values(const PlotExpression &expression)
{
    BusFrameStore store;
    fill(store, {canFrame(0, 0x100, "0A000000"), canFrame(1, 0x100, "14000101"), canFrame(2, 0x200, "0304")});
    std::vector<FrameValue::Sample> samples;
    expression.value->samples(store, expression.filter, 0, 3, samples);
    QStringList list{QStringLiteral("-"), QStringLiteral("-"), QStringLiteral("-")};
    for (const FrameValue::Sample &sample : samples) {
        list[sample.index] = QString::number(sample.value);
    }
    return list.join(QLatin1Char(' '));
}

} // namespace

class tst_PlotExpression : public QObject
{
    Q_OBJECT

private slots:
    static void valuesOfFrames_data();
    static void valuesOfFrames();
    static void rates_data();
    static void rates();
    static void wrongTexts_data();
    static void wrongTexts();
    static void completion_data();
    static void completion();
};

void tst_PlotExpression::valuesOfFrames_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<int>("signal");
    QTest::newRow("signal") << QStringLiteral("Speed") << QStringLiteral("5 10 -") << int(TestSignals::Speed);
    QTest::newRow("with its message") << QStringLiteral(" Engine.Speed ") << QStringLiteral("5 10 -")
                                      << int(TestSignals::Speed);
    QTest::newRow("calculated") << QStringLiteral("Speed * 2") << QStringLiteral("10 20 -") << -1;
    QTest::newRow("bytes") << QStringLiteral("data[0] << 8 | data[1]") << QStringLiteral("2560 5120 772") << -1;
    QTest::newRow("of some") << QStringLiteral("data[0] of id == 0x200") << QStringLiteral("- - 3") << -1;
    QTest::newRow("signal of some") << QStringLiteral("Speed of data[0] > 15") << QStringLiteral("- 10 -")
                                    << int(TestSignals::Speed);
    QTest::newRow("of all") << QStringLiteral("len of") << QStringLiteral("4 4 2") << -1;
}

void tst_PlotExpression::valuesOfFrames()
{
    QFETCH(const QString, text);
    QFETCH(const QString, expected);
    QFETCH(const int, signal);
    FilterError error{};
    const auto expression = PlotExpression::parse(text, std::make_shared<TestSignals>(), error);
    QVERIFY2(expression, qPrintable(error.text));
    QVERIFY(!expression->isRate());
    QCOMPARE(values(*expression), expected);
    QCOMPARE(expression->signal, signal);
}

void tst_PlotExpression::rates_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("step");
    QTest::addColumn<bool>("isOfAll");
    QTest::newRow("alone") << QStringLiteral("rate") << PlotExpression::DefaultStep << true;
    QTest::newRow("of") << QStringLiteral("Rate of id == 0x100") << PlotExpression::DefaultStep << false;
    QTest::newRow("step") << QStringLiteral("rate 100ms") << qint64(100000000) << true;
    QTest::newRow("least step") << QStringLiteral("rate 1ns") << qint64(1) << true;
    QTest::newRow("step of") << QStringLiteral("rate 20us of error") << qint64(20000) << false;
}

void tst_PlotExpression::rates()
{
    QFETCH(const QString, text);
    QFETCH(const qint64, step);
    QFETCH(const bool, isOfAll);
    FilterError error{};
    const auto expression = PlotExpression::parse(text, {}, error);
    QVERIFY2(expression, qPrintable(error.text));
    QVERIFY(expression->isRate());
    QCOMPARE(expression->step, step);
    QCOMPARE(expression->filter.passesAll(), isOfAll);
}

void tst_PlotExpression::wrongTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("position");
    QTest::newRow("empty") << QString() << 0;
    QTest::newRow("no such signal") << QStringLiteral("Spee") << 0;
    QTest::newRow("value") << QStringLiteral("data[0] +") << 9;
    QTest::newRow("filter") << QStringLiteral("data[0] of id == ") << 17;
    QTest::newRow("filter's word") << QStringLiteral("data[0] of foo") << 11;
    QTest::newRow("two of") << QStringLiteral("data[0] of id of 3") << 14;
    QTest::newRow("step") << QStringLiteral("rate 0ms") << 5;
    QTest::newRow("long step") << QStringLiteral("rate 99999999 of id == 1") << 5;
    QTest::newRow("two steps") << QStringLiteral("rate 1s 2s") << 8;
    QTest::newRow("rate and more") << QStringLiteral("rate + 1") << 5;
    QTest::newRow("long") << QString(Filter::MaxLength + 1, QLatin1Char('1')) << 0;
    QTest::newRow("long rate") << QStringLiteral("rate").leftJustified(Filter::MaxLength + 1) << 0;
}

void tst_PlotExpression::wrongTexts()
{
    QFETCH(const QString, text);
    QFETCH(const int, position);
    FilterError error{};
    QVERIFY(!PlotExpression::parse(text, std::make_shared<TestSignals>(), error));
    QVERIFY(!error.text.isEmpty());
    if (text.size() <= Filter::MaxLength) {
        QCOMPARE(error.position, position);
    }
}

void tst_PlotExpression::completion_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("candidate");
    QTest::addColumn<int>("position");
    QTest::newRow("signal") << QStringLiteral("Sp") << QStringLiteral("Speed") << 0;
    QTest::newRow("rate") << QStringLiteral("ra") << QStringLiteral("rate") << 0;
    QTest::newRow("of") << QStringLiteral("Speed o") << QStringLiteral("of") << 6;
    QTest::newRow("filter") << QStringLiteral("Speed of ch") << QStringLiteral("channel") << 9;
    QTest::newRow("filter's operator") << QStringLiteral("rate of id == 1 an") << QStringLiteral("and") << 16;
}

void tst_PlotExpression::completion()
{
    QFETCH(const QString, text);
    QFETCH(const QString, candidate);
    QFETCH(const int, position);
    const TestSignals database;
    const FilterCompletion found = PlotExpression::complete(text, text.size(), &database);
    QVERIFY2(found.candidates.contains(candidate), qPrintable(found.candidates.join(QLatin1Char(' '))));
    QCOMPARE(found.position, position);
    QCOMPARE(found.position + found.length, text.size());
}

X9_CORE_TEST(tst_PlotExpression)
#include "tst_PlotExpression.moc"
