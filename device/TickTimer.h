#pragma once

#include "device/TickPace.h"
#include "device/TickSource.h"

#include <QElapsedTimer>
#include <QObject>

/// A repeating timer for sending at an interval: its ticks keep the interval on average, and ticks that were held up
/// are made up for within limits (TickPace). Lives on the thread that made it.
class TickTimer : public QObject
{
    Q_OBJECT

public:
    explicit TickTimer(QObject *parent = nullptr);

    /// On at first. Off for ticks that call something slow: however long a call takes, one tick at most waits behind
    /// it.
    void setMakingUp(bool enabled) { m_pace.setMakingUp(enabled); }
    /// intervalMs above 0; the first tick comes one interval from now, never sooner. Starts anew when it is running,
    /// also within a tick: called at every tick, it is a wait after each one, in which nothing is made up for.
    void start(int intervalMs);
    /// No tick comes afterwards.
    void stop();
    bool isActive() const { return m_isActive; }

signals:
    void sig_tick();

private:
    void wake();
    void wakeForNext();

    TickSource m_source;
    TickPace m_pace;
    QElapsedTimer m_clock;
    bool m_isActive = false;
};
