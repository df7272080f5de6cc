#include "exchange/CanLength.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::array<int, 16> Lengths = {0, 1, 2, 3, 4, 5, 6, 7, 8, 12, 16, 20, 24, 32, 48, 64};

} // namespace

int canLengthCode(int length)
{
    const auto *const found = std::lower_bound(Lengths.begin(), Lengths.end() - 1, length);
    return static_cast<int>(found - Lengths.begin());
}

int canLengthOfCode(int code)
{
    return code >= 0 && code < static_cast<int>(Lengths.size()) ? Lengths[static_cast<std::size_t>(code)] : 0;
}
