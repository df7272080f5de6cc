#pragma once

#include "capture/FrameCells.h"
#include "capture/FrameStore.h"
#include "capture/PlatformFile.h"

#include <QByteArray>
#include <QString>

#include <array>
#include <optional>

class QIODevice;
class QTextCodec;

/// The file types a capture is saved in; docs/formats.md gives them byte by byte.
enum class CaptureFormat : quint8 { Csv, Text, Can, CanFd };

/// The format of a path by its ending, upper or lower case: .csv, .txt, .can, .canfd. Nothing for any other.
std::optional<CaptureFormat> captureFormat(const QString &path);

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
    enum class LastCell : quint8 {
        Bare,      ///< separators stand between the cells only
        Separated, ///< a separator stands behind the last cell, too
    };

    static QByteArray separator(CaptureFormat format);

    CaptureLines(const FrameLabels &labels, const QByteArray &separator, LastCell lastCell,
                 const CaptureTextStyle &style);

    /// Most bytes that put() needs for this frame.
    std::size_t maxSize(const FrameView &frame);
    /// Writes one line to `to` and returns the place behind. Call maxSize() for the same frame first.
    char *put(char *to, quint64 number, const FrameView &frame) const;

private:
    static constexpr std::size_t Directions = 3;
    static constexpr std::size_t Kinds = 12;

    CaptureTextStyle m_style;
    QByteArray m_separator;
    QByteArray m_noTime;
    std::array<QByteArray, Directions> m_directions; ///< with a separator on both sides
    std::array<QByteArray, Kinds> m_kinds;           ///< protocol, format and type with separators around and between
    QByteArray m_end;                                ///< what follows the payload
    QString m_timeText;                              ///< the last time text seen...
    QByteArray m_time;                               ///< ...and its bytes with a separator on both sides
    std::size_t m_fixedSize = 0;
};

/// Writes count rows of the store from the 0-based row first on, numbered by their place in the store, with the header
/// the format asks for. The range must lie in the store. False when out does not take all of it.
bool writeCapture(QIODevice &out, CaptureFormat format, const FrameStore &store, int first, int count,
                  const FrameLabels &labels, const CaptureTextStyle &style = {});

/// writeCapture() to a file, in the format of the path's ending. The file is written beside and then renamed: on false
/// (unknown ending, the folder is gone, the disk is full) whatever stood under path is as it was.
bool saveCapture(const QString &path, const FrameStore &store, int first, int count, const FrameLabels &labels,
                 const CaptureTextStyle &style = {});
