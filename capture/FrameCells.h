#pragma once

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

/// The parts of cells as ASCII. Each writes to `to` and returns the place behind; none writes an ending zero.
namespace FrameBytes {

constexpr std::size_t MaxDecimal = 20;
constexpr std::size_t MaxHexNumber = 10;
constexpr std::size_t MaxTimeStamp = 12;

/// Decimal without leading zeros.
char *putDecimal(char *to, quint64 number);
/// "0x" and upper-case hexadecimal digits without leading zeros.
char *putHexNumber(char *to, quint32 number);
/// milliseconds as hours (modulo 24), minutes, seconds, milliseconds: "1:2:3.4", without leading zeros.
char *putTimeStamp(char *to, quint32 milliseconds);
/// Two upper-case hexadecimal digits and a blank for each byte; takes size * 3 bytes and one byte of slack behind.
char *putPayload(char *to, const uchar *data, int size);

} // namespace FrameBytes
