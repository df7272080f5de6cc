#include "lin/LINCapture.h"

#include "device/SaveTarget.h"
#include "lin/LINFrameCells.h"
#include "lin/LINFrameModel.h"
#include "lin/LINHexPairs.h"

#include <QSaveFile>
#include <QTextCodec>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <string_view>

namespace {

constexpr unsigned MaxId = 0x3F;
constexpr unsigned MaxLength = 8;
constexpr int WriteSize = 1 << 16;

std::string_view trimmed(std::string_view text)
{
    constexpr const char *Blanks = " \t\n\v\f\r";
    text.remove_prefix(std::min(text.find_first_not_of(Blanks), text.size()));
    return text.substr(0, text.find_last_not_of(Blanks) + 1);
}

/// Empty when there is none of that number.
std::string_view field(std::string_view line, int number)
{
    for (; number > 0; --number) {
        const std::size_t comma = line.find(',');
        if (comma == std::string_view::npos) {
            return {};
        }
        line.remove_prefix(comma + 1);
    }
    return line.substr(0, line.find(','));
}

/// A number of digits only, from 0 to maximum; -1 when it is none.
int number(std::string_view text, int base, unsigned maximum)
{
    unsigned value = 0;
    const char *end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, value, base);
    return error == std::errc() && rest == end && value <= maximum ? static_cast<int>(value) : -1;
}

QByteArray payload(std::string_view text, int length)
{
    return bytesOfHexPairs(QString::fromLatin1(text.data(), static_cast<int>(text.size())), length);
}

void appendLine(QString &text, const LINFrameModel &frames, int row)
{
    for (int column = 0; column < LINColumnCount; ++column) {
        text += frames.cellText(row, column);
        text += QLatin1Char(column + 1 < LINColumnCount ? ',' : '\n');
    }
}

} // namespace

bool saveLINCapture(const QString &path, const LINFrameModel &frames)
{
    QSaveFile file(path);
    if (!openForSaving(file, QIODevice::WriteOnly | QIODevice::Text)) {
        return false;
    }
    QString text = linColumnTitles().join(QLatin1Char(',')) + QLatin1Char('\n');
    const QTextCodec *local = QTextCodec::codecForLocale();
    // Not canEncode(): Windows' own encoding always says yes, and writes question marks.
    const bool isWhole = local->toUnicode(local->fromUnicode(text)) == text;
    const QTextCodec *codec = isWhole ? local : QTextCodec::codecForName("UTF-8");
    const int rows = frames.rowCount();
    for (int row = 0; row < rows; ++row) {
        appendLine(text, frames, row);
        if (text.size() >= WriteSize) {
            if (file.write(codec->fromUnicode(text)) < 0) {
                return false;
            }
            text.resize(0); // keeps its memory
        }
    }
    // Without the flush, a file smaller than a buffer would be taken for saved when the disk is full.
    return file.write(codec->fromUnicode(text)) >= 0 && file.flush() && file.commit();
}

void LINCaptureParser::feed(const char *bytes, int size)
{
    while (size > 0 && !m_isFailed) {
        const void *found = std::memchr(bytes, '\n', static_cast<std::size_t>(size));
        const int part = found == nullptr ? size : static_cast<int>(static_cast<const char *>(found) - bytes);
        takePart(bytes, part);
        if (found == nullptr) {
            return;
        }
        endLine();
        bytes += part + 1;
        size -= part + 1;
    }
}

std::optional<QVector<CTableViewLIN::DataObject>> LINCaptureParser::finish()
{
    if (m_hasLine) {
        endLine();
    }
    if (m_isFailed || m_frames.isEmpty()) {
        return std::nullopt;
    }
    return std::move(m_frames);
}

void LINCaptureParser::takePart(const char *bytes, int size)
{
    m_hasLine = m_hasLine || size > 0;
    m_line.append(bytes, std::min(size, MaxLine - m_line.size()));
}

void LINCaptureParser::endLine()
{
    if (m_isHeader) {
        m_isHeader = false;
    } else {
        takeFrame();
    }
    m_line.resize(0); // keeps its memory
    m_hasLine = false;
}

void LINCaptureParser::takeFrame()
{
    const std::string_view line(m_line.constData(), static_cast<std::size_t>(m_line.size()));
    const int id = number(trimmed(field(line, 3).substr(0, 2)), 16, MaxId);
    const int length = number(trimmed(field(line, 4)), 10, MaxLength);
    if (id < 0 || length < 0 || m_frames.size() == MaxFrames) {
        m_isFailed = true;
        return;
    }
    CTableViewLIN::DataObject frame;
    frame.ID = static_cast<quint8>(id);
    frame.data = payload(field(line, 5), length);
    m_frames.append(frame);
}
