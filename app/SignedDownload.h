#pragma once

#include "app/FileDownload.h"
#include "app/HttpClient.h"
#include "app/OfferedPackage.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QUrl>

/// Downloads a package, and nothing but what the owner of a key has signed as what is offered. The signature is fetched
/// first, from the address of the package with ".minisig" behind its path: most of what could be wrong is known before
/// the package is asked for. The package is looked at as it comes, and takes its place only when it is the one that was
/// signed; otherwise nothing of it stays. Without a key it is a FileDownload, and no signature is asked for.
class SignedDownload : public QObject
{
    Q_OBJECT

public:
    /// service: as FileDownload's. key: a line as minisignKey() takes it, or empty. With any other one every download
    /// is refused.
    SignedDownload(QString service, QByteArray key, QObject *parent = nullptr);

    /// As FileDownload's, for both downloads.
    void start(const QUrl &url, const QString &target, qint64 maximumSize, const OfferedPackage &offered);
    void cancel();
    bool isRunning() const { return m_client.isRunning() || m_download.isRunning(); }
    void setStallLimit(int milliseconds);

signals:
    /// Never from within start(). errorText: a sentence for the user, plain text; empty when ok.
    void sig_finished(bool ok, const QString &errorText);
    /// In its place, when there is no signature that is good enough. reason: a sentence for the user, plain text.
    void sig_refused(const QString &reason);

private:
    void takeSignature(const HttpOutcome &outcome);
    void checkSignature(const QByteArray &file);

    const QString m_service;
    const QByteArray m_key;
    HttpClient m_client; ///< of the signature
    FileDownload m_download;
    int m_stallLimitMs = FileDownload::StallLimitMs;
    QUrl m_url; ///< of the package, as all of the following
    QString m_target;
    qint64 m_maximumSize = 0; ///< bytes
    OfferedPackage m_offered;
};
