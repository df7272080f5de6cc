// Fuzz target: any bytes, read as a capture of one kind, must give frames that a bus can carry, and the same ones
// however many are asked for at a time and while the bytes come one piece after the other.

#include "exchange/ByteInput.h"
#include "exchange/ByteOutput.h"
#include "exchange/ExchangeFormat.h"
#include "exchange/Findings.h"

#include <QBuffer>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

void require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

const ExchangeFormat &format()
{
    static const ExchangeFormat *found = exchangeFormat(QStringLiteral(X9_FUZZ_FORMAT));
    return *found;
}

bool isSame(const BusFrame &a, const BusFrame &b)
{
    return a.time == b.time && a.deviceTime == b.deviceTime && a.identifier == b.identifier && a.channel == b.channel &&
           a.flags == b.flags && a.direction == b.direction && a.length == b.length && a.checksum == b.checksum &&
           a.linState == b.linState && a.data == b.data;
}

bool isPossible(const BusFrame &frame)
{
    const quint32 highest = frame.is(BusFrame::Lin)                                     ? 0x3FU
                            : frame.is(BusFrame::Extended) || frame.is(BusFrame::Error) ? 0x1FFFFFFFU
                                                                                        : 0x7FFU;
    const bool isEmptyBehind = std::all_of(frame.data.begin() + (frame.is(BusFrame::Remote) ? 0 : frame.length),
                                           frame.data.end(), [](uchar byte) { return byte == 0; });
    return frame.identifier <= highest && frame.length <= (frame.is(BusFrame::Fd) ? 64 : 8) && isEmptyBehind;
}

std::vector<BusFrame> readAll(const QByteArray &bytes, int room)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    ByteInput in(buffer);
    Findings findings;
    const auto reader = format().reader(in, {QDateTime(QDate(2026, 3, 4), QTime(12, 0), Qt::UTC)}, findings);
    std::vector<BusFrame> frames;
    std::vector<BusFrame> batch(static_cast<std::size_t>(room));
    for (int count = 0; (count = reader->read(batch.data(), room)) > 0;) {
        frames.insert(frames.end(), batch.begin(), batch.begin() + count);
    }
    return frames;
}

/// What is written of frames that were read is read again as it was.
void requireRoundTrip(const std::vector<BusFrame> &frames)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    ByteOutput out(buffer);
    Findings findings;
    WriteOptions options;
    options.info.timeBase = CaptureInfo::Absolute;
    options.encoding = "UTF-8";
    const auto writer = format().writer(out, options, findings);
    writer->write(frames.data(), static_cast<int>(frames.size()));
    writer->finish();
    out.flush();
    const std::vector<BusFrame> again = readAll(buffer.data(), 64);
    require(again.size() == frames.size());
    for (std::size_t i = 0; i < frames.size(); ++i) {
        require(again[i].identifier == frames[i].identifier && again[i].flags == frames[i].flags &&
                again[i].length == frames[i].length && again[i].data == frames[i].data);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    format().recognises({bytes.constData(), size});
    const std::vector<BusFrame> frames = readAll(bytes, 64);
    const std::vector<BusFrame> single = readAll(bytes, 1);
    require(frames.size() == single.size() && frames.size() <= size);
    for (std::size_t i = 0; i < frames.size(); ++i) {
        require(isSame(frames[i], single[i]));
        require(isPossible(frames[i]));
    }
    requireRoundTrip(frames);
    return 0;
}
