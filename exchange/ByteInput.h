#pragma once

#include <QtGlobal>

#include <memory>
#include <optional>
#include <string_view>

class QIODevice;

/// The bytes of a file, a pipe or any other device, piece by piece, in constant memory. Counts bytes and lines.
class ByteInput
{
public:
    /// Most bytes read at a time.
    static constexpr std::size_t PieceSize = 1U << 18U;
    /// Most bytes that need() can be asked for, and of a line. A longer line is cut here, see isCut().
    static constexpr std::size_t MaxAtHand = 1U << 20U;

    /// in: open for reading, also sequential; must outlive this.
    explicit ByteInput(QIODevice &in);

    /// While it is so, the end of the bytes is not the end of the file: a line without an end is left for later.
    void setGrowing(bool growing) { m_growing = growing; }
    bool isGrowing() const { return m_growing; }

    /// The bytes at hand. Valid until the next call of another function.
    std::string_view window() const { return {m_buffer.get() + m_begin, m_end - m_begin}; }
    /// Has at least size bytes at hand, at most MaxAtHand; false when fewer are there.
    bool need(std::size_t size);
    /// size: at most what is at hand.
    void skip(std::size_t size);
    /// Also beyond what is at hand; false when fewer are there, which are then gone.
    bool pass(qint64 size);
    /// The next line without its end (LF, with any CR before it) and moves behind it; nothing when none is there.
    std::optional<std::string_view> line()
    {
        const std::size_t end = m_cut ? std::string_view::npos : window().find('\n');
        return end != std::string_view::npos ? lineUpTo(end) : nextLine();
    }
    /// The last line() was longer than MaxAtHand; what was behind is passed over.
    bool isCut() const { return m_cut; }

    qint64 offset() const { return m_offset; }         ///< of the first byte at hand, from 0
    qint64 lineNumber() const { return m_lineNumber; } ///< of the last line(), from 1
    /// Where the bytes come from, its own position behind what is at hand: who moves it puts it back.
    QIODevice &device() const { return m_in; }
    /// Reading failed; the end that was met is not the file's.
    bool isBroken() const { return m_broken; }

private:
    static std::string_view withoutLineEnd(std::string_view line)
    {
        while (!line.empty() && line.back() == '\r') {
            line.remove_suffix(1);
        }
        return line;
    }
    /// end: the place of its LF in the window.
    std::string_view lineUpTo(std::size_t end)
    {
        const std::string_view line = window().substr(0, end);
        m_begin += end + 1;
        m_offset += static_cast<qint64>(end + 1);
        ++m_lineNumber;
        return withoutLineEnd(line);
    }
    std::optional<std::string_view> nextLine();
    bool readMore();
    void passLine();

    QIODevice &m_in;
    std::unique_ptr<char[]> m_buffer;
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
    qint64 m_offset = 0;
    qint64 m_lineNumber = 0;
    bool m_growing = false;
    bool m_cut = false;
    bool m_broken = false;
};
