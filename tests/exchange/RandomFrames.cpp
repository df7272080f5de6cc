#include "tests/exchange/RandomFrames.h"

#include "device/LINFrame.h"
#include "exchange/CanLength.h"
#include "tests/exchange/ExchangeTestData.h"

#include <random>

namespace {

using Random = std::mt19937;

quint32 below(Random &random, quint32 limit)
{
    return static_cast<quint32>(random()) % limit;
}

bool isOneIn(Random &random, quint32 count)
{
    return below(random, count) == 0;
}

void fillData(BusFrame &frame, Random &random)
{
    for (std::size_t i = 0; i < frame.length; ++i) {
        frame.data[i] = static_cast<uchar>(random());
    }
}

void makeCan(BusFrame &frame, Random &random, bool isFd)
{
    frame.set(BusFrame::Extended, isOneIn(random, 2));
    frame.set(BusFrame::Fd, isFd);
    frame.set(BusFrame::BitRateSwitch, isFd && isOneIn(random, 2));
    frame.set(BusFrame::ErrorStateIndicator, isFd && isOneIn(random, 4));
    frame.identifier = below(random, isOneIn(random, 4) ? 4U : frame.is(BusFrame::Extended) ? 0x20000000U : 0x800U);
    frame.length = static_cast<quint8>(canLengthOfCode(static_cast<int>(below(random, isFd ? 16 : 9))));
    fillData(frame, random);
}

void makeLin(BusFrame &frame, Random &random)
{
    frame.set(BusFrame::Lin);
    frame.identifier = below(random, 0x40);
    frame.length = static_cast<quint8>(1 + below(random, 8));
    fillData(frame, random);
    const bool isEnhanced = isOneIn(random, 2);
    const QByteArray data(reinterpret_cast<const char *>(frame.data.data()), frame.length);
    frame.checksum = calcChecksum(static_cast<quint8>(frame.identifier), isEnhanced, data);
    frame.linState = isEnhanced ? BusFrame::ChecksumV2 : BusFrame::ChecksumV1;
}

void makeLinError(BusFrame &frame, Random &random)
{
    makeLin(frame, random);
    if (isOneIn(random, 2)) {
        frame.linState = frame.linState == BusFrame::ChecksumV1 ? BusFrame::WrongChecksumV1 : BusFrame::WrongChecksumV2;
        frame.checksum = static_cast<quint8>(frame.checksum + 1);
        return;
    }
    frame.linState = BusFrame::LinError;
    frame.length = 0;
    frame.checksum = 0;
    frame.data = {};
}

BusFrame makeOne(RandomFrames::Kind kind, Random &random)
{
    BusFrame frame;
    frame.channel = static_cast<quint16>(below(random, 4));
    frame.direction = isOneIn(random, 3) ? BusFrame::Sent : BusFrame::Received;
    switch (kind) {
    case RandomFrames::Classic:
    case RandomFrames::Fd:
        makeCan(frame, random, kind == RandomFrames::Fd);
        break;
    case RandomFrames::Remote:
        makeCan(frame, random, false);
        frame.set(BusFrame::Remote);
        frame.data = {};
        break;
    case RandomFrames::Error:
        frame.set(BusFrame::Error);
        frame.direction = BusFrame::Received;
        break;
    case RandomFrames::Lin:
        makeLin(frame, random);
        break;
    case RandomFrames::LinErrors:
        makeLinError(frame, random);
        break;
    case RandomFrames::Mixed:
        return makeOne(static_cast<RandomFrames::Kind>(below(random, RandomFrames::Lin)), random);
    }
    return frame;
}

bool isSame(const BusFrame &a, const BusFrame &b)
{
    return a.identifier == b.identifier && a.channel == b.channel && a.flags == b.flags && a.direction == b.direction &&
           a.length == b.length && a.checksum == b.checksum && a.linState == b.linState && a.data == b.data &&
           a.deviceTime == b.deviceTime;
}

} // namespace

std::vector<BusFrame> RandomFrames::make(Kind kind, int count, qint64 first, qint64 tick, quint32 seed)
{
    constexpr quint32 LongestGap = 2000000000;
    Random random(seed);
    std::vector<BusFrame> frames;
    qint64 time = first;
    for (int i = 0; i < count; ++i) {
        BusFrame frame = makeOne(kind, random);
        frame.time = time - time % tick;
        frames.push_back(frame);
        time += below(random, isOneIn(random, 50) ? LongestGap : 1000000);
    }
    return frames;
}

QString RandomFrames::difference(const std::vector<BusFrame> &actual, const std::vector<BusFrame> &expected,
                                 qint64 slack)
{
    for (std::size_t i = 0; i < std::min(actual.size(), expected.size()); ++i) {
        const BusFrame &a = actual[i];
        const BusFrame &b = expected[i];
        const bool isSameTime = a.time == b.time || (a.time != BusFrame::NoTime && b.time != BusFrame::NoTime &&
                                                     std::abs(a.time - b.time) <= slack);
        if (!isSame(a, b) || !isSameTime) {
            return QStringLiteral("frame %1: %2 (%3 ns), not %4 (%5 ns)")
                .arg(i)
                .arg(ExchangeTestData::described(a))
                .arg(a.time)
                .arg(ExchangeTestData::described(b))
                .arg(b.time);
        }
    }
    return actual.size() == expected.size()
               ? QString()
               : QStringLiteral("%1 frames, not %2").arg(actual.size()).arg(expected.size());
}
