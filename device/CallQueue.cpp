#include "device/CallQueue.h"

#include <QCoreApplication>
#include <QEvent>

#include <utility>

void CallQueue::post(std::function<void()> call)
{
    {
        const std::lock_guard lock(m_mutex);
        m_calls.push_back(std::move(call));
    }
    QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

std::function<void()> CallQueue::poster(std::function<void()> call)
{
    return [this, call = std::move(call)] {
        post(call);
    };
}

void CallQueue::customEvent(QEvent * /*event*/)
{
    std::unique_lock lock(m_mutex);
    const std::function<void()> call = std::move(m_calls.front());
    m_calls.pop_front();
    lock.unlock();
    call();
}
