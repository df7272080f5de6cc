// Saving: the four file types through the table, and as a measure the same CSV through a text stream.

#include "bench/bench_capture.h"

#include "capture/CaptureFormat.h"
#include "capture/CTableViewCAN.h"
#include "capture/FrameCells.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include <array>

namespace {

/// The same lines as the .csv file, the way they are written with strings and a stream.
void saveThroughStream(const QString &path, const std::vector<FrameRecord> &frames)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        qFatal("cannot write %s", qPrintable(path));
    }
    QTextStream out(&file);
    out << "Vantora CAN Data\nNo.,System Time,Time Stamp,Direction,ID,Protocol,Format,Type,Length,Data\n";
    int number = 0;
    for (const FrameRecord &frame : frames) {
        const quint32 t = frame.timeStamp;
        QString payload;
        for (const char byte : frame.data) {
            payload += QStringLiteral("%1 ").arg(static_cast<uchar>(byte), 2, 16, QLatin1Char('0')).toUpper();
        }
        const std::array<QString, 10> cells = {
            QString::number(++number),
            frame.systemTime,
            QStringLiteral("%1:%2:%3.%4").arg(t / 3600000 % 24).arg(t / 60000 % 60).arg(t / 1000 % 60).arg(t % 1000),
            QStringLiteral("Revice"),
            QStringLiteral("0x") + QString::number(frame.id, 16).toUpper(),
            frame.protocol == FrameRecord::CAN ? QStringLiteral("CAN") : QStringLiteral("CANFD Speed"),
            frame.remote ? QStringLiteral("Remote") : QStringLiteral("Data"),
            frame.extended ? QStringLiteral("Extend") : QStringLiteral("Standard"),
            QStringLiteral("0x") + QString::number(frame.data.size(), 16).toUpper(),
            payload};
        for (std::size_t i = 0; i < cells.size(); ++i) {
            out << (i > 0 ? QStringLiteral(",") : QString()) << cells[i];
        }
        out << '\n';
    }
    out << '\n';
}

template<typename Save>
double megabytesPerSecond(const QString &path, int repetitions, Save save)
{
    std::vector<double> rates;
    for (int i = 0; i < repetitions; ++i) {
        QFile::remove(path);
        const double begin = cpuSeconds();
        save();
        const double seconds = cpuSeconds() - begin;
        rates.push_back(static_cast<double>(QFileInfo(path).size()) / 1e6 / seconds);
    }
    return median(rates);
}

bool isSameContent(const QString &a, const QString &b)
{
    QFile first(a);
    QFile second(b);
    return first.open(QIODevice::ReadOnly) && second.open(QIODevice::ReadOnly) && first.readAll() == second.readAll();
}

} // namespace

void benchSave(BenchReport &report, const CaptureBenchOptions &options, int size)
{
    CTableViewCAN table;
    std::vector<FrameRecord> some;
    for (quint32 i = 0; table.rowCount() < options.frames; ++i) {
        const QVector<FrameRecord> batch = receivedBatch(2500, size, i);
        if (table.rowCount() < options.frames / 10) {
            some.insert(some.end(), batch.begin(), batch.end());
        }
        table.append(batch);
        table.refresh();
    }
    const QDir folder(options.folder);
    const QString unit = QStringLiteral("MB/s CPU");
    double csv = 0;
    for (const CANFile::FileType type : {CANFile::CSV, CANFile::Text, CANFile::CAN, CANFile::CANFD}) {
        const CaptureFormat &format = captureFormat(type);
        const QString ending = QLatin1String(format.ending);
        const QString path = folder.filePath(QStringLiteral("bench_capture") + ending);
        const double rate = megabytesPerSecond(path, options.repetitions, [&] {
            if (!table.save(path)) {
                qFatal("cannot write %s", qPrintable(path));
            }
        });
        report.add(QStringLiteral("save %1, %2-byte frames").arg(ending).arg(size), rate, unit,
                   BenchReport::Target::AtLeast, 500);
        if (format.type == CANFile::CSV) {
            csv = rate;
        }
        QFile::remove(path);
    }
    const QString reference = folder.filePath(QStringLiteral("bench_capture_stream.csv"));
    const double stream =
        megabytesPerSecond(reference, options.repetitions, [&] { saveThroughStream(reference, some); });
    report.add(QStringLiteral("  text stream with strings, .csv"), stream, unit);
    report.add(QStringLiteral("  .csv against the text stream"), csv / stream, QStringLiteral("times"));
    const QString own = folder.filePath(QStringLiteral("bench_capture_some.csv"));
    if (!table.save(own, static_cast<int>(some.size())) || !isSameContent(own, reference)) {
        qFatal("the reference writes other bytes");
    }
    QFile::remove(own);
    QFile::remove(reference);
}
