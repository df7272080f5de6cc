#pragma once

#include "adapter/socketcan/CanPort.h"
#include "adapter/socketcan/Link.h"
#include "adapter/socketcan/LinkTransport.h"
#include "adapter/socketcan/SocketPort.h"

#include <memory>
#include <string>
#include <variant>

namespace socketcan {

/// What the adapter asks of the machine. The library has the kernel's, a test another one.
class System
{
public:
    System() = default;
    System(const System &) = delete;
    System &operator=(const System &) = delete;
    virtual ~System() = default;

    virtual LinkTransport &links() = 0;
    /// As openSocketPort().
    virtual std::variant<std::unique_ptr<CanPort>, int> openPort(const Link &link, const PortSettings &settings) = 0;
    /// The driver of an interface; its kind where it has none.
    virtual std::string driverOf(const Link &link) = 0;
    /// The kernel's release.
    virtual std::string release() = 0;
    /// A line for the user.
    virtual void complain(const std::string &line) = 0;
};

} // namespace socketcan
