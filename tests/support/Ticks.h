#pragma once

#include <QTimer>
#include <QtTest>

/// Lets so many ticks of a timer of 1 ms pass, each a chance for a frame to go out that must not.
inline void letTicksPass(int count)
{
    int ticks = 0;
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, &timer, [&ticks] { ++ticks; });
    timer.start(1);
    QTRY_VERIFY(ticks >= count);
}

/// Counts how often the event loop of this thread turns.
class Turns
{
public:
    Turns()
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { ++m_count; });
        m_timer.start(1);
    }

    int count() const { return m_count; }

private:
    QTimer m_timer;
    int m_count = 0;
};
