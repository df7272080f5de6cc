#pragma once

#include "exchange/BusFrame.h"

/// Writes frames as a capture of one kind, in constant memory. What the kind cannot hold it reports to the Findings it
/// was made with, each sort of loss once with its count (FrameLosses).
class FrameWriter
{
public:
    FrameWriter() = default;
    virtual ~FrameWriter() = default;
    FrameWriter(const FrameWriter &) = delete;
    FrameWriter &operator=(const FrameWriter &) = delete;

    virtual void write(const BusFrame *frames, int count) = 0;
    /// Writes what stands at a capture's end; nothing may be written behind it. The output is not flushed.
    virtual void finish() = 0;
};
