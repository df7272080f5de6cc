#include "widgets/HexEntry.h"

#include <QStringList>

#include <algorithm>

namespace {
constexpr int ShownBytesMax = 8;
}

QString hexNumber(quint32 number, int digits)
{
    QString text;
    text.reserve(digits);
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

QString hexTextFromBytes(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex(' ').toUpper());
}

std::optional<QByteArray> bytesFromHexText(const QString &text)
{
    const QStringList numbers = text.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    QByteArray bytes;
    for (const QString &number : numbers) {
        const bool hasPrefix = number.startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
        QByteArray digits = number.mid(hasPrefix ? 2 : 0).toLatin1().toLower();
        if (digits.size() == 1) {
            digits.prepend('0');
        }
        const QByteArray part = QByteArray::fromHex(digits);
        if (part.isEmpty() || part.toHex() != digits) { // fromHex passes over what is no digit
            return std::nullopt;
        }
        bytes += part;
    }
    return bytes.isEmpty() ? std::nullopt : std::optional(bytes);
}

QString shownPayload(const QByteArray &payload)
{
    return hexPairs(payload.left(ShownBytesMax));
}

QString hexDigits(const QString &text, int size)
{
    return text.simplified().remove(QLatin1Char(' ')).left(2 * size);
}

QString groupedDigits(const QString &digits)
{
    QString text = digits;
    for (int position = 2; position <= text.size(); position += 3) {
        text.insert(position, QLatin1Char(' '));
    }
    return text;
}

int groupedPosition(int count, bool behindBlank)
{
    return count + (behindBlank ? count : std::max(0, count - 1)) / 2;
}

QByteArray payloadFromDigits(const QString &digits, int size)
{
    QByteArray whole = digits.left(2 * size).toLatin1();
    if (whole.size() % 2 != 0) {
        whole.insert(whole.size() - 1, '0');
    }
    return QByteArray::fromHex(whole).leftJustified(size, '\0', true);
}
