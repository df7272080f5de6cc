#include "device/TickTimer.h"

namespace {
constexpr qint64 NsPerMs = 1000000;
}

TickTimer::TickTimer(QObject *parent)
    : QObject(parent)
    , m_source([this] { wake(); })
{
    m_clock.start();
}

void TickTimer::start(int intervalMs)
{
    m_isActive = true;
    m_pace.start(m_clock.nsecsElapsed(), intervalMs * NsPerMs);
    wakeForNext();
}

void TickTimer::stop()
{
    m_source.stop();
    m_isActive = false;
}

void TickTimer::wake()
{
    if (!m_isActive) {
        return;
    }
    const bool isTick = m_pace.accept(m_clock.nsecsElapsed());
    wakeForNext(); // first, as the tick may stop the timer
    if (isTick) {
        emit sig_tick();
    }
}

void TickTimer::wakeForNext()
{
    m_source.wakeAfter(m_pace.next() - m_clock.nsecsElapsed());
}
