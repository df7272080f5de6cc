#pragma once

#include "exchange/FrameReader.h"

/// A capture that is open for reading: its reader and what that reads from. Belongs to one thread at a time.
class CaptureStream
{
public:
    CaptureStream() = default;
    virtual ~CaptureStream() = default;
    CaptureStream(const CaptureStream &) = delete;
    CaptureStream &operator=(const CaptureStream &) = delete;

    virtual FrameReader &reader() = 0;
    virtual qint64 position() const = 0; ///< bytes taken by the reader
    virtual qint64 size() const = 0;     ///< bytes that there are now; 0: not known
    /// While it is so, what is unfinished at the end is left for the next read.
    virtual void setGrowing(bool growing) = 0;
    /// Reading failed; the end that was met is not the capture's.
    virtual bool isBroken() const = 0;
    /// What is read still is what stands under its name: not deleted, moved away, replaced or emptied.
    virtual bool isInPlace() const { return true; }
};
