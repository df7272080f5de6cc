#include "device/TickSource.h"

#include <QTimer>

#include <algorithm>
#include <utility>

struct TickSource::Private
{
    QTimer timer;
};

TickSource::TickSource(std::function<void()> wake)
    : m_p(std::make_unique<Private>())
{
    m_p->timer.setTimerType(Qt::PreciseTimer);
    m_p->timer.setSingleShot(true);
    QObject::connect(&m_p->timer, &QTimer::timeout, &m_p->timer, std::move(wake));
}

TickSource::~TickSource() = default;

void TickSource::wakeAfter(qint64 ns)
{
    const qint64 nearestMs = (std::max<qint64>(ns, 0) + 499'999) / 1'000'000;
    m_p->timer.start(static_cast<int>(nearestMs));
}

void TickSource::stop()
{
    m_p->timer.stop();
}
