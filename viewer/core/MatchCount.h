#pragma once

#include "viewer/core/Filter.h"
#include "viewer/core/StoreRun.h"

/// How many rows of a part pass a filter.
struct MatchPart
{
    qint64 first;
    int count;
    int matches;
};

/// Counts the rows of a store that pass a filter, on all cores; see StoreRun. Keeps a number for each part only, so a
/// hundred million matches take 72 kB.
class MatchCount : public StoreRun<MatchPart>
{
public:
    using StoreRun::StoreRun;

    void start(const Filter &filter);
    /// Takes what is new.
    void update();
    /// Matches among the rows that are covered().
    qint64 matches() const { return m_matches; }
    /// Which match a row is, from 1: those up to it, row itself included. Nothing when row is not covered().
    std::optional<qint64> ordinal(const BusFrameStore &store, qint64 row) const;

private:
    Filter m_filter;
    std::vector<MatchPart> m_parts;
    qint64 m_matches = 0;
};
