#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <optional>

/// A frame of the schedule as it is typed.
struct LINScheduleTexts
{
    QString id;       ///< hexadecimal
    QString data;     ///< pairs of hexadecimal digits, white space anywhere
    QString length;   ///< bytes, decimal
    QString interval; ///< ms, decimal
};

/// A frame of the schedule.
struct LINScheduleRow
{
    static constexpr quint8 MaxId = 0x3F;
    static constexpr int MaxLength = 8;
    static constexpr int MinIntervalMs = 30;
    static constexpr int MaxIntervalMs = 5000;

    quint8 id = 0;                  ///< 0 to MaxId
    bool isRequest = false;         ///< a slave is asked for the frame; otherwise it is sent
    QByteArray data;                ///< to be sent: MaxLength bytes at most
    int intervalMs = MinIntervalMs; ///< from this frame to the next one
};

/// Reads identifier, length, interval and data, in this order; isRequest is not touched. Nothing when one of them is no
/// number, out of range, or when there are fewer than 2 x length digits: error then says so in the program's language
/// and names the row by number.
std::optional<LINScheduleRow> readLINScheduleRow(const LINScheduleTexts &texts, int number, QString &error);

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
