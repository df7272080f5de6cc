#include "device/DeviceInfo.h"

#include <algorithm>
#include <array>

namespace {

using InfoBuffer = std::array<char, AdapterInfoSize>;

/// Local 8-bit text up to its first zero; the library may have used the whole buffer and left no zero.
QString textOf(const InfoBuffer &buffer)
{
    const auto *const end = std::find(buffer.begin(), buffer.end(), '\0');
    return QString::fromLocal8Bit(buffer.data(), static_cast<int>(end - buffer.begin()));
}

} // namespace

std::optional<DeviceInfo> readInfo(const CANAPI &api, quint8 dev)
{
    if (api.KQ_ReadInfo == nullptr) {
        return std::nullopt;
    }
    std::array<InfoBuffer, 4> texts{}; // serial, model, firmware, hardware
    const quint32 result =
        api.KQ_ReadInfo(AdapterDeviceType, dev, texts[0].data(), texts[1].data(), texts[2].data(), texts[3].data());
    if (result != AdapterSuccess) {
        return std::nullopt;
    }
    return DeviceInfo{textOf(texts[0]), textOf(texts[1]), textOf(texts[2])};
}
