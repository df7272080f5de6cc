#pragma once

/// What the command does with standard input, output and error, differently on each system.
namespace Terminal {

enum Stream { Input, Output, Errors };

bool isTerminal(Stream stream);
/// Bytes pass as they are: no line ends are translated.
void makeBinary(Stream stream);
/// From now on being interrupted (Ctrl+C) does not end the program.
void catchInterrupt();
bool isInterrupted();

} // namespace Terminal
