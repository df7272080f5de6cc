// How fast captures of other programs' kinds are read and written: MB of the file per second of processor time, one
// thread, memory to memory. bench_exchange_formats [--frames N] [KIND...], by default 1,000,000 frames and all kinds.

#include "bench/BenchReport.h"
#include "exchange/ByteInput.h"
#include "exchange/ByteOutput.h"
#include "exchange/ExchangeFormat.h"
#include "exchange/Findings.h"

#include <QBuffer>
#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>
#include <ctime>
#include <random>

namespace {

constexpr double BytesPerMb = 1e6;

double processorSeconds()
{
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

/// Classic frames of 8 random bytes, every 250 us on two channels.
std::vector<BusFrame> classicFrames(int count)
{
    std::mt19937 random(1);
    std::vector<BusFrame> frames(static_cast<std::size_t>(count));
    qint64 time = 1760000000000000000;
    for (BusFrame &frame : frames) {
        frame.time = time += 250000;
        frame.channel = static_cast<quint16>(random() % 2);
        frame.identifier = static_cast<quint32>(random() % 0x800);
        frame.length = 8;
        for (std::size_t i = 0; i < frame.length; ++i) {
            frame.data[i] = static_cast<uchar>(random());
        }
    }
    return frames;
}

QByteArray measureWriting(const ExchangeFormat &format, const std::vector<BusFrame> &frames, BenchReport &report)
{
    constexpr std::size_t Batch = 1024;
    WriteOptions options;
    options.info.timeBase = CaptureInfo::Absolute;
    QBuffer buffer;
    buffer.buffer().reserve(static_cast<int>(frames.size()) * 128);
    buffer.open(QIODevice::ReadWrite);
    const double begin = processorSeconds();
    ByteOutput out(buffer);
    Findings findings;
    const auto writer = format.writer(out, options, findings);
    for (std::size_t at = 0; at < frames.size(); at += Batch) {
        writer->write(frames.data() + at, static_cast<int>(std::min(Batch, frames.size() - at)));
    }
    writer->finish();
    out.flush();
    const double seconds = processorSeconds() - begin;
    report.add(QStringLiteral("%1: written").arg(QLatin1String(format.name)),
               static_cast<double>(buffer.size()) / BytesPerMb / seconds, QStringLiteral("MB/s"));
    return buffer.buffer();
}

/// False when other frames came back.
bool measureReading(const ExchangeFormat &format, QByteArray bytes, std::size_t expected, BenchReport &report)
{
    constexpr int Batch = 1024;
    std::vector<BusFrame> batch(Batch);
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    const double begin = processorSeconds();
    ByteInput in(buffer);
    Findings findings;
    const auto reader = format.reader(in, {}, findings);
    std::size_t frames = 0;
    for (int count = 0; (count = reader->read(batch.data(), Batch)) > 0;) {
        frames += static_cast<std::size_t>(count);
    }
    const double seconds = processorSeconds() - begin;
    if (frames != expected || findings.count() != 0) {
        std::fprintf(stderr, "%s: %zu frames, not %zu\n", format.name, frames, expected);
        return false;
    }
    const QString name = QLatin1String(format.name);
    const bool isPacked = name == QLatin1String("blf");
    report.add(name + QStringLiteral(": read"), static_cast<double>(bytes.size()) / BytesPerMb / seconds,
               QStringLiteral("MB/s"), isPacked ? BenchReport::Target::AtLeast : BenchReport::Target::None, 200);
    report.add(name + QStringLiteral(": frames read"), static_cast<double>(frames) / 1e6 / seconds,
               QStringLiteral("million/s"));
    return true;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption count(QStringLiteral("frames"), QStringLiteral("How many."), QStringLiteral("N"),
                                   QStringLiteral("1000000"));
    const QCommandLineOption json(QStringLiteral("json"), QStringLiteral("Writes the figures."),
                                  QStringLiteral("FILE"));
    parser.addOptions({count, json});
    parser.addPositionalArgument(QStringLiteral("kinds"), QStringLiteral("Names of the table of formats."));
    parser.addHelpOption();
    parser.process(application);
    const auto frames = classicFrames(std::max(1, parser.value(count).toInt()));
    BenchReport report;
    QStringList names = parser.positionalArguments();
    if (names.isEmpty()) {
        names = QStringLiteral("asc blf pcapng pcap trc").split(QLatin1Char(' '));
    }
    for (const QString &name : qAsConst(names)) {
        const ExchangeFormat *format = exchangeFormat(name);
        if (format == nullptr ||
            !measureReading(*format, measureWriting(*format, frames, report), frames.size(), report)) {
            return 1;
        }
    }
    report.print();
    return report.writeJson(parser.value(json)) ? 0 : 1;
}
