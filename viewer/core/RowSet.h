#pragma once

#include "viewer/core/BusFrameStore.h"

#include <QtGlobal>

#include <optional>
#include <vector>

/// Rows of a store in their order, those that a filter passes. A row takes 2 bytes, and a block that passes as a whole
/// takes nothing. A plain value.
class RowSet
{
public:
    /// Rows [first, first + count) of one block, and the indices in the block of those that are in the set, in order.
    struct Part
    {
        qint64 first = 0;
        int count = 0;
        std::vector<quint16> indices;
    };

    /// Behind what was added before, without a gap.
    void append(Part part);
    void clear();

    qint64 size() const { return m_size; }
    /// The rows of the store that were looked at: [0, covered()).
    qint64 covered() const { return m_covered; }
    /// The row at a place of the set, 0 to size() - 1.
    qint64 at(qint64 place) const;
    /// The place of the first row of the set from row on; size() when there is none.
    qint64 lowerBound(qint64 row) const;
    bool contains(qint64 row) const;
    qint64 memory() const { return m_memory; } ///< bytes

private:
    struct BlockRows
    {
        qint64 before; ///< rows of the set in earlier blocks
        int count;
        bool isWhole; ///< rows 0 to count - 1 of the block, and indices is empty
        std::vector<quint16> indices;
    };

    std::vector<BlockRows> m_blocks;
    qint64 m_size = 0;
    qint64 m_covered = 0;
    qint64 m_memory = 0;
};
