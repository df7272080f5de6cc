#include "tests/support/TestProgram.h"
#include "viewer/core/TimeTicks.h"

#include <QDateTime>
#include <QtTest>

#include <limits>

namespace {

constexpr qint64 Second = 1000000000;
constexpr qint64 Hour = 3600 * Second;
constexpr qint64 Day = 24 * Hour;

QString texts(const std::vector<TimeTick> &ticks)
{
    QStringList list;
    for (const TimeTick &tick : ticks) {
        list.append(tick.text);
    }
    return list.join(QStringLiteral(", "));
}

qint64 localMoment(const QString &text)
{
    return QDateTime::fromString(text, QStringLiteral("yyyy-MM-dd HH:mm:ss")).toMSecsSinceEpoch() * 1000000;
}

} // namespace

class tst_TimeTicks : public QObject
{
    Q_OBJECT

private slots:
    static void sinceTheStart_data();
    static void sinceTheStart();
    static void byTheClock_data();
    static void byTheClock();
    static void textsHaveRoom_data();
    static void textsHaveRoom();
    static void cursorTexts_data();
    static void cursorTexts();
    static void distances_data();
    static void distances();
};

void tst_TimeTicks::sinceTheStart_data()
{
    QTest::addColumn<qint64>("begin");
    QTest::addColumn<qint64>("end");
    QTest::addColumn<int>("pixels");
    QTest::addColumn<QString>("expected");
    QTest::newRow("ns") << qint64(0) << qint64(100) << 320 << QStringLiteral("0 ns, 50 ns, 100 ns");
    QTest::newRow("us") << qint64(1000) << qint64(3000) << 400
                        << QString::fromUtf8("1.0 \u00b5s, 1.5 \u00b5s, 2.0 \u00b5s, 2.5 \u00b5s, 3.0 \u00b5s");
    QTest::newRow("ms") << qint64(0) << qint64(50000000) << 400
                        << QStringLiteral("0 ms, 10 ms, 20 ms, 30 ms, 40 ms, 50 ms");
    QTest::newRow("s") << qint64(0) << 10 * Second << 320 << QStringLiteral("0 s, 2 s, 4 s, 6 s, 8 s, 10 s");
    QTest::newRow("within") << 3 * Second + 1 << 8 * Second - 1 << 400 << QStringLiteral("4 s, 5 s, 6 s, 7 s");
    QTest::newRow("ns, late") << 3600 * Second << 3600 * Second + 40 << 500
                              << QStringLiteral("3600.00000000 s, 3600.00000002 s, 3600.00000004 s");
    QTest::newRow("minutes") << qint64(0) << 1200 * Second << 500
                             << QStringLiteral("0:00:00, 0:05:00, 0:10:00, 0:15:00, 0:20:00");
    QTest::newRow("hours") << Hour << 5 * Hour << 500 << QStringLiteral("1:00:00, 2:00:00, 3:00:00, 4:00:00, 5:00:00");
    QTest::newRow("days") << qint64(0) << 2 * Day << 500
                          << QStringLiteral("0 d 00:00, 0 d 12:00, 1 d 00:00, 1 d 12:00, 2 d 00:00");
    QTest::newRow("many days") << qint64(0) << 100 * Day << 500 << QStringLiteral("0 d, 20 d, 40 d, 60 d, 80 d, 100 d");
    QTest::newRow("before the start") << -2 * Second << 2 * Second << 400
                                      << QStringLiteral("-2 s, -1 s, 0 s, 1 s, 2 s");
    QTest::newRow("no room") << qint64(0) << Second << 10 << QStringLiteral("0 s");
}

void tst_TimeTicks::sinceTheStart()
{
    QFETCH(const qint64, begin);
    QFETCH(const qint64, end);
    QFETCH(const int, pixels);
    QFETCH(const QString, expected);
    constexpr int CharacterWidth = 8;
    QCOMPARE(texts(timeTicks({begin, end}, pixels, CharacterWidth, {})), expected);
}

void tst_TimeTicks::byTheClock_data()
{
    QTest::addColumn<qint64>("begin");
    QTest::addColumn<qint64>("end");
    QTest::addColumn<QString>("expected");
    QTest::newRow("seconds") << qint64(0) << 4 * Second
                             << QStringLiteral("23:59:58, 23:59:59, 2024-05-18, 00:00:01, 00:00:02");
    QTest::newRow("tenths") << qint64(0) << Second / 2
                            << QStringLiteral("23:59:58.0, 23:59:58.1, 23:59:58.2, 23:59:58.3, 23:59:58.4, 23:59:58.5");
    QTest::newRow("hours") << 2 * Second << 12 * Hour
                           << QStringLiteral("2024-05-18, 02:00, 04:00, 06:00, 08:00, 10:00");
    QTest::newRow("days") << qint64(0) << 4 * Day << QStringLiteral("2024-05-18, 2024-05-19, 2024-05-20, 2024-05-21");
}

void tst_TimeTicks::byTheClock()
{
    QFETCH(const qint64, begin);
    QFETCH(const qint64, end);
    QFETCH(const QString, expected);
    constexpr int CharacterWidth = 8;
    constexpr int Pixels = 550;
    const qint64 start = localMoment(QStringLiteral("2024-05-17 23:59:58"));
    QCOMPARE(texts(timeTicks({begin, end}, Pixels, CharacterWidth, start)), expected);
}

void tst_TimeTicks::textsHaveRoom_data()
{
    QTest::addColumn<bool>("isClock");
    QTest::newRow("since the start") << false;
    QTest::newRow("clock") << true;
}

/// Whatever the section: marks are in it, in order, and no text touches its neighbour.
void tst_TimeTicks::textsHaveRoom()
{
    QFETCH(const bool, isClock);
    constexpr int Pixels = 800;
    constexpr int CharacterWidth = 7;
    const std::optional<qint64> clock =
        isClock ? std::make_optional(localMoment(QStringLiteral("2024-05-17 08:30:00"))) : std::nullopt;
    quint64 state = 3;
    for (int round = 0; round < 3000; ++round) {
        state = state * 6364136223846793005U + 1442695040888963407U;
        const auto width = std::max<qint64>(20, static_cast<qint64>((state >> 3U) >> (state % 58)));
        state = state * 6364136223846793005U + 1442695040888963407U;
        const auto begin = static_cast<qint64>((state >> 8U) % (quint64{1} << 59U)) - (qint64{1} << 58U);
        const TimeSection section{begin, begin + std::min(width, qint64{1} << 60U)};
        const std::vector<TimeTick> ticks = timeTicks(section, Pixels, CharacterWidth, clock);
        QVERIFY(!ticks.empty());
        QVERIFY(ticks.front().time >= section.begin && ticks.back().time <= section.end);
        for (std::size_t i = 1; i < ticks.size(); ++i) {
            const double distance =
                static_cast<double>(ticks[i].time - ticks[i - 1].time) / static_cast<double>(section.width()) * Pixels;
            QVERIFY(distance > CharacterWidth * ticks[i].text.size());
            QVERIFY2(ticks[i].text != ticks[i - 1].text, qPrintable(ticks[i].text));
        }
    }
}

void tst_TimeTicks::cursorTexts_data()
{
    QTest::addColumn<qint64>("time");
    QTest::addColumn<double>("perPixel");
    QTest::addColumn<QString>("expected");
    QTest::newRow("far") << 12 * Second + 345678901 << 5e7 << QStringLiteral("12.345 s");
    QTest::newRow("near") << 12 * Second + 345678901 << 20.0 << QStringLiteral("12.34567890 s");
    QTest::newRow("nearest") << 12 * Second + 345678901 << 0.5 << QStringLiteral("12.345678901 s");
    QTest::newRow("short") << qint64(345678) << 20.0 << QString::fromUtf8("345.67 \u00b5s");
    QTest::newRow("before the start") << -1500 * (Second / 1000) << 1e9 << QStringLiteral("-1.500 s");
    QTest::newRow("zero") << qint64(0) << 1e9 << QStringLiteral("0 ns");
    QTest::newRow("least") << std::numeric_limits<qint64>::min() << 1.0 << QStringLiteral("-9223372036.854775808 s");
}

void tst_TimeTicks::cursorTexts()
{
    QFETCH(const qint64, time);
    QFETCH(const double, perPixel);
    QFETCH(const QString, expected);
    QCOMPARE(timeText(time, perPixel, {}), expected);
    const qint64 start = localMoment(QStringLiteral("2024-05-17 08:30:00"));
    QCOMPARE(timeText(Second / 4, 1e9, start), QStringLiteral("08:30:00.250"));
}

void tst_TimeTicks::distances_data()
{
    QTest::addColumn<qint64>("distance");
    QTest::addColumn<QString>("expected");
    QTest::newRow("0") << qint64(0) << QStringLiteral("0 ns");
    QTest::newRow("ns") << qint64(-999) << QStringLiteral("-999 ns");
    QTest::newRow("us") << qint64(1500) << QString::fromUtf8("1.5 \u00b5s");
    QTest::newRow("ms") << qint64(-12345678) << QStringLiteral("-12.345678 ms");
    QTest::newRow("s") << 3661 * Second << QStringLiteral("3661 s");
}

void tst_TimeTicks::distances()
{
    QFETCH(const qint64, distance);
    QFETCH(const QString, expected);
    QCOMPARE(distanceText(distance), expected);
}

X9_CORE_TEST(tst_TimeTicks)
#include "tst_TimeTicks.moc"
