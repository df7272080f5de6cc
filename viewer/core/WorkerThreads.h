#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

/// Threads that work off what they are handed, in its order. Made of the standard library, whose locks ThreadSanitizer
/// sees: it takes what the toolkit's pool hands to a thread that waits there for a race.
class WorkerThreads
{
public:
    /// Threads are started when there is work for them, and count of them at most (1 or more).
    explicit WorkerThreads(int count);
    /// Drops what has not begun, and waits for what has.
    ~WorkerThreads();
    WorkerThreads(const WorkerThreads &) = delete;
    WorkerThreads &operator=(const WorkerThreads &) = delete;

    /// As many as there are processors.
    static int processors();

    int count() const { return m_count; }
    /// Before the first start().
    void setCount(int count) { m_count = count; }
    void start(std::function<void()> work);

private:
    void run();

    int m_count;
    std::vector<std::thread> m_threads;
    std::mutex m_mutex; ///< guards what is below
    std::condition_variable m_wake;
    std::deque<std::function<void()>> m_work;
    int m_idle = 0;
    bool m_isEnding = false;
};
