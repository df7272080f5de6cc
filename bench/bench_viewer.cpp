// bench_viewer [--frames N] [--json FILE] [--mode store|compare|periods|busload|overview]
//
// What the viewer does with a capture of N frames of 8 bytes (10,000,000) of 200 identifiers: memory of a frame;
// appending; filters over all frames, from the start to the last result and to the first; finding a frame that is at
// the other end; the overview; a histogram; a signal in every frame from the start to the points of the first picture
// (of a database, as the filters for signals are), and then pictures of ever other sections, 2000 columns wide; reading
// rows here and there, as a table does that scrolls. On as many threads as there are processors. With another mode than
// store, a window with such a capture instead: how soon it shows something and all, and for how long it was busy in one
// go at most.

#include "bench/BenchReport.h"
#include "bench/ProcessFigures.h"
#include "bench/ViewerWindowsBench.h"

#include "exchange/database/DatabaseFile.h"
#include "viewer/core/DatabaseSignals.h"
#include "viewer/core/FilterRun.h"
#include "viewer/core/Overview.h"
#include "viewer/core/PeriodHistogram.h"
#include "viewer/core/SeriesRun.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSemaphore>

#include <algorithm>
#include <cmath>

namespace {

using BenchTarget = BenchReport::Target;

constexpr int Identifiers = 200;
constexpr int BatchSize = 4096;
constexpr int Columns = 2000;
constexpr qint64 FramePeriod = 100000; ///< ns
constexpr double PerTenMillion = 1e7;

/// A message of eight signals for each identifier.
std::shared_ptr<const DatabaseSignals> databaseSignals()
{
    QByteArray text("VERSION \"\"\nBU_: Node\n");
    for (int i = 0; i < Identifiers; ++i) {
        const QByteArray number = QByteArray::number(i);
        text += "BO_ " + QByteArray::number(0x100 + i) + (i == 0 ? QByteArray(" Engine") : " Message" + number) +
                ": 8 Node\n" + " SG_ Speed" + (i == 0 ? QByteArray() : number) +
                " : 0|16@1+ (0.01,0) [0|655.35] \"km/h\" Node\n";
        for (int byte = 1; byte < 8; ++byte) {
            text += " SG_ Byte" + QByteArray::number(byte) + " : " + QByteArray::number(byte * 8) +
                    "|8@1+ (1,0) [0|255] \"\" Node\n";
        }
    }
    return std::make_shared<const DatabaseSignals>(std::vector<DatabaseSignals::Part>{
        {std::make_shared<const Database>(parseDatabase(text)), QStringLiteral("bench"), {}}});
}

/// Every frame carries the signal, in its first two bytes.
class EverywhereSignals : public SignalSource
{
public:
    EverywhereSignals()
        : m_source(databaseSignals())
    {
    }
    QVector<Message> messages() const override { return m_source->messages(); }
    QStringList signalNames() const override { return {QStringLiteral("Everywhere")}; }
    int signalNumber(const QString &name) const override { return signalNames().indexOf(name); }
    QVector<FrameKey> carriers(int /*signal*/) const override
    {
        QVector<FrameKey> keys;
        for (int i = 0; i < Identifiers; ++i) {
            keys.append(0x100U + static_cast<FrameKey>(i));
        }
        return keys;
    }
    double value(int /*signal*/, const BusFrame &frame) const override
    {
        const int message = m_source->messageOf(frame); // as any signal's value begins
        const SignalDecoder &signal = m_source->signalDecoder(m_source->firstSignal(message));
        return signal.number(signal.bits(frame.data.data())).value_or(0);
    }
    QString valueText(int /*signal*/, double /*value*/) const override { return {}; }

private:
    std::shared_ptr<const DatabaseSignals> m_source;
};

double milliseconds(const QElapsedTimer &clock)
{
    return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

void fill(BusFrameStore &store, qint64 frames)
{
    std::vector<BusFrame> batch(BatchSize);
    for (qint64 number = 0; number < frames;) {
        const auto count = static_cast<int>(std::min<qint64>(BatchSize, frames - number));
        for (int i = 0; i < count; ++i, ++number) {
            BusFrame &frame = batch[static_cast<std::size_t>(i)];
            frame.time = number * FramePeriod;
            frame.identifier = 0x100 + static_cast<quint32>(number % Identifiers);
            frame.length = 8;
            const auto wave = static_cast<int>(20000 + 20000 * std::sin(static_cast<double>(number) / 1e5));
            frame.data[0] = static_cast<uchar>(wave);
            frame.data[1] = static_cast<uchar>(wave >> 8);
            frame.data[7] = static_cast<uchar>(number / Identifiers);
        }
        store.append(batch.data(), count);
    }
}

Filter filterOf(const QString &text)
{
    FilterError error{};
    std::shared_ptr<const SignalSource> source = databaseSignals();
    if (text.contains(QLatin1String("Everywhere"))) {
        source = std::make_shared<EverywhereSignals>();
    }
    const auto filter = Filter::parse(text, source, error);
    if (!filter) {
        qFatal("%s: %s", qPrintable(text), qPrintable(error.text));
    }
    return *filter;
}

void benchFilter(BenchReport &report, const std::shared_ptr<BusFrameStore> &store, const QString &text, double limitMs)
{
    const double scale = static_cast<double>(store->size()) / PerTenMillion;
    std::vector<double> totals;
    std::vector<double> firsts;
    for (int round = 0; round < 5; ++round) {
        QSemaphore news;
        FilterRun run(store, [&news] { news.release(); });
        RowSet rows;
        double first = 0;
        const Filter filter = filterOf(text);
        QElapsedTimer clock;
        clock.start();
        run.start(filter);
        while (run.isRunning()) {
            news.acquire();
            run.takeTo(rows);
            first = first > 0 ? first : milliseconds(clock);
        }
        totals.push_back(milliseconds(clock));
        firsts.push_back(first);
    }
    report.add(QStringLiteral("filter %1").arg(text), median(totals), QStringLiteral("ms"), BenchTarget::AtMost,
               limitMs * scale);
    report.add(QStringLiteral("  first results"), median(firsts), QStringLiteral("ms"), BenchTarget::AtMost, 100);
}

void benchOverview(BenchReport &report, const BusFrameStore &store)
{
    Overview overview;
    QElapsedTimer clock;
    clock.start();
    overview.add(store, store.size());
    report.add(QStringLiteral("overview"), milliseconds(clock), QStringLiteral("ms"), BenchTarget::AtMost,
               1000 * static_cast<double>(store.size()) / PerTenMillion);
    clock.start();
    overview.lastRows(store, store.size() / 2 + 12345);
    report.add(QStringLiteral("overview at a frame"), milliseconds(clock), QStringLiteral("ms"), BenchTarget::AtMost,
               16);
    const std::atomic<bool> stop{false};
    const IdentifierStatistics &identifier = overview.identifiers().front();
    clock.start();
    periodHistogram(store, identifier, identifier.leastPeriod, identifier.greatestPeriod, Columns, stop);
    report.add(QStringLiteral("histogram of periods"), milliseconds(clock), QStringLiteral("ms"));
}

void benchFind(BenchReport &report, const BusFrameStore &store)
{
    const std::atomic<bool> stop{false};
    const Filter filter = filterOf(QStringLiteral("number == 1"));
    QElapsedTimer clock;
    clock.start();
    findRow(store, filter, store.size() - 1, true, stop);
    report.add(QStringLiteral("find backward through all"), milliseconds(clock), QStringLiteral("ms"));
}

void benchPictures(BenchReport &report, const Series &series, qint64 duration)
{
    constexpr int Pictures = 200;
    std::vector<Series::Point> points;
    std::vector<double> times;
    for (int picture = 0; picture < Pictures; ++picture) {
        const qint64 width = duration >> (picture % 12);
        const qint64 begin = (duration - width) / Pictures * picture;
        QElapsedTimer clock;
        clock.start();
        series.decimate(begin, begin + width, Columns, points);
        times.push_back(milliseconds(clock));
    }
    report.add(QStringLiteral("points of a picture"), median(times), QStringLiteral("ms"));
    std::sort(times.begin(), times.end());
    report.add(QStringLiteral("  slower than 95 of 100"), times[Pictures * 95 / 100], QStringLiteral("ms"),
               BenchTarget::AtMost, 1000.0 / 30);
}

void benchSeries(BenchReport &report, const std::shared_ptr<BusFrameStore> &store)
{
    const qint64 duration = store->time(store->size() - 1);
    FilterError error{};
    const auto value = FrameValue::parse(QStringLiteral("Everywhere"), std::make_shared<EverywhereSignals>(), error);
    std::vector<double> firsts;
    std::vector<double> totals;
    std::vector<double> processor;
    for (int round = 0; round < 3; ++round) {
        QSemaphore news;
        SeriesRun run(store, [&news] { news.release(); });
        Series series;
        std::vector<Series::Point> points;
        double first = 0;
        const double used = cpuSeconds();
        QElapsedTimer clock;
        clock.start();
        run.start(*value);
        while (run.isRunning()) {
            news.acquire();
            run.takeTo(series);
            if (!(first > 0)) {
                series.decimate(0, duration, Columns, points);
                first = milliseconds(clock);
            }
        }
        series.decimate(0, duration, Columns, points);
        totals.push_back(milliseconds(clock));
        firsts.push_back(first);
        processor.push_back((cpuSeconds() - used) * 1000);
        if (round == 0) {
            benchPictures(report, series, duration);
        }
    }
    report.add(QStringLiteral("signal in every frame, first points"), median(firsts), QStringLiteral("ms"),
               BenchTarget::AtMost, 300);
    report.add(QStringLiteral("  all of them"), median(totals), QStringLiteral("ms"));
    report.add(QStringLiteral("  processor time for all of them"), median(processor), QStringLiteral("ms"));
}

void benchRows(BenchReport &report, const BusFrameStore &store)
{
    constexpr int Reads = 100000;
    quint64 state = 1;
    qint64 sum = 0;
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < Reads; ++i) {
        state = state * 6364136223846793005U + 1442695040888963407U;
        sum += store.frame(static_cast<qint64>((state >> 16U) % static_cast<quint64>(store.size()))).identifier;
    }
    report.add(QStringLiteral("a row anywhere"), milliseconds(clock) * 1e6 / Reads, QStringLiteral("ns"));
    if (sum == 0) {
        qFatal("the rows are empty");
    }
}

void benchStore(BenchReport &report, qint64 frames)
{
    const auto store = std::make_shared<BusFrameStore>();
    const double before = residentBytes();
    QElapsedTimer clock;
    clock.start();
    fill(*store, frames);
    report.add(QStringLiteral("making and appending %1 frames").arg(frames), milliseconds(clock), QStringLiteral("ms"));
    report.add(QStringLiteral("memory of a frame"), (residentBytes() - before) / static_cast<double>(store->size()),
               QStringLiteral("bytes"), BenchTarget::AtMost, 40);
    benchRows(report, *store);
    constexpr double FilterLimit = 500;
    for (const char *text : {"id == 0x123", "id in 0x100..0x1FF and not remote", "len > 4 and data[7] & 0x80",
                             "data ~ \"4E 2?\"", "name ~ \"Engine\"", "Speed > 300", "Everywhere > 300"}) {
        benchFilter(report, store, QString::fromLatin1(text), FilterLimit);
    }
    benchFind(report, *store);
    benchOverview(report, *store);
    benchSeries(report, store);
}

} // namespace

int main(int argc, char *argv[])
{
    QStringList arguments;
    std::transform(argv, argv + argc, std::back_inserter(arguments),
                   [](const char *argument) { return QString::fromLocal8Bit(argument); });
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({{QStringLiteral("frames"), QStringLiteral("Frames of the capture (10000000)."),
                        QStringLiteral("N"), QStringLiteral("10000000")},
                       {QStringLiteral("json"), QStringLiteral("Write the figures to FILE."), QStringLiteral("FILE")},
                       {QStringLiteral("mode"), QStringLiteral("What is measured (store)."), QStringLiteral("MODE"),
                        QStringLiteral("store")}});
    parser.process(arguments);
    const qint64 frames = std::max<qint64>(100000, parser.value(QStringLiteral("frames")).toLongLong());
    const QString mode = parser.value(QStringLiteral("mode"));

    BenchReport report;
    if (viewerWindowModes().contains(mode)) {
        if (!benchViewerWindow(report, mode, frames, argc, argv)) {
            qFatal("%s does not come to an end", qPrintable(mode));
        }
    } else {
        const QCoreApplication application(argc, argv);
        benchStore(report, frames);
    }
    report.print();
    return report.writeJson(parser.value(QStringLiteral("json"))) ? 0 : 1;
}
