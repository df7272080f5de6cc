#pragma once

#include "exchange/BlfInflate.h"

#include <QtGlobal>

#include <memory>
#include <string_view>

class ByteInput;
class Findings;

/// The objects of a BLF file as one row of bytes: those in its containers, unpacked, and those beside them. In constant
/// memory, whatever a container claims to hold.
class BlfContainers
{
public:
    /// Most bytes that need() can be asked for.
    static constexpr std::size_t MaxAtHand = 1U << 16U;

    /// in: behind the file's header. Both must outlive this.
    BlfContainers(ByteInput &in, Findings &findings);
    ~BlfContainers();
    BlfContainers(const BlfContainers &) = delete;
    BlfContainers &operator=(const BlfContainers &) = delete;

    /// The bytes at hand. Valid until the next need().
    std::string_view window() const { return {m_buffer.get() + m_begin, m_end - m_begin}; }
    /// Has at least size bytes at hand; false when fewer are there as yet.
    bool need(std::size_t size) { return m_end - m_begin >= size || fill(size); }
    /// size: at most what is at hand.
    void skip(std::size_t size) { m_begin += size; }

    /// The place in the file of the container that was read from last.
    qint64 offset() const { return m_offset; }
    bool isGrowing() const;

private:
    enum class Content { None, Stored, Deflated, Skipped };
    struct Inflater;

    bool fill(std::size_t size);
    void makeRoom();
    bool readMore();
    bool nextContainer();
    void beginContainer();
    void unpackWhole();
    std::size_t copyMore(std::size_t size);
    std::size_t inflateMore(std::size_t size);
    void endContainer();
    void endOfFile();
    void report(const QString &text);

    ByteInput &m_in;
    Findings &m_findings;
    BlfInflate m_whole;
    std::unique_ptr<Inflater> m_inflater;
    std::unique_ptr<char[]> m_buffer;
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
    qint64 m_offset = 0;
    qint64 m_passed = 0; ///< bytes in which no object was found
    Content m_content = Content::None;
    qint64 m_left = 0;     ///< bytes of the container still to be read
    qint64 m_promised = 0; ///< bytes that it says to hold and has not given yet
};
