#include "exchange/PcapngTime.h"

#include "exchange/BusFrame.h"

namespace {

constexpr quint64 NsPerSecond = 1000000000;

struct Split
{
    quint64 seconds;
    quint64 nanoseconds;
};

quint64 powerOfTen(unsigned exponent)
{
    quint64 power = 1;
    for (unsigned i = 0; i < exponent; ++i) {
        power *= 10;
    }
    return power;
}

Split splitDecimal(quint64 ticks, unsigned exponent)
{
    constexpr unsigned MostDigits = 19; // of what fits into 64 bits
    if (exponent > MostDigits) {
        const unsigned dropped = exponent - MostDigits;
        ticks = dropped > MostDigits ? 0 : ticks / powerOfTen(dropped);
        exponent = MostDigits;
    }
    const quint64 perSecond = powerOfTen(exponent);
    const quint64 rest = ticks % perSecond;
    return {ticks / perSecond, exponent <= 9 ? rest * powerOfTen(9 - exponent) : rest / powerOfTen(exponent - 9)};
}

Split splitBinary(quint64 ticks, unsigned exponent)
{
    constexpr unsigned MostBits = 34; // so many, times NsPerSecond, fit into 64
    if (exponent > MostBits) {
        const unsigned dropped = exponent - MostBits;
        const quint64 seconds = exponent < 64 ? ticks >> exponent : 0;
        const quint64 rest = exponent < 64 ? ticks & ((quint64(1) << exponent) - 1) : ticks;
        return {seconds, (dropped < 64 ? rest >> dropped : 0) * NsPerSecond >> MostBits};
    }
    const quint64 rest = ticks & ((quint64(1) << exponent) - 1);
    return {ticks >> exponent, rest * NsPerSecond >> exponent};
}

} // namespace

qint64 PcapngTime::converted(quint64 ticks) const
{
    constexpr quint8 Binary = 0x80;
    constexpr qint64 MostSeconds = std::numeric_limits<qint64>::max() / qint64(NsPerSecond) - 1;
    const unsigned exponent = resolution & ~unsigned(Binary) & 0xFFU;
    const Split split = (resolution & Binary) != 0 ? splitBinary(ticks, exponent) : splitDecimal(ticks, exponent);
    if (split.seconds > quint64(MostSeconds) || offset > MostSeconds || offset < -MostSeconds) {
        return BusFrame::NoTime;
    }
    const qint64 seconds = static_cast<qint64>(split.seconds) + offset;
    if (seconds < -MostSeconds || seconds > MostSeconds) {
        return BusFrame::NoTime;
    }
    return seconds * qint64(NsPerSecond) + static_cast<qint64>(split.nanoseconds);
}
