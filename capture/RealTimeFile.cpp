#include "capture/RealTimeFile.h"

#include "device/SaveTarget.h"

#include <algorithm>

bool RealTimeFile::open(const QString &path, const FrameLabels &labels, const CaptureTextStyle &style)
{
    close();
    // The test minds the case: behind ".TXT" rows get commas although save() writes blanks there.
    const bool isText = path.endsWith(QLatin1String(".txt"));
    m_lines.emplace(labels, CaptureLines::separator(isText ? CaptureFormat::Text : CaptureFormat::Csv),
                    CaptureLines::LastCell::Separated, style);
    m_lineEnd = style.lineEnd;
    m_file.setFileName(path);
    return isFileTarget(path) && m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered);
}

void RealTimeFile::close()
{
    m_file.close();
}

bool RealTimeFile::append(const FrameStore &store, int first)
{
    Q_ASSERT(isOpen());
    bool good = isFileAt(m_file, path());
    while (good && first < store.size()) {
        good = write(linesOf(store, first));
    }
    if (!good) {
        close();
    }
    return good;
}

/// The lines of the rows from first on, and first moved behind them: all rows unless they are unusually many.
QByteArray RealTimeFile::linesOf(const FrameStore &store, int &first)
{
    constexpr int Enough = 1 << 28;
    QByteArray lines;
    int used = 0;
    for (; first < store.size() && used < Enough; ++first) {
        const FrameView frame = store.at(first);
        const int needed = used + static_cast<int>(m_lines->maxSize(frame));
        if (needed > lines.size()) {
            lines.resize(std::max(needed, lines.size() * 2));
        }
        const char *end = m_lines->put(lines.data() + used, static_cast<quint32>(first) + 1, frame);
        used = static_cast<int>(end - lines.constData());
    }
    lines.truncate(used);
    return lines;
}

bool RealTimeFile::write(const QByteArray &bytes)
{
    const qint64 before = m_file.size();
    if (m_file.write(bytes) == bytes.size() && m_file.flush()) {
        return true;
    }
    const auto written = static_cast<int>(std::clamp<qint64>(m_file.size() - before, 0, bytes.size()));
    const int wholeLines = bytes.left(written).lastIndexOf(m_lineEnd);
    m_file.resize(before + (wholeLines < 0 ? 0 : wholeLines + m_lineEnd.size()));
    return false;
}
