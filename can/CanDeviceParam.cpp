#include "can/CanDeviceParam.h"

#include <algorithm>

namespace {
constexpr int NumberCharactersMax = 16;

bool isHexDigit(QChar character)
{
    const char latin = character.toLatin1();
    return (latin >= '0' && latin <= '9') || (latin >= 'a' && latin <= 'f') || (latin >= 'A' && latin <= 'F');
}

bool isDecimalDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}
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
    QString digits = text;
    digits = digits.remove(QLatin1Char(' ')).left(NumberCharactersMax);
    if (digits.startsWith(QLatin1String("0x"), Qt::CaseInsensitive)) {
        digits.remove(0, 2);
    }
    // The conversion alone would take signs and a second "0x".
    if (!std::all_of(digits.cbegin(), digits.cend(), isHexDigit)) {
        return std::nullopt;
    }
    bool isNumber = false;
    const quint32 number = digits.toUInt(&isNumber, 16);
    return isNumber ? std::optional<quint32>(number) : std::nullopt;
}

QString hexNumberPattern()
{
    return QStringLiteral("(0[xX])?[0-9A-Fa-f]{0,8}");
}

quint16 linBaudRateFromText(const QString &text)
{
    bool isNumber = std::all_of(text.cbegin(), text.cend(), isDecimalDigit);
    const quint16 rate = isNumber ? text.toUShort(&isNumber) : LINBaudRateDefault;
    return isNumber ? rate : LINBaudRateDefault;
}

QString timingText(quint8 timing)
{
    return QStringLiteral("%1").arg(timing, 2, 16, QLatin1Char('0')).toUpper();
}

QString acceptanceText(quint32 value)
{
    return QStringLiteral("0x") + QStringLiteral("%1").arg(value, 8, 16, QLatin1Char('0')).toUpper();
}
