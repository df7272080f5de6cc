#include "app/ExitDeadline.h"

#include "app/ProcessEnd.h"

#include <QtGlobal>

#include <utility>

ExitDeadline::ExitDeadline(std::chrono::milliseconds limit, int exitCode, std::function<void()> lastAct)
    : m_thread([this, limit, exitCode, act = std::move(lastAct)] { wait(limit, exitCode, act); })
{
}

ExitDeadline::~ExitDeadline()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isKept = true;
    }
    m_kept.notify_all();
    m_thread.join();
}

void ExitDeadline::wait(std::chrono::milliseconds limit, int exitCode, const std::function<void()> &lastAct)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    if (m_kept.wait_for(lock, limit, [this] { return m_isKept; })) {
        return;
    }
    qWarning("The adapter's library does not answer; the program ends without closing it.");
    lastAct();
    endProcessNow(exitCode);
}
