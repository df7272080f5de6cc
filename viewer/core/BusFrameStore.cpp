#include "viewer/core/BusFrameStore.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace {

constexpr unsigned DirectionBits = 2;
constexpr unsigned DirectionMask = (1U << DirectionBits) - 1;

std::size_t position(int index)
{
    return static_cast<std::size_t>(index);
}

} // namespace

BusFrame::Direction BusFrameStore::Block::direction(int index) const
{
    return static_cast<BusFrame::Direction>(m_state[position(index)] & DirectionMask);
}

const uchar *BusFrameStore::Block::longData(int index) const
{
    const std::size_t offset = m_longOffsets[position(index)];
    return m_pieces[offset / PieceSize].get() + offset % PieceSize;
}

BusFrame BusFrameStore::Block::frame(int index) const
{
    const std::size_t at = position(index);
    BusFrame frame;
    frame.time = time[at];
    frame.deviceTime = deviceTime[at];
    frame.identifier = identifier[at];
    frame.channel = channel[at];
    frame.flags = flags[at];
    frame.direction = direction(index);
    frame.length = length[at];
    frame.checksum = m_checksum[at];
    frame.linState = static_cast<BusFrame::LinState>(m_state[at] >> DirectionBits);
    std::copy(shortData[at].begin(), shortData[at].end(), frame.data.begin());
    if (frame.length > ShortLength) {
        std::copy_n(longData(index), frame.length - ShortLength, frame.data.begin() + ShortLength);
    }
    return frame;
}

void BusFrameStore::Block::set(int index, const BusFrame &frame)
{
    const std::size_t at = position(index);
    const int size = std::min<int>(frame.length, BusFrame::MaxLength);
    if (size > ShortLength) {
        keepLongData(index, frame); // first, as it may throw
    }
    time[at] = frame.time;
    deviceTime[at] = frame.deviceTime;
    identifier[at] = frame.identifier;
    channel[at] = frame.channel;
    flags[at] = frame.flags;
    length[at] = static_cast<quint8>(size);
    shortData[at].fill(0);
    std::copy_n(frame.data.begin(), std::min(size, ShortLength), shortData[at].begin());
    m_state[at] = static_cast<quint8>(frame.direction | frame.linState << DirectionBits);
    m_checksum[at] = frame.checksum;
    if (frame.time > m_greatestTime.load(std::memory_order_relaxed)) {
        m_greatestTime.store(frame.time, std::memory_order_relaxed);
    }
}

void BusFrameStore::Block::keepLongData(int index, const BusFrame &frame)
{
    const auto size = static_cast<std::size_t>(std::min<int>(frame.length, BusFrame::MaxLength) - ShortLength);
    if (!m_longOffsets) {
        m_longOffsets.reset(new quint32[BlockRows]); // NOLINT(modernize-make-unique): not to be filled
    }
    if (PieceSize - m_pieceUsed < size) {
        m_pieces[m_pieceCount].reset(new uchar[PieceSize]); // NOLINT(modernize-make-unique): not to be filled
        ++m_pieceCount;
        m_pieceUsed = 0;
    }
    const std::size_t piece = m_pieceCount - 1;
    std::copy_n(frame.data.begin() + ShortLength, size, m_pieces[piece].get() + m_pieceUsed);
    m_longOffsets[position(index)] = static_cast<quint32>(piece * PieceSize + m_pieceUsed);
    m_pieceUsed += size;
}

BusFrameStore::BusFrameStore()
    : m_blocks(new std::unique_ptr<Block>[MaxBlocks])
{
}

BusFrameStore::~BusFrameStore() = default;

bool BusFrameStore::addBlock()
{
    const qint64 number = blockOf(m_size.load(std::memory_order_relaxed));
    if (number >= MaxBlocks || m_memory.load(std::memory_order_relaxed) + qint64{sizeof(Block)} > m_memoryLimit) {
        return false;
    }
    std::unique_ptr<Block> &block = m_blocks[static_cast<std::size_t>(number)];
    if (!block) {                              // it may be left from a batch that ran out of memory
        block.reset(new (std::nothrow) Block); // NOLINT(modernize-make-unique): not to be filled
        if (!block) {
            return false;
        }
        m_memory.fetch_add(sizeof(Block), std::memory_order_relaxed);
        if (number > 0) {
            block->m_greatestTime.store(greatestTime(number - 1), std::memory_order_relaxed);
        }
    }
    return true;
}

/// What a longer frame allocates beside its row.
qint64 BusFrameStore::extraMemory(const Block &block, const BusFrame &frame)
{
    const auto length = std::min<std::size_t>(frame.length, BusFrame::MaxLength);
    if (length <= ShortLength) {
        return 0;
    }
    const bool needsPiece = Block::PieceSize - block.m_pieceUsed < length - ShortLength;
    return (block.m_longOffsets ? 0 : qint64{BlockRows} * qint64{sizeof(quint32)}) +
           (needsPiece ? qint64{Block::PieceSize} : 0);
}

int BusFrameStore::append(const BusFrame *frames, int count)
{
    const qint64 first = m_size.load(std::memory_order_relaxed);
    qint64 row = first;
    int taken = 0;
    try {
        for (; taken < count; ++taken, ++row) {
            if (indexInBlock(row) == 0) {
                m_size.store(row, std::memory_order_release);
                if (!addBlock()) {
                    break;
                }
            }
            Block &block = *m_blocks[static_cast<std::size_t>(blockOf(row))];
            const qint64 extra = extraMemory(block, frames[taken]);
            if (extra > 0 && m_memory.load(std::memory_order_relaxed) + extra > m_memoryLimit) {
                break;
            }
            block.set(indexInBlock(row), frames[taken]);
            m_memory.fetch_add(extra, std::memory_order_relaxed);
        }
    } catch (const std::bad_alloc &) {
        // What was taken so far is whole.
    }
    m_size.store(row, std::memory_order_release);
    return taken;
}

qint64 BusFrameStore::firstRowAt(qint64 time) const
{
    const qint64 rows = size();
    qint64 low = 0;
    qint64 high = rows == 0 ? 0 : blockOf(rows - 1) + 1;
    while (low < high) {
        const qint64 middle = low + (high - low) / 2;
        if (greatestTime(middle) >= time) {
            high = middle;
        } else {
            low = middle + 1;
        }
    }
    const qint64 first = low << BlockShift;
    if (first >= rows) {
        return rows;
    }
    const qint64 *begin = block(low).time.data();
    const qint64 *end = begin + std::min<qint64>(BlockRows, rows - first);
    return first + (std::find_if(begin, end, [time](qint64 value) { return value >= time; }) - begin);
}
