#pragma once

#include <QString>

/// What packages of this program are for: "windows-64bit" or "windows-32bit", the words in their names; elsewhere the
/// system and the processor, "linux-x86_64" for instance.
QString programKind();

/// The kind of this program that works with adapter libraries of so many bits, on this system; empty where there is
/// none that could be downloaded in place of this one.
QString programKindFor(int libraryBits);
