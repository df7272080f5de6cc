#include "capture/RealTimeFile.h"

#include "device/SaveTarget.h"

#include <algorithm>

namespace {
constexpr int PieceSize = 1 << 20;
} // namespace

bool RealTimeFile::open(const QString &path, const FrameLabels &labels, const CaptureTextStyle &style)
{
    close();
    // The test minds the case: behind ".TXT" rows get commas although save() writes blanks there.
    const bool isText = path.endsWith(QLatin1String(".txt"));
    const char *separator = captureFormat(isText ? CANFile::Text : CANFile::CSV).separator;
    m_lines.emplace(labels, separator, true, style);
    m_lineEnd = style.lineEnd;
    m_piece.reserve(PieceSize);
    m_file.setFileName(path);
    if (!isFileTarget(path) || !m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered)) {
        return false;
    }
    m_size = m_file.size();
    return true;
}

void RealTimeFile::close()
{
    m_file.close();
}

bool RealTimeFile::append(const std::vector<FrameRecord> &rows, quint64 firstNumber)
{
    Q_ASSERT(isOpen());
    bool good = isWhole();
    std::size_t next = 0;
    while (good && next < rows.size()) {
        fillPiece(rows, next, firstNumber);
        good = writePiece();
    }
    if (!good) {
        close();
    }
    return good;
}

bool RealTimeFile::sync()
{
    Q_ASSERT(isOpen());
    return isWhole() && syncFile(m_file);
}

bool RealTimeFile::isWhole() const
{
    return isFileAt(m_file, path()) && m_file.size() >= m_size;
}

/// Makes a piece of lines of the rows from next on, and moves next behind them.
void RealTimeFile::fillPiece(const std::vector<FrameRecord> &rows, std::size_t &next, quint64 firstNumber)
{
    int used = 0;
    for (; next < rows.size() && used < PieceSize; ++next) {
        const FrameView frame(rows[next]);
        m_piece.resize(std::max(used + static_cast<int>(m_lines->maxSize(frame)), PieceSize));
        const char *end = m_lines->put(m_piece.data() + used, firstNumber + next, frame);
        used = static_cast<int>(end - m_piece.constData());
    }
    m_piece.truncate(used);
}

bool RealTimeFile::writePiece()
{
    const qint64 before = m_file.size();
    m_file.seek(before); // another program may have added something, which not every system minds by itself
    if (m_file.write(m_piece) == m_piece.size() && m_file.flush()) {
        m_size = before + m_piece.size();
        return true;
    }
    const auto written = static_cast<int>(std::clamp<qint64>(m_file.size() - before, 0, m_piece.size()));
    const int wholeLines = m_piece.left(written).lastIndexOf(m_lineEnd);
    m_file.resize(before + (wholeLines < 0 ? 0 : wholeLines + m_lineEnd.size()));
    return false;
}
