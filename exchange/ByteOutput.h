#pragma once

#include <QtGlobal>

#include <memory>
#include <string_view>

class QIODevice;

/// Bytes for a file or a pipe, handed on in large pieces.
class ByteOutput
{
public:
    /// Most bytes that room() can be asked for.
    static constexpr std::size_t PieceSize = 1U << 18U;

    /// out: open for writing; must outlive this.
    explicit ByteOutput(QIODevice &out);

    /// A place for size bytes, at most PieceSize; the bytes used are then taken with advance().
    char *room(std::size_t size)
    {
        if (PieceSize - m_size < size) {
            flush();
        }
        return m_buffer.get() + m_size;
    }
    void advance(std::size_t size) { m_size += size; }
    void put(std::string_view bytes);
    /// Hands everything on; false when the device did not take all of it, now or before.
    bool flush();
    /// Hands everything on and puts bytes over those that were written at offset, from where this began; false where
    /// the device cannot go back, as a pipe.
    bool overwrite(qint64 offset, std::string_view bytes);
    qint64 offset() const { return m_written + static_cast<qint64>(m_size); }

private:
    QIODevice &m_out;
    qint64 m_start; ///< the device's place of the first byte
    std::unique_ptr<char[]> m_buffer;
    std::size_t m_size = 0;
    qint64 m_written = 0;
    bool m_failed = false;
};
