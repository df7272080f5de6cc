#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QUrl>

#include <memory>

class HttpClientPrivate;

enum class HttpError { None, Address, Network, Empty, TooLarge, Incomplete, Stalled, Disk };

/// What became of a request. detail: the toolkit's or the system's own words, of network and disk errors.
struct HttpOutcome
{
    HttpError error = HttpError::None;
    QString detail;
};

struct HttpRequest
{
    static constexpr int NoLimit = -1;

    QUrl url;
    bool isHttpAllowed = false; ///< besides https
    qint64 maximumSize = 0;     ///< of the content, in bytes
    int stallLimitMs = 30000;   ///< a pause of this length may be one too long, of twice this length is
    int limitMs = NoLimit;      ///< of the whole, in place of the pauses
};

/// Takes the content of an answer, piece by piece, on the request's own thread.
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

/// Fetches one address, on a thread of its own: whatever the server sends, and however slowly the disk takes it, the
/// thread of this object never waits.
///
/// A request fails on network and HTTP errors, on more than 5 redirects, on one from https to http or away from both,
/// on more than 64 KiB of headers, and when the content is empty, larger than allowed, shorter than the server
/// announced, or cannot be written. Content is asked for, and taken, as it is: nothing is unpacked.
class HttpClient : public QObject
{
    Q_OBJECT

public:
    /// A request that was given up, for it was cancelled or took too long, ends on its thread by itself: soon, unless
    /// the server goes on with headers faster than the toolkit reads them, at about 2 MB/s. With as many as these every
    /// further request fails at once.
    static constexpr int MaxGivenUp = 4;

    explicit HttpClient(QObject *parent = nullptr);
    /// As cancel().
    ~HttpClient() override;

    /// Starts and returns at once; a request that still runs is cancelled. May be called on any thread with an event
    /// loop.
    void start(const HttpRequest &request, const std::shared_ptr<HttpContent> &content);
    /// Gives a request up and returns at once; no signal is emitted for it any more.
    void cancel();
    bool isRunning() const;

signals:
    /// Never from within start(). The request's thread does not use the content any more, unless the request has
    /// stalled.
    void sig_finished(const HttpOutcome &outcome);

private:
    void slot_limitReached();
    void slot_threadEnded();

    std::unique_ptr<HttpClientPrivate> m_p;
};
