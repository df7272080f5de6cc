#pragma once

#include "exchange/BusFrame.h"
#include "exchange/CaptureInfo.h"

#include <vector>

class Findings;

/// Looks at a capture's frames for what no sound capture has: times that jump, and frames that no bus can carry. What
/// is wrong with the file itself its reader reports.
class CaptureCheck
{
public:
    /// A time that goes on by more than this is reported; one that goes back always is.
    static constexpr qint64 LargestGap = qint64{3600} * 1000000000;

    explicit CaptureCheck(Findings &findings)
        : m_findings(findings)
    {
    }

    /// For each frame, in their order.
    void add(const BusFrame &frame);
    qint64 frames() const { return m_frame; }

private:
    struct Times
    {
        qint64 time = BusFrame::NoTime;
        qint64 deviceTime = BusFrame::NoTime;
    };

    void checkTimes(const BusFrame &frame);
    void checkFrame(const BusFrame &frame);

    Findings &m_findings;
    qint64 m_frame = 0;
    std::vector<Times> m_last; ///< by channel
};
