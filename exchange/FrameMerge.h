#pragma once

#include "exchange/FrameReader.h"

#include <functional>
#include <vector>

/// Several captures as one, by the times of their frames. Frames of one capture stay in their order, also where their
/// times jump back; of frames at the same time those of the earlier source come first.
class FrameMerge
{
public:
    struct Source
    {
        std::function<int(BusFrame *frames, int room)> read; ///< as FrameReader::read
        qint64 timeOffset = 0;                               ///< nanoseconds that are added to its times
        int channelOffset = 0;                               ///< added to its channels
    };

    explicit FrameMerge(std::vector<Source> sources);

    /// As FrameReader::read.
    int read(BusFrame *frames, int room);

private:
    static constexpr int BatchSize = 256;

    struct Input
    {
        Source source;
        std::vector<BusFrame> batch;
        std::size_t next = 0;
        std::size_t size = 0;
        qint64 time = std::numeric_limits<qint64>::min(); ///< of the next frame, or the latest before it
    };

    static bool fill(Input &input);

    std::vector<Input> m_inputs; ///< that have a frame
};
