#include "tests/support/TestProgram.h"
#include "tests/viewer/ViewerFrames.h"
#include "viewer/core/FrameTimes.h"

#include <QDateTime>
#include <QtTest>

namespace {

constexpr qint64 Second = 1000000000;
constexpr qint64 Most = std::numeric_limits<qint64>::max();

CaptureInfo datedInfo()
{
    CaptureInfo info;
    info.timeBase = CaptureInfo::Absolute;
    return info;
}

/// 2024-05-17 23:59:58 in the computer's time zone, in nanoseconds.
qint64 evening()
{
    return QDateTime(QDate(2024, 5, 17), QTime(23, 59, 58)).toMSecsSinceEpoch() * 1000000;
}

} // namespace

class tst_FrameTimes : public QObject
{
    Q_OBJECT

private slots:
    static void periods();
    static void columns();
    static void texts();
    static void rowsOfTexts_data();
    static void rowsOfTexts();
    static void rowsWithoutDate();
};

void tst_FrameTimes::periods()
{
    QCOMPARE(periodBetween(3, 5), 2);
    QCOMPARE(periodBetween(5, 3), -1);
    QCOMPARE(periodBetween(5, 5), 0);
    QCOMPARE(periodBetween(BusFrame::NoTime, 5), -1);
    QCOMPARE(periodBetween(-Most, Most), -1);
}

void tst_FrameTimes::columns()
{
    BusFrameStore store;
    store.setStart(100);
    fill(store, {canFrame(100, 1), canFrame(150, 1), canFrame(120, 1), canFrame(BusFrame::NoTime, 1),
                 canFrame(-Most, 1), canFrame(Most, 1)});
    CaptureInfo info;
    const TimeReferences references{1, 0, 2};
    const auto cell = [&](TimeColumn column, qint64 row) {
        return timeOfCell(column, store, info, row, references).value_or(-7777);
    };
    QCOMPARE(cell(TimeColumn::SinceStart, 1), 50);
    QCOMPARE(cell(TimeColumn::SinceShown, 2), -30); // jumped back
    QCOMPARE(cell(TimeColumn::SinceIdentifier, 2), 20);
    QCOMPARE(cell(TimeColumn::SinceMark, 0), -20);
    QCOMPARE(cell(TimeColumn::SinceStart, 3), -7777); // no time
    QCOMPARE(cell(TimeColumn::SinceMark, 5), Most - 120);
    QCOMPARE(timeOfCell(TimeColumn::SinceMark, store, info, 4, {-1, -1, 5}).value_or(-7777), -7777); // too far
    QCOMPARE(timeOfCell(TimeColumn::SinceMark, store, info, 0, {}).value_or(-7777), -7777);
    QCOMPARE(cell(TimeColumn::Absolute, 1), -7777);
    info.start = 1000;
    QCOMPARE(cell(TimeColumn::Absolute, 1), 1150);
    QCOMPARE(cell(TimeColumn::Absolute, 5), -7777);
    info.timeBase = CaptureInfo::Absolute;
    QCOMPARE(cell(TimeColumn::Absolute, 1), 150);
}

void tst_FrameTimes::texts()
{
    QCOMPARE(durationText(0), QStringLiteral("0.000000000"));
    QCOMPARE(durationText(-1), QStringLiteral("-0.000000001"));
    QCOMPARE(durationText(12 * Second + 345), QStringLiteral("12.000000345"));
    QCOMPARE(durationText(std::numeric_limits<qint64>::min()), QStringLiteral("-9223372036.854775808"));
    QCOMPARE(absoluteTimeText(evening() + 123456789), QStringLiteral("2024-05-17 23:59:58.123456789"));
    QVERIFY(absoluteTimeText(-1).endsWith(QLatin1String(".999999999")));
}

void tst_FrameTimes::rowsOfTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("row");
    const auto row = [](const char *text, qint64 number) {
        QTest::newRow(text) << QString::fromLatin1(text) << number;
    };
    // A frame each second from 23:59:58 on, ten of them.
    row("1", 0);
    row(" 10 ", 9);
    row("11", -1);
    row("0", -1);
    row("-1", -1);
    row("2.0", 2);
    row("2.5", 3);
    row("2500 ms", 3);
    row("3s", 3);
    row("0.05min", 3);
    row("100.0", 9); // behind the last
    row("-5.0", 0);
    row("23:59:59", 1);
    row("23:59:59.5", 2);
    row("00:00:01", 3); // of the next day
    row("0:00", 2);
    row("2024-05-18 00:00:02", 4);
    row("2024-05-17 00:00:02", 0);
    row("2024-05-17T23:59", 0);
    row("2024-13-17 00:00:02", -1);
    row("25:00:00", -1);
    row("soon", -1);
    row("", -1);
    row("1e9999", -1);
    row("99999999999999999999.0", -1);
}

void tst_FrameTimes::rowsOfTexts()
{
    QFETCH(const QString, text);
    QFETCH(const qint64, row);
    BusFrameStore store;
    store.setStart(evening());
    for (int i = 0; i < 10; ++i) {
        fill(store, {canFrame(evening() + i * Second, 1)});
    }
    QCOMPARE(rowOfText(text, store, datedInfo()), row);
    QCOMPARE(rowOfText(text, BusFrameStore(), datedInfo()), -1);
}

void tst_FrameTimes::rowsWithoutDate()
{
    BusFrameStore store;
    fill(store, {canFrame(0, 1), canFrame(5 * Second, 1)});
    QCOMPARE(rowOfText(QStringLiteral("23:59:59"), store, {}), -1);
    QCOMPARE(rowOfText(QStringLiteral("4.5s"), store, {}), 1);
    CaptureInfo info;
    info.start = evening();
    QCOMPARE(rowOfText(QStringLiteral("23:59:59"), store, info), 1);
}

X9_PLAIN_TEST(tst_FrameTimes)
#include "tst_FrameTimes.moc"
