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
        ChangesThere = 1U << 5U, ///< bytes that never change here but do there
        ChangesHere = 1U << 6U,  ///< the reverse
        OtherConstant = 1U << 7U ///< bytes that never change, but are not the same here and there
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

/// The identifiers that differ, in the order of channel and key. Both overviews tell channels, or neither does.
std::vector<IdentifierDifference> compareCaptures(const OverviewedCapture &here, const OverviewedCapture &there,
                                                  const ComparisonThresholds &thresholds = {});
