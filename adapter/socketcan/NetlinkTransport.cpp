#include "adapter/socketcan/NetlinkTransport.h"

#include "adapter/socketcan/FileDescriptor.h"

#include <linux/netlink.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <array>
#include <cerrno>
#include <cstdint>

namespace socketcan {

namespace {

/// The kernel answers at once; a driver that sets a controller up over USB takes its time.
constexpr timeval AnswerTimeout{2, 0};
/// The kernel never sends larger datagrams.
constexpr std::size_t DatagramSize = std::size_t{64} * 1024;
constexpr std::uint32_t Sequence = 1;

Answer failed(int error)
{
    Answer answer;
    answer.error = error;
    return answer;
}

} // namespace

Answer NetlinkTransport::exchange(Bytes request)
{
    const FileDescriptor socket(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE));
    sockaddr_nl kernel{};
    kernel.nl_family = AF_NETLINK;
    setSequence(request, Sequence);
    if (!socket.isOpen() ||
        setsockopt(socket.get(), SOL_SOCKET, SO_RCVTIMEO, &AnswerTimeout, sizeof AnswerTimeout) != 0 ||
        sendto(socket.get(), request.data(), request.size(), 0, reinterpret_cast<const sockaddr *>(&kernel),
               sizeof kernel) < 0) {
        return failed(errno);
    }
    Answer answer;
    Bytes datagram(DatagramSize);
    while (!answer.isComplete) {
        sockaddr_nl sender{};
        socklen_t senderSize = sizeof sender;
        const ssize_t size = recvfrom(socket.get(), datagram.data(), datagram.size(), 0,
                                      reinterpret_cast<sockaddr *>(&sender), &senderSize);
        if (size < 0 && errno == EINTR) {
            continue;
        }
        if (size <= 0) {
            return failed(size == 0 ? EIO : errno);
        }
        if (sender.nl_pid == 0) { // any process may send to this socket
            addDatagram(answer, datagram.data(), static_cast<std::size_t>(size), Sequence);
        }
    }
    return answer;
}

} // namespace socketcan
