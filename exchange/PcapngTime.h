#pragma once

#include <QtGlobal>

#include <limits>

/// How the packets of a pcapng interface tell the time.
struct PcapngTime
{
    quint8 resolution = 6; ///< if_tsresol: ticks of 10^-n seconds, with the highest bit 2^-n
    qint64 offset = 0;     ///< if_tsoffset: seconds to be added

    /// Nanoseconds from 1970-01-01 00:00 UTC of a packet's time; BusFrame::NoTime where that does not fit.
    qint64 nanoseconds(quint64 ticks) const
    {
        const bool isSame = resolution == 9 && offset == 0 && ticks <= quint64(std::numeric_limits<qint64>::max());
        return isSame ? static_cast<qint64>(ticks) : converted(ticks);
    }

private:
    qint64 converted(quint64 ticks) const;
};
