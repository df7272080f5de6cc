#pragma once

#include "exchange/BusFrame.h"

#include <algorithm>
#include <array>

/// What each byte of an identifier's data was, over many frames.
struct ByteValues
{
    using Bytes = std::array<uchar, BusFrame::MaxLength>;

    ByteValues()
    {
        least.fill(0xFF);
        greatest.fill(0);
        everSet.fill(0);
        alwaysSet.fill(0xFF);
    }
    /// Takes count bytes, the first of which is byte number first.
    void add(const uchar *data, int first, int count)
    {
        const std::size_t end = index(first) + index(count);
        for (std::size_t i = index(first); i < end; ++i, ++data) {
            least[i] = std::min(least[i], *data);
            greatest[i] = std::max(greatest[i], *data);
            everSet[i] = static_cast<uchar>(everSet[i] | *data);
            alwaysSet[i] = static_cast<uchar>(alwaysSet[i] & *data);
        }
    }
    bool has(int byte) const { return least[index(byte)] <= greatest[index(byte)]; }
    bool isConstant(int byte) const { return least[index(byte)] == greatest[index(byte)]; }
    /// The bits that were not always the same.
    unsigned changedBits(int byte) const
    {
        return has(byte) ? static_cast<unsigned>(everSet[index(byte)] & ~alwaysSet[index(byte)]) : 0U;
    }

    Bytes least; ///< above greatest where a byte was never there
    Bytes greatest;
    Bytes everSet;   ///< bits that were 1 in some frame
    Bytes alwaysSet; ///< bits that were 1 in all frames

private:
    static std::size_t index(int byte) { return static_cast<std::size_t>(byte); }
};
