#include "device/CANBaudrate.h"

const QVector<CANBaudrate> &canBaudrates()
{
    static const QVector<CANBaudrate> rates{
        {QStringLiteral("Custom"), 0x0000},   {QStringLiteral("1000k bps"), 0x1400},
        {QStringLiteral("800k bps"), 0x1600}, {QStringLiteral("500k bps"), 0x1C00},
        {QStringLiteral("250k bps"), 0x1C01}, {QStringLiteral("125k bps"), 0x1C03},
        {QStringLiteral("100k bps"), 0x1C04}, {QStringLiteral("50k bps"), 0x1C09},
        {QStringLiteral("25k bps"), 0x1C18},  {QStringLiteral("10k bps"), 0x1C31},
        {QStringLiteral("5k bps"), 0xFFBF},
    };
    return rates;
}

const QVector<CANBaudrate> &canFDDataRates()
{
    static const QVector<CANBaudrate> rates{
        {QStringLiteral("None"), 0},   {QStringLiteral("1M bps"), 0}, {QStringLiteral("2M bps"), 0},
        {QStringLiteral("4M bps"), 0}, {QStringLiteral("5M bps"), 0},
    };
    return rates;
}
