#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace va {

/// A nominal bit rate with its pair of bus timing registers (SJA1000 at 16 MHz).
struct BusTiming
{
    std::string_view name;
    std::uint8_t timing0;
    std::uint8_t timing1;
};

constexpr std::array<BusTiming, 10> BusTimings = {{
    {"1000k", 0x00, 0x14},
    {"800k", 0x00, 0x16},
    {"500k", 0x00, 0x1C},
    {"250k", 0x01, 0x1C},
    {"125k", 0x03, 0x1C},
    {"100k", 0x04, 0x1C},
    {"50k", 0x09, 0x1C},
    {"25k", 0x18, 0x1C},
    {"10k", 0x31, 0x1C},
    {"5k", 0xBF, 0xFF},
}};

} // namespace va
