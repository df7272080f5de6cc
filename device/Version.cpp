#include "device/Version.h"

#include <QStringList>

#include <algorithm>

namespace {
constexpr int NoVersion = -2;
} // namespace

int compareVersion(const QString &a, const QString &b)
{
    if (a.compare(b, Qt::CaseInsensitive) == 0) {
        return 0;
    }
    const QStringList partsOfA = a.split(QLatin1Char('.'), Qt::SkipEmptyParts);
    const QStringList partsOfB = b.split(QLatin1Char('.'), Qt::SkipEmptyParts);
    const int common = std::min(partsOfA.size(), partsOfB.size());
    for (int part = 0; part < common; ++part) {
        bool isNumberA = false;
        bool isNumberB = false;
        const qlonglong numberA = partsOfA.at(part).toLongLong(&isNumberA);
        const qlonglong numberB = partsOfB.at(part).toLongLong(&isNumberB);
        if (!isNumberA || !isNumberB) {
            return NoVersion;
        }
        if (numberA != numberB) {
            return numberA > numberB ? 1 : -1;
        }
    }
    return 0;
}
