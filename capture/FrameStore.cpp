#include "capture/FrameStore.h"

#include "capture/PayloadBlocks.h"

#include <QString>

#include <algorithm>
#include <iterator>

namespace {

constexpr int ChunkRows = 16384;
constexpr int ReservedRows = 1000000;

static_assert(PayloadBlocks::BlockSize > FrameView::MaxPayload);

struct Row : FrameHead
{
    quint32 payload; ///< place in the chunk's payloads
    quint16 size;
    quint16 timeText; ///< index into the chunk's texts
};
static_assert(sizeof(Row) == 20);

} // namespace

/// Up to ChunkRows rows with their payloads and their time texts: a text that repeats from row to row, as in a batch,
/// is kept once. Pages that hold no row are never touched.
struct FrameStore::Chunk
{
    std::vector<Row> rows;
    PayloadBlocks payloads;
    std::vector<QString> texts;

    Chunk() { rows.reserve(ChunkRows); }
    std::size_t bytes() const { return ChunkRows * sizeof(Row) + payloads.bytes(); }
};

FrameStore::FrameStore()
{
    m_chunks.reserve(ReservedRows / ChunkRows + 1);
}

FrameStore::~FrameStore() = default;

FrameView FrameStore::at(int index) const
{
    Q_ASSERT(index >= 0 && index < m_size);
    const auto position = static_cast<std::size_t>(index);
    const Chunk &chunk = *m_chunks[position / ChunkRows];
    const Row &row = chunk.rows[position % ChunkRows];
    return {row, chunk.texts[row.timeText], chunk.payloads.at(row.payload), row.size};
}

void FrameStore::append(const FrameRecord &record)
{
    if (m_size % ChunkRows == 0) {
        m_chunks.push_back(std::make_unique<Chunk>());
    }
    Chunk &chunk = *m_chunks.back();
    if (chunk.texts.empty() || chunk.texts.back() != record.systemTime) {
        chunk.texts.push_back(record.systemTime);
    }
    Row &row = chunk.rows.emplace_back(); // filled in place: a copy would wait for what was just written
    static_cast<FrameHead &>(row) = record;
    row.size = static_cast<quint16>(std::min(record.data.size(), FrameView::MaxPayload));
    row.payload = static_cast<quint32>(chunk.payloads.put(record.data.constData(), row.size));
    row.timeText = static_cast<quint16>(chunk.texts.size() - 1);
    ++m_size;
}

void FrameStore::truncate(int size)
{
    if (size >= m_size) {
        return;
    }
    m_size = std::max(size, 0);
    const auto rest = static_cast<std::size_t>(m_size) % ChunkRows;
    const std::size_t kept = static_cast<std::size_t>(m_size) / ChunkRows + (rest > 0 ? 1 : 0);
    std::move(m_chunks.begin() + static_cast<std::ptrdiff_t>(kept), m_chunks.end(), std::back_inserter(m_dropped));
    m_chunks.resize(kept);
    if (rest > 0) {
        Chunk &chunk = *m_chunks.back();
        chunk.rows.erase(chunk.rows.begin() + static_cast<std::ptrdiff_t>(rest), chunk.rows.end());
        chunk.payloads.truncateBehind(chunk.rows.back().payload, chunk.rows.back().size);
        chunk.texts.resize(chunk.rows.back().timeText + 1U);
    }
}

bool FrameStore::releaseDropped(std::size_t maxBytes)
{
    std::size_t released = 0;
    while (!m_dropped.empty() && released < maxBytes) {
        released += m_dropped.back()->bytes();
        m_dropped.pop_back();
    }
    return !m_dropped.empty();
}
