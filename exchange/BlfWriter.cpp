#include "exchange/BlfFormat.h"
#include "exchange/BlfHeader.h"
#include "exchange/BlfLayout.h"
#include "exchange/BlfObject.h"
#include "exchange/ByteOutput.h"
#include "exchange/FindingTexts.h"
#include "exchange/TimedFrameWriter.h"

#include <QtEndian>

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <new>

namespace {

using namespace BlfLayout;

constexpr std::size_t ContentSize = 1U << 17U; ///< of a container, as other programs have it
constexpr int CompressionLevel = 1;            ///< a few per cent more bytes than the usual 6, in a third of the time
constexpr qint64 NsPerMs = 1000000;

class BlfWriter : public TimedFrameWriter
{
public:
    BlfWriter(ByteOutput &out, const CaptureInfo &info, Findings &findings);
    ~BlfWriter() override { deflateEnd(&m_stream); }
    BlfWriter(const BlfWriter &) = delete;
    BlfWriter &operator=(const BlfWriter &) = delete;

private:
    void begin() override;
    void put(const BusFrame &frame) override;
    void end() override;
    void putContainer();

    ByteOutput &m_out;
    z_stream m_stream{};
    BlfHeader m_header;
    std::unique_ptr<char[]> m_content;
    std::size_t m_size = 0;
};

BlfWriter::BlfWriter(ByteOutput &out, const CaptureInfo &info, Findings &findings)
    : TimedFrameWriter(info, BlfFormat::Holds, NsPerMs, findings)
    , m_out(out)
    , m_content(new char[ContentSize])
{
    if (deflateInit(&m_stream, CompressionLevel) != Z_OK) {
        throw std::bad_alloc();
    }
    m_header.uncompressedSize = BlfHeader::Size;
}

void BlfWriter::begin()
{
    m_header.start = start();
    m_header.end = start();
    const auto bytes = m_header.bytes();
    m_out.put({bytes.data(), bytes.size()});
}

void BlfWriter::put(const BusFrame &frame)
{
    constexpr std::size_t MaxSize = HeaderSize + BlfObject::MaxBodySize;
    if (ContentSize - m_size < MaxSize) {
        putContainer();
    }
    const qint64 time = sinceStart(frame);
    if (frame.linState == BusFrame::LinError && frame.length != 0) {
        report(FindingTexts::linErrorData());
    }
    char *object = m_content.get() + m_size;
    std::memset(object, 0, MaxSize);
    quint32 type = 0;
    const std::size_t size = HeaderSize + BlfObject::write(frame, object + HeaderSize, type);
    std::memcpy(object, ObjectSignature.data(), ObjectSignature.size());
    qToLittleEndian(quint16(HeaderSize), object + HeaderSizeAt);
    qToLittleEndian(quint16(1), object + HeaderSizeAt + 2);
    qToLittleEndian(static_cast<quint32>(size), object + SizeAt);
    qToLittleEndian(type, object + TypeAt);
    qToLittleEndian(quint32(Nanoseconds), object + TimeUnitAt);
    qToLittleEndian(static_cast<quint64>(time), object + TimeAt);
    m_size += size;
    ++m_header.objects;
    if (m_header.start != 0) {
        m_header.end = std::max(m_header.end, m_header.start + time);
    }
}

void BlfWriter::putContainer()
{
    const auto bound = static_cast<std::size_t>(deflateBound(&m_stream, static_cast<uLong>(m_size)));
    char *container = m_out.room(ContainerHeaderSize + bound + 4);
    m_stream.next_in = reinterpret_cast<Bytef *>(m_content.get());
    m_stream.avail_in = static_cast<uInt>(m_size);
    m_stream.next_out = reinterpret_cast<Bytef *>(container + ContainerHeaderSize);
    m_stream.avail_out = static_cast<uInt>(bound);
    const int result = deflate(&m_stream, Z_FINISH); // there is always room
    Q_ASSERT(result == Z_STREAM_END);
    Q_UNUSED(result)
    deflateReset(&m_stream);
    const std::size_t size = ContainerHeaderSize + bound - m_stream.avail_out;
    std::memset(container, 0, ContainerHeaderSize);
    std::memcpy(container, ObjectSignature.data(), ObjectSignature.size());
    qToLittleEndian(quint16(BaseHeaderSize), container + HeaderSizeAt);
    qToLittleEndian(quint16(1), container + HeaderSizeAt + 2);
    qToLittleEndian(static_cast<quint32>(size), container + SizeAt);
    qToLittleEndian(quint32(Container), container + TypeAt);
    qToLittleEndian(quint16(Deflated), container + CompressionAt);
    qToLittleEndian(static_cast<quint32>(m_size), container + ContentSizeAt);
    const std::size_t padding = size % 4; // not up to a multiple of it: that is how readers expect it
    std::memset(container + size, 0, padding);
    m_out.advance(size + padding);
    m_header.uncompressedSize += ContainerHeaderSize + m_size;
    m_size = 0;
}

void BlfWriter::end()
{
    if (m_size > 0) {
        putContainer();
    }
    m_header.fileSize = static_cast<quint64>(m_out.offset());
    const auto bytes = m_header.bytes();
    if (!m_out.overwrite(0, {bytes.data(), bytes.size()})) {
        m_findings.add(Finding::Nowhere, 0, FindingTexts::headerNotCompleted());
    }
}

} // namespace

std::unique_ptr<FrameWriter> BlfFormat::writer(ByteOutput &out, const WriteOptions &options, Findings &findings)
{
    return std::make_unique<BlfWriter>(out, options.info, findings);
}
