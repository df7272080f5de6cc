#pragma once

#include <QByteArray>

/// How many bytes from the start of a file readLibraryImage() needs at most to recognise what linkers write.
constexpr int LibraryImageHeadSize = 4096;

/// What the header of an executable file says about the machine it is built for.
struct LibraryImage
{
    enum class Format {
        None, ///< neither of the others, or cut off before its machine number
        Elf,  ///< Executable and Linkable Format: Linux and its relatives
        Pe,   ///< Portable Executable: Windows
    };

    Format format = Format::None;
    quint8 wordBits = 0;    ///< 32 or 64 (ELF's class); 0 for PE, whose machine number includes it
    bool bigEndian = false; ///< ELF's data encoding
    quint16 machine = 0;    ///< the format's own number: ELF e_machine, PE Machine
};

/// Reads the header at the start of a file; head may hold any bytes and any number of them.
LibraryImage readLibraryImage(const QByteArray &head);

/// Both are executable files, and the library is not built for the machine that the program is built for.
bool isForAnotherMachine(const LibraryImage &library, const LibraryImage &program);
