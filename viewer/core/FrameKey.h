#pragma once

#include "exchange/BusFrame.h"

/// What the frames of one identifier have in common: the identifier, and whether it is one of 11 or 29 bits, of LIN, or
/// the error class bits of an error frame. Remote frames have the key of their data frames.
using FrameKey = quint32;

constexpr FrameKey ExtendedKey = 1U << 31U;
constexpr FrameKey LinKey = 1U << 30U;
constexpr FrameKey ErrorKey = 1U << 29U;
constexpr FrameKey KeyIdentifier = ErrorKey - 1;

/// flags: BusFrame::Flag.
constexpr FrameKey frameKey(quint32 identifier, quint16 flags)
{
    FrameKey key = identifier & KeyIdentifier;
    key |= (flags & BusFrame::Extended) != 0 ? ExtendedKey : 0;
    key |= (flags & BusFrame::Lin) != 0 ? LinKey : 0;
    key |= (flags & BusFrame::Error) != 0 ? ErrorKey : 0;
    return key;
}
