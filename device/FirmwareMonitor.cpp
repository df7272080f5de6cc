#include "device/FirmwareMonitor.h"

#include "device/DeviceInfo.h"
#include "device/Version.h"

#include <condition_variable>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

namespace {

constexpr quint8 WatchedDevice = 0;

} // namespace

QString firmwareProductCode(const QString &model)
{
    if (model.startsWith(QLatin1String("X9EC"))) {
        return QStringLiteral("X9CANFirmWare");
    }
    if (model.startsWith(QLatin1String("X9FC"))) {
        return QStringLiteral("X9770CANFirmWare");
    }
    return {};
}

class FirmwareMonitorPrivate
{
public:
    FirmwareMonitorPrivate(const CANAPI &table, const std::atomic<bool> &scanFlag)
        : api(table)
        , isScanning(scanFlag)
    {
    }

    void start();
    /// What the thread does.
    void run();
    bool isNewerPublished() const;
    /// Sleeps one interval, less when the monitor is stopped.
    void sleep();

    const CANAPI &api;
    const std::atomic<bool> &isScanning;
    FirmwareQuery query;
    FirmwareMonitor::NewerFirmware newerFirmware;
    std::chrono::milliseconds interval{};
    std::atomic<bool> isPaused{false};
    std::atomic<bool> isRunning{false};   ///< cleared by stop() and by the thread before it reports
    std::atomic<bool> isCancelled{false}; ///< tells the query of stop()
    std::mutex mutex;                     ///< guards the clearing of isRunning against a thread about to sleep
    std::condition_variable stopped;
    std::thread thread;
};

void FirmwareMonitorPrivate::start()
{
    isRunning = true;
    try {
        thread = std::thread([this] { run(); });
    } catch (const std::system_error &error) {
        isRunning = false;
        qWarning("No firmware monitor: %s", error.what());
    }
}

void FirmwareMonitorPrivate::run()
{
    while (isRunning) {
        // Whoever clears the flag decides: nothing is reported after stop() has been called.
        if (isNewerPublished() && isRunning.exchange(false)) {
            newerFirmware();
            return;
        }
        sleep();
    }
}

bool FirmwareMonitorPrivate::isNewerPublished() const
{
    // Nothing between the scan's flag and the call: see the class.
    if (isPaused || isScanning) {
        return false;
    }
    const std::optional<DeviceInfo> info = readInfo(api, WatchedDevice);
    const QString code = info ? firmwareProductCode(info->model) : QString();
    if (code.isEmpty() || !isRunning) {
        return false;
    }
    // A device puts a letter in front of its version. An empty answer is never newer.
    return compareVersion(query(code, isCancelled), info->firmware.mid(1)) == 1;
}

void FirmwareMonitorPrivate::sleep()
{
    std::unique_lock<std::mutex> lock(mutex);
    stopped.wait_for(lock, interval, [this] { return !isRunning; });
}

FirmwareMonitor::FirmwareMonitor(const CANAPI &api, const std::atomic<bool> &isScanning, FirmwareQuery query,
                                 NewerFirmware newerFirmware, std::chrono::milliseconds interval)
    : m_p(std::make_unique<FirmwareMonitorPrivate>(api, isScanning))
{
    m_p->query = std::move(query);
    m_p->newerFirmware = std::move(newerFirmware);
    m_p->interval = interval;
    if (m_p->query && api.KQ_ReadInfo != nullptr) {
        m_p->start();
    }
}

FirmwareMonitor::~FirmwareMonitor()
{
    stop();
}

void FirmwareMonitor::stop()
{
    {
        const std::lock_guard<std::mutex> lock(m_p->mutex);
        m_p->isRunning = false;
        m_p->isCancelled = true;
    }
    m_p->stopped.notify_all();
    if (m_p->thread.joinable()) {
        m_p->thread.join();
    }
}

bool FirmwareMonitor::isRunning() const
{
    return m_p->isRunning;
}

void FirmwareMonitor::setPaused(bool paused)
{
    m_p->isPaused = paused;
}
