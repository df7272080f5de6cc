#include "tests/app/UpdateServer.h"

#include <QProcess>
#include <QTcpSocket>

namespace {
constexpr int StartWaitMs = 30000;
constexpr int StartAttempts = 5;
} // namespace

UpdateServer::UpdateServer(const QStringList &arguments)
    : m_scheme(arguments.contains(QLatin1String("--tls")) ? QStringLiteral("https") : QStringLiteral("http"))
{
    // Loopback is asked directly, whatever the machine's proxy is.
    for (const char *variable : {"http_proxy", "HTTP_PROXY", "all_proxy", "ALL_PROXY"}) {
        qunsetenv(variable);
    }
    for (int attempt = 0; attempt < StartAttempts && m_control == nullptr; ++attempt) {
        start(arguments);
    }
    if (m_control == nullptr) {
        qWarning("The update server does not come: %s", qPrintable(m_listener.errorString()));
        return;
    }
    while (!m_control->canReadLine() && m_control->waitForReadyRead(StartWaitMs)) {
    }
    const QString ready = nextLine();
    if (ready.startsWith(QLatin1String("READY "))) {
        m_port = ready.mid(6);
    }
}

/// Waits for the connection that the script makes. Once in a while Wine loses what the connection comes to.
void UpdateServer::start(const QStringList &arguments)
{
    // A connection instead of pipes: under Wine the script is no Windows process, and pipes do not reach it.
    m_listener.close();
    if (!m_listener.listen(QHostAddress::LocalHost)) {
        return;
    }
    QStringList command{QStringLiteral(X9_UPDATE_SERVER_SCRIPT), QStringLiteral("--control"),
                        QString::number(m_listener.serverPort())};
    command += QStringList(arguments).replaceInStrings(QStringLiteral(X9_DRIVE "/"), QStringLiteral("/"));
    if (!QProcess::startDetached(QStringLiteral(X9_PYTHON), command)) {
        return;
    }
    if (m_listener.waitForNewConnection(StartWaitMs)) {
        m_control = m_listener.nextPendingConnection();
    }
}

UpdateServer::~UpdateServer()
{
    stop();
}

QString UpdateServer::url() const
{
    return m_port.isEmpty() ? QString() : m_scheme + QStringLiteral("://127.0.0.1:") + m_port;
}

QStringList UpdateServer::requests()
{
    // The server tells of a request before it answers; what it has told may not have been read yet.
    while (m_control->waitForReadyRead(0)) {
    }
    while (m_control->canReadLine()) {
        m_requests.append(nextLine());
    }
    return m_requests;
}

QString UpdateServer::nextLine()
{
    return QString::fromUtf8(m_control->readLine()).trimmed();
}

void UpdateServer::stop()
{
    if (m_control != nullptr && m_control->state() == QAbstractSocket::ConnectedState) {
        m_control->write("stop\n");
        m_control->waitForDisconnected(StartWaitMs);
    }
}
