#include "app/HttpServer.h"

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

std::optional<Release> releaseOf(const QByteArray &answer)
{
    const QJsonDocument document = QJsonDocument::fromJson(answer);
    if (!document.isObject()) {
        return std::nullopt;
    }
    const auto text = [object = document.object()](const char *key) {
        return object.value(QLatin1String(key)).toString();
    };
    return Release{text("name"), text("summary"), text("versionNo"), text("url")};
}
} // namespace

HttpServer::HttpServer(QString baseUrl, QObject *parent)
    : QObject(parent)
    , m_baseUrl(std::move(baseUrl))
{
    connect(&m_client, &HttpClient::sig_finished, this, [this](const HttpOutcome &outcome) {
        const auto release = outcome.error == HttpError::None ? releaseOf(outcome.content) : std::nullopt;
        emit sig_finished(release.has_value(), release.value_or(Release()));
    });
}

void HttpServer::start(const QString &productCode, int limitMs)
{
    m_client.start({queryUrl(m_baseUrl, productCode), m_baseUrl, MaximumAnswer, limitMs});
}

std::optional<Release> HttpServer::query(const QString &productCode, const std::atomic<bool> &isCancelled) const
{
    std::optional<Release> answer;
    QEventLoop loop;
    HttpServer server(m_baseUrl); // one of this thread
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
