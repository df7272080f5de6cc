#include "device/DeviceWatch.h"

#include "device/DeviceInfo.h"

#include <condition_variable>
#include <map>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace {

/// In a row; a single one may come of a busy adapter.
constexpr int FailuresOfALostDevice = 2;

struct WatchedDevice
{
    quint32 opening = 0;
    bool hasAnswered = false;
    int failures = 0; ///< in a row, since it has answered

    bool isLost() const { return failures >= FailuresOfALostDevice; }
    void note(bool answers)
    {
        hasAnswered = hasAnswered || answers;
        failures = answers || !hasAnswered ? 0 : failures + 1;
    }
};

} // namespace

class DeviceWatchPrivate
{
public:
    DeviceWatchPrivate(const CANAPI &table, const std::atomic<bool> &scanFlag)
        : api(table)
        , isScanning(scanFlag)
    {
    }

    void start();
    /// What the thread does.
    void run();
    void checkAll(std::unique_lock<std::mutex> &lock);
    /// Releases the lock for the time of the adapter call.
    void check(std::unique_lock<std::mutex> &lock, quint8 dev, quint32 opening);

    const CANAPI &api;
    const std::atomic<bool> &isScanning;
    DeviceWatch::DeviceLost deviceLost;
    std::chrono::milliseconds interval{};
    std::mutex mutex;                        ///< guards devices and isStopped
    std::map<quint8, WatchedDevice> devices; ///< by device index
    bool isStopped = false;
    std::condition_variable stopped;
    std::thread thread;
};

void DeviceWatchPrivate::start()
{
    try {
        thread = std::thread([this] { run(); });
    } catch (const std::system_error &error) {
        qWarning("No watch over the devices: %s", error.what());
    }
}

void DeviceWatchPrivate::run()
{
    std::unique_lock<std::mutex> lock(mutex);
    while (!stopped.wait_for(lock, interval, [this] { return isStopped; })) {
        checkAll(lock);
    }
}

void DeviceWatchPrivate::checkAll(std::unique_lock<std::mutex> &lock)
{
    // Looked up anew after each call: devices come and go meanwhile.
    auto next = devices.cbegin();
    while (!isStopped && next != devices.cend()) {
        const quint8 dev = next->first;
        if (!next->second.isLost()) {
            check(lock, dev, next->second.opening);
        }
        next = devices.upper_bound(dev);
    }
}

void DeviceWatchPrivate::check(std::unique_lock<std::mutex> &lock, quint8 dev, quint32 opening)
{
    if (isScanning) {
        return;
    }
    lock.unlock();
    const bool answers = readInfo(api, dev).has_value();
    lock.lock();
    const auto found = devices.find(dev);
    if (isStopped || found == devices.end() || found->second.opening != opening) {
        return; // closed during the call
    }
    found->second.note(answers);
    if (found->second.isLost()) {
        deviceLost(dev, opening);
    }
}

DeviceWatch::DeviceWatch(const CANAPI &api, const std::atomic<bool> &isScanning, DeviceLost deviceLost,
                         std::chrono::milliseconds interval)
    : m_p(std::make_unique<DeviceWatchPrivate>(api, isScanning))
{
    m_p->deviceLost = std::move(deviceLost);
    m_p->interval = interval;
}

DeviceWatch::~DeviceWatch()
{
    stop();
    if (m_p->thread.joinable()) {
        m_p->thread.join();
    }
}

void DeviceWatch::add(quint8 dev, quint32 opening)
{
    if (m_p->api.KQ_ReadInfo == nullptr) {
        return;
    }
    {
        const std::lock_guard<std::mutex> lock(m_p->mutex);
        m_p->devices[dev] = WatchedDevice{opening};
    }
    if (!isRunning()) {
        m_p->start();
    }
}

void DeviceWatch::remove(quint8 dev)
{
    const std::lock_guard<std::mutex> lock(m_p->mutex);
    m_p->devices.erase(dev);
}

void DeviceWatch::stop()
{
    {
        const std::lock_guard<std::mutex> lock(m_p->mutex);
        m_p->isStopped = true;
    }
    m_p->stopped.notify_all();
}

bool DeviceWatch::isRunning() const
{
    return m_p->thread.joinable();
}
