#include "adapter/virtual/Payload.h"

#include <algorithm>

namespace va {

namespace {

/// The output function of SplitMix64: a bijection that scatters neighbouring inputs.
std::uint64_t scatter(std::uint64_t value)
{
    value += 0x9E3779B97F4A7C15U;
    value = (value ^ (value >> 30U)) * 0xBF58476D1CE4E5B9U;
    value = (value ^ (value >> 27U)) * 0x94D049BB133111EBU;
    return value ^ (value >> 31U);
}

void writeLittleEndian(std::uint8_t *data, std::size_t length, std::uint64_t value)
{
    for (std::size_t i = 0; i < length; ++i) {
        data[i] = static_cast<std::uint8_t>(value >> (8U * i));
    }
}

} // namespace

void fillCounting(std::uint8_t *data, std::size_t length, std::uint64_t index)
{
    writeLittleEndian(data, std::min<std::size_t>(length, 8), index);
    for (std::size_t i = 8; i < length; ++i) {
        data[i] = static_cast<std::uint8_t>(index + i);
    }
}

void fillRandom(std::uint8_t *data, std::size_t length, std::uint32_t seed, std::uint64_t index)
{
    const std::uint64_t frame = scatter(scatter(seed) ^ index);
    for (std::size_t done = 0; done < length; done += 8) {
        writeLittleEndian(data + done, std::min<std::size_t>(length - done, 8), scatter(frame + done));
    }
}

} // namespace va
