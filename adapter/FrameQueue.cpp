#include "adapter/FrameQueue.h"

#include <array>
#include <cstring>

namespace va {

namespace {

constexpr std::size_t BlockSize = std::size_t{64} * 1024;
/// Empty blocks kept for the next frames: enough for the default limit of 8-byte frames.
constexpr std::size_t MaxSpareBlocks = 64;

/// A stored frame is its head, its time and its data bytes.
constexpr std::size_t TimeAt = sizeof(FrameHead);
constexpr std::size_t DataAt = TimeAt + sizeof(std::uint32_t);
static_assert(DataAt == 12);

std::size_t storedSize(const FrameHead &frame)
{
    return DataAt + ((frame.dataSize() + std::size_t{3}) & ~std::size_t{3});
}

} // namespace

struct FrameQueue::Block
{
    Block() {} // NOLINT(modernize-use-equals-default): leaves the bytes untouched, a defaulted one would clear them
    std::size_t used = 0;
    std::array<std::uint8_t, BlockSize> bytes;
};

FrameQueue::FrameQueue(std::size_t limit)
    : m_limit(limit)
{
}

FrameQueue::~FrameQueue() = default;
FrameQueue::FrameQueue(FrameQueue &&) noexcept = default;

void FrameQueue::push(const CanFrame &frame, std::uint32_t timeMs)
{
    const std::size_t size = storedSize(frame);
    if (m_blocks.empty() || BlockSize - m_blocks.back()->used < size) {
        appendBlock();
    }
    Block &block = *m_blocks.back();
    std::uint8_t *place = block.bytes.data() + block.used;
    const FrameHead &head = frame;
    std::memcpy(place, &head, sizeof head);
    std::memcpy(place + TimeAt, &timeMs, sizeof timeMs);
    std::memcpy(place + DataAt, frame.data.data(), frame.dataSize());
    block.used += size;
    ++m_size;
}

WaitingFrame FrameQueue::front() const
{
    const std::uint8_t *place = m_blocks.front()->bytes.data() + m_readAt;
    WaitingFrame frame;
    FrameHead &head = frame;
    std::memcpy(&head, place, sizeof head);
    std::memcpy(&frame.timeMs, place + TimeAt, sizeof frame.timeMs);
    frame.data = place + DataAt;
    return frame;
}

void FrameQueue::pop()
{
    m_readAt += storedSize(front());
    --m_size;
    if (m_readAt == m_blocks.front()->used) {
        retireFrontBlock();
    }
}

void FrameQueue::clear()
{
    m_blocks.clear();
    m_spare.clear();
    m_size = 0;
    m_readAt = 0;
}

void FrameQueue::appendBlock()
{
    if (m_spare.empty()) {
        m_blocks.push_back(std::make_unique<Block>());
        return;
    }
    m_blocks.push_back(std::move(m_spare.back()));
    m_spare.pop_back();
}

void FrameQueue::retireFrontBlock()
{
    std::unique_ptr<Block> block = std::move(m_blocks.front());
    m_blocks.pop_front();
    m_readAt = 0;
    if (m_spare.size() < MaxSpareBlocks) {
        block->used = 0;
        m_spare.push_back(std::move(block));
    }
}

} // namespace va
