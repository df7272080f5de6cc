#include "viewer/core/RowSet.h"

#include <algorithm>
#include <numeric>
#include <utility>

void RowSet::clear()
{
    *this = {};
}

void RowSet::append(Part part)
{
    const int begin = BusFrameStore::indexInBlock(part.first);
    if (begin == 0) {
        m_blocks.push_back({m_size, 0, true, {}});
    }
    BlockRows &block = m_blocks.back();
    const bool stayWhole = block.isWhole && block.count == begin && static_cast<int>(part.indices.size()) == part.count;
    if (!stayWhole) {
        m_memory -= static_cast<qint64>(block.indices.capacity() * sizeof(quint16));
        if (block.isWhole) {
            block.isWhole = false;
            block.indices.resize(static_cast<std::size_t>(block.count));
            std::iota(block.indices.begin(), block.indices.end(), quint16{0});
        }
        block.indices.insert(block.indices.end(), part.indices.begin(), part.indices.end());
        if (begin + part.count == BusFrameStore::BlockRows) {
            block.indices.shrink_to_fit();
        }
        m_memory += static_cast<qint64>(block.indices.capacity() * sizeof(quint16));
    }
    block.count += static_cast<int>(part.indices.size());
    m_size += static_cast<qint64>(part.indices.size());
    m_covered = part.first + part.count;
}

qint64 RowSet::at(qint64 place) const
{
    const auto behind = std::upper_bound(m_blocks.begin(), m_blocks.end(), place,
                                         [](qint64 value, const BlockRows &block) { return value < block.before; });
    const BlockRows &block = *std::prev(behind);
    const qint64 number = std::prev(behind) - m_blocks.begin();
    const qint64 inside = place - block.before;
    return (number << BusFrameStore::BlockShift) +
           (block.isWhole ? inside : block.indices[static_cast<std::size_t>(inside)]);
}

qint64 RowSet::lowerBound(qint64 row) const
{
    const qint64 number = BusFrameStore::blockOf(row);
    if (number >= static_cast<qint64>(m_blocks.size())) {
        return m_size;
    }
    const BlockRows &block = m_blocks[static_cast<std::size_t>(number)];
    const int index = BusFrameStore::indexInBlock(row);
    if (block.isWhole) {
        return block.before + std::min(index, block.count);
    }
    return block.before + (std::lower_bound(block.indices.begin(), block.indices.end(), index) - block.indices.begin());
}

bool RowSet::contains(qint64 row) const
{
    const qint64 place = lowerBound(row);
    return place < m_size && at(place) == row;
}
