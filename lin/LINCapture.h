#pragma once

#include "lin/CTableViewLIN.h"

#include <QByteArray>
#include <QString>

#include <optional>

class LINFrameModel;

/// The table of LIN frames as a CSV file: a line of titles, then a line per row, cells joined by commas without
/// quoting; in the local 8-bit encoding, or UTF-8 where that one lacks the program's words. False when the file cannot
/// be written; a file that stood there is then kept.
bool saveLINCapture(const QString &path, const LINFrameModel &frames);

/// Reads what saveLINCapture() writes. Of each line but the first, field 3 (counted from 0) begins with one or two
/// hexadecimal digits, the identifier 0 to 3F; field 4 is the decimal length 0 to 8; of field 5 the first 2 x length
/// characters other than white space are the data, of which pairs that are not hexadecimal are dropped. Other fields
/// are not looked at. A file without a second line, or with an identifier or length that does not convert or is out of
/// range, is no capture; an empty line, for instance.
class LINCaptureParser
{
public:
    /// Longest part of a line that is looked at, in bytes; what is beyond is ignored.
    static constexpr int MaxLine = 4096;
    /// A file with more frames is no capture.
    static constexpr int MaxFrames = 5000000;

    /// The next bytes of the file, in pieces of any size.
    void feed(const char *bytes, int size);
    /// After the last piece: the frames, with ID and data set only; nothing when the file is no capture.
    std::optional<QVector<CTableViewLIN::DataObject>> finish();
    /// Nothing that may follow makes the file a capture.
    bool isFailed() const { return m_isFailed; }

private:
    void takePart(const char *bytes, int size);
    void endLine();
    void takeFrame();

    QVector<CTableViewLIN::DataObject> m_frames;
    QByteArray m_line; ///< the beginning of the line under way
    bool m_hasLine = false;
    bool m_isHeader = true;
    bool m_isFailed = false;
};
