#include "lin/LINCapture.h"

#include "device/SaveTarget.h"
#include "lin/LINFrameCells.h"
#include "lin/LINFrameModel.h"
#include "lin/LINHexPairs.h"

#include <QSaveFile>
#include <QTextCodec>

#include <algorithm>
#include <cstring>
#include <string_view>

namespace {

constexpr int MaxId = 0x3F;
constexpr int MaxLength = 8;
constexpr int WriteSize = 1 << 16;

bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
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

int digit(char c)
{
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

/// A number of digits only, from 0 to maximum; -1 when it is none.
int number(std::string_view text, int base, int maximum)
{
    int value = text.empty() ? -1 : 0;
    for (const char c : text) {
        const int next = digit(c);
        if (next < 0 || next >= base) {
            return -1;
        }
        value = value * base + next;
        if (value > maximum) {
            return -1;
        }
    }
    return value;
}

QByteArray payload(std::string_view text, int length)
{
    return bytesOfHexPairs(QString::fromLatin1(text.data(), static_cast<int>(text.size())), length);
}

QString titles(const LINFrameModel &frames)
{
    QStringList texts;
    for (int column = 0; column < LINColumnCount; ++column) {
        texts.append(frames.headerText(column));
    }
    return texts.join(QLatin1Char(',')) + QLatin1Char('\n');
}

QString line(const LINFrameModel &frames, int row)
{
    QString text;
    for (int column = 0; column < LINColumnCount; ++column) {
        text += frames.cellText(row, column);
        text += QLatin1Char(column + 1 < LINColumnCount ? ',' : '\n');
    }
    return text;
}

} // namespace

bool saveLINCapture(const QString &path, const LINFrameModel &frames)
{
    QSaveFile file(path);
    if (!openForSaving(file, QIODevice::WriteOnly | QIODevice::Text)) {
        return false;
    }
    QString text = titles(frames);
    const QTextCodec *local = QTextCodec::codecForLocale();
    // Not canEncode(): Windows' own encoding always says yes, and writes question marks.
    const bool isWhole = local->toUnicode(local->fromUnicode(text)) == text;
    const QTextCodec *codec = isWhole ? local : QTextCodec::codecForName("UTF-8");
    const int rows = frames.rowCount();
    for (int row = 0; row < rows; ++row) {
        text += line(frames, row);
        if (text.size() >= WriteSize) {
            if (file.write(codec->fromUnicode(text)) < 0) {
                return false;
            }
            text.clear();
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
