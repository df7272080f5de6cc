#include "app/DownloadThread.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSaveFile>
#include <QTimer>

#include <functional>
#include <optional>
#include <utility>

namespace {
constexpr qint64 ReadBuffer = Q_INT64_C(1024) * 1024; ///< bytes that are taken from the network before they are written
constexpr int ProgressIntervalMs = 100;
constexpr int MaximumRedirects = 5;
constexpr int HttpOk = 200;

bool isHttp(const QUrl &url)
{
    return url.isValid() && !url.host().isEmpty() &&
           (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https"));
}

/// The file that is being written. Without a commit() nothing of it stays, the folder made for it included.
class TargetFile
{
public:
    explicit TargetFile(const QString &path)
        : m_file(std::in_place, path)
        , m_folder(QFileInfo(path).absolutePath())
        , m_isFolderNew(!QFileInfo::exists(m_folder))
    {
    }
    ~TargetFile()
    {
        if (m_isCommitted) {
            return;
        }
        // Its end removes the temporary file. commit() after cancelWriting() would do so, too, but first wait until all
        // of it is on the disk.
        m_file.reset();
        if (m_isFolderNew) {
            QDir().rmdir(m_folder); // stays when something else was put there meanwhile
        }
    }
    Q_DISABLE_COPY_MOVE(TargetFile)

    bool write(const QByteArray &bytes)
    {
        if (!m_file->isOpen() && !(QDir().mkpath(m_folder) && m_file->open(QIODevice::WriteOnly))) {
            return false;
        }
        return m_file->write(bytes) == bytes.size();
    }

    bool commit()
    {
        m_isCommitted = m_file->commit();
        return m_isCommitted;
    }

    bool isFolderNew() const { return m_isFolderNew; }
    QString errorText() const { return m_file->errorString(); }

private:
    std::optional<QSaveFile> m_file; ///< until the end
    QString m_folder;
    bool m_isFolderNew;
    bool m_isCommitted = false;
};

/// One download, on the download thread.
class Transfer : public QObject
{
public:
    using Progress = std::function<void(qint64 received, qint64 total)>;

    Transfer(const DownloadJob &job, Progress progress);
    DownloadOutcome outcome() const { return m_outcome; }
    /// To be called when outcome() is without an error: puts the file in its place.
    DownloadOutcome commit();
    bool isFolderNew() const { return m_file.isFolderNew(); }

private:
    void checkAnnouncedSize();
    void receive();
    void report();
    void end();
    void finish(DownloadOutcome outcome);

    const DownloadJob &m_job;
    const Progress m_progress;
    QElapsedTimer m_sinceProgress; ///< invalid before the first report
    QNetworkAccessManager m_manager;
    QNetworkReply *m_reply = nullptr; ///< owned by the manager
    TargetFile m_file;
    qint64 m_received = 0;
    qint64 m_announced = -1; ///< the size that the server told; -1 unknown
    QTimer m_stall;
    DownloadOutcome m_outcome;
};

Transfer::Transfer(const DownloadJob &job, Progress progress)
    : m_job(job)
    , m_progress(std::move(progress))
    , m_file(job.target)
{
    QNetworkRequest request(job.url);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setMaximumRedirectsAllowed(MaximumRedirects);
    request.setRawHeader("Accept-Encoding", "identity"); // the file as it is, and sizes that can be compared
    m_reply = m_manager.get(request);
    m_reply->setReadBufferSize(ReadBuffer);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &Transfer::checkAnnouncedSize);
    connect(m_reply, &QNetworkReply::readyRead, this, &Transfer::receive);
    connect(m_reply, &QNetworkReply::finished, this, &Transfer::end);
    connect(&m_stall, &QTimer::timeout, this, [this] { finish({DownloadError::Stalled, {}}); });
    m_stall.setSingleShot(true);
    m_stall.start(job.stallLimitMs);
}

void Transfer::checkAnnouncedSize()
{
    const QVariant size = m_reply->header(QNetworkRequest::ContentLengthHeader);
    m_announced = size.isValid() ? size.toLongLong() : -1;
    if (m_announced > m_job.maximumSize) {
        finish({DownloadError::TooLarge, {}});
    }
}

void Transfer::receive()
{
    m_stall.start();
    const QByteArray bytes = m_reply->readAll();
    if (bytes.isEmpty() || m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() != HttpOk) {
        return; // an error's page; the end tells of the error
    }
    m_received += bytes.size();
    if (m_received > m_job.maximumSize) {
        finish({DownloadError::TooLarge, {}});
    } else if (!m_file.write(bytes)) {
        finish({DownloadError::Disk, m_file.errorText()});
    } else {
        report();
    }
}

void Transfer::report()
{
    if (!m_sinceProgress.isValid() || m_sinceProgress.hasExpired(ProgressIntervalMs) || m_received == m_announced) {
        m_sinceProgress.start();
        m_progress(m_received, m_announced);
    }
}

void Transfer::end()
{
    receive();
    if (m_outcome.error != DownloadError::None) {
        return;
    }
    if (m_announced >= 0 && m_received > 0 && m_received < m_announced) {
        finish({DownloadError::Incomplete, {}});
    } else if (m_reply->error() != QNetworkReply::NoError) {
        finish({DownloadError::Network, m_reply->errorString()});
    } else if (m_received == 0) {
        finish({DownloadError::Empty, {}});
    } else {
        finish({});
    }
}

DownloadOutcome Transfer::commit()
{
    return m_file.commit() ? DownloadOutcome() : DownloadOutcome{DownloadError::Disk, m_file.errorText()};
}

void Transfer::finish(DownloadOutcome outcome)
{
    m_outcome = std::move(outcome);
    m_stall.stop();
    m_reply->disconnect(this);
    m_reply->abort();
    thread()->quit();
}

} // namespace

DownloadThread::DownloadThread(DownloadJob job)
    : m_job(std::move(job))
{
}

void DownloadThread::cancel()
{
    m_isCancelled = true;
    quit();
}

DownloadOutcome DownloadThread::outcome() const
{
    const std::lock_guard lock(m_mutex);
    return m_outcome;
}

void DownloadThread::removeTarget() const
{
    if (!m_isCommitted) {
        return;
    }
    QFile::remove(m_job.target);
    if (m_isFolderNew) {
        QDir().rmdir(QFileInfo(m_job.target).absolutePath());
    }
}

void DownloadThread::run()
{
    const DownloadOutcome outcome = isHttp(m_job.url) ? transferred() : DownloadOutcome{DownloadError::Address, {}};
    const std::lock_guard lock(m_mutex);
    m_outcome = outcome;
}

DownloadOutcome DownloadThread::transferred()
{
    Transfer transfer(m_job, [this](qint64 received, qint64 total) { emit sig_progress(received, total); });
    exec();
    if (m_isCancelled || transfer.outcome().error != DownloadError::None) {
        return transfer.outcome();
    }
    DownloadOutcome outcome = transfer.commit();
    m_isFolderNew = transfer.isFolderNew();
    m_isCommitted = outcome.error == DownloadError::None;
    if (m_isCancelled) {
        removeTarget(); // cancelled while the system was writing, perhaps with nobody waiting any more
    }
    return outcome;
}
