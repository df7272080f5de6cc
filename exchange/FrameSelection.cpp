#include "exchange/FrameSelection.h"

#include <algorithm>
#include <utility>

FrameSelector::FrameSelector(FrameSelection selection)
    : m_selection(std::move(selection))
{
}

bool FrameSelector::takes(const BusFrame &frame)
{
    if (!m_hasFirst && frame.time != BusFrame::NoTime) {
        m_hasFirst = true;
        const auto absolute = [&](qint64 &time) {
            const bool isSet = time != std::numeric_limits<qint64>::min() && time != std::numeric_limits<qint64>::max();
            time += isSet && m_selection.isSinceFirst ? frame.time : 0;
        };
        absolute(m_selection.from);
        absolute(m_selection.to);
    }
    if (isOver() || !isWanted(frame) || m_passed++ < m_selection.skip) {
        return false;
    }
    ++m_taken;
    return true;
}

bool FrameSelector::isWanted(const BusFrame &frame) const
{
    const auto &identifiers = m_selection.identifiers;
    const auto &channels = m_selection.channels;
    const bool isIdentifier =
        identifiers.empty() ||
        std::any_of(identifiers.begin(), identifiers.end(), [&frame](const FrameSelection::Range &range) {
            return frame.identifier >= range.first && frame.identifier <= range.last;
        });
    const bool isChannel =
        channels.empty() || std::find(channels.begin(), channels.end(), frame.channel) != channels.end();
    const bool isTime =
        frame.time == BusFrame::NoTime || (frame.time >= m_selection.from && frame.time < m_selection.to);
    return isIdentifier && isChannel && isTime;
}
