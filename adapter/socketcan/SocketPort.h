#pragma once

#include "adapter/AcceptanceFilter.h"
#include "adapter/socketcan/CanPort.h"
#include "adapter/socketcan/FileDescriptor.h"

#include <memory>
#include <variant>

namespace socketcan {

/// A raw CAN socket, or any other datagram socket that carries can_frame and canfd_frame.
class SocketPort final : public CanPort
{
public:
    explicit SocketPort(FileDescriptor socket);
    ~SocketPort() override;

    int descriptor() const override;
    int read(Batch &batch) override;
    int write(const va::CanFrame &frame) override;

private:
    struct Buffers;

    FileDescriptor m_socket;
    std::unique_ptr<Buffers> m_buffers; ///< of read()
};

struct PortSettings
{
    va::AcceptanceFilter filter;
    bool isFd = false;
};

/// Opens a socket on an interface: filtered, with time stamps, reports of errors, and receive buffers as large as the
/// process may have. An errno when that cannot be.
std::variant<std::unique_ptr<CanPort>, int> openSocketPort(int interfaceIndex, const PortSettings &settings);

/// The next length that an FD frame can have on a bus: 0..8, 12, 16, 20, 24, 32, 48, 64.
std::uint8_t busLength(std::uint8_t length);

} // namespace socketcan
