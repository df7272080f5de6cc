#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QUrl>

#include <memory>

class HttpTransfer;

enum class HttpError { None, Address, Network, Empty, TooLarge, Incomplete, Stalled, Disk };

/// What became of a request.
struct HttpOutcome
{
    HttpError error = HttpError::None;
    QString detail;     ///< the toolkit's or the system's own words, of network and disk errors
    QByteArray content; ///< unless an HttpContent has taken it
};

struct HttpRequest
{
    QUrl url;
    QString service;             ///< whose address decides whether http is allowed besides https, see isPlainHttp()
    qint64 maximumSize = 0;      ///< of the content, in bytes
    int limitMs = 30000;         ///< of the whole
    bool isPauseLimited = false; ///< in its place: a pause of limitMs may be one too long, of twice limitMs is
};

/// Whether an address is one of the web: http or https.
bool isWebAddress(const QUrl &address);
/// Whether the address of a service is plain http, as within a company or for tests. What such a service names may be
/// fetched over http as well; what any other one names, over https only.
bool isPlainHttp(const QString &service);

/// Takes the content of an answer, piece by piece, on a thread of the client's.
class HttpContent
{
public:
    HttpContent() = default;
    virtual ~HttpContent() = default;
    Q_DISABLE_COPY_MOVE(HttpContent)

    virtual bool write(const QByteArray &bytes) = 0;
    /// All of it has come.
    virtual bool end() { return true; }
    /// Why one of them has failed.
    virtual QString errorText() const { return {}; }
};

/// Fetches one address. All requests share two threads, one for those whose content is kept in memory, one for those
/// whose content goes to a file: whatever the server sends, and however slowly the disk takes it, the thread of this
/// object never waits, and a disk that stands still keeps no query waiting.
///
/// A request fails on network and HTTP errors, on more than 5 redirects, on one from https to http or away from both,
/// on more than 64 KiB of headers, and when the content is empty, larger than allowed, shorter than the server
/// announced, or cannot be written. Content is asked for, and taken, as it is: nothing is unpacked.
class HttpClient : public QObject
{
    Q_OBJECT

public:
    /// A request that was given up, for it was cancelled or took too long, ends by itself: soon, unless the server goes
    /// on with headers faster than the toolkit reads them, at about 2 MB/s. With as many as these every further request
    /// fails at once.
    static constexpr int MaxGivenUp = 4;

    explicit HttpClient(QObject *parent = nullptr);
    /// As cancel().
    ~HttpClient() override;

    /// Starts and returns at once; a request that still runs is cancelled. May be called on any thread with an event
    /// loop. content: null to have it in the outcome.
    void start(const HttpRequest &request, const std::shared_ptr<HttpContent> &content = nullptr);
    /// Gives a request up and returns at once; no signal is emitted for it any more.
    void cancel();
    bool isRunning() const { return m_limit.isActive(); }

signals:
    /// Never from within start(). The content is not used any more, unless the request has stalled.
    void sig_finished(const HttpOutcome &outcome);

private:
    void takeEnd();
    void slot_limitReached();

    HttpTransfer *m_transfer = nullptr; ///< of the request that runs; goes by itself when it is let go
    int m_number = 0;                   ///< of the request; what an earlier one still tells is dropped
    HttpError m_limitError{};           ///< what the limit means
    QTimer m_limit;                     ///< here, as the threads may be busy with what the server sends
    bool m_isPauseLimited = false;      ///< as in the request
};
