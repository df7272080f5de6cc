#include "lin/LINMonitorFilter.h"

bool isLINFrameMonitored(LINMonitorMode mode, const QVector<quint8> &chosen, quint8 id)
{
    return mode == LINMonitorMode::Bus || chosen.contains(id);
}
