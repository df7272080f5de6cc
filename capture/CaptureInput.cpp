#include "capture/CaptureInput.h"

#include <QIODevice>

#include <algorithm>
#include <cstring>

namespace {

std::string_view withoutLineEnd(std::string_view line)
{
    while (!line.empty() && line.back() == '\r') {
        line.remove_suffix(1);
    }
    return line;
}

} // namespace

CaptureInput::CaptureInput(QIODevice &in, const std::atomic<bool> *stop)
    : m_in(in)
    , m_stop(stop)
    , m_unread(static_cast<quint64>(std::max<qint64>(in.size() - in.pos(), 0)))
{
}

std::optional<std::string_view> CaptureInput::line()
{
    std::size_t seen = 0;
    for (;;) {
        const std::string_view bytes = window();
        const std::size_t end = bytes.find('\n', seen);
        if (end != std::string_view::npos) {
            skip(end + 1);
            return withoutLineEnd(bytes.substr(0, end));
        }
        seen = bytes.size();
        if (!readMore()) {
            break;
        }
    }
    const std::string_view last = window();
    if (last.empty()) {
        return std::nullopt;
    }
    skip(last.size());
    return withoutLineEnd(last);
}

/// False when there is no more to read.
bool CaptureInput::readMore()
{
    if (m_stop != nullptr && m_stop->load(std::memory_order_relaxed)) {
        m_broken = true;
    }
    if (m_broken || m_unread == 0) {
        return false;
    }
    makeRoom();
    const auto wanted = std::min<quint64>({m_unread, m_capacity - m_end, PieceSize});
    const qint64 got = m_in.read(m_buffer.get() + m_end, static_cast<qint64>(wanted));
    if (got <= 0) {
        m_broken = got < 0;
        m_unread = 0; // cut shorter meanwhile
        return false;
    }
    m_end += static_cast<std::size_t>(got);
    m_unread -= static_cast<quint64>(got);
    return true;
}

void CaptureInput::makeRoom()
{
    const std::size_t size = m_end - m_begin;
    if (size == m_capacity) {
        // Not initialised: memory that is never written to costs nothing. Beyond a piece all that may ever be needed is
        // taken at once, for growing step by step would hold the line twice.
        m_capacity =
            static_cast<std::size_t>(m_capacity == 0 ? std::min<quint64>(PieceSize, m_unread) : size + m_unread);
        std::unique_ptr<char[]> larger(new char[m_capacity]);
        std::copy_n(m_buffer.get() + m_begin, size, larger.get());
        m_buffer = std::move(larger);
    } else if (m_end == m_capacity || size <= m_begin) {
        std::memmove(m_buffer.get(), m_buffer.get() + m_begin, size);
    } else {
        return;
    }
    m_begin = 0;
    m_end = size;
}
