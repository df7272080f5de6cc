#include "capture/TickSource.h"

#include <QTimer>

#include <utility>

struct TickSource::Private
{
    QTimer timer;
};

TickSource::TickSource(std::function<void()> wake)
    : m_p(std::make_unique<Private>())
{
    m_p->timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_p->timer, &QTimer::timeout, &m_p->timer, std::move(wake));
}

TickSource::~TickSource() = default;

void TickSource::start(int intervalMs)
{
    m_p->timer.start(intervalMs);
}

void TickSource::stop()
{
    m_p->timer.stop();
}
