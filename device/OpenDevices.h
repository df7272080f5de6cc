#pragma once

#include "device/AdapterCalls.h"
#include "device/CANAPI.h"
#include "device/CANError.h"
#include "device/CANReadHandle.h"

#include <atomic>
#include <bitset>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <thread>

/// A device that is open in the adapter library.
struct OpenDevice
{
    using ChannelFlags = std::bitset<ChannelsPerDevice>;

    ChannelFlags canOpen;
    ChannelFlags linOpen;
    ChannelFlags linRefused; ///< held open by a tab, but the adapter has refused its new settings after closing it
    bool gatewayOn = false;
    quint32 opening = 0; ///< tells one opening from the next
    std::shared_ptr<CANReadHandle> reader;
    std::thread thread; ///< on which the reader polls
};

/// The open devices with their workers. Of the GUI thread.
class OpenDevices
{
public:
    explicit OpenDevices(std::shared_ptr<CANAPI> api);
    /// Closes nothing: the worker of a device that is still open goes on polling, and holds all that it needs for it.
    ~OpenDevices();
    OpenDevices(const OpenDevices &) = delete;
    OpenDevices &operator=(const OpenDevices &) = delete;

    /// The workers ask their devices, when these have been silent for so long and no scan runs. For devices that are
    /// opened from now on.
    void watch(std::chrono::milliseconds silence) { m_silence = silence; }
    /// Null for a device that is not open.
    OpenDevice *find(quint8 dev);
    /// Opens a device and starts its worker; connectReader comes between the two. CAN_DeviceExists,
    /// CAN_DeviceOpenFailed.
    CANError open(quint8 dev, const std::function<void(const OpenDevice &)> &connectReader);
    /// Joins the worker and closes the device. CAN_DeviceNotExists; CAN_ChannelExists while a channel is open.
    CANError close(quint8 dev);
    /// What an open device tells of itself, which also says whether it can be expected to answer.
    std::optional<DeviceInfo> readTexts(quint8 dev);
    /// The same for a device that may be closed: it is opened for it, and closed again. CAN_DeviceOpenFailed.
    CANError readTextsOfAny(quint8 dev, std::optional<DeviceInfo> &info);

    /// Whether a scan runs. Any thread reads it.
    std::atomic<bool> &scanning() { return *m_scanning; }

private:
    bool openInLibrary(quint8 dev) const;
    void closeInLibrary(quint8 dev) const;

    // Shared with the workers, which may be left behind.
    const std::shared_ptr<CANAPI> m_api;
    const std::shared_ptr<std::atomic<bool>> m_scanning = std::make_shared<std::atomic<bool>>(false);
    std::map<quint8, OpenDevice> m_devices; ///< by device index
    quint32 m_lastOpening = 0;
    std::optional<std::chrono::milliseconds> m_silence; ///< none: devices are not asked
    std::set<quint8> m_answering;                       ///< devices that told their texts when last asked here
};
