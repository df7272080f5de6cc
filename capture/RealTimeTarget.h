#pragma once

#include "capture/FrameRecord.h"

#include <vector>

/// What takes the rows that real-time saving writes. Used by one thread at a time, which may be kept waiting.
class RealTimeTarget
{
public:
    RealTimeTarget() = default;
    virtual ~RealTimeTarget() = default;
    RealTimeTarget(const RealTimeTarget &) = delete;
    RealTimeTarget &operator=(const RealTimeTarget &) = delete;

    /// Writes the rows, numbered from firstNumber on. After false nothing more is written.
    virtual bool append(const std::vector<FrameRecord> &rows, quint64 firstNumber) = 0;
    /// Returns when everything appended is safe from a power cut; false when it is lost.
    virtual bool sync() = 0;
};
