#include "adapter/BusTiming.h"

#include <algorithm>

namespace va {

namespace {

constexpr std::uint32_t QuantaHz = 8000000; ///< of a prescaler of 1
constexpr std::uint32_t MaxNominalBitrate = 1000000;

} // namespace

std::optional<NominalTiming> nominalTiming(std::uint8_t timing0, std::uint8_t timing1)
{
    const std::uint32_t prescaler = (timing0 & 0x3FU) + 1;
    const std::uint32_t beforeSample = 1 + (timing1 & 0x0FU) + 1;
    const std::uint32_t afterSample = ((timing1 >> 4U) & 0x07U) + 1;
    const std::uint32_t quanta = beforeSample + afterSample;
    const std::uint32_t samplePoint = 1000 * beforeSample / quanta;
    const auto *const known = std::find_if(BusTimings.begin(), BusTimings.end(), [=](const BusTiming &timing) {
        return timing.timing0 == timing0 && timing.timing1 == timing1;
    });
    if (known != BusTimings.end()) {
        return NominalTiming{known->bitrate, samplePoint};
    }
    const std::uint32_t divisor = prescaler * quanta;
    if (QuantaHz % divisor != 0 || QuantaHz / divisor > MaxNominalBitrate) {
        return std::nullopt;
    }
    return NominalTiming{QuantaHz / divisor, samplePoint};
}

std::optional<std::uint32_t> dataBitrate(std::uint8_t dataRateIndex)
{
    constexpr std::array<std::uint32_t, 4> rates = {1000000, 2000000, 4000000, 5000000};
    if (dataRateIndex == 0 || dataRateIndex > rates.size()) {
        return std::nullopt;
    }
    return rates[dataRateIndex - 1U];
}

} // namespace va
