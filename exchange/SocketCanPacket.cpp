#include "exchange/SocketCanPacket.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>

// linux/can.h and the description of LINKTYPE_CAN_SOCKETCAN: the identifier with its flags, big-endian; the length; the
// flags of CAN FD; two bytes of no use here; the data.

namespace {

constexpr quint32 ExtendedFlag = 0x80000000;
constexpr quint32 RemoteFlag = 0x40000000;
constexpr quint32 ErrorFlag = 0x20000000;
constexpr quint32 ExtendedMask = 0x1FFFFFFF;
constexpr quint32 StandardMask = 0x7FF;

constexpr uchar FdBitRateSwitch = 0x01;
constexpr uchar FdErrorStateIndicator = 0x02;
constexpr uchar FdFormat = 0x04;

constexpr std::size_t HeaderSize = 8;
constexpr std::size_t FdSize = 72;
constexpr int MaxClassicLength = 8;

void setIdentifier(BusFrame &frame, quint32 word)
{
    const bool isError = (word & ErrorFlag) != 0;
    const bool isExtended = (word & ExtendedFlag) != 0;
    frame.identifier = word & (isExtended || isError ? ExtendedMask : StandardMask);
    frame.set(BusFrame::Error, isError);
    frame.set(BusFrame::Extended, isExtended && !isError);
    frame.set(BusFrame::Remote, (word & RemoteFlag) != 0 && !isError);
}

/// Most frames are full.
void copyData(void *to, const void *from, std::size_t size)
{
    if (size == MaxClassicLength) {
        std::memcpy(to, from, MaxClassicLength);
    } else {
        std::memcpy(to, from, size);
    }
}

bool parsePlain(std::string_view packet, BusFrame &frame, bool isFd)
{
    if (packet.size() < HeaderSize) {
        return false;
    }
    const auto *bytes = reinterpret_cast<const uchar *>(packet.data());
    const int length = bytes[4];
    const uchar fdFlags = bytes[5];
    setIdentifier(frame, qFromBigEndian<quint32>(bytes));
    const bool hasFd = !frame.is(BusFrame::Error) &&
                       (isFd || (fdFlags & FdFormat) != 0 || packet.size() == FdSize || length > MaxClassicLength);
    if (length > (hasFd ? BusFrame::MaxLength : MaxClassicLength)) {
        return false; // among them CAN XL, which sets the highest bit here
    }
    if (hasFd) {
        frame.set(BusFrame::Fd);
        frame.set(BusFrame::Remote, false);
        frame.set(BusFrame::BitRateSwitch, (fdFlags & FdBitRateSwitch) != 0);
        frame.set(BusFrame::ErrorStateIndicator, (fdFlags & FdErrorStateIndicator) != 0);
    }
    frame.length = static_cast<quint8>(length);
    if (frame.is(BusFrame::Remote)) {
        return true;
    }
    if (packet.size() < HeaderSize + frame.length) {
        return false;
    }
    copyData(frame.data.data(), bytes + HeaderSize, frame.length);
    return true;
}

/// The headers of packets that were captured "cooked", from all interfaces at once.
struct CookedLayout
{
    std::size_t size;
    std::size_t protocol;
    std::size_t packetType; ///< the byte of it that says something
};
constexpr CookedLayout Cooked = {16, 14, 1};
constexpr CookedLayout Cooked2 = {20, 0, 10};
constexpr std::size_t Cooked2InterfaceIndex = 4;
constexpr quint16 ProtocolCan = 0x000C;
constexpr quint16 ProtocolCanFd = 0x000D;
constexpr uchar PacketSentByUs = 4;

bool parseCooked(const CookedLayout &layout, std::string_view packet, BusFrame &frame)
{
    if (packet.size() < layout.size) {
        return false;
    }
    const auto *bytes = reinterpret_cast<const uchar *>(packet.data());
    const auto protocol = qFromBigEndian<quint16>(bytes + layout.protocol);
    frame.direction = bytes[layout.packetType] == PacketSentByUs ? BusFrame::Sent : BusFrame::Received;
    return (protocol == ProtocolCan || protocol == ProtocolCanFd) &&
           parsePlain(packet.substr(layout.size), frame, protocol == ProtocolCanFd);
}

} // namespace

SocketCanPacket parseSocketCan(quint32 link, std::string_view packet, BusFrame &frame)
{
    switch (link) {
    case LinkSocketCan:
        return {parsePlain(packet, frame, false), 0};
    case LinkLinuxCooked:
        return {parseCooked(Cooked, packet, frame), 0};
    case LinkLinuxCooked2:
        if (parseCooked(Cooked2, packet, frame)) {
            return {true, qFromBigEndian<quint32>(packet.data() + Cooked2InterfaceIndex)};
        }
        break;
    default:
        break;
    }
    return {};
}

void writeSocketCan(const BusFrame &frame, char *packet)
{
    quint32 word = frame.identifier & ExtendedMask;
    if (frame.is(BusFrame::Error)) {
        word |= ErrorFlag;
    } else {
        word |= (frame.is(BusFrame::Extended) ? ExtendedFlag : 0U) | (frame.is(BusFrame::Remote) ? RemoteFlag : 0U);
    }
    qToBigEndian(word, packet);
    packet[4] = static_cast<char>(frame.length);
    unsigned fdFlags = 0;
    if (frame.is(BusFrame::Fd)) {
        fdFlags = FdFormat | (frame.is(BusFrame::BitRateSwitch) ? FdBitRateSwitch : 0U) |
                  (frame.is(BusFrame::ErrorStateIndicator) ? FdErrorStateIndicator : 0U);
    }
    packet[5] = static_cast<char>(fdFlags);
    packet[6] = 0;
    packet[7] = 0;
    copyData(packet + HeaderSize, frame.data.data(), socketCanSize(frame) - HeaderSize);
}
