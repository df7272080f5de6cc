#include "device/AdapterCalls.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace {

using InfoBuffer = std::array<char, AdapterInfoSize>;

/// Local 8-bit text up to its first zero; the library may have used the whole buffer and left no zero.
template<class Buffer>
QString textOf(const Buffer &buffer)
{
    const auto *const begin = std::begin(buffer);
    const auto *const end = std::find(begin, std::end(buffer), '\0');
    return QString::fromLocal8Bit(begin, static_cast<int>(end - begin));
}

VCI_INIT_CONFIG initConfig(const ChannelParam &param)
{
    VCI_INIT_CONFIG config{};
    config.AccCode = param.AccCode;
    config.AccMask = param.AccMask;
    config.Filter = param.Filter;
    config.Timing0 = param.Timing0;
    config.Timing1 = param.Timing1;
    config.Mode = static_cast<quint8>((param.dataRateCANFD & AdapterModeDataRateMask) << AdapterModeDataRateShift |
                                      (param.listenOnly & AdapterModeListenOnly) | AdapterModeAlways);
    return config;
}

} // namespace

std::optional<DeviceInfo> readInfo(const CANAPI &api, quint8 dev)
{
    InfoBuffer serial{};
    InfoBuffer model{};
    InfoBuffer firmware{};
    InfoBuffer hardware{};
    if (!succeeds(api.KQ_ReadInfo, dev, serial.data(), model.data(), firmware.data(), hardware.data())) {
        return std::nullopt;
    }
    return DeviceInfo{textOf(serial), textOf(model), textOf(firmware)};
}

bool startCAN(const CANAPI &api, const ChannelParam &param)
{
    const VCI_INIT_CONFIG config = initConfig(param);
    if (!succeeds(api.VCI_InitCAN, param.device, param.channel, &config) ||
        !succeeds(api.VCI_StartCAN, param.device, param.channel)) {
        return false;
    }
    succeeds(api.VCI_ClearBuffer, param.device, param.channel);
    return true;
}

ChannelProblem readChannelProblem(const CANAPI &api, quint8 dev, quint8 ch)
{
    VCI_ERR_INFO info{};
    if (!api.tellsErrors() || !succeeds(api.VCI_ReadErrInfo, dev, ch, &info)) {
        return {};
    }
    return {static_cast<AdapterProblemCode>(info.ErrCode), textOf(info.Text), textOf(info.Remedy)};
}
