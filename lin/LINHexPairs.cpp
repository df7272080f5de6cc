#include "lin/LINHexPairs.h"

namespace {

constexpr int NoNumber = -1;

/// NoNumber for what is no hexadecimal digit.
int digit(QChar c)
{
    const ushort code = c.unicode();
    if (code >= '0' && code <= '9') {
        return code - '0';
    }
    const int letter = (code | 0x20) - 'a';
    return code < 0x80 && letter >= 0 && letter < 6 ? letter + 10 : NoNumber;
}

} // namespace

QByteArray bytesOfHexPairs(const QString &text, int length)
{
    QByteArray bytes;
    int high = NoNumber;
    int characters = 0;
    for (const QChar c : text) {
        if (characters == 2 * length) {
            break;
        }
        if (c.isSpace()) {
            continue;
        }
        const int value = digit(c);
        if (++characters % 2 == 1) {
            high = value;
        } else if (high != NoNumber && value != NoNumber) {
            bytes.append(static_cast<char>(high << 4 | value));
        }
    }
    return bytes;
}
