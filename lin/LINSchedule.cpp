#include "lin/LINSchedule.h"

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
