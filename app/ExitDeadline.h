#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

/// Ends the process when its owner is not destroyed in time: for the end of the program, where an adapter's library
/// that never returns must not leave a process behind that nobody sees.
class ExitDeadline
{
public:
    /// At the deadline lastAct runs on another thread, and the process ends with exitCode, without anything further.
    ExitDeadline(std::chrono::milliseconds limit, int exitCode, std::function<void()> lastAct);
    /// The deadline is kept.
    ~ExitDeadline();
    ExitDeadline(const ExitDeadline &) = delete;
    ExitDeadline &operator=(const ExitDeadline &) = delete;

private:
    void wait(std::chrono::milliseconds limit, int exitCode, const std::function<void()> &lastAct);

    std::mutex m_mutex; ///< guards m_isKept
    std::condition_variable m_kept;
    bool m_isKept = false;
    std::thread m_thread; ///< the last member: it uses the others
};
