#include "exchange/database/Database.h"

#include "exchange/BusFrame.h"

#include <algorithm>

namespace {

/// Bits in the order in which a big-endian signal has them: from a byte's highest to its lowest, then the next byte.
int mirrored(int bit)
{
    return bit / 8 * 8 + 7 - bit % 8;
}

} // namespace

int DatabaseMessage::signalNumber(const QString &signalSymbol) const
{
    const auto *found = std::find_if(content.begin(), content.end(), [&signalSymbol](const DatabaseSignal &signal) {
        return signal.symbol == signalSymbol;
    });
    return found != content.end() ? static_cast<int>(found - content.begin()) : -1;
}

QVector<int> signalBits(const DatabaseSignal &signal)
{
    QVector<int> bits;
    bits.reserve(signal.length);
    for (int i = 0; i < signal.length; ++i) {
        bits.append(signal.byteOrder == DatabaseSignal::BigEndian ? mirrored(mirrored(signal.startBit) + i)
                                                                  : signal.startBit + signal.length - 1 - i);
    }
    return bits;
}

int bytesNeeded(const DatabaseSignal &signal)
{
    const int first = signal.byteOrder == DatabaseSignal::BigEndian ? mirrored(signal.startBit) : signal.startBit;
    return std::min((first + signal.length - 1) / 8 + 1, BusFrame::MaxLength + 1);
}
