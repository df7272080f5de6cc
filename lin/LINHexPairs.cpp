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

QString hexPairs(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex(' ').toUpper());
}

QString hexPair(quint8 byte)
{
    constexpr char Digits[] = "0123456789ABCDEF";
    const char pair[] = {Digits[byte >> 4U], Digits[byte & 15U]};
    return QString::fromLatin1(pair, sizeof pair);
}
