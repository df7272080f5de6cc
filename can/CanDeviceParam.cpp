#include "can/CanDeviceParam.h"

#include "can/CanFrameInput.h"
#include "widgets/HexEntry.h"

#include <limits>

QVector<ChannelParam> channelParams(const CanDeviceParam &param)
{
    ChannelParam common;
    common.device = param.device;
    common.listenOnly = param.operatingMode;
    common.Filter = param.filterMode;
    common.Timing0 = param.timing0;
    common.Timing1 = param.timing1;
    common.AccCode = param.accCode;
    common.AccMask = param.accMask;
    common.linChecksum = param.linChecksum;
    common.linBaudRate = param.linBaudRate;
    common.dataRateCANFD = param.dataRateCANFD;
    common.isCANFD = param.dataRateCANFD != 0;
    QVector<ChannelParam> channels;
    for (const quint8 channel : param.channels) {
        common.channel = channel;
        channels.append(common);
    }
    return channels;
}

quint16 linBaudRateFromText(const QString &text)
{
    const std::optional<quint32> rate = countFromText(text);
    return rate && *rate <= std::numeric_limits<quint16>::max() ? static_cast<quint16>(*rate) : LINBaudRateDefault;
}

QString acceptanceText(quint32 value)
{
    return QStringLiteral("0x") + hexNumber(value, 8);
}
