#pragma once

#include "capture/CaptureFormat.h"
#include "capture/CaptureFrames.h"

#include <atomic>
#include <optional>

class QIODevice;

/// What a capture file holds.
struct CaptureContent
{
    CaptureFrames frames;
    /// Lines of a text file that hold no frame; neither the lines every file begins with nor blank ones count.
    qint64 droppedLines = 0;
};

/// Reads the frames of a capture in the format given; docs/formats.md says what is taken for a frame. Memory: the
/// frames and a piece of the file, at most the file's own size. Nothing when a binary file has no header that is known,
/// when reading fails, or soon after another thread sets stop (null: cannot be stopped).
std::optional<CaptureContent> readCapture(QIODevice &in, const CaptureFormat &format,
                                          const std::atomic<bool> *stop = nullptr);

/// readCapture() of a file, in the format of the path's ending. Nothing also when the ending is unknown, when the path
/// is no regular file, when it cannot be opened, or when memory does not suffice.
std::optional<CaptureContent> readCapture(const QString &path, const std::atomic<bool> *stop = nullptr);

// The readers of the formats.
bool readText(CaptureInput &in, const CaptureFormat &format, CaptureContent &content);
bool readCan(CaptureInput &in, const CaptureFormat &format, CaptureContent &content);
bool readCanFd(CaptureInput &in, const CaptureFormat &format, CaptureContent &content);
