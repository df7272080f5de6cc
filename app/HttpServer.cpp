#include "app/HttpServer.h"

#include "app/HttpClient.h"
#include "app/ServiceAddress.h"

#include <QEventLoop>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimer>
#include <QUrl>
#include <QUrlQuery>

#include <utility>

namespace {
constexpr qint64 MaximumAnswer = Q_INT64_C(1024) * 1024; ///< bytes
constexpr int CancelPollMs = 100;

/// The address of a query; an invalid one when the base URL is none.
QUrl queryUrl(const QString &baseUrl, const QString &productCode)
{
    QUrl url(baseUrl.trimmed(), QUrl::StrictMode);
    if (!url.isValid()) {
        return {};
    }
    QString path = url.path(QUrl::FullyEncoded);
    while (path.endsWith(QLatin1Char('/'))) {
        path.chop(1);
    }
    url.setPath(path + QStringLiteral("/api/software-product-versions/latest-byswcode"), QUrl::TolerantMode);
    url.setFragment(QString());
    QUrlQuery items;
    items.addQueryItem(QStringLiteral("langCode"), QStringLiteral("CN"));
    items.addQueryItem(QStringLiteral("swSnCode"), QString::fromLatin1(QUrl::toPercentEncoding(productCode)));
    url.setQuery(items);
    return url;
}

/// The answer, in memory.
class Answer : public HttpContent
{
public:
    bool write(const QByteArray &piece) override
    {
        m_bytes += piece;
        return true;
    }

    std::optional<Release> release() const
    {
        const QJsonDocument document = QJsonDocument::fromJson(m_bytes);
        if (!document.isObject()) {
            return std::nullopt;
        }
        const QJsonObject object = document.object();
        const auto text = [&object](const char *key) {
            return object.value(QLatin1String(key)).toString();
        };
        return Release{text("name"), text("summary"), text("versionNo"), text("url")};
    }

private:
    QByteArray m_bytes;
};
} // namespace

class HttpServerPrivate
{
public:
    explicit HttpServerPrivate(QString baseUrl)
        : m_baseUrl(std::move(baseUrl))
    {
    }

    const QString m_baseUrl;
    HttpClient m_client;
    std::shared_ptr<Answer> m_answer; ///< of the query that runs
};

HttpServer::HttpServer(QString baseUrl, QObject *parent)
    : QObject(parent)
    , m_p(std::make_unique<HttpServerPrivate>(std::move(baseUrl)))
{
    connect(&m_p->m_client, &HttpClient::sig_finished, this, [this](const HttpOutcome &outcome) {
        const auto answer = std::exchange(m_p->m_answer, nullptr);
        const std::optional<Release> release =
            outcome.error == HttpError::None ? answer->release() : std::optional<Release>();
        emit sig_finished(release.has_value(), release.value_or(Release()));
    });
}

HttpServer::~HttpServer()
{
    abort();
}

void HttpServer::start(const QString &productCode, int limitMs)
{
    m_p->m_answer = std::make_shared<Answer>();
    m_p->m_client.start(
        {queryUrl(m_p->m_baseUrl, productCode), isPlainHttp(m_p->m_baseUrl), MaximumAnswer, limitMs, limitMs},
        m_p->m_answer);
}

void HttpServer::abort()
{
    m_p->m_client.cancel();
    m_p->m_answer.reset();
}

bool HttpServer::isRunning() const
{
    return m_p->m_client.isRunning();
}

std::optional<Release> HttpServer::query(const QString &productCode, const std::atomic<bool> &isCancelled) const
{
    std::optional<Release> answer;
    QEventLoop loop;
    HttpServer server(m_p->m_baseUrl); // one of this thread
    connect(&server, &HttpServer::sig_finished, &loop, [&answer, &loop](bool ok, const Release &release) {
        answer = ok ? std::optional<Release>(release) : std::nullopt;
        loop.quit();
    });
    QTimer poll;
    connect(&poll, &QTimer::timeout, &loop, [&isCancelled, &loop] {
        if (isCancelled) {
            loop.quit();
        }
    });
    poll.start(CancelPollMs);
    server.start(productCode);
    loop.exec();
    return answer;
}

QString programProductCode()
{
    return QStringLiteral("Korvane_CAN");
}

FirmwareQuery firmwareQuery(const QString &baseUrl)
{
    return [baseUrl](const QString &productCode, const std::atomic<bool> &isCancelled) {
        const std::optional<Release> release = HttpServer(baseUrl).query(productCode, isCancelled);
        return release ? release->versionNo : QString();
    };
}
