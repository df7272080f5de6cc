#pragma once

#include "adapter/AcceptanceFilter.h"

#include <linux/can.h>

#include <array>

namespace socketcan {

using KernelFilters = std::array<can_filter, 2>;

/// The part of an acceptance filter that looks at identifier and remote bit, for standard and for extended frames.
KernelFilters kernelFilters(const va::AcceptanceFilter &filter);

/// Whether the kernel's filters say all: false when data bytes are compared, too, which the library has to do then.
bool isExact(const va::AcceptanceFilter &filter);

} // namespace socketcan
