#include "exchange/ByteOutput.h"
#include "exchange/PcapFormat.h"
#include "exchange/PcapngLayout.h"
#include "exchange/SocketCanPacket.h"
#include "exchange/TimedFrameWriter.h"

#include <QtEndian>

#include <cstring>

namespace {

using namespace PcapngLayout;

constexpr qint64 NsPerSecond = 1000000000;
constexpr quint32 SnapLength = 0x40000;

template<typename Number>
char *putNumber(char *at, Number number)
{
    qToLittleEndian(number, at);
    return at + sizeof number;
}

/// pcap with nanoseconds.
class PcapWriter : public TimedFrameWriter
{
public:
    PcapWriter(ByteOutput &out, const CaptureInfo &info, Findings &findings)
        : TimedFrameWriter(info, PcapFormat::Holds, 1, findings)
        , m_out(out)
    {
    }

private:
    void begin() override;
    void put(const BusFrame &frame) override;

    ByteOutput &m_out;
};

void PcapWriter::begin()
{
    char *at = m_out.room(24);
    at = putNumber<quint32>(at, 0xA1B23C4D);
    at = putNumber<quint16>(at, 2);
    at = putNumber<quint16>(at, 4);
    at = putNumber<quint64>(at, 0);
    at = putNumber<quint32>(at, SnapLength);
    putNumber<quint32>(at, LinkSocketCan);
    m_out.advance(24);
}

void PcapWriter::put(const BusFrame &frame)
{
    const auto time = static_cast<quint64>(absoluteTime(frame));
    const std::size_t size = socketCanSize(frame);
    char *at = m_out.room(16 + size);
    at = putNumber(at, static_cast<quint32>(time / NsPerSecond));
    at = putNumber(at, static_cast<quint32>(time % NsPerSecond));
    at = putNumber(at, static_cast<quint32>(size));
    at = putNumber(at, static_cast<quint32>(size));
    writeSocketCan(frame, at);
    m_out.advance(16 + size);
}

class PcapngWriter : public TimedFrameWriter
{
public:
    PcapngWriter(ByteOutput &out, const CaptureInfo &info, Findings &findings)
        : TimedFrameWriter(info, PcapngFormat::Holds, 1, findings)
        , m_out(out)
        , m_names(info.channelNames)
    {
    }

private:
    void begin() override;
    void put(const BusFrame &frame) override;
    void putInterface(int channel);

    ByteOutput &m_out;
    QStringList m_names;
    int m_interfaceCount = 0; ///< those of all channels up to the highest seen, so that they have its number
};

void PcapngWriter::begin()
{
    constexpr quint32 Size = 28;
    char *at = m_out.room(Size);
    at = putNumber<quint32>(at, SectionHeader);
    at = putNumber<quint32>(at, Size);
    at = putNumber<quint32>(at, ByteOrderMagic);
    at = putNumber<quint16>(at, 1);
    at = putNumber<quint16>(at, 0);
    at = putNumber<qint64>(at, -1); // how long the section is: not known yet
    putNumber<quint32>(at, Size);
    m_out.advance(Size);
}

/// With its name, and nanoseconds.
void PcapngWriter::putInterface(int channel)
{
    constexpr int MaxNameSize = 255;
    QByteArray name = m_names.value(channel).toUtf8().left(MaxNameSize);
    if (name.isEmpty()) {
        name = "can" + QByteArray::number(channel);
    }
    const auto nameSize = static_cast<quint32>(name.size());
    const quint32 padded = (nameSize + 3) / 4 * 4;
    const quint32 size = 32 + padded + 4;
    char *at = m_out.room(size);
    std::memset(at, 0, size);
    at = putNumber<quint32>(at, Interface);
    at = putNumber<quint32>(at, size);
    at = putNumber<quint16>(at, LinkSocketCan);
    at = putNumber<quint16>(at, 0);
    at = putNumber<quint32>(at, SnapLength);
    at = putNumber<quint16>(at, InterfaceName);
    at = putNumber(at, static_cast<quint16>(nameSize));
    std::memcpy(at, name.constData(), nameSize);
    at += padded;
    at = putNumber<quint16>(at, InterfaceResolution);
    at = putNumber<quint16>(at, 1);
    putNumber<quint32>(at, 9);
    at = putNumber<quint32>(at + 4, 0);
    putNumber<quint32>(at, size);
    m_out.advance(size);
}

void PcapngWriter::put(const BusFrame &frame)
{
    constexpr quint32 OptionsSize = 12;
    while (m_interfaceCount <= frame.channel) {
        putInterface(m_interfaceCount++);
    }
    const auto time = static_cast<quint64>(absoluteTime(frame));
    const auto size = static_cast<quint32>(socketCanSize(frame));
    const auto blockSize = static_cast<quint32>(PacketSize) + size + OptionsSize + 4;
    char *at = m_out.room(blockSize);
    at = putNumber<quint32>(at, EnhancedPacket);
    at = putNumber(at, blockSize);
    at = putNumber<quint32>(at, frame.channel);
    at = putNumber(at, static_cast<quint32>(time >> 32U));
    at = putNumber(at, static_cast<quint32>(time));
    at = putNumber(at, size);
    at = putNumber(at, size);
    writeSocketCan(frame, at);
    at += size;
    at = putNumber<quint16>(at, PacketFlags);
    at = putNumber<quint16>(at, 4);
    at = putNumber<quint32>(at, frame.direction == BusFrame::Sent ? Outbound : Inbound);
    at = putNumber<quint32>(at, OptionEnd);
    putNumber(at, blockSize);
    m_out.advance(blockSize);
}

} // namespace

std::unique_ptr<FrameWriter> PcapFormat::writer(ByteOutput &out, const WriteOptions &options, Findings &findings)
{
    return std::make_unique<PcapWriter>(out, options.info, findings);
}

std::unique_ptr<FrameWriter> PcapngFormat::writer(ByteOutput &out, const WriteOptions &options, Findings &findings)
{
    return std::make_unique<PcapngWriter>(out, options.info, findings);
}
