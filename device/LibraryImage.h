#pragma once

#include <QByteArray>
#include <QString>

/// How many bytes from the start of a file libraryMachine() needs at most to recognise what linkers write.
constexpr int LibraryImageHeadSize = 4096;

/// What the header of a library or a program says about the machine it is built for: format, word size, byte order and
/// processor, as bytes to be compared only. Empty for any other file, and for one cut off before all of this. Knows ELF
/// (Linux) and PE (Windows). head: the start of the file, any bytes and any number of them.
QByteArray libraryMachine(const QByteArray &head);
/// The same of a file; empty also when it cannot be read.
QByteArray fileMachine(const QString &path);

/// The bits of a program for x86 (32) or x86-64 (64) processors that such a library fits, by what libraryMachine()
/// says; 0 for every other one.
int libraryBits(const QByteArray &machine);
