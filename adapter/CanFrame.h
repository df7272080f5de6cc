#pragma once

#include <array>
#include <cstdint>

namespace va {

/// How a frame travels; the numbers are those of VCI_CANFD_OBJ::FDFlag.
enum class FrameFormat : std::uint8_t {
    Classic = 0,
    Fd = 1,
    FdBitRateSwitch = 2,
};

constexpr std::uint32_t MaxStandardId = 0x7FF;
constexpr std::uint32_t MaxExtendedId = 0x1FFFFFFF;
constexpr std::uint8_t MaxClassicLength = 8;
constexpr std::uint8_t MaxFdLength = 64;

/// What a frame is without its data bytes.
struct FrameHead
{
    std::uint32_t id = 0; ///< 11 or 29 bits, right-aligned
    bool extended = false;
    bool remote = false;
    FrameFormat format = FrameFormat::Classic;
    std::uint8_t length = 0; ///< 0..8 classic, 0..64 FD; a remote frame carries the length and no data

    bool isFd() const { return format != FrameFormat::Classic; }
    std::uint8_t maxLength() const { return isFd() ? MaxFdLength : MaxClassicLength; }
    /// Data bytes that the frame carries.
    std::uint8_t dataSize() const { return remote ? std::uint8_t{0} : length; }
};

/// One frame on a bus.
struct CanFrame : FrameHead
{
    std::array<std::uint8_t, MaxFdLength> data{};
};

} // namespace va
