#pragma once

#include "adapter/socketcan/LinkTransport.h"

namespace socketcan {

/// The kernel's route netlink. Each exchange has a socket of its own: they are rare, and nothing old is left in it.
class NetlinkTransport final : public LinkTransport
{
public:
    Answer exchange(Bytes request) override;
};

} // namespace socketcan
