#include "device/FirmwareMonitor.h"

#include "device/AdapterCalls.h"
#include "device/Version.h"

#include <system_error>
#include <utility>

namespace {

constexpr quint8 WatchedDevice = 0;

} // namespace

QString firmwareProductCode(const QString &model)
{
    if (model.endsWith(QLatin1String(AdapterForeignModel))) {
        return {};
    }
    if (model.startsWith(QLatin1String("X9EC"))) {
        return QStringLiteral("X9CANFirmWare");
    }
    if (model.startsWith(QLatin1String("X9FC"))) {
        return QStringLiteral("X9770CANFirmWare");
    }
    return {};
}

FirmwareMonitor::FirmwareMonitor(const CANAPI &api, const std::atomic<bool> &isScanning, FirmwareQuery query,
                                 NewerFirmware newerFirmware, std::chrono::milliseconds interval)
    : m_api(api)
    , m_isScanning(isScanning)
    , m_query(std::move(query))
    , m_newerFirmware(std::move(newerFirmware))
    , m_interval(interval)
{
    if (!m_query || api.KQ_ReadInfo == nullptr) {
        return;
    }
    m_isRunning = true;
    try {
        m_thread = std::thread([this] { run(); });
    } catch (const std::system_error &error) {
        m_isRunning = false;
        qWarning("No firmware monitor: %s", error.what());
    }
}

FirmwareMonitor::~FirmwareMonitor()
{
    stop();
}

void FirmwareMonitor::stop()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isRunning = false;
        m_isCancelled = true;
    }
    m_stopped.notify_all();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void FirmwareMonitor::run()
{
    while (m_isRunning) {
        // Whoever clears the flag decides: nothing is reported after stop() has been called.
        if (isNewerPublished() && m_isRunning.exchange(false)) {
            m_newerFirmware();
            return;
        }
        std::unique_lock<std::mutex> lock(m_mutex);
        m_stopped.wait_for(lock, m_interval, [this] { return !m_isRunning; });
    }
}

bool FirmwareMonitor::isNewerPublished() const
{
    // Nothing between the scan's flag and the call: see the class.
    if (m_isScanning) {
        return false;
    }
    const std::optional<DeviceInfo> info = readInfo(m_api, WatchedDevice);
    const QString code = info ? firmwareProductCode(info->model) : QString();
    if (code.isEmpty() || !m_isRunning) {
        return false;
    }
    // A device puts a letter in front of its version. An empty answer is never newer.
    return compareVersion(m_query(code, m_isCancelled), info->firmware.mid(1)) == 1;
}
