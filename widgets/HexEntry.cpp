#include "widgets/HexEntry.h"

#include <QStringList>

#include <algorithm>

namespace {
constexpr int ShownBytesMax = 8;
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
    return groupedDigits(QString::fromLatin1(payload.left(ShownBytesMax).toHex().toUpper()));
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
