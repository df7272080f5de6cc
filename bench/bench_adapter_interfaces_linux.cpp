#include "bench/bench_adapter_interfaces.h"

#include "adapter/socketcan/Receiver.h"
#include "adapter/socketcan/SocketPort.h"
#include "bench/ProcessFigures.h"

#include <fcntl.h>
#include <linux/can/raw.h>
#include <net/if.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <ctime>
#include <memory>
#include <thread>
#include <vector>

using namespace std::chrono_literals;
using socketcan::FileDescriptor;
using socketcan::Receiver;
using socketcan::RunningChannel;
using socketcan::SocketPort;

namespace {

using Clock = std::chrono::steady_clock;
constexpr int LatencySamples = 500;
constexpr std::chrono::milliseconds Silence{1000};

double threadSeconds()
{
    timespec used{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
    return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) / 1e9;
}

std::shared_ptr<RunningChannel> channelOn(std::unique_ptr<socketcan::CanPort> port)
{
    return std::make_shared<RunningChannel>(RunningChannel::Settings{}, std::move(port), socketcan::Moment::now());
}

va::CanFrame frameOf8Bytes()
{
    va::CanFrame frame;
    frame.id = 0x123;
    frame.length = 8;
    return frame;
}

struct Flood
{
    std::uint64_t sent = 0;
    std::uint64_t received = 0;
    double cpu = 0; ///< seconds, of receiving and reading out, without the sender
};

/// Sends as fast as it can for so long; what waits is taken out every millisecond.
Flood flood(RunningChannel &channel, socketcan::CanPort &sender, int seconds)
{
    Flood result;
    std::atomic<bool> isOver{false};
    double senderCpu = 0;
    const double before = cpuSeconds();
    std::thread thread([&] {
        const va::CanFrame frame = frameOf8Bytes();
        const Clock::time_point end = Clock::now() + std::chrono::seconds(seconds);
        while (Clock::now() < end) {
            for (int i = 0; i < 100; ++i) {
                result.sent += sender.write(frame) == 0 ? 1U : 0U;
            }
        }
        senderCpu = threadSeconds();
        isOver = true;
    });
    // The sender may be far ahead: until it is over and for a while nothing comes any more.
    for (Clock::time_point last = Clock::now(); !isOver || Clock::now() - last < Silence;) {
        const std::size_t count = channel.receive(1000000, [](const va::WaitingFrame & /*frame*/) {});
        result.received += count;
        last = count > 0 ? Clock::now() : last;
        std::this_thread::sleep_for(1ms);
    }
    thread.join();
    result.cpu = cpuSeconds() - before - senderCpu;
    return result;
}

/// Microseconds from the sending of a frame, which is the kernel's stamp, to its record being there, in the middle.
double latencyUs(RunningChannel &channel, socketcan::CanPort &sender)
{
    std::vector<double> samples;
    for (int i = 0; i < LatencySamples; ++i) {
        std::this_thread::sleep_for(1ms);
        const Clock::time_point sentAt = Clock::now();
        sender.write(frameOf8Bytes());
        while (channel.waiting() == 0) {
        }
        samples.push_back(std::chrono::duration<double, std::micro>(Clock::now() - sentAt).count());
        channel.clear();
    }
    return median(std::move(samples));
}

/// The same to a program that does nothing but wait for a frame in a read.
double plainLatencyUs(int descriptor, socketcan::CanPort &sender)
{
    std::vector<double> samples;
    std::atomic<int> seen{0};
    std::thread reader([&] {
        std::array<char, 128> frame{};
        while (seen < LatencySamples && read(descriptor, frame.data(), frame.size()) > 0) {
            ++seen;
        }
    });
    for (int i = 0; i < LatencySamples; ++i) {
        std::this_thread::sleep_for(1ms);
        const Clock::time_point sentAt = Clock::now();
        sender.write(frameOf8Bytes());
        while (seen <= i) {
        }
        samples.push_back(std::chrono::duration<double, std::micro>(Clock::now() - sentAt).count());
    }
    reader.join();
    return median(std::move(samples));
}

/// A program of its own, whose processor time can be told from that of others.
class Candump
{
public:
    explicit Candump(const std::string &interface)
        : m_pid(fork())
    {
        if (m_pid == 0) {
            dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
            execlp("candump", "candump", "-L", "-r", "134217728", interface.c_str(), nullptr);
            _exit(127);
        }
        std::this_thread::sleep_for(1s); // it says nothing before it listens
    }
    /// Seconds that it used; ends it.
    double end() const
    {
        std::this_thread::sleep_for(1s); // until it has written what waits
        kill(m_pid, SIGTERM);
        rusage used{};
        int status = 0;
        wait4(m_pid, &status, 0, &used);
        const auto seconds = [](const timeval &time) {
            return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
        };
        return seconds(used.ru_utime) + seconds(used.ru_stime);
    }

private:
    pid_t m_pid;
};

std::unique_ptr<socketcan::CanPort> portOn(const std::string &interface)
{
    auto port = socketcan::openSocketPort(static_cast<int>(if_nametoindex(interface.c_str())), {});
    auto *opened = std::get_if<std::unique_ptr<socketcan::CanPort>>(&port);
    return opened == nullptr ? nullptr : std::move(*opened);
}

void addFlood(BenchReport &report, const QString &where, const Flood &result)
{
    report.add(QStringLiteral("SocketCAN, receiving, %1, 8-byte frames").arg(where),
               static_cast<double>(result.received) / result.cpu / 1e6, QStringLiteral("Mframes/s CPU"));
    report.add(QStringLiteral("SocketCAN, lost, %1").arg(where), static_cast<double>(result.sent - result.received),
               QStringLiteral("frames"), BenchReport::Target::AtMost, 0);
}

void measureSocketPair(BenchReport &report, int seconds)
{
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        return;
    }
    SocketPort sender{FileDescriptor(ends[1])};
    const auto channel = channelOn(std::make_unique<SocketPort>(FileDescriptor(ends[0])));
    Receiver receiver([](const socketcan::Link & /*link*/) {});
    receiver.add(channel);
    addFlood(report, QStringLiteral("socket pair"), flood(*channel, sender, seconds));
    report.add(QStringLiteral("SocketCAN, frame to record, socket pair"), latencyUs(*channel, sender),
               QStringLiteral("us"));
    receiver.remove(channel);
}

void measureInterface(BenchReport &report, const QString &name, int seconds)
{
    const std::string interface = name.toStdString();
    const auto sender = portOn(interface);
    auto port = portOn(interface);
    const auto plain = portOn(interface);
    if (!sender || !port || !plain) {
        qWarning("%s cannot be opened", interface.c_str());
        return;
    }
    const auto channel = channelOn(std::move(port));
    Receiver receiver([](const socketcan::Link & /*link*/) {});
    receiver.add(channel);
    const Candump candump(interface);
    const Flood result = flood(*channel, *sender, seconds);
    const double candumpCpu = candump.end();
    addFlood(report, name, result);
    report.add(QStringLiteral("SocketCAN, processor time, %1, part of candump's").arg(name), result.cpu / candumpCpu,
               QStringLiteral("x"));
    const double latency = latencyUs(*channel, *sender);
    socketcan::Batch waiting; // what the flood has left in the other socket
    while (plain->read(waiting) == 0) {
    }
    report.add(QStringLiteral("SocketCAN, frame to record, %1").arg(name), latency, QStringLiteral("us"));
    report.add(QStringLiteral("SocketCAN, frame to record, %1, times a plain read").arg(name),
               latency / plainLatencyUs(plain->descriptor(), *sender), QStringLiteral("x"));
    receiver.remove(channel);
}

} // namespace

void addInterfaceFigures(BenchReport &report, const QString &interface, int seconds)
{
    if (interface.isEmpty()) {
        measureSocketPair(report, seconds);
    } else {
        measureInterface(report, interface, seconds);
    }
}
