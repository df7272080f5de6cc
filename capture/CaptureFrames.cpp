#include "capture/CaptureFrames.h"

#include <utility>

namespace {

constexpr quint32 ChunkFrames = 16384;

struct Row
{
    quint32 idWord;
    quint32 attributes;
    quint32 place : 25; ///< of the payload, counted from the chunk's first one
    quint32 size : 7;   ///< of the payload
};
static_assert(sizeof(Row) == 12);
static_assert(2 * ChunkFrames * CaptureFrame::MaxLength + PayloadBlocks::BlockSize < 1U << 25U);
static_assert(CaptureFrame::MaxLength < 1 << 7);

} // namespace

struct CaptureFrames::Chunk
{
    std::unique_ptr<Row[]> rows{new Row[ChunkFrames]};
    std::size_t firstPayload = 0; ///< its place
};

CaptureFrames::CaptureFrames() = default;
CaptureFrames::~CaptureFrames() = default;

CaptureFrames::CaptureFrames(CaptureFrames &&other) noexcept
    : m_chunks(std::exchange(other.m_chunks, {}))
    , m_payloads(std::exchange(other.m_payloads, {}))
    , m_size(std::exchange(other.m_size, 0))
{
}

CaptureFrames &CaptureFrames::operator=(CaptureFrames &&other) noexcept
{
    m_chunks = std::exchange(other.m_chunks, {});
    m_payloads = std::exchange(other.m_payloads, {});
    m_size = std::exchange(other.m_size, 0);
    return *this;
}

CaptureFrame CaptureFrames::at(qint64 index) const
{
    Q_ASSERT(index >= 0 && index < m_size);
    const auto position = static_cast<std::size_t>(index);
    const Chunk &chunk = *m_chunks[position / ChunkFrames];
    const Row &row = chunk.rows[position % ChunkFrames];
    CaptureFrame frame;
    frame.idWord = row.idWord;
    frame.attributes = row.attributes;
    frame.data = QByteArray(reinterpret_cast<const char *>(m_payloads.at(chunk.firstPayload + row.place)),
                            static_cast<int>(row.size));
    return frame;
}

void CaptureFrames::append(quint32 idWord, quint32 attributes, const uchar *data, int size)
{
    Q_ASSERT(size >= 0 && size <= CaptureFrame::MaxLength);
    const auto bytes = static_cast<quint32>(size);
    const std::size_t place = m_payloads.put(data, bytes);
    const auto index = static_cast<std::size_t>(m_size) % ChunkFrames;
    if (index == 0) {
        m_chunks.push_back(std::make_unique<Chunk>());
        m_chunks.back()->firstPayload = place;
    }
    Chunk &chunk = *m_chunks.back();
    const auto inChunk = static_cast<quint32>(place - chunk.firstPayload);
    chunk.rows[index] = Row{idWord, attributes, inChunk & 0x1FFFFFFU, bytes & 0x7FU};
    ++m_size;
}
