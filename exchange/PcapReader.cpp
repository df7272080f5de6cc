#include "exchange/ByteInput.h"
#include "exchange/ByteOrder.h"
#include "exchange/ChannelNames.h"
#include "exchange/Findings.h"
#include "exchange/FindingTexts.h"
#include "exchange/PcapFormat.h"
#include "exchange/SocketCanPacket.h"

#include <optional>
#include <string>

// draft-ietf-opsawg-pcap: a header of 24 bytes, and 16 before each packet.

namespace {

constexpr quint32 MagicMicroseconds = 0xA1B2C3D4;
constexpr quint32 MagicNanoseconds = 0xA1B23C4D;
constexpr std::size_t HeaderSize = 24;
constexpr std::size_t PacketHeaderSize = 16;
constexpr std::size_t LinkOffset = 20;
constexpr quint32 LinkMask = 0x0FFFFFFF; ///< above are other things
constexpr quint32 MaxPacketSize = 1U << 19U;

/// What the first four bytes say; nothing when they are of no such file.
struct Magic
{
    ByteOrder order;
    qint64 tick; ///< nanoseconds
};

std::optional<Magic> magic(std::string_view head)
{
    if (head.size() < sizeof(quint32)) {
        return std::nullopt;
    }
    for (const bool isBig : {false, true}) {
        const ByteOrder order(isBig);
        const auto number = order.number<quint32>(head.data());
        if (number == MagicMicroseconds || number == MagicNanoseconds) {
            return Magic{order, number == MagicNanoseconds ? 1 : 1000};
        }
    }
    return std::nullopt;
}

class PcapReader : public FrameReader
{
public:
    PcapReader(ByteInput &in, Findings &findings)
        : m_in(in)
        , m_findings(findings)
    {
        m_info.format = QStringLiteral("pcap");
        m_info.timeBase = CaptureInfo::Absolute;
    }

    int read(BusFrame *frames, int room) override;

private:
    enum class State { Header, Packets, End };

    void readHeader();
    bool needs(std::size_t size);
    bool parse(std::string_view packet, qint64 time, BusFrame &frame);
    void end(const QString &text);

    ByteInput &m_in;
    Findings &m_findings;
    ChannelNames m_channels;
    State m_state = State::Header;
    ByteOrder m_order;
    qint64 m_tick = 1000;
    quint32 m_link = 0;
};

void PcapReader::end(const QString &text)
{
    m_findings.add(Finding::Offset, m_in.offset(), text);
    m_state = State::End;
}

/// Has that many bytes at hand. Otherwise the file ends here, unless it is growing.
bool PcapReader::needs(std::size_t size)
{
    if (m_in.need(size)) {
        return true;
    }
    if (!m_in.isGrowing() && !m_in.window().empty()) {
        end(FindingTexts::cutAtEnd());
    }
    return false;
}

void PcapReader::readHeader()
{
    if (!needs(HeaderSize)) {
        return;
    }
    const auto found = magic(m_in.window());
    if (!found) {
        end(FindingTexts::damagedHeader());
        return;
    }
    m_order = found->order;
    m_tick = found->tick;
    m_link = m_order.number<quint32>(m_in.window().data() + LinkOffset) & LinkMask;
    m_in.skip(HeaderSize);
    m_state = State::Packets;
}

int PcapReader::read(BusFrame *frames, int room)
{
    constexpr qint64 NsPerSecond = 1000000000;
    if (m_state == State::Header) {
        readHeader();
    }
    int count = 0;
    while (m_state == State::Packets && count < room && needs(PacketHeaderSize)) {
        const char *header = m_in.window().data();
        const qint64 time =
            m_order.number<quint32>(header) * NsPerSecond + m_order.number<quint32>(header + 4) * m_tick;
        const auto size = m_order.number<quint32>(header + 8);
        if (size > MaxPacketSize) { // there is nothing to find the next one by
            end(FindingTexts::damagedRecord());
            break;
        }
        if (!needs(PacketHeaderSize + size)) {
            break;
        }
        count += parse(m_in.window().substr(PacketHeaderSize, size), time, frames[count]) ? 1 : 0;
        m_in.skip(PacketHeaderSize + size);
    }
    return count;
}

bool PcapReader::parse(std::string_view packet, qint64 time, BusFrame &frame)
{
    frame = BusFrame();
    frame.time = time;
    const SocketCanPacket parsed = parseSocketCan(m_link, packet, frame);
    if (!parsed.isFrame) {
        m_findings.add(Finding::Offset, m_in.offset(), FindingTexts::otherEvent());
        return false;
    }
    if (m_link == LinkLinuxCooked2) {
        frame.channel = m_channels.number("if" + std::to_string(parsed.interfaceIndex));
        m_info.channelNames = m_channels.names();
    }
    return true;
}

} // namespace

bool PcapFormat::recognises(std::string_view head)
{
    return magic(head).has_value();
}

std::unique_ptr<FrameReader> PcapFormat::reader(ByteInput &in, const ReadOptions & /*options*/, Findings &findings)
{
    return std::make_unique<PcapReader>(in, findings);
}
