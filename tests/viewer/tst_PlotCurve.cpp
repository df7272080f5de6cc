#include "tests/support/TestProgram.h"
#include "tests/viewer/TestSignals.h"
#include "tests/viewer/ViewerFrames.h"
#include "viewer/core/PlotCurve.h"
#include "viewer/core/PlotEntries.h"

#include <QTemporaryDir>
#include <QtTest>

namespace {

constexpr int Frames = 200000;

/// Takes everything that is there.
bool isFilled(PlotCurve &curve)
{
    curve.append(QDeadlineTimer(QDeadlineTimer::Forever));
    return !curve.isFilling();
}

/// Engine frames a millisecond apart, whose speed is their number modulo 1000, times a half.
void fillSpeeds(BusFrameStore &store, int count)
{
    const qint64 before = store.size();
    std::vector<BusFrame> frames;
    for (qint64 i = before; i < before + count; ++i) {
        frames.push_back(canFrame(i * 1000000, 0x100, "00000000"));
        frames.back().data[0] = static_cast<uchar>(i % 1000);
        frames.back().data[1] = static_cast<uchar>(i % 1000 / 256);
    }
    fill(store, frames);
}

} // namespace

class tst_PlotCurve : public QObject
{
    Q_OBJECT

private slots:
    static void fillsAndGrows();
    static void takesAMomentAtATime();
    static void rateIsOfWholeSteps();
    static void rateCountsFromAStartThatIsKnownLater();
    static void statesHaveTexts_data();
    static void statesHaveTexts();
    static void signalsHaveUnits();
    static void valuesAtATime();
    static void comesBackWithItsDatabase();
    static void seriesOfOthers();
    static void stops();
    static void entriesComeBack();
    static void damagedEntries_data();
    static void damagedEntries();
    static void entriesBelongToOneCapture();
};

void tst_PlotCurve::fillsAndGrows()
{
    const auto store = std::make_shared<BusFrameStore>();
    fillSpeeds(*store, Frames);
    std::atomic<int> news{0};
    PlotCurve curve(store, [&news] { ++news; });
    QVERIFY(curve.start(QStringLiteral("Speed"), std::make_shared<TestSignals>()));
    const auto first = curve.series();
    QTRY_VERIFY(isFilled(curve));
    QVERIFY(news > 0);
    QCOMPARE(curve.series()->size(), std::size_t(Frames));
    QCOMPARE(curve.series(), first);
    QCOMPARE(curve.series()->at(1999).time, qint64(1999) * 1000000);
    QCOMPARE(curve.series()->at(1999).value, 499.5);
    fillSpeeds(*store, 5000);
    curve.extend();
    QTRY_VERIFY(isFilled(curve));
    QCOMPARE(curve.series()->size(), std::size_t(Frames + 5000));
    QCOMPARE(curve.series()->greatest(), 499.5);
    QVERIFY(curve.start(QStringLiteral("data[1]"), {}));
    QVERIFY(curve.series() != first);
    QCOMPARE(first->size(), std::size_t(Frames + 5000)); // for those who still have it
    QTRY_VERIFY(isFilled(curve));
    QCOMPARE(curve.series()->greatest(), 3.0);
}

void tst_PlotCurve::takesAMomentAtATime()
{
    const auto store = std::make_shared<BusFrameStore>();
    fillSpeeds(*store, Frames);
    PlotCurve curve(store, [] {});
    QVERIFY(curve.start(QStringLiteral("len"), {}));
    QTRY_VERIFY_WITH_TIMEOUT(curve.append(QDeadlineTimer(0)), 5000); // found, but no time to take it
    QCOMPARE(curve.series()->size(), std::size_t(0));
    QVERIFY(curve.isFilling());
    QTRY_VERIFY(isFilled(curve));
    QCOMPARE(curve.series()->size(), std::size_t(Frames));
}

void tst_PlotCurve::rateIsOfWholeSteps()
{
    const auto store = std::make_shared<BusFrameStore>();
    fillSpeeds(*store, 2500);
    PlotCurve curve(store, [] {});
    QVERIFY(curve.start(QStringLiteral("rate of data[0] % 2 == 0"), {}));
    QTRY_VERIFY(isFilled(curve));
    QCOMPARE(curve.series()->size(), std::size_t(2)); // the third second is not over
    QCOMPARE(curve.series()->at(0).time, qint64(500000000));
    QCOMPARE(curve.series()->at(1).value, 500.0);
    QCOMPARE(curve.valueText(500), QStringLiteral("500 1/s"));
    fillSpeeds(*store, 501);
    curve.extend();
    QTRY_VERIFY(isFilled(curve));
    QCOMPARE(curve.series()->size(), std::size_t(3));
}

void tst_PlotCurve::rateCountsFromAStartThatIsKnownLater()
{
    constexpr qint64 Start = 1715934600123456789;
    const auto store = std::make_shared<BusFrameStore>();
    PlotCurve curve(store, [] {});
    QVERIFY(curve.start(QStringLiteral("rate"), {}));
    store->setStart(Start);
    fill(*store, {canFrame(Start, 1), canFrame(Start + 1, 1), canFrame(Start + 1000000000, 1)});
    curve.extend();
    QTRY_VERIFY(isFilled(curve));
    QCOMPARE(curve.series()->size(), std::size_t(1));
    QCOMPARE(curve.series()->at(0).time, Start + 500000000);
    QCOMPARE(curve.series()->at(0).value, 2.0);
}

void tst_PlotCurve::statesHaveTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isState");
    QTest::newRow("one text of many") << QStringLiteral("Temp") << false;
    QTest::newRow("texts") << QStringLiteral("State") << true;
    QTest::newRow("calculated") << QStringLiteral("State + 0") << false;
}

void tst_PlotCurve::statesHaveTexts()
{
    /// Off, On; and a mark for "not available" of the other.
    class States : public TestSignals
    {
    public:
        QString valueText(int signal, double value) const override
        {
            return signal == Temp && value == 215 ? QStringLiteral("Not available")
                   : signal != State              ? QString()
                   : value == 0                   ? QStringLiteral("Off")
                   : value == 1                   ? QStringLiteral("On")
                                                  : QString();
        }
    };
    QFETCH(const QString, text);
    QFETCH(const bool, isState);
    const auto store = std::make_shared<BusFrameStore>();
    fill(*store, {canFrame(0, 0x100, "00000001"), canFrame(1, 0x100, "00000701"),
                  canFrame(2, 0x18FF1234, "FF", BusFrame::Extended)});
    PlotCurve curve(store, [] {});
    QVERIFY(curve.start(text, std::make_shared<States>()));
    QTRY_VERIFY(isFilled(curve));
    QVERIFY(!curve.series()->isEmpty());
    QCOMPARE(curve.isState(), isState);
    QCOMPARE(curve.valueText(0), isState ? QStringLiteral("Off") : QStringLiteral("0"));
    QCOMPARE(curve.valueText(7), QStringLiteral("7"));
}

/// Of a signal by itself; what is worked out of one has another unit, or none.
void tst_PlotCurve::signalsHaveUnits()
{
    class Units : public TestSignals
    {
    public:
        QString unit(int signal) const override { return signal == Temp ? QStringLiteral("degC") : QString(); }
    };
    const auto source = std::make_shared<Units>();
    PlotCurve curve(std::make_shared<BusFrameStore>(), [] {});
    QVERIFY(curve.start(QStringLiteral("Temp"), source));
    QCOMPARE(curve.unit(), QStringLiteral("degC"));
    QCOMPARE(curve.valueText(7), QStringLiteral("7 degC"));
    QVERIFY(curve.start(QStringLiteral("Temp + 0"), source));
    QCOMPARE(curve.valueText(7), QStringLiteral("7"));
}

void tst_PlotCurve::valuesAtATime()
{
    const auto store = std::make_shared<BusFrameStore>();
    fillSpeeds(*store, 10);
    PlotCurve curve(store, [] {});
    QVERIFY(curve.start(QStringLiteral("data[0] of number > 1"), {}));
    QTRY_VERIFY(isFilled(curve));
    QVERIFY(!curve.valueAt(999999));
    QCOMPARE(curve.valueAt(1000000).value_or(-1), 1.0);
    QCOMPARE(curve.valueAt(3999999).value_or(-1), 3.0);
    QCOMPARE(curve.valueAt(99999999).value_or(-1), 9.0);
}

void tst_PlotCurve::comesBackWithItsDatabase()
{
    const auto store = std::make_shared<BusFrameStore>();
    fillSpeeds(*store, 100);
    PlotCurve curve(store, [] {});
    QVERIFY(!curve.start(QStringLiteral("Speed"), {}));
    QVERIFY(!curve.problem().isEmpty());
    QVERIFY(isFilled(curve));
    QVERIFY(curve.series()->isEmpty());
    curve.extend();
    QVERIFY(isFilled(curve));
    QVERIFY(curve.start(QStringLiteral("Speed"), std::make_shared<TestSignals>()));
    QCOMPARE(curve.problem(), QString());
    QTRY_VERIFY(isFilled(curve));
    QCOMPARE(curve.series()->size(), std::size_t(100));
}

void tst_PlotCurve::seriesOfOthers()
{
    const auto store = std::make_shared<BusFrameStore>();
    PlotCurve curve(store, [] {});
    Series series;
    series.append(5, 0.25);
    curve.setSeries(std::move(series), QStringLiteral("%"));
    QCOMPARE(curve.series()->size(), std::size_t(1));
    QCOMPARE(curve.valueText(0.25), QStringLiteral("0.25 %"));
    fillSpeeds(*store, 100);
    curve.extend();
    QVERIFY(isFilled(curve));
    QCOMPARE(curve.series()->size(), std::size_t(1));
}

void tst_PlotCurve::stops()
{
    const auto store = std::make_shared<BusFrameStore>();
    fillSpeeds(*store, Frames);
    PlotCurve curve(store, [] {});
    QVERIFY(curve.start(QStringLiteral("len"), {}));
    curve.stop(QStringLiteral("full"));
    QVERIFY(!curve.append(QDeadlineTimer(QDeadlineTimer::Forever)));
    QVERIFY(!curve.isFilling());
    QCOMPARE(curve.problem(), QStringLiteral("full"));
    curve.extend();
    QVERIFY(!curve.isFilling());
}

void tst_PlotCurve::entriesComeBack()
{
    const std::vector<PlotEntry> entries{{QStringLiteral("Speed"), 0, 0, true},
                                         {QStringLiteral("data[0] of name == \"\u00fc\""), 3, 0xFF0A0B0C, false}};
    const std::vector<PlotEntry> read = PlotEntries::fromJson(PlotEntries::toJson(entries));
    QCOMPARE(read.size(), entries.size());
    for (std::size_t i = 0; i < read.size(); ++i) {
        QCOMPARE(read[i].text, entries[i].text);
        QCOMPARE(read[i].pane, entries[i].pane);
        QCOMPARE(read[i].color, entries[i].color);
        QCOMPARE(read[i].isShown, entries[i].isShown);
    }
}

void tst_PlotCurve::damagedEntries_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<int>("count");
    QTest::newRow("empty") << QByteArray() << 0;
    QTest::newRow("text") << QByteArray("Speed") << 0;
    QTest::newRow("another list") << QByteArray("[1, 2]") << 0;
    QTest::newRow("no list") << QByteArray(R"({"curves": 7})") << 0;
    QTest::newRow("wrong kinds") << QByteArray(R"({"curves": [7, {"text": 5}, {"text": "a", "pane": "x"}]})") << 1;
    QTest::newRow("twice") << QByteArray(R"({"curves": [{"text": "a"}, {"text": "a"}]})") << 1;
    QTest::newRow("blank") << QByteArray(R"({"curves": [{"text": " "}]})") << 0;
    QTest::newRow("cut") << QByteArray(R"({"curves": [{"text": "a"}, {"te)") << 0;
    QTest::newRow("wild pane") << QByteArray(R"({"curves": [{"text": "a", "pane": 99999}]})") << 1;
    QTest::newRow("wild color") << QByteArray(R"({"curves": [{"text": "a", "color": "#zzzzzz"}]})") << 1;
    QTest::newRow("negative") << QByteArray(R"({"curves": [{"text": "a", "pane": -5}]})") << 1;
    QByteArray many = R"({"curves": [{"text": "0"})";
    for (int i = 1; i < 1000; ++i) {
        many += R"(, {"text": ")" + QByteArray::number(i) + "\"}";
    }
    QTest::newRow("many") << many + "]}" << PlotEntries::MaxCount;
    QTest::newRow("long") << QByteArray(R"({"curves": [{"text": ")" + QByteArray(5000, '1') + R"("}]})") << 0;
}

void tst_PlotCurve::damagedEntries()
{
    QFETCH(const QByteArray, json);
    QFETCH(const int, count);
    const std::vector<PlotEntry> entries = PlotEntries::fromJson(json);
    QCOMPARE(static_cast<int>(entries.size()), count);
    for (const PlotEntry &entry : entries) {
        QVERIFY(entry.pane >= 0 && entry.pane < PlotEntries::MaxPanes);
        QCOMPARE(entry.color, 0U);
    }
}

void tst_PlotCurve::entriesBelongToOneCapture()
{
    const QTemporaryDir folder;
    const QString plots = folder.filePath(QStringLiteral("deep/plots"));
    const QString capture = folder.filePath(QStringLiteral("a.csv"));
    QVERIFY(PlotEntries::load(plots, capture).empty());
    QVERIFY(PlotEntries::save({{QStringLiteral("len"), 0, 0, true}}, plots, capture));
    QCOMPARE(PlotEntries::load(plots, capture).size(), std::size_t(1));
    QVERIFY(PlotEntries::load(plots, folder.filePath(QStringLiteral("b.csv"))).empty());
    QVERIFY(PlotEntries::save({}, plots, capture));
    QVERIFY(QDir(plots).isEmpty());
    QFile blocker(folder.filePath(QStringLiteral("file")));
    QVERIFY(blocker.open(QIODevice::WriteOnly));
    QVERIFY(!PlotEntries::save({{QStringLiteral("len"), 0, 0, true}}, blocker.fileName(), capture));
}

X9_CORE_TEST(tst_PlotCurve)
#include "tst_PlotCurve.moc"
