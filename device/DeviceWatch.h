#pragma once

#include "device/CANAPI.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>

class DeviceWatchPrivate;

/// Tells when an open device is pulled out: asks every open device for its texts, on a thread of its own, again and
/// again. A device that has answered and then fails twice in a row is lost; it is reported once per opening and not
/// asked any more. One that never answers is never reported.
///
/// A closing device does not wait for the call that asks it: what the call tells is dropped then, also when the device
/// has been opened again meanwhile. Calls into the library are made while other threads use the same device. A scan
/// holds them off: its flag is looked at immediately before each call, so at most a call already under way goes on
/// beside a scan.
class DeviceWatch
{
public:
    /// Runs on the watch's thread, with its lock held: must not call the watch, and should return at once. opening is
    /// the number that the device was added with.
    using DeviceLost = std::function<void(quint8 dev, quint32 opening)>;

    /// Sleep before each round of checks.
    static constexpr std::chrono::milliseconds Interval{1000};

    /// Has no thread until the first device is added, and none without the entry that reads the texts. api and
    /// isScanning must outlive the watch.
    DeviceWatch(const CANAPI &api, const std::atomic<bool> &isScanning, DeviceLost deviceLost,
                std::chrono::milliseconds interval = Interval);
    /// As stop(), and waits until the adapter call under way returns.
    ~DeviceWatch();
    DeviceWatch(const DeviceWatch &) = delete;
    DeviceWatch &operator=(const DeviceWatch &) = delete;

    /// Watches a device that has been opened; opening tells this time from every other. Nothing is watched when the
    /// system has no thread left. Like every function here, of the owner's thread, and never waits for an adapter call.
    void add(quint8 dev, quint32 opening);
    /// To be called before the device is closed; it is not reported afterwards.
    void remove(quint8 dev);
    /// Ends the watch for good: no call is begun and nothing is reported afterwards.
    void stop();
    /// Whether there is a thread.
    bool isRunning() const;

private:
    std::unique_ptr<DeviceWatchPrivate> m_p;
};
