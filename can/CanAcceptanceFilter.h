#pragma once

#include "device/FrameIdentifier.h"

#include <QVector>

/// The identifiers from first to last, both included, of one frame type (ISO 11898-1).
struct CanIdRange
{
    quint32 first = 0;
    quint32 last = 0;
    bool extended = false;

    bool operator==(const CanIdRange &other) const
    {
        return first == other.first && last == other.last && extended == other.extended;
    }
};

/// Acceptance code and mask of a CAN controller, applied as the SJA1000 does in its single filter mode (data sheet,
/// "Acceptance filter"). Both kinds of frames are compared with the same 32 bits:
///   standard frame: 31..21 identifier bits 10..0, 20 remote bit, 19..16 not used, 15..8 first and 7..0 second data
///   byte extended frame: 31..3 identifier bits 28..0, 2 remote bit, 1..0 not used
/// As it stands, it lets everything pass.
struct CanAcceptanceFilter
{
    quint32 code = 0;
    quint32 mask = 0xFFFFFFFF; ///< bit 1 = don't care
};

/// How many identifiers of each frame type.
struct CanIdCount
{
    quint64 standard = 0;
    quint64 extended = 0;
};

/// Which frames with an identifier a filter lets pass. A filter for extended identifiers compares the remote bit and
/// the first data bytes of standard frames, so that it lets some frames pass and others with the same identifier not.
enum class CanPassage { NoFrame, SomeFrames, EveryFrame };

/// The filter that lets every frame with a listed identifier pass, whatever its data and be it a remote frame or not,
/// and as few others as possible. A bit that means nothing to the frame types in the list is "don't care", as the
/// data sheet asks for unused bits. An empty list wants no filter: everything passes. The ranges must be in order
/// (first <= last <= frameIdMax()).
CanAcceptanceFilter narrowestFilter(const QVector<CanIdRange> &listed);

CanPassage passage(const CanAcceptanceFilter &filter, quint32 id, bool extended);

/// Identifiers that pass with every or with some of their frames.
CanIdCount passingIds(const CanAcceptanceFilter &filter);

/// Identifiers in the list; one that several ranges hold counts once.
CanIdCount listedIds(const QVector<CanIdRange> &listed);
