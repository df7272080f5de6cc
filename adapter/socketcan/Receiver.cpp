#include "adapter/socketcan/Receiver.h"

#include <sys/epoll.h>
#include <sys/eventfd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <system_error>
#include <utility>

namespace socketcan {

namespace {

constexpr std::uint64_t WakeNumber = 0;
constexpr int ForwardRetryMs = 1;

bool watch(const FileDescriptor &epoll, int descriptor, std::uint64_t number)
{
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.u64 = number;
    return epoll_ctl(epoll.get(), EPOLL_CTL_ADD, descriptor, &event) == 0;
}

} // namespace

Receiver::Receiver(std::function<void(const Link &)> restart)
    : m_restart(std::move(restart))
{
}

Receiver::~Receiver()
{
    stop();
}

bool Receiver::add(const std::shared_ptr<RunningChannel> &channel)
{
    if (!m_thread.joinable() && !start()) {
        return false;
    }
    ++m_callers;
    const std::lock_guard<std::mutex> lock(m_mutex);
    --m_callers;
    const std::uint64_t number = ++m_lastNumber;
    m_channels.emplace(number, channel);
    if (watch(m_epoll, channel->descriptor(), number)) {
        return true;
    }
    m_channels.erase(number);
    return false;
}

void Receiver::remove(const std::shared_ptr<RunningChannel> &channel)
{
    bool isLast = false;
    {
        ++m_callers;
        const std::lock_guard<std::mutex> lock(m_mutex);
        --m_callers;
        const auto found = std::find_if(m_channels.begin(), m_channels.end(),
                                        [&channel](const auto &entry) { return entry.second == channel; });
        if (found == m_channels.end()) {
            return;
        }
        epoll_ctl(m_epoll.get(), EPOLL_CTL_DEL, channel->descriptor(), nullptr);
        m_restarts.erase(found->first);
        m_channels.erase(found);
        isLast = m_channels.empty();
    }
    if (isLast) {
        stop();
    }
}

bool Receiver::start()
{
    m_epoll = FileDescriptor(epoll_create1(EPOLL_CLOEXEC));
    m_wake = FileDescriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    if (!m_epoll.isOpen() || !m_wake.isOpen() || !watch(m_epoll, m_wake.get(), WakeNumber)) {
        return false;
    }
    m_isEnding = false;
    try {
        m_thread = std::thread([this] { run(); });
    } catch (const std::system_error &) {
        return false;
    }
    return true;
}

void Receiver::stop()
{
    if (m_thread.joinable()) {
        m_isEnding = true;
        wake();
        m_thread.join();
    }
}

void Receiver::wake() const
{
    eventfd_write(m_wake.get(), 1);
}

void Receiver::run()
{
    const auto batch = std::make_unique<Batch>();
    std::array<epoll_event, 16> events{};
    int wait = -1;
    while (!m_isEnding) {
        const int count = epoll_wait(m_epoll.get(), events.data(), static_cast<int>(events.size()), wait);
        while (m_callers > 0) {
            std::this_thread::yield(); // whoever loops takes the lock again before anybody else has it
        }
        const std::lock_guard<std::mutex> lock(m_mutex);
        for (int i = 0; i < count; ++i) {
            serve(events.at(static_cast<std::size_t>(i)).data.u64, *batch);
        }
        doWhatIsDue();
        wait = timeout();
    }
}

void Receiver::serve(std::uint64_t channel, Batch &batch)
{
    const auto found = m_channels.find(channel);
    if (found == m_channels.end()) {
        return; // removed meanwhile, or the wake-up, which only ends the waiting
    }
    RunningChannel &running = *found->second;
    for (int turn = 0; turn < BatchesInTurn && running.readOnce(batch); ++turn) {
    }
    if (running.takeNeedsRestart()) {
        m_restarts.emplace(channel, Clock::now() + RestartDelay);
    }
    if (running.isLost()) {
        epoll_ctl(m_epoll.get(), EPOLL_CTL_DEL, running.descriptor(), nullptr);
    }
}

int Receiver::timeout() const
{
    if (m_isForwardWaiting) {
        return ForwardRetryMs;
    }
    if (m_restarts.empty()) {
        return -1;
    }
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(RestartDelay).count();
    return static_cast<int>(left / 10); // a tenth late at most
}

void Receiver::doWhatIsDue()
{
    m_isForwardWaiting = false;
    for (const auto &[number, channel] : m_channels) {
        m_isForwardWaiting = !channel->sendForwards() || m_isForwardWaiting;
    }
    const Clock::time_point now = Clock::now();
    for (auto restart = m_restarts.begin(); restart != m_restarts.end();) {
        if (restart->second > now) {
            ++restart;
            continue;
        }
        m_restart(m_channels.at(restart->first)->link());
        restart = m_restarts.erase(restart);
    }
}

} // namespace socketcan
