#pragma once

#include "capture/PayloadBlocks.h"

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

    quint32 id() const { return idWord & 0x1FFFFFFFU; }
    bool isRemote() const { return (idWord >> 30U & 1U) != 0; }
    bool isExtended() const { return idWord >> 31U != 0; }
    /// Bytes to send, 0 to MaxLength; may be more or less than data holds.
    int length() const { return static_cast<int>(attributes >> 4U & 0xFFU); }
    /// A FrameRecord::Protocol.
    quint8 protocol() const { return static_cast<quint8>(attributes >> 12U & 3U); }

    static constexpr quint32 toIdWord(quint32 id, bool remote, bool extended)
    {
        return (id & 0x1FFFFFFFU) | (remote ? 1U << 30U : 0U) | (extended ? 1U << 31U : 0U);
    }
    /// length: 0 to MaxLength; protocol: 0 to 2.
    static constexpr quint32 toAttributes(int length, quint32 protocol)
    {
        return static_cast<quint32>(length) << 4U | protocol << 12U;
    }
};

/// The frames of a capture file in their order. A frame takes 12 bytes and its payload, nothing is allocated per frame,
/// and growing never moves frames that are already there. Not thread-safe; may be filled in one thread and then moved
/// to another.
class CaptureFrames
{
public:
    CaptureFrames();
    ~CaptureFrames();
    CaptureFrames(CaptureFrames &&) noexcept;
    CaptureFrames &operator=(CaptureFrames &&) noexcept;

    qint64 size() const { return m_size; }
    bool isEmpty() const { return m_size == 0; }
    /// index: 0 to size() - 1.
    CaptureFrame at(qint64 index) const;

    /// data: size bytes, 0 to CaptureFrame::MaxLength.
    void append(quint32 idWord, quint32 attributes, const uchar *data, int size);

private:
    struct Chunk;

    std::vector<std::unique_ptr<Chunk>> m_chunks;
    PayloadBlocks m_payloads;
    qint64 m_size = 0;
};
