#pragma once

#include "adapter/CanFrame.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

namespace va {

/// A received frame as it waits in a queue; valid until the queue is changed.
struct WaitingFrame : FrameHead
{
    std::uint32_t timeMs = 0; ///< since the channel was started
    const std::uint8_t *data = nullptr;
};

/// First-in first-out store of received frames, bounded by number. Frames lie packed in blocks of 64 KiB that are
/// allocated as needed and used again, so an 8-byte frame takes 20 bytes and a 64-byte frame 76.
class FrameQueue
{
public:
    explicit FrameQueue(std::size_t limit);
    ~FrameQueue();
    FrameQueue(FrameQueue &&) noexcept;

    std::size_t size() const { return m_size; }
    bool isFull() const { return m_size >= m_limit; }
    /// Stores a copy. Must not be called on a full queue.
    void push(const CanFrame &frame, std::uint32_t timeMs);
    /// The oldest frame. Must not be called on an empty queue, nor must pop().
    WaitingFrame front() const;
    void pop();
    /// Drops every frame and gives the memory back.
    void clear();

private:
    struct Block;

    void appendBlock();
    void retireFrontBlock();

    std::size_t m_limit;
    std::size_t m_size = 0;
    std::size_t m_readAt = 0; ///< offset of the oldest frame in the first block
    std::deque<std::unique_ptr<Block>> m_blocks;
    std::vector<std::unique_ptr<Block>> m_spare;
};

} // namespace va
