#include "capture/CaptureLoader.h"

#include <QDeadlineTimer>
#include <QThread>

#include <memory>
#include <mutex>
#include <utility>

namespace {
/// One reading: belongs to its thread and to whoever started it, so either may go first.
class Load
{
public:
    Load(CaptureLoader::Reader reader, QString path)
        : m_reader(std::move(reader))
        , m_path(std::move(path))
    {
    }

    void read()
    {
        std::optional<CaptureContent> content = m_reader(m_path, m_stop);
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_content = std::move(content);
    }
    void stop() { m_stop = true; }
    std::optional<CaptureContent> takeContent()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return std::exchange(m_content, std::nullopt);
    }

private:
    const CaptureLoader::Reader m_reader;
    const QString m_path;
    std::atomic<bool> m_stop{false};
    std::mutex m_mutex;                      ///< guards m_content
    std::optional<CaptureContent> m_content; ///< once it was read
};
} // namespace

class CaptureLoadThread : public QThread
{
public:
    CaptureLoadThread(const CaptureLoader::Reader &reader, const QString &path)
        : load(std::make_shared<Load>(reader, path))
    {
    }

    const std::shared_ptr<Load> load;

protected:
    void run() override
    {
        const std::shared_ptr<Load> own = load;
        own->read();
    }
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
    for (const QPointer<CaptureLoadThread> &thread : std::as_const(m_letGo)) {
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
    auto *thread = new CaptureLoadThread(m_reader, path);
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
        m_thread->load->stop();
        m_letGo.append(m_thread);
        m_thread = nullptr;
        m_done = {};
    }
}

void CaptureLoader::finish(CaptureLoadThread *thread)
{
    if (thread == m_thread) { // otherwise stopped meanwhile
        m_thread = nullptr;
        std::exchange(m_done, {})(thread->load->takeContent());
    }
}
