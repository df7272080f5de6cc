#pragma once

#include <cstddef>
#include <cstdint>

namespace va {

/// The identifier's six bits with the two parity bits of LIN 2.x.
std::uint8_t protectedId(std::uint8_t id);

/// The checksum byte of LIN 2.x: the inverted sum with every carry added back in. Enhanced includes the protected
/// identifier.
std::uint8_t linChecksum(std::uint8_t id, bool enhanced, const std::uint8_t *data, std::size_t size);

} // namespace va
