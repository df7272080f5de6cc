#include "tests/support/TestProgram.h"
#include "tests/viewer/TestSignals.h"
#include "tests/viewer/ViewerFrames.h"
#include "viewer/core/SeriesCsv.h"
#include "viewer/core/SeriesRun.h"

#include <QBuffer>
#include <QtTest>

#include <cmath>

namespace {

/// A value that goes up and down, with a peak now and then.
double sample(qint64 number)
{
    return number % 99991 == 500 ? 1000 : std::sin(static_cast<double>(number) / 1000) * 100;
}

Series numberedSeries(qint64 count)
{
    Series series;
    for (qint64 i = 0; i < count; ++i) {
        series.append(i * 10, sample(i));
    }
    return series;
}

QString text(const std::vector<Series::Step> &steps)
{
    QStringList list;
    for (const Series::Step &step : steps) {
        list.append(QStringLiteral("%1-%2:%3%4")
                        .arg(step.begin)
                        .arg(step.end)
                        .arg(step.value)
                        .arg(step.isMixed ? QStringLiteral("*") : QString()));
    }
    return list.join(QLatin1Char(' '));
}

} // namespace

class tst_Series : public QObject
{
    Q_OBJECT

private slots:
    static void rangesAreThoseOfThePoints();
    static void timesNeverGoBack();
    static void placesByTime();
    static void decimationLosesNoPeak();
    static void fewPointsAreExact();
    static void steps_data();
    static void steps();
    static void stepsOfManyPoints();
    static void runFillsInOrder();
    static void rates();
    static void csv();
    static void csvTellsAFullDisk();
};

void tst_Series::rangesAreThoseOfThePoints()
{
    constexpr std::size_t Count = 100000;
    const Series series = numberedSeries(Count);
    quint32 state = 7;
    for (int round = 0; round < 2000; ++round) {
        state = state * 1664525U + 1013904223U;
        const std::size_t begin = (state >> 8U) % Count;
        state = state * 1664525U + 1013904223U;
        const std::size_t end =
            begin + 1 + (state >> 8U) % std::min<std::size_t>(Count - begin, round < 1000 ? 5000 : Count);
        double least = sample(static_cast<qint64>(begin));
        double greatest = least;
        for (std::size_t i = begin; i < end; ++i) {
            least = std::min(least, sample(static_cast<qint64>(i)));
            greatest = std::max(greatest, sample(static_cast<qint64>(i)));
        }
        double foundLeast = 0;
        double foundGreatest = 0;
        series.range(begin, end, foundLeast, foundGreatest);
        QCOMPARE(foundLeast, least);
        QCOMPARE(foundGreatest, greatest);
    }
    QCOMPARE(series.greatest(), 1000.0);
}

void tst_Series::timesNeverGoBack()
{
    Series series;
    series.append(10, 1);
    series.append(5, 2);
    series.append(20, 3);
    QCOMPARE(series.at(1).time, 10);
    QCOMPARE(series.at(1).value, 2.0);
    QCOMPARE(series.at(2).time, 20);
}

void tst_Series::placesByTime()
{
    Series series;
    QCOMPARE(series.indexAt(0), std::size_t(0)); // there is none
    for (const qint64 time : {10, 20, 20, 30}) {
        series.append(time, 0);
    }
    QCOMPARE(series.indexAt(9), series.size());
    QCOMPARE(series.indexAt(10), std::size_t(0));
    QCOMPARE(series.indexAt(25), std::size_t(2));
    QCOMPARE(series.indexAt(99), std::size_t(3));
    QCOMPARE(series.firstFrom(20), std::size_t(1));
    QCOMPARE(series.firstFrom(31), series.size());
}

void tst_Series::decimationLosesNoPeak()
{
    constexpr qint64 Count = 1000000;
    constexpr int Columns = 500;
    const Series series = numberedSeries(Count);
    std::vector<Series::Point> points;
    series.decimate(0, Count * 10, Columns, points);
    QVERIFY(points.size() <= 4 * Columns + 2);
    const auto isPeak = [](const Series::Point &point) {
        return point.value == 1000;
    };
    QCOMPARE(std::count_if(points.begin(), points.end(), isPeak), 10);
    QVERIFY(std::is_sorted(points.begin(), points.end(),
                           [](const Series::Point &a, const Series::Point &b) { return a.time < b.time; }));
    constexpr qint64 Begin = 1234567;
    constexpr qint64 End = 7654321;
    series.decimate(Begin, End, Columns, points);
    QCOMPARE(points.front().time, 1234560); // beside the section, so that the line reaches its edges
    QCOMPARE(points.back().time, 7654330);
    for (std::size_t i = 1; i + 1 < points.size(); ++i) {
        QVERIFY(points[i].time >= Begin && points[i].time < End);
    }
}

void tst_Series::fewPointsAreExact()
{
    const Series series = numberedSeries(1000);
    std::vector<Series::Point> points;
    series.decimate(100, 200, 500, points);
    QCOMPARE(points.size(), std::size_t(12));
    for (std::size_t i = 0; i < points.size(); ++i) {
        QCOMPARE(points[i].time, 90 + qint64(i) * 10);
        QCOMPARE(points[i].value, sample(9 + qint64(i)));
    }
    series.decimate(-100, -50, 500, points);
    QCOMPARE(points.size(), std::size_t(1));
    series.decimate(200, 100, 500, points); // nothing is between, only what is beside
    QVERIFY(points.size() <= 2);
    Series().decimate(0, 100, 10, points);
    QVERIFY(points.empty());
    Series flat;
    for (int i = 0; i < 100; ++i) {
        flat.append(5, i);
    }
    flat.decimate(5, 5, 10, points); // all of them are behind this empty section
    QCOMPARE(points.size(), std::size_t(1));
    flat.decimate(0, 10, 10, points);
    QVERIFY(points.size() == 4);
}

void tst_Series::steps_data()
{
    QTest::addColumn<qint64>("begin");
    QTest::addColumn<qint64>("end");
    QTest::addColumn<int>("columns");
    QTest::addColumn<QString>("expected");
    // 0 to 9 in state 1, 10 to 19 in 2, 20 and on in 1, 2, 1, 2, ..., from 30 on in 3 up to 99
    QTest::newRow("exact") << qint64(0) << qint64(20) << 100 << QStringLiteral("0-10:1 10-20:2");
    QTest::newRow("from within") << qint64(5) << qint64(15) << 100 << QStringLiteral("5-10:1 10-15:2");
    QTest::newRow("before the first") << qint64(-50) << qint64(5) << 100 << QStringLiteral("0-5:1");
    QTest::newRow("behind the last") << qint64(90) << qint64(200) << 500 << QStringLiteral("90-99:3");
    QTest::newRow("fast ones") << qint64(0) << qint64(100) << 10 << QStringLiteral("0-10:1 10-20:2 20-30:2* 30-100:3");
    QTest::newRow("one column") << qint64(0) << qint64(100) << 1 << QStringLiteral("0-10:1 10-100:3*");
    QTest::newRow("none") << qint64(-50) << qint64(-10) << 100 << QString();
    QTest::newRow("the wrong way") << qint64(50) << qint64(10) << 100 << QString();
}

void tst_Series::steps()
{
    QFETCH(const qint64, begin);
    QFETCH(const qint64, end);
    QFETCH(const int, columns);
    QFETCH(QString, expected);
    Series series;
    for (int i = 0; i < 100; ++i) {
        series.append(i, i < 10 ? 1 : i < 20 ? 2 : i < 30 ? 1 + i % 2 : 3);
    }
    if (QTest::currentDataTag() == QByteArray("fast ones") || QTest::currentDataTag() == QByteArray("one column")) {
        expected.replace(QStringLiteral("-100:"), QStringLiteral("-99:"));
    }
    std::vector<Series::Step> steps;
    series.decimateSteps(begin, end, columns, steps);
    QCOMPARE(text(steps), expected);
}

void tst_Series::stepsOfManyPoints()
{
    constexpr int Count = 1000000;
    Series series;
    for (int i = 0; i < Count; ++i) {
        series.append(i, i / 100000 % 2 + (i == 555555 ? 5 : 0)); // one that lasts for one point
    }
    std::vector<Series::Step> steps;
    series.decimateSteps(0, Count, 1000, steps);
    QVERIFY(steps.size() >= 10 && steps.size() <= 14);
    QCOMPARE(steps[1].begin, 100000);
    QCOMPARE(steps[1].end, 200000);
    QCOMPARE(std::count_if(steps.begin(), steps.end(), [](const Series::Step &step) { return step.isMixed; }), 1);
}

void tst_Series::runFillsInOrder()
{
    const auto store = std::make_shared<BusFrameStore>();
    const auto database = std::make_shared<TestSignals>();
    FilterError error{};
    const std::optional<FrameValue> speed = FrameValue::parse(QStringLiteral("Speed"), database, error);
    QVERIFY(speed);
    SeriesRun run(store, [] {});
    run.setThreadCount(4);
    run.start(*speed);
    Series series;
    constexpr int Frames = 300000;
    for (int i = 0; i < Frames; ++i) {
        BusFrame frame = canFrame(i, i % 2 == 0 ? 0x100 : 0x101, "0000");
        frame.data[0] = static_cast<uchar>(i);
        frame.data[1] = static_cast<uchar>(i >> 8);
        fill(*store, {frame});
        if (i % 100000 == 99999) {
            run.extend();
            QTRY_VERIFY((run.takeTo(series), !run.isRunning()));
        }
    }
    QCOMPARE(series.size(), std::size_t(Frames / 2));
    for (std::size_t i = 0; i < series.size(); ++i) {
        QCOMPARE(series.at(i).time, qint64(i) * 2);
        QCOMPARE(series.at(i).value, static_cast<double>((i * 2) & 0xFFFF) * 0.5);
    }
}

void tst_Series::rates()
{
    constexpr qint64 Second = 1000000000;
    BusFrameStore store;
    store.setStart(100 * Second);
    fill(store,
         {canFrame(100 * Second, 1), canFrame(100 * Second + 1, 1), canFrame(103 * Second, 1),
          canFrame(102 * Second, 1), canFrame(BusFrame::NoTime, 1), canFrame(1, 1), canFrame(1000000 * Second, 1)});
    RowSet rows;
    rows.append({0, 7, {0, 1, 2, 3, 4, 5, 6}});
    const Series series = rateSeries(store, rows, Second);
    QCOMPARE(series.size(), std::size_t(7));
    QCOMPARE(series.at(0).time, 100 * Second + Second / 2);
    QCOMPARE(series.at(0).value, 2.0);
    QCOMPARE(series.at(1).value, 0.0);
    QCOMPARE(series.at(2).value, 0.0);
    QCOMPARE(series.at(3).value, 2.0); // with the one that jumped back
    QCOMPARE(series.at(4).value, 0.0);
    QCOMPARE(series.at(4).time, 104 * Second + Second / 2);
    QCOMPARE(series.at(5).time, 999999 * Second + Second / 2);
    QCOMPARE(series.at(6).value, 1.0);
}

void tst_Series::csv()
{
    Series a;
    a.append(1000, 1.5);
    a.append(2000, 2);
    a.append(2000, 3);
    Series b;
    b.append(2000, -1e-30);
    b.append(3000, 0.1);
    const std::atomic<bool> stop{false};
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::WriteOnly));
    QVERIFY(writeSeriesCsv(buffer, {{QStringLiteral("a \"x\""), &a}, {QStringLiteral("\u00fc"), &b}}, {500}, stop));
    QCOMPARE(buffer.data(), QByteArray("\"time\",\"a \"\"x\"\"\",\"\xc3\xbc\"\r\n"
                                       "0.000000500,1.5,\r\n"
                                       "0.000001500,2,-1e-30\r\n"
                                       "0.000001500,3,\r\n"
                                       "0.000002500,,0.1\r\n"));
}

void tst_Series::csvTellsAFullDisk()
{
    class FullDisk : public QIODevice
    {
    protected:
        qint64 readData(char * /*data*/, qint64 /*size*/) override { return -1; }
        qint64 writeData(const char * /*data*/, qint64 size) override { return size / 2; }
    };
    FullDisk disk;
    QVERIFY(disk.open(QIODevice::WriteOnly));
    const Series series = numberedSeries(10);
    const std::atomic<bool> stop{false};
    QVERIFY(!writeSeriesCsv(disk, {{QStringLiteral("a"), &series}}, {}, stop));
}

X9_CORE_TEST(tst_Series)
#include "tst_Series.moc"
