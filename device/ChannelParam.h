#pragma once

#include <QtGlobal>

/// How to open one CAN or LIN channel; filled by the parameters dialog and the LIN tab.
struct ChannelParam
{
    quint8 device = 0;        ///< device index 0..7
    quint8 channel = 0;       ///< channel index on the device
    quint8 listenOnly = 0;    ///< bit 0: listen only
    quint8 Filter = 0;        ///< filter mode handed to the adapter
    quint8 Timing0 = 0;       ///< bus timing register 0 (SJA1000)
    quint8 Timing1 = 0;       ///< bus timing register 1 (SJA1000)
    quint32 AccCode = 0;      ///< acceptance code
    quint32 AccMask = 0;      ///< acceptance mask, bit 1 = don't care
    quint8 linChecksum = 0;   ///< 0 standard (classic), 1 enhanced
    quint16 linBaudRate = 0;  ///< bits per second
    quint8 dataRateCANFD = 0; ///< CAN FD data-rate index 0..15
    bool isCANFD = false;     ///< open as CAN FD
};
