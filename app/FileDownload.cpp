#include "app/FileDownload.h"

#include "app/Minisign.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSaveFile>

#include <filesystem>
#include <optional>
#include <utility>

QString downloadProblem(const HttpOutcome &outcome)
{
    switch (outcome.error) {
    case HttpError::None:
        break;
    case HttpError::Address:
        return FileDownload::tr("The address of the file cannot be used.");
    case HttpError::Network:
        return outcome.detail;
    case HttpError::Empty:
        return FileDownload::tr("The file on the server is empty.");
    case HttpError::TooLarge:
        return FileDownload::tr("The file on the server is too large.");
    case HttpError::Incomplete:
        return FileDownload::tr("The connection ended before the file was complete.");
    case HttpError::Stalled:
        return FileDownload::tr("The server does not answer any more.");
    case HttpError::Disk:
        return FileDownload::tr("The file cannot be written: %1").arg(outcome.detail);
    }
    return {};
}

/// The file that is being written. Unless it is put in its place, nothing of it stays, the folder made for it included.
class PartFile : public HttpContent
{
public:
    PartFile(const QString &target, std::shared_ptr<SignedContent> check)
        : m_target(target)
        , m_check(std::move(check))
        , m_part(target + QLatin1Char('.') + QString::number(QRandomGenerator::global()->generate(), 16) +
                 QStringLiteral(".part"))
        , m_file(std::in_place, m_part)
    {
    }
    ~PartFile() override
    {
        if (m_isPlaced) {
            return;
        }
        // Its end removes what it has written. commit() after cancelWriting() would do so, too, but first wait until
        // all of it is on the disk.
        m_file.reset();
        if (m_isWritten) {
            QFile::remove(m_part);
        }
        if (m_isFolderNew) {
            QDir().rmdir(QFileInfo(m_target).absolutePath()); // stays when something else was put there meanwhile
        }
    }
    Q_DISABLE_COPY_MOVE(PartFile)

    bool write(const QByteArray &bytes) override
    {
        if (m_check != nullptr) {
            m_check->add(bytes);
        }
        return (m_file->isOpen() || open()) && m_file->write(bytes) >= 0;
    }
    bool end() override
    {
        m_isRefused = m_check != nullptr && !m_check->isSigned();
        m_isWritten = !m_isRefused && m_file->commit();
        return m_isWritten || m_isRefused;
    }
    QString errorText() const override { return m_file->errorString(); }

    /// From the end on: it is not the one that was signed.
    bool isRefused() const { return m_isRefused; }
    /// Puts the whole file in its place, over what stands there. Answers why it could not, else an empty text.
    QString place()
    {
        std::error_code error;
        std::filesystem::rename(m_part.toStdU16String(), m_target.toStdU16String(), error);
        m_isPlaced = !error;
        return error ? QString::fromLocal8Bit(error.message().c_str()) : QString();
    }

private:
    bool open()
    {
        const QString folder = QFileInfo(m_target).absolutePath();
        m_isFolderNew = !QFileInfo::exists(folder);
        return QDir().mkpath(folder) && m_file->open(QIODevice::WriteOnly);
    }

    const QString m_target;
    const std::shared_ptr<SignedContent> m_check; ///< null: any content will do
    const QString m_part;                         ///< the whole file's name until it is put in its place
    std::optional<QSaveFile> m_file;              ///< until the end; has a name of its own while it is written
    bool m_isFolderNew = false;                   ///< the target's folder was made for it
    bool m_isRefused = false;
    bool m_isWritten = false;
    bool m_isPlaced = false;
};

QString downloadFileName(const QUrl &url)
{
    // Windows takes the words for devices in every folder, with any ending, and ignores blanks before the ending.
    static const QRegularExpression refused(
        QStringLiteral(R"([/\\:\p{Cc}]|[.\s]$|^$|)"
                       R"(^(con|prn|aux|nul|conin\$|conout\$|(com|lpt)[0-9\x{B9}\x{B2}\x{B3}]) *(\.|$))"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    const QString segment = url.path(QUrl::FullyEncoded).section(QLatin1Char('/'), -1);
    const QByteArray bytes = QByteArray::fromPercentEncoding(segment.toLatin1());
    const QString name = QString::fromUtf8(bytes);
    return name.toUtf8() == bytes && !refused.match(name).hasMatch() ? name : QString();
}

FileDownload::FileDownload(QString service, QObject *parent)
    : QObject(parent)
    , m_service(std::move(service))
{
    connect(&m_client, &HttpClient::sig_finished, this, &FileDownload::takeEnd);
}

void FileDownload::start(const QUrl &url, const QString &target, qint64 maximumSize,
                         std::shared_ptr<SignedContent> check)
{
    m_file = std::make_shared<PartFile>(target, std::move(check));
    m_client.start({url, m_service, maximumSize, m_stallLimitMs, true}, m_file);
}

void FileDownload::cancel()
{
    m_client.cancel();
    m_file.reset();
}

void FileDownload::takeEnd(HttpOutcome outcome)
{
    const auto file = std::exchange(m_file, nullptr);
    if (outcome.error == HttpError::None && file->isRefused()) {
        emit sig_refused(tr("The file on the server is not the one that was signed."));
        return;
    }
    // Here and not where it was written: nobody can cancel the download between this and the signal.
    const QString problem = outcome.error == HttpError::None ? file->place() : QString();
    if (!problem.isEmpty()) {
        outcome = {HttpError::Disk, problem, {}};
    }
    emit sig_finished(outcome.error == HttpError::None, downloadProblem(outcome));
}
