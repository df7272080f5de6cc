#pragma once

#include <QVector>

/// Which frames monitor mode lists; the values are the item data of its choice.
enum class LINMonitorMode : quint8 {
    FixedId = 0, ///< those of chosen identifiers
    Bus = 1,     ///< all
};

/// Whether a frame is listed. id and chosen are 0 to 0x3F; chosen is not looked at in mode Bus.
bool isLINFrameMonitored(LINMonitorMode mode, const QVector<quint8> &chosen, quint8 id);
