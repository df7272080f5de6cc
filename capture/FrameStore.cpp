#include "capture/FrameStore.h"

#include "capture/PayloadBlocks.h"

#include <QByteArray>
#include <QString>

#include <algorithm>

namespace {

constexpr int ChunkRows = 16384;
constexpr int ReservedRows = 1000000;

static_assert(PayloadBlocks::BlockSize > FrameStore::MaxPayload);

struct Row
{
    quint32 id : 29;
    quint32 timeFlag : 1;
    quint32 remote : 1;
    quint32 extended : 1;
    quint32 timeStamp;
    quint32 payload; ///< place in the chunk's payloads
    quint16 size;
    quint16 timeText; ///< index into the chunk's texts
    quint8 direction;
    quint8 sendType;
    quint8 protocol;
};
static_assert(sizeof(Row) == 20);

} // namespace

/// ChunkRows rows with their payloads and their time texts: a text that repeats from row to row, as in a batch, is kept
/// once. Left uninitialised: pages that hold no row are never touched.
struct FrameStore::Chunk
{
    std::unique_ptr<Row[]> rows{new Row[ChunkRows]};
    PayloadBlocks payloads;
    std::vector<QString> texts;

    quint16 putText(const QString &text);
    void truncate(int count);
    std::size_t bytes() const { return ChunkRows * sizeof(Row) + payloads.bytes(); }
};

quint16 FrameStore::Chunk::putText(const QString &text)
{
    if (texts.empty() || texts.back() != text) {
        texts.push_back(text);
    }
    return static_cast<quint16>(texts.size() - 1);
}

/// count: 1 to ChunkRows, at most the rows held.
void FrameStore::Chunk::truncate(int count)
{
    const Row &last = rows[static_cast<std::size_t>(count - 1)];
    payloads.truncateBehind(last.payload, last.size);
    texts.resize(last.timeText + 1U);
}

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
    FrameView view;
    view.systemTime = &chunk.texts[row.timeText];
    view.data = chunk.payloads.at(row.payload);
    view.size = row.size;
    view.id = row.id;
    view.timeStamp = row.timeStamp;
    view.direction = row.direction;
    view.sendType = row.sendType;
    view.protocol = row.protocol;
    view.timeFlag = row.timeFlag;
    view.remote = row.remote;
    view.extended = row.extended;
    return view;
}

void FrameStore::append(const FrameRecord &record)
{
    const auto index = static_cast<std::size_t>(m_size) % ChunkRows;
    if (index == 0) {
        m_chunks.push_back(std::make_unique<Chunk>());
    }
    Chunk &chunk = *m_chunks.back();
    Row &row = chunk.rows[index];
    row.id = record.id;
    row.timeFlag = record.timeFlag;
    row.remote = record.remote;
    row.extended = record.extended;
    row.timeStamp = record.timeStamp;
    row.size = static_cast<quint16>(std::min(record.data.size(), MaxPayload));
    row.payload = static_cast<quint32>(chunk.payloads.put(record.data.constData(), row.size));
    row.timeText = chunk.putText(record.systemTime);
    row.direction = record.direction;
    row.sendType = record.sendType;
    row.protocol = std::min<quint8>(record.protocol, FrameRecord::CANFDSpeed);
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
        m_chunks.back()->truncate(static_cast<int>(rest));
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
