#include "capture/CaptureFrames.h"

#include <algorithm>

namespace {
constexpr std::size_t ChunkFrames = 16384;

constexpr quint32 PlaceBits = 25;
static_assert(2 * ChunkFrames * CaptureFrame::MaxLength + PayloadBlocks::BlockSize < 1U << PlaceBits);
static_assert(CaptureFrame::MaxLength < 1U << (32 - PlaceBits));

template<typename Record>
Record toRecord(const CaptureFrame &frame)
{
    constexpr int Capacity = sizeof(Record::Data);
    Record record{};
    record.ID = frame.id();
    record.RemoteFlag = frame.isRemote() ? 1 : 0;
    record.ExternFlag = frame.isExtended() ? 1 : 0;
    record.DataLen = static_cast<quint8>(std::min(frame.length(), Capacity));
    // The whole payload, also where the length says less: the record of a .can file always holds eight bytes.
    std::copy_n(frame.data.cbegin(), std::min(frame.data.size(), Capacity), record.Data);
    return record;
}
} // namespace

VCI_CAN_OBJ toCanRecord(const CaptureFrame &frame)
{
    return toRecord<VCI_CAN_OBJ>(frame);
}

VCI_CANFD_OBJ toCanFdRecord(const CaptureFrame &frame)
{
    auto record = toRecord<VCI_CANFD_OBJ>(frame);
    record.FDFlag = frame.protocol();
    return record;
}

qint64 CaptureFrames::size() const
{
    return m_chunks.empty() ? 0
                            : static_cast<qint64>((m_chunks.size() - 1) * ChunkFrames + m_chunks.back().rows.size());
}

CaptureFrame CaptureFrames::at(qint64 index) const
{
    Q_ASSERT(index >= 0 && index < size());
    const auto position = static_cast<std::size_t>(index);
    const Chunk &chunk = m_chunks[position / ChunkFrames];
    const Row &row = chunk.rows[position % ChunkFrames];
    CaptureFrame frame;
    frame.idWord = row.idWord;
    frame.attributes = row.attributes;
    const quint32 place = row.payload & ((1U << PlaceBits) - 1);
    frame.data = QByteArray(reinterpret_cast<const char *>(m_payloads.at(chunk.firstPayload + place)),
                            static_cast<int>(row.payload >> PlaceBits));
    return frame;
}

void CaptureFrames::append(quint32 idWord, quint32 attributes, const uchar *data, int size)
{
    Q_ASSERT(size >= 0 && size <= CaptureFrame::MaxLength);
    const auto bytes = static_cast<quint32>(size);
    const std::size_t place = m_payloads.put(data, bytes);
    if (m_chunks.empty() || m_chunks.back().rows.size() == ChunkFrames) {
        m_chunks.push_back({{}, place});
        m_chunks.back().rows.reserve(ChunkFrames); // pages that hold no frame are never touched
    }
    Chunk &chunk = m_chunks.back();
    Row &row = chunk.rows.emplace_back(); // filled in place: a copy would wait for what was just written
    row.idWord = idWord;
    row.attributes = attributes;
    row.payload = static_cast<quint32>(place - chunk.firstPayload) | bytes << PlaceBits;
}
