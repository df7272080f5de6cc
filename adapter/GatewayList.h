#pragma once

#include "adapter/CanFrame.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace va {

/// The words of a gateway's list: identifier x 8 + type x 2 + 1, type 1 for extended. Any word can be held and is read
/// back; words of another form match nothing.
class GatewayList
{
public:
    /// False, and the list stays, for a null pointer or more than AdapterGatewayMaxIds words.
    bool set(const std::uint32_t *words, std::uint32_t count);
    /// Room for AdapterGatewayMaxIds words; false for null pointers.
    bool get(std::uint32_t *words, std::uint32_t *count) const;
    void clear() { m_words.clear(); }
    /// Whether a received frame is forwarded: an empty list lets everything through.
    bool passes(const FrameHead &frame) const;

private:
    std::vector<std::uint32_t> m_words;
};

/// What an operation byte of KQ_OpenCANGateWay asks for.
enum class GatewayOperation { Off, On, Query };
/// Nothing for a byte that means none.
std::optional<GatewayOperation> gatewayOperation(std::uint8_t byte);

} // namespace va
