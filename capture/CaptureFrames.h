#pragma once

#include "capture/PayloadBlocks.h"
#include "device/AdapterRecords.h"
#include "device/FrameIdentifier.h"

#include <QByteArray>

#include <memory>
#include <vector>

/// One frame as a capture file holds it: what is needed to send it again.
struct CaptureFrame
{
    static constexpr int MaxLength = 64;

    quint32 idWord = 0;     ///< bits 0-28 identifier, bit 30 remote, bit 31 extended
    quint32 attributes = 0; ///< bits 4-11 length (0 to MaxLength), bits 12-13 protocol (0 to 2)
    QByteArray data;        ///< payload; from a .can file always 8 bytes, whatever the length says

    quint32 id() const { return idWord & MaxExtendedFrameId; }
    bool isRemote() const { return (idWord >> 30U & 1U) != 0; }
    bool isExtended() const { return idWord >> 31U != 0; }
    /// Bytes to send, 0 to MaxLength; may be more or less than data holds.
    int length() const { return static_cast<int>(attributes >> 4U & 0xFFU); }
    /// A FrameRecord::Protocol.
    quint8 protocol() const { return static_cast<quint8>(attributes >> 12U & 3U); }

    static constexpr quint32 toIdWord(quint32 id, bool remote, bool extended)
    {
        return (id & MaxExtendedFrameId) | (remote ? 1U << 30U : 0U) | (extended ? 1U << 31U : 0U);
    }
    /// length: 0 to MaxLength; protocol: 0 to 2.
    static constexpr quint32 toAttributes(int length, quint32 protocol)
    {
        return static_cast<quint32>(length) << 4U | protocol << 12U;
    }
};

/// The adapter's record of a frame, to be sent on a classic channel: whatever its protocol, and at most 8 bytes of it.
/// The record's length is the frame's; bytes that the payload does not hold are 0.
VCI_CAN_OBJ toCanRecord(const CaptureFrame &frame);

/// The same for a CAN FD channel, with at most 64 bytes and the frame's protocol.
VCI_CANFD_OBJ toCanFdRecord(const CaptureFrame &frame);

/// The frames of a capture file in their order. A frame takes 12 bytes and its payload, nothing is allocated per frame,
/// and growing never moves frames that are already there. Not thread-safe; may be filled in one thread and then moved
/// to another.
class CaptureFrames
{
public:
    qint64 size() const;
    bool isEmpty() const { return m_chunks.empty(); }
    /// index: 0 to size() - 1.
    CaptureFrame at(qint64 index) const;

    /// data: size bytes, 0 to CaptureFrame::MaxLength.
    void append(quint32 idWord, quint32 attributes, const uchar *data, int size)
    {
        Q_ASSERT(size >= 0 && size <= CaptureFrame::MaxLength);
        const auto bytes = static_cast<quint32>(size);
        const std::size_t place = m_payloads.put(data, bytes);
        if (m_chunks.empty() || m_chunks.back().size == ChunkFrames) {
            m_chunks.push_back({std::unique_ptr<Row[]>(new Row[ChunkFrames]), place, 0});
        }
        Chunk &chunk = m_chunks.back();
        const auto inChunk = static_cast<quint32>(place - chunk.firstPayload);
        chunk.rows[chunk.size++] = {idWord, attributes, inChunk | bytes << PlaceBits};
    }

private:
    static constexpr std::size_t ChunkFrames = 16384;
    static constexpr quint32 PlaceBits = 25;
    static_assert(2 * ChunkFrames * CaptureFrame::MaxLength + PayloadBlocks::BlockSize < 1U << PlaceBits);
    static_assert(CaptureFrame::MaxLength < 1U << (32 - PlaceBits));

    struct Row
    {
        quint32 idWord;
        quint32 attributes;
        quint32 payload; ///< bits 0-24 its place, counted from the chunk's first one, bits 25-31 its size
    };
    struct Chunk
    {
        std::unique_ptr<Row[]> rows; ///< ChunkFrames of them, uninitialised: pages that hold none are never touched
        std::size_t firstPayload;    ///< its place
        std::size_t size;            ///< rows that hold a frame
    };

    std::vector<Chunk> m_chunks;
    PayloadBlocks m_payloads;
};
