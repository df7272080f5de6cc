#include "tests/support/PlainCaptureReader.h"

#include <QRegularExpression>
#include <QStringList>
#include <QTextCodec>

#include <algorithm>

namespace {

using Frames = std::vector<CaptureFrame>;

constexpr int HeaderSize = 20;

uchar byteAt(const QByteArray &bytes, int place)
{
    return static_cast<uchar>(bytes.at(place));
}

quint32 wordAt(const QByteArray &bytes, int place)
{
    quint32 word = 0;
    for (int i = 3; i >= 0; --i) {
        word = word << 8U | byteAt(bytes, place + i);
    }
    return word;
}

CaptureFrame frameOf(quint32 id, bool remote, bool extended, int length, int protocol, const QByteArray &data)
{
    CaptureFrame frame;
    frame.idWord = id % 0x20000000U + (remote ? 0x40000000U : 0U) + (extended ? 0x80000000U : 0U);
    frame.attributes = static_cast<quint32>(std::min(length, 64) * 16 + std::min(protocol, 2) * 4096);
    frame.data = data;
    return frame;
}

std::optional<Frames> readCan(const QByteArray &file)
{
    Frames frames;
    if (file.startsWith("Zhiyuan CAN Data")) {
        const int count = std::max(0, file.size() - HeaderSize) / 24;
        for (int i = 0; i < count; ++i) {
            const QByteArray r = file.mid(HeaderSize + 24 * i, 24);
            frames.push_back(
                frameOf(wordAt(r, 0), byteAt(r, 10) % 2 == 1, byteAt(r, 11) % 2 == 1, byteAt(r, 12), 0, r.mid(13, 8)));
        }
        return frames;
    }
    const QByteArray otherHeader("\xFF\xFF\xFF\xFF\x01\0\0\0\x01\0\0\0", 12);
    if (!file.startsWith(otherHeader)) {
        return std::nullopt;
    }
    QByteArray rest = file.mid(otherHeader.size());
    while (rest.size() > 16) {
        const int length = byteAt(rest, 15);
        CaptureFrame frame = frameOf(0, false, false, length, 0, rest.mid(19, 8).leftJustified(8, '\0'));
        frame.idWord = wordAt(rest, 11);
        frames.push_back(frame);
        rest = rest.mid(27 + length);
    }
    return frames;
}

std::optional<Frames> readCanFd(const QByteArray &file)
{
    if (!file.startsWith("Vantora CAN Data")) {
        return std::nullopt;
    }
    Frames frames;
    QByteArray rest = file.mid(HeaderSize);
    while (rest.size() >= 13 && rest.size() >= 13 + byteAt(rest, 12)) {
        const int length = byteAt(rest, 12);
        frames.push_back(frameOf(wordAt(rest, 0), byteAt(rest, 10) % 2 == 1, byteAt(rest, 11) % 2 == 1, length,
                                 byteAt(rest, 8) % 4, rest.mid(13, std::min(length, 64))));
        rest = rest.mid(13 + length);
    }
    return frames;
}

/// As UTF-8 where it is, otherwise as GB18030, with a mark behind it where bytes are not.
QString decoded(const QByteArray &bytes)
{
    QTextCodec::ConverterState utf8(QTextCodec::IgnoreHeader);
    QString text = QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &utf8);
    if (utf8.invalidChars == 0 && utf8.remainingChars == 0) {
        return text;
    }
    QTextCodec *chinese = QTextCodec::codecForName("GB18030");
    const QString other = chinese->toUnicode(bytes);
    return chinese->fromUnicode(other) == bytes ? other : other + QChar(QChar::ReplacementCharacter);
}

QByteArray payloadOf(const QString &cell)
{
    static const QRegularExpression digit(QStringLiteral("^[0-9A-Fa-f]+$"));
    QString digits;
    for (const QChar c : cell) {
        if (digit.match(c).hasMatch()) {
            digits += c;
        }
    }
    digits = digits.left(16);
    if (digits.size() % 2 == 1) {
        digits.prepend(QLatin1Char('0'));
    }
    return QByteArray::fromHex(digits.toLatin1());
}

std::optional<CaptureFrame> frameOf(const QString &id, const QString &type, int protocol, const QByteArray &data)
{
    static const QRegularExpression number(
        QStringLiteral("^[ \\x09-\\x0d]*\\+?(0[xX])?[0-9A-Fa-f]+[ \\x09-\\x0d]*\\z"));
    bool isNumber = false;
    const quint32 identifier = id.toUInt(&isNumber, 16);
    if (!isNumber || !number.match(id).hasMatch()) {
        return std::nullopt;
    }
    const QStringList standard = {QStringLiteral("Standard"), QStringLiteral(u"\u6807\u51c6\u5e27"),
                                  QStringLiteral(u"\u6a19\u6e96\u5e40")};
    const QStringList extended = {QStringLiteral("Extend"), QStringLiteral("Extended"),
                                  QStringLiteral(u"\u6269\u5c55\u5e27"), QStringLiteral(u"\u64f4\u5c55\u5e40")};
    if (!standard.contains(type) && !extended.contains(type)) {
        return std::nullopt;
    }
    const QByteArray payload = payloadOf(decoded(data));
    return frameOf(identifier, false, extended.contains(type), payload.size(), protocol, payload);
}

std::optional<CaptureFrame> frameOfLine(const QByteArray &line, bool isOwn, const QString &separator)
{
    const QStringList raw = QString::fromLatin1(line.constData(), line.size()).split(separator); // one character a byte
    const int n = raw.size();
    if (n < 5 || (isOwn && n < 8)) {
        return std::nullopt;
    }
    const auto text = [&](int cell) {
        return decoded(raw.at(cell).toLatin1());
    };
    if (!isOwn) {
        return frameOf(raw.at(n - 5), text(n - 3), 0, raw.last().toLatin1());
    }
    int protocol = text(5) == QLatin1String("CANFD") ? 1 : 0;
    if (text(5) == QLatin1String("CANFD Speed") || text(5) == QStringLiteral(u"CANFD\u52a0\u901f")) {
        protocol = 2;
    }
    return frameOf(raw.at(4), text(7), protocol, raw.last().toLatin1());
}

Frames readText(QByteArray file, const QString &separator)
{
    if (file.startsWith("\xEF\xBB\xBF")) {
        file.remove(0, 3);
    }
    QList<QByteArray> lines = file.split('\n');
    for (QByteArray &line : lines) {
        while (line.endsWith('\r')) {
            line.chop(1);
        }
    }
    const bool isOwn = lines.takeFirst() == "Vantora CAN Data";
    if (isOwn && !lines.isEmpty()) {
        lines.removeFirst();
    }
    Frames frames;
    for (const QByteArray &line : lines) {
        if (const auto frame = frameOfLine(line, isOwn, separator)) {
            frames.push_back(*frame);
        }
    }
    return frames;
}

} // namespace

std::optional<std::vector<CaptureFrame>> readPlainly(const QByteArray &file, CANFile::FileType format)
{
    switch (format) {
    case CANFile::CSV:
    case CANFile::Text:
        return readText(file, QLatin1String(captureFormat(format).separator));
    case CANFile::CAN:
        return readCan(file);
    case CANFile::CANFD:
        return readCanFd(file);
    }
    return std::nullopt;
}
