#include "lin/LINSchedule.h"

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

} // namespace

std::optional<LINScheduleRow> readLINScheduleRow(const LINScheduleTexts &texts, int number, QString &error)
{
    const QString line = QString::number(number);
    const int id = ::number(texts.id, 16, 0, LINScheduleRow::MaxId);
    const int length = ::number(texts.length, 10, 0, LINScheduleRow::MaxLength);
    const int interval = ::number(texts.interval, 10, LINScheduleRow::MinIntervalMs, LINScheduleRow::MaxIntervalMs);
    if (id == NoNumber) {
        error = Texts::tr("The ID is out of range, Error line") + line + QStringLiteral("!\n") +
                Texts::tr("Valid ID range: 0x0-0x3F") + QLatin1Char('!');
    } else if (length == NoNumber) {
        error = Texts::tr("The data length is out of range, Error line") + line;
    } else if (interval == NoNumber) {
        error = Texts::tr("The interval is out of range, Error line") + line;
    } else if (!hasHexPairs(texts.data, length)) {
        error = Texts::tr("The data is not valid, Error line") + line;
    } else {
        return LINScheduleRow{static_cast<quint8>(id), false, bytesOfHexPairs(texts.data, length), interval};
    }
    return std::nullopt;
}

LINSchedule::LINSchedule(const QVector<LINScheduleRow> &rows, int count)
    : m_rows(rows)
    , m_remaining(rows.isEmpty() ? 0 : count)
{
}

const LINScheduleRow &LINSchedule::takeNext()
{
    Q_ASSERT(m_remaining > 0);
    const LINScheduleRow &row = m_rows.at(m_next);
    m_next = (m_next + 1) % m_rows.size();
    --m_remaining;
    return row;
}
