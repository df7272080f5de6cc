#pragma once

#include <QMetaType>
#include <QString>
#include <QVector>

/// A nominal bit rate of a CAN channel, or a data rate of a CAN FD channel, as it is offered to the user.
struct CANBaudrate
{
    QString name;       ///< in English, the key of its translation
    quint16 timing = 0; ///< bus timing registers of the SJA1000: low byte BTR0, high byte BTR1; 0 for a data rate

    quint8 timing0() const { return static_cast<quint8>(timing & 0xFFU); }
    quint8 timing1() const { return static_cast<quint8>(timing >> 8U); }
};

Q_DECLARE_METATYPE(CANBaudrate)

/// The nominal bit rates from 1000 to 5 kbit/s at the indices 1 to 10. Index 0, "Custom", stands for bus timing
/// registers that the user types.
const QVector<CANBaudrate> &canBaudrates();

/// The data rates; the index is that of ChannelParam::dataRateCANFD, 0 for classic CAN.
const QVector<CANBaudrate> &canFDDataRates();
