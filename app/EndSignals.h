#pragma once

#include <QObject>

/// Ends the event loop, with exit code 0, when the system wants the program to end: on Unix by SIGTERM, SIGINT or
/// SIGHUP, where a second signal ends the process at once; on Windows by closing its console, Ctrl+C in it, or the end
/// of the session, which waits for the process as long as the system does. One at a time, to live as long as the event
/// loop.
class EndSignals : public QObject
{
    Q_OBJECT

public:
    /// Where no signal can be watched, it says so on standard error, and signals end the process as before.
    EndSignals();
    ~EndSignals() override;
    Q_DISABLE_COPY_MOVE(EndSignals)
};
