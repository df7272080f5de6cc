#include "device/TickSource.h"

#include <QSocketNotifier>
#include <QTimer>

#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <utility>

// A timer of the system, not a QTimer: Qt waits in whole milliseconds, rounded up, and so each tick comes up to a
// millisecond late.

namespace {
constexpr qint64 NsPerMs = 1'000'000;
constexpr qint64 NsPerSecond = 1'000'000'000;
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
        std::uint64_t expirations = 0;
        if (::read(descriptor, &expirations, sizeof expirations) == sizeof expirations) {
            wake();
        }
    }
    /// Fires once, so many nanoseconds from now; 0 stops it.
    void set(qint64 ns) const
    {
        itimerspec times{};
        times.it_value.tv_sec = ns / NsPerSecond;
        times.it_value.tv_nsec = ns % NsPerSecond;
        timerfd_settime(descriptor, 0, &times, nullptr);
    }

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
    p->substitute.setSingleShot(true);
    QObject::connect(&p->substitute, &QTimer::timeout, &p->substitute, p->wake);
}

TickSource::~TickSource() = default;

void TickSource::wakeAfter(qint64 ns)
{
    const qint64 wait = std::max<qint64>(ns, 1);
    if (m_p->notifier == nullptr) {
        m_p->substitute.start(static_cast<int>((wait + NsPerMs - 1) / NsPerMs));
        return;
    }
    m_p->set(wait);
    m_p->notifier->setEnabled(true);
}

void TickSource::stop()
{
    m_p->substitute.stop();
    if (m_p->notifier != nullptr) {
        m_p->notifier->setEnabled(false);
        m_p->set(0);
    }
}
