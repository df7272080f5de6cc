#include "viewer/core/MatchCount.h"

void MatchCount::start(const Filter &filter)
{
    m_filter = filter;
    m_parts.clear();
    m_matches = 0;
    StoreRun::start([filter](const BusFrameStore &store, qint64 first, int count) {
        std::vector<quint16> indices;
        filter.passing(store, first, count, indices);
        return MatchPart{first, count, static_cast<int>(indices.size())};
    });
}

void MatchCount::update()
{
    for (const MatchPart &part : take()) {
        m_parts.push_back(part);
        m_matches += part.matches;
    }
}

std::optional<qint64> MatchCount::ordinal(const BusFrameStore &store, qint64 row) const
{
    qint64 before = 0;
    for (const MatchPart &part : m_parts) {
        if (row < part.first + part.count) {
            std::vector<quint16> indices;
            m_filter.passing(store, part.first, static_cast<int>(row - part.first) + 1, indices);
            return before + static_cast<qint64>(indices.size());
        }
        before += part.matches;
    }
    return std::nullopt;
}
