// Fuzz target: any bytes, read as a capture of another program's kind, must give frames that can be, and the same ones
// however many are asked for at a time and however the file grows. The first byte is the size of the pieces.

#include "exchange/ByteInput.h"
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

void requireFrame(const BusFrame &frame)
{
    const bool isLong = frame.is(BusFrame::Fd);
    const quint32 limit = frame.is(BusFrame::Lin)                                     ? 0x3F
                          : frame.is(BusFrame::Extended) || frame.is(BusFrame::Error) ? 0x1FFFFFFF
                                                                                      : 0x7FF;
    require(frame.length <= (isLong ? BusFrame::MaxLength : 8) && frame.identifier <= limit);
    require(!frame.is(BusFrame::Remote) || !isLong);
    require(isLong || !(frame.is(BusFrame::BitRateSwitch) || frame.is(BusFrame::ErrorStateIndicator)));
    const auto *const begin = frame.data.begin() + (frame.is(BusFrame::Remote) ? 0 : frame.length);
    require(std::all_of(begin, frame.data.end(), [](uchar byte) { return byte == 0; }));
}

std::vector<BusFrame> readFrames(const QByteArray &bytes, int pieceSize, bool isGrowing)
{
    const ExchangeFormat *format = exchangeFormat(QStringLiteral(X9_FUZZ_FORMAT));
    require(format != nullptr);
    format->recognises({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    QBuffer buffer;
    buffer.open(QIODevice::ReadWrite);
    ByteInput in(buffer);
    in.setGrowing(isGrowing);
    Findings findings;
    const auto reader = format->reader(in, {}, findings);
    std::vector<BusFrame> frames;
    std::vector<BusFrame> batch(static_cast<std::size_t>(pieceSize));
    const auto readAll = [&] {
        for (int count = 0; (count = reader->read(batch.data(), pieceSize)) > 0;) {
            require(count <= pieceSize);
            frames.insert(frames.end(), batch.begin(), batch.begin() + count);
        }
    };
    for (int at = 0; isGrowing && at < bytes.size(); at += pieceSize) {
        buffer.buffer().append(bytes.mid(at, pieceSize));
        readAll();
    }
    if (!isGrowing) {
        buffer.buffer() = bytes;
    }
    in.setGrowing(false);
    readAll();
    return frames;
}

bool isSame(const BusFrame &a, const BusFrame &b)
{
    return a.time == b.time && a.identifier == b.identifier && a.channel == b.channel && a.flags == b.flags &&
           a.direction == b.direction && a.length == b.length && a.checksum == b.checksum && a.linState == b.linState &&
           a.data == b.data;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0) {
        return 0;
    }
    const QByteArray bytes(reinterpret_cast<const char *>(data) + 1, static_cast<int>(size) - 1);
    const auto frames = readFrames(bytes, 100, false);
    std::for_each(frames.begin(), frames.end(), requireFrame);
    const auto pieces = readFrames(bytes, 1 + data[0], true);
    require(std::equal(frames.begin(), frames.end(), pieces.begin(), pieces.end(), isSame));
    return 0;
}
