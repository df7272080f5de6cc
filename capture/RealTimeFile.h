#pragma once

#include "capture/CaptureWriter.h"

#include <QFile>
#include <QString>

#include <optional>

/// A text file that grows by the new rows of a table while they arrive.
class RealTimeFile
{
public:
    /// Opens path to append to it. The separator is five blanks when the path ends with ".txt" in lower case, otherwise
    /// a comma; unlike in saved files it stands behind the last cell in both cases.
    bool open(const QString &path, const FrameLabels &labels, const CaptureTextStyle &style = {});
    void close();
    bool isOpen() const { return m_file.isOpen(); }
    QString path() const { return m_file.fileName(); }

    /// Appends the rows of the store from the 0-based row first on, in one write. False when that failed or the file no
    /// longer stands under its path; it is closed then, and ends with the last line that was written whole.
    bool append(const FrameStore &store, int first);

private:
    QByteArray linesOf(const FrameStore &store, int &first);
    bool write(const QByteArray &bytes);

    QFile m_file;
    QByteArray m_lineEnd;
    std::optional<CaptureLines> m_lines;
};
