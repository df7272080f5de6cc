#include "viewer/core/CaptureComparison.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

namespace {

using Name = std::pair<quint16, FrameKey>;

bool differs(double a, double b, double threshold)
{
    const double smaller = std::min(a, b);
    return std::max(a, b) - smaller > smaller * threshold;
}

/// The frame whose bytes stand for those that never change; nothing when no frame has data.
BusFrame lastDataFrame(const OverviewedCapture &capture, const std::vector<Overview::LastRows> &lastRows, int index)
{
    const qint64 row = lastRows[static_cast<std::size_t>(index)].last;
    return row >= 0 ? capture.store.frame(row) : BusFrame();
}

std::vector<Overview::LastRows> lastRowsOf(const OverviewedCapture &capture)
{
    const qint64 covered = capture.overview.covered();
    return !capture.overview.identifiers().empty() ? capture.overview.lastRows(capture.store, covered - 1)
                                                   : std::vector<Overview::LastRows>();
}

quint64 commonBytes(const BusFrame &a, const BusFrame &b)
{
    const int length = std::min(a.length, b.length);
    return length >= BusFrame::MaxLength ? ~quint64{0} : (quint64{1} << static_cast<unsigned>(length)) - 1;
}

void compareStatistics(IdentifierDifference &difference, const IdentifierStatistics &here,
                       const IdentifierStatistics &there, const ComparisonThresholds &thresholds)
{
    const auto note = [&difference](IdentifierDifference::What what, bool isSo) {
        difference.what |= isSo ? what : 0U;
    };
    note(IdentifierDifference::Rate, differs(here.rate(), there.rate(), thresholds.rate));
    note(IdentifierDifference::Period, here.periodCount > 0 && there.periodCount > 0 &&
                                           differs(here.meanPeriod, there.meanPeriod, thresholds.period));
    note(IdentifierDifference::Length,
         here.leastLength != there.leastLength || here.greatestLength != there.greatestLength);
}

void compareBytes(IdentifierDifference &difference, const IdentifierStatistics &here, const IdentifierStatistics &there,
                  const BusFrame &frameHere, const BusFrame &frameThere)
{
    const quint64 common = commonBytes(frameHere, frameThere);
    difference.bytesChangeThere = there.changedBytes & ~here.changedBytes & common;
    difference.bytesChangeHere = here.changedBytes & ~there.changedBytes & common;
    difference.bytesOtherConstant =
        differentBytes(frameHere, frameThere) & ~here.changedBytes & ~there.changedBytes & common;
    difference.what |= difference.bytesChangeThere != 0 ? IdentifierDifference::ChangesThere : 0U;
    difference.what |= difference.bytesChangeHere != 0 ? IdentifierDifference::ChangesHere : 0U;
    difference.what |= difference.bytesOtherConstant != 0 ? IdentifierDifference::OtherConstant : 0U;
}

void compareBits(IdentifierDifference &difference, const ByteValues &here, const ByteValues &there)
{
    for (int byte = 0; byte < BusFrame::MaxLength; ++byte) {
        const BitDifference bits = compareByte(here, there, byte);
        difference.what |= bits.other != 0 ? IdentifierDifference::OtherBits : 0U;
        difference.what |= bits.movesThere != 0 ? IdentifierDifference::MovesThere : 0U;
        difference.what |= bits.movesHere != 0 ? IdentifierDifference::MovesHere : 0U;
    }
}

int countBits(unsigned bits)
{
    int count = 0;
    for (; bits != 0; bits &= bits - 1) {
        ++count;
    }
    return count;
}

} // namespace

BitDifference compareByte(const ByteValues &here, const ByteValues &there, int byte)
{
    if (!here.has(byte) || !there.has(byte)) {
        return {};
    }
    const auto at = static_cast<std::size_t>(byte);
    const unsigned changedHere = here.changedBits(byte);
    const unsigned changedThere = there.changedBits(byte);
    const auto differing = static_cast<unsigned>(here.everSet[at] ^ there.everSet[at]);
    return {differing & ~changedHere & ~changedThere, changedThere & ~changedHere, changedHere & ~changedThere};
}

int switchRank(const IdentifierDifference &difference, const ByteValues &here, const ByteValues &there)
{
    constexpr int MostBits = 8 * BusFrame::MaxLength;
    constexpr int Group = MostBits + 1; // greater than what the number of bits makes of a difference
    int other = 0;
    int moves = 0;
    for (int byte = 0; byte < BusFrame::MaxLength; ++byte) {
        const BitDifference bits = compareByte(here, there, byte);
        other += countBits(bits.other);
        moves += countBits(bits.movesThere);
    }
    if (other > 0) {
        return 6 * Group - other;
    }
    if (moves > 0) {
        return 5 * Group - moves;
    }
    const auto has = [&difference](unsigned what) {
        return (difference.what & what) != 0;
    };
    if (has(IdentifierDifference::OnlyThere)) {
        return 3 * Group;
    }
    if (has(IdentifierDifference::OnlyHere)) {
        return 2 * Group;
    }
    return difference.what != 0 ? Group : 0;
}

std::vector<IdentifierDifference> compareIdentifiers(const OverviewedCapture &here, const OverviewedCapture &there,
                                                     const ComparisonThresholds &thresholds)
{
    std::map<Name, std::pair<int, int>> indices;
    const auto &listHere = here.overview.identifiers();
    const auto &listThere = there.overview.identifiers();
    for (std::size_t i = 0; i < listHere.size(); ++i) {
        indices.emplace(Name{listHere[i].channel, listHere[i].key}, std::make_pair(static_cast<int>(i), -1));
    }
    for (std::size_t i = 0; i < listThere.size(); ++i) {
        indices.emplace(Name{listThere[i].channel, listThere[i].key}, std::make_pair(-1, -1)).first->second.second =
            static_cast<int>(i);
    }
    const std::vector<Overview::LastRows> rowsHere = lastRowsOf(here);
    const std::vector<Overview::LastRows> rowsThere = lastRowsOf(there);
    std::vector<IdentifierDifference> differences;
    for (const auto &[name, pair] : indices) {
        IdentifierDifference difference;
        std::tie(difference.channel, difference.key) = name;
        std::tie(difference.here, difference.there) = pair;
        if (difference.there < 0) {
            difference.what = IdentifierDifference::OnlyHere;
        } else if (difference.here < 0) {
            difference.what = IdentifierDifference::OnlyThere;
        } else {
            const IdentifierStatistics &one = listHere[static_cast<std::size_t>(difference.here)];
            const IdentifierStatistics &other = listThere[static_cast<std::size_t>(difference.there)];
            compareStatistics(difference, one, other, thresholds);
            compareBytes(difference, one, other, lastDataFrame(here, rowsHere, difference.here),
                         lastDataFrame(there, rowsThere, difference.there));
            if (!here.overview.byteValues().empty() && !there.overview.byteValues().empty()) {
                compareBits(difference, here.overview.byteValues()[static_cast<std::size_t>(difference.here)],
                            there.overview.byteValues()[static_cast<std::size_t>(difference.there)]);
            }
        }
        differences.push_back(difference);
    }
    return differences;
}

std::vector<IdentifierDifference> compareCaptures(const OverviewedCapture &here, const OverviewedCapture &there,
                                                  const ComparisonThresholds &thresholds)
{
    std::vector<IdentifierDifference> differences = compareIdentifiers(here, there, thresholds);
    differences.erase(std::remove_if(differences.begin(), differences.end(),
                                     [](const IdentifierDifference &difference) { return difference.what == 0; }),
                      differences.end());
    return differences;
}
