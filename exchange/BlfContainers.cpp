#include "exchange/BlfContainers.h"

#include "exchange/BlfLayout.h"
#include "exchange/ByteInput.h"
#include "exchange/Findings.h"
#include "exchange/FindingTexts.h"

#include <QtEndian>

#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <new>

namespace {

using namespace BlfLayout;

constexpr std::size_t Capacity = 4 * BlfContainers::MaxAtHand;

} // namespace

/// zlib's state.
struct BlfContainers::Inflater
{
    Inflater()
    {
        if (inflateInit(&stream) != Z_OK) {
            throw std::bad_alloc();
        }
    }
    ~Inflater() { inflateEnd(&stream); }
    Inflater(const Inflater &) = delete;
    Inflater &operator=(const Inflater &) = delete;

    z_stream stream{};
};

BlfContainers::BlfContainers(ByteInput &in, Findings &findings)
    : m_in(in)
    , m_findings(findings)
    , m_inflater(std::make_unique<Inflater>())
    , m_buffer(new char[Capacity])
{
}

BlfContainers::~BlfContainers() = default;

bool BlfContainers::isGrowing() const
{
    return m_in.isGrowing();
}

void BlfContainers::report(const QString &text)
{
    m_findings.add(Finding::Offset, m_offset, text);
}

bool BlfContainers::fill(std::size_t size)
{
    Q_ASSERT(size <= MaxAtHand);
    makeRoom();
    while (m_end - m_begin < size) {
        if (!readMore()) {
            return false;
        }
    }
    return true;
}

void BlfContainers::makeRoom()
{
    std::memmove(m_buffer.get(), m_buffer.get() + m_begin, m_end - m_begin);
    m_end -= m_begin;
    m_begin = 0;
}

/// False when no more is there.
bool BlfContainers::readMore()
{
    if (m_content == Content::None) {
        if (!nextContainer()) {
            return false;
        }
        if (m_content == Content::None) {
            return true; // unpacked as a whole
        }
    }
    if (m_left > 0 && !m_in.need(1)) {
        endOfFile();
        return false;
    }
    const auto size = static_cast<std::size_t>(std::min<qint64>(m_left, static_cast<qint64>(m_in.window().size())));
    const std::size_t used = m_content == Content::Deflated ? inflateMore(size) : copyMore(size);
    m_in.skip(used);
    m_left -= static_cast<qint64>(used);
    const bool isFull = m_end == Capacity; // what was unpacked may not have had room
    if (m_left == 0 && !(m_content == Content::Deflated && isFull)) {
        endContainer();
    }
    return true;
}

/// The usual container, which is sound. What is not, not there yet or too large to be believed is left to zlib.
void BlfContainers::unpackWhole()
{
    if (m_promised > static_cast<qint64>(Capacity - m_end) || m_left > static_cast<qint64>(ByteInput::MaxAtHand)) {
        return;
    }
    const auto packedSize = static_cast<std::size_t>(m_left);
    const auto size = static_cast<std::size_t>(m_promised);
    const bool isThere = m_in.need(packedSize);
    const std::size_t used =
        isThere ? m_whole.unpack(m_in.window().substr(0, packedSize), m_buffer.get() + m_end, size) : 0;
    if (used > 0) {
        m_in.skip(used);
        m_end += size;
        m_left = 0;
        m_promised = 0;
        m_content = Content::None;
    }
}

/// Both give how many of the size bytes at hand they used.
std::size_t BlfContainers::copyMore(std::size_t size)
{
    if (m_content == Content::Skipped) {
        return size;
    }
    size = std::min(size, Capacity - m_end);
    std::memcpy(m_buffer.get() + m_end, m_in.window().data(), size);
    m_end += size;
    m_promised -= static_cast<qint64>(size);
    return size;
}

std::size_t BlfContainers::inflateMore(std::size_t size)
{
    z_stream &stream = m_inflater->stream;
    // zlib does not write there; its C interface knows no const.
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(m_in.window().data()));
    stream.avail_in = static_cast<uInt>(size);
    stream.next_out = reinterpret_cast<Bytef *>(m_buffer.get() + m_end);
    stream.avail_out = static_cast<uInt>(Capacity - m_end);
    const int result = inflate(&stream, Z_NO_FLUSH);
    const std::size_t given = Capacity - m_end - stream.avail_out;
    m_end += given;
    m_promised -= static_cast<qint64>(given);
    const std::size_t used = size - stream.avail_in;
    if (result == Z_OK || result == Z_BUF_ERROR) {
        return used;
    }
    if (result != Z_STREAM_END) {
        report(FindingTexts::damagedCompression());
        m_promised = 0;
    }
    // Nothing more comes of it, whatever its size says: the next object is looked for from here on.
    m_content = Content::Stored;
    m_left = static_cast<qint64>(used);
    return used;
}

void BlfContainers::endContainer()
{
    if (m_promised != 0) {
        report(FindingTexts::wrongContainerSize());
    }
    m_content = Content::None;
}

/// Within a container, or before one.
void BlfContainers::endOfFile()
{
    if (!m_in.isGrowing()) {
        report(FindingTexts::cutAtEnd());
        m_in.skip(m_in.window().size());
        m_left = 0;
        m_promised = 0;
        m_content = Content::None;
    }
}

/// False when none is there as yet.
bool BlfContainers::nextContainer()
{
    for (;;) {
        const bool isFound = findObject(m_in, m_passed);
        if (isFound && m_in.need(ContainerHeaderSize)) {
            break;
        }
        if (m_in.isGrowing()) {
            return false;
        }
        m_passed += static_cast<qint64>(m_in.window().size());
        m_offset = m_in.offset();
        if (m_passed > MaxPadding) {
            endOfFile();
        }
        m_in.skip(m_in.window().size());
        m_passed = 0;
        return false;
    }
    m_offset = m_in.offset();
    if (m_passed > MaxPadding) {
        m_findings.add(Finding::Offset, m_offset - m_passed, FindingTexts::damagedRecord());
    }
    m_passed = 0;
    beginContainer();
    return true;
}

/// An object that is in none is one that holds itself.
void BlfContainers::beginContainer()
{
    const char *header = m_in.window().data();
    const auto size = qFromLittleEndian<quint32>(header + SizeAt);
    const auto compression = qFromLittleEndian<quint16>(header + CompressionAt);
    const bool isContainer = qFromLittleEndian<quint32>(header + TypeAt) == Container;
    m_left = std::max<qint64>(size, static_cast<qint64>(isContainer ? ContainerHeaderSize : BaseHeaderSize));
    if (!isContainer && size > MaxObjectSize) {
        m_left = BaseHeaderSize; // damaged; the objects' reader tells
    }
    m_promised = m_left;
    m_content = Content::Stored;
    if (!isContainer) {
        return;
    }
    m_left -= ContainerHeaderSize;
    m_promised = qFromLittleEndian<quint32>(header + ContentSizeAt);
    m_in.skip(ContainerHeaderSize);
    if (compression == Deflated) {
        m_content = Content::Deflated;
        inflateReset(&m_inflater->stream);
        unpackWhole();
    } else if (compression != Stored) {
        report(FindingTexts::unknownCompression());
        m_content = Content::Skipped;
        m_promised = 0;
    }
}
