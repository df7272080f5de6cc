#pragma once

#include <QtGlobal>

#include <atomic>
#include <memory>
#include <optional>
#include <string_view>

class QIODevice;

/// The bytes of a file, piece by piece. Holds one piece, or one line or record where that is longer; never more than
/// the file had bytes at the beginning, and what is appended to it later is not read.
class CaptureInput
{
public:
    /// Most bytes read at a time; how often stop is looked at.
    static constexpr std::size_t PieceSize = 1U << 18U;

    /// in: open for reading, not sequential, unbuffered for the sake of speed. stop: null when there is none.
    CaptureInput(QIODevice &in, const std::atomic<bool> *stop);

    /// The bytes at hand. Valid until the next call of another function.
    std::string_view window() const { return {m_buffer.get() + m_begin, m_end - m_begin}; }
    /// Has at least size bytes at hand; false when fewer are left.
    bool need(std::size_t size)
    {
        while (m_end - m_begin < size) {
            if (!readMore()) {
                return false;
            }
        }
        return true;
    }
    /// size: at most what is at hand.
    void skip(std::size_t size) { m_begin += size; }
    /// The next line without its end (LF, with any CR before it) and moves behind it; nothing when no byte is left.
    std::optional<std::string_view> line();

    /// Reading failed or was stopped: the end that was met is not the file's.
    bool isBroken() const { return m_broken; }

private:
    bool readMore();
    void makeRoom();

    QIODevice &m_in;
    const std::atomic<bool> *m_stop;
    quint64 m_unread;
    std::unique_ptr<char[]> m_buffer;
    std::size_t m_capacity = 0;
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
    bool m_broken = false;
};
