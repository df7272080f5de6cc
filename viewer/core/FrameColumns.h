#pragma once

#include "viewer/core/FrameNames.h"
#include "viewer/core/FrameTimes.h"

#include <QCoreApplication>
#include <QString>

/// The columns of a table of frames, in their order.
enum class FrameColumn {
    Number,
    Absolute,
    SinceStart,
    SinceShown,
    SinceIdentifier,
    SinceMark,
    Channel,
    Direction,
    Identifier,
    Name,
    Type,
    Length,
    Data
};
constexpr int FrameColumnCount = 13;

/// What the cells of a table of frames say.
class FrameColumns
{
    Q_DECLARE_TR_FUNCTIONS(FrameColumns)

public:
    using Names = FrameNames;

    static QString title(FrameColumn column);
    /// Of all columns that do not tell times.
    static QString text(FrameColumn column, qint64 row, const BusFrame &frame, const Names &names);
    /// Of all columns. Empty where the frame has nothing to say there.
    static QString text(FrameColumn column, const BusFrameStore &store, const CaptureInfo &info, qint64 row,
                        const TimeReferences &references, const Names &names);
    static bool isTime(FrameColumn column);
    /// Numbers stand below each other.
    static bool isRightAligned(FrameColumn column);
    /// A filter that passes the frames with the same cell; for times, the frames of the same moment.
    static QString sameCell(FrameColumn column, const BusFrameStore &store, qint64 row, const Names &names);

    /// "123", "18FF1234", LIN: "3C"; an error frame has none.
    static QString identifierText(FrameKey key);
    /// A filter for an identifier: "id == 0x123 and not ext and not lin".
    static QString identifierFilter(FrameKey key);
    /// A filter for the frames of a message; empty where name is, or cannot be written in one.
    static QString nameFilter(const QString &name);
    /// "DE AD".
    static QString dataText(const BusFrame &frame);
    /// A text of bytes with another blank behind each eight, which the eye finds in 64 of them.
    static QString groupedData(QString dataText);
    /// Eight bytes in a line, the number of the first in front and the letters that they stand for behind.
    static QString dataLines(const BusFrame &frame);

private:
    static QString typeText(const BusFrame &frame);
    static QString directionText(BusFrame::Direction direction);
    static QString sameTime(const BusFrameStore &store, qint64 row);
    static QString sameName(FrameKey key, const QString &name);
    static QString sameData(const BusFrame &frame);
};
