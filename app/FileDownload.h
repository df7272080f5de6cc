#pragma once

#include <QObject>
#include <QString>

#include <memory>

class FileDownloadPrivate;
class QUrl;

/// Downloads one file over http or https, on a thread of its own. The content goes to a temporary file beside the
/// target, which takes the target's place when it is complete; a download that fails or is cancelled leaves nothing
/// behind, and what stood at the target stays.
///
/// It fails on network and HTTP errors, on more than 5 redirects and on one that leaves http and https, when the
/// content is empty, larger than allowed or shorter than the server announced, when it cannot be written, and when no
/// byte comes for the stall limit.
class FileDownload : public QObject
{
    Q_OBJECT

public:
    static constexpr int StallLimitMs = 30000;

    explicit FileDownload(QObject *parent = nullptr);
    /// Cancels a download that runs.
    ~FileDownload() override;

    /// Starts and returns at once; one that still runs is cancelled. The target's folder is created if missing.
    /// maximumSize: bytes.
    void start(const QUrl &url, const QString &target, qint64 maximumSize);
    /// Ends a download; no signal is emitted for it any more, and nothing of it stays on disk, also if it was complete
    /// but for sig_finished. Returns within 500 ms: a thread that is held up by the disk for longer goes on by itself,
    /// cleans up and ends.
    void cancel();
    bool isRunning() const;
    /// For the downloads that are started afterwards.
    void setStallLimit(int milliseconds);

signals:
    /// Bytes; total is -1 while the server has not told it.
    void sig_progress(qint64 received, qint64 total);
    /// Never from within start(). errorText: a sentence for the user, plain text; empty when ok.
    void sig_finished(bool ok, const QString &errorText);

private:
    void slot_threadEnded();

    std::unique_ptr<FileDownloadPrivate> m_p;
};
