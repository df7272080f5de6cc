#include "lin/LINHexPairs.h"

#include <algorithm>

namespace {
/// -1 for what is no hexadecimal digit.
int hexDigit(char character)
{
    if (character >= '0' && character <= '9') {
        return character - '0';
    }
    const char lower = static_cast<char>(character | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}
} // namespace

QByteArray bytesOfHexPairs(const QString &text, int length)
{
    QByteArray bytes;
    int high = 0;
    int characters = 0;
    for (const QChar *c = text.begin(); c != text.end() && characters < 2 * length; ++c) {
        if (c->isSpace()) {
            continue;
        }
        const int digit = hexDigit(c->toLatin1());
        if (++characters % 2 == 1) {
            high = digit;
        } else if (high >= 0 && digit >= 0) {
            bytes.append(static_cast<char>(high << 4 | digit));
        }
    }
    return bytes;
}

bool hasHexPairs(const QString &text, int length)
{
    return std::count_if(text.begin(), text.end(), [](QChar c) { return !c.isSpace(); }) / 2 >= length;
}

void appendHexPair(QString &text, quint8 byte)
{
    constexpr char Digits[] = "0123456789ABCDEF";
    text.append(QLatin1Char(Digits[byte >> 4U]));
    text.append(QLatin1Char(Digits[byte & 15U]));
}

QString hexPair(quint8 byte)
{
    QString text;
    appendHexPair(text, byte);
    return text;
}

QString hexPairs(const QByteArray &bytes)
{
    QString text;
    text.reserve(bytes.size() * 3);
    for (const char byte : bytes) {
        appendHexPair(text, static_cast<quint8>(byte));
        text.append(QLatin1Char(' '));
    }
    return text;
}
