#pragma once

#include "exchange/BusFrame.h"

#include <string_view>

/// CAN frames in packet captures. Link types as registered with tcpdump.org.
enum SocketCanLink : quint32 { LinkLinuxCooked = 113, LinkSocketCan = 227, LinkLinuxCooked2 = 276 };

/// What a packet is.
struct SocketCanPacket
{
    bool isFrame = false;       ///< otherwise it is no CAN or CAN FD frame, or not whole
    quint32 interfaceIndex = 0; ///< LinkLinuxCooked2: of the interface, on the computer that captured
};

/// Takes a packet apart into frame, which holds nothing else yet than its time: identifier, flags, length and data; for
/// the cooked links also the direction.
SocketCanPacket parseSocketCan(quint32 link, std::string_view packet, BusFrame &frame);

/// Bytes of a packet of LinkSocketCan, as Linux has it: 16 of a classic frame, 72 of a CAN FD frame.
inline std::size_t socketCanSize(const BusFrame &frame)
{
    return frame.is(BusFrame::Fd) ? 72 : 16;
}
/// Writes socketCanSize() bytes.
void writeSocketCan(const BusFrame &frame, char *packet);
