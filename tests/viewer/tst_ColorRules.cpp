#include "tests/support/TestProgram.h"
#include "tests/viewer/TestSignals.h"
#include "tests/viewer/ViewerFrames.h"
#include "viewer/core/ColorRules.h"

#include <QtTest>

namespace {

ColorRule rule(const char *filter, quint32 background, bool isOn = true)
{
    return {isOn, QString::fromLatin1(filter), std::nullopt, background};
}

/// Of a matching rule; 0: there is none.
quint32 background(const QVector<ColorRule> &rules, const BusFrameStore &store, qint64 row,
                   const std::shared_ptr<const SignalSource> &source = {})
{
    const ColorMatcher matcher(rules, source);
    const ColorRule *found = matcher.matching(store, row);
    return found != nullptr ? found->background.value_or(0) : 0;
}

} // namespace

class tst_ColorRules : public QObject
{
    Q_OBJECT

private slots:
    static void theFirstThatMatchesWins();
    static void wrongOnesMatchNothing();
    static void signalsNeedTheirDatabase();
    static void standard();
    static void comesBackFromJson();
    static void damagedJson_data();
    static void damagedJson();
    static void tooMany();
};

void tst_ColorRules::theFirstThatMatchesWins()
{
    BusFrameStore store;
    fill(store, {canFrame(0, 5, "01"), canFrame(0, 6, "01"), canFrame(0, 7)});
    const QVector<ColorRule> rules{rule("id == 5", 9, false), rule("id == 5", 1), rule("len > 0", 2)};
    QCOMPARE(background(rules, store, 0), 1U);
    QCOMPARE(background(rules, store, 1), 2U);
    QCOMPARE(background(rules, store, 2), 0U);
}

void tst_ColorRules::wrongOnesMatchNothing()
{
    BusFrameStore store;
    fill(store, {canFrame(0, 5)});
    QCOMPARE(background({rule("", 1), rule("  ", 1), rule("id ==", 1), rule("id == 5", 2)}, store, 0), 2U);
    QCOMPARE(background({}, store, 0), 0U);
}

void tst_ColorRules::signalsNeedTheirDatabase()
{
    BusFrameStore store;
    fill(store, {canFrame(0, 0x100, "F000")});
    const QVector<ColorRule> rules{rule("Speed == 120", 1)};
    QCOMPARE(background(rules, store, 0), 0U);
    QCOMPARE(background(rules, store, 0, std::make_shared<TestSignals>()), 1U);
}

void tst_ColorRules::standard()
{
    std::vector<BusFrame> frames{canFrame(0, 5), canFrame(0, 5), canFrame(0, 5), canFrame(0, 5, "", BusFrame::Error)};
    frames[1].direction = BusFrame::Sent;
    frames[2].direction = BusFrame::Refused;
    frames[3].direction = BusFrame::Sent;
    BusFrameStore store;
    fill(store, frames);
    const QVector<ColorRule> rules = ColorRule::standard();
    const ColorMatcher matcher(rules, {});
    QVERIFY(matcher.matching(store, 0) == nullptr);
    QCOMPARE(matcher.matching(store, 1)->filter, QStringLiteral("tx"));
    QCOMPARE(matcher.matching(store, 2)->filter, QStringLiteral("refused"));
    QCOMPARE(matcher.matching(store, 3)->filter, QStringLiteral("error"));
}

void tst_ColorRules::comesBackFromJson()
{
    QVector<ColorRule> rules = ColorRule::standard();
    rules.append({false, QStringLiteral("name ~ \"\u6cb9\" and Speed > 1"), 0x000001, std::nullopt});
    QCOMPARE(ColorRule::fromJson(ColorRule::toJson(rules)).value_or(QVector<ColorRule>()), rules);
    QVERIFY(ColorRule::fromJson(ColorRule::toJson({})));
    QVERIFY(ColorRule::fromJson(ColorRule::toJson({}))->isEmpty());
}

void tst_ColorRules::damagedJson_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<int>("count"); // -1: no list of rules
    QTest::newRow("nothing") << QByteArray() << -1;
    QTest::newRow("no JSON") << QByteArray("\x00\xff[[") << -1;
    QTest::newRow("an object") << QByteArray("{}") << -1;
    QTest::newRow("nested") << QByteArray(100000, '[') << -1;
    QTest::newRow("not rules") << QByteArray("[1, null, [], \"x\", {}]") << 0;
    QTest::newRow("without filter") << QByteArray(R"([{"on": true, "background": "#FF0000"}])") << 0;
    QTest::newRow("filter of another kind") << QByteArray(R"([{"filter": {"filter": "fd"}}])") << 0;
    QTest::newRow("wrong colours") << QByteArray(R"([{"filter":"fd","text":"red","background":"#12345678"}])") << 1;
    QTest::newRow("a long filter") << QByteArray(R"([{"filter":")") + QByteArray(20000, 'x') + QByteArray("\"}]") << 0;
}

void tst_ColorRules::damagedJson()
{
    QFETCH(const QByteArray, json);
    QFETCH(const int, count);
    const auto rules = ColorRule::fromJson(json);
    QCOMPARE(rules ? rules->size() : -1, count);
    if (count == 1) {
        QVERIFY(rules->at(0).isOn);
        QVERIFY(!rules->at(0).text);
        QVERIFY(!rules->at(0).background);
    }
}

void tst_ColorRules::tooMany()
{
    const QVector<ColorRule> rules(ColorRule::MaxCount + 5, rule("fd", 1));
    QCOMPARE(ColorRule::fromJson(ColorRule::toJson(rules))->size(), int(ColorRule::MaxCount));
}

X9_PLAIN_TEST(tst_ColorRules)
#include "tst_ColorRules.moc"
