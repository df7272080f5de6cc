#pragma once

#include "viewer/core/FilterNodes.h"

#include <algorithm>
#include <utility>

/// What the nodes of values and of tests have in common; for their sources only.
namespace FilterSteps {

/// Calls function(index in the batch, index in the block) for each frame.
template<typename Function>
void forEach(const FilterBatch &batch, Function function)
{
    for (int i = 0; i < batch.count; ++i) {
        function(static_cast<std::size_t>(i), static_cast<std::size_t>(batch.first) + static_cast<std::size_t>(i));
    }
}

/// The same, for what mask has.
template<typename Function>
void forEach(const FilterBatch &batch, const FilterBatch::Mask &mask, Function function)
{
    forEach(batch, [&mask, &function](std::size_t i, std::size_t at) {
        if (mask[i]) {
            function(i, at);
        }
    });
}

/// A few keys, looked up for each frame.
class KeySet
{
public:
    explicit KeySet(QVector<FrameKey> keys)
        : m_keys(std::move(keys))
    {
        std::sort(m_keys.begin(), m_keys.end());
    }
    bool contains(const BusFrameStore::Block &block, std::size_t at) const
    {
        return std::binary_search(m_keys.begin(), m_keys.end(), frameKey(block.identifier[at], block.flags[at]));
    }

private:
    QVector<FrameKey> m_keys;
};

} // namespace FilterSteps
