#pragma once

#include "capture/CaptureWriter.h"
#include "capture/RealTimeWriter.h"

#include <QFile>
#include <QString>

#include <optional>

/// A text file that grows by the new rows of a table while they arrive.
class RealTimeFile : public RealTimeTarget
{
public:
    /// Opens path to append to it. The separator is five blanks when the path ends with ".txt" in lower case, otherwise
    /// a comma; unlike in saved files it stands behind the last cell in both cases.
    bool open(const QString &path, const FrameLabels &labels, const CaptureTextStyle &style = {});
    void close();
    bool isOpen() const { return m_file.isOpen(); }
    QString path() const { return m_file.fileName(); }

    /// Appends one line for each row, in writes of whole lines. False when that failed, when the file no longer stands
    /// under its path or when it is shorter than it was; it is closed then, and ends with the last line that was
    /// written whole.
    bool append(const std::vector<FrameRecord> &rows, quint64 firstNumber) override;
    /// False, too, when the file no longer stands under its path or is shorter than it was.
    bool sync() override;

private:
    bool isWhole() const;
    void fillPiece(const std::vector<FrameRecord> &rows, std::size_t &next, quint64 firstNumber);
    bool writePiece();

    QFile m_file;
    qint64 m_size = 0; ///< after the last write
    QByteArray m_lineEnd;
    QByteArray m_piece; ///< lines on their way; kept from one to the next
    std::optional<CaptureLines> m_lines;
};
