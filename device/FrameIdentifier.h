#pragma once

#include <QtGlobal>

/// The highest identifier of a CAN frame (ISO 11898-1): 11 bits, or 29 in the extended format.
constexpr quint32 MaxStandardFrameId = 0x7FF;
constexpr quint32 MaxExtendedFrameId = 0x1FFFFFFF;

constexpr quint32 frameIdMax(bool extended)
{
    return extended ? MaxExtendedFrameId : MaxStandardFrameId;
}

/// Hexadecimal digits of the highest one.
constexpr int frameIdDigits(bool extended)
{
    return extended ? 8 : 3;
}

/// The highest standard identifier in the gateway's list: the adapter takes 13 bits, more than the 11 that a frame has.
constexpr quint32 MaxGatewayStandardId = 0x1FFF;

/// What the file sender's identifier box, which takes no part in sending, goes up to: neither is a limit of frames.
constexpr int MaxSenderStandardId = 0x3FFF;
constexpr int MaxSenderExtendedId = 0x1FFFFFF;
