#include "capture/CaptureFrames.h"

#include <algorithm>

namespace {
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
    return m_chunks.empty() ? 0 : static_cast<qint64>((m_chunks.size() - 1) * ChunkFrames + m_chunks.back().size);
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
