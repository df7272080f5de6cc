#pragma once

#include "adapter/socketcan/LinkMessages.h"

namespace socketcan {

/// Carries requests about interfaces to the kernel. A test has one that knows the answers.
class LinkTransport
{
public:
    LinkTransport() = default;
    LinkTransport(const LinkTransport &) = delete;
    LinkTransport &operator=(const LinkTransport &) = delete;
    virtual ~LinkTransport() = default;

    /// Sends one request and takes everything that answers it. error is also set when the transport itself fails. From
    /// any thread, one after the other.
    virtual Answer exchange(Bytes request) = 0;
};

} // namespace socketcan
