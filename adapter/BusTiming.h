#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace va {

/// A nominal bit rate with its pair of bus timing registers (SJA1000 at 16 MHz).
struct BusTiming
{
    std::string_view name;
    std::uint8_t timing0;
    std::uint8_t timing1;
    std::uint32_t bitrate; ///< bit/s
};

constexpr std::array<BusTiming, 10> BusTimings = {{
    {"1000k", 0x00, 0x14, 1000000},
    {"800k", 0x00, 0x16, 800000},
    {"500k", 0x00, 0x1C, 500000},
    {"250k", 0x01, 0x1C, 250000},
    {"125k", 0x03, 0x1C, 125000},
    {"100k", 0x04, 0x1C, 100000},
    {"50k", 0x09, 0x1C, 50000},
    {"25k", 0x18, 0x1C, 25000}, // the registers alone would give 20,000: what the user reads counts
    {"10k", 0x31, 0x1C, 10000},
    {"5k", 0xBF, 0xFF, 5000},
}};

/// What a pair of registers says.
struct NominalTiming
{
    std::uint32_t bitrate;     ///< bit/s, up to 1,000,000
    std::uint32_t samplePoint; ///< tenths of a percent of the bit
};

/// The rate of BusTimings for a pair that stands there. For any other pair 8 MHz are divided by the prescaler and by
/// the quanta of the bit; nothing when that gives no whole number of bit/s, or more than ISO 11898-1 allows.
std::optional<NominalTiming> nominalTiming(std::uint8_t timing0, std::uint8_t timing1);

/// Bit/s of a data-rate index; nothing for 0 (classic CAN) and for indices that have no rate.
std::optional<std::uint32_t> dataBitrate(std::uint8_t dataRateIndex);

} // namespace va
