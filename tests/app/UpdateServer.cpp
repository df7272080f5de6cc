#include "tests/app/UpdateServer.h"

namespace {
constexpr int StartWaitMs = 30000;
}

UpdateServer::UpdateServer(const QStringList &arguments)
{
    // Loopback is asked directly, whatever the machine's proxy is.
    for (const char *variable : {"http_proxy", "HTTP_PROXY", "all_proxy", "ALL_PROXY"}) {
        qunsetenv(variable);
    }
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QStringLiteral(X9_PYTHON),
                    QStringList{QStringLiteral(X9_UPDATE_SERVER_SCRIPT), QStringLiteral("--until-input-ends")} +
                        arguments);
    while (!m_process.canReadLine() && m_process.waitForReadyRead(StartWaitMs)) {
    }
    const QString ready = QString::fromUtf8(m_process.readLine()).trimmed();
    if (ready.startsWith(QLatin1String("READY "))) {
        m_port = ready.mid(6);
    }
}

UpdateServer::~UpdateServer()
{
    stop();
}

QString UpdateServer::url() const
{
    return m_port.isEmpty() ? QString() : QStringLiteral("http://127.0.0.1:") + m_port;
}

QStringList UpdateServer::requests()
{
    // The server prints a request before it answers; what it has printed may not have been read yet.
    while (m_process.waitForReadyRead(0)) {
    }
    while (m_process.canReadLine()) {
        m_requests.append(QString::fromUtf8(m_process.readLine()).trimmed());
    }
    return m_requests;
}

void UpdateServer::stop()
{
    m_process.kill();
    m_process.waitForFinished();
}
