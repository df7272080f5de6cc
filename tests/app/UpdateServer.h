#pragma once

#include <QStringList>
#include <QTemporaryDir>

/// tools/update-server.py as a process of its own; ends with this object, or a while after a test that crashed.
class UpdateServer
{
public:
    /// Starts it and waits until it can be asked. arguments: as the script describes them.
    explicit UpdateServer(const QStringList &arguments = {});
    ~UpdateServer();
    Q_DISABLE_COPY_MOVE(UpdateServer)

    /// "http://127.0.0.1:<port>", or "https://" with "--tls"; empty when it could not be started.
    QString url() const;
    QString port() const { return m_port; }
    /// A base URL or a prefix under which the server behaves as named.
    QString url(const char *behaviour) const { return url() + QLatin1String("/behave/") + QLatin1String(behaviour); }
    /// The request lines so far, in the order in which they came.
    QStringList requests() const;
    /// Ends it, so that connections are refused.
    void stop();

private:
    QStringList lines() const;

    QTemporaryDir m_control; ///< the server's lines come from a file here
    const QString m_scheme;
    QString m_port;
    bool m_isStopped = false;
};
