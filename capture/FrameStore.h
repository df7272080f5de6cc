#pragma once

#include "capture/FrameRecord.h"

#include <memory>
#include <vector>

/// The rows a frame table holds, in the order they came. A row takes 20 bytes and its payload, nothing is allocated per
/// row, and growing never moves rows that are already there. Not thread-safe.
class FrameStore
{
public:
    FrameStore();
    ~FrameStore();
    FrameStore(const FrameStore &) = delete;
    FrameStore &operator=(const FrameStore &) = delete;

    int size() const { return m_size; }
    bool isEmpty() const { return m_size == 0; }
    /// index: 0 to size() - 1. The view stays valid until that row is dropped.
    FrameView at(int index) const;

    /// Keeps FrameView::MaxPayload bytes of the payload at most.
    void append(const FrameRecord &record);
    /// Drops all rows from size on; a size beyond size() changes nothing.
    void truncate(int size);
    void clear() { truncate(0); }

    /// Rows dropped by truncate() and clear() keep their memory until it is given back here, so that dropping millions
    /// of them takes no time. Gives back about maxBytes and returns true while there is more.
    bool releaseDropped(std::size_t maxBytes);

private:
    struct Chunk;

    std::vector<std::unique_ptr<Chunk>> m_chunks;
    std::vector<std::unique_ptr<Chunk>> m_dropped;
    int m_size = 0;
};
