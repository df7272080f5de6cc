#include "viewer/core/ComparisonWork.h"

#include "viewer/core/FrameColumns.h"

#include <algorithm>
#include <utility>

namespace {

constexpr qint64 SliceRows = BusFrameStore::BlockRows / 2;

} // namespace

bool operator==(const CapturePart &a, const CapturePart &b)
{
    return a.store == b.store && a.first == b.first && a.end == b.end;
}

ComparisonWork::Side::Side(CapturePart itsPart, bool tellsChannels)
    : part(std::move(itsPart))
    , overview(tellsChannels)
{
    overview.beginAt(part.first);
    overview.keepByteValues();
}

/// Rows that are still to be taken.
qint64 ComparisonWork::Side::left() const
{
    return std::max<qint64>(0, std::min(part.store->size(), part.end) - overview.covered());
}

ComparisonWork::ComparisonWork(CapturePart here, CapturePart there, bool tellsChannels,
                               const ComparisonThresholds &thresholds)
    : m_here(std::move(here), tellsChannels)
    , m_there(std::move(there), tellsChannels)
    , m_thresholds(thresholds)
{
}

ComparisonWork::~ComparisonWork() = default;

bool ComparisonWork::work()
{
    // Both sides in turn, so that the first result is one of both.
    qint64 taken = 0;
    for (Side *side : {&m_here, &m_there}) {
        taken += side->overview.add(*side->part.store, std::min(SliceRows, side->left()));
    }
    return taken > 0;
}

Comparison ComparisonWork::result() const
{
    Comparison comparison;
    comparison.rowsHere = m_here.overview.covered() - m_here.part.first;
    comparison.rowsThere = m_there.overview.covered() - m_there.part.first;
    comparison.isComplete = m_here.left() == 0 && m_there.left() == 0;
    const auto take = [](const Overview &overview, int index, IdentifierStatistics &statistics, ByteValues &bytes) {
        if (index >= 0) {
            statistics = overview.identifiers()[static_cast<std::size_t>(index)];
            bytes = overview.byteValues()[static_cast<std::size_t>(index)];
        }
    };
    for (const IdentifierDifference &difference : compareIdentifiers(
             {*m_here.part.store, m_here.overview}, {*m_there.part.store, m_there.overview}, m_thresholds)) {
        ComparedIdentifier identifier;
        identifier.difference = difference;
        take(m_here.overview, difference.here, identifier.here, identifier.bytesHere);
        take(m_there.overview, difference.there, identifier.there, identifier.bytesThere);
        identifier.rank = switchRank(difference, identifier.bytesHere, identifier.bytesThere);
        comparison.identifiers.push_back(identifier);
    }
    return comparison;
}

QString filterOfByte(const ComparedIdentifier &identifier, int byte)
{
    const BitDifference bits = compareByte(identifier.bytesHere, identifier.bytesThere, byte);
    const unsigned mask = bits.other != 0 ? bits.other : bits.movesThere;
    if (mask == 0) {
        return {};
    }
    const auto at = static_cast<std::size_t>(byte);
    const auto hex = [](unsigned value) {
        return QStringLiteral("0x%1").arg(value, 2, 16, QLatin1Char('0'));
    };
    const bool isOther = bits.other != 0;
    return QStringLiteral("%1 and data[%2] & %3 %4 %5")
        .arg(FrameColumns::identifierFilter(identifier.difference.key))
        .arg(byte)
        .arg(hex(mask), isOther ? QStringLiteral("==") : QStringLiteral("!="),
             hex((isOther ? identifier.bytesThere : identifier.bytesHere).everSet[at] & mask));
}
