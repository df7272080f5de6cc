#pragma once

#include "device/ChannelParam.h"

#include <QString>
#include <QVector>

/// What the user chose in the parameters dialog: which channels of a device to open, and how.
struct CanDeviceParam
{
    quint8 operatingMode = 0; ///< 0 normal, 1 listen only
    quint8 filterMode = 0;    ///< handed to the adapter as it is
    quint8 timing0 = 0;       ///< bus timing register 0 (SJA1000)
    quint8 timing1 = 0;       ///< bus timing register 1 (SJA1000)
    quint32 accCode = 0;      ///< acceptance code
    quint32 accMask = 0;      ///< acceptance mask, bit 1 = don't care
    quint8 dataRateCANFD = 0; ///< CAN FD data-rate index, 0 for classic CAN
    quint8 linChecksum = 0;   ///< 0 standard (classic), 1 enhanced
    quint16 linBaudRate = 0;  ///< bits per second
    quint8 device = 0;        ///< device index 0..7
    qint32 isLIN = 0;         ///< 0: CAN channels, 1: LIN channels
    QVector<quint8> channels; ///< channel indices on the device, in the order they are offered
};

/// What a LIN baud rate that cannot be read becomes, in bits per second.
constexpr quint16 LINBaudRateDefault = 4800;

/// One record for each channel of the list, in its order. CAN FD is asked for exactly when a data rate is chosen.
QVector<ChannelParam> channelParams(const CanDeviceParam &param);

/// The LIN baud rate in a text of decimal digits, in bits per second; LINBaudRateDefault when the text is no number or
/// one above 65535, which the adapter cannot take.
quint16 linBaudRateFromText(const QString &text);

/// An acceptance code or mask as "0x" and eight upper-case hexadecimal digits.
QString acceptanceText(quint32 value);
