#include "exchange/ByteInput.h"
#include "exchange/ByteOrder.h"
#include "exchange/ChannelNames.h"
#include "exchange/Findings.h"
#include "exchange/FindingTexts.h"
#include "exchange/PcapFormat.h"
#include "exchange/PcapngLayout.h"
#include "exchange/PcapngTime.h"
#include "exchange/SocketCanPacket.h"

#include <algorithm>
#include <string>
#include <vector>

namespace {

using namespace PcapngLayout;

constexpr std::size_t MaxNameSize = 255;
constexpr std::size_t MaxInterfaces = 4096; ///< of a section: a file may name as many as it likes

bool isKnownBlock(quint32 type)
{
    return type == SectionHeader || (type >= Interface && type <= EnhancedPacket);
}

class PcapngReader : public FrameReader
{
public:
    PcapngReader(ByteInput &in, Findings &findings)
        : m_in(in)
        , m_findings(findings)
    {
        m_info.format = QStringLiteral("pcapng");
        m_info.timeBase = CaptureInfo::Absolute;
    }

    int read(BusFrame *frames, int room) override;

private:
    struct InterfaceInfo
    {
        quint32 link = 0;
        std::string name;
        PcapngTime clock;
        quint16 channel = 0;
    };

    enum class AtHand { Block, Damage, TooLittle };

    AtHand look();
    bool has(std::size_t size);
    bool isBlock();
    quint32 blockSize() const;
    void reportLost(const QString &text);
    void endOfFile();
    bool parseBlock(std::string_view block, BusFrame &frame);
    void parseInterface(std::string_view block);
    bool parseEnhanced(std::string_view block, BusFrame &frame);
    bool parseSimple(std::string_view block, BusFrame &frame);
    bool parsePacket(quint32 interface, std::string_view packet, BusFrame &frame);
    void parseFlags(std::string_view options, BusFrame &frame) const;
    bool nextOption(std::string_view &options, quint16 &code, std::string_view &value) const;
    void report(const QString &text) { m_findings.add(Finding::Offset, m_in.offset(), text); }

    ByteInput &m_in;
    Findings &m_findings;
    ChannelNames m_channels;
    ByteOrder m_order;
    std::vector<InterfaceInfo> m_interfaces;
    qint64 m_lostAt = -1; ///< where the damage begins behind which the next block is looked for; -1: none
};

int PcapngReader::read(BusFrame *frames, int room)
{
    int count = 0;
    while (count < room) {
        const AtHand atHand = look();
        if (atHand == AtHand::TooLittle) {
            endOfFile();
            break;
        }
        if (atHand == AtHand::Damage) {
            m_lostAt = m_lostAt < 0 ? m_in.offset() : m_lostAt;
            m_in.skip(1);
            continue;
        }
        if (m_lostAt >= 0) {
            reportLost(FindingTexts::damagedRecord());
        }
        const std::string_view block = m_in.window().substr(0, blockSize());
        count += parseBlock(block, frames[count]) ? 1 : 0;
        m_in.skip(block.size());
    }
    return count;
}

bool PcapngReader::has(std::size_t size)
{
    return m_in.window().size() >= size || m_in.need(size);
}

PcapngReader::AtHand PcapngReader::look()
{
    if (!has(MinBlockSize)) {
        return AtHand::TooLittle;
    }
    if (!isBlock()) {
        return AtHand::Damage;
    }
    const quint32 size = blockSize();
    if (!has(size)) {
        return m_in.isGrowing() ? AtHand::TooLittle : AtHand::Damage;
    }
    const bool isSame = m_order.number<quint32>(m_in.window().data() + size - 4) == size;
    return isSame ? AtHand::Block : AtHand::Damage;
}

void PcapngReader::reportLost(const QString &text)
{
    m_findings.add(Finding::Offset, m_lostAt, text);
    m_lostAt = -1;
}

void PcapngReader::endOfFile()
{
    if (m_in.isGrowing()) {
        return;
    }
    if (!m_in.window().empty()) {
        m_lostAt = m_lostAt < 0 ? m_in.offset() : m_lostAt;
        m_in.skip(m_in.window().size());
    }
    if (m_lostAt >= 0) {
        reportLost(FindingTexts::cutAtEnd());
    }
}

quint32 PcapngReader::blockSize() const
{
    return m_order.number<quint32>(m_in.window().data() + 4);
}

/// Whether a block may begin at the bytes at hand. A section's header settles the order of bytes.
bool PcapngReader::isBlock()
{
    const char *bytes = m_in.window().data();
    if (qFromLittleEndian<quint32>(bytes) == SectionHeader) {
        const auto magic = qFromLittleEndian<quint32>(bytes + 8);
        if (magic != ByteOrderMagic && magic != qbswap(quint32(ByteOrderMagic))) {
            return false;
        }
        m_order = ByteOrder(magic != ByteOrderMagic);
    } else if (m_lostAt >= 0 && !isKnownBlock(m_order.number<quint32>(bytes))) {
        return false;
    }
    const quint32 size = blockSize();
    return size >= MinBlockSize && size % 4 == 0 && size <= ByteInput::MaxAtHand;
}

/// True when it gave a frame.
bool PcapngReader::parseBlock(std::string_view block, BusFrame &frame)
{
    switch (m_order.number<quint32>(block.data())) {
    case SectionHeader:
        m_interfaces.clear();
        return false;
    case Interface:
        parseInterface(block);
        return false;
    case EnhancedPacket:
    case Packet:
        return parseEnhanced(block, frame);
    case SimplePacket:
        return parseSimple(block, frame);
    default:
        return false; // names, statistics and what else may be beside packets
    }
}

bool PcapngReader::nextOption(std::string_view &options, quint16 &code, std::string_view &value) const
{
    if (options.size() < 4) {
        return false;
    }
    code = m_order.number<quint16>(options.data());
    const std::size_t size = m_order.number<quint16>(options.data() + 2);
    if (code == OptionEnd || size > options.size() - 4) {
        return false;
    }
    value = options.substr(4, size);
    options.remove_prefix(std::min(4 + (size + 3) / 4 * 4, options.size()));
    return true;
}

void PcapngReader::parseInterface(std::string_view block)
{
    InterfaceInfo interface;
    if (m_interfaces.size() >= MaxInterfaces || block.size() < InterfaceSize + 4) {
        report(FindingTexts::damagedRecord());
        return;
    }
    interface.link = m_order.number<quint16>(block.data() + 8);
    std::string_view options = block.substr(InterfaceSize, block.size() - InterfaceSize - 4);
    quint16 code = 0;
    std::string_view value;
    while (nextOption(options, code, value)) {
        if (code == InterfaceName) {
            interface.name = value.substr(0, MaxNameSize);
        } else if (code == InterfaceResolution && value.size() == 1) {
            interface.clock.resolution = static_cast<quint8>(value.front());
        } else if (code == InterfaceOffset && value.size() == 8) {
            interface.clock.offset = m_order.number<qint64>(value.data());
        }
    }
    if (interface.name.empty()) {
        interface.name = "if" + std::to_string(m_interfaces.size());
    }
    if (interface.link == LinkSocketCan || interface.link == LinkLinuxCooked) {
        interface.channel = m_channels.number(interface.name);
        m_info.channelNames = m_channels.names();
    }
    m_interfaces.push_back(interface);
}

/// Also the older packet block, in which the interface has two bytes and two count lost packets.
bool PcapngReader::parseEnhanced(std::string_view block, BusFrame &frame)
{
    const bool isOld = m_order.number<quint32>(block.data()) == Packet;
    const quint32 size = block.size() < PacketSize + 4 ? 0 : m_order.number<quint32>(block.data() + 20);
    if (block.size() < PacketSize + 4 || size > block.size() - PacketSize - 4) {
        report(FindingTexts::damagedRecord());
        return false;
    }
    const quint32 interface =
        isOld ? m_order.number<quint16>(block.data() + 8) : m_order.number<quint32>(block.data() + 8);
    const quint64 high = m_order.number<quint32>(block.data() + 12);
    const quint64 time = high << 32U | m_order.number<quint32>(block.data() + 16);
    frame = BusFrame();
    if (!parsePacket(interface, block.substr(PacketSize, size), frame)) {
        return false;
    }
    frame.time = m_interfaces[interface].clock.nanoseconds(time);
    if (frame.time == BusFrame::NoTime) {
        report(FindingTexts::timeOutOfRange());
    }
    const std::size_t padded = PacketSize + (std::size_t(size) + 3) / 4 * 4;
    if (padded + 4 < block.size()) {
        parseFlags(block.substr(padded, block.size() - padded - 4), frame);
    }
    return true;
}

void PcapngReader::parseFlags(std::string_view options, BusFrame &frame) const
{
    quint16 code = 0;
    std::string_view value;
    while (nextOption(options, code, value)) {
        if (code == PacketFlags && value.size() == 4) {
            const bool isOutbound = (m_order.number<quint32>(value.data()) & DirectionMask) == Outbound;
            frame.direction = isOutbound ? BusFrame::Sent : frame.direction;
            return;
        }
    }
}

/// Without a time and of the first interface.
bool PcapngReader::parseSimple(std::string_view block, BusFrame &frame)
{
    frame = BusFrame();
    if (block.size() < SimplePacketSize + 4) {
        report(FindingTexts::damagedRecord());
        return false;
    }
    const std::size_t size =
        std::min<std::size_t>(m_order.number<quint32>(block.data() + 8), block.size() - SimplePacketSize - 4);
    return parsePacket(0, block.substr(SimplePacketSize, size), frame);
}

bool PcapngReader::parsePacket(quint32 interface, std::string_view packet, BusFrame &frame)
{
    if (interface >= m_interfaces.size()) {
        report(FindingTexts::damagedRecord());
        return false;
    }
    const InterfaceInfo &info = m_interfaces[interface];
    const SocketCanPacket parsed = parseSocketCan(info.link, packet, frame);
    if (!parsed.isFrame) {
        report(FindingTexts::otherEvent());
        return false;
    }
    frame.channel = info.channel;
    if (info.link == LinkLinuxCooked2) { // of several interfaces
        frame.channel = m_channels.number("if" + std::to_string(parsed.interfaceIndex));
        m_info.channelNames = m_channels.names();
    }
    return true;
}

} // namespace

bool PcapngFormat::recognises(std::string_view head)
{
    return head.size() >= 4 && qFromLittleEndian<quint32>(head.data()) == SectionHeader;
}

std::unique_ptr<FrameReader> PcapngFormat::reader(ByteInput &in, const ReadOptions & /*options*/, Findings &findings)
{
    return std::make_unique<PcapngReader>(in, findings);
}
