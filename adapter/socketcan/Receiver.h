#pragma once

#include "adapter/socketcan/FileDescriptor.h"
#include "adapter/socketcan/RunningChannel.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

namespace socketcan {

/// Reads all running channels on one thread, which is there as long as there are channels. It also sends what a gateway
/// forwards, and brings controllers back that went off the bus.
class Receiver
{
public:
    /// How long a controller is left off the bus.
    static constexpr std::chrono::milliseconds RestartDelay{100};

    /// restart brings a controller back; it is called on the thread.
    explicit Receiver(std::function<void(const Link &)> restart);
    ~Receiver();
    Receiver(const Receiver &) = delete;
    Receiver &operator=(const Receiver &) = delete;

    // Of one thread at a time.

    /// False when the system has no thread or descriptor left.
    bool add(const std::shared_ptr<RunningChannel> &channel);
    /// When this returns, nothing more is read from the channel, nor forwarded by it.
    void remove(const std::shared_ptr<RunningChannel> &channel);

private:
    using Clock = std::chrono::steady_clock;
    /// Batches read from one channel before the next one has its turn.
    static constexpr int BatchesInTurn = 8;

    bool start();
    void stop();
    void run();
    void serve(std::uint64_t channel, Batch &batch);
    void wake() const;
    /// Milliseconds until there is something to do without a frame; -1: never.
    int timeout() const;
    void doWhatIsDue();

    const std::function<void(const Link &)> m_restart;
    FileDescriptor m_epoll;
    FileDescriptor m_wake;
    std::thread m_thread;
    std::atomic<bool> m_isEnding{false};
    std::atomic<int> m_callers{0}; ///< threads that wait for the lock: the thread lets them in between two rounds

    std::mutex m_mutex; ///< guards everything below
    std::uint64_t m_lastNumber = 0;
    std::map<std::uint64_t, std::shared_ptr<RunningChannel>> m_channels; ///< by the number that epoll knows
    std::map<std::uint64_t, Clock::time_point> m_restarts;               ///< when a channel is to be brought back
    bool m_isForwardWaiting = false;
};

} // namespace socketcan
