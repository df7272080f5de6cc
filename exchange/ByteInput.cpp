#include "exchange/ByteInput.h"

#include <QIODevice>

#include <algorithm>
#include <cstring>

namespace {

constexpr std::size_t Capacity = ByteInput::MaxAtHand + ByteInput::PieceSize;

} // namespace

ByteInput::ByteInput(QIODevice &in)
    : m_in(in)
    , m_buffer(new char[Capacity]) // not initialised: pages that are never written to cost nothing
{
}

bool ByteInput::need(std::size_t size)
{
    Q_ASSERT(size <= MaxAtHand);
    while (m_end - m_begin < size) {
        if (!readMore()) {
            return false;
        }
    }
    return true;
}

void ByteInput::skip(std::size_t size)
{
    Q_ASSERT(size <= m_end - m_begin);
    m_begin += size;
    m_offset += static_cast<qint64>(size);
}

bool ByteInput::pass(qint64 size)
{
    while (size > 0) {
        if (window().empty() && !readMore()) {
            return false;
        }
        const auto now = static_cast<std::size_t>(std::min<qint64>(size, static_cast<qint64>(window().size())));
        skip(now);
        size -= static_cast<qint64>(now);
    }
    return true;
}

std::optional<std::string_view> ByteInput::nextLine()
{
    if (m_cut) {
        passLine();
    }
    std::size_t seen = 0;
    for (;;) {
        const std::string_view bytes = window();
        const std::size_t end = bytes.find('\n', seen);
        if (end != std::string_view::npos) {
            return lineUpTo(end);
        }
        seen = bytes.size();
        m_cut = seen >= MaxAtHand;
        if (m_cut || !readMore()) {
            break;
        }
    }
    const std::string_view last = window();
    if (last.empty() || (m_growing && !m_cut)) {
        return std::nullopt;
    }
    skip(last.size());
    ++m_lineNumber;
    return withoutLineEnd(last);
}

/// Behind the end of the line that was cut.
void ByteInput::passLine()
{
    m_cut = false;
    for (;;) {
        const std::string_view bytes = window();
        const std::size_t end = bytes.find('\n');
        if (end != std::string_view::npos) {
            skip(end + 1);
            return;
        }
        skip(bytes.size());
        if (!readMore()) {
            return;
        }
    }
}

/// False when there is no more to read.
bool ByteInput::readMore()
{
    if (m_broken) {
        return false;
    }
    // Each piece takes the place of the one before, which is in the processor's cache. What is moved is a part of a
    // record.
    if (m_begin > 0) {
        std::memmove(m_buffer.get(), m_buffer.get() + m_begin, m_end - m_begin);
        m_end -= m_begin;
        m_begin = 0;
    }
    Q_ASSERT(Capacity - m_end >= PieceSize);
    const qint64 got = m_in.read(m_buffer.get() + m_end, static_cast<qint64>(PieceSize));
    m_broken = got < 0;
    m_end += static_cast<std::size_t>(std::max<qint64>(got, 0));
    return got > 0;
}
