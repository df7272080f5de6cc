#include "viewer/core/WorkerThreads.h"

#include <algorithm>
#include <utility>

WorkerThreads::WorkerThreads(int count)
    : m_count(count)
{
}

WorkerThreads::~WorkerThreads()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isEnding = true;
        m_work.clear();
    }
    m_wake.notify_all();
    for (std::thread &thread : m_threads) {
        thread.join();
    }
}

int WorkerThreads::processors()
{
    return std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

void WorkerThreads::start(std::function<void()> work)
{
    bool isThreadWanted = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_work.push_back(std::move(work));
        isThreadWanted = static_cast<int>(m_work.size()) > m_idle && static_cast<int>(m_threads.size()) < m_count;
    }
    if (isThreadWanted) {
        m_threads.emplace_back([this] { run(); });
    }
    m_wake.notify_one();
}

void WorkerThreads::run()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_isEnding) {
        if (m_work.empty()) {
            ++m_idle;
            m_wake.wait(lock, [this] { return m_isEnding || !m_work.empty(); });
            --m_idle;
            continue;
        }
        std::function<void()> work = std::move(m_work.front());
        m_work.pop_front();
        lock.unlock();
        work();
        work = {}; // what it holds goes here, not under the lock
        lock.lock();
    }
}
