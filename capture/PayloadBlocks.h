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
    std::size_t put(const void *data, std::size_t size)
    {
        Q_ASSERT(size <= BlockSize);
        if (m_blocks.empty() || m_used + size > BlockSize) {
            m_blocks.emplace_back(new uchar[BlockSize]);
            m_used = 0;
        }
        const std::size_t place = (m_blocks.size() - 1) * BlockSize + m_used;
        std::memcpy(m_blocks.back().get() + m_used, data, size);
        m_used += size;
        return place;
    }
    const uchar *at(std::size_t place) const { return m_blocks[place / BlockSize].get() + place % BlockSize; }

    /// Drops what lies behind the payload of size bytes at place.
    void truncateBehind(std::size_t place, std::size_t size)
    {
        m_blocks.resize(place / BlockSize + 1);
        m_used = place % BlockSize + size;
    }

    /// Memory taken.
    std::size_t bytes() const { return m_blocks.size() * BlockSize; }

private:
    std::vector<std::unique_ptr<uchar[]>> m_blocks;
    std::size_t m_used = 0; ///< bytes taken in the last block
};
