#pragma once

#include <QString>
#include <QThread>
#include <QUrl>

#include <atomic>
#include <mutex>

struct DownloadJob
{
    QUrl url;
    QString target;
    qint64 maximumSize = 0; ///< bytes
    int stallLimitMs = 0;
};

enum class DownloadError { None, Address, Network, Empty, TooLarge, Incomplete, Stalled, Disk };

/// What became of a download. detail: the toolkit's or the system's own words, of network and disk errors.
struct DownloadOutcome
{
    DownloadError error = DownloadError::None;
    QString detail;
};

/// Runs one download, as FileDownload describes it. The object belongs to the thread that made it; what run() makes
/// lives and ends in its own.
class DownloadThread : public QThread
{
    Q_OBJECT

public:
    explicit DownloadThread(DownloadJob job);

    /// Does not wait. When the thread has ended, nothing of the download is on disk, unless it was in its place before.
    void cancel();
    /// After the thread has ended.
    DownloadOutcome outcome() const;
    /// After the thread has ended: removes the file that it has put in its place, and the folder it made for it.
    void removeTarget() const;

signals:
    void sig_progress(qint64 received, qint64 total);

protected:
    void run() override;

private:
    DownloadOutcome transferred();

    const DownloadJob m_job;
    std::atomic<bool> m_isCancelled{false};
    std::atomic<bool> m_isCommitted{false};
    std::atomic<bool> m_isFolderNew{false}; ///< the target's folder was made for it; known once it is committed
    mutable std::mutex m_mutex;             ///< guards m_outcome
    DownloadOutcome m_outcome;
};
