#include "app/HttpClient.h"

#include "device/CallQueue.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QThread>

#include <array>
#include <atomic>
#include <mutex>
#include <optional>
#include <utility>

namespace {
constexpr qint64 ReadBuffer = Q_INT64_C(1024) * 1024;   ///< bytes that are taken from the network at a time
constexpr qint64 MaximumHeaders = Q_INT64_C(64) * 1024; ///< bytes
constexpr int MaximumRedirects = 5;
constexpr int HttpOk = 200;
constexpr int EndWaitMs = 500; ///< for all that was given up, when the program ends

std::atomic<int> transferCount{0}; ///< of all objects of the class
std::atomic<int> givenUpCount{0};  ///< of those that nobody waits for

bool isAllowed(const HttpRequest &request)
{
    const QUrl &url = request.url;
    return url.isValid() && !url.host().isEmpty() && isWebAddress(url) &&
           (url.scheme() == QLatin1String("https") || isPlainHttp(request.service));
}

/// A thread with an event loop that does what it is handed.
class Lane : public CallQueue
{
public:
    Lane()
    {
        moveToThread(&m_thread);
        m_thread.start();
    }

private:
    QThread m_thread;
};

void endLanes();

/// One for content that is kept in memory, one for content that goes to a file.
std::array<Lane, 2> &lanes()
{
    static auto &all = *[] {
        qAddPostRoutine(&endLanes);
        return new std::array<Lane, 2>; // never deleted: what they do may outlive everything
    }();
    return all;
}

/// When the program ends. What then still goes on is left to the process.
void endLanes()
{
    const QDeadlineTimer deadline(EndWaitMs);
    while (transferCount > 0 && !deadline.hasExpired()) {
        QThread::msleep(1);
    }
    for (Lane &lane : lanes()) {
        lane.thread()->quit();
        lane.thread()->wait(deadline);
    }
}
} // namespace

/// One request: its exchange with the server, on its lane. Whoever has started it lets it go, on its own thread.
class HttpTransfer : public QObject
{
    Q_OBJECT

public:
    HttpTransfer(HttpRequest request, std::shared_ptr<HttpContent> content)
        : m_request(std::move(request))
        , m_content(std::move(content))
        , m_lane(lanes().at(m_content == nullptr ? 0 : 1))
    {
        ++transferCount;
        moveToThread(m_lane.thread());
    }
    ~HttpTransfer() override
    {
        --transferCount;
        givenUpCount -= m_isGivenUp ? 1 : 0;
    }
    Q_DISABLE_COPY_MOVE(HttpTransfer)

    void start()
    {
        m_lane.post([this] { begin(); });
    }
    /// Returns at once; the object goes by itself.
    void letGo();
    /// Whether the server has made a step since this was last asked, or has done its part; the disk may not have.
    bool hasMoved() { return m_isComplete || m_hasMoved.exchange(false); }
    /// After sig_ended.
    HttpOutcome outcome() const
    {
        const std::lock_guard lock(m_mutex);
        return m_outcome.value_or(HttpOutcome());
    }

signals:
    void sig_ended();

private:
    void begin();
    void checkHeaders();
    void receive();
    void takeEnd();
    void finish(HttpError error, const QString &detail = {});
    void end();

    const HttpRequest m_request;
    std::shared_ptr<HttpContent> m_content; ///< until the end
    Lane &m_lane;
    std::unique_ptr<QNetworkAccessManager> m_manager;
    QNetworkReply *m_reply = nullptr; ///< owned by the manager
    QByteArray m_bytes;               ///< the content, where nobody else takes it
    qint64 m_received = 0;
    qint64 m_announced = -1; ///< the size that the server told; -1 unknown
    std::atomic<bool> m_hasMoved{false};
    std::atomic<bool> m_isComplete{false};
    std::atomic<bool> m_isGivenUp{false}; ///< was let go before its end
    mutable std::mutex m_mutex;           ///< guards m_outcome
    std::optional<HttpOutcome> m_outcome; ///< from the end on
};

void HttpTransfer::letGo()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isGivenUp = !m_outcome.has_value();
    }
    givenUpCount += m_isGivenUp ? 1 : 0;
    m_lane.post([this] { end(); });
}

void HttpTransfer::begin()
{
    setParent(&m_lane);
    if (m_isGivenUp) {
        return;
    }
    QNetworkRequest get(m_request.url);
    get.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    get.setMaximumRedirectsAllowed(MaximumRedirects);
    get.setRawHeader("Accept-Encoding", "identity"); // also keeps the toolkit from unpacking what comes packed
    m_manager = std::make_unique<QNetworkAccessManager>();
    m_reply = m_manager->get(get);
    m_reply->setReadBufferSize(ReadBuffer);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &HttpTransfer::checkHeaders);
    connect(m_reply, &QNetworkReply::readyRead, this, &HttpTransfer::receive);
    connect(m_reply, &QNetworkReply::finished, this, &HttpTransfer::takeEnd);
}

void HttpTransfer::checkHeaders()
{
    m_hasMoved = true;
    const QVariant size = m_reply->header(QNetworkRequest::ContentLengthHeader);
    m_announced = size.isValid() ? size.toLongLong() : -1;
    qint64 headers = 0;
    for (const QNetworkReply::RawHeaderPair &header : m_reply->rawHeaderPairs()) {
        headers += header.first.size() + header.second.size();
    }
    if (m_announced > m_request.maximumSize || headers > MaximumHeaders) {
        finish(HttpError::TooLarge);
    }
}

void HttpTransfer::receive()
{
    const QByteArray bytes = m_reply->readAll();
    if (bytes.isEmpty() || m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() != HttpOk) {
        return; // an error's page; the end tells of the error
    }
    m_received += bytes.size();
    m_hasMoved = true;
    if (m_received > m_request.maximumSize) {
        finish(HttpError::TooLarge);
    } else if (m_content == nullptr) {
        m_bytes += bytes;
    } else if (!m_content->write(bytes)) {
        finish(HttpError::Disk, m_content->errorText());
    }
}

void HttpTransfer::takeEnd()
{
    receive();
    if (m_isComplete) {
        return;
    }
    if (m_announced >= 0 && m_received > 0 && m_received < m_announced) {
        finish(HttpError::Incomplete);
    } else if (m_reply->error() != QNetworkReply::NoError) {
        finish(HttpError::Network, m_reply->errorString());
    } else {
        finish(m_received == 0 ? HttpError::Empty : HttpError::None);
    }
}

void HttpTransfer::finish(HttpError error, const QString &detail)
{
    m_reply->disconnect(this);
    m_isComplete = true;
    HttpOutcome outcome{error, detail, m_bytes};
    if (error == HttpError::None && m_content != nullptr && !m_isGivenUp && !m_content->end()) {
        outcome = {HttpError::Disk, m_content->errorText(), {}};
    }
    m_content.reset();
    {
        const std::lock_guard lock(m_mutex);
        m_outcome = outcome;
    }
    emit sig_ended();
}

/// Ends the connection. The toolkit does so on a thread of its own, and not before the server makes a pause in its
/// headers; a manager that is destroyed earlier waits for 5 s and leaves that thread behind. So a second request, to
/// nobody, is made behind the first: when it has failed, that thread is free.
void HttpTransfer::end()
{
    m_content.reset(); // what follows may take long
    if (m_reply == nullptr || m_reply->isFinished()) {
        deleteLater();
        return;
    }
    m_reply->disconnect(this);
    m_reply->abort();
    m_manager->setProxy(QNetworkProxy::NoProxy);
    const QNetworkReply *turn = m_manager->get(QNetworkRequest(QUrl(QStringLiteral("http://127.0.0.1:0/"))));
    connect(turn, &QNetworkReply::finished, this, &QObject::deleteLater);
}

bool isWebAddress(const QUrl &address)
{
    return address.scheme() == QLatin1String("http") || address.scheme() == QLatin1String("https");
}

bool isPlainHttp(const QString &service)
{
    return QUrl(service.trimmed()).scheme() == QLatin1String("http");
}

HttpClient::HttpClient(QObject *parent)
    : QObject(parent)
{
    connect(&m_limit, &QTimer::timeout, this, &HttpClient::slot_limitReached);
}

HttpClient::~HttpClient()
{
    cancel();
}

void HttpClient::start(const HttpRequest &request, const std::shared_ptr<HttpContent> &content)
{
    cancel();
    m_limitError = isAllowed(request) ? HttpError::Stalled : HttpError::Address;
    if (m_limitError == HttpError::Address || givenUpCount >= MaxGivenUp) {
        m_limit.start(0);
        return;
    }
    m_isPauseLimited = request.isPauseLimited;
    m_limit.start(request.limitMs);
    m_transfer = new HttpTransfer(request, content);
    connect(m_transfer, &HttpTransfer::sig_ended, this, [this, number = m_number] {
        if (number == m_number) {
            takeEnd();
        }
    });
    m_transfer->start();
}

void HttpClient::cancel()
{
    ++m_number;
    m_limit.stop();
    if (HttpTransfer *transfer = std::exchange(m_transfer, nullptr)) {
        transfer->letGo();
    }
}

void HttpClient::takeEnd()
{
    const HttpOutcome outcome = m_transfer->outcome();
    cancel();
    emit sig_finished(outcome);
}

void HttpClient::slot_limitReached()
{
    if (m_transfer != nullptr && m_isPauseLimited && m_transfer->hasMoved()) {
        return;
    }
    cancel();
    emit sig_finished({m_limitError, {}, {}});
}

#include "HttpClient.moc"
