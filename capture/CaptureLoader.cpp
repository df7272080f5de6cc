#include "capture/CaptureLoader.h"

#include <QDeadlineTimer>
#include <QThread>

#include <mutex>
#include <utility>

struct CaptureLoader::Load
{
    std::atomic<bool> isStopped{false};
    std::mutex mutex;                      ///< guards content
    std::optional<CaptureContent> content; ///< once it was read
};

CaptureLoader::CaptureLoader(QObject *parent)
    : CaptureLoader([](const QString &path, const std::atomic<bool> &stop) { return readCapture(path, &stop); }, parent)
{
}

CaptureLoader::CaptureLoader(Reader reader, QObject *parent)
    : QObject(parent)
    , m_reader(std::move(reader))
{
}

CaptureLoader::~CaptureLoader()
{
    stop();
    const QDeadlineTimer deadline(StopWaitMs);
    for (const QPointer<QThread> &thread : std::as_const(m_letGo)) {
        if (thread != nullptr && thread->wait(deadline)) {
            delete thread.data();
        }
    }
}

bool CaptureLoader::start(const QString &path, Done done)
{
    stop();
    m_letGo.removeAll(nullptr); // those that have ended
    if (m_letGo.size() >= MaxLetGo) {
        return false;
    }
    m_done = std::move(done);
    m_load = std::make_shared<Load>();
    QThread *thread = QThread::create([load = m_load, reader = m_reader, path] {
        std::optional<CaptureContent> content = reader(path, load->isStopped);
        const std::lock_guard<std::mutex> lock(load->mutex);
        load->content = std::move(content);
    });
    m_thread = thread;
    // Queued to this object's thread. The second one comes after the first, so that the pointer is good in finish().
    connect(thread, &QThread::finished, this, [this, thread] { finish(thread); });
    connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    thread->start();
    return true;
}

void CaptureLoader::stop()
{
    if (m_thread != nullptr) {
        m_load->isStopped = true;
        m_letGo.append(m_thread);
        m_thread = nullptr;
        m_done = {};
    }
}

void CaptureLoader::finish(const QThread *thread)
{
    if (thread != m_thread) { // stopped meanwhile
        return;
    }
    m_thread = nullptr;
    std::optional<CaptureContent> content;
    {
        const std::lock_guard<std::mutex> lock(m_load->mutex);
        content = std::exchange(m_load->content, std::nullopt);
    }
    std::exchange(m_done, {})(std::move(content));
}
