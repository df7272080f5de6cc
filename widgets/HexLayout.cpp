#include "widgets/HexLayout.h"

#include <algorithm>

namespace {
constexpr int FirstHexColumn = HexLayout::AddressDigits + 2;
constexpr int ColumnsPerByte = 3;
constexpr int AsciiGap = 1; // beside the blank behind the last byte
} // namespace

int HexLayout::lines() const
{
    return size == 0 ? 1 : (size - 1) / bytesPerLine + 1;
}

int HexLayout::lineOf(int byte) const
{
    return std::min(byte / bytesPerLine, lines() - 1);
}

int HexLayout::indexInLine(int byte) const
{
    return byte - lineOf(byte) * bytesPerLine;
}

int HexLayout::columnOf(int index, HexArea area) const
{
    return area == HexArea::Hex ? FirstHexColumn + ColumnsPerByte * index
                                : columnOf(bytesPerLine, HexArea::Hex) + AsciiGap + index;
}

int HexLayout::columns() const
{
    return columnOf(bytesPerLine, HexArea::Ascii) + 1;
}

HexPlace HexLayout::placeAt(int line, int column) const
{
    line = std::clamp(line, 0, lines() - 1);
    const int first = line * bytesPerLine;
    const int bytesInLine = std::min(bytesPerLine, size - first);
    // Behind the last byte of all there is a place of its own, behind that of any other line there is none.
    const int nibbleMax = 2 * bytesInLine - (line == lines() - 1 ? 0 : 1);
    if (const int index = column - columnOf(0, HexArea::Ascii); index >= 0) {
        return {HexArea::Ascii, 2 * (first + std::min(2 * index, nibbleMax) / 2)};
    }
    const int offset = std::max(0, column - FirstHexColumn);
    const int nibble = 2 * (offset / ColumnsPerByte) + (offset % ColumnsPerByte == 0 ? 0 : 1);
    return {HexArea::Hex, 2 * first + std::min(nibble, nibbleMax)};
}

int HexLayout::moved(HexMove move, HexPlace from, bool extend, int pageLines) const
{
    const bool byBytes = extend || from.area == HexArea::Ascii;
    const int byte = from.nibble / 2;
    const int behind = 2 * size;
    switch (move) {
    case HexMove::Left:
        return std::max(0, byBytes ? (from.nibble - 1) / 2 * 2 : from.nibble - 1);
    case HexMove::Right:
        return std::min(behind, byBytes ? 2 * (byte + 1) : from.nibble + 1);
    case HexMove::Up:
        return movedByLines(from.nibble, -1);
    case HexMove::Down:
        return movedByLines(from.nibble, 1);
    case HexMove::PageUp:
        return movedByLines(from.nibble, -pageLines);
    case HexMove::PageDown:
        return movedByLines(from.nibble, pageLines);
    case HexMove::LineStart:
        return 2 * lineOf(byte) * bytesPerLine;
    case HexMove::LineEnd:
        return 2 * lineEnd(byte, extend);
    case HexMove::Start:
        return 0;
    case HexMove::End:
        return behind;
    }
    return from.nibble;
}

int HexLayout::movedByLines(int nibble, int count) const
{
    const int line = lineOf(nibble / 2);
    const int target = std::clamp(line + count, 0, lines() - 1);
    if (target == line) {
        return nibble;
    }
    const int index = std::min(indexInLine(nibble / 2), bytesPerLine - 1);
    return std::min(2 * size, 2 * (target * bytesPerLine + index) + nibble % 2);
}

/// The last byte of the line; behind it on the last line and when a selection is to reach over it.
int HexLayout::lineEnd(int byte, bool extend) const
{
    const int behind = (lineOf(byte) + 1) * bytesPerLine;
    if (behind >= size) {
        return size;
    }
    return extend ? behind : behind - 1;
}
