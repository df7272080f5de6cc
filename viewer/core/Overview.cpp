#include "viewer/core/Overview.h"

#include "viewer/core/FrameTimes.h"

#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

constexpr double NanosecondsPerSecond = 1e9;
constexpr std::size_t FirstTableSize = 256;
constexpr qint64 LeastCheckpointDistance = BusFrameStore::BlockRows;
/// Keeps what all checkpoints take at a fraction of what the frames do.
constexpr qint64 RowsPerCheckpointEntry = 64;

quint64 shortDataOf(const BusFrameStore::Block &block, std::size_t at)
{
    return qFromLittleEndian<quint64>(block.shortData[at].data());
}

/// One bit for each byte that is not 0.
quint64 bytesNotZero(quint64 value)
{
    value |= value >> 4U;
    value |= value >> 2U;
    value |= value >> 1U;
    value &= 0x0101010101010101U;
    return (value * 0x0102040810204080U) >> 56U;
}

/// Bits [0, length).
quint64 bytesBelow(int length)
{
    return length >= BusFrame::MaxLength ? ~quint64{0} : (quint64{1} << static_cast<unsigned>(length)) - 1;
}

bool hasData(quint16 flags)
{
    return (flags & BusFrame::Remote) == 0;
}

} // namespace

void addTime(IdentifierStatistics &identifier, qint64 time)
{
    if (time == BusFrame::NoTime) {
        return;
    }
    ++identifier.timedCount;
    const bool isFirst = identifier.firstTime == BusFrame::NoTime;
    const qint64 period = periodBetween(identifier.lastTime, time);
    identifier.lastTime = time;
    if (isFirst) {
        identifier.firstTime = time;
    }
    if (period < 0) {
        return;
    }
    ++identifier.periodCount;
    const bool isOnly = identifier.periodCount == 1;
    identifier.leastPeriod = isOnly ? period : std::min(identifier.leastPeriod, period);
    identifier.greatestPeriod = isOnly ? period : std::max(identifier.greatestPeriod, period);
    // Mean and squares as Welford computes them, which stays exact over any number of frames.
    const auto value = static_cast<double>(period);
    const double distance = value - identifier.meanPeriod;
    identifier.meanPeriod += distance / static_cast<double>(identifier.periodCount);
    identifier.squares += distance * (value - identifier.meanPeriod);
}

double IdentifierStatistics::periodDeviation() const
{
    return periodCount < 2 ? 0 : std::sqrt(squares / static_cast<double>(periodCount - 1));
}

double IdentifierStatistics::rate() const
{
    const qint64 duration = timedCount > 1 ? periodBetween(firstTime, lastTime) : 0;
    return duration > 0 ? static_cast<double>(timedCount - 1) * NanosecondsPerSecond / static_cast<double>(duration)
                        : 0;
}

Overview::Overview(bool tellsChannels)
    : m_tellsChannels(tellsChannels)
    , m_table(FirstTableSize, 0)
{
    m_checkpoints.push_back({0, {}});
}

void Overview::beginAt(qint64 row)
{
    m_covered = row;
    m_checkpoints = {{row, {}}};
}

quint64 Overview::nameOf(const BusFrameStore::Block &block, std::size_t at) const
{
    return quint64{frameKey(block.identifier[at], block.flags[at])} |
           (m_tellsChannels ? quint64{block.channel[at]} << 32U : 0);
}

/// Where the table has the name, or the free place where it belongs.
std::size_t Overview::placeOf(quint64 name) const
{
    const std::size_t mask = m_table.size() - 1;
    auto place = static_cast<std::size_t>((name * 0x9E3779B97F4A7C15U) >> 32U) & mask;
    while (m_table[place] != 0) {
        const IdentifierStatistics &known = m_identifiers[m_table[place] - 1];
        if ((quint64{known.key} | quint64{known.channel} << 32U) == name) {
            break;
        }
        place = (place + 1) & mask;
    }
    return place;
}

void Overview::growTable()
{
    m_table.assign(m_table.size() * 2, 0);
    for (std::size_t i = 0; i < m_identifiers.size(); ++i) {
        const quint64 name = quint64{m_identifiers[i].key} | quint64{m_identifiers[i].channel} << 32U;
        m_table[placeOf(name)] = static_cast<quint32>(i + 1);
    }
}

std::size_t Overview::indexOf(const BusFrameStore::Block &block, std::size_t at, qint64 row)
{
    const quint64 name = nameOf(block, at);
    const std::size_t place = placeOf(name);
    if (m_table[place] != 0) {
        return m_table[place] - 1;
    }
    IdentifierStatistics identifier;
    identifier.key = static_cast<FrameKey>(name);
    identifier.channel = static_cast<quint16>(name >> 32U);
    identifier.firstRow = row;
    identifier.leastLength = BusFrame::MaxLength;
    m_identifiers.push_back(identifier);
    m_rows.emplace_back();
    m_shortData.push_back(0);
    if (m_keepsByteValues) {
        m_byteValues.emplace_back();
    }
    m_table[place] = static_cast<quint32>(m_identifiers.size());
    if (m_identifiers.size() * 2 > m_table.size()) {
        growTable();
    }
    return m_identifiers.size() - 1;
}

void Overview::addData(const BusFrameStore &store, const BusFrameStore::Block &block, qint64 row, std::size_t index)
{
    const auto at = static_cast<std::size_t>(BusFrameStore::indexInBlock(row));
    Rows &rows = m_rows[index];
    IdentifierStatistics &identifier = m_identifiers[index];
    const quint64 data = shortDataOf(block, at);
    const int length = block.length[at];
    if (rows.data >= 0) {
        const bool isLong =
            length > BusFrameStore::ShortLength || identifier.greatestLength > BusFrameStore::ShortLength;
        if (isLong || identifier.leastLength != identifier.greatestLength || length != identifier.leastLength) {
            identifier.changedBytes |= differentBytes(store.frame(rows.data), store.frame(row));
        } else {
            identifier.changedBytes |= bytesNotZero(data ^ m_shortData[index]);
        }
    }
    if (m_keepsByteValues) {
        ByteValues &values = m_byteValues[index];
        values.add(block.shortData[at].data(), 0, std::min(length, BusFrameStore::ShortLength));
        if (length > BusFrameStore::ShortLength) {
            values.add(block.longData(static_cast<int>(at)), BusFrameStore::ShortLength,
                       length - BusFrameStore::ShortLength);
        }
    }
    m_shortData[index] = data;
    rows.previousData = rows.data;
    rows.data = static_cast<qint32>(row);
}

void Overview::addRow(const BusFrameStore &store, const BusFrameStore::Block &block, qint64 row)
{
    const auto at = static_cast<std::size_t>(BusFrameStore::indexInBlock(row));
    const std::size_t index = indexOf(block, at, row);
    if (hasData(block.flags[at])) {
        addData(store, block, row, index);
    }
    IdentifierStatistics &identifier = m_identifiers[index];
    ++identifier.count;
    identifier.lastRow = row;
    m_rows[index].last = static_cast<qint32>(row);
    const int length = block.length[at];
    identifier.leastLength = std::min(identifier.leastLength, length);
    identifier.greatestLength = std::max(identifier.greatestLength, length);
    addTime(identifier, block.time[at]);
}

qint64 Overview::add(const BusFrameStore &store, qint64 count)
{
    const qint64 end = std::min(store.size(), m_covered + count);
    const qint64 begin = m_covered;
    while (m_covered < end) {
        const BusFrameStore::Block &block = store.block(BusFrameStore::blockOf(m_covered));
        const qint64 blockEnd = ((BusFrameStore::blockOf(m_covered) + 1) << BusFrameStore::BlockShift);
        for (const qint64 stop = std::min(end, blockEnd); m_covered < stop; ++m_covered) {
            addRow(store, block, m_covered);
        }
        if (m_covered == blockEnd) {
            keepCheckpoint();
        }
    }
    return end - begin;
}

void Overview::keepCheckpoint()
{
    const qint64 distance = m_covered - m_checkpoints.back().row;
    const qint64 wanted = static_cast<qint64>(m_rows.size()) * RowsPerCheckpointEntry;
    if (distance >= std::max(LeastCheckpointDistance, wanted)) {
        m_checkpoints.push_back({m_covered, m_rows});
    }
}

const Overview::Checkpoint &Overview::checkpointBefore(qint64 row) const
{
    const auto behind = std::upper_bound(m_checkpoints.begin(), m_checkpoints.end(), row,
                                         [](qint64 value, const Checkpoint &point) { return value < point.row; });
    return *std::prev(behind);
}

std::vector<Overview::LastRows> Overview::lastRows(const BusFrameStore &store, qint64 row) const
{
    const Checkpoint &checkpoint = checkpointBefore(row);
    std::vector<LastRows> found(m_identifiers.size());
    for (std::size_t i = 0; i < checkpoint.rows.size(); ++i) {
        found[i] = {checkpoint.rows[i].data, checkpoint.rows[i].previousData};
    }
    for (qint64 next = checkpoint.row; next <= row; ++next) {
        const BusFrameStore::Block &block = store.block(BusFrameStore::blockOf(next));
        const auto at = static_cast<std::size_t>(BusFrameStore::indexInBlock(next));
        if (hasData(block.flags[at])) {
            LastRows &rows = found[m_table[placeOf(nameOf(block, at))] - 1];
            rows.previous = rows.last;
            rows.last = next;
        }
    }
    return found;
}

qint64 Overview::previousRow(const BusFrameStore &store, qint64 row) const
{
    const quint64 name =
        nameOf(store.block(BusFrameStore::blockOf(row)), static_cast<std::size_t>(BusFrameStore::indexInBlock(row)));
    const Checkpoint &checkpoint = checkpointBefore(row);
    for (qint64 next = row - 1; next >= checkpoint.row; --next) {
        const BusFrameStore::Block &block = store.block(BusFrameStore::blockOf(next));
        if (nameOf(block, static_cast<std::size_t>(BusFrameStore::indexInBlock(next))) == name) {
            return next;
        }
    }
    const std::size_t index = m_table[placeOf(name)] - 1;
    return index < checkpoint.rows.size() ? checkpoint.rows[index].last : -1;
}

quint64 differentBytes(const BusFrame &a, const BusFrame &b)
{
    const int lengthA = a.is(BusFrame::Remote) ? 0 : a.length;
    const int lengthB = b.is(BusFrame::Remote) ? 0 : b.length;
    quint64 different = bytesBelow(lengthA) ^ bytesBelow(lengthB);
    for (int i = 0; i < std::min(lengthA, lengthB); ++i) {
        const auto at = static_cast<std::size_t>(i);
        different |= quint64{a.data[at] != b.data[at]} << static_cast<unsigned>(i);
    }
    return different;
}
