// Loading: the four file types through CANFile, beside a plain read of the same bytes, and as a measure the same CSV
// through a text stream and split strings.

#include "bench/bench_capture.h"

#include "capture/CANFile.h"
#include "capture/CaptureInput.h"
#include "capture/CaptureWriter.h"
#include "capture/FrameStore.h"
#include "tests/capture/CaptureTestData.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

namespace {

void fill(FrameStore &store, int frames, int size)
{
    for (quint32 time = 0; store.size() < frames; ++time) {
        for (const FrameRecord &record : receivedBatch(2500, size, time)) {
            store.append(record);
        }
    }
}

/// All bytes of the file through a buffer as large as the reader's.
quint64 readOnly(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        qFatal("cannot read %s", qPrintable(path));
    }
    const std::unique_ptr<char[]> buffer(new char[CaptureInput::PieceSize]);
    quint64 sum = 0;
    qint64 got = 0;
    while ((got = file.read(buffer.get(), CaptureInput::PieceSize)) > 0) {
        sum += static_cast<uchar>(buffer[0]) + static_cast<quint64>(got);
    }
    return sum;
}

/// What a text stream and split strings make of the lines of an own .csv file.
std::vector<CaptureFrame> readThroughStream(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qFatal("cannot read %s", qPrintable(path));
    }
    QTextStream in(&file);
    in.readLine();
    in.readLine();
    std::vector<CaptureFrame> frames;
    while (!in.atEnd()) {
        const QStringList cells = in.readLine().split(QLatin1Char(','));
        bool isNumber = false;
        CaptureFrame frame;
        const quint32 id = cells.value(4).toUInt(&isNumber, 16);
        if (isNumber) {
            const QString protocol = cells.value(5);
            frame.idWord = CaptureFrame::toIdWord(id, false, cells.value(7) == QLatin1String("Extend"));
            frame.data = QByteArray::fromHex(cells.last().toLatin1()).left(8);
            frame.attributes = CaptureFrame::toAttributes(frame.data.size(), protocol == QLatin1String("CAN")     ? 0
                                                                             : protocol == QLatin1String("CANFD") ? 1
                                                                                                                  : 2);
            frames.push_back(frame);
        }
    }
    return frames;
}

/// Median MB per second of processor time.
template<typename Read>
double rateOf(const QString &path, int repetitions, Read read)
{
    std::vector<double> rates;
    for (int i = 0; i < repetitions; ++i) {
        releaseFreeMemory(); // each run meets fresh memory
        const double begin = cpuSeconds();
        read();
        rates.push_back(static_cast<double>(QFileInfo(path).size()) / 1e6 / (cpuSeconds() - begin));
    }
    return median(rates);
}

/// Resident memory the frames of a file take, per byte of the frames themselves.
double memoryRatio(const QString &path)
{
    releaseFreeMemory();
    const double before = residentBytes();
    CANFile file;
    if (!file.load(path)) {
        qFatal("cannot load %s", qPrintable(path));
    }
    const double held = residentBytes() - before;
    return held / static_cast<double>(file.frames().size() * (12 + file.frames().at(0).data.size()));
}

void benchType(BenchReport &report, const CaptureBenchOptions &options, const QString &path, double goal,
               const QString &frames)
{
    const QString unit = QStringLiteral("MB/s CPU");
    const double load = rateOf(path, options.repetitions, [&] {
        CANFile file;
        if (!file.load(path) || file.frames().size() != options.frames) {
            qFatal("%s was not read whole", qPrintable(path));
        }
    });
    quint64 sum = 0;
    const double plain = rateOf(path, options.repetitions, [&] { sum += readOnly(path); });
    const QString ending = QFileInfo(path).suffix();
    report.add(QStringLiteral("load .%1, %2").arg(ending, frames), load, unit, BenchReport::Target::AtLeast, goal);
    report.add(sum > 0 ? QStringLiteral("  plain read of the same bytes") : QString(), plain, unit);
    report.add(QStringLiteral("  time of load against the plain read"), plain / load, QStringLiteral("times"));
    report.add(QStringLiteral("  memory against the frames' own size"), memoryRatio(path), QStringLiteral("times"),
               BenchReport::Target::AtMost, 2);
}

void benchStream(BenchReport &report, const CaptureBenchOptions &options, const QString &path)
{
    const QString unit = QStringLiteral("MB/s CPU");
    const double stream = rateOf(path, 1, [&] {
        const std::vector<CaptureFrame> frames = readThroughStream(path);
        CANFile file;
        if (!file.load(path) || static_cast<qint64>(frames.size()) != file.frames().size()) {
            qFatal("the reference reads other frames");
        }
        for (const CaptureFrame &expected : frames) {
            const CaptureFrame frame = file.next();
            if (frame.idWord != expected.idWord || frame.attributes != expected.attributes ||
                frame.data != expected.data) {
                qFatal("the reference reads other frames");
            }
        }
    });
    const double load = rateOf(path, options.repetitions, [&] { CANFile().load(path); });
    report.add(QStringLiteral("  text stream with split strings, .csv"), stream, unit);
    report.add(QStringLiteral("  .csv against the text stream"), load / stream, QStringLiteral("times"));
}

} // namespace

void benchLoad(BenchReport &report, const CaptureBenchOptions &options, int size)
{
    FrameStore store;
    fill(store, options.frames, size);
    const QString frames = QStringLiteral("%1-byte frames").arg(size);
    const QDir folder(options.folder);
    for (const CANFile::FileType type : {CANFile::CSV, CANFile::Text, CANFile::CAN, CANFile::CANFD}) {
        const CaptureFormat &format = captureFormat(type);
        const QString path = folder.filePath(QStringLiteral("bench_load") + QLatin1String(format.ending));
        if (!saveCapture(path, store, 0, options.frames, CaptureTestData::englishLabels())) {
            qFatal("cannot write %s", qPrintable(path));
        }
        benchType(report, options, path, format.separator != nullptr ? 400 : 500, frames);
        if (format.type == CANFile::CSV) {
            benchStream(report, options, path);
        }
        QFile::remove(path);
    }
}
