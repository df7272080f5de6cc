#include "capture/CaptureLoader.h"

#include <QDeadlineTimer>
#include <QThread>

#include <mutex>
#include <utility>

/// One reading: belongs to its thread and to whoever started it, so either may go first.
struct CaptureLoader::Load
{
    Reader reader;
    std::atomic<bool> isStopped{false};
    std::mutex mutex;                      ///< guards content
    std::optional<CaptureContent> content; ///< once it was read
};

CaptureLoader::CaptureLoader(Reader reader)
    : m_reader(std::move(reader))
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
    const auto load = std::make_shared<Load>();
    load->reader = m_reader;
    QThread *thread = QThread::create([load, path] {
        std::optional<CaptureContent> content = load->reader(path, load->isStopped);
        const std::lock_guard<std::mutex> lock(load->mutex);
        load->content = std::move(content);
    });
    m_thread = thread;
    m_load = load;
    connect(thread, &QThread::finished, this, [this, load] { finish(load); }); // queued to this object's thread
    connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    thread->start();
    return true;
}

void CaptureLoader::stop()
{
    if (m_load != nullptr) {
        std::exchange(m_load, nullptr)->isStopped = true;
        m_letGo.append(m_thread);
        m_done = {};
    }
}

void CaptureLoader::finish(const std::shared_ptr<Load> &load)
{
    if (load != m_load) { // stopped meanwhile
        return;
    }
    m_load = nullptr;
    std::optional<CaptureContent> content;
    {
        const std::lock_guard<std::mutex> lock(load->mutex);
        content = std::exchange(load->content, std::nullopt);
    }
    std::exchange(m_done, {})(std::move(content));
}
