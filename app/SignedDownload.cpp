#include "app/SignedDownload.h"

#include "app/Minisign.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace {
QUrl signatureAddress(const QUrl &package)
{
    QUrl url = package;
    url.setPath(url.path(QUrl::FullyEncoded) + QStringLiteral(".minisig"), QUrl::TolerantMode);
    return url;
}
} // namespace

SignedDownload::SignedDownload(QString service, QByteArray key, QObject *parent)
    : QObject(parent)
    , m_service(std::move(service))
    , m_key(std::move(key))
    , m_download(m_service)
{
    connect(&m_client, &HttpClient::sig_finished, this, &SignedDownload::takeSignature);
    connect(&m_download, &FileDownload::sig_finished, this, &SignedDownload::sig_finished);
    connect(&m_download, &FileDownload::sig_refused, this, &SignedDownload::sig_refused);
}

void SignedDownload::start(const QUrl &url, const QString &target, qint64 maximumSize, const OfferedPackage &offered)
{
    cancel();
    if (m_key.isEmpty()) {
        m_download.start(url, target, maximumSize);
        return;
    }
    m_url = url;
    m_target = target;
    m_maximumSize = maximumSize;
    m_offered = offered;
    m_client.start({signatureAddress(url), m_service, LargestMinisignFile, m_stallLimitMs});
}

void SignedDownload::cancel()
{
    m_client.cancel();
    m_download.cancel();
}

void SignedDownload::setStallLimit(int milliseconds)
{
    m_stallLimitMs = milliseconds;
    m_download.setStallLimit(milliseconds);
}

void SignedDownload::takeSignature(const HttpOutcome &outcome)
{
    if (outcome.error == HttpError::Address) {
        emit sig_finished(false, downloadProblem(outcome)); // the package's own
    } else if (outcome.error == HttpError::None || outcome.error == HttpError::TooLarge ||
               outcome.error == HttpError::Empty) {
        checkSignature(outcome.content);
    } else {
        emit sig_refused(tr("Its signature cannot be downloaded: %1").arg(downloadProblem(outcome)));
    }
}

void SignedDownload::checkSignature(const QByteArray &file)
{
    const auto key = minisignKey(m_key);
    const auto signature = minisignSignature(file);
    if (!key) {
        emit sig_refused(tr("The key for updates that this program was built with cannot be used."));
    } else if (!signature) {
        emit sig_refused(tr("What the server sends as its signature is not one."));
    } else if (signature->keyId != key->id) {
        emit sig_refused(tr("It was signed with another key."));
    } else if (!isCommentSigned(*signature, *key)) {
        emit sig_refused(tr("Its signature was changed or forged."));
    } else if (const QString problem = packageProblem(m_offered, signature->comment); !problem.isEmpty()) {
        emit sig_refused(problem);
    } else {
        const qint64 maximumSize =
            signature->isPrehashed ? m_maximumSize : std::min(m_maximumSize, SignedContent::LargestLegacy);
        m_download.start(m_url, m_target, maximumSize, std::make_shared<SignedContent>(*key, *signature));
    }
}
