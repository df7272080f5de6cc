#pragma once

#include "viewer/core/BusFrameStore.h"
#include "viewer/core/ByteValues.h"
#include "viewer/core/FrameKey.h"

#include <vector>

/// What a capture holds of one identifier. Times and periods are nanoseconds. A period is the time from a frame to the
/// next one of the same identifier; where a time is missing or jumps back there is none.
struct IdentifierStatistics
{
    FrameKey key = 0;
    quint16 channel = 0;
    qint64 count = 0;
    qint64 firstRow = 0;
    qint64 lastRow = 0;
    qint64 firstTime = BusFrame::NoTime; ///< of the first frame that has one
    qint64 lastTime = BusFrame::NoTime;  ///< of the last frame that has one
    qint64 timedCount = 0;               ///< frames that have a time
    qint64 periodCount = 0;
    qint64 leastPeriod = 0;
    qint64 greatestPeriod = 0;
    double meanPeriod = 0;
    double squares = 0; ///< sum of the squares of the distances from the mean
    int leastLength = 0;
    int greatestLength = 0;
    quint64 changedBytes = 0; ///< bit n: byte n was not the same, or not there, in all data frames

    /// Standard deviation of the periods; 0 with fewer than two.
    double periodDeviation() const;
    /// Frames a second from the first to the last; 0 where that cannot be told.
    double rate() const;
};

/// Takes the time of one more frame for the figures of times and periods.
void addTime(IdentifierStatistics &identifier, qint64 time);

/// All identifiers of a capture, each by channel or all channels together. Grows with the store; not thread-safe.
class Overview
{
public:
    /// The last data frame of an identifier up to some row, and the one before; -1: there is none.
    struct LastRows
    {
        qint64 last = -1;
        qint64 previous = -1;
    };

    explicit Overview(bool tellsChannels = true);

    /// Leaves out the rows before row. Before the first add().
    void beginAt(qint64 row);
    /// Keeps byteValues(), too. Before the first add().
    void keepByteValues() { m_keepsByteValues = true; }

    /// Takes at most count rows more of a store, always the same one. Returns how many.
    qint64 add(const BusFrameStore &store, qint64 count);
    qint64 covered() const { return m_covered; } ///< rows taken or left out

    /// In the order in which the identifiers came.
    const std::vector<IdentifierStatistics> &identifiers() const { return m_identifiers; }
    /// For each of identifiers(), of its data frames; empty unless they are kept.
    const std::vector<ByteValues> &byteValues() const { return m_byteValues; }
    /// For each of identifiers(), up to and with row, which is below covered().
    std::vector<LastRows> lastRows(const BusFrameStore &store, qint64 row) const;
    /// The row before row with the same identifier and channel; -1 when there is none. row: below covered().
    qint64 previousRow(const BusFrameStore &store, qint64 row) const;

private:
    /// Rows of one identifier so far; they fit as BusFrameStore::MaxRows does.
    struct Rows
    {
        qint32 last = -1; ///< with or without data
        qint32 data = -1;
        qint32 previousData = -1;
    };
    struct Checkpoint
    {
        qint64 row; ///< the rows before it are in rows
        std::vector<Rows> rows;
    };

    quint64 nameOf(const BusFrameStore::Block &block, std::size_t at) const;
    std::size_t placeOf(quint64 name) const;
    std::size_t indexOf(const BusFrameStore::Block &block, std::size_t at, qint64 row);
    void growTable();
    void addRow(const BusFrameStore &store, const BusFrameStore::Block &block, qint64 row);
    void addData(const BusFrameStore &store, const BusFrameStore::Block &block, qint64 row, std::size_t index);
    void keepCheckpoint();
    const Checkpoint &checkpointBefore(qint64 row) const;

    bool m_tellsChannels;
    bool m_keepsByteValues = false;
    qint64 m_covered = 0;
    std::vector<ByteValues> m_byteValues;
    std::vector<IdentifierStatistics> m_identifiers;
    std::vector<Rows> m_rows;
    std::vector<quint64> m_shortData; ///< the first 8 bytes of the last data frame
    std::vector<quint32> m_table;     ///< by hash: index of m_identifiers + 1, or 0; its size is a power of two
    std::vector<Checkpoint> m_checkpoints;
};

/// Bit n: byte n differs, or is there in one of the frames only. Remote frames have no data.
quint64 differentBytes(const BusFrame &a, const BusFrame &b);
