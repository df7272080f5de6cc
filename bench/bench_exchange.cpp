// Turning captures into each other: the program's own CSV into .canfd, its reader alone, a candump log into CSV, pcapng
// into pcapng; beside them log2asc of can-utils and editcap of Wireshark on the same files, where they are installed.
// MB of input per second of processor time.

#include "bench/BenchReport.h"
#include "bench/ProcessFigures.h"

#include "exchange/ByteInput.h"
#include "exchange/ByteOutput.h"
#include "exchange/ExchangeFormat.h"
#include "exchange/Findings.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <cstdio>

namespace {

constexpr int BatchSize = 256;

struct Options
{
    int frames = 1000000;
    int repetitions = 5;
    QString folder;
};

/// Frames as a bus has them: some identifiers, of which one in eight is extended, a quarter of a second with one clock
/// time.
BusFrame frameNumber(int number)
{
    BusFrame frame;
    const auto seed = static_cast<quint32>(number) * 2654435761U;
    frame.set(BusFrame::Extended, number % 8 == 0);
    frame.identifier = frame.is(BusFrame::Extended) ? 0x18DA0000U + seed % 97 : seed % 0x7F0;
    frame.direction = number % 10 == 0 ? BusFrame::Sent : BusFrame::Received;
    frame.length = 8;
    for (std::size_t i = 0; i < 8; ++i) {
        frame.data[i] = static_cast<uchar>(seed >> (3 * i));
    }
    frame.deviceTime = frame.direction == BusFrame::Received ? number * qint64{250000} : BusFrame::NoTime;
    frame.time = qint64{1760000000} * 1000000000 + number * qint64{250000};
    return frame;
}

void writeCapture(const QString &path, const Options &options, bool isPolled)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        qFatal("cannot write %s", qPrintable(path));
    }
    ByteOutput out(file);
    Findings findings;
    WriteOptions writeOptions;
    writeOptions.info.timeBase = CaptureInfo::Absolute;
    const auto writer = exchangeFormatOfPath(path)->writer(out, writeOptions, findings);
    for (int i = 0; i < options.frames; ++i) {
        BusFrame frame = frameNumber(i);
        frame.time -= isPolled ? frame.time % 250000000 : 0;
        writer->write(&frame, 1);
    }
    writer->finish();
    out.flush();
}

/// Reads path and, unless to is empty, writes it there, as what its ending says or else as kind. Returns how many
/// frames.
int convert(const QString &path, const QString &to, const char *kind)
{
    QFile in(path);
    QFile target(to);
    if (!in.open(QIODevice::ReadOnly | QIODevice::Unbuffered) ||
        (!to.isEmpty() && !target.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))) {
        qFatal("cannot open %s", qPrintable(path));
    }
    ByteInput bytes(in);
    ByteOutput out(target);
    Findings findings;
    const auto reader = exchangeFormatOfPath(path)->reader(bytes, {QFileInfo(path).lastModified()}, findings);
    std::unique_ptr<FrameWriter> writer;
    std::vector<BusFrame> batch(BatchSize);
    int frames = 0;
    for (int count = 0; (count = reader->read(batch.data(), BatchSize)) > 0; frames += count) {
        if (writer == nullptr && !to.isEmpty()) {
            const ExchangeFormat *format = exchangeFormatOfPath(to);
            writer = (format != nullptr ? format : exchangeFormat(QLatin1String(kind)))
                         ->writer(out, {reader->info()}, findings);
        }
        if (writer != nullptr) {
            writer->write(batch.data(), count);
        }
    }
    if (writer != nullptr) {
        writer->finish();
        out.flush();
    }
    if (findings.count() > 0) {
        qFatal("%s: %s", qPrintable(path), qPrintable(findings.kept().first().text));
    }
    return frames;
}

double megabytes(const QString &path)
{
    return static_cast<double>(QFileInfo(path).size()) / 1e6;
}

double rateOf(const Options &options, const QString &path, const QString &to, const char *kind = "csv")
{
    std::vector<double> rates;
    for (int i = 0; i < options.repetitions; ++i) {
        const double begin = cpuSeconds();
        if (convert(path, to, kind) != options.frames) {
            qFatal("%s was not read whole", qPrintable(path));
        }
        rates.push_back(megabytes(path) / (cpuSeconds() - begin));
    }
    return median(rates);
}

/// The same of a program, by what the shell says about its processor time; 0 where there is no such program. command:
/// has $0 where it wants the path.
double rateOfProgram(const Options &options, const QString &command, const QString &path)
{
    if (QStandardPaths::findExecutable(command.section(QLatin1Char(' '), 0, 0)).isEmpty()) {
        return 0;
    }
    std::vector<double> rates;
    for (int i = 0; i < options.repetitions; ++i) {
        QProcess shell;
        shell.start(QStringLiteral("bash"),
                    {QStringLiteral("-c"), QStringLiteral("TIMEFORMAT='%U %S'; time ") + command, path});
        shell.waitForFinished(-1);
        const QStringList times = QString::fromLatin1(shell.readAllStandardError()).trimmed().split(QLatin1Char(' '));
        const double seconds = times.value(0).toDouble() + times.value(1).toDouble();
        rates.push_back(seconds > 0 ? megabytes(path) / seconds : 0);
    }
    return median(rates);
}

/// A line for a public program on the same file, to nowhere, and how many times as fast ours is; none without it.
void addProgram(BenchReport &report, const QString &name, double its, double ours, double wanted)
{
    if (its > 0) {
        report.add(QStringLiteral("  %1 with the same file, to nowhere").arg(name), its, QStringLiteral("MB/s CPU"));
        report.add(QStringLiteral("  against it, to nowhere"), ours / its, QStringLiteral("times"),
                   BenchReport::Target::AtLeast, wanted);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions(
        {{QStringLiteral("frames"), QStringLiteral("Frames of each capture."), QStringLiteral("n"),
          QStringLiteral("1000000")},
         {QStringLiteral("json"), QStringLiteral("Writes the figures to a file."), QStringLiteral("file")}});
    parser.process(application);
    const QTemporaryDir folder;
    const Options options{parser.value(QStringLiteral("frames")).toInt(), 5, folder.path()};
    const auto path = [&folder](const char *name) {
        return folder.filePath(QLatin1String(name));
    };
    writeCapture(path("own.csv"), options, true);
    writeCapture(path("own.log"), options, false);
    writeCapture(path("own.pcapng"), options, false);

    using Target = BenchReport::Target;
    const QString unit = QStringLiteral("MB/s CPU");
    BenchReport report;
    report.add(QStringLiteral("own CSV, the reader alone"), rateOf(options, path("own.csv"), {}), unit, Target::AtLeast,
               800);
    report.add(QStringLiteral("own CSV to .canfd"), rateOf(options, path("own.csv"), path("out.canfd")), unit,
               Target::AtLeast, 500);
    const double candump = rateOf(options, path("own.log"), QProcess::nullDevice());
    report.add(QStringLiteral("candump log, the reader alone"), rateOf(options, path("own.log"), {}), unit);
    report.add(QStringLiteral("candump log to own CSV"), rateOf(options, path("own.log"), path("out.csv")), unit,
               Target::AtLeast, 300);
    report.add(QStringLiteral("  the same, to nowhere"), candump, unit);
    addProgram(report, QStringLiteral("log2asc"),
               rateOfProgram(options, QStringLiteral("log2asc -I \"$0\" can0 >/dev/null"), path("own.log")), candump,
               20);
    const double pcapng = rateOf(options, path("own.pcapng"), QProcess::nullDevice(), "pcapng");
    report.add(QStringLiteral("pcapng, the reader alone"), rateOf(options, path("own.pcapng"), {}), unit);
    report.add(QStringLiteral("pcapng to pcapng"), rateOf(options, path("own.pcapng"), path("out.pcapng")), unit);
    report.add(QStringLiteral("  the same, to nowhere"), pcapng, unit);
    addProgram(report, QStringLiteral("editcap"),
               rateOfProgram(options, QStringLiteral("editcap \"$0\" /dev/null"), path("own.pcapng")), pcapng, 10);
    report.add(QStringLiteral("memory held at the end"), residentBytes() / 1e6, QStringLiteral("MB"), Target::AtMost,
               64);
    report.print();
    return report.writeJson(parser.value(QStringLiteral("json"))) ? 0 : 1;
}
