#include "app/HttpClient.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <utility>
#include <vector>

namespace {
constexpr qint64 ReadBuffer = Q_INT64_C(1024) * 1024;   ///< bytes that are taken from the network at a time
constexpr qint64 MaximumHeaders = Q_INT64_C(64) * 1024; ///< bytes
constexpr int MaximumRedirects = 5;
constexpr int HttpOk = 200;
constexpr int EndWaitMs = 500; ///< for all threads, when the program ends

bool isAllowed(const HttpRequest &request)
{
    const QString scheme = request.url.scheme();
    return request.url.isValid() && !request.url.host().isEmpty() &&
           (scheme == QLatin1String("https") || (request.isHttpAllowed && scheme == QLatin1String("http")));
}

/// The exchange with the server, on the request's thread.
class Transfer : public QObject
{
public:
    /// progress grows with every step that the server makes.
    Transfer(const HttpRequest &request, HttpContent &content, std::atomic<qint64> &progress);
    const HttpOutcome &outcome() const { return m_outcome; }
    /// Ends the connection. The toolkit does so on a thread of its own, and not before the server makes a pause in its
    /// headers; a manager that is destroyed earlier waits for 5 s and leaves that thread behind. So a second request,
    /// to nobody, is made behind the first: when it has failed, and isAtEnd() with it, that thread is free.
    void end();
    bool isAtEnd() const { return m_turn == nullptr || m_turn->isFinished(); }

private:
    void checkHeaders();
    void receive();
    void takeEnd();
    void finish(HttpOutcome outcome);

    const HttpRequest &m_request;
    HttpContent &m_content;
    std::atomic<qint64> &m_progress;
    QNetworkAccessManager m_manager;
    QNetworkReply *m_reply = nullptr; ///< owned by the manager
    QNetworkReply *m_turn = nullptr;  ///< see end()
    qint64 m_received = 0;
    qint64 m_announced = -1; ///< the size that the server told; -1 unknown
    HttpOutcome m_outcome;
};

Transfer::Transfer(const HttpRequest &request, HttpContent &content, std::atomic<qint64> &progress)
    : m_request(request)
    , m_content(content)
    , m_progress(progress)
{
    QNetworkRequest get(request.url);
    get.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    get.setMaximumRedirectsAllowed(MaximumRedirects);
    get.setRawHeader("Accept-Encoding", "identity"); // also keeps the toolkit from unpacking what comes packed
    m_reply = m_manager.get(get);
    m_reply->setReadBufferSize(ReadBuffer);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &Transfer::checkHeaders);
    connect(m_reply, &QNetworkReply::readyRead, this, &Transfer::receive);
    connect(m_reply, &QNetworkReply::finished, this, &Transfer::takeEnd);
}

void Transfer::checkHeaders()
{
    ++m_progress;
    const QVariant size = m_reply->header(QNetworkRequest::ContentLengthHeader);
    m_announced = size.isValid() ? size.toLongLong() : -1;
    qint64 headers = 0;
    for (const QNetworkReply::RawHeaderPair &header : m_reply->rawHeaderPairs()) {
        headers += header.first.size() + header.second.size();
    }
    if (m_announced > m_request.maximumSize || headers > MaximumHeaders) {
        finish({HttpError::TooLarge, {}});
    }
}

void Transfer::receive()
{
    const QByteArray bytes = m_reply->readAll();
    if (bytes.isEmpty() || m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() != HttpOk) {
        return; // an error's page; the end tells of the error
    }
    m_received += bytes.size();
    m_progress += bytes.size();
    if (m_received > m_request.maximumSize) {
        finish({HttpError::TooLarge, {}});
    } else if (!m_content.write(bytes)) {
        finish({HttpError::Disk, m_content.errorText()});
    }
}

void Transfer::takeEnd()
{
    receive();
    if (m_outcome.error != HttpError::None) {
        return;
    }
    if (m_announced >= 0 && m_received > 0 && m_received < m_announced) {
        finish({HttpError::Incomplete, {}});
    } else if (m_reply->error() != QNetworkReply::NoError) {
        finish({HttpError::Network, m_reply->errorString()});
    } else if (m_received == 0) {
        finish({HttpError::Empty, {}});
    } else {
        finish({});
    }
}

void Transfer::finish(HttpOutcome outcome)
{
    m_outcome = std::move(outcome);
    m_reply->disconnect(this);
    thread()->quit();
}

void Transfer::end()
{
    m_reply->disconnect(this);
    if (m_reply->isFinished()) {
        return;
    }
    m_reply->abort();
    m_manager.setProxy(QNetworkProxy::NoProxy);
    m_turn = m_manager.get(QNetworkRequest(QUrl(QStringLiteral("http://127.0.0.1:0/"))));
    connect(m_turn, &QNetworkReply::finished, this, [this] { thread()->quit(); });
}

/// One request. The object is shared by whoever started the request and by all the threads' list.
class RequestThread : public QThread
{
public:
    RequestThread(HttpRequest request, std::shared_ptr<HttpContent> content)
        : m_request(std::move(request))
        , m_content(std::move(content))
    {
    }

    /// Does not wait.
    void giveUp()
    {
        m_isGivenUp = true;
        quit();
    }
    /// Grows with every step that the server makes.
    qint64 progress() const { return m_progress; }
    /// Whether the server has done its part; the disk may not have.
    bool isComplete() const { return m_isComplete; }
    /// Whether it goes on without anybody who waits for it.
    bool isLeftOver() const { return m_isGivenUp && !m_hasEnded; }
    bool hasEnded() const { return m_hasEnded; }
    /// After the thread has ended.
    HttpOutcome outcome() const
    {
        const std::lock_guard lock(m_mutex);
        return m_outcome;
    }

protected:
    void run() override;

private:
    HttpOutcome transferred();

    const HttpRequest m_request;
    std::shared_ptr<HttpContent> m_content; ///< until the thread has ended
    std::atomic<qint64> m_progress{0};
    std::atomic<bool> m_isComplete{false};
    std::atomic<bool> m_isGivenUp{false};
    std::atomic<bool> m_hasEnded{false}; ///< nothing but the toolkit's own last steps is to come
    mutable std::mutex m_mutex;          ///< guards m_outcome
    HttpOutcome m_outcome;
};

void RequestThread::run()
{
    HttpOutcome outcome = transferred();
    m_isComplete = true;
    if (!m_isGivenUp && outcome.error == HttpError::None && !m_content->end()) {
        outcome = {HttpError::Disk, m_content->errorText()};
    }
    m_content.reset();
    {
        const std::lock_guard lock(m_mutex);
        m_outcome = outcome;
    }
    m_hasEnded = true;
}

HttpOutcome RequestThread::transferred()
{
    Transfer transfer(m_request, *m_content, m_progress);
    exec();
    transfer.end();
    if (m_isGivenUp) {
        m_content.reset(); // what follows may take long
    }
    while (!transfer.isAtEnd()) {
        exec();
    }
    return transfer.outcome();
}

/// The threads of all requests: those that run, and those that have ended since the last one was added.
class RequestThreads
{
public:
    static RequestThreads &all()
    {
        static auto &threads = *new RequestThreads; // never deleted: a thread may outlive everything
        return threads;
    }

    /// Starts the thread, unless too many are left over.
    bool start(const std::shared_ptr<RequestThread> &thread)
    {
        const std::lock_guard lock(m_mutex);
        const auto isOver = [](const auto &other) {
            return other->hasEnded() && other->wait();
        };
        m_threads.erase(std::remove_if(m_threads.begin(), m_threads.end(), isOver), m_threads.end());
        const auto leftOver =
            std::count_if(m_threads.cbegin(), m_threads.cend(), [](const auto &other) { return other->isLeftOver(); });
        if (leftOver >= HttpClient::MaxGivenUp) {
            return false;
        }
        m_threads.push_back(thread);
        thread->start();
        return true;
    }

private:
    RequestThreads()
    {
        qAddPostRoutine([] { all().waitForEnd(); });
    }

    void waitForEnd()
    {
        const QDeadlineTimer deadline(EndWaitMs);
        const std::lock_guard lock(m_mutex);
        for (const std::shared_ptr<RequestThread> &thread : m_threads) {
            thread->wait(deadline);
        }
    }

    std::mutex m_mutex; ///< guards the list
    std::vector<std::shared_ptr<RequestThread>> m_threads;
};
} // namespace

class HttpClientPrivate
{
public:
    std::shared_ptr<RequestThread> m_thread;  ///< of the request that runs
    std::unique_ptr<QObject> m_relay;         ///< hears of the thread's end; without it, nobody does
    HttpError m_limitError = HttpError::None; ///< what the limit means
    QTimer m_limit;                           ///< here, as the thread may be busy with what the server sends
    bool m_isWholeLimited = false;            ///< or each pause
    qint64 m_progress = 0;                    ///< of the thread, when the last pause began
};

HttpClient::HttpClient(QObject *parent)
    : QObject(parent)
    , m_p(std::make_unique<HttpClientPrivate>())
{
    connect(&m_p->m_limit, &QTimer::timeout, this, &HttpClient::slot_limitReached);
}

HttpClient::~HttpClient()
{
    cancel();
}

void HttpClient::start(const HttpRequest &request, const std::shared_ptr<HttpContent> &content)
{
    cancel();
    m_p->m_thread = std::make_shared<RequestThread>(request, content);
    m_p->m_relay = std::make_unique<QObject>();
    connect(m_p->m_thread.get(), &QThread::finished, m_p->m_relay.get(), [this] { slot_threadEnded(); });
    m_p->m_isWholeLimited = request.limitMs != HttpRequest::NoLimit;
    m_p->m_progress = 0;
    m_p->m_limitError = isAllowed(request) ? HttpError::Stalled : HttpError::Address;
    if (m_p->m_limitError == HttpError::Address || !RequestThreads::all().start(m_p->m_thread)) {
        m_p->m_limit.start(0);
    } else {
        m_p->m_limit.start(m_p->m_isWholeLimited ? request.limitMs : request.stallLimitMs);
    }
}

void HttpClient::cancel()
{
    m_p->m_limit.stop();
    m_p->m_relay.reset();
    if (const auto thread = std::exchange(m_p->m_thread, nullptr)) {
        thread->giveUp();
    }
}

bool HttpClient::isRunning() const
{
    return m_p->m_thread != nullptr;
}

void HttpClient::slot_limitReached()
{
    const qint64 before = std::exchange(m_p->m_progress, m_p->m_thread->progress());
    if (!m_p->m_isWholeLimited && (m_p->m_progress != before || m_p->m_thread->isComplete())) {
        return;
    }
    cancel();
    emit sig_finished({m_p->m_limitError, {}});
}

void HttpClient::slot_threadEnded()
{
    m_p->m_limit.stop();
    const auto thread = std::exchange(m_p->m_thread, nullptr);
    thread->wait();                        // the last steps after its signal
    m_p->m_relay.release()->deleteLater(); // it is what calls
    emit sig_finished(thread->outcome());
}
