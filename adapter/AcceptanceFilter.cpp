#include "adapter/AcceptanceFilter.h"

namespace va {

namespace {

constexpr std::uint32_t StandardIdentifierBits = 0xFFF00000U; // identifier and remote bit
constexpr std::uint32_t StandardFirstByteBits = 0x0000FF00U;
constexpr std::uint32_t StandardSecondByteBits = 0x000000FFU;
constexpr std::uint32_t ExtendedIdentifierBits = 0xFFFFFFFCU; // identifier and remote bit

struct Compared
{
    std::uint32_t value;    ///< the frame in the registers' layout
    std::uint32_t relevant; ///< bits that this frame has
};

Compared identifierOf(const CanFrame &frame)
{
    if (frame.extended) {
        return {(frame.id << 3U) | (frame.remote ? 1U << 2U : 0U), ExtendedIdentifierBits};
    }
    return {(frame.id << 21U) | (frame.remote ? 1U << 20U : 0U), StandardIdentifierBits};
}

Compared wholeFrame(const CanFrame &frame)
{
    Compared compared = identifierOf(frame);
    if (!frame.extended && frame.dataSize() >= 1) {
        compared.value |= static_cast<std::uint32_t>(frame.data[0]) << 8U;
        compared.relevant |= StandardFirstByteBits;
    }
    if (!frame.extended && frame.dataSize() >= 2) {
        compared.value |= frame.data[1];
        compared.relevant |= StandardSecondByteBits;
    }
    return compared;
}

} // namespace

bool AcceptanceFilter::accepts(const CanFrame &frame) const
{
    const Compared compared = wholeFrame(frame);
    return ((compared.value ^ code) & compared.relevant & ~mask) == 0;
}

bool AcceptanceFilter::acceptsIdentifier(const CanFrame &frame) const
{
    const Compared compared = identifierOf(frame);
    return ((compared.value ^ code) & compared.relevant & ~mask) == 0;
}

} // namespace va
