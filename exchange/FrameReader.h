#pragma once

#include "exchange/BusFrame.h"
#include "exchange/CaptureInfo.h"

/// Gives the frames of a capture in their order, as many at a time as one asks for, in constant memory. What it leaves
/// out or finds wrong it reports to the Findings it was made with, each with its place.
class FrameReader
{
public:
    FrameReader() = default;
    virtual ~FrameReader() = default;
    FrameReader(const FrameReader &) = delete;
    FrameReader &operator=(const FrameReader &) = delete;

    /// Fills at most room frames (more than 0) and returns how many; 0 when no more are there. While the input is
    /// growing it may be called again then.
    virtual int read(BusFrame *frames, int room) = 0;
    /// Complete when the first frames have been read.
    const CaptureInfo &info() const { return m_info; }

protected:
    CaptureInfo m_info;
};
