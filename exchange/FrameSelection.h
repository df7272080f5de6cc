#pragma once

#include "exchange/BusFrame.h"

#include <limits>
#include <vector>

/// Which frames of a capture are wanted. A part that is not set lets all pass.
struct FrameSelection
{
    struct Range
    {
        quint32 first;
        quint32 last;
    };

    qint64 from = std::numeric_limits<qint64>::min(); ///< nanoseconds, as BusFrame::time; this time is the first wanted
    qint64 to = std::numeric_limits<qint64>::max();   ///< the first that is not wanted
    bool isSinceFirst = true;                         ///< both count from the capture's first frame
    qint64 skip = 0;                                  ///< of those that would pass
    qint64 count = std::numeric_limits<qint64>::max();
    std::vector<Range> identifiers;
    std::vector<quint16> channels;
};

/// Goes through a capture's frames with a selection.
class FrameSelector
{
public:
    explicit FrameSelector(FrameSelection selection);

    /// For each frame, in their order.
    bool takes(const BusFrame &frame);
    /// No later frame can be taken: there are enough. Times may jump, so that none of them ends a capture.
    bool isOver() const { return m_taken >= m_selection.count; }

private:
    bool isWanted(const BusFrame &frame) const;

    FrameSelection m_selection;
    bool m_hasFirst = false;
    qint64 m_passed = 0;
    qint64 m_taken = 0;
};
