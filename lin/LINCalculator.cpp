#include "lin/LINCalculator.h"

#include "device/LINFrame.h"
#include "lin/LINHexPairs.h"

#include <algorithm>
#include <iterator>

std::optional<LINCalculation> calculateLIN(quint8 id, int length, const QString &data, bool enhanced)
{
    QString digits;
    std::copy_if(data.begin(), data.end(), std::back_inserter(digits), [](QChar c) { return !c.isSpace(); });
    if (digits.size() < 2 * length) {
        return std::nullopt;
    }
    const QByteArray bytes = bytesOfHexPairs(digits, length);
    return LINCalculation{calcPID(id), calcChecksum(id, enhanced, bytes)};
}
