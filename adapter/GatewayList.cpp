#include "adapter/GatewayList.h"

#include "device/AdapterRecords.h"

#include <algorithm>

namespace va {

namespace {

std::uint32_t gatewayWord(const FrameHead &frame)
{
    return (frame.id << 3U) | (frame.extended ? 2U : 0U) | 1U;
}

} // namespace

bool GatewayList::set(const std::uint32_t *words, std::uint32_t count)
{
    if ((words == nullptr && count > 0) || count > AdapterGatewayMaxIds) {
        return false;
    }
    m_words = count == 0 ? std::vector<std::uint32_t>() : std::vector<std::uint32_t>(words, words + count);
    return true;
}

bool GatewayList::get(std::uint32_t *words, std::uint32_t *count) const
{
    if (words == nullptr || count == nullptr) {
        return false;
    }
    std::copy(m_words.begin(), m_words.end(), words);
    *count = static_cast<std::uint32_t>(m_words.size());
    return true;
}

bool GatewayList::passes(const FrameHead &frame) const
{
    return m_words.empty() || std::find(m_words.begin(), m_words.end(), gatewayWord(frame)) != m_words.end();
}

std::optional<GatewayOperation> gatewayOperation(std::uint8_t byte)
{
    switch (byte) {
    case AdapterGatewayOff:
        return GatewayOperation::Off;
    case AdapterGatewayOn:
        return GatewayOperation::On;
    case AdapterGatewayQuery:
        return GatewayOperation::Query;
    default: // whatever else a caller may hand in
        return std::nullopt;
    }
}

} // namespace va
