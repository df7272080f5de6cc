#pragma once

#include <QString>

/// The system's loader for shared libraries. AdapterLibrary_posix.cpp and AdapterLibrary_win.cpp hold the two
/// implementations; CMake builds the one that fits.
namespace AdapterLibrary {

/// An entry point whose type is not known yet; cast to its own type before it is called.
using Symbol = void (*)();

/// Loads the library under path. Answers null when the system refuses, with its reason in message.
void *open(const QString &path, QString &message);
/// Null when the library does not export name.
Symbol resolve(void *library, const char *name);
void close(void *library);

/// Where the program expects the adapter library: in the working directory.
QString defaultPath();

} // namespace AdapterLibrary
