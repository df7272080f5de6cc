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
