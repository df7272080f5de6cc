#include "lin/LINScheduleRow.h"

#include "lin/LINHexPairs.h"

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
