#pragma once

#include <QObject>

#include <deque>
#include <functional>
#include <mutex>

/// Calls that any thread leaves for the thread of this object, which does them in their order. The toolkit's own queued
/// calls are ordered by a lock that ThreadSanitizer does not see: it takes what a call holds for a race.
class CallQueue : public QObject
{
public:
    using QObject::QObject;

    /// From any thread. What is still waiting when this object goes is not done.
    void post(std::function<void()> call);
    /// A function for any thread that posts call; not to be called when this object has gone.
    std::function<void()> poster(std::function<void()> call);

protected:
    void customEvent(QEvent *event) override;

private:
    std::mutex m_mutex; ///< guards m_calls
    std::deque<std::function<void()>> m_calls;
};
