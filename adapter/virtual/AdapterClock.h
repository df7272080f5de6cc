#pragma once

#include <chrono>
#include <cstdint>
#include <thread>

namespace va {

/// Where the adapter takes its time from. The library runs on SteadyClock; a test hands in a clock that it moves
/// itself.
class AdapterClock
{
public:
    AdapterClock() = default;
    AdapterClock(const AdapterClock &) = delete;
    AdapterClock &operator=(const AdapterClock &) = delete;
    virtual ~AdapterClock() = default;

    /// Nanoseconds since any fixed point; never goes back. Called under the adapter's lock.
    virtual std::uint64_t nowNs() = 0;
    /// Blocks the calling thread. Called without any lock held, by several threads at once.
    virtual void sleepMs(std::uint32_t milliseconds) = 0;
};

/// The machine's monotonic clock.
class SteadyClock final : public AdapterClock
{
public:
    std::uint64_t nowNs() override
    {
        const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
        return static_cast<std::uint64_t>(std::chrono::nanoseconds(sinceStart).count());
    }
    void sleepMs(std::uint32_t milliseconds) override
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    }
};

} // namespace va
