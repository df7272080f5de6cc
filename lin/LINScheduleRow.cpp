#include "lin/LINScheduleRow.h"

#include <QCoreApplication>

namespace {

constexpr int NoNumber = -1;

/// The context of the texts.
struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(GUI_LINModeList)
};

/// NoNumber unless the text is a number from minimum to maximum.
int number(const QString &text, int base, int minimum, int maximum)
{
    bool isNumber = false;
    const int value = text.toInt(&isNumber, base);
    return isNumber && value >= minimum && value <= maximum ? value : NoNumber;
}

bool hasDigits(const QString &text, int count)
{
    for (const QChar c : text) {
        if (!c.isSpace()) {
            --count;
        }
        if (count <= 0) {
            break;
        }
    }
    return count <= 0;
}

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

std::optional<LINScheduleRow> readLINScheduleRow(const LINScheduleTexts &texts, int number, QString &error)
{
    const QString line = QString::number(number);
    const int id = ::number(texts.id, 16, 0, LINScheduleRow::MaxId);
    if (id == NoNumber) {
        error = Texts::tr("The ID is out of range, Error line") + line + QStringLiteral("!\n") +
                Texts::tr("Valid ID range: 0x0-0x3F") + QLatin1Char('!');
        return std::nullopt;
    }
    const int length = ::number(texts.length, 10, 0, LINScheduleRow::MaxLength);
    if (length == NoNumber) {
        error = Texts::tr("The data length is out of range, Error line") + line;
        return std::nullopt;
    }
    const int interval = ::number(texts.interval, 10, LINScheduleRow::MinIntervalMs, LINScheduleRow::MaxIntervalMs);
    if (interval == NoNumber) {
        error = Texts::tr("The interval is out of range, Error line") + line;
        return std::nullopt;
    }
    if (!hasDigits(texts.data, 2 * length)) {
        error = Texts::tr("The data is not valid, Error line") + line;
        return std::nullopt;
    }
    LINScheduleRow row;
    row.id = static_cast<quint8>(id);
    row.data = bytesOfHexPairs(texts.data, length);
    row.intervalMs = interval;
    return row;
}

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
