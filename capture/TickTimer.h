#pragma once

#include "capture/TickPace.h"
#include "capture/TickSource.h"

#include <QElapsedTimer>
#include <QObject>

/// A repeating timer for sending at a fixed interval: its ticks keep the interval on average, and after a delay one
/// tick comes, not all that were missed (TickPace). Lives on the thread that made it.
class TickTimer : public QObject
{
    Q_OBJECT

public:
    explicit TickTimer(QObject *parent = nullptr);

    /// intervalMs above 0; the first tick comes one interval from now. Starts anew when it is running.
    void start(int intervalMs);
    /// No tick comes afterwards.
    void stop();
    bool isActive() const { return m_isActive; }

signals:
    void sig_tick();

private:
    void wake();

    TickSource m_source;
    TickPace m_pace;
    QElapsedTimer m_clock;
    bool m_isActive = false;
};
