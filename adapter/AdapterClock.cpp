#include "adapter/AdapterClock.h"

#include <chrono>
#include <thread>

namespace va {

std::uint64_t SteadyClock::nowNs()
{
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::nanoseconds>(sinceStart).count());
}

void SteadyClock::sleepMs(std::uint32_t milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

} // namespace va
