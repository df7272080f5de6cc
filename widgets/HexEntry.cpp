#include "widgets/HexEntry.h"

#include <QRegularExpression>

#include <algorithm>

namespace {
constexpr int ShownBytesMax = 8;
}

QString shownPayload(const QByteArray &payload)
{
    return groupedDigits(QString::fromLatin1(payload.left(ShownBytesMax).toHex().toUpper()));
}

QString hexDigits(const QString &text, int size)
{
    static const QRegularExpression blanks(QStringLiteral("\\s"));
    QString digits = text;
    return digits.remove(blanks).left(2 * size);
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
    QByteArray payload = QByteArray::fromHex(whole);
    payload.append(QByteArray(size - payload.size(), '\0'));
    return payload;
}
