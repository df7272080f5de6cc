#include "adapter/virtual/LinProtocol.h"

namespace va {

std::uint8_t protectedId(std::uint8_t id)
{
    const auto bit = [id](unsigned index) {
        return (static_cast<unsigned>(id) >> index) & 1U;
    };
    const unsigned parity0 = bit(0) ^ bit(1) ^ bit(2) ^ bit(4);
    const unsigned parity1 = 1U ^ bit(1) ^ bit(3) ^ bit(4) ^ bit(5);
    return static_cast<std::uint8_t>((id & 0x3FU) | (parity0 << 6U) | (parity1 << 7U));
}

std::uint8_t linChecksum(std::uint8_t id, bool enhanced, const std::uint8_t *data, std::size_t size)
{
    unsigned sum = enhanced ? protectedId(id) : 0U;
    for (std::size_t i = 0; i < size; ++i) {
        sum += data[i];
        sum = (sum & 0xFFU) + (sum >> 8U);
    }
    return static_cast<std::uint8_t>(~sum);
}

} // namespace va
