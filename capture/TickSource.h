#pragma once

#include <functional>
#include <memory>

/// What wakes the thread's event loop at a fixed interval, as exactly as the system can. May wake late, and several
/// times at once after a delay. Lives on the thread that made it.
class TickSource
{
public:
    explicit TickSource(std::function<void()> wake);
    ~TickSource();
    TickSource(const TickSource &) = delete;
    TickSource &operator=(const TickSource &) = delete;

    /// intervalMs above 0. Starts anew when it is running.
    void start(int intervalMs);
    void stop();

private:
    struct Private;
    std::unique_ptr<Private> m_p;
};
