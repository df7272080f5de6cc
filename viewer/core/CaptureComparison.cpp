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
    return covered > 0 ? capture.overview.lastRows(capture.store, covered - 1) : std::vector<Overview::LastRows>();
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

} // namespace

std::vector<IdentifierDifference> compareCaptures(const OverviewedCapture &here, const OverviewedCapture &there,
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
        }
        if (difference.what != 0) {
            differences.push_back(difference);
        }
    }
    return differences;
}
