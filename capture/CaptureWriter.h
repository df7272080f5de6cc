#pragma once

#include "capture/CaptureFormat.h"
#include "capture/FrameCells.h"
#include "capture/FrameStore.h"
#include "capture/PlatformFile.h"

#include <QByteArray>
#include <QString>

#include <array>
#include <cstring>
#include <vector>

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

    // The same in parts, for a time of day that is not the frame's and that the caller puts between them.
    /// Most bytes of both parts.
    std::size_t maxSizeWithoutTime(const FrameView &frame) const
    {
        return m_fixedSize + 3 * static_cast<std::size_t>(frame.size);
    }
    /// What follows the number.
    char *putSeparator(char *to) const { return m_separator.put(to); }
    /// What follows the time. hasStamp: whatever the frame's direction.
    char *putBehindTime(char *to, const FrameView &frame, bool hasStamp) const
    {
        const Direction &direction = m_directions[directionIndex(frame)];
        if (hasStamp) {
            to = FrameBytes::putTimeStamp(m_separator.put(to), frame.timeStamp);
            to = direction.behindStamp.put(to);
        } else {
            to = direction.withoutStamp.put(to);
        }
        to = FrameBytes::putHexNumber(to, frame.id);
        to = m_kinds[kindIndex(frame)].put(to);
        to = putLength(to, static_cast<std::size_t>(frame.size));
        to = FrameBytes::putPayload(to, frame.data, frame.size);
        return m_end.put(to);
    }

private:
    /// Bytes that are copied in steps of a fixed size, which is faster than exactly; put() takes up to Step bytes more.
    class Piece
    {
    public:
        static constexpr std::size_t Step = 16;

        Piece() = default;
        explicit Piece(const QByteArray &bytes);
        std::size_t size() const { return m_size; }
        char *put(char *to) const
        {
            for (std::size_t at = 0; at < m_size; at += Step) {
                std::memcpy(to + at, m_bytes.data() + at, Step);
            }
            return to + m_size;
        }

    private:
        std::vector<char> m_bytes; ///< a multiple of Step
        std::size_t m_size = 0;
    };

    struct Direction
    {
        Piece behindStamp;  ///< with a separator on both sides
        Piece withoutStamp; ///< the same behind the word that stands for no stamp, and a separator before that
    };

    char *putLength(char *to, std::size_t size) const
    {
        return size < m_lengths.size() ? m_lengths[size].put(to)
                                       : m_separator.put(FrameBytes::putHexNumber(to, static_cast<quint32>(size)));
    }
    static std::size_t directionIndex(const FrameHead &frame)
    {
        return frame.direction <= FrameHead::Received ? frame.direction : quint8{FrameHead::SendSuccess};
    }
    static std::size_t kindIndex(const FrameHead &frame)
    {
        return std::size_t{frame.protocol} * 4 + (frame.remote != 0 ? 2 : 0) + (frame.extended != 0 ? 1 : 0);
    }

    CaptureTextStyle m_style;
    QByteArray m_separatorText;
    Piece m_separator;
    std::array<Direction, 3> m_directions;
    std::array<Piece, 12> m_kinds; ///< protocol, format and type with separators around and between
    std::array<Piece, CaptureFrame::MaxLength + 1> m_lengths; ///< each with a separator behind
    Piece m_end;                                              ///< what follows the payload
    QString m_timeText;                                       ///< the last time text seen...
    Piece m_time;                                             ///< ...and its bytes with a separator before them
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
