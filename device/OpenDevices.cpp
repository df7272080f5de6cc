#include "device/OpenDevices.h"

#include <system_error>
#include <utility>

OpenDevices::OpenDevices(std::shared_ptr<CANAPI> api)
    : m_api(std::move(api))
{
}

OpenDevices::~OpenDevices()
{
    if (m_devices.empty()) {
        return;
    }
    qWarning("CANCommunication destroyed with %u open device(s)", static_cast<unsigned>(m_devices.size()));
    *m_scanning = true; // nobody is left to be told what a device answers
    for (auto &[dev, device] : m_devices) {
        device.thread.detach();
    }
}

OpenDevice *OpenDevices::find(quint8 dev)
{
    const auto found = m_devices.find(dev);
    return found == m_devices.end() ? nullptr : &found->second;
}

CANError OpenDevices::open(quint8 dev, const std::function<void(const OpenDevice &)> &connectReader)
{
    if (find(dev) != nullptr) {
        return CAN_DeviceExists;
    }
    if (!openInLibrary(dev)) {
        return CAN_DeviceOpenFailed;
    }
    OpenDevice device;
    device.opening = ++m_lastOpening;
    device.reader = std::make_shared<CANReadHandle>();
    device.reader->setFlagRead(true);
    if (m_silence) {
        device.reader->watchDevice(m_scanning, *m_silence);
        if (m_answering.count(dev) != 0) {
            device.reader->noteTexts();
        }
    }
    connectReader(device);
    try { // after everything that the thread has to find in place
        device.thread = std::thread([dev, reader = device.reader, api = m_api] { reader->readHandle(dev, api.get()); });
    } catch (const std::system_error &error) {
        qWarning("No receive thread: %s", error.what());
        closeInLibrary(dev);
        return CAN_DeviceOpenFailed;
    }
    m_devices.emplace(dev, std::move(device));
    return CAN_OK;
}

CANError OpenDevices::close(quint8 dev)
{
    OpenDevice *device = find(dev);
    if (device == nullptr) {
        return CAN_DeviceNotExists;
    }
    if (device->canOpen.any() || device->linOpen.any()) {
        return CAN_ChannelExists;
    }
    device->reader->setFlagRead(false);
    device->thread.join();
    closeInLibrary(dev);
    m_devices.erase(dev);
    return CAN_OK;
}

std::optional<DeviceInfo> OpenDevices::readTexts(quint8 dev)
{
    std::optional<DeviceInfo> info = readInfo(*m_api, dev);
    if (!info) {
        m_answering.erase(dev);
        return info;
    }
    m_answering.insert(dev);
    if (const OpenDevice *device = find(dev)) {
        device->reader->noteTexts();
    }
    return info;
}

CANError OpenDevices::readTextsOfAny(quint8 dev, std::optional<DeviceInfo> &info)
{
    const bool isOpen = find(dev) != nullptr;
    if (!isOpen && !openInLibrary(dev)) {
        return CAN_DeviceOpenFailed;
    }
    info = readTexts(dev);
    if (!isOpen) {
        closeInLibrary(dev);
    }
    return CAN_OK;
}

bool OpenDevices::openInLibrary(quint8 dev) const
{
    // A device that cannot be closed again is not opened.
    return m_api->VCI_CloseDevice != nullptr && succeeds(m_api->VCI_OpenDevice, dev, quint32(0));
}

void OpenDevices::closeInLibrary(quint8 dev) const
{
    m_api->VCI_CloseDevice(AdapterDeviceType, dev); // openInLibrary() has seen that it is there
}
