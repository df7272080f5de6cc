#pragma once

#include "lin/LINScheduleRow.h"

#include <QVector>

/// The order in which frames of a list are served: one after the other, from the first again after the last, until so
/// many have been.
class LINSchedule
{
public:
    /// Of no frames.
    LINSchedule() = default;
    /// count frames in all; none when there are no rows.
    LINSchedule(const QVector<LINScheduleRow> &rows, int count);

    /// Frames still to be served.
    int remaining() const { return m_remaining; }
    /// The frame whose turn it is. Only while some remain.
    const LINScheduleRow &takeNext();

private:
    QVector<LINScheduleRow> m_rows;
    int m_next = 0;
    int m_remaining = 0;
};
