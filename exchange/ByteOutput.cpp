#include "exchange/ByteOutput.h"

#include <QIODevice>

#include <algorithm>
#include <cstring>

ByteOutput::ByteOutput(QIODevice &out)
    : m_out(out)
    , m_start(out.pos())
    , m_buffer(new char[PieceSize])
{
}

void ByteOutput::put(std::string_view bytes)
{
    while (!bytes.empty()) {
        const std::size_t now = std::min(bytes.size(), PieceSize);
        std::memcpy(room(now), bytes.data(), now);
        advance(now);
        bytes.remove_prefix(now);
    }
}

bool ByteOutput::flush()
{
    const auto size = static_cast<qint64>(m_size);
    m_failed = m_failed || m_out.write(m_buffer.get(), size) != size;
    m_written += size;
    m_size = 0;
    return !m_failed;
}

bool ByteOutput::overwrite(qint64 offset, std::string_view bytes)
{
    Q_ASSERT(offset + static_cast<qint64>(bytes.size()) <= this->offset());
    if (m_out.isSequential() || !flush() || !m_out.seek(m_start + offset)) {
        return false;
    }
    const auto size = static_cast<qint64>(bytes.size());
    m_failed = m_out.write(bytes.data(), size) != size || !m_out.seek(m_start + m_written);
    return !m_failed;
}
