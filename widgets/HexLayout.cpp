#include "widgets/HexLayout.h"

#include <algorithm>

namespace {
constexpr int AddressDigitsMin = 4;
constexpr int AddressGap = 2;
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

int HexLayout::addressDigits() const
{
    if (!hasAddresses) {
        return 0;
    }
    int digits = AddressDigitsMin;
    for (int rest = std::max(0, size - 1) >> (4 * AddressDigitsMin); rest != 0; rest >>= 4) {
        ++digits;
    }
    return digits;
}

int HexLayout::hexColumn(int index) const
{
    return (hasAddresses ? addressDigits() + AddressGap : 0) + ColumnsPerByte * index;
}

int HexLayout::asciiColumn(int index) const
{
    return hexColumn(bytesPerLine) + AsciiGap + index;
}

int HexLayout::columns() const
{
    return (hasAscii ? asciiColumn(bytesPerLine) : hexColumn(bytesPerLine)) + 1;
}

HexPlace HexLayout::placeAt(int line, int column) const
{
    line = std::clamp(line, 0, lines() - 1);
    const int bytesInLine = std::min(bytesPerLine, size - line * bytesPerLine);
    // Behind the last byte of all there is a place of its own, behind that of any other line there is none.
    const int indexMax = line == lines() - 1 ? bytesInLine : bytesInLine - 1;
    HexPlace place;
    if (hasAscii && column >= asciiColumn(0)) {
        place.area = HexArea::Ascii;
        place.nibble = 2 * (line * bytesPerLine + std::min(column - asciiColumn(0), indexMax));
        return place;
    }
    const int offset = std::max(0, column - hexColumn(0));
    const int index = offset / ColumnsPerByte;
    if (index > indexMax || index == bytesInLine) {
        place.nibble = 2 * (line * bytesPerLine + indexMax) + (indexMax == bytesInLine ? 0 : 1);
    } else {
        place.nibble = 2 * (line * bytesPerLine + index) + (offset % ColumnsPerByte == 0 ? 0 : 1);
    }
    return place;
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
