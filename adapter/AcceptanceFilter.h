#pragma once

#include "adapter/CanFrame.h"

#include <cstdint>

namespace va {

/// Acceptance code and mask as the SJA1000 applies them in single filter mode; a mask bit of 1 is "don't care".
/// Bit positions in the two 32-bit words:
///   standard frame: 31..21 identifier bits 10..0, 20 remote bit, 19..16 unused, 15..8 first data byte, 7..0 second
///   data byte; a data byte that the frame does not carry is not compared
///   extended frame: 31..3 identifier bits 28..0, 2 remote bit, 1..0 unused
/// FD frames follow the same layout with the remote bit 0.
struct AcceptanceFilter
{
    std::uint32_t code = 0;
    std::uint32_t mask = 0xFFFFFFFFU;

    bool acceptsEverything() const { return mask == 0xFFFFFFFFU; }
    bool accepts(const CanFrame &frame) const;
    /// The same without looking at the data bytes: false means that no payload could make the frame pass.
    bool acceptsIdentifier(const CanFrame &frame) const;
};

} // namespace va
