#pragma once

#include "capture/CaptureFrames.h"

#include <QObject>

/// A capture file to be played: its frames, and the one whose turn it is.
class CANFile : public QObject
{
    Q_OBJECT

public:
    /// In the order of the file type boxes.
    enum FileType { CAN, CANFD, CSV, Text };
    Q_ENUM(FileType)

    using Frame = CaptureFrame;

    using QObject::QObject;

    /// Reads a file in place of the frames held, in the format of the path's ending, and starts at its first frame.
    /// False when it cannot be read or holds no frame; then none are held. For a file that may be large, see
    /// readCapture() and setFrames().
    bool load(const QString &path);
    /// Takes frames that were read elsewhere and starts at the first one.
    void setFrames(CaptureFrames frames);

    /// The frame whose turn it is; after the last one the first follows. An empty frame when there is none.
    Frame next();
    const CaptureFrames &frames() const { return m_frames; }

private:
    CaptureFrames m_frames;
    qint64 m_cursor = 0;
};
