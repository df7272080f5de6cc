#pragma once

#include "viewer/core/Overview.h"

#include <vector>

/// What differs in an identifier between two captures, here and there.
struct IdentifierDifference
{
    enum What : quint32 {
        OnlyHere = 1U << 0U,
        OnlyThere = 1U << 1U,
        Rate = 1U << 2U,
        Period = 1U << 3U,
        Length = 1U << 4U,
        ChangesThere = 1U << 5U,  ///< bytes that never change here but do there
        ChangesHere = 1U << 6U,   ///< the reverse
        OtherConstant = 1U << 7U, ///< bytes that never change, but are not the same here and there
        OtherBits = 1U << 8U,     ///< bits that never change, but are not the same here and there
        MovesThere = 1U << 9U,    ///< bits that never change here but do there
        MovesHere = 1U << 10U     ///< the reverse
    };

    FrameKey key = 0;
    quint16 channel = 0;
    quint32 what = 0; ///< What
    int here = -1;    ///< index in the overview's identifiers; -1: none
    int there = -1;
    quint64 bytesChangeThere = 0; ///< bit n: byte n
    quint64 bytesChangeHere = 0;
    quint64 bytesOtherConstant = 0;
};

/// How a byte's bits differ between two captures, here and there, in both of which it is. A switch that was moved once
/// is a bit that stays what it is here, and there, but is another one; one that is moved all the time there moves
/// there. Bits that move in both, such as counters, are neither.
struct BitDifference
{
    unsigned other = 0; ///< bits that never change, but are not the same here and there
    unsigned movesThere = 0;
    unsigned movesHere = 0;
};

BitDifference compareByte(const ByteValues &here, const ByteValues &there, int byte);
/// How much it looks like a switch that was moved, greater is more: first bits that are other ones, the fewer the more,
/// then bits that move there only, then identifiers that are there only or here only, then all else that differs. 0:
/// nothing differs.
int switchRank(const IdentifierDifference &difference, const ByteValues &here, const ByteValues &there);

struct ComparisonThresholds
{
    /// By how much of the smaller one, rates and mean periods have to differ to be told: 0.1 is a tenth.
    double rate = 0.1;
    double period = 0.1;
};

/// An overview and the store it was made of.
struct OverviewedCapture
{
    const BusFrameStore &store;
    const Overview &overview;
};

/// All identifiers in the order of channel and key. Both overviews tell channels, or neither does; bits are compared
/// where both keep byte values.
std::vector<IdentifierDifference> compareIdentifiers(const OverviewedCapture &here, const OverviewedCapture &there,
                                                     const ComparisonThresholds &thresholds = {});
/// Those that differ.
std::vector<IdentifierDifference> compareCaptures(const OverviewedCapture &here, const OverviewedCapture &there,
                                                  const ComparisonThresholds &thresholds = {});
