#include "app/HttpServer.h"

#include <QEventLoop>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>
#include <QUrl>
#include <QUrlQuery>

#include <functional>
#include <utility>

namespace {
constexpr qint64 MaximumAnswer = Q_INT64_C(1024) * 1024; ///< bytes
constexpr qint64 ReadBuffer = Q_INT64_C(64) * 1024; ///< bytes that are taken from the network before they are looked at
constexpr int MaximumRedirects = 5;
constexpr int CancelPollMs = 100;

bool isHttp(const QUrl &url)
{
    return url.isValid() && !url.host().isEmpty() &&
           (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https"));
}

/// The address of a query; an invalid one when the base URL is of no use.
QUrl queryUrl(const QString &baseUrl, const QString &productCode)
{
    QUrl url(baseUrl.trimmed(), QUrl::StrictMode);
    if (!isHttp(url)) {
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

std::optional<Release> parsed(const QByteArray &answer)
{
    const QJsonDocument document = QJsonDocument::fromJson(answer);
    if (!document.isObject()) {
        return std::nullopt;
    }
    const QJsonObject object = document.object();
    const auto text = [&object](const char *key) {
        return object.value(QLatin1String(key)).toString();
    };
    return Release{text("name"), text("summary"), text("versionNo"), text("url")};
}

/// One query, on the thread that makes it.
class Query : public QObject
{
public:
    using Done = std::function<void(const std::optional<Release> &)>;

    /// done is called once, from the event loop, and not any more after the query was deleted.
    Query(const QUrl &url, Done done, QObject *parent = nullptr);

private:
    void checkAnnouncedSize();
    void receive();
    void end();
    void finish(const std::optional<Release> &release);

    QNetworkAccessManager m_manager;
    QNetworkReply *m_reply = nullptr; ///< owned by the manager
    QByteArray m_answer;
    Done m_done;
};

Query::Query(const QUrl &url, Done done, QObject *parent)
    : QObject(parent)
    , m_done(std::move(done))
{
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setMaximumRedirectsAllowed(MaximumRedirects);
    m_reply = m_manager.get(request);
    m_reply->setReadBufferSize(ReadBuffer);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &Query::checkAnnouncedSize);
    connect(m_reply, &QNetworkReply::readyRead, this, &Query::receive);
    connect(m_reply, &QNetworkReply::finished, this, &Query::end);
}

void Query::checkAnnouncedSize()
{
    if (m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong() > MaximumAnswer) {
        finish(std::nullopt);
    }
}

void Query::receive()
{
    m_answer += m_reply->read(MaximumAnswer + 1 - m_answer.size());
    if (m_answer.size() > MaximumAnswer) {
        finish(std::nullopt);
    }
}

void Query::end()
{
    receive();
    if (m_reply->error() != QNetworkReply::NoError) {
        finish(std::nullopt);
        return;
    }
    finish(parsed(m_answer));
}

void Query::finish(const std::optional<Release> &release)
{
    m_reply->disconnect(this);
    m_reply->abort();
    if (const Done done = std::exchange(m_done, nullptr)) {
        done(release);
    }
}
} // namespace

class HttpServerPrivate
{
public:
    explicit HttpServerPrivate(QString baseUrl)
        : m_baseUrl(std::move(baseUrl))
    {
        m_failure.setSingleShot(true);
    }

    const QString m_baseUrl;
    Query *m_query = nullptr; ///< a child of the object
    QTimer m_failure;         ///< the limit, and what tells of a query that could not even be sent
};

HttpServer::HttpServer(QString baseUrl, QObject *parent)
    : QObject(parent)
    , m_p(std::make_unique<HttpServerPrivate>(std::move(baseUrl)))
{
    connect(&m_p->m_failure, &QTimer::timeout, this, [this] {
        abort();
        emit sig_finished(false, {});
    });
}

HttpServer::~HttpServer()
{
    abort();
}

void HttpServer::start(const QString &productCode, int limitMs)
{
    abort();
    const QUrl url = queryUrl(m_p->m_baseUrl, productCode);
    if (!url.isValid() || url.isEmpty()) {
        m_p->m_failure.start(0);
        return;
    }
    if (limitMs != NoLimit) {
        m_p->m_failure.start(limitMs);
    }
    const auto done = [this](const std::optional<Release> &release) {
        m_p->m_failure.stop();
        Query *query = std::exchange(m_p->m_query, nullptr);
        query->setParent(nullptr); // it is what calls, and a receiver of the signal may delete this object
        query->deleteLater();
        emit sig_finished(release.has_value(), release.value_or(Release()));
    };
    m_p->m_query = new Query(url, done, this);
}

void HttpServer::abort()
{
    m_p->m_failure.stop();
    delete std::exchange(m_p->m_query, nullptr);
}

bool HttpServer::isRunning() const
{
    return m_p->m_query != nullptr || m_p->m_failure.isActive();
}

std::optional<Release> HttpServer::query(const QString &productCode, const std::atomic<bool> &isCancelled) const
{
    const QUrl url = queryUrl(m_p->m_baseUrl, productCode);
    if (!url.isValid() || url.isEmpty() || isCancelled) {
        return std::nullopt;
    }
    std::optional<Release> answer;
    QEventLoop loop;
    const Query query(url, [&answer, &loop](const std::optional<Release> &release) {
        answer = release;
        loop.quit();
    });
    QTimer poll;
    connect(&poll, &QTimer::timeout, &loop, [&isCancelled, &loop] {
        if (isCancelled) {
            loop.quit();
        }
    });
    poll.start(CancelPollMs);
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
