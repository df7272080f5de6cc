#pragma once

#include <QtGlobal>

#include <cstring>
#include <memory>
#include <vector>

/// Payloads behind one another in blocks of memory that none straddles and that never move. Blocks are left
/// uninitialised: pages that hold no payload are never touched. Not thread-safe.
class PayloadBlocks
{
public:
    static constexpr quint32 BlockSize = 0x10000;

    /// Copies a payload of at most BlockSize bytes and returns its place. data: never null.
    std::size_t put(const void *data, quint32 size)
    {
        Q_ASSERT(size <= BlockSize);
        if (m_used + size > BlockSize) {
            addBlock();
        }
        const std::size_t place = (m_blocks.size() - 1) * BlockSize + m_used;
        std::memcpy(m_blocks.back().get() + m_used, data, size);
        m_used += size;
        return place;
    }
    const uchar *at(std::size_t place) const { return m_blocks[place / BlockSize].get() + place % BlockSize; }

    /// Drops what lies behind the payload of size bytes at place.
    void truncateBehind(std::size_t place, quint32 size);

    /// Memory taken.
    std::size_t bytes() const { return m_blocks.size() * BlockSize; }

private:
    void addBlock();

    std::vector<std::unique_ptr<uchar[]>> m_blocks;
    quint32 m_used = BlockSize + 1; ///< bytes taken in the last block; without a block, too many for any payload
};
