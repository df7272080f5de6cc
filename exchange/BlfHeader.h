#pragma once

#include <QtGlobal>

#include <array>
#include <string_view>

/// What stands at the beginning of a BLF file. Times are of the clock on the wall, in milliseconds.
struct BlfHeader
{
    static constexpr std::size_t Size = 144;
    static constexpr std::size_t MinSize = 72; ///< up to the last field that is read

    quint32 size = Size; ///< of the header itself
    quint64 fileSize = 0;
    quint64 uncompressedSize = 0; ///< with all containers unpacked
    quint32 objects = 0;
    qint64 start = 0; ///< nanoseconds from 1970-01-01 00:00 UTC; 0: not known
    qint64 end = 0;

    /// bytes: MinSize or more, with the signature at the begin.
    static BlfHeader read(const char *bytes);
    std::array<char, Size> bytes() const;
};
