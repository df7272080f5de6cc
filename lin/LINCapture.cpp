#include "lin/LINCapture.h"

#include "lin/LINFrameCells.h"
#include "lin/LINFrameModel.h"

#include <QSaveFile>
#include <QTextCodec>

#include <algorithm>
#include <cstring>

namespace {

constexpr int MaxId = 0x3F;
constexpr int MaxLength = 8;
constexpr int WriteSize = 1 << 16;

bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

QByteArray field(const QByteArray &line, int number)
{
    int begin = 0;
    for (; number > 0; --number) {
        begin = line.indexOf(',', begin) + 1;
        if (begin == 0) {
            return {};
        }
    }
    const int end = line.indexOf(',', begin);
    return line.mid(begin, end < 0 ? -1 : end - begin);
}

/// A number of digits only, from 0 to maximum; -1 when it is none.
int number(const QByteArray &text, int base, int maximum)
{
    const auto isDigit = [base](char c) {
        return (c >= '0' && c <= '9') || (base == 16 && ((c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f')));
    };
    bool isNumber = false;
    const int value = text.toInt(&isNumber, base);
    return isNumber && std::all_of(text.begin(), text.end(), isDigit) && value <= maximum ? value : -1;
}

QByteArray payload(const QByteArray &text, int length)
{
    QByteArray digits;
    for (const char c : text) {
        if (digits.size() == 2 * length) {
            break;
        }
        if (!isBlank(c)) {
            digits.append(c);
        }
    }
    return QByteArray::fromHex(digits);
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
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        return false;
    }
    QString text = titles(frames);
    const QTextCodec *local = QTextCodec::codecForLocale();
    const QTextCodec *codec = local->canEncode(text) ? local : QTextCodec::codecForName("UTF-8");
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
    const QByteArray line = m_line;
    m_line.clear();
    m_hasLine = false;
    if (m_isHeader) {
        m_isHeader = false;
        return;
    }
    const int id = number(field(line, 3).left(2).trimmed(), 16, MaxId);
    const int length = number(field(line, 4).trimmed(), 10, MaxLength);
    if (id < 0 || length < 0 || m_frames.size() == MaxFrames) {
        m_isFailed = true;
        return;
    }
    CTableViewLIN::DataObject frame;
    frame.ID = static_cast<quint8>(id);
    frame.data = payload(field(line, 5), length);
    m_frames.append(frame);
}
