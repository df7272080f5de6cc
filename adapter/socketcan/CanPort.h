#pragma once

#include "adapter/CanFrame.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace socketcan {

/// A frame as the kernel hands it over.
struct Arrival
{
    va::CanFrame frame;
    bool isError = false; ///< a report of the controller: frame.id holds its CAN_ERR_* bits, frame.data the details
    bool isOwn = false;   ///< sent through the same port
    std::uint64_t stampNs = 0; ///< of the system's clock; 0: unknown
};

/// What one look at a port brings.
struct Batch
{
    static constexpr std::size_t Most = 128;

    std::array<Arrival, Most> arrivals;
    std::size_t size = 0;
    std::optional<std::uint32_t> dropped; ///< frames that the kernel dropped since the port was opened, when it told
};

/// A way into one CAN interface. The kernel's own is SocketPort; a test has others.
class CanPort
{
public:
    CanPort() = default;
    CanPort(const CanPort &) = delete;
    CanPort &operator=(const CanPort &) = delete;
    virtual ~CanPort() = default;

    /// Readable when frames wait.
    virtual int descriptor() const = 0;
    /// Takes what waits, Batch::Most frames at most, and never waits itself. Answers 0 or an errno, EAGAIN when there
    /// is nothing.
    virtual int read(Batch &batch) = 0;
    /// Hands a frame to the kernel without waiting: 0 or an errno, ENOBUFS or EAGAIN when there is no room. From any
    /// thread.
    virtual int write(const va::CanFrame &frame) = 0;
};

} // namespace socketcan
