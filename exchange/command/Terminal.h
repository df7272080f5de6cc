#pragma once

/// What the command does with standard input, output and error, differently on each system.
namespace Terminal {

enum Stream { Input, Output, Errors };

bool isTerminal(Stream stream);
/// Bytes pass as they are: no line ends are translated.
void makeBinary(Stream stream);
/// Up to size bytes of standard input, as soon as there are any; 0 at its end, below 0 when it cannot be read.
long long readInput(char *to, long long size);
/// From now on being interrupted (Ctrl+C) does not end the program.
void catchInterrupt();
bool isInterrupted();

} // namespace Terminal
