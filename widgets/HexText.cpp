#include "widgets/HexText.h"

#include <algorithm>

int hexDigitValue(QChar character)
{
    const ushort code = character.unicode();
    if (code >= '0' && code <= '9') {
        return code - '0';
    }
    if (code >= 'A' && code <= 'F') {
        return code - 'A' + 10;
    }
    if (code >= 'a' && code <= 'f') {
        return code - 'a' + 10;
    }
    return -1;
}

namespace {
bool isHexDigit(QChar character)
{
    return hexDigitValue(character) >= 0;
}

/// Appends the bytes of one number; false when it is none.
bool appendNumber(QStringView number, QByteArray &bytes)
{
    if (number.startsWith(QLatin1String("0x"), Qt::CaseInsensitive)) {
        number = number.mid(2);
    }
    const bool isWhole = number.size() == 1 || number.size() % 2 == 0;
    if (number.isEmpty() || !isWhole || !std::all_of(number.begin(), number.end(), isHexDigit)) {
        return false;
    }
    if (number.size() == 1) {
        bytes.append(static_cast<char>(hexDigitValue(number.front())));
        return true;
    }
    for (qsizetype i = 0; i < number.size(); i += 2) {
        bytes.append(static_cast<char>(16 * hexDigitValue(number.at(i)) + hexDigitValue(number.at(i + 1))));
    }
    return true;
}
} // namespace

std::optional<QByteArray> bytesFromHexText(const QString &text)
{
    QByteArray bytes;
    const auto isBlank = [](QChar character) {
        return character.isSpace();
    };
    const QChar *begin = std::find_if_not(text.begin(), text.end(), isBlank);
    while (begin != text.end()) {
        const QChar *end = std::find_if(begin, text.end(), isBlank);
        if (!appendNumber(QStringView(begin, end), bytes)) {
            return std::nullopt;
        }
        begin = std::find_if_not(end, text.end(), isBlank);
    }
    if (bytes.isEmpty()) {
        return std::nullopt;
    }
    return bytes;
}

QString hexTextFromBytes(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex(' ').toUpper());
}
