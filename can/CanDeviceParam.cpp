#include "can/CanDeviceParam.h"

#include "can/CanFrameInput.h"

#include <QRegularExpression>

#include <limits>

namespace {
constexpr int NumberCharactersMax = 16;
} // namespace

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

std::optional<quint32> numberFromHex(const QString &text)
{
    // The conversion alone would take signs and a second "0x".
    static const QRegularExpression pattern(QStringLiteral("\\A(?:0[xX])?([0-9A-Fa-f]+)\\z"));
    const QString typed = QString(text).remove(QLatin1Char(' ')).left(NumberCharactersMax);
    bool isNumber = false;
    const quint32 number = pattern.match(typed).captured(1).toUInt(&isNumber, 16);
    return isNumber ? std::optional<quint32>(number) : std::nullopt;
}

QString hexNumberPattern()
{
    return QStringLiteral("(0[xX])?[0-9A-Fa-f]{0,8}");
}

quint16 linBaudRateFromText(const QString &text)
{
    const std::optional<quint32> rate = countFromText(text);
    return rate && *rate <= std::numeric_limits<quint16>::max() ? static_cast<quint16>(*rate) : LINBaudRateDefault;
}

QString timingText(quint8 timing)
{
    return QStringLiteral("%1").arg(timing, 2, 16, QLatin1Char('0')).toUpper();
}

QString acceptanceText(quint32 value)
{
    return QStringLiteral("0x") + QStringLiteral("%1").arg(value, 8, 16, QLatin1Char('0')).toUpper();
}
