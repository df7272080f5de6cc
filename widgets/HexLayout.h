#pragma once

/// The two ways a hexadecimal editor shows a byte.
enum class HexArea { Hex, Ascii };

enum class HexMove { Left, Right, Up, Down, LineStart, LineEnd, PageUp, PageDown, Start, End };

/// A place in an editor. A nibble is half a byte: nibble 2n is the first digit of byte n, 2n + 1 its second one.
struct HexPlace
{
    HexArea area = HexArea::Hex;
    int nibble = 0; ///< 0 to 2 * size, which is behind the last byte
};

/// Where the bytes stand, in lines and columns of one character each:
///
///     0010  30 31 32 33 34 35 36 37  01234567
///
/// The place behind the last byte belongs to the last line, also when that is full.
struct HexLayout
{
    static constexpr int AddressDigits = 4;

    int size = 0;         ///< bytes, 0 to 65536: what the address has digits for
    int bytesPerLine = 1; ///< at least 1

    /// At least 1: an empty editor has a line to type in.
    int lines() const;
    int lineOf(int byte) const;
    /// 0 to bytesPerLine, which only the place behind the last byte has.
    int indexInLine(int byte) const;

    /// Column of a byte's first digit or of its character.
    int columnOf(int index, HexArea area) const;
    /// Width of a line, with the place behind its last byte.
    int columns() const;

    /// The place nearest to a column of a line, both possibly outside.
    HexPlace placeAt(int line, int column) const;

    /// Where a movement leads to from a nibble: by digits in the hexadecimal area, by bytes in the other one and while
    /// a selection is extended. A page has the given number of lines.
    int moved(HexMove move, HexPlace from, bool extend, int pageLines) const;

private:
    int movedByLines(int nibble, int count) const;
    int lineEnd(int byte, bool extend) const;
};
