#pragma once

#include "capture/FrameBytes.h"
#include "capture/FrameRecord.h"

#include <QString>

#include <array>

/// The columns of the frame table and of the text files, in their order.
enum class FrameColumn : quint8 { Number, SystemTime, TimeStamp, Direction, Id, Protocol, Format, Type, Length, Data };
constexpr int FrameColumnCount = 10;

/// The words that stand in cells.
enum class FrameLabel : quint8 {
    None, ///< time stamp of a frame that was not received
    Received,
    SendSuccess,
    SendFailure,
    Can,
    CanFd,
    CanFdSpeed,
    Data,
    Remote,
    Standard,
    Extend,
};
constexpr int FrameLabelCount = 11;

struct FrameLabels
{
    std::array<QString, FrameColumnCount> titles;
    std::array<QString, FrameLabelCount> words;

    /// In the user's language.
    static FrameLabels translated();

    const QString &word(FrameLabel label) const { return words[static_cast<std::size_t>(label)]; }
};

/// The widths of the table's columns at first, in pixels.
std::array<int, FrameColumnCount> frameColumnWidths();

/// Which word stands in the cell of the named column.
FrameLabel directionLabel(const FrameHead &frame);
FrameLabel protocolLabel(const FrameHead &frame);
FrameLabel formatLabel(const FrameHead &frame);
FrameLabel typeLabel(const FrameHead &frame);

/// The text of a cell; index is the frame's 0-based place.
QString frameCell(const FrameView &frame, int index, FrameColumn column, const FrameLabels &labels);
