#pragma once

#include <QtGlobal>

/// Numbers of pcapng files, draft-ietf-opsawg-pcapng. Each block begins with its type and its size in bytes and ends
/// with its size; sizes are multiples of 4.
namespace PcapngLayout {

enum BlockType : quint32 {
    SectionHeader = 0x0A0D0D0A, ///< the same in both orders of bytes
    Interface = 1,
    Packet = 2, ///< of older files
    SimplePacket = 3,
    EnhancedPacket = 6
};
enum OptionCode : quint16 {
    OptionEnd = 0,
    InterfaceName = 2,
    InterfaceResolution = 9,
    InterfaceOffset = 14,
    PacketFlags = 2
};
enum PacketFlag : quint32 { DirectionMask = 3, Inbound = 1, Outbound = 2 };

constexpr quint32 ByteOrderMagic = 0x1A2B3C4D;

// Bytes before the options or the packet.
constexpr std::size_t MinBlockSize = 12;
constexpr std::size_t InterfaceSize = 16;
constexpr std::size_t PacketSize = 28;
constexpr std::size_t SimplePacketSize = 12;

} // namespace PcapngLayout
