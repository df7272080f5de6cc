#pragma once

#include "device/FirmwareQuery.h"

#include <QString>
#include <QStringList>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>

/// The published versions as the query finds them, and what it was asked for. From any thread.
class FirmwarePublisher
{
public:
    void publish(const QString &version)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_version = version;
    }
    /// Runs in every query before it answers.
    void onQuery(std::function<void(const std::atomic<bool> &isCancelled)> hook)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_hook = std::move(hook);
    }
    /// The product codes asked for so far.
    QStringList asked() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_asked;
    }
    FirmwareQuery query()
    {
        return [this](const QString &productCode, const std::atomic<bool> &isCancelled) {
            return answer(productCode, isCancelled);
        };
    }

private:
    QString answer(const QString &productCode, const std::atomic<bool> &isCancelled)
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_asked.append(productCode);
        const auto hook = m_hook;
        lock.unlock();
        if (hook) {
            hook(isCancelled);
        }
        lock.lock();
        return m_version;
    }

    mutable std::mutex m_mutex; ///< guards everything below
    QString m_version;
    QStringList m_asked;
    std::function<void(const std::atomic<bool> &)> m_hook;
};

/// Waits until the flag is set, for a hook on the monitor's thread. Gives up after ten seconds.
inline void waitFor(const std::atomic<bool> &flag)
{
    std::mutex mutex;
    std::condition_variable never;
    std::unique_lock<std::mutex> lock(mutex);
    for (int i = 0; i < 10000 && !flag; ++i) {
        never.wait_for(lock, std::chrono::milliseconds(1));
    }
}
