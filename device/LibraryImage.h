#pragma once

#include <QByteArray>

/// How many bytes from the start of a file libraryMachine() needs at most to recognise what linkers write.
constexpr int LibraryImageHeadSize = 4096;

/// What the header of a library or a program says about the machine it is built for: format, word size, byte order and
/// processor, as bytes to be compared only. Empty for any other file, and for one cut off before all of this. Knows ELF
/// (Linux) and PE (Windows). head: the start of the file, any bytes and any number of them.
QByteArray libraryMachine(const QByteArray &head);
