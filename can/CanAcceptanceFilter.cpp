#include "can/CanAcceptanceFilter.h"

#include <QtAlgorithms>

#include <algorithm>
#include <utility>

namespace {
/// Where a frame type has its bits in code and mask.
struct Layout
{
    unsigned idShift;
    quint32 idBits;
    quint32 otherBits; ///< remote bit and data bytes
};

constexpr Layout StandardLayout{21, 0xFFE00000, 0x0010FFFF};
constexpr Layout ExtendedLayout{3, 0xFFFFFFF8, 0x00000004};

constexpr Layout layoutOf(bool extended)
{
    return extended ? ExtendedLayout : StandardLayout;
}

/// Bits that are not the same in all numbers from first to last: the highest one in which these two differ and all
/// below, since x0111 and x1000 both lie between them.
quint32 varyingBits(quint32 first, quint32 last)
{
    return first == last ? 0 : 0xFFFFFFFFU >> qCountLeadingZeroBits(first ^ last);
}

/// As many as there are values for the identifier bits that are "don't care".
quint64 passingIdsOf(const CanAcceptanceFilter &filter, const Layout &layout)
{
    return quint64(1) << qPopulationCount(filter.mask & layout.idBits);
}

quint64 listedIdsOf(const QVector<CanIdRange> &listed, bool extended)
{
    QVector<std::pair<quint64, quint64>> spans; // first and one behind the last
    for (const CanIdRange &range : listed) {
        if (range.extended == extended) {
            spans.append({range.first, quint64(range.last) + 1});
        }
    }
    std::sort(spans.begin(), spans.end());
    quint64 count = 0;
    quint64 counted = 0; // identifiers below have been counted
    for (const auto &span : qAsConst(spans)) {
        const quint64 first = std::max(span.first, counted);
        counted = std::max(span.second, counted);
        count += counted - std::min(first, counted);
    }
    return count;
}
} // namespace

CanAcceptanceFilter narrowestFilter(const QVector<CanIdRange> &listed)
{
    quint32 used = 0;    // bits that are an identifier bit of a listed frame type
    quint32 ones = 0;    // of which a listed identifier has a 1 here
    quint32 zeros = 0;   // of which a listed identifier has a 0 here
    quint32 ignored = 0; // bits in which frames with a listed identifier may differ besides
    for (const CanIdRange &range : listed) {
        const Layout layout = layoutOf(range.extended);
        const quint32 varying = varyingBits(range.first, range.last);
        used |= layout.idBits;
        ones |= ((range.first | varying) << layout.idShift) & layout.idBits;
        zeros |= ((~range.first | varying) << layout.idShift) & layout.idBits;
        ignored |= layout.otherBits;
    }
    const quint32 compared = used & ~(ones & zeros) & ~ignored;
    return {ones & compared, ~compared};
}

CanPassage passage(const CanAcceptanceFilter &filter, quint32 id, bool extended)
{
    const Layout layout = layoutOf(extended);
    if ((((id << layout.idShift) ^ filter.code) & layout.idBits & ~filter.mask) != 0) {
        return CanPassage::NoFrame;
    }
    return (layout.otherBits & ~filter.mask) == 0 ? CanPassage::EveryFrame : CanPassage::SomeFrames;
}

CanIdCount passingIds(const CanAcceptanceFilter &filter)
{
    return {passingIdsOf(filter, StandardLayout), passingIdsOf(filter, ExtendedLayout)};
}

CanIdCount listedIds(const QVector<CanIdRange> &listed)
{
    return {listedIdsOf(listed, false), listedIdsOf(listed, true)};
}
