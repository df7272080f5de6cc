#include "capture/TickTimer.h"

namespace {
constexpr qint64 NsPerMs = 1000000;
}

TickTimer::TickTimer(QObject *parent)
    : QObject(parent)
    , m_source([this] { wake(); })
{
}

void TickTimer::start(int intervalMs)
{
    m_clock.start();
    m_pace.start(0, intervalMs * NsPerMs);
    m_source.start(intervalMs);
    m_isActive = true;
}

void TickTimer::stop()
{
    m_source.stop();
    m_isActive = false;
}

void TickTimer::wake()
{
    if (m_isActive && m_pace.accept(m_clock.nsecsElapsed())) {
        emit sig_tick();
    }
}
