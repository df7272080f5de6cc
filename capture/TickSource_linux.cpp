#include "capture/TickSource.h"

#include <QSocketNotifier>
#include <QTimer>

#include <sys/timerfd.h>
#include <unistd.h>

#include <cstdint>
#include <utility>

// A timer of the system, not a QTimer: Qt waits in whole milliseconds, rounded up, and so each tick comes later than
// the one before until one is lost. With an interval of 1 ms that makes 1.08 ms on average.

namespace {
itimerspec everyMs(int intervalMs)
{
    itimerspec times{};
    times.it_interval.tv_sec = intervalMs / 1000;
    times.it_interval.tv_nsec = intervalMs % 1000 * 1000000L;
    times.it_value = times.it_interval;
    return times;
}
} // namespace

struct TickSource::Private
{
    explicit Private(std::function<void()> callback)
        : wake(std::move(callback))
        , descriptor(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC))
    {
    }
    ~Private()
    {
        notifier.reset();
        if (descriptor >= 0) {
            close(descriptor);
        }
    }
    Private(const Private &) = delete;
    Private &operator=(const Private &) = delete;

    void read() const
    {
        std::uint64_t expirations = 0; // as many as came since the last time, read all at once
        if (::read(descriptor, &expirations, sizeof expirations) == sizeof expirations) {
            wake();
        }
    }
    void set(const itimerspec &times) const { timerfd_settime(descriptor, 0, &times, nullptr); }

    std::function<void()> wake;
    int descriptor;
    std::unique_ptr<QSocketNotifier> notifier;
    QTimer substitute; ///< when the program has no descriptor left
};

TickSource::TickSource(std::function<void()> wake)
    : m_p(std::make_unique<Private>(std::move(wake)))
{
    Private *p = m_p.get();
    if (p->descriptor >= 0) {
        p->notifier = std::make_unique<QSocketNotifier>(p->descriptor, QSocketNotifier::Read);
        p->notifier->setEnabled(false);
        QObject::connect(p->notifier.get(), &QSocketNotifier::activated, p->notifier.get(), [p] { p->read(); });
    }
    p->substitute.setTimerType(Qt::PreciseTimer);
    QObject::connect(&p->substitute, &QTimer::timeout, &p->substitute, p->wake);
}

TickSource::~TickSource() = default;

void TickSource::start(int intervalMs)
{
    if (m_p->notifier == nullptr) {
        m_p->substitute.start(intervalMs);
        return;
    }
    m_p->set(everyMs(intervalMs));
    m_p->notifier->setEnabled(true);
}

void TickSource::stop()
{
    m_p->substitute.stop();
    if (m_p->notifier != nullptr) {
        m_p->notifier->setEnabled(false);
        m_p->set(everyMs(0));
    }
}
