#pragma once

#include "adapter/socketcan/NetlinkTransport.h"
#include "adapter/socketcan/System.h"

namespace socketcan {

/// This machine.
class KernelSystem final : public System
{
public:
    LinkTransport &links() override { return m_transport; }
    std::variant<std::unique_ptr<CanPort>, int> openPort(const Link &link, const PortSettings &settings) override;
    std::string driverOf(const Link &link) override;
    std::string release() override;
    void complain(const std::string &line) override;

private:
    NetlinkTransport m_transport;
};

} // namespace socketcan
