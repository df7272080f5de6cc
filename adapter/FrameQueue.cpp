#include "adapter/FrameQueue.h"

#include <array>
#include <cstring>

namespace va {

namespace {

constexpr std::size_t BlockSize = std::size_t{64} * 1024;
/// Empty blocks kept for the next frames: enough for the default limit of 8-byte frames.
constexpr std::size_t MaxSpareBlocks = 64;

constexpr std::uint8_t FlagExtended = 0x01;
constexpr std::uint8_t FlagRemote = 0x02;
constexpr unsigned FormatShift = 2;

struct Header
{
    std::uint32_t id;
    std::uint32_t timeMs;
    std::uint8_t flags;
    std::uint8_t length;
    std::uint8_t dataSize;
    std::uint8_t unused;
};
static_assert(sizeof(Header) == 12);

std::size_t storedSize(std::uint8_t dataSize)
{
    return sizeof(Header) + ((dataSize + std::size_t{3}) & ~std::size_t{3});
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
    const std::uint8_t dataSize = frame.dataSize();
    const std::size_t size = storedSize(dataSize);
    if (m_blocks.empty() || BlockSize - m_blocks.back()->used < size) {
        appendBlock();
    }
    Block &block = *m_blocks.back();
    std::uint8_t *place = block.bytes.data() + block.used;
    const auto flags =
        static_cast<std::uint8_t>((frame.extended ? FlagExtended : 0U) | (frame.remote ? FlagRemote : 0U) |
                                  (static_cast<unsigned>(frame.format) << FormatShift));
    const Header header{frame.id, timeMs, flags, frame.length, dataSize, 0};
    std::memcpy(place, &header, sizeof header);
    std::memcpy(place + sizeof header, frame.data.data(), dataSize);
    block.used += size;
    ++m_size;
}

WaitingFrame FrameQueue::front() const
{
    const std::uint8_t *place = m_blocks.front()->bytes.data() + m_readAt;
    Header header;
    std::memcpy(&header, place, sizeof header);
    WaitingFrame frame;
    frame.id = header.id;
    frame.timeMs = header.timeMs;
    frame.extended = (header.flags & FlagExtended) != 0;
    frame.remote = (header.flags & FlagRemote) != 0;
    frame.format = static_cast<FrameFormat>(header.flags >> FormatShift);
    frame.length = header.length;
    frame.dataSize = header.dataSize;
    frame.data = place + sizeof header;
    return frame;
}

void FrameQueue::pop()
{
    Header header;
    std::memcpy(&header, m_blocks.front()->bytes.data() + m_readAt, sizeof header);
    m_readAt += storedSize(header.dataSize);
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
