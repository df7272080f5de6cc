#pragma once

#include <QtGlobal>

#include <functional>
#include <memory>

/// What wakes the thread's event loop at a given time, as exactly as the system can. May wake late, and up to half a
/// millisecond early. Lives on the thread that made it.
class TickSource
{
public:
    explicit TickSource(std::function<void()> wake);
    ~TickSource();
    TickSource(const TickSource &) = delete;
    TickSource &operator=(const TickSource &) = delete;

    /// Wakes once, so many nanoseconds from now, at once if 0 or less; replaces a wake-up that is still to come.
    void wakeAfter(qint64 ns);
    void stop();

private:
    struct Private;
    std::unique_ptr<Private> m_p;
};
