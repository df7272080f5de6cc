#include "tests/app/UpdateServer.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QProcess>
#include <QThread>

#include <functional>

namespace {
constexpr int WaitMs = 30000;
constexpr int StepMs = 5;

bool waitFor(const std::function<bool()> &condition)
{
    for (const QDeadlineTimer limit(WaitMs); !condition(); QThread::msleep(StepMs)) {
        if (limit.hasExpired()) {
            return false;
        }
    }
    return true;
}
} // namespace

UpdateServer::UpdateServer(const QStringList &arguments)
    : m_scheme(arguments.contains(QLatin1String("--tls")) ? QStringLiteral("https") : QStringLiteral("http"))
{
    // Loopback is asked directly, whatever the machine's proxy is.
    for (const char *variable : {"http_proxy", "HTTP_PROXY", "all_proxy", "ALL_PROXY"}) {
        qunsetenv(variable);
    }
    // Files: under Wine the script is no Windows process, pipes do not reach it, and a process that has opened and
    // closed many connections loses some that it still has.
    QStringList command{QStringLiteral(X9_UPDATE_SERVER_SCRIPT), QStringLiteral("--control"), m_control.path()};
    command += arguments;
    command.replaceInStrings(QStringLiteral(X9_DRIVE "/"), QStringLiteral("/"));
    if (!QProcess::startDetached(QStringLiteral(X9_PYTHON), command) ||
        !waitFor([this] { return !lines().isEmpty(); })) {
        qWarning("The update server does not come");
        return;
    }
    m_port = lines().constFirst().mid(int(qstrlen("READY ")));
}

UpdateServer::~UpdateServer()
{
    stop();
}

QString UpdateServer::url() const
{
    return m_port.isEmpty() ? QString() : m_scheme + QStringLiteral("://127.0.0.1:") + m_port;
}

/// The server tells of a request before it answers.
QStringList UpdateServer::requests() const
{
    return lines().mid(1);
}

/// What the server has told so far, whole lines only.
QStringList UpdateServer::lines() const
{
    QFile file(m_control.filePath(QStringLiteral("lines")));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    QStringList all = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    all.removeLast();
    return all;
}

void UpdateServer::stop()
{
    if (m_port.isEmpty() || m_isStopped) {
        return;
    }
    m_isStopped = true;
    QFile stop(m_control.filePath(QStringLiteral("stop")));
    if (!stop.open(QIODevice::WriteOnly) ||
        !waitFor([this] { return QFile::exists(m_control.filePath(QStringLiteral("ended"))); })) {
        qWarning("The update server does not end");
    }
}
