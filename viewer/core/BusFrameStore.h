#pragma once

#include "exchange/BusFrame.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>

/// All frames of a capture in their order. A frame of up to 8 bytes takes 35 bytes, a longer one 4 more and what is
/// behind its first 8 bytes; nothing is allocated for a single frame, and growing never moves what is there. One thread
/// appends; any number of others read the frames below size() meanwhile, without a lock.
class BusFrameStore
{
public:
    static constexpr int BlockShift = 16;
    static constexpr int BlockRows = 1 << BlockShift;
    static constexpr int MaxBlocks = 1 << 14;
    static constexpr qint64 MaxRows = qint64{MaxBlocks} * BlockRows;
    static constexpr int ShortLength = 8;

    /// The frames of BlockRows rows, column by column. Only rows that are counted by size() may be looked at.
    class Block
    {
    public:
        std::array<qint64, BlockRows> time;
        std::array<qint64, BlockRows> deviceTime;
        std::array<quint32, BlockRows> identifier;
        std::array<quint16, BlockRows> channel;
        std::array<quint16, BlockRows> flags;
        std::array<quint8, BlockRows> length;
        std::array<std::array<uchar, ShortLength>, BlockRows> shortData; ///< zeros behind the length

        BusFrame::Direction direction(int index) const;
        BusFrame frame(int index) const;
        /// Byte number of the data, below the frame's length.
        uchar byte(int index, int number) const
        {
            const auto at = static_cast<std::size_t>(index);
            return number < ShortLength ? shortData[at][static_cast<std::size_t>(number)]
                                        : longData(index)[number - ShortLength];
        }
        /// What is behind the first 8 bytes of a longer frame.
        const uchar *longData(int index) const;

    private:
        friend class BusFrameStore;
        static constexpr std::size_t PieceSize = 1U << 16U;
        static constexpr std::size_t MaxPieces = 64; // of each piece at most 55 bytes are lost

        void set(int index, const BusFrame &frame);
        void keepLongData(int index, const BusFrame &frame);

        std::array<quint8, BlockRows> m_state; ///< direction and state of LIN
        std::array<quint8, BlockRows> m_checksum;
        std::unique_ptr<quint32[]> m_longOffsets; ///< where longer frames go on; there when one is
        std::array<std::unique_ptr<uchar[]>, MaxPieces> m_pieces;
        std::size_t m_pieceCount = 0;
        std::size_t m_pieceUsed = PieceSize;
        std::atomic<qint64> m_greatestTime{BusFrame::NoTime};
    };

    BusFrameStore();
    ~BusFrameStore();
    BusFrameStore(const BusFrameStore &) = delete;
    BusFrameStore &operator=(const BusFrameStore &) = delete;

    /// Returns how many were taken: fewer than count when memory or MaxRows is used up. Lengths above
    /// BusFrame::MaxLength are cut.
    int append(const BusFrame *frames, int count);
    /// Bytes that the store may take; append() stops there. None by default.
    void setMemoryLimit(qint64 bytes) { m_memoryLimit = bytes; }

    qint64 size() const { return m_size.load(std::memory_order_acquire); }
    qint64 memory() const { return m_memory.load(std::memory_order_relaxed); } ///< bytes

    /// number: 0 to (size() - 1) / BlockRows.
    const Block &block(qint64 number) const { return *m_blocks[static_cast<std::size_t>(number)]; }
    static qint64 blockOf(qint64 row) { return row >> BlockShift; }
    static int indexInBlock(qint64 row) { return static_cast<int>(row & (BlockRows - 1)); }
    /// row: 0 to size() - 1.
    BusFrame frame(qint64 row) const { return block(blockOf(row)).frame(indexInBlock(row)); }
    qint64 time(qint64 row) const { return block(blockOf(row)).time[static_cast<std::size_t>(indexInBlock(row))]; }

    /// The moment that times since the start count from, in the frames' time base: 0, or what the appending thread set
    /// before the first frame.
    qint64 start() const { return m_start.load(std::memory_order_relaxed); }
    void setStart(qint64 time) { m_start.store(time, std::memory_order_relaxed); }

    /// The first row whose time is time or later; size() when there is none. Where times jump back, that is the first
    /// row at which the greatest time so far reaches it.
    qint64 firstRowAt(qint64 time) const;
    /// The greatest time from the first row to the end of a block; NoTime where no frame has one.
    qint64 greatestTime(qint64 blockNumber) const
    {
        return block(blockNumber).m_greatestTime.load(std::memory_order_relaxed);
    }

private:
    bool addBlock();
    static qint64 extraMemory(const Block &block, const BusFrame &frame);

    std::unique_ptr<std::unique_ptr<Block>[]> m_blocks; ///< the pointers of all blocks that there can be
    std::atomic<qint64> m_size{0};
    std::atomic<qint64> m_memory{0};
    std::atomic<qint64> m_start{0};
    qint64 m_memoryLimit = std::numeric_limits<qint64>::max();
};
