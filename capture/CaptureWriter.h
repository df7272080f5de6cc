#pragma once

#include "capture/CaptureFormat.h"
#include "capture/FrameCells.h"
#include "capture/FrameStore.h"
#include "capture/PlatformFile.h"

#include <QByteArray>
#include <QString>

#include <array>

class QIODevice;
class QTextCodec;

/// The encoding of text files: local (by default the system's) when it can write Chinese and leaves ASCII as it is,
/// otherwise UTF-8.
QTextCodec *captureCodec();
QTextCodec *captureCodec(QTextCodec *local);

/// How text is turned into bytes. codec: never null, a superset of ASCII.
struct CaptureTextStyle
{
    QTextCodec *codec = captureCodec();
    QByteArray lineEnd = platformLineEnd();

    QByteArray encoded(const QString &text) const;
};

/// Writes frames as lines of a text file.
class CaptureLines
{
public:
    /// isLastSeparated: a separator stands behind the last cell, too.
    CaptureLines(const FrameLabels &labels, const QByteArray &separator, bool isLastSeparated,
                 const CaptureTextStyle &style);

    /// Most bytes that put() needs for this frame.
    std::size_t maxSize(const FrameView &frame);
    /// Writes one line to `to` and returns the place behind. Call maxSize() for the same frame first.
    char *put(char *to, quint64 number, const FrameView &frame) const;

    /// The same for a time of day that is not the frame's but already bytes. hasStamp: whatever the frame's direction.
    std::size_t maxSize(const FrameView &frame, std::string_view time) const;
    char *put(char *to, quint64 number, const FrameView &frame, std::string_view time, bool hasStamp) const;

private:
    char *putBehindTime(char *to, const FrameView &frame, bool hasStamp) const;

    CaptureTextStyle m_style;
    QByteArray m_separator;
    QByteArray m_noTime;
    std::array<QByteArray, 3> m_directions; ///< with a separator on both sides
    std::array<QByteArray, 12> m_kinds;     ///< protocol, format and type with separators around and between
    QByteArray m_end;                       ///< what follows the payload
    QString m_timeText;                     ///< the last time text seen...
    QByteArray m_time;                      ///< ...and its bytes with a separator on both sides
    std::size_t m_fixedSize = 0;
};

/// The lines before the first frame of a text file: the header and the titles.
QByteArray captureTextHead(const CaptureFormat &format, const FrameLabels &labels, const CaptureTextStyle &style);

/// The count rows of a store from the 0-based row first on, which must lie in it; numbered by their place in the store.
struct CaptureRows
{
    const FrameStore &store;
    int first;
    int count;
    const FrameLabels &labels;
    const CaptureTextStyle &style;
};

/// Writes the rows with the header the format asks for. False when out does not take all of it.
bool writeCapture(QIODevice &out, const CaptureFormat &format, const CaptureRows &rows);

/// writeCapture() to a file, in the format of the path's ending. The file is written beside and then renamed: on false
/// (unknown ending, the folder is gone, the disk is full) whatever stood under path is as it was.
bool saveCapture(const QString &path, const FrameStore &store, int first, int count, const FrameLabels &labels,
                 const CaptureTextStyle &style = {});

// The writers of the formats.
void writeText(CapturePieces &out, const CaptureFormat &format, const CaptureRows &rows);
void writeCan(CapturePieces &out, const CaptureFormat &format, const CaptureRows &rows);
void writeCanFd(CapturePieces &out, const CaptureFormat &format, const CaptureRows &rows);
