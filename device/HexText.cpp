#include "device/HexText.h"

QString hexNumber(quint32 number, int digits)
{
    QString text;
    appendHexNumber(text, number, digits);
    return text;
}

void appendHexNumber(QString &text, quint32 number, int digits)
{
    constexpr char Digits[] = "0123456789ABCDEF";
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) {
        text.append(QLatin1Char(Digits[number >> shift & 15U]));
    }
}

QString hexPairs(const QByteArray &bytes)
{
    QString text;
    text.reserve(bytes.size() * 3);
    for (const char byte : bytes) {
        appendHexNumber(text, static_cast<quint8>(byte), 2);
        text.append(QLatin1Char(' '));
    }
    return text;
}
