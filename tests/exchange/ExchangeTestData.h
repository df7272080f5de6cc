#pragma once

#include "exchange/ByteInput.h"
#include "exchange/ByteOutput.h"
#include "exchange/ExchangeFormat.h"
#include "exchange/Findings.h"

#include <QBuffer>
#include <QFile>
#include <QStringList>

#include <vector>

/// Captures read from bytes and written to bytes, and frames as text.
namespace ExchangeTestData {

struct Reading
{
    std::vector<BusFrame> frames;
    CaptureInfo info;
    Findings findings;
};

inline const ExchangeFormat &format(const char *name)
{
    return *exchangeFormat(QLatin1String(name));
}

/// room: how many frames are asked for at a time.
inline Reading readBytes(const ExchangeFormat &format, const QByteArray &bytes, const ReadOptions &options = {},
                         int room = 7)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    ByteInput in(buffer);
    Reading reading;
    const auto reader = format.reader(in, options, reading.findings);
    std::vector<BusFrame> batch(static_cast<std::size_t>(room));
    for (int count = 0; (count = reader->read(batch.data(), room)) > 0;) {
        reading.frames.insert(reading.frames.end(), batch.begin(), batch.begin() + count);
    }
    reading.info = reader->info();
    return reading;
}

inline QByteArray writeBytes(const ExchangeFormat &format, const std::vector<BusFrame> &frames,
                             const WriteOptions &options, Findings &findings)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    ByteOutput out(buffer);
    const auto writer = format.writer(out, options, findings);
    writer->write(frames.data(), static_cast<int>(frames.size()));
    writer->finish();
    out.flush();
    return buffer.data();
}

inline QByteArray fileBytes(const QString &name)
{
    QFile file(QStringLiteral(X9_TEST_DATA "/") + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline QString timeText(qint64 time)
{
    return time == BusFrame::NoTime ? QStringLiteral("-") : QString::number(time / 1000);
}

/// "1500000/3723004 0 rx 1AB std data [3] 01A2FF": both times in microseconds, channel, direction, identifier, kind,
/// length, data.
inline QString described(const BusFrame &frame)
{
    QStringList words = {timeText(frame.time) + QLatin1Char('/') + timeText(frame.deviceTime),
                         QString::number(frame.channel),
                         frame.direction == BusFrame::Received ? QStringLiteral("rx")
                         : frame.direction == BusFrame::Sent   ? QStringLiteral("tx")
                                                               : QStringLiteral("refused"),
                         QString::number(frame.identifier, 16).toUpper()};
    const std::pair<BusFrame::Flag, const char *> names[] = {
        {BusFrame::Extended, "ext"}, {BusFrame::Remote, "remote"},     {BusFrame::Error, "error"},
        {BusFrame::Fd, "fd"},        {BusFrame::BitRateSwitch, "brs"}, {BusFrame::ErrorStateIndicator, "esi"},
        {BusFrame::Lin, "lin"}};
    for (const auto &[flag, name] : names) {
        if (frame.is(flag)) {
            words.append(QLatin1String(name));
        }
    }
    words.append(QStringLiteral("[%1]").arg(frame.length));
    if (!frame.is(BusFrame::Remote)) {
        words.append(QString::fromLatin1(
            QByteArray(reinterpret_cast<const char *>(frame.data.data()), frame.length).toHex().toUpper()));
    }
    if (frame.is(BusFrame::Lin)) {
        words.append(QStringLiteral("%1 %2").arg(frame.checksum, 2, 16, QLatin1Char('0')).arg(int{frame.linState}));
    }
    return words.join(QLatin1Char(' ')).trimmed();
}

inline QStringList described(const std::vector<BusFrame> &frames)
{
    QStringList lines;
    for (const BusFrame &frame : frames) {
        lines.append(described(frame));
    }
    return lines;
}

/// "Line 3: text" or "Offset 20: text (2)".
inline QStringList described(const Findings &findings)
{
    static const char *const Places[] = {"Line", "Offset", "Frame", "Nowhere"};
    QStringList lines;
    for (const Finding &finding : findings.kept()) {
        lines.append(QStringLiteral("%1 %2: %3")
                         .arg(QLatin1String(Places[finding.place]))
                         .arg(finding.number)
                         .arg(finding.text) +
                     (finding.count > 1 ? QStringLiteral(" (%1)").arg(finding.count) : QString()));
    }
    return lines;
}

} // namespace ExchangeTestData
