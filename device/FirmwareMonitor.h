#pragma once

#include "device/CANAPI.h"
#include "device/FirmwareQuery.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

/// The product code under which the firmware of a model is published; empty for a model that has none.
QString firmwareProductCode(const QString &model);

/// Watches on a thread of its own whether a newer firmware is published than the one of device 0: reads the device's
/// texts, asks for the newest version published for its model, sleeps, and starts again. The thread ends with the first
/// newer firmware, so one is reported per run. A device that does not answer or is of another model is not asked about.
///
/// The device is not opened for it: an adapter that answers for open devices only is checked while somebody else has
/// device 0 open. Calls into the library are made while other threads use the same device. A scan holds them off:
/// its flag is looked at immediately before each call, so at most a call already under way goes on beside a scan.
class FirmwareMonitor
{
public:
    /// Runs on the monitor's thread, once at most; must not stop or destroy the monitor.
    using NewerFirmware = std::function<void()>;

    /// Sleep between two checks.
    static constexpr std::chrono::milliseconds Interval{2000};

    /// Starts at once. There is no thread without a query, without the entry that reads the texts, or when the system
    /// has no thread left; nothing is reported then. api and isScanning must outlive the monitor.
    FirmwareMonitor(const CANAPI &api, const std::atomic<bool> &isScanning, FirmwareQuery query,
                    NewerFirmware newerFirmware, std::chrono::milliseconds interval = Interval);
    /// As stop().
    ~FirmwareMonitor();
    FirmwareMonitor(const FirmwareMonitor &) = delete;
    FirmwareMonitor &operator=(const FirmwareMonitor &) = delete;

    /// Ends the thread for good; nothing is called or reported afterwards. Takes no time when the monitor sleeps,
    /// 500 ms at most when it waits for the query (which has to heed its flag), and otherwise until the adapter call
    /// it is in returns.
    void stop();
    /// False when there is no thread, after stop(), and from a newer firmware on.
    bool isRunning() const { return m_isRunning; }

private:
    /// What the thread does.
    void run();
    bool isNewerPublished() const;

    const CANAPI &m_api;
    const std::atomic<bool> &m_isScanning;
    const FirmwareQuery m_query;
    const NewerFirmware m_newerFirmware;
    const std::chrono::milliseconds m_interval;
    std::atomic<bool> m_isRunning{false};   ///< cleared by stop() and by the thread before it reports
    std::atomic<bool> m_isCancelled{false}; ///< tells the query of stop()
    std::mutex m_mutex;                     ///< guards the clearing of m_isRunning against a thread about to sleep
    std::condition_variable m_stopped;
    std::thread m_thread;
};
