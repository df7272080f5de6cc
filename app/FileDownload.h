#pragma once

#include "app/HttpClient.h"

#include <QObject>
#include <QString>

#include <memory>

class PartFile;
class SignedContent;

/// Why a download failed: a sentence for the user, plain text.
QString downloadProblem(const HttpOutcome &outcome);

/// The name under which the file at an address is stored: the last segment of its path, with the percent encoding
/// resolved once. Empty when that is no plain file name on every system: empty, "." or "..", with a separator, a colon
/// or a control character, not UTF-8, ending in a dot or a blank, or the name of a device of Windows.
QString downloadFileName(const QUrl &url);

/// Downloads one file, as HttpClient fetches it. The content goes to a file of its own beside the target, which takes
/// the target's place at the very last; until then what stood at the target stays, and a download that fails or is
/// cancelled leaves nothing behind. It also fails when the content cannot be written, and when no byte comes for the
/// stall limit.
class FileDownload : public QObject
{
    Q_OBJECT

public:
    static constexpr int StallLimitMs = 30000;

    /// service: the address of the service that names the files. Unless it is plain http itself, they come over https
    /// only.
    explicit FileDownload(QString service, QObject *parent = nullptr);

    /// Starts and returns at once; one that still runs is cancelled, as at the end of this object. The target's folder
    /// is created if missing. maximumSize: bytes. check: unless null, the content must be the one that was signed.
    void start(const QUrl &url, const QString &target, qint64 maximumSize,
               std::shared_ptr<SignedContent> check = nullptr);
    /// Ends a download and returns at once; no signal is emitted for it any more. What it has on disk goes as soon as
    /// the disk answers.
    void cancel();
    bool isRunning() const { return m_client.isRunning(); }
    /// For the downloads that are started afterwards.
    void setStallLimit(int milliseconds) { m_stallLimitMs = milliseconds; }

signals:
    /// Never from within start(). errorText: a sentence for the user, plain text; empty when ok.
    void sig_finished(bool ok, const QString &errorText);
    /// In its place: the content is not the one that was signed. reason: a sentence for the user, plain text.
    void sig_refused(const QString &reason);

private:
    void takeEnd(HttpOutcome outcome);

    const QString m_service;
    HttpClient m_client;
    std::shared_ptr<PartFile> m_file; ///< of the download that runs
    int m_stallLimitMs = StallLimitMs;
};
