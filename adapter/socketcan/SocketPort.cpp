#include "adapter/socketcan/SocketPort.h"

#include "adapter/socketcan/KernelFilter.h"

#include <linux/can.h>
#include <linux/can/error.h>
#include <linux/can/raw.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <utility>

namespace socketcan {

namespace {

/// Some 300,000 frames; the kernel counts twice of it.
constexpr int ReceiveBufferBytes = 128 * 1024 * 1024;
constexpr std::uint64_t NsPerS = 1000000000;

/// A frame as it passes the socket. The two layouts differ in their size and in the flags, where the classic one has a
/// byte of padding.
canfd_frame toKernel(const va::CanFrame &frame)
{
    canfd_frame result{};
    result.can_id = frame.id | (frame.extended ? CAN_EFF_FLAG : 0U) | (frame.remote ? CAN_RTR_FLAG : 0U);
    result.len = frame.isFd() ? busLength(frame.length) : frame.length;
    result.flags = frame.format == va::FrameFormat::FdBitRateSwitch ? CANFD_BRS : 0;
    std::memcpy(result.data, frame.data.data(), frame.dataSize());
    return result;
}

bool fromKernel(const canfd_frame &received, std::size_t size, Arrival &arrival)
{
    if (size != CAN_MTU && size != CANFD_MTU) {
        return false;
    }
    va::CanFrame &frame = arrival.frame;
    arrival.isError = (received.can_id & CAN_ERR_FLAG) != 0;
    frame.extended = (received.can_id & CAN_EFF_FLAG) != 0;
    frame.remote = (received.can_id & CAN_RTR_FLAG) != 0;
    frame.id = received.can_id & (frame.extended || arrival.isError ? CAN_EFF_MASK : CAN_SFF_MASK);
    frame.format = size == CAN_MTU                     ? va::FrameFormat::Classic
                   : (received.flags & CANFD_BRS) != 0 ? va::FrameFormat::FdBitRateSwitch
                                                       : va::FrameFormat::Fd;
    frame.length = std::min(received.len, frame.maxLength());
    std::memcpy(frame.data.data(), received.data, frame.maxLength());
    return true;
}

template<class Value>
Value valueOf(const cmsghdr &control)
{
    Value value{};
    std::memcpy(&value, CMSG_DATA(&control), sizeof value);
    return value;
}

void readControl(msghdr &message, Arrival &arrival, std::optional<std::uint32_t> &dropped)
{
    arrival.isOwn = (message.msg_flags & MSG_CONFIRM) != 0;
    arrival.stampNs = 0;
    for (cmsghdr *control = CMSG_FIRSTHDR(&message); control != nullptr; control = CMSG_NXTHDR(&message, control)) {
        if (control->cmsg_level != SOL_SOCKET) {
            continue;
        }
        if (control->cmsg_type == SCM_TIMESTAMPNS) {
            const auto stamp = valueOf<timespec>(*control);
            arrival.stampNs =
                static_cast<std::uint64_t>(stamp.tv_sec) * NsPerS + static_cast<std::uint64_t>(stamp.tv_nsec);
        } else if (control->cmsg_type == SO_RXQ_OVFL) {
            dropped = valueOf<std::uint32_t>(*control);
        }
    }
}

template<class Value>
bool setOption(int socket, int level, int name, const Value &value)
{
    return setsockopt(socket, level, name, &value, sizeof value) == 0;
}

} // namespace

std::uint8_t busLength(std::uint8_t length)
{
    constexpr std::array<std::uint8_t, 7> lengths = {12, 16, 20, 24, 32, 48, 64};
    return length <= va::MaxClassicLength ? length : *std::lower_bound(lengths.begin(), lengths.end() - 1, length);
}

struct SocketPort::Buffers
{
    struct Slot
    {
        canfd_frame frame;
        iovec vector;
        alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(timespec)) + CMSG_SPACE(sizeof(std::uint32_t))> control;
    };
    std::array<Slot, Batch::Most> slots{};
    std::array<mmsghdr, Batch::Most> messages{};
};

SocketPort::SocketPort(FileDescriptor socket)
    : m_socket(std::move(socket))
    , m_buffers(std::make_unique<Buffers>())
{
    for (std::size_t i = 0; i < Batch::Most; ++i) {
        Buffers::Slot &slot = m_buffers->slots[i];
        slot.vector = {&slot.frame, sizeof slot.frame};
        msghdr &message = m_buffers->messages[i].msg_hdr;
        message.msg_iov = &slot.vector;
        message.msg_iovlen = 1;
        message.msg_control = slot.control.data();
    }
}

SocketPort::~SocketPort() = default;

int SocketPort::descriptor() const
{
    return m_socket.get();
}

int SocketPort::read(Batch &batch)
{
    batch.size = 0;
    batch.dropped.reset();
    for (std::size_t i = 0; i < Batch::Most; ++i) {
        m_buffers->messages[i].msg_hdr.msg_controllen = m_buffers->slots[i].control.size();
    }
    const int count = recvmmsg(m_socket.get(), m_buffers->messages.data(), Batch::Most, MSG_DONTWAIT, nullptr);
    if (count < 0) {
        return errno;
    }
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
        mmsghdr &message = m_buffers->messages[i];
        Arrival &arrival = batch.arrivals[batch.size];
        if (fromKernel(m_buffers->slots[i].frame, message.msg_len, arrival)) {
            readControl(message.msg_hdr, arrival, batch.dropped);
            ++batch.size;
        }
    }
    return 0;
}

int SocketPort::write(const va::CanFrame &frame)
{
    const canfd_frame sent = toKernel(frame);
    const std::size_t size = frame.isFd() ? CANFD_MTU : CAN_MTU;
    ssize_t done = 0;
    do {
        done = send(m_socket.get(), &sent, size, MSG_DONTWAIT | MSG_NOSIGNAL);
    } while (done < 0 && errno == EINTR);
    return done < 0 ? errno : 0;
}

std::variant<std::unique_ptr<CanPort>, int> openSocketPort(int interfaceIndex, const PortSettings &settings)
{
    FileDescriptor socket(::socket(PF_CAN, SOCK_RAW | SOCK_CLOEXEC, CAN_RAW));
    if (!socket.isOpen()) {
        return errno;
    }
    const int fd = socket.get();
    if (!setOption(fd, SOL_SOCKET, SO_RCVBUFFORCE, ReceiveBufferBytes)) {
        setOption(fd, SOL_SOCKET, SO_RCVBUF, ReceiveBufferBytes); // cut to what an ordinary process may have
    }
    const int on = 1;
    const int off = 0;
    const can_err_mask_t allErrors = CAN_ERR_MASK;
    const KernelFilters filters = kernelFilters(settings.filter);
    sockaddr_can address{};
    address.can_family = AF_CAN;
    address.can_ifindex = interfaceIndex;
    // Own frames loop back to the other programs of this machine, and not to this socket.
    const bool isReady = setOption(fd, SOL_CAN_RAW, CAN_RAW_LOOPBACK, on) &&
                         setOption(fd, SOL_CAN_RAW, CAN_RAW_RECV_OWN_MSGS, off) &&
                         setOption(fd, SOL_CAN_RAW, CAN_RAW_ERR_FILTER, allErrors) &&
                         setOption(fd, SOL_CAN_RAW, CAN_RAW_FILTER, filters) &&
                         (!settings.isFd || setOption(fd, SOL_CAN_RAW, CAN_RAW_FD_FRAMES, on)) &&
                         setOption(fd, SOL_SOCKET, SO_TIMESTAMPNS, on) && setOption(fd, SOL_SOCKET, SO_RXQ_OVFL, on) &&
                         bind(fd, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    if (!isReady) {
        return errno;
    }
    return std::make_unique<SocketPort>(std::move(socket));
}

} // namespace socketcan
