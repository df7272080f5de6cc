#pragma once

#include <cstddef>
#include <cstdint>

namespace va {

enum class PayloadKind {
    Counting, ///< bytes 0..7: the node's frame number, little-endian; byte i from 8 on: (frame number + i) mod 256
    Random,   ///< bytes computed from the seed and the frame number
    Constant, ///< the configured bytes
};

/// Writes the counting payload of frame number `index` into the first `length` bytes.
void fillCounting(std::uint8_t *data, std::size_t length, std::uint64_t index);

/// Writes the random payload: the same seed and frame number always give the same bytes.
void fillRandom(std::uint8_t *data, std::size_t length, std::uint32_t seed, std::uint64_t index);

} // namespace va
