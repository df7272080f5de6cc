#pragma once

#include "adapter/socketcan/Link.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

// The kernel's route netlink messages about interfaces, as bytes in the machine's own order. Layout: linux/rtnetlink.h,
// linux/if_link.h, linux/can/netlink.h.

namespace socketcan {

using Bytes = std::vector<std::uint8_t>;

/// How long the kernel waits before it brings a controller back that went off the bus.
constexpr std::uint32_t RestartMs = 100;

/// Asks for all interfaces.
Bytes linksRequest();
/// Switches an interface on or off.
Bytes upRequest(int index, bool isUp);
/// Bit rates, sample point, mode and restart of a controller that is down.
Bytes settingsRequest(const Link &link, const LinkSettings &settings);
Bytes mtuRequest(int index, std::uint32_t mtu);
/// Brings a controller back that is off the bus.
Bytes restartRequest(const Link &link);

/// Numbers a request; the kernel's answers carry the number.
void setSequence(Bytes &request, std::uint32_t sequence);

/// The interface that a whole message describes; nothing for other messages, for interfaces that are not CAN, and for
/// bytes that are no message.
std::optional<Link> parseLink(const Bytes &message);

/// What the kernel sent in answer to a request, cut into messages.
struct Answer
{
    std::vector<Bytes> messages;
    bool isComplete = false; ///< nothing more comes
    int error = 0;           ///< errno of a refusal; 0 when done
};
/// Adds what one datagram holds. Messages with another sequence number are left out.
void addDatagram(Answer &answer, const std::uint8_t *bytes, std::size_t size, std::uint32_t sequence);

} // namespace socketcan
