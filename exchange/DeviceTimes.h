#pragma once

#include "exchange/BusFrame.h"

#include <vector>

/// Gives frames the adapter's times where they have them: the program's own clock is read a few times a second only,
/// for all frames that wait then. The two clocks are set by each other at a channel's first frame, and again where they
/// are more than a minute apart, because the adapter has been started anew. Sent frames keep their times.
class DeviceTimes
{
public:
    void apply(BusFrame &frame);

private:
    struct Channel
    {
        bool isSet = false;
        qint64 offset = 0; ///< nanoseconds from the adapter's times to the capture's
    };

    std::vector<Channel> m_channels;
};
