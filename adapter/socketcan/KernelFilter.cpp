#include "adapter/socketcan/KernelFilter.h"

namespace socketcan {

namespace {

constexpr std::uint32_t DataBits = 0x0000FFFFU; ///< of a standard frame

/// idShift and remoteBit as in AcceptanceFilter.
can_filter filterOf(const va::AcceptanceFilter &filter, unsigned idShift, unsigned remoteBit, canid_t idMask)
{
    const std::uint32_t compared = ~filter.mask;
    const auto take = [=](std::uint32_t word) {
        return ((word >> idShift) & idMask) | (((word >> remoteBit) & 1U) != 0 ? CAN_RTR_FLAG : 0U);
    };
    can_filter result{};
    result.can_id = take(filter.code & compared);
    result.can_mask = take(compared) | CAN_EFF_FLAG;
    return result;
}

} // namespace

KernelFilters kernelFilters(const va::AcceptanceFilter &filter)
{
    KernelFilters filters = {filterOf(filter, 21, 20, CAN_SFF_MASK), filterOf(filter, 3, 2, CAN_EFF_MASK)};
    filters[1].can_id |= CAN_EFF_FLAG;
    return filters;
}

bool isExact(const va::AcceptanceFilter &filter)
{
    return (filter.mask & DataBits) == DataBits;
}

} // namespace socketcan
