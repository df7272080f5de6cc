#include "app/FileDownload.h"

#include "app/DownloadThread.h"

#include <QThread>
#include <QUrl>

#include <utility>

namespace {
constexpr int CancelWaitMs = 400; ///< for a thread to end; the rest of the promised 500 ms is for what follows

QString textOf(const DownloadOutcome &outcome)
{
    switch (outcome.error) {
    case DownloadError::None:
        break;
    case DownloadError::Address:
        return FileDownload::tr("The address of the file cannot be used.");
    case DownloadError::Network:
        return outcome.detail;
    case DownloadError::Empty:
        return FileDownload::tr("The file on the server is empty.");
    case DownloadError::TooLarge:
        return FileDownload::tr("The file on the server is too large.");
    case DownloadError::Incomplete:
        return FileDownload::tr("The connection ended before the file was complete.");
    case DownloadError::Stalled:
        return FileDownload::tr("The server does not answer any more.");
    case DownloadError::Disk:
        return FileDownload::tr("The file cannot be written: %1").arg(outcome.detail);
    }
    return {};
}
} // namespace

class FileDownloadPrivate
{
public:
    DownloadThread *m_thread = nullptr; ///< of the download that runs; deletes itself when it has ended
    std::unique_ptr<QObject> m_relay;   ///< receives the thread's signals; without it, those under way are dropped
    int m_stallLimitMs = FileDownload::StallLimitMs;
};

FileDownload::FileDownload(QObject *parent)
    : QObject(parent)
    , m_p(std::make_unique<FileDownloadPrivate>())
{
}

FileDownload::~FileDownload()
{
    cancel();
}

void FileDownload::start(const QUrl &url, const QString &target, qint64 maximumSize)
{
    cancel();
    auto *thread = new DownloadThread({url, target, maximumSize, m_p->m_stallLimitMs});
    m_p->m_thread = thread;
    m_p->m_relay = std::make_unique<QObject>();
    connect(thread, &DownloadThread::sig_progress, m_p->m_relay.get(),
            [this](qint64 received, qint64 total) { emit sig_progress(received, total); });
    connect(thread, &QThread::finished, m_p->m_relay.get(), [this] { slot_threadEnded(); });
    connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    thread->start();
}

void FileDownload::cancel()
{
    m_p->m_relay.reset();
    DownloadThread *thread = std::exchange(m_p->m_thread, nullptr);
    if (thread == nullptr) {
        return;
    }
    thread->cancel();
    if (thread->wait(CancelWaitMs)) {
        thread->removeTarget();
        delete thread;
    }
}

bool FileDownload::isRunning() const
{
    return m_p->m_thread != nullptr;
}

void FileDownload::setStallLimit(int milliseconds)
{
    m_p->m_stallLimitMs = milliseconds;
}

void FileDownload::slot_threadEnded()
{
    DownloadThread *thread = std::exchange(m_p->m_thread, nullptr);
    thread->wait(); // the last steps after its signal
    const DownloadOutcome outcome = thread->outcome();
    delete thread;
    m_p->m_relay.release()->deleteLater(); // it is what calls
    emit sig_finished(outcome.error == DownloadError::None, textOf(outcome));
}
